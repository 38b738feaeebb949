/// The classes of a hardware-abstraction library on a machine without devices and without WMI.
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/stringproc.h"
#include "platform/ostrine/wmi.h"

std::vector<std::wstring> CDeviceInformention::GetDeviceDesc(GUID) { return {}; }
std::vector<std::wstring> CDeviceInformention::GetDeviceHardwareID(GUID) { return {}; }
std::wstring CDeviceInformention::GetDeviceStrInfoByDesc(std::wstring, GUID, enmDEVICE_PROPERTY) {
  return {};
}
std::wstring CDeviceInformention::GetDeviceStrInfoByHardwareID(std::wstring, GUID, enmDEVICE_PROPERTY) {
  return {};
}
unsigned long CDeviceInformention::GetDeviceULONGInfoByDesc(std::wstring, GUID, enmDEVICE_PROPERTY) {
  return 0;
}
unsigned long CDeviceInformention::GetDeviceULONGInfoByHardwareID(std::wstring, GUID, enmDEVICE_PROPERTY) {
  return 0;
}
std::uint64_t CDeviceInformention::GetLastIntallTime(std::wstring, GUID) { return 0; }
std::vector<std::wstring> CDeviceInformention::GetUnknownDeviceHardID() { return {}; }
unsigned long CDeviceInformention::UnstallDeviceByHardwareID(std::wstring, GUID) { return 0xE000020B; }

CWMI::CWMI(std::wstring name_space) : name_space_(std::move(name_space)) {}
CWMI::~CWMI() = default;
std::wstring CWMI::SelectStr(const std::wstring&, const std::wstring&) { return {}; }
unsigned int CWMI::SelectUInt(const std::wstring&, const std::wstring&) { return 0; }
bool CWMI::GetOutPutUInt(std::uint64_t, unsigned char*, unsigned int) { return false; }

std::wstring StringProc::StringToWString(const std::string& text) { return {text.begin(), text.end()}; }
