#include "velmora/audio.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/ostrine/hal.h"
#include "platform/ostrine/setup_class.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::LogRecord;
using velmora::testing::NoLogger;

constexpr const char* kCodec = "HDAUDIO\\FUNC_01&VEN_10EC&DEV_0257&SUBSYS_7B2D22D6&REV_1000";
constexpr const char* kDisplayAudio = "HDAUDIO\\FUNC_01&VEN_8086&DEV_2812&SUBSYS_80860101&REV_1000";
constexpr unsigned int kArm = 3;

simulator::Device AudioDevice(const char* hardware_id) {
  return {.setup_class = "Media",
          .hardware_ids = {hardware_id},
          .description = "Realtek(R) Audio",
          .manufacturer = "Realtek",
          .display_name = "Realtek High Definition Audio",
          .driver_version = "6.0.9257.1",
          .inf = "oem8.inf",
          .problem_code = 0};
}

/// A machine with these devices of the Media class, in this order, and a processor of this kind.
simulator::Machine MachineWithAudio(const std::vector<const char*>& hardware_ids, unsigned int kind = 1) {
  auto machine = simulator::BlankMachine();
  machine.cpu = {.kind = kind};
  machine.devices.emplace();
  for (const char* const id : hardware_ids) machine.devices->push_back(AudioDevice(id));
  return machine;
}

std::wstring HardwareId(const simulator::Machine& machine) {
  const auto run = simulator::Use(machine);
  std::wstring hardware_id = L"old";
  const bool is_found = CAudioCard().GetAudioHardId(hardware_id);
  return (is_found ? L"found " : L"none, ") + hardware_id;
}

/// What an operation calls on an object that has been made already.
template <class Asking>
std::vector<std::string> CallsOf(const Asking& asking) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  CAudioCard audio;
  const auto before = static_cast<std::ptrdiff_t>(run.Trace().size());
  asking(audio);
  const auto trace = run.Trace();
  return {trace.begin() + before, trace.end()};
}

TEST(AudioCard, IsLookedForInTheSystemsMediaClass) {
  EXPECT_EQ(simulator::GuidText(velmora::setup_class::kMedia), "{4D36E96C-E325-11CE-BFC1-08002BE10318}");
}

TEST(AudioCard, OpensItsClassAndReadsTheCountOfDevicesWhenItIsMade) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  const CAudioCard audio;
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(5, pointer)", "HalQueryInformation(5, null, 0, 4)"));
}

TEST(AudioCard, ReadsNoCountWhenItsClassDoesNotOpen) {
  auto run = simulator::Use(MachineWithAudio({kCodec}));
  run.Inject(Fault::kFail, 0);
  CAudioCard audio;
  EXPECT_THAT(run.Trace(), ElementsAre("HalInit(5, pointer)"));
  EXPECT_EQ(audio.GetAudioCardName(), L"Realtek(R) Audio") << "the device is looked up all the same";
}

TEST(AudioCard, IsMadeAlsoWhenTheCountCannotBeReadOrTheClassThrows) {
  for (const Fault fault : {Fault::kFail, Fault::kEmpty, Fault::kThrow}) {
    for (const int call : {0, 1}) {
      auto run = simulator::Use(MachineWithAudio({kCodec}));
      run.Inject(fault, call);
      EXPECT_EQ(CAudioCard().GetAudioCardNumbers(), 1U);
    }
  }
}

TEST(AudioCard, GivesTheFactsOfTheDevice) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  CAudioCard audio;

  EXPECT_EQ(audio.GetAudioCardNumbers(), 1U);
  EXPECT_EQ(audio.GetAudioCardName(), L"Realtek(R) Audio");
  EXPECT_EQ(audio.GetAudioCardManufacturer(), L"Realtek");
  EXPECT_EQ(audio.GetDriverVersion(), L"6.0.9257.1");
  EXPECT_EQ(audio.GetAudioErrorCode(), 0U);
}

