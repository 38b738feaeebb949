/// What every implementation of device class 20 owes. A made-up machine has two failing devices or more, one
/// of which may be removed, and devices that do not fail.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/ostrine/device_record.h"
#include "platform/ostrine/hal.h"
#include "tests/contract/backend.h"

namespace contract {
namespace {

constexpr unsigned int kFailingClass = 20;

/// The table as a caller holds it: made by one call, released with free.
class Table {
 public:
  Table() {
    void* table = nullptr;
    EXPECT_EQ(HalInit(kFailingClass, &table), 1);
    table_.reset(static_cast<std::uint8_t*>(table));
  }

  std::uint32_t Count() const {
    std::uint32_t count = 0;
    std::memcpy(&count, table_.get() + 4, sizeof count);
    return count;
  }
  void* Entry(std::size_t index) const { return table_.get() + 8 + 520 * index; }

  std::string Text(std::size_t index, unsigned int id) const {
    std::array<char, 260> buffer{};
    unsigned int returned = 0;
    const int result =
        HalQueryInformation(kFailingClass, Entry(index), id, buffer.data(), buffer.size(), &returned);
    EXPECT_NE(result, 0) << "id " << id;
    return buffer.data();
  }
  std::uint32_t Code(std::size_t index) const {
    std::uint32_t code = 0;
    unsigned int returned = 0;
    EXPECT_NE(HalQueryInformation(kFailingClass, Entry(index), 3, &code, sizeof code, &returned), 0);
    return code;
  }

 private:
  struct Free {
    void operator()(std::uint8_t* table) const { std::free(table); }
  };
  std::unique_ptr<std::uint8_t, Free> table_;
};

class FailingDriverClass : public testing::Test {
 protected:
  std::unique_ptr<Backend> backend_ = Backend::SetUp();
};

TEST_F(FailingDriverClass, HasATableAlsoWhenItIsPreparedAgain) {
  const Table first;
  const Table second;
  EXPECT_EQ(first.Count(), second.Count());
}

TEST_F(FailingDriverClass, ListsTheDevicesThatFailWithEveryFact) {
  const auto expected = backend_->FailingDrivers();
  ASSERT_TRUE(expected);
  const Table table;
  ASSERT_EQ(table.Count(), expected->size());
  for (std::size_t i = 0; i < expected->size(); ++i) {
    const FailingDriver& driver = (*expected)[i];
    EXPECT_EQ(table.Text(i, 0), driver.caption);
    EXPECT_EQ(table.Text(i, 1), driver.device_id);
    EXPECT_EQ(table.Text(i, 2), driver.class_guid);
    EXPECT_EQ(table.Code(i), driver.error_code);
    if (driver.manufacturer) {
      EXPECT_EQ(table.Text(i, 4), *driver.manufacturer);
    }
    if (driver.service) {
      EXPECT_EQ(table.Text(i, 5), *driver.service);
    }
    EXPECT_EQ(table.Text(i, 6), driver.status);
  }
}

TEST_F(FailingDriverClass, HasAProblemForEveryEntry) {
  const Table table;
  for (std::uint32_t i = 0; i < table.Count(); ++i) EXPECT_NE(table.Code(i), 0U) << i;
}

TEST_F(FailingDriverClass, RefusesAnIdThatItDoesNotHave) {
  const Table table;
  std::array<char, 260> buffer{};
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    for (const unsigned int id : {7U, 0xFFFFFFFFU}) {
      unsigned int returned = 0;
      EXPECT_EQ(
          HalQueryInformation(kFailingClass, table.Entry(i), id, buffer.data(), buffer.size(), &returned), 0);
    }
  }
}

TEST_F(FailingDriverClass, KeepsTellingOfADeviceThatIsGoneUntilItIsPreparedAgain) {
  const auto removable = backend_->RemovableDevice();
  ASSERT_TRUE(removable);
  const std::uint32_t goes = removable->problem_code.value_or(0) != 0 ? 1 : 0;
  const Table table;
  std::vector<std::string> before;
  for (std::uint32_t i = 0; i < table.Count(); ++i) before.push_back(table.Text(i, 1));
  ASSERT_EQ(CDeviceInformention().UnstallDeviceByHardwareID(removable->hardware_ids.front(),
                                                            removable->setup_class),
            0U);

  for (std::uint32_t i = 0; i < table.Count(); ++i) EXPECT_EQ(table.Text(i, 1), before[i]);
  EXPECT_EQ(Table().Count(), table.Count() - goes);
  backend_->Rescan();
}

}  // namespace
}  // namespace contract
