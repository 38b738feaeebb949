/// Machines with network cards, for the tests of CNetworkCard.
#pragma once

#include <array>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "simulator/run.h"

namespace network_test {

inline constexpr std::uint32_t kWirelessWan = 8;
inline constexpr std::uint32_t kWifi = 9;
inline constexpr std::uint32_t kEthernet = 14;
inline constexpr std::uint32_t kArm = 3;

inline const std::string kClassPath =
    "SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\";

/// The path of instance key `number`.
inline std::string KeyPath(int number) {
  std::array<char, 8> digits{};
  std::snprintf(digits.data(), digits.size(), "%04d", number);
  return kClassPath + digits.data();
}

/// A machine with the cards of a laptop that has none, ready for more: Intel, a registry without keys.
inline simulator::Machine MachineWithoutCards() {
  auto machine = simulator::BlankMachine();
  machine.cpu = {.kind = 1};
  machine.devices.emplace();
  machine.registry.emplace();
  machine.wmi.emplace();
  return machine;
}

/// Adds a network device, without a key.
inline simulator::Device& AddDevice(simulator::Machine& machine, const std::string& hardware_id) {
  machine.devices->push_back({.setup_class = "Net", .hardware_ids = {hardware_id}});
  return machine.devices->back();
}

/// Writes instance key `number`.
inline simulator::RegistryKeyScript& AddKey(simulator::Machine& machine, int number,
                                            const std::string& component_id, std::uint32_t medium) {
  auto& key = (*machine.registry)[KeyPath(number)];
  key.values["ComponentId"] = {.text = component_id};
  key.values["*PhysicalMediaType"] = {.type = 4, .number = medium};
  return key;
}

/// Writes instance key `number` as it is on a machine with an ARM processor.
inline simulator::RegistryKeyScript& AddArmKey(simulator::Machine& machine, int number,
                                               const std::string& instance_id, std::uint32_t medium) {
  auto& key = (*machine.registry)[KeyPath(number)];
  key.values["DeviceInstanceID"] = {.text = instance_id};
  key.values["*PhysicalMediaType"] = {.type = 4, .number = medium};
  return key;
}

inline constexpr auto kWifiId = "PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20";
inline constexpr auto kWiredId = "PCI\\VEN_10EC&DEV_8168&SUBSYS_381717AA&REV_15";
inline constexpr auto kMobileId = "QCMS\\VEN_QCOM&DEV_0C9F&SUBSYS_MBB";

/// A laptop with one internal card of each kind and a wired card in a dock, which is not internal.
inline simulator::Machine LaptopWithCards() {
  auto machine = MachineWithoutCards();
  AddDevice(machine, "USB\\VID_0BDA&PID_8153&REV_3000");
  AddDevice(machine, kMobileId);
  AddDevice(machine, kWifiId);
  AddDevice(machine, kWiredId);
  AddKey(machine, 0, "usb\\vid_0bda&pid_8153", kEthernet);
  AddKey(machine, 1, "pci\\ven_8086&dev_a0f0", kWifi);
  AddKey(machine, 2, "pci\\ven_10ec&dev_8168", kEthernet);
  AddKey(machine, 7, "qcms\\ven_qcom&dev_0c9f", kWirelessWan);
  return machine;
}

}  // namespace network_test
