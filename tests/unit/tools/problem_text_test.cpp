#include "velmora-report/problem_text.h"

#include <gtest/gtest.h>

namespace {

using report::ProblemText;
using report::RepairErrorText;

TEST(ProblemText, SaysWhatSupportPeopleLookFor) {
  EXPECT_EQ(ProblemText(0), "works");
  EXPECT_EQ(ProblemText(10), "cannot start");
  EXPECT_EQ(ProblemText(22), "is switched off");
  EXPECT_EQ(ProblemText(28), "has no driver");
  EXPECT_EQ(ProblemText(45), "is not there");
}

TEST(ProblemText, NeverCallsAnUnknownCodeHealthy) {
  for (const std::uint32_t code : {2U, 55U, 1000U, 0xFFFFFFFFU})
    EXPECT_EQ(ProblemText(code), "has a problem of another kind") << code;
}

TEST(RepairErrorText, SaysWhatToDoAboutIt) {
  EXPECT_NE(RepairErrorText(5).find("administrator"), std::string::npos);
  EXPECT_EQ(RepairErrorText(0xE000020B), "there is no such device");
  EXPECT_EQ(RepairErrorText(12345), "the system reports an error");
}

}  // namespace
