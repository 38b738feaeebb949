#include "ostrine/common/multi_text.h"

namespace ostrine {

std::vector<std::wstring> SplitMultiText(std::wstring_view list) {
  std::vector<std::wstring> texts;
  while (!list.empty() && list.front() != L'\0') {
    const std::wstring_view text = list.substr(0, list.find(L'\0'));
    texts.emplace_back(text);
    list.remove_prefix(text.size() == list.size() ? text.size() : text.size() + 1);
  }
  return texts;
}

}  // namespace ostrine
