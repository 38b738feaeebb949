// Random files, cut at random, through the scan and through a reading that is too simple to be wrong.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "devices/inf_source.h"
#include "tests/support/naive_inf.h"

namespace velmora::devices {
namespace {

constexpr int kRounds = 20'000;

class RandomFile {
 public:
  explicit RandomFile(unsigned seed) : random_(seed) {}

  /// Words that meet in many ways: whole phrases, halves of them, line ends.
  std::string Text() {
    static const std::string kWords[] = {"AUDIO\\FUNC_01&VEN_10EC",
                                         "SUBSYS_7B2D",
                                         "AUDIO\\FUNC_01&VEN_10EC&SUBSYS_7B2D",
                                         "AUDIO\\FUNC_01",
                                         "&VEN_10EC",
                                         "SUBSUBSYS_7B2D",
                                         "SUBSYS_",
                                         "AUAUDIO\\FUNC_01&VEN_10EC",
                                         "audio\\func_01&ven_10ec",
                                         "x",
                                         std::string("\0", 1),
                                         "\xFF",
                                         "\r\n",
                                         "\n",
                                         "\n",
                                         "\n"};
    std::string text;
    for (std::size_t words = Below(24); words > 0; --words) text += kWords[Below(std::size(kWords))];
    return text;
  }

  std::size_t Below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }

 private:
  std::mt19937 random_;
};

TEST(InfScanProperty, AgreesWithANaiveReadingHoweverTheFileIsCut) {
  RandomFile random(20'257);
  int foreign = 0;
  for (int round = 0; round < kRounds; ++round) {
    const std::string file = random.Text();
    ForeignModelScan scan;
    std::string_view rest = file;
    while (!rest.empty()) {
      const std::string_view piece = rest.substr(0, 1 + random.Below(30));
      rest.remove_prefix(piece.size());
      if (!scan.Take(piece)) break;
    }
    const auto found = scan.Finish();
    ASSERT_EQ(found, test::NaiveForeignLine(file)) << ::testing::PrintToString(file);
    if (found) ++foreign;
  }
  EXPECT_GT(foreign, kRounds / 10) << "the files are too tame";
  EXPECT_LT(foreign, kRounds - kRounds / 10);
}

}  // namespace
}  // namespace velmora::devices
