/// Where narrow text may be cut, so that no half of a character is left over.
#pragma once

#include <cstddef>
#include <string_view>

namespace ostrine {

/// Length of the longest start of `text` that has at most `limit` bytes and ends between two characters of
/// the system's narrow code page. Each system has its own.
std::size_t NarrowPrefix(std::string_view text, std::size_t limit);

/// The same for UTF-8. Where the bytes at the limit are not UTF-8, the cut is at the limit.
std::size_t Utf8Prefix(std::string_view text, std::size_t limit);

}  // namespace ostrine
