#include "ostrine/windows/device_set.h"

#include <cfgmgr32.h>

#include <string_view>

#include "ostrine/common/multi_text.h"
#include "ostrine/windows/property_keys.h"

namespace ostrine {
namespace {

/// No property of a device is longer; what says so is not believed.
constexpr DWORD kLongestProperty = 1 << 20;

/// The characters of a property and its type, from `read(type, buffer, size, needed)`. The size may be
/// another at the second call, so a size that grew is tried again.
template <class Type, class Read>
std::wstring ReadCharacters(Type& type, Read read) {
  constexpr int kTries = 3;
  std::wstring characters;
  for (int i = 0; i < kTries; ++i) {
    DWORD needed = 0;
    const auto room = static_cast<DWORD>(characters.size() * sizeof(wchar_t));
    if (read(type, reinterpret_cast<BYTE*>(characters.data()), room, needed)) {
      characters.resize(needed < room ? needed / sizeof(wchar_t) : characters.size());
      return characters;
    }
    if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed <= room || needed > kLongestProperty) break;
    characters.resize((needed + sizeof(wchar_t) - 1) / sizeof(wchar_t));
  }
  return {};
}

std::wstring RegistryCharacters(HDEVINFO set, SP_DEVINFO_DATA data, DWORD property, DWORD& type) {
  return ReadCharacters(type, [&](DWORD& stored_type, BYTE* buffer, DWORD size, DWORD& needed) {
    return SetupDiGetDeviceRegistryPropertyW(set, &data, property, &stored_type, size != 0 ? buffer : nullptr,
                                             size, &needed) != FALSE;
  });
}

std::wstring UpToZero(std::wstring text) {
  if (const auto end = text.find(L'\0'); end != std::wstring::npos) text.resize(end);
  return text;
}

}  // namespace

std::wstring Device::Text(DWORD property) const {
  DWORD type = REG_NONE;
  std::wstring text = RegistryCharacters(set_, data_, property, type);
  return type == REG_SZ ? UpToZero(std::move(text)) : std::wstring();
}

std::vector<std::wstring> Device::Texts(DWORD property) const {
  DWORD type = REG_NONE;
  const std::wstring list = RegistryCharacters(set_, data_, property, type);
  return type == REG_MULTI_SZ ? SplitMultiText(list) : std::vector<std::wstring>();
}

std::wstring Device::Text(const DEVPROPKEY& key) const {
  SP_DEVINFO_DATA data = data_;
  DEVPROPTYPE type = DEVPROP_TYPE_EMPTY;
  std::wstring text = ReadCharacters(type, [&](DEVPROPTYPE& stored, BYTE* buffer, DWORD size, DWORD& needed) {
    return SetupDiGetDevicePropertyW(set_, &data, &key, &stored, size != 0 ? buffer : nullptr, size, &needed,
                                     0) != FALSE;
  });
  return type == DEVPROP_TYPE_STRING ? UpToZero(std::move(text)) : std::wstring();
}

template <class Value>
std::optional<Value> Device::Fixed(const DEVPROPKEY& key, DEVPROPTYPE type) const {
  SP_DEVINFO_DATA data = data_;
  DEVPROPTYPE stored = DEVPROP_TYPE_EMPTY;
  Value value{};
  if (!SetupDiGetDevicePropertyW(set_, &data, &key, &stored, reinterpret_cast<BYTE*>(&value), sizeof value,
                                 nullptr, 0)) {
    return std::nullopt;
  }
  return stored == type ? std::optional(value) : std::nullopt;
}

std::optional<std::uint32_t> Device::Number(const DEVPROPKEY& key) const {
  return Fixed<std::uint32_t>(key, DEVPROP_TYPE_UINT32);
}

std::optional<FILETIME> Device::Time(const DEVPROPKEY& key) const {
  return Fixed<FILETIME>(key, DEVPROP_TYPE_FILETIME);
}

