/// Which hardware IDs mean the machine's own Bluetooth adapter. Letter case counts, and only the beginning of
/// an ID is looked at.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora::bluetooth {

/// The first of the Bluetooth class's `hardware_ids` that is an adapter's; empty when none is.
std::wstring ChooseAdapterId(const std::vector<std::wstring>& hardware_ids);

/// Whether an unknown device is a lost adapter on USB: of the one maker whose adapters get lost so.
bool IsLostUsbAdapter(std::wstring_view hardware_id);

/// Whether an unknown device is a lost adapter of either family.
bool IsLostAdapter(std::wstring_view hardware_id);

}  // namespace velmora::bluetooth
