#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cctype>
#include <filesystem>

#include "access_recorder.h"
#include "ostrine/linux/device.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/interface_guid.h"
#include "platform/ostrine/setup_class.h"
#include "platform/ostrine/wmi.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

namespace setup_class = velmora::setup_class;

std::wstring Select(const std::wstring& property, const std::wstring& rest) {
  return CWMI(L"ROOT\\CIMV2").SelectStr(L"SELECT " + property + L" FROM " + rest, property);
}
unsigned int SelectNumber(const std::wstring& property, const std::wstring& rest) {
  return CWMI(L"ROOT\\CIMV2").SelectUInt(L"SELECT " + property + L" FROM " + rest, property);
}

class WmiOnLaptop : public testing::Test {
 protected:
  WmiOnLaptop() {
    test::BuildLaptop(machine_);
    AddProcess("7", "kworker/0:1", "", 'I');
    AddProcess("900", "bash", "/usr/bin/bash", 'S');
    AddProcess("1000", "bash", "/usr/bin/bash", 'S');
    AddProcess("1001", "old", "/opt/app/very-long-program-name (deleted)", 'S');
    AddProcess("1002", "ended) Z (", "", 'Z');
  }
  void AddProcess(const std::string& number, const std::string& name, const std::string& program,
                  char state) const {
    machine_.WriteFile("proc/" + number + "/comm", name + "\n");
    machine_.WriteFile("proc/" + number + "/stat", number + " (" + name + ") " + state + " 1 2\n");
    if (!program.empty()) machine_.Root().Link("proc/" + number + "/exe", program);
  }

  test::FakeMachine machine_;
  test::ActsOn acts_on_{machine_};
};

TEST_F(WmiOnLaptop, FindsTheFirstProcessOfAName) {
  EXPECT_EQ(SelectNumber(L"ProcessId", L"Win32_Process WHERE Caption='BASH'"), 900u);
  EXPECT_EQ(Select(L"ExecutablePath", L"Win32_Process WHERE Caption='bash'"), L"/usr/bin/bash");
}

TEST_F(WmiOnLaptop, NamesAProcessByItsProgramAndAKernelThreadByItself) {
  EXPECT_EQ(SelectNumber(L"ProcessId", L"Win32_Process WHERE Caption='very-long-program-name'"), 1001u);
  EXPECT_EQ(SelectNumber(L"ProcessId", L"Win32_Process WHERE Caption='kworker/0:1'"), 7u);
  EXPECT_EQ(Select(L"ExecutablePath", L"Win32_Process WHERE Caption='kworker/0:1'"), L"");
}

TEST_F(WmiOnLaptop, DoesNotCountAProcessThatHasEnded) {
  EXPECT_EQ(SelectNumber(L"ProcessId", L"Win32_Process WHERE ProcessId=1002"), 0u);
}

TEST_F(WmiOnLaptop, FindsNothingForANameThatTriesToBreakOut) {
  EXPECT_EQ(SelectNumber(L"ProcessId", L"Win32_Process WHERE Caption='zz' OR Name LIKE '%'"), 0u);
}

TEST_F(WmiOnLaptop, FindsAdaptersByTheNamesOfDeviceInformation) {
  CDeviceInformention information;
  const std::wstring wireless = L"PCI\\VEN_8086&DEV_51F0&SUBSYS_00948086&REV_01";
  const std::wstring name =
      information.GetDeviceStrInfoByHardwareID(wireless, setup_class::kNet, PROP_DISPLAY_NAME);
  ASSERT_FALSE(name.empty());
  EXPECT_EQ(
      Select(L"MACAddress", L"Win32_NetworkAdapter WHERE MACAddress IS NOT NULL and Name='" + name + L"'"),
      L"A4:BB:6D:00:11:2F");
  EXPECT_EQ(Select(L"AdapterType", L"Win32_NetworkAdapter WHERE Name='" + name + L"'"), L"Wireless");
  EXPECT_EQ(Select(L"NetConnectionID", L"Win32_NetworkAdapter WHERE Name='" + name + L"'"), L"wlp0s20f3");
  const std::wstring guid = Select(L"GUID", L"Win32_NetworkAdapter WHERE Name='" + name + L"'");
  const std::string expected = velmora::GuidText(velmora::InterfaceGuid("wlp0s20f3"));
  EXPECT_EQ(guid, std::wstring(expected.begin(), expected.end()));
}

TEST_F(WmiOnLaptop, TellsTheKindsOfAdapters) {
  EXPECT_EQ(Select(L"AdapterType", L"Win32_NetworkAdapter WHERE NetConnectionID='enp0s31f6'"),
            L"Ethernet 802.3");
  machine_.Add("pci", "pci0000:00/0000:04:00.0",
               {{"modalias", "pci:v000014C0d00004D75sv000014C0sd00005310bc0Dsc40i00"}});
  machine_.AddOfClass("net", "pci0000:00/0000:04:00.0/net/wwan0",
                      {{"address", "00:00:00:00:00:00"}, {"type", "65534"}, {"uevent", "DEVTYPE=wwan"}});
  EXPECT_EQ(Select(L"AdapterType", L"Win32_NetworkAdapter WHERE NetConnectionID='wwan0'"),
            L"Wide Area Network (WAN)");
  EXPECT_EQ(Select(L"Name", L"Win32_NetworkAdapter WHERE MACAddress IS NULL"),
            Select(L"Name", L"Win32_NetworkAdapter WHERE NetConnectionID='wwan0'"));
}

