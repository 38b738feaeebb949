// Which of the sources answers each fact of the processor.
#include "ostrine/common/processor.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cpuid_recording.h"
#include "processor_structure.h"
#include "smbios_builder.h"

namespace ostrine {
namespace {

using OptionalNumber = std::optional<std::uint32_t>;
using OptionalText = std::optional<std::string>;
using test::ByteVector;

/// A system that tells what a test has put into it.
struct ScriptedSystem final : ProcessorSystem {
  bool arm = false;
  OptionalText vendor;
  OptionalText name;
  OptionalNumber current_clock;
  OptionalNumber maximum_clock;
  OptionalNumber nominal_clock;
  OptionalNumber cores;
  OptionalNumber threads;
  std::vector<Cache> caches;
  std::optional<ProcessorTime> time;
  ByteVector firmware;

  bool IsArm() const override { return arm; }
  OptionalText Vendor() const override { return vendor; }
  OptionalText Name() const override { return name; }
  OptionalNumber CurrentClock() const override { return current_clock; }
  OptionalNumber MaximumClock() const override { return maximum_clock; }
  OptionalNumber NominalClock() const override { return nominal_clock; }
  OptionalNumber Cores() const override { return cores; }
  OptionalNumber Threads() const override { return threads; }
  std::vector<Cache> Caches(unsigned int level, CacheExtent) const override {
    std::vector<Cache> of_level;
    for (const Cache& cache : caches) {
      if (cache.level == level) of_level.push_back(cache);
    }
    return of_level;
  }
  std::optional<ProcessorTime> Time() const override { return time; }
  std::optional<FirmwareTable> Firmware() const override {
    if (firmware.empty()) return std::nullopt;
    ByteVector bytes = firmware;
    const smbios::TableView view{.bytes = bytes};
    return FirmwareTable(std::move(bytes), view);
  }
};

OptionalNumber NumberOf(const CpuidSource& cpuid, const ProcessorSystem& system, ProcessorFact fact) {
  LoadHistory history;
  std::array<std::uint8_t, 4> buffer{};
  unsigned int returned = 0;
  Answer answer(buffer.data(), buffer.size(), &returned);
  if (!AnswerProcessor(cpuid, system, history, static_cast<unsigned int>(fact), answer)) return std::nullopt;
  EXPECT_EQ(returned, 4u);
  std::uint32_t number = 0;
  for (std::size_t i = buffer.size(); i-- > 0;) number = number << 8 | buffer.at(i);
  return number;
}

OptionalText TextOf(const CpuidSource& cpuid, const ProcessorSystem& system, ProcessorFact fact,
                    unsigned int size = 260) {
  LoadHistory history;
  std::vector<char> buffer(size);
  Answer answer(buffer.data(), size, nullptr);
  if (!AnswerProcessor(cpuid, system, history, static_cast<unsigned int>(fact), answer)) return std::nullopt;
  return std::string(buffer.data());
}

ByteVector FirmwareWith(const test::ProcessorStructure& processor) {
  ByteVector table;
  test::AppendProcessor(table, processor);
  test::AppendEnd(table);
  return table;
}

TEST(Processor, TellsItsOwnNameBeforeSystemAndFirmwareAreAsked) {
  ScriptedSystem system;
  system.vendor = "system's vendor";
  system.name = "system's name";
  system.firmware = FirmwareWith({});
  EXPECT_EQ(TextOf(test::PlainIntel(), system, ProcessorFact::kVendor), "GenuineIntel");
  EXPECT_EQ(TextOf(test::PlainIntel(), system, ProcessorFact::kName),
            "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz");
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kVendor), "system's vendor");
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kName), "system's name");
  system.vendor.reset();
  system.name.reset();
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kVendor), "Intel(R) Corporation");
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kName), "12th Gen Core");
}

TEST(Processor, CutsItsNameToTheBuffer) {
  EXPECT_EQ(TextOf(test::PlainIntel(), ScriptedSystem(), ProcessorFact::kName, 50),
            "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz");
  EXPECT_EQ(TextOf(test::PlainIntel(), ScriptedSystem(), ProcessorFact::kName, 9), "11th Gen");
}

TEST(Processor, FailsForEveryFactThatNobodyKnows) {
  for (unsigned int id = 0; id <= 25; ++id) {
    SCOPED_TRACE(id);
    EXPECT_EQ(NumberOf(NoCpuid(), ScriptedSystem(), static_cast<ProcessorFact>(id)), std::nullopt);
  }
}

