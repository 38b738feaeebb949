#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>

#include "ostrine/linux/device_query.h"
#include "ostrine/linux/firmware_method.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "platform/ostrine/wmi.h"
#include "tests/support/linux/fake_machine.h"

namespace ostrine {
namespace {

namespace setup_class = velmora::setup_class;
using ::testing::IsEmpty;

constexpr const char* kNetwork = "pci:v00008086d000051F0sv00008086sd00000094bc02sc80i00";

/// A tree that no kernel would show. Every reader must come back, with the ordinary answers.
class HostileTree : public testing::Test {
 protected:
  /// Asks everything that can be asked.
  void AskEverything() {
    const test::ActsOn acts_on(machine_);
    CDeviceInformention information;
    for (const GUID& setup_class :
         {setup_class::kNet, setup_class::kBluetooth, setup_class::kBiometric, setup_class::kMedia,
          setup_class::kKeyboard, setup_class::kDisplay, setup_class::kUsb, setup_class::kSystem}) {
      for (const std::wstring& description : information.GetDeviceDesc(setup_class)) {
        information.GetDeviceStrInfoByDesc(description, setup_class, PROP_DISPLAY_NAME);
        information.GetDeviceULONGInfoByDesc(description, setup_class, PROP_PROBLEM_CODE);
      }
      for (const std::wstring& id : information.GetDeviceHardwareID(setup_class)) {
        information.GetDeviceStrInfoByHardwareID(id, setup_class, PROP_DRIVER_VERSION);
        information.GetDeviceStrInfoByHardwareID(id, setup_class, PROP_MANUFACTURER);
        information.GetLastIntallTime(id, setup_class);
      }
    }
    information.GetUnknownDeviceHardID();
    for (const wchar_t* const table : {L"Win32_Process", L"Win32_Service", L"Win32_NetworkAdapter",
                                       L"Win32_VideoController", L"Win32_PnPSignedDriver"}) {
      CWMI(L"ROOT\\CIMV2")
          .SelectStr(std::wstring(L"SELECT Name FROM ") + table + L" WHERE Name='x'", L"Name");
    }
    for (const std::uint64_t command : {0x0802u, 0x0202u, 0x200902u, 0x300902u, 0x250105u}) {
      AnswerFirmwareMethod(machine_.Path(), command);
    }
  }
  std::vector<std::wstring> NetworkIds() const {
    return DeviceQuery(machine_.Path(), setup_class::kNet).HardwareIds();
  }

