#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"
#include "tests/support/simulator/machines.h"
#include "velmora/bluetooth.h"

namespace {

using simulator::Fault;
using testing::AnyOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::MachineWithDevices;

using Texts = std::vector<std::wstring>;

simulator::Device Remote(const char* hardware_id, const char* type = "", const char* name = "") {
  return {.setup_class = "Bluetooth", .hardware_ids = {hardware_id}, .type = type, .name = name};
}

Texts RemotesAmong(std::vector<simulator::Device> devices) {
  const auto run = simulator::Use(MachineWithDevices(std::move(devices)));
  return CBluetooth().GetExternalDeviceHardID();
}

Texts MiceAmong(std::vector<simulator::Device> devices) {
  const auto run = simulator::Use(MachineWithDevices(std::move(devices)));
  return CBluetooth().GetExternalBlteMouseHardID();
}

std::wstring AddressOf(const wchar_t* hardware_id) {
  return CBluetooth().GetExternalDeviceAddressByHardId(hardware_id);
}

TEST(ExternalBluetoothDevices, AreTheClassicAndTheLowEnergyOnesInTheSystemsOrder) {
  EXPECT_THAT(RemotesAmong({Remote("USB\\VID_8087&PID_0026"), Remote("BTHLE\\Dev_2"), Remote("QCA_SHB\\1"),
                            Remote("BTHENUM\\Dev_1"), Remote("BTHENUM\\{0000110b}_X")}),
              ElementsAre(L"BTHLE\\Dev_2", L"BTHENUM\\Dev_1"));
  EXPECT_THAT(RemotesAmong({}), IsEmpty());
}

TEST(ExternalBluetoothDevices, AreKeptWhenTheyAreThereTwice) {
  EXPECT_THAT(RemotesAmong({Remote("BTHENUM\\Dev_1"), Remote("BTHENUM\\Dev_1")}),
              ElementsAre(L"BTHENUM\\Dev_1", L"BTHENUM\\Dev_1"));
}

TEST(ExternalBluetoothDevices, MustBeginAsToldInTheSameLetters) {
  EXPECT_THAT(RemotesAmong({Remote("XBTHENUM\\Dev_1"), Remote("X BTHLE\\Dev_1"), Remote("bthle\\dev_1"),
                            Remote("BTHENUM\\DEV_1"), Remote("BTHLE\\De"), Remote("BTHLEDEVICE\\Dev_1")}),
              IsEmpty());
  EXPECT_THAT(RemotesAmong({Remote("BTHLE\\Device"), Remote("BTHENUM\\Dev")}),
              ElementsAre(L"BTHLE\\Device", L"BTHENUM\\Dev"));
}

TEST(ExternalBluetoothDevices, AreLoggedOneByOneWhateverTheyAre) {
  const auto run = simulator::Use(MachineWithDevices({Remote("USB\\A"), Remote("BTHLE\\Dev_2")}));
  const CapturedLog log;
  CBluetooth().GetExternalDeviceHardID();
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)"));
  EXPECT_THAT(log.Texts(), ElementsAre("CBluetooth::GetExternalDeviceHardID: vecHardwareID=USB\\A"
                                       "(CBluetooth::GetExternalDeviceHardID)",
                                       "CBluetooth::GetExternalDeviceHardID: vecHardwareID=BTHLE\\Dev_2"
                                       "(CBluetooth::GetExternalDeviceHardID)"));
}

TEST(ExternalBluetoothDevice, TellsItsNameAndItsType) {
  const auto run =
      simulator::Use(MachineWithDevices({Remote("BTHLE\\Dev_2", "Bluetooth Mouse", "Travel Mouse")}));
  const CapturedLog log;
  CBluetooth bluetooth;
  EXPECT_EQ(bluetooth.GetExternalDeviceNameByHardID(L"BTHLE\\Dev_2"), L"Travel Mouse");
  EXPECT_EQ(bluetooth.GetExternalDeviceTypeByHardId(L"BTHLE\\Dev_2"), L"Bluetooth Mouse");
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceStrInfoByHardwareID(BTHLE\\Dev_2, Bluetooth, 6)",
                                       "GetDeviceStrInfoByHardwareID(BTHLE\\Dev_2, Bluetooth, 5)"));
  EXPECT_THAT(
      log.Texts(),
      ElementsAre("CBluetooth::GetExternalDeviceDescription: strHardID=BTHLE\\Dev_2, strDesc=Travel Mouse"
                  "(CBluetooth::GetExternalDeviceNameByHardID)",
                  "CBluetooth::GetExternalDeviceDescription: strHardID=BTHLE\\Dev_2, "
                  "strDeviceType=Bluetooth Mouse(CBluetooth::GetExternalDeviceTypeByHardId)"));
}

TEST(ExternalBluetoothDevice, WithoutAnIdIsLoggedButNotLookedUp) {
  const auto run = simulator::Use(MachineWithDevices({}));
  const CapturedLog log;
  EXPECT_EQ(CBluetooth().GetExternalDeviceNameByHardID(L""), L"");
  EXPECT_EQ(CBluetooth().GetExternalDeviceTypeByHardId(L""), L"");
  EXPECT_THAT(run.Trace(), IsEmpty());
  EXPECT_THAT(log.Texts(), ElementsAre("CBluetooth::GetExternalDeviceDescription: strHardID=, strDesc="
                                       "(CBluetooth::GetExternalDeviceNameByHardID)",
                                       "CBluetooth::GetExternalDeviceDescription: strHardID=, strDeviceType="
                                       "(CBluetooth::GetExternalDeviceTypeByHardId)"));
}

TEST(ExternalBluetoothDevice, ThatIsNotThereHasNoName) {
  const auto run = simulator::Use(MachineWithDevices({}));
  EXPECT_EQ(CBluetooth().GetExternalDeviceNameByHardID(L"BTHLE\\Dev_2"), L"");
}

