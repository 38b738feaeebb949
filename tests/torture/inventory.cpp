/// Processor, memory, disks and video cards.
#include <cmath>
#include <filesystem>

#include "simulator/machine_file.h"
#include "tests/torture/operation.h"
#include "velmora/cpu.h"
#include "velmora/disk.h"
#include "velmora/memory.h"
#include "velmora/vediocard.h"

namespace torture {
namespace {

template <class Class>
Operation TextSpoiledTo(const char* name, std::wstring (Class::*getter)(), const std::wstring& spoiled) {
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

using Numbers = std::vector<std::uint64_t>;

/// What can be read where `right` stands, or nothing of it.
Numbers Readings(const std::optional<std::uint64_t>& right) { return {right.value_or(0), 0, kSpoiledLarge}; }

/// All sums of one number out of each row.
Numbers SumsOf(const std::vector<Numbers>& rows) {
  Numbers sums{0};
  for (const Numbers& row : rows) {
    Numbers more;
    for (const std::uint64_t sum : sums) {
      for (const std::uint64_t number : row) more.push_back(sum + number);
    }
    sums = std::move(more);
  }
  return sums;
}

std::vector<simulator::Machine> MachineFiles() {
  std::vector<simulator::Machine> machines;
  for (const auto& entry : std::filesystem::directory_iterator(VELMORA_MACHINES)) {
    if (entry.path().extension() == ".json") machines.push_back(simulator::ReadMachine(entry.path()));
  }
  return machines;
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

/// The modules are added up to the first that does not tell its capacity.
Operation TotalMemory() {
  Operation operation = Operation("CMemory::GetTotalMemoryNums",
                                  [] {
                                    std::uint64_t total = 77;
                                    const int result = CMemory().GetTotalMemoryNums(total);
                                    return std::tuple(result, total);
                                  })
                            .MayFailWith(std::tuple(0, 0))
                            // Any count is believed up to this, and so is any capacity.
                            .MayBeSpoiledTo(std::tuple(1, 4096 * kSpoiledLarge));
  for (const auto& machine : MachineFiles()) {
    std::vector<Numbers> rows;
    for (const auto& module : machine.memory_modules.value_or(std::vector<simulator::MemoryModule>()))
      rows.push_back(Readings(module.capacity));
    for (const std::uint64_t sum : SumsOf(rows)) {
      operation = std::move(operation).MayFailWith(std::tuple(1, sum)).MayBeSpoiledTo(std::tuple(1, sum));
    }
  }
  return operation;
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
              .MayBeSpoiledTo(std::tuple(1, kSpoiledLarge)),
          Operation("CMemory::GetMemoryNums",
                    [] {
                      unsigned int count = 77;
                      const int result = CMemory().GetMemoryNums(count);
                      return std::tuple(result, count);
                    })
              .MayFailWith(std::tuple(0, 0))
              .MayFailWith(std::tuple(1, 0))
              .MayBeSpoiledTo(std::tuple(1, kSpoiled)),
          Operation("CMemory::GetSpeedbyIndex",
                    [] {
                      unsigned int speed = 77;
                      const int result = CMemory().GetSpeedbyIndex(speed, 0);
                      return std::tuple(result, speed);
                    })
              .MayFailWith(std::tuple(0, 0))
              .MayFailWith(std::tuple(1, 0))
              .MayBeSpoiledTo(std::tuple(1, kSpoiled)),
          TotalMemory(),
          Count("CMemory::GetMemoryLoad", &CMemory::GetMemoryLoad),
          Operation("CMemory::GetMemoryLoadF", [] {
            return std::lround(CMemory().GetMemoryLoadF() * 10000);
          }).MayFailWith(0L)};
}

/// A text of the first disk.
Operation DiskText(const char* name, std::wstring (CDisk::*getter)(int)) {
  return Operation(name, [getter] { return (CDisk().*getter)(0); })
      .MayFailWith(std::wstring())
      .MayBeSpoiledTo(std::wstring(259, static_cast<wchar_t>(0x4141)));
}

/// A capacity of the first disk.
Operation DiskCapacity(const char* name, std::uint64_t (CDisk::*getter)(int)) {
  return Operation(name, [getter] { return (CDisk().*getter)(0); })
      .MayFailWith(std::uint64_t{0})
      .MayBeSpoiledTo(kSpoiledLarge);
}

/// What an operation that adds disks up can come to: each disk's part is right, missing or spoiled by itself.
template <class PartsOfDisk>
Operation DiskSum(Operation operation, PartsOfDisk parts_of_disk) {
  for (const auto& machine : MachineFiles()) {
    std::vector<Numbers> rows;
    for (const auto& disk : machine.disks.value_or(std::vector<simulator::Disk>()))
      rows.push_back(parts_of_disk(disk));
    for (const std::uint64_t sum : SumsOf(rows)) {
      operation = std::move(operation).MayFailWith(sum).MayBeSpoiledTo(sum);
    }
  }
  return operation;
}

Numbers UsedOf(const simulator::Disk& disk) {
  Numbers used{0};
  for (const std::uint64_t total : Readings(disk.total)) {
    for (const std::uint64_t remaining : Readings(disk.remaining)) used.push_back(total - remaining);
  }
  return used;
}

std::vector<Operation> DiskOperations() {
  return {
      DiskText("CDisk::GetCaption", &CDisk::GetCaption),
      DiskText("CDisk::GetSerialNumber", &CDisk::GetSerialNumber),
      DiskText("CDisk::GetFirmwareRevision", &CDisk::GetFirmwareRevision),
      DiskText("CDisk::GetMediaType", &CDisk::GetMediaType),
      DiskCapacity("CDisk::GetTotalCapacity", &CDisk::GetTotalCapacity),
      DiskCapacity("CDisk::GetRemainCapacity", &CDisk::GetRemainCapacity),
      DiskCapacity("CDisk::GetTotalVendorCapacity", &CDisk::GetTotalVendorCapacity),
      DiskCapacity("CDisk::GetTotalVendorCapacityM", &CDisk::GetTotalVendorCapacityM),
      DiskSum(Operation("CDisk::GetUsedCapacity", [] { return CDisk().GetUsedCapacity(0); }), UsedOf),
      DiskSum(Operation("CDisk::GetAllTotalCapacity", [] { return CDisk().GetAllTotalCapacity(); }),
              [](const simulator::Disk& disk) { return Readings(disk.total); }),
      DiskSum(Operation("CDisk::GetAllRemainCapacity", [] { return CDisk().GetAllRemainCapacity(); }),
              [](const simulator::Disk& disk) { return Readings(disk.remaining); }),
      DiskSum(Operation("CDisk::GetAllTotalVendorCapcity", [] { return CDisk().GetAllTotalVendorCapcity(); }),
              [](const simulator::Disk& disk) { return Readings(disk.vendor_total); }),
      DiskSum(Operation("CDisk::GetAllUsedCapacity", [] { return CDisk().GetAllUsedCapacity(); }), UsedOf),
      Operation("CDisk::GetPhysicDiskNumbers", [] { return CDisk().GetPhysicDiskNumbers(); })
          .MayFailWith(0)
          .MayFailWith(1),  // one of two has told its kind
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

std::vector<Operation> ProcessorOperations() {
  const std::wstring narrow(259, L'A');
  return {TextSpoiledTo("CCpu::GetCpuName", &CCpu::GetCpuName, std::wstring(49, L'A')),
          TextSpoiledTo("CCpu::GetCpuManufacturer", &CCpu::GetCpuManufacturer, narrow),
          TextSpoiledTo("CCpu::GetL1Associativity", &CCpu::GetL1Associativity, narrow),
          TextSpoiledTo("CCpu::GetL2Associativity", &CCpu::GetL2Associativity, narrow),
          TextSpoiledTo("CCpu::GetL3Associativity", &CCpu::GetL3Associativity, narrow),
          Count("CCpu::GetPhysicalAddressBits", &CCpu::GetPhysicalAddressBits),
          Count("CCpu::GetLinearAddressBits", &CCpu::GetLinearAddressBits),
          Count("CCpu::GetCpuCurClock", &CCpu::GetCpuCurClock),
          Count("CCpu::GetCpuExtClock", &CCpu::GetCpuExtClock),
          Count("CCpu::GetCpuMaxClock", &CCpu::GetCpuMaxClock),
          Count("CCpu::GetCpuCoreNumbers", &CCpu::GetCpuCoreNumbers),
          Count("CCpu::GetCpuCoreThreads", &CCpu::GetCpuCoreThreads),
          Count("CCpu::GetL1CacheSize", &CCpu::GetL1CacheSize),
          Count("CCpu::GetL2CacheSize", &CCpu::GetL2CacheSize),
          Count("CCpu::GetL3CacheSize", &CCpu::GetL3CacheSize),
          Count("CCpu::GetCpuLoadPercent", &CCpu::GetCpuLoadPercent),
          Count("CCpu::GetCputype", &CCpu::GetCputype),
          Operation("CCpu::GetCpuUsage", [] { return static_cast<int>(CCpu().GetCpuUsage()); })};
}

std::vector<Operation> VideoOperations() {
  const std::wstring narrow(259, L'A');
  const std::wstring wide(259, static_cast<wchar_t>(0x4141));
  return {
      TextSpoiledTo("CVediocard::GetInternalVideoCardName", &CVediocard::GetInternalVideoCardName, wide),
      TextSpoiledTo("CVediocard::GetInternalVideoCardStatus", &CVediocard::GetInternalVideoCardStatus, wide),
      TextSpoiledTo("CVediocard::GetInternalVideoCardDriverVersion",
                    &CVediocard::GetInternalVideoCardDriverVersion, wide),
      TextSpoiledTo("CVediocard::GetInternalVideoCardDriverDate", &CVediocard::GetInternalVideoCardDriverDate,
                    wide),
      TextSpoiledTo("CVediocard::GetUsedVideoCardName", &CVediocard::GetUsedVideoCardName, wide),
      TextSpoiledTo("CVediocard::GetUsedVideoCardStatus", &CVediocard::GetUsedVideoCardStatus, wide),
      TextSpoiledTo("CVediocard::GetUsedVideoCardDriverVersion", &CVediocard::GetUsedVideoCardDriverVersion,
                    wide),
      TextSpoiledTo("CVediocard::GetUsedVideoCardDriverDate", &CVediocard::GetUsedVideoCardDriverDate, wide),
      TextSpoiledTo("CVediocard::GetIndependentVideoCardName", &CVediocard::GetIndependentVideoCardName,
                    wide),
      TextSpoiledTo("CVediocard::GetIndependentVideoCardStatus", &CVediocard::GetIndependentVideoCardStatus,
                    wide),
      TextSpoiledTo("CVediocard::GetIndependentVideoCardDriverVersion",
                    &CVediocard::GetIndependentVideoCardDriverVersion, wide),
      TextSpoiledTo("CVediocard::GetIndependentVideoCardDriverDate",
                    &CVediocard::GetIndependentVideoCardDriverDate, wide),
      TextSpoiledTo("CVediocard::GetUnUsedVideoCardName", &CVediocard::GetUnUsedVideoCardName, wide),
      TextSpoiledTo("CVediocard::GetUnUsedVideoCardStatus", &CVediocard::GetUnUsedVideoCardStatus, wide),
      TextSpoiledTo("CVediocard::GetUnUsedVideoCardDriverVersion",
                    &CVediocard::GetUnUsedVideoCardDriverVersion, wide),
      TextSpoiledTo("CVediocard::GetUnUsedVideoCardDriverDate", &CVediocard::GetUnUsedVideoCardDriverDate,
                    wide),
      TextSpoiledTo("CVediocard::GetDisplayResolution", &CVediocard::GetDisplayResolution, wide),
      TextSpoiledTo("CVediocard::GetMonitorCaption", &CVediocard::GetMonitorCaption, narrow),
      Count("CVediocard::GetVideoCardNumber", &CVediocard::GetVideoCardNumber),
      Count("CVediocard::GetInternalVedioCardMemorySize", &CVediocard::GetInternalVedioCardMemorySize),
      Count("CVediocard::GetUsedVedioCardMemorySize", &CVediocard::GetUsedVedioCardMemorySize),
      Count("CVediocard::GetIndependentVedioCardMemorySize", &CVediocard::GetIndependentVedioCardMemorySize),
      Count("CVediocard::GetUnUsedVedioCardMemorySize", &CVediocard::GetUnUsedVedioCardMemorySize),
      Count("CVediocard::GetInternalVedioCardErrorCode", &CVediocard::GetInternalVedioCardErrorCode),
      Count("CVediocard::GetIndependentVedioCardErrorCode", &CVediocard::GetIndependentVedioCardErrorCode),
      Count("CVediocard::GetHorizontalResolution", &CVediocard::GetHorizontalResolution),
      Count("CVediocard::GetVerticalResolution", &CVediocard::GetVerticalResolution),
      Count("CVediocard::GetRefreshRate", &CVediocard::GetRefreshRate),
      Count("CVediocard::GetBitPerPixel", &CVediocard::GetBitPerPixel)};
}

}  // namespace

std::vector<Operation> InventoryOperations() {
  std::vector<Operation> all = ProcessorOperations();
  Append(all, MemoryOperations());
  Append(all, DiskOperations());
  Append(all, VideoOperations());
  return all;
}

}  // namespace torture
