// Audio devices of made-up machines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "tests/support/linux/fake_machine.h"
#include "tests/unit/ostrine/audio_questions.h"

namespace ostrine {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using velmora::setup_class::kMedia;

TEST(AudioOnLinux, AreTheCodecsOfHdAudioWithTheirVendorsNumberInTheirIds) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  test::BuildLaptop(machine);
  EXPECT_EQ(test::AudioDevicesInTable(), 1U);
  EXPECT_EQ(test::AudioDevicesByQuery(), 1U);
  EXPECT_THAT(CDeviceInformention().GetDeviceHardwareID(kMedia),
              ElementsAre(L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22E6&REV_1000"));
}

TEST(AudioOnLinux, HaveDriversWithoutAnInfFile) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  test::BuildLaptop(machine);
  CDeviceInformention information;
  const auto ids = information.GetDeviceHardwareID(kMedia);
  ASSERT_EQ(ids.size(), 1U);
  EXPECT_EQ(information.GetDeviceStrInfoByHardwareID(ids.front(), kMedia, PROP_INF), L"");
  EXPECT_EQ(information.GetDeviceStrInfoByHardwareID(ids.front(), kMedia, PROP_DRIVER_VERSION), L"6.1.0.18");
}

TEST(AudioOnLinux, CountTheGraphicsCardsCodecTooButNoModem) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  test::BuildLaptop(machine);
  const std::string controller = "pci0000:00/0000:00:1f.3";
  machine.Add("hdaudio", controller + "/hdaudioC0D2",
              {{"modalias", "hdaudio:v80862812r00100000a01"}, {"subsystem_id", "0x80860101"}});
  machine.Add("hdaudio", controller + "/hdaudioC0D1",
              {{"modalias", "hdaudio:v14F12C06r00100000a02"}, {"subsystem_id", "0x80860101"}});
  EXPECT_EQ(test::AudioDevicesByQuery(), 2U);
  EXPECT_THAT(CDeviceInformention().GetDeviceHardwareID(kMedia),
              ElementsAre(StartsWith(L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&"),
                          StartsWith(L"HDAUDIO\\FUNC_01&VEN_8086&DEV_2812&")));
}

TEST(AudioOnLinux, AreNoneOnAnEmptyMachine) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  EXPECT_EQ(test::AudioDevicesInTable(), 0U);
  EXPECT_EQ(test::AudioDevicesByQuery(), 0U);
}

}  // namespace
}  // namespace ostrine
