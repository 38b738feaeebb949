/// What the contract tests do not ask of the system's devices.
#include "platform/ostrine/deviceinformation.h"

#include <windows.h>

#include <cfgmgr32.h>
#include <devpkey.h>
#include <devpropdef.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ostrine/windows/property_keys.h"
#include "platform/ostrine/setup_class.h"
#include "tests/support/windows/fake_device.h"
#include "tests/support/windows/resources.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using windows_support::FakeDevice;
using windows_support::InstalledDevice;
namespace setup_class = velmora::setup_class;

FakeDevice FingerprintReader() {
  return {.setup_class = setup_class::kBiometric,
          .class_name = L"Biometric",
          .instance_id = L"USB\\VID_06CB&PID_00BD\\A1B2C3D4E5F6",
          .description = L"Fingerprint Sensor",
          .hardware_ids = {L"USB\\VID_06CB&PID_00BD&REV_0000", L"USB\\VID_06CB&PID_00BD"}};
}

TEST(PropertyKeys, AreTheSystems) {
  const auto same = [](const DEVPROPKEY& left, const DEVPROPKEY& right) {
    return left.pid == right.pid && IsEqualGUID(left.fmtid, right.fmtid);
  };
  EXPECT_TRUE(same(ostrine::property_key::kName, DEVPKEY_NAME));
  EXPECT_TRUE(same(ostrine::property_key::kProblemCode, DEVPKEY_Device_ProblemCode));
  EXPECT_TRUE(same(ostrine::property_key::kInstallDate, DEVPKEY_Device_InstallDate));
  EXPECT_TRUE(same(ostrine::property_key::kDriverVersion, DEVPKEY_Device_DriverVersion));
  EXPECT_TRUE(same(ostrine::property_key::kDriverInfPath, DEVPKEY_Device_DriverInfPath));
}

TEST(DeviceInformationWindows, GivesTheProblemCodeAsTextToo) {
  auto reader = FingerprintReader();
  reader.problem_code = 10;
  const InstalledDevice installed(reader);
  EXPECT_EQ(CDeviceInformention().GetDeviceStrInfoByDesc(L"Fingerprint Sensor", setup_class::kBiometric,
                                                         PROP_PROBLEM_CODE),
            L"10");
}

TEST(DeviceInformationWindows, RemovesTheDeviceWithTheHardwareIdAndNotItsTwin) {
  const InstalledDevice healthy(FingerprintReader());
  auto twin = FingerprintReader();
  twin.instance_id = L"USB\\VID_138A&PID_0097\\B1B2C3D4E5F6";
  twin.hardware_ids = {L"USB\\VID_138A&PID_0097&REV_0164"};
  twin.problem_code = 43;
  const InstalledDevice failing(twin);

  EXPECT_EQ(CDeviceInformention().UnstallDeviceByHardwareID(twin.hardware_ids.front(), setup_class::kNet),
            0xE000020Bu)
      << "it is of another class";
  EXPECT_EQ(
      CDeviceInformention().UnstallDeviceByHardwareID(twin.hardware_ids.front(), setup_class::kBiometric),
      0u);
  EXPECT_FALSE(failing.Exists());
  EXPECT_TRUE(healthy.Exists());
}

TEST(DeviceInformationWindows, ListsForUnknownOnlyWhatWaitsForADriver) {
  auto reader = FingerprintReader();
  reader.problem_code = 43;
  {
    const InstalledDevice failing(reader);
    EXPECT_THAT(CDeviceInformention().GetUnknownDeviceHardID(), Not(Contains(reader.hardware_ids.front())));
  }
  reader.problem_code = 28;
  const InstalledDevice unknown(reader);
  EXPECT_THAT(CDeviceInformention().GetUnknownDeviceHardID(), Contains(reader.hardware_ids.front()));
}

TEST(DeviceInformationWindows, ReadsLongTextsWhole) {
  auto reader = FingerprintReader();
  reader.description = std::wstring(5000, L'd');
  for (int i = 0; i < 200; ++i) reader.hardware_ids.push_back(L"USB\\VID_06CB&REV_" + std::to_wstring(i));
  const InstalledDevice installed(reader);
  CDeviceInformention information;
  EXPECT_THAT(information.GetDeviceDesc(setup_class::kBiometric), ElementsAre(reader.description));
  EXPECT_EQ(information.GetDeviceStrInfoByHardwareID(L"usb\\vid_06cb&rev_199", setup_class::kBiometric,
                                                     PROP_HARDWARE_ID),
            reader.hardware_ids.front());
}

TEST(DeviceInformationWindows, KeepsNothingOfManyLookUps) {
  const InstalledDevice installed(FingerprintReader());
  const auto ask = [](int times) {
    for (int i = 0; i < times; ++i) {
      EXPECT_THAT(CDeviceInformention().GetDeviceDesc(setup_class::kBiometric), Not(IsEmpty()));
      EXPECT_EQ(CDeviceInformention().GetDeviceStrInfoByDesc(L"None", setup_class::kBiometric, PROP_INF),
                L"");
    }
  };
  constexpr std::size_t kTolerance = 4096;
  ask(20);
  const std::size_t bytes = windows_support::HeapBytes();
  const std::size_t handles = windows_support::HandleCount();
  ask(40);
  EXPECT_EQ(windows_support::HandleCount(), handles);
  EXPECT_LE(windows_support::HeapBytes(), bytes + kTolerance);
}

}  // namespace
