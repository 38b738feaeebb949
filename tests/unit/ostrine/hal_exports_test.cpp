// The exported functions on whatever machine the tests run on.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "ostrine/common/baseboard.h"
#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

constexpr unsigned int kBaseboardClass = 4;

TEST(HalExports, PrepareTheBaseboardAsOftenAsAskedAndGiveNoTable) {
  void* table = nullptr;
  EXPECT_NE(HalInit(kBaseboardClass, nullptr), 0);
  EXPECT_NE(HalInit(kBaseboardClass, nullptr), 0);
  EXPECT_NE(HalInit(kBaseboardClass, &table), 0);
  EXPECT_EQ(table, nullptr);
}

TEST(HalExports, AnswerEachBaseboardIdWithWhatTheSystemTellsOrFail) {
  for (unsigned int id = 0; id <= 6; ++id) {
    SCOPED_TRACE(id);
    std::array<char, 260> buffer{};
    unsigned int returned = 0;
    const int succeeded =
        HalQueryInformation(kBaseboardClass, nullptr, id, buffer.data(), buffer.size(), &returned);
    const auto expected = ReadBaseboardText(static_cast<BaseboardFact>(id));
    EXPECT_EQ(succeeded != 0, expected.has_value());
    EXPECT_EQ(std::string(buffer.data()), expected.value_or(""));
    EXPECT_EQ(returned, expected ? expected->size() + 1 : 0u);
  }
}

TEST(HalExports, FailForAnIdThatTheBaseboardDoesNotHave) {
  std::array<char, 260> buffer{};
  for (const unsigned int id : {7u, 99u, 0xFFFFFFFFu}) {
    EXPECT_EQ(HalQueryInformation(kBaseboardClass, nullptr, id, buffer.data(), buffer.size(), nullptr), 0);
  }
}

TEST(HalExports, LetNothingBeSetOpenedOrClosedInTheBaseboardClass) {
  std::array<char, 16> record{};
  unsigned int returned = 0;
  EXPECT_EQ(HalSetInformation(kBaseboardClass, nullptr, 0, record.data(), record.size(), &returned), 0);
  EXPECT_EQ(HalOpenDevice(kBaseboardClass, record.data()), 0);
  EXPECT_EQ(HalCloseDevice(kBaseboardClass, record.data()), 0);
}

TEST(HalExports, FailForAClassThatNobodyKnows) {
  void* table = nullptr;
  std::array<char, 16> buffer{};
  for (const unsigned int device_class : {21u, 4096u, 0xFFFFFFFFu}) {
    EXPECT_EQ(HalInit(device_class, &table), 0);
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(HalQueryInformation(device_class, nullptr, 0, buffer.data(), buffer.size(), nullptr), 0);
    EXPECT_EQ(HalSetInformation(device_class, nullptr, 0, buffer.data(), buffer.size(), nullptr), 0);
    EXPECT_EQ(HalOpenDevice(device_class, buffer.data()), 0);
    EXPECT_EQ(HalCloseDevice(device_class, buffer.data()), 0);
  }
}

}  // namespace
}  // namespace ostrine
