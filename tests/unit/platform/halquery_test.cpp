#include "platform/halquery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/run.h"
#include "tests/support/simulator/allocations.h"

namespace {

namespace hal = velmora::hal;
using hal::DeviceClass;
using hal::NarrowBytes;
using hal::NarrowText;
using hal::Number;
using hal::ShortNarrowText;
using hal::WideText;
using simulator::Fault;
using simulator::HalQuery;
using simulator::QueryAnswer;
using testing::Each;
using testing::ElementsAre;
using velmora::testing::AllocationCounter;
using velmora::testing::WithEachAllocationFailing;

constexpr auto kClass = DeviceClass::kBattery;
constexpr unsigned int kFourGigabytes = 0xFFFFFFFF;

void Put(std::span<unsigned char> buffer, const void* bytes, std::size_t size) {
  std::memcpy(buffer.data(), bytes, std::min(size, buffer.size()));
}

/// Writes narrow text to the front of the buffer, says `returned_size`, and returns `result`.
QueryAnswer GivesBytes(std::string bytes, int result = 1, std::optional<unsigned int> returned_size = {}) {
  return [=](const HalQuery& query) {
    Put(query.buffer, bytes.data(), bytes.size());
    query.returned_size = returned_size.value_or(static_cast<unsigned int>(bytes.size()));
    return result;
  };
}

/// The same for UTF-16.
QueryAnswer GivesUnits(std::u16string units, int result = 1) {
  return [=](const HalQuery& query) {
    Put(query.buffer, units.data(), units.size() * sizeof(char16_t));
    return result;
  };
}

template <class Value>
QueryAnswer GivesNumber(Value value, int result = 1, unsigned int returned_size = sizeof(Value)) {
  return [=](const HalQuery& query) {
    Put(query.buffer, &value, sizeof value);
    query.returned_size = returned_size;
    return result;
  };
}

/// Fills the whole buffer.
QueryAnswer Fills(unsigned char byte, int result = 1) {
  return [=](const HalQuery& query) {
    std::ranges::fill(query.buffer, byte);
    return result;
  };
}

/// So many letters and then `tail`.
std::string LettersAnd(std::size_t letters, std::string_view tail) {
  std::string text(letters + tail.size(), 'a');
  std::ranges::copy(tail, text.end() - static_cast<std::ptrdiff_t>(tail.size()));
  return text;
}

simulator::Run UseNothing() { return simulator::Use(simulator::BlankMachine()); }

TEST(HalQuery, PreparesAClassWithoutATable) {
  const auto run = UseNothing();
  EXPECT_TRUE(hal::Prepare(DeviceClass::kBattery));
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(8, null)"));
}

TEST(HalQuery, SaysWhenAClassCannotBePrepared) {
  auto run = UseNothing();
  run.Inject(Fault::kFail, 0);
  EXPECT_FALSE(hal::Prepare(DeviceClass::kBattery));
  run.Inject(Fault::kThrow, 1);
  EXPECT_FALSE(hal::Prepare(DeviceClass::kBattery));
}

TEST(HalQuery, AsksEachFamilyWithItsOwnBufferSize) {
  auto run = UseNothing();
  run.OnQuery(Fills(0, 0));
  std::uint32_t number = 0;
  std::uint64_t large_number = 0;
  int device = 0;

  NarrowText(DeviceClass::kBattery, 1);
  NarrowBytes(DeviceClass::kFailingDriver, 2, &device);
  ShortNarrowText(DeviceClass::kProcessor, 1);
  WideText(DeviceClass::kVideo, 3, &device);
  Number(DeviceClass::kBattery, 4);
  hal::ReadNumber(DeviceClass::kMemory, 6, &device, number);
  hal::ReadNumber(DeviceClass::kMemory, 5, &device, large_number);

  EXPECT_THAT(run.Trace(), ElementsAre("HalQueryInformation(8, null, 1, 260)",      //
                                       "HalQueryInformation(20, pointer, 2, 260)",  //
                                       "HalQueryInformation(0, null, 1, 50)",       //
                                       "HalQueryInformation(6, pointer, 3, 520)",   //
                                       "HalQueryInformation(8, null, 4, 4)",        //
                                       "HalQueryInformation(13, pointer, 6, 4)",    //
                                       "HalQueryInformation(13, pointer, 5, 8)"));
}

TEST(HalQuery, ZeroesEveryBufferBeforeItAsks) {
  auto run = UseNothing();
  int queries = 0;
  run.OnQuery([&](const HalQuery& query) {
    ++queries;
    EXPECT_THAT(query.buffer, Each(0)) << "query " << queries;
    return 1;
  });
  std::wstring text = L"from before";
  std::uint32_t number = 7;
  std::uint64_t large_number = 7;

  EXPECT_TRUE(hal::ReadNarrowText(kClass, 1, nullptr, text));
  EXPECT_TRUE(hal::ReadNumber(kClass, 1, nullptr, number));
  EXPECT_TRUE(hal::ReadNumber(kClass, 1, nullptr, large_number));
  NarrowText(kClass, 1);
  ShortNarrowText(kClass, 1);
  NarrowBytes(kClass, 1, nullptr);
  WideText(kClass, 1, nullptr);

  EXPECT_EQ(queries, 7);
  EXPECT_EQ(text, L"") << "nothing was written";
  EXPECT_EQ(number, 0u);
  EXPECT_EQ(large_number, 0u);
}

TEST(HalQuery, PassesTheDeviceOn) {
  auto run = UseNothing();
  int device = 0;
  run.OnQuery([&](const HalQuery& query) {
    EXPECT_EQ(query.device, &device);
    return 1;
  });
  NarrowText(kClass, 1, &device);
  NarrowBytes(kClass, 1, &device);
  WideText(kClass, 1, &device);
  Number(kClass, 1, &device);
  EXPECT_EQ(run.Calls("HalQueryInformation"), 4);
}

TEST(HalQuery, WidensNarrowText) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes("Caf\xC3\xA9 \xF0\x9F\x98\x80"));
  EXPECT_EQ(NarrowText(kClass, 1), L"Caf\xE9 \U0001F600");
  EXPECT_EQ(ShortNarrowText(kClass, 1), L"Caf\xE9 \U0001F600");
  EXPECT_THAT(run.Trace(), testing::Contains("MultiByteToWideChar(0, 0, 10, 260)"));
  EXPECT_THAT(run.Trace(), testing::Contains("MultiByteToWideChar(0, 0, 10, 50)"));
}

