#include "tests/support/windows/fake_device.h"

#include <initguid.h>
// The property keys are defined by the header above.
#include <devpkey.h>
#include <devpropdef.h>
#include <gtest/gtest.h>
#include <setupapi.h>

#include <algorithm>
#include <array>
#include <utility>

// The import library has it, the header does not.
extern "C" BOOL WINAPI SetupDiSetDevicePropertyW(HDEVINFO, PSP_DEVINFO_DATA, const DEVPROPKEY*, DEVPROPTYPE,
                                                 const BYTE*, DWORD, DWORD);

namespace windows_support {
namespace {

const std::wstring kTree = L"System\\CurrentControlSet\\Enum";

/// A set that holds this one device.
class SingleDevice {
 public:
  explicit SingleDevice(const GUID& setup_class) : set_(SetupDiCreateDeviceInfoList(&setup_class, nullptr)) {
    data_.cbSize = sizeof data_;
  }
  SingleDevice(const SingleDevice&) = delete;
  SingleDevice& operator=(const SingleDevice&) = delete;
  ~SingleDevice() { SetupDiDestroyDeviceInfoList(set_); }

  bool Create(const FakeDevice& device) {
    return SetupDiCreateDeviceInfoW(set_, device.instance_id.c_str(), &device.setup_class, nullptr, nullptr,
                                    0, &data_);
  }
  bool Open(const FakeDevice& device) {
    return SetupDiOpenDeviceInfoW(set_, device.instance_id.c_str(), nullptr, 0, &data_);
  }

  void SetText(DWORD property, const std::wstring& text) {
    if (text.empty()) return;
    SetBytes(property, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  }
  void SetTexts(DWORD property, const std::vector<std::wstring>& texts) {
    if (texts.empty()) return;
    std::wstring list;
    for (const auto& text : texts) list += text + L'\0';
    list += L'\0';
    SetBytes(property, list.data(), list.size() * sizeof(wchar_t));
  }
  template <class Value>
  void Set(const DEVPROPKEY& key, DEVPROPTYPE type, const Value* value, std::size_t size) {
    EXPECT_TRUE(SetupDiSetDevicePropertyW(set_, &data_, &key, type, reinterpret_cast<const BYTE*>(value),
                                          static_cast<DWORD>(size), 0))
        << GetLastError();
  }
  void SetText(const DEVPROPKEY& key, const std::wstring& text) {
    if (!text.empty()) Set(key, DEVPROP_TYPE_STRING, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
  }
  bool Register() { return SetupDiRegisterDeviceInfo(set_, &data_, 0, nullptr, nullptr, nullptr); }
  bool Remove() { return SetupDiRemoveDevice(set_, &data_); }

 private:
  void SetBytes(DWORD property, const void* bytes, std::size_t size) {
    EXPECT_TRUE(SetupDiSetDeviceRegistryPropertyW(set_, &data_, property, static_cast<const BYTE*>(bytes),
                                                  static_cast<DWORD>(size)))
        << GetLastError();
  }

  HDEVINFO set_;
  SP_DEVINFO_DATA data_{};
};

std::vector<std::wstring> SubKeys(const std::wstring& path) {
  std::vector<std::wstring> names;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return names;
  std::array<wchar_t, 512> name{};
  for (DWORD i = 0;; ++i) {
    DWORD size = name.size();
    if (RegEnumKeyExW(key, i, name.data(), &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    names.emplace_back(name.data(), size);
  }
  RegCloseKey(key);
  return names;
}

std::wstring GuidText(const GUID& guid) {
  std::array<wchar_t, 40> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

}  // namespace

InstalledDevice::InstalledDevice(FakeDevice device) : device_(std::move(device)) { Install(); }

InstalledDevice::~InstalledDevice() {
  if (!device_.instance_id.empty()) Remove();
}

bool InstalledDevice::Exists() const { return SingleDevice(device_.setup_class).Open(device_); }

void InstalledDevice::Install() {
  Remove();
  SingleDevice entry(device_.setup_class);
  ASSERT_TRUE(entry.Create(device_)) << GetLastError();
  entry.SetTexts(SPDRP_HARDWAREID, device_.hardware_ids);
  entry.SetText(SPDRP_DEVICEDESC, device_.description);
  entry.SetText(SPDRP_MFG, device_.manufacturer);
  entry.SetText(SPDRP_FRIENDLYNAME, device_.friendly_name);
  entry.SetText(SPDRP_SERVICE, device_.service);
  entry.SetText(SPDRP_CLASS, device_.class_name);
  ASSERT_TRUE(entry.Register()) << GetLastError();
  entry.SetText(DEVPKEY_Device_DriverVersion, device_.driver_version);
  entry.SetText(DEVPKEY_Device_DriverInfPath, device_.inf);
  if (device_.problem_code) {
    entry.Set(DEVPKEY_Device_ProblemCode, DEVPROP_TYPE_UINT32, &*device_.problem_code, sizeof(std::uint32_t));
  }
  if (device_.install_time) {
    entry.Set(DEVPKEY_Device_InstallDate, DEVPROP_TYPE_FILETIME, &*device_.install_time,
              sizeof(std::uint64_t));
  }
}

void InstalledDevice::Remove() {
  SingleDevice entry(device_.setup_class);
  if (entry.Open(device_)) entry.Remove();
}

std::vector<std::wstring> RegisteredDevices(const GUID& setup_class) {
  std::vector<std::wstring> ids;
  for (const auto& bus : SubKeys(kTree)) {
    for (const auto& device : SubKeys(kTree + L'\\' + bus)) {
      for (const auto& instance : SubKeys(kTree + L'\\' + bus + L'\\' + device)) {
        const std::wstring id = bus + L'\\' + device + L'\\' + instance;
        const std::wstring class_text = RegisteredText(id, L"ClassGUID");
        if (_wcsicmp(class_text.c_str(), GuidText(setup_class).c_str()) == 0) ids.push_back(id);
      }
    }
  }
  return ids;
}

std::wstring RegisteredText(const std::wstring& instance_id, const wchar_t* name) {
  const auto texts = RegisteredTexts(instance_id, name);
  return texts.empty() ? std::wstring() : texts.front();
}

std::vector<std::wstring> RegisteredTexts(const std::wstring& instance_id, const wchar_t* name) {
  const std::wstring path = kTree + L'\\' + instance_id;
  std::array<wchar_t, 1024> characters{};
  DWORD size = sizeof characters;
  std::vector<std::wstring> texts;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, path.c_str(), name, RRF_RT_REG_SZ | RRF_RT_REG_MULTI_SZ, nullptr,
                   characters.data(), &size) != ERROR_SUCCESS) {
    return texts;
  }
  for (const wchar_t* text = characters.data(); *text != L'\0'; text += texts.back().size() + 1) {
    texts.emplace_back(text);
  }
  return texts;
}

}  // namespace windows_support
