#include "platform/process_caption.h"

namespace velmora {

std::string ProcessCaption(std::string_view path, std::string_view name) {
  return std::string(path.empty() ? name : path.substr(path.rfind('/') + 1));
}

std::string_view ProgramPath(std::string_view link) noexcept {
  constexpr std::string_view kNoLongerThere = " (deleted)";
  if (link.ends_with(kNoLongerThere)) link.remove_suffix(kNoLongerThere.size());
  return link;
}

}  // namespace velmora
