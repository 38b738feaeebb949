#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/os/bluetooth_radio.h"
#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

simulator::Machine MachineWithRemotes(std::vector<simulator::BluetoothRemote> remotes) {
  auto machine = simulator::BlankMachine();
  machine.bluetooth = {.radios = {{.address = 0x001A7DDA7113, .name = "LAPTOP", .manufacturer = 2}},
                       .remote_devices = std::move(remotes)};
  machine.clock.emplace();
  return machine;
}

struct Radio {
  Radio() : find(BluetoothFindFirstRadio({.size = 4}, handle)) {}
  ~Radio() {
    if (handle != nullptr) CloseHandle(handle);
    if (find != nullptr) BluetoothFindRadioClose(find);
  }
  BluetoothSearchParameters Search() const {
    return {.size = sizeof(BluetoothSearchParameters),
            .return_authenticated = 1,
            .return_remembered = 1,
            .return_unknown = 1,
            .return_connected = 1,
            .issue_inquiry = 1,
            .timeout_multiplier = 2,
            .radio = handle};
  }
  Handle handle = nullptr;
  Handle find;
};

TEST(SimulatedBluetooth, TellsAboutItsFirstRadio) {
  const auto run = simulator::Use(MachineWithRemotes({}));
  const Radio radio;
  ASSERT_NE(radio.find, nullptr);
  BluetoothRadioInfo info{.size = sizeof info};
  EXPECT_EQ(BluetoothGetRadioInfo(radio.handle, info), 0u);
  EXPECT_EQ(info.address, 0x001A7DDA7113u);
  EXPECT_EQ(std::u16string(info.name), u"LAPTOP");
  BluetoothRadioInfo unsized{};
  EXPECT_EQ(BluetoothGetRadioInfo(radio.handle, unsized), 1306u) << "the size field tells the version";
}

TEST(SimulatedBluetooth, HasNoRadioOnAMachineWithoutOne) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  const Radio radio;
  EXPECT_EQ(radio.find, nullptr);
  EXPECT_EQ(radio.handle, nullptr);
  EXPECT_EQ(LastError(), 259u);
}

TEST(SimulatedBluetooth, FindsADeviceThatTheSearchSelects) {
  auto run = simulator::Use(MachineWithRemotes({{.address = 1, .name = "Mouse", .remembered = true}}));
  const Radio radio;
  auto search = radio.Search();
  BluetoothDeviceInfo info{.size = sizeof info};
  const Handle find = BluetoothFindFirstDevice(search, info);
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(std::u16string(info.name), u"Mouse");
  EXPECT_TRUE(BluetoothFindDeviceClose(find));
  EXPECT_EQ(run.machine().clock->now, 2 * 1280 * 10'000) << "the inquiry takes its time";

  search.return_remembered = 0;
  EXPECT_EQ(BluetoothFindFirstDevice(search, info), nullptr);
  EXPECT_EQ(LastError(), 259u);
}

TEST(SimulatedBluetooth, FindsAnUnknownDeviceByAnInquiryOnly) {
  const auto run = simulator::Use(MachineWithRemotes({{.address = 1}}));
  const Radio radio;
  auto search = radio.Search();
  search.issue_inquiry = 0;
  BluetoothDeviceInfo info{.size = sizeof info};
  EXPECT_EQ(BluetoothFindFirstDevice(search, info), nullptr);
  search.issue_inquiry = 1;
  const Handle find = BluetoothFindFirstDevice(search, info);
  ASSERT_NE(find, nullptr);
  BluetoothFindDeviceClose(find);
}

TEST(SimulatedBluetooth, CountsFindAndRadioHandlesApart) {
  const velmora::testing::CapturedProblems captured;
  {
    const auto run = simulator::Use(MachineWithRemotes({}));
    Handle radio = nullptr;
    const Handle find = BluetoothFindFirstRadio({.size = 4}, radio);
    EXPECT_EQ(run.OpenHandles(), 2);
    EXPECT_FALSE(CloseHandle(find));
    BluetoothFindRadioClose(find);
  }
  EXPECT_THAT(captured.Problems(),
              ElementsAre("CloseHandle was given a handle that BluetoothFindRadioClose closes",
                          "handles left open: 1"));
}

TEST(SimulatedBluetooth, GoesWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithRemotes({{.address = 1, .name = "Mouse"}}));
  const Radio radio;
  BluetoothRadioInfo info{.size = sizeof info};
  run.Inject(Fault::kFail, 0, true);
  EXPECT_NE(BluetoothGetRadioInfo(radio.handle, info), 0u);
  EXPECT_EQ(Radio().find, nullptr);
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_EQ(BluetoothGetRadioInfo(radio.handle, info), 0u);
  EXPECT_EQ(info.address, 0u);
  run.Inject(Fault::kUnterminated, 0, true);
  BluetoothGetRadioInfo(radio.handle, info);
  EXPECT_EQ(std::u16string(info.name).size(), 247u) << "the longest name that the record holds";
  run.Inject(Fault::kNone, 0);
}

}  // namespace
