#include "velmora-report/lifelines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/sysmacros.h>

#include <filesystem>
#include <fstream>

#include "velmora-report/linux/lifelines_tree.h"

namespace {

using report::Chain;
using report::ReadLifelinesBelow;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr auto kTypewriter = "402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe";
constexpr auto kPowerButton = "10000000000000 0";

/// A tree of the test's own, gone with the object.
class LifelinesBelow : public testing::Test {
 protected:
  LifelinesBelow() {
    std::string name = testing::TempDir() + "lifelines-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw fs::filesystem_error("mkdtemp", name, {});
    root_ = name;
    fs::create_directories(root_ / "sys/devices");
  }
  ~LifelinesBelow() override { fs::remove_all(root_); }

  /// A folder of the device tree to which `link` leads.
  void Add(const std::string& place, const std::string& link) const {
    fs::create_directories(root_ / "sys/devices" / place);
    fs::create_directories((root_ / link).parent_path());
    fs::create_symlink(root_ / "sys/devices" / place, root_ / link);
  }
  void Write(const std::string& file, const std::string& text) const {
    fs::create_directories((root_ / "sys/devices" / file).parent_path());
    std::ofstream(root_ / "sys/devices" / file) << text << "\n";
  }

  fs::path root_;
};

constexpr auto kDiskPlace = "pci0000:00/0000:00:14.0/usb1/1-3/host0/block/sda";

TEST_F(LifelinesBelow, FollowADiskFromItsPartitionToTheRootOfTheTree) {
  Add(std::string(kDiskPlace) + "/sda2", "sys/dev/block/8:2");
  const auto lines = ReadLifelinesBelow(root_, {makedev(8, 2)});
  ASSERT_TRUE(lines.disks);
  EXPECT_THAT(*lines.disks, ElementsAre(Chain{"sda2", "sda", "block", "host0", "1-3", "usb1", "0000:00:14.0",
                                              "pci0000:00"}));
}

TEST_F(LifelinesBelow, FollowAnEncryptedDiskToWhatItIsMadeOf) {
  Add(std::string(kDiskPlace) + "/sda2", "sys/dev/block/8:2");
  Add("virtual/block/dm-0", "sys/dev/block/253:0");
  fs::create_directories(root_ / "sys/devices/virtual/block/dm-0/slaves");
  fs::create_symlink(root_ / "sys/devices" / kDiskPlace / "sda2",
                     root_ / "sys/devices/virtual/block/dm-0/slaves/sda2");
  const auto lines = ReadLifelinesBelow(root_, {makedev(253, 0)});
  ASSERT_TRUE(lines.disks);
  ASSERT_EQ(lines.disks->size(), 1U);
  EXPECT_THAT(lines.disks->front(), Contains("0000:00:14.0"));
}

TEST_F(LifelinesBelow, DoNotKnowTheDiskOfAFileSystemThatStandsOnNone) {
  Add(kDiskPlace, "sys/dev/block/8:0");
  Add("virtual/block/loop0", "sys/dev/block/7:0");
  EXPECT_FALSE(ReadLifelinesBelow(root_, {makedev(0, 34)}).disks);
  EXPECT_FALSE(ReadLifelinesBelow(root_, {makedev(7, 0)}).disks);
  EXPECT_FALSE(ReadLifelinesBelow(root_, {makedev(8, 0), makedev(0, 34)}).disks) << "one of two is not known";
  EXPECT_TRUE(ReadLifelinesBelow(root_, {makedev(8, 0)}).disks);
}

TEST_F(LifelinesBelow, EndWhereADiskSaysThatItIsMadeOfItself) {
  Add("virtual/block/dm-0", "sys/dev/block/253:0");
  fs::create_directories(root_ / "sys/devices/virtual/block/dm-0/slaves");
  fs::create_symlink(root_ / "sys/devices/virtual/block/dm-0",
                     root_ / "sys/devices/virtual/block/dm-0/slaves/dm-0");
  EXPECT_FALSE(ReadLifelinesBelow(root_, {makedev(253, 0)}).disks);
}

TEST_F(LifelinesBelow, HaveCardsForDisplaysAndNotTheirConnectors) {
  Add("pci0000:00/0000:00:02.0/drm/card0", "sys/class/drm/card0");
  Add("pci0000:00/0000:00:02.0/drm/card0/card0-eDP-1", "sys/class/drm/card0-eDP-1");
  Add("pci0000:00/0000:00:02.0/drm/renderD128", "sys/class/drm/renderD128");
  Add("virtual/drm/card1", "sys/class/drm/card1");
  EXPECT_THAT(ReadLifelinesBelow(root_, {}).displays,
              ElementsAre(Chain{"card0", "drm", "0000:00:02.0", "pci0000:00"}));
}

TEST_F(LifelinesBelow, HaveForKeyboardsOnlyWhatHasATypewritersKeys) {
  Add("platform/i8042/serio0/input/input3", "sys/class/input/input3");
  Write("platform/i8042/serio0/input/input3/capabilities/key", kTypewriter);
  Add("platform/button/input/input0", "sys/class/input/input0");
  Write("platform/button/input/input0/capabilities/key", kPowerButton);
  Add("platform/odd/input/input9", "sys/class/input/input9");
  Write("platform/odd/input/input9/capabilities/key", "");
  EXPECT_THAT(ReadLifelinesBelow(root_, {}).keyboards,
              ElementsAre(Chain{"input3", "input", "serio0", "i8042", "platform"}));
}

TEST_F(LifelinesBelow, AreNoneWithoutADeviceTree) {
  fs::remove_all(root_ / "sys");
  const auto lines = ReadLifelinesBelow(root_, {makedev(8, 0)});
  EXPECT_FALSE(lines.disks);
  EXPECT_THAT(lines.displays, IsEmpty());
  EXPECT_THAT(lines.keyboards, IsEmpty());
}

TEST(PlaceOf, IsTheAddressAtTheEndOfTheInstanceId) {
  EXPECT_EQ(report::PlaceOf("PCI\\VEN_8086&DEV_51F0\\0000:00:14.3"), "0000:00:14.3");
  EXPECT_EQ(report::PlaceOf("USB\\VID_8087&PID_0033\\1-10"), "1-10");
  EXPECT_EQ(report::PlaceOf("1-10"), "1-10");
  EXPECT_EQ(report::PlaceOf(""), "");
}

}  // namespace
