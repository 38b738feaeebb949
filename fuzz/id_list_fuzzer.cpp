// Any text as a list of registered names, asked for numbers that its first bytes give. What is found must be
// a part of one line of the list, and a name below another may only be found with it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ostrine/common/id_list.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void RequireWithin(std::string_view name, std::string_view list) {
  if (name.empty()) return;
  Require(name.data() >= list.data() && name.data() + name.size() <= list.data() + list.size());
  Require(name.find('\n') == std::string_view::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kNumbers = 8;
  if (size < kNumbers) return 0;
  const auto number = [data](std::size_t at) {
    return static_cast<std::uint16_t>(data[at] << 8 | data[at + 1]);
  };
  const std::string_view list(reinterpret_cast<const char*>(data) + kNumbers, size - kNumbers);
  const ostrine::ListedNames names =
      ostrine::FindListedNames(list, {number(0), number(2), number(4), number(6)});
  for (const std::string_view name : {names.vendor, names.device, names.subsystem}) RequireWithin(name, list);
  Require(names.subsystem.empty() || names.device.data() < names.subsystem.data());
  Require(names.device.empty() || names.vendor.data() == nullptr ||
          names.vendor.data() < names.device.data());
  return 0;
}
