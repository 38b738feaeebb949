#include "platform/linux/power_supply.h"

#include <gtest/gtest.h>

#include <vector>

namespace velmora::os {
namespace {

PowerSupply Battery(std::int64_t now, std::int64_t full, const char* status = "Discharging") {
  PowerSupply battery{.type = "Battery", .status = status};
  battery.energy_now = now;
  battery.energy_full = full;
  return battery;
}

PowerSupply Mains(std::int64_t online) { return {.type = "Mains", .online = online}; }

PowerStatus Summary(const std::vector<PowerSupply>& supplies) { return SummarisePower(supplies); }

TEST(PowerSupplies, AddTheBatteriesByTheirEnergy) {
  EXPECT_EQ(Summary({Battery(20'000'000, 80'000'000), Battery(20'000'000, 20'000'000)}).battery_life_percent,
            40);
}

TEST(PowerSupplies, RoundThePercentageToTheNearest) {
  EXPECT_EQ(Summary({Battery(994, 1000)}).battery_life_percent, 99);
  EXPECT_EQ(Summary({Battery(995, 1000)}).battery_life_percent, 100);
  EXPECT_EQ(Summary({Battery(4, 1000)}).battery_life_percent, 0);
}

TEST(PowerSupplies, CountABatteryThatOverflowsAsFull) {
  EXPECT_EQ(Summary({Battery(110, 100)}).battery_life_percent, 100);
  EXPECT_EQ(Summary({Battery(200, 100), Battery(0, 100)}).battery_life_percent, 50);
}

TEST(PowerSupplies, TurnChargesIntoEnergiesByTheVoltage) {
  PowerSupply twelve_volts{.type = "Battery", .status = "Discharging"};
  twelve_volts.charge_now = 1'000'000;
  twelve_volts.charge_full = 4'000'000;
  twelve_volts.voltage_now = 12'000'000;
  EXPECT_EQ(Summary({twelve_volts}).battery_life_percent, 25);
  // 12 of 48 watt hours and 36 of 48
  EXPECT_EQ(Summary({twelve_volts, Battery(36'000'000, 48'000'000)}).battery_life_percent, 50);
}

TEST(PowerSupplies, AverageThePercentagesWhereABatteryTellsNoEnergy) {
  const PowerSupply plain{.type = "Battery", .status = "Discharging", .capacity = 30};
  EXPECT_EQ(Summary({plain}).battery_life_percent, 30);
  EXPECT_EQ(Summary({plain, Battery(50, 100)}).battery_life_percent, 40);
}

TEST(PowerSupplies, DoNotKnowThePercentageOfABatteryThatTellsNothing) {
  const PowerStatus status = Summary({{.type = "Battery", .status = "Unknown"}});
  EXPECT_EQ(status.battery_life_percent, 255);
  EXPECT_EQ(status.battery_flag, 255);
  EXPECT_EQ(status.ac_line_status, 255);
  EXPECT_EQ(Summary({Battery(-5, 100)}).battery_life_percent, 255);
  EXPECT_EQ(Summary({Battery(5, 0)}).battery_life_percent, 255);
  EXPECT_EQ(Summary({{.type = "Battery", .capacity = 101}}).battery_life_percent, 255);
}

TEST(PowerSupplies, LeaveOutEmptyBaysAndAccessories) {
  PowerSupply bay = Battery(0, 100);
  bay.present = 0;
  PowerSupply mouse = Battery(5, 100);
  mouse.scope = "Device";
  PowerSupply pen_charger = Mains(1);
  pen_charger.scope = "Device";
  const PowerStatus status = Summary({bay, mouse, pen_charger, Battery(80, 100)});
  EXPECT_EQ(status.battery_life_percent, 80);
  EXPECT_EQ(status.ac_line_status, 0);
  EXPECT_EQ(Summary({bay, mouse}).battery_flag, 128);
}

TEST(PowerSupplies, SayThatAMachineWithoutABatteryIsOnMains) {
  const PowerStatus status = Summary({});
  EXPECT_EQ(status.ac_line_status, 1);
  EXPECT_EQ(status.battery_flag, 128);
  EXPECT_EQ(status.battery_life_percent, 255);
}

TEST(PowerSupplies, TakeAnyFeedThatIsOnForMains) {
  EXPECT_EQ(Summary({Mains(1), Battery(1, 2, "Charging")}).ac_line_status, 1);
  EXPECT_EQ(Summary({Mains(0), {.type = "USB", .online = 1}, Battery(1, 2)}).ac_line_status, 1);
  EXPECT_EQ(Summary({{.type = "USB_C", .online = 2}, Battery(1, 2)}).ac_line_status, 1);
  EXPECT_EQ(Summary({Mains(0), Battery(1, 2, "Full")}).ac_line_status, 0);
}

TEST(PowerSupplies, GoByTheBatteryWhereNoMainsSupplyIsTold) {
  EXPECT_EQ(Summary({Battery(1, 2, "Discharging")}).ac_line_status, 0);
  EXPECT_EQ(Summary({Battery(1, 2, "Charging")}).ac_line_status, 1);
  EXPECT_EQ(Summary({Battery(1, 2, "Full")}).ac_line_status, 1);
  EXPECT_EQ(Summary({Battery(1, 2, "Not charging")}).ac_line_status, 1);
  EXPECT_EQ(Summary({Battery(1, 2, "Unknown")}).ac_line_status, 255);
  EXPECT_EQ(Summary({{.type = "USB", .online = 0}, Battery(1, 2, "Full")}).ac_line_status, 1);
}

TEST(PowerSupplies, FlagHowFullTheBatteryIsAndWhetherItCharges) {
  EXPECT_EQ(Summary({Battery(67, 100)}).battery_flag, 1);
  EXPECT_EQ(Summary({Battery(66, 100)}).battery_flag, 0);
  EXPECT_EQ(Summary({Battery(33, 100)}).battery_flag, 0);
  EXPECT_EQ(Summary({Battery(32, 100)}).battery_flag, 2);
  EXPECT_EQ(Summary({Battery(4, 100)}).battery_flag, 6);
  EXPECT_EQ(Summary({Battery(90, 100, "Charging")}).battery_flag, 9);
}

TEST(PowerSupplies, TellHowLongADischargingBatteryLasts) {
  PowerSupply battery = Battery(30'000'000, 60'000'000);
  battery.power_now = 10'000'000;
  PowerStatus status = Summary({battery});
  EXPECT_EQ(status.battery_life_time, 3u * 3600);
  EXPECT_EQ(status.battery_full_life_time, 6u * 3600);

  battery.power_now = -10'000'000;
  EXPECT_EQ(Summary({battery}).battery_life_time, 3u * 3600);
}

TEST(PowerSupplies, DoNotTellATimeThatTheyCannotKnow) {
  PowerSupply battery = Battery(30'000'000, 60'000'000);
  EXPECT_EQ(Summary({battery}).battery_life_time, 0xFFFFFFFFu);
  battery.power_now = 0;
  EXPECT_EQ(Summary({battery}).battery_life_time, 0xFFFFFFFFu);
  battery.power_now = 1;  // thousands of years
  EXPECT_EQ(Summary({battery}).battery_life_time, 0xFFFFFFFFu);
  battery.power_now = 10'000'000;
  EXPECT_EQ(Summary({battery, Mains(1)}).battery_life_time, 0xFFFFFFFFu);
}

TEST(PowerSupplies, SurviveTheGreatestNumbers) {
  PowerSupply battery = Battery(INT64_MAX, INT64_MAX);
  battery.charge_now = battery.charge_full = battery.voltage_now = battery.current_now = INT64_MAX;
  battery.power_now = INT64_MIN;
  EXPECT_EQ(Summary({battery, battery, battery}).battery_life_percent, 100);
}

}  // namespace
}  // namespace velmora::os
