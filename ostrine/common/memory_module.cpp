#include "ostrine/common/memory_module.h"

#include <algorithm>
#include <cstddef>

namespace ostrine {
namespace {

// Places in a memory device structure.
constexpr std::size_t kArrayHandleAt = 0x04;
constexpr std::size_t kSizeAt = 0x0C;
constexpr std::size_t kLocatorAt = 0x10;
constexpr std::size_t kSpeedAt = 0x15;
constexpr std::size_t kModuleMakerAt = 0x17;
constexpr std::size_t kSerialNumberAt = 0x18;
constexpr std::size_t kPartNumberAt = 0x1A;
constexpr std::size_t kExtendedSizeAt = 0x1C;
constexpr std::size_t kConfiguredSpeedAt = 0x20;
constexpr std::size_t kExtendedSpeedAt = 0x54;
constexpr std::size_t kExtendedConfiguredSpeedAt = 0x58;

/// The highest bit of both extended fields is reserved.
constexpr std::uint32_t kExtendedMask = 0x7FFFFFFF;

// The size's highest bit tells the unit of the others.
constexpr std::uint16_t kInKibibytes = 0x8000;
constexpr std::uint16_t kSizeMask = 0x7FFF;

std::optional<std::uint64_t> Capacity(const smbios::Structure& device) {
  constexpr std::uint16_t kUnknown = 0xFFFF;
  constexpr std::uint16_t kSeeExtended = 0x7FFF;
  constexpr std::uint64_t kKibibyte = 1024;
  constexpr std::uint64_t kMebibyte = 1024 * kKibibyte;
  const auto size = device.U16(kSizeAt);
  if (!size || *size == kUnknown) return std::nullopt;
  if (*size == kSeeExtended) {
    const std::uint32_t extended = device.U32(kExtendedSizeAt).value_or(0) & kExtendedMask;
    return extended == 0 ? std::nullopt : std::optional(extended * kMebibyte);
  }
  const std::uint64_t amount = *size & kSizeMask;
  return amount * ((*size & kInKibibytes) != 0 ? kKibibyte : kMebibyte);
}

std::uint32_t SpeedAt(const smbios::Structure& device, std::size_t offset, std::size_t extended_offset) {
  constexpr std::uint16_t kSeeExtended = 0xFFFF;
  const std::uint16_t speed = device.U16(offset).value_or(0);
  return speed == kSeeExtended ? device.U32(extended_offset).value_or(0) & kExtendedMask : speed;
}

/// The speed at which the device runs or, where only that is known, the one that it is made for.
std::uint32_t Speed(const smbios::Structure& device) {
  const std::uint32_t configured = SpeedAt(device, kConfiguredSpeedAt, kExtendedConfiguredSpeedAt);
  return configured != 0 ? configured : SpeedAt(device, kSpeedAt, kExtendedSpeedAt);
}

/// Handles of the arrays that hold something else than system memory: the BIOS's flash memory, a cache, video
/// memory.
std::vector<std::uint16_t> OtherArrays(const smbios::TableView& table) {
  constexpr std::size_t kUseAt = 0x05;
  constexpr std::uint8_t kVideoMemory = 4;
  constexpr std::uint8_t kCacheMemory = 7;
  std::vector<std::uint16_t> handles;
  smbios::StructureWalker walker(table);
  while (const auto structure = walker.Next()) {
    if (structure->Type() != smbios::kMemoryArray) continue;
    const std::uint8_t use = structure->U8(kUseAt).value_or(0);
    if (use >= kVideoMemory && use <= kCacheMemory) handles.push_back(structure->Handle());
  }
  std::ranges::sort(handles);
  return handles;
}

/// Whether a module sits in the slot, of unknown size perhaps.
bool IsPopulated(const smbios::Structure& device) {
  return (device.U16(kSizeAt).value_or(0) & kSizeMask) != 0;
}

std::string TextAt(const smbios::Structure& device, std::size_t offset) {
  return std::string(device.Text(offset));
}

}  // namespace

std::vector<MemoryModule> ReadMemoryModules(const smbios::TableView& table) {
  const auto others = OtherArrays(table);
  const auto is_system_memory = [&](const smbios::Structure& device) {
    const auto array = device.U16(kArrayHandleAt);
    return !array || !std::ranges::binary_search(others, *array);
  };
  std::vector<MemoryModule> modules;
  smbios::StructureWalker walker(table);
  while (const auto device = walker.Next()) {
    if (device->Type() != smbios::kMemoryDevice || !IsPopulated(*device) || !is_system_memory(*device))
      continue;
    modules.push_back({.slot = device->Handle(),
                       .locator = TextAt(*device, kLocatorAt),
                       .manufacturer = TextAt(*device, kModuleMakerAt),
                       .serial_number = TextAt(*device, kSerialNumberAt),
                       .part_number = TextAt(*device, kPartNumberAt),
                       .capacity = Capacity(*device),
                       .speed = Speed(*device)});
  }
  return modules;
}

}  // namespace ostrine
