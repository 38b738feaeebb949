#include "velmora/battery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"

namespace {

using simulator::Fault;
using simulator::HalQuery;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::NoLogger;
using velmora::testing::WithEachAllocationFailing;
using Threshold = _BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT;

static_assert(sizeof(Threshold) == 2 && offsetof(Threshold, start_percent) == 0);
static_assert(std::is_empty_v<CBattery> && !std::is_polymorphic_v<CBattery>);

simulator::Battery GoodBattery() {
  return {.manufacturer = "SANYO",
          .name = "DELL 7FR5J",
          .remaining_mwh = 30120,
          .full_mwh = 43830,
          .design_mwh = 50000,
          .voltage_mv = 11856,
          .rate_mw = -8892,
          .threshold = {{75, 80}}};
}

simulator::Machine MachineWith(std::vector<simulator::Battery> batteries) {
  auto machine = simulator::BlankMachine();
  machine.battery = {.ac_line = 1, .batteries = std::move(batteries)};
  machine.power = {.battery_life_percent = 87};
  return machine;
}

simulator::Machine MachineWithBattery() { return MachineWith({GoodBattery()}); }

/// A machine that answers every query with a number and a result of the test's choice.
class BatteryThatAnswers : public testing::Test {
 protected:
  void Answer(std::uint32_t number, int result = 1) {
    run_.OnQuery([=](const HalQuery& query) {
      for (std::size_t i = 0; i < query.buffer.size() && i < sizeof number; ++i) {
        query.buffer[i] = static_cast<unsigned char>(number >> (8 * i));
      }
      return result;
    });
  }

  simulator::Run run_{MachineWithBattery()};
  CBattery battery_;
};

TEST(Battery, PreparesItsClassWithoutATableAndAsksNothing) {
  const auto run = simulator::Use(MachineWithBattery());
  const CBattery battery;
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(8, null)"));
}

TEST(Battery, IsUsableWhenItsClassCouldNotBePrepared) {
  for (const Fault fault : {Fault::kFail, Fault::kThrow}) {
    auto run = simulator::Use(MachineWithBattery());
    run.Inject(fault, 0);
    CBattery battery;
    EXPECT_EQ(battery.GetBatteryName(), L"DELL 7FR5J") << "the result of preparing is ignored";
  }
}

TEST(Battery, GivesTheFactsOfTheBattery) {
  const auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  EXPECT_EQ(battery.GetBatteryName(), L"DELL 7FR5J");
  EXPECT_EQ(battery.GetBatteryManufacturer(), L"SANYO");
  EXPECT_EQ(battery.CheckBattery(), 1);
  EXPECT_EQ(battery.GetBatteryRemainCapacity(), 30120u);
  EXPECT_EQ(battery.GetBatteryFullCapacity(), 43830u);
  EXPECT_EQ(battery.GetBatteryDesignCapacity(), 50000u);
  EXPECT_EQ(battery.AcLine(), 1);
  EXPECT_EQ(battery.GetBatteryVoltage(), 11856u);
  EXPECT_FLOAT_EQ(battery.GetBattertLoss(), 12.34F);
  EXPECT_EQ(battery.GetDisChargeRate(), 8892u);
  EXPECT_EQ(battery.GetChargeRate(), 0u);
  EXPECT_EQ(battery.GetBatteryPercent(), 87u);
}

TEST(Battery, AsksEachValueByItsIdAndSize) {
  const auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  Threshold threshold{};
  battery.CheckBattery();
  battery.GetBatteryManufacturer();
  battery.GetBatteryName();
  battery.GetBatteryRemainCapacity();
  battery.GetBatteryFullCapacity();
  battery.GetBatteryDesignCapacity();
  battery.AcLine();
  battery.GetBatteryVoltage();
  battery.GetBattertLoss();
  battery.GetDisChargeRate();
  battery.GetChargeThreshold(threshold);
  battery.GetChargeRate();
  battery.SetChargeThreshold(threshold);
  auto trace = run.Trace();
  std::erase_if(trace, [](const std::string& call) { return call.starts_with("MultiByteToWideChar"); });
  EXPECT_THAT(trace, ElementsAre("HalInit(8, null)",                      //
                                 "HalQueryInformation(8, null, 0, 4)",    //
                                 "HalQueryInformation(8, null, 1, 260)",  //
                                 "HalQueryInformation(8, null, 2, 260)",  //
                                 "HalQueryInformation(8, null, 3, 4)",    //
                                 "HalQueryInformation(8, null, 4, 4)",    //
                                 "HalQueryInformation(8, null, 5, 4)",    //
                                 "HalQueryInformation(8, null, 6, 4)",    //
                                 "HalQueryInformation(8, null, 7, 4)",    //
                                 "HalQueryInformation(8, null, 8, 4)",    //
                                 "HalQueryInformation(8, null, 9, 4)",    //
                                 "HalQueryInformation(8, null, 9, 2)",    //
                                 "HalQueryInformation(8, null, 10, 4)",   //
                                 "HalSetInformation(8, null, 12, 2)"));
}

TEST(Battery, KeepsNothingBetweenCalls) {
  auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  battery.GetBatteryRemainCapacity();
  run.machine().battery->batteries[0].remaining_mwh = 29000;
  EXPECT_EQ(battery.GetBatteryRemainCapacity(), 29000u);
  run.machine().battery->batteries.clear();
  EXPECT_EQ(battery.GetBatteryRemainCapacity(), 0u);
  EXPECT_EQ(battery.GetBatteryName(), L"");
}

TEST(Battery, OfAMachineWithoutOneGivesTheFailureValues) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CBattery battery;
  Threshold threshold{7, 8};
  EXPECT_EQ(battery.GetBatteryName(), L"");
  EXPECT_EQ(battery.GetBatteryManufacturer(), L"");
  EXPECT_EQ(battery.CheckBattery(), 0);
  EXPECT_EQ(battery.GetBatteryRemainCapacity(), 0u);
  EXPECT_EQ(battery.GetBatteryFullCapacity(), 0u);
  EXPECT_EQ(battery.GetBatteryDesignCapacity(), 0u);
  EXPECT_EQ(battery.AcLine(), 0);
  EXPECT_EQ(battery.GetBatteryVoltage(), 0u);
  EXPECT_EQ(battery.GetBattertLoss(), 0.0F);
  EXPECT_EQ(battery.GetDisChargeRate(), 0u);
  EXPECT_EQ(battery.GetChargeRate(), 0u);
  EXPECT_FALSE(battery.GetChargeThreshold(threshold));
  EXPECT_FALSE(battery.SetChargeThreshold(threshold));
}