  test::FakeMachine machine_;
};

TEST_F(HostileTree, WithLinksInCirclesHasNoDevicesBehindThem) {
  machine_.Root().Link("sys/bus/pci/devices/0000:00:00.0", "0000:00:01.0");
  machine_.Root().Link("sys/bus/pci/devices/0000:00:01.0", "0000:00:00.0");
  machine_.Root().Link("sys/class/hwmon/hwmon0", "hwmon0");
  machine_.Add("pci", "pci0000:00/0000:00:02.0", {{"modalias", kNetwork}});
  machine_.Root().Link("sys/devices/pci0000:00/0000:00:02.0/driver", "driver");
  machine_.Root().Link("sys/devices/pci0000:00/0000:00:02.0/net", ".");
  AskEverything();
  EXPECT_EQ(NetworkIds().size(), 1u);
}

TEST_F(HostileTree, WithLinksOutOfItHasNoDevicesBehindThem) {
  machine_.Root().Write("outside/modalias", kNetwork);
  machine_.Root().Link("sys/bus/pci/devices/0000:00:00.0", (machine_.Path() / "outside").string());
  machine_.Root().Link("sys/bus/pci/devices/0000:00:01.0", "/");
  AskEverything();
  EXPECT_THAT(NetworkIds(), IsEmpty());
}

TEST_F(HostileTree, WithPipesAndFoldersInPlaceOfFilesIsNotWaitedFor) {
  machine_.Add("pci", "pci0000:00/0000:00:02.0", {{"modalias", kNetwork}});
  const auto device = machine_.Device("pci0000:00/0000:00:02.0");
  for (const char* const name : {"revision", "uevent", "authorized"}) {
    ASSERT_EQ(mkfifo((device / name).c_str(), 0600), 0);
  }
  std::filesystem::create_directories(machine_.Path() / "usr/share/misc/pci.ids");
  std::filesystem::create_directories(machine_.Path() / "usr/lib/udev");
  ASSERT_EQ(mkfifo((machine_.Path() / "usr/lib/udev/hwdb.bin").c_str(), 0600), 0);
  std::filesystem::create_directories(machine_.Path() / "run/dbus/system_bus_socket");
  std::filesystem::create_directories(machine_.Path() / "proc/1/comm");
  AskEverything();
  EXPECT_EQ(NetworkIds().size(), 1u);
}

TEST_F(HostileTree, WithHugeFilesIsReadWithinBounds) {
  machine_.Add("pci", "pci0000:00/0000:00:02.0", {{"modalias", kNetwork}});
  for (const char* const name : {"sys/devices/pci0000:00/0000:00:02.0/revision", "usr/share/misc/pci.ids",
                                 "lib/modules/6.1.0-18-amd64/modules.dep", "proc/1/stat"}) {
    machine_.WriteFile(name, "8086  Vendor\n");
    std::filesystem::resize_file(machine_.Path() / name, std::uintmax_t{1} << 40);
  }
  const auto start = std::chrono::steady_clock::now();
  AskEverything();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
  EXPECT_EQ(NetworkIds().size(), 1u);
}

TEST_F(HostileTree, WithBinaryJunkHasNoDevicesOfIt) {
  std::string junk;
  for (int i = 0; i < 4096; ++i) junk.push_back(static_cast<char>(i * 7));
  machine_.Add("pci", "pci0000:00/0000:00:02.0", {{"modalias", junk}, {"revision", junk}});
  machine_.Add("usb", "pci0000:00/0000:00:14.0/usb1", {{"idVendor", junk}, {"bDeviceClass", "1FFFF"}});
  machine_.Bind("usb", "pci0000:00/0000:00:14.0/usb1", "usb");
  machine_.Add("hid", "hid/1", {{"modalias", std::string(4096, ':')}, {"uevent", std::string(4096, '=')}});
  machine_.Add("acpi", "LNXSYSTM:00/1", {{"modalias", "acpi:" + std::string(4000, 'A')}, {"status", junk}});
  machine_.AddOfClass("hwmon", "h/hwmon0", {{"name", junk}, {"temp1_input", junk}, {"fan1_input", junk}});
  machine_.AddOfClass("power_supply", "p/BAT0", {{"type", "Battery"}, {"voltage_now", junk}});
  machine_.WriteFile("proc/5/stat", "no parentheses");
  machine_.WriteFile("proc/6/stat", "6 (x)");
  machine_.WriteFile("usr/share/misc/pci.ids", junk);
  AskEverything();
  EXPECT_THAT(ListDevices(machine_.Path()), testing::SizeIs(testing::Le(1u)));
}

TEST_F(HostileTree, WithBrokenTextsGivesReplacementsAndNoControlCharacters) {
  machine_.Add("hdaudio", "pci0000:00/hdaudioC0D0",
               {{"modalias", "hdaudio:v10EC0257r00100001a01"},
                {"vendor_name", "  Real\xFFtek\x01 "},
                {"chip_name", std::string("AL\0C257", 7)}});
  const auto descriptions = DeviceQuery(machine_.Path(), setup_class::kMedia).Descriptions();
  ASSERT_EQ(descriptions.size(), 1u);
  EXPECT_EQ(descriptions[0], L"Real\uFFFDtek ALC257");
}

TEST_F(HostileTree, WithManyEntriesIsReadToALimit) {
  for (int i = 0; i < 20; ++i) machine_.WriteFile("folder/entry" + std::to_string(i), "");
  EXPECT_EQ(EntryNames(machine_.Path() / "folder", {}, 12).size(), 12u);
  EXPECT_EQ(EntryNames(machine_.Path() / "folder").size(), 20u);
}

}  // namespace
}  // namespace ostrine
