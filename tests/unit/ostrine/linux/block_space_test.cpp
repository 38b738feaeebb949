#include "ostrine/linux/block_space.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <map>

#include "disk_tree.h"

namespace ostrine {
namespace {

using test::DiskTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

/// Free bytes by mount point, and which were asked for.
class FakeSpace {
 public:
  explicit FakeSpace(std::map<std::string, std::uint64_t> bytes) : bytes_(std::move(bytes)) {}

  FreeSpace Answer() {
    return [this](const Path& mount_point, const BlockNumber&) -> std::optional<std::uint64_t> {
      asked_.push_back(mount_point.string());
      const auto found = bytes_.find(mount_point.string());
      return found == bytes_.end() ? std::nullopt : std::optional(found->second);
    };
  }
  const std::vector<std::string>& Asked() const { return asked_; }

 private:
  std::map<std::string, std::uint64_t> bytes_;
  std::vector<std::string> asked_;
};

std::optional<std::uint64_t> FreeBytes(const DiskTree& tree, std::uint32_t disk, FakeSpace& space) {
  const auto handle = OpenBlockDisk(tree.Path(), disk);
  return handle ? FreeBytesOnDisk(tree.Path(), *handle, space.Answer()) : std::nullopt;
}

std::vector<std::string> Disks(const DiskTree& tree, const std::string& mountinfo) {
  const auto systems = ParseMounts(mountinfo);
  return systems.empty() ? std::vector<std::string>() : DisksUnder(tree.Path(), systems.front());
}

TEST(FreeSpaceOnALaptop, CountsEachFileSystemOnceThroughEncryptionAndSharesAVolumeOut) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  const std::uint64_t nvme = tree.Number(0, DiskFact::kTotal);
  const std::uint64_t sata = tree.Number(1, DiskFact::kTotal);
  FakeSpace space({{"/", 100'000'000'000},
                   {"/home", 100'000'000'000},
                   {"/boot/efi", 200'000'000},
                   {"/srv", 30'000'000'000},
                   {"/home/pub", 30'000'000'000},
                   {"/media/My Stick", 5'000},
                   {"/snap/core", 77}});
  const std::uint64_t volume_on_nvme = 30'000'000'000 / ((nvme + sata) / 1'000'000) * (nvme / 1'000'000);
  const auto on_nvme = FreeBytes(tree, 0, space);
  const auto on_sata = FreeBytes(tree, 1, space);
  ASSERT_TRUE(on_nvme && on_sata);
  EXPECT_NEAR(static_cast<double>(*on_nvme), static_cast<double>(100'200'000'000 + volume_on_nvme), 2e7);
  EXPECT_NEAR(static_cast<double>(*on_nvme + *on_sata), 130'200'000'000.0, 1.0);
  EXPECT_EQ(FreeBytes(tree, 2, space), 5'000u);
}

TEST(FreeSpaceOnALaptop, AsksOnlyForFileSystemsOfTheDiskThatIsMeant) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  FakeSpace space({{"/media/My Stick", 1}});
  EXPECT_EQ(FreeBytes(tree, 2, space), 1u);
  EXPECT_THAT(space.Asked(), ElementsAre("/media/My Stick"));
}

TEST(FreeSpaceOnADisk, IsThatOfTheFirstMountPointThatAnswers) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  FakeSpace space({{"/home", 9}});  // "/" is covered by something
  tree.Mounts("1 1 259:2 / / rw - ext4 /dev/x rw\n2 1 259:2 / /home rw - ext4 /dev/x rw\n");
  EXPECT_EQ(FreeBytes(tree, 0, space), 9u);
}

TEST(FreeSpaceOnADisk, IsNoneWithoutMountsAndUnknownWithoutTheirList) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  FakeSpace space({{"/", 1}});
  tree.Mounts("");
  EXPECT_EQ(FreeBytes(tree, 0, space), 0u);
  std::filesystem::remove(tree.Path() / "proc/self/mountinfo");
  EXPECT_EQ(FreeBytes(tree, 0, space), std::nullopt);
}

TEST(FreeSpaceOnADisk, ThatIsMoreThan64BitsHoldIsNotAnswered) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  tree.Mounts("1 1 259:1 / /a rw - ext4 x rw\n2 1 259:2 / /b rw - ext4 x rw\n");
  FakeSpace space({{"/a", ~0ull}, {"/b", 1}});
  EXPECT_EQ(FreeBytes(tree, 0, space), std::nullopt);
}

TEST(DisksUnderAFileSystem, AreFoundThroughRaidOnEncryptedPartitions) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  tree.Add("virtual/block/md127", "9:127", {{"size", "16"}});
  tree.Stack("virtual/block/md127", "dm-0");
  tree.Stack("virtual/block/md127", "sda1");
  tree.AddPartition("virtual/block/md127/md127p1", "259:9");
  EXPECT_THAT(Disks(tree, "1 1 9:127 / / rw - xfs /dev/md127 rw"), UnorderedElementsAre("nvme0n1", "sda"));
  EXPECT_THAT(Disks(tree, "1 1 259:9 / / rw - xfs /dev/md127p1 rw"), UnorderedElementsAre("nvme0n1", "sda"));
}

TEST(DisksUnderAFileSystem, AreTheWholeDiskWhenThereAreNoPartitions) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  EXPECT_THAT(Disks(tree, "1 1 8:16 / / rw - vfat /dev/sdb rw"), ElementsAre("sdb"));
}

TEST(DisksUnderAFileSystem, AreAllOfABtrfsOnSeveral) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  const std::string devices = "sys/fs/btrfs/aaaa/devices/";
  tree.Link(devices + "nvme0n1p3", "../../../../class/block/nvme0n1p3");
  tree.Link(devices + "sdb1", "../../../../class/block/sdb1");
  EXPECT_THAT(Disks(tree, "1 1 0:40 / /pool rw - btrfs /dev/sdb1 rw"),
              UnorderedElementsAre("nvme0n1", "sdb"));
  EXPECT_THAT(Disks(tree, "1 1 0:40 / /pool rw - btrfs /dev/mapper/nobody rw"), IsEmpty());
  EXPECT_THAT(Disks(tree, "1 1 0:40 / /pool rw - fuse.thing /dev/fuse rw"), IsEmpty());
}

TEST(DisksUnderAFileSystem, AreFoundInATreeThatRunsInCircles) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  tree.Add("virtual/block/dm-8", "252:8", {{"size", "16"}});
  tree.Add("virtual/block/dm-9", "252:9", {{"size", "16"}});
  tree.Stack("virtual/block/dm-8", "dm-9");
  tree.Stack("virtual/block/dm-9", "dm-8");
  tree.Stack("virtual/block/dm-9", "sda1");
  EXPECT_THAT(Disks(tree, "1 1 252:8 / / rw - ext4 /dev/x rw"), ElementsAre("sda"));
}

TEST(DisksUnderAFileSystem, AreBoundedHoweverManyAreListed) {
  const DiskTree tree;
  test::BuildLaptopDisks(tree);
  tree.Add("virtual/block/dm-9", "252:9", {{"size", "16"}});
  for (int i = 0; i < 1000; ++i) tree.Stack("virtual/block/dm-9", "ghost" + std::to_string(i));
  EXPECT_LE(Disks(tree, "1 1 252:9 / / rw - ext4 /dev/x rw").size(), 256u);
}

TEST(MountedSpace, IsWhatTheKernelTellsForTheDeviceThatIsMountedThere) {
  struct stat status{};
  struct statvfs space{};
  ASSERT_EQ(stat("/", &status), 0);
  ASSERT_EQ(statvfs("/", &space), 0);
  const BlockNumber number{major(status.st_dev), minor(status.st_dev)};
  const auto bytes = MountedFreeSpace("/", number);
  ASSERT_TRUE(bytes);
  EXPECT_NEAR(static_cast<double>(*bytes), static_cast<double>(space.f_bavail * space.f_frsize), 1e9);
  EXPECT_EQ(MountedFreeSpace("/", {number.major + 1, number.minor}), std::nullopt);
  EXPECT_EQ(MountedFreeSpace("/nowhere/at/all", number), std::nullopt);
}

}  // namespace
}  // namespace ostrine
