#include "velmora-report/text_output.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace report {
namespace {

/// How many bytes at the front of `text` are a control character: one, two for U+0080 to U+009F, or none.
std::size_t ControlSize(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x20 || first == 0x7F) return 1;
  return first == 0xC2 && text.size() > 1 && static_cast<unsigned char>(text[1]) < 0xA0 ? 2 : 0;
}

/// `text` with every control character made visible.
std::string Shown(std::string_view text) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string shown;
  while (!text.empty()) {
    const std::size_t control_size = ControlSize(text);
    if (control_size == 0) {
      shown += text[0];
      text.remove_prefix(1);
      continue;
    }
    const auto code = static_cast<unsigned char>(text[control_size - 1]);
    shown += {'\\', 'u', '0', '0', kDigits[code >> 4], kDigits[code & 0xF]};
    text.remove_prefix(control_size);
  }
  return shown;
}

/// "12.34" for 1234.
std::string ShownHundredths(std::int64_t number) {
  constexpr std::uint64_t kHundred = 100;
  const auto bits = static_cast<std::uint64_t>(number);
  const std::uint64_t magnitude = number < 0 ? 0 - bits : bits;
  const std::string places = std::to_string(magnitude % kHundred);
  return (number < 0 ? "-" : "") + std::to_string(magnitude / kHundred) + (places.size() < 2 ? ".0" : ".") +
         places;
}

struct ShowValue {
  std::string operator()(Absent) const { return "not reported"; }
  std::string operator()(const std::string& text) const { return Shown(text); }
  std::string operator()(std::uint64_t number) const { return std::to_string(number); }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(Hundredths value) const { return ShownHundredths(value.number); }
  std::string operator()(bool flag) const { return flag ? "yes" : "no"; }
};

/// One line a row, the values in one column.
void WriteRows(const Rows& rows, const std::string& indent, std::string& out) {
  std::size_t width = 0;
  for (const Row& row : rows) width = std::max(width, row.label.size());
  for (const Row& row : rows) {
    out += indent + row.label + std::string(width - row.label.size() + 2, ' ') +
           std::visit(ShowValue(), row.value);
    const bool has_unit = !row.unit.empty() && !std::holds_alternative<Absent>(row.value);
    out += (has_unit ? " " + row.unit : "") + "\n";
  }
}

void WriteList(const List& list, std::string& out) {
  for (std::size_t i = 0; i < list.items.size(); ++i) {
    out += "  " + list.item_title + " " + std::to_string(i + 1) + "\n";
    WriteRows(list.items[i], "    ", out);
  }
}

void WriteSection(const Section& section, std::string& out) {
  out += section.title + "\n";
  if (!section.verdict.empty()) out += "  " + Shown(section.verdict) + "\n";
  WriteRows(section.rows, "  ", out);
  for (const List& list : section.lists) WriteList(list, out);
}

}  // namespace

std::string WriteText(const Report& report) {
  std::string out;
  for (const Section& section : report) {
    if (!out.empty()) out += "\n";
    WriteSection(section, out);
  }
  return out;
}

}  // namespace report
