#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// What rescans do to a device that was removed.
struct AfterRemoval {
  bool returns = true;              ///< false: it is gone for good
  std::uint32_t returns_after = 1;  ///< how many rescans bring it back
  /// After how many rescans it works again, its problem code 0; absent: its problem stays.
  std::optional<std::uint32_t> heals_after;

  bool operator==(const AfterRemoval&) const = default;
};

template <class Archive>
void Fields(Archive& archive, AfterRemoval& after) {
  archive.Field("returns", after.returns);
  archive.Field("returns_after", after.returns_after);
  archive.Field("heals_after", after.heals_after);
}

/// One device that the system has enumerated. The list under the file key `devices` is the system's order.
struct Device {
  /// "Net", "Bluetooth", "Biometric", "Media", "Keyboard", "Display", "USB", "System"; any other text is a
  /// class that the library does not ask for.
  std::string setup_class;
  std::vector<std::string> hardware_ids;  ///< most specific first
  std::string description;
  std::string manufacturer;
  std::string display_name;
  std::string driver_version;
  std::string inf;
  std::string instance_id;
  Text type;  ///< absent: the name of the setup class
  std::string name;
  std::string service;             ///< the driver service that it is bound to
  std::string status = "Error";    ///< what the list of failing devices says of it
  std::uint32_t problem_code = 0;  ///< unless 0 the device is in the list of failing ones
  /// Problem codes that the next readings give, one each, before `problem_code` counts.
  std::vector<std::uint32_t> next_problem_codes;
  std::uint64_t last_install_time = 0;  ///< milliseconds since 1970-01-01 UTC
  bool unknown = false;                 ///< has no working driver
  Error removal_error = 0;              ///< what removing it gives; unless 0 it stays
  AfterRemoval after_removal;
  /// How many rescans there were since it was removed; absent: it was not. A device that has not come back is
  /// not present. 0 in a file is a device that the first rescans bring.
  std::optional<std::uint32_t> rescans_since_removal;

  bool operator==(const Device&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Device& device) {
  archive.Field("setup_class", device.setup_class);
  archive.Field("hardware_ids", device.hardware_ids);
  archive.Field("description", device.description);
  archive.Field("manufacturer", device.manufacturer);
  archive.Field("display_name", device.display_name);
  archive.Field("driver_version", device.driver_version);
  archive.Field("inf", device.inf);
  archive.Field("instance_id", device.instance_id);
  archive.Field("type", device.type);
  archive.Field("name", device.name);
  archive.Field("service", device.service);
  archive.Field("status", device.status);
  archive.Field("problem_code", device.problem_code);
  archive.Field("next_problem_codes", device.next_problem_codes);
  archive.Field("last_install_time", device.last_install_time);
  archive.Field("unknown", device.unknown);
  archive.Field("removal_error", device.removal_error);
  archive.Field("after_removal", device.after_removal);
  archive.Field("rescans_since_removal", device.rescans_since_removal);
}

/// Whether the device is there now.
bool IsPresent(const Device& device);

/// What the next reading of its problem code gives; a scripted reading is used up.
std::uint32_t TakeProblemCode(Device& device);

/// The same without using anything up: what the device's state is, whoever looks.
std::uint32_t PresentProblemCode(const Device& device);

/// Removes a device that is present; gives the error instead when it cannot be removed.
Error Remove(Device& device);

/// One rescan of the hardware, as the removed devices see it.
void Rescan(std::vector<Device>& devices);

}  // namespace simulator