TEST(Processor, FailsForIdsThatTheClassDoesNotHave) {
  ScriptedSystem system;
  system.cores = system.threads = system.current_clock = 1;
  for (const unsigned int id : {2u, 3u, 16u, 17u, 20u, 0xFFFFFFFFu}) {
    EXPECT_EQ(NumberOf(test::PlainIntel(), system, static_cast<ProcessorFact>(id)), std::nullopt) << id;
  }
}

TEST(Processor, TellsTheWidthOfAPhysicalAddress) {
  EXPECT_EQ(NumberOf(test::HybridIntel(), ScriptedSystem(), ProcessorFact::kAddressBits), 39u);
  EXPECT_EQ(NumberOf(test::ZenAmd(), ScriptedSystem(), ProcessorFact::kAddressBits), 48u);
}

TEST(Processor, RunsAtTheClockThatTheSystemReads) {
  ScriptedSystem system;
  system.firmware = FirmwareWith({.current_clock = 2400});
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kCurrentClock), 2400u);
  system.nominal_clock = 2800;
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kCurrentClock), 2800u);
  system.current_clock = 801;
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kCurrentClock), 801u);
}

TEST(Processor, ReachesTheClockThatTheSystemOrElseTheProcessorItselfStates) {
  ScriptedSystem system;
  system.nominal_clock = 2800;
  system.firmware = FirmwareWith({.maximum_clock = 8300});
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kMaximumClock), 4700u);
  system.maximum_clock = 4800;
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kMaximumClock), 4800u);
}

TEST(Processor, ReachesTheFirmwaresClockUnlessItRunsFaster) {
  ScriptedSystem system;
  system.nominal_clock = 1900;
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kMaximumClock), 1900u);
  system.firmware = FirmwareWith({.maximum_clock = 4450});
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kMaximumClock), 4450u);
  system.firmware = FirmwareWith({.maximum_clock = 1000});
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kMaximumClock), 1900u);
  system.nominal_clock.reset();
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kMaximumClock), 1000u);
}

TEST(Processor, TellsItsBusClockOrElseTheFirmwaresExternalClock) {
  ScriptedSystem system;
  system.firmware = FirmwareWith({.external_clock = 133});
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kExternalClock), 100u);
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kExternalClock), 133u);
  EXPECT_EQ(NumberOf(test::VirtualIntel(), system, ProcessorFact::kExternalClock), 133u);
  EXPECT_EQ(NumberOf(test::VirtualIntel(), ScriptedSystem(), ProcessorFact::kExternalClock), std::nullopt);
}

TEST(Processor, HasTheCoresAndThreadsThatTheSystemCounts) {
  ScriptedSystem system;
  system.cores = 12;
  system.threads = 16;
  EXPECT_EQ(NumberOf(test::HybridIntel(), system, ProcessorFact::kCores), 12u);
  EXPECT_EQ(NumberOf(test::HybridIntel(), system, ProcessorFact::kThreads), 16u);
}

TEST(Processor, AddsUpTheSystemsCachesOfALevel) {
  ScriptedSystem system;
  system.caches = {{.level = 1, .kind = CacheKind::kInstruction, .size = 32 << 10, .ways = {.count = 4}},
                   {.level = 1, .kind = CacheKind::kData, .size = 48 << 10, .ways = {.count = 12}},
                   {.level = 1, .kind = CacheKind::kData, .size = 32 << 10, .ways = {.count = 8}},
                   {.level = 3, .kind = CacheKind::kUnified, .size = 6 << 20, .ways = {.full = true}}};
  EXPECT_EQ(NumberOf(NoCpuid(), system, ProcessorFact::kL1Size), 112u);
  EXPECT_EQ(NumberOf(NoCpuid(), system, ProcessorFact::kL2Size), std::nullopt);
  EXPECT_EQ(NumberOf(NoCpuid(), system, ProcessorFact::kL3Size), 6144u);
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kL1Associativity), "12-way Set-Associative");
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kL2Associativity), std::nullopt);
  EXPECT_EQ(TextOf(NoCpuid(), system, ProcessorFact::kL3Associativity), "Fully Associative");
}

