#include "network/access_point.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "platform/os/wifi.h"
#include "tests/support/naive_network.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using velmora::network::FirstAccessPoint;
using velmora::network::HexDigits;
using velmora::network::NetworkName;
using velmora::os::WlanBssEntry;
using Memory = std::vector<std::uint8_t>;

/// A list of `count` points; of the first its elements are said to lie at `offset` and to be `size` bytes.
/// The list's memory ends with `more` bytes, the first of which is 1, the second 2, and so on.
Memory List(std::uint32_t count, std::uint32_t offset, std::uint32_t size, std::size_t more = 3) {
  WlanBssEntry entry{};
  constexpr std::uint8_t kAddress[] = {0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E};
  std::memcpy(entry.bssid, kAddress, sizeof kAddress);
  entry.ie_offset = offset;
  entry.ie_size = size;
  Memory list(8 + sizeof entry + more);
  std::memcpy(list.data() + 4, &count, sizeof count);
  std::memcpy(list.data() + 8, &entry, sizeof entry);
  for (std::size_t i = 0; i < more; ++i) list[8 + sizeof entry + i] = static_cast<std::uint8_t>(i + 1);
  return list;
}

Memory ElementsIn(const Memory& list) {
  const auto point = FirstAccessPoint(list);
  if (!point) return {0xBA, 0xD0};
  return {point->elements.begin(), point->elements.end()};
}

TEST(FirstAccessPoint, HasTheAddressAndTheElementsOfTheFirstEntry) {
  const Memory list = List(1, 360, 3);
  const auto point = FirstAccessPoint(list);
  ASSERT_TRUE(point);
  EXPECT_THAT(point->address, ElementsAre(0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E));
  EXPECT_THAT(point->elements, ElementsAre(1, 2, 3));
}

TEST(FirstAccessPoint, CountsTheOffsetFromTheEntryAndNotFromTheList) {
  EXPECT_THAT(ElementsIn(List(1, 361, 2)), ElementsAre(2, 3));
}

TEST(FirstAccessPoint, IsThereWhateverElseTheCountClaims) {
  EXPECT_THAT(ElementsIn(List(0xFFFFFFFF, 360, 3)), ElementsAre(1, 2, 3));
}

TEST(FirstAccessPoint, IsNotThereInAListThatCountsNoneOrIsTooShortForIt) {
  EXPECT_FALSE(FirstAccessPoint(List(0, 360, 3)));
  EXPECT_FALSE(FirstAccessPoint({}));
  auto list = List(1, 360, 0, 0);
  EXPECT_TRUE(FirstAccessPoint(list));
  list.pop_back();
  EXPECT_FALSE(FirstAccessPoint(list));
}

TEST(FirstAccessPoint, HasNoElementsWhereTheirBlockPassesTheListsEnd) {
  EXPECT_THAT(ElementsIn(List(1, 360, 4)), IsEmpty());
  EXPECT_THAT(ElementsIn(List(1, 363, 0)), IsEmpty());
  EXPECT_THAT(ElementsIn(List(1, 363, 1)), IsEmpty());
  EXPECT_THAT(ElementsIn(List(1, 364, 0)), IsEmpty());
  EXPECT_THAT(ElementsIn(List(1, 0xFFFFFFFF, 0xFFFFFFFF)), IsEmpty());
}

TEST(FirstAccessPoint, HasNoElementsWhereOffsetAndSizeTogetherWrapAround) {
  EXPECT_THAT(ElementsIn(List(1, 0xFFFFFFF0, 0x20)), IsEmpty());
  EXPECT_THAT(ElementsIn(List(1, 360, 0xFFFFFFFF - 359)), IsEmpty());
}

TEST(FirstAccessPointProperty, IsWhatASlowReadingOfTheListGives) {
  std::mt19937 random(74);
  const auto near = [&](std::uint32_t middle) {
    return middle + static_cast<std::uint32_t>(random() % 9) - 4;
  };
  for (int round = 0; round < 20'000; ++round) {
    auto list = List(static_cast<std::uint32_t>(random() % 3), near(random() % 2 == 0 ? 360 : 0),
                     near(random() % 2 == 0 ? 4 : 0), random() % 6);
    if (random() % 8 == 0) list.resize(random() % list.size());
    const auto point = FirstAccessPoint(list);
    const auto expected = velmora::testing::NaiveFirstPoint(list);
    ASSERT_EQ(point.has_value(), expected.has_value());
    if (!point) continue;
    ASSERT_EQ(Memory(point->address.begin(), point->address.end()), expected->address);
    ASSERT_EQ(Memory(point->elements.begin(), point->elements.end()), expected->elements);
  }
}

TEST(HexDigits, AreTwoUpperCaseDigitsAByteWithoutSeparators) {
  const Memory bytes{0x00, 0x1A, 0x2B, 0xFF, 0x0C};
  EXPECT_EQ(HexDigits(bytes), "001A2BFF0C");
  EXPECT_EQ(HexDigits({}), "");
}

TEST(NetworkName, EndsAtItsFirstZeroOrAtItsThirtySecondByte) {
  std::uint8_t bytes[32] = {'C', 'a', 'f', 0, 'e'};
  EXPECT_EQ(NetworkName(bytes), "Caf");
  std::memset(bytes, 'x', sizeof bytes);
  EXPECT_EQ(NetworkName(bytes), std::string(32, 'x'));
  std::memset(bytes, 0, sizeof bytes);
  EXPECT_EQ(NetworkName(bytes), "");
}

}  // namespace
