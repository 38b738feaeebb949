#include "velmora/baseboard.h"

#include "platform/halquery.h"

using velmora::hal::DeviceClass;
using velmora::hal::NarrowText;

namespace {

/// Information ids of the class.
enum BaseboardId : std::uint32_t {
  kBoardProduct = 0,
  kBoardManufacturer = 1,
  kBoardVersion = 2,
  kBoardSerialNumber = 3,
  kBiosVersion = 4,
  kBiosManufacturer = 5,
  kBiosReleaseDate = 6,
};

}  // namespace

CBaseboard::CBaseboard() { velmora::hal::Prepare(DeviceClass::kBaseboard); }
CBaseboard::~CBaseboard() = default;

std::wstring CBaseboard::GetBaseboardProduct() { return NarrowText(DeviceClass::kBaseboard, kBoardProduct); }
std::wstring CBaseboard::GetBaseboardManufacturer() {
  return NarrowText(DeviceClass::kBaseboard, kBoardManufacturer);
}
std::wstring CBaseboard::GetBaseboardVersion() { return NarrowText(DeviceClass::kBaseboard, kBoardVersion); }
std::wstring CBaseboard::GetBaseboardSerialNumber() {
  return NarrowText(DeviceClass::kBaseboard, kBoardSerialNumber);
}
std::wstring CBaseboard::GetBIOSVersion() { return NarrowText(DeviceClass::kBaseboard, kBiosVersion); }
std::wstring CBaseboard::GetBIOSManufacturer() {
  return NarrowText(DeviceClass::kBaseboard, kBiosManufacturer);
}
std::wstring CBaseboard::GetBIOSReaseDate() { return NarrowText(DeviceClass::kBaseboard, kBiosReleaseDate); }
