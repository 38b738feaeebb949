// The class of video cards through the exported functions, on whatever machine the tests run on.
#include "ostrine/common/video.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

constexpr unsigned int kVideoClass = 6;

class VideoTable {
 public:
  VideoTable() { EXPECT_NE(HalInit(kVideoClass, &table_), 0); }
  VideoTable(const VideoTable&) = delete;
  VideoTable& operator=(const VideoTable&) = delete;
  ~VideoTable() { std::free(table_); }
  void* Get() const { return table_; }

 private:
  void* table_ = nullptr;
};

std::optional<std::uint32_t> NumberFrom(void* table, unsigned int id) {
  std::uint32_t number = 0;
  unsigned int returned = 0;
  if (HalQueryInformation(kVideoClass, table, id, &number, sizeof number, &returned) == 0)
    return std::nullopt;
  EXPECT_EQ(returned, sizeof number);
  return number;
}

std::optional<std::string> WideText(void* table, unsigned int id) {
  std::array<char16_t, 260> buffer{};
  if (HalQueryInformation(kVideoClass, table, id, buffer.data(), 520, nullptr) == 0) return std::nullopt;
  std::string text;
  for (const char16_t* unit = buffer.data(); *unit != 0; ++unit) text.push_back(static_cast<char>(*unit));
  return text;
}

/// A table with two cards that no machine has.
std::array<std::uint8_t, 40> TableOfGoneCards() {
  std::array<std::uint8_t, 40> table{};
  table[4] = 2;
  for (const std::size_t entry : {8u, 24u}) {
    std::memset(&table[entry], 0x5A, 8);
    table[entry + 8] = 1;
  }
  return table;
}

TEST(VideoClass, GivesATableAsOftenAsAskedAndNeedsNone) {
  const VideoTable first;
  const VideoTable second;
  EXPECT_NE(first.Get(), nullptr);
  EXPECT_NE(first.Get(), second.Get());
  EXPECT_NE(HalInit(kVideoClass, nullptr), 0);
}

TEST(VideoClass, CountsTheSameCardsWithATableAndWithout) {
  const VideoTable table;
  const VideoCards cards = FindVideoCards();
  EXPECT_EQ(NumberFrom(table.Get(), 0), cards.count);
  EXPECT_EQ(NumberFrom(nullptr, 0), cards.count);
}

TEST(VideoClass, AnswersForTheCardsThatTheMachineHasAndFailsForTheOthers) {
  const VideoTable table;
  const VideoCards cards = FindVideoCards();
  for (const unsigned int offset : {0u, 6u}) {
    const auto card = offset == 0 ? cards.internal : cards.independent;
    EXPECT_EQ(WideText(table.Get(), 1 + offset),
              card ? ReadCardText(*card, CardFact::kName) : std::optional<std::string>());
    EXPECT_EQ(NumberFrom(table.Get(), 6 + offset),
              card ? ReadCardProblem(*card) : std::optional<std::uint32_t>());
    const auto status = WideText(table.Get(), 2 + offset);
    EXPECT_EQ(status.has_value(), card.has_value());
    if (status) {
      EXPECT_TRUE(*status == "OK" || *status == "Error") << *status;
    }
  }
}

TEST(VideoClass, FailsForCardsThatHaveGone) {
  auto table = TableOfGoneCards();
  EXPECT_EQ(NumberFrom(table.data(), 0), 2u);
  for (unsigned int id = 1; id <= 12; ++id) {
    EXPECT_EQ(NumberFrom(table.data(), id), std::nullopt) << id;
    EXPECT_EQ(WideText(table.data(), id), std::nullopt) << id;
  }
}

TEST(VideoClass, TellsOneDisplayInAllItsForms) {
  const VideoTable table;
  const auto width = NumberFrom(table.Get(), 24);
  const auto height = NumberFrom(table.Get(), 25);
  const auto text = WideText(table.Get(), 23);
  EXPECT_EQ(width.has_value(), height.has_value());
  EXPECT_EQ(width.has_value(), text.has_value());
  if (width && height) {
    EXPECT_EQ(text, std::to_string(*width) + " x " + std::to_string(*height));
  }
  std::array<char, 260> caption{};
  const bool has_caption =
      HalQueryInformation(kVideoClass, table.Get(), 27, caption.data(), caption.size(), nullptr) != 0;
  EXPECT_EQ(has_caption, ReadMonitorCaption().has_value());
  EXPECT_EQ(std::string(caption.data()), ReadMonitorCaption().value_or(""));
}

TEST(VideoClass, FailsForIdsThatItDoesNotHave) {
  const VideoTable table;
  for (const unsigned int id : {13u, 14u, 22u, 29u, 255u, 0xFFFFFFFFu}) {
    EXPECT_EQ(NumberFrom(table.Get(), id), std::nullopt) << id;
  }
}

TEST(VideoClass, HasNothingToOpenCloseOrSet) {
  const VideoTable table;
  std::uint32_t value = 0;
  EXPECT_EQ(HalOpenDevice(kVideoClass, table.Get()), 0);
  EXPECT_EQ(HalCloseDevice(kVideoClass, table.Get()), 0);
  EXPECT_EQ(HalSetInformation(kVideoClass, table.Get(), 0, &value, sizeof value, nullptr), 0);
}

}  // namespace
}  // namespace ostrine
