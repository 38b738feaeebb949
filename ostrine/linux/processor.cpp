#include "ostrine/linux/processor.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include "ostrine/linux/cache.h"
#include "ostrine/linux/cpu_text.h"
#include "ostrine/linux/dmi.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

constexpr const char* kProcessorFolder = "/sys/devices/system/cpu/";

/// A file of proc, empty where it cannot be read. Of many processors it has many pages, but not this many.
std::vector<std::uint8_t> ReadProc(const std::string& path) {
  constexpr std::size_t kLimit = std::size_t{16} << 20;
  return ReadBytes(path.c_str(), kLimit).value_or(std::vector<std::uint8_t>());
}

std::string_view AsText(const std::vector<std::uint8_t>& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Who designed an ARM processor, by the number that the processor has for it.
std::optional<std::string> ArmImplementer(std::string_view number) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 10> kNames{{
      {"0x41", "ARM"},
      {"0x42", "Broadcom"},
      {"0x46", "Fujitsu"},
      {"0x48", "HiSilicon"},
      {"0x4e", "NVIDIA"},
      {"0x51", "Qualcomm"},
      {"0x53", "Samsung"},
      {"0x61", "Apple"},
      {"0x6d", "Microsoft"},
      {"0x70", "Phytium"},
  }};
  const auto* const found =
      std::ranges::find(kNames, number, &std::pair<std::string_view, std::string_view>::first);
  return found == kNames.end() ? std::nullopt : std::optional<std::string>(found->second);
}

}  // namespace

bool LinuxProcessor::IsArm() const {
#if defined(__aarch64__) || defined(__arm__)
  return true;
#else
  return false;
#endif
}

std::optional<std::string> LinuxProcessor::Vendor() const {
  const auto bytes = Info();
  const std::string_view info = AsText(bytes);
  if (auto vendor = ProcessorInfoValue(info, "vendor_id")) return vendor;
  return ArmImplementer(ProcessorInfoValue(info, "CPU implementer").value_or(""));
}

std::optional<std::string> LinuxProcessor::Name() const {
  const auto bytes = Info();
  const std::string_view info = AsText(bytes);
  if (auto name = ProcessorInfoValue(info, "model name")) return name;
  return ProcessorInfoValue(info, "Hardware");
}

std::optional<std::uint32_t> LinuxProcessor::CurrentClock() const {
  return HighestClock("/cpufreq/scaling_cur_freq");
}

std::optional<std::uint32_t> LinuxProcessor::MaximumClock() const {
  return HighestClock("/cpufreq/cpuinfo_max_freq");
}

std::optional<std::uint32_t> LinuxProcessor::NominalClock() const {
  return HighestListedClock(AsText(Info()));
}

std::optional<std::uint32_t> LinuxProcessor::Cores() const {
  const auto processors = Online();
  if (!processors) return std::nullopt;
  std::vector<bool> counted(kProcessorLimit);
  std::uint32_t cores = 0;
  for (const std::uint32_t processor : *processors) {
    if (counted[processor]) continue;
    const std::string topology = Folder(processor) + "/topology/";
    auto siblings = ReadAttribute((topology + "core_cpus_list").c_str());
    // Its name before Linux 5.3.
    if (!siblings) siblings = ReadAttribute((topology + "thread_siblings_list").c_str());
    const auto of_core = ParseProcessorList(siblings.value_or(""));
    if (!of_core) return std::nullopt;
    for (const std::uint32_t sibling : *of_core) counted[sibling] = true;
    ++cores;
  }
  return cores;
}

std::optional<std::uint32_t> LinuxProcessor::Threads() const {
  const auto processors = Online();
  return processors ? std::optional(static_cast<std::uint32_t>(processors->size())) : std::nullopt;
}

std::vector<Cache> LinuxProcessor::Caches(unsigned int level, CacheExtent extent) const {
  const std::string folder = root_ + kProcessorFolder;
  constexpr std::uint32_t kFirst = 0;
  if (extent == CacheExtent::kFirst) {
    // It is in use on nearly every machine, and shows no caches while it is not.
    auto caches = ReadCaches(folder, std::span(&kFirst, 1), level, extent);
    if (!caches.empty()) return caches;
  }
  auto processors = Online();
  if (!processors) return {};
  if (extent == CacheExtent::kFirst) std::erase(*processors, kFirst);
  return ReadCaches(folder, *processors, level, extent);
}

std::optional<ProcessorTime> LinuxProcessor::Time() const {
  return ParseProcessorTime(AsText(ReadProc(root_ + "/proc/stat")));
}

std::optional<FirmwareTable> LinuxProcessor::Firmware() const {
  return ReadFirmwareTableBelow(root_.empty() ? "/" : root_);
}

std::optional<std::vector<std::uint32_t>> LinuxProcessor::Online() const {
  return ParseProcessorList(ReadAttribute((root_ + kProcessorFolder + "online").c_str()).value_or(""));
}

std::string LinuxProcessor::Folder(std::uint32_t processor) const {
  return root_ + kProcessorFolder + "cpu" + std::to_string(processor);
}

std::vector<std::uint8_t> LinuxProcessor::Info() const { return ReadProc(root_ + "/proc/cpuinfo"); }

std::optional<std::uint32_t> LinuxProcessor::HighestClock(const char* file) const {
  constexpr std::uint64_t kKilohertz = 1000;
  constexpr std::uint64_t kMost = 0xFFFFFFFF * kKilohertz;
  std::uint64_t highest = 0;
  for (const std::uint32_t processor : Online().value_or(std::vector<std::uint32_t>())) {
    const auto clock = ParseNumber(ReadAttribute((Folder(processor) + file).c_str()).value_or(""));
    if (clock && *clock <= kMost) highest = std::max(highest, *clock);
    // Clocks are scaled for all processors or for none.
    if (!clock && highest == 0) break;
  }
  const std::uint64_t megahertz = (highest + kKilohertz / 2) / kKilohertz;
  return megahertz == 0 ? std::nullopt : std::optional(static_cast<std::uint32_t>(megahertz));
}

bool QueryProcessor(void* /*device*/, unsigned int information_id, Answer& answer) {
  return AnswerProcessor(CpuidInstruction(), LinuxProcessor(""), LoadHistoryOfProcess(), information_id,
                         answer);
}

}  // namespace ostrine
