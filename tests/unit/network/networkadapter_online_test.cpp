/// Whether the machine is online, as the network list manager says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/unit/network/adapter_machine.h"
#include "velmora/networkadapter.h"

namespace {

using namespace network_test;
using simulator::Fault;
using testing::Contains;
using testing::ElementsAre;

simulator::Machine MachineWithNetworkList(const simulator::NetworkList& list) {
  auto machine = simulator::BlankMachine();
  machine.com.emplace();
  machine.network_list = list;
  return machine;
}

struct Availability {
  int result = 77;
  bool is_connected = true;
  bool is_internet_connected = true;
  std::vector<std::string> lines;
};

Availability AvailabilityOn(simulator::Run& run) {
  const velmora::testing::CapturedLog log;
  Availability found;
  found.result = CNetworkAdapter().IsInternetAvailable(found.is_connected, found.is_internet_connected);
  found.lines = OwnLines(log);
  EXPECT_EQ(run.OpenHandles(), 0);
  EXPECT_EQ(run.Calls("CoUninitialize"), run.Calls("CoInitialize"));
  return found;
}

TEST(InternetAvailable, TellsBothAnswersOfTheManager) {
  for (const bool connected : {false, true}) {
    for (const bool internet : {false, true}) {
      auto run = simulator::Use(MachineWithNetworkList({.connected = connected, .internet = internet}));
      const auto found = AvailabilityOn(run);
      EXPECT_EQ(found.result, 1);
      EXPECT_EQ(found.is_connected, connected);
      EXPECT_EQ(found.is_internet_connected, internet);
    }
  }
}

TEST(InternetAvailable, AsksTheManagerInOrderAndReleasesBothInterfaces) {
  auto run = simulator::Use(MachineWithNetworkList({.connected = true, .internet = true}));
  EXPECT_THAT(AvailabilityOn(run).lines,
              ElementsAre("DEBUG bRet1, hres=0, IsNetConnected=1, "
                          "IsInternetConnected=1(CNetworkAdapter::IsInternetAvailable)"));
  EXPECT_THAT(run.Trace(), ElementsAre("CoInitialize()",
                                       "CoCreateInstance({DCB00C01-570F-4A9B-8D69-199FDBA5723B}, 23, "
                                       "{00000000-0000-0000-C000-000000000046})",
                                       "ComQueryInterface({DCB00000-570F-4A9B-8D69-199FDBA5723B})",
                                       "NetworkListIsConnected()", "NetworkListIsConnectedToInternet()",
                                       "ComRelease()", "ComRelease()", "CoUninitialize()"));
}

TEST(InternetAvailable, GoesOnInAThreadThatIsInTheOtherApartment) {
  auto machine = MachineWithNetworkList({.connected = true});
  machine.com = {.initialize_result = 0x80010106};
  auto run = simulator::Use(machine);
  EXPECT_EQ(AvailabilityOn(run).result, 1);
}

TEST(InternetAvailable, LogsTheStepThatFailsAndLeavesBothAnswersFalse) {
  const auto expect_failure = [](const simulator::NetworkList& list, const std::string& label,
                                 const std::string& code) {
    auto run = simulator::Use(MachineWithNetworkList(list));
    const auto found = AvailabilityOn(run);
    EXPECT_EQ(found.result, 0);
    EXPECT_FALSE(found.is_connected);
    EXPECT_FALSE(found.is_internet_connected);
    EXPECT_THAT(
        found.lines,
        ElementsAre("ERROR " + label + code + "(CNetworkAdapter::IsInternetAvailable)",
                    "DEBUG bRet0, hres=" + code +
                        ", IsNetConnected=0, IsInternetConnected=0(CNetworkAdapter::IsInternetAvailable)"));
  };
  expect_failure({.create_result = 0x80040154}, "CoCreateInstance fail, hres=", "-2147221164");
  expect_failure({.is_null = true}, "CoCreateInstance fail, hres=", "0");
  expect_failure({.connected = true, .connected_result = 0x80004005, .internet = true},
                 "get_IsConnected fail, hres=", "-2147467259");
  expect_failure({.connected = true, .internet = true, .internet_result = 0x80004005},
                 "get_IsConnectedToInternet fail, hres=", "-2147467259");
}

TEST(InternetAvailable, LogsAnInterfaceThatCannotBeHad) {
  for (const auto& [fault, code] : {std::pair(Fault::kFail, "-2147467262"), std::pair(Fault::kEmpty, "0")}) {
    auto run = simulator::Use(MachineWithNetworkList({.connected = true, .internet = true}));
    run.Inject(fault, 2);
    const auto found = AvailabilityOn(run);
    EXPECT_EQ(found.result, 0);
    EXPECT_THAT(found.lines, Contains("ERROR QueryInterface fail, hres=" + std::string(code) +
                                      "(CNetworkAdapter::IsInternetAvailable)"));
    EXPECT_EQ(run.Calls("ComRelease"), 1);
  }
}

TEST(InternetAvailable, LeavesBothAnswersFalseWhateverStepThrows) {
  for (int step = 0; step < 5; ++step) {
    auto run = simulator::Use(MachineWithNetworkList({.connected = true, .internet = true}));
    run.Inject(Fault::kThrow, step);
    bool connected = true;
    bool internet = true;
    EXPECT_EQ(CNetworkAdapter().IsInternetAvailable(connected, internet), 0) << step;
    EXPECT_FALSE(connected);
    EXPECT_FALSE(internet);
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

}  // namespace
