/// The registry of a machine.
#include "platform/os/registry.h"

#include <algorithm>
#include <cstring>

#include "platform/case_folding.h"
#include "platform/unicode.h"
#include "simulator/failing.h"

using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::Hex;
using simulator::RegistryValue;

namespace velmora::os {
namespace {

constexpr Error kMoreData = 234;

struct OpenedKey {
  std::string path;
};

/// The element with that name in either letter case; null if there is none.
template <class Element>
Element* FindNamed(std::map<std::string, Element>& elements, const std::wstring& name) {
  const auto found = std::ranges::find_if(elements, [&](const auto& entry) {
    return EqualIgnoringCase(unicode::WideFromUtf8(entry.first), name);
  });
  return found == elements.end() ? nullptr : &found->second;
}

std::string StoredBytes(const RegistryValue& value) {
  if (value.raw) return {value.raw->data.begin(), value.raw->data.end()};
  if (value.number) {
    std::string bytes(sizeof *value.number, '\0');
    std::memcpy(bytes.data(), &*value.number, bytes.size());
    return bytes;
  }
  const std::u16string text = unicode::Utf16FromUtf8(value.text.value_or(""));
  std::string bytes((text.size() + 1) * sizeof(char16_t), '\0');
  std::memcpy(bytes.data(), text.c_str(), bytes.size());
  return bytes;
}

/// The value as it is stored; none, and the reason in `error`.
const RegistryValue* FindValue(Entered& call, RegistryKey key, const wchar_t* name, Error& error) {
  error = kErrorInvalidHandle;
  const auto* opened = call.session.Find<OpenedKey>(key, "RegQueryValueExW");
  auto& registry = call.session.machine.registry;
  if (opened == nullptr || !registry) return nullptr;
  error = kErrorFileNotFound;
  const auto script = registry->find(opened->path);
  if (script == registry->end()) return nullptr;
  const RegistryValue* value = FindNamed(script->second.values, name == nullptr ? L"" : name);
  if (value != nullptr) error = value->read_error;
  return error == 0 ? value : nullptr;
}

}  // namespace

std::uint32_t RegOpenKeyExW(RegistryKey root, const wchar_t* path, std::uint32_t options,
                            std::uint32_t access, RegistryKey& key) {
  Entered call("RegOpenKeyExW", path, options, Hex{access});
  if (call.Fails()) return simulator::kInjectedError;
  auto& registry = call.session.machine.registry;
  if (!registry) return simulator::Unscripted(call.session, "RegOpenKeyExW", "the registry");
  if (root != LocalMachine()) return kErrorInvalidHandle;
  const auto found = std::ranges::find_if(*registry, [&](const auto& entry) {
    return EqualIgnoringCase(unicode::WideFromUtf8(entry.first), path);
  });
  if (found == registry->end()) return kErrorFileNotFound;
  if (found->second.open_error != 0) return found->second.open_error;
  key = call.session.Open("RegCloseKey", OpenedKey{found->first});
  return 0;
}

std::uint32_t RegQueryValueExW(RegistryKey key, const wchar_t* name, std::uint32_t* type, void* data,
                               std::uint32_t& size) {
  Entered call("RegQueryValueExW", name, size);
  if (call.Fails()) return simulator::kInjectedError;
  if (call.fault == Fault::kEmpty) {
    size = 0;
    return 0;
  }
  Error error = 0;
  const RegistryValue* value = FindValue(call, key, name, error);
  if (value == nullptr) return error;
  const std::string bytes = call.fault == Fault::kUnterminated ? std::string(size, 'A') : StoredBytes(*value);
  const std::uint32_t room = size;
  if (type != nullptr) *type = value->type;
  size = static_cast<std::uint32_t>(bytes.size());
  if (data == nullptr) return 0;
  if (bytes.size() > room) return kMoreData;
  std::memcpy(data, bytes.data(), bytes.size());
  return 0;
}

std::uint32_t RegCloseKey(RegistryKey key) {
  const Closing call("RegCloseKey");
  const bool was_open = call.session.Close(key, "RegCloseKey");
  return was_open && !call.Fails() ? 0 : kErrorInvalidHandle;
}

}  // namespace velmora::os
