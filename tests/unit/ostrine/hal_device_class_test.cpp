#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <new>
#include <span>
#include <stdexcept>

#include "ostrine/common/device_class.h"

namespace ostrine {
namespace {

bool GiveTable(void** table) {
  static int the_table = 0;
  *table = &the_table;
  return true;
}
bool AnswerDeviceAndId(void* device, unsigned int information_id, Answer& answer) {
  return answer.Number(information_id + *static_cast<std::uint32_t*>(device));
}
bool TakeTwoBytes(void* device, unsigned int information_id, std::span<const std::uint8_t> value) {
  if (information_id != 12 || value.size() != 2) return false;
  *static_cast<std::uint32_t*>(device) = static_cast<std::uint32_t>(value[0] << 8 | value[1]);
  return true;
}
bool Increase(void* record) {
  ++*static_cast<std::uint32_t*>(record);
  return true;
}
bool Decrease(void* record) {
  --*static_cast<std::uint32_t*>(record);
  return true;
}

constexpr std::array kRows{
    DeviceClass{.number = 7,
                .init = GiveTable,
                .query = AnswerDeviceAndId,
                .set = TakeTwoBytes,
                .open = Increase,
                .close = Decrease},
    DeviceClass{.number = 9},
    DeviceClass{.number = 11,
                .init = [](void**) -> bool { throw std::runtime_error("init"); },
                .query = [](void*, unsigned int, Answer&) -> bool { throw std::bad_alloc(); },
                .set = [](void*, unsigned int, std::span<const std::uint8_t>) -> bool { throw 1; },
                .open = [](void*) -> bool { throw 1; },
                .close = [](void*) -> bool { throw 1; }},
};
constexpr DeviceClasses kClasses(kRows);

TEST(HalDeviceClasses, HandEachCallWithItsArgumentsToTheClassOfThatNumber) {
  void* table = nullptr;
  EXPECT_EQ(kClasses.Init(7, &table), 1);
  EXPECT_NE(table, nullptr);

  std::uint32_t device = 100;
  std::uint32_t number = 0;
  unsigned int returned = 0;
  EXPECT_EQ(kClasses.Query(7, &device, 5, &number, sizeof number, &returned), 1);
  EXPECT_EQ(number, 105u);
  EXPECT_EQ(returned, 4u);

  const std::array<std::uint8_t, 2> value{0x12, 0x34};
  returned = 0;
  EXPECT_EQ(kClasses.Set(7, &device, 12, value.data(), 2, &returned), 1);
  EXPECT_EQ(device, 0x1234u);
  EXPECT_EQ(returned, 2u);

  EXPECT_EQ(kClasses.Open(7, &device), 1);
  EXPECT_EQ(device, 0x1235u);
  EXPECT_EQ(kClasses.Close(7, &device), 1);
  EXPECT_EQ(device, 0x1234u);
}

void ExpectEverythingFails(unsigned int device_class) {
  void* table = nullptr;
  std::uint32_t device = 1;
  std::uint32_t number = 2;
  unsigned int returned = 0;
  EXPECT_EQ(kClasses.Init(device_class, &table), 0);
  EXPECT_EQ(table, nullptr);
  EXPECT_EQ(kClasses.Query(device_class, &device, 0, &number, sizeof number, &returned), 0);
  EXPECT_EQ(kClasses.Set(device_class, &device, 0, &number, sizeof number, &returned), 0);
  EXPECT_EQ(kClasses.Open(device_class, &device), 0);
  EXPECT_EQ(kClasses.Close(device_class, &device), 0);
  EXPECT_EQ(returned, 0u);
}

TEST(HalDeviceClasses, FailForAClassThatIsNotThere) {
  ExpectEverythingFails(0);
  ExpectEverythingFails(0xFFFFFFFF);
}

TEST(HalDeviceClasses, FailForAnOperationThatTheClassDoesNotHave) { ExpectEverythingFails(9); }

TEST(HalDeviceClasses, TurnAnyExceptionIntoAFailure) { ExpectEverythingFails(11); }

TEST(HalDeviceClasses, FailForAnAbsentBufferOrRecordWithoutAskingTheClass) {
  std::uint32_t device = 1;
  std::uint32_t number = 0;
  EXPECT_EQ(kClasses.Query(7, &device, 5, nullptr, 4, nullptr), 0);
  EXPECT_EQ(kClasses.Query(7, &device, 5, &number, 0, nullptr), 0);
  EXPECT_EQ(kClasses.Set(7, &device, 12, nullptr, 2, nullptr), 0);
  EXPECT_EQ(kClasses.Set(7, &device, 12, &number, 0, nullptr), 0);
  EXPECT_EQ(kClasses.Open(7, nullptr), 0);
  EXPECT_EQ(kClasses.Close(7, nullptr), 0);
  EXPECT_EQ(device, 1u);
}

TEST(HalDeviceClasses, DoWithoutAPlaceForTheReturnedSize) {
  std::uint32_t device = 1;
  std::uint32_t number = 0;
  EXPECT_EQ(kClasses.Query(7, &device, 5, &number, sizeof number, nullptr), 1);
  const std::array<std::uint8_t, 2> value{0, 9};
  EXPECT_EQ(kClasses.Set(7, &device, 12, value.data(), 2, nullptr), 1);
  EXPECT_EQ(device, 9u);
}

}  // namespace
}  // namespace ostrine
