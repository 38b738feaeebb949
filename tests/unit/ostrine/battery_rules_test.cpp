#include "ostrine/common/battery_rules.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace ostrine {
namespace {

constexpr std::uint32_t kUnknownAmount = 0xFFFFFFFF;
constexpr std::uint32_t kUnknownRate = 0x80000000;

using Amount = std::optional<std::uint32_t>;
using BatteryList = std::vector<Battery>;

Battery GoodBattery() {
  return {.manufacturer = "SANYO",
          .name = "7FR5J",
          .remaining = 30120,
          .full = 43830,
          .design = 50000,
          .voltage = 11856,
          .rate = -8892};
}

Battery EmptyBay() { return {.remaining = 0, .full = 0, .design = 0, .voltage = 0, .rate = 0}; }

Amount Of(const BatteryList& batteries, BatteryNumber number) { return CombinedNumber(batteries, number); }

Amount Present(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kPresent); }
Amount Remaining(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kRemaining); }
Amount Full(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kFull); }
Amount Loss(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kLoss); }
Amount Voltage(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kVoltage); }
Amount Discharge(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kDischargeRate); }
Amount Charge(const BatteryList& batteries) { return Of(batteries, BatteryNumber::kChargeRate); }

/// A battery whose design and full capacity are these.
Battery Worn(std::uint32_t design, std::uint32_t full) { return {.full = full, .design = design}; }

Battery WithRate(std::optional<std::int32_t> rate) {
  auto battery = GoodBattery();
  battery.rate = rate;
  return battery;
}

TEST(BatteryRules, GiveTheNumbersOfTheOnlyBattery) {
  const BatteryList one{GoodBattery()};
  EXPECT_EQ(Present(one), 1u);
  EXPECT_EQ(Remaining(one), 30120u);
  EXPECT_EQ(Full(one), 43830u);
  EXPECT_EQ(Of(one, BatteryNumber::kDesign), 50000u);
  EXPECT_EQ(Voltage(one), 11856u);
  EXPECT_EQ(Loss(one), 1234u);
  EXPECT_EQ(Discharge(one), 8892u);
  EXPECT_EQ(Charge(one), 0u);
}

TEST(BatteryRules, GiveNothingWithoutABattery) {
  for (const BatteryList& none :
       {BatteryList{}, BatteryList{EmptyBay()}, BatteryList{Battery{}, EmptyBay()}}) {
    for (unsigned int number = 0; number <= 12; ++number) {
      EXPECT_EQ(CombinedNumber(none, static_cast<BatteryNumber>(number)), std::nullopt) << number;
    }
    EXPECT_EQ(CombinedName(none), "");
  }
}

TEST(BatteryRules, GiveNothingForANumberThatTheClassDoesNotHave) {
  for (const unsigned int number : {1u, 2u, 6u, 11u, 12u, 99u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Of({GoodBattery()}, static_cast<BatteryNumber>(number)), std::nullopt);
  }
}

TEST(BatteryRules, AddEnergiesUp) {
  auto second = GoodBattery();
  second.remaining = 1000;
  second.full = 20000;
  EXPECT_EQ(Remaining({GoodBattery(), second}), 31120u);
  EXPECT_EQ(Full({GoodBattery(), second}), 63830u);
}

TEST(BatteryRules, AreNotFooledByAPhantomBattery) {
  auto unknown = Battery{.full = kUnknownAmount, .design = kUnknownAmount, .voltage = kUnknownAmount};
  for (const Battery& phantom : {EmptyBay(), Battery{}, unknown}) {
    EXPECT_TRUE(IsPhantom(phantom));
    EXPECT_EQ(Remaining({phantom, GoodBattery()}), 30120u);
    EXPECT_EQ(Full({GoodBattery(), phantom}), 43830u);
    EXPECT_EQ(Loss({GoodBattery(), phantom}), 1234u);
    EXPECT_EQ(Discharge({phantom, GoodBattery()}), 8892u);
  }
}

