/// The torture itself: that it tries every place, and finds what is wrong with an operation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/os/processes.h"
#include "platform/ostrine/hal.h"
#include "simulator/run.h"
#include "tests/torture/torture.h"

namespace torture {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

simulator::Machine MachineWithProcess() {
  auto machine = simulator::EmptyMachine();
  machine.processes = {{.process_id = 12, .caption = "a.exe"}};
  return machine;
}

Survey SurveyOf(const Operation& operation) { return Torture(operation, MachineWithProcess(), "a machine"); }

/// Asks the board's product, which fails; true only when the call claims success.
bool Query() {
  char buffer[260] = {};
  unsigned int returned = 0;
  return HalQueryInformation(4, nullptr, 0, buffer, sizeof buffer, &returned) != 0;
}

TEST(TheTorture, TriesEachCallInFourWaysAndEachAllocationOnceAndForEver) {
  const auto survey = SurveyOf(Operation("two calls, one allocation",
                                         [] {
                                           try {
                                             const std::wstring memory(100, L'x');
                                             Query();
                                             return Query() && memory.size() == 100;
                                           } catch (...) {
                                             return false;
                                           }
                                         })
                                   .MayBeSpoiledTo(true)
                                   .MayFailWith(true));
  EXPECT_EQ(survey.points, 2 * 4 * 2 + 1 * 2);
  EXPECT_EQ(survey.left_out, 0);
  EXPECT_THAT(survey.findings, IsEmpty());
}

TEST(TheTorture, FindsAnExceptionThatGetsOut) {
  const auto survey = SurveyOf(Operation("lets it out", [] { return Query(); }).MayFailWith(true));
  ASSERT_EQ(survey.findings.size(), 2u);
  EXPECT_THAT(survey.findings, Each(HasSubstr("threw call 0 was made to throw")));
  EXPECT_THAT(survey.findings[0], HasSubstr("lets it out on a machine: call 0 throws"));
}

TEST(TheTorture, FindsAnAllocationThatNobodyGuards) {
  const auto survey = SurveyOf(Operation("allocates", [] { return std::wstring(100, L'x'); }));
  EXPECT_THAT(survey.findings, ElementsAre(HasSubstr("allocation 0 fails: threw"),
                                           HasSubstr("allocation 0 and each behind it fails: threw")));
}

TEST(TheTorture, FindsAResultThatIsNeitherRightNorADocumentedFailure) {
  const auto survey = SurveyOf(Operation("garbage", [] {
    try {
      return Query() ? 666 : 0;
    } catch (...) {
      return 0;
    }
  }));
  ASSERT_THAT(survey.findings, Not(IsEmpty()));
  EXPECT_THAT(survey.findings[0],
              HasSubstr("succeeds with nothing: came to 666, which is neither right (0)"));
}

TEST(TheTorture, AcceptsWhatAnEndlessAnswerMayBeReadAsForSuchAnswersOnly) {
  const auto body = [] {
    try {
      return Query() ? 666 : 0;
    } catch (...) {
      return 0;
    }
  };
  const auto survey = SurveyOf(Operation("spoiled", body).MayBeSpoiledTo(666));
  EXPECT_THAT(survey.findings, Each(HasSubstr("succeeds with nothing")));
  EXPECT_EQ(survey.findings.size(), 2u);
}

TEST(TheTorture, FindsAHandleThatStaysOpenWhenSomethingFails) {
  const auto survey = SurveyOf(Operation("leaks", [] {
                                 using namespace velmora::os;
                                 try {
                                   const Handle process = OpenProcess(1, false, 12, L"a.exe");
                                   if (process == nullptr) return 0;
                                   if (!TerminateProcess(process, 0)) return 0;
                                   CloseHandle(process);
                                   return 1;
                                 } catch (...) {
                                   return 0;
                                 }
                               }).MayFailWith(0));
  ASSERT_THAT(survey.findings, Not(IsEmpty()));
  EXPECT_THAT(survey.findings, Each(HasSubstr("handles left open: 1")));
  EXPECT_THAT(survey.findings[0], HasSubstr("call 1 fails"));
}

TEST(TheTorture, FindsWhatIsWrongWithoutAnyFault) {
  const auto survey = SurveyOf(Operation("wrong at once", [] {
    velmora::os::CloseHandle(nullptr);
    return 0;
  }));
  ASSERT_THAT(survey.findings, Not(IsEmpty()));
  EXPECT_THAT(survey.findings[0], HasSubstr("run clean: CloseHandle was given a handle that is not open"));
}

TEST(TheTorture, TriesAllPlacesOfAShortRunAndTheSameOnesOfALong) {
  constexpr std::size_t kFirst = kMostPlaces * 2 / 3;
  constexpr std::size_t kLeast = kMostPlaces * 5 / 6;
  EXPECT_EQ(PlacesToTry(0).size(), 0u);
  EXPECT_EQ(PlacesToTry(kMostPlaces).size(), static_cast<std::size_t>(kMostPlaces));
  for (const int places : {kMostPlaces + 1, 100, 5'000}) {
    const auto tried = PlacesToTry(places);
    EXPECT_LE(tried.size(), static_cast<std::size_t>(kMostPlaces));
    ASSERT_GE(tried.size(), kLeast);
    EXPECT_EQ(tried[kFirst - 1], static_cast<int>(kFirst) - 1);
    EXPECT_EQ(tried.back(), places - 1);
  }
}

TEST(TheTorture, SaysHowManyPointsItsBoundLeftOut) {
  const auto survey = SurveyOf(Operation("many calls", [] {
    try {
      for (int i = 0; i < 100; ++i) Query();
    } catch (...) {
    }
    return 0;
  }));
  EXPECT_EQ(survey.points + survey.left_out, 100 * 4 * 2);
  EXPECT_GT(survey.left_out, 0);
}

}  // namespace
}  // namespace torture
