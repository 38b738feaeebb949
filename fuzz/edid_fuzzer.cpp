// Any bytes as a display's description; the same bytes again, made to add up, so that all of it is reached.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <vector>

#include "ostrine/common/edid.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsPrintable(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void Look(std::span<const std::uint8_t> bytes) {
  const auto edid = ostrine::ParseEdid(bytes);
  if (!edid) return;
  Require(edid->name.size() <= 13 && IsPrintable(edid->name));
  Require(edid->maker.empty() || edid->maker.size() == 3);
  const std::string caption = ostrine::MonitorCaption(*edid);
  Require(caption == edid->name || caption.size() == 7);
  if (!edid->preferred) return;
  Require(edid->preferred->width >= 1 && edid->preferred->width <= 4095);
  Require(edid->preferred->height >= 1 && edid->preferred->height <= 2 * 4095);
  Require(edid->preferred->rate >= 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Look({data, size});
  std::vector<std::uint8_t> sealed(data, data + size);
  if (size < 128) return 0;
  std::fill(sealed.begin() + 1, sealed.begin() + 7, std::uint8_t{0xFF});
  sealed[0] = sealed[7] = 0;
  const unsigned int sum = std::accumulate(sealed.begin(), sealed.begin() + 127, 0u);
  sealed[127] = static_cast<std::uint8_t>(256 - sum % 256);
  Require(ostrine::ParseEdid(sealed).has_value());
  Look(sealed);
  return 0;
}
