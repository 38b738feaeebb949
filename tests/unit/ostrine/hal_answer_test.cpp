#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "ostrine/common/answer.h"
#include "ostrine/common/narrow_text.h"

namespace ostrine {
namespace {

constexpr std::uint8_t kUntouched = 0xCD;

/// A caller's buffer with guard bytes behind it.
struct Buffer {
  explicit Buffer(unsigned int size) : stated(size), bytes(size + 16, kUntouched) {}
  ~Buffer() {
    for (std::size_t i = stated; i < bytes.size(); ++i)
      EXPECT_EQ(bytes[i], kUntouched) << "written past the end";
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  Answer Ask() { return Answer(bytes.data(), stated, &returned); }
  std::string Narrow() const { return reinterpret_cast<const char*>(bytes.data()); }
  std::vector<std::uint8_t> Returned() const {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(returned)};
  }

  unsigned int stated;
  std::vector<std::uint8_t> bytes;
  unsigned int returned = 0;
};

TEST(HalAnswer, WritesNarrowTextWithItsZero) {
  Buffer buffer(260);
  EXPECT_TRUE(buffer.Ask().NarrowText("TM2019"));
  EXPECT_EQ(buffer.Narrow(), "TM2019");
  EXPECT_EQ(buffer.returned, 7u);
  EXPECT_EQ(buffer.bytes[7], kUntouched);
}

TEST(HalAnswer, CutsNarrowTextToTheBufferAndStillTerminatesIt) {
  for (unsigned int size = 1; size <= 8; ++size) {
    Buffer buffer(size);
    EXPECT_TRUE(buffer.Ask().NarrowText("TM2019"));
    EXPECT_EQ(buffer.Narrow(), std::string("TM2019").substr(0, size - 1));
  }
}

TEST(HalAnswer, WritesAnEmptyNarrowTextAsItsZero) {
  Buffer buffer(1);
  EXPECT_TRUE(buffer.Ask().NarrowText(""));
  EXPECT_EQ(buffer.Returned(), std::vector<std::uint8_t>{0});
}

TEST(HalAnswer, WritesNumbersLittleEndian) {
  Buffer buffer(8);
  EXPECT_TRUE(buffer.Ask().Number(0x11223344));
  EXPECT_EQ(buffer.Returned(), (std::vector<std::uint8_t>{0x44, 0x33, 0x22, 0x11}));
  EXPECT_EQ(buffer.bytes[4], kUntouched);
  EXPECT_TRUE(buffer.Ask().LongNumber(0x1122334455667788));
  EXPECT_EQ(buffer.Returned(), (std::vector<std::uint8_t>{0x88, 0x77, 0x66, 0x55, 0x44, 0x33, 0x22, 0x11}));
}

TEST(HalAnswer, FailsForANumberThatDoesNotFitAndWritesNothing) {
  for (unsigned int size = 0; size < 4; ++size) {
    Buffer buffer(size);
    EXPECT_FALSE(buffer.Ask().Number(1)) << size;
  }
  for (unsigned int size = 0; size < 8; ++size) {
    Buffer buffer(size);
    EXPECT_FALSE(buffer.Ask().LongNumber(1)) << size;
    EXPECT_EQ(buffer.returned, 0u);
    for (const std::uint8_t byte : buffer.bytes) EXPECT_EQ(byte, kUntouched);
  }
}

TEST(HalAnswer, WritesWideTextAsUtf16LittleEndianWithItsZero) {
  Buffer buffer(520);
  EXPECT_TRUE(buffer.Ask().WideText(u"A\u6EDA"));
  EXPECT_EQ(buffer.Returned(), (std::vector<std::uint8_t>{'A', 0, 0xDA, 0x6E, 0, 0}));
}

TEST(HalAnswer, CutsWideTextToWholeUnitsAlsoInABufferOfOddSize) {
  Buffer odd(7);
  EXPECT_TRUE(odd.Ask().WideText(u"ABCD"));
  EXPECT_EQ(odd.Returned(), (std::vector<std::uint8_t>{'A', 0, 'B', 0, 0, 0}));
  Buffer zero_only(2);
  EXPECT_TRUE(zero_only.Ask().WideText(u"ABCD"));
  EXPECT_EQ(zero_only.Returned(), (std::vector<std::uint8_t>{0, 0}));
  Buffer none(1);
  EXPECT_FALSE(none.Ask().WideText(u""));
}

TEST(HalAnswer, CutsWideTextBeforeAPairThatDoesNotFitWhole) {
  Buffer buffer(6);
  EXPECT_TRUE(buffer.Ask().WideText(u"A\U0001F4BB"));
  EXPECT_EQ(buffer.Returned(), (std::vector<std::uint8_t>{'A', 0, 0, 0}));
}

TEST(HalAnswer, NeverWritesARecordInPart) {
  const std::array<std::uint8_t, 2> record{60, 80};
  Buffer large(4);
  EXPECT_TRUE(large.Ask().Record(record));
  EXPECT_EQ(large.Returned(), (std::vector<std::uint8_t>{60, 80}));
  Buffer small(1);
  EXPECT_FALSE(small.Ask().Record(record));
  EXPECT_EQ(small.bytes[0], kUntouched);
}

TEST(HalAnswer, TakesANullBufferAsOneWithoutRoom) {
  unsigned int returned = 0;
  Answer answer(nullptr, 260, &returned);
  EXPECT_EQ(answer.Size(), 0u);
  EXPECT_FALSE(answer.NarrowText("text"));
  EXPECT_FALSE(answer.WideText(u"text"));
  EXPECT_FALSE(answer.Number(1));
  EXPECT_EQ(returned, 0u);
}

TEST(HalAnswer, DoesWithoutAPlaceForTheReturnedSize) {
  std::array<char, 8> buffer{};
  EXPECT_TRUE(Answer(buffer.data(), 8, nullptr).NarrowText("text"));
  EXPECT_STREQ(buffer.data(), "text");
}

TEST(HalNarrowText, CutsUtf8BetweenCharacters) {
  const std::string text = "a\xC3\xA9\xE5\x8D\x8E\xF0\x9F\x92\xBBz";  // 1, 2, 3, 4 and 1 bytes
  const std::vector<std::size_t> expected{0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
  for (std::size_t limit = 0; limit < expected.size(); ++limit) {
    EXPECT_EQ(Utf8Prefix(text, limit), expected[limit]) << "limit " << limit;
  }
}

TEST(HalNarrowText, CutsBytesThatAreNoUtf8AtTheLimit) {
  const std::string text(20, '\x8E');
  for (std::size_t limit = 4; limit < text.size(); ++limit) EXPECT_EQ(Utf8Prefix(text, limit), limit);
}

}  // namespace
}  // namespace ostrine
