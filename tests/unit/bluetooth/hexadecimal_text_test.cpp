#include "bluetooth/hexadecimal_text.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

namespace {

using velmora::bluetooth::ReadHexadecimal;

std::uint32_t AsAStreamReads(const std::string& text) {
  std::stringstream stream;
  stream << std::hex << text;
  std::uint32_t number = 0;
  stream >> number;
  return number;
}

TEST(HexadecimalText, IsReadUpToTheFirstOtherCharacter) {
  EXPECT_EQ(ReadHexadecimal("1A2B"), 0x1A2Bu);
  EXPECT_EQ(ReadHexadecimal("1a2b"), 0x1A2Bu);
  EXPECT_EQ(ReadHexadecimal("00:1A"), 0u) << "an address with colons gives its first byte";
  EXPECT_EQ(ReadHexadecimal("D4:A1:B2:C3:E4:F5"), 0xD4u);
  EXPECT_EQ(ReadHexadecimal("12G"), 0x12u);
  EXPECT_EQ(ReadHexadecimal("12 34"), 0x12u);
  EXPECT_EQ(ReadHexadecimal(std::string("12\0"
                                        "34",
                                        5)),
            0x12u);
}

TEST(HexadecimalText, MayBeginWithWhiteSpaceASignAndAPrefix) {
  EXPECT_EQ(ReadHexadecimal(" \t\n\v\f\r1A"), 0x1Au);
  EXPECT_EQ(ReadHexadecimal("0x1A"), 0x1Au);
  EXPECT_EQ(ReadHexadecimal("0X1A"), 0x1Au);
  EXPECT_EQ(ReadHexadecimal("+1A"), 0x1Au);
  EXPECT_EQ(ReadHexadecimal("-1"), 0xFFFFFFFFu);
  EXPECT_EQ(ReadHexadecimal(" -0x10"), 0xFFFFFFF0u);
}

TEST(HexadecimalText, WithoutADigitIsZero) {
  for (const char* const text :
       {"", " ", "xyz", ":1A", "0x", "0xG", "-", "+", "--1", "+-1", "- 1", "0x-1", "x1", "\xFF",
        "\xC2\xA0"
        "1"}) {
    EXPECT_EQ(ReadHexadecimal(text), 0u) << text;
  }
}

TEST(HexadecimalText, OfMoreThanThirtyTwoBitsIsTheLargestNumber) {
  EXPECT_EQ(ReadHexadecimal("FFFFFFFF"), 0xFFFFFFFFu);
  EXPECT_EQ(ReadHexadecimal("FFFFFFFE"), 0xFFFFFFFEu);
  EXPECT_EQ(ReadHexadecimal("100000000"), 0xFFFFFFFFu);
  EXPECT_EQ(ReadHexadecimal("D4A1B2C3E4F5"), 0xFFFFFFFFu) << "a whole address without colons";
  EXPECT_EQ(ReadHexadecimal("-100000000"), 0xFFFFFFFFu);
  EXPECT_EQ(ReadHexadecimal("00000000000000001A"), 0x1Au) << "leading zeros are not counted";
  EXPECT_EQ(ReadHexadecimal(std::string(100'000, 'F')), 0xFFFFFFFFu);
}

TEST(HexadecimalText, IsReadAsAStreamReadsItWhateverItHolds) {
  const std::string likely = "00xX+-: \t\n019afAFgG";
  std::mt19937 random(20'260'726);
  for (int round = 0; round < 200'000; ++round) {
    std::string text;
    for (auto length = random() % 14; length > 0; --length) {
      const bool is_any = random() % 16 == 0;
      text += is_any ? static_cast<char>(random() % 256) : likely[random() % likely.size()];
    }
    ASSERT_EQ(ReadHexadecimal(text), AsAStreamReads(text)) << testing::PrintToString(text);
  }
}

}  // namespace
