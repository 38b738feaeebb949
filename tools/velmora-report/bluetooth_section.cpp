#include "velmora-report/bluetooth_section.h"

#include <velmora/bluetooth.h>

#include <algorithm>

#include "velmora-report/bluetooth_state.h"

namespace report {
namespace {

/// How long ago the adapter's driver was installed; absent when it is not known, which the library tells as
/// the time since 1970.
Value DriverAge(CBluetooth& bluetooth, const std::wstring& hardware_id) {
  constexpr std::uint64_t kMillisecondsInDay = 86'400'000;
  constexpr std::uint64_t kOldestInDays = std::uint64_t{30} * 365;
  const std::uint64_t days = bluetooth.GetLastInstallTimeById(hardware_id) / kMillisecondsInDay;
  if (days > kOldestInDays) return Absent{};
  return days;
}

List RemoteDevices(CBluetooth& bluetooth) {
  const auto mice = bluetooth.GetExternalBlteMouseHardID();
  List list{.key = "devices", .item_title = "Device"};
  for (const std::wstring& id : bluetooth.GetExternalDeviceHardID()) {
    list.items.push_back({
        {"name", "Name", TextValue(bluetooth.GetExternalDeviceNameByHardID(id))},
        {"type", "Type", TextValue(bluetooth.GetExternalDeviceTypeByHardId(id))},
        {"address", "Address", TextValue(bluetooth.GetExternalDeviceAddressByHardId(id))},
        {"hardware_id", "Hardware ID", TextValue(id)},
        {"low_energy_mouse", "Low-energy mouse", std::ranges::find(mice, id) != mice.end()},
    });
  }
  return list;
}

}  // namespace

Section BluetoothSection() {
  CBluetooth bluetooth;
  const BluetoothState state = ReadBluetoothState();
  const bool is_there = !state.hardware_id.empty();
  const auto of_adapter = [&](auto&& read) { return is_there ? Value(read()) : Value(Absent{}); };
  return {
      .key = "bluetooth",
      .title = "Bluetooth",
      .verdict = Sentence(state),
      .rows =
          {
              {"name", "Adapter", of_adapter([&] { return TextValue(bluetooth.GetDeviceName()); })},
              {"manufacturer", "Maker", of_adapter([&] { return TextValue(bluetooth.GetManufacturer()); })},
              {"hardware_id", "Hardware ID", TextValue(state.hardware_id)},
              {"driver_name", "Driver", TextValue(GetBlueToothDriverName())},
              {"driver_version", "Driver version",
               of_adapter([&] { return TextValue(bluetooth.GetDriverVersion()); })},
              {"driver_age_days", "Driver installed",
               of_adapter([&] { return DriverAge(bluetooth, state.hardware_id); }), "days ago"},
              {"problem_code", "Problem code",
               of_adapter([&] { return Value(std::uint64_t{state.problem_code}); })},
              {"lost_among_unknown", "Lost among unknown devices", state.is_unknown},
              {"lost_in_usb", "Lost among failing USB devices", state.is_failing_in_usb},
              {"usb_problem_code", "Problem code of the USB device", NumberValue(state.usb_problem_code)},
              {"finds_device", "Finds a remote device",
               of_adapter([&] { return Value(bluetooth.IsFindBtDevice()); })},
          },
      .lists = {RemoteDevices(bluetooth)},
  };
}

}  // namespace report
