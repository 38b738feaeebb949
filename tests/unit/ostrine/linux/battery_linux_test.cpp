#include "ostrine/linux/battery.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "platform/ostrine/hal.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

using test::Attributes;

const Attributes kEnergyBattery{{"type", "Battery"},
                                {"present", "1"},
                                {"status", "Discharging"},
                                {"manufacturer", "SANYO"},
                                {"model_name", "DELL 7FR5J"},
                                {"energy_now", "30120000"},
                                {"energy_full", "43830000"},
                                {"energy_full_design", "50000000"},
                                {"power_now", "8892000"},
                                {"voltage_now", "11856000"},
                                {"voltage_min_design", "11400000"}};

const Attributes kChargeBattery{{"type", "Battery"},
                                {"present", "1"},
                                {"status", "Charging"},
                                {"charge_now", "2000000"},
                                {"charge_full", "3500000"},
                                {"charge_full_design", "4000000"},
                                {"current_now", "1500000"},
                                {"voltage_now", "12000000"},
                                {"voltage_min_design", "11000000"}};

class LinuxBattery : public testing::Test {
 protected:
  void Add(const std::string& name, const Attributes& attributes) const {
    machine_.AddOfClass("power_supply", "platform/supplies/power_supply/" + name, attributes);
  }
  void Write(const std::string& name, const Attributes& attributes) const {
    machine_.Write("platform/supplies/power_supply/" + name, attributes);
  }
  void Remove(const std::string& name, const std::string& attribute) const {
    std::filesystem::remove(machine_.Device("platform/supplies/power_supply/" + name + "/" + attribute));
  }
  std::vector<Battery> Batteries() const { return SysfsBatteries(machine_.Path()).Batteries(); }
  std::optional<std::uint32_t> Number(BatteryNumber number) const {
    return CombinedNumber(Batteries(), number);
  }
  std::optional<bool> IsOnMains() const { return SysfsBatteries(machine_.Path()).IsOnMains(); }

  test::FakeMachine machine_;
};

TEST_F(LinuxBattery, IsReadFromItsEnergies) {
  Add("BAT0", kEnergyBattery);
  EXPECT_EQ(Batteries(), (std::vector<Battery>{{.manufacturer = "SANYO",
                                                .name = "DELL 7FR5J",
                                                .remaining = 30120,
                                                .full = 43830,
                                                .design = 50000,
                                                .voltage = 11856,
                                                .rate = -8892}}));
}

TEST_F(LinuxBattery, IsReadFromItsChargesAtItsDesignVoltage) {
  Add("BAT0", kChargeBattery);
  EXPECT_EQ(Batteries(),
            (std::vector<Battery>{
                {.remaining = 22000, .full = 38500, .design = 44000, .voltage = 12000, .rate = 18000}}))
      << "the rate is one of this moment, and so is its voltage";
}

TEST_F(LinuxBattery, IsReadFromItsChargesAtItsPresentVoltageWithoutADesignVoltage) {
  for (const char* const design_voltage : {"0", "-1", "junk", ""}) {
    Add("BAT0", kChargeBattery);
    Write("BAT0", {{"voltage_min_design", design_voltage}});
    EXPECT_EQ(Number(BatteryNumber::kFull), 42000u) << design_voltage;
    EXPECT_EQ(Number(BatteryNumber::kLoss), 1250u);
    std::filesystem::remove(machine_.Path() / "sys/class/power_supply/BAT0");
  }
}

TEST_F(LinuxBattery, CountsNoChargeWithoutAnyVoltage) {
  Add("BAT0", kChargeBattery);
  Remove("BAT0", "voltage_now");
  Remove("BAT0", "voltage_min_design");
  EXPECT_EQ(Number(BatteryNumber::kPresent), std::nullopt) << "nothing at all is known of it";
  EXPECT_EQ(Number(BatteryNumber::kFull), std::nullopt);
}

TEST_F(LinuxBattery, IsOneWithASecondAddedUp) {
  Add("BAT0", kEnergyBattery);
  Add("BAT1", kChargeBattery);
  EXPECT_EQ(Number(BatteryNumber::kRemaining), 52120u);
  EXPECT_EQ(Number(BatteryNumber::kFull), 82330u);
  EXPECT_EQ(Number(BatteryNumber::kDesign), 94000u);
  EXPECT_EQ(Number(BatteryNumber::kVoltage), 11856u);
  EXPECT_EQ(Number(BatteryNumber::kChargeRate), 9108u);
  EXPECT_EQ(Number(BatteryNumber::kDischargeRate), 0u);
}

