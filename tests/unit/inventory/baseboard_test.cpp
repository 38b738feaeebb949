#include "velmora/baseboard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/run.h"
#include "tests/support/simulator/allocations.h"

namespace {

using testing::ElementsAre;

constexpr auto kGetters = {&CBaseboard::GetBaseboardProduct, &CBaseboard::GetBaseboardManufacturer,
                           &CBaseboard::GetBaseboardVersion, &CBaseboard::GetBaseboardSerialNumber,
                           &CBaseboard::GetBIOSVersion,      &CBaseboard::GetBIOSManufacturer,
                           &CBaseboard::GetBIOSReaseDate};

simulator::Machine MachineWithBoard() {
  auto machine = simulator::BlankMachine();
  machine.baseboard = {.product = "20XW004AGE",
                       .manufacturer = "ACME",
                       .version = "SDK0J40697 WIN",
                       .serial_number = "L1HF12345",
                       .bios_version = "N32ET75W (1.51 )",
                       .bios_manufacturer = "ACME BIOS",
                       .bios_release_date = "12/02/2021"};
  return machine;
}

std::vector<std::wstring> AllTexts(CBaseboard& board) {
  std::vector<std::wstring> texts;
  for (const auto getter : kGetters) texts.push_back((board.*getter)());
  return texts;
}

TEST(Baseboard, GivesTheSevenTextsOfBoardAndBios) {
  const auto run = simulator::Use(MachineWithBoard());
  CBaseboard board;

  EXPECT_THAT(AllTexts(board), ElementsAre(L"20XW004AGE", L"ACME", L"SDK0J40697 WIN", L"L1HF12345",
                                           L"N32ET75W (1.51 )", L"ACME BIOS", L"12/02/2021"));
}

TEST(Baseboard, PreparesItsClassWithoutATableAndAsksEachTextWithItsOwnId) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CBaseboard board;
  AllTexts(board);

  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(4, null)",                      //
                                       "HalQueryInformation(4, null, 0, 260)",  //
                                       "HalQueryInformation(4, null, 1, 260)",  //
                                       "HalQueryInformation(4, null, 2, 260)",  //
                                       "HalQueryInformation(4, null, 3, 260)",  //
                                       "HalQueryInformation(4, null, 4, 260)",  //
                                       "HalQueryInformation(4, null, 5, 260)",  //
                                       "HalQueryInformation(4, null, 6, 260)"));
}

TEST(Baseboard, GivesEmptyTextsWhenEveryQueryFails) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CBaseboard board;

  EXPECT_THAT(AllTexts(board), ElementsAre(L"", L"", L"", L"", L"", L"", L""));
}

TEST(Baseboard, GivesAnEmptyTextForATextThatIsEmptyInTheFirmware) {
  auto machine = MachineWithBoard();
  machine.baseboard->version = "";
  const auto run = simulator::Use(machine);

  EXPECT_EQ(CBaseboard().GetBaseboardVersion(), L"");
}

TEST(Baseboard, AnswersAlsoWhenItsClassCouldNotBePrepared) {
  auto run = simulator::Use(MachineWithBoard());
  run.Inject(simulator::Fault::kFail, 0);

  EXPECT_EQ(CBaseboard().GetBaseboardProduct(), L"20XW004AGE");
}

TEST(Baseboard, AsksAgainOnEveryCall) {
  auto run = simulator::Use(MachineWithBoard());
  CBaseboard board;
  EXPECT_EQ(board.GetBIOSVersion(), L"N32ET75W (1.51 )");

  run.machine().baseboard->bios_version = "N32ET76W (1.52 )";
  EXPECT_EQ(board.GetBIOSVersion(), L"N32ET76W (1.52 )");

  run.machine().baseboard->bios_version.reset();
  EXPECT_EQ(board.GetBIOSVersion(), L"") << "an earlier text must not come back";
}

TEST(Baseboard, ReplacesWhatTheNarrowCodePageCannotRead) {
  auto machine = MachineWithBoard();
  machine.baseboard->product =
      "A\xFF"
      "B";
  const auto run = simulator::Use(machine);

  EXPECT_EQ(CBaseboard().GetBaseboardProduct(),
            L"A\xFFFD"
            L"B");
}

TEST(Baseboard, LetsNoExceptionOut) {
  auto run = simulator::Use(MachineWithBoard());
  run.Inject(simulator::Fault::kThrow, 0, true);
  CBaseboard board;

  EXPECT_THAT(AllTexts(board), ElementsAre(L"", L"", L"", L"", L"", L"", L""));
}

TEST(Baseboard, GivesAnEmptyTextWhenMemoryRunsOut) {
  const auto run = simulator::Use(MachineWithBoard());
  CBaseboard board;
  const velmora::testing::FailingAllocation failing(0, true);

  EXPECT_TRUE(board.GetBaseboardProduct().empty());
}

TEST(Baseboard, MayBeCopiedFreely) {
  const auto run = simulator::Use(MachineWithBoard());
  CBaseboard board;
  CBaseboard copy(board);
  copy = board;

  EXPECT_EQ(copy.GetBaseboardProduct(), L"20XW004AGE");
}

}  // namespace