TEST(AudioCard, GivesTheProblemCodeUnchanged) {
  for (const unsigned int code : {10U, 22U, 28U, 0xFFFFFFFFU}) {
    auto machine = MachineWithAudio({kCodec});
    machine.devices->front().problem_code = code;
    const auto run = simulator::Use(machine);
    EXPECT_EQ(CAudioCard().GetAudioErrorCode(), code);
    EXPECT_EQ(CAudioCard().GetAudioErrorCodeByIndex(0), code);
  }
}

TEST(AudioCard, AsksForTheProcessorsKindThenForTheIdsThenForTheProperty) {
  const auto asked = [](const std::string& question) {
    return ElementsAre("HalInit(0, null)", "HalQueryInformation(0, null, 19, 4)",
                       "GetDeviceHardwareID(Media)", question);
  };
  const std::string text = std::string("GetDeviceStrInfoByHardwareID(") + kCodec + ", Media, ";
  EXPECT_THAT(CallsOf([](CAudioCard& audio) { audio.GetAudioCardName(); }), asked(text + "0)"));
  EXPECT_THAT(CallsOf([](CAudioCard& audio) { audio.GetAudioCardManufacturer(); }), asked(text + "1)"));
  EXPECT_THAT(CallsOf([](CAudioCard& audio) { audio.GetDriverVersion(); }), asked(text + "2)"));
  EXPECT_THAT(CallsOf([](CAudioCard& audio) {
                std::wstring inf;
                audio.GetAudioDriverInf(inf);
              }),
              asked(text + "8)"));
  EXPECT_THAT(CallsOf([](CAudioCard& audio) { audio.GetAudioErrorCode(); }),
              asked(std::string("GetDeviceULONGInfoByHardwareID(") + kCodec + ", Media, 10)"));
}

TEST(AudioCard, IsTheFirstWithTheVendorsNumberAnywhereInItsId) {
  EXPECT_EQ(HardwareId(MachineWithAudio({kDisplayAudio, "XVEN_10ECX", kCodec})), L"found XVEN_10ECX");
}

TEST(AudioCard, IsNoneWithTheVendorsNumberInOtherLetterCase) {
  EXPECT_EQ(HardwareId(MachineWithAudio({"HDAUDIO\\FUNC_01&ven_10ec", "HDAUDIO\\FUNC_01&VEN_10Ec"})),
            L"none, old");
}

TEST(AudioCard, IsNoneWithoutTheVendorsNumberWhateverTheProcessorButArm) {
  for (const unsigned int kind : {0U, 1U, 2U, 4U, 0xFFFFFFFFU}) {
    EXPECT_EQ(HardwareId(MachineWithAudio({kDisplayAudio}, kind)), L"none, old") << kind;
  }
}

TEST(AudioCard, IsTheFirstOfTheClassOnArm) {
  EXPECT_EQ(HardwareId(MachineWithAudio({"ACPI\\QCOM0495", kCodec}, kArm)), L"found ACPI\\QCOM0495");
}

TEST(AudioCard, IsNoneOnArmWithoutAnyDevice) {
  EXPECT_EQ(HardwareId(MachineWithAudio({}, kArm)), L"none, old");
}

TEST(AudioCard, CountsAProcessorWhoseKindCannotBeReadAsNoArm) {
  auto run = simulator::Use(MachineWithAudio({kDisplayAudio}, kArm));
  CAudioCard audio;
  EXPECT_EQ(audio.GetAudioCardNumbers(), 1U);
  run.Inject(Fault::kFail, run.Calls() + 1);
  EXPECT_EQ(audio.GetAudioCardNumbers(), 0U);
}

TEST(AudioCard, ReadsTheKindAlsoWhenTheProcessorsClassDoesNotOpen) {
  auto run = simulator::Use(MachineWithAudio({kDisplayAudio}, kArm));
  CAudioCard audio;
  run.Inject(Fault::kFail, run.Calls());
  EXPECT_EQ(audio.GetAudioCardNumbers(), 1U);
}

