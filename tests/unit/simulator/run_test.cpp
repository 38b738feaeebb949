#include "simulator/run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/ostrine/device_record.h"
#include "platform/ostrine/hal.h"
#include "tests/support/simulator/allocations.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using simulator::Fault;
using simulator::HalQuery;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::hal::DeviceRecord;
using velmora::testing::CapturedProblems;

constexpr unsigned int kBaseboard = 4;
constexpr unsigned int kDisk = 7;
constexpr unsigned int kNoSuchClass = 99;
constexpr unsigned int kProduct = 0;

simulator::Machine MachineWithProduct(const std::string& product) {
  auto machine = simulator::BlankMachine();
  machine.baseboard.emplace().product = product;
  return machine;
}

/// One query for text, as the library makes it.
struct Answer {
  explicit Answer(unsigned int information_id, unsigned int device_class = kBaseboard,
                  unsigned int size = 260) {
    result = HalQueryInformation(device_class, nullptr, information_id, buffer.data(), size, &returned_size);
  }
  int result = 0;
  unsigned int returned_size = 0;
  std::array<char, 260> buffer{};
};

TEST(Run, AnswersFromItsMachine) {
  const auto run = simulator::Use(MachineWithProduct("20XW"));
  const Answer answer(kProduct);
  EXPECT_EQ(answer.result, 1);
  EXPECT_STREQ(answer.buffer.data(), "20XW");
  EXPECT_EQ(answer.returned_size, 5u) << "the terminating zero counts";
}

TEST(Run, RefusesWhatTheMachineDoesNotHave) {
  const auto run = simulator::Use(MachineWithProduct("20XW"));
  EXPECT_EQ(Answer(kProduct + 1).result, 0) << "a text that is absent";
  EXPECT_EQ(Answer(1000).result, 0) << "an id that nobody knows";
}

TEST(Run, CutsTextToTheBufferAndKeepsTheZero) {
  const auto run = simulator::Use(MachineWithProduct("20XW"));
  const Answer answer(kProduct, kBaseboard, 3);
  EXPECT_EQ(answer.result, 1);
  EXPECT_EQ(std::string(answer.buffer.data(), 4), std::string("20\0\0", 4));
}

TEST(Run, ShowsChangesOfItsMachineAtOnce) {
  auto run = simulator::Use(MachineWithProduct("before"));
  run.machine().baseboard->product = "after";
  EXPECT_STREQ(Answer(kProduct).buffer.data(), "after");
  run.machine().baseboard->product.reset();
  EXPECT_EQ(Answer(kProduct).result, 0);
}

TEST(Run, NamesACallThatNothingWasScriptedFor) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  EXPECT_EQ(Answer(kProduct).result, 0);
  EXPECT_EQ(Answer(0, kNoSuchClass).result, 0);
  EXPECT_THAT(
      captured.Problems(),
      ElementsAre("HalQueryInformation was called, but the machine has no script for device class 4",
                  "HalQueryInformation was called, but the machine has no script for device class 99"));
}

TEST(Run, HasAScriptForEverySectionOfAnEmptyMachine) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::EmptyMachine());
  EXPECT_EQ(Answer(kProduct).result, 0);
  EXPECT_THAT(captured.Problems(), IsEmpty());
}

TEST(Run, NamesAWriteThatNothingWasScriptedFor) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::EmptyMachine());
  unsigned int returned_size = 0;
  std::array<unsigned char, 2> buffer{};
  EXPECT_EQ(HalSetInformation(kBaseboard, nullptr, 0, buffer.data(), 2, &returned_size), 0);
  EXPECT_THAT(captured.Problems(),
              ElementsAre("HalSetInformation was called, but the machine has no script for device class 4"));
}

TEST(Run, TracesEveryCallInOrderWithItsArguments) {
  auto machine = simulator::EmptyMachine();
  machine.disks->resize(4);
  const auto run = simulator::Use(machine);
  DeviceRecord record{.number = 3};
  HalInit(kBaseboard, nullptr);
  Answer{6};
  HalOpenDevice(kDisk, &record);
  HalCloseDevice(kDisk, &record);

  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(4, null)", "HalQueryInformation(4, null, 6, 260)",
                                       "HalOpenDevice(7, 3)", "HalCloseDevice(7, 3)"));
  EXPECT_EQ(run.Calls(), 4);
  EXPECT_EQ(run.Calls("HalInit"), 1);
  EXPECT_EQ(run.Calls("HalNothing"), 0);
}

