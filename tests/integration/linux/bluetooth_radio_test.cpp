#include "platform/os/bluetooth_radio.h"

#include <gtest/gtest.h>

#include <chrono>

#include "platform/linux/bluez.h"
#include "platform/os/last_error.h"
#include "platform/unicode.h"
#include "tests/integration/linux/mock_bus.h"
#include "tests/integration/linux/without_bus.h"

namespace velmora::os {
namespace {

constexpr BluetoothFindRadioParameters kAnyRadio{sizeof(BluetoothFindRadioParameters)};

BluetoothSearchParameters Everything(Handle radio) {
  BluetoothSearchParameters parameters{};
  parameters.size = sizeof parameters;
  parameters.return_authenticated = parameters.return_remembered = 1;
  parameters.return_unknown = parameters.return_connected = 1;
  parameters.issue_inquiry = 1;
  parameters.timeout_multiplier = 1;
  parameters.radio = radio;
  return parameters;
}

class Bluetooth : public testing::Test {
 protected:
  ~Bluetooth() override { EXPECT_TRUE(radio_ == nullptr || CloseHandle(radio_)); }
  void AddAdapter(const char* name, const char* powered = "on", const char* address = "00:1A:7D:DA:71:13") {
    service_.Call(test::kMockControl, "AddAdapter", {name, address, powered});
  }
  void AddRemote(const char* address, const char* marks, const char* adapter = "hci0") {
    service_.Call(test::kMockControl, "AddRemote", {adapter, address, marks});
  }
  bool FindRadio() {
    const Handle find = BluetoothFindFirstRadio(kAnyRadio, radio_);
    if (find == nullptr) return false;
    EXPECT_TRUE(BluetoothFindRadioClose(find));
    return true;
  }
  /// The address of the first device that is found; 0 for none.
  std::uint64_t FindDevice(const BluetoothSearchParameters& parameters) {
    BluetoothDeviceInfo info{};
    info.size = sizeof info;
    const Handle find = BluetoothFindFirstDevice(parameters, info);
    if (find == nullptr) return 0;
    EXPECT_TRUE(BluetoothFindDeviceClose(find));
    found_ = info;
    return info.address;
  }

  test::PrivateBus bus_;
  test::MockService service_{VELMORA_TEST_FILES "/bluez_mock.py", "org.bluez", "/"};
  Handle radio_ = nullptr;
  BluetoothDeviceInfo found_{};
};

TEST_F(Bluetooth, FindsTheFirstRadioThatIsOn) {
  AddAdapter("hci10", "on", "00:00:00:00:00:10");
  AddAdapter("hci0", "off", "00:00:00:00:00:01");
  AddAdapter("hci2", "on", "00:00:00:00:00:02");
  ASSERT_TRUE(FindRadio());
  BluetoothRadioInfo info{};
  info.size = sizeof info;
  ASSERT_EQ(BluetoothGetRadioInfo(radio_, info), 0u);
  EXPECT_EQ(info.address, 2u);
  EXPECT_EQ(unicode::WideFromUtf16({info.name, 14}), L"Laptop of hci2");
  EXPECT_EQ(info.name[14], u'\0');
  EXPECT_EQ(info.class_of_device, 0x6C010Cu);
  EXPECT_EQ(info.manufacturer, 2);
}

TEST_F(Bluetooth, HasNoRadioThatIsOff) {
  AddAdapter("hci0", "off");
  EXPECT_FALSE(FindRadio());
  EXPECT_EQ(LastError(), 259u);
  EXPECT_EQ(radio_, nullptr);
}

TEST_F(Bluetooth, FindsAStrangerByAnInquiryOfTheWantedLength) {
  AddAdapter("hci0");
  AddRemote("AA:BB:CC:DD:EE:FF", "classic unknown");
  ASSERT_TRUE(FindRadio());
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(FindDevice(Everything(radio_)), 0xAABBCCDDEEFFu);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1280));
  EXPECT_EQ(service_.Call(test::kMockControl, "Requests"), "filter bredr,start,stop");
  EXPECT_EQ(found_.connected + found_.remembered + found_.authenticated, 0);
  EXPECT_EQ(found_.class_of_device, 0x240404u);
}

TEST_F(Bluetooth, FindsKnownDevicesWithoutAnInquiry) {
  AddAdapter("hci0");
  AddRemote("AA:BB:CC:DD:EE:01", "classic paired");
  ASSERT_TRUE(FindRadio());
  auto parameters = Everything(radio_);
  parameters.issue_inquiry = 0;
  EXPECT_EQ(FindDevice(parameters), 0xAABBCCDDEE01u);
  EXPECT_EQ(found_.authenticated, 1);
  EXPECT_EQ(found_.remembered, 1);
  EXPECT_EQ(found_.connected, 0);
  EXPECT_EQ(service_.Call(test::kMockControl, "Requests"), "");
}

