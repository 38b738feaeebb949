#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/allocations.h"
#include "velmora/audio.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;
using velmora::testing::CapturedLog;
using velmora::testing::LogRecord;
using velmora::testing::NoLogger;
using velmora::testing::WithEachAllocationFailing;

const std::string kMarkedCodec = "%Codec% = Install, HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_7B2D22D6";
const std::string kForeignCodec = "%Codec% = Install, HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_17AA22D6";

/// A machine whose audio device has this INF file, which holds `contents`.
simulator::Machine MachineWithInf(const std::string& name, const std::string& contents) {
  auto machine = simulator::BlankMachine();
  machine.cpu = {.kind = 1};
  machine.devices = {
      {.setup_class = "Media", .hardware_ids = {"HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257"}, .inf = name}};
  machine.files = {{.path = "C:", .folder = true},
                   {.path = "C:\\Windows", .folder = true},
                   {.path = "C:\\Windows\\INF", .folder = true}};
  machine.files->push_back({.path = "C:\\Windows\\INF\\" + name, .contents = contents});
  return machine;
}

struct Verdict {
  int source;
  std::string fail_line;
  bool operator==(const Verdict&) const = default;
};

void PrintTo(const Verdict& verdict, std::ostream* stream) {
  *stream << verdict.source << " \"" << verdict.fail_line << '"';
}

Verdict Check() {
  Verdict verdict{.source = 77, .fail_line = "old"};
  verdict.source = CAudioCard().Check3rdAudioDriver(verdict.fail_line);
  return verdict;
}

Verdict Check(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  return Check();
}

/// What the check finds in an "oem" INF file of these contents.
Verdict CheckContents(const std::string& contents) { return Check(MachineWithInf("oem8.inf", contents)); }

TEST(AudioDriverSource, HasTheNumbersThatHostsKnow) {
  static_assert(sizeof(enmDRIVER_SOURCE_INFO) == 4);
  EXPECT_EQ(static_cast<int>(DRIVER_SOURCE_OPEN_FAILED), -1);
  EXPECT_EQ(static_cast<int>(DRIVER_SOURCE_MAKER), 0);
  EXPECT_EQ(static_cast<int>(DRIVER_SOURCE_OTHER_VENDOR), 1);
  EXPECT_EQ(static_cast<int>(DRIVER_SOURCE_INBOX), 2);
  EXPECT_EQ(static_cast<int>(DRIVER_SOURCE_NO_INF), 3);
}

TEST(AudioDriverSource, IsNoInfWithoutAnAudioDevice) {
  auto machine = MachineWithInf("oem8.inf", kForeignCodec);
  machine.devices->clear();
  EXPECT_EQ(Check(machine), (Verdict{3, "old"}));
}

TEST(AudioDriverSource, IsNoInfWithoutAnInfName) {
  auto machine = MachineWithInf("oem8.inf", kForeignCodec);
  machine.devices->front().inf = "";
  EXPECT_EQ(Check(machine), (Verdict{3, "old"}));
}

TEST(AudioDriverSource, IsNoInfWhenTheFileIsMissing) {
  auto machine = MachineWithInf("oem8.inf", kForeignCodec);
  machine.devices->front().inf = "oem9.inf";
  EXPECT_EQ(Check(machine), (Verdict{3, "old"}));
}

TEST(AudioDriverSource, IsInboxForAFileWithoutOemInItsName) {
  const auto run = simulator::Use(MachineWithInf("hdaudio.inf", kForeignCodec));
  EXPECT_EQ(Check(), (Verdict{2, "old"}));
  EXPECT_EQ(run.Calls("OpenFileForReading"), 0) << "it is not even read";
}

TEST(AudioDriverSource, TakesOemInEitherLetterCaseAndAnywhereInTheName) {
  for (const char* const name : {"OEM8.INF", "Oem8.inf", "oeM8.inf", "8oem", "x.oem"}) {
    EXPECT_EQ(Check(MachineWithInf(name, kForeignCodec)), (Verdict{1, kForeignCodec})) << name;
  }
}

TEST(AudioDriverSource, IsTheMakersForAFileWithoutModels) {
  EXPECT_EQ(CheckContents(""), (Verdict{0, "old"}));
  EXPECT_EQ(CheckContents("[Version]\nClass = MEDIA\n"), (Verdict{0, "old"}));
}

TEST(AudioDriverSource, IsTheMakersWhenEveryModelOfTheRunIsMarked) {
  EXPECT_EQ(CheckContents(kMarkedCodec + "\n" + kMarkedCodec + "\n"), (Verdict{0, "old"}));
}

TEST(AudioDriverSource, IsAnotherVendorsWhenTheSecondModelIsNotMarked) {
  EXPECT_EQ(CheckContents("[Models]\n" + kMarkedCodec + "\n" + kForeignCodec + "\n"),
            (Verdict{1, kForeignCodec}));
}

