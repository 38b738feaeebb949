#include "velmora/devicedriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "simulator/run.h"
#include "tests/support/simulator/machines.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::IsEmpty;
using velmora::testing::MachineWithDevices;

constexpr auto kNet = "{4d36e972-e325-11ce-bfc1-08002be10318}";

simulator::Device FailingWireless() {
  return {.setup_class = "Net",
          .hardware_ids = {"PCI\\VEN_14C3&DEV_7961"},
          .description = "Wireless LAN Card",
          .manufacturer = "A Maker",
          .instance_id = "PCI\\VEN_14C3&DEV_7961\\4&1",
          .service = "mtkwlex",
          .problem_code = 10};
}

simulator::Device UnknownDevice() {
  return {.setup_class = "Unknown",
          .hardware_ids = {"ACPI\\ACME0001"},
          .instance_id = "ACPI\\ACME0001\\0",
          .problem_code = 28,
          .unknown = true};
}

/// A healthy device, then the two failing ones.
simulator::Machine MachineWithTwoFailing() {
  auto healthy = FailingWireless();
  healthy.problem_code = 0;
  return MachineWithDevices({healthy, FailingWireless(), UnknownDevice()});
}

void ExpectNothing(const stErrDriverInfo& info) {
  EXPECT_EQ(info.strCaption, "");
  EXPECT_EQ(info.strDeviceID, "");
  EXPECT_EQ(info.strClassGUID, "");
  EXPECT_EQ(info.strService, "");
  EXPECT_EQ(info.strStatus, "");
  EXPECT_EQ(info.strManufacture, "");
  EXPECT_EQ(info.uErrorCode, 0U);
}

TEST(FailingDrivers, AreTheDevicesWithAProblemCode) {
  const auto run = simulator::Use(MachineWithTwoFailing());
  CDeviceDriver drivers;
  ASSERT_EQ(drivers.GetErrDeviceDriverCount(), 2);

  const auto wireless = drivers.GetErrDriverInfoByIndex(0);
  EXPECT_EQ(wireless.strCaption, "Wireless LAN Card");
  EXPECT_EQ(wireless.strDeviceID, "PCI\\VEN_14C3&DEV_7961\\4&1");
  EXPECT_EQ(wireless.strClassGUID, kNet);
  EXPECT_EQ(wireless.strService, "mtkwlex");
  EXPECT_EQ(wireless.strStatus, "Error");
  EXPECT_EQ(wireless.strManufacture, "A Maker");
  EXPECT_EQ(wireless.uErrorCode, 10U);

  const auto unknown = drivers.GetErrDriverInfoByIndex(1);
  EXPECT_EQ(unknown.strCaption, "");
  EXPECT_EQ(unknown.strDeviceID, "ACPI\\ACME0001\\0");
  EXPECT_EQ(unknown.strClassGUID, "");
  EXPECT_EQ(unknown.uErrorCode, 28U);
}

TEST(FailingDrivers, AreAskedForOnceAndThenFieldByFieldInAFixedOrder) {
  const auto run = simulator::Use(MachineWithTwoFailing());
  CDeviceDriver drivers;
  EXPECT_EQ(run.Calls(), 0) << "making the object asks for nothing";
  drivers.GetErrDriverInfoByIndex(1);
  drivers.GetErrDeviceDriverCount();

  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(20, pointer)",                      //
                                       "HalQueryInformation(20, entry 1, 0, 260)",  //
                                       "HalQueryInformation(20, entry 1, 2, 260)",  //
                                       "HalQueryInformation(20, entry 1, 1, 260)",  //
                                       "HalQueryInformation(20, entry 1, 4, 260)",  //
                                       "HalQueryInformation(20, entry 1, 5, 260)",  //
                                       "HalQueryInformation(20, entry 1, 6, 260)",  //
                                       "HalQueryInformation(20, entry 1, 3, 4)"));
}

