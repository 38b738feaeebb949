#include "platform/os/com.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "platform/os/firewall_policy.h"
#include "platform/os/network_list.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;
using velmora::testing::CapturedProblems;

const GUID kManagerClass = *simulator::ParseGuid("{DCB00C01-570F-4A9B-8D69-199FDBA5723B}");
const GUID kManager = *simulator::ParseGuid("{DCB00000-570F-4A9B-8D69-199FDBA5723B}");
const GUID kPolicyClass = *simulator::ParseGuid("{E2B3C97F-6AE1-41AC-817A-F6F92166D7DD}");
const GUID kPolicy = *simulator::ParseGuid("{98325047-C671-4174-8D81-DEFCD3F03186}");
const GUID kRule = *simulator::ParseGuid("{AF230D27-BABA-4E42-ACED-F524F22CFCE2}");

struct Apartment {
  Apartment() : result(CoInitialize()) {}
  ~Apartment() { CoUninitialize(); }
  ComResult result;
};

TEST(SimulatedCom, AnswersForTheNetworkList) {
  auto machine = simulator::EmptyMachine();
  machine.network_list = {.connected = true, .internet = true, .internet_result = 0x80004005};
  const auto run = simulator::Use(machine);
  const Apartment apartment;
  ComObject manager = nullptr;
  ASSERT_EQ(CoCreateInstance(kManagerClass, 23, kManager, manager), kComOk);
  VariantBool connected = 0;
  EXPECT_EQ(NetworkListIsConnected(manager, connected), kComOk);
  EXPECT_EQ(connected, kVariantTrue);
  VariantBool internet = 7;
  EXPECT_EQ(NetworkListIsConnectedToInternet(manager, internet), kComFail);
  EXPECT_EQ(internet, 7) << "written on success only";
  ComRelease(manager);
}

TEST(SimulatedCom, GivesAnObjectByTheInterfaceThatAllHaveAndThenByItsOwn) {
  const GUID unknown = *simulator::ParseGuid("{00000000-0000-0000-C000-000000000046}");
  const auto run = simulator::Use(simulator::EmptyMachine());
  const Apartment apartment;
  for (const auto& [class_id, own, other] :
       {std::tuple(kManagerClass, kManager, kPolicy), std::tuple(kPolicyClass, kPolicy, kManager)}) {
    ComObject object = nullptr;
    ASSERT_EQ(CoCreateInstance(class_id, 23, unknown, object), kComOk);
    ComObject result = &object;
    EXPECT_EQ(ComQueryInterface(object, other, result), kComNoInterface);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(ComQueryInterface(object, own, result), kComOk);
    EXPECT_NE(result, nullptr);
    ComRelease(result);
    ComRelease(object);
  }
}

TEST(SimulatedCom, DoesNotTakeTheInterfaceThatAllHaveForAnObjectsOwn) {
  const velmora::testing::CapturedProblems captured;
  const GUID unknown = *simulator::ParseGuid("{00000000-0000-0000-C000-000000000046}");
  const auto run = simulator::Use(simulator::EmptyMachine());
  const Apartment apartment;
  ComObject object = nullptr;
  ASSERT_EQ(CoCreateInstance(kManagerClass, 23, unknown, object), kComOk);
  VariantBool connected = 0;
  EXPECT_LT(NetworkListIsConnected(object, connected), 0);
  ComRelease(object);
  EXPECT_THAT(captured.Problems(), ElementsAre("NetworkListIsConnected was given a handle that is not open"));
}

