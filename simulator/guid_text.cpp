#include "simulator/guid_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "platform/ostrine/setup_class.h"

namespace simulator {
namespace {

struct NamedClass {
  GUID id;
  const char* name;
};

constexpr std::array kClasses{
    NamedClass{velmora::setup_class::kNet, "Net"},
    NamedClass{velmora::setup_class::kBluetooth, "Bluetooth"},
    NamedClass{velmora::setup_class::kBiometric, "Biometric"},
    NamedClass{velmora::setup_class::kMedia, "Media"},
    NamedClass{velmora::setup_class::kKeyboard, "Keyboard"},
    NamedClass{velmora::setup_class::kDisplay, "Display"},
    NamedClass{velmora::setup_class::kUsb, "USB"},
    NamedClass{velmora::setup_class::kSystem, "System"},
};

}  // namespace

bool IsSame(const GUID& left, const GUID& right) { return std::memcmp(&left, &right, sizeof left) == 0; }

const char* SetupClassName(const GUID& setup_class) {
  for (const auto& named : kClasses) {
    if (IsSame(named.id, setup_class)) return named.name;
  }
  return nullptr;
}

std::string SetupClassGuidText(std::string_view name) {
  const auto found = std::ranges::find(kClasses, name, &NamedClass::name);
  std::string text = found == kClasses.end() ? std::string() : GuidText(found->id);
  for (char& character : text) {
    if (character >= 'A' && character <= 'F') character = static_cast<char>(character - 'A' + 'a');
  }
  return text;
}

std::string GuidText(const GUID& id) {
  const auto& d = id.Data4;
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                static_cast<unsigned>(id.Data1), static_cast<unsigned>(id.Data2),
                static_cast<unsigned>(id.Data3), d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
  return text.data();
}

std::optional<GUID> ParseGuid(std::string_view text) {
  if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
  if (text.size() != 36) return std::nullopt;
  unsigned data1 = 0;
  std::array<unsigned, 2> words{};
  std::array<unsigned, 8> bytes{};
  const int read = std::sscanf(std::string(text).c_str(), "%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x", &data1,
                               words.data(), &words[1], bytes.data(), &bytes[1], &bytes[2], &bytes[3],
                               &bytes[4], &bytes[5], &bytes[6], &bytes[7]);
  if (read != 11) return std::nullopt;
  GUID id{};
  id.Data1 = data1;
  id.Data2 = static_cast<unsigned short>(words[0]);
  id.Data3 = static_cast<unsigned short>(words[1]);
  for (std::size_t i = 0; i < bytes.size(); ++i) id.Data4[i] = static_cast<unsigned char>(bytes[i]);
  return id;
}

}  // namespace simulator
