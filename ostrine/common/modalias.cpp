#include "ostrine/common/modalias.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <type_traits>

namespace ostrine {
namespace {

/// Reads the fields of one modalias from its front. After the first misfit every further step fails.
class FieldReader {
 public:
  explicit FieldReader(std::string_view text) : rest_(text) {}

  FieldReader& Tag(std::string_view tag) {
    good_ = good_ && rest_.starts_with(tag);
    if (good_) rest_.remove_prefix(tag.size());
    return *this;
  }

  /// Exactly `digits` hexadecimal digits, whose value must fit the number.
  template <typename Number>
  FieldReader& Hex(std::size_t digits, Number& number) {
    static_assert(std::is_unsigned_v<Number> && sizeof(Number) <= sizeof(std::uint32_t));
    if (!good_ || rest_.size() < digits) return Fail();
    std::uint32_t value = 0;
    for (const char c : rest_.substr(0, digits)) {
      const int digit = DigitOf(c);
      if (digit < 0) return Fail();
      value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    if (value > std::numeric_limits<Number>::max()) return Fail();
    number = static_cast<Number>(value);
    rest_.remove_prefix(digits);
    return *this;
  }

  bool AtEnd() const { return good_ && rest_.empty(); }

 private:
  static int DigitOf(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
  }

  FieldReader& Fail() {
    good_ = false;
    return *this;
  }

  std::string_view rest_;
  bool good_ = true;
};

std::string_view WithoutLineEnd(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  return text;
}

Modalias ParsePci(FieldReader fields) {
  PciAlias alias;
  fields.Tag("v").Hex(8, alias.vendor).Tag("d").Hex(8, alias.device);
  fields.Tag("sv").Hex(8, alias.subsystem_vendor).Tag("sd").Hex(8, alias.subsystem_device);
  fields.Tag("bc")
      .Hex(2, alias.base_class)
      .Tag("sc")
      .Hex(2, alias.sub_class)
      .Tag("i")
      .Hex(2, alias.programming_interface);
  return fields.AtEnd() ? Modalias(alias) : Modalias();
}

Modalias ParseUsb(FieldReader fields) {
  UsbAlias alias;
  UsbClass& whole = alias.device_class;
  fields.Tag("v").Hex(4, alias.vendor).Tag("p").Hex(4, alias.product).Tag("d").Hex(4, alias.revision);
  fields.Tag("dc")
      .Hex(2, whole.base_class)
      .Tag("dsc")
      .Hex(2, whole.sub_class)
      .Tag("dp")
      .Hex(2, whole.protocol);
  if (fields.AtEnd()) return alias;

  UsbAlias::Interface part;
  UsbClass& own = part.interface_class;
  fields.Tag("ic").Hex(2, own.base_class).Tag("isc").Hex(2, own.sub_class).Tag("ip").Hex(2, own.protocol);
  fields.Tag("in").Hex(2, part.number);
  alias.own_interface = part;
  return fields.AtEnd() ? Modalias(alias) : Modalias();
}

Modalias ParseHdAudio(FieldReader fields) {
  HdAudioAlias alias;
  fields.Tag("v").Hex(4, alias.vendor).Hex(4, alias.device);
  fields.Tag("r").Hex(8, alias.revision).Tag("a").Hex(2, alias.function);
  return fields.AtEnd() ? Modalias(alias) : Modalias();
}

Modalias ParseHid(FieldReader fields) {
  HidAlias alias;
  fields.Tag("b").Hex(4, alias.bus).Tag("g").Hex(4, alias.group);
  fields.Tag("v").Hex(8, alias.vendor).Tag("p").Hex(8, alias.product);
  return fields.AtEnd() ? Modalias(alias) : Modalias();
}

Modalias ParseVirtio(FieldReader fields) {
  VirtioAlias alias;
  fields.Tag("d").Hex(8, alias.device).Tag("v").Hex(8, alias.vendor);
  return fields.AtEnd() ? Modalias(alias) : Modalias();
}

Modalias ParseSerio(FieldReader fields) {
  SerioAlias alias;
  fields.Tag("ty").Hex(2, alias.type).Tag("pr").Hex(2, alias.protocol);
  fields.Tag("id").Hex(2, alias.id).Tag("ex").Hex(2, alias.extra);
  return fields.AtEnd() ? Modalias(alias) : Modalias();
}

/// A firmware ID in capitals; empty if `text` is none.
std::string FirmwareName(std::string_view text) {
  std::string name;
  for (char c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    const bool is_allowed = (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    if (!is_allowed) return {};
    name.push_back(c);
  }
  return name;
}

/// Splits `text` into firmware IDs that each end in `separator`, the last one too; empty if one of them is
/// none.
std::vector<std::string> SplitIds(std::string_view text, char separator) {
  std::vector<std::string> ids;
  while (!text.empty()) {
    const std::size_t end = text.find(separator);
    if (end == std::string_view::npos) return {};
    ids.push_back(FirmwareName(text.substr(0, end)));
    if (ids.back().empty()) return {};
    text.remove_prefix(end + 1);
  }
  return ids;
}

Modalias ParseAcpi(std::string_view text) {
  AcpiAlias alias{SplitIds(text, ':')};
  return alias.ids.empty() ? Modalias() : Modalias(std::move(alias));
}

}  // namespace

Modalias ParseModalias(std::string_view text) {
  const std::string_view line = WithoutLineEnd(text);
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return {};
  const std::string_view bus = line.substr(0, colon);
  const std::string_view fields = line.substr(colon + 1);
  if (bus == "pci") return ParsePci(FieldReader(fields));
  if (bus == "usb") return ParseUsb(FieldReader(fields));
  if (bus == "hdaudio") return ParseHdAudio(FieldReader(fields));
  if (bus == "hid") return ParseHid(FieldReader(fields));
  if (bus == "virtio") return ParseVirtio(FieldReader(fields));
  if (bus == "serio") return ParseSerio(FieldReader(fields));
  if (bus == "acpi") return ParseAcpi(fields);
  return {};
}

std::vector<std::string> ParseFirmwareId(std::string_view text) {
  constexpr std::string_view kStart = "PNP: ";
  const std::string_view line = WithoutLineEnd(text);
  if (!line.starts_with(kStart)) return {};
  return SplitIds(std::string(line.substr(kStart.size())) + ' ', ' ');
}

}  // namespace ostrine
