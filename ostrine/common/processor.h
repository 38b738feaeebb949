/// Device class 0: the processor.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/answer.h"
#include "ostrine/common/cache.h"
#include "ostrine/common/cpuid.h"
#include "ostrine/common/firmware.h"
#include "ostrine/common/processor_load.h"

namespace ostrine {

/// The facts of the class; the numbers are its information ids.
enum class ProcessorFact : unsigned int {
  kVendor = 0,            ///< text, such as "GenuineIntel"
  kName = 1,              ///< text
  kAddressBits = 4,       ///< width of a physical address
  kCurrentClock = 5,      ///< in MHz, of the fastest logical processor at the moment
  kExternalClock = 6,     ///< in MHz
  kMaximumClock = 7,      ///< in MHz, of the fastest logical processor
  kCores = 8,             ///< physical cores of all kinds and packages with a thread in use
  kThreads = 9,           ///< logical processors in use
  kL1Size = 10,           ///< KiB of all caches of the level together, instructions included
  kL2Size = 11,           ///< "
  kL3Size = 12,           ///< "
  kL1Associativity = 13,  ///< text in the words of SMBIOS, of the first logical processor's data cache
  kL2Associativity = 14,  ///< "
  kL3Associativity = 15,  ///< "
  kLoad = 18,             ///< percent since the last question
  kKind = 19,             ///< a ProcessorKind
};

/// Values of the kind.
enum class ProcessorKind : std::uint32_t {
  kIntel = 1,
  kAmd = 2,  ///< x86 of AMD's design, Hygon's included
  kArm = 3,
};

/// Which of a level's caches are asked for.
enum class CacheExtent {
  kMachine,  ///< all caches; their ways may be left out
  kFirst,    ///< those of the first logical processor that has any, at least up to the first that holds data;
             ///< the size of one whose ways are known may be left out
};

/// What the running system, rather than the processor itself, tells about the processor. Each member is
/// absent where the system does not say. Nothing is kept: every call asks the system anew.
class ProcessorSystem {
 public:
  virtual ~ProcessorSystem() = default;

  /// Whether the machine's own processor is an ARM one, whatever this program was compiled for.
  virtual bool IsArm() const = 0;
  virtual std::optional<std::string> Vendor() const = 0;
  virtual std::optional<std::string> Name() const = 0;
  virtual std::optional<std::uint32_t> CurrentClock() const = 0;
  virtual std::optional<std::uint32_t> MaximumClock() const = 0;
  /// A clock at which the processor can run, known also to a system that does not scale it; boosts may not be
  /// counted in.
  virtual std::optional<std::uint32_t> NominalClock() const = 0;
  virtual std::optional<std::uint32_t> Cores() const = 0;
  virtual std::optional<std::uint32_t> Threads() const = 0;
  /// The caches of `level`, each once. Nothing at all where not every one of them is known.
  virtual std::vector<Cache> Caches(unsigned int level, CacheExtent extent) const = 0;
  virtual std::optional<ProcessorTime> Time() const = 0;
  virtual std::optional<FirmwareTable> Firmware() const = 0;
};

/// Answers the information ids of ProcessorFact; `device` plays no part. Each system has its own.
bool QueryProcessor(void* device, unsigned int information_id, Answer& answer);

/// The same for a processor and a system that tell `cpuid` and `system`, and for a host that asks for the
/// load with `history`. A fact that none of the sources knows is a failure.
bool AnswerProcessor(const CpuidSource& cpuid, const ProcessorSystem& system, LoadHistory& history,
                     unsigned int information_id, Answer& answer);

}  // namespace ostrine