TEST(Run, CountsHandlesThatStandOpen) {
  const auto run = simulator::Use(simulator::BlankMachine());
  DeviceRecord first{.number = 0};
  DeviceRecord second{.number = 1};
  HalOpenDevice(kDisk, &first);
  HalOpenDevice(kDisk, &second);
  EXPECT_EQ(run.OpenHandles(), 2);
  EXPECT_NE(first.handle, second.handle);
  HalCloseDevice(kDisk, &first);
  EXPECT_EQ(run.OpenHandles(), 1);
  HalCloseDevice(kDisk, &second);
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(Run, ReportsAHandleThatIsLeftOpen) {
  const CapturedProblems captured;
  {
    const auto run = simulator::Use(simulator::BlankMachine());
    DeviceRecord record;
    HalOpenDevice(kDisk, &record);
  }
  EXPECT_THAT(captured.Problems(), ElementsAre("handles left open: 1"));
}

TEST(Run, ReportsAHandleThatIsClosedTwice) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  DeviceRecord record;
  HalOpenDevice(kDisk, &record);
  HalCloseDevice(kDisk, &record);
  EXPECT_THAT(captured.Problems(), IsEmpty());
  HalCloseDevice(kDisk, &record);
  EXPECT_THAT(captured.Problems(), ElementsAre("HalCloseDevice closed a handle that is not open"));
}

TEST(Run, ReportsARecordThatIsNotZeroedBeforeItIsOpened) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  DeviceRecord record{.handle = 5};
  HalOpenDevice(kDisk, &record);
  HalCloseDevice(kDisk, &record);
  EXPECT_THAT(captured.Problems(), ElementsAre("HalOpenDevice was given a record that is not zeroed"));
}

TEST(Run, ReportsATablePointerThatIsNotNull) {
  const CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  int leftover = 0;
  void* table = &leftover;
  HalInit(kDisk, &table);
  EXPECT_THAT(captured.Problems(), ElementsAre("HalInit was given a table pointer that is not null"));
}

TEST(Run, ReportsAQueryWhoseCountIsNotZeroed) {
  const CapturedProblems captured;
  const auto run = simulator::Use(MachineWithProduct("20XW"));
  std::array<char, 260> buffer{};
  unsigned int count = 1;
  EXPECT_EQ(HalQueryInformation(kBaseboard, nullptr, kProduct, buffer.data(), 260, &count), 0);
  EXPECT_EQ(HalQueryInformation(kBaseboard, nullptr, kProduct, buffer.data(), 260, nullptr), 0);
  EXPECT_THAT(captured.Problems(), Each("HalQueryInformation was given no zeroed count"));
  EXPECT_EQ(captured.Problems().size(), 2u);
}

TEST(Run, MakesOneCallFail) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  run.Inject(Fault::kFail, 1);
  EXPECT_EQ(Answer(kProduct).result, 1);
  EXPECT_EQ(Answer(kProduct).result, 0);
  EXPECT_EQ(Answer(kProduct).result, 1);
}

TEST(Run, MakesEveryCallFailFromOneOn) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  DeviceRecord record;
  run.Inject(Fault::kFail, 1, true);
  EXPECT_EQ(Answer(kProduct).result, 1);
  EXPECT_EQ(Answer(kProduct).result, 0);
  EXPECT_EQ(HalInit(kBaseboard, nullptr), 0);
  EXPECT_EQ(HalSetInformation(kBaseboard, nullptr, 0, nullptr, 0, nullptr), 0);
  EXPECT_EQ(HalOpenDevice(kDisk, &record), 0);
  EXPECT_EQ(record.handle, 0u);
}

TEST(Run, GivesNothingButSuccessWhereACallIsMadeEmpty) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  run.Inject(Fault::kEmpty, 0);
  const Answer answer(kProduct);
  EXPECT_EQ(answer.result, 1);
  EXPECT_THAT(answer.buffer, Each('\0'));
}

TEST(Run, FillsTheWholeBufferWhereTheZeroIsToBeMissing) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  run.Inject(Fault::kUnterminated, 0);
  const Answer answer(kProduct);
  EXPECT_EQ(answer.result, 1);
  EXPECT_THAT(answer.buffer, Each('A'));
}

