#include "tests/support/linux/fake_machine.h"

namespace ostrine::test {
namespace {

constexpr const char* kTypewriterKeys = "402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe";
constexpr const char* kAcpi = "LNXSYSTM:00/LNXSYBUS:00/";

void BuildPci(const FakeMachine& machine) {
  const std::string bus = "pci0000:00/";
  machine.Add("pci", bus + "0000:00:00.0",
              {{"modalias", "pci:v00008086d00004621sv000017AAsd000022E6bc06sc00i00"}, {"revision", "0x02"}});
  machine.Add("pci", bus + "0000:00:02.0",
              {{"modalias", "pci:v00008086d000046A6sv000017AAsd000022E6bc03sc00i00"},
               {"revision", "0x0c"},
               {"boot_vga", "1"}});
  machine.Bind("pci", bus + "0000:00:02.0", "i915", "i915");
  machine.Add("pci", bus + "0000:00:06.0/0000:01:00.0",
              {{"modalias", "pci:v000010DEd000025A0sv000017AAsd000022E6bc03sc02i00"},
               {"revision", "0xa1"},
               {"boot_vga", "0"},
               {"power/runtime_status", "suspended"}});
  machine.Add("pci", bus + "0000:00:14.0",
              {{"modalias", "pci:v00008086d000051EDsv000017AAsd000022E6bc0Csc03i30"}, {"revision", "0x01"}});
  machine.Bind("pci", bus + "0000:00:14.0", "xhci_hcd", "xhci_pci");
  machine.Add("pci", bus + "0000:00:14.3",
              {{"modalias", "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00"}, {"revision", "0x01"}});
  machine.Bind("pci", bus + "0000:00:14.3", "iwlwifi", "iwlwifi");
  machine.AddOfClass(
      "net", bus + "0000:00:14.3/net/wlp0s20f3",
      {{"address", "a4:bb:6d:00:11:2f"}, {"type", "1"}, {"ifindex", "3"}, {"phy80211/index", "0"}});
  machine.Root().Link("sys/devices/" + bus + "0000:00:14.3/net/wlp0s20f3/device", "../../../0000:00:14.3");
  machine.Add("pci", bus + "0000:00:16.0",
              {{"modalias", "pci:v00008086d000051E0sv000017AAsd000022E6bc07sc80i00"}, {"revision", "0x01"}});
  machine.Bind("pci", bus + "0000:00:16.0", "mei_me", "mei_me");
  machine.Add("pci", bus + "0000:00:1f.6",
              {{"modalias", "pci:v00008086d00001A1Fsv000017AAsd000022E6bc02sc00i00"}, {"revision", "0x01"}});
  machine.Bind("pci", bus + "0000:00:1f.6", "e1000e", "e1000e");
  machine.AddOfClass("net", bus + "0000:00:1f.6/net/enp0s31f6",
                     {{"address", "00:2b:67:aa:bb:cc"}, {"type", "1"}, {"ifindex", "2"}});
  machine.Root().Link("sys/devices/" + bus + "0000:00:1f.6/net/enp0s31f6/device", "../../../0000:00:1f.6");
}

void BuildSound(const FakeMachine& machine) {
  const std::string controller = "pci0000:00/0000:00:1f.3";
  machine.Add("pci", controller,
              {{"modalias", "pci:v00008086d000051C8sv000017AAsd000022E6bc04sc03i80"}, {"revision", "0x01"}});
  machine.Bind("pci", controller, "snd_hda_intel", "snd_hda_intel");
  machine.Add("hdaudio", controller + "/hdaudioC0D0",
              {{"modalias", "hdaudio:v10EC0257r00100001a01"},
               {"subsystem_id", "0x17aa22e6"},
               {"vendor_name", "Realtek"},
               {"chip_name", "ALC257"}});
  machine.Bind("hdaudio", controller + "/hdaudioC0D0", "snd_hda_codec_realtek", "snd_hda_codec_realtek");
}

struct UsbIdentity {
  std::string vendor;
  std::string product;
  std::string revision;
  std::string device_class;
  std::string sub_class;
  std::string protocol;
};

std::string AddUsb(const FakeMachine& machine, const std::string& name, const UsbIdentity& identity,
                   const std::string& product_name, const std::string& maker, int interfaces) {
  const std::string bus = "pci0000:00/0000:00:14.0/usb1";
  const std::string place = name == "usb1" ? bus : bus + "/" + name;
  machine.Add("usb", place,
              {{"idVendor", identity.vendor},
               {"idProduct", identity.product},
               {"bcdDevice", identity.revision},
               {"bDeviceClass", identity.device_class},
               {"bDeviceSubClass", identity.sub_class},
               {"bDeviceProtocol", identity.protocol},
               {"bNumInterfaces", " " + std::to_string(interfaces)},
               {"bNumConfigurations", "1"},
               {"authorized", "1"}});
  if (!product_name.empty()) machine.Write(place, {{"product", product_name}});
  if (!maker.empty()) machine.Write(place, {{"manufacturer", maker}});
  machine.Bind("usb", place, "usb", "usbcore");
  return place;
}

void AddInterface(const FakeMachine& machine, const std::string& place, const std::string& modalias,
                  const std::string& number, const std::string& driver) {
  machine.Add("usb", place, {{"modalias", modalias}, {"bInterfaceNumber", number}});
  if (!driver.empty()) machine.Bind("usb", place, driver, driver);
}

void BuildUsb(const FakeMachine& machine) {
  const std::string root_hub = AddUsb(machine, "usb1", {"1d6b", "0002", "0601", "09", "00", "01"},
                                      "xHCI Host Controller", "Linux 6.1.0-18-amd64 xhci-hcd", 1);
  AddInterface(machine, root_hub + "/1-0:1.0", "usb:v1D6Bp0002d0601dc09dsc00dp01ic09isc00ip00in00", "00",
               "hub");
  for (const char* const port : {"1-1", "1-2"}) {
    const std::string hub =
        AddUsb(machine, port, {"05e3", "0610", "0655", "09", "00", "02"}, "USB2.1 Hub", "GenesysLogic", 1);
    AddInterface(machine, hub + "/" + port + ":1.0", "usb:v05E3p0610d0655dc09dsc00dp02ic09isc00ip01in00",
                 "00", "hub");
  }
  machine.Write("pci0000:00/0000:00:14.0/usb1/1-2", {{"authorized", "0"}, {"bcdDevice", "0660"}});
  std::filesystem::remove_all(machine.Device("pci0000:00/0000:00:14.0/usb1/1-2/1-2:1.0"));

  const std::string camera = AddUsb(machine, "1-4", {"04f2", "b761", "0802", "ef", "02", "01"},
                                    "Integrated Camera", "Chicony Electronics Co.,Ltd.", 2);
  AddInterface(machine, camera + "/1-4:1.0", "usb:v04F2pB761d0802dcEFdsc02dp01ic0Eisc01ip00in00", "00",
               "uvcvideo");
  AddInterface(machine, camera + "/1-4:1.1", "usb:v04F2pB761d0802dcEFdsc02dp01ic0Eisc02ip00in01", "01",
               "uvcvideo");
  for (const char* const part : {"/1-4:1.0", "/1-4:1.1"}) {
    machine.Write(camera + part, {{"iad_bFirstInterface", "00"}});
  }

  const std::string reader =
      AddUsb(machine, "1-5", {"06cb", "00f9", "0000", "ff", "00", "00"}, "Fingerprint Reader", "", 1);
  AddInterface(machine, reader + "/1-5:1.0", "usb:v06CBp00F9d0000dcFFdsc00dp00icFFisc00ip00in00", "00", "");

  const std::string radio = AddUsb(machine, "1-10", {"8087", "0033", "0000", "e0", "01", "01"}, "", "", 2);
  AddInterface(machine, radio + "/1-10:1.0", "usb:v8087p0033d0000dcE0dsc01dp01icE0isc01ip01in00", "00",
               "btusb");
  AddInterface(machine, radio + "/1-10:1.1", "usb:v8087p0033d0000dcE0dsc01dp01icE0isc01ip01in01", "01",
               "btusb");
  machine.AddOfClass("bluetooth", radio + "/1-10:1.0/bluetooth/hci0", {{"uevent", "DEVTYPE=host"}});
}

void BuildFirmwareDevices(const FakeMachine& machine) {
  const std::string acpi = kAcpi;
  const auto add = [&](const std::string& name, const std::string& modalias, const std::string& status) {
    Attributes attributes{{"modalias", modalias}};
    if (!status.empty()) attributes["status"] = status;
    machine.Add("acpi", acpi + name, attributes);
  };
  machine.Add("acpi", "LNXSYSTM:00", {{"modalias", "acpi:LNXSYSTM:"}});
  add("LEN0071:00", "acpi:LEN0071:PNP0303:", "15");
  machine.Add("pnp", "pnp0/00:03", {});
  machine.Bind("pnp", "pnp0/00:03", "i8042 kbd");
  machine.Root().Link("sys/devices/" + acpi + "LEN0071:00/physical_node", "../../../pnp0/00:03");
  add("INT0E0C:00", "acpi:INT0E0C:", "15");
  machine.Bind("acpi", acpi + "INT0E0C:00", "intel_sgx");
  add("PNP0C02:00", "acpi:PNP0C02:", "");
  add("PNP0103:00", "acpi:PNP0103:PNP0C01:", "15");
  add("XYZ0001:00", "acpi:XYZ0001:", "15");
  add("XYZ0002:00", "acpi:XYZ0002:", "0");
  add("XYZ0003:00", "acpi:XYZ0003:", "13");
  add("XYZ0004:00", "acpi:XYZ0004:", "7");
  add("XYZ0005:00", "acpi:XYZ0005:", "11");
  add("device:03", "", "");
  std::filesystem::remove(machine.Device(acpi + "device:03/modalias"));

  const std::string ports = "platform/i8042/";
  machine.Add("serio", ports + "serio0",
              {{"modalias", "serio:ty06pr00id00ex00"}, {"firmware_id", "PNP: LEN0071 PNP0303"}});
  machine.Bind("serio", ports + "serio0", "atkbd", "atkbd");
  machine.Write(ports + "serio0/input/input3",
                {{"name", "AT Translated Set 2 keyboard"}, {"capabilities/key", kTypewriterKeys}});
  machine.Add("serio", ports + "serio1", {{"modalias", "serio:ty01pr00id00ex00"}});
}

void BuildSensors(const FakeMachine& machine) {
  machine.AddOfClass("hwmon", "virtual/thermal/thermal_zone0/hwmon0",
                     {{"name", "acpitz"}, {"temp1_input", "27800"}});
  machine.AddOfClass("hwmon", "platform/coretemp.0/hwmon/hwmon7",
                     {{"name", "coretemp"}, {"temp1_input", "61499"}, {"temp2_input", "60500"}});
  machine.AddOfClass("hwmon", "platform/ec/hwmon/hwmon3",
                     {{"name", "ec"},
                      {"fan1_input", "3210"},
                      {"fan2_input", "65535"},
                      {"temp1_input", "-4000"},
                      {"temp2_input", "-273150"},
                      {"temp3_input", "48000"},
                      {"temp3_fault", "1"}});
  machine.AddOfClass("hwmon", "pci0000:00/0000:00:06.0/0000:01:00.0/hwmon/hwmon2",
                     {{"name", "nouveau"}, {"temp1_input", "33000"}});
}

void BuildSupplies(const FakeMachine& machine) {
  machine.AddOfClass("power_supply", "platform/ac/power_supply/AC", {{"type", "Mains"}, {"online", "0"}});
  machine.AddOfClass("power_supply", "platform/bat/power_supply/BAT0",
                     {{"type", "Battery"},
                      {"present", "1"},
                      {"status", "Discharging"},
                      {"voltage_now", "11856000"},
                      {"power_now", "8892000"}});
  machine.AddOfClass("power_supply", "platform/bat/power_supply/BAT1",
                     {{"type", "Battery"},
                      {"present", "1"},
                      {"status", "Charging"},
                      {"voltage_now", "12600000"},
                      {"current_now", "-1500000"}});
  machine.AddOfClass(
      "power_supply", "platform/hid/power_supply/A-mouse-battery",
      {{"type", "Battery"}, {"scope", "Device"}, {"present", "1"}, {"voltage_now", "3700000"}});
  machine.AddOfClass("power_supply", "platform/ucsi/power_supply/ucsi-source-psy-USBC000:001",
                     {{"type", "USB"}, {"voltage_now", "20000000"}, {"current_now", "3250000"}});
}

void BuildSettings(const FakeMachine& machine) {
  const std::string place = "virtual/firmware-attributes/maker";
  machine.AddOfClass("firmware-attributes", place, {});
  machine.Write(place + "/attributes/WirelessLANAccess", {{"current_value", "Enable"}});
  machine.Write(place + "/attributes/BluetoothAccess", {{"current_value", "Disable"}});
  machine.Write(place + "/attributes/FingerprintReaderAccess", {{"current_value", "Sometimes"}});
}

}  // namespace

void BuildModules(const FakeMachine& machine) {
  const std::string folder = "lib/modules/6.1.0-18-amd64/";
  machine.WriteFile(
      folder + "modules.dep",
      "kernel/drivers/net/wireless/intel/iwlwifi/iwlwifi.ko.xz: kernel/net/wireless/cfg80211.ko.xz\n"
      "kernel/sound/pci/hda/snd-hda-codec-realtek.ko: kernel/sound/soundcore.ko\n");
  machine.WriteFile(folder + "kernel/drivers/net/wireless/intel/iwlwifi/iwlwifi.ko.xz", "module");
  machine.WriteFile(folder + "kernel/sound/pci/hda/snd-hda-codec-realtek.ko", "module");
  machine.WriteFile(folder + "modules.builtin", "kernel/drivers/input/serio/i8042.ko\n");
  machine.WriteFile("sys/module/e1000e/version", "3.2.6-k\n");
}

void BuildLaptop(const FakeMachine& machine) {
  BuildPci(machine);
  BuildSound(machine);
  BuildUsb(machine);
  BuildFirmwareDevices(machine);
  BuildSensors(machine);
  BuildSupplies(machine);
  BuildSettings(machine);
  BuildModules(machine);
}

}  // namespace ostrine::test