TEST_F(LinuxBattery, StandsInTheNaturalOrderOfTheNames) {
  auto named = kEnergyBattery;
  for (const char* const name : {"BAT10", "BAT2", "BAT1"}) {
    named["model_name"] = name;
    Add(name, named);
  }
  ASSERT_EQ(Batteries().size(), 3u);
  EXPECT_EQ(Batteries()[0].name, "BAT1");
  EXPECT_EQ(Batteries()[2].name, "BAT10");
}

TEST_F(LinuxBattery, IsNeitherAMousesNorAnEmptyBayNorAnotherSupply) {
  auto of_mouse = kEnergyBattery;
  of_mouse["scope"] = "Device";
  Add("hidpp_battery_0", of_mouse);
  auto empty_bay = kEnergyBattery;
  empty_bay["present"] = "0";
  Add("BAT1", empty_bay);
  auto ups = kEnergyBattery;
  ups["type"] = "UPS";
  Add("ups", ups);
  Add("AC", {{"type", "Mains"}, {"online", "1"}});
  EXPECT_TRUE(Batteries().empty());
  auto of_system = kEnergyBattery;
  of_system["scope"] = "System";
  Add("BAT0", of_system);
  EXPECT_EQ(Number(BatteryNumber::kFull), 43830u);
}

TEST_F(LinuxBattery, IsNotHalvedByAPhantom) {
  Add("BAT0", kEnergyBattery);
  Add("BAT1", {{"type", "Battery"}, {"present", "1"}, {"energy_full", "0"}, {"voltage_now", "0"}});
  Add("BAT2", {{"type", "Battery"}});
  EXPECT_EQ(Number(BatteryNumber::kFull), 43830u);
  EXPECT_EQ(Number(BatteryNumber::kLoss), 1234u);
}

TEST_F(LinuxBattery, KnowsOnlyWhatItsFilesTell) {
  Add("BAT0", kEnergyBattery);
  for (const char* const missing : {"energy_now", "power_now", "model_name", "present", "status"}) {
    Remove("BAT0", missing);
  }
  EXPECT_EQ(
      Batteries(),
      (std::vector<Battery>{{.manufacturer = "SANYO", .full = 43830, .design = 50000, .voltage = 11856}}));
  EXPECT_EQ(Number(BatteryNumber::kPresent), 1u);
  EXPECT_EQ(Number(BatteryNumber::kRemaining), std::nullopt);
  EXPECT_EQ(Number(BatteryNumber::kDischargeRate), std::nullopt);
}

TEST_F(LinuxBattery, MakesNoNumberOfTheMarkersThatDriversPassOn) {
  Add("BAT0", kEnergyBattery);
  for (const char* const marker : {"4294967295000", "2147483648000", "4294967295", "-1",
                                   "9223372036854775807", "-9223372036854775808", "99999999999999999999"}) {
    Write("BAT0", {{"energy_now", marker}});
    const auto remaining = Number(BatteryNumber::kRemaining);
    if (std::string(marker) == "4294967295") {
      EXPECT_EQ(remaining, 4294967u) << "a large battery in microwatt hours is none of the markers";
    } else {
      EXPECT_EQ(remaining, std::nullopt) << marker;
    }
  }
}

TEST_F(LinuxBattery, SurvivesHostileContents) {
  Add("BAT0", kEnergyBattery);
  Write("BAT0", {{"energy_now", "12 34"},
                 {"energy_full", std::string(5000, '9')},
                 {"energy_full_design", "0x100"},
                 {"voltage_now", ""},
                 {"power_now", "\x01\x02"},
                 {"model_name", std::string("a\x1b[2Jb\n\n") + std::string(300, 'x')},
                 {"manufacturer", "   "}});
  const auto batteries = Batteries();
  ASSERT_EQ(batteries.size(), 1u);
  EXPECT_EQ(batteries[0].full, std::nullopt);
  EXPECT_EQ(batteries[0].design, std::nullopt);
  EXPECT_EQ(batteries[0].manufacturer, "");
  EXPECT_EQ(batteries[0].name.substr(0, 6), "a[2Jbx") << "without control characters";
  EXPECT_EQ(Number(BatteryNumber::kPresent), std::nullopt);
}

