#include "velmora-report/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

using report::CommandLine;
using testing::ElementsAreArray;
using Texts = std::vector<std::wstring>;

/// Splits a command line by the rules that Microsoft documents for C++ programs.
Texts Split(const std::wstring& line) {
  Texts arguments;
  bool in_argument = false;
  bool in_quotes = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    std::size_t backslashes = 0;
    while (i < line.size() && line[i] == L'\\') ++backslashes, ++i;
    const bool quote_follows = i < line.size() && line[i] == L'"';
    if (!in_argument && (backslashes > 0 || (i < line.size() && line[i] != L' '))) {
      in_argument = true;
      arguments.emplace_back();
    }
    if (backslashes > 0) arguments.back().append(quote_follows ? backslashes / 2 : backslashes, L'\\');
    if (i == line.size()) break;
    if (quote_follows && backslashes % 2 == 0) {
      in_quotes = !in_quotes;
    } else if (line[i] == L' ' && !in_quotes) {
      in_argument = false;
    } else {
      arguments.back() += line[i];
    }
  }
  return arguments;
}

TEST(CommandLine, QuotesEveryArgument) {
  EXPECT_EQ(CommandLine({L"C:\\Program Files\\a.exe", L"--json"}),
            L"\"C:\\Program Files\\a.exe\" \"--json\"");
}

TEST(CommandLine, DoublesBackslashesOnlyBeforeAQuote) {
  EXPECT_EQ(CommandLine({L"a\\b\\"}), L"\"a\\b\\\\\"");
  EXPECT_EQ(CommandLine({L"a\\\"b"}), L"\"a\\\\\\\"b\"");
  EXPECT_EQ(CommandLine({L"\""}), L"\"\\\"\"");
}

TEST(CommandLine, KeepsAnEmptyArgument) { EXPECT_EQ(CommandLine({L"a", {}, L"b"}), L"\"a\" \"\" \"b\""); }

TEST(CommandLine, IsSplitIntoTheSameArguments) {
  std::mt19937 random(1);
  const std::wstring alphabet = L"a \\\"\\\"\\";
  for (int round = 0; round < 20000; ++round) {
    Texts arguments(1 + random() % 4);
    for (auto& argument : arguments) {
      for (auto length = random() % 8; length > 0; --length) argument += alphabet[random() % alphabet.size()];
    }
    ASSERT_THAT(Split(CommandLine(arguments)), ElementsAreArray(arguments)) << "round " << round;
  }
}

}  // namespace
