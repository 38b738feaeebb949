#include "ostrine/linux/block.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disk_tree.h"

namespace ostrine {
namespace {

using test::DiskTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(BlockNumberText, IsTwoDecimalNumbers) {
  EXPECT_EQ(ParseBlockNumber("259:1048575"), (BlockNumber{259, 1048575}));
  for (const char* text :
       {"", ":", "8", "8:", ":0", "8:0 ", "8:0\n", "-8:0", "8:-1", "99999999999:0", "a:b"}) {
    EXPECT_EQ(ParseBlockNumber(text), std::nullopt) << text;
  }
}

TEST(DiskName, IsNeverThatOfTheKernelsOwnDevicesNorOfAPartOfADisk) {
  for (const char* name :
       {"loop0", "ram0", "zram0", "dm-0", "md127", "md_d0", "nbd0", "zd16", "bcache0", "nullb0",
        "mmcblk0boot0", "mmcblk0boot1", "mmcblk0rpmb", "mmcblk0gp0", "nvme0c0n1"}) {
    EXPECT_FALSE(MayBeDisk(name)) << name;
  }
  for (const char* name :
       {"sda", "nvme0n1", "nvme10n2", "vda", "xvda", "mmcblk0", "mmcblk12", "sr0", "hda", "pmem0"}) {
    EXPECT_TRUE(MayBeDisk(name)) << name;
  }
}

class LaptopDisks : public ::testing::Test {
 protected:
  LaptopDisks() { test::BuildLaptopDisks(tree_); }
  DiskTree tree_;
};

TEST_F(LaptopDisks, AreNumberedInNaturalOrderWithoutTheKernelsOwn) {
  EXPECT_THAT(DiskNames(tree_.Path()), ElementsAre("nvme0n1", "sda", "sdb"));
}

TEST_F(LaptopDisks, AreFixedButForTheStick) {
  EXPECT_EQ(tree_.Text(0, DiskFact::kMediaType), "Fixed hard disk media");
  EXPECT_EQ(tree_.Text(1, DiskFact::kMediaType), "Fixed hard disk media");
  EXPECT_EQ(tree_.Text(2, DiskFact::kMediaType), "Removable Media");
}

TEST_F(LaptopDisks, HaveTheirWholeNames) {
  EXPECT_EQ(tree_.Text(0, DiskFact::kCaption), "SAMSUNG MZVLB512HBJQ-000L7");
  EXPECT_EQ(tree_.Text(1, DiskFact::kCaption), "ST1000LM035-1RK172");
  EXPECT_EQ(tree_.Text(2, DiskFact::kCaption), "SanDisk Cruzer Blade");
}

TEST_F(LaptopDisks, HaveTrimmedSerialNumbersOrNone) {
  EXPECT_EQ(tree_.Text(0, DiskFact::kSerialNumber), "S4ENNF0M123456");
  EXPECT_EQ(tree_.Text(1, DiskFact::kSerialNumber), "WL1ABCDE");
  EXPECT_EQ(tree_.Text(2, DiskFact::kSerialNumber), "");
}

TEST_F(LaptopDisks, HaveTheirWholeFirmwareRevisions) {
  EXPECT_EQ(tree_.Text(0, DiskFact::kFirmware), "4L2QEXM7");
  EXPECT_EQ(tree_.Text(1, DiskFact::kFirmware), "SDM2LCM1");
  EXPECT_EQ(tree_.Text(2, DiskFact::kFirmware), "1.26");
}

TEST_F(LaptopDisks, HaveTheirSizesAndKinds) {
  EXPECT_EQ(tree_.Number(0, DiskFact::kTotal), 512'110'190'592u);
  EXPECT_EQ(tree_.Number(1, DiskFact::kTotal), 1'000'204'886'016u);
  EXPECT_EQ(tree_.Number(0, DiskFact::kSolidState), 1u);
  EXPECT_EQ(tree_.Number(1, DiskFact::kSolidState), 0u);
}

TEST_F(LaptopDisks, DoNotOpenBeyondTheLast) {
  EXPECT_FALSE(OpenBlockDisk(tree_.Path(), 3));
  EXPECT_FALSE(OpenBlockDisk(tree_.Path(), 0xFFFFFFFF));
}

TEST_F(LaptopDisks, StayTheSameDiskForAHandleWhenAnotherComesBefore) {
  const auto handle = OpenBlockDisk(tree_.Path(), 1);
  ASSERT_TRUE(handle);
  tree_.AddDisk("platform/mmc0/mmc0:0001/block/mmcblk0", "179:0", "platform/mmc0/mmc0:0001", {{"size", "1"}},
                {{"name", "SD32G"}, {"type", "SD"}});
  EXPECT_EQ(tree_.Text(1, DiskFact::kCaption), "SAMSUNG MZVLB512HBJQ-000L7");
  EXPECT_EQ(ReadBlockText(tree_.Path(), *handle, DiskFact::kCaption), "ST1000LM035-1RK172");
}

TEST_F(LaptopDisks, TellNothingOnceTheyAreGone) {
  const auto handle = OpenBlockDisk(tree_.Path(), 2);
  ASSERT_TRUE(handle);
  for (const char* link : {"sys/block/sdb", "sys/class/block/sdb", "sys/dev/block/8:16"}) {
    std::filesystem::remove(tree_.Path() / link);
  }
  std::filesystem::remove_all(tree_.Path() / "sys/devices" / test::kUsbTarget);
  EXPECT_EQ(ReadBlockText(tree_.Path(), *handle, DiskFact::kMediaType), std::nullopt);
  EXPECT_EQ(ReadBlockText(tree_.Path(), *handle, DiskFact::kCaption), std::nullopt);
  EXPECT_EQ(ReadBlockNumber(tree_.Path(), *handle, DiskFact::kTotal), std::nullopt);
}

TEST(BlockDisk, OfAnOldLaptopHasTheShortTextsThatScsiGives) {
  const DiskTree tree;
  const std::string target = "pci0000:00/0000:00:1f.2/host0/target0:0:0/0:0:0:0";
  tree.AddDisk(target + "/block/sda", "8:0", target,
               {{"size", "156301488"}, {"removable", "0"}, {"queue/rotational", "1"}},
               {{"vendor", "ATA     "}, {"model", "HITACHI HTS54168"}, {"rev", "SB4I"}});
  const std::string drive = "pci0000:00/0000:00:1f.2/host1/target1:0:0/1:0:0:0";
  tree.AddDisk(drive + "/block/sr0", "11:0", drive, {{"size", "2097151"}, {"removable", "1"}},
               {{"vendor", "HL-DT-ST"}, {"model", "DVDRAM GSA-4083N"}, {"rev", "1.02"}, {"type", "5"}});
  EXPECT_THAT(DiskNames(tree.Path()), ElementsAre("sda", "sr0"));
  EXPECT_EQ(tree.Text(0, DiskFact::kCaption), "HITACHI HTS54168");
  EXPECT_EQ(tree.Text(0, DiskFact::kFirmware), "SB4I");
  EXPECT_EQ(tree.Text(0, DiskFact::kSerialNumber), "");
  EXPECT_EQ(tree.Text(1, DiskFact::kMediaType), "CD-ROM");
  EXPECT_EQ(tree.Text(1, DiskFact::kCaption), "HL-DT-ST DVDRAM GSA-4083N");
  EXPECT_EQ(tree.Number(1, DiskFact::kSolidState), 4711u);
}

TEST(BlockDisk, OfAVirtualMachineIsAFixedOneWithTheSerialThatTheHostGave) {
  const DiskTree tree;
  const std::string device = "pci0000:00/0000:00:02.0/virtio1";
  tree.AddDisk(device + "/block/vda", "254:0", device,
               {{"size", "16"}, {"removable", "0"}, {"serial", "disk-7"}},
               {{"vendor", "0x1af4"}, {"device", "0x0002"}});
  EXPECT_EQ(tree.Text(0, DiskFact::kMediaType), "Fixed hard disk media");
  EXPECT_EQ(tree.Text(0, DiskFact::kCaption), "Virtio disk");
  EXPECT_EQ(tree.Text(0, DiskFact::kSerialNumber), "disk-7");
  EXPECT_EQ(tree.Number(0, DiskFact::kTotal), 8192u);
}

TEST(BlockDisk, ThatIsSolderedInIsFixedAndACardIsNot) {
  const DiskTree tree;
  const std::string soldered = "pci0000:00/0000:00:1a.0/mmc_host/mmc0/mmc0:0001";
  const std::string card = "pci0000:00/0000:00:1b.0/mmc_host/mmc1/mmc1:aaaa";
  tree.AddDisk(soldered + "/block/mmcblk0", "179:0", soldered, {{"size", "122142720"}, {"removable", "0"}},
               {{"name", "DG4064"}, {"type", "MMC"}, {"serial", "0x1d2a43bf"}, {"fwrev", "0x3036"}});
  tree.AddDisk(soldered + "/block/mmcblk0/mmcblk0boot0", "179:8", soldered + "/block/mmcblk0",
               {{"size", "8192"}}, {});
  tree.AddDisk(card + "/block/mmcblk1", "179:24", card, {{"size", "62333952"}, {"removable", "0"}},
               {{"name", "SC32G"}, {"type", "SD"}});
  EXPECT_THAT(DiskNames(tree.Path()), ElementsAre("mmcblk0", "mmcblk1"));
  EXPECT_EQ(tree.Text(0, DiskFact::kMediaType), "Fixed hard disk media");
  EXPECT_EQ(tree.Text(0, DiskFact::kCaption), "DG4064");
  EXPECT_EQ(tree.Text(0, DiskFact::kSerialNumber), "0x1d2a43bf");
  EXPECT_EQ(tree.Text(0, DiskFact::kFirmware), "0x3036");
  EXPECT_EQ(tree.Text(1, DiskFact::kMediaType), "Removable Media");
}

TEST(BlockDisk, OnUsbIsRemovableAlsoWhenItsMediumIsNot) {
  const DiskTree tree;
  tree.AddDisk(test::kUsbTarget + "/block/sda", "8:0", test::kUsbTarget, {{"size", "16"}, {"removable", "0"}},
               {{"vendor", "WD      "}, {"model", "My Passport 25E2"}});
  EXPECT_EQ(tree.Text(0, DiskFact::kMediaType), "Removable Media");
}

TEST(BlockDisk, WithSeveralPathsIsCountedOnce) {
  const DiskTree tree;
  const std::string subsystem = "virtual/nvme-subsystem/nvme-subsys0";
  tree.AddDisk(subsystem + "/nvme0n1", "259:1", subsystem, {{"size", "16"}, {"removable", "0"}},
               {{"model", "KXG60ZNV512G"}, {"serial", "X1"}});
  tree.AddDisk(test::kNvmeController + "/nvme0c0n1", "259:2", test::kNvmeController,
               {{"size", "16"}, {"hidden", "1"}}, {});
  EXPECT_THAT(DiskNames(tree.Path()), ElementsAre("nvme0n1"));
  EXPECT_EQ(tree.Text(0, DiskFact::kMediaType), "Fixed hard disk media");
  EXPECT_EQ(tree.Text(0, DiskFact::kSerialNumber), "X1");
}

TEST(BlockDisk, IsMissingOnAMachineWithout) {
  const DiskTree tree;
  EXPECT_THAT(DiskNames(tree.Path()), IsEmpty());
  EXPECT_FALSE(OpenBlockDisk(tree.Path(), 0));
}

TEST(BlockDisk, OfAHostileTreeTellsNothingThatIsNotThere) {
  const DiskTree tree;
  tree.Link("sys/block/sda", "sda");                     // a link to itself
  tree.Link("sys/block/sdb", "../../../../../nowhere");  // and one to nothing
  tree.Root().Write("sys/block/sdc", "a file");
  tree.AddDisk("x/block/sdd", "junk", "x", {{"size", "16"}}, {});
  tree.AddDisk("y/block/sde", "8:64", "y",
               {{"size", "99999999999999999999999"}, {"queue/rotational", "maybe"}, {"removable", "-1"}},
               {{"model", std::string("\x01\x02\xFF\xFE")}, {"vendor", std::string(5000, 'A')}});
  tree.Root().Write("sys/devices/y/vpd_pg80", "\x00\x80\xFF\xFFjunk");
  tree.Root().Write("sys/devices/y/vpd_pg89", std::string(100'000, 'A'));
  tree.AddDisk("z/block/sdf", "8:80", "z", {{"size", "-1"}}, {});
  tree.AddDisk("w/block/sdg", "8:96", "w", {{"size", "9223372036854775807"}}, {});
  EXPECT_THAT(DiskNames(tree.Path()), ElementsAre("sdd", "sde", "sdf", "sdg"));
  EXPECT_FALSE(OpenBlockDisk(tree.Path(), 0));
  EXPECT_EQ(tree.Text(1, DiskFact::kMediaType), "Fixed hard disk media");
  for (const auto fact : {DiskFact::kCaption, DiskFact::kSerialNumber, DiskFact::kFirmware}) {
    EXPECT_EQ(tree.Text(1, fact), "");
  }
  for (const std::uint32_t number : {1u, 2u, 3u}) EXPECT_EQ(tree.Number(number, DiskFact::kTotal), 4711u);
  EXPECT_EQ(tree.Number(1, DiskFact::kSolidState), 4711u);
}

TEST(BlockDisk, TellsNothingForAHandleThatNobodyGave) {
  const DiskTree tree;
  for (const std::uint64_t handle : {0ull, 1ull, ~0ull, 1ull << 63}) {
    EXPECT_EQ(ReadBlockText(tree.Path(), handle, DiskFact::kCaption), std::nullopt);
    EXPECT_EQ(ReadBlockNumber(tree.Path(), handle, DiskFact::kTotal), std::nullopt);
  }
}

}  // namespace
}  // namespace ostrine
