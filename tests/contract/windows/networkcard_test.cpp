/// CNetworkCard on made-up network devices and the system's own registry.
#include "velmora/networkcard.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/ostrine/setup_class.h"
#include "tests/support/windows/fake_device.h"
#include "tests/support/windows/resources.h"

namespace {

using testing::Contains;
using testing::Not;
using windows_support::FakeDevice;
using windows_support::InstalledDevice;

const std::wstring kWifiId = L"PCI\\VEN_8086&DEV_FFF0&SUBSYS_00748086&REV_20";
const std::wstring kWiredId = L"PCI\\VEN_10EC&DEV_FFF1&SUBSYS_381717AA&REV_15";
const std::wstring kUsbId = L"USB\\VID_0BDA&PID_FFF2&REV_3000";

constexpr DWORD kWirelessWan = 8;
constexpr DWORD kWifi = 9;
constexpr DWORD kEthernet = 14;

/// An instance key of the network class that the test writes and takes out again. The system's own keys have
/// low numbers.
class ClassKey {
 public:
  ClassKey(const std::wstring& number, const std::wstring& component_id, DWORD medium)
      : path_(L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\" +
              number) {
    EXPECT_EQ(RegCreateKeyW(HKEY_LOCAL_MACHINE, path_.c_str(), &key_), ERROR_SUCCESS);
    Write(L"ComponentId", REG_SZ, component_id.c_str(), (component_id.size() + 1) * sizeof(wchar_t));
    Write(L"*PhysicalMediaType", REG_DWORD, &medium, sizeof medium);
  }
  ClassKey(const ClassKey&) = delete;
  ClassKey& operator=(const ClassKey&) = delete;
  ~ClassKey() {
    RegCloseKey(key_);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, path_.c_str());
  }

  const std::wstring& Path() const { return path_; }

  void Write(const wchar_t* name, DWORD type, const void* data, std::size_t size) {
    EXPECT_EQ(RegSetValueExW(key_, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)),
              ERROR_SUCCESS);
  }

 private:
  std::wstring path_;
  HKEY key_ = nullptr;
};

FakeDevice Card(const std::wstring& hardware_id, const std::wstring& instance_id) {
  return {.setup_class = velmora::setup_class::kNet,
          .class_name = L"Net",
          .instance_id = instance_id,
          .description = L"A made-up network card",
          .hardware_ids = {hardware_id},
          .manufacturer = L"An Adapter Maker",
          .friendly_name = L"A made-up network card #2",
          .driver_version = L"22.80.1.1",
          .inf = L"oem12.inf",
          .problem_code = 22};
}

FakeDevice WifiCard() { return Card(kWifiId, L"PCI\\VEN_8086&DEV_FFF0\\3&11583659&0&A3"); }

TEST(NetworkCardOnWindows, IsOfTheKindThatItsClassKeySays) {
  const InstalledDevice wifi(WifiCard());
  const InstalledDevice wired(Card(kWiredId, L"PCI\\VEN_10EC&DEV_FFF1\\4&2A6B1D&0&00E5"));
  const ClassKey wifi_key(L"0029", L"pci\\ven_8086&dev_fff0", kWifi);
  const ClassKey wired_key(L"0028", L"pci\\ven_10ec&dev_fff1", kEthernet);
  CNetworkCard cards;
  EXPECT_EQ(cards.GetWireLessCardHardID(), kWifiId);
  EXPECT_TRUE(cards.IsWlanOrWifi(kWifiId));
  EXPECT_FALSE(cards.IsWiredCard(kWifiId));
  EXPECT_THAT(cards.GetAllWiredHardId(), Contains(kWiredId));
  EXPECT_THAT(cards.GetAllWiredHardId(), Not(Contains(kWifiId)));
}

