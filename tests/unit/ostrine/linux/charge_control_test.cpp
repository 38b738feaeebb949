#include "ostrine/linux/charge_control.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/ostrine/hal.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

const std::string kStart = "charge_control_start_threshold";
const std::string kStop = "charge_control_end_threshold";

class ChargeControl : public testing::Test {
 protected:
  void AddBattery(const std::string& name, const std::string& start, const std::string& stop) const {
    machine_.AddOfClass("power_supply", Place(name),
                        {{"type", "Battery"}, {"energy_full", "50000000"}, {kStart, start}, {kStop, stop}});
  }
  static std::string Place(const std::string& name) { return "platform/bat/power_supply/" + name; }
  Path File(const std::string& battery, const std::string& name) const {
    return machine_.Device(Place(battery)) / name;
  }
  /// Both attributes' texts, as they stand.
  std::string Standing(const std::string& battery = "BAT0") const {
    return CleanAttribute(File(battery, kStart)) + " to " + CleanAttribute(File(battery, kStop));
  }

  /// The record that the library's query gives, or all ones when it fails.
  std::array<std::uint8_t, 2> Read() const {
    const test::ActsOn acts_on(machine_);
    std::array<std::uint8_t, 2> record{};
    unsigned int returned = 0;
    const int result = HalQueryInformation(8, nullptr, 9, record.data(), record.size(), &returned);
    return result == 1 ? record : kFailure;
  }
  int Set(std::uint8_t start, std::uint8_t stop) const {
    const test::ActsOn acts_on(machine_);
    std::array<std::uint8_t, 2> record{start, stop};
    unsigned int returned = 0;
    return HalSetInformation(8, nullptr, 12, record.data(), record.size(), &returned);
  }

  static constexpr std::array<std::uint8_t, 2> kFailure{0xFF, 0xFF};
  test::FakeMachine machine_;
};

using Record = std::array<std::uint8_t, 2>;

TEST_F(ChargeControl, ReadsTheStartAndThenTheStop) {
  AddBattery("BAT0", "75", "80");
  EXPECT_EQ(Read(), (Record{75, 80}));
}

TEST_F(ChargeControl, SetsBothAndReadsThemBack) {
  AddBattery("BAT0", "75", "80");
  EXPECT_EQ(Set(40, 60), 1);
  EXPECT_EQ(Standing(), "40 to 60");
  EXPECT_EQ(Read(), (Record{40, 60}));
  EXPECT_EQ(Set(90, 100), 1);
  EXPECT_EQ(Standing(), "90 to 100");
  EXPECT_EQ(Set(0, 1), 1);
  EXPECT_EQ(Standing(), "0 to 1") << "no digit of the longer number is left";
}

TEST_F(ChargeControl, RefusesThresholdsThatAreNotPossible) {
  AddBattery("BAT0", "75", "80");
  EXPECT_EQ(Set(80, 75), 0) << "the start above the stop";
  EXPECT_EQ(Set(60, 60), 0);
  EXPECT_EQ(Set(40, 101), 0);
  EXPECT_EQ(Set(100, 101), 0);
  EXPECT_EQ(Set(0, 0), 0);
  EXPECT_EQ(Standing(), "75 to 80");
}

TEST_F(ChargeControl, MakesNoFileThatTheDriverDoesNotOffer) {
  AddBattery("BAT0", "75", "80");
  for (const std::string& missing : {kStart, kStop}) {
    const std::string kept = CleanAttribute(File("BAT0", missing));
    std::filesystem::remove(File("BAT0", missing));
    EXPECT_EQ(Read(), kFailure);
    EXPECT_EQ(Set(40, 60), 0);
    EXPECT_FALSE(std::filesystem::exists(File("BAT0", missing)));
    machine_.Write(Place("BAT0"), {{missing, kept}});
    EXPECT_EQ(Standing(), "75 to 80") << "the other one was not touched";
  }
}

TEST_F(ChargeControl, FailsOnAMachineWithoutABatteryOrThresholds) {
  EXPECT_EQ(Read(), kFailure);
  EXPECT_EQ(Set(40, 60), 0);
  machine_.AddOfClass("power_supply", Place("BAT0"), {{"type", "Battery"}});
  EXPECT_EQ(Read(), kFailure);
  EXPECT_EQ(Set(40, 60), 0);
}

TEST_F(ChargeControl, ReadsNothingThatCannotBe) {
  AddBattery("BAT0", "75", "80");
  const std::vector<std::pair<std::string, std::string>> odd{
      {"80", "75"}, {"80", "80"}, {"-1", "80"},  {"75", "101"},       {"75", "256"},
      {"75", ""},   {"x", "80"},  {"7 5", "80"}, {"75", "4294967376"}};
  for (const auto& [start, stop] : odd) {
    machine_.Write(Place("BAT0"), {{kStart, start}, {kStop, stop}});
    EXPECT_EQ(Read(), kFailure) << start << " " << stop;
  }
}

