#include "ostrine/common/cpuid.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "cpuid_recording.h"

namespace ostrine {
namespace {

using test::RecordedCpuid;

struct Expected {
  const char* what;
  RecordedCpuid cpuid;
  const char* vendor;
  std::optional<std::string> name;
  std::optional<std::uint32_t> address_bits;
  std::optional<std::uint32_t> maximum_clock;
  std::optional<std::uint32_t> bus_clock;
  bool hybrid;
};

std::vector<Expected> Recordings() {
  return {
      {"hybrid", test::HybridIntel(), "GenuineIntel", "12th Gen Intel(R) Core(TM) i7-1260P", 39, 4700, 100,
       true},
      {"hybrid, slow core", test::HybridIntelOnSlowCore(), "GenuineIntel",
       "12th Gen Intel(R) Core(TM) i7-1260P", 39, 4700, 100, true},
      {"plain", test::PlainIntel(), "GenuineIntel", "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz", 39,
       4700, 100, false},
      {"Zen", test::ZenAmd(), "AuthenticAMD", "AMD Ryzen 7 5800U with Radeon Graphics", 48, {}, {}, false},
      {"old AMD",
       test::OldAmd(),
       "AuthenticAMD",
       "AMD Athlon(tm) II P320 Dual-Core Processor",
       48,
       {},
       {},
       false},
      {"ancient",
       test::AncientIntel(),
       "GenuineIntel",
       "Intel(R) Pentium(R) 4 CPU 1.80GHz",
       {},
       {},
       {},
       false},
      {"virtual", test::VirtualIntel(), "GenuineIntel", "Intel(R) Xeon(R) Processor", 48, {}, {}, false},
  };
}

TEST(Cpuid, ReadsWhatRecordedProcessorsSayOfThemselves) {
  for (const Expected& expected : Recordings()) {
    SCOPED_TRACE(expected.what);
    EXPECT_EQ(CpuidVendor(expected.cpuid), expected.vendor);
    EXPECT_EQ(CpuidName(expected.cpuid), expected.name);
    EXPECT_EQ(CpuidAddressBits(expected.cpuid), expected.address_bits);
    EXPECT_EQ(ReadCpuidClocks(expected.cpuid).maximum, expected.maximum_clock);
    EXPECT_EQ(ReadCpuidClocks(expected.cpuid).bus, expected.bus_clock);
    EXPECT_EQ(IsHybrid(expected.cpuid), expected.hybrid);
  }
}

TEST(Cpuid, TakesNoLeafThatTheProcessorDoesNotHave) {
  // This processor answers every leaf past its second with the second.
  const auto ancient = test::AncientIntel();
  EXPECT_EQ(ancient.Read(4, 0)->eax, 0x665B5001u);
  EXPECT_FALSE(ReadLeaf(ancient, 3));
  EXPECT_FALSE(ReadLeaf(ancient, 0x16));
  EXPECT_FALSE(ReadLeaf(ancient, 0x80000005));
  EXPECT_TRUE(ReadLeaf(ancient, 2));
  EXPECT_TRUE(ReadLeaf(ancient, 0x80000004));
}

TEST(Cpuid, HasNoExtendedLeafWhereTheirHeadIsABasicLeafsAnswer) {
  const RecordedCpuid oldest({{0, 0, {0x00000001, 0x756E6547, 0x6C65746E, 0x49656E69}},
                              {1, 0, {0x00000543, 0, 0, 0x8001BF}},
                              {0x80000000, 0, {0x00000543, 0, 0, 0x8001BF}}});
  EXPECT_FALSE(ReadLeaf(oldest, 0x80000000));
  EXPECT_EQ(CpuidName(oldest), std::nullopt);
  EXPECT_EQ(CpuidAddressBits(oldest), std::nullopt);
}

TEST(Cpuid, TellsNothingOfAProcessorWithoutTheInstruction) {
  const NoCpuid none;
  EXPECT_EQ(CpuidVendor(none), std::nullopt);
  EXPECT_EQ(CpuidName(none), std::nullopt);
  EXPECT_EQ(CpuidAddressBits(none), std::nullopt);
  EXPECT_EQ(ReadCpuidClocks(none).maximum, std::nullopt);
  EXPECT_EQ(ReadCpuidClocks(none).bus, std::nullopt);
  EXPECT_FALSE(IsHybrid(none));
}

TEST(Cpuid, TakesANameOfNothingButBlanksForNone) {
  const RecordedCpuid blank(test::WithName({{0x80000000, 0, {0x80000004, 0, 0, 0}}}, std::string(48, ' ')));
  EXPECT_EQ(CpuidName(blank), std::nullopt);
  const RecordedCpuid zero(test::WithName({{0x80000000, 0, {0x80000004, 0, 0, 0}}}, ""));
  EXPECT_EQ(CpuidName(zero), std::nullopt);
}

TEST(Cpuid, ReadsANameThatFillsAll48Bytes) {
  const std::string name = "0123456789012345678901234567890123456789012345AB";
  const RecordedCpuid full(test::WithName({{0x80000000, 0, {0x80000004, 0, 0, 0}}}, name));
  EXPECT_EQ(CpuidName(full), name);
}

TEST(Cpuid, KeepsTheBlanksOfAVendor) {
  const RecordedCpuid zhaoxin({{0, 0, {0x1F, 0x68532020, 0x20206961, 0x68676E61}}});
  EXPECT_EQ(CpuidVendor(zhaoxin), "  Shanghai  ");
}

TEST(Cpuid, CountsHygonAsAmdAndNobodyElse) {
  EXPECT_EQ(FamilyOfVendor("GenuineIntel"), CpuidFamily::kIntel);
  EXPECT_EQ(FamilyOfVendor("AuthenticAMD"), CpuidFamily::kAmd);
  EXPECT_EQ(FamilyOfVendor("HygonGenuine"), CpuidFamily::kAmd);
  for (const char* other : {"CentaurHauls", "  Shanghai  ", "genuineintel", "GenuineIntel2", ""}) {
    EXPECT_EQ(FamilyOfVendor(other), CpuidFamily::kUnknown) << other;
  }
  EXPECT_EQ(FamilyOfVendor(std::nullopt), CpuidFamily::kUnknown);
}

}  // namespace
}  // namespace ostrine
