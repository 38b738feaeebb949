#include "ostrine/common/smbios_entry_point.h"

#include <gtest/gtest.h>

#include "smbios_builder.h"

namespace ostrine::smbios {
namespace {

using test::ByteVector;
using test::EntryPoint32;
using test::EntryPoint64;

ByteVector BareEntryPoint() {
  const ByteVector whole = EntryPoint32(0x0456, 7);
  return {whole.begin() + 0x10, whole.end()};
}

TEST(SmbiosEntryPoint, ReadsThe64BitForm) {
  const auto entry_point = ParseEntryPoint(EntryPoint64(0x00012345));
  ASSERT_TRUE(entry_point);
  EXPECT_EQ(entry_point->table_length, 0x00012345u);
  EXPECT_EQ(entry_point->structure_count, 0);
}

TEST(SmbiosEntryPoint, ReadsThe32BitForm) {
  const auto entry_point = ParseEntryPoint(EntryPoint32(0x0456, 7));
  ASSERT_TRUE(entry_point);
  EXPECT_EQ(entry_point->table_length, 0x0456u);
  EXPECT_EQ(entry_point->structure_count, 7);
}

TEST(SmbiosEntryPoint, ReadsThe32BitFormWithTheMisprintedLength) {
  ByteVector bytes = EntryPoint32(0x0456, 7);
  bytes[5] = 0x1E;
  test::FixChecksum(bytes, 0, 0x1E, 4);
  EXPECT_TRUE(ParseEntryPoint(bytes));
}

TEST(SmbiosEntryPoint, ReadsTheBareForm) {
  const auto entry_point = ParseEntryPoint(BareEntryPoint());
  ASSERT_TRUE(entry_point);
  EXPECT_EQ(entry_point->table_length, 0x0456u);
  EXPECT_EQ(entry_point->structure_count, 7);
}

TEST(SmbiosEntryPoint, RefusesEveryFormWithAnySingleByteChanged) {
  for (const ByteVector& whole : {EntryPoint64(0x1234), EntryPoint32(0x0456, 7), BareEntryPoint()}) {
    for (std::size_t i = 0; i < whole.size(); ++i) {
      ByteVector changed = whole;
      changed[i] = static_cast<std::uint8_t>(changed[i] + 1);
      EXPECT_FALSE(ParseEntryPoint(changed)) << "byte " << i << " of " << whole.size();
    }
  }
}

TEST(SmbiosEntryPoint, RefusesAWrongInnerChecksumUnderARightOuterOne) {
  ByteVector bytes = EntryPoint32(0x0456, 7);
  bytes[0x16] = static_cast<std::uint8_t>(bytes[0x16] + 1);
  test::FixChecksum(bytes, 0, bytes.size(), 4);
  EXPECT_FALSE(ParseEntryPoint(bytes));
}

TEST(SmbiosEntryPoint, RefusesEveryFormCutAnywhere) {
  for (const ByteVector& whole : {EntryPoint64(0x1234), EntryPoint32(0x0456, 7), BareEntryPoint()}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      EXPECT_FALSE(ParseEntryPoint(Bytes(whole).first(size))) << size << " of " << whole.size();
    }
  }
}

TEST(SmbiosEntryPoint, RefusesALengthThatIsTooShortForTheForm) {
  ByteVector wide = EntryPoint64(0x1234);
  wide[6] = 0x17;
  test::FixChecksum(wide, 0, 0x17, 5);
  EXPECT_FALSE(ParseEntryPoint(wide));
  ByteVector narrow = EntryPoint32(0x0456, 7);
  narrow[5] = 0x1D;
  test::FixChecksum(narrow, 0, 0x1D, 4);
  EXPECT_FALSE(ParseEntryPoint(narrow));
}

TEST(SmbiosEntryPoint, RefusesALengthThatTheBytesDoNotHold) {
  // The byte behind would make the sum right, had it been given.
  ByteVector wide = EntryPoint64(0x1234);
  wide.push_back(0xA5);
  wide[6] = 0x19;
  test::FixChecksum(wide, 0, 0x19, 5);
  EXPECT_TRUE(ParseEntryPoint(wide));
  EXPECT_FALSE(ParseEntryPoint(Bytes(wide).first(0x18)));
  ByteVector narrow = EntryPoint32(0x0456, 7);
  narrow.push_back(0xA5);
  narrow[5] = 0x20;
  test::FixChecksum(narrow, 0, 0x20, 4);
  EXPECT_TRUE(ParseEntryPoint(narrow));
  EXPECT_FALSE(ParseEntryPoint(Bytes(narrow).first(0x1F)));
}

TEST(SmbiosEntryPoint, DescribesNoMoreBytesThanThereAre) {
  const ByteVector bytes(10);
  EXPECT_EQ(DescribedTable({.table_length = 6}, bytes).bytes.size(), 6u);
  EXPECT_EQ(DescribedTable({.table_length = 10}, bytes).bytes.size(), 10u);
  EXPECT_EQ(DescribedTable({.table_length = 0xFFFFFFFF}, bytes).bytes.size(), 10u);
}

TEST(SmbiosEntryPoint, DescribesACountOnlyWhereOneIsStated) {
  EXPECT_EQ(DescribedTable({.table_length = 6, .structure_count = 3}, {}).structure_count, 3u);
  EXPECT_EQ(DescribedTable({.table_length = 6, .structure_count = 0}, {}).structure_count, std::nullopt);
}

TEST(SmbiosRawData, GivesTheTableBehindTheHeader) {
  const ByteVector table = test::LaptopTable();
  const ByteVector bytes = test::RawSmbiosData(table);
  const auto view = ParseRawSmbiosData(bytes);
  ASSERT_TRUE(view);
  EXPECT_EQ(ByteVector(view->bytes.begin(), view->bytes.end()), table);
  EXPECT_EQ(view->structure_count, std::nullopt);
}

TEST(SmbiosRawData, LeavesOutWhatFollowsTheStatedLength) {
  ByteVector bytes = test::RawSmbiosData(ByteVector(20));
  bytes.resize(100);
  const auto view = ParseRawSmbiosData(bytes);
  ASSERT_TRUE(view);
  EXPECT_EQ(view->bytes.size(), 20u);
}

TEST(SmbiosRawData, IsRefusedWhenCutOrWhenItClaimsMoreThanItHas) {
  const ByteVector whole = test::RawSmbiosData(ByteVector(20));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(ParseRawSmbiosData(Bytes(whole).first(size))) << size;
  }
  ByteVector lying = whole;
  test::PutNumber(lying, 4, 4, 0xFFFFFFFF);
  EXPECT_FALSE(ParseRawSmbiosData(lying));
}

}  // namespace
}  // namespace ostrine::smbios