TEST(NetworkCardOnWindows, TellsAboutTheCardByKindAndByHardwareId) {
  const InstalledDevice wifi(WifiCard());
  const ClassKey key(L"0029", L"pci\\ven_8086&dev_fff0", kWifi);
  CNetworkCard cards;
  EXPECT_EQ(cards.GetCaption(NETWORK_CARD_WIRELESS), L"A made-up network card");
  EXPECT_EQ(cards.GetDisplayName(NETWORK_CARD_WIRELESS), L"A made-up network card #2");
  EXPECT_EQ(cards.GetManufactrue(NETWORK_CARD_WIRELESS), L"An Adapter Maker");
  EXPECT_EQ(cards.GetDriverVersion(NETWORK_CARD_WIRELESS), L"22.80.1.1");
  EXPECT_EQ(cards.GetINF(NETWORK_CARD_WIRELESS), L"oem12.inf");
  EXPECT_EQ(cards.GetProblemCode(NETWORK_CARD_WIRELESS), 22UL);
  EXPECT_EQ(cards.GetInstanceIDByHardId(kWifiId), L"PCI\\VEN_8086&DEV_FFF0\\3&11583659&0&A3");
  EXPECT_EQ(cards.GetMacAddress(NETWORK_CARD_WIRELESS), L"") << "WMI knows no such adapter";
}

TEST(NetworkCardOnWindows, HasNoKindFromKey30On) {
  const InstalledDevice wifi(WifiCard());
  const ClassKey key(L"0030", L"pci\\ven_8086&dev_fff0", kWifi);
  EXPECT_FALSE(CNetworkCard().IsWlanOrWifi(kWifiId));
}

TEST(NetworkCardOnWindows, IsNotInternalOnUsbButHasAKind) {
  const InstalledDevice modem(Card(kUsbId, L"USB\\VID_0BDA&PID_FFF2\\5&1"));
  const ClassKey key(L"0029", L"usb\\vid_0bda&pid_fff2", kWirelessWan);
  CNetworkCard cards;
  EXPECT_THAT(cards.GetInternalNetCardHardId(), Not(Contains(kUsbId)));
  EXPECT_TRUE(cards.IsMobileCard(kUsbId));
}

TEST(NetworkCardOnWindows, IsNotMatchedByAComponentIdThatIsTooLong) {
  const std::wstring long_id = L"PCI\\" + std::wstring(140, L'A');
  unsigned long medium = 77;
  {
    const ClassKey key(L"0029", L"pci\\" + std::wstring(125, L'a'), kWifi);
    EXPECT_EQ(CNetworkCard().GetMediaTypeByRegedit(key.Path(), long_id, medium), 1);
    EXPECT_EQ(medium, 9UL);
  }
  medium = 77;
  const ClassKey key(L"0029", L"pci\\" + std::wstring(126, L'a'), kWifi);
  EXPECT_EQ(CNetworkCard().GetMediaTypeByRegedit(key.Path(), long_id, medium), 0);
  EXPECT_EQ(medium, 77UL);
}

TEST(NetworkCardOnWindows, IsMatchedByItsInstanceIdInTheOtherWay) {
  ClassKey key(L"0029", L"another card's", kWifi);
  const std::wstring instance_id = L"pci\\ven_8086&dev_fff0\\3&11583659&0&a3";
  key.Write(L"DeviceInstanceID", REG_SZ, instance_id.c_str(), (instance_id.size() + 1) * sizeof(wchar_t));
  unsigned long medium = 77;
  EXPECT_EQ(
      CNetworkCard().GetMediaTypeByRegeditEx(key.Path(), L"PCI\\VEN_8086&DEV_FFF0\\3&11583659&0&A3", medium),
      1);
  EXPECT_EQ(medium, 9UL);
}

TEST(NetworkCardOnWindows, LeavesNoKeyOpen) {
  const ClassKey key(L"0029", L"pci\\ven_8086&dev_fff0", kWifi);
  const ClassKey other(L"0028", L"another card's", kEthernet);
  const auto ask = [](int times) {
    for (int i = 0; i < times; ++i) {
      EXPECT_TRUE(CNetworkCard().IsWlanOrWifi(kWifiId));
      EXPECT_FALSE(CNetworkCard().IsWlanOrWifi(kUsbId));
    }
  };
  ask(5);
  const std::size_t handles = windows_support::HandleCount();
  ask(20);
  EXPECT_EQ(windows_support::HandleCount(), handles);
}

}  // namespace
