// Any text as a list of registered names, asked for numbers that its first bytes give. What is found must be
// a part of one line of the list, and a name below another may only be found with it. By halves the same is
// found whatever the pieces, and nothing that the whole list does not have.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
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

/// Shows `extra` bytes more than it must.
class Pieces : public ostrine::ListInPieces {
 public:
  Pieces(std::string_view text, std::size_t extra) : text_(text), extra_(extra) {}
  std::size_t Size() const override { return text_.size(); }
  std::string_view From(std::size_t offset) override {
    const std::size_t end = std::min(text_.find('\n', offset), text_.size() - 1) + 1;
    return text_.substr(offset, end - offset + extra_);
  }

 private:
  std::string_view text_;
  std::size_t extra_;
};

void RequireTheSameByHalves(std::string_view list, const ostrine::ListedNumbers& numbers, bool has_vendor) {
  Pieces few(list, 0);
  Pieces all(list, list.size());
  const auto names = ostrine::FindNamesByHalves(few, numbers);
  const auto same = ostrine::FindNamesByHalves(all, numbers);
  Require(names.has_value() == same.has_value());
  if (!names) return;
  Require(has_vendor);
  Require(names->vendor == same->vendor && names->device == same->device &&
          names->subsystem == same->subsystem);
  for (const std::string& name : {names->vendor, names->device, names->subsystem}) {
    Require(list.find(name) != std::string_view::npos && name.find('\n') == std::string::npos);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kNumbers = 8;
  if (size < kNumbers) return 0;
  const auto number = [data](std::size_t at) {
    return static_cast<std::uint16_t>(data[at] << 8 | data[at + 1]);
  };
  const std::string_view list(reinterpret_cast<const char*>(data) + kNumbers, size - kNumbers);
  const ostrine::ListedNumbers numbers{number(0), number(2), number(4), number(6)};
  const ostrine::ListedNames names = ostrine::FindListedNames(list, numbers);
  for (const std::string_view name : {names.vendor, names.device, names.subsystem}) RequireWithin(name, list);
  Require(names.subsystem.empty() || names.device.data() < names.subsystem.data());
  Require(names.device.empty() || names.vendor.data() == nullptr ||
          names.vendor.data() < names.device.data());
  RequireTheSameByHalves(list, numbers, names.vendor.data() != nullptr);
  return 0;
}
