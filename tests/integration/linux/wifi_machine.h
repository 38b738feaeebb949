/// A laptop with Wi-Fi, and what its kernel says of it.
#pragma once

#include <gtest/gtest.h>
#include <linux/genetlink.h>
#include <linux/nl80211.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/wifi.h"
#include "platform/ostrine/interface_guid.h"
#include "tests/integration/linux/netlink_bytes.h"
#include "tests/support/linux/fake_machine.h"

namespace velmora::os::test {

inline constexpr std::uint16_t kFamily = 31;
inline constexpr const char* kOther = "wlan7";

inline ByteVector GenericMessage(std::uint16_t type, std::uint8_t command, const Attributes& attributes) {
  genlmsghdr head{};
  head.cmd = command;
  return Message(type, head, attributes);
}

inline ByteVector FamilyMessage(const std::string& name) {
  return GenericMessage(GENL_ID_CTRL, CTRL_CMD_NEWFAMILY,
                        Attributes().Text(CTRL_ATTR_FAMILY_NAME, name).Number(CTRL_ATTR_FAMILY_ID, kFamily));
}

inline ByteVector InterfaceMessage(std::uint32_t index, const std::string& name,
                                   std::uint32_t mode = NL80211_IFTYPE_STATION) {
  return GenericMessage(kFamily, NL80211_CMD_NEW_INTERFACE,
                        Attributes()
                            .Number(NL80211_ATTR_IFINDEX, index)
                            .Text(NL80211_ATTR_IFNAME, name)
                            .Number(NL80211_ATTR_IFTYPE, mode));
}

inline ByteVector Element(std::uint8_t id, const ByteVector& value) {
  return ByteVector{id, static_cast<std::uint8_t>(value.size())} + value;
}

struct Heard {
  std::string name;
  std::uint8_t last_byte = 1;  ///< of the address
  std::int32_t signal = -6000;
  std::uint16_t capability = 0x11;
  std::optional<std::uint32_t> status;
  ByteVector more;
};

inline ByteVector ScanMessage(const Heard& heard) {
  Attributes bss;
  bss.Put(NL80211_BSS_BSSID, ByteVector{0x00, 0x1A, 0x2B, 0x3C, 0x4D, heard.last_byte});
  bss.Number<std::uint32_t>(NL80211_BSS_FREQUENCY, 2437).Number<std::uint64_t>(NL80211_BSS_TSF, 77);
  bss.Number<std::uint16_t>(NL80211_BSS_BEACON_INTERVAL, 100)
      .Number(NL80211_BSS_CAPABILITY, heard.capability);
  bss.Number(NL80211_BSS_SIGNAL_MBM, heard.signal).Number<std::uint32_t>(NL80211_BSS_SEEN_MS_AGO, 1000);
  bss.Put(NL80211_BSS_INFORMATION_ELEMENTS, Element(0, BytesOf(heard.name)) + heard.more);
  if (heard.status) bss.Number(NL80211_BSS_STATUS, *heard.status);
  return GenericMessage(kFamily, NL80211_CMD_NEW_SCAN_RESULTS, Attributes().Put(NL80211_ATTR_BSS, bss));
}

inline WlanSsid Named(const std::string& name) {
  WlanSsid ssid{};
  ssid.length = static_cast<std::uint32_t>(name.size());
  std::copy(name.begin(), name.end(), ssid.bytes);
  return ssid;
}

/// The laptop of today with its wireless card, whose radio has the switch number 5.
class WifiMachine : public testing::Test {
 protected:
  WifiMachine() {
    BuildLaptop(machine_);
    machine_.WriteFile("usr/share/misc/pci.ids", "8086  Intel Corporation\n\t51f0  Wi-Fi 6E AX211 160MHz\n");
    auto kernel = std::make_unique<FakeKernel>();
    kernel_ = kernel.get();
    kernel->Answer(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, FamilyMessage("nl80211"));
    kernel->Answer(kFamily, NL80211_CMD_GET_INTERFACE,
                   InterfaceMessage(9, kOther) + InterfaceMessage(3, "wlp0s20f3") +
                       InterfaceMessage(4, "mon0", NL80211_IFTYPE_MONITOR));
    EXPECT_EQ(OpenWifi(machine_.Path(), std::move(kernel), client_), 0u);
  }
  ~WifiMachine() override { EXPECT_EQ(WlanCloseHandle(client_), 0u); }

  void Scan(const ByteVector& messages) { kernel_->Answer(kFamily, NL80211_CMD_GET_SCAN, messages); }
  void AddSwitch(const char* soft, const char* hard) {
    const std::string folder = "sys/devices/pci0000:00/0000:00:14.3/net/wlp0s20f3/phy80211/rfkill5/";
    machine_.WriteFile(folder + "soft", std::string(soft) + "\n");
    machine_.WriteFile(folder + "hard", std::string(hard) + "\n");
  }

  ostrine::test::FakeMachine machine_;
  ostrine::test::ActsOn acts_on_{machine_};
  FakeKernel* kernel_ = nullptr;
  Handle client_ = nullptr;
  GUID first_ = InterfaceGuid("wlp0s20f3");
};

}  // namespace velmora::os::test
