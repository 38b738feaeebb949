#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "devices/repairable_class.h"
#include "platform/ostrine/setup_class.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "velmora/devicedriver.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::RepairableClass;
using velmora::testing::CapturedLog;
namespace setup_class = velmora::setup_class;

constexpr unsigned long kNotDone = 0xFFFFFFFF;
constexpr auto kId = L"PCI\\VEN_14C3&DEV_7961";
constexpr std::int64_t kUnitsInSecond = 10'000'000;

stDEVICE_DRIVER_TYPE Kind(std::uint32_t number) { return static_cast<stDEVICE_DRIVER_TYPE>(number); }

simulator::Machine MachineToRepair(simulator::Device device) {
  auto machine = simulator::BlankMachine();
  if (device.hardware_ids.empty()) device.hardware_ids = {"PCI\\VEN_14C3&DEV_7961"};
  machine.devices = {std::move(device)};
  machine.clock.emplace();
  return machine;
}

std::optional<std::string> ClassNameOf(std::uint32_t kind, stDEVICE_DRIVER_TYPE last) {
  const auto found = RepairableClass(Kind(kind), last);
  return found ? std::optional<std::string>(simulator::SetupClassName(*found)) : std::nullopt;
}

TEST(RepairableClass, IsTheSetupClassOfTheKind) {
  EXPECT_EQ(ClassNameOf(0, emDEVICE_USB), "Net");
  EXPECT_EQ(ClassNameOf(1, emDEVICE_USB), "Bluetooth");
  EXPECT_EQ(ClassNameOf(3, emDEVICE_USB), "Biometric");
  EXPECT_EQ(ClassNameOf(5, emDEVICE_USB), "Media");
  EXPECT_EQ(ClassNameOf(7, emDEVICE_USB), "Display");
  EXPECT_EQ(ClassNameOf(9, emDEVICE_USB), "USB");
}

TEST(RepairableClass, IsNoneForTheGapsTheKeyboardAndWhatIsBeyondTheLastKind) {
  for (const std::uint32_t kind : {2U, 4U, 6U, 8U, 10U, 11U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_FALSE(RepairableClass(Kind(kind), emDEVICE_USB)) << kind;
  EXPECT_FALSE(RepairableClass(emDEVICE_USB, emDEVICE_DISPLAY));
  EXPECT_TRUE(RepairableClass(emDEVICE_DISPLAY, emDEVICE_DISPLAY));
}

TEST(DriverErrorCode, IsTheProblemCodeOfTheDeviceInTheClassOfItsKind) {
  const auto run = simulator::Use(MachineToRepair({.setup_class = "Media", .problem_code = 31}));
  EXPECT_EQ(CDeviceDriver().GetDeviceDriverErrorCode(kId, emDEVICE_AUDIO), 31U);
  EXPECT_EQ(CDeviceDriver().GetDeviceDriverErrorCode(kId, emDEVICE_WIRELESS), 45U)
      << "it is not in that class";
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceULONGInfoByHardwareID(PCI\\VEN_14C3&DEV_7961, Media, 10)",
                                       "GetDeviceULONGInfoByHardwareID(PCI\\VEN_14C3&DEV_7961, Net, 10)"));
}

TEST(DriverErrorCode, IsTheSentinelForAKindThatIsNotSupportedAndNobodyIsAsked) {
  const auto run = simulator::Use(simulator::BlankMachine());
  for (const std::uint32_t kind : {2U, 4U, 6U, 8U, 9U, 10U, 0xFFFFFFFFU})
    EXPECT_EQ(CDeviceDriver().GetDeviceDriverErrorCode(kId, Kind(kind)), kNotDone) << kind;
  EXPECT_EQ(run.Calls(), 0);
}

TEST(DriverUninstallation, TakesTheDeviceOutOfTheClassOfEverySupportedKind) {
  const std::pair<std::uint32_t, const char*> kinds[] = {{0, "Net"},   {1, "Bluetooth"}, {3, "Biometric"},
                                                         {5, "Media"}, {7, "Display"},   {9, "USB"}};
  for (const auto& [kind, name] : kinds) {
    auto run = simulator::Use(MachineToRepair({.setup_class = name}));
    EXPECT_EQ(CDeviceDriver().UnInstallDeviceDriver(kId, Kind(kind)), 0U) << name;
    EXPECT_FALSE(simulator::IsPresent(run.machine().devices->front())) << name;
    EXPECT_THAT(run.Trace(),
                ElementsAre(std::string("UnstallDeviceByHardwareID(PCI\\VEN_14C3&DEV_7961, ") + name + ")"))
        << "and rescans nothing";
  }
}

