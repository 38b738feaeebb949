#include "platform/os/registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "simulator/run.h"
#include "tests/support/simulator/captured_problems.h"

namespace {

using namespace velmora::os;
using simulator::Fault;
using testing::ElementsAre;

constexpr const wchar_t* kPath = L"SYSTEM\\Class\\0000";

simulator::Machine MachineWithValues(std::map<std::string, simulator::RegistryValue> values) {
  auto machine = simulator::BlankMachine();
  machine.registry.emplace()["SYSTEM\\Class\\0000"].values = std::move(values);
  return machine;
}

struct Key {
  Key() : result(RegOpenKeyExW(LocalMachine(), L"system\\class\\0000", 0, kKeyRead, key)) {}
  ~Key() {
    if (key != nullptr) RegCloseKey(key);
  }
  std::uint32_t Read(const wchar_t* name, std::uint32_t room) {
    size = room;
    return RegQueryValueExW(key, name, &type, data.data(), size);
  }
  RegistryKey key = nullptr;
  std::uint32_t result;
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  std::array<unsigned char, 600> data{};
};

TEST(SimulatedRegistry, GivesTextAsUtf16WithItsZero) {
  const auto run = simulator::Use(MachineWithValues({{"ComponentId", {.text = "pci"}}}));
  Key key;
  ASSERT_EQ(key.result, 0u);
  EXPECT_EQ(key.Read(L"componentid", 260), 0u);
  EXPECT_EQ(key.type, 1u);
  EXPECT_EQ(key.size, 8u);
  EXPECT_EQ(key.data[2], 'c');
  EXPECT_THAT(run.Trace(), ElementsAre("RegOpenKeyExW(system\\class\\0000, 0, 0x20019)",
                                       "RegQueryValueExW(componentid, 260)"));
}

TEST(SimulatedRegistry, GivesNumbersAndRawBytes) {
  const auto run = simulator::Use(MachineWithValues(
      {{"n", {.type = 4, .number = 9}}, {"odd", {.type = 1, .raw = simulator::Bytes{{'9', 0, 'x'}}}}}));
  Key key;
  EXPECT_EQ(key.Read(L"n", 4), 0u);
  EXPECT_EQ(key.type, 4u);
  EXPECT_EQ(key.data[0], 9u);
  EXPECT_EQ(key.Read(L"odd", 260), 0u);
  EXPECT_EQ(key.size, 3u);
}

TEST(SimulatedRegistry, GivesNothingWhereTheRoomIsTooSmall) {
  const auto run = simulator::Use(MachineWithValues({{"long", {.text = std::string(130, 'x')}}}));
  Key key;
  EXPECT_EQ(key.Read(L"long", 260), 234u);
  EXPECT_EQ(key.size, 262u);
  EXPECT_EQ(key.data[0], 0u) << "the data is left alone";
  EXPECT_EQ(key.Read(L"long", 262), 0u);
}

TEST(SimulatedRegistry, FailsWithTheScriptedErrors) {
  auto machine = MachineWithValues({{"denied", {.text = "x", .read_error = 5}}});
  auto run = simulator::Use(machine);
  {
    Key key;
    EXPECT_EQ(key.Read(L"denied", 260), 5u);
    EXPECT_EQ(key.Read(L"none", 260), 2u);
  }
  run.machine().registry->begin()->second.open_error = 5;
  EXPECT_EQ(Key().result, 5u);
  run.machine().registry->clear();
  EXPECT_EQ(Key().result, 2u);
}

TEST(SimulatedRegistry, CountsItsKeysAsHandles) {
  const velmora::testing::CapturedProblems captured;
  {
    const auto run = simulator::Use(MachineWithValues({}));
    RegistryKey key = nullptr;
    RegOpenKeyExW(LocalMachine(), kPath, 0, kKeyRead, key);
    RegCloseKey(key);
    EXPECT_NE(RegCloseKey(key), 0u);
    RegOpenKeyExW(LocalMachine(), kPath, 0, kKeyRead, key);
  }
  EXPECT_THAT(captured.Problems(),
              ElementsAre("RegCloseKey was given a handle that is not open", "handles left open: 1"));
}

TEST(SimulatedRegistry, GoesWrongAsATestWishes) {
  auto run = simulator::Use(MachineWithValues({{"t", {.text = "x"}}}));
  Key key;
  run.Inject(Fault::kUnterminated, 0, true);
  EXPECT_EQ(key.Read(L"t", 260), 0u);
  EXPECT_EQ(key.data[259], 'A');
  EXPECT_EQ(key.data[260], 0u);
  run.Inject(Fault::kEmpty, 0, true);
  EXPECT_EQ(key.Read(L"t", 260), 0u);
  EXPECT_EQ(key.size, 0u);
  run.Inject(Fault::kFail, 0, true);
  EXPECT_EQ(key.Read(L"t", 260), 31u);
}

}  // namespace
