#pragma once

#include "simulator/sections/common.h"

namespace simulator {

/// A network that the latest scan found.
struct WifiNetwork {
  std::string ssid;                          ///< at most 32 bytes
  std::optional<std::uint32_t> ssid_length;  ///< what the record states; absent: the length of `ssid`
  std::string profile_name;
  std::uint32_t bss_type = 1;
  bool security_enabled = true;
  bool connectable = true;
  std::uint32_t signal_quality = 0;

  bool operator==(const WifiNetwork&) const = default;
};

template <class Archive>
void Fields(Archive& archive, WifiNetwork& network) {
  archive.Field("ssid", network.ssid);
  archive.Field("ssid_length", network.ssid_length);
  archive.Field("profile_name", network.profile_name);
  archive.Field("bss_type", network.bss_type);
  archive.Field("security_enabled", network.security_enabled);
  archive.Field("connectable", network.connectable);
  archive.Field("signal_quality", network.signal_quality);
}

/// An access point and the elements that it announced.
struct WifiBss {
  std::string ssid;
  Bytes bssid;  ///< 6 bytes
  std::uint32_t bss_type = 1;
  std::int32_t rssi = -50;
  Bytes elements;
  std::optional<std::uint32_t> elements_offset;  ///< what the record states; absent: where they are
  std::optional<std::uint32_t> elements_size;    ///< what the record states; absent: how many there are

  bool operator==(const WifiBss&) const = default;
};

template <class Archive>
void Fields(Archive& archive, WifiBss& bss) {
  archive.Field("ssid", bss.ssid);
  archive.Field("bssid", bss.bssid);
  archive.Field("bss_type", bss.bss_type);
  archive.Field("rssi", bss.rssi);
  archive.Field("elements", bss.elements);
  archive.Field("elements_offset", bss.elements_offset);
  archive.Field("elements_size", bss.elements_size);
}

/// One Wi-Fi interface with its radio and what it sees.
struct WifiInterface {
  std::string guid;  ///< "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}"
  std::string description;
  std::uint32_t state = 1;           ///< 1 connected
  std::uint32_t software_radio = 1;  ///< 1 on, 2 off, 0 unknown
  std::uint32_t hardware_radio = 1;
  Error radio_error = 0;      ///< what reading the radio gives
  Error set_radio_error = 0;  ///< what switching it gives
  std::vector<WifiNetwork> networks;
  Error networks_error = 0;
  std::vector<WifiBss> access_points;
  Error access_points_error = 0;
  /// What the list of access points states as its count; absent: how many there are.
  std::optional<std::uint32_t> access_point_count;

  bool operator==(const WifiInterface&) const = default;
};

template <class Archive>
void Fields(Archive& archive, WifiInterface& wifi) {
  archive.Field("guid", wifi.guid);
  archive.Field("description", wifi.description);
  archive.Field("state", wifi.state);
  archive.Field("software_radio", wifi.software_radio);
  archive.Field("hardware_radio", wifi.hardware_radio);
  archive.Field("radio_error", wifi.radio_error);
  archive.Field("set_radio_error", wifi.set_radio_error);
  archive.Field("networks", wifi.networks);
  archive.Field("networks_error", wifi.networks_error);
  archive.Field("access_points", wifi.access_points);
  archive.Field("access_points_error", wifi.access_points_error);
  archive.Field("access_point_count", wifi.access_point_count);
}

/// The native Wi-Fi service. File key `wifi`.
struct Wifi {
  Error open_error = 0;  ///< what opening a client gives; 1062 as a rule where the service does not run
  std::vector<WifiInterface> interfaces;

  bool operator==(const Wifi&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Wifi& wifi) {
  archive.Field("open_error", wifi.open_error);
  archive.Field("interfaces", wifi.interfaces);
}

}  // namespace simulator