TEST(DriverUninstallation, IsNotDoneForAKindThatIsNotSupported) {
  const auto run = simulator::Use(simulator::BlankMachine());
  for (const std::uint32_t kind : {2U, 4U, 6U, 8U, 10U, 0xFFFFFFFFU})
    EXPECT_EQ(CDeviceDriver().UnInstallDeviceDriver(kId, Kind(kind)), kNotDone) << kind;
  EXPECT_EQ(run.Calls(), 0);
}

TEST(DriverUninstallation, PassesTheSystemsErrorOn) {
  const auto run = simulator::Use(MachineToRepair({.setup_class = "Net", .removal_error = 5}));
  EXPECT_EQ(CDeviceDriver().UnInstallDeviceDriver(kId, emDEVICE_WIRELESS), 5U);
  EXPECT_EQ(CDeviceDriver().UnInstallDeviceDriver(L"PCI\\NOSUCH", emDEVICE_WIRELESS), 0xE000020BU);
}

TEST(DriverReset, IsDoneOnceTheProblemCodeIsZero) {
  auto run = simulator::Use(MachineToRepair(
      {.setup_class = "Net", .problem_code = 10, .after_removal = {.returns_after = 1, .heals_after = 3}}));
  EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS), 0U);
  EXPECT_EQ(run.machine().clock->now, 3 * kUnitsInSecond);
  EXPECT_THAT(run.Trace(), ElementsAre("UnstallDeviceByHardwareID(PCI\\VEN_14C3&DEV_7961, Net)",           //
                                       "CM_Locate_DevNodeW(null, 0)",                                      //
                                       "CM_Reenumerate_DevNode(1, 4)",                                     //
                                       "Sleep(1000)",                                                      //
                                       "GetDeviceULONGInfoByHardwareID(PCI\\VEN_14C3&DEV_7961, Net, 10)",  //
                                       "CM_Locate_DevNodeW(null, 0)",                                      //
                                       "CM_Reenumerate_DevNode(1, 4)",                                     //
                                       "Sleep(1000)",                                                      //
                                       "GetDeviceULONGInfoByHardwareID(PCI\\VEN_14C3&DEV_7961, Net, 10)",  //
                                       "CM_Locate_DevNodeW(null, 0)",                                      //
                                       "CM_Reenumerate_DevNode(1, 4)",                                     //
                                       "Sleep(1000)",                                                      //
                                       "GetDeviceULONGInfoByHardwareID(PCI\\VEN_14C3&DEV_7961, Net, 10)"));
}

TEST(DriverReset, WaitsThroughTenRoundsForADeviceThatNeverHealsAndSaysSo) {
  auto run = simulator::Use(MachineToRepair({.setup_class = "Net", .problem_code = 10}));
  EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS), kNotDone);
  EXPECT_EQ(run.Calls("UnstallDeviceByHardwareID"), 1);
  EXPECT_EQ(run.Calls("CM_Reenumerate_DevNode"), 10);
  EXPECT_EQ(run.Calls("Sleep"), 10);
  EXPECT_EQ(run.Calls("GetDeviceULONGInfoByHardwareID"), 10);
  EXPECT_EQ(run.machine().clock->now, 10 * kUnitsInSecond);
}

TEST(DriverReset, IsDoneWhenTheTenthLookIsTheFirstGoodOne) {
  const auto heals_after = [](std::uint32_t rescans) {
    return simulator::Use(MachineToRepair({.setup_class = "Net",
                                           .problem_code = 10,
                                           .after_removal = {.returns_after = 1, .heals_after = rescans}}));
  };
  {
    const auto run = heals_after(10);
    EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS), 0U);
  }
  const auto run = heals_after(11);
  EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS), kNotDone);
}

TEST(DriverReset, CountsADeviceThatDoesNotComeBackAsFailing) {
  const auto run =
      simulator::Use(MachineToRepair({.setup_class = "Net", .after_removal = {.returns = false}}));
  EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS), kNotDone);
  EXPECT_EQ(run.Calls("Sleep"), 10);
}

TEST(DriverReset, PassesTheErrorOfTheUninstallationOnAndDoesNothingElse) {
  const auto run = simulator::Use(MachineToRepair({.setup_class = "Display", .removal_error = 5}));
  EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_DISPLAY), 5U);
  EXPECT_EQ(run.Calls(), 1);
}

