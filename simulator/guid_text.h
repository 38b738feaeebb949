#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ostrine/guid.h"

namespace simulator {

/// Whether two identifiers are the same.
bool IsSame(const GUID& left, const GUID& right);

/// The name of one of the eight setup classes; null for any other.
const char* SetupClassName(const GUID& setup_class);

/// Identifier of one of them by its name, as the system stores it: "{4d36e972-e325-11ce-bfc1-08002be10318}".
/// Empty for any other name.
std::string SetupClassGuidText(std::string_view name);

/// "{4D36E972-E325-11CE-BFC1-08002BE10318}" and back; braces may be left out.
std::string GuidText(const GUID& id);
std::optional<GUID> ParseGuid(std::string_view text);

}  // namespace simulator
