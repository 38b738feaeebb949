/// Records that cross as they stand, and the kind of processor.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>

#include "platform/halquery.h"
#include "simulator/run.h"

namespace {

namespace hal = velmora::hal;
using hal::DeviceClass;
using simulator::Fault;
using simulator::HalQuery;
using testing::ElementsAre;

struct TwoBytes {
  std::uint8_t first;
  std::uint8_t second;
};

simulator::Machine MachineWithThreshold() {
  auto machine = simulator::BlankMachine();
  machine.battery = {.batteries = {{.full_mwh = 50000, .threshold = {{75, 80}}}}};
  return machine;
}

TEST(HalRecord, IsReadWithItsOwnSizeIntoTheCallersMemory) {
  auto run = simulator::Use(MachineWithThreshold());
  TwoBytes record{7, 7};
  run.OnQuery([&](const HalQuery& query) -> std::optional<int> {
    EXPECT_EQ(query.buffer.data(), &record.first);
    return std::nullopt;
  });
  EXPECT_EQ(hal::QueryResult(DeviceClass::kBattery, 9, record), 1);
  EXPECT_THAT((std::array{record.first, record.second}), ElementsAre(75, 80));
  EXPECT_THAT(run.Trace(), ElementsAre("HalQueryInformation(8, null, 9, 2)"));
}

TEST(HalRecord, IsNotZeroedBeforeItIsRead) {
  auto run = simulator::Use(MachineWithThreshold());
  TwoBytes record{0xAB, 0xCD};
  run.OnQuery([&](const HalQuery& query) {
    EXPECT_THAT(query.buffer, ElementsAre(0xAB, 0xCD));
    query.buffer[0] = 1;
    return 0;
  });
  EXPECT_EQ(hal::QueryResult(DeviceClass::kBattery, 9, record), 0);
  EXPECT_EQ(record.first, 1) << "what the failed query wrote";
  EXPECT_EQ(record.second, 0xCD);
}

TEST(HalRecord, GivesTheQuerysOwnResultWhateverItIs) {
  auto run = simulator::Use(MachineWithThreshold());
  std::uint32_t number = 0;
  for (const int result : {0, 1, 2, -1, 0x10000}) {
    run.OnQuery([=](const HalQuery&) { return result; });
    EXPECT_EQ(hal::QueryResult(DeviceClass::kBattery, 0, number), result);
  }
}

TEST(HalRecord, OfAQueryThatThrowsIsAFailure) {
  auto run = simulator::Use(MachineWithThreshold());
  run.Inject(Fault::kThrow, 0, true);
  TwoBytes record{75, 80};
  EXPECT_EQ(hal::QueryResult(DeviceClass::kBattery, 9, record), 0);
  EXPECT_EQ(hal::SetResult(DeviceClass::kBattery, 12, record), 0);
}

TEST(HalRecord, IsSetWithItsOwnSize) {
  auto run = simulator::Use(MachineWithThreshold());
  TwoBytes record{40, 60};
  EXPECT_EQ(hal::SetResult(DeviceClass::kBattery, 12, record), 1);
  EXPECT_EQ(run.machine().battery->batteries[0].threshold, (simulator::ChargeThreshold{40, 60}));
  EXPECT_THAT(run.Trace(), ElementsAre("HalSetInformation(8, null, 12, 2)"));
}

TEST(HalRecord, ThatIsRefusedIsAFailure) {
  auto run = simulator::Use(MachineWithThreshold());
  TwoBytes record{60, 40};
  EXPECT_EQ(hal::SetResult(DeviceClass::kBattery, 12, record), 0);
  EXPECT_EQ(run.machine().battery->batteries[0].threshold, (simulator::ChargeThreshold{75, 80}));
}

simulator::Machine MachineOfKind(std::optional<std::uint32_t> kind) {
  auto machine = simulator::BlankMachine();
  machine.cpu.emplace().kind = kind;
  return machine;
}

TEST(HalProcessorKind, IsRightBeforeAnyProcessorObjectExists) {
  for (const std::uint32_t kind : {0u, 1u, 2u, 3u, 0xFFFFFFFFu}) {
    const auto run = simulator::Use(MachineOfKind(kind));
    EXPECT_EQ(hal::ProcessorKind(), kind);
    EXPECT_THAT(run.Trace(), ElementsAre("HalInit(0, null)", "HalQueryInformation(0, null, 19, 4)"))
        << "the class is prepared first";
  }
}

TEST(HalProcessorKind, IsZeroWhenTheQueryFails) {
  const auto run = simulator::Use(MachineOfKind(std::nullopt));
  EXPECT_EQ(hal::ProcessorKind(), 0u);
}

TEST(HalProcessorKind, IsAskedForAlsoWhereTheClassRefusesToBePrepared) {
  for (const Fault fault : {Fault::kFail, Fault::kThrow}) {
    auto run = simulator::Use(MachineOfKind(2));
    run.Inject(fault, 0);
    EXPECT_EQ(hal::ProcessorKind(), 2u);
  }
}

TEST(HalProcessorKind, IsZeroWhenTheQueryThrows) {
  auto run = simulator::Use(MachineOfKind(2));
  run.Inject(Fault::kThrow, 1);
  EXPECT_EQ(hal::ProcessorKind(), 0u);
}

}  // namespace
