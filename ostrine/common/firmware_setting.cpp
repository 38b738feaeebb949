#include "ostrine/common/firmware_setting.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace ostrine {
namespace {

struct Setting {
  std::string_view name;
  SwitchedDevice device;
};

constexpr Setting kSettings[] = {
    {"audio", SwitchedDevice::kAudio},
    {"audioaccess", SwitchedDevice::kAudio},
    {"audiocontroller", SwitchedDevice::kAudio},
    {"audiodevice", SwitchedDevice::kAudio},
    {"integratedaudio", SwitchedDevice::kAudio},
    {"integratedaudioaccess", SwitchedDevice::kAudio},
    {"onboardaudio", SwitchedDevice::kAudio},
    {"onboardaudiocontroller", SwitchedDevice::kAudio},
    {"onboardwirelesslan", SwitchedDevice::kWireless},
    {"wireless", SwitchedDevice::kWireless},
    {"wirelessdevice", SwitchedDevice::kWireless},
    {"wirelesslan", SwitchedDevice::kWireless},
    {"wirelesslanaccess", SwitchedDevice::kWireless},
    {"wirelessnetworkdevicewlan", SwitchedDevice::kWireless},
    {"wlandevice", SwitchedDevice::kWireless},
    {"bluetooth", SwitchedDevice::kBluetooth},
    {"bluetoothaccess", SwitchedDevice::kBluetooth},
    {"bluetoothdevice", SwitchedDevice::kBluetooth},
    {"embeddedbluetoothdevice", SwitchedDevice::kBluetooth},
    {"fingerprint", SwitchedDevice::kFingerprint},
    {"fingerprintdevice", SwitchedDevice::kFingerprint},
    {"fingerprintreader", SwitchedDevice::kFingerprint},
    {"fingerprintreaderaccess", SwitchedDevice::kFingerprint},
};

std::string LettersOf(std::string_view text) {
  std::string letters;
  for (const char c : text) {
    if (c >= 'a' && c <= 'z') letters.push_back(c);
    if (c >= 'A' && c <= 'Z') letters.push_back(static_cast<char>(c - 'A' + 'a'));
  }
  return letters;
}

}  // namespace

std::optional<SwitchedDevice> DeviceOfSetting(std::string_view name) {
  const std::string letters = LettersOf(name);
  const auto* const found = std::find_if(std::begin(kSettings), std::end(kSettings),
                                         [&](const Setting& known) { return known.name == letters; });
  if (found == std::end(kSettings)) return std::nullopt;
  return found->device;
}

std::optional<bool> ParseSwitch(std::string_view value) {
  const std::string letters = LettersOf(value);
  for (const std::string_view on : {"enable", "enabled", "on", "yes"}) {
    if (letters == on) return true;
  }
  for (const std::string_view off : {"disable", "disabled", "off", "no"}) {
    if (letters == off) return false;
  }
  return std::nullopt;
}

}  // namespace ostrine
