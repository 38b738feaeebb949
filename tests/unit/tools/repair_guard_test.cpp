#include "velmora-report/repair_guard.h"

#include <gtest/gtest.h>

namespace {

using report::Lifelines;
using report::RepairTarget;
using report::WhyNotToRemove;

const report::Chain kDisk{"sda", "0:0:0:0", "1-3", "usb1", "0000:00:14.0", "pci0000:00"};
const report::Chain kPanel{"card0", "0000:00:02.0", "pci0000:00"};
const report::Chain kKeyboard{"input5", "1-4", "usb1", "0000:00:14.0", "pci0000:00"};

Lifelines Lines() {
  return {.disks = std::vector<report::Chain>{kDisk}, .displays = {kPanel}, .keyboards = {kKeyboard}};
}

TEST(RepairGuard, HasNothingAgainstADeviceOnWhichNothingHangs) {
  EXPECT_EQ(WhyNotToRemove({.place = "0000:00:14.3"}, Lines()), "");
  EXPECT_EQ(WhyNotToRemove({.place = "0000:00:14"}, Lines()), "") << "a place is its whole name";
}

TEST(RepairGuard, KeepsTheDiskAndEverythingThatItHangsOn) {
  for (const char* const place : {"sda", "1-3", "usb1", "0000:00:14.0"})
    EXPECT_EQ(WhyNotToRemove({.place = place}, Lines()),
              "the disk that this program or the system runs from hangs on it")
        << place;
}

TEST(RepairGuard, KeepsEveryOneOfSeveralDisks) {
  auto lines = Lines();
  lines.disks->push_back({"nvme0n1", "0000:01:00.0"});
  EXPECT_NE(WhyNotToRemove({.place = "0000:01:00.0"}, lines), "");
  EXPECT_NE(WhyNotToRemove({.place = "1-3"}, lines), "");
}

TEST(RepairGuard, KeepsABusWhileTheDiskIsNotKnown) {
  auto lines = Lines();
  lines.disks.reset();
  EXPECT_NE(WhyNotToRemove({.place = "usb9", .may_carry_disks = true}, lines), "");
  EXPECT_EQ(WhyNotToRemove({.place = "0000:00:14.3"}, lines), "");
}

TEST(RepairGuard, KeepsTheOnlyDisplayButNotOneOfTwo) {
  EXPECT_EQ(WhyNotToRemove({.place = "0000:00:02.0"}, Lines()), "it is the only display");
  EXPECT_EQ(WhyNotToRemove({.place = "x", .is_only_working_display = true}, Lines()),
            "it is the only display");
  auto lines = Lines();
  lines.displays.push_back({"card1", "0000:01:00.0"});
  EXPECT_EQ(WhyNotToRemove({.place = "0000:00:02.0"}, lines), "");
}

TEST(RepairGuard, KeepsWhatAllKeyboardsHangOn) {
  EXPECT_EQ(WhyNotToRemove({.place = "1-4"}, Lines()), "the only keyboard hangs on it");
  auto lines = Lines();
  lines.disks = std::vector<report::Chain>();
  lines.keyboards.push_back({"input9", "1-7", "usb1", "0000:00:14.0"});
  EXPECT_EQ(WhyNotToRemove({.place = "1-4"}, lines), "") << "another one is left";
  EXPECT_NE(WhyNotToRemove({.place = "0000:00:14.0"}, lines), "") << "none is left";
}

TEST(RepairGuard, HasNothingToKeepOnAMachineWithoutAny) {
  EXPECT_EQ(
      WhyNotToRemove({.place = "1-4", .may_carry_disks = true}, {.disks = std::vector<report::Chain>()}), "");
}

}  // namespace
