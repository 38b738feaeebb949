/// Questions to one numbered device: open, ask, close.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/halquery.h"
#include "simulator/run.h"

namespace {

namespace hal = velmora::hal;
using hal::DeviceClass;
using hal::LargeNumberOf;
using hal::QueryInto;
using hal::WideTextOf;
using simulator::Fault;
using simulator::HalQuery;
using testing::ElementsAre;

constexpr auto kDiskClass = DeviceClass::kDisk;
constexpr std::uint32_t kDevice = 3;

// The numbers of the calls that one question makes.
constexpr int kOpen = 0;
constexpr int kQuery = 1;
constexpr int kClose = 2;

/// A machine whose devices answer 66, or "B", with `result`.
class HalQueryDevice : public testing::Test {
 protected:
  void AnswerWith(int result) {
    run_.OnQuery([=](const HalQuery& query) {
      query.buffer[0] = 66;
      return result;
    });
  }
  void SetUp() override { AnswerWith(1); }

  simulator::Run run_{simulator::BlankMachine()};
};

TEST_F(HalQueryDevice, IsOpenedAskedForTextAndClosed) {
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"B");
  EXPECT_THAT(run_.Trace(), ElementsAre("HalOpenDevice(7, 3)", "HalQueryInformation(7, record 3, 2, 520)",
                                        "HalCloseDevice(7, 3)"));
}

TEST_F(HalQueryDevice, IsOpenedAskedForALargeNumberAndClosed) {
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 4), 66u);
  EXPECT_THAT(run_.Trace(), ElementsAre("HalOpenDevice(7, 3)", "HalQueryInformation(7, record 3, 4, 8)",
                                        "HalCloseDevice(7, 3)"));
}

TEST_F(HalQueryDevice, IsOpenedAskedIntoAValueAndClosed) {
  int value = 0;
  EXPECT_EQ(QueryInto(kDiskClass, kDevice, 10, value), 1);
  EXPECT_EQ(value, 66);
  EXPECT_THAT(run_.Trace(), ElementsAre("HalOpenDevice(7, 3)", "HalQueryInformation(7, record 3, 10, 4)",
                                        "HalCloseDevice(7, 3)"));
}

TEST_F(HalQueryDevice, IsAskedThroughTheRecordThatWasOpened) {
  run_.OnQuery([](const HalQuery& query) {
    hal::DeviceRecord record;
    std::memcpy(&record, query.device, sizeof record);
    EXPECT_NE(record.handle, 0u);
    EXPECT_EQ(record.number, kDevice);
    EXPECT_EQ(record.zero, 0u);
    return 1;
  });
  int value = 0;
  WideTextOf(kDiskClass, kDevice, 2);
  LargeNumberOf(kDiskClass, kDevice, 2);
  QueryInto(kDiskClass, kDevice, 2, value);
  EXPECT_EQ(run_.Calls("HalQueryInformation"), 3);
}

TEST_F(HalQueryDevice, IsNeitherAskedNorClosedWhenItDoesNotOpen) {
  int value = 7;
  run_.Inject(Fault::kFail, kOpen, true);
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"");
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 0u);
  EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), 0);
  EXPECT_EQ(value, 7) << "nobody wrote to it";
  EXPECT_THAT(run_.Trace(), testing::Each("HalOpenDevice(7, 3)"));
  EXPECT_EQ(run_.Calls(), 3);
}

TEST_F(HalQueryDevice, IsNeitherAskedNorClosedWhenOpeningThrows) {
  int value = 7;
  run_.Inject(Fault::kThrow, kOpen, true);
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"");
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 0u);
  EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), 0);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(run_.Calls(), 3);
}

TEST_F(HalQueryDevice, IsClosedWhenTheQueryFails) {
  AnswerWith(0);
  int value = 0;
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"");
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 0u);
  EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), 0);
  EXPECT_EQ(run_.Calls("HalCloseDevice"), 3);
  EXPECT_EQ(run_.OpenHandles(), 0);
}

class HalQueryThatThrows : public HalQueryDevice, public testing::WithParamInterface<int> {};

TEST_P(HalQueryThatThrows, StillClosesTheDeviceOnce) {
  int value = 0;
  const bool is_text = GetParam() == 0;
  const bool is_number = GetParam() == 1;
  run_.Inject(Fault::kThrow, kQuery);
  if (is_text) {
    EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"");
  } else if (is_number) {
    EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 0u);
  } else {
    EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), 0);
  }
  EXPECT_EQ(run_.Calls("HalCloseDevice"), 1);
  EXPECT_EQ(run_.OpenHandles(), 0);
}

INSTANTIATE_TEST_SUITE_P(OfEachFamily, HalQueryThatThrows, testing::Values(0, 1, 2));

TEST_F(HalQueryDevice, KeepsTheAnswerWhenClosingFails) {
  run_.Inject(Fault::kFail, kClose);
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"B");
  run_.Inject(Fault::kFail, 3 + kClose);
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 66u);
}

TEST_F(HalQueryDevice, KeepsTheAnswerWhenClosingThrows) {
  int value = 0;
  run_.Inject(Fault::kThrow, kClose);
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"B");
  run_.Inject(Fault::kThrow, 3 + kClose);
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 66u);
  run_.Inject(Fault::kThrow, 6 + kClose);
  EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), 1);
  EXPECT_EQ(value, 66);
  EXPECT_EQ(run_.Calls("HalCloseDevice"), 3);
}

TEST_F(HalQueryDevice, GivesTheQuerysOwnResult) {
  int value = 0;
  for (const int result : {2, -1, 0}) {
    AnswerWith(result);
    EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), result);
  }
}

TEST_F(HalQueryDevice, LetsTheQueryWriteIntoTheValueAsItStands) {
  constexpr int kBefore = 0x11223344;
  int value = kBefore;
  run_.OnQuery([](const HalQuery& query) {
    EXPECT_THAT(query.buffer, ElementsAre(0x44, 0x33, 0x22, 0x11)) << "the value is not zeroed";
    query.buffer[1] = 0xFF;
    return 0;
  });
  EXPECT_EQ(QueryInto(kDiskClass, kDevice, 2, value), 0);
  EXPECT_EQ(value, 0x1122FF44) << "also a query that fails leaves what it wrote";
}

TEST_F(HalQueryDevice, TakesAnyValueButZeroForSuccess) {
  AnswerWith(2);
  EXPECT_EQ(WideTextOf(kDiskClass, kDevice, 2), L"B");
  EXPECT_EQ(LargeNumberOf(kDiskClass, kDevice, 2), 66u);
}

}  // namespace
