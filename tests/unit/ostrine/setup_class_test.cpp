#include "ostrine/common/setup_class.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace ostrine {
namespace {

std::string Pci(unsigned code) {
  char text[80];
  std::snprintf(text, sizeof text, "pci:v00008086d00001234sv000017AAsd00005678bc%02Xsc%02Xi%02X",
                code >> 16 & 0xFF, code >> 8 & 0xFF, code & 0xFF);
  return text;
}

SetupClass ClassOf(std::string_view modalias) { return ClassifyDevice(modalias, {}); }

TEST(SetupClassOfPci, FollowsTheClassCode) {
  const struct {
    unsigned code;
    SetupClass expected;
  } samples[] = {
      {0x020000, SetupClass::kNet},     {0x028000, SetupClass::kNet},     {0x030000, SetupClass::kDisplay},
      {0x030200, SetupClass::kDisplay}, {0x038000, SetupClass::kDisplay}, {0x040100, SetupClass::kMedia},
      {0x040300, SetupClass::kSystem},  {0x040380, SetupClass::kSystem},  {0x0C0330, SetupClass::kUsb},
      {0x0C0320, SetupClass::kUsb},     {0x0C0340, SetupClass::kUsb},     {0x0D1100, SetupClass::kBluetooth},
      {0x0D8000, SetupClass::kNet},     {0x060000, SetupClass::kSystem},  {0x060400, SetupClass::kSystem},
      {0x050000, SetupClass::kSystem},  {0x078000, SetupClass::kSystem},  {0x0C0500, SetupClass::kSystem},
      {0x0C8000, SetupClass::kSystem},  {0x118000, SetupClass::kSystem},  {0x088000, SetupClass::kSystem},
      {0x010802, SetupClass::kNone},    {0x010601, SetupClass::kNone},    {0x080501, SetupClass::kNone},
      {0x070002, SetupClass::kNone},    {0x0C0010, SetupClass::kNone},    {0x120000, SetupClass::kNone},
      {0x000000, SetupClass::kSystem},  {0xFFFF00, SetupClass::kSystem},
  };
  for (const auto& sample : samples)
    EXPECT_EQ(ClassOf(Pci(sample.code)), sample.expected) << Pci(sample.code);
}

TEST(SetupClassOfPci, IsNetOrBluetoothWhenTheKernelHasMadeThatOfTheDevice) {
  EXPECT_EQ(ClassifyDevice(Pci(0xFFFF00), {.has_network_interface = true}), SetupClass::kNet);
  EXPECT_EQ(ClassifyDevice(Pci(0x028000), {.has_bluetooth_radio = true}), SetupClass::kBluetooth);
}

TEST(SetupClassOfUsb, FollowsTheClassOfTheDeviceOrItsOnlyInterface) {
  EXPECT_EQ(ClassOf("usb:v8087p0026d0002dcE0dsc01dp01icE0isc01ip01in00"), SetupClass::kBluetooth);
  EXPECT_EQ(ClassOf("usb:v8087p0026d0002dcE0dsc01dp01"), SetupClass::kBluetooth);
  EXPECT_EQ(ClassOf("usb:v0A5Cp21E8d0112dc00dsc00dp00icE0isc01ip01in00"), SetupClass::kBluetooth);
  EXPECT_EQ(ClassOf("usb:v1D6Bp0003d0601dc09dsc00dp03ic09isc00ip00in00"), SetupClass::kUsb);
  EXPECT_EQ(ClassOf("usb:v05E3p0610d9226dc09dsc00dp02"), SetupClass::kUsb);
  EXPECT_EQ(ClassOf("usb:v0BDAp8153d3000dc02dsc00dp00ic02isc06ip00in00"), SetupClass::kNone);
  EXPECT_EQ(ClassOf("usb:v0BDAp8153d3000dc00dsc00dp00ic02isc06ip00in00"), SetupClass::kNet);
  EXPECT_EQ(ClassOf("usb:v0D8Cp0014d0100dc00dsc00dp00ic01isc01ip00in00"), SetupClass::kMedia);
  EXPECT_EQ(ClassOf("usb:v0781p5583d0100dc00dsc00dp00ic08isc06ip50in00"), SetupClass::kNone);
  EXPECT_EQ(ClassOf("usb:v046DpC31Cd6400dc00dsc00dp00ic03isc01ip01in00"), SetupClass::kNone);
}

TEST(SetupClassOfUsb, IsUsbForACompositeDeviceAndTheInterfacesOwnForItsParts) {
  const DeviceTraits composite{.is_composite_usb = true};
  EXPECT_EQ(ClassifyDevice("usb:v04F2pB6D0d2741dcEFdsc02dp01", composite), SetupClass::kUsb);
  EXPECT_EQ(ClassifyDevice("usb:v1199p9079d0006dcEFdsc02dp01ic02isc0Eip00in0C", composite), SetupClass::kNet);
  EXPECT_EQ(ClassifyDevice("usb:v17EFp3063d0100dc00dsc00dp00ic01isc01ip00in01", composite),
            SetupClass::kMedia);
  EXPECT_EQ(ClassifyDevice("usb:v04F2pB6D0d2741dcEFdsc02dp01ic0Eisc01ip00in00", composite),
            SetupClass::kNone);
}

TEST(SetupClassOfUsb, FollowsWhatTheKernelHasMadeOfAVendorSpecificDevice) {
  const char* const modalias = "usb:v0BDApC811d0200dc00dsc00dp00icFFiscFFipFFin00";
  EXPECT_EQ(ClassOf(modalias), SetupClass::kNone);
  EXPECT_EQ(ClassifyDevice(modalias, {.has_network_interface = true}), SetupClass::kNet);
  EXPECT_EQ(ClassifyDevice(modalias, {.has_bluetooth_radio = true}), SetupClass::kBluetooth);
}

TEST(SetupClassOfFingerprintReader, IsBiometricOnAnyBus) {
  const DeviceTraits reader{.is_fingerprint_reader = true};
  EXPECT_EQ(ClassifyDevice("usb:v06CBp00BDd0000dcFFdsc10dpFFicFFisc00ip00in00", reader),
            SetupClass::kBiometric);
  EXPECT_EQ(ClassifyDevice("acpi:FPC1020:", reader), SetupClass::kBiometric);
  EXPECT_EQ(ClassifyDevice("", reader), SetupClass::kNone);
}

TEST(SetupClassOfCodec, IsMediaForTheAudioFunctionOnly) {
  EXPECT_EQ(ClassOf("hdaudio:v10EC0257r00100001a01"), SetupClass::kMedia);
  EXPECT_EQ(ClassOf("hdaudio:v10573057r00100700a02"), SetupClass::kNone);
}

TEST(SetupClassOfInput, IsKeyboardForAKeyboardOnly) {
  for (const char* modalias : {"hid:b0003g0001v0000046Dp0000C31C", "serio:ty06pr00id00ex00"}) {
    EXPECT_EQ(ClassifyDevice(modalias, {.has_keyboard = true}), SetupClass::kKeyboard) << modalias;
    EXPECT_EQ(ClassOf(modalias), SetupClass::kNone) << modalias;
  }
}

TEST(SetupClassOfAcpi, FollowsTheFirstIdThatTells) {
  EXPECT_EQ(ClassOf("acpi:PNP0303:"), SetupClass::kKeyboard);
  EXPECT_EQ(ClassOf("acpi:LEN0071:PNP0303:"), SetupClass::kKeyboard);
  EXPECT_EQ(ClassOf("acpi:LEN2033:PNP0F13:"), SetupClass::kNone);
  EXPECT_EQ(ClassOf("acpi:ELAN1200:PNP0C50:"), SetupClass::kNone);
  EXPECT_EQ(ClassOf("acpi:PNP0C0A:"), SetupClass::kNone);
  EXPECT_EQ(ClassOf("acpi:INT0E0C:"), SetupClass::kSystem);
  EXPECT_EQ(ClassOf("acpi:PNP0A08:PNP0A03:"), SetupClass::kSystem);
}

TEST(SetupClassOfVirtio, IsThatOfTheFunction) {
  EXPECT_EQ(ClassOf("virtio:d00000001v00001AF4"), SetupClass::kNet);
  EXPECT_EQ(ClassOf("virtio:d00000010v00001AF4"), SetupClass::kDisplay);
  EXPECT_EQ(ClassOf("virtio:d00000019v00001AF4"), SetupClass::kMedia);
  EXPECT_EQ(ClassOf("virtio:d00000002v00001AF4"), SetupClass::kNone);
}

TEST(SetupClassOfAnythingElse, IsNone) {
  for (const char* modalias :
       {"", "platform:pcspkr", "i2c:tmp102", "pci:v*", "input:b0011v0001p0001eAB41-e0"}) {
    EXPECT_EQ(ClassifyDevice(modalias, {true, true, true, true, true}), SetupClass::kNone) << modalias;
  }
}

}  // namespace
}  // namespace ostrine