TEST(DriverReset, IsNotDoneForAKindThatIsNotSupported) {
  const auto run = simulator::Use(simulator::BlankMachine());
  for (const std::uint32_t kind : {2U, 4U, 6U, 8U, 9U, 10U, 0xFFFFFFFFU})
    EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, Kind(kind)), kNotDone) << kind;
  EXPECT_EQ(run.Calls(), 0);
}

TEST(DriverReset, GoesOnWhenARescanFails) {
  auto run = simulator::Use(MachineToRepair(
      {.setup_class = "Net", .problem_code = 10, .after_removal = {.returns_after = 1, .heals_after = 1}}));
  run.Inject(Fault::kFail, 1);  // the first look for the root of the tree
  EXPECT_EQ(CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS), 0U);
  EXPECT_EQ(run.Calls("Sleep"), 2);
}

TEST(DriverReset, TellsEachStepAtDebugLevel) {
  const auto run = simulator::Use(MachineToRepair(
      {.setup_class = "Net", .problem_code = 10, .after_removal = {.returns_after = 1, .heals_after = 2}}));
  const CapturedLog log;
  CDeviceDriver().ResetDeviceDriver(kId, emDEVICE_WIRELESS);
  EXPECT_THAT(log.Texts(), ElementsAre("CDeviceDriver::ResetDeviceDriver: hardid=PCI\\VEN_14C3&DEV_7961, "
                                       "UnstallDevice=0(CDeviceDriver::ResetDeviceDriver)",
                                       "CDeviceDriver::ResetDeviceDriver: round=1, "
                                       "ErrorCode=10(CDeviceDriver::ResetDeviceDriver)",
                                       "CDeviceDriver::ResetDeviceDriver: round=2, "
                                       "ErrorCode=0(CDeviceDriver::ResetDeviceDriver)"));
}

TEST(Rescan, AsksForTheRootOfTheTreeAndHasItEnumeratedAsynchronously) {
  const auto run = simulator::Use(MachineToRepair({.setup_class = "Net"}));
  const CapturedLog log;
  CDeviceDriver().ScanForHardwareChange();
  EXPECT_THAT(run.Trace(), ElementsAre("CM_Locate_DevNodeW(null, 0)", "CM_Reenumerate_DevNode(1, 4)"));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(Rescan, LogsThatTheRootWasNotFoundAndStops) {
  auto run = simulator::Use(MachineToRepair({.setup_class = "Net"}));
  run.Inject(Fault::kFail, 0);
  const CapturedLog log;
  CDeviceDriver().ScanForHardwareChange();
  ASSERT_EQ(log.Lines().size(), 1U);
  EXPECT_EQ(log.Lines()[0].level, "ERROR");
  EXPECT_EQ(log.Lines()[0].text,
            "CDeviceDriver::ScanForHardwareChange CM_Locate_DevNode failed and error code is :19"
            "(CDeviceDriver::ScanForHardwareChange)");
  EXPECT_EQ(log.Lines()[0].file, "src/devices/devicedriver_repair.cpp");
  EXPECT_EQ(log.Lines()[0].function, "CDeviceDriver::ScanForHardwareChange");
  EXPECT_EQ(run.Calls("CM_Reenumerate_DevNode"), 0);
}

TEST(Rescan, LogsThatTheEnumerationFailed) {
  auto run = simulator::Use(MachineToRepair({.setup_class = "Net"}));
  run.Inject(Fault::kFail, 1);
  const CapturedLog log;
  CDeviceDriver().ScanForHardwareChange();
  ASSERT_EQ(log.Lines().size(), 1U);
  EXPECT_EQ(log.Lines()[0].level, "ERROR");
  EXPECT_EQ(log.Lines()[0].text,
            "CDeviceDriver::ScanForHardwareChange CM_Reenumerate_DevNode failed and error code is :19"
            "(CDeviceDriver::ScanForHardwareChange)");
}

TEST(UnknownHardware, IsListedAsTheSystemListsIt) {
  auto machine = MachineToRepair({.setup_class = "Unknown", .problem_code = 28, .unknown = true});
  machine.devices->push_back({.setup_class = "Net", .hardware_ids = {"PCI\\KNOWN"}, .problem_code = 10});
  machine.devices->push_back({.setup_class = "Unknown", .hardware_ids = {"ACPI\\B", "*B"}, .unknown = true});
  auto run = simulator::Use(machine);
  EXPECT_THAT(CDeviceDriver().GetUnkownHardId(), ElementsAre(kId, L"ACPI\\B"));
  run.Inject(Fault::kThrow, 1);
  EXPECT_THAT(CDeviceDriver().GetUnkownHardId(), IsEmpty());
}

}  // namespace
