#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "velmora/bluetooth.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using velmora::testing::CapturedLog;

constexpr auto kFindRadio = "BluetoothFindFirstRadio(4)";
constexpr auto kRadioInfo = "BluetoothGetRadioInfo(520)";
constexpr auto kFindDevice = "BluetoothFindFirstDevice(40, 1, 1, 1, 1, 1, 2, 560)";
constexpr auto kCloseDevice = "BluetoothFindDeviceClose()";
constexpr auto kCloseRadio = "CloseHandle()";
constexpr auto kCloseSearch = "BluetoothFindRadioClose()";

simulator::Machine MachineWithRadios(std::vector<simulator::BluetoothRadio> radios,
                                     std::vector<simulator::BluetoothRemote> remotes) {
  auto machine = simulator::BlankMachine();
  machine.bluetooth = {.radios = std::move(radios), .remote_devices = std::move(remotes)};
  machine.clock.emplace();
  return machine;
}

simulator::Machine MachineWithMouse() {
  return MachineWithRadios({{.address = 1}}, {{.address = 2, .remembered = true}});
}

/// What is called when call number `number` goes wrong, and what comes of it.
struct Outcome {
  bool is_found;
  std::vector<std::string> trace;
};

Outcome FindWhile(Fault fault, int number) {
  auto run = simulator::Use(MachineWithMouse());
  run.Inject(fault, number);
  const bool is_found = CBluetooth().IsFindBtDevice();
  EXPECT_EQ(run.OpenHandles(), 0);
  return {is_found, run.Trace()};
}

TEST(FindBluetoothDevice, AsksTheFirstRadioForOneDeviceOfAnyKind) {
  auto run = simulator::Use(MachineWithMouse());
  EXPECT_TRUE(CBluetooth().IsFindBtDevice());
  EXPECT_THAT(run.Trace(),
              ElementsAre(kFindRadio, kRadioInfo, kFindDevice, kCloseDevice, kCloseRadio, kCloseSearch));
  EXPECT_EQ(run.machine().clock->now, 2 * 1280 * 10'000) << "an inquiry of two units";
}

TEST(FindBluetoothDevice, FindsEachKindOfDevice) {
  for (const auto& remote :
       {simulator::BluetoothRemote{.connected = true}, simulator::BluetoothRemote{.remembered = true},
        simulator::BluetoothRemote{.authenticated = true}, simulator::BluetoothRemote{}}) {
    const auto run = simulator::Use(MachineWithRadios({{.address = 1}}, {remote}));
    EXPECT_TRUE(CBluetooth().IsFindBtDevice());
  }
}

TEST(FindBluetoothDevice, FindsNothingWithoutARadio) {
  const auto run = simulator::Use(MachineWithRadios({}, {{.connected = true}}));
  EXPECT_FALSE(CBluetooth().IsFindBtDevice());
  EXPECT_THAT(run.Trace(), ElementsAre(kFindRadio));
}

TEST(FindBluetoothDevice, DoesNotSearchThroughARadioThatTellsNothing) {
  const auto run =
      simulator::Use(MachineWithRadios({{.info_error = 1167}, {.address = 1}}, {{.connected = true}}));
  EXPECT_FALSE(CBluetooth().IsFindBtDevice());
  EXPECT_THAT(run.Trace(), ElementsAre(kFindRadio, kRadioInfo, kCloseRadio, kCloseSearch))
      << "the second radio is not asked";
}

TEST(FindBluetoothDevice, ClosesNoSearchForDevicesThatFoundNone) {
  const auto run = simulator::Use(MachineWithRadios({{.address = 1}}, {}));
  EXPECT_FALSE(CBluetooth().IsFindBtDevice());
  EXPECT_THAT(run.Trace(), ElementsAre(kFindRadio, kRadioInfo, kFindDevice, kCloseRadio, kCloseSearch));
}

TEST(FindBluetoothDevice, ClosesWhatIsOpenWhateverGoesWrong) {
  for (const Fault fault : {Fault::kFail, Fault::kThrow}) {
    const auto no_radio = FindWhile(fault, 0);
    EXPECT_FALSE(no_radio.is_found);
    EXPECT_THAT(no_radio.trace, ElementsAre(kFindRadio));

    const auto no_info = FindWhile(fault, 1);
    EXPECT_FALSE(no_info.is_found);
    EXPECT_THAT(no_info.trace, ElementsAre(kFindRadio, kRadioInfo, kCloseRadio, kCloseSearch));

    const auto no_device = FindWhile(fault, 2);
    EXPECT_FALSE(no_device.is_found);
    EXPECT_THAT(no_device.trace, ElementsAre(kFindRadio, kRadioInfo, kFindDevice, kCloseRadio, kCloseSearch));

    for (const int closing : {3, 4, 5}) {
      EXPECT_TRUE(FindWhile(fault, closing).is_found) << "a close that fails takes nothing back";
    }
  }
}

TEST(FindBluetoothDevice, LogsItsNameOnlyWhateverItFinds) {
  for (const auto& machine : {MachineWithMouse(), MachineWithRadios({}, {})}) {
    const auto run = simulator::Use(machine);
    const CapturedLog log;
    CBluetooth().IsFindBtDevice();
    EXPECT_THAT(log.Texts(), ElementsAre("CBluetooth::IsFindBtDevice"));
    EXPECT_EQ(log.Lines()[0].function, "CBluetooth::IsFindBtDevice");
  }
}

}  // namespace
