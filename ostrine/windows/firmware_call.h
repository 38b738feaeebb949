/// Commands to the firmware over WMI (docs/firmware-methods.md).
#pragma once

#include <windows.h>

#include <wbemcli.h>

#include <cstdint>
#include <vector>

namespace ostrine {

/// Calls the firmware's method with the command word `input`. `reply` receives its bytes, at least one.
HRESULT CallFirmware(IWbemServices& services, std::uint64_t input, std::vector<std::uint8_t>& reply);

/// Answers a temperature command from the ACPI thermal zones; any other command is not supported, nor is the
/// number of a zone that the machine does not have. A reading that cannot be is no valid data.
HRESULT AnswerFromThermalZones(IWbemServices& services, std::uint64_t input,
                               std::vector<std::uint8_t>& reply);

}  // namespace ostrine
