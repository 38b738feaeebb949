/// What a remote device's hardware ID and type text say.
#pragma once

#include <string>
#include <string_view>

namespace velmora::bluetooth {

/// Whether the ID is a low-energy device's. Letter case counts.
bool IsLowEnergy(std::wstring_view hardware_id);

/// Whether the ID is a remote device's, classic or low energy.
bool IsRemote(std::wstring_view hardware_id);

/// The address in the ID: all after its first underscore; empty without one.
std::wstring_view AddressIn(std::wstring_view hardware_id);

/// Whether a type text speaks of a mouse, in either letter case.
bool SaysMouse(const std::wstring& type);

}  // namespace velmora::bluetooth