TEST(AudioCard, GivesItsFailureValuesWithoutADevice) {
  const auto run = simulator::Use(MachineWithAudio({kDisplayAudio}));
  CAudioCard audio;
  std::wstring inf = L"old";

  EXPECT_EQ(audio.GetAudioCardNumbers(), 0U);
  EXPECT_EQ(audio.GetAudioCardName(), L"");
  EXPECT_EQ(audio.GetAudioCardManufacturer(), L"");
  EXPECT_EQ(audio.GetDriverVersion(), L"");
  EXPECT_EQ(audio.GetAudioErrorCode(), 0xFFFFFFFFU);
  EXPECT_FALSE(audio.GetAudioDriverInf(inf));
  EXPECT_EQ(inf, L"old");
  EXPECT_EQ(run.Calls("GetDeviceStrInfoByHardwareID") + run.Calls("GetDeviceULONGInfoByHardwareID"), 0);
}

TEST(AudioCard, GivesItsFailureValuesOnAMachineThatHasNothing) {
  const auto run = simulator::Use(simulator::EmptyMachine());
  CAudioCard audio;
  EXPECT_EQ(audio.GetAudioCardNumbers(), 0U);
  EXPECT_EQ(audio.GetAudioCardName(), L"");
  EXPECT_EQ(audio.GetAudioErrorCode(), 0xFFFFFFFFU);
}

TEST(AudioCard, ForwardsIndexZeroToTheOperationWithoutIndex) {
  auto machine = MachineWithAudio({kCodec});
  machine.devices->front().problem_code = 28;
  const auto run = simulator::Use(machine);
  CAudioCard audio;

  EXPECT_EQ(audio.GetAudioCardNameByIndex(0), L"Realtek(R) Audio");
  EXPECT_EQ(audio.GetAudioCardManufacturerByIndex(0), L"Realtek");
  EXPECT_EQ(audio.GetDriverVersionByIndex(0), L"6.0.9257.1");
  EXPECT_EQ(audio.GetAudioErrorCodeByIndex(0), 28U);
}

TEST(AudioCard, HasNothingAtAnyOtherIndexAndNoProblemThere) {
  const auto run = simulator::Use(MachineWithAudio({kCodec, kCodec}));
  CAudioCard audio;
  const int calls = run.Calls();
  for (const int index : {1, 2, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_EQ(audio.GetAudioCardNameByIndex(index), L"");
    EXPECT_EQ(audio.GetAudioCardManufacturerByIndex(index), L"");
    EXPECT_EQ(audio.GetDriverVersionByIndex(index), L"");
    EXPECT_EQ(audio.GetAudioErrorCodeByIndex(index), 0U);
  }
  EXPECT_EQ(run.Calls(), calls) << "nobody is asked";
}

TEST(AudioCard, GivesTheFailureCodeAtIndexZeroWithoutADevice) {
  const auto run = simulator::Use(MachineWithAudio({}));
  EXPECT_EQ(CAudioCard().GetAudioErrorCodeByIndex(0), 0xFFFFFFFFU);
}

TEST(AudioCard, LooksTheDeviceUpAgainEachTime) {
  auto run = simulator::Use(MachineWithAudio({}));
  CAudioCard audio;
  EXPECT_EQ(audio.GetAudioCardNumbers(), 0U);
  run.machine().devices->push_back(AudioDevice(kCodec));
  EXPECT_EQ(audio.GetAudioCardNumbers(), 1U);
  run.machine().devices->front().description = "Renamed";
  EXPECT_EQ(audio.GetAudioCardName(), L"Renamed");
}

TEST(AudioCard, GivesTheNameOfItsInfFileAndLogsIt) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  const CapturedLog log;
  std::wstring inf = L"old";

  EXPECT_TRUE(CAudioCard().GetAudioDriverInf(inf));
  EXPECT_EQ(inf, L"oem8.inf");
  ASSERT_THAT(log.Texts(), ElementsAre("wszInf=oem8.inf, Ret=1(CAudioCard::GetAudioDriverInf)"));
  const LogRecord& line = log.Lines().front();
  EXPECT_EQ(line.level, "DEBUG");
  EXPECT_THAT(line.file, EndsWith("src/devices/audio.cpp"));
  EXPECT_EQ(line.function, "CAudioCard::GetAudioDriverInf");
}

