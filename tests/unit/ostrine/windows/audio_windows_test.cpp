// Audio devices that a test makes up.
#include <gtest/gtest.h>

#include "platform/ostrine/setup_class.h"
#include "tests/support/windows/fake_device.h"
#include "tests/unit/ostrine/audio_questions.h"

namespace {

using windows_support::InstalledDevice;

TEST(AudioOnWindows, AreCountedAnewEachTime) {
  const auto before = ostrine::test::AudioDevicesByQuery();
  ASSERT_TRUE(before);
  {
    const InstalledDevice codec({.setup_class = velmora::setup_class::kMedia,
                                 .class_name = L"MEDIA",
                                 .instance_id = L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257\\4&55555555&0&0001",
                                 .description = L"High Definition Audio Device",
                                 .hardware_ids = {L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257"}});
    EXPECT_EQ(ostrine::test::AudioDevicesByQuery(), *before + 1);
    EXPECT_EQ(ostrine::test::AudioDevicesInTable(), *before + 1);
  }
  EXPECT_EQ(ostrine::test::AudioDevicesByQuery(), before);
}

}  // namespace
