#include "velmora/keyboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ostrine/setup_class.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/machines.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::EndsWith;
using velmora::testing::CapturedLog;
using velmora::testing::MachineWithDevices;
using velmora::testing::NoLogger;

constexpr const char* kExternal = "HID\\VID_046D&PID_C31C&REV_6402&MI_00";
constexpr const char* kBuiltIn = "ACPI\\LEN0071";

simulator::Device Keyboard(const char* hardware_id, const char* display_name) {
  return {.setup_class = "Keyboard",
          .hardware_ids = {hardware_id},
          .description = "never looked at",
          .display_name = display_name};
}

std::wstring NameOn(std::vector<simulator::Device> keyboards) {
  const auto run = simulator::Use(MachineWithDevices(std::move(keyboards)));
  return CKeyBoard().GetKeyBoardName();
}

TEST(KeyBoard, IsLookedForInTheSystemsKeyboardClass) {
  EXPECT_EQ(simulator::GuidText(velmora::setup_class::kKeyboard), "{4D36E96B-E325-11CE-BFC1-08002BE10318}");
}

TEST(KeyBoard, IsTheBuiltInOneAlsoBehindAnExternalOne) {
  EXPECT_EQ(NameOn({Keyboard(kExternal, "External"), Keyboard(kBuiltIn, "Built in")}), L"Built in");
}

TEST(KeyBoard, IsTheFirstBuiltInOneWithAName) {
  EXPECT_EQ(NameOn({Keyboard("ACPI\\A", ""), Keyboard("ACPI\\B", "Second"), Keyboard("ACPI\\C", "Third")}),
            L"Second");
}

TEST(KeyBoard, IsTheExternalOneWhenTheBuiltInOneHasNoName) {
  EXPECT_EQ(NameOn({Keyboard(kExternal, "External"), Keyboard(kBuiltIn, "")}), L"External");
}

TEST(KeyBoard, IsTheFirstOfAllWithoutABuiltInOneAlsoWithoutAName) {
  EXPECT_EQ(NameOn({Keyboard(kExternal, "First"), Keyboard("USB\\X", "Second")}), L"First");
  EXPECT_EQ(NameOn({Keyboard(kExternal, ""), Keyboard("USB\\X", "Second")}), L"");
  EXPECT_EQ(NameOn({Keyboard(kBuiltIn, ""), Keyboard(kExternal, "External")}), L"");
}

TEST(KeyBoard, IsBuiltInByAnIdThatHoldsAcpiAnywhereInAnyLetterCase) {
  const auto external = Keyboard(kExternal, "External");
  EXPECT_EQ(NameOn({external, Keyboard("acpi\\len0071", "small")}), L"small");
  EXPECT_EQ(NameOn({external, Keyboard("XAcPi\\LEN0071", "inside")}), L"inside");
  EXPECT_EQ(NameOn({external, Keyboard("ACPILEN0071", "without a separator")}), L"External");
  EXPECT_EQ(NameOn({external, Keyboard("ACPI/LEN0071", "with another one")}), L"External");
}

TEST(KeyBoard, AsksForTheDisplayNameOfEachBuiltInOneThenOfTheFirstOfAll) {
  const auto run = simulator::Use(MachineWithDevices(
      {Keyboard("HID\\A", ""), Keyboard("ACPI\\B", ""), Keyboard("HID\\C", ""), Keyboard("ACPI\\D", "")}));
  CKeyBoard().GetKeyBoardName();
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Keyboard)",
                                       "GetDeviceStrInfoByHardwareID(ACPI\\B, Keyboard, 7)",
                                       "GetDeviceStrInfoByHardwareID(ACPI\\D, Keyboard, 7)",
                                       "GetDeviceStrInfoByHardwareID(HID\\A, Keyboard, 7)"));
}

TEST(KeyBoard, AsksNoFurtherThanTheFirstName) {
  const auto run = simulator::Use(MachineWithDevices({Keyboard("ACPI\\B", "B"), Keyboard("ACPI\\D", "D")}));
  CKeyBoard().GetKeyBoardName();
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Keyboard)",
                                       "GetDeviceStrInfoByHardwareID(ACPI\\B, Keyboard, 7)"));
}

TEST(KeyBoard, IsLoggedByItsName) {
  const auto run = simulator::Use(MachineWithDevices({Keyboard(kBuiltIn, "Tastatur f\xC3\xBCr alle")}));
  CapturedLog log;
  CKeyBoard().GetKeyBoardName();
  ASSERT_THAT(log.Texts(),
              ElementsAre("wszDescription=Tastatur f\xC3\xBCr alle(CKeyBoard::GetKeyBoardName)"));
  EXPECT_EQ(log.Lines().front().level, "DEBUG");
  EXPECT_THAT(log.Lines().front().file, EndsWith("src/devices/keyboard.cpp"));
  EXPECT_EQ(log.Lines().front().function, "CKeyBoard::GetKeyBoardName");
  log.DisableDebug();
  EXPECT_EQ(CKeyBoard().GetKeyBoardName(), L"Tastatur f\u00FCr alle");
  EXPECT_EQ(log.Lines().size(), 1U);
}

TEST(KeyBoard, IsEmptyAndLoggedSoWhereThereIsNone) {
  const auto run = simulator::Use(MachineWithDevices({}));
  const CapturedLog log;
  EXPECT_EQ(CKeyBoard().GetKeyBoardName(), L"");
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Keyboard)"));
  EXPECT_THAT(log.Texts(), ElementsAre("wszDescription=(CKeyBoard::GetKeyBoardName)"));
}

TEST(KeyBoard, IsEmptyWhenAskingThrows) {
  const NoLogger none;
  for (const int call : {0, 1}) {
    auto run = simulator::Use(MachineWithDevices({Keyboard(kBuiltIn, "Built in")}));
    run.Inject(Fault::kThrow, call);
    EXPECT_EQ(CKeyBoard().GetKeyBoardName(), L"");
  }
}

}  // namespace
