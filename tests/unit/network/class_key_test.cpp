/// What CNetworkCard reads in the registry, key by key.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/network/card_machine.h"
#include "velmora/networkcard.h"

namespace {

using namespace network_test;
using simulator::Fault;
using simulator::Machine;
using simulator::RegistryValue;
using testing::ElementsAre;
using testing::SizeIs;

constexpr unsigned long kUntouched = 77;
const std::wstring kPath = L"SYSTEM\\Some\\Key";
const std::wstring kCardId = L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20";

/// A result with what became of the medium.
struct Answer {
  int result;
  unsigned long medium;
  bool operator==(const Answer&) const = default;
};
const Answer kNoMatch{0, kUntouched};

void PrintTo(const Answer& answer, std::ostream* stream) {
  *stream << "result " << answer.result << ", medium " << answer.medium;
}

Answer ByComponentId(const std::wstring& hardware_id = kCardId, const std::wstring& path = kPath) {
  Answer answer{55, kUntouched};
  answer.result = CNetworkCard().GetMediaTypeByRegedit(path, hardware_id, answer.medium);
  return answer;
}

Answer ByInstanceId(const std::wstring& instance_id) {
  Answer answer{55, kUntouched};
  answer.result = CNetworkCard().GetMediaTypeByRegeditEx(kPath, instance_id, answer.medium);
  return answer;
}

/// A machine with the one key `kPath`.
Machine MachineWithKey(std::map<std::string, RegistryValue> values) {
  auto machine = simulator::BlankMachine();
  machine.registry.emplace()["SYSTEM\\Some\\Key"].values = std::move(values);
  return machine;
}

Machine MachineWithComponentId(const std::string& component_id) {
  return MachineWithKey(
      {{"ComponentId", {.text = component_id}}, {"*PhysicalMediaType", {.type = 4, .number = 9}}});
}

TEST(ClassKey, IsOpenedForReadingAndAskedForTwoValuesAndClosed) {
  const auto run = simulator::Use(MachineWithComponentId("pci\\ven_8086"));
  EXPECT_EQ(ByComponentId(), (Answer{1, 9}));
  EXPECT_THAT(run.Trace(), ElementsAre("RegOpenKeyExW(SYSTEM\\Some\\Key, 0, 0x20019)",  //
                                       "RegQueryValueExW(ComponentId, 260)",            //
                                       "RegQueryValueExW(*PhysicalMediaType, 4)",       //
                                       "RegCloseKey()"));
}

TEST(ClassKey, IsAskedForTheInstanceIdInstead) {
  const auto run = simulator::Use(MachineWithKey({{"DeviceInstanceID", {.text = "PCI\\VEN_17CB\\4&1"}},
                                                  {"*PhysicalMediaType", {.type = 4, .number = 8}}}));
  EXPECT_EQ(ByInstanceId(L"PCI\\VEN_17CB\\4&1"), (Answer{1, 8}));
  EXPECT_THAT(run.Trace(), ElementsAre("RegOpenKeyExW(SYSTEM\\Some\\Key, 0, 0x20019)",  //
                                       "RegQueryValueExW(DeviceInstanceID, 260)",       //
                                       "RegQueryValueExW(*PhysicalMediaType, 4)",       //
                                       "RegCloseKey()"));
}

TEST(ClassKey, IsNotMatchedByTheOtherValue) {
  const auto run = simulator::Use(MachineWithComponentId("pci\\ven_8086"));
  EXPECT_EQ(ByInstanceId(kCardId), kNoMatch);
}

TEST(ClassKey, MatchesWhenItsComponentIdStandsAnywhereInTheHardwareIdInEitherCase) {
  for (const char* part : {"pci\\ven_8086", "PCI\\VEN_8086&DEV_A0F0", "dev_a0f0", "ReV_20", "p",
                           "pci\\ven_8086&dev_a0f0&subsys_00748086&rev_20"}) {
    const auto run = simulator::Use(MachineWithComponentId(part));
    EXPECT_EQ(ByComponentId(), (Answer{1, 9})) << part;
  }
}

TEST(ClassKey, DoesNotMatchWhenItsComponentIdIsNotInTheHardwareId) {
  for (const char* other : {"pci\\ven_10ec", "pci\\ven_8086&dev_a0f1", "",
                            "pci\\ven_8086&dev_a0f0&subsys_00748086&rev_20&more"}) {
    const auto run = simulator::Use(MachineWithComponentId(other));
    EXPECT_EQ(ByComponentId(), kNoMatch) << other;
  }
}

TEST(ClassKey, DoesNotMatchTheEmptyId) {
  const auto run = simulator::Use(MachineWithComponentId("pci"));
  EXPECT_EQ(ByComponentId(L""), kNoMatch);
}

TEST(ClassKey, IsNotAskedForTheMediumWhenItBelongsToAnotherCard) {
  const auto run = simulator::Use(MachineWithComponentId("pci\\ven_10ec"));
  ByComponentId();
  EXPECT_THAT(run.Trace(), SizeIs(3));
  EXPECT_EQ(run.Calls("RegQueryValueExW"), 1);
  EXPECT_EQ(run.Calls("RegCloseKey"), 1);
}

TEST(ClassKey, GivesTheMediumAsItIsStored) {
  for (const std::uint32_t medium : {0U, 8U, 14U, 0xFFFFFFFFU}) {
    const auto run = simulator::Use(MachineWithKey(
        {{"ComponentId", {.text = "pci"}}, {"*PhysicalMediaType", {.type = 4, .number = medium}}}));
    EXPECT_EQ(ByComponentId(), (Answer{1, medium}));
  }
}

TEST(ClassKey, ThatIsNotThereIsNoMatchAndIsNotClosed) {
  const auto run = simulator::Use(MachineWithComponentId("pci"));
  EXPECT_EQ(ByComponentId(kCardId, L"SYSTEM\\Other"), kNoMatch);
  EXPECT_THAT(run.Trace(), ElementsAre("RegOpenKeyExW(SYSTEM\\Other, 0, 0x20019)"));
}

TEST(ClassKey, ThatMayNotBeReadIsNoMatchAndIsNotClosed) {
  auto machine = MachineWithComponentId("pci");
  machine.registry->begin()->second.open_error = 5;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(ByComponentId(), kNoMatch);
  EXPECT_EQ(run.Calls(), 1);
}

TEST(ClassKey, WithoutItsComponentIdIsClosedAndNoMatch) {
  const auto run = simulator::Use(MachineWithKey({{"*PhysicalMediaType", {.type = 4, .number = 9}}}));
  EXPECT_EQ(ByComponentId(), kNoMatch);
  EXPECT_EQ(run.Calls("RegCloseKey"), 1);
}

TEST(ClassKey, WithoutAMediumIsClosedAndNoMatch) {
  const auto run = simulator::Use(MachineWithKey({{"ComponentId", {.text = "pci"}}}));
  EXPECT_EQ(ByComponentId(), kNoMatch);
  EXPECT_EQ(run.Calls("RegCloseKey"), 1);
}

TEST(ClassKey, WithAMediumThatIsLongerThanANumberIsClosedAndNoMatch) {
  const auto run = simulator::Use(
      MachineWithKey({{"ComponentId", {.text = "pci"}}, {"*PhysicalMediaType", {.type = 1, .text = "14"}}}));
  EXPECT_EQ(ByComponentId(), kNoMatch);
  EXPECT_EQ(run.Calls("RegCloseKey"), 1);
}

TEST(ClassKey, IsReadUpToAComponentIdOf130CharactersWithItsZero) {
  const std::wstring hardware_id = L"PCI\\" + std::wstring(300, L'A');
  {
    const auto run = simulator::Use(MachineWithComponentId("pci\\" + std::string(125, 'a')));
    EXPECT_EQ(ByComponentId(hardware_id), (Answer{1, 9})) << "129 characters and the zero";
  }
  const auto run = simulator::Use(MachineWithComponentId("pci\\" + std::string(126, 'a')));
  EXPECT_EQ(ByComponentId(hardware_id), kNoMatch) << "one more does not fit";
  EXPECT_EQ(run.Calls("RegCloseKey"), 1);
}

TEST(ClassKey, MayHoldAComponentIdWithoutItsZero) {
  simulator::Bytes stored;
  for (int i = 0; i < 130; ++i) stored.data.insert(stored.data.end(), {'a', 0});
  const auto run = simulator::Use(
      MachineWithKey({{"ComponentId", {.raw = stored}}, {"*PhysicalMediaType", {.type = 4, .number = 9}}}));
  EXPECT_EQ(ByComponentId(std::wstring(130, L'A')), (Answer{1, 9})) << "all 130 characters are the ID";
  EXPECT_EQ(ByComponentId(std::wstring(129, L'A')), kNoMatch);
}

TEST(ClassKey, MayHoldAComponentIdOfHalfACharacter) {
  const auto run = simulator::Use(MachineWithKey(
      {{"ComponentId", {.raw = simulator::Bytes{{'p'}}}}, {"*PhysicalMediaType", {.type = 4, .number = 9}}}));
  EXPECT_EQ(ByComponentId(), (Answer{1, 9})) << "the zeroed buffer completes it to p";
}

TEST(ClassKey, EndsItsComponentIdAtTheFirstZero) {
  const auto run =
      simulator::Use(MachineWithKey({{"ComponentId", {.raw = simulator::Bytes{{'p', 0, 0, 0, 'x', 0}}}},
                                     {"*PhysicalMediaType", {.type = 4, .number = 9}}}));
  EXPECT_EQ(ByComponentId(), (Answer{1, 9}));
}

TEST(ClassKey, LeavesTheMediumAloneWhenAnyCallThrows) {
  for (int call = 0; call < 3; ++call) {
    auto run = simulator::Use(MachineWithComponentId("pci"));
    run.Inject(Fault::kThrow, call);
    EXPECT_EQ(ByComponentId(), kNoMatch) << call;
    EXPECT_EQ(run.OpenHandles(), 0) << call;
  }
}

TEST(ClassKey, GivesItsMediumEvenIfItCannotBeClosed) {
  auto run = simulator::Use(MachineWithComponentId("pci"));
  run.Inject(Fault::kFail, 3);
  EXPECT_EQ(ByComponentId(), (Answer{1, 9}));
}

}  // namespace
