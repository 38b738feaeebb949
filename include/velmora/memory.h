#pragma once

#include <cstdint>
#include <string>

#include "velmora/export.h"

/// The installed memory modules, and how much memory is in use.
///
/// Source: modules from the hardware-abstraction library, device class 13, which reads the firmware's SMBIOS
/// tables; the load from the operating system's memory status. The modules are those of the moment at which
/// the object was made; their values and the load are asked again on every call.
/// Results: the operations that return int give 1 on success and 0 on failure; their output is reset first,
/// to 0 or to the empty text. Texts are as the firmware holds them, placeholders included. Modules are
/// numbered from 0 in the firmware's order, populated slots only; any other index is a failure. Nothing
/// throws, nothing is logged. Threads: an object is used by one thread at a time; separate objects are
/// independent. Copies: each object owns a module table of its own, so a copy takes one anew, as the modules
/// are then.
class VELMORA_API CMemory {
 public:
  /// Takes the module table. Without it every operation on a module fails.
  CMemory();
  CMemory(const CMemory& other);
  CMemory& operator=(const CMemory& other);
  ~CMemory();

  /// Number of modules.
  int GetMemoryNums(unsigned int& count);

  /// Capacity of all modules together, in bytes. Succeeds when there are modules, also when a module could
  /// not be read: the total then covers those before it. More than 4096 modules are never asked.
  int GetTotalMemoryNums(std::uint64_t& total);

  /// Where the module sits, such as "ChannelA-DIMM0".
  int GetLocatorbyIndex(std::wstring& locator, int index);

  /// Maker of the module.
  int GetManufacturerbyIndex(std::wstring& manufacturer, int index);

  /// Serial number of the module.
  int GetSerialNumberbyIndex(std::wstring& serial_number, int index);

  /// Part number of the module, with the blanks that the firmware pads it with.
  int GetPartNumberbyIndex(std::wstring& part_number, int index);

  /// Speed at which the module runs, in MT/s; 0, with success, when the firmware does not know.
  int GetSpeedbyIndex(unsigned int& speed, int index);

  /// Capacity of the module in bytes.
  int GetCapacitybyIndex(std::uint64_t& capacity, int index);

  /// Physical memory in use, in percent, 0 to 100; 0 also on failure.
  unsigned long GetMemoryLoad();

  /// The used fraction of the physical memory, 0.0 to 1.0, to four decimal places, from the memory that is
  /// available; 0.0 also on failure.
  float GetMemoryLoadF();

 private:
  void* module_table_ = nullptr;
};
