#include "platform/logging.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <string>

#include "platform/os/last_error.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"

namespace logging_test {

/// A class that logs as the library's do.
class Reporter {
 public:
  static int ReportDebug(int value) {
    velmora::LogDebug([&](auto& line) { line << "value=" << value; });
    return __LINE__ - 1;
  }
  static int ReportError(int value) {
    velmora::LogError([&](auto& line) { line << "value=" << value; });
    return __LINE__ - 1;
  }
  static int ReportNarrow(int value) {
    velmora::LogDebugNarrow([&](auto& line) { line << "value=" << value; });
    return __LINE__ - 1;
  }
};

}  // namespace logging_test

namespace {

using logging_test::Reporter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using velmora::LogDebug;
using velmora::LogDebugNarrow;
using velmora::LogError;
using velmora::testing::CapturedLog;
using velmora::testing::LogRecord;
using velmora::testing::NoLogger;
using velmora::testing::WithEachAllocationFailing;

constexpr auto kFailure = "An log4cxx exception occurred.";
constexpr auto kThisFile = "tests/unit/platform/logging_test.cpp";

/// The narrow code page is the machine's, so narrow lines need one.
class Logging : public testing::Test {
 protected:
  simulator::Run run_{simulator::BlankMachine()};
};

/// Logs a line through each function and counts how often one was built.
int LogThroughEach() {
  int built = 0;
  const auto build = [&](auto& line) {
    ++built;
    line << "line";
  };
  LogDebug(build);
  LogDebugNarrow(build);
  LogError(build);
  return built;
}

TEST_F(Logging, HandsOverTextWithLevelAndLocation) {
  const CapturedLog log;
  const int debug_line = Reporter::ReportDebug(1);
  const int error_line = Reporter::ReportError(2);
  const int narrow_line = Reporter::ReportNarrow(3);

  EXPECT_THAT(
      log.Lines(),
      ElementsAre(
          LogRecord{"DEBUG", "value=1", kThisFile, "logging_test::Reporter::ReportDebug", debug_line},
          LogRecord{"ERROR", "value=2", kThisFile, "logging_test::Reporter::ReportError", error_line},
          LogRecord{"DEBUG", "value=3", kThisFile, "logging_test::Reporter::ReportNarrow", narrow_line}));
}

TEST_F(Logging, KeepsWideTextThatIsNotAscii) {
  const CapturedLog log;
  LogDebug([](auto& line) { line << "name=" << std::wstring(L"\u2032\u4E2D\U0001F600"); });
  EXPECT_THAT(log.Texts(), ElementsAre("name=\xE2\x80\xB2\xE4\xB8\xAD\xF0\x9F\x98\x80"));
}

TEST_F(Logging, KeepsNarrowTextThatIsNotAscii) {
  const CapturedLog log;
  LogDebugNarrow(
      [](auto& line) { line << "name=" << std::string("\xE2\x80\xB2\xE4\xB8\xAD\xF0\x9F\x98\x80"); });
  EXPECT_THAT(log.Texts(), ElementsAre("name=\xE2\x80\xB2\xE4\xB8\xAD\xF0\x9F\x98\x80"));
}

TEST_F(Logging, ReplacesWhatIsNoCharacter) {
  const CapturedLog log;
  LogDebug([](auto& line) { line << "wide=" << std::wstring(1, wchar_t{0xD83D}); });
  LogDebugNarrow([](auto& line) { line << "narrow=" << std::string("\xFF"); });
  EXPECT_THAT(log.Texts(), ElementsAre("wide=\xEF\xBF\xBD", "narrow=\xEF\xBF\xBD"));
}

TEST_F(Logging, HandsOverALineOfManyKilobytesWhole) {
  const CapturedLog log;
  LogDebug([](auto& line) { line << std::wstring(65'536, L'\u4E2D'); });
  LogDebugNarrow([](auto& line) { line << std::string(65'536, 'a'); });
  ASSERT_EQ(log.Lines().size(), 2u);
  EXPECT_EQ(log.Lines()[0].text.size(), 3 * 65'536u);
  EXPECT_EQ(log.Lines()[1].text.size(), 65'536u);
}

TEST_F(Logging, HandsOverAnEmptyLine) {
  const CapturedLog log;
  LogDebug([](auto&) {});
  LogDebugNarrow([](auto&) {});
  EXPECT_THAT(log.Texts(), ElementsAre("", ""));
}

TEST_F(Logging, BuildsNothingWithoutALogger) {
  const NoLogger none;
  CaptureStderr();
  EXPECT_EQ(LogThroughEach(), 0);
  EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(Logging, BuildsNoDebugLineWhenOnlyErrorsAreWanted) {
  CapturedLog log;
  log.DisableDebug();
  EXPECT_EQ(LogThroughEach(), 1);
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_EQ(log.Lines()[0].level, "ERROR");
}

TEST_F(Logging, BuildsNothingWhenTheLoggerIsOff) {
  CapturedLog log;
  log.DisableAll();
  EXPECT_EQ(LogThroughEach(), 0);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Logging, AllocatesNothingWhenTheLevelIsOff) {
  CapturedLog log;
  log.DisableAll();
  const velmora::testing::AllocationCounter counter;
  LogThroughEach();
  EXPECT_EQ(counter.Count(), 0);
}

TEST_F(Logging, ReportsAnAppenderThatThrowsThroughTheLoggingLibrary) {
  CapturedLog log;
  log.MakeAppenderThrow();
  CaptureStderr();
  EXPECT_EQ(LogThroughEach(), 3);
  const std::string said = GetCapturedStderr();

  std::size_t reports = 0;
  for (auto at = said.find(kFailure); at != std::string::npos; at = said.find(kFailure, at + 1)) ++reports;
  EXPECT_EQ(reports, 3u) << said;
}

TEST_F(Logging, ReportsALineThatCannotBeBuilt) {
  const CapturedLog log;
  CaptureStderr();
  LogDebug([](auto&) { throw std::runtime_error("it broke"); });
  LogError([](auto&) { throw 3; });
  EXPECT_THAT(GetCapturedStderr(), HasSubstr(kFailure));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Logging, ReportsNarrowTextWhoseConversionThrows) {
  const CapturedLog log;
  run_.Inject(simulator::Fault::kThrow, 0);
  CaptureStderr();
  LogDebugNarrow([](auto& line) { line << "text"; });
  EXPECT_THAT(GetCapturedStderr(), HasSubstr(kFailure));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Logging, SurvivesEveryAllocationThatFails) {
  const CapturedLog log;
  const auto log_one = [&](auto function) {
    return [&log, function] {
      const auto before = log.Lines().size();
      function([](auto& line) { line << "a line that is too long for the text itself: " << 12345678; });
      return log.Lines().size() - before;
    };
  };
  CaptureStderr();
  const auto wide = WithEachAllocationFailing(log_one([](auto build) { LogDebug(build); }));
  const auto narrow = WithEachAllocationFailing(log_one([](auto build) { LogDebugNarrow(build); }));
  const std::string said = GetCapturedStderr();

  EXPECT_GE(wide.size(), 2u) << "no allocation failed";
  EXPECT_EQ(wide.back(), 1u);
  EXPECT_GE(narrow.size(), 2u) << "no allocation failed";
  EXPECT_EQ(narrow.back(), 1u);
  EXPECT_THAT(said, HasSubstr(kFailure));
}

TEST_F(Logging, SurvivesWithNoMemoryAtAll) {
  const CapturedLog log;
  {
    const velmora::testing::FailingAllocation none_left(0, true);
    LogDebug([](auto& line) { line << "a line that is too long for the text itself"; });
  }
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Logging, LeavesTheLastErrorAndErrnoAsTheyWere) {
  CapturedLog log;
  const auto spoil = [](auto& line) {
    velmora::os::SetLastError(99);
    errno = EINTR;
    line << "line";
  };
  velmora::os::SetLastError(5);
  errno = EBADF;
  LogDebug(spoil);
  const int error_number = errno;

  EXPECT_EQ(velmora::os::LastError(), 5u);
  EXPECT_EQ(error_number, EBADF);
}

TEST_F(Logging, LeavesTheLastErrorAsItWasWhenTheLineFails) {
  CapturedLog log;
  log.MakeAppenderThrow();
  CaptureStderr();
  velmora::os::SetLastError(5);
  LogError([](auto& line) {
    velmora::os::SetLastError(99);
    line << "line";
  });
  EXPECT_EQ(velmora::os::LastError(), 5u);
  GetCapturedStderr();
}

TEST_F(Logging, ShowsTheLineTheLastErrorOfTheCallBeforeIt) {
  const CapturedLog log;
  velmora::os::SetLastError(1062);
  LogError([](auto& line) { line << "LastError=" << velmora::os::LastError(); });
  EXPECT_THAT(log.Texts(), ElementsAre("LastError=1062"));
}

}  // namespace
