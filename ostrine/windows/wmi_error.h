/// WMI's results in terms of the system's error numbers. Pure.
#pragma once

#include <windows.h>

#include <wbemcli.h>

namespace ostrine {

/// WMI's own results as every COM call returns them. The header has them as an unsigned enumeration.
constexpr HRESULT Wmi(WBEMSTATUS status) noexcept { return static_cast<HRESULT>(status); }

/// Whether a failure says that the machine has no such class, instance or method.
bool IsAbsent(HRESULT result) noexcept;

/// The error number for a failure: 50 for what is absent, 5, 8, 87 and 1460 for want of rights, memory, valid
/// arguments and time, an error that the result carries, 31 for everything else. Never 0.
DWORD WmiError(HRESULT result) noexcept;

}  // namespace ostrine
