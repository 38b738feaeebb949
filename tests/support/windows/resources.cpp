#include "tests/support/windows/resources.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace windows_support {
namespace {

/// One entry of the system's list of all handles.
struct HandleEntry {
  std::uint16_t process_id;
  std::uint16_t trace_index;
  std::uint8_t type;
  std::uint8_t attributes;
  std::uint16_t value;
  void* object;
  std::uint32_t access;
};

}  // namespace

std::size_t HandleCount() {
  // (The system's plain count for a process is not kept everywhere, the list is.)
  constexpr auto kAllHandles = static_cast<SYSTEM_INFORMATION_CLASS>(16);
  std::vector<std::uint8_t> list(1 << 20);
  ULONG size = 0;
  while (NtQuerySystemInformation(kAllHandles, list.data(), static_cast<ULONG>(list.size()), &size) < 0) {
    if (list.size() > (64u << 20)) {
      ADD_FAILURE() << "the system does not list its handles";
      return 0;
    }
    list.resize(list.size() * 2);
  }
  std::uint32_t count = 0;
  std::memcpy(&count, list.data(), sizeof count);
  std::size_t own = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    HandleEntry entry;
    std::memcpy(&entry, list.data() + 8 + i * sizeof entry, sizeof entry);
    if (entry.process_id == static_cast<std::uint16_t>(GetCurrentProcessId())) ++own;
  }
  EXPECT_GT(own, 0u);
  return own;
}

std::size_t HeapBytes() {
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  heaps.resize(
      std::min<std::size_t>(heaps.size(), GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data())));
  std::size_t bytes = 0;
  for (const HANDLE heap : heaps) {
    HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heap);
  }
  EXPECT_GT(bytes, 0u);
  return bytes;
}

}  // namespace windows_support
