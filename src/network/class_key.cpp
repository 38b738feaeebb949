#include "network/class_key.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "platform/os/registry.h"
#include "platform/os/text_tests.h"
#include "platform/unicode.h"

namespace velmora::network {
namespace {

/// An open key; null when it does not open.
class Key {
 public:
  explicit Key(const std::wstring& path) {
    os::RegistryKey opened = nullptr;
    if (os::RegOpenKeyExW(os::LocalMachine(), path.c_str(), 0, os::kKeyRead, opened) == 0) key_ = opened;
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (key_ != nullptr) os::RegCloseKey(key_);
  }

  bool IsOpen() const { return key_ != nullptr; }

  /// Reads at most `size` bytes of a value to `data`; false when it is not there or longer.
  bool Read(const wchar_t* name, void* data, std::uint32_t size) const {
    return os::RegQueryValueExW(key_, name, nullptr, data, size) == 0;
  }

 private:
  os::RegistryKey key_ = nullptr;
};

/// The text of the value by which the key is matched; empty when it cannot be read.
std::wstring MatchedText(const Key& key, KeyMatch match) {
  constexpr std::uint32_t kReadSize = 260;  // in bytes: longer texts are not read
  std::array<char16_t, kReadSize>
      buffer{};  // twice as long, so that a text without its zero ends all the same
  if (!key.Read(ValueNameOf(match), buffer.data(), kReadSize)) return {};
  const auto end = std::ranges::find(buffer, u'\0');
  return unicode::WideFromUtf16({buffer.begin(), end});
}

}  // namespace

bool ReadMedium(const std::wstring& key_path, KeyMatch match, const std::wstring& id, unsigned long& medium) {
  const Key key(key_path);
  if (!key.IsOpen()) return false;
  const std::wstring text = MatchedText(key, match);
  if (os::StrStrIW(id.c_str(), text.c_str()) == nullptr) return false;  // an empty text is in no ID
  auto value = static_cast<std::uint32_t>(medium);
  if (!key.Read(L"*PhysicalMediaType", &value, sizeof value)) return false;
  medium = value;
  return true;
}

bool FindMedium(KeyMatch match, const std::wstring& id, unsigned long& medium) {
  for (int number = 0; number < kClassKeyCount; ++number) {
    if (ReadMedium(ClassKeyPath(number), match, id, medium)) return true;
  }
  return false;
}

}  // namespace velmora::network
