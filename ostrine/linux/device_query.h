/// The operations of device information over the devices below a root folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ostrine/linux/device.h"
#include "ostrine/linux/name_database.h"
#include "platform/ostrine/deviceinformation.h"

namespace ostrine {

/// Problem code of a device that is not there.
inline constexpr std::uint32_t kNotPresent = 45;

/// By what a device is looked up.
enum class LookUp { kDescription, kHardwareId };

/// The devices of one setup class, which each operation lists afresh. A name that no device can have, or a
/// property that none has, is answered without that.
class DeviceQuery {
 public:
  DeviceQuery(Path root, const GUID& setup_class);

  std::vector<std::wstring> Descriptions() const;
  std::vector<std::wstring> HardwareIds() const;

  /// Texts and numbers of the first device that `name` names; see CDeviceInformention.
  std::wstring Text(LookUp by, std::wstring_view name, enmDEVICE_PROPERTY property) const;
  std::uint32_t Number(LookUp by, std::wstring_view name, enmDEVICE_PROPERTY property) const;
  std::uint64_t InstallTime(std::wstring_view hardware_id) const;
  std::uint32_t Remove(std::wstring_view hardware_id) const;

 private:
  using Devices = std::vector<Device>;

  Devices List() const;
  // The devices up to the first that is meant; none when there is none.
  Devices ListUpToBearer(std::wstring_view hardware_id) const;
  Devices ListUpTo(LookUp by, std::wstring_view name, NameDatabase& names) const;
  std::wstring TextOf(const Devices& up_to, enmDEVICE_PROPERTY property, NameDatabase& names) const;

  Path root_;
  SetupClass setup_class_;
};

/// The setup class that `id` names; kNone for any other.
SetupClass SetupClassOf(const GUID& id);

/// The class's name, as the system's lists of classes have it.
std::wstring SetupClassName(SetupClass setup_class);

/// Its identifier as the system's device tree has it: "{4d36e972-e325-11ce-bfc1-08002be10318}"; empty for
/// kNone.
std::string SetupClassIdText(SetupClass setup_class);

/// Whether there is nothing but the kernel behind the device.
bool IsMadeUpByKernel(const Path& root, const Device& device);

/// Hardware ID and bus address: unlike the hardware ID it names one device only.
std::wstring InstanceId(const Device& device);

/// First hardware IDs of the devices of all classes that have no driver and would need one.
std::vector<std::wstring> UnknownHardwareIds(const Path& root);

}  // namespace ostrine
