#include "ostrine/windows/battery_query.h"

#include <setupapi.h>
#include <winioctl.h>

// The records of the battery interface; its GUIDs, which it declares too, are not used.
#include <poclass.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <span>

#include "ostrine/common/battery_record.h"

namespace ostrine {
namespace {

static_assert(sizeof(BATTERY_INFORMATION) == kBatteryInformationSize &&
              offsetof(BATTERY_INFORMATION, DesignedCapacity) == 12 &&
              offsetof(BATTERY_INFORMATION, FullChargedCapacity) == 16);
static_assert(sizeof(BATTERY_STATUS) == kBatteryStatusSize && offsetof(BATTERY_STATUS, Capacity) == 4 &&
              offsetof(BATTERY_STATUS, Voltage) == 8 && offsetof(BATTERY_STATUS, Rate) == 12);
static_assert(sizeof(BATTERY_QUERY_INFORMATION) == 12 && sizeof(BATTERY_WAIT_STATUS) == 20);

/// The class of battery interfaces, as published.
constexpr GUID kBatteryInterface{
    0x72631e54, 0x78a4, 0x11d0, {0xbc, 0xf7, 0x00, 0xaa, 0x00, 0xb7, 0xb3, 0x2a}};

/// No machine has more, so a list without an end is left.
constexpr DWORD kMostBatteries = 64;

/// The interfaces of a class that are present.
class InterfaceSet {
 public:
  InterfaceSet() noexcept
      : set_(SetupDiGetClassDevsW(&kBatteryInterface, nullptr, nullptr,
                                  DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {}
  InterfaceSet(const InterfaceSet&) = delete;
  InterfaceSet& operator=(const InterfaceSet&) = delete;
  ~InterfaceSet() {
    if (set_ != INVALID_HANDLE_VALUE) SetupDiDestroyDeviceInfoList(set_);
  }

  /// Path of interface `index`; nothing beyond the last, empty for one that has none.
  std::optional<std::wstring> PathAt(DWORD index) const {
    SP_DEVICE_INTERFACE_DATA data{};
    data.cbSize = sizeof data;
    if (set_ == INVALID_HANDLE_VALUE ||
        !SetupDiEnumDeviceInterfaces(set_, nullptr, &kBatteryInterface, index, &data))
      return std::nullopt;
    return PathOf(data);
  }

 private:
  std::wstring PathOf(SP_DEVICE_INTERFACE_DATA& data) const {
    constexpr std::size_t kPathOffset = offsetof(SP_DEVICE_INTERFACE_DETAIL_DATA_W, DevicePath);
    constexpr DWORD kLongest = 65536;
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailW(set_, &data, nullptr, 0, &size, nullptr);
    if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) || size > kLongest) return {};
    std::vector<std::byte> bytes(size);
    auto* const detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W*>(bytes.data());
    detail->cbSize = sizeof *detail;
    if (!SetupDiGetDeviceInterfaceDetailW(set_, &data, detail, size, nullptr, nullptr)) return {};
    std::wstring path((size - kPathOffset) / sizeof(wchar_t), L'\0');
    std::memcpy(path.data(), bytes.data() + kPathOffset, path.size() * sizeof(wchar_t));
    path.resize(path.find(L'\0') != std::wstring::npos ? path.find(L'\0') : path.size());
    return path;
  }

  HDEVINFO set_;
};

/// What the battery answers to a question; empty when it fails.
template <class Question>
std::vector<std::uint8_t> AskDriver(HANDLE battery, DWORD code, Question question, std::size_t room) {
  std::vector<std::uint8_t> answer(room);
  DWORD size = 0;
  const BOOL succeeded = DeviceIoControl(battery, code, &question, sizeof question, answer.data(),
                                         static_cast<DWORD>(room), &size, nullptr);
  answer.resize(succeeded && size <= room ? size : 0);
  return answer;
}

/// The battery's tag, by which every question names it; nothing for an empty bay.
std::optional<ULONG> TagOf(HANDLE battery) {
  const ULONG no_wait = 0;
  ULONG tag = BATTERY_TAG_INVALID;
  const auto answer = AskDriver(battery, IOCTL_BATTERY_QUERY_TAG, no_wait, sizeof tag);
  if (answer.size() != sizeof tag) return std::nullopt;
  std::memcpy(&tag, answer.data(), sizeof tag);
  if (tag == BATTERY_TAG_INVALID) return std::nullopt;
  return tag;
}

std::vector<std::uint8_t> Information(HANDLE battery, ULONG tag, BATTERY_QUERY_INFORMATION_LEVEL level,
                                      std::size_t room) {
  const BATTERY_QUERY_INFORMATION question{.BatteryTag = tag, .InformationLevel = level, .AtRate = 0};
  return AskDriver(battery, IOCTL_BATTERY_QUERY_INFORMATION, question, room);
}

/// A text of the battery in the system's narrow code page, without blanks at its ends.
std::string BatteryText(HANDLE battery, ULONG tag, BATTERY_QUERY_INFORMATION_LEVEL level) {
  constexpr std::size_t kRoom = 1024;
  const auto bytes = Information(battery, tag, level, kRoom);
  std::wstring wide(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(wide.data(), bytes.data(), wide.size() * sizeof(wchar_t));
  if (const auto end = wide.find(L'\0'); end != std::wstring::npos) wide.resize(end);
  std::string narrow(wide.size() * 3, '\0');  // of a UTF-16 unit no code page makes more bytes
  const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), narrow.data(),
                                       static_cast<int>(narrow.size()), nullptr, nullptr);
  narrow.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  narrow.erase(narrow.find_last_not_of(' ') + 1);
  narrow.erase(0, narrow.find_first_not_of(' '));
  return narrow;
}

}  // namespace

BatteryHandle::BatteryHandle(const std::wstring& path) noexcept
    : handle_(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                          nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}

std::vector<std::wstring> BatteryPaths() {
  std::vector<std::wstring> paths;
  const InterfaceSet set;
  for (DWORD index = 0; index < kMostBatteries; ++index) {
    auto path = set.PathAt(index);
    if (!path) break;
    if (!path->empty()) paths.push_back(std::move(*path));
  }
  return paths;
}

std::optional<Battery> AskBattery(HANDLE battery) {
  const auto tag = TagOf(battery);
  if (!tag) return std::nullopt;
  // All levels are zero: the battery answers at once and waits for no change.
  BATTERY_WAIT_STATUS no_wait{};
  no_wait.BatteryTag = *tag;
  auto found = BatteryOfRecords(Information(battery, *tag, BatteryInformation, kBatteryInformationSize),
                                AskDriver(battery, IOCTL_BATTERY_QUERY_STATUS, no_wait, kBatteryStatusSize));
  if (!found) return std::nullopt;
  found->manufacturer = BatteryText(battery, *tag, BatteryManufactureName);
  found->name = BatteryText(battery, *tag, BatteryDeviceName);
  return found;
}

}  // namespace ostrine