TEST_F(Bluetooth, FindsOnlyWhatIsAskedFor) {
  AddAdapter("hci0");
  AddRemote("AA:BB:CC:DD:EE:01", "classic paired");
  AddRemote("AA:BB:CC:DD:EE:02", "classic trusted");
  AddRemote("AA:BB:CC:DD:EE:03", "classic connected");
  AddRemote("AA:BB:CC:DD:EE:04", "classic unknown");
  ASSERT_TRUE(FindRadio());
  BluetoothSearchParameters parameters{};
  parameters.size = sizeof parameters;
  parameters.radio = radio_;
  EXPECT_EQ(FindDevice(parameters), 0u);
  EXPECT_EQ(LastError(), 259u);
  parameters.return_authenticated = 1;
  EXPECT_EQ(FindDevice(parameters), 0xAABBCCDDEE01u);
  parameters.return_authenticated = 0;
  parameters.return_connected = 1;
  EXPECT_EQ(FindDevice(parameters), 0xAABBCCDDEE03u);
  parameters.return_connected = 0;
  parameters.return_unknown = 1;
  EXPECT_EQ(FindDevice(parameters), 0u) << "strangers are met by an inquiry only";
  parameters.issue_inquiry = 1;
  EXPECT_EQ(FindDevice(parameters), 0xAABBCCDDEE04u);
}

TEST_F(Bluetooth, FindsNoLowEnergyDevicesAndNoneOfAnotherRadio) {
  AddAdapter("hci0");
  AddAdapter("hci1");
  AddRemote("AA:BB:CC:DD:EE:01", "low-energy paired");
  AddRemote("AA:BB:CC:DD:EE:02", "paired");
  AddRemote("AA:BB:CC:DD:EE:03", "classic paired", "hci1");
  ASSERT_TRUE(FindRadio());
  auto parameters = Everything(radio_);
  parameters.timeout_multiplier = 0;
  EXPECT_EQ(FindDevice(parameters), 0u);
  EXPECT_EQ(LastError(), 259u);
}

TEST_F(Bluetooth, FindsKnownDevicesWhenTheInquiryIsRefused) {
  AddAdapter("hci0");
  AddRemote("AA:BB:CC:DD:EE:01", "classic paired");
  service_.Call(test::kMockControl, "Refuse");
  ASSERT_TRUE(FindRadio());
  auto parameters = Everything(radio_);
  parameters.timeout_multiplier = 0;
  EXPECT_EQ(FindDevice(parameters), 0xAABBCCDDEE01u);
  EXPECT_EQ(service_.Call(test::kMockControl, "Requests"), "filter bredr");
}

TEST_F(Bluetooth, RefusesRecordsOfAnotherSizeAndForeignHandles) {
  AddAdapter("hci0");
  Handle radio = &radio;
  EXPECT_EQ(BluetoothFindFirstRadio({3}, radio), nullptr);
  EXPECT_EQ(LastError(), 1306u);
  EXPECT_EQ(radio, &radio);
  ASSERT_TRUE(FindRadio());
  BluetoothRadioInfo info{};
  EXPECT_EQ(BluetoothGetRadioInfo(radio_, info), 1306u);
  info.size = sizeof info;
  EXPECT_EQ(BluetoothGetRadioInfo(nullptr, info), 6u);
  auto parameters = Everything(radio_);
  parameters.size = 39;
  EXPECT_EQ(FindDevice(parameters), 0u);
  EXPECT_EQ(LastError(), 1306u);
  EXPECT_EQ(FindDevice(Everything(nullptr)), 0u);
  EXPECT_EQ(LastError(), 6u);
  EXPECT_FALSE(BluetoothFindDeviceClose(radio_));
  EXPECT_EQ(LastError(), 6u);
  EXPECT_FALSE(BluetoothFindRadioClose(nullptr));
}

TEST(BluetoothWithoutABus, HasNoRadio) {
  const test::NoBus no_bus;
  Handle radio = nullptr;
  EXPECT_EQ(BluetoothFindFirstRadio(kAnyRadio, radio), nullptr);
  EXPECT_EQ(LastError(), 259u);
}

TEST(BluetoothWithoutAService, HasNoRadio) {
  const test::PrivateBus bus;
  Handle radio = nullptr;
  EXPECT_EQ(BluetoothFindFirstRadio(kAnyRadio, radio), nullptr);
  EXPECT_EQ(LastError(), 259u);
}

TEST(BluetoothAddresses, AreSixBytes) {
  EXPECT_EQ(ParseBluetoothAddress("AA:bb:0C:DD:EE:FF"), 0xAABB0CDDEEFFu);
  for (const char* none : {"", "AA:BB:CC:DD:EE", "AA:BB:CC:DD:EE:F", "AA-BB-CC-DD-EE-FF", "AA:BB:CC:DD:EE:FG",
                           "AA:BB:CC:DD:EE:FF "}) {
    EXPECT_FALSE(ParseBluetoothAddress(none)) << none;
  }
}

}  // namespace
}  // namespace velmora::os