TEST(AudioCard, IsFoundAlsoWhenItsInfNameIsEmpty) {
  auto machine = MachineWithAudio({kCodec});
  machine.devices->front().inf = "";
  const auto run = simulator::Use(machine);
  const CapturedLog log;
  std::wstring inf = L"old";

  EXPECT_TRUE(CAudioCard().GetAudioDriverInf(inf));
  EXPECT_EQ(inf, L"");
  EXPECT_THAT(log.Texts(), ElementsAre("wszInf=, Ret=1(CAudioCard::GetAudioDriverInf)"));
}

TEST(AudioCard, LogsThatItHasNoInfFileWithoutADevice) {
  const auto run = simulator::Use(MachineWithAudio({}));
  const CapturedLog log;
  std::wstring inf;

  EXPECT_FALSE(CAudioCard().GetAudioDriverInf(inf));
  EXPECT_THAT(log.Texts(), ElementsAre("wszInf=, Ret=0(CAudioCard::GetAudioDriverInf)"));
}

TEST(AudioCard, LogsNothingBelowDebugLevelAndNothingInItsOtherOperations) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  CapturedLog log;
  CAudioCard audio;
  audio.GetAudioCardNumbers();
  audio.GetAudioCardName();
  audio.GetAudioCardManufacturer();
  audio.GetDriverVersion();
  audio.GetAudioErrorCode();
  EXPECT_THAT(log.Texts(), IsEmpty());

  log.DisableDebug();
  std::wstring inf;
  EXPECT_TRUE(audio.GetAudioDriverInf(inf));
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(AudioCard, GivesTheSameWhenLoggingFails) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  CapturedLog log;
  log.MakeAppenderThrow();
  std::wstring inf;
  testing::internal::CaptureStderr();
  EXPECT_TRUE(CAudioCard().GetAudioDriverInf(inf));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("An log4cxx exception occurred."));
  EXPECT_EQ(inf, L"oem8.inf");
}

TEST(AudioCard, CopiesTakeABlockOfTheirOwn) {
  const auto run = simulator::Use(MachineWithAudio({kCodec}));
  CAudioCard audio;
  CAudioCard copy(audio);
  CAudioCard assigned;
  assigned = audio;
  const CAudioCard& self = assigned;
  assigned = self;

  EXPECT_EQ(run.Calls("HalInit"), 5);
  EXPECT_EQ(copy.GetAudioCardName(), L"Realtek(R) Audio");
  EXPECT_EQ(assigned.GetAudioCardName(), L"Realtek(R) Audio");
}

TEST(AudioCard, ThrowsNothingWhateverThrowsBelowIt) {
  const NoLogger none;
  for (int call = 0; call < 6; ++call) {
    auto run = simulator::Use(MachineWithAudio({kCodec}));
    run.Inject(Fault::kThrow, call, true);
    CAudioCard audio;
    std::wstring text = L"old";
    EXPECT_EQ(audio.GetAudioHardId(text), call == 5) << call;
    EXPECT_EQ(audio.GetAudioCardName(), L"");
    EXPECT_EQ(audio.GetAudioErrorCode(), 0xFFFFFFFFU);
  }
}

TEST(AudioCard, LeavesTheCallersTextAloneWhenAskingThrows) {
  const NoLogger none;
  auto run = simulator::Use(MachineWithAudio({kCodec}));
  CAudioCard audio;
  run.Inject(Fault::kThrow, run.Calls(), true);
  std::wstring text = L"old";
  EXPECT_FALSE(audio.GetAudioHardId(text));
  EXPECT_FALSE(audio.GetAudioDriverInf(text));
  EXPECT_EQ(text, L"old");
}

}  // namespace