TEST(HalQuery, GivesTheBytesOfANarrowTextAsTheyAre) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes("Caf\xC3\xA9 \xFF"));
  EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), "Caf\xC3\xA9 \xFF");
  EXPECT_EQ(run.Calls("MultiByteToWideChar"), 0);
}

TEST(HalQuery, GivesWideTextInTheSystemsWideForm) {
  auto run = UseNothing();
  run.OnQuery(GivesUnits(u"SSD \u4E2D\U0001F600"));
  EXPECT_EQ(WideText(kClass, 1, nullptr), L"SSD \u4E2D\U0001F600");
}

TEST(HalQuery, ReadsNumbersOfBothSizes) {
  auto run = UseNothing();
  std::uint32_t number = 0;
  std::uint64_t large_number = 0;
  run.OnQuery(GivesNumber(std::uint32_t{0xFEDCBA98}));
  EXPECT_EQ(Number(kClass, 1), 0xFEDCBA98);
  EXPECT_TRUE(hal::ReadNumber(kClass, 1, nullptr, number));
  EXPECT_EQ(number, 0xFEDCBA98);
  run.OnQuery(GivesNumber(std::uint64_t{0xFEDCBA9876543210}));
  EXPECT_TRUE(hal::ReadNumber(kClass, 1, nullptr, large_number));
  EXPECT_EQ(large_number, 0xFEDCBA9876543210);
}

TEST(HalQuery, GivesNothingOfABufferThatAFailedQueryHalfWrote) {
  auto run = UseNothing();
  run.OnQuery(Fills('A', 0));
  std::wstring text = L"from before";
  std::uint32_t number = 7;
  std::uint64_t large_number = 7;

  EXPECT_EQ(NarrowText(kClass, 1), L"");
  EXPECT_EQ(ShortNarrowText(kClass, 1), L"");
  EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), "");
  EXPECT_EQ(WideText(kClass, 1, nullptr), L"");
  EXPECT_EQ(Number(kClass, 1), 0u);
  EXPECT_FALSE(hal::ReadNarrowText(kClass, 1, nullptr, text));
  EXPECT_FALSE(hal::ReadNumber(kClass, 1, nullptr, number));
  EXPECT_FALSE(hal::ReadNumber(kClass, 1, nullptr, large_number));
  EXPECT_EQ(text, L"");
  EXPECT_EQ(number, 0u);
  EXPECT_EQ(large_number, 0u);
}

