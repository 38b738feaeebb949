#pragma once

#include <cstdint>
#include <string>

#include "velmora/export.h"

/// Kind of processor. A number beyond these is passed on as the hardware-abstraction library gives it.
enum enmCPU_TYPE : std::uint32_t {
  CPU_TYPE_UNKNOWN = 0,  ///< not known, or the question failed
  CPU_TYPE_INTEL = 1,    ///< Intel; the firmware's device switches can be read
  CPU_TYPE_AMD = 2,      ///< AMD (x86); the firmware's device switches can be read
  CPU_TYPE_ARM = 3,      ///< ARM system-on-chip; audio and network cards are looked up in another way
};

/// The processor: name, clocks, cores, caches, load and kind.
///
/// Source: the hardware-abstraction library, device class 0, which asks the processor itself, the firmware's
/// SMBIOS tables and the operating system. Every call asks again and nothing is kept, so clocks and load are
/// live. Failure: a text is empty, a number 0; nothing throws, nothing is logged. Threads: an object is used
/// by one thread at a time; separate objects are independent. Copies: an object holds nothing, so a copy is
/// simply another object.
class VELMORA_API CCpu {
 public:
  /// Prepares the device class. An object whose class cannot be prepared gives the failure values.
  CCpu();
  ~CCpu();

  CCpu(const CCpu&) = default;
  CCpu& operator=(const CCpu&) = default;

  /// Name as the processor gives it, such as "11th Gen Intel(R) Core(TM) i7-1165G7 @ 2.80GHz"; cut after 49
  /// bytes.
  std::wstring GetCpuName();

  /// Vendor: "Intel" for exactly "GenuineIntel", any other vendor text as the processor gives it.
  std::wstring GetCpuManufacturer();

  /// Associativity of the level 1, 2 and 3 caches in SMBIOS words, such as "8-way Set-Associative" or "Fully
  /// Associative"; empty for a level that the processor does not have.
  std::wstring GetL1Associativity();
  std::wstring GetL2Associativity();
  std::wstring GetL3Associativity();

  /// Width of an address in bits. Both report the one width that the hardware-abstraction library gives, the
  /// physical one, such as 39.
  unsigned long GetPhysicalAddressBits();
  unsigned long GetLinearAddressBits();

  /// Clock at which the processor runs now, in MHz.
  unsigned long GetCpuCurClock();

  /// External (bus) clock in MHz, such as 100.
  unsigned long GetCpuExtClock();

  /// Highest clock that the processor may reach, in MHz.
  unsigned long GetCpuMaxClock();

  /// Number of physical cores, of all kinds and in all sockets.
  unsigned long GetCpuCoreNumbers();

  /// Number of logical processors.
  unsigned long GetCpuCoreThreads();

  /// Size of all caches of level 1, 2 and 3, in KiB.
  unsigned long GetL1CacheSize();
  unsigned long GetL2CacheSize();
  unsigned long GetL3CacheSize();

  /// Load of the whole processor in percent, 0 to 100, as the system measured it since the last question to
  /// this process; the first question answers for the time since the system started. Never waits.
  unsigned int GetCpuLoadPercent();

  /// Always 0.0. The load is GetCpuLoadPercent's.
  float GetCpuUsage();

  /// Kind of processor. (The spelling is part of the interface.)
  enmCPU_TYPE GetCputype();
};
