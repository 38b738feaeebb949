#include "ostrine/common/processor.h"

#include <algorithm>

#include "ostrine/common/cpuid_cache.h"
#include "ostrine/common/processor_firmware.h"

namespace ostrine {
namespace {

using OptionalNumber = std::optional<std::uint32_t>;
using OptionalText = std::optional<std::string>;

/// One question to all sources, in the order of their worth: the processor or the system, which speak of this
/// very processor, and only then the firmware, whose tables its maker may have copied from another machine.
class Question {
 public:
  Question(const CpuidSource& cpuid, const ProcessorSystem& system) : cpuid_(cpuid), system_(system) {}

  OptionalText Vendor() const;
  OptionalText Name() const;
  OptionalNumber AddressBits() const { return CpuidAddressBits(cpuid_); }
  OptionalNumber CurrentClock() const;
  OptionalNumber ExternalClock() const;
  OptionalNumber MaximumClock() const;
  OptionalNumber CacheSize(unsigned int level) const;
  OptionalText Associativity(unsigned int level) const;
  OptionalNumber Kind() const;

 private:
  std::vector<Cache> Caches(unsigned int level, CacheExtent extent) const;

  /// `fact` of the firmware's tables.
  template <typename Fact>
  Fact Firmware(Fact FirmwareProcessor::* fact) const {
    const auto table = system_.Firmware();
    if (!table) return std::nullopt;
    const auto processor = ReadFirmwareProcessor(table->View());
    return processor ? (*processor).*fact : std::nullopt;
  }

  const CpuidSource& cpuid_;
  const ProcessorSystem& system_;
};

OptionalText Question::Vendor() const {
  if (auto vendor = CpuidVendor(cpuid_)) return vendor;
  if (auto vendor = system_.Vendor()) return vendor;
  return Firmware(&FirmwareProcessor::manufacturer);
}

OptionalText Question::Name() const {
  if (auto name = CpuidName(cpuid_)) return name;
  if (auto name = system_.Name()) return name;
  return Firmware(&FirmwareProcessor::name);
}

OptionalNumber Question::CurrentClock() const {
  if (const auto clock = system_.CurrentClock()) return clock;
  if (const auto clock = system_.NominalClock()) return clock;
  return Firmware(&FirmwareProcessor::current_clock);
}

OptionalNumber Question::ExternalClock() const {
  if (const auto clock = ReadCpuidClocks(cpuid_).bus) return clock;
  return Firmware(&FirmwareProcessor::external_clock);
}

OptionalNumber Question::MaximumClock() const {
  if (const auto clock = system_.MaximumClock()) return clock;
  if (const auto clock = ReadCpuidClocks(cpuid_).maximum) return clock;
  // Empty compares below every clock.
  return std::max(Firmware(&FirmwareProcessor::maximum_clock), system_.NominalClock());
}

std::vector<Cache> Question::Caches(unsigned int level, CacheExtent extent) const {
  auto caches = system_.Caches(level, extent);
  if (!caches.empty() || IsHybrid(cpuid_)) return caches;
  const auto threads = system_.Threads();
  if (!threads) return {};
  return CachesOfMachine(ReadCpuidCaches(cpuid_), level, *threads);
}

OptionalNumber Question::CacheSize(unsigned int level) const {
  return TotalCacheSize(Caches(level, CacheExtent::kMachine));
}

OptionalText Question::Associativity(unsigned int level) const {
  const auto caches = Caches(level, CacheExtent::kFirst);
  const Cache* const main = MainCache(caches);
  if (main == nullptr) return std::nullopt;
  if (auto text = AssociativityText(main->ways)) return text;
  // The system knows the cache without its ways: it is one of those that the processor describes.
  for (const CpuidCache& seen : ReadCpuidCaches(cpuid_)) {
    const Cache& cache = seen.cache;
    if (cache.level == level && cache.kind == main->kind && cache.size == main->size)
      return AssociativityText(cache.ways);
  }
  return std::nullopt;
}

OptionalNumber Question::Kind() const {
  const auto number = [](ProcessorKind kind) { return std::optional(static_cast<std::uint32_t>(kind)); };
  if (system_.IsArm()) return number(ProcessorKind::kArm);
  switch (FamilyOfVendor(CpuidVendor(cpuid_))) {
    case CpuidFamily::kIntel:
      return number(ProcessorKind::kIntel);
    case CpuidFamily::kAmd:
      return number(ProcessorKind::kAmd);
    case CpuidFamily::kUnknown:
      break;
  }
  return std::nullopt;
}

OptionalNumber Load(const ProcessorSystem& system, LoadHistory& history) {
  const auto now = system.Time();
  return now ? history.Ask(*now) : std::nullopt;
}

/// The cache level, counted from 1, of an id in a row of three that begins with that of level 1.
unsigned int LevelFrom(unsigned int information_id, ProcessorFact first) {
  return information_id - static_cast<unsigned int>(first) + 1;
}

bool Give(Answer& answer, const OptionalNumber& number) { return number && answer.Number(*number); }
bool Give(Answer& answer, const OptionalText& text) { return text && answer.NarrowText(*text); }

}  // namespace

bool AnswerProcessor(const CpuidSource& cpuid, const ProcessorSystem& system, LoadHistory& history,
                     unsigned int information_id, Answer& answer) {
  // An ARM machine runs programs for x86 behind a made-up CPUID.
  const NoCpuid no_cpuid;
  const Question question(system.IsArm() ? static_cast<const CpuidSource&>(no_cpuid) : cpuid, system);
  switch (static_cast<ProcessorFact>(information_id)) {
    case ProcessorFact::kVendor:
      return Give(answer, question.Vendor());
    case ProcessorFact::kName:
      return Give(answer, question.Name());
    case ProcessorFact::kAddressBits:
      return Give(answer, question.AddressBits());
    case ProcessorFact::kCurrentClock:
      return Give(answer, question.CurrentClock());
    case ProcessorFact::kExternalClock:
      return Give(answer, question.ExternalClock());
    case ProcessorFact::kMaximumClock:
      return Give(answer, question.MaximumClock());
    case ProcessorFact::kCores:
      return Give(answer, system.Cores());
    case ProcessorFact::kThreads:
      return Give(answer, system.Threads());
    case ProcessorFact::kL1Size:
    case ProcessorFact::kL2Size:
    case ProcessorFact::kL3Size:
      return Give(answer, question.CacheSize(LevelFrom(information_id, ProcessorFact::kL1Size)));
    case ProcessorFact::kL1Associativity:
    case ProcessorFact::kL2Associativity:
    case ProcessorFact::kL3Associativity:
      return Give(answer, question.Associativity(LevelFrom(information_id, ProcessorFact::kL1Associativity)));
    case ProcessorFact::kLoad:
      return Give(answer, Load(system, history));
    case ProcessorFact::kKind:
      return Give(answer, question.Kind());
  }
  return false;
}

}  // namespace ostrine
