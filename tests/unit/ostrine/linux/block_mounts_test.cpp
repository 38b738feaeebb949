#include "ostrine/linux/block_mounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace ostrine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(MountText, HasItsOctalEscapesRead) {
  EXPECT_EQ(UnescapeMountText("/media/My\\040Stick"), "/media/My Stick");
  EXPECT_EQ(UnescapeMountText("a\\134b\\012"), "a\\b\n");
  EXPECT_EQ(UnescapeMountText("\\377"), "\xFF");
  EXPECT_EQ(UnescapeMountText("\\400\\08\\0"), "\\400\\08\\0");
  EXPECT_EQ(UnescapeMountText("\\"), "\\");
}

TEST(MountList, HasAFileSystemOnceHoweverOftenItIsMounted) {
  const auto systems = ParseMounts(
      "27 1 254:0 / / rw,relatime - ext4 /dev/vda rw\n"
      "28 27 254:0 /srv /bind rw shared:1 master:2 - ext4 /dev/vda rw\n");
  ASSERT_THAT(systems, SizeIs(1));
  EXPECT_EQ(systems[0].number, (BlockNumber{254, 0}));
  EXPECT_EQ(systems[0].source, "/dev/vda");
  EXPECT_THAT(systems[0].mount_points, ElementsAre("/", "/bind"));
}

TEST(MountList, HasNoFileSystemWithoutABlockDevice) {
  EXPECT_THAT(ParseMounts("22 27 0:21 / /proc rw - proc proc rw\n"
                          "23 27 0:30 / /net rw - nfs4 server:/dev/export rw\n"
                          "24 27 0:31 / /o rw - overlay overlay rw\n"),
              IsEmpty());
}

TEST(MountList, KeepsAKindThatMayLieOnSeveralDevices) {
  const auto systems = ParseMounts("26 1 0:24 /@ / rw - btrfs /dev/sda2 rw\n");
  ASSERT_THAT(systems, SizeIs(1));
  EXPECT_EQ(systems[0].source, "/dev/sda2");
}

TEST(MountList, LeavesOutWhatALaterMountCovers) {
  const auto systems = ParseMounts(
      "30 1 8:1 / /mnt rw - ext4 /dev/sda1 rw\n"
      "31 1 8:2 / /mnt rw - ext4 /dev/sda2 rw\n");
  ASSERT_THAT(systems, SizeIs(1));
  EXPECT_EQ(systems[0].number, (BlockNumber{8, 2}));
  EXPECT_THAT(ParseMounts("30 1 8:1 / /mnt rw - ext4 /dev/sda1 rw\n31 1 0:9 / /mnt rw - tmpfs tmpfs rw\n"),
              IsEmpty());
}

TEST(MountList, PassesOverLinesOfAnotherForm) {
  EXPECT_THAT(
      ParseMounts("\n\n27\n27 1 254:0\n27 1 x:y / / rw - ext4 /dev/vda rw\n27 1 254:0 / / rw ext4 no dash\n"),
      IsEmpty());
  EXPECT_THAT(ParseMounts(""), IsEmpty());
}

TEST(MountList, ReadsALastLineWithoutItsEnd) {
  EXPECT_THAT(ParseMounts("27 1 254:0 / / rw - ext4 /dev/vda rw"), SizeIs(1));
}

TEST(MountListProperty, EveryCutOrSpoiltListIsSurvived) {
  const std::string list =
      "27 1 254:0 / /a\\040b rw shared:1 - ext4 /dev/vda rw\n28 27 0:24 /@ /c rw - btrfs /dev/mapper/x rw\n";
  for (std::size_t size = 0; size <= list.size(); ++size)
    EXPECT_LE(ParseMounts(list.substr(0, size)).size(), 2u);
  std::mt19937 engine(1);
  for (int i = 0; i < 5000; ++i) {
    std::string spoilt = list;
    for (int k = 0; k < 4; ++k) spoilt[engine() % spoilt.size()] = static_cast<char>(engine() % 256);
    for (const auto& system : ParseMounts(spoilt))
      EXPECT_THAT(system.mount_points, ::testing::Not(IsEmpty()));
  }
}

}  // namespace
}  // namespace ostrine