TEST(Run, ThrowsOnceOrForEver) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  run.Inject(Fault::kThrow, 0);
  EXPECT_THROW(Answer{kProduct}, simulator::InjectedFault);
  EXPECT_EQ(Answer(kProduct).result, 1);
  run.Inject(Fault::kThrow, 2, true);
  EXPECT_THROW(Answer{kProduct}, simulator::InjectedFault);
  EXPECT_THROW(Answer{kProduct}, simulator::InjectedFault);
  EXPECT_EQ(run.Calls(), 4) << "a call that throws was made, too";
}

TEST(Run, IsLeftAlsoByACallThatThrows) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  run.Inject(Fault::kThrow, 0);
  EXPECT_THROW(Answer{kProduct}, simulator::InjectedFault);
  EXPECT_FALSE(simulator::IsInsideSimulator());
}

TEST(Run, CountsAHandleAsClosedWhenItsCloseIsMadeToFailOrThrow) {
  auto run = simulator::Use(simulator::BlankMachine());
  DeviceRecord first;
  DeviceRecord second;
  HalOpenDevice(kDisk, &first);
  HalOpenDevice(kDisk, &second);
  run.Inject(Fault::kFail, 2);
  EXPECT_EQ(HalCloseDevice(kDisk, &first), 0);
  run.Inject(Fault::kThrow, 3);
  EXPECT_THROW(HalCloseDevice(kDisk, &second), simulator::InjectedFault);
  EXPECT_EQ(run.OpenHandles(), 0);
}

TEST(Run, LetsTheTestAnswerAQuery) {
  auto run = simulator::Use(simulator::BlankMachine());
  run.OnQuery([](const HalQuery& query) {
    EXPECT_TRUE(simulator::IsInsideSimulator());
    query.buffer[0] = static_cast<unsigned char>('a' + query.information_id);
    query.returned_size = 0xFFFFFFFF;
    return 2;
  });
  const Answer answer(3, kNoSuchClass);
  EXPECT_EQ(answer.result, 2);
  EXPECT_STREQ(answer.buffer.data(), "d");
  EXPECT_EQ(answer.returned_size, 0xFFFFFFFF);
}

TEST(Run, AnswersItselfWhatTheTestDoesNot) {
  auto run = simulator::Use(MachineWithProduct("20XW"));
  run.OnQuery([](const HalQuery& query) -> std::optional<int> {
    if (query.information_id == kProduct) return std::nullopt;
    return 0;
  });
  EXPECT_STREQ(Answer(kProduct).buffer.data(), "20XW");
  EXPECT_EQ(Answer(kProduct + 1).result, 0);
}

TEST(Run, KeepsItsOwnAllocationsOutOfTheCount) {
  auto run = simulator::Use(MachineWithProduct(std::string(100, 'a')));
  const velmora::testing::AllocationCounter counter;
  const Answer answer(kProduct);
  EXPECT_EQ(counter.Count(), 0);
}

TEST(Run, ReportsASecondOneAndGivesTheFirstBack) {
  const CapturedProblems captured;
  const auto first = simulator::Use(MachineWithProduct("first"));
  {
    const auto second = simulator::Use(MachineWithProduct("second"));
    EXPECT_STREQ(Answer(kProduct).buffer.data(), "second");
  }
  EXPECT_STREQ(Answer(kProduct).buffer.data(), "first");
  EXPECT_THAT(captured.Problems(), ElementsAre("two machines are in use at once"));
}

TEST(Run, LeavesEverythingAsItWasWhenItsBeginningThrows) {
  const auto first = simulator::Use(MachineWithProduct("first"));
  const auto before =
      simulator::SetProblemHandler([](const std::string& problem) { throw std::runtime_error(problem); });
  EXPECT_THROW(simulator::Run(MachineWithProduct("second")), std::runtime_error);
  simulator::SetProblemHandler(before);
  EXPECT_STREQ(Answer(kProduct).buffer.data(), "first");
}

TEST(Run, BeginsAfreshEachTime) {
  {
    auto run = simulator::Use(MachineWithProduct("20XW"));
    run.Inject(Fault::kFail, 0, true);
    run.OnQuery([](const HalQuery&) { return 0; });
    EXPECT_EQ(Answer(kProduct).result, 0);
  }
  const auto run = simulator::Use(MachineWithProduct("20XW"));
  EXPECT_EQ(run.Calls(), 0);
  EXPECT_EQ(Answer(kProduct).result, 1);
}

}  // namespace
