#include "velmora-report/lifelines.h"

#include <windows.h>

#include <cfgmgr32.h>
#include <setupapi.h>
#include <winioctl.h>

#include <algorithm>
#include <array>
#include <memory>
#include <type_traits>

#include "velmora-report/utf8.h"

namespace report {
namespace {

constexpr GUID kDisks{0x53F56307, 0xB6BF, 0x11D0, {0x94, 0xF2, 0x00, 0xA0, 0xC9, 0x1E, 0xFB, 0x8B}};
constexpr GUID kKeyboards{0x4D36E96B, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
constexpr GUID kDisplays{0x4D36E968, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

struct CloseFile {
  using pointer = HANDLE;
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<HANDLE, CloseFile>;

struct DestroyList {
  void operator()(void* list) const { SetupDiDestroyDeviceInfoList(list); }
};
using DeviceList = std::unique_ptr<void, DestroyList>;

DeviceList ListDevices(const GUID& id, DWORD flags) {
  const HDEVINFO list = SetupDiGetClassDevsW(&id, nullptr, nullptr, flags | DIGCF_PRESENT);
  return DeviceList(list == INVALID_HANDLE_VALUE ? nullptr : list);
}

/// Opens a volume or disk to ask about it, without the right to read it.
File Open(const std::wstring& name) {
  const HANDLE file =
      CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  return File(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

/// The device and its parents, up to the root of the tree.
Chain ChainOf(DEVINST node) {
  constexpr int kDeepest = 64;
  Chain chain;
  for (int depth = 0; depth < kDeepest; ++depth) {
    std::array<wchar_t, MAX_DEVICE_ID_LEN + 1> id{};
    if (CM_Get_Device_IDW(node, id.data(), MAX_DEVICE_ID_LEN, 0) != CR_SUCCESS) break;
    chain.push_back(PlaceOf(ToUtf8(id.data())));
    if (CM_Get_Parent(&node, node, 0) != CR_SUCCESS) break;
  }
  return chain;
}

std::vector<Chain> ReadClass(const GUID& id) {
  std::vector<Chain> chains;
  const DeviceList list = ListDevices(id, 0);
  SP_DEVINFO_DATA data{};
  data.cbSize = sizeof data;
  for (DWORD i = 0; list && SetupDiEnumDeviceInfo(list.get(), i, &data) != FALSE; ++i) {
    Chain chain = ChainOf(data.DevInst);
    if (!chain.empty()) chains.push_back(std::move(chain));
  }
  return chains;
}

/// The volume that holds the file or folder, as "\\?\Volume{...}" without the backslash at its end.
std::wstring VolumeOf(const std::wstring& path) {
  std::array<wchar_t, 1024> root{};
  std::array<wchar_t, 64> volume{};
  if (GetVolumePathNameW(path.c_str(), root.data(), root.size()) == FALSE ||
      GetVolumeNameForVolumeMountPointW(root.data(), volume.data(), volume.size()) == FALSE) {
    return {};
  }
  std::wstring name = volume.data();
  if (name.ends_with(L'\\')) name.pop_back();
  return name;
}

/// Numbers of the disks on which a volume lies; none when they cannot be told.
std::vector<DWORD> DisksOfVolume(const std::wstring& name) {
  const File volume = Open(name);
  constexpr std::size_t kMostExtents = 64;
  alignas(VOLUME_DISK_EXTENTS)
      std::array<std::byte, sizeof(VOLUME_DISK_EXTENTS) + kMostExtents * sizeof(DISK_EXTENT)>
          bytes{};
  DWORD size = 0;
  if (name.empty() || !volume ||
      DeviceIoControl(volume.get(), IOCTL_VOLUME_GET_VOLUME_DISK_EXTENTS, nullptr, 0, bytes.data(),
                      bytes.size(), &size, nullptr) == FALSE) {
    return {};
  }
  const auto* const extents = reinterpret_cast<const VOLUME_DISK_EXTENTS*>(bytes.data());
  const std::size_t count = std::min<std::size_t>(extents->NumberOfDiskExtents, kMostExtents);
  std::vector<DWORD> disks;
  for (std::size_t i = 0; i < count; ++i) disks.push_back(extents->Extents[i].DiskNumber);
  return disks;
}

/// The number of the disk that this interface opens.
std::optional<DWORD> NumberOfDisk(HDEVINFO list, SP_DEVICE_INTERFACE_DATA& interface_data,
                                  SP_DEVINFO_DATA& data) {
  constexpr DWORD kRoom = 2048;
  alignas(SP_DEVICE_INTERFACE_DETAIL_DATA_W) std::array<std::byte, kRoom> bytes{};
  auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(bytes.data());
  detail->cbSize = sizeof *detail;
  if (SetupDiGetDeviceInterfaceDetailW(list, &interface_data, detail, kRoom, nullptr, &data) == FALSE)
    return std::nullopt;
  const File disk = Open(detail->DevicePath);
  STORAGE_DEVICE_NUMBER number{};
  DWORD size = 0;
  if (!disk || DeviceIoControl(disk.get(), IOCTL_STORAGE_GET_DEVICE_NUMBER, nullptr, 0, &number,
                               sizeof number, &size, nullptr) == FALSE) {
    return std::nullopt;
  }
  return number.DeviceNumber;
}

/// The chain of the disk with this number; empty when no disk has it.
Chain ChainOfDisk(DWORD number) {
  const DeviceList list = ListDevices(kDisks, DIGCF_DEVICEINTERFACE);
  SP_DEVICE_INTERFACE_DATA interface_data{};
  interface_data.cbSize = sizeof interface_data;
  for (DWORD i = 0;
       list && SetupDiEnumDeviceInterfaces(list.get(), nullptr, &kDisks, i, &interface_data) != FALSE; ++i) {
    SP_DEVINFO_DATA data{};
    data.cbSize = sizeof data;
    if (NumberOfDisk(list.get(), interface_data, data) == number) return ChainOf(data.DevInst);
  }
  return {};
}

std::optional<std::vector<Chain>> ReadDisks() {
  std::array<wchar_t, 1024> program{};
  std::array<wchar_t, MAX_PATH> system{};
  const DWORD length = GetModuleFileNameW(nullptr, program.data(), program.size());
  if (length == 0 || length >= program.size() || GetWindowsDirectoryW(system.data(), system.size()) == 0)
    return std::nullopt;
  std::vector<Chain> chains;
  for (const wchar_t* const path : {program.data(), system.data()}) {
    const auto disks = DisksOfVolume(VolumeOf(path));
    if (disks.empty()) return std::nullopt;
    for (const DWORD disk : disks) {
      chains.push_back(ChainOfDisk(disk));
      if (chains.back().empty()) return std::nullopt;
    }
  }
  return chains;
}

}  // namespace

Lifelines ReadLifelines() {
  return {.disks = ReadDisks(), .displays = ReadClass(kDisplays), .keyboards = ReadClass(kKeyboards)};
}

/// The whole instance ID, in capitals: the system writes it in either case.
std::string PlaceOf(std::string_view instance_id) {
  std::string place(instance_id);
  for (char& character : place) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return place;
}

}  // namespace report