TEST(SimulatedCom, WalksTheFirewallsRules) {
  auto machine = simulator::EmptyMachine();
  machine.firewall = {.public_profile_enabled = true,
                      .rules = {{.grouping = "@FirewallAPI.dll,-25000", .direction = 2, .action = 0},
                                {.has_rule_interface = false}}};
  const auto run = simulator::Use(machine);
  const Apartment apartment;
  ComObject policy = nullptr;
  ASSERT_EQ(CoCreateInstance(kPolicyClass, 23, kPolicy, policy), kComOk);
  VariantBool enabled = 0;
  EXPECT_EQ(FirewallIsEnabled(policy, 4, enabled), kComOk);
  EXPECT_EQ(enabled, kVariantTrue);

  ComObject walk = nullptr;
  ASSERT_EQ(FirewallRules(policy, walk), kComOk);
  ComObject object = nullptr;
  ASSERT_EQ(FirewallNextRule(walk, object), kComOk);
  ComObject rule = nullptr;
  ASSERT_EQ(ComQueryInterface(object, kRule, rule), kComOk);
  std::int32_t direction = 0;
  EXPECT_EQ(FirewallRuleDirection(rule, direction), kComOk);
  EXPECT_EQ(direction, 2);
  std::wstring grouping;
  EXPECT_EQ(FirewallRuleGrouping(rule, grouping), kComOk);
  EXPECT_EQ(grouping, L"@FirewallAPI.dll,-25000");
  EXPECT_EQ(FirewallRuleEnabled(rule, enabled), kComOk);
  std::int32_t action = 1;
  EXPECT_EQ(FirewallRuleAction(rule, action), kComOk);
  EXPECT_EQ(action, 0);
  ComRelease(rule);
  ComRelease(object);

  ASSERT_EQ(FirewallNextRule(walk, object), kComOk);
  EXPECT_EQ(ComQueryInterface(object, kRule, rule), kComNoInterface);
  EXPECT_EQ(rule, nullptr);
  ComRelease(object);
  EXPECT_EQ(FirewallNextRule(walk, object), 1);
  EXPECT_EQ(object, nullptr);
  ComRelease(walk);
  ComRelease(policy);
}

TEST(SimulatedCom, MayRefuseAClassOrGiveNothing) {
  auto machine = simulator::EmptyMachine();
  machine.network_list = {.create_result = 0x80040154};
  machine.firewall = {.is_null = true};
  const auto run = simulator::Use(machine);
  const Apartment apartment;
  ComObject object = &object;
  EXPECT_EQ(CoCreateInstance(kManagerClass, 23, kManager, object), kComClassNotRegistered);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(CoCreateInstance(kPolicyClass, 23, kPolicy, object), kComOk);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(CoCreateInstance(GUID{}, 23, kPolicy, object), kComClassNotRegistered);
}

TEST(SimulatedCom, HasTheThreadInTheApartmentThatTheMachineSays) {
  auto machine = simulator::EmptyMachine();
  machine.com = {.initialize_result = 0x80010106};
  const auto run = simulator::Use(machine);
  const Apartment apartment;
  EXPECT_EQ(apartment.result, kComChangedMode);
}

TEST(SimulatedCom, DemandsAnApartment) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  ComObject object = nullptr;
  EXPECT_LT(CoCreateInstance(kManagerClass, 23, kManager, object), 0);
}

TEST(SimulatedCom, ReportsWhatIsOutOfBalance) {
  const CapturedProblems captured;
  {
    const auto run = simulator::Use(simulator::EmptyMachine());
    CoUninitialize();
    CoInitializeEx(2);
    ComObject manager = nullptr;
    CoCreateInstance(kManagerClass, 23, kManager, manager);
    ComRelease(manager);
    ComRelease(manager);
    ComRelease(nullptr);
    VariantBool connected = 0;
    EXPECT_LT(NetworkListIsConnected(manager, connected), 0);
  }
  EXPECT_THAT(
      captured.Problems(),
      ElementsAre("CoUninitialize was called, but nothing is open that it closes",
                  "ComRelease was given a handle that is not open",
                  "NetworkListIsConnected was given a handle that is not open", "handles left open: 1"));
}

TEST(SimulatedCom, GoesWrongAsATestWishes) {
  auto run = simulator::Use(simulator::EmptyMachine());
  run.Inject(Fault::kFail, 0, true);
  const Apartment apartment;
  EXPECT_EQ(apartment.result, kComFail);
  ComObject object = nullptr;
  EXPECT_EQ(CoCreateInstance(kManagerClass, 23, kManager, object), kComFail);
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_EQ(CoCreateInstance(kManagerClass, 23, kManager, object), kComOk);
  EXPECT_EQ(object, nullptr);
  run.Inject(Fault::kThrow, 0, true);
  EXPECT_THROW(SetProcessLocale(L"chs"), simulator::InjectedFault);
  ComRelease(nullptr);
}

}  // namespace
