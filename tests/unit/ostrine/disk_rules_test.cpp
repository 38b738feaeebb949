#include "ostrine/common/disk_rules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace ostrine {
namespace {

constexpr std::uint64_t kMostBytes = std::numeric_limits<std::uint64_t>::max();

TEST(DiskMedia, IsFixedUnlessSomethingSaysOtherwise) {
  struct {
    DiskTraits traits;
    const char* text;
  } const rows[] = {
      {{}, "Fixed hard disk media"},
      {{.has_removable_medium = true}, "Removable Media"},
      {{.is_on_usb = true}, "Removable Media"},
      {{.is_memory_card = true}, "Removable Media"},
      {{.is_optical = true}, "CD-ROM"},
      {{.is_optical = true, .has_removable_medium = true, .is_on_usb = true}, "CD-ROM"},
      {{.is_image = true}, "Disk image"},
      {{.is_optical = true, .is_image = true}, "CD-ROM"},
  };
  for (const auto& row : rows) EXPECT_EQ(DiskMediaText(ChooseDiskMedia(row.traits)), row.text);
}

TEST(DiskText, LosesPaddingControlCharactersAndWhatFollowsAZero) {
  EXPECT_EQ(CleanDiskText("  WD Blue SN570   "), "WD Blue SN570");
  EXPECT_EQ(CleanDiskText("S4X\x01NF0\x7F\xFF\n"), "S4XNF0");
  EXPECT_EQ(CleanDiskText(std::string("AB\0CD", 5)), "AB");
  EXPECT_EQ(CleanDiskText("A  B"), "A  B");
  EXPECT_EQ(CleanDiskText(" \t\r\n "), "");
  EXPECT_EQ(CleanDiskText(""), "");
}

TEST(DiskCaptionText, HasTheVendorOnceAndOnlyWhereItIsOne) {
  EXPECT_EQ(DiskCaption("", "SAMSUNG MZVLB512HBJQ-000L7"), "SAMSUNG MZVLB512HBJQ-000L7");
  EXPECT_EQ(DiskCaption("SanDisk", "Cruzer Blade"), "SanDisk Cruzer Blade");
  EXPECT_EQ(DiskCaption("SanDisk", "SANDISK Cruzer"), "SANDISK Cruzer");
  EXPECT_EQ(DiskCaption("ATA", "WDC WD10SPZX-08Z"), "WDC WD10SPZX-08Z");
  EXPECT_EQ(DiskCaption("NVMe", "KXG60ZNV512G"), "KXG60ZNV512G");
  EXPECT_EQ(DiskCaption("0x1af4", "disk"), "disk");
  EXPECT_EQ(DiskCaption("Longer than the model", "X"), "Longer than the model X");
  EXPECT_EQ(DiskCaption("QEMU", ""), "");
}

TEST(DiskCapacity, CountsSectorsOf512BytesUpToWhat64BitsHold) {
  EXPECT_EQ(BytesOfSectors(1'000'215'216), 512'110'190'592u);
  EXPECT_EQ(BytesOfSectors(0), 0u);
  EXPECT_EQ(BytesOfSectors(kMostBytes / 512), kMostBytes / 512 * 512);
  EXPECT_EQ(BytesOfSectors(kMostBytes / 512 + 1), std::nullopt);
}

TEST(DiskCapacity, IsRoundedDownToDecimalMegabytes) {
  EXPECT_EQ(WholeMegabytes(512'110'190'592), 512'110u);
  EXPECT_EQ(WholeMegabytes(999'999), 0u);
  EXPECT_EQ(WholeMegabytes(1'000'000), 1u);
}

TEST(DiskShare, IsAllForAnOnlyDiskAndNothingWithoutSizes) {
  EXPECT_EQ(ShareOf(12345, 10, 10), 12345u);
  EXPECT_EQ(ShareOf(12345, 11, 10), 12345u);
  EXPECT_EQ(ShareOf(12345, 0, 10), 0u);
  EXPECT_EQ(ShareOf(12345, 0, 0), 0u);
}

TEST(DiskShare, GoesBySizeWithoutOverflow) {
  EXPECT_EQ(ShareOf(900, 100, 1100), 81u);
  EXPECT_EQ(ShareOf(900, 1000, 1100), 818u);
  EXPECT_EQ(ShareOf(kMostBytes, kMostBytes / 2, kMostBytes), kMostBytes / 2);
  EXPECT_EQ(ShareOf(kMostBytes, kMostBytes - 1, kMostBytes), kMostBytes - 1);
}

TEST(DiskShare, OfAnyNumbersIsTheRoundedDownQuotient) {
  std::mt19937_64 engine(7);
  for (int i = 0; i < 20000; ++i) {
    const auto bits = [&] { return engine() >> (engine() % 64); };
    const std::uint64_t whole = bits() | 1;
    const std::uint64_t part = bits() % whole;
    const std::uint64_t bytes = bits();
    const std::uint64_t share = ShareOf(bytes, part, whole);
    EXPECT_LE(share, bytes);
    const long double exact =
        static_cast<long double>(bytes) * static_cast<long double>(part) / static_cast<long double>(whole);
    EXPECT_NEAR(static_cast<double>(static_cast<long double>(share) - exact), 0.0, 2.0);
  }
}

TEST(DiskShare, OfTheDisksOfAFileSystemAddsUpToItsFreeSpace) {
  std::mt19937_64 engine(11);
  for (int i = 0; i < 1000; ++i) {
    const std::uint64_t first = engine() >> 24;
    const std::uint64_t second = engine() >> 24;
    const std::uint64_t bytes = engine() >> 20;
    const std::uint64_t sum = ShareOf(bytes, first, first + second) + ShareOf(bytes, second, first + second);
    EXPECT_LE(sum, bytes);
    EXPECT_GE(sum + 1, bytes);
  }
}

}  // namespace
}  // namespace ostrine
