/// The network class's instance keys in the registry, which hold the physical medium of each card.
#pragma once

#include <string>

#include "network/card_rules.h"

namespace velmora::network {

/// Reads the physical medium out of the key at `key_path` when the key belongs to the card that `id` names:
/// its hardware ID or its instance ID, as `match` says. True when it does and tells the medium; else `medium`
/// stays as it was.
bool ReadMedium(const std::wstring& key_path, KeyMatch match, const std::wstring& id, unsigned long& medium);

/// The same for the first instance key, in the order of their numbers, that belongs to the card and tells.
bool FindMedium(KeyMatch match, const std::wstring& id, unsigned long& medium);

}  // namespace velmora::network
