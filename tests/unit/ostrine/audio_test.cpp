// The class of audio devices through the exported functions, on whatever machine the tests run on.
#include "ostrine/common/audio.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/hal.h"
#include "platform/ostrine/setup_class.h"
#include "tests/unit/ostrine/audio_questions.h"

namespace ostrine {
namespace {

using test::kAudioClass;

TEST(AudioClass, CountsTheDevicesOfTheMediaClassInItsTableAndByItsQuery) {
  const auto devices = CDeviceInformention().GetDeviceDesc(velmora::setup_class::kMedia);
  EXPECT_EQ(test::AudioDevicesInTable(), devices.size());
  EXPECT_EQ(test::AudioDevicesByQuery(), devices.size());
  EXPECT_EQ(CountAudioDevices(), devices.size());
}

TEST(AudioClass, GivesATableAsOftenAsAskedAndNeedsNone) {
  void* first = nullptr;
  void* second = nullptr;
  EXPECT_NE(HalInit(kAudioClass, &first), 0);
  EXPECT_NE(HalInit(kAudioClass, &second), 0);
  EXPECT_NE(first, second);
  std::free(first);
  std::free(second);
  EXPECT_NE(HalInit(kAudioClass, nullptr), 0);
}

TEST(AudioClass, SaysHowManyBytesItsAnswerHas) {
  std::uint32_t count = 0;
  unsigned int returned = 0;
  EXPECT_NE(HalQueryInformation(kAudioClass, nullptr, 0, &count, sizeof count, &returned), 0);
  EXPECT_EQ(returned, 4U);
}

TEST(AudioClass, FailsForIdsThatItDoesNotHaveForADeviceAndForABufferThatIsTooSmall) {
  std::uint32_t count = 77;
  for (const unsigned int id : {1U, 7U, 0xFFFFFFFFU}) {
    EXPECT_EQ(HalQueryInformation(kAudioClass, nullptr, id, &count, sizeof count, nullptr), 0) << id;
  }
  EXPECT_EQ(HalQueryInformation(kAudioClass, &count, 0, &count, sizeof count, nullptr), 0);
  EXPECT_EQ(HalQueryInformation(kAudioClass, nullptr, 0, &count, 3, nullptr), 0);
  EXPECT_EQ(HalQueryInformation(kAudioClass, nullptr, 0, nullptr, 4, nullptr), 0);
  EXPECT_EQ(count, 77U);
}

TEST(AudioClass, HasNothingToOpenCloseOrSet) {
  std::uint64_t record[2] = {};
  EXPECT_EQ(HalOpenDevice(kAudioClass, record), 0);
  EXPECT_EQ(HalCloseDevice(kAudioClass, record), 0);
  EXPECT_EQ(HalSetInformation(kAudioClass, nullptr, 0, record, sizeof record, nullptr), 0);
}

}  // namespace
}  // namespace ostrine