TEST_F(LinuxBattery, IsNotFoundThroughALinkThatLeadsOutOfTheDevices) {
  machine_.WriteFile("elsewhere/type", "Battery\n");
  machine_.WriteFile("elsewhere/energy_full", "50000000\n");
  machine_.Root().Link("sys/class/power_supply/BAT0", "../../../elsewhere");
  machine_.Root().Link("sys/class/power_supply/BAT1", "BAT1");
  machine_.Root().Link("sys/class/power_supply/BAT2", "../../devices/nowhere");
  EXPECT_TRUE(Batteries().empty());
}

TEST(LinuxBatteryOf, NeverOverflows) {
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  for (const std::int64_t charge : {kMost, kLeast, std::int64_t{-1}}) {
    for (const std::int64_t voltage : {kMost, kLeast, std::int64_t{1'000'000}}) {
      const Battery battery = BatteryOf({.status = "Charging",
                                         .charge_now = charge,
                                         .charge_full = charge,
                                         .power_now = charge,
                                         .voltage_now = voltage});
      EXPECT_EQ(battery.remaining, std::nullopt);
      EXPECT_EQ(battery.full, std::nullopt);
    }
  }
}

TEST(LinuxBatteryOf, TakesThePowerBeforeTheCurrent) {
  EXPECT_EQ(
      BatteryOf({.status = "Charging", .power_now = 5'000'000, .current_now = 1, .voltage_now = 1}).rate,
      5000);
}

TEST(LinuxBatteryOf, HasNoRateWhileItIsNeitherChargedNorDischarged) {
  for (const char* const status : {"Full", "Not charging"}) {
    EXPECT_EQ(BatteryOf({.status = status, .power_now = 5'000'000}).rate, 0);
  }
  EXPECT_EQ(BatteryOf({.status = "Unknown", .power_now = -5'000'000}).rate, -5000);
  EXPECT_EQ(BatteryOf({.status = "Discharging", .power_now = -5'000'000}).rate, -5000)
      << "drivers disagree about the sign";
}

TEST_F(LinuxBattery, TellsTheMainsFromTheirSupply) {
  Add("BAT0", kEnergyBattery);
  Add("AC", {{"type", "Mains"}, {"online", "1"}});
  EXPECT_EQ(IsOnMains(), true);
  Write("AC", {{"online", "0"}});
  EXPECT_EQ(IsOnMains(), false);
}

TEST_F(LinuxBattery, TakesAChargerOnAUsbPortForMains) {
  Add("BAT0", kEnergyBattery);
  Add("AC", {{"type", "Mains"}, {"online", "0"}});
  Add("ucsi-source-psy-USBC000:001", {{"type", "USB"}, {"online", "1"}});
  EXPECT_EQ(IsOnMains(), true);
  Write("ucsi-source-psy-USBC000:001", {{"online", "0"}});
  EXPECT_EQ(IsOnMains(), false);
}

TEST_F(LinuxBattery, TakesNoSupplyOfAnotherDeviceForMains) {
  Add("BAT0", kEnergyBattery);
  Add("wacom_ac_0", {{"type", "Mains"}, {"scope", "Device"}, {"online", "1"}});
  EXPECT_EQ(IsOnMains(), false);
}

TEST_F(LinuxBattery, TellsTheMainsFromItsStateWhereNoSupplyTells) {
  Add("BAT0", kEnergyBattery);
  EXPECT_EQ(IsOnMains(), false);
  for (const char* const status : {"Charging", "Full", "Not charging"}) {
    Write("BAT0", {{"status", status}});
    EXPECT_EQ(IsOnMains(), true) << status;
  }
  Write("BAT0", {{"status", "Unknown"}});
  EXPECT_EQ(IsOnMains(), std::nullopt);
  Add("AC", {{"type", "Mains"}, {"online", "junk"}});
  EXPECT_EQ(IsOnMains(), std::nullopt);
}

TEST_F(LinuxBattery, LeavesAMachineWithoutBatteriesOnMains) {
  EXPECT_EQ(IsOnMains(), std::nullopt) << "a system that shows no supplies at all does not tell";
  std::filesystem::create_directories(machine_.Path() / "sys/class/power_supply");
  EXPECT_EQ(IsOnMains(), true);
}

TEST_F(LinuxBattery, IsReachedThroughItsClass) {
  Add("BAT0", kEnergyBattery);
  const test::ActsOn acts_on(machine_);
  std::uint32_t loss = 0;
  unsigned int returned = 0;
  EXPECT_EQ(HalQueryInformation(8, nullptr, 8, &loss, sizeof loss, &returned), 1);
  EXPECT_EQ(loss, 1234u);
  EXPECT_EQ(returned, 4u);
}

}  // namespace
}  // namespace ostrine
