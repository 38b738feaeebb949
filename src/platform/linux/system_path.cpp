#include "platform/linux/system_path.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr wchar_t kFirstEscape = 0xDC80;  // a byte below 0x80 is always a character
constexpr wchar_t kLastEscape = 0xDCFF;
constexpr wchar_t kEscapeBase = 0xDC00;

constexpr std::wstring_view kHostsOfWindows = L"C:/Windows/System32/drivers/etc/hosts";
constexpr std::string_view kHosts = "/etc/hosts";

bool IsEscape(wchar_t unit) { return unit >= kFirstEscape && unit <= kLastEscape; }

bool IsCharacter(wchar_t unit) {
  const auto code = static_cast<char32_t>(unit);
  return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

bool IsLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

/// Bytes of a wide path; nothing when it holds what is neither a character nor a byte that was none.
std::optional<std::string> BytesOf(std::wstring_view path) {
  std::string bytes;
  while (!path.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::find_if_not(path.begin(), path.end(), IsCharacter) - path.begin());
    bytes += unicode::Utf8FromWide(path.substr(0, plain));
    path.remove_prefix(plain);
    if (path.empty()) break;
    if (!IsEscape(path[0])) return std::nullopt;
    bytes.push_back(static_cast<char>(static_cast<unsigned char>(path[0] - kEscapeBase)));
    path.remove_prefix(1);
  }
  return bytes;
}

/// Takes the next character off the front of a name, or one byte that belongs to none.
wchar_t TakeUnit(std::string_view& name) noexcept {
  constexpr std::string_view kReplacementBytes = "\xEF\xBF\xBD";
  const std::string_view before = name;
  const char32_t character = unicode::TakeUtf8(name);
  if (character != unicode::kReplacement || before.starts_with(kReplacementBytes)) {
    return static_cast<wchar_t>(character);
  }
  name = before.substr(1);
  return static_cast<wchar_t>(kEscapeBase + static_cast<unsigned char>(before[0]));
}

bool CanBeNamed(std::string_view name) noexcept {
  return !name.empty() && name.find('\\') == std::string_view::npos;
}

}  // namespace

std::optional<std::string> SystemPath(std::string_view path) {
  if (path.empty() || path.starts_with("\\\\")) return std::nullopt;
  std::string converted(path);
  std::replace(converted.begin(), converted.end(), '\\', '/');
  const bool has_drive = converted.size() >= 2 && IsLetter(converted[0]) && converted[1] == ':';
  if (!has_drive) return converted;
  if (!EqualIgnoringCase(unicode::WideFromUtf8(converted), kHostsOfWindows)) return std::nullopt;
  return std::string(kHosts);
}

std::optional<std::string> SystemPath(std::wstring_view path) {
  const auto bytes = BytesOf(path);
  return bytes ? SystemPath(std::string_view(*bytes)) : std::nullopt;
}

std::optional<std::string> ListedFolder(std::string_view pattern) {
  constexpr std::string_view kEverything = "//*.*";
  if (!pattern.ends_with(kEverything)) return std::nullopt;
  pattern.remove_suffix(kEverything.size());
  return SystemPath(pattern);
}

std::optional<std::string> ListedFolder(std::wstring_view pattern) {
  const auto bytes = BytesOf(pattern);
  return bytes ? ListedFolder(std::string_view(*bytes)) : std::nullopt;
}

bool PutName(std::string_view name, std::span<char> output) noexcept {
  if (!CanBeNamed(name) || name.size() >= output.size()) return false;
  *std::copy(name.begin(), name.end(), output.begin()) = 0;
  return true;
}

bool PutName(std::string_view name, std::span<wchar_t> output) noexcept {
  if (!CanBeNamed(name)) return false;
  std::size_t written = 0;
  while (!name.empty()) {
    if (written + 1 >= output.size()) return false;
    output[written++] = TakeUnit(name);
  }
  output[written] = 0;
  return true;
}

}  // namespace velmora::os
