#include "ostrine/common/video_rules.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace ostrine {
namespace {

using Cards = std::vector<VideoCardTraits>;

constexpr VideoCardTraits kIntel{.vendor = 0x8086, .is_on_root_bus = true, .is_boot_display = true};
constexpr VideoCardTraits kArc{.vendor = 0x8086};
constexpr VideoCardTraits kNvidia{.vendor = 0x10DE};
constexpr VideoCardTraits kRadeon{.vendor = 0x1002};
constexpr VideoCardTraits kApu{.vendor = 0x1002, .is_in_package = true, .is_boot_display = true};
constexpr VideoCardTraits kOldApu{.vendor = 0x1002, .is_on_root_bus = true};
constexpr VideoCardTraits kQemu{.vendor = 0x1234, .is_on_root_bus = true};
constexpr VideoCardTraits kVirtio{.vendor = 0x1AF4};
constexpr VideoCardTraits kRemote{.is_virtual = true};

VideoCardChoice Chosen(std::uint32_t count, std::optional<std::size_t> internal,
                       std::optional<std::size_t> independent) {
  return {.count = count, .internal = internal, .independent = independent};
}

TEST(VideoCardChoiceRule, TellsTheProcessorsCardFromAGraphicsCard) {
  struct {
    Cards cards;
    VideoCardChoice choice;
  } const rows[] = {
      {{}, Chosen(0, {}, {})},
      {{kIntel}, Chosen(1, 0, {})},
      {{kIntel, kNvidia}, Chosen(2, 0, 1)},
      {{kNvidia, kIntel}, Chosen(2, 1, 0)},
      {{kIntel, kArc}, Chosen(2, 0, 1)},
      {{kRadeon, kApu}, Chosen(2, 1, 0)},
      {{kOldApu, kRadeon}, Chosen(2, 0, 1)},
      {{kApu}, Chosen(1, 0, {})},
      {{kNvidia}, Chosen(1, {}, 0)},
      {{kRadeon}, Chosen(1, {}, 0)},
      {{kIntel, kNvidia, kRadeon}, Chosen(3, 0, 1)},
  };
  for (const auto& row : rows) EXPECT_EQ(ChooseVideoCards(row.cards), row.choice) << &row - rows;
}

TEST(VideoCardChoiceRule, NeverTakesNvidiasForAPartOfTheProcessor) {
  EXPECT_FALSE(IsIntegratedCard({.vendor = 0x10DE, .is_on_root_bus = true}));
}

TEST(VideoCardChoiceRule, NeverCountsWhatIsSoftware) {
  EXPECT_EQ(ChooseVideoCards(Cards{kRemote}), Chosen(0, {}, {}));
  EXPECT_EQ(ChooseVideoCards(Cards{kRemote, kIntel, kRemote}), Chosen(1, 1, {}));
}

TEST(VideoCardChoiceRule, CountsAnEmulatedCardOnlyWhereItIsTheOnlyKind) {
  EXPECT_EQ(ChooseVideoCards(Cards{kQemu}), Chosen(1, 0, {}));
  EXPECT_EQ(ChooseVideoCards(Cards{kVirtio}), Chosen(1, 0, {}));
  EXPECT_EQ(ChooseVideoCards(Cards{kQemu, kVirtio}), Chosen(2, 0, {}));
  EXPECT_EQ(ChooseVideoCards(Cards{kVirtio, kNvidia}), Chosen(1, {}, 1));
  EXPECT_EQ(ChooseVideoCards(Cards{kRemote, kVirtio}), Chosen(1, 1, {}));
}

TEST(VideoCardChoiceRule, PrefersTheBootDisplayAmongLikeCards) {
  VideoCardTraits boots = kNvidia;
  boots.is_boot_display = true;
  EXPECT_EQ(ChooseVideoCards(Cards{kNvidia, boots, boots}), Chosen(3, {}, 1));
  EXPECT_EQ(ChooseVideoCards(Cards{kOldApu, kApu}), Chosen(2, 1, {}));
}

TEST(VideoMemory, IsInMebibytesAndNeverWrapsPast32Bits) {
  EXPECT_EQ(MemoryMegabytes(0), 0u);
  EXPECT_EQ(MemoryMegabytes((1u << 20) - 1), 0u);
  EXPECT_EQ(MemoryMegabytes(std::uint64_t{4} << 30), 4096u);
  EXPECT_EQ(MemoryMegabytes(std::uint64_t{24} << 30), 24576u);
  EXPECT_EQ(MemoryMegabytes(std::uint64_t{1} << 52), 0xFFFFFFFFu);
  EXPECT_EQ(MemoryMegabytes(std::numeric_limits<std::uint64_t>::max()), 0xFFFFFFFFu);
}

TEST(VideoTexts, HaveTheirForms) {
  EXPECT_EQ(ResolutionText(1920, 1080), "1920 x 1080");
  EXPECT_STREQ(CardStatus(0), "OK");
  EXPECT_STREQ(CardStatus(28), "Error");
}

}  // namespace
}  // namespace ostrine
