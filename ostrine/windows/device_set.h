/// The present devices of a setup class, or of all, and their facts as the system stores them. A fact that a
/// device lacks, or that is stored as something else than it should be, is empty.
#pragma once

#include <windows.h>

#include <devpropdef.h>
#include <setupapi.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrine {

/// One device of a DeviceSet, which must outlive it.
class Device {
 public:
  Device(HDEVINFO set, const SP_DEVINFO_DATA& data) noexcept : set_(set), data_(data) {}

  /// A registry property (SPDRP_...): its text, the texts of a list.
  std::wstring Text(DWORD property) const;
  std::vector<std::wstring> Texts(DWORD property) const;

  /// A property by its key.
  std::wstring Text(const DEVPROPKEY& key) const;
  std::optional<std::uint32_t> Number(const DEVPROPKEY& key) const;
  std::optional<FILETIME> Time(const DEVPROPKEY& key) const;

  std::wstring InstanceId() const;

  /// The system's number for the device's node, the same as long as the device is there.
  DWORD Node() const noexcept { return data_.DevInst; }

  /// Bytes of a value of the driver's registry key, whatever its type; none when there is no such value.
  std::vector<std::uint8_t> DriverValue(const wchar_t* name) const;
  std::wstring FirstHardwareId() const;

  /// The configuration manager's problem code: the device's own property where it has one, else what its node
  /// in the tree says; 45 when the node has gone.
  std::uint32_t ProblemCode() const;

  /// Removes the device through its class installer. 0, or the system's error code; 3010 when the device
  /// stays until the system is started again.
  DWORD Remove();

 private:
  template <class Value>
  std::optional<Value> Fixed(const DEVPROPKEY& key, DEVPROPTYPE type) const;

  HDEVINFO set_;
  SP_DEVINFO_DATA data_;
};

/// A list that the system has made of the devices that were present at that moment.
class DeviceSet {
 public:
  explicit DeviceSet(const GUID& setup_class) noexcept;
  DeviceSet() noexcept;  ///< of all classes
  DeviceSet(const DeviceSet&) = delete;
  DeviceSet& operator=(const DeviceSet&) = delete;
  ~DeviceSet();

  /// False when the system could not list the devices, which are none then.
  bool IsListed() const noexcept { return set_ != INVALID_HANDLE_VALUE; }

  /// The first device, in the system's order, that `matches`.
  template <class Matches>
  std::optional<Device> Find(Matches matches) const {
    SP_DEVINFO_DATA data{};
    data.cbSize = sizeof data;
    for (DWORD i = 0; Next(i, data); ++i) {
      const Device device(set_, data);
      if (matches(device)) return device;
    }
    return std::nullopt;
  }

  /// Shows every device to `visit`, in the system's order.
  template <class Visit>
  void ForEach(Visit visit) const {
    Find([&](const Device& device) {
      visit(device);
      return false;
    });
  }

 private:
  bool Next(DWORD index, SP_DEVINFO_DATA& data) const noexcept;

  HDEVINFO set_;
};

}  // namespace ostrine
