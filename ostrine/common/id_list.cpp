#include "ostrine/common/id_list.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace ostrine {
namespace {

std::string_view TakeLine(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::optional<unsigned> DigitValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
  return std::nullopt;
}

/// Takes four hexadecimal digits and the blanks after them.
std::optional<std::uint16_t> TakeNumber(std::string_view& line) {
  constexpr std::size_t kDigits = 4;
  if (line.size() <= kDigits || line[kDigits] != ' ') return std::nullopt;
  unsigned value = 0;
  for (const char c : line.substr(0, kDigits)) {
    const auto digit = DigitValue(c);
    if (!digit) return std::nullopt;
    value = value << 4 | *digit;
  }
  line.remove_prefix(std::min(line.find_first_not_of(' ', kDigits), line.size()));
  return static_cast<std::uint16_t>(value);
}

bool TakeNumber(std::string_view& line, std::uint16_t wanted) { return TakeNumber(line) == wanted; }

/// Goes down a list line by line: into the vendor that is looked for, into its device, to the subsystem.
class Search {
 public:
  explicit Search(const ListedNumbers& numbers) : numbers_(numbers) {}

  /// False once nothing that is looked for can follow.
  bool Continue(std::string_view line) {
    const std::size_t depth = std::min(line.find_first_not_of('\t'), line.size());
    line.remove_prefix(depth);
    if (depth == 0) return ContinueAt(in_vendor_, numbers_.vendor, names_.vendor, line);
    if (depth == 1 && in_vendor_) return ContinueAt(in_device_, numbers_.device, names_.device, line);
    return depth != 2 || !in_device_ || !IsSubsystem(line);
  }

  const ListedNames& names() const { return names_; }

 private:
  /// Every vendor, and every device of a vendor, stands there once.
  static bool ContinueAt(bool& inside, std::uint16_t number, std::string_view& name, std::string_view line) {
    if (inside) return false;
    inside = TakeNumber(line, number);
    if (inside) name = line;
    return true;
  }

  bool IsSubsystem(std::string_view line) {
    if (numbers_.subsystem_vendor == 0 || !TakeNumber(line, numbers_.subsystem_vendor) ||
        !TakeNumber(line, numbers_.subsystem_device)) {
      return false;
    }
    names_.subsystem = line;
    return true;
  }

  const ListedNumbers& numbers_;
  ListedNames names_;
  bool in_vendor_ = false;
  bool in_device_ = false;
};

struct ListLine {
  std::size_t next = 0;  ///< where the line behind it begins
  std::size_t start = 0;
  std::size_t depth = 0;
  std::string_view text;  ///< without the tabulators before it
};

/// A part of a list, from the beginning of a line up to the lines that begin at its end or behind it.
struct ListPart {
  std::size_t start = 0;
  std::size_t end = 0;

  std::size_t Size() const { return end > start ? end - start : 0; }
};

/// Looks at parts of a list.
class Halving {
 public:
  explicit Halving(ListInPieces& list) : list_(list) {}

  /// The first line of the part that is at most so deep.
  std::optional<ListLine> NextLine(ListPart part, std::size_t deepest) {
    std::string_view piece;
    while (part.Size() > 0) {
      const bool is_asked_for = piece.empty();
      if (is_asked_for) piece = list_.From(part.start);
      if (piece.empty()) break;
      const std::size_t end = piece.find('\n');
      if (end == std::string_view::npos && !is_asked_for) {
        piece = {};  // not there as a whole; what was asked for is, or is the list's last
        continue;
      }
      const std::size_t size = std::min(end, piece.size() - 1) + 1;
      if (!IsDeeper(piece.substr(0, size), deepest)) {
        const ListLine line = ReadLine(piece.substr(0, size), part.start);
        if (line.depth <= deepest) return line;
      }
      piece.remove_prefix(size);
      part.start += size;
    }
    return std::nullopt;
  }

  /// The line of `depth` with the number, in a part in which no line is less deep and the numbers rise; its
  /// text is the name. The part ends sooner then: where a higher number was seen, if one was.
  std::optional<ListLine> FindNumber(ListPart& part, std::size_t depth, std::uint16_t number) {
    ListPart left = part;
    while (left.Size() > kNear) {
      const auto [place, line, found] = LookInto(left, depth);
      if (line && found == number) return line;
      if (line && found < number) {
        left.start = line->next;
      } else {
        if (line) part.end = line->start;
        left.end = place;
      }
    }
    return FindNumberNear(left, depth, number);
  }

  /// The same from line to line, whatever the order.
  std::optional<ListLine> FindNumberNear(ListPart part, std::size_t depth, std::uint16_t number) {
    for (;;) {
      const auto [line, found] = NextNumber(part, depth);
      if (!line || found == number) return line;
      part.start = line->next;
    }
  }

