#include "platform/linux/registry.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "platform/case_folding.h"
#include "platform/linux/adapter_name.h"
#include "platform/linux/handle_object.h"
#include "platform/linux/network_interface.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"

namespace velmora::os {
namespace {

constexpr std::uint32_t kErrorMoreData = 234;
constexpr std::uint32_t kTypeText = 1;
constexpr std::uint32_t kTypeNumber = 4;

/// The key of one card.
class CardKey : public HandleObject {
 public:
  CardKey(std::filesystem::path root, std::string interface)
      : root_(std::move(root)), interface_(std::move(interface)) {}
  const std::filesystem::path& Root() const noexcept { return root_; }
  const std::string& Interface() const noexcept { return interface_; }

 private:
  std::filesystem::path root_;
  std::string interface_;
};

struct Value {
  std::uint32_t type = 0;
  std::string bytes;
};

/// A text with its zero; nothing instead of an empty one.
std::optional<Value> TextValue(const std::string& text) {
  if (text.empty()) return std::nullopt;
  const std::u16string wide = unicode::Utf16FromUtf8(text);
  Value value{.type = kTypeText, .bytes = std::string((wide.size() + 1) * sizeof(char16_t), '\0')};
  std::memcpy(value.bytes.data(), wide.c_str(), value.bytes.size());
  return value;
}

std::optional<Value> MediumValue(Medium medium) {
  std::uint32_t number = 0;
  switch (medium) {
    case Medium::kWired:
      number = 14;
      break;
    case Medium::kWireless:
      number = 9;
      break;
    case Medium::kMobile:
      number = 8;
      break;
    case Medium::kNone:
      return std::nullopt;
  }
  Value value{.type = kTypeNumber, .bytes = std::string(sizeof number, '\0')};
  std::memcpy(value.bytes.data(), &number, sizeof number);
  return value;
}

std::optional<Value> ReadValue(const CardKey& card, std::wstring_view name) {
  if (EqualIgnoringCase(name, L"ComponentId")) return TextValue(ComponentId(card.Root(), card.Interface()));
  if (EqualIgnoringCase(name, L"*PhysicalMediaType")) {
    return MediumValue(MediumOf(card.Root(), card.Interface()));
  }
  if (EqualIgnoringCase(name, L"DeviceInstanceID")) {
    return TextValue(unicode::Utf8FromWide(InstanceIdOf(card.Interface())));
  }
  return std::nullopt;
}

}  // namespace

std::optional<unsigned int> CardNumberOf(std::wstring_view path) noexcept {
  constexpr std::wstring_view kClass =
      L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\";
  constexpr std::size_t kDigits = 4;
  if (path.size() != kClass.size() + kDigits) return std::nullopt;
  const std::wstring_view parent = path.substr(0, kClass.size());
  if (parent != kClass && !EqualIgnoringCase(parent, kClass)) return std::nullopt;
  unsigned int number = 0;
  for (const wchar_t digit : path.substr(kClass.size())) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<unsigned int>(digit - L'0');
  }
  return number;
}

std::uint32_t OpenRegistryKey(const std::filesystem::path& root, RegistryKey parent, const wchar_t* path,
                              RegistryKey& key) {
  if (parent != LocalMachine()) return kErrorInvalidHandle;
  const auto number = path != nullptr ? CardNumberOf(path) : std::nullopt;
  if (!number) return kErrorFileNotFound;
  auto cards = ListCards(root);
  if (*number >= cards.size()) return kErrorFileNotFound;
  key = HandleOf(std::make_unique<CardKey>(root, std::move(cards[*number])));
  return 0;
}

std::uint32_t RegOpenKeyExW(RegistryKey root, const wchar_t* path, std::uint32_t /*options*/,
                            std::uint32_t /*access*/, RegistryKey& key) {
  return OpenRegistryKey("/", root, path, key);
}

std::uint32_t RegQueryValueExW(RegistryKey key, const wchar_t* name, std::uint32_t* type, void* data,
                               std::uint32_t& size) {
  const auto* card = ObjectOf<CardKey>(key);
  if (card == nullptr) return kErrorInvalidHandle;
  const auto value = ReadValue(*card, name != nullptr ? name : L"");
  if (!value) return kErrorFileNotFound;
  const std::uint32_t room = size;
  if (type != nullptr) *type = value->type;
  size = static_cast<std::uint32_t>(value->bytes.size());
  if (data == nullptr) return 0;
  if (value->bytes.size() > room) return kErrorMoreData;
  std::memcpy(data, value->bytes.data(), value->bytes.size());
  return 0;
}

std::uint32_t RegCloseKey(RegistryKey key) { return CloseObject<CardKey>(key) ? 0 : kErrorInvalidHandle; }

}  // namespace velmora::os