TEST(Processor, DescribesItsCachesItselfWhereTheSystemKnowsNone) {
  ScriptedSystem system;
  system.threads = 16;
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kL1Size), 8u * 64);
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kL2Size), 8u * 512);
  EXPECT_EQ(NumberOf(test::ZenAmd(), system, ProcessorFact::kL3Size), 16384u);
  EXPECT_EQ(TextOf(test::ZenAmd(), system, ProcessorFact::kL2Associativity), "8-way Set-Associative");
}

TEST(Processor, DoesNotCountCachesByOneCoreOfSeveralKinds) {
  ScriptedSystem system;
  system.threads = 16;
  EXPECT_EQ(NumberOf(test::HybridIntel(), system, ProcessorFact::kL1Size), std::nullopt);
  EXPECT_EQ(TextOf(test::HybridIntel(), system, ProcessorFact::kL1Associativity), std::nullopt);
}

TEST(Processor, GivesTheWaysOfACacheThatTheSystemKnowsWithoutThem) {
  ScriptedSystem system;
  system.caches = {{.level = 1, .kind = CacheKind::kInstruction, .size = 32 << 10},
                   {.level = 1, .kind = CacheKind::kData, .size = 48 << 10},
                   {.level = 2, .kind = CacheKind::kUnified, .size = 1000 << 10}};
  EXPECT_EQ(TextOf(test::HybridIntel(), system, ProcessorFact::kL1Associativity), "12-way Set-Associative");
  // No cache of this size is one that the processor describes.
  EXPECT_EQ(TextOf(test::HybridIntel(), system, ProcessorFact::kL2Associativity), std::nullopt);
}

TEST(Processor, IsOfTheKindThatItsVendorMakes) {
  const ScriptedSystem system;
  EXPECT_EQ(NumberOf(test::HybridIntel(), system, ProcessorFact::kKind), 1u);
  EXPECT_EQ(NumberOf(test::OldAmd(), system, ProcessorFact::kKind), 2u);
  const auto hygon = test::ZenAmd().With({0, 0, {0x10, 0x6F677948, 0x656E6975, 0x6E65476E}});
  EXPECT_EQ(TextOf(hygon, system, ProcessorFact::kVendor), "HygonGenuine");
  EXPECT_EQ(NumberOf(hygon, system, ProcessorFact::kKind), 2u);
  EXPECT_EQ(NumberOf(hygon, system, ProcessorFact::kL1Associativity), std::nullopt);
  const auto zhaoxin = test::PlainIntel().With({0, 0, {0x1B, 0x68532020, 0x20206961, 0x68676E61}});
  EXPECT_EQ(NumberOf(zhaoxin, system, ProcessorFact::kKind), std::nullopt);
}

TEST(Processor, IsAnArmOneWhateverCpuidAProgramForX86IsShown) {
  ScriptedSystem system;
  system.arm = true;
  system.vendor = "Qualcomm Technologies Inc";
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kKind), 3u);
  EXPECT_EQ(TextOf(test::PlainIntel(), system, ProcessorFact::kVendor), "Qualcomm Technologies Inc");
  EXPECT_EQ(NumberOf(test::PlainIntel(), system, ProcessorFact::kExternalClock), std::nullopt);
}

TEST(Processor, MeasuresItsLoadFromOneQuestionToTheNext) {
  ScriptedSystem system;
  LoadHistory history;
  const auto ask = [&](ProcessorTime time) {
    system.time = time;
    std::array<std::uint8_t, 4> buffer{};
    Answer answer(buffer.data(), buffer.size(), nullptr);
    EXPECT_TRUE(AnswerProcessor(NoCpuid(), system, history, 18, answer));
    return int{buffer[0]};
  };
  EXPECT_EQ(ask({.busy = 20, .total = 100}), 20);
  EXPECT_EQ(ask({.busy = 100, .total = 200}), 80);
}

TEST(Processor, WritesNothingPastASmallBuffer) {
  ScriptedSystem system;
  system.cores = 12;
  LoadHistory history;
  std::array<std::uint8_t, 3> buffer{0xAA, 0xAA, 0xAA};
  Answer answer(buffer.data(), buffer.size(), nullptr);
  EXPECT_FALSE(AnswerProcessor(NoCpuid(), system, history, 8, answer));
  EXPECT_EQ(buffer, (std::array<std::uint8_t, 3>{0xAA, 0xAA, 0xAA}));
}

}  // namespace
}  // namespace ostrine