TEST(AudioDriverSource, IsTheMakersWhenTheUnmarkedModelStandsBehindAnUnrelatedLine) {
  EXPECT_EQ(CheckContents(kMarkedCodec + "\n; unrelated\n" + kForeignCodec + "\n"), (Verdict{0, "old"}));
}

TEST(AudioDriverSource, GivesTheBytesOfTheLineAsTheyStand) {
  EXPECT_EQ(CheckContents(kMarkedCodec + "\r\n\xFF" + kForeignCodec + "\r\n"),
            (Verdict{1, "\xFF" + kForeignCodec + "\r"}));
}

TEST(AudioDriverSource, IsTheMakersForAFileOfWideCharacters) {
  auto machine = MachineWithInf("oem8.inf", "");
  simulator::Bytes wide{{0xFF, 0xFE}};
  for (const char c : kForeignCodec) wide.data.insert(wide.data.end(), {static_cast<std::uint8_t>(c), 0});
  machine.files->back().raw = wide;
  EXPECT_EQ(Check(machine), (Verdict{0, "old"}));
}

TEST(AudioDriverSource, IsUnopenedWhenTheFileDoesNotOpen) {
  auto machine = MachineWithInf("oem8.inf", kForeignCodec);
  machine.files->back().open_error = 5;
  EXPECT_EQ(Check(machine), (Verdict{-1, "old"}));
}

TEST(AudioDriverSource, IsUnopenedForAFolderInPlaceOfTheFile) {
  auto machine = MachineWithInf("oem8.inf", "");
  machine.files->back().folder = true;
  EXPECT_EQ(Check(machine), (Verdict{-1, "old"}));
}

