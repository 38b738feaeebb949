// Any bytes as the elements that an access point announced, in memory of exactly their size, against a slow
// reading of the rule.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "network/wps_element.h"
#include "tests/support/naive_network.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::uint8_t> block(data, data + size);
  const auto texts = velmora::network::ReadAccessPointTexts(block);
  const auto expected = velmora::testing::NaiveElements(block);
  if (texts.manufacturer != expected.manufacturer || texts.model != expected.model) std::abort();
  return 0;
}
