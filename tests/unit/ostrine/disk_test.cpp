// The class of disks through the exported functions, on whatever machine the tests run on.
#include "ostrine/common/disk.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/ostrine/device_record.h"
#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

using velmora::hal::DeviceRecord;

constexpr unsigned int kDiskClass = 7;
constexpr unsigned int kTextIds[] = {0, 1, 2, 9};
constexpr unsigned int kLongIds[] = {3, 4, 5, 6};

std::uint32_t Count() {
  std::uint32_t count = 0;
  unsigned int returned = 0;
  EXPECT_NE(HalQueryInformation(kDiskClass, nullptr, 7, &count, sizeof count, &returned), 0);
  EXPECT_EQ(returned, sizeof count);
  return count;
}

std::uint64_t Long(DeviceRecord& record, unsigned int id) {
  std::uint64_t number = 0;
  HalQueryInformation(kDiskClass, &record, id, &number, sizeof number, nullptr);
  return number;
}

TEST(DiskClass, GivesATableWithARecordForEachDisk) {
  void* table = nullptr;
  ASSERT_NE(HalInit(kDiskClass, &table), 0);
  ASSERT_NE(table, nullptr);
  std::uint32_t count = 0;
  std::memcpy(&count, static_cast<char*>(table) + 4, sizeof count);
  EXPECT_EQ(count, Count());
  for (std::uint32_t i = 0; i < count; ++i) {
    DeviceRecord record;
    std::memcpy(&record, static_cast<char*>(table) + 8 + 16 * std::size_t{i}, sizeof record);
    EXPECT_EQ(record.handle, 0u);
    EXPECT_EQ(record.number, i);
    EXPECT_EQ(record.zero, 0u);
  }
  std::free(table);
}

TEST(DiskClass, IsPreparedAsOftenAsAskedAndWithoutATableToo) {
  EXPECT_NE(HalInit(kDiskClass, nullptr), 0);
  void* first = nullptr;
  void* second = nullptr;
  EXPECT_NE(HalInit(kDiskClass, &first), 0);
  EXPECT_NE(HalInit(kDiskClass, &second), 0);
  EXPECT_NE(first, second);
  std::free(first);
  std::free(second);
}

TEST(DiskClass, OpensEachDiskAndNoneBeyond) {
  const std::uint32_t count = Count();
  for (std::uint32_t i = 0; i < count; ++i) {
    DeviceRecord record{.number = i};
    ASSERT_NE(HalOpenDevice(kDiskClass, &record), 0) << i;
    EXPECT_NE(record.handle, 0u);
    EXPECT_EQ(record.number, i);
    EXPECT_NE(HalCloseDevice(kDiskClass, &record), 0);
    EXPECT_EQ(record.handle, 0u);
  }
  for (const std::uint32_t number : {count, count + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    DeviceRecord record{.number = number};
    EXPECT_EQ(HalOpenDevice(kDiskClass, &record), 0) << number;
    EXPECT_EQ(record.handle, 0u);
  }
}

TEST(DiskClass, NeitherOpensARecordThatIsOpenNorClosesOneThatIsNot) {
  DeviceRecord closed{.number = 0};
  EXPECT_EQ(HalCloseDevice(kDiskClass, &closed), 0);
  EXPECT_EQ(HalOpenDevice(kDiskClass, nullptr), 0);
  if (Count() == 0) GTEST_SKIP() << "this machine has no disk";
  DeviceRecord record{.number = 0};
  ASSERT_NE(HalOpenDevice(kDiskClass, &record), 0);
  EXPECT_EQ(HalOpenDevice(kDiskClass, &record), 0);
  EXPECT_NE(HalCloseDevice(kDiskClass, &record), 0);
  EXPECT_EQ(HalCloseDevice(kDiskClass, &record), 0);
}

TEST(DiskClass, AnswersNothingForARecordThatIsNotOpen) {
  std::array<char, 520> buffer{};
  DeviceRecord record{.number = 0};
  for (unsigned int id = 0; id < 16; ++id) {
    EXPECT_EQ(HalQueryInformation(kDiskClass, &record, id, buffer.data(), buffer.size(), nullptr), 0) << id;
    if (id == 7) continue;
    EXPECT_EQ(HalQueryInformation(kDiskClass, nullptr, id, buffer.data(), buffer.size(), nullptr), 0) << id;
  }
}

TEST(DiskClass, AnswersEveryFactOfEveryDiskInItsForm) {
  const std::uint32_t count = Count();
  for (std::uint32_t i = 0; i < count; ++i) {
    SCOPED_TRACE(i);
    DeviceRecord record{.number = i};
    ASSERT_NE(HalOpenDevice(kDiskClass, &record), 0);
    for (const unsigned int id : kTextIds) {
      std::array<char, 520> text{};
      unsigned int returned = 0;
      const auto expected = ReadDiskText(record.handle, static_cast<DiskFact>(id));
      EXPECT_EQ(HalQueryInformation(kDiskClass, &record, id, text.data(), text.size(), &returned) != 0,
                expected.has_value());
      std::string narrow;
      for (std::size_t at = 0; text[at] != 0; at += 2) narrow.push_back(text[at]);
      EXPECT_EQ(narrow, expected.value_or(""));
      EXPECT_EQ(returned, expected ? 2 * expected->size() + 2 : 0);
    }
    EXPECT_EQ(Long(record, 5), Long(record, 3));
    EXPECT_EQ(Long(record, 6), Long(record, 3) / 1'000'000);
    for (const unsigned int id : kLongIds) {
      std::uint32_t narrow = 0;
      EXPECT_EQ(HalQueryInformation(kDiskClass, &record, id, &narrow, sizeof narrow, nullptr), 0) << id;
    }
    std::uint32_t flag = 0xFFFFFFFF;
    if (HalQueryInformation(kDiskClass, &record, 10, &flag, sizeof flag, nullptr) != 0) {
      EXPECT_LE(flag, 1u);
    }
    for (const unsigned int id : {7u, 8u, 11u, 0xFFFFFFFFu}) {
      EXPECT_EQ(HalQueryInformation(kDiskClass, &record, id, &flag, sizeof flag, nullptr), 0) << id;
    }
    EXPECT_NE(HalCloseDevice(kDiskClass, &record), 0);
  }
}

TEST(DiskClass, TakesARecordAtAnyAddress) {
  if (Count() == 0) GTEST_SKIP() << "this machine has no disk";
  std::array<char, 24> bytes{};
  EXPECT_NE(HalOpenDevice(kDiskClass, bytes.data() + 3), 0);
  std::uint64_t total = 0;
  EXPECT_NE(HalQueryInformation(kDiskClass, bytes.data() + 3, 3, &total, sizeof total, nullptr), 0);
  EXPECT_NE(HalCloseDevice(kDiskClass, bytes.data() + 3), 0);
}

}  // namespace
}  // namespace ostrine
