#include "platform/linux/system_status.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <limits>
#include <vector>

#include "platform/linux/meminfo.h"
#include "platform/linux/power_supply.h"
#include "platform/linux/small_file.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

/// What a process may address with the usual 48 bits, half of which are the kernel's.
constexpr std::uint64_t kAddressSpace = std::uint64_t{1} << 47;

PowerSupply ReadSupply(const std::filesystem::path& folder) {
  PowerSupply supply;
  supply.type = ReadAttribute(folder / "type").value_or("");
  supply.scope = ReadAttribute(folder / "scope").value_or("");
  supply.status = ReadAttribute(folder / "status").value_or("");
  supply.present = ReadNumber(folder / "present");
  supply.online = ReadNumber(folder / "online");
  supply.capacity = ReadNumber(folder / "capacity");
  supply.energy_now = ReadNumber(folder / "energy_now");
  supply.energy_full = ReadNumber(folder / "energy_full");
  supply.charge_now = ReadNumber(folder / "charge_now");
  supply.charge_full = ReadNumber(folder / "charge_full");
  supply.power_now = ReadNumber(folder / "power_now");
  supply.current_now = ReadNumber(folder / "current_now");
  supply.voltage_now = ReadNumber(folder / "voltage_now");
  return supply;
}

/// Address space that the calling process has taken, of the first number in `statm`, which counts pages.
std::uint64_t UsedAddressSpace(const std::filesystem::path& root) {
  const auto text = ReadSmallFile(root / "proc/self/statm").value_or("");
  const auto page_size = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
  std::uint64_t pages = 0;
  std::from_chars(text.data(), text.data() + text.size(), pages);
  return pages < kAddressSpace / page_size ? pages * page_size : kAddressSpace;
}

std::uint64_t Sum(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
  return b > kMost - a ? kMost : a + b;
}

}  // namespace

bool ReadPowerStatus(const std::filesystem::path& root, PowerStatus& status) {
  const auto folder = root / "sys/class/power_supply";
  const auto names = ListNames(folder);
  if (!names && errno != ENOENT) return false;
  if (!names) {
    status = UnknownPower();
    return true;
  }
  std::vector<PowerSupply> supplies;
  for (const std::string& name : *names) supplies.push_back(ReadSupply(folder / name));
  status = SummarisePower(supplies);
  return true;
}

bool ReadMemoryStatus(const std::filesystem::path& root, MemoryStatus& status) {
  if (status.length != sizeof status) {
    SetLastError(kErrorInvalidParameter);
    return false;
  }
  const auto text = ReadSmallFile(root / "proc/meminfo");
  if (!text) return false;
  const auto facts = ParseMeminfo(*text);
  if (!facts) {
    SetLastError(kErrorGeneralFailure);
    return false;
  }
  const auto used = static_cast<double>(facts->total - facts->available);
  status.memory_load = static_cast<std::uint32_t>(100 * used / static_cast<double>(facts->total));
  status.total_physical = facts->total;
  status.available_physical = facts->available;
  status.total_page_file = Sum(facts->total, facts->swap_total);
  status.available_page_file = Sum(facts->available, facts->swap_free);
  status.total_virtual = kAddressSpace;
  status.available_virtual = kAddressSpace - UsedAddressSpace(root);
  status.available_extended_virtual = 0;
  return true;
}

bool GetSystemPowerStatus(PowerStatus& status) { return ReadPowerStatus("/", status); }
bool GlobalMemoryStatusEx(MemoryStatus& status) { return ReadMemoryStatus("/", status); }

}  // namespace velmora::os