TEST_F(BatteryThatAnswers, ReturnsTheResultOfTheQueryForItsPresenceWhateverTheValueIs) {
  for (const int result : {1, 2, -1, 0x10000}) {
    Answer(0, result);
    EXPECT_EQ(battery_.CheckBattery(), result);
  }
  Answer(1, 0);
  EXPECT_EQ(battery_.CheckBattery(), 0) << "a value of 1 in the buffer does not count";
}

TEST_F(BatteryThatAnswers, GivesNothingThatAFailedQueryLeftInTheBuffer) {
  Answer(0x41414141, 0);
  EXPECT_EQ(battery_.GetBatteryRemainCapacity(), 0u);
  EXPECT_EQ(battery_.GetBatteryVoltage(), 0u);
  EXPECT_EQ(battery_.GetDisChargeRate(), 0u);
  EXPECT_EQ(battery_.AcLine(), 0);
  EXPECT_EQ(battery_.GetBattertLoss(), 0.0F);
  EXPECT_EQ(battery_.GetBatteryName(), L"");
}

TEST_F(BatteryThatAnswers, PassesNumbersOnUnscaled) {
  for (const std::uint32_t number : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    Answer(number);
    EXPECT_EQ(battery_.GetBatteryRemainCapacity(), number);
    EXPECT_EQ(battery_.GetBatteryFullCapacity(), number);
    EXPECT_EQ(battery_.GetBatteryDesignCapacity(), number);
    EXPECT_EQ(battery_.GetBatteryVoltage(), number);
    EXPECT_EQ(battery_.GetDisChargeRate(), number);
    EXPECT_EQ(battery_.GetChargeRate(), number);
  }
}

TEST_F(BatteryThatAnswers, GivesTheLowestByteOfTheMainsState) {
  Answer(0x01);
  EXPECT_EQ(battery_.AcLine(), 1);
  Answer(0xFFFFFF00);
  EXPECT_EQ(battery_.AcLine(), 0);
  Answer(0x12345678);
  EXPECT_EQ(battery_.AcLine(), 0x78);
  Answer(1, 2);
  EXPECT_EQ(battery_.AcLine(), 1) << "any result but 0 is success";
}

TEST_F(BatteryThatAnswers, ReadsARawLossOf1234As12Point34) {
  Answer(1234);
  EXPECT_FLOAT_EQ(battery_.GetBattertLoss(), 12.34F);
}

