#include "velmora-report/bluetooth_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using report::Advice;
using report::BluetoothRemedy;
using report::BluetoothState;
using report::Intention;
using report::RemedyFor;
using report::Sentence;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

BluetoothState Adapter(std::uint64_t problem_code) {
  return {.hardware_id = L"USB\\VID_8087&PID_0026", .problem_code = problem_code};
}

constexpr BluetoothRemedy kAll[] = {BluetoothRemedy::kNotNeeded, BluetoothRemedy::kDriverRepair,
                                    BluetoothRemedy::kRescan, BluetoothRemedy::kUsbRepair,
                                    BluetoothRemedy::kNone};

TEST(BluetoothPlan, LeavesAnAdapterAloneThatWorksOrIsSwitchedOff) {
  EXPECT_EQ(RemedyFor(Adapter(0)), BluetoothRemedy::kNotNeeded);
  EXPECT_EQ(RemedyFor(Adapter(22)), BluetoothRemedy::kNotNeeded);
  EXPECT_EQ(Sentence(Adapter(0)), "The adapter works.");
  EXPECT_EQ(Sentence(Adapter(22)), "The adapter is switched off.");
  EXPECT_THAT(Advice(BluetoothRemedy::kNotNeeded, Adapter(0)), IsEmpty());
  EXPECT_THAT(Advice(BluetoothRemedy::kNotNeeded, Adapter(22)), HasSubstr("Switch it on"));
}

TEST(BluetoothPlan, NamesTheDriversRepairForAnAdapterThatFails) {
  EXPECT_EQ(RemedyFor(Adapter(43)), BluetoothRemedy::kDriverRepair);
  EXPECT_EQ(Sentence(Adapter(43)), "The adapter fails with problem code 43.");
  EXPECT_THAT(Advice(BluetoothRemedy::kDriverRepair, Adapter(43)),
              HasSubstr("repair reset --kind bluetooth --id \"USB\\VID_8087&PID_0026\""));
}

TEST(BluetoothPlan, RescansForAnAdapterAmongUnknownDevicesWhateverFailsOnUsb) {
  const BluetoothState state{.is_unknown = true, .is_failing_in_usb = true, .usb_problem_code = 43};
  EXPECT_EQ(RemedyFor(state), BluetoothRemedy::kRescan);
  EXPECT_THAT(Sentence(state), HasSubstr("among the devices without a driver"));
}

TEST(BluetoothPlan, RepairsOnUsbWhenADeviceFailsThere) {
  const BluetoothState state{.is_failing_in_usb = true, .usb_problem_code = 43};
  EXPECT_EQ(RemedyFor(state), BluetoothRemedy::kUsbRepair);
  EXPECT_THAT(Sentence(state), HasSubstr("fails with problem code 43"));
}

TEST(BluetoothPlan, HasNoRemedyWithoutAnythingThatCouldBeTheAdapter) {
  EXPECT_EQ(RemedyFor({}), BluetoothRemedy::kNone);
  EXPECT_EQ(Sentence({}), "There is no adapter.");
  EXPECT_THAT(Advice(BluetoothRemedy::kNone, {}), Not(IsEmpty()));
}

TEST(BluetoothPlan, EitherIntendsSomethingOrSaysWhyNot) {
  for (const BluetoothRemedy remedy : kAll) {
    const bool acts = remedy == BluetoothRemedy::kRescan || remedy == BluetoothRemedy::kUsbRepair;
    EXPECT_EQ(Intention(remedy).empty(), !acts);
    EXPECT_EQ(Advice(remedy, Adapter(22)).empty(), acts);
  }
}

}  // namespace
