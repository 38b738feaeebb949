#include "velmora/biometric.h"

#include <algorithm>

#include "platform/guard.h"
#include "platform/logging.h"
#include "platform/os/text_tests.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"

using velmora::Answer;
using velmora::LogDebug;
using velmora::Within;
using velmora::setup_class::kBiometric;
using velmora::setup_class::kSystem;

namespace {

constexpr unsigned long kUnknownProblem = 0xFFFFFFFF;  // memory ran out before the device could be asked

constexpr const wchar_t* kSerialIo = L"Serial IO";
/// Another form in which the words are met; these characters and no others: a prime, a question mark, "DD
/// IO".
constexpr const wchar_t* kSerialIoOtherForm = L"\u2032?DD IO";
constexpr const wchar_t* kManagementEngine = L"Management Engine Interface";
constexpr const wchar_t* kSoftwareGuard = L"Software Guard Extensions Device";

bool Contains(const std::wstring& description, const wchar_t* part) {
  return velmora::os::StrStrIW(description.c_str(), part) != nullptr;
}

std::wstring FingerprintText(const std::wstring& hardware_id, enmDEVICE_PROPERTY property) {
  return Answer(std::wstring(), [&] {
    return CDeviceInformention().GetDeviceStrInfoByHardwareID(hardware_id, kBiometric, property);
  });
}

std::wstring SystemText(const std::wstring& description, enmDEVICE_PROPERTY property) {
  return Answer(std::wstring(),
                [&] { return CDeviceInformention().GetDeviceStrInfoByDesc(description, kSystem, property); });
}

unsigned long SystemProblem(const std::wstring& description) {
  return Answer(kUnknownProblem, [&] {
    return CDeviceInformention().GetDeviceULONGInfoByDesc(description, kSystem, PROP_PROBLEM_CODE);
  });
}

/// The first description of a System device that contains `part`; empty when none does.
std::wstring FirstSystemDevice(const wchar_t* part) {
  return Answer(std::wstring(), [=] {
    const auto descriptions = CDeviceInformention().GetDeviceDesc(kSystem);
    const auto found =
        std::ranges::find_if(descriptions, [=](const auto& text) { return Contains(text, part); });
    return found == descriptions.end() ? std::wstring() : *found;
  });
}

}  // namespace

CBiometric::CBiometric() = default;
CBiometric::~CBiometric() = default;

std::wstring CBiometric::GetHardwareID() {
  return Answer(std::wstring(), [] {
    const auto hardware_ids = CDeviceInformention().GetDeviceHardwareID(kBiometric);
    const auto found =
        std::ranges::find_if(hardware_ids, [](const auto& id) { return id.starts_with(L"ACPI"); });
    return found == hardware_ids.end() ? std::wstring() : *found;
  });
}

// A machine without a reader is asked about the empty hardware ID; the device information has the answer.
std::wstring CBiometric::GetDeviceName() { return FingerprintText(GetHardwareID(), PROP_DESCRIPTION); }
std::wstring CBiometric::GetManufacturer() { return FingerprintText(GetHardwareID(), PROP_MANUFACTURER); }
std::wstring CBiometric::GetDriverVersion() { return FingerprintText(GetHardwareID(), PROP_DRIVER_VERSION); }

unsigned long CBiometric::GetErrorCode() {
  return Answer(kUnknownProblem, [this] {
    return CDeviceInformention().GetDeviceULONGInfoByHardwareID(GetHardwareID(), kBiometric,
                                                                PROP_PROBLEM_CODE);
  });
}

std::vector<std::wstring> CBiometric::GetSerialIODesc() {
  return Answer(std::vector<std::wstring>(), [] {
    auto descriptions = CDeviceInformention().GetDeviceDesc(kSystem);
    std::erase_if(descriptions, [](const auto& description) {
      return !Contains(description, kSerialIo) && !Contains(description, kSerialIoOtherForm);
    });
    return descriptions;
  });
}

std::wstring CBiometric::GetSerialIODriverVersionByDesc(const std::wstring description) {
  auto version = SystemText(description, PROP_DRIVER_VERSION);
  LogDebug([&](auto& line) {
    line << "desc=" << description << ", Version=" << version
         << Within("CBiometric::GetSerialIODriverVersionByDesc");
  });
  return version;
}

unsigned long CBiometric::GetSystemDeviceErrorCodeByDesc(const std::wstring description) {
  const unsigned long problem = SystemProblem(description);
  LogDebug([&](auto& line) {
    line << "desc=" << description << ", uErrorCode=" << problem
         << Within("CBiometric::GetSystemDeviceErrorCodeByDesc");
  });
  return problem;
}

unsigned long CBiometric::GetSystemDeviceErrorCodeByHardId(const std::wstring hardware_id) {
  const unsigned long problem = SystemProblem(hardware_id);  // by description: hosts rely on it
  LogDebug([&](auto& line) {
    line << "strHardId=" << hardware_id << ", uErrorCode=" << problem
         << Within("CBiometric::GetSystemDeviceErrorCodeByHardId");
  });
  return problem;
}

std::wstring CBiometric::GetMEIDesc() {
  auto description = FirstSystemDevice(kManagementEngine);
  LogDebug([&](auto& line) { line << "MeiDesc=" << description << Within("CBiometric::GetMEIDesc"); });
  return description;
}

std::wstring CBiometric::GetSGXHardId() {
  const auto description = FirstSystemDevice(kSoftwareGuard);
  auto hardware_id = description.empty() ? std::wstring() : SystemText(description, PROP_HARDWARE_ID);
  LogDebug([&](auto& line) {
    line << "SGXDesc=" << description << ", SGXHardId=" << hardware_id << Within("CBiometric::GetSGXHardId");
  });
  return hardware_id;
}
