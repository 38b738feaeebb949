// Any bytes as the service's list of access points, in memory of exactly their size, against a slow reading:
// as the whole list, and as the end of one from the first entry's offset on, so that short inputs reach that.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "network/access_point.h"
#include "network/wps_element.h"
#include "tests/support/naive_network.h"

namespace {

using Memory = std::vector<std::uint8_t>;

void Require(bool holds) {
  if (!holds) std::abort();
}

void Compare(const Memory& list) {
  const auto point = velmora::network::FirstAccessPoint(list);
  const auto expected = velmora::testing::NaiveFirstPoint(list);
  Require(point.has_value() == expected.has_value());
  if (!point) return;
  Require(std::ranges::equal(point->address, expected->address));
  Require(std::ranges::equal(point->elements, expected->elements));
  velmora::network::ReadAccessPointTexts(point->elements);
}

/// A list of one point whose offset, size and following bytes are the input.
Memory ListAround(std::span<const std::uint8_t> input) {
  Memory list(8 + 352);
  list[4] = 1;
  list.insert(list.end(), input.begin(), input.end());
  return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span input(data, size);
  Compare(Memory(input.begin(), input.end()));
  Compare(ListAround(input));
  velmora::network::HexDigits(input);
  return 0;
}
