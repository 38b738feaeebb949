#include "ostrine/windows/processor.h"

#include <windows.h>

#include <powrprof.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "ostrine/windows/processor_topology.h"

namespace ostrine {
namespace {

constexpr const char* kProcessorKey = R"(HARDWARE\DESCRIPTION\System\CentralProcessor\0)";

/// Text that the system wrote down about the first processor when it started, in the narrow code page,
/// without the blanks around it.
std::optional<std::string> RegistryText(const char* value) {
  std::array<char, 256> buffer{};
  DWORD size = buffer.size();
  if (RegGetValueA(HKEY_LOCAL_MACHINE, kProcessorKey, value, RRF_RT_REG_SZ, nullptr, buffer.data(), &size) !=
      ERROR_SUCCESS)
    return std::nullopt;
  const std::string_view text(buffer.data());
  const std::size_t start = text.find_first_not_of(' ');
  if (start == std::string_view::npos) return std::nullopt;
  return std::string(text.substr(start, text.find_last_not_of(' ') + 1 - start));
}

std::optional<std::uint32_t> RegistryClock() {
  DWORD clock = 0;
  DWORD size = sizeof clock;
  const LSTATUS status =
      RegGetValueA(HKEY_LOCAL_MACHINE, kProcessorKey, "~MHz", RRF_RT_REG_DWORD, nullptr, &clock, &size);
  return status == ERROR_SUCCESS && clock != 0 ? std::optional<std::uint32_t>(clock) : std::nullopt;
}

/// What CallNtPowerInformation fills for each logical processor; the system's documentation has it, its
/// headers do not.
struct PowerInformation {
  ULONG number = 0;
  ULONG maximum_clock = 0;
  ULONG current_clock = 0;
  ULONG limit = 0;
  ULONG maximum_idle_state = 0;
  ULONG current_idle_state = 0;
};
static_assert(sizeof(PowerInformation) == 24);

/// The highest of `clock` over the logical processors, in MHz.
std::optional<std::uint32_t> HighestClock(ULONG PowerInformation::* clock) {
  const DWORD count = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
  std::vector<PowerInformation> processors(count);
  const auto size = static_cast<ULONG>(count * sizeof(PowerInformation));
  if (count == 0 || CallNtPowerInformation(ProcessorInformation, nullptr, 0, processors.data(), size) != 0)
    return std::nullopt;
  std::uint32_t highest = 0;
  for (const PowerInformation& processor : processors)
    highest = std::max(highest, std::uint32_t{processor.*clock});
  return highest == 0 ? std::nullopt : std::optional(highest);
}

/// The records of `relation`; none when the system does not give them.
std::vector<std::byte> ReadTopology(LOGICAL_PROCESSOR_RELATIONSHIP relation) {
  // Processors may be added between the call that tells the size and the one that fills the records.
  constexpr int kTries = 3;
  DWORD size = 0;
  std::vector<std::byte> records;
  for (int i = 0; i < kTries; ++i) {
    auto* const place = records.empty()
                            ? nullptr
                            : reinterpret_cast<SYSTEM_LOGICAL_PROCESSOR_INFORMATION_EX*>(records.data());
    if (GetLogicalProcessorInformationEx(relation, place, &size) != 0) {
      records.resize(std::min<std::size_t>(size, records.size()));
      return records;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return {};
    records.resize(size);
  }
  return {};
}

std::optional<ProcessorCounts> Counts() { return CountProcessors(ReadTopology(RelationProcessorCore)); }

std::uint64_t AsNumber(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

}  // namespace

bool WindowsProcessor::IsArm() const {
  USHORT process = IMAGE_FILE_MACHINE_UNKNOWN;
  USHORT native = IMAGE_FILE_MACHINE_UNKNOWN;
  if (IsWow64Process2(GetCurrentProcess(), &process, &native) == 0) return false;
  return native == IMAGE_FILE_MACHINE_ARM64 || native == IMAGE_FILE_MACHINE_ARMNT;
}

std::optional<std::string> WindowsProcessor::Vendor() const { return RegistryText("VendorIdentifier"); }

std::optional<std::string> WindowsProcessor::Name() const { return RegistryText("ProcessorNameString"); }

std::optional<std::uint32_t> WindowsProcessor::CurrentClock() const {
  return HighestClock(&PowerInformation::current_clock);
}

std::optional<std::uint32_t> WindowsProcessor::NominalClock() const {
  const auto clock = HighestClock(&PowerInformation::maximum_clock);
  return clock ? clock : RegistryClock();
}

std::optional<std::uint32_t> WindowsProcessor::Cores() const {
  const auto counts = Counts();
  return counts ? std::optional(counts->cores) : std::nullopt;
}

std::optional<std::uint32_t> WindowsProcessor::Threads() const {
  const auto counts = Counts();
  return counts ? std::optional(counts->threads) : std::nullopt;
}

std::vector<Cache> WindowsProcessor::Caches(unsigned int level, CacheExtent extent) const {
  return ReadCaches(ReadTopology(RelationCache), level, extent);
}

std::optional<ProcessorTime> WindowsProcessor::Time() const {
  FILETIME idle{};
  FILETIME kernel{};
  FILETIME user{};
  if (GetSystemTimes(&idle, &kernel, &user) == 0) return std::nullopt;
  // The kernel's time includes the idle time.
  const std::uint64_t total = AsNumber(kernel) + AsNumber(user);
  return ProcessorTime{.busy = total - std::min(AsNumber(idle), total), .total = total};
}

std::optional<FirmwareTable> WindowsProcessor::Firmware() const { return ReadFirmwareTable(); }

bool QueryProcessor(void* /*device*/, unsigned int information_id, Answer& answer) {
  return AnswerProcessor(CpuidInstruction(), WindowsProcessor(), LoadHistoryOfProcess(), information_id,
                         answer);
}

}  // namespace ostrine