  /// Where the first line at most so deep begins in the part; its end when there is none.
  std::size_t EndOfPart(ListPart part, std::size_t deepest) {
    const ListPart beginning{part.start, std::min(part.start + kNear, part.end)};
    if (const auto line = NextLine(beginning, deepest)) return line->start;
    std::size_t end = part.end;
    while (part.Size() > kNear) {
      const std::size_t middle = part.start + part.Size() / 2;
      if (const auto line = NextLine({LineFrom(middle), part.end}, deepest)) end = line->start;
      part.end = middle;
    }
    const auto line = NextLine(part, deepest);
    return line ? line->start : end;
  }

 private:
  /// A part that it takes longer to halve than to go through.
  static constexpr std::size_t kNear = 4096;

  struct Numbered {
    std::optional<ListLine> line;  ///< its text is what stands behind the number
    std::uint16_t number = 0;
  };
  struct Look {
    std::size_t place = 0;
    std::optional<ListLine> line;  ///< the first from that place on
    std::uint16_t number = 0;
  };

  /// By its first characters, which tell it of most lines.
  static bool IsDeeper(std::string_view line, std::size_t deepest) {
    return line.size() > deepest &&
           line.substr(0, deepest + 1).find_first_not_of('\t') == std::string_view::npos;
  }

  /// The line at `start`, of which `text` is all; deeper than any when it is empty or a comment.
  static ListLine ReadLine(std::string_view text, std::size_t start) {
    ListLine line{.next = start + text.size(), .start = start};
    line.text = TakeLine(text);
    const bool is_none = line.text.empty() || line.text.front() == '#';
    line.depth =
        is_none ? std::string_view::npos : std::min(line.text.find_first_not_of('\t'), line.text.size());
    line.text.remove_prefix(std::min(line.depth, line.text.size()));
    return line;
  }

  /// Looks for a number at the middle of the part, or not too far from it: some have so much below them that
  /// it takes long to come to the next.
  Look LookInto(const ListPart& part, std::size_t depth) {
    constexpr std::size_t kEighths[] = {4, 2, 6, 3, 5, 1, 7};
    for (const std::size_t eighths : kEighths) {
      const std::size_t place = part.start + part.Size() / 8 * eighths;
      const std::size_t start = LineFrom(place);
      const auto [line, number] = NextNumber({start, std::min(start + kNear / 2, part.end)}, depth);
      if (line) return {place, line, number};
    }
    const std::size_t middle = part.start + part.Size() / 2;
    const auto [line, number] = NextNumber({LineFrom(middle), part.end}, depth);
    return {middle, line, number};
  }

  Numbered NextNumber(ListPart part, std::size_t depth) {
    for (;;) {
      auto line = NextLine(part, depth);
      if (!line) return {};
      part.start = line->next;
      if (line->depth != depth) continue;
      if (const auto number = TakeNumber(line->text)) return {line, *number};
    }
  }

  /// The beginning of the first line from `offset` on, which is not 0.
  std::size_t LineFrom(std::size_t offset) {
    const std::string_view rest = list_.From(offset - 1);
    const std::size_t end = rest.find('\n');
    return end == std::string_view::npos ? list_.Size() : offset + end;
  }

  ListInPieces& list_;
};

std::string FindSubsystem(Halving& list, ListPart part, const ListedNumbers& numbers) {
  constexpr std::size_t kDepth = 2;
  while (numbers.subsystem_vendor != 0) {
    auto line = list.NextLine(part, kDepth);
    if (!line || line->depth < kDepth) break;
    if (TakeNumber(line->text, numbers.subsystem_vendor) &&
        TakeNumber(line->text, numbers.subsystem_device)) {
      return std::string(line->text);
    }
    part.start = line->next;
  }
  return {};
}

}  // namespace

ListedNames FindListedNames(std::string_view list, const ListedNumbers& numbers) noexcept {
  Search search(numbers);
  while (!list.empty()) {
    const std::string_view line = TakeLine(list);
    if (line.empty() || line.front() == '#') continue;
    if (!search.Continue(line)) break;
  }
  return search.names();
}

std::optional<FoundNames> FindNamesByHalves(ListInPieces& list, const ListedNumbers& numbers) {
  Halving halving(list);
  ListPart part{0, list.Size()};
  const auto vendor = halving.FindNumber(part, 0, numbers.vendor);
  if (!vendor) return std::nullopt;
  FoundNames names{.vendor = std::string(vendor->text), .device = {}, .subsystem = {}};
  part.start = vendor->next;
  const ListPart devices{part.start, halving.EndOfPart(part, 0)};
  ListPart searched = devices;
  auto device = halving.FindNumber(searched, 1, numbers.device);
  if (!device) device = halving.FindNumberNear(devices, 1, numbers.device);
  if (!device) return names;
  names.device = std::string(device->text);
  names.subsystem = FindSubsystem(halving, {device->next, devices.end}, numbers);
  return names;
}

}  // namespace ostrine