TEST_F(BatteryThatAnswers, ReadsARawLossOfZeroAndAFailedLossQueryBothAsZero) {
  Answer(0);
  EXPECT_EQ(battery_.GetBattertLoss(), 0.0F);
  Answer(1234, 0);
  EXPECT_EQ(battery_.GetBattertLoss(), 0.0F);
}

TEST_F(BatteryThatAnswers, TakesTheRawLossForUnsigned) {
  Answer(0xFFFFFFFF);
  EXPECT_FLOAT_EQ(battery_.GetBattertLoss(), 42949672.95F);
}

TEST_F(BatteryThatAnswers, ReadsAThresholdOnlyWhenTheQueryReturnsExactlyOne) {
  Threshold threshold{};
  Answer(0x5040, 1);
  EXPECT_TRUE(battery_.GetChargeThreshold(threshold));
  EXPECT_EQ(threshold.start_percent, 0x40);
  EXPECT_EQ(threshold.stop_percent, 0x50);
  for (const int result : {0, 2, -1, 0x10000, 0x101}) {
    Answer(0x5040, result);
    EXPECT_FALSE(battery_.GetChargeThreshold(threshold)) << result;
  }
}

TEST_F(BatteryThatAnswers, LeavesInAThresholdRecordWhateverAFailedQueryLeftThere) {
  Threshold threshold{7, 8};
  run_.OnQuery([](const HalQuery& query) {
    EXPECT_THAT(query.buffer, ElementsAre(7, 8)) << "the caller's bytes are not zeroed first";
    query.buffer[1] = 99;
    return 2;
  });
  EXPECT_FALSE(battery_.GetChargeThreshold(threshold));
  EXPECT_EQ(threshold.start_percent, 7);
  EXPECT_EQ(threshold.stop_percent, 99);
}

TEST(Battery, SetsAThresholdThatIsReadBack) {
  auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  Threshold threshold{};
  EXPECT_TRUE(battery.SetChargeThreshold({40, 60}));
  EXPECT_EQ(run.machine().battery->batteries[0].threshold, (simulator::ChargeThreshold{40, 60}));
  EXPECT_TRUE(battery.GetChargeThreshold(threshold));
  EXPECT_EQ(threshold.start_percent, 40);
  EXPECT_EQ(threshold.stop_percent, 60);
}

TEST(Battery, DoesNotCheckAThresholdItself) {
  const auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  for (const Threshold odd : {Threshold{80, 75}, Threshold{0, 0}, Threshold{255, 255}}) {
    EXPECT_FALSE(battery.SetChargeThreshold(odd)) << "which is for the abstraction library to refuse";
  }
  EXPECT_EQ(run.Calls("HalSetInformation"), 3);
}

TEST(Battery, FailsToSetAThresholdThatIsRefused) {
  auto machine = MachineWithBattery();
  machine.battery->batteries[0].refuses_threshold = true;
  auto run = simulator::Use(machine);
  CBattery battery;
  EXPECT_FALSE(battery.SetChargeThreshold({40, 60}));
  EXPECT_EQ(run.machine(), machine);
  for (const Fault fault : {Fault::kFail, Fault::kThrow}) {
    run.Inject(fault, run.Calls());
    EXPECT_FALSE(battery.SetChargeThreshold({40, 60}));
  }
}

TEST(Battery, CountsSeveralBatteriesAsOne) {
  auto second = GoodBattery();
  second.name = "second";
  second.rate_mw = 1000;
  second.threshold.reset();
  auto run = simulator::Use(MachineWith({GoodBattery(), second}));
  CBattery battery;
  EXPECT_EQ(battery.GetBatteryName(), L"DELL 7FR5J");
  EXPECT_EQ(battery.GetBatteryRemainCapacity(), 60240u);
  EXPECT_EQ(battery.GetBatteryFullCapacity(), 87660u);
  EXPECT_EQ(battery.GetBatteryDesignCapacity(), 100000u);
  EXPECT_EQ(battery.GetDisChargeRate(), 7892u);
  EXPECT_EQ(battery.GetBatteryVoltage(), 11856u) << "voltages are not added up";
  EXPECT_TRUE(battery.SetChargeThreshold({10, 20}));
  EXPECT_FALSE(run.machine().battery->batteries[1].threshold);
}

TEST(BatteryPercent, AsksOnceWhenTheFirstCallSucceeds) {
  const auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  EXPECT_EQ(battery.GetBatteryPercent(), 87u);
  EXPECT_EQ(run.Calls("GetSystemPowerStatus"), 1);
  EXPECT_EQ(run.Calls("HalQueryInformation"), 0);
}

