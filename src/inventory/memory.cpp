#include "velmora/memory.h"

#include <algorithm>

#include "inventory/memory_load.h"
#include "platform/guard.h"
#include "platform/halquery.h"
#include "platform/os/system_status.h"

using velmora::Answer;
using velmora::hal::DeviceClass;
using velmora::os::MemoryStatus;

namespace {

constexpr auto kMemory = DeviceClass::kMemory;

/// A count above this is none: so many modules fit no board.
constexpr std::uint32_t kMostModules = 4096;

/// Information ids of the class.
enum ModuleId : std::uint32_t {
  kCount = 0,
  kLocator = 1,
  kManufacturer = 2,
  kModuleSerialNumber = 3,
  kPartNumber = 4,
  kCapacity = 5,
  kSpeed = 6,
};

/// The device argument of a module.
void* Entry(void* table, std::uint32_t index) {
  using namespace velmora::hal;
  return static_cast<char*>(table) + kTableHeadSize + kMemoryEntrySize * index;
}

/// The same for an index from the host; null without a table or such a module. Only a library that cannot
/// even count its modules is trusted with any index.
void* CheckedEntry(void* table, int index) {
  if (table == nullptr || index < 0) return nullptr;
  const auto number = static_cast<std::uint32_t>(index);
  std::uint32_t count = 0;
  const bool is_counted = velmora::hal::ReadNumber(kMemory, kCount, nullptr, count);
  return is_counted && number >= count ? nullptr : Entry(table, number);
}

int ReadText(void* table, int index, std::uint32_t information_id, std::wstring& text) {
  text.clear();
  void* entry = CheckedEntry(table, index);
  return entry != nullptr && velmora::hal::ReadNarrowText(kMemory, information_id, entry, text) ? 1 : 0;
}

template <class Value>
int ReadValue(void* table, int index, std::uint32_t information_id, Value& value) {
  value = 0;
  void* entry = CheckedEntry(table, index);
  return entry != nullptr && velmora::hal::ReadNumber(kMemory, information_id, entry, value) ? 1 : 0;
}

/// The system's memory status; false when it cannot be had.
bool ReadStatus(MemoryStatus& status) {
  return Answer(false, [&] {
    status = {.length = sizeof status};
    return velmora::os::GlobalMemoryStatusEx(status);
  });
}

}  // namespace

CMemory::CMemory() { velmora::hal::PrepareTable(kMemory, module_table_); }
CMemory::CMemory(const CMemory& /*other*/) : CMemory() {}
CMemory::~CMemory() { velmora::hal::ReleaseTable(module_table_); }

CMemory& CMemory::operator=(const CMemory& other) {
  if (this != &other) {
    velmora::hal::ReleaseTable(module_table_);
    velmora::hal::PrepareTable(kMemory, module_table_);
  }
  return *this;
}

int CMemory::GetMemoryNums(unsigned int& count) {
  return velmora::hal::ReadNumber(kMemory, kCount, nullptr, count) ? 1 : 0;
}

int CMemory::GetTotalMemoryNums(std::uint64_t& total) {
  total = 0;
  const std::uint32_t count = std::min(velmora::hal::Number(kMemory, kCount), kMostModules);
  if (count == 0) return 0;
  for (std::uint32_t i = 0; i < count && module_table_ != nullptr; ++i) {
    std::uint64_t capacity = 0;
    if (!velmora::hal::ReadNumber(kMemory, kCapacity, Entry(module_table_, i), capacity)) break;
    total += capacity;
  }
  return 1;
}

int CMemory::GetLocatorbyIndex(std::wstring& locator, int index) {
  return ReadText(module_table_, index, kLocator, locator);
}
int CMemory::GetManufacturerbyIndex(std::wstring& manufacturer, int index) {
  return ReadText(module_table_, index, kManufacturer, manufacturer);
}
int CMemory::GetSerialNumberbyIndex(std::wstring& serial_number, int index) {
  return ReadText(module_table_, index, kModuleSerialNumber, serial_number);
}
int CMemory::GetPartNumberbyIndex(std::wstring& part_number, int index) {
  return ReadText(module_table_, index, kPartNumber, part_number);
}
int CMemory::GetSpeedbyIndex(unsigned int& speed, int index) {
  return ReadValue(module_table_, index, kSpeed, speed);
}
int CMemory::GetCapacitybyIndex(std::uint64_t& capacity, int index) {
  return ReadValue(module_table_, index, kCapacity, capacity);
}

unsigned long CMemory::GetMemoryLoad() {
  MemoryStatus status{};
  return ReadStatus(status) ? status.memory_load : 0;
}

float CMemory::GetMemoryLoadF() {
  MemoryStatus status{};
  return ReadStatus(status) ? velmora::UsedFraction(status.total_physical, status.available_physical) : 0.0F;
}
