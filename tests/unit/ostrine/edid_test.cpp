#include "ostrine/common/edid.h"

#include <gtest/gtest.h>

#include <random>

#include "edid_bytes.h"

namespace ostrine {
namespace {

using test::EdidBytes;
using test::Timing;

TEST(EdidBlock, TellsMakerProductNameAndPreferredMode) {
  const auto edid = ParseEdid(EdidBytes{.maker = "DEL", .product = 0xA0C4, .name = "DELL U2415"}.Build());
  ASSERT_TRUE(edid);
  EXPECT_EQ(edid->maker, "DEL");
  EXPECT_EQ(edid->product, 0xA0C4);
  EXPECT_EQ(edid->name, "DELL U2415");
  EXPECT_EQ(edid->preferred, (EdidMode{1920, 1080, 60}));
}

TEST(EdidBlock, TellsTheModeOfASmallPanel) {
  const auto edid = ParseEdid(EdidBytes{.timing = {69'300, 1366, 100, 768, 20}}.Build());
  EXPECT_EQ(edid->preferred, (EdidMode{1366, 768, 60}));
}

TEST(EdidBlock, RoundsTheRate) {
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {533'250, 3840, 160, 2160, 62}}.Build())->preferred->rate, 60u);
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {297'000, 3840, 560, 2160, 90}}.Build())->preferred->rate, 30u);
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {354'680, 1920, 80, 1080, 151}}.Build())->preferred->rate, 144u);
}

TEST(EdidBlock, CountsBothHalvesOfAnInterlacedPicture) {
  const auto edid = ParseEdid(EdidBytes{.timing = {74'250, 1920, 280, 540, 22, true}}.Build());
  EXPECT_EQ(edid->preferred, (EdidMode{1920, 1080, 60}));
}

TEST(EdidBlock, HasNoModeWithoutATimingInTheFirstPlace) {
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {}}.Build())->preferred, std::nullopt);
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {10, 0, 280, 1080, 45}}.Build())->preferred, std::nullopt);
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {10, 1920, 280, 0, 45}}.Build())->preferred, std::nullopt);
  EXPECT_EQ(ParseEdid(EdidBytes{.timing = {10, 4095, 4095, 4095, 4095}}.Build())->preferred, std::nullopt)
      << "less than half a picture a second";
}

TEST(EdidBlock, TakesANameOfAllThirteenCharactersAndTrimsAShorterOne) {
  EXPECT_EQ(ParseEdid(EdidBytes{.name = "ABCDEFGHIJKLM"}.Build())->name, "ABCDEFGHIJKLM");
  EXPECT_EQ(ParseEdid(EdidBytes{.name = "  X 1  "}.Build())->name, "X 1");
  EXPECT_EQ(ParseEdid(EdidBytes{.name = "A\x01\xFF"
                                        "B"}
                          .Build())
                ->name,
            "AB");
  EXPECT_EQ(ParseEdid(EdidBytes{.name = "   "}.Build())->name, "");
}

TEST(EdidBlock, IsFollowedByWhateverElseThereIs) {
  auto bytes = EdidBytes{.name = "A"}.Build();
  bytes.resize(256, 0xAB);
  EXPECT_EQ(ParseEdid(bytes)->name, "A");
}

TEST(EdidBlock, ThatDoesNotBeginOrAddUpRightOrIsCutIsNone) {
  const auto good = EdidBytes{}.Build();
  ASSERT_TRUE(ParseEdid(good));
  for (std::size_t size = 0; size < good.size(); ++size) EXPECT_FALSE(ParseEdid(std::span(good).first(size)));
  for (std::size_t at = 0; at < good.size(); ++at) {
    auto spoilt = good;
    spoilt[at] = static_cast<std::uint8_t>(spoilt[at] ^ 0x10);
    EXPECT_FALSE(ParseEdid(spoilt)) << at;
  }
  auto headless = good;
  headless[0] = 1;
  EdidBytes::Seal(headless);
  EXPECT_FALSE(ParseEdid(headless));
}

TEST(EdidBlock, HasNoMakerWhereTheBytesMakeNoLetters) {
  for (const std::uint8_t high : std::vector<std::uint8_t>{0x00, 0x80, 0xFF}) {
    auto bytes = EdidBytes{}.Build();
    bytes[8] = high;
    bytes[9] = high;
    EdidBytes::Seal(bytes);
    EXPECT_EQ(ParseEdid(bytes)->maker, "");
  }
}

TEST(MonitorCaptionText, IsTheNameElseMakerAndProduct) {
  EXPECT_EQ(MonitorCaption({.maker = "DEL", .product = 0xA0C4, .name = "DELL U2415"}), "DELL U2415");
  EXPECT_EQ(MonitorCaption({.maker = "AUO", .product = 0x3DED}), "AUO3DED");
  EXPECT_EQ(MonitorCaption({.maker = "LGD", .product = 0x004F}), "LGD004F");
  EXPECT_EQ(MonitorCaption({}), "");
}

TEST(EdidProperty, EveryBuiltBlockReadsBack) {
  std::mt19937 engine(9);
  const auto up_to = [&](std::uint32_t most) { return static_cast<std::uint32_t>(engine() % (most + 1)); };
  for (int i = 0; i < 2000; ++i) {
    EdidBytes built{.maker = "AAA", .product = static_cast<std::uint16_t>(engine())};
    for (char& letter : built.maker) letter = static_cast<char>('A' + up_to(25));
    built.name.assign(up_to(13), 'x');
    for (char& c : built.name) c = static_cast<char>('!' + up_to(93));
    built.timing = {.kilohertz = 10 * (1 + up_to(65534)),
                    .width = 1 + up_to(4094),
                    .width_blank = up_to(4095),
                    .height = 1 + up_to(4094),
                    .height_blank = up_to(4095),
                    .is_interlaced = up_to(1) == 1};
    const auto edid = ParseEdid(built.Build());
    ASSERT_TRUE(edid);
    EXPECT_EQ(edid->maker, built.maker);
    EXPECT_EQ(edid->product, built.product);
    EXPECT_EQ(edid->name, built.name);
    const Timing& timing = built.timing;
    const double exact = 1000.0 * timing.kilohertz / (timing.width + timing.width_blank) /
                         (timing.height + timing.height_blank);
    if (exact < 0.49) {
      EXPECT_FALSE(edid->preferred);
    } else if (edid->preferred) {
      EXPECT_EQ(edid->preferred->width, timing.width);
      EXPECT_EQ(edid->preferred->height, timing.is_interlaced ? 2 * timing.height : timing.height);
      EXPECT_NEAR(edid->preferred->rate, exact, 0.5001);
    } else {
      EXPECT_LT(exact, 0.51);
    }
  }
}

TEST(EdidProperty, AnyBytesThatAddUpAreSurvived) {
  std::mt19937 engine(10);
  for (int i = 0; i < 20000; ++i) {
    auto bytes = EdidBytes{.name = "X"}.Build();
    for (int k = 0; k < 30; ++k) bytes[8 + engine() % 119] = static_cast<std::uint8_t>(engine());
    EdidBytes::Seal(bytes);
    const auto edid = ParseEdid(bytes);
    ASSERT_TRUE(edid);
    EXPECT_LE(edid->name.size(), 13u);
    if (edid->preferred) {
      EXPECT_GE(edid->preferred->rate, 1u);
    }
  }
}

}  // namespace
}  // namespace ostrine
