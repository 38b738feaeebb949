#include "platform/linux/wifi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/genetlink.h>
#include <linux/nl80211.h>
#include <linux/rfkill.h>

#include <array>
#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

#include "platform/linux/rfkill.h"
#include "platform/linux/wifi_lists.h"
#include "platform/linux/wifi_scan.h"
#include "platform/os/last_error.h"
#include "platform/ostrine/interface_guid.h"
#include "platform/unicode.h"
#include "tests/integration/linux/netlink_bytes.h"
#include "tests/support/linux/fake_machine.h"

namespace velmora::os {
namespace {

using ostrine::test::FakeMachine;
using test::Attributes;
using test::ByteVector;
using test::operator+;
using testing::ElementsAre;

constexpr std::uint16_t kFamily = 31;
const std::string kOther = "wlan7";

ByteVector GenericMessage(std::uint16_t type, std::uint8_t command, const Attributes& attributes) {
  genlmsghdr head{};
  head.cmd = command;
  return test::Message(type, head, attributes);
}

ByteVector FamilyMessage(const std::string& name) {
  return GenericMessage(GENL_ID_CTRL, CTRL_CMD_NEWFAMILY,
                        Attributes().Text(CTRL_ATTR_FAMILY_NAME, name).Number(CTRL_ATTR_FAMILY_ID, kFamily));
}

ByteVector InterfaceMessage(std::uint32_t index, const std::string& name,
                            std::uint32_t mode = NL80211_IFTYPE_STATION) {
  return GenericMessage(kFamily, NL80211_CMD_NEW_INTERFACE,
                        Attributes()
                            .Number(NL80211_ATTR_IFINDEX, index)
                            .Text(NL80211_ATTR_IFNAME, name)
                            .Number(NL80211_ATTR_IFTYPE, mode));
}

ByteVector Element(std::uint8_t id, const ByteVector& value) {
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

ByteVector ScanMessage(const Heard& heard) {
  Attributes bss;
  bss.Put(NL80211_BSS_BSSID, ByteVector{0x00, 0x1A, 0x2B, 0x3C, 0x4D, heard.last_byte});
  bss.Number<std::uint32_t>(NL80211_BSS_FREQUENCY, 2437).Number<std::uint64_t>(NL80211_BSS_TSF, 77);
  bss.Number<std::uint16_t>(NL80211_BSS_BEACON_INTERVAL, 100)
      .Number(NL80211_BSS_CAPABILITY, heard.capability);
  bss.Number(NL80211_BSS_SIGNAL_MBM, heard.signal).Number<std::uint32_t>(NL80211_BSS_SEEN_MS_AGO, 1000);
  bss.Put(NL80211_BSS_INFORMATION_ELEMENTS, Element(0, test::BytesOf(heard.name)) + heard.more);
  if (heard.status) bss.Number(NL80211_BSS_STATUS, *heard.status);
  return GenericMessage(kFamily, NL80211_CMD_NEW_SCAN_RESULTS, Attributes().Put(NL80211_ATTR_BSS, bss));
}

WlanSsid Named(const std::string& name) {
  WlanSsid ssid{};
  ssid.length = static_cast<std::uint32_t>(name.size());
  std::copy(name.begin(), name.end(), ssid.bytes);
  return ssid;
}

/// The laptop of today with its wireless card, whose radio has the switch number 5.
class Wifi : public testing::Test {
 protected:
  Wifi() {
    BuildLaptop(machine_);
    machine_.WriteFile("usr/share/misc/pci.ids", "8086  Intel Corporation\n\t51f0  Wi-Fi 6E AX211 160MHz\n");
    auto kernel = std::make_unique<test::FakeKernel>();
    kernel_ = kernel.get();
    kernel->Answer(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, FamilyMessage("nl80211"));
    kernel->Answer(kFamily, NL80211_CMD_GET_INTERFACE,
                   InterfaceMessage(9, kOther) + InterfaceMessage(3, "wlp0s20f3") +
                       InterfaceMessage(4, "mon0", NL80211_IFTYPE_MONITOR));
    EXPECT_EQ(OpenWifi(machine_.Path(), std::move(kernel), client_), 0u);
  }
  ~Wifi() override { EXPECT_EQ(WlanCloseHandle(client_), 0u); }

  void Scan(const ByteVector& messages) { kernel_->Answer(kFamily, NL80211_CMD_GET_SCAN, messages); }
  void AddSwitch(const char* soft, const char* hard) {
    const std::string folder = "sys/devices/pci0000:00/0000:00:14.3/net/wlp0s20f3/phy80211/rfkill5/";
    machine_.WriteFile(folder + "soft", std::string(soft) + "\n");
    machine_.WriteFile(folder + "hard", std::string(hard) + "\n");
  }

  FakeMachine machine_;
  ostrine::test::ActsOn acts_on_{machine_};
  test::FakeKernel* kernel_ = nullptr;
  Handle client_ = nullptr;
  GUID first_ = InterfaceGuid("wlp0s20f3");
};

TEST_F(Wifi, ListsItsClientInterfacesInTheKernelsOrder) {
  machine_.WriteFile("sys/class/net/wlp0s20f3/operstate", "up\n");
  WlanInterfaceList* list = nullptr;
  ASSERT_EQ(WlanEnumInterfaces(client_, list), 0u);
  ASSERT_EQ(list->count, 2u);
  EXPECT_EQ(list->items[0].guid, first_);
  EXPECT_EQ(list->items[0].state, 1u);
  EXPECT_EQ(unicode::WideFromUtf16({list->items[0].description, 39}),
            L"Intel Corporation Wi-Fi 6E AX211 160MHz");
  EXPECT_EQ(list->items[0].description[39], u'\0');
  WlanInterfaceInfo second{};
  std::memcpy(&second, reinterpret_cast<const char*>(list) + 8 + sizeof second, sizeof second);
  EXPECT_EQ(second.guid, InterfaceGuid(kOther));
  EXPECT_EQ(second.state, 0u);
  WlanFreeMemory(list);
}

TEST_F(Wifi, TellsHowItsRadioIsSwitched) {
  const auto ask = [&] {
    std::uint32_t size = 0;
    void* data = nullptr;
    EXPECT_EQ(WlanQueryInterface(client_, first_, 4, size, data), 0u);
    EXPECT_EQ(size, sizeof(WlanRadioState));
    const auto state = *static_cast<const WlanRadioState*>(data);
    WlanFreeMemory(data);
    EXPECT_EQ(state.phy_count, 1u);
    return std::pair(state.phys[0].software_state, state.phys[0].hardware_state);
  };
  EXPECT_EQ(ask(), std::pair(0U, 0U)) << "without a switch";
  AddSwitch("0", "0");
  EXPECT_EQ(ask(), std::pair(1U, 1U));
  AddSwitch("1", "0");
  EXPECT_EQ(ask(), std::pair(2U, 1U));
  AddSwitch("0", "1");
  EXPECT_EQ(ask(), std::pair(1U, 2U));
  AddSwitch("", "1");
  EXPECT_EQ(ask(), std::pair(0U, 0U)) << "the kernel says nothing that can be read";
}

TEST_F(Wifi, ListsNetworksOnceEachTheConnectedOneFirst) {
  Scan(ScanMessage({.name = "cafe", .last_byte = 1, .signal = -4000}) +
       ScanMessage({.name = "home", .last_byte = 2, .signal = -9000}) +
       ScanMessage(
           {.name = "home", .last_byte = 3, .signal = -7500, .status = NL80211_BSS_STATUS_ASSOCIATED}) +
       ScanMessage({.name = "cafe", .last_byte = 4, .capability = 0x01}) + ScanMessage({.name = ""}));
  WlanNetworkList* list = nullptr;
  ASSERT_EQ(WlanGetAvailableNetworkList(client_, first_, 1, list), 0u);
  ASSERT_EQ(list->count, 4u);
  std::array<WlanAvailableNetwork, 4> networks;
  std::memcpy(networks.data(), list->items, sizeof networks);
  EXPECT_EQ(networks[0].ssid.length, 4u);
  EXPECT_EQ(std::memcmp(networks[0].ssid.bytes, "home", 5), 0) << "with zeros behind it";
  EXPECT_EQ(networks[0].flags, 1u);
  EXPECT_EQ(networks[0].bssid_count, 2u);
  EXPECT_EQ(networks[0].signal_quality, 50u);
  EXPECT_EQ(networks[0].bss_type, 1u);
  EXPECT_EQ(networks[0].security_enabled, 1);
  EXPECT_EQ(networks[1].signal_quality, 100u);
  EXPECT_EQ(networks[2].ssid.length + networks[3].ssid.length, 4u) << "a hidden one, and the open one";
  WlanFreeMemory(list);
}

TEST_F(Wifi, ListsTheAccessPointsOfANetworkWithTheirElements) {
  const ByteVector wps = Element(221, {0x00, 0x50, 0xF2, 0x04, 1, 2, 3});
  Scan(ScanMessage({.name = "home", .last_byte = 1, .signal = -9000}) +
       ScanMessage({.name = "home", .last_byte = 2, .signal = -5000, .more = wps}) +
       ScanMessage({.name = "homes", .last_byte = 3}) +
       ScanMessage({.name = "home", .last_byte = 4, .capability = 0x12}) +
       ScanMessage({.name = "home", .last_byte = 5, .capability = 0x01}));
  WlanBssList* list = nullptr;
  ASSERT_EQ(WlanGetNetworkBssList(client_, first_, Named("home"), 1, true, list), 0u);
  ASSERT_EQ(list->count, 2u);
  std::array<WlanBssEntry, 2> entries;
  std::memcpy(entries.data(), list->items, sizeof entries);
  EXPECT_THAT(entries[0].bssid, ElementsAre(0x00, 0x1A, 0x2B, 0x3C, 0x4D, 2)) << "the strongest first";
  EXPECT_EQ(entries[0].rssi, -50);
  EXPECT_EQ(entries[0].centre_frequency, 2437000u);
  EXPECT_EQ(entries[0].beacon_period, 100);
  EXPECT_EQ(entries[1].bssid[5], 1);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(list);
  std::size_t end = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::size_t begin = 8 + i * sizeof(WlanBssEntry) + entries[i].ie_offset;
    ASSERT_LE(begin + entries[i].ie_size, list->total_size);
    EXPECT_GE(begin, 8 + sizeof entries);
    EXPECT_EQ(std::memcmp(bytes + begin, "\0\4home", 6), 0);
    end = begin + entries[i].ie_size;
  }
  EXPECT_EQ(end, list->total_size);
  EXPECT_EQ(entries[0].ie_size, 6 + wps.size());
  WlanFreeMemory(list);
}

TEST_F(Wifi, SaysWhatIsWrong) {
  std::uint32_t size = 7;
  void* data = &size;
  EXPECT_EQ(WlanQueryInterface(client_, InterfaceGuid("nosuch"), 4, size, data), 1168u);
  EXPECT_EQ(LastError(), 1168u);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(WlanQueryInterface(client_, first_, 7, size, data), 50u);
  EXPECT_EQ(WlanQueryInterface(nullptr, first_, 4, size, data), 6u);
  EXPECT_EQ(LastError(), 6u);
  WlanInterfaceList* list = nullptr;
  EXPECT_EQ(WlanEnumInterfaces(nullptr, list), 6u);
  WlanBssList* points = nullptr;
  WlanSsid too_long = Named("home");
  too_long.length = 33;
  EXPECT_EQ(WlanGetNetworkBssList(client_, first_, too_long, 1, true, points), 87u);
  kernel_->Fail(kFamily, NL80211_CMD_GET_SCAN, EACCES);
  WlanNetworkList* networks = nullptr;
  EXPECT_EQ(WlanGetAvailableNetworkList(client_, first_, 1, networks), 5u);
  EXPECT_EQ(networks, nullptr);
  EXPECT_EQ(WlanCloseHandle(nullptr), 6u);
  WlanFreeMemory(nullptr);
}

TEST(WifiClients, AreNoneWhereTheKernelHasNoWifi) {
  Handle client = nullptr;
  auto without_family = std::make_unique<test::FakeKernel>();
  without_family->Fail(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, ENOENT);
  EXPECT_EQ(OpenWifi("/", std::move(without_family), client), 1062u);
  EXPECT_EQ(LastError(), 1062u);
  auto another_family = std::make_unique<test::FakeKernel>();
  another_family->Answer(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, FamilyMessage("nl8021"));
  EXPECT_EQ(OpenWifi("/", std::move(another_family), client), 1062u);
  auto refusing = std::make_unique<test::FakeKernel>();
  refusing->Fail(GENL_ID_CTRL, CTRL_CMD_GETFAMILY, EACCES);
  EXPECT_EQ(OpenWifi("/", std::move(refusing), client), 5u);
  EXPECT_EQ(client, nullptr);
}

TEST(WifiClients, OfThisMachineAreThereWithItsWifiOnly) {
  Handle client = nullptr;
  std::uint32_t version = 0;
  const std::uint32_t result = WlanOpenHandle(2, version, client);
  if (!std::filesystem::exists("/sys/class/ieee80211")) {
    EXPECT_EQ(result, 1062u);
    EXPECT_EQ(client, nullptr);
    return;
  }
  ASSERT_EQ(result, 0u);
  EXPECT_EQ(version, 2u);
  WlanInterfaceList* list = nullptr;
  EXPECT_EQ(WlanEnumInterfaces(client, list), 0u);
  WlanFreeMemory(list);
  EXPECT_EQ(WlanCloseHandle(client), 0u);
}

/// Does what the kernel does with what is written to /dev/rfkill.
class SwitchingKernel {
 public:
  SwitchingKernel(const FakeMachine& machine, std::map<std::uint32_t, std::string> folders)
      : machine_(machine), folders_(std::move(folders)), thread_([this] {
          while (!stop_) {
            Follow();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
          }
        }) {}
  ~SwitchingKernel() {
    stop_ = true;
    thread_.join();
  }
  std::vector<std::pair<std::uint32_t, int>> Done() const { return done_; }

