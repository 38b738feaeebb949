/// The 16-byte identifier by which setup classes and interfaces are named: the system's own on Windows, a
/// record of the same shape and global name elsewhere.
#pragma once

#if defined(_WIN32)
#include <guiddef.h>
#else
#include <cstdint>

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];

  bool operator==(const GUID&) const = default;
};
#endif

static_assert(sizeof(GUID) == 16);
