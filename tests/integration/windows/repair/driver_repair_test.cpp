/// The repair of drivers from the exported class down to the system's device tree, with made-up devices in it
/// and a made-up configuration manager.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <stdexcept>

#include "platform/ostrine/setup_class.h"
#include "tests/integration/windows/fakes/fake_cfgmgr32.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/windows/fake_device.h"
#include "velmora/devicedriver.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using velmora::testing::CapturedLog;
using windows_support::FakeDevice;
using windows_support::InstalledDevice;
namespace setup_class = velmora::setup_class;

constexpr unsigned long kAbsent = 45;
constexpr unsigned long kNoSuchDevice = 0xE000020B;

/// A function of the made-up library.
template <class Function>
Function* Fake(const char* name) {
  const HMODULE module = GetModuleHandleW(L"cfgmgr32.dll");
  auto* const function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  if (function == nullptr) throw std::runtime_error("this is the system's own library, not the made-up one");
  return function;
}

void Script(CONFIGRET locate, CONFIGRET rescan, void (*hook)() = nullptr) {
  Fake<decltype(ScriptConfigurationManager)>("ScriptConfigurationManager")(locate, rescan, hook);
}
unsigned long Ask(const char* name) { return Fake<unsigned long()>(name)(); }

FakeDevice FailingWireless() {
  return {.setup_class = setup_class::kNet,
          .class_name = L"Net",
          .instance_id = L"PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00\\4&5A2B3C4D&0&00E1",
          .description = L"Wi-Fi 6 Wireless LAN Card",
          .hardware_ids = {L"PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00", L"PCI\\VEN_14C3&DEV_7961"},
          .manufacturer = L"An Adapter Maker",
          .service = L"mtkwlex",
          .driver_version = L"3.0.1.1112",
          .problem_code = 10};
}

FakeDevice Neighbour() {
  auto device = FailingWireless();
  device.instance_id = L"PCI\\VEN_10EC&DEV_8168\\4&5A2B3C4D&0&00E2";
  device.hardware_ids = {L"PCI\\VEN_10EC&DEV_8168&REV_15"};
  device.description = L"Family Controller";
  device.problem_code.reset();
  return device;
}

const std::wstring& IdOf(const FakeDevice& device) { return device.hardware_ids.front(); }

/// What a made-up rescan brings back, round by round.
struct Return {
  static inline std::optional<InstalledDevice> device;
  static inline int rounds_until_healthy = 1;

  static void OnRescan() {
    auto shape = FailingWireless();
    if (--rounds_until_healthy <= 0) shape.problem_code = 0;
    device.reset();
    device.emplace(shape);
  }
};

class DriverRepairOnWindows : public testing::Test {
 protected:
  DriverRepairOnWindows() { Script(CR_SUCCESS, CR_SUCCESS); }
  ~DriverRepairOnWindows() override {
    Script(CR_SUCCESS, CR_SUCCESS);
    Return::device.reset();
  }

  CDeviceDriver drivers_;
};

/// The failing device with this instance ID, if it is listed.
std::optional<stErrDriverInfo> FindFailing(const std::string& device_id) {
  CDeviceDriver drivers;
  const int count = drivers.GetErrDeviceDriverCount();
  for (int i = 0; i < count; ++i) {
    auto info = drivers.GetErrDriverInfoByIndex(i);
    if (info.strDeviceID == device_id) return info;
  }
  return std::nullopt;
}

TEST_F(DriverRepairOnWindows, ListsADeviceWithAProblemAmongTheFailingWithAllItsFields) {
  const InstalledDevice device(FailingWireless());
  const InstalledDevice neighbour(Neighbour());
  const auto info = FindFailing("PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00\\4&5A2B3C4D&0&00E1");
  ASSERT_TRUE(info);
  EXPECT_EQ(info->strCaption, "Wi-Fi 6 Wireless LAN Card");
  EXPECT_STRCASEEQ(info->strClassGUID.c_str(), "{4D36E972-E325-11CE-BFC1-08002BE10318}");
  EXPECT_EQ(info->strService, "mtkwlex");
  EXPECT_EQ(info->strStatus, "Error");
  EXPECT_EQ(info->strManufacture, "An Adapter Maker");
  EXPECT_EQ(info->uErrorCode, 10U);
  EXPECT_FALSE(FindFailing("PCI\\VEN_10EC&DEV_8168\\4&5A2B3C4D&0&00E2")) << "it works";
}

