/// What a question about a network card by its kind costs in calls to the platform, beside one bare
/// enumeration of the network devices, on machines with more and more cards. None of the cards is found,
/// which is the dearest case.
///
/// A question may cost one enumeration, one look at the processor and 30 keys for each internal card, and the
/// property itself. Calls are counted and not timed, so the figures are the same on every machine and in
/// every run.
///
/// A question about the wireless adapter compares every adapter of the system with the wireless card's names.
/// It may ask for each name once, however many adapters there are.
#include <cstdio>
#include <string>

#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "simulator/run.h"
#include "velmora/networkadapter.h"
#include "velmora/networkcard.h"

namespace {

constexpr int kKeysGoal = 30;
constexpr int kNamesGoal = 2;

/// A machine with so many internal cards and as many others, and with a key in each place, none of them
/// theirs.
simulator::Machine MachineWith(int cards) {
  auto machine = simulator::EmptyMachine();
  machine.devices.emplace();
  for (int i = 0; i < cards; ++i) {
    machine.devices->push_back({.setup_class = "Net", .hardware_ids = {"PCI\\VEN_" + std::to_string(i)}});
    machine.devices->push_back({.setup_class = "Net", .hardware_ids = {"USB\\VID_" + std::to_string(i)}});
  }
  machine.registry.emplace();
  for (int number = 0; number < 40; ++number) {
    const std::string digits = (number < 10 ? "000" : "00") + std::to_string(number);
    auto& key = (*machine.registry)
        ["SYSTEM\\CurrentControlSet\\Control\\Class\\"
         "{4d36e972-e325-11ce-bfc1-08002be10318}\\" +
         digits];
    key.values["ComponentId"] = {.text = "another card's"};
  }
  return machine;
}

int CallsOfBareEnumeration(int cards) {
  const auto run = simulator::Use(MachineWith(cards));
  CDeviceInformention().GetDeviceHardwareID(velmora::setup_class::kNet);
  return run.Calls();
}

/// Prints one line and tells whether the goal is met.
bool Compare(int cards) {
  const int bare = CallsOfBareEnumeration(cards);
  const auto run = simulator::Use(MachineWith(cards));
  CNetworkCard().GetCaption(NETWORK_CARD_WIRELESS);
  const int enumerations = run.Calls("GetDeviceHardwareID");
  const int keys = run.Calls("RegOpenKeyExW");
  const bool is_met = enumerations == bare && keys <= kKeysGoal * cards;
  std::printf("%14d %6d %9d %13d %6d %6d %7s\n", cards, bare, run.Calls(), enumerations, keys,
              kKeysGoal * cards, is_met ? "met" : "MISSED");
  return is_met;
}

/// The same for a question about the wireless adapter among so many adapters.
bool CompareAdapters(int adapters) {
  auto machine = MachineWith(1);
  for (int i = 0; i < adapters; ++i) machine.adapters->list.push_back({.description = "another adapter"});
  const auto run = simulator::Use(machine);
  auto state = IP_STATE_READY;
  CNetworkAdapter().CHeckIPReady(state);
  const int enumerations = run.Calls("GetDeviceHardwareID");
  const bool is_met = enumerations <= kNamesGoal;
  std::printf("%14d %9d %13d %6d %7s\n", adapters, run.Calls(), enumerations, kNamesGoal,
              is_met ? "met" : "MISSED");
  return is_met;
}

}  // namespace

int main() {
  std::puts("Calls of a question about a network card by its kind");
  std::puts("internal cards   bare  question  enumerations   keys   goal");
  bool is_met = true;
  for (const int cards : {0, 1, 2, 4, 8}) is_met = Compare(cards) && is_met;
  std::puts("Calls of a question about the wireless adapter");
  std::puts("      adapters  question  enumerations   goal");
  for (const int adapters : {1, 8, 64}) is_met = CompareAdapters(adapters) && is_met;
  return is_met ? 0 : 1;
}