TEST(BatteryRules, CountABatteryThatTellsAnythingAtAllOfItself) {
  EXPECT_FALSE(IsPhantom({.full = 1}));
  EXPECT_FALSE(IsPhantom({.design = 1}));
  EXPECT_FALSE(IsPhantom({.voltage = 1}));
  EXPECT_EQ(Present({{.voltage = 11000}}), 1u) << "it can be read, though it knows no energy";
}

TEST(BatteryRules, NeverTakeAMarkerForANumber) {
  for (const std::uint32_t marker : {kUnknownAmount, kUnknownRate, 0xFFFFFFFEu, 0x80000001u}) {
    auto battery = GoodBattery();
    battery.remaining = marker;
    EXPECT_EQ(Remaining({battery}), std::nullopt);
    battery.full = marker;
    EXPECT_EQ(Full({battery}), std::nullopt);
    EXPECT_EQ(Loss({battery}), std::nullopt);
    battery = GoodBattery();
    battery.design = marker;
    EXPECT_EQ(Of({battery}, BatteryNumber::kDesign), std::nullopt);
    EXPECT_EQ(Loss({battery}), std::nullopt);
    battery = GoodBattery();
    battery.voltage = marker;
    EXPECT_EQ(Voltage({battery}), std::nullopt);
  }
  EXPECT_EQ(Discharge({WithRate(static_cast<std::int32_t>(kUnknownRate))}), std::nullopt);
  EXPECT_EQ(Charge({WithRate(static_cast<std::int32_t>(kUnknownRate))}), std::nullopt);
}

TEST(BatteryRules, KnowNoSumOfWhichOneBatteryDoesNotKnowItsPart) {
  auto second = GoodBattery();
  second.remaining.reset();
  EXPECT_EQ(Remaining({GoodBattery(), second}), std::nullopt);
  EXPECT_EQ(Full({GoodBattery(), second}), 87660u) << "the others are known";
  EXPECT_EQ(Discharge({GoodBattery(), WithRate(std::nullopt)}), std::nullopt);
}

TEST(BatteryRules, KnowNoSumThatLooksLikeAMarker) {
  const BatteryList two{Worn(0x40000000, 0x40000000), Worn(0x40000000, 0x40000000)};
  EXPECT_EQ(Full(two), std::nullopt);
  EXPECT_EQ(Full({two[0]}), 0x40000000u);
}

TEST(BatteryRules, TellWearInHundredthsOfAPercentOfTheDesign) {
  EXPECT_EQ(Loss({Worn(10000, 8766)}), 1234u);
  EXPECT_EQ(Loss({Worn(50000, 50000)}), 0u);
  EXPECT_EQ(Loss({Worn(50000, 0)}), 10000u);
  EXPECT_EQ(Loss({Worn(3, 2)}), 3333u);
  EXPECT_EQ(Loss({Worn(3, 1)}), 6667u) << "to the nearest";
  EXPECT_EQ(Loss({Worn(0x7FFFFFFF, 1)}), 10000u);
}

TEST(BatteryRules, TellNoWearBelowZero) { EXPECT_EQ(Loss({Worn(50000, 51000)}), 0u); }

TEST(BatteryRules, TellNoWearAgainstADesignOfNothing) { EXPECT_EQ(Loss({Worn(0, 40000)}), std::nullopt); }

TEST(BatteryRules, TellTheWearOfSeveralBatteriesByTheirEnergy) {
  EXPECT_EQ(Loss({Worn(20000, 10000), Worn(60000, 60000)}), 1250u) << "not the mean of 50 and 0 percent";
}

TEST(BatteryRules, TellARateOnlyInItsDirection) {
  EXPECT_EQ(Charge({WithRate(12000)}), 12000u);
  EXPECT_EQ(Discharge({WithRate(12000)}), 0u);
  EXPECT_EQ(Charge({WithRate(0)}), 0u);
  EXPECT_EQ(Discharge({WithRate(0)}), 0u);
}