TEST_F(DriverRepairOnWindows, UninstallsTheDeviceThatIsNamedAndNoOther) {
  const InstalledDevice device(FailingWireless());
  const InstalledDevice neighbour(Neighbour());
  EXPECT_EQ(drivers_.UnInstallDeviceDriver(IdOf(device.Shape()), emDEVICE_DISPLAY), kNoSuchDevice);
  ASSERT_TRUE(device.Exists()) << "it is of another class";
  EXPECT_EQ(drivers_.UnInstallDeviceDriver(IdOf(device.Shape()), emDEVICE_WIRELESS), 0U);
  EXPECT_FALSE(device.Exists());
  EXPECT_TRUE(neighbour.Exists());
  EXPECT_EQ(drivers_.GetDeviceDriverErrorCode(IdOf(device.Shape()), emDEVICE_WIRELESS), kAbsent);
  EXPECT_EQ(Ask("RescanCount"), 0U);
}

TEST_F(DriverRepairOnWindows, ResetsADeviceThatWorksAfterTheSecondRescan) {
  const InstalledDevice device(FailingWireless());
  Return::rounds_until_healthy = 2;
  Script(CR_SUCCESS, CR_SUCCESS, Return::OnRescan);
  EXPECT_EQ(drivers_.ResetDeviceDriver(IdOf(device.Shape()), emDEVICE_WIRELESS), 0U);
  EXPECT_EQ(Ask("LocateCount"), 2U);
  EXPECT_EQ(Ask("RescanCount"), 2U);
  EXPECT_EQ(drivers_.GetDeviceDriverErrorCode(IdOf(device.Shape()), emDEVICE_WIRELESS), 0U);
}

TEST_F(DriverRepairOnWindows, RescansTheRootOfTheTreeAsynchronously) {
  const CapturedLog log;
  drivers_.ScanForHardwareChange();
  EXPECT_EQ(Ask("LocateCount"), 1U);
  EXPECT_EQ(Ask("RescanCount"), 1U);
  EXPECT_EQ(Ask("RescannedNode"), 1U);
  EXPECT_EQ(Ask("RescanFlags"), 4U);
  EXPECT_THAT(log.Texts(), testing::IsEmpty());
}

TEST_F(DriverRepairOnWindows, LogsTheSystemsCodeWhenTheRootIsNotFoundAndRescansNothing) {
  Script(CR_ACCESS_DENIED, CR_SUCCESS);
  const CapturedLog log;
  drivers_.ScanForHardwareChange();
  EXPECT_THAT(
      log.Texts(),
      ElementsAre("CDeviceDriver::ScanForHardwareChange CM_Locate_DevNode failed and error code is :51"
                  "(CDeviceDriver::ScanForHardwareChange)"));
  EXPECT_EQ(Ask("RescanCount"), 0U);
}

TEST_F(DriverRepairOnWindows, LogsTheSystemsCodeWhenTheRescanFails) {
  Script(CR_SUCCESS, CR_NO_SUCH_DEVNODE);
  const CapturedLog log;
  drivers_.ScanForHardwareChange();
  EXPECT_THAT(
      log.Texts(),
      ElementsAre("CDeviceDriver::ScanForHardwareChange CM_Reenumerate_DevNode failed and error code is :13"
                  "(CDeviceDriver::ScanForHardwareChange)"));
}

/// What the report program writes, run as people run it.
std::string OutputOf(const std::string& arguments) {
  std::string path = VELMORA_REPORT;
  std::ranges::replace(path, '/', '\\');
  const std::string command = "\"Z:" + path + "\" " + arguments;
  FILE* const output = _popen(("\"" + command + "\"").c_str(), "rb");
  if (output == nullptr) return "it does not run";
  std::string text;
  std::array<char, 4096> part{};
  while (const std::size_t size = std::fread(part.data(), 1, part.size(), output))
    text.append(part.data(), size);
  _pclose(output);
  return text;
}

TEST_F(DriverRepairOnWindows, IsShownByTheProgramsListOfDevices) {
  const InstalledDevice device(FailingWireless());
  const std::string text = OutputOf("--devices --json");
  for (const char* const part : {R"("hardware_id": "PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00")",
                                 R"("description": "Wi-Fi 6 Wireless LAN Card")",
                                 R"("driver_version": "3.0.1.1112")", R"("problem_code": 10)"})
    EXPECT_THAT(text, HasSubstr(part));
}

TEST_F(DriverRepairOnWindows, IsDoneByTheProgramOnlyWhenItIsConfirmed) {
  const InstalledDevice device(FailingWireless());
  const std::string arguments =
      "--json repair uninstall --kind wireless --id \"PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00\"";
  EXPECT_THAT(OutputOf(arguments), HasSubstr("\"done\": false"));
  EXPECT_TRUE(device.Exists());
  const std::string text = OutputOf(arguments + " --yes");
  EXPECT_THAT(text, HasSubstr("\"problem_code_before\": 10"));
  EXPECT_THAT(text, HasSubstr("\"problem_code_after\": 45"));
  EXPECT_FALSE(device.Exists());
}

}  // namespace
