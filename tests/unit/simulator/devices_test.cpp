#include "simulator/sections/devices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/os/configuration_manager.h"
#include "platform/ostrine/deviceinformation.h"
#include "platform/ostrine/setup_class.h"
#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"
#include "tests/support/simulator/machines.h"

namespace {

using simulator::Device;
using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::setup_class::kUsb;
using velmora::testing::MachineWithDevices;

const std::wstring kId = L"USB\\VID_8087";

Device FailingDevice() {
  return {.setup_class = "USB", .hardware_ids = {"USB\\VID_8087"}, .description = "Hub", .problem_code = 43};
}

unsigned long ProblemCode() {
  return CDeviceInformention().GetDeviceULONGInfoByHardwareID(kId, kUsb, PROP_PROBLEM_CODE);
}

void RescanTree() {
  velmora::os::DevNode root = 0;
  ASSERT_EQ(velmora::os::CM_Locate_DevNodeW(root, nullptr, 0), velmora::os::kConfigSuccess);
  ASSERT_EQ(velmora::os::CM_Reenumerate_DevNode(root, 4), velmora::os::kConfigSuccess);
}

TEST(SimulatedDevices, ComeBackAfterAsManyRescansAsTheMachineSays) {
  auto device = FailingDevice();
  device.after_removal.returns_after = 2;
  const auto run = simulator::Use(MachineWithDevices({device}));
  EXPECT_EQ(CDeviceInformention().UnstallDeviceByHardwareID(kId, kUsb), 0u);

  RescanTree();
  EXPECT_EQ(ProblemCode(), 45u) << "still gone";
  RescanTree();
  EXPECT_EQ(ProblemCode(), 43u) << "back, and failing as before";
}

TEST(SimulatedDevices, HealAfterAsManyRescansAsTheMachineSays) {
  auto device = FailingDevice();
  device.after_removal = {.heals_after = 3};
  const auto run = simulator::Use(MachineWithDevices({device}));
  RescanTree();
  RescanTree();
  RescanTree();
  EXPECT_EQ(ProblemCode(), 43u) << "rescans alone heal nothing";

  CDeviceInformention().UnstallDeviceByHardwareID(kId, kUsb);
  RescanTree();
  RescanTree();
  EXPECT_EQ(ProblemCode(), 43u);
  RescanTree();
  EXPECT_EQ(ProblemCode(), 0u);
}

TEST(SimulatedDevices, MayBeGoneForGood) {
  auto device = FailingDevice();
  device.after_removal.returns = false;
  const auto run = simulator::Use(MachineWithDevices({device}));
  CDeviceInformention().UnstallDeviceByHardwareID(kId, kUsb);
  for (int i = 0; i < 5; ++i) RescanTree();
  EXPECT_THAT(CDeviceInformention().GetDeviceHardwareID(kUsb), IsEmpty());
}

TEST(SimulatedDevices, StayWhenTheyCannotBeRemoved) {
  auto device = FailingDevice();
  device.removal_error = 5;
  const auto run = simulator::Use(MachineWithDevices({device}));
  EXPECT_EQ(CDeviceInformention().UnstallDeviceByHardwareID(kId, kUsb), 5u);
  EXPECT_EQ(ProblemCode(), 43u);
}

TEST(SimulatedDevices, GiveScriptedProblemCodesFirst) {
  auto device = FailingDevice();
  device.next_problem_codes = {28, 22};
  const auto run = simulator::Use(MachineWithDevices({device}));
  EXPECT_EQ(ProblemCode(), 28u);
  EXPECT_EQ(ProblemCode(), 22u);
  EXPECT_EQ(ProblemCode(), 43u);
}

TEST(SimulatedDevices, MayChangeBetweenTwoCalls) {
  auto run = simulator::Use(MachineWithDevices({FailingDevice()}));
  run.BeforeCall(1, [](simulator::Machine& machine) { machine.devices->clear(); });
  EXPECT_EQ(ProblemCode(), 43u);
  EXPECT_EQ(ProblemCode(), 45u);
}

TEST(SimulatedDevices, AreTracedWithTextClassAndProperty) {
  const auto run = simulator::Use(MachineWithDevices({}));
  CDeviceInformention information;
  information.GetDeviceStrInfoByHardwareID(kId, kUsb, PROP_DRIVER_VERSION);
  information.GetDeviceDesc(GUID{});
  information.GetUnknownDeviceHardID();
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceStrInfoByHardwareID(USB\\VID_8087, USB, 2)",
                                       "GetDeviceDesc({00000000-0000-0000-0000-000000000000})",
                                       "GetUnknownDeviceHardID()"));
}

TEST(SimulatedDevices, GoWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithDevices({FailingDevice()}));
  CDeviceInformention information;
  const auto text = [&] { return information.GetDeviceStrInfoByHardwareID(kId, kUsb, PROP_DESCRIPTION); };

  run.Inject(Fault::kFail, 0, true);
  EXPECT_EQ(text(), L"");
  EXPECT_THAT(information.GetDeviceDesc(kUsb), IsEmpty());
  EXPECT_EQ(ProblemCode(), 45u);
  EXPECT_NE(information.UnstallDeviceByHardwareID(kId, kUsb), 0u);

  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_EQ(text(), L"");
  EXPECT_EQ(ProblemCode(), 0u);
  EXPECT_EQ(information.UnstallDeviceByHardwareID(kId, kUsb), 0u);

  run.Inject(Fault::kUnterminated, 0, true);
  EXPECT_GT(text().size(), 65'536u);
  EXPECT_GT(information.GetDeviceHardwareID(kUsb).size(), 1u);

  run.Inject(Fault::kThrow, 0, true);
  EXPECT_THROW(text(), simulator::InjectedFault);

  run.Inject(Fault::kNone, 0);
  EXPECT_EQ(text(), L"Hub") << "nothing of it had happened";
}

TEST(SimulatedDevices, ThatAreNotScriptedAreReportedByTheCallsName) {
  const velmora::testing::CapturedProblems captured;
  const auto run = simulator::Use(simulator::BlankMachine());
  CDeviceInformention().GetDeviceDesc(kUsb);
  velmora::os::DevNode root = 0;
  velmora::os::CM_Locate_DevNodeW(root, nullptr, 0);
  EXPECT_THAT(captured.Problems(),
              ElementsAre("GetDeviceDesc was called, but the machine has no script for devices",
                          "CM_Locate_DevNodeW was called, but the machine has no script for devices"));
}

TEST(SimulatedDeviceTree, FindsADeviceByItsInstanceIdAndNoOther) {
  auto device = FailingDevice();
  device.instance_id = "USB\\VID_8087\\5&1";
  const auto run = simulator::Use(MachineWithDevices({device}));
  velmora::os::DevNode node = 77;
  EXPECT_EQ(velmora::os::CM_Locate_DevNodeW(node, L"USB\\VID_8087\\5&2", 0),
            velmora::os::kConfigNoSuchDevNode);
  EXPECT_EQ(node, 77u) << "written on success only";
  EXPECT_EQ(velmora::os::CM_Locate_DevNodeW(node, L"usb\\vid_8087\\5&1", 0), velmora::os::kConfigSuccess);
  EXPECT_EQ(velmora::os::CM_Reenumerate_DevNode(node, 0), velmora::os::kConfigSuccess);
  EXPECT_EQ(velmora::os::CM_Reenumerate_DevNode(99, 0), velmora::os::kConfigNoSuchDevNode);
}

}  // namespace
