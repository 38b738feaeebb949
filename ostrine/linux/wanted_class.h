/// The setup class of one device, from the least that decides it.
#pragma once

#include <optional>
#include <string_view>

#include "ostrine/common/setup_class.h"

namespace ostrine {

/// The class by the device's modalias and `facts`, if it is `wanted`, or any where nothing is wanted.
///
/// `facts` tells what would have to be looked for, when it is asked: HasNetworkInterface(),
/// HasBluetoothRadio(), IsFingerprintReader(), and IsComposite(), which is known. A device whose modalias
/// says another class is looked at only for what could make it one of the wanted class.
template <class Facts>
std::optional<SetupClass> FindWantedClass(std::string_view modalias, std::optional<SetupClass> wanted,
                                          const Facts& facts) {
  const auto is_wanted = [&](SetupClass setup_class) { return !wanted || *wanted == setup_class; };
  DeviceTraits traits{.is_composite_usb = facts.IsComposite()};
  if (!is_wanted(ClassifyDevice(modalias, traits))) {
    const bool may_turn_out_so = (wanted == SetupClass::kNet && facts.HasNetworkInterface()) ||
                                 (wanted == SetupClass::kBluetooth && facts.HasBluetoothRadio()) ||
                                 (wanted == SetupClass::kBiometric && facts.IsFingerprintReader());
    if (!may_turn_out_so) return std::nullopt;
  }
  // What has come so far as a network card is one with an interface or without.
  traits.has_network_interface = wanted == SetupClass::kNet || facts.HasNetworkInterface();
  traits.has_bluetooth_radio = facts.HasBluetoothRadio();
  traits.is_fingerprint_reader = facts.IsFingerprintReader();
  const SetupClass setup_class = ClassifyDevice(modalias, traits);
  return is_wanted(setup_class) ? std::optional(setup_class) : std::nullopt;
}

}  // namespace ostrine
