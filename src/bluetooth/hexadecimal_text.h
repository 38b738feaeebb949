#pragma once

#include <cstdint>
#include <string_view>

namespace velmora::bluetooth {

/// The hexadecimal number at the beginning of `text`, read as a stream of the standard library reads one:
/// white space before it is skipped, a sign and "0x" are taken, and reading ends at the first other
/// character. 0 without a digit, 0xFFFFFFFF for a number of more than 32 bits.
std::uint32_t ReadHexadecimal(std::string_view text);

}  // namespace velmora::bluetooth
