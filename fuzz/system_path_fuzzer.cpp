// Whatever a file is called: a name that is shown leads back to the very same bytes, and a folder to list is
// never the root by accident.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/linux/system_path.h"

namespace {

using namespace velmora::os;

void Require(bool condition) {
  if (!condition) std::abort();
}

void RequireRoundTrip(std::string_view name) {
  const std::string folder = "/f\\";
  wchar_t wide[260];
  char narrow[260];
  if (PutName(name, wide)) Require(SystemPath(L"/f\\" + std::wstring(wide)) == "/f/" + std::string(name));
  if (PutName(name, narrow)) Require(SystemPath(folder + narrow) == "/f/" + std::string(name));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const bool could_be_a_name = text.find_first_of(std::string_view("\0/", 2)) == std::string_view::npos;
  if (could_be_a_name) RequireRoundTrip(text);

  const auto path = SystemPath(text);
  Require(!path || (!path->empty() && path->find('\\') == std::string::npos));
  const auto folder = ListedFolder(text);
  if (folder && *folder == "/") Require(text == "///*.*" || text == "\\//*.*");
  return 0;
}
