#include "ostrine/common/disk_descriptor.h"

#include <gtest/gtest.h>

#include <random>

#include "disk_bytes.h"

namespace ostrine {
namespace {

using test::DescriptorBytes;
using test::DiskBytes;

std::string Hex(std::string_view text) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char c : text) {
    hex.push_back(kDigits[static_cast<unsigned char>(c) >> 4]);
    hex.push_back(kDigits[static_cast<unsigned char>(c) & 15]);
  }
  return hex;
}

std::string Turned(std::string text) {
  for (std::size_t i = 1; i < text.size(); i += 2) std::swap(text[i - 1], text[i]);
  return text;
}

TEST(AtaIdentity, HasItsTextsTurnedAndTrimmed) {
  const auto bytes = test::AtaIdentityBytes("Samsung SSD 860 EVO 500GB", "      S3Z2NB0K123456", "RVT01B6Q");
  const auto identity = ParseAtaIdentity(bytes);
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->model, "Samsung SSD 860 EVO 500GB");
  EXPECT_EQ(identity->serial, "S3Z2NB0K123456");
  EXPECT_EQ(identity->firmware, "RVT01B6Q");
  EXPECT_EQ(identity->vendor, "");
}

TEST(AtaIdentity, NeedsAll512Bytes) {
  EXPECT_FALSE(ParseAtaIdentity(DiskBytes(511)));
  EXPECT_FALSE(ParseAtaIdentity({}));
  EXPECT_EQ(ParseAtaIdentity(DiskBytes(512)), DiskIdentity());
}

TEST(AtaInformationPage, CarriesTheIdentity) {
  const auto page = test::AtaInformationPage("WDC WD10SPZX-08Z10T1", "WD-WXA0A9387320", "04.01A04");
  const auto identity = ParseAtaInformationPage(page);
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->model, "WDC WD10SPZX-08Z10T1");
  EXPECT_EQ(identity->serial, "WD-WXA0A9387320");
  EXPECT_EQ(identity->firmware, "04.01A04");
}

TEST(AtaInformationPage, OfAnotherNumberOrCutShortIsNone) {
  auto page = test::AtaInformationPage("M", "S", "F");
  page[1] = 0x80;
  EXPECT_FALSE(ParseAtaInformationPage(page));
  page[1] = 0x89;
  for (std::size_t size = 0; size < page.size(); ++size) {
    EXPECT_FALSE(ParseAtaInformationPage(std::span(page).first(size))) << size;
  }
  EXPECT_TRUE(ParseAtaInformationPage(page));
}

TEST(SerialNumberPage, GivesTheSerialWithoutPadding) {
  EXPECT_EQ(ParseSerialNumberPage(test::SerialNumberPage("     S3Z2NB0K123456 ")), "S3Z2NB0K123456");
  EXPECT_EQ(ParseSerialNumberPage(test::SerialNumberPage("")), "");
}

TEST(SerialNumberPage, OfLyingLengthOrAnotherNumberIsNone) {
  EXPECT_FALSE(ParseSerialNumberPage(DiskBytes{0, 0x80, 0, 5, 'A', 'B', 'C', 'D'}));
  EXPECT_FALSE(ParseSerialNumberPage(DiskBytes{0, 0x83, 0, 1, 'A'}));
  EXPECT_FALSE(ParseSerialNumberPage(DiskBytes{0, 0x80, 0}));
  EXPECT_EQ(ParseSerialNumberPage(DiskBytes{0, 0x80, 0, 1, 'A', 'B'}), "A");
}

TEST(StorageDescriptor, GivesTextsAndKind) {
  const auto bytes = DescriptorBytes{.vendor = "SanDisk ",
                                     .model = "Cruzer Blade    ",
                                     .firmware = "1.26",
                                     .serial = "4C530001",
                                     .is_removable = true,
                                     .bus_type = 7}
                         .Build();
  const auto descriptor = ParseStorageDescriptor(bytes);
  ASSERT_TRUE(descriptor);
  EXPECT_EQ(descriptor->identity, (DiskIdentity{"SanDisk", "Cruzer Blade", "4C530001", "1.26"}));
  EXPECT_TRUE(descriptor->has_removable_medium);
  EXPECT_EQ(descriptor->bus_type, 7u);
  EXPECT_EQ(descriptor->device_type, 0u);
}

TEST(StorageDescriptor, HasNoTextWhereTheOffsetPointsIntoTheFixedPartOrPastTheEnd) {
  for (const std::uint64_t offset : {0ull, 1ull, 35ull, 4096ull, 0xFFFFFFFFull}) {
    auto bytes = DescriptorBytes{.model = "MODEL"}.Build();
    test::PutLittle(bytes, 16, offset, 4);
    const auto descriptor = ParseStorageDescriptor(bytes);
    ASSERT_TRUE(descriptor);
    EXPECT_EQ(descriptor->identity.model, "") << offset;
  }
}

TEST(StorageDescriptor, IsReadUpToTheSizeThatItStates) {
  auto bytes = DescriptorBytes{.model = "MODEL"}.Build();
  test::PutLittle(bytes, 4, 43, 4);
  EXPECT_EQ(ParseStorageDescriptor(bytes)->identity.model, "MOD");
  test::PutLittle(bytes, 4, 35, 4);
  EXPECT_FALSE(ParseStorageDescriptor(bytes));
  test::PutLittle(bytes, 4, 0xFFFFFFFF, 4);
  EXPECT_EQ(ParseStorageDescriptor(bytes)->identity.model, "MODEL");
  EXPECT_FALSE(ParseStorageDescriptor(std::span(bytes).first(35)));
}

