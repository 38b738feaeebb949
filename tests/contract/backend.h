/// What a backend supplies so that the contract tests can run on it. Each backend is a folder below this one
/// whose sources define `Backend::SetUp`; the tests are the same for all and know nothing else of it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/wmi.h"

namespace contract {

/// A present device as it ought to be reported. An absent member is not known, and not looked at.
struct Device {
  GUID setup_class{};
  std::vector<std::wstring> hardware_ids;  ///< all of them, most specific first
  std::wstring description;
  std::optional<std::wstring> manufacturer;
  std::optional<std::wstring> display_name;
  std::optional<std::wstring> driver_version;
  std::optional<std::wstring> inf;
  std::optional<std::wstring> instance_id;
  std::optional<std::wstring> type;
  std::optional<std::wstring> name;
  std::optional<unsigned long> problem_code;
  std::optional<std::uint64_t> last_install_time;
};

/// A failing device as device class 20 ought to report it, in the order of its table. Absent: not looked at.
struct FailingDriver {
  std::string caption;
  std::string device_id;
  std::string class_guid;
  std::uint32_t error_code = 0;
  std::optional<std::string> manufacturer;
  std::optional<std::string> service;
  std::string status = "Error";
};

/// A query in "ROOT\CIMV2" and what the property of its first object ought to be.
struct Selection {
  std::wstring query;
  std::wstring property;
  std::wstring text;
  std::optional<unsigned int> number;  ///< also what SelectUInt ought to answer
};

/// A machine that the backend has set up, as far as it could, and that it takes down in its destructor.
class Backend {
 public:
  /// Sets the backend's machine up. A made-up machine has what `devices_test.cpp` and `wmi_test.cpp` name.
  static std::unique_ptr<Backend> SetUp();

  virtual ~Backend() = default;

  /// Whether the devices are made up by the backend and not those of the machine that the test runs on.
  virtual bool IsMadeUp() const = 0;

  /// The present devices of `setup_class`, all of them, in enumeration order.
  virtual std::vector<Device> DevicesOf(const GUID& setup_class) const = 0;

  /// First hardware IDs of the present devices without a working driver, in enumeration order; none when that
  /// is not known.
  virtual std::optional<std::vector<std::wstring>> UnknownDevices() const = 0;

  /// The failing devices of all classes, in the table's order; none when they are not known.
  virtual std::optional<std::vector<FailingDriver>> FailingDrivers() const = 0;

  /// A device that may be removed and that a rescan brings back; none when the machine has no such device.
  virtual std::optional<Device> RemovableDevice() const = 0;
  virtual void Rescan() = 0;

  /// Queries with known answers. A made-up machine has a text, a number and an object without the property.
  virtual std::vector<Selection> Selections() const = 0;

  /// An input of the firmware's method with the bytes that it gives, and one that the firmware refuses.
  struct FirmwareCall {
    std::uint64_t input = 0;
    std::vector<unsigned char> output;
  };
  virtual std::optional<FirmwareCall> AnsweredFirmwareCall() const = 0;
  virtual std::uint64_t RefusedFirmwareInput() const = 0;

  /// How many connections of CWMI objects are open; none when the backend cannot tell.
  virtual std::optional<int> OpenConnections() const = 0;

  /// The thread's last error.
  virtual std::uint32_t LastError() const = 0;
};

/// The eight setup classes.
std::vector<GUID> SetupClasses();

}  // namespace contract
