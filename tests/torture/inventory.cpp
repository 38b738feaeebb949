/// Processor, memory, disks and video cards.
#include "tests/torture/operation.h"
#include "velmora/cpu.h"
#include "velmora/disk.h"
#include "velmora/memory.h"
#include "velmora/vediocard.h"

namespace torture {
namespace {

constexpr std::uint32_t kSpoiled = 0x41414141;
constexpr std::uint64_t kLargeSpoiled = 0x4141414141414141;

template <class Class>
Operation Text(const char* name, std::wstring (Class::*getter)(), const std::wstring& spoiled) {
  return Operation(name, [getter] { return (Class().*getter)(); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(spoiled);
}

template <class Class, class Number>
Operation Count(const char* name, Number (Class::*getter)()) {
  return Operation(name, [getter] { return static_cast<std::uint64_t>((Class().*getter)()); })
      .MayFailWith(std::uint64_t{0})
      .MayBeSpoiledTo(std::uint64_t{kSpoiled});
}

Operation ModuleText(const char* name, int (CMemory::*getter)(std::wstring&, int)) {
  return Operation(name,
                   [getter] {
                     std::tuple<int, std::wstring> result{77, L"old"};
                     std::get<0>(result) = (CMemory().*getter)(std::get<1>(result), 0);
                     return result;
                   })
      .MayFailWith(std::tuple(0, std::wstring()))
      .MayFailWith(std::tuple(1, std::wstring()))  // a success that gave nothing
      .MayBeSpoiledTo(std::tuple(1, std::wstring(259, L'A')));
}

std::vector<Operation> MemoryOperations() {
  return {ModuleText("CMemory::GetLocatorbyIndex", &CMemory::GetLocatorbyIndex),
          ModuleText("CMemory::GetManufacturerbyIndex", &CMemory::GetManufacturerbyIndex),
          ModuleText("CMemory::GetSerialNumberbyIndex", &CMemory::GetSerialNumberbyIndex),
          ModuleText("CMemory::GetPartNumberbyIndex", &CMemory::GetPartNumberbyIndex),
          Operation("CMemory::GetCapacitybyIndex",
                    [] {
                      std::uint64_t capacity = 77;
                      const int result = CMemory().GetCapacitybyIndex(capacity, 0);
                      return std::tuple(result, capacity);
                    })
              .MayFailWith(std::tuple(0, 0))
              .MayFailWith(std::tuple(1, 0))
              .MayBeSpoiledTo(std::tuple(1, kLargeSpoiled)),
          Operation("CMemory::GetMemoryNums",
                    [] {
                      unsigned int count = 77;
                      const int result = CMemory().GetMemoryNums(count);
                      return std::tuple(result, count);
                    })
              .MayFailWith(std::tuple(0, 0))
              .MayFailWith(std::tuple(1, 0))
              .MayBeSpoiledTo(std::tuple(1, kSpoiled)),
          Count("CMemory::GetMemoryLoad", &CMemory::GetMemoryLoad)};
}

/// A text of the first disk.
Operation DiskText(const char* name, std::wstring (CDisk::*getter)(int)) {
  return Operation(name, [getter] { return (CDisk().*getter)(0); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(std::wstring(259, static_cast<wchar_t>(0x4141)));
}

std::vector<Operation> DiskOperations() {
  return {DiskText("CDisk::GetCaption", &CDisk::GetCaption),
          DiskText("CDisk::GetSerialNumber", &CDisk::GetSerialNumber),
          DiskText("CDisk::GetFirmwareRevision", &CDisk::GetFirmwareRevision),
          Operation("CDisk::GetTotalCapacity", [] { return CDisk().GetTotalCapacity(0); })
              .MayFailWith(0)
              .MayBeSpoiledTo(kLargeSpoiled),
          Operation("CDisk::JudgeSSd",
                    [] {
                      int flag = 77;
                      const int result = CDisk().JudgeSSd(0, flag);
                      return std::tuple(result, flag);
                    })
              .MayFailWith(std::tuple(0, 77))
              .MayFailWith(std::tuple(1, 77))
              .MayBeSpoiledTo(std::tuple(1, static_cast<int>(kSpoiled)))};
}

void Append(std::vector<Operation>& all, std::vector<Operation> more) {
  all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

std::vector<Operation> InventoryOperations() {
  const std::wstring narrow(259, L'A');
  const std::wstring wide(259, static_cast<wchar_t>(0x4141));
  std::vector<Operation> all{
      Text("CCpu::GetCpuName", &CCpu::GetCpuName, std::wstring(49, L'A')),
      Text("CCpu::GetCpuManufacturer", &CCpu::GetCpuManufacturer, narrow),
      Text("CCpu::GetL1Associativity", &CCpu::GetL1Associativity, narrow),
      Count("CCpu::GetCpuMaxClock", &CCpu::GetCpuMaxClock),
      Count("CCpu::GetCpuLoadPercent", &CCpu::GetCpuLoadPercent),
      Count("CCpu::GetCputype", &CCpu::GetCputype),
      Text("CVediocard::GetInternalVideoCardName", &CVediocard::GetInternalVideoCardName, wide),
      Text("CVediocard::GetMonitorCaption", &CVediocard::GetMonitorCaption, narrow),
      Count("CVediocard::GetVideoCardNumber", &CVediocard::GetVideoCardNumber),
      Count("CVediocard::GetIndependentVedioCardMemorySize", &CVediocard::GetIndependentVedioCardMemorySize)};
  Append(all, MemoryOperations());
  Append(all, DiskOperations());
  return all;
}

}  // namespace torture