TEST(StorageDescriptor, EndsATextAtTheEndOfTheBytes) {
  auto bytes = DescriptorBytes{.model = "MODEL"}.Build();
  bytes.pop_back();
  EXPECT_EQ(ParseStorageDescriptor(bytes)->identity.model, "MODEL");
}

TEST(ReadableSerialText, IsDecodedAndTurnedWhenItIsTheFieldInHexadecimal) {
  EXPECT_EQ(ReadableSerial("2020202057202d44585730414139383337333032"), "WD-WXA09A383720");
  EXPECT_EQ(ReadableSerial(Hex(Turned("      S3Z2NB0K123456"))), "S3Z2NB0K123456");
}

TEST(ReadableSerialText, StaysAsItIsWhenItOnlyLooksAlike) {
  const std::string plain_digits(40, '1');  // 0x11 is no printable character
  EXPECT_EQ(ReadableSerial(plain_digits), plain_digits);
  EXPECT_EQ(ReadableSerial("2020202057202d44"), "2020202057202d44");
  EXPECT_EQ(ReadableSerial(" 0025_3858_91B2_7E4F. "), "0025_3858_91B2_7E4F.");
  EXPECT_EQ(ReadableSerial("D-WXWA0A9387320 "), "D-WXWA0A9387320");
  EXPECT_EQ(ReadableSerial(std::string(40, 'g')), std::string(40, 'g'));
}

TEST(ReadableSerialText, OfEverySerialInAnAtaFieldIsThatSerial) {
  std::mt19937 engine(3);
  for (int i = 0; i < 2000; ++i) {
    std::string serial(1 + engine() % 20, ' ');
    for (char& c : serial) c = static_cast<char>('!' + engine() % 94);
    std::string field = serial;
    field.insert(field.begin(), engine() % (21 - field.size()), ' ');
    field.resize(20, ' ');
    EXPECT_EQ(ReadableSerial(Hex(Turned(field))), serial);
  }
}

DiskBytes Extents(std::uint32_t count, const std::vector<VolumeExtent>& extents) {
  DiskBytes bytes(8 + 24 * extents.size());
  test::PutLittle(bytes, 0, count, 4);
  for (std::size_t i = 0; i < extents.size(); ++i) {
    test::PutLittle(bytes, 8 + 24 * i, extents[i].disk, 4);
    test::PutLittle(bytes, 8 + 24 * i + 8, 1 << 20, 8);
    test::PutLittle(bytes, 8 + 24 * i + 16, extents[i].length, 8);
  }
  return bytes;
}

TEST(VolumeExtents, AreReadInOrder) {
  const std::vector<VolumeExtent> extents{{.disk = 1, .length = 500}, {.disk = 0, .length = 1ull << 40}};
  EXPECT_EQ(ParseVolumeExtents(Extents(2, extents)), extents);
  EXPECT_EQ(ParseVolumeExtents(Extents(1, extents)).size(), 1u);
}

TEST(VolumeExtents, AreNeverMoreThanTheBytesHold) {
  const auto bytes = Extents(0xFFFFFFFF, {{.disk = 1, .length = 500}});
  EXPECT_EQ(ParseVolumeExtents(bytes).size(), 1u);
  EXPECT_TRUE(ParseVolumeExtents(std::span(bytes).first(31)).empty());
  EXPECT_TRUE(ParseVolumeExtents(std::span(bytes).first(7)).empty());
}

TEST(VolumeExtents, OfNegativeLengthAreLeftOut) {
  EXPECT_TRUE(ParseVolumeExtents(Extents(1, {{.disk = 1, .length = 1ull << 63}})).empty());
}

/// Random descriptors: what was built is what is read, and a cut one is read without a fault.
TEST(StorageDescriptorProperty, EveryBuiltDescriptorReadsBackAndEveryCutOneIsSurvived) {
  std::mt19937 engine(5);
  const auto text = [&](std::size_t most) {
    std::string result(engine() % most, ' ');
    for (char& c : result) c = static_cast<char>('!' + engine() % 94);
    return result;
  };
  for (int i = 0; i < 500; ++i) {
    const DescriptorBytes built{.vendor = text(9),
                                .model = text(41),
                                .firmware = text(9),
                                .serial = text(30),
                                .device_type = static_cast<std::uint8_t>(engine() % 32),
                                .is_removable = engine() % 2 == 0,
                                .bus_type = static_cast<std::uint32_t>(engine())};
    const DiskBytes bytes = built.Build();
    const auto read = ParseStorageDescriptor(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->identity, (DiskIdentity{built.vendor, built.model, built.serial, built.firmware}));
    EXPECT_EQ(read->bus_type, built.bus_type);
    EXPECT_EQ(read->device_type, built.device_type);
    EXPECT_EQ(read->has_removable_medium, built.is_removable);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      const DiskBytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
      EXPECT_EQ(ParseStorageDescriptor(cut).has_value(), size >= 36);
    }
  }
}

}  // namespace
}  // namespace ostrine
