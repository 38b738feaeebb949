// Any bytes as an INF file, in pieces whose sizes its first bytes give. The scan must find the line that a
// naive reading of the whole file finds.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "devices/inf_source.h"
#include "tests/support/naive_inf.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velmora::devices;
  constexpr std::size_t kSizes = 4;
  if (size < kSizes) return 0;
  const std::string file(reinterpret_cast<const char*>(data) + kSizes, size - kSizes);

  ForeignModelScan scan;
  std::string_view rest = file;
  for (std::size_t piece = 0; !rest.empty(); ++piece) {
    const std::size_t length = std::min<std::size_t>(rest.size(), data[piece % kSizes] + 1u);
    if (!scan.Take(rest.substr(0, length))) break;
    rest.remove_prefix(length);
  }
  auto expected = test::NaiveForeignLine(file);
  if (expected && expected->size() > kMostBytesOfLine) expected->resize(kMostBytesOfLine);
  if (scan.Finish() != expected) std::abort();

  std::wstring name(file.begin(), std::find(file.begin(), file.end(), '\n'));
  if (IsBareFileName(name) && name.find_first_of(L"\\/:") != std::wstring::npos) std::abort();
  return 0;
}
