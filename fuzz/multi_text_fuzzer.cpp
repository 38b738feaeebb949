// Any characters as a list of texts: the texts that are found, joined again, are how the list begins.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ostrine/common/multi_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring list(data, data + size);
  std::wstring joined;
  for (const auto& text : ostrine::SplitMultiText(list)) {
    if (text.empty() || text.find(L'\0') != std::wstring::npos) std::abort();
    joined += text + L'\0';
  }
  // Only the last text may lack its zero, and then the list ends with it; else a zero or the end follows.
  const bool is_cut = joined.size() == list.size() + 1;
  if (is_cut) joined.pop_back();
  if (list.compare(0, joined.size(), joined) != 0) std::abort();
  if (!is_cut && joined.size() < list.size() && list[joined.size()] != L'\0') std::abort();
  return 0;
}
