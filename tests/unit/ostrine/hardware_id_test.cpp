#include "ostrine/common/hardware_id.h"

#include <gtest/gtest.h>

namespace ostrine {
namespace {

using Ids = std::vector<std::wstring>;

struct Sample {
  const char* modalias;
  const wchar_t* first;   ///< the most specific hardware ID
  const wchar_t* second;  ///< the next one, null if it does not matter
};

DeviceIds IdsOf(const char* modalias) { return BuildDeviceIds({.modalias = modalias}); }

void ExpectFirstIds(const Sample& sample, const DeviceIds& ids) {
  ASSERT_FALSE(ids.hardware.empty()) << sample.modalias;
  EXPECT_EQ(ids.hardware[0], sample.first) << sample.modalias;
  if (!sample.second) return;
  ASSERT_GE(ids.hardware.size(), 2u) << sample.modalias;
  EXPECT_EQ(ids.hardware[1], sample.second) << sample.modalias;
}

TEST(PciHardwareIds, AreThoseThatWindowsListsMostSpecificFirst) {
  const DeviceIds ids = BuildDeviceIds(
      {.modalias = "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00", .pci_revision = std::uint8_t{1}});
  EXPECT_EQ(ids.hardware,
            (Ids{L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01", L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086",
                 L"PCI\\VEN_8086&DEV_51F0&REV_01", L"PCI\\VEN_8086&DEV_51F0",
                 L"PCI\\VEN_8086&DEV_51F0&CC_028000", L"PCI\\VEN_8086&DEV_51F0&CC_0280"}));
  EXPECT_EQ(ids.compatible, (Ids{L"PCI\\VEN_8086&CC_028000", L"PCI\\VEN_8086&CC_0280", L"PCI\\VEN_8086",
                                 L"PCI\\CC_028000", L"PCI\\CC_0280"}));
}

TEST(PciHardwareIds, LeaveTheRevisionOutWhenItIsUnknown) {
  const DeviceIds ids = IdsOf("pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00");
  EXPECT_EQ(ids.hardware, (Ids{L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086", L"PCI\\VEN_8086&DEV_51F0",
                               L"PCI\\VEN_8086&DEV_51F0&CC_028000", L"PCI\\VEN_8086&DEV_51F0&CC_0280"}));
}

TEST(PciHardwareIds, FitTheFunctionsOfLaptops) {
  const Sample samples[] = {
      // wireless cards
      {"pci:v00008086d00002723sv00008086sd00000084bc02sc80i00",
       L"PCI\\VEN_8086&DEV_2723&SUBSYS_00848086&REV_1A", nullptr},
      {"pci:v00008086d0000A0F0sv00008086sd00000074bc02sc80i00",
       L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_1A", nullptr},
      {"pci:v000017CBd00001103sv000017AAsd00009309bc02sc80i00",
       L"PCI\\VEN_17CB&DEV_1103&SUBSYS_930917AA&REV_1A", nullptr},
      {"pci:v000010ECd0000C852sv000017AAsd00004853bc02sc80i00",
       L"PCI\\VEN_10EC&DEV_C852&SUBSYS_485317AA&REV_1A", nullptr},
      {"pci:v000014C3d00007961sv000017AAsd0000E0BCbc02sc80i00",
       L"PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC17AA&REV_1A", nullptr},
      {"pci:v0000168Cd0000003Esv00001A56sd00001535bc02sc80i00",
       L"PCI\\VEN_168C&DEV_003E&SUBSYS_15351A56&REV_1A", nullptr},
      // wired cards
      {"pci:v000010ECd00008168sv000017AAsd00005095bc02sc00i00",
       L"PCI\\VEN_10EC&DEV_8168&SUBSYS_509517AA&REV_1A", nullptr},
      {"pci:v00008086d000015FBsv000017AAsd000022D8bc02sc00i00",
       L"PCI\\VEN_8086&DEV_15FB&SUBSYS_22D817AA&REV_1A", nullptr},
      // display
      {"pci:v00008086d00009A49sv000017AAsd000022D5bc03sc00i00",
       L"PCI\\VEN_8086&DEV_9A49&SUBSYS_22D517AA&REV_1A", nullptr},
      {"pci:v000010DEd000025A2sv000017AAsd00003AF1bc03sc00i00",
       L"PCI\\VEN_10DE&DEV_25A2&SUBSYS_3AF117AA&REV_1A", nullptr},
      {"pci:v00001002d00001638sv000017AAsd0000508Bbc03sc00i00",
       L"PCI\\VEN_1002&DEV_1638&SUBSYS_508B17AA&REV_1A", nullptr},
      // chipset, storage, sound, USB
      {"pci:v00008086d0000A0C8sv000017AAsd000022D5bc04sc01i00",
       L"PCI\\VEN_8086&DEV_A0C8&SUBSYS_22D517AA&REV_1A", nullptr},
      {"pci:v00008086d00009DC8sv00001028sd0000087Cbc04sc03i80",
       L"PCI\\VEN_8086&DEV_9DC8&SUBSYS_087C1028&REV_1A", L"PCI\\VEN_8086&DEV_9DC8&SUBSYS_087C1028"},
      {"pci:v00008086d0000A0E0sv000017AAsd000022D5bc07sc80i00",
       L"PCI\\VEN_8086&DEV_A0E0&SUBSYS_22D517AA&REV_1A", nullptr},
      {"pci:v0000144Dd0000A80Asv0000144Dsd0000A801bc01sc08i02",
       L"PCI\\VEN_144D&DEV_A80A&SUBSYS_A801144D&REV_1A", nullptr},
      {"pci:v00008086d0000A0EDsv000017AAsd000022D5bc0Csc03i30",
       L"PCI\\VEN_8086&DEV_A0ED&SUBSYS_22D517AA&REV_1A", nullptr},
      // as a virtual machine has them: no subsystem, no class
      {"pci:v00008086d00000D57sv00000000sd00000000bc06sc00i00\n",
       L"PCI\\VEN_8086&DEV_0D57&SUBSYS_00000000&REV_1A", nullptr},
      {"pci:v00001AF4d00001041sv00001AF4sd00001041bc02sc00i00\n",
       L"PCI\\VEN_1AF4&DEV_1041&SUBSYS_10411AF4&REV_1A", nullptr},
      {"pci:v00001AF4d00001053sv00001AF4sd00001053bcFFscFFi00",
       L"PCI\\VEN_1AF4&DEV_1053&SUBSYS_10531AF4&REV_1A", nullptr},
  };
  for (const Sample& sample : samples) {
    ExpectFirstIds(sample, BuildDeviceIds({.modalias = sample.modalias, .pci_revision = std::uint8_t{0x1A}}));
  }
}

TEST(UsbHardwareIds, FitTheDevicesOfLaptops) {
  const Sample samples[] = {
      // Bluetooth radios: several interfaces, yet one device
      {"usb:v8087p0026d0002dcE0dsc01dp01icE0isc01ip01in00", L"USB\\VID_8087&PID_0026&REV_0002",
       L"USB\\VID_8087&PID_0026"},
      {"usb:v8087p0029d0001dcE0dsc01dp01icE0isc01ip01in01", L"USB\\VID_8087&PID_0029&REV_0001", nullptr},
      {"usb:v8087p0AAAd0002dcE0dsc01dp01icE0isc01ip01in00", L"USB\\VID_8087&PID_0AAA&REV_0002", nullptr},
      {"usb:v0BDApC852d0000dcE0dsc01dp01icE0isc01ip01in00", L"USB\\VID_0BDA&PID_C852&REV_0000", nullptr},
      // fingerprint readers
      {"usb:v06CBp00BDd0000dcFFdsc10dpFFicFFisc00ip00in00", L"USB\\VID_06CB&PID_00BD&REV_0000", nullptr},
      {"usb:v27C6p55A4d0100dcEFdsc00dp00icFFisc00ip00in00", L"USB\\VID_27C6&PID_55A4&REV_0100", nullptr},
      {"usb:v138Ap0097d0164dcFFdsc12dpFFicFFisc00ip00in00", L"USB\\VID_138A&PID_0097&REV_0164", nullptr},
      // storage, hubs, adapters
      {"usb:v0781p5583d0100dc00dsc00dp00ic08isc06ip50in00", L"USB\\VID_0781&PID_5583&REV_0100", nullptr},
      {"usb:v05E3p0610d9226dc09dsc00dp02ic09isc00ip02in00", L"USB\\VID_05E3&PID_0610&REV_9226", nullptr},
      {"usb:v0BDAp8153d3000dc00dsc00dp00icFFiscFFip00in00", L"USB\\VID_0BDA&PID_8153&REV_3000", nullptr},
      // the kernel's own hubs
      {"usb:v1D6Bp0002d0601dc09dsc00dp01ic09isc00ip00in00", L"USB\\ROOT_HUB20", nullptr},
      {"usb:v1D6Bp0003d0601dc09dsc00dp03ic09isc00ip00in00", L"USB\\ROOT_HUB30", nullptr},
      {"usb:v1D6Bp0001d0515dc09dsc00dp00", L"USB\\ROOT_HUB", nullptr},
      // a gadget of the kernel is no hub
      {"usb:v1D6Bp0002d0601dc00dsc00dp00ic08isc06ip50in00", L"USB\\VID_1D6B&PID_0002&REV_0601", nullptr},
  };
  for (const Sample& sample : samples) ExpectFirstIds(sample, IdsOf(sample.modalias));
}

TEST(UsbHardwareIds, NameTheInterfaceOfACompositeDevice) {
  const DeviceIds camera = BuildDeviceIds(
      {.modalias = "usb:v04F2pB6D0d2741dcEFdsc02dp01ic0Eisc01ip00in02", .usb_composite = true});
  EXPECT_EQ(camera.hardware,
            (Ids{L"USB\\VID_04F2&PID_B6D0&REV_2741&MI_02", L"USB\\VID_04F2&PID_B6D0&MI_02"}));
  EXPECT_EQ(camera.compatible,
            (Ids{L"USB\\Class_0E&SubClass_01&Prot_00", L"USB\\Class_0E&SubClass_01", L"USB\\Class_0E"}));
}

TEST(UsbHardwareIds, CallACompositeDeviceAsAWholeComposite) {
  const DeviceIds ids =
      BuildDeviceIds({.modalias = "usb:v04F2pB6D0d2741dcEFdsc02dp01", .usb_composite = true});
  EXPECT_EQ(ids.hardware, (Ids{L"USB\\VID_04F2&PID_B6D0&REV_2741", L"USB\\VID_04F2&PID_B6D0"}));
  EXPECT_EQ(ids.compatible, (Ids{L"USB\\DevClass_EF&SubClass_02&Prot_01", L"USB\\DevClass_EF&SubClass_02",
                                 L"USB\\DevClass_EF", L"USB\\COMPOSITE"}));
}

TEST(UsbHardwareIds, TakeTheClassFromTheInterfaceWhenTheDeviceLeavesItOpen) {
  EXPECT_EQ(IdsOf("usb:v0781p5583d0100dc00dsc00dp00ic08isc06ip50in00").compatible[0],
            L"USB\\Class_08&SubClass_06&Prot_50");
  EXPECT_EQ(IdsOf("usb:v8087p0026d0002dcE0dsc01dp01icFFiscFFipFFin00").compatible[0],
            L"USB\\Class_E0&SubClass_01&Prot_01");
}

TEST(UsbHardwareIds, AreThoseOfACompositeDeviceOnlyByTheRuleForComposites) {
  EXPECT_TRUE(IsUsbComposite({0, 0, 0}, 2, 1));
  EXPECT_TRUE(IsUsbComposite({0xEF, 2, 1}, 4, 1));
  EXPECT_FALSE(IsUsbComposite({0xE0, 1, 1}, 2, 1));
  EXPECT_FALSE(IsUsbComposite({0xEF, 2, 0}, 2, 1));
  EXPECT_FALSE(IsUsbComposite({0, 0, 0}, 1, 1));
  EXPECT_FALSE(IsUsbComposite({0, 0, 0}, 2, 2));
}

TEST(AudioHardwareIds, PutTheSubsystemVendorFirstAndLeaveTheSteppingOut) {
  const DeviceIds ids = BuildDeviceIds(
      {.modalias = "hdaudio:v10EC0257r00100001a01\n", .codec_subsystem = std::uint32_t{0x17AA2292}});
  EXPECT_EQ(ids.hardware, (Ids{L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2292&REV_1000",
                               L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA2292"}));
  EXPECT_EQ(ids.compatible,
            (Ids{L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&REV_1000", L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257",
                 L"HDAUDIO\\FUNC_01&VEN_10EC", L"HDAUDIO\\FUNC_01"}));
}

TEST(AudioHardwareIds, DoWithoutAnUnknownSubsystem) {
  const Sample samples[] = {
      {"hdaudio:v10EC0287r00100002a01", L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0287&REV_1000",
       L"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0287"},
      {"hdaudio:v8086280Br00100000a01", L"HDAUDIO\\FUNC_01&VEN_8086&DEV_280B&REV_1000", nullptr},
      {"hdaudio:v10DE009Dr00100100a01", L"HDAUDIO\\FUNC_01&VEN_10DE&DEV_009D&REV_1001", nullptr},
      {"hdaudio:v14F150F4r00100100a01", L"HDAUDIO\\FUNC_01&VEN_14F1&DEV_50F4&REV_1001", nullptr},
      {"hdaudio:v80862805r00100000a02", L"HDAUDIO\\FUNC_02&VEN_8086&DEV_2805&REV_1000", nullptr},
  };
  for (const Sample& sample : samples) ExpectFirstIds(sample, IdsOf(sample.modalias));
}

TEST(AcpiHardwareIds, NameTheDeviceAndWhatItIsCompatibleWith) {
  const DeviceIds ids = IdsOf("acpi:LEN0071:PNP0303:");
  EXPECT_EQ(ids.hardware, (Ids{L"ACPI\\LEN0071", L"*LEN0071"}));
  EXPECT_EQ(ids.compatible, (Ids{L"ACPI\\PNP0303", L"*PNP0303"}));
}

TEST(AcpiHardwareIds, FitTheDevicesOfFirmwares) {
  const Sample samples[] = {
      {"acpi:PNP0303:\n", L"ACPI\\PNP0303", L"*PNP0303"},
      {"acpi:PNP0C0A:", L"ACPI\\PNP0C0A", L"*PNP0C0A"},
      {"acpi:INT33A1:PNP0D80:", L"ACPI\\INT33A1", nullptr},
      {"acpi:ELAN1200:PNP0C50:", L"ACPI\\ELAN1200", nullptr},
      {"acpi:MSFT0101:MSFT0101:", L"ACPI\\MSFT0101", nullptr},
      {"acpi:10EC5672:", L"ACPI\\10EC5672", nullptr},
      {"acpi:VMGENCTR:VM_Gen_Counter:", L"ACPI\\VMGENCTR", nullptr},
      {"acpi:FPC1020:", L"ACPI\\FPC1020", nullptr},
  };
  for (const Sample& sample : samples) ExpectFirstIds(sample, IdsOf(sample.modalias));
}

TEST(HidHardwareIds, NameVendorAndProductOnAnyBus) {
  const Sample samples[] = {
      {"hid:b0018g0001v000004F3p00003169", L"HID\\VID_04F3&PID_3169", nullptr},
      {"hid:b0018g0004v000006CBp0000CE67", L"HID\\VID_06CB&PID_CE67", nullptr},
      {"hid:b0005g0001v0000046Dp0000B023", L"HID\\VID_046D&PID_B023", nullptr},
      {"hid:b0003g0001v0000046Dp0000C52B", L"HID\\VID_046D&PID_C52B", nullptr},
  };
  for (const Sample& sample : samples) ExpectFirstIds(sample, IdsOf(sample.modalias));
  EXPECT_EQ(IdsOf(samples[0].modalias).compatible, Ids{L"HID_DEVICE"});
}

TEST(HidHardwareIds, TakeRevisionAndInterfaceFromTheUsbDevice) {
  DeviceFacts facts{.modalias = "hid:b0003g0001v0000046Dp0000C52B",
                    .parent_modalias = "usb:v046DpC52Bd1201dc00dsc00dp00ic03isc01ip01in00\n",
                    .usb_composite = true};
  EXPECT_EQ(BuildDeviceIds(facts).hardware,
            (Ids{L"HID\\VID_046D&PID_C52B&REV_1201&MI_00", L"HID\\VID_046D&PID_C52B&MI_00",
                 L"HID\\VID_046D&PID_C52B"}));
  facts.usb_composite = false;
  EXPECT_EQ(BuildDeviceIds(facts).hardware,
            (Ids{L"HID\\VID_046D&PID_C52B&REV_1201", L"HID\\VID_046D&PID_C52B"}));
}

TEST(SerioHardwareIds, AreThoseOfTheFirmware) {
  const DeviceIds keyboard =
      BuildDeviceIds({.modalias = "serio:ty06pr00id00ex00", .firmware_id = "PNP: LEN0071 PNP0303\n"});
  EXPECT_EQ(keyboard.hardware, (Ids{L"ACPI\\LEN0071", L"*LEN0071"}));
  EXPECT_EQ(keyboard.compatible, (Ids{L"ACPI\\PNP0303", L"*PNP0303"}));

  const DeviceIds touchpad =
      BuildDeviceIds({.modalias = "serio:ty01pr00id00ex00", .firmware_id = "PNP: SYN1221 PNP0f13"});
  EXPECT_EQ(touchpad.compatible, (Ids{L"ACPI\\PNP0F13", L"*PNP0F13"}));
}

TEST(SerioHardwareIds, AreNoneForAPortThatTheFirmwareHasNotNamed) {
  for (const char* firmware_id : {"", "\n", "PNP:", "PNP: ", "PNP:  LEN0071", "PNP: LEN0071 ", "PNP0303",
                                  "OF: keyboard", "PNP: LEN\\71"}) {
    EXPECT_TRUE(
        BuildDeviceIds({.modalias = "serio:ty06pr00id00ex00", .firmware_id = firmware_id}).hardware.empty())
        << firmware_id;
  }
}

TEST(VirtioHardwareIds, FollowThePciForm) {
  ExpectFirstIds({"", L"VIRTIO\\VEN_1AF4&DEV_0001", nullptr}, IdsOf("virtio:d00000001v00001AF4"));
  ExpectFirstIds({"", L"VIRTIO\\VEN_554D4551&DEV_0002", nullptr}, IdsOf("virtio:d00000002v554D4551"));
}

TEST(HardwareIds, AreNoneForMalformedAndOtherModaliases) {
  for (const char* modalias : {"",
                               ":",
                               "\n",
                               "pci",
                               "pci:",
                               "pci:v00008086",
                               "pci:v*d*sv*sd*bc03sc*i*",
                               "pci:v00018086d000051F0sv00008086sd00000094bc02sc80i00",
                               "pci:vFFFFFFFFd000051F0sv00008086sd00000094bc02sc80i00",
                               "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i0",
                               "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i000",
                               "pci:v00008086d000051G0sv00008086sd00000094bc02sc80i00",
                               " pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00",
                               "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00\n\n",
                               "PCI:v00008086d000051F0sv00008086sd00000094bc02sc80i00",
                               "usb:v8087p0026",
                               "usb:v8087p0026d0002dcE0dsc01dp01icE0",
                               "usb:v8087p0026d*dcE0dsc01dp01",
                               "hdaudio:v10EC0257r00100001",
                               "hdaudio:v10EC0257r00100001a01x",
                               "hid:b0018g0001v000104F3p00003169",
                               "virtio:d1v1AF4",
                               "acpi:",
                               "acpi::",
                               "acpi:PNP0303",
                               "acpi:PNP0303::",
                               "acpi:PNP*:",
                               "acpi:PNP 0303:",
                               "acpi*:PNP0303:*",
                               "i2c:lis3lv02d",
                               "platform:pcspkr",
                               "input:b0011v0001p0001eAB41-e0,1",
                               "dmi:bvnLENOVO:bvrN2IET:",
                               "of:NwifiT(null)Cx",
                               "scsi:t-0x00",
                               "wmi:ABBC0F6A-8EA1-11D1-00A0-C90629100000"}) {
    const DeviceIds ids = IdsOf(modalias);
    EXPECT_TRUE(ids.hardware.empty() && ids.compatible.empty()) << modalias;
  }
}

TEST(HardwareIds, AreNoneForATextWithAZeroInIt) {
  DeviceFacts facts;
  facts.modalias = std::string("pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00\0", 54);
  EXPECT_TRUE(BuildDeviceIds(facts).hardware.empty());
  facts.modalias = std::string("acpi:PNP\0:", 10);
  EXPECT_TRUE(BuildDeviceIds(facts).hardware.empty());
}

TEST(BluetoothHardwareIds, CarryTheAddressOfTheRemoteDevice) {
  EXPECT_EQ(BluetoothHardwareId("AA:BB:CC:DD:EE:FF", BluetoothKind::kClassic), L"BTHENUM\\Dev_AABBCCDDEEFF");
  EXPECT_EQ(BluetoothHardwareId("0a:1b:2c:3d:4e:5f", BluetoothKind::kLowEnergy), L"BTHLE\\Dev_0A1B2C3D4E5F");
}

TEST(BluetoothHardwareIds, AreEmptyForWhatIsNoAddress) {
  for (const char* address : {"", "AABBCCDDEEFF", "AA:BB:CC:DD:EE", "AA:BB:CC:DD:EE:F", "AA:BB:CC:DD:EE:FF:",
                              "AA:BB:CC:DD:EE:GG", "AA-BB-CC-DD-EE-FF", "AA:BB:CC:DD:EE:F\xC3"}) {
    EXPECT_EQ(BluetoothHardwareId(address, BluetoothKind::kClassic), L"") << address;
  }
}

}  // namespace
}  // namespace ostrine
