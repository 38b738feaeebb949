#include "ostrine/linux/memory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "ostrine/linux/cpu_text.h"
#include "ostrine/linux/dmi.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

/// A slot while its properties come in.
struct Slot {
  MemoryModule module;
  std::uint32_t rated_speed = 0;
  bool is_empty = false;
};

/// One property of one slot.
struct Property {
  std::uint32_t slot = 0;
  std::string_view name;
  std::string_view value;
};

std::optional<Property> ParseProperty(std::string_view line) {
  constexpr std::string_view kPrefix = "E:MEMORY_DEVICE_";
  constexpr std::uint64_t kMostSlots = 0xFFFF;
  if (!line.starts_with(kPrefix)) return std::nullopt;
  line.remove_prefix(kPrefix.size());
  const std::size_t end = line.find('=');
  const std::size_t name = line.find('_');
  if (end == std::string_view::npos || name >= end) return std::nullopt;
  const auto slot = ParseNumber(line.substr(0, name));
  if (!slot || *slot >= kMostSlots) return std::nullopt;
  return Property{.slot = static_cast<std::uint32_t>(*slot),
                  .name = line.substr(name + 1, end - name - 1),
                  .value = line.substr(end + 1)};
}

/// A text of the firmware; empty where the device manager says in its own words that there is none.
std::string CleanText(std::string_view value) {
  return value == "Not Specified" || value == "<BAD INDEX>" ? std::string() : std::string(value);
}

std::uint32_t Speed(std::string_view value) {
  constexpr std::uint64_t kElsewhere = 0xFFFF;  // a greater number, which is not passed on
  const std::uint64_t speed = ParseNumber(value).value_or(0);
  return speed < kElsewhere ? static_cast<std::uint32_t>(speed) : 0;
}

void TakeIn(Slot& slot, const Property& property) {
  MemoryModule& module = slot.module;
  if (property.name == "PRESENT") slot.is_empty = property.value == "0";
  if (property.name == "SIZE") module.capacity = ParseNumber(property.value);
  if (property.name == "LOCATOR") module.locator = CleanText(property.value);
  if (property.name == "MANUFACTURER") module.manufacturer = CleanText(property.value);
  if (property.name == "SERIAL_NUMBER") module.serial_number = CleanText(property.value);
  if (property.name == "PART_NUMBER") module.part_number = CleanText(property.value);
  if (property.name == "SPEED_MTS") slot.rated_speed = Speed(property.value);
  if (property.name == "CONFIGURED_SPEED_MTS") module.speed = Speed(property.value);
}

}  // namespace

MemoryModules ReadMemoryModulesBelow(const std::filesystem::path& root) {
  if (const auto table = ReadFirmwareTableBelow(root)) return ReadMemoryModules(table->View());
  const auto bytes = ReadBytes((root.native() + "/run/udev/data/+dmi:id").c_str(), kFirmwareTableLimit);
  if (!bytes) return std::nullopt;
  return ParseMemoryProperties({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

MemoryModules ParseMemoryProperties(std::string_view text) {
  std::map<std::uint32_t, Slot> slots;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const auto property = ParseProperty(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (property) TakeIn(slots[property->slot], *property);
  }
  if (slots.empty()) return std::nullopt;
  std::vector<MemoryModule> modules;
  for (auto& [number, slot] : slots) {
    if (slot.is_empty) continue;
    slot.module.slot = number;
    if (slot.module.speed == 0) slot.module.speed = slot.rated_speed;
    modules.push_back(std::move(slot.module));
  }
  return modules;
}

MemoryModules ReadMemoryModulesOfMachine() { return ReadMemoryModulesBelow("/"); }

}  // namespace ostrine