TEST(HalQuery, CutsANarrowBufferWithoutAZeroBeforeItsLastByte) {
  auto run = UseNothing();
  run.OnQuery(Fills('A'));
  EXPECT_EQ(NarrowText(kClass, 1), std::wstring(259, L'A'));
  EXPECT_EQ(ShortNarrowText(kClass, 1), std::wstring(49, L'A'));
  EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), std::string(259, 'A'));
}

TEST(HalQuery, CutsAWideBufferWithoutAZeroBeforeItsLastUnit) {
  auto run = UseNothing();
  run.OnQuery(Fills('A'));
  EXPECT_EQ(WideText(kClass, 1, nullptr), std::wstring(259, wchar_t{0x4141}));
}

TEST(HalQuery, ReadsTextThatJustFits) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes(LettersAnd(258, "z")));
  EXPECT_EQ(NarrowText(kClass, 1), std::wstring(258, L'a') + L"z");
  run.OnQuery(GivesUnits(std::u16string(258, u'a') + u"z"));
  EXPECT_EQ(WideText(kClass, 1, nullptr), std::wstring(258, L'a') + L"z");
}

TEST(HalQuery, ReplacesACharacterThatTheEndOfTheBufferCuts) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes(LettersAnd(257, "\xE2\x82\xAC")));
  EXPECT_EQ(NarrowText(kClass, 1), std::wstring(257, L'a') + L"\xFFFD");
  run.OnQuery(GivesBytes(LettersAnd(48, "\xC3\xA9")));
  EXPECT_EQ(ShortNarrowText(kClass, 1), std::wstring(48, L'a') + L"\xFFFD");
  run.OnQuery(GivesUnits(std::u16string(258, u'a') + u"\U0001F600"));
  EXPECT_EQ(WideText(kClass, 1, nullptr), std::wstring(258, L'a') + L"\xFFFD");
}

TEST(HalQuery, ReplacesALoneSurrogateInWideText) {
  auto run = UseNothing();
  run.OnQuery(GivesUnits({u'a', 0xD83D, u'b', 0xDE00}));
  EXPECT_EQ(WideText(kClass, 1, nullptr),
            L"a\xFFFD"
            L"b\xFFFD");
}

TEST(HalQuery, EndsTextAtItsFirstZero) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes(std::string("ab\0cd", 5)));
  EXPECT_EQ(NarrowText(kClass, 1), L"ab");
  EXPECT_EQ(ShortNarrowText(kClass, 1), L"ab");
  EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), "ab");
  run.OnQuery(GivesUnits(std::u16string(u"ab\0cd", 5)));
  EXPECT_EQ(WideText(kClass, 1, nullptr), L"ab");
}

TEST(HalQuery, GivesEmptyTextWithoutAConversionForATextThatBeginsWithAZero) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes(std::string("\0cd", 3)));
  std::wstring text = L"from before";
  EXPECT_TRUE(hal::ReadNarrowText(kClass, 1, nullptr, text)) << "the query itself succeeded";
  EXPECT_EQ(text, L"");
  EXPECT_EQ(run.Calls("MultiByteToWideChar"), 0);
}

TEST(HalQuery, GivesEmptyTextWhenTheConversionFails) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes("text"));
  run.Inject(Fault::kFail, 1);
  EXPECT_EQ(NarrowText(kClass, 1), L"");
  EXPECT_EQ(run.Calls("MultiByteToWideChar"), 1);
}

TEST(HalQuery, IgnoresTheReturnedSize) {
  auto run = UseNothing();
  for (const unsigned int size : {0u, 1u, kFourGigabytes}) {
    run.OnQuery(GivesBytes("text", 1, size));
    EXPECT_EQ(NarrowText(kClass, 1), L"text") << size;
    EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), "text") << size;
    run.OnQuery(GivesNumber(std::uint32_t{1234}, 1, size));
    EXPECT_EQ(Number(kClass, 1), 1234u) << size;
  }
}

