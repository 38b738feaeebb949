#include "ostrine/common/smbios.h"

namespace ostrine::smbios {
namespace {

std::string_view AsText(Bytes bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

}  // namespace

std::string_view Structure::Text(std::size_t offset) const {
  const auto number = U8(offset);
  return number ? String(*number) : std::string_view();
}

std::string_view Structure::String(std::uint8_t number) const {
  if (number == 0) return {};
  std::string_view rest = strings_;
  for (unsigned int current = 1;; ++current) {
    const std::size_t length = rest.find('\0');
    // A text without its zero was cut by the table's end; an empty one marks the end of the texts.
    if (length == std::string_view::npos || length == 0) return {};
    if (current == number) return rest.substr(0, length);
    rest.remove_prefix(length + 1);
  }
}

std::optional<Structure> StructureWalker::Next() {
  if (left_ == 0 || rest_.size() < Structure::kHeaderSize) return std::nullopt;
  const std::size_t length = rest_[1];
  if (length < Structure::kHeaderSize || length > rest_.size()) {
    // Without a believable length nobody can tell where the next structure starts.
    rest_ = {};
    return std::nullopt;
  }
  const Bytes formatted = rest_.first(length);
  rest_ = rest_.subspan(length);

  // Two zeros end the texts, also where there are no texts at all.
  std::string_view strings = AsText(rest_);
  const std::size_t end = strings.find(std::string_view("\0\0", 2));
  if (end == std::string_view::npos) {
    rest_ = {};
  } else {
    strings = strings.substr(0, end + 1);
    rest_ = rest_.subspan(end + 2);
  }

  const Structure structure(formatted, strings);
  if (left_) {
    --*left_;
  } else if (structure.Type() == kEndOfTable) {
    rest_ = {};
  }
  return structure;
}

std::optional<Structure> FirstOfType(const TableView& table, std::uint8_t type) {
  StructureWalker walker(table);
  while (const auto structure = walker.Next()) {
    if (structure->Type() == type) return structure;
  }
  return std::nullopt;
}

}  // namespace ostrine::smbios
