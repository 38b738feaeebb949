#include "network/wps_element.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/naive_network.h"
#include "tests/unit/network/wps_bytes.h"

namespace {

using velmora::network::AccessPointTexts;
using velmora::network::ReadAccessPointTexts;
using wps::Attribute;
using wps::Beginning;
using wps::Bytes;
using wps::Characters;
using wps::Element;
using wps::Payload;
using wps::ProtectedSetup;
using wps::operator+;

/// Reads from memory of exactly the bytes' size, so that a sanitizer sees a read past it.
AccessPointTexts Read(Bytes bytes) {
  bytes.shrink_to_fit();
  return ReadAccessPointTexts(bytes);
}

TEST(WpsElement, GivesManufacturerAndModel) {
  EXPECT_EQ(Read(ProtectedSetup("ACME", "Router 1")), (AccessPointTexts{"ACME", "Router 1"}));
}

TEST(WpsElement, PassesOverAnAttributeOfAnyLength) {
  for (const std::size_t length : {0U, 1U, 200U}) {
    EXPECT_EQ(Read(ProtectedSetup("A", "R", length)), (AccessPointTexts{"A", "R"})) << length;
  }
}

TEST(WpsElement, IsFoundAmongOthers) {
  const auto others = Element(0, Characters("Office")) + Element(221, {1, 2, 3}) + Element(48, Bytes(20));
  EXPECT_EQ(Read(others + ProtectedSetup("ACME", "Router 1") + Element(50, {1})),
            (AccessPointTexts{"ACME", "Router 1"}));
}

TEST(WpsElement, GivesNothingWithoutElements) { EXPECT_EQ(Read({}), AccessPointTexts{}); }

TEST(WpsElement, IsPassedOverWithAnotherIdVendorOrType) {
  const auto payload = Payload("ACME", "Router 1");
  EXPECT_EQ(Read(Element(220, payload)), AccessPointTexts{});
  for (std::size_t position = 0; position < 4; ++position) {
    auto other = payload;
    ++other[position];
    EXPECT_EQ(Read(Element(221, other)), AccessPointTexts{}) << position;
  }
}

TEST(WpsElement, IsUsedFromNineteenBytesOnAndThenReplacesWhatAnEarlierOneGave) {
  const auto first = ProtectedSetup("ACME", "Router 1");
  const auto beginning = Beginning();
  ASSERT_EQ(beginning.size(), 19U);
  EXPECT_EQ(Read(first + Element(221, {beginning.begin(), beginning.begin() + 18})),
            (AccessPointTexts{"ACME", "Router 1"}));
  EXPECT_EQ(Read(first + Element(221, beginning)), AccessPointTexts{});
}

TEST(WpsElement, IsReplacedByALaterOne) {
  EXPECT_EQ(Read(ProtectedSetup("First", "1") + ProtectedSetup("Second", "2")),
            (AccessPointTexts{"Second", "2"}));
}

TEST(WpsElement, EndsATextAtItsFirstZero) {
  using std::string_view_literals::operator""sv;
  EXPECT_EQ(Read(ProtectedSetup("AC\0ME"sv, "\0R"sv)), (AccessPointTexts{"AC", ""}));
}

TEST(WpsElement, DoesNotLookAtAttributeTypes) {
  const auto payload = Beginning() + Attribute(0xAAAA, {1}) + Attribute(0, Characters("ACME")) +
                       Attribute(0xFFFF, Characters("Router 1"));
  EXPECT_EQ(Read(Element(221, payload)), (AccessPointTexts{"ACME", "Router 1"}));
}

TEST(WpsElement, UsesOnlyTheLowByteOfALength) {
  auto payload = Payload("ACME", "Router 1", 2);
  payload[21] = 0x7F;              // of the attribute that is passed over
  payload[19 + 4 + 2 + 2] = 0x7F;  // of the manufacturer
  EXPECT_EQ(Read(Element(221, payload)), (AccessPointTexts{"ACME", "Router 1"}));
}

TEST(WpsElement, HasATextThatEndsExactlyWithItsElementAndNoneThatGoesOnByOneByte) {
  auto payload = Payload("ACME", "Router 1");
  EXPECT_EQ(Read(Element(221, payload)).model, "Router 1");
  payload.pop_back();
  EXPECT_EQ(Read(Element(221, payload)), (AccessPointTexts{"ACME", ""}));
  EXPECT_EQ(Read(Element(221, payload) + Bytes(40, 'x')), (AccessPointTexts{"ACME", ""}))
      << "what follows belongs to other elements";
}

TEST(WpsElement, HasNoTextsWhenALengthReachesPastItsEnd) {
  auto payload = Payload("ACME", "Router 1");
  payload[22] = 255;
  EXPECT_EQ(Read(Element(221, payload)), AccessPointTexts{});
  payload = Payload("ACME", "Router 1", 0);
  payload[23 + 3] = 255;
  EXPECT_EQ(Read(Element(221, payload)), AccessPointTexts{});
}

TEST(WpsElement, GivesWhatLiesInTheBlockOfAnElementWhoseLengthCrossesItsEnd) {
  auto block = ProtectedSetup("ACME", "Router 1");
  block[1] = 255;
  EXPECT_EQ(Read(block), (AccessPointTexts{"ACME", "Router 1"}));
  block.pop_back();
  EXPECT_EQ(Read(block), (AccessPointTexts{"ACME", ""}));
}

TEST(WpsElement, IsNotBegunByASingleTrailingByte) {
  EXPECT_EQ(Read({221}), AccessPointTexts{});
  EXPECT_EQ(Read(ProtectedSetup("ACME", "R") + Bytes{221}), (AccessPointTexts{"ACME", "R"}));
}

TEST(WpsElement, ReadsTextsOfTheGreatestLengthThatFits) {
  // 255 bytes less the beginning, the attribute that is passed over and the three attributes' heads.
  const std::string longest(255 - 19 - 4 - 4 - 4, 'M');
  EXPECT_EQ(Read(ProtectedSetup(longest, "", 0)), (AccessPointTexts{longest, ""}));
}

TEST(WpsElement, IsReadInTimeThatGrowsWithTheBlockOnly) {
  Bytes block;
  const auto one = ProtectedSetup("ACME", "Router 1");
  while (block.size() < 4'000'000) block.insert(block.end(), one.begin(), one.end());
  EXPECT_EQ(Read(block), (AccessPointTexts{"ACME", "Router 1"}));
}

/// A block of which most is nearly right.
Bytes RandomBlock(std::mt19937& random) {
  Bytes block;
  for (auto left = random() % 3; left > 0; --left) {
    const std::string manufacturer(random() % 6, 'M');
    const std::string model(random() % 6, 'm');
    const Bytes element = random() % 4 == 0
                              ? Element(static_cast<std::uint8_t>(random() % 256), Bytes(random() % 30))
                              : ProtectedSetup(manufacturer, model, random() % 5);
    block.insert(block.end(), element.begin(), element.end());
  }
  for (auto left = random() % 4; left > 0 && !block.empty(); --left) {
    const auto odd = random() % 3 == 0 ? random() % 256 : random() % 8;
    block[random() % block.size()] = static_cast<std::uint8_t>(odd);
  }
  block.resize(block.size() - std::min<std::size_t>(random() % 5, block.size()));
  return block;
}

TEST(WpsElementProperty, IsWhatASlowReadingOfTheRuleGives) {
  std::mt19937 random(74);
  for (int round = 0; round < 50'000; ++round) {
    const Bytes block = RandomBlock(random);
    const auto expected = velmora::testing::NaiveElements(block);
    ASSERT_EQ(Read(block), (AccessPointTexts{expected.manufacturer, expected.model}))
        << testing::PrintToString(block);
  }
}

}  // namespace