TEST(HalQuery, TakesAnyValueButZeroForSuccess) {
  auto run = UseNothing();
  for (const int result : {2, -1, 0x10000}) {
    run.OnQuery(GivesBytes("text", result));
    EXPECT_EQ(NarrowText(kClass, 1), L"text") << result;
    EXPECT_EQ(ShortNarrowText(kClass, 1), L"text") << result;
    EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), "text") << result;
    run.OnQuery(GivesUnits(u"text", result));
    EXPECT_EQ(WideText(kClass, 1, nullptr), L"text") << result;
    run.OnQuery(GivesNumber(std::uint32_t{1234}, result));
    EXPECT_EQ(Number(kClass, 1), 1234u) << result;
  }
}

TEST(HalQuery, GivesTheFailureValueWhenAnythingThrows) {
  auto run = UseNothing();
  run.Inject(Fault::kThrow, 0, true);
  std::wstring text = L"from before";
  std::uint32_t number = 7;

  EXPECT_EQ(NarrowText(kClass, 1), L"");
  EXPECT_EQ(ShortNarrowText(kClass, 1), L"");
  EXPECT_EQ(NarrowBytes(kClass, 1, nullptr), "");
  EXPECT_EQ(WideText(kClass, 1, nullptr), L"");
  EXPECT_EQ(Number(kClass, 1), 0u);
  EXPECT_FALSE(hal::ReadNarrowText(kClass, 1, nullptr, text));
  EXPECT_EQ(text, L"");
  EXPECT_FALSE(hal::ReadNumber(kClass, 1, nullptr, number));
  EXPECT_EQ(number, 0u);
}

TEST(HalQuery, GivesEmptyTextWhenTheConversionThrows) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes("text"));
  run.Inject(Fault::kThrow, 1);
  EXPECT_EQ(NarrowText(kClass, 1), L"");
}

/// The last result is the whole text, and each before it, where an allocation failed, is empty.
template <class Text>
void ExpectAllOrNothing(const std::vector<Text>& results, const Text& whole) {
  EXPECT_GE(results.size(), 2u) << "no allocation failed";
  EXPECT_EQ(results.back(), whole);
  EXPECT_THAT(std::vector<Text>(results.begin(), results.end() - 1), Each(Text()));
}

TEST(HalQuery, GivesEmptyTextWhicheverAllocationFails) {
  auto run = UseNothing();
  const std::string narrow = "a text that is too long for the string itself";
  const std::wstring wide(narrow.begin(), narrow.end());

  run.OnQuery(GivesBytes(narrow));
  ExpectAllOrNothing(WithEachAllocationFailing([] { return NarrowText(kClass, 1); }), wide);
  ExpectAllOrNothing(WithEachAllocationFailing([] { return ShortNarrowText(kClass, 1); }), wide);
  ExpectAllOrNothing(WithEachAllocationFailing([] { return NarrowBytes(kClass, 1, nullptr); }), narrow);
  run.OnQuery(GivesUnits(std::u16string(narrow.begin(), narrow.end())));
  ExpectAllOrNothing(WithEachAllocationFailing([] { return WideText(kClass, 1, nullptr); }), wide);
  ExpectAllOrNothing(WithEachAllocationFailing([] { return hal::WideTextOf(DeviceClass::kDisk, 0, 1); }),
                     wide);
}

TEST(HalQuery, AllocatesOnceForLongNarrowTextAndNeverForShort) {
  auto run = UseNothing();
  run.OnQuery(GivesBytes("abc"));
  {
    const AllocationCounter counter;
    const auto text = NarrowText(kClass, 1);
    EXPECT_EQ(counter.Count(), 0);
  }
  run.OnQuery(GivesBytes(std::string(200, 'a')));
  {
    const AllocationCounter counter;
    const auto text = NarrowText(kClass, 1);
    EXPECT_EQ(counter.Count(), 1);
  }
}

TEST(HalQuery, AllocatesNothingForANumber) {
  auto run = UseNothing();
  run.OnQuery(GivesNumber(std::uint32_t{5}));
  const AllocationCounter counter;
  Number(kClass, 1);
  hal::LargeNumberOf(DeviceClass::kDisk, 1, 3);
  EXPECT_EQ(counter.Count(), 0);
}

}  // namespace
