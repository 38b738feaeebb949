// This machine's processor as lscpu, which reads the same kernel in its own way, describes it.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "command.h"
#include "platform/ostrine/hal.h"

namespace ostrine {
namespace {

constexpr unsigned int kProcessorClass = 0;

std::string AskText(unsigned int id) {
  std::array<char, 260> buffer{};
  HalQueryInformation(kProcessorClass, nullptr, id, buffer.data(), buffer.size(), nullptr);
  return buffer.data();
}

std::uint32_t AskNumber(unsigned int id) {
  std::uint32_t number = 0;
  HalQueryInformation(kProcessorClass, nullptr, id, &number, sizeof number, nullptr);
  return number;
}

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The "Key:   value" lines.
std::map<std::string, std::string> Facts() {
  std::map<std::string, std::string> facts;
  for (const std::string& line : Lines(test::OutputOf("lscpu").value_or(""))) {
    const std::size_t end = line.find(':');
    const std::size_t start = line.find_first_not_of(' ', end + 1);
    if (end != std::string::npos && start != std::string::npos)
      facts.emplace(line.substr(0, end), line.substr(start));
  }
  return facts;
}

TEST(ProcessorLscpu, NamesTheSameProcessor) {
  auto facts = Facts();
  if (facts.empty()) GTEST_SKIP() << "lscpu is not there";
  EXPECT_EQ(AskText(0), facts["Vendor ID"]);
  EXPECT_EQ(AskText(1), facts["Model name"]);
  EXPECT_EQ(std::to_string(AskNumber(4)) + " bits physical",
            facts["Address sizes"].substr(0, facts["Address sizes"].find(',')));
}

TEST(ProcessorLscpu, CountsTheSameCoresAndThreads) {
  const auto table = test::OutputOf("lscpu --parse=CPU,CORE");
  if (!table) GTEST_SKIP() << "lscpu is not there";
  std::uint32_t threads = 0;
  std::set<std::string> cores;
  for (const std::string& line : Lines(*table)) {
    if (line.empty() || line.front() == '#') continue;
    ++threads;
    cores.insert(line.substr(line.find(',') + 1));
  }
  EXPECT_EQ(AskNumber(8), cores.size());
  EXPECT_EQ(AskNumber(9), threads);
}

TEST(ProcessorLscpu, ListsTheSameCaches) {
  const auto table = test::OutputOf("lscpu --bytes --caches=LEVEL,TYPE,ALL-SIZE,WAYS");
  if (!table) GTEST_SKIP() << "lscpu is not there";
  std::array<std::uint64_t, 4> sizes{};
  std::array<std::string, 4> ways;
  for (const std::string& line : Lines(*table)) {
    std::istringstream stream(line);
    std::size_t level = 0;
    std::string type;
    std::uint64_t size = 0;
    std::string count;
    if (!(stream >> level >> type >> size >> count) || level >= sizes.size()) continue;
    sizes.at(level) += size;
    if (type != "Instruction") ways.at(level) = count + "-way Set-Associative";
  }
  for (unsigned int level = 1; level <= 3; ++level) {
    SCOPED_TRACE(level);
    EXPECT_EQ(AskNumber(9 + level), sizes.at(level) / 1024);
    EXPECT_EQ(AskText(12 + level), ways.at(level));
  }
}

TEST(ProcessorLscpu, HasALoadThatIsAPercentage) {
  for (int i = 0; i < 5; ++i) {
    std::uint32_t load = 1000;
    EXPECT_NE(HalQueryInformation(kProcessorClass, nullptr, 18, &load, sizeof load, nullptr), 0);
    EXPECT_LE(load, 100u);
  }
}

TEST(ProcessorLscpu, HasClocksBetweenAHundredMegahertzAndTenGigahertz) {
  for (const unsigned int id : {5u, 7u}) {
    EXPECT_GT(AskNumber(id), 100u);
    EXPECT_LT(AskNumber(id), 10000u);
  }
}

}  // namespace
}  // namespace ostrine
