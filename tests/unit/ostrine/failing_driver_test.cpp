// The table of failing devices, and what may be asked with its entries.
#include "ostrine/common/failing_driver.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

constexpr unsigned int kFailingClass = 20;

using OwnedTable = std::unique_ptr<std::uint8_t, decltype(&std::free)>;

std::vector<FailingDriver> TwoDrivers() {
  return {{.caption = "Wireless LAN Card",
           .device_id = "PCI\\VEN_14C3&DEV_7961\\4&1",
           .class_guid = "{4d36e972-e325-11ce-bfc1-08002be10318}",
           .manufacturer = "A Maker",
           .service = "mtkwlex",
           .error_code = 10},
          {.device_id = "ACPI\\ACME0001\\0", .error_code = 28}};
}

OwnedTable DriverTable(const FailingDrivers& drivers) {
  void* table = nullptr;
  EXPECT_TRUE(MakeFailingDriverTable(drivers, &table));
  return {static_cast<std::uint8_t*>(table), &std::free};
}

std::uint8_t* DriverEntry(const OwnedTable& table, std::size_t number) {
  return table.get() + 8 + 520 * number;
}

std::optional<std::string> AskDriver(void* device, unsigned int id) {
  std::array<char, 260> buffer{};
  Answer answer(buffer.data(), buffer.size(), nullptr);
  if (!QueryFailingDriver(device, id, answer)) return std::nullopt;
  return std::string(buffer.data());
}

std::optional<std::uint32_t> AskCode(void* device, unsigned int room = sizeof(std::uint32_t)) {
  std::uint32_t number = 77;
  Answer answer(&number, room, nullptr);
  if (!QueryFailingDriver(device, 3, answer)) return std::nullopt;
  return number;
}

TEST(FailingDriverTable, HoldsTheCountAtOffsetFour) {
  const OwnedTable table = DriverTable(TwoDrivers());
  std::uint32_t count = 0;
  std::memcpy(&count, table.get() + 4, sizeof count);
  EXPECT_EQ(count, 2U);
}

TEST(FailingDriverTable, IsAHeadWithoutEntriesWhereNothingFails) {
  const OwnedTable table = DriverTable(std::vector<FailingDriver>());
  ASSERT_NE(table, nullptr);
  std::uint64_t head = 77;
  std::memcpy(&head, table.get(), sizeof head);
  EXPECT_EQ(head, 0U);
}

TEST(FailingDriverTable, IsNotMadeWhereTheDevicesCannotBeListed) {
  void* table = nullptr;
  EXPECT_FALSE(MakeFailingDriverTable(std::nullopt, &table));
  EXPECT_FALSE(MakeFailingDriverTable(std::vector<FailingDriver>(0x10000), &table));
  EXPECT_EQ(table, nullptr);
}

TEST(FailingDriverTable, AnswersEveryFactOfEveryEntry) {
  const OwnedTable table = DriverTable(TwoDrivers());
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 0), "Wireless LAN Card");
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 1), "PCI\\VEN_14C3&DEV_7961\\4&1");
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 2), "{4d36e972-e325-11ce-bfc1-08002be10318}");
  EXPECT_EQ(AskCode(DriverEntry(table, 0)), 10U);
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 4), "A Maker");
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 5), "mtkwlex");
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 6), "Error");
  EXPECT_EQ(AskDriver(DriverEntry(table, 1), 0), "");
  EXPECT_EQ(AskDriver(DriverEntry(table, 1), 1), "ACPI\\ACME0001\\0");
  EXPECT_EQ(AskCode(DriverEntry(table, 1)), 28U);
}

TEST(FailingDriverTable, AnswersNothingForAnIdThatItDoesNotHave) {
  const OwnedTable table = DriverTable(TwoDrivers());
  for (const unsigned int id : {7U, 99U, 0xFFFFFFFFU})
    EXPECT_EQ(AskDriver(DriverEntry(table, 0), id), std::nullopt);
}

TEST(FailingDriverTable, AnswersNothingForWhatIsNoEntry) {
  const OwnedTable table = DriverTable(TwoDrivers());
  EXPECT_EQ(AskDriver(nullptr, 0), std::nullopt);
  EXPECT_EQ(AskDriver(table.get(), 0), std::nullopt) << "the head is no device";
  EXPECT_EQ(AskDriver(DriverEntry(table, 0) + 4, 0), std::nullopt);
}

TEST(FailingDriverTable, GivesNoHalfOfANumber) {
  const OwnedTable table = DriverTable(TwoDrivers());
  EXPECT_EQ(AskCode(DriverEntry(table, 0), 3), std::nullopt);
  EXPECT_EQ(AskCode(DriverEntry(table, 0), 4), 10U);
}

TEST(FailingDriverTable, CutsLongTextsAt259BytesAndBetweenCharacters) {
  auto drivers = TwoDrivers();
  drivers[0].caption = std::string(300, 'x');
  drivers[0].device_id = std::string(70'000, 'y');
  drivers[1].caption = "next";
  const OwnedTable table = DriverTable(drivers);
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 0), std::string(259, 'x'));
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 1), std::string(259, 'y'));
  EXPECT_EQ(AskDriver(DriverEntry(table, 0), 2), "{4d36e972-e325-11ce-bfc1-08002be10318}");
  EXPECT_EQ(AskDriver(DriverEntry(table, 1), 0), "next");
}

TEST(FailingDriversOfThisMachine, AreCountedInTheTableAndEachHasAProblem) {
  void* table = nullptr;
  ASSERT_NE(HalInit(kFailingClass, &table), 0);
  ASSERT_NE(table, nullptr);
  const OwnedTable owned(static_cast<std::uint8_t*>(table), &std::free);
  std::uint32_t count = 0;
  std::memcpy(&count, owned.get() + 4, sizeof count);
  for (std::uint32_t i = 0; i < count; ++i) {
    unsigned int returned = 0;
    std::uint32_t code = 0;
    EXPECT_NE(HalQueryInformation(kFailingClass, DriverEntry(owned, i), 3, &code, sizeof code, &returned), 0);
    EXPECT_NE(code, 0U);
    EXPECT_EQ(returned, sizeof code);
  }
}

TEST(FailingDriversOfThisMachine, NeedAPlaceForTheirTable) { EXPECT_EQ(HalInit(kFailingClass, nullptr), 0); }

TEST(FailingDriversOfThisMachine, CannotBeOpenedOrSet) {
  std::array<char, 520> buffer{};
  unsigned int returned = 0;
  EXPECT_EQ(HalOpenDevice(kFailingClass, buffer.data()), 0);
  EXPECT_EQ(HalCloseDevice(kFailingClass, buffer.data()), 0);
  EXPECT_EQ(HalSetInformation(kFailingClass, nullptr, 0, buffer.data(), buffer.size(), &returned), 0);
}

}  // namespace
}  // namespace ostrine