TEST_F(WmiOnLaptop, FindsCardsByTheDescriptionsOfDeviceInformation) {
  const auto descriptions = CDeviceInformention().GetDeviceDesc(setup_class::kDisplay);
  ASSERT_EQ(descriptions.size(), 2u);
  EXPECT_EQ(Select(L"AdapterDACType", L"Win32_VideoController WHERE Caption ='" + descriptions[0] + L"'"),
            L"Internal");
  EXPECT_EQ(Select(L"AdapterDACType", L"Win32_VideoController WHERE Caption ='" + descriptions[1] + L"'"),
            L"")
      << "a card of its own, without a driver";
}

TEST_F(WmiOnLaptop, FindsTheDriverOfTheBluetoothRadio) {
  EXPECT_EQ(Select(L"DeviceName",
                   L"Win32_PnPSignedDriver WHERE HardWareID like 'USB%' and DeviceClass = 'BLUETOOTH'"),
            L"USB wireless device 8087:0033");
  EXPECT_EQ(Select(L"DeviceName", L"Win32_PnPSignedDriver WHERE HardWareID like 'PCI\\\\VEN_10DE%'"), L"")
      << "a device without a driver has no row";
}

TEST_F(WmiOnLaptop, HasNoServicesWithoutABus) {
  EXPECT_EQ(Select(L"Name", L"Win32_Service Where name like '%'"), L"");
}

TEST_F(WmiOnLaptop, LooksAtNothingForAnEmptyText) {
  test::AccessRecorder recorder(machine_.Path());
  for (const wchar_t* const table : {L"Win32_Process WHERE Caption=''", L"Win32_NetworkAdapter WHERE Name=''",
                                     L"Win32_NetworkAdapter WHERE Name IS NOT NULL AND GUID=''"}) {
    EXPECT_EQ(Select(L"Name", table), L"") << table;
  }
  EXPECT_THAT(recorder.Opened(), testing::IsEmpty());
  // Everything else is looked for.
  EXPECT_NE(Select(L"Name", L"Win32_NetworkAdapter WHERE Name<>''"), L"");
}

TEST_F(WmiOnLaptop, IsEmptyElsewhere) {
  EXPECT_EQ(Select(L"Name", L"Win32_NoSuchClass"), L"");
  EXPECT_EQ(CWMI(L"ROOT\\NOSUCH").SelectStr(L"SELECT Caption FROM Win32_Process", L"Caption"), L"");
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(L"SELECT Caption FROM Win32_Process", L"ProcessId"), L"")
      << "a property that was not selected";
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(std::wstring(65'537, L'S'), L"Caption"), L"");
}

TEST(InterfaceGuid, IsStableAndDiffersByName) {
  EXPECT_EQ(velmora::GuidText(velmora::InterfaceGuid("eth0")),
            velmora::GuidText(velmora::InterfaceGuid("eth0")));
  EXPECT_NE(velmora::InterfaceGuid("eth0"), velmora::InterfaceGuid("eth1"));
  EXPECT_EQ(velmora::GuidText(setup_class::kNet), "{4D36E972-E325-11CE-BFC1-08002BE10318}");
}

TEST(ThisMachine, ListsItsPciFunctions) {
  std::size_t functions = 0;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/sys/bus/pci/devices", error)) {
    static_cast<void>(entry);
    ++functions;
  }
  std::size_t listed = 0;
  for (const Device& device : ListDevices("/")) {
    if (device.bus != Device::Bus::kPci) continue;
    ++listed;
    std::string vendor = CleanAttribute(Path("/sys/bus/pci/devices") / device.address / "vendor").substr(2);
    for (char& c : vendor) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const std::wstring start = L"PCI\\VEN_" + std::wstring(vendor.begin(), vendor.end());
    EXPECT_TRUE(device.ids.hardware.front().starts_with(start)) << device.address;
  }
  EXPECT_EQ(listed, functions);
}

TEST(ThisMachine, KnowsTheTestsOwnProcess) {
  const std::string name = std::filesystem::read_symlink("/proc/self/exe").filename().string();
  const std::wstring caption(name.begin(), name.end());
  EXPECT_EQ(Select(L"Caption", L"Win32_Process WHERE ProcessId=" + std::to_wstring(getpid())), caption);
  EXPECT_EQ(Select(L"ExecutablePath", L"Win32_Process WHERE ProcessId=" + std::to_wstring(getpid())),
            std::filesystem::read_symlink("/proc/self/exe").wstring());
}

}  // namespace
}  // namespace ostrine