TEST(BatteryRules, TellTheRateThatIsLeftWhenOneBatteryChargesAnother) {
  EXPECT_EQ(Discharge({WithRate(-9000), WithRate(4000)}), 5000u);
  EXPECT_EQ(Charge({WithRate(-9000), WithRate(4000)}), 0u);
  EXPECT_EQ(Discharge({WithRate(-9000), WithRate(-4000)}), 13000u);
  EXPECT_EQ(Charge({WithRate(9000), WithRate(-4000)}), 5000u);
}

TEST(BatteryRules, DoNotAddVoltagesUp) {
  auto second = GoodBattery();
  second.voltage = 12600;
  EXPECT_EQ(Voltage({GoodBattery(), second}), 11856u);
  auto silent = GoodBattery();
  silent.voltage = 0;
  EXPECT_EQ(Voltage({silent, second}), 12600u) << "of the first that tells one";
}

TEST(BatteryRules, TakeEachTextFromTheFirstBatteryThatHasIt) {
  auto nameless = GoodBattery();
  nameless.name.clear();
  nameless.manufacturer = "ACME";
  const BatteryList batteries{Battery{.manufacturer = "phantom", .name = "phantom"}, nameless, GoodBattery()};
  EXPECT_EQ(CombinedManufacturer(batteries), "ACME");
  EXPECT_EQ(CombinedName(batteries), "7FR5J");
}

TEST(BatteryRate, HasTheSignOfTheBatterysState) {
  for (const std::int64_t rate : {8892, -8892}) {
    EXPECT_EQ(SignedRate(rate, BatteryState::kCharging), 8892);
    EXPECT_EQ(SignedRate(rate, BatteryState::kDischarging), -8892);
    EXPECT_EQ(SignedRate(rate, BatteryState::kIdle), 0);
    EXPECT_EQ(SignedRate(rate, BatteryState::kUnknown), rate);
  }
}

TEST(BatteryRate, IsUnknownWhenItIsAMarkerOrBeyond) {
  for (const std::int64_t rate :
       {std::int64_t{-0x80000000LL}, std::int64_t{0x80000000LL}, std::int64_t{0xFFFFFFFFLL},
        std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
    for (const auto state :
         {BatteryState::kUnknown, BatteryState::kCharging, BatteryState::kDischarging, BatteryState::kIdle}) {
      EXPECT_EQ(SignedRate(rate, state), std::nullopt) << rate;
    }
  }
  EXPECT_EQ(SignedRate(-0x7FFFFFFF, BatteryState::kCharging), 0x7FFFFFFF);
}

TEST(BatteryRulesProperty, NothingEverComesOutThatAMarkerCouldBe) {
  std::mt19937 random(7);
  const auto number = [&]() -> Amount {
    switch (random() % 4) {
      case 0:
        return std::nullopt;
      case 1:
        return static_cast<std::uint32_t>(random());
      case 2:
        return random() % 2 == 0 ? kUnknownAmount : kUnknownRate;
      default:
        return static_cast<std::uint32_t>(random() % 100'000);
    }
  };
  for (int i = 0; i < 20'000; ++i) {
    BatteryList batteries(random() % 4);
    for (Battery& battery : batteries) {
      battery = {.remaining = number(), .full = number(), .design = number(), .voltage = number()};
      if (const auto rate = number()) battery.rate = static_cast<std::int32_t>(*rate);
    }
    for (unsigned int id = 0; id <= 12; ++id) {
      const auto combined = CombinedNumber(batteries, static_cast<BatteryNumber>(id));
      ASSERT_LT(combined.value_or(0), 0x80000000u);
    }
    ASSERT_LE(Loss(batteries).value_or(0), 10000u);
    ASSERT_TRUE(Charge(batteries).value_or(0) == 0 || Discharge(batteries) == 0u);
    ASSERT_EQ(Charge(batteries).has_value(), Discharge(batteries).has_value());
  }
}

}  // namespace
}  // namespace ostrine
