#include "platform/os/device_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

constexpr const wchar_t* kName = L"\\\\.\\IBTRSTD";
constexpr std::uint32_t kCode = 0x002211FC;
constexpr std::array<unsigned char, 4> kInput{0x2B, 0x1A, 0, 0};

simulator::Machine MachineWithControlDevice(simulator::ControlDevice device) {
  device.name = "\\\\.\\IBTRSTD";
  auto machine = simulator::BlankMachine();
  machine.control_devices = {std::move(device)};
  return machine;
}

Handle Open() { return CreateFileW(kName, 0xC0000000, 0, 3, 0); }
bool Send(Handle device) { return DeviceIoControl(device, kCode, kInput.data(), 4, nullptr, 0, nullptr); }

TEST(SimulatedControlDevice, TakesRequestsAndKeepsThem) {
  auto run = simulator::Use(MachineWithControlDevice({}));
  const Handle device = Open();
  EXPECT_TRUE(Send(device));
  EXPECT_TRUE(CloseHandle(device));
  EXPECT_THAT(run.machine().control_devices->front().requests,
              ElementsAre(simulator::ControlRequest{kCode, {{0x2B, 0x1A, 0, 0}}}));
  EXPECT_THAT(run.Trace(), ElementsAre("CreateFileW(\\\\.\\IBTRSTD, 0xC0000000, 0, 3, 0)",
                                       "DeviceIoControl(0x2211FC, 2B 1A 00 00, 0)", "CloseHandle()"));
}

TEST(SimulatedControlDevice, GivesItsOutput) {
  const auto run = simulator::Use(MachineWithControlDevice({.output = {{1, 2, 3}}}));
  const Handle device = Open();
  std::array<unsigned char, 2> output{};
  std::uint32_t returned = 0;
  EXPECT_TRUE(DeviceIoControl(device, kCode, nullptr, 0, output.data(), 2, &returned));
  EXPECT_THAT(output, ElementsAre(1, 2));
  EXPECT_EQ(returned, 2u);
  CloseHandle(device);
}

TEST(SimulatedControlDevice, FailsWithTheScriptedErrors) {
  auto run = simulator::Use(MachineWithControlDevice({.request_error = 31}));
  const Handle device = Open();
  EXPECT_FALSE(Send(device));
  EXPECT_EQ(LastError(), 31u);
  CloseHandle(device);

  run.machine().control_devices->front().open_error = 5;
  EXPECT_EQ(Open(), InvalidHandle());
  EXPECT_EQ(LastError(), 5u);
  run.machine().control_devices->clear();
  EXPECT_EQ(Open(), InvalidHandle());
  EXPECT_EQ(LastError(), 2u);
}

TEST(SimulatedControlDevice, GoesWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithControlDevice({}));
  const Handle device = Open();
  run.Inject(Fault::kFail, 0, true);
  EXPECT_FALSE(Send(device));
  EXPECT_EQ(Open(), InvalidHandle());
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_TRUE(Send(device));
  EXPECT_TRUE(run.machine().control_devices->front().requests.empty());
  run.Inject(Fault::kNone, 0);
  CloseHandle(device);
}

}  // namespace