TEST_F(ChargeControl, ReplacesThresholdsOfWhichTheStartStandsAboveTheStop) {
  AddBattery("BAT0", "90", "40");
  EXPECT_EQ(Set(75, 80), 1);
  EXPECT_EQ(Standing(), "75 to 80");
}

TEST_F(ChargeControl, TouchesNothingWhenWhatStandsThereIsNoNumber) {
  AddBattery("BAT0", "75", "junk");
  EXPECT_EQ(Set(40, 60), 0);
  EXPECT_EQ(Standing(), "75 to junk");
}

TEST_F(ChargeControl, PutsTheOldValuesBackWhenTheSecondIsRefused) {
  // A link in the file's place is read like the file, but never written through.
  for (const auto& [refused, start, stop] :
       {std::tuple(kStop, 40, 60), std::tuple(kStop, 77, 79), std::tuple(kStart, 85, 90)}) {
    const test::FakeMachine machine;
    machine.AddOfClass("power_supply", Place("BAT0"), {{"type", "Battery"}, {kStart, "75"}, {kStop, "80"}});
    const Path file = machine.Device(Place("BAT0")) / refused;
    std::filesystem::rename(file, machine.Path() / "real");
    std::filesystem::create_symlink(machine.Path() / "real", file);
    const std::vector<Path> batteries{machine.Device(Place("BAT0"))};
    const ChargeThresholds wanted{static_cast<std::uint8_t>(start), static_cast<std::uint8_t>(stop)};
    EXPECT_FALSE(SetChargeControl(batteries, wanted));
    EXPECT_EQ(ReadChargeControl(batteries), (ChargeThresholds{75, 80})) << refused << start;
  }
}

TEST_F(ChargeControl, PutsTheOldValuesBackWhenTheDriverMakesOthersOfThem) {
  // Two names of one file: the driver that has but one threshold.
  AddBattery("BAT0", "80", "80");
  std::filesystem::remove(File("BAT0", kStop));
  std::filesystem::create_hard_link(File("BAT0", kStart), File("BAT0", kStop));
  EXPECT_EQ(Set(40, 60), 0);
  EXPECT_EQ(Standing(), "80 to 80");
}

TEST_F(ChargeControl, FailsForAUserWhoMayNotWrite) {
  AddBattery("BAT0", "75", "80");
  const test::WithoutRights without_rights;
  EXPECT_EQ(Set(40, 60), 0);
  EXPECT_EQ(Standing(), "75 to 80");
  EXPECT_EQ(Read(), (Record{75, 80})) << "who may read";
}

TEST_F(ChargeControl, WritesNothingThatStandsThereAlready) {
  AddBattery("BAT0", "75", "80");
  const test::WithoutRights without_rights;
  EXPECT_EQ(Set(75, 80), 1) << "also where nothing may be written";
}

TEST_F(ChargeControl, IsNotHeldUpByAPipeInTheFilesPlace) {
  AddBattery("BAT0", "75", "80");
  std::filesystem::remove(File("BAT0", kStop));
  ASSERT_EQ(mkfifo(File("BAT0", kStop).c_str(), 0600), 0);
  EXPECT_EQ(Read(), kFailure);
  EXPECT_EQ(Set(40, 60), 0);
  std::filesystem::remove(File("BAT0", kStop));
  std::filesystem::create_directory(File("BAT0", kStop));
  EXPECT_EQ(Set(40, 60), 0);
}

TEST_F(ChargeControl, ReadsTheFirstBatteryThatHasThresholdsAndSetsAllThatHave) {
  machine_.AddOfClass("power_supply", Place("BAT0"), {{"type", "Battery"}});
  AddBattery("BAT1", "75", "80");
  AddBattery("BAT2", "0", "100");
  EXPECT_EQ(Read(), (Record{75, 80}));
  EXPECT_EQ(Set(40, 60), 1);
  EXPECT_EQ(Standing("BAT1"), "40 to 60");
  EXPECT_EQ(Standing("BAT2"), "40 to 60");
}

TEST_F(ChargeControl, PutsTheFirstBatteryBackWhenTheSecondRefuses) {
  AddBattery("BAT0", "75", "80");
  AddBattery("BAT1", "0", "junk");
  EXPECT_EQ(Set(40, 60), 0);
  EXPECT_EQ(Standing("BAT0"), "75 to 80");
  EXPECT_EQ(Standing("BAT1"), "0 to junk");
}

TEST_F(ChargeControl, LeavesTheBatteryOfAnotherDeviceAlone) {
  AddBattery("BAT0", "75", "80");
  machine_.Write(Place("BAT0"), {{"scope", "Device"}});
  EXPECT_EQ(Set(40, 60), 0);
  EXPECT_EQ(Standing(), "75 to 80");
}

}  // namespace
}  // namespace ostrine
