#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <chrono>

#include "ostrine/linux/bluez.h"
#include "ostrine/linux/bus_connection.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "platform/ostrine/wmi.h"
#include "tests/unit/ostrine/linux/mock_services.h"

namespace ostrine {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::wstring SelectService(const std::wstring& property, const std::wstring& rest) {
  return CWMI(L"ROOT\\CIMV2").SelectStr(L"SELECT " + property + L" FROM Win32_Service " + rest, property);
}

TEST(Services, AreThoseOfTheServiceManager) {
  const test::FakeMachine machine;
  const test::ActsOn acts_on(machine);
  const test::MockServices services(machine, {"systemd"});
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='SSH'"), L"Running");
  EXPECT_EQ(SelectService(L"Name", L"WHERE Name='SSH'"), L"ssh");
  EXPECT_EQ(SelectService(L"DisplayName", L"WHERE Name='ssh'"), L"About ssh.service");
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='starting'"), L"Start Pending");
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='stopping'"), L"Stop Pending");
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='broken'"), L"Stopped");
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='frozen'"), L"Paused");
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='thawed'"), L"Running")
      << "a unit's own kind of state does not tell";
  EXPECT_EQ(SelectService(L"Name", L"WHERE State='Paused'"), L"frozen");
  EXPECT_EQ(SelectService(L"State", L"WHERE Name='idle'"), L"Stopped") << "installed, but not loaded";
  EXPECT_EQ(SelectService(L"Name", L"WHERE name like 'WpnUserService_%'"), L"WpnUserService_1a2b");
  for (const wchar_t* const none : {L"mentioned", L"getty@", L"sshd", L"nosuch", L"ssh.service", L""}) {
    EXPECT_EQ(SelectService(L"Name", std::wstring(L"WHERE Name='") + none + L"'"), L"") << none;
  }
}

TEST(RemoteDevices, AreThePairedAndTheConnected) {
  namespace setup_class = velmora::setup_class;
  const test::FakeMachine machine;
  test::BuildLaptop(machine);
  const test::ActsOn acts_on(machine);
  const test::MockServices services(machine, {"bluez"});
  CDeviceInformention information;
  const std::wstring mouse = L"BTHLE\\Dev_AABBCCDDEEFF";
  EXPECT_THAT(information.GetDeviceHardwareID(setup_class::kBluetooth),
              ElementsAre(L"USB\\VID_8087&PID_0033&REV_0000", L"BTHENUM\\Dev_102030405060",
                          L"BTHLE\\Dev_102030405062", mouse));
  const auto text = [&](enmDEVICE_PROPERTY property) {
    return information.GetDeviceStrInfoByHardwareID(mouse, setup_class::kBluetooth, property);
  };
  EXPECT_EQ(text(PROP_DEVICE_TYPE), L"Mouse");
  EXPECT_EQ(text(PROP_DEVICE_NAME), L"B\u00FCro Mouse");
  EXPECT_EQ(text(PROP_DISPLAY_NAME), L"B\u00FCro Mouse");
  EXPECT_EQ(text(PROP_DESCRIPTION), L"B\u00FCro Mouse");
  EXPECT_EQ(text(PROP_INSTANCE_ID), mouse + L"\\hci0");
  EXPECT_EQ(information.GetDeviceStrInfoByHardwareID(L"BTHENUM\\Dev_102030405060", setup_class::kBluetooth,
                                                     PROP_DEVICE_TYPE),
            L"Headset");
  EXPECT_EQ(information.GetDeviceULONGInfoByHardwareID(mouse, setup_class::kBluetooth, PROP_PROBLEM_CODE),
            0u);
  EXPECT_EQ(information.UnstallDeviceByHardwareID(mouse, setup_class::kBluetooth), 50u);
}

TEST(RemoteDevices, AreNoneWhenTheServiceDoesNotRun) {
  const test::FakeMachine machine;
  const test::MockServices services(machine, {});
  EXPECT_THAT(ListRemoteBluetoothDevices(machine.Path()), IsEmpty());
}

TEST(RemoteDevices, AreNoneWhenTheServiceHangs) {
  const test::FakeMachine machine;
  const test::MockServices services(machine, {"silent"});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THAT(ListRemoteBluetoothDevices(machine.Path()), IsEmpty());
  EXPECT_GE(std::chrono::steady_clock::now() - start, BusConnection::kPatience / 2);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5 * BusConnection::kPatience);
}

TEST(BusConnection, GivesABusUpThatDoesNotGreet) {
  const test::FakeMachine machine;
  machine.WriteFile("run/dbus/placeholder", "");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = (machine.Path() / "run/dbus/system_bus_socket").string();
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 1), 0);

  const auto start = std::chrono::steady_clock::now();
  const BusConnection bus(machine.Path(), std::chrono::milliseconds(200));
  EXPECT_FALSE(bus.NewCall({"org.example", "/", "org.example", "Call"}));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  close(listener);
}

TEST(BusConnection, IsNoneWithoutABus) {
  const test::FakeMachine machine;
  const BusConnection bus(machine.Path());
  EXPECT_FALSE(bus.NewCall({"org.example", "/", "org.example", "Call"}));
  EXPECT_FALSE(bus.Call({}));
}

}  // namespace
}  // namespace ostrine