TEST(ExternalBluetoothDevice, HasAnAddressBehindTheFirstUnderscore) {
  const auto run = simulator::Use(simulator::BlankMachine());
  const CapturedLog log;
  EXPECT_EQ(AddressOf(L"BTHLE\\Dev_AABBCCDDEEFF"), L"AABBCCDDEEFF");
  EXPECT_EQ(AddressOf(L"BTHENUM\\Dev_AA_BB"), L"AA_BB");
  EXPECT_EQ(AddressOf(L"BTHENUM\\Dev_"), L"");
  EXPECT_EQ(AddressOf(L"BTHENUM\\Dev"), L"");
  EXPECT_EQ(AddressOf(L""), L"");
  EXPECT_EQ(AddressOf(L"_"), L"");
  EXPECT_EQ(AddressOf(L"__"), L"_");
  EXPECT_EQ(AddressOf(L"_no address at all"), L"no address at all") << "the text is taken as it is";
  EXPECT_THAT(run.Trace(), IsEmpty());
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(ExternalBluetoothDevice, NeverTellsItsMaker) {
  const auto run = simulator::Use(simulator::BlankMachine());
  EXPECT_EQ(CBluetooth().GetExternalDeviceManufacturer(), L"");
  EXPECT_THAT(run.Trace(), IsEmpty());
}

TEST(BluetoothMice, AreLowEnergyDevicesWhoseTypeSaysMouseInEitherLetterCase) {
  EXPECT_THAT(MiceAmong({Remote("BTHLE\\Dev_1", "Mouse"), Remote("BTHLE\\Dev_2", "mouse"),
                         Remote("BTHLE\\Dev_3", "A BLUETOOTHMOUSEPAD"), Remote("BTHLE\\Dev_4", "Keyboard"),
                         Remote("BTHLE\\Dev_5"), Remote("BTHLE\\Dev_6", "Mous e")}),
              ElementsAre(L"BTHLE\\Dev_1", L"BTHLE\\Dev_2", L"BTHLE\\Dev_3"));
}

TEST(BluetoothMice, AreNoClassicOnesAndNoneWithOtherIds) {
  EXPECT_THAT(MiceAmong({Remote("BTHENUM\\Dev_1", "Mouse"), Remote("bthle\\dev_1", "Mouse"),
                         Remote("XBTHLE\\Dev_1", "Mouse"), Remote("USB\\A", "Mouse")}),
              IsEmpty());
}

TEST(BluetoothMice, AreNotRecognisedByTheirName) {
  EXPECT_THAT(MiceAmong({Remote("BTHLE\\Dev_1", "HID", "Travel Mouse")}), IsEmpty());
}

TEST(BluetoothMice, AreLoggedUnderTheLabelOfTheListOfAllAfterTheirType) {
  const auto run =
      simulator::Use(MachineWithDevices({Remote("USB\\A", "Bluetooth"), Remote("BTHLE\\Dev_2", "Mouse")}));
  const CapturedLog log;
  CBluetooth().GetExternalBlteMouseHardID();
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceHardwareID(Bluetooth)",
                                       "GetDeviceStrInfoByHardwareID(USB\\A, Bluetooth, 5)",
                                       "GetDeviceStrInfoByHardwareID(BTHLE\\Dev_2, Bluetooth, 5)"));
  EXPECT_THAT(
      log.Texts(),
      ElementsAre("CBluetooth::GetExternalDeviceDescription: strHardID=USB\\A, strDeviceType=Bluetooth"
                  "(CBluetooth::GetExternalDeviceTypeByHardId)",
                  "CBluetooth::GetExternalDeviceHardID: vecHardwareID=USB\\A, Type=Bluetooth"
                  "CBluetooth::GetExternalBlteMouseHardID",
                  "CBluetooth::GetExternalDeviceDescription: strHardID=BTHLE\\Dev_2, strDeviceType=Mouse"
                  "(CBluetooth::GetExternalDeviceTypeByHardId)",
                  "CBluetooth::GetExternalDeviceHardID: vecHardwareID=BTHLE\\Dev_2, Type=Mouse"
                  "CBluetooth::GetExternalBlteMouseHardID"));
}

TEST(ExternalBluetoothDevices, AreAllOrNoneWhenMemoryRunsOut) {
  const auto run = simulator::Use(MachineWithDevices({Remote("BTHLE\\Dev_1"), Remote("BTHENUM\\Dev_2")}));
  CBluetooth bluetooth;
  const Texts all{L"BTHLE\\Dev_1", L"BTHENUM\\Dev_2"};
  const auto results =
      velmora::testing::WithEachAllocationFailing([&] { return bluetooth.GetExternalDeviceHardID(); });
  EXPECT_GT(results.size(), 1u);
  EXPECT_THAT(results, Each(AnyOf(Texts(), all)));
  EXPECT_EQ(results.back(), all);
}

TEST(ExternalBluetoothDevices, LetNoExceptionOut) {
  auto run = simulator::Use(MachineWithDevices({Remote("BTHLE\\Dev_1", "Mouse", "M")}));
  run.Inject(Fault::kThrow, 0, true);
  CBluetooth bluetooth;
  EXPECT_THAT(bluetooth.GetExternalDeviceHardID(), IsEmpty());
  EXPECT_THAT(bluetooth.GetExternalBlteMouseHardID(), IsEmpty());
  EXPECT_EQ(bluetooth.GetExternalDeviceNameByHardID(L"BTHLE\\Dev_1"), L"");
  EXPECT_EQ(bluetooth.GetExternalDeviceTypeByHardId(L"BTHLE\\Dev_1"), L"");
}

}  // namespace
