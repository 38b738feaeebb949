#include "velmora/audio.h"

#include <algorithm>
#include <utility>

#include "platform/guard.h"
#include "platform/halquery.h"
#include "platform/logging.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "velmora/cpu.h"

using velmora::Answer;
using velmora::hal::DeviceClass;
using velmora::setup_class::kMedia;

namespace {

constexpr auto kAudio = DeviceClass::kAudio;
constexpr std::uint32_t kDeviceCount = 0;  // information id
constexpr unsigned int kNoDevice = 0xFFFFFFFF;

/// A property of the device with this hardware ID.
std::wstring DeviceText(const std::wstring& hardware_id, enmDEVICE_PROPERTY property) {
  return CDeviceInformention().GetDeviceStrInfoByHardwareID(hardware_id, kMedia, property);
}

/// A property of the audio device; empty without one.
std::wstring Text(CAudioCard& audio, enmDEVICE_PROPERTY property) {
  return Answer(std::wstring(), [&] {
    std::wstring hardware_id;
    return audio.GetAudioHardId(hardware_id) ? DeviceText(hardware_id, property) : std::wstring();
  });
}

}  // namespace

CAudioCard::CAudioCard() {
  if (velmora::hal::PrepareTable(kAudio, audio_block_)) {
    velmora::hal::ReadNumber(kAudio, kDeviceCount, nullptr, audio_device_count_);
  }
}

CAudioCard::CAudioCard(const CAudioCard& /*other*/) : CAudioCard() {}

CAudioCard& CAudioCard::operator=(const CAudioCard& other) {
  CAudioCard copy(other);
  std::swap(audio_block_, copy.audio_block_);
  std::swap(audio_device_count_, copy.audio_device_count_);
  return *this;
}

CAudioCard::~CAudioCard() { velmora::hal::ReleaseTable(audio_block_); }

bool CAudioCard::GetAudioHardId(std::wstring& hardware_id) {
  return Answer(false, [&] {
    const bool any_will_do = velmora::hal::ProcessorKind() == CPU_TYPE_ARM;
    auto hardware_ids = CDeviceInformention().GetDeviceHardwareID(kMedia);
    const auto found = std::ranges::find_if(hardware_ids, [=](const std::wstring& id) {
      return any_will_do || id.find(L"VEN_10EC") != std::wstring::npos;
    });
    if (found == hardware_ids.end()) return false;
    hardware_id = std::move(*found);
    return true;
  });
}

unsigned int CAudioCard::GetAudioCardNumbers() {
  std::wstring hardware_id;
  return GetAudioHardId(hardware_id) ? 1 : 0;
}

std::wstring CAudioCard::GetAudioCardName() { return Text(*this, PROP_DESCRIPTION); }
std::wstring CAudioCard::GetAudioCardManufacturer() { return Text(*this, PROP_MANUFACTURER); }
std::wstring CAudioCard::GetDriverVersion() { return Text(*this, PROP_DRIVER_VERSION); }

unsigned int CAudioCard::GetAudioErrorCode() {
  return Answer(kNoDevice, [&] {
    std::wstring hardware_id;
    if (!GetAudioHardId(hardware_id)) return kNoDevice;
    return static_cast<unsigned int>(
        CDeviceInformention().GetDeviceULONGInfoByHardwareID(hardware_id, kMedia, PROP_PROBLEM_CODE));
  });
}

bool CAudioCard::GetAudioDriverInf(std::wstring& inf_name) {
  const bool is_found = Answer(false, [&] {
    std::wstring hardware_id;
    if (!GetAudioHardId(hardware_id)) return false;
    inf_name = DeviceText(hardware_id, PROP_INF);
    return true;
  });
  velmora::LogDebug([&](auto& line) {
    line << "wszInf=" << inf_name << ", Ret=" << is_found << velmora::Within("CAudioCard::GetAudioDriverInf");
  });
  return is_found;
}

std::wstring CAudioCard::GetAudioCardNameByIndex(int index) {
  return index == 0 ? GetAudioCardName() : std::wstring();
}

std::wstring CAudioCard::GetAudioCardManufacturerByIndex(int index) {
  return index == 0 ? GetAudioCardManufacturer() : std::wstring();
}

std::wstring CAudioCard::GetDriverVersionByIndex(int index) {
  return index == 0 ? GetDriverVersion() : std::wstring();
}

unsigned int CAudioCard::GetAudioErrorCodeByIndex(int index) { return index == 0 ? GetAudioErrorCode() : 0; }
