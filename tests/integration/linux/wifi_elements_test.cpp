#include "platform/linux/wifi_elements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace velmora::os {
namespace {

using Elements = std::vector<std::uint8_t>;
using testing::ElementsAre;
using testing::IsEmpty;

const Elements kName{0, 4, 'h', 'o', 'm', 'e'};
const Elements kRsnWithKey{48,   20,   1, 0, 0x00, 0x0F, 0xAC, 4,    1, 0, 0x00,
                           0x0F, 0xAC, 4, 1, 0,    0x00, 0x0F, 0xAC, 2, 0, 0};
const Elements kWpaWithKey{221, 22, 0x00, 0x50, 0xF2, 1, 1, 0, 0x00, 0x50, 0xF2, 2,
                           1,   0,  0x00, 0x50, 0xF2, 2, 1, 0, 0x00, 0x50, 0xF2, 2};

Elements With(Elements elements, std::size_t place, std::uint8_t value) {
  elements[place] = value;
  return elements;
}

TEST(WifiNames, AreTheBytesOfTheFirstElementOfTheirKind) {
  EXPECT_THAT(SsidOf(kName), ElementsAre('h', 'o', 'm', 'e'));
  EXPECT_THAT(SsidOf(Elements{1, 1, 9, 0, 1, 'a', 0, 1, 'b'}), ElementsAre('a'));
  EXPECT_THAT(SsidOf(Elements{}), IsEmpty());
  EXPECT_THAT(SsidOf(Elements{0, 5, 'h', 'o'}), IsEmpty()) << "it says to be longer than it is";
  Elements longest(35, 'x');
  longest[0] = 0;
  longest[1] = 33;
  EXPECT_EQ(SsidOf(longest).size(), 32u);
}

TEST(WifiSecurities, AreThoseThatTheElementsAskFor) {
  const auto ask = [](const Elements& elements, bool is_private) {
    const WifiSecurity security = SecurityOf(elements, is_private);
    return std::pair(security.authentication, security.cipher);
  };
  EXPECT_EQ(ask(kName, false), std::pair(1U, 0U));
  EXPECT_EQ(ask(kName, true), std::pair(1U, 0x101U)) << "an old network with a fixed key";
  EXPECT_EQ(ask(kRsnWithKey, true), std::pair(7U, 4U));
  EXPECT_EQ(ask(With(kRsnWithKey, 19, 1), true), std::pair(6U, 4U));
  EXPECT_EQ(ask(With(kRsnWithKey, 19, 8), true), std::pair(9U, 4U));
  EXPECT_EQ(ask(With(kRsnWithKey, 19, 18), true), std::pair(10U, 4U));
  EXPECT_EQ(ask(With(kRsnWithKey, 13, 9), true), std::pair(7U, 9U));
  EXPECT_EQ(ask(With(kRsnWithKey, 8, 99), true), std::pair(6U, 0U)) << "more suites than there are bytes";
  EXPECT_EQ(ask(kWpaWithKey, true), std::pair(4U, 2U));
  EXPECT_EQ(ask(With(kWpaWithKey, 23, 1), true), std::pair(3U, 2U));
  EXPECT_EQ(ask(With(kWpaWithKey, 5, 2), true), std::pair(1U, 0x101U)) << "another element of the same maker";
}

TEST(WifiPhysicalLayers, AreTheNewestThatIsAnnounced) {
  EXPECT_EQ(PhyTypeOf(Elements{1, 4, 2, 4, 11, 22}, 2412), 5u);
  EXPECT_EQ(PhyTypeOf(Elements{1, 8, 2, 4, 11, 22, 12, 18, 24, 36}, 2412), 6u);
  EXPECT_EQ(PhyTypeOf(Elements{1, 1, 12}, 5180), 4u);
  EXPECT_EQ(PhyTypeOf(Elements{45, 0}, 5180), 7u);
  EXPECT_EQ(PhyTypeOf(Elements{45, 0, 191, 0}, 5180), 8u);
  EXPECT_EQ(PhyTypeOf(Elements{45, 0, 255, 1, 35}, 5180), 10u);
  EXPECT_EQ(PhyTypeOf(Elements{255, 1, 35, 255, 1, 108}, 5180), 11u);
}

TEST(WifiElements, AreReadWithinTheirBytesWhateverTheySay) {
  std::mt19937 random(5);
  const auto number = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  for (int i = 0; i < 20000; ++i) {
    Elements elements = kName;
    for (const Elements& more : {kRsnWithKey, kWpaWithKey})
      elements.insert(elements.end(), more.begin(), more.end());
    elements.resize(number(elements.size() + 1));
    for (std::size_t change = number(4); change > 0 && !elements.empty(); --change) {
      elements[number(elements.size())] = static_cast<std::uint8_t>(number(256));
    }
    elements.shrink_to_fit();
    EXPECT_LE(SsidOf(elements).size(), 32u);
    EXPECT_LE(SecurityOf(elements, true).authentication, 10u);
    EXPECT_LE(PhyTypeOf(elements, 2412), 11u);
  }
}

}  // namespace
}  // namespace velmora::os
