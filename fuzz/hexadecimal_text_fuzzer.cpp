// Any text as a hexadecimal number: it must be read as the standard library's streams read it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "bluetooth/hexadecimal_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  std::istringstream stream(text);
  std::uint32_t expected = 0;
  stream >> std::hex >> expected;
  if (velmora::bluetooth::ReadHexadecimal(text) != expected) std::abort();
  return 0;
}
