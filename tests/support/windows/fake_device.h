/// Devices that a test makes up: entered into the system's device tree, and taken out again.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace windows_support {

/// A device as the system is to list it. What is absent is not set.
struct FakeDevice {
  GUID setup_class{};
  std::wstring class_name;
  std::wstring instance_id;  ///< in capitals, ENUMERATOR\DEVICE\INSTANCE
  std::wstring description;
  std::vector<std::wstring> hardware_ids;
  std::wstring manufacturer;
  std::wstring friendly_name;
  std::wstring service;
  std::wstring driver_version;
  std::wstring inf;
  std::optional<std::uint32_t> problem_code;
  std::optional<std::uint64_t> install_time;  ///< FILETIME
};

/// The entry of a made-up device. One that is there already, left by a test that was ended, is replaced.
class InstalledDevice {
 public:
  /// Fails the running test when the system does not take the device.
  explicit InstalledDevice(FakeDevice device);
  InstalledDevice(InstalledDevice&&) = default;
  InstalledDevice& operator=(InstalledDevice&&) = delete;
  ~InstalledDevice();

  const FakeDevice& Shape() const { return device_; }
  bool Exists() const;
  void Install();  ///< again, after a removal

 private:
  void Remove();

  FakeDevice device_;
};

/// Instance IDs of all devices of `setup_class`, as the registry has them, in its order.
std::vector<std::wstring> RegisteredDevices(const GUID& setup_class);

/// A registry value of such a device: a text, or the texts of a list.
std::wstring RegisteredText(const std::wstring& instance_id, const wchar_t* name);
std::vector<std::wstring> RegisteredTexts(const std::wstring& instance_id, const wchar_t* name);

}  // namespace windows_support
