/// What every implementation of the battery's class owes, on whatever machine it runs. Nothing is set here
/// that could be set.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/ostrine/hal.h"
#include "tests/contract/backend.h"

namespace contract {
namespace {

constexpr unsigned int kBatteryClass = 8;
constexpr unsigned int kPresent = 0;
constexpr unsigned int kFull = 4;
constexpr unsigned int kDesign = 5;
constexpr unsigned int kAcLine = 6;
constexpr unsigned int kLoss = 8;
constexpr unsigned int kThresholdsToRead = 9;
constexpr unsigned int kThresholdsToSet = 12;
constexpr std::array kNumbers{0u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u};

class BatteryContract : public testing::Test {
 protected:
  BatteryContract() { EXPECT_NE(HalInit(kBatteryClass, nullptr), 0); }

  /// Queries with a buffer of `size` bytes, and makes sure that nothing is written behind it.
  static bool Query(unsigned int id, unsigned int size, std::array<std::uint8_t, 16>& buffer) {
    buffer.fill(0xEE);
    unsigned int returned = 0;
    const bool is_answered =
        HalQueryInformation(kBatteryClass, nullptr, id, buffer.data(), size, &returned) != 0;
    for (std::size_t i = size; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], 0xEE) << id;
    return is_answered;
  }
  static std::optional<std::uint32_t> Number(unsigned int id) {
    std::array<std::uint8_t, 16> buffer{};
    std::uint32_t number = 0;
    if (!Query(id, sizeof number, buffer)) return std::nullopt;
    std::memcpy(&number, buffer.data(), sizeof number);
    return number;
  }
  static bool Set(unsigned int id, std::array<std::uint8_t, 2> record) {
    unsigned int returned = 0;
    return HalSetInformation(kBatteryClass, nullptr, id, record.data(), record.size(), &returned) != 0;
  }

  std::unique_ptr<Backend> backend_ = Backend::SetUp();
};

TEST_F(BatteryContract, PreparesTheClassAsOftenAsAsked) {
  EXPECT_NE(HalInit(kBatteryClass, nullptr), 0);
  EXPECT_NE(HalInit(kBatteryClass, nullptr), 0);
}

TEST_F(BatteryContract, MakesNoNumberOfWhatIsNotKnown) {
  for (const unsigned int id : kNumbers) EXPECT_LT(Number(id).value_or(0), 0x80000000u) << id;
  EXPECT_LE(Number(kAcLine).value_or(0), 1u);
}

TEST_F(BatteryContract, WritesANumberIntoFourBytesOrNotAtAll) {
  std::array<std::uint8_t, 16> buffer{};
  for (const unsigned int id : kNumbers) {
    for (const unsigned int size : {1u, 3u}) EXPECT_FALSE(Query(id, size, buffer)) << id;
    EXPECT_EQ(Query(id, 8, buffer), Number(id).has_value()) << id;
  }
}

TEST_F(BatteryContract, HasABatteryWhereItKnowsItsNumbers) {
  for (const unsigned int id : {3u, kFull, kDesign, 7u, kLoss, 10u}) {
    EXPECT_TRUE(!Number(id) || Number(kPresent)) << id;
  }
}

TEST_F(BatteryContract, KnowsTheWearOnlyWithBothCapacities) {
  const auto loss = Number(kLoss);
  if (!loss) return;
  EXPECT_TRUE(Number(kFull) && Number(kDesign));
  EXPECT_LE(*loss, 10'000u);
}

TEST_F(BatteryContract, GivesThresholdsThatArePossible) {
  std::array<std::uint8_t, 16> record{};
  if (!Query(kThresholdsToRead, 2, record)) return;
  EXPECT_LT(record[0], record[1]);
  EXPECT_LE(record[1], 100);
}

TEST_F(BatteryContract, TakesNoThresholdsThatAreNotPossible) {
  for (const std::array<std::uint8_t, 2> record :
       {std::array<std::uint8_t, 2>{80, 75}, {60, 60}, {0, 0}, {0, 101}, {99, 255}, {255, 255}}) {
    EXPECT_FALSE(Set(kThresholdsToSet, record));
  }
}

TEST_F(BatteryContract, HasNoOtherIdsAndNoOtherSetting) {
  std::array<std::uint8_t, 16> buffer{};
  for (const unsigned int id : {11u, kThresholdsToSet, 13u, 0xFFFFFFFFu}) EXPECT_FALSE(Query(id, 4, buffer));
  for (const unsigned int id : {0u, 6u, kThresholdsToRead, 10u, 13u}) EXPECT_FALSE(Set(id, {40, 60}));
}

}  // namespace
}  // namespace contract
