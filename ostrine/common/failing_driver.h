/// Device class 20: the devices whose drivers fail.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/answer.h"

namespace ostrine {

/// The facts of the class; the numbers are its information ids. All are facts of one failing device.
enum class FailingDriverFact : unsigned int {
  kCaption = 0,  ///< text, as all but the error code
  kDeviceId = 1,
  kClassGuid = 2,
  kErrorCode = 3,  ///< a number of four bytes
  kManufacturer = 4,
  kService = 5,
  kStatus = 6,
};

/// One failing device. Texts are in the system's narrow code page and empty where nobody tells.
struct FailingDriver {
  std::string caption;
  std::string device_id;   ///< instance ID
  std::string class_guid;  ///< "{4d36e972-e325-11ce-bfc1-08002be10318}"
  std::string manufacturer;
  std::string service;
  std::string status = "Error";  ///< as WMI calls the state of every device with a problem
  std::uint32_t error_code = 0;  ///< configuration-manager problem code
};

/// Gives a table of the devices that fail now: eight bytes, the second four of which are their number, 520
/// bytes for each device, and behind these the texts. Fails where the devices cannot be listed.
bool PrepareFailingDrivers(void** table);

/// Answers the information ids of FailingDriverFact for an entry of such a table, as the device was when the
/// table was made. The entry is asked for where it stands in the table; a copy of it elsewhere has no texts.
bool QueryFailingDriver(void* device, unsigned int information_id, Answer& answer);

/// The table of these devices, which are none where they could not be listed.
using FailingDrivers = std::optional<std::vector<FailingDriver>>;
bool MakeFailingDriverTable(const FailingDrivers& drivers, void** table);

/// The failing devices of this machine, in the system's order. Each system has its own.
FailingDrivers ReadFailingDriversOfMachine();

}  // namespace ostrine