TEST(BatteryPercent, ComesFromTheSecondOrThirdCallWhenTheFirstFail) {
  for (const std::uint32_t failures : {1u, 2u}) {
    auto machine = MachineWithBattery();
    machine.power->fails_next = failures;
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CBattery().GetBatteryPercent(), 87u);
    EXPECT_EQ(run.Calls("GetSystemPowerStatus"), static_cast<int>(failures) + 1);
  }
}

TEST(BatteryPercent, IsZeroWhenAllThreeCallsFail) {
  auto machine = MachineWithBattery();
  machine.power->fails_next = 3;
  const auto run = simulator::Use(machine);
  CBattery battery;
  EXPECT_EQ(battery.GetBatteryPercent(), 0u);
  EXPECT_EQ(run.Calls("GetSystemPowerStatus"), 3) << "there is no fourth";
  EXPECT_EQ(battery.GetBatteryPercent(), 87u) << "the next operation asks anew";
}

TEST(BatteryPercent, SurvivesCallsThatThrow) {
  auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  run.Inject(Fault::kThrow, 1);
  EXPECT_EQ(battery.GetBatteryPercent(), 87u) << "one that throws counts as one that fails";
  run.Inject(Fault::kThrow, run.Calls(), true);
  EXPECT_EQ(battery.GetBatteryPercent(), 0u);
}

TEST(BatteryPercent, IsPassedOnWithoutACheck) {
  for (const unsigned int percent : {0u, 1u, 100u, 101u, 254u, 255u}) {
    auto machine = MachineWithBattery();
    machine.power->battery_life_percent = static_cast<std::uint8_t>(percent);
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CBattery().GetBatteryPercent(), percent);
  }
}

TEST(BatteryPercent, Is255WhenTheSystemDoesNotKnow) {
  auto machine = MachineWithBattery();
  machine.power.emplace();
  const auto run = simulator::Use(machine);
  EXPECT_EQ(CBattery().GetBatteryPercent(), 255u);
}

TEST(BatteryPercent, IsLoggedWithItsPlace) {
  const CapturedLog log;
  const auto run = simulator::Use(MachineWithBattery());
  CBattery().GetBatteryPercent();
  ASSERT_EQ(log.Lines().size(), 1u);
  const auto& line = log.Lines()[0];
  EXPECT_EQ(line.level, "DEBUG");
  EXPECT_EQ(line.text, "CBattery::GetBatteryPercent: dwPercent=87");
  EXPECT_EQ(line.function, "CBattery::GetBatteryPercent");
  EXPECT_EQ(line.file, "src/power/battery.cpp");
  EXPECT_GT(line.line, 0);
}

TEST(BatteryPercent, IsLoggedAsZeroWhenAllThreeCallsFail) {
  auto machine = MachineWithBattery();
  machine.power->fails_next = 3;
  const CapturedLog log;
  const auto run = simulator::Use(machine);
  CBattery().GetBatteryPercent();
  EXPECT_THAT(log.Texts(), ElementsAre("CBattery::GetBatteryPercent: dwPercent=0"));
}

TEST(BatteryPercent, IsNotLoggedWhereDebugIsDisabledOrThereIsNoLogger) {
  const auto run = simulator::Use(MachineWithBattery());
  CapturedLog log;
  log.DisableDebug();
  EXPECT_EQ(CBattery().GetBatteryPercent(), 87u);
  EXPECT_THAT(log.Lines(), IsEmpty());
  const NoLogger no_logger;
  EXPECT_EQ(CBattery().GetBatteryPercent(), 87u);
}

TEST(BatteryPercent, SurvivesALoggerThatThrows) {
  const auto run = simulator::Use(MachineWithBattery());
  CapturedLog log;
  log.MakeAppenderThrow();
  EXPECT_EQ(CBattery().GetBatteryPercent(), 87u);
}

TEST(Battery, LogsNothingButThePercentage) {
  const CapturedLog log;
  const auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  Threshold threshold{};
  battery.GetBatteryName();
  battery.CheckBattery();
  battery.GetBattertLoss();
  battery.AcLine();
  battery.GetChargeThreshold(threshold);
  battery.SetChargeThreshold(threshold);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(Battery, GivesAnEmptyTextWhenMemoryRunsOut) {
  const auto run = simulator::Use(MachineWithBattery());
  CBattery battery;
  const auto results = WithEachAllocationFailing([&] { return battery.GetBatteryManufacturer().empty(); });
  EXPECT_FALSE(results.back());
}

}  // namespace