TEST(FailingDrivers, AreNamedByTheAddressOfTheirEntryEightBytesAnd520ForEachEarlierOne) {
  auto run = simulator::Use(MachineWithDevices({FailingWireless(), FailingWireless(), FailingWireless()}));
  std::vector<char*> devices;
  run.OnQuery([&](const simulator::HalQuery& query) -> std::optional<int> {
    devices.push_back(static_cast<char*>(query.device));
    return 0;
  });
  CDeviceDriver drivers;
  for (int i = 0; i < 3; ++i) drivers.GetErrDriverInfoByIndex(i);

  ASSERT_EQ(devices.size(), 21U);
  char* const table = devices[0] - 8;
  for (std::size_t i = 0; i < devices.size(); ++i) EXPECT_EQ(devices[i] - table, 8 + 520 * (i / 7));
  std::uint32_t count = 0;
  std::memcpy(&count, table + 4, sizeof count);
  EXPECT_EQ(count, 3U) << "the table was the library's own";
}

TEST(FailingDrivers, AreNoneOnAMachineWithoutProblems) {
  auto healthy = FailingWireless();
  healthy.problem_code = 0;
  const auto run = simulator::Use(MachineWithDevices({healthy}));
  CDeviceDriver drivers;
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  ExpectNothing(drivers.GetErrDriverInfoByIndex(0));
  EXPECT_EQ(run.Calls("HalQueryInformation"), 0);
}

TEST(FailingDrivers, AreNothingAtAnIndexThatNoneHasAndNobodyIsAsked) {
  const auto run = simulator::Use(MachineWithTwoFailing());
  CDeviceDriver drivers;
  for (const int index :
       {2, 3, -1, -2, 1000000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    ExpectNothing(drivers.GetErrDriverInfoByIndex(index));
  EXPECT_EQ(run.Calls("HalQueryInformation"), 0);
}

TEST(FailingDrivers, AreNotAskedForAgainAfterAFailure) {
  auto run = simulator::Use(MachineWithTwoFailing());
  run.Inject(Fault::kFail, 0);
  CDeviceDriver drivers;
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  ExpectNothing(drivers.GetErrDriverInfoByIndex(0));
  EXPECT_EQ(run.Calls("HalInit"), 1);

  EXPECT_EQ(CDeviceDriver().GetErrDeviceDriverCount(), 2) << "a new object asks for itself";
}

TEST(FailingDrivers, AreNotAskedForAgainAfterTheLibraryThrew) {
  auto run = simulator::Use(MachineWithTwoFailing());
  run.Inject(Fault::kThrow, 0);
  CDeviceDriver drivers;
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  EXPECT_EQ(run.Calls("HalInit"), 1);
}

TEST(FailingDrivers, AreNoneWhenTheLibrarySucceedsWithoutAList) {
  auto run = simulator::Use(MachineWithTwoFailing());
  run.Inject(Fault::kEmpty, 0);
  CDeviceDriver drivers;
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  ExpectNothing(drivers.GetErrDriverInfoByIndex(0));
  EXPECT_EQ(run.Calls("HalInit"), 1);
}

TEST(FailingDrivers, AreReadButNotCountedWhenTheLibrarysSuccessIsNotOne) {
  for (const int result : {2, -1}) {
    auto run = simulator::Use(MachineWithTwoFailing());
    run.OnInit([=](unsigned int, void*) { return result; });
    CDeviceDriver drivers;
    EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0) << result;
    EXPECT_EQ(drivers.GetErrDriverInfoByIndex(0).strDeviceID, "PCI\\VEN_14C3&DEV_7961\\4&1") << result;
    EXPECT_EQ(drivers.GetErrDriverInfoByIndex(1).uErrorCode, 28U) << result;
    EXPECT_EQ(run.Calls("HalInit"), 1) << result;
  }
}

TEST(FailingDrivers, AreNoneWhenTheLibraryFailsThoughItHandsAListOut) {
  auto run = simulator::Use(MachineWithTwoFailing());
  void* left_behind = nullptr;
  run.OnInit([&](unsigned int, void* table) {
    left_behind = table;
    return 0;
  });
  {
    CDeviceDriver drivers;
    EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
    ExpectNothing(drivers.GetErrDriverInfoByIndex(0));
    EXPECT_EQ(run.Calls("HalInit"), 1);
    EXPECT_EQ(run.Calls("HalQueryInformation"), 0);
  }
  std::free(left_behind);  // it was not the object's
}

TEST(FailingDrivers, AreNoneWhenTheListStatesMoreThanANumberHolds) {
  auto run = simulator::Use(MachineWithTwoFailing());
  run.OnInit([](unsigned int, void* table) {
    constexpr std::uint32_t kCount = 0x80000000;
    std::memcpy(static_cast<char*>(table) + 4, &kCount, sizeof kCount);
    return 1;
  });
  CDeviceDriver drivers;
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 0);
  ExpectNothing(drivers.GetErrDriverInfoByIndex(0));
}