TEST(AudioDriverSource, FindsAModelAtTheEndOfAFileOfManyPieces) {
  auto machine = MachineWithInf("oem8.inf", "");
  std::string contents;
  while (contents.size() < 100'000) contents += "; a line of the package\n";
  machine.files->back().contents = contents + kForeignCodec + "\n";
  EXPECT_EQ(Check(machine), (Verdict{1, kForeignCodec}));
}

TEST(AudioDriverSource, ReadsALongLineInSmallPieces) {
  auto machine = MachineWithInf("oem8.inf", "");
  auto& file = machine.files->back();
  file.contents = std::string(1 << 16, 'x');
  file.repeated = 64;
  const auto run = simulator::Use(machine);
  EXPECT_EQ(Check(), (Verdict{0, "old"}));
  const auto trace = run.Trace();
  EXPECT_EQ(std::ranges::count(trace, "ReadFile(4096)"), 64 * 16 + 1);
}

TEST(AudioDriverSource, CutsTheLineItGivesOutAt65536Bytes) {
  const std::string contents = kForeignCodec + std::string(100'000, 'x');
  EXPECT_EQ(CheckContents(contents), (Verdict{1, contents.substr(0, 65'536)}));
}

TEST(AudioDriverSource, ReadsNoFurtherThanTheFirstRun) {
  auto machine = MachineWithInf("oem8.inf", kMarkedCodec + "\n\n" + std::string(1'000'000, 'x'));
  const auto run = simulator::Use(machine);
  EXPECT_EQ(Check(), (Verdict{0, "old"}));
  EXPECT_EQ(run.Calls("ReadFile"), 1);
}

TEST(AudioDriverSource, LooksAtNothingOutsideTheInfFolder) {
  for (const char* const name :
       {"..\\secret\\oem1.inf", "..\\..\\oem1.inf", "../oem1.inf", "C:\\oem1.inf", "C:oem1.inf",
        "\\\\host\\share\\oem1.inf", "sub\\oem1.inf", "oem1.inf:stream", "..", "."}) {
    auto machine = MachineWithInf("oem8.inf", "");
    machine.devices->front().inf = name;
    for (const char* const path :
         {"C:\\Windows\\secret\\oem1.inf", "C:\\oem1.inf", "C:\\Windows\\INF\\sub\\oem1.inf"}) {
      machine.files->push_back({.path = path, .contents = kForeignCodec});
    }
    const auto run = simulator::Use(machine);
    EXPECT_EQ(Check(), (Verdict{3, "old"})) << name;
    EXPECT_EQ(run.Calls("PathFileExistsW") + run.Calls("OpenFileForReading"), 0) << name;
  }
}

TEST(AudioDriverSource, FindsOutInThisOrder) {
  const auto run = simulator::Use(MachineWithInf("oem8.inf", kForeignCodec));
  CAudioCard audio;
  const auto before = static_cast<std::ptrdiff_t>(run.Trace().size());
  std::string fail_line;
  audio.Check3rdAudioDriver(fail_line);
  const auto trace = run.Trace();
  EXPECT_THAT(
      std::vector<std::string>(trace.begin() + before, trace.end()),
      ElementsAre("HalInit(0, null)", "HalQueryInformation(0, null, 19, 4)", "GetDeviceHardwareID(Media)",
                  "GetDeviceStrInfoByHardwareID(HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257, Media, 8)",
                  "PathFileExistsW(C:\\Windows\\INF\\oem8.inf)",
                  "OpenFileForReading(C:\\Windows\\INF\\oem8.inf)", "ReadFile(4096)", "ReadFile(4096)",
                  "CloseHandle()"));
}

TEST(AudioDriverSource, LogsEachResult) {
  const auto logged = [](const simulator::Machine& machine) {
    const auto run = simulator::Use(machine);
    const CapturedLog log;
    std::string fail_line = "old";
    CAudioCard().Check3rdAudioDriver(fail_line);
    EXPECT_EQ(log.Lines().size(), 2U);
    EXPECT_THAT(log.Texts().front(), StartsWith("wszInf="));
    return log.Texts().back();
  };
  auto machine = MachineWithInf("oem8.inf", kForeignCodec);
  EXPECT_EQ(logged(machine),
            "enmDriverSource=1, strFailInfo=" + kForeignCodec + "(CAudioCard::Check3rdAudioDriver)");
  machine.files->back().contents = kMarkedCodec;
  EXPECT_EQ(logged(machine), "enmDriverSource=0, strFailInfo=old(CAudioCard::Check3rdAudioDriver)");
  machine.files->back().open_error = 5;
  EXPECT_EQ(logged(machine), "enmDriverSource=-1, strFailInfo=old(CAudioCard::Check3rdAudioDriver)");
  EXPECT_EQ(logged(MachineWithInf("hdaudio.inf", "")),
            "enmDriverSource=2, strFailInfo=old(CAudioCard::Check3rdAudioDriver)");
  machine.files->pop_back();
  EXPECT_EQ(logged(machine), "enmDriverSource=3, strFailInfo=old(CAudioCard::Check3rdAudioDriver)");
  machine.devices->clear();
  EXPECT_EQ(logged(machine), "enmDriverSource=3, strFailInfo=old(CAudioCard::Check3rdAudioDriver)");
}

TEST(AudioDriverSource, LogsAtDebugLevelFromTheOperationItself) {
  const auto run = simulator::Use(MachineWithInf("oem8.inf", kMarkedCodec));
  CapturedLog log;
  Check();
  ASSERT_EQ(log.Lines().size(), 2U);
  const LogRecord& line = log.Lines().back();
  EXPECT_EQ(line.level, "DEBUG");
  EXPECT_THAT(line.file, EndsWith("src/devices/audio_driver_source.cpp"));
  EXPECT_EQ(line.function, "CAudioCard::Check3rdAudioDriver");

  log.DisableDebug();
  Check();
  EXPECT_EQ(log.Lines().size(), 2U);
}

TEST(AudioDriverSource, EndsTheFileWhereReadingFails) {
  auto machine = MachineWithInf("oem8.inf", std::string(5000, '\n') + kForeignCodec);
  auto run = simulator::Use(machine);
  ASSERT_EQ(Check(), (Verdict{1, kForeignCodec}));
  const auto trace = run.Trace();
  const auto second_read = std::ranges::find(trace, "ReadFile(4096)") + 1 - trace.begin();
  run.Inject(Fault::kFail, run.Calls() + static_cast<int>(second_read));
  EXPECT_EQ(Check(), (Verdict{0, "old"}));
}

TEST(AudioDriverSource, ClosesTheFileAndGivesADocumentedResultWhateverThrows) {
  const NoLogger none;
  const int calls = [] {
    const auto run = simulator::Use(MachineWithInf("oem8.inf", kForeignCodec));
    Check();
    return run.Calls();
  }();
  for (int call = 0; call < calls; ++call) {
    auto run = simulator::Use(MachineWithInf("oem8.inf", kForeignCodec));
    run.Inject(Fault::kThrow, call);
    const Verdict verdict = Check();
    EXPECT_TRUE(verdict == (Verdict{1, kForeignCodec}) || verdict == (Verdict{3, "old"}) ||
                verdict == (Verdict{-1, "old"}))
        << testing::PrintToString(verdict) << " when call " << call << " throws";
    EXPECT_EQ(run.OpenHandles(), 0);
  }
}

TEST(AudioDriverSource, IsNeverGuessedWhenMemoryRunsOut) {
  const NoLogger none;
  const auto run = simulator::Use(MachineWithInf("oem8.inf", kForeignCodec));
  const auto sources = WithEachAllocationFailing([] {
    std::string fail_line;
    return CAudioCard().Check3rdAudioDriver(fail_line);
  });
  ASSERT_FALSE(sources.empty());
  EXPECT_EQ(sources.back(), DRIVER_SOURCE_OTHER_VENDOR);
  for (const auto source : sources) {
    EXPECT_TRUE(source == DRIVER_SOURCE_OTHER_VENDOR || source == DRIVER_SOURCE_NO_INF ||
                source == DRIVER_SOURCE_OPEN_FAILED)
        << source;
  }
}

}  // namespace
