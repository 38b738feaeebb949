#include "ostrine/linux/driver.h"

#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <variant>

#include "ostrine/common/device_text.h"
#include "ostrine/common/modalias.h"
#include "ostrine/linux/acpi_status.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

constexpr std::uint32_t kWorking = 0;
constexpr std::uint32_t kCannotStart = 10;
constexpr std::uint32_t kDisabled = 22;
constexpr std::uint32_t kNoDriver = 28;

/// Where the service that drives fingerprint readers may stand.
constexpr const char* kFingerprintServices[] = {"usr/libexec/fprintd", "usr/lib/fprintd/fprintd"};

std::string KernelRelease(const Path& root) { return CleanAttribute(root / "proc/sys/kernel/osrelease"); }

/// The loaded name has underscores where the file's name may have dashes.
std::string ModuleName(std::string_view path) {
  std::string name(path.substr(path.find_last_of('/') + 1));
  name.erase(std::min(name.find('.'), name.size()));
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

/// Path of the module's file below the kernel's folder, from the list that the kernel's installer makes.
std::string ModuleFile(std::string_view list, std::string_view module) {
  while (!list.empty()) {
    const std::string_view line = list.substr(0, list.find('\n'));
    list.remove_prefix(std::min(line.size() + 1, list.size()));
    const std::string_view path = line.substr(0, line.find(':'));
    if (ModuleName(path) == module) return std::string(path);
  }
  return {};
}

Path DriverFile(const Path& root, const Driver& driver) {
  if (!driver.program.empty()) return driver.program;
  const std::string release = KernelRelease(root);
  if (driver.name.empty() || release.empty() || release.find('/') != std::string::npos) return {};
  const Path folder = root / "lib/modules" / release;
  if (driver.module.empty()) return folder / "modules.builtin";
  constexpr std::size_t kListLimit = 16 << 20;
  const auto list = ReadBytes(folder / "modules.dep", kListLimit);
  if (!list) return {};
  const std::string_view text(reinterpret_cast<const char*>(list->data()), list->size());
  const std::string file = ModuleFile(text, driver.module);
  return file.empty() || file.find("..") != std::string::npos ? Path() : folder / Path(file).relative_path();
}

bool HasFailed(const Path& node) { return CleanAttribute(node / "power/runtime_status") == "error"; }

bool IsBridge(const Device& device) {
  const Modalias parsed = ParseModalias(device.modalias);
  const auto* alias = std::get_if<PciAlias>(&parsed);
  constexpr std::uint8_t kBridges = 6;
  return alias != nullptr && alias->base_class == kBridges;
}

bool IsServedByPrograms(const Device& device) {
  const Modalias parsed = ParseModalias(device.modalias);
  const auto* alias = std::get_if<UsbAlias>(&parsed);
  return alias != nullptr && alias->own_interface &&
         IsDrivenByPrograms(alias->own_interface->interface_class.base_class);
}

bool IsPartOfBoard(const Device& device) {
  const AcpiStatus status = ReadAcpiStatus(device.node);
  if (!status.is_stated || !status.is_shown) return true;
  const Modalias parsed = ParseModalias(device.modalias);
  const auto* alias = std::get_if<AcpiAlias>(&parsed);
  return alias != nullptr && NeedsNoDriver(alias->ids);
}

bool WorksWithoutDriver(const Device& device) {
  switch (device.bus) {
    case Device::Bus::kPci:
      return IsBridge(device);
    case Device::Bus::kUsb:
    case Device::Bus::kUsbPart:
      return IsServedByPrograms(device);
    case Device::Bus::kAcpi:
      return IsPartOfBoard(device);
    case Device::Bus::kBluetooth:
      return true;
    default:
      return false;
  }
}

}  // namespace

Driver DriverOf(const Path& root, const Device& device) {
  if (device.function.empty()) return {};
  Driver driver{.name = LinkName(device.function / "driver"),
                .module = LinkName(device.function / "driver/module")};
  const bool on_usb = device.bus == Device::Bus::kUsb || device.bus == Device::Bus::kUsbPart;
  if (on_usb && driver.name.empty() && device.setup_class == SetupClass::kBiometric) {
    for (const char* const service : kFingerprintServices) {
      if (!Exists(root / service)) continue;
      driver.program = root / service;
      driver.name = driver.program.filename().string();
      break;
    }
  }
  return driver;
}

std::string DriverVersion(const Path& root, const Driver& driver) {
  if (driver.name.empty() || !driver.program.empty()) return {};
  if (!driver.module.empty()) {
    std::string version = CleanAttribute(root / "sys/module" / driver.module / "version");
    if (!version.empty()) return version;
  }
  return DottedVersion(KernelRelease(root));
}

std::uint64_t DriverInstallTime(const Path& root, const Driver& driver) {
  const Path file = DriverFile(root, driver);
  struct stat status{};
  if (file.empty() || stat(file.c_str(), &status) != 0 || status.st_ctim.tv_sec < 0) return 0;
  // Packages keep the time of the build as the time of modification; the change of the inode is when the file
  // came to stand here.
  return static_cast<std::uint64_t>(status.st_ctim.tv_sec) * 1000 +
         static_cast<std::uint64_t>(status.st_ctim.tv_nsec) / 1'000'000;
}

std::uint32_t ProblemCode(const Path& root, const Device& device) {
  if (device.bus == Device::Bus::kAcpi) {
    const AcpiStatus status = ReadAcpiStatus(device.node);
    if (!status.is_enabled) return kDisabled;
    if (!status.is_working) return kCannotStart;
  } else if (!device.node.empty()) {
    if (NumberAttribute(device.node / "authorized") == 0) return kDisabled;
    if (HasFailed(device.node)) return kCannotStart;
  }
  if (!DriverOf(root, device).name.empty() || WorksWithoutDriver(device)) return kWorking;
  return kNoDriver;
}

}  // namespace ostrine