TEST(FailingDrivers, AreAPictureThatARepairDoesNotChange) {
  auto run = simulator::Use(MachineWithTwoFailing());
  CDeviceDriver drivers;
  ASSERT_EQ(drivers.GetErrDeviceDriverCount(), 2);
  run.machine().devices->at(1).problem_code = 0;
  EXPECT_EQ(drivers.GetErrDeviceDriverCount(), 2);
  EXPECT_EQ(drivers.GetErrDriverInfoByIndex(1).strDeviceID, "ACPI\\ACME0001\\0");
  EXPECT_EQ(CDeviceDriver().GetErrDeviceDriverCount(), 1);
}

TEST(FailingDrivers, HaveAnEmptyFieldWhereItsQueryFailsAndTheOthersAllTheSame) {
  const auto run_plain = [](int failing_call) {
    auto run = simulator::Use(MachineWithTwoFailing());
    run.Inject(Fault::kFail, failing_call);
    return CDeviceDriver().GetErrDriverInfoByIndex(0);
  };
  const auto without_caption = run_plain(1);
  EXPECT_EQ(without_caption.strCaption, "");
  EXPECT_EQ(without_caption.strDeviceID, "PCI\\VEN_14C3&DEV_7961\\4&1");
  const auto without_code = run_plain(7);
  EXPECT_EQ(without_code.strCaption, "Wireless LAN Card");
  EXPECT_EQ(without_code.uErrorCode, 0U);
}

TEST(FailingDrivers, HaveTextsOfAtMost259BytesAlsoWithoutAZero) {
  auto run = simulator::Use(MachineWithTwoFailing());
  run.Inject(Fault::kUnterminated, 1);
  EXPECT_EQ(CDeviceDriver().GetErrDriverInfoByIndex(0).strCaption, std::string(259, 'A'));
}

TEST(FailingDrivers, AreEachCopysOwn) {
  const auto run = simulator::Use(MachineWithTwoFailing());
  CDeviceDriver drivers;
  ASSERT_EQ(drivers.GetErrDeviceDriverCount(), 2);
  CDeviceDriver copy(drivers);
  CDeviceDriver assigned;
  assigned.GetErrDeviceDriverCount();
  assigned = drivers;
  assigned = *&assigned;
  EXPECT_EQ(copy.GetErrDriverInfoByIndex(1).uErrorCode, 28U);
  EXPECT_EQ(assigned.GetErrDriverInfoByIndex(1).uErrorCode, 28U);
  EXPECT_EQ(drivers.GetErrDriverInfoByIndex(1).uErrorCode, 28U);
  EXPECT_EQ(run.Calls("HalInit"), 4);
}

TEST(FailingDrivers, AreHeldInAPointerAndTwoNumbers) {
  EXPECT_EQ(sizeof(CDeviceDriver), sizeof(void*) + 2 * sizeof(std::int32_t));
}

}  // namespace
