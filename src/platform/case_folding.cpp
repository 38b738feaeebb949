#include "platform/case_folding.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace velmora {
namespace {

/// Capitals from `first` to `last`, every `step`-th one, whose small letter stands `distance` further on.
struct Capitals {
  std::uint32_t first;
  std::uint32_t last;
  std::uint32_t step;
  std::int32_t distance;
};

/// In rising order, so that a character can be looked up by bisection. ASCII, which most texts are, needs
/// none.
constexpr Capitals kCapitals[] = {
    {0x00C0, 0x00D6, 1, 32},    // accented Latin, up to the multiplication sign
    {0x00D8, 0x00DE, 1, 32},    //
    {0x0100, 0x012E, 2, 1},     // Latin Extended-A, up to the Turkish i
    {0x0132, 0x0136, 2, 1},     //
    {0x0139, 0x0147, 2, 1},     //
    {0x014A, 0x0176, 2, 1},     //
    {0x0178, 0x0178, 1, -121},  // Y with diaeresis, whose small letter is older
    {0x0179, 0x017D, 2, 1},     //
    {0x0386, 0x0386, 1, 38},    // accented Greek
    {0x0388, 0x038A, 1, 37},    //
    {0x038C, 0x038C, 1, 64},    //
    {0x038E, 0x038F, 1, 63},    //
    {0x0391, 0x03A1, 1, 32},    // Greek
    {0x03A3, 0x03AB, 1, 32},    //
    {0x03C2, 0x03C2, 1, 1},     // final sigma, a second small form
    {0x0400, 0x040F, 1, 80},    // Cyrillic
    {0x0410, 0x042F, 1, 32},    //
    {0x0460, 0x0480, 2, 1},     //
    {0x048A, 0x04BE, 2, 1},     //
    {0x04C0, 0x04C0, 1, 15},    //
    {0x04C1, 0x04CD, 2, 1},     //
    {0x04D0, 0x052E, 2, 1},     //
    {0x0531, 0x0556, 1, 48},    // Armenian
    {0x1E00, 0x1E94, 2, 1},     // further accented Latin
    {0x1EA0, 0x1EFE, 2, 1},     // Vietnamese
    {0xFF21, 0xFF3A, 1, 32},    // full-width Latin
};

}  // namespace

wchar_t FoldCase(wchar_t character) noexcept {
  const auto code = static_cast<std::uint32_t>(character);
  if (code < 0x80) return code >= 'A' && code <= 'Z' ? static_cast<wchar_t>(code + ('a' - 'A')) : character;
  const Capitals* range = std::lower_bound(std::begin(kCapitals), std::end(kCapitals), code,
                                           [](const Capitals& r, std::uint32_t c) { return r.last < c; });
  if (range == std::end(kCapitals) || code < range->first) return character;
  if ((code - range->first) % range->step != 0) return character;
  return static_cast<wchar_t>(static_cast<std::int32_t>(code) + range->distance);
}

bool EqualIgnoringCase(std::wstring_view left, std::wstring_view right) noexcept {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](wchar_t a, wchar_t b) { return FoldCase(a) == FoldCase(b); });
}

}  // namespace velmora
