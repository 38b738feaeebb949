#include "velmora/vediocard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "simulator/run.h"

namespace {

simulator::Machine MachineWithTwoCards() {
  auto machine = simulator::BlankMachine();
  machine.video = {.card_count = 2,
                   .internal = {.name = "Intel(R) Iris(R) Xe Graphics",
                                .status = "OK",
                                .driver_version = "30.0.101.1404",
                                .driver_date = "2022-02-14",
                                .memory_size = 128,
                                .error_code = 0},
                   .independent = {.name = "NVIDIA GeForce MX450",
                                   .status = "Error",
                                   .driver_version = "27.21.14.5671",
                                   .driver_date = "2020-10-05",
                                   .memory_size = 2048,
                                   .error_code = 43},
                   .resolution = "1920 x 1080",
                   .horizontal = 1920,
                   .vertical = 1080,
                   .refresh_rate = 60,
                   .monitor_caption = "LEN40BA",
                   .bits_per_pixel = 32};
  return machine;
}

struct TextGetter {
  const char* query;
  std::wstring (CVediocard::*getter)();
  const wchar_t* expected;
};

const TextGetter kTexts[] = {
    {"6, table, 1, 520", &CVediocard::GetInternalVideoCardName, L"Intel(R) Iris(R) Xe Graphics"},
    {"6, table, 1, 520", &CVediocard::GetUsedVideoCardName, L"Intel(R) Iris(R) Xe Graphics"},
    {"6, table, 7, 520", &CVediocard::GetIndependentVideoCardName, L"NVIDIA GeForce MX450"},
    {"6, table, 7, 520", &CVediocard::GetUnUsedVideoCardName, L"NVIDIA GeForce MX450"},
    {"6, table, 2, 520", &CVediocard::GetInternalVideoCardStatus, L"OK"},
    {"6, table, 2, 520", &CVediocard::GetUsedVideoCardStatus, L"OK"},
    {"6, table, 8, 520", &CVediocard::GetIndependentVideoCardStatus, L"Error"},
    {"6, table, 8, 520", &CVediocard::GetUnUsedVideoCardStatus, L"Error"},
    {"6, table, 3, 520", &CVediocard::GetInternalVideoCardDriverVersion, L"30.0.101.1404"},
    {"6, table, 3, 520", &CVediocard::GetUsedVideoCardDriverVersion, L"30.0.101.1404"},
    {"6, table, 9, 520", &CVediocard::GetIndependentVideoCardDriverVersion, L"27.21.14.5671"},
    {"6, table, 9, 520", &CVediocard::GetUnUsedVideoCardDriverVersion, L"27.21.14.5671"},
    {"6, table, 4, 520", &CVediocard::GetInternalVideoCardDriverDate, L"2022-02-14"},
    {"6, table, 4, 520", &CVediocard::GetUsedVideoCardDriverDate, L"2022-02-14"},
    {"6, table, 10, 520", &CVediocard::GetIndependentVideoCardDriverDate, L"2020-10-05"},
    {"6, table, 10, 520", &CVediocard::GetUnUsedVideoCardDriverDate, L"2020-10-05"},
    {"6, table, 23, 520", &CVediocard::GetDisplayResolution, L"1920 x 1080"},
    {"6, table, 27, 260", &CVediocard::GetMonitorCaption, L"LEN40BA"},
};

struct NumberGetter {
  const char* query;
  unsigned long (CVediocard::*getter)();
  unsigned long expected;
};

const NumberGetter kNumbers[] = {
    {"6, table, 0, 4", &CVediocard::GetVideoCardNumber, 2},
    {"6, table, 5, 4", &CVediocard::GetInternalVedioCardMemorySize, 128},
    {"6, table, 5, 4", &CVediocard::GetUsedVedioCardMemorySize, 128},
    {"6, table, 11, 4", &CVediocard::GetIndependentVedioCardMemorySize, 2048},
    {"6, table, 11, 4", &CVediocard::GetUnUsedVedioCardMemorySize, 2048},
    {"6, table, 6, 4", &CVediocard::GetInternalVedioCardErrorCode, 0},
    {"6, table, 12, 4", &CVediocard::GetIndependentVedioCardErrorCode, 43},
    {"6, table, 24, 4", &CVediocard::GetHorizontalResolution, 1920},
    {"6, table, 25, 4", &CVediocard::GetVerticalResolution, 1080},
    {"6, table, 26, 4", &CVediocard::GetRefreshRate, 60},
    {"6, table, 28, 4", &CVediocard::GetBitPerPixel, 32},
};

/// The arguments of the query that a getter made.
template <class Getter>
auto Ask(const Getter& row, std::string& query) {
  const auto run = simulator::Use(MachineWithTwoCards());
  CVediocard cards;
  const auto value = (cards.*row.getter)();
  query = run.Trace().at(1);
  return value;
}

TEST(Vediocard, GivesEveryTextByItsOwnIdAndTheCardTable) {
  for (const auto& row : kTexts) {
    std::string query;
    EXPECT_EQ(Ask(row, query), row.expected);
    EXPECT_EQ(query, "HalQueryInformation(" + std::string(row.query) + ")");
  }
}

TEST(Vediocard, GivesEveryNumberByItsOwnIdAndTheCardTable) {
  for (const auto& row : kNumbers) {
    std::string query;
    EXPECT_EQ(Ask(row, query), row.expected);
    EXPECT_EQ(query, "HalQueryInformation(" + std::string(row.query) + ")");
  }
}

TEST(Vediocard, GivesFailureValuesForACardThatIsNotThere) {
  auto machine = MachineWithTwoCards();
  machine.video->card_count = 1;
  machine.video->independent = {};
  const auto run = simulator::Use(machine);
  CVediocard cards;

  EXPECT_EQ(cards.GetIndependentVideoCardName(), L"");
  EXPECT_EQ(cards.GetIndependentVedioCardMemorySize(), 0U);
  EXPECT_EQ(cards.GetUnUsedVideoCardStatus(), L"");
  EXPECT_EQ(cards.GetInternalVideoCardName(), L"Intel(R) Iris(R) Xe Graphics");
}

TEST(Vediocard, PassesANullTableOnAsItIs) {
  auto run = simulator::Use(MachineWithTwoCards());
  run.Inject(simulator::Fault::kFail, 0);
  CVediocard cards;

  EXPECT_EQ(cards.GetVideoCardNumber(), 2U);
  EXPECT_EQ(run.Trace().back(), "HalQueryInformation(6, null, 0, 4)");
}

TEST(Vediocard, FollowsDisplayChanges) {
  auto run = simulator::Use(MachineWithTwoCards());
  CVediocard cards;
  EXPECT_EQ(cards.GetRefreshRate(), 60U);
  run.machine().video->refresh_rate = 144;
  EXPECT_EQ(cards.GetRefreshRate(), 144U);
}

TEST(Vediocard, GivesEachCopyATableOfItsOwn) {
  const auto run = simulator::Use(MachineWithTwoCards());
  CVediocard cards;
  CVediocard copy(cards);
  copy = cards;

  EXPECT_EQ(run.Calls("HalInit"), 3);
  EXPECT_EQ(copy.GetVideoCardNumber(), 2U);
}

}  // namespace
