/// The order in which people count: numbers within names by their value.
#pragma once

#include <string_view>

namespace ostrine {

/// Whether `left` stands before `right`: runs of digits compare as numbers of any length, everything else
/// byte by byte. Names that differ only in leading zeros are told apart by their bytes, so the order is
/// strict.
bool ComesBefore(std::string_view left, std::string_view right) noexcept;

}  // namespace ostrine