 private:
  void Follow() {
    // Each event overwrites the one before it, since a device has no end to be written behind.
    std::ifstream file(machine_.Path() / "dev/rfkill", std::ios::binary);
    std::array<char, RFKILL_EVENT_SIZE_V1> bytes{};
    if (!file.read(bytes.data(), bytes.size())) return;
    rfkill_event event{};
    std::memcpy(&event, bytes.data(), bytes.size());
    const std::uint32_t number = event.idx;  // the record is packed
    const std::pair<std::uint32_t, int> change{number, int{event.soft}};
    if (event.op != RFKILL_OP_CHANGE || event.type != RFKILL_TYPE_WLAN) return;
    if (!done_.empty() && done_.back() == change) return;
    done_.push_back(change);
    machine_.WriteFile(folders_.at(number) + "/soft", std::to_string(event.soft) + "\n");
  }

  const FakeMachine& machine_;
  std::map<std::uint32_t, std::string> folders_;
  std::vector<std::pair<std::uint32_t, int>> done_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

class WifiSwitch : public Wifi {
 protected:
  const std::string kRadio = "sys/devices/pci0000:00/0000:00:14.3/net/wlp0s20f3/phy80211/rfkill5";
  std::uint32_t Set(std::uint32_t state, std::uint32_t phy = 0, std::uint32_t size = 12) {
    const WlanPhyRadioState wanted{.phy_index = phy, .software_state = state, .hardware_state = 0};
    return WlanSetInterface(client_, first_, 4, size, &wanted);
  }
};

TEST_F(WifiSwitch, IsSwitchedAndReadBack) {
  AddSwitch("0", "0");
  machine_.WriteFile("dev/rfkill", "");
  const SwitchingKernel kernel(machine_, {{5, kRadio}});
  EXPECT_EQ(Set(2), 0u);
  EXPECT_FALSE(ReadRadioSwitch(machine_.Path(), "wlp0s20f3")->software_on);
  EXPECT_EQ(Set(1), 0u);
  EXPECT_TRUE(ReadRadioSwitch(machine_.Path(), "wlp0s20f3")->software_on);
  EXPECT_THAT(kernel.Done(), ElementsAre(std::pair(5U, 1), std::pair(5U, 0)));
}

TEST_F(WifiSwitch, TakesTwoStatesOfOneRadioOnly) {
  AddSwitch("0", "0");
  machine_.WriteFile("dev/rfkill", "");
  EXPECT_EQ(Set(0), 87u);
  EXPECT_EQ(Set(3), 87u);
  EXPECT_EQ(Set(1, 1), 87u);
  EXPECT_EQ(Set(1, 0, 11), 87u);
  EXPECT_EQ(WlanSetInterface(client_, first_, 4, 12, nullptr), 87u);
  EXPECT_EQ(std::filesystem::file_size(machine_.Path() / "dev/rfkill"), 0u);
}

TEST_F(WifiSwitch, SaysWhyItStays) {
  EXPECT_EQ(Set(2), 50u) << "there is no switch";
  AddSwitch("0", "0");
  EXPECT_EQ(Set(2), 50u) << "the kernel takes no wishes";
  EXPECT_FALSE(std::filesystem::exists(machine_.Path() / "dev/rfkill"));
  machine_.WriteFile("dev/rfkill", "");
  EXPECT_EQ(Set(2), 1460u) << "it does not follow";
  machine_.Root().Forbid("dev/rfkill");
  const ostrine::test::WithoutRights without_rights;
  EXPECT_EQ(SetRadioSwitch(machine_.Path(), "wlp0s20f3", false), 5u);
}

TEST_F(WifiSwitch, OnFreesTheMachinesOwnSwitchOffDoesNotTouchIt) {
  AddSwitch("1", "1");
  const std::string own = "sys/devices/platform/wmi/rfkill/rfkill0";
  for (const auto& [place, type, soft] :
       {std::tuple("rfkill0", "wlan", "1"), std::tuple("rfkill1", "bluetooth", "1"),
        std::tuple("rfkill2", "wlan", "0")}) {
    const std::string folder = std::string("sys/devices/platform/wmi/rfkill/") + place;
    machine_.WriteFile(folder + "/type", std::string(type) + "\n");
    machine_.WriteFile(folder + "/soft", std::string(soft) + "\n");
    machine_.Root().Link(std::string("sys/class/rfkill/") + place,
                         "../../devices/platform/wmi/rfkill/" + std::string(place));
  }
  // Another card's radio, off as well.
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/rfkill9/type", "wlan\n");
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/rfkill9/soft", "1\n");
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/index", "9\n");
  machine_.WriteFile("sys/devices/pci0000:00/0000:05:00.0/phy9/macaddress", "00:00:00:00:00:09\n");
  machine_.Root().Link("sys/devices/pci0000:00/0000:05:00.0/phy9/rfkill9/device", "..");
  machine_.Root().Link("sys/class/rfkill/rfkill9", "../../devices/pci0000:00/0000:05:00.0/phy9/rfkill9");
  machine_.WriteFile("dev/rfkill", "");
  const SwitchingKernel kernel(machine_, {{0, own}, {5, kRadio}});
  EXPECT_EQ(SetRadioSwitch(machine_.Path(), "wlp0s20f3", true), 0u);
  EXPECT_EQ(kernel.Done().back(), std::pair(5U, 0));
  EXPECT_EQ(SetRadioSwitch(machine_.Path(), "wlp0s20f3", false), 0u);
  EXPECT_EQ(kernel.Done().back(), std::pair(5U, 1));
  std::ifstream other(machine_.Path() / "sys/class/rfkill/rfkill9/soft");
  EXPECT_EQ(other.get(), '1');
}

}  // namespace
}  // namespace velmora::os
