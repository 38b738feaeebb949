/// How arguments are written in a trace.
#include <array>
#include <cstdio>

#include "platform/unicode.h"
#include "simulator/guid_text.h"
#include "simulator/session.h"

namespace simulator {

std::string Shown(const std::wstring& text) { return velmora::unicode::Utf8FromWide(text); }
std::string Shown(const wchar_t* text) { return text == nullptr ? "null" : Shown(std::wstring(text)); }
std::string Shown(const char* text) { return text == nullptr ? "null" : std::string(text); }

std::string Shown(const GUID& id) {
  if (const char* name = SetupClassName(id)) return name;
  return GuidText(id);
}

std::string HexText(const Bytes& bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes.data) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
  }
  return text;
}

std::string Shown(const Bytes& bytes) { return HexText(bytes); }

std::string Shown(Hex hex) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "0x%llX", static_cast<unsigned long long>(hex.number));
  return text.data();
}

}  // namespace simulator