std::wstring Device::InstanceId() const {
  SP_DEVINFO_DATA data = data_;
  wchar_t id[MAX_DEVICE_ID_LEN + 1] = {};
  const BOOL got = SetupDiGetDeviceInstanceIdW(set_, &data, id, MAX_DEVICE_ID_LEN, nullptr);
  return got != FALSE ? std::wstring(id) : std::wstring();
}

std::vector<std::uint8_t> Device::DriverValue(const wchar_t* name) const {
  constexpr DWORD kRoom = 64;  // for numbers, which is what is asked for
  SP_DEVINFO_DATA data = data_;
  const HKEY key = SetupDiOpenDevRegKey(set_, &data, DICS_FLAG_GLOBAL, 0, DIREG_DRV, KEY_QUERY_VALUE);
  if (key == INVALID_HANDLE_VALUE) return {};
  std::vector<std::uint8_t> bytes(kRoom);
  DWORD size = kRoom;
  const LSTATUS status = RegQueryValueExW(key, name, nullptr, nullptr, bytes.data(), &size);
  RegCloseKey(key);
  bytes.resize(status == ERROR_SUCCESS && size <= kRoom ? size : 0);
  return bytes;
}

std::wstring Device::FirstHardwareId() const {
  auto ids = Texts(SPDRP_HARDWAREID);
  return ids.empty() ? std::wstring() : std::move(ids.front());
}

std::uint32_t Device::ProblemCode() const {
  if (const auto code = Number(property_key::kProblemCode)) return *code;
  ULONG status = 0;
  ULONG problem = 0;
  const CONFIGRET result = CM_Get_DevNode_Status(&status, &problem, data_.DevInst, 0);
  if (result == CR_NO_SUCH_DEVINST || result == CR_NO_SUCH_DEVNODE) return CM_PROB_PHANTOM;
  return result == CR_SUCCESS && (status & DN_HAS_PROBLEM) != 0 ? problem : 0;
}

DWORD Device::Remove() {
  SP_REMOVEDEVICE_PARAMS everywhere{};
  everywhere.ClassInstallHeader.cbSize = sizeof everywhere.ClassInstallHeader;
  everywhere.ClassInstallHeader.InstallFunction = DIF_REMOVE;
  everywhere.Scope = DI_REMOVEDEVICE_GLOBAL;
  // A removal is one from every hardware profile anyway; a system that cannot be told so says it without an
  // error.
  SetLastError(ERROR_SUCCESS);
  if (!SetupDiSetClassInstallParamsW(set_, &data_, &everywhere.ClassInstallHeader, sizeof everywhere)) {
    if (const DWORD error = GetLastError(); error != ERROR_SUCCESS) return error;
  }
  SetLastError(ERROR_SUCCESS);
  if (!SetupDiCallClassInstaller(DIF_REMOVE, set_, &data_)) {
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? error : static_cast<DWORD>(ERROR_GEN_FAILURE);
  }
  SP_DEVINSTALL_PARAMS_W parameters{};
  parameters.cbSize = sizeof parameters;
  const bool stays = SetupDiGetDeviceInstallParamsW(set_, &data_, &parameters) != FALSE &&
                     (parameters.Flags & (DI_NEEDREBOOT | DI_NEEDRESTART)) != 0;
  return stays ? ERROR_SUCCESS_REBOOT_REQUIRED : ERROR_SUCCESS;
}

DeviceSet::DeviceSet(const GUID& setup_class) noexcept
    : set_(SetupDiGetClassDevsW(&setup_class, nullptr, nullptr, DIGCF_PRESENT)) {}

DeviceSet::DeviceSet() noexcept
    : set_(SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES)) {}

DeviceSet::~DeviceSet() {
  if (set_ != INVALID_HANDLE_VALUE) SetupDiDestroyDeviceInfoList(set_);
}

bool DeviceSet::Next(DWORD index, SP_DEVINFO_DATA& data) const noexcept {
  return set_ != INVALID_HANDLE_VALUE && SetupDiEnumDeviceInfo(set_, index, &data) != FALSE;
}

}  // namespace ostrine
