#include "velmora/biometric.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "platform/ostrine/setup_class.h"
#include "platform/unicode.h"
#include "simulator/guid_text.h"
#include "simulator/run.h"
#include "tests/support/logging/captured_log.h"
#include "tests/support/simulator/machines.h"

namespace {

using simulator::Fault;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using velmora::testing::CapturedLog;
using velmora::testing::MachineWithDevices;
using velmora::testing::NoLogger;

constexpr unsigned long kAbsentProblem = 45;
constexpr const char* kReaderId = "ACPI\\VEN_GXFP&DEV_5187";

/// The second form of "Serial IO", from its code points.
const std::wstring kOtherForm{wchar_t{0x2032}, wchar_t{0x003F}, wchar_t{0x0044}, wchar_t{0x0044},
                              wchar_t{0x0020}, wchar_t{0x0049}, wchar_t{0x004F}};

simulator::Device Reader(const char* hardware_id) {
  return {.setup_class = "Biometric",
          .hardware_ids = {hardware_id},
          .description = "Fingerprint SPI",
          .manufacturer = "Reader Maker",
          .driver_version = "3.4.28.340",
          .problem_code = 0};
}

simulator::Device SystemDevice(const std::wstring& description, const char* hardware_id = "PCI\\VEN_8086") {
  return {.setup_class = "System",
          .hardware_ids = {hardware_id},
          .description = velmora::unicode::Utf8FromWide(description),
          .driver_version = "30.100.2105.7",
          .problem_code = 0};
}

simulator::Machine MachineWithSystemDevices(const std::vector<std::wstring>& descriptions) {
  auto machine = MachineWithDevices({});
  for (const auto& description : descriptions) machine.devices->push_back(SystemDevice(description));
  return machine;
}

template <class Asking>
std::vector<std::string> TraceOf(simulator::Machine machine, const Asking& asking) {
  const auto run = simulator::Use(std::move(machine));
  CBiometric biometric;
  asking(biometric);
  return run.Trace();
}

TEST(Fingerprint, IsLookedForInTheBiometricClassAndTheOthersInTheSystemClass) {
  EXPECT_EQ(simulator::GuidText(velmora::setup_class::kBiometric), "{53D29EF7-377C-4D14-864B-EB3A85769359}");
  EXPECT_EQ(simulator::GuidText(velmora::setup_class::kSystem), "{4D36E97D-E325-11CE-BFC1-08002BE10318}");
}

TEST(Fingerprint, GivesTheFactsOfTheReader) {
  const auto run = simulator::Use(MachineWithDevices({Reader(kReaderId)}));
  CBiometric biometric;
  EXPECT_EQ(biometric.GetHardwareID(), L"ACPI\\VEN_GXFP&DEV_5187");
  EXPECT_EQ(biometric.GetDeviceName(), L"Fingerprint SPI");
  EXPECT_EQ(biometric.GetManufacturer(), L"Reader Maker");
  EXPECT_EQ(biometric.GetDriverVersion(), L"3.4.28.340");
  EXPECT_EQ(biometric.GetErrorCode(), 0U);
}

TEST(Fingerprint, GivesTheProblemCodeUnchanged) {
  for (const std::uint32_t code : {10U, 22U, 43U, 0xFFFFFFFFU}) {
    auto reader = Reader(kReaderId);
    reader.problem_code = code;
    const auto run = simulator::Use(MachineWithDevices({reader}));
    EXPECT_EQ(CBiometric().GetErrorCode(), code);
  }
}

TEST(Fingerprint, IsTheFirstWhoseIdBeginsWithAcpiInExactlyTheseLetters) {
  const auto run =
      simulator::Use(MachineWithDevices({Reader("USB\\VID_06CB&PID_00FC"), Reader("acpi\\small"),
                                         Reader("XACPI\\inside"), Reader("ACPI"), Reader(kReaderId)}));
  EXPECT_EQ(CBiometric().GetHardwareID(), L"ACPI");
}

TEST(Fingerprint, IsNoneOnUsb) {
  const auto run = simulator::Use(MachineWithDevices({Reader("USB\\VID_06CB&PID_00FC")}));
  CBiometric biometric;
  EXPECT_EQ(biometric.GetHardwareID(), L"");
  EXPECT_EQ(biometric.GetDeviceName(), L"");
  EXPECT_EQ(biometric.GetManufacturer(), L"");
  EXPECT_EQ(biometric.GetDriverVersion(), L"");
  EXPECT_EQ(biometric.GetErrorCode(), kAbsentProblem);
}

TEST(Fingerprint, AsksForTheIdThenForThePropertyOfIt) {
  const auto asked = [](const std::string& question) {
    return ElementsAre("GetDeviceHardwareID(Biometric)", question);
  };
  const auto machine = MachineWithDevices({Reader("ACPI\\X")});
  const std::string text = "GetDeviceStrInfoByHardwareID(ACPI\\X, Biometric, ";
  EXPECT_THAT(TraceOf(machine, [](CBiometric& b) { b.GetDeviceName(); }), asked(text + "0)"));
  EXPECT_THAT(TraceOf(machine, [](CBiometric& b) { b.GetManufacturer(); }), asked(text + "1)"));
  EXPECT_THAT(TraceOf(machine, [](CBiometric& b) { b.GetDriverVersion(); }), asked(text + "2)"));
  EXPECT_THAT(TraceOf(machine, [](CBiometric& b) { b.GetErrorCode(); }),
              asked("GetDeviceULONGInfoByHardwareID(ACPI\\X, Biometric, 10)"));
  EXPECT_THAT(TraceOf(machine, [](CBiometric& b) { b.GetHardwareID(); }),
              ElementsAre("GetDeviceHardwareID(Biometric)"));
}

TEST(Fingerprint, IsAskedAboutAlsoWithAnEmptyId) {
  const auto machine = MachineWithDevices({});
  EXPECT_THAT(TraceOf(machine, [](CBiometric& b) { b.GetDeviceName(); }),
              ElementsAre("GetDeviceHardwareID(Biometric)", "GetDeviceStrInfoByHardwareID(, Biometric, 0)"));
  EXPECT_THAT(
      TraceOf(machine, [](CBiometric& b) { b.GetErrorCode(); }),
      ElementsAre("GetDeviceHardwareID(Biometric)", "GetDeviceULONGInfoByHardwareID(, Biometric, 10)"));
}

TEST(Fingerprint, LogsNothing) {
  const auto run = simulator::Use(MachineWithDevices({Reader(kReaderId)}));
  const CapturedLog log;
  CBiometric biometric;
  biometric.GetHardwareID();
  biometric.GetDeviceName();
  biometric.GetManufacturer();
  biometric.GetDriverVersion();
  biometric.GetErrorCode();
  biometric.GetSerialIODesc();
  EXPECT_THAT(log.Texts(), IsEmpty());
}

TEST(SerialIo, IsFoundByItsWordsInAnyLetterCaseInOrder) {
  const auto run = simulator::Use(MachineWithSystemDevices(
      {L"Intel(R) Serial IO I2C Host Controller", L"High precision event timer", L"SERIAL IO GPIO",
       L"serial io uart", L"Serial I O", L"SerialIO", L"Serial IO"}));
  EXPECT_THAT(CBiometric().GetSerialIODesc(),
              ElementsAre(L"Intel(R) Serial IO I2C Host Controller", L"SERIAL IO GPIO", L"serial io uart",
                          L"Serial IO"));
}

TEST(SerialIo, IsFoundByTheSecondPatternCodePointForCodePoint) {
  ASSERT_EQ(kOtherForm.size(), 7U);
  auto lower = kOtherForm;
  lower[2] = lower[3] = L'd';
  const auto run = simulator::Use(MachineWithSystemDevices({
      L"before " + kOtherForm + L" behind", lower,
      L"'?DD IO",                 // an apostrophe is no prime
      L"\u2033?DD IO",            // nor is a double prime
      L"\u2032\uFF1FDD IO",       // nor a wide question mark a question mark
      L"\u2032?DDIO",             //
      L"\u2032?DD\u00A0IO",       // nor a hard blank a blank
      L"\u2032?D\u0414 IO",       //
      L"\u2032?DD I",             //
      L"\u2032XDD IO",            // the question mark stands for itself
      kOtherForm + L" Serial IO"  // is listed once
  }));
  EXPECT_THAT(CBiometric().GetSerialIODesc(),
              ElementsAre(L"before " + kOtherForm + L" behind", lower, kOtherForm + L" Serial IO"));
}

TEST(SerialIo, KeepsDescriptionsThatOccurTwice) {
  const auto run = simulator::Use(MachineWithSystemDevices({L"Serial IO", L"Serial IO"}));
  EXPECT_THAT(CBiometric().GetSerialIODesc(), ElementsAre(L"Serial IO", L"Serial IO"));
}

TEST(SerialIo, IsNoneInAClassWithoutDevices) {
  const auto run = simulator::Use(MachineWithDevices({Reader(kReaderId)}));
  EXPECT_THAT(CBiometric().GetSerialIODesc(), IsEmpty());
}

TEST(SerialIo, GivesTheDriverVersionByDescriptionAndLogsIt) {
  const auto run = simulator::Use(MachineWithSystemDevices({L"Serial IO \u2032"}));
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetSerialIODriverVersionByDesc(L"Serial IO \u2032"), L"30.100.2105.7");
  EXPECT_EQ(CBiometric().GetSerialIODriverVersionByDesc(L"none"), L"");
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceStrInfoByDesc(Serial IO \xE2\x80\xB2, System, 2)",
                                       "GetDeviceStrInfoByDesc(none, System, 2)"));
  EXPECT_THAT(log.Texts(), ElementsAre("desc=Serial IO \xE2\x80\xB2, Version=30.100.2105.7"
                                       "(CBiometric::GetSerialIODriverVersionByDesc)",
                                       "desc=none, Version=(CBiometric::GetSerialIODriverVersionByDesc)"));
}

TEST(SystemDevice, GivesItsProblemByDescriptionAndLogsIt) {
  auto machine = MachineWithSystemDevices({L"Serial IO"});
  machine.devices->front().problem_code = 28;
  const auto run = simulator::Use(machine);
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetSystemDeviceErrorCodeByDesc(L"Serial IO"), 28U);
  EXPECT_EQ(CBiometric().GetSystemDeviceErrorCodeByDesc(L"none"), kAbsentProblem);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceULONGInfoByDesc(Serial IO, System, 10)",
                                       "GetDeviceULONGInfoByDesc(none, System, 10)"));
  EXPECT_THAT(log.Texts(),
              ElementsAre("desc=Serial IO, uErrorCode=28(CBiometric::GetSystemDeviceErrorCodeByDesc)",
                          "desc=none, uErrorCode=45(CBiometric::GetSystemDeviceErrorCodeByDesc)"));
}

TEST(SystemDevice, IsNotFoundByItsHardwareIdWhichIsTakenForADescription) {
  const auto run = simulator::Use(MachineWithDevices({SystemDevice(L"Serial IO", "ACPI\\INT34C5")}));
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetSystemDeviceErrorCodeByHardId(L"ACPI\\INT34C5"), kAbsentProblem);
  EXPECT_EQ(CBiometric().GetSystemDeviceErrorCodeByHardId(L"Serial IO"), 0U);
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceULONGInfoByDesc(ACPI\\INT34C5, System, 10)",
                                       "GetDeviceULONGInfoByDesc(Serial IO, System, 10)"));
  EXPECT_THAT(
      log.Texts(),
      ElementsAre("strHardId=ACPI\\INT34C5, uErrorCode=45(CBiometric::GetSystemDeviceErrorCodeByHardId)",
                  "strHardId=Serial IO, uErrorCode=0(CBiometric::GetSystemDeviceErrorCodeByHardId)"));
}

TEST(ManagementEngine, IsTheFirstWithItsWordsInAnyLetterCase) {
  const auto run = simulator::Use(MachineWithSystemDevices(
      {L"Management Engine", L"MANAGEMENT ENGINE INTERFACE #1", L"Intel(R) Management Engine Interface #2"}));
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetMEIDesc(), L"MANAGEMENT ENGINE INTERFACE #1");
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceDesc(System)"));
  EXPECT_THAT(log.Texts(), ElementsAre("MeiDesc=MANAGEMENT ENGINE INTERFACE #1(CBiometric::GetMEIDesc)"));
}

TEST(ManagementEngine, IsEmptyWhereThereIsNone) {
  const auto run = simulator::Use(MachineWithSystemDevices({L"Serial IO"}));
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetMEIDesc(), L"");
  EXPECT_THAT(log.Texts(), ElementsAre("MeiDesc=(CBiometric::GetMEIDesc)"));
}

TEST(SoftwareGuard, GivesTheIdOfTheFirstWithItsWordsInAnyLetterCase) {
  const auto run = simulator::Use(
      MachineWithDevices({SystemDevice(L"Software Guard Extensions", "ACPI\\NOT_IT"),
                          SystemDevice(L"Intel(R) software guard EXTENSIONS device", "ACPI\\INT0E0C"),
                          SystemDevice(L"Software Guard Extensions Device", "ACPI\\SECOND")}));
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetSGXHardId(), L"ACPI\\INT0E0C");
  EXPECT_THAT(run.Trace(),
              ElementsAre("GetDeviceDesc(System)",
                          "GetDeviceStrInfoByDesc(Intel(R) software guard EXTENSIONS device, System, 3)"));
  EXPECT_THAT(log.Texts(), ElementsAre("SGXDesc=Intel(R) software guard EXTENSIONS device, "
                                       "SGXHardId=ACPI\\INT0E0C(CBiometric::GetSGXHardId)"));
}

TEST(SoftwareGuard, IsEmptyWithoutAFurtherQuestionWhereThereIsNone) {
  const auto run = simulator::Use(MachineWithSystemDevices({L"Serial IO"}));
  const CapturedLog log;
  EXPECT_EQ(CBiometric().GetSGXHardId(), L"");
  EXPECT_THAT(run.Trace(), ElementsAre("GetDeviceDesc(System)"));
  EXPECT_THAT(log.Texts(), ElementsAre("SGXDesc=, SGXHardId=(CBiometric::GetSGXHardId)"));
}

TEST(SystemDevice, IsLoggedAtDebugLevelFromTheOperationItself) {
  const auto run = simulator::Use(MachineWithSystemDevices({L"Serial IO"}));
  CapturedLog log;
  CBiometric biometric;
  biometric.GetSerialIODriverVersionByDesc(L"x");
  biometric.GetSystemDeviceErrorCodeByDesc(L"x");
  biometric.GetSystemDeviceErrorCodeByHardId(L"x");
  biometric.GetMEIDesc();
  biometric.GetSGXHardId();
  std::vector<std::string> functions;
  for (const auto& line : log.Lines()) {
    EXPECT_EQ(line.level, "DEBUG");
    EXPECT_THAT(line.file, EndsWith("src/devices/biometric.cpp"));
    functions.push_back(line.function);
  }
  EXPECT_THAT(functions, ElementsAre("CBiometric::GetSerialIODriverVersionByDesc",
                                     "CBiometric::GetSystemDeviceErrorCodeByDesc",
                                     "CBiometric::GetSystemDeviceErrorCodeByHardId", "CBiometric::GetMEIDesc",
                                     "CBiometric::GetSGXHardId"));
  log.DisableDebug();
  biometric.GetMEIDesc();
  EXPECT_EQ(log.Lines().size(), 5U);
}

TEST(SystemDevice, IsFoundByItsWordsInEveryLocaleOfTheProcess) {
  const auto run = simulator::Use(MachineWithSystemDevices({L"SERIAL IO", L"MANAGEMENT ENGINE INTERFACE"}));
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* const locale : {"C", "C.UTF-8", "tr_TR.UTF-8", "POSIX"}) {
    std::setlocale(LC_ALL, locale);  // one that this machine lacks changes nothing
    EXPECT_THAT(CBiometric().GetSerialIODesc(), ElementsAre(L"SERIAL IO")) << locale;
    EXPECT_EQ(CBiometric().GetMEIDesc(), L"MANAGEMENT ENGINE INTERFACE") << locale;
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(SystemDevice, IsAskedForAgainEachTime) {
  auto run = simulator::Use(MachineWithSystemDevices({}));
  CBiometric biometric;
  EXPECT_EQ(biometric.GetMEIDesc(), L"");
  run.machine().devices->push_back(SystemDevice(L"Management Engine Interface"));
  EXPECT_EQ(biometric.GetMEIDesc(), L"Management Engine Interface");
}

TEST(SystemDevice, GivesNoCodeOfAWorkingDeviceWhenAskingThrows) {
  const NoLogger none;
  auto run = simulator::Use(MachineWithDevices({Reader(kReaderId), SystemDevice(L"Serial IO")}));
  run.Inject(Fault::kThrow, 0, true);
  CBiometric biometric;
  EXPECT_EQ(biometric.GetErrorCode(), 0xFFFFFFFFU);
  EXPECT_EQ(biometric.GetSystemDeviceErrorCodeByDesc(L"Serial IO"), 0xFFFFFFFFU);
  EXPECT_EQ(biometric.GetSystemDeviceErrorCodeByHardId(L"Serial IO"), 0xFFFFFFFFU);
  EXPECT_EQ(biometric.GetHardwareID(), L"");
  EXPECT_EQ(biometric.GetDeviceName(), L"");
  EXPECT_THAT(biometric.GetSerialIODesc(), IsEmpty());
  EXPECT_EQ(biometric.GetSerialIODriverVersionByDesc(L"Serial IO"), L"");
  EXPECT_EQ(biometric.GetMEIDesc(), L"");
  EXPECT_EQ(biometric.GetSGXHardId(), L"");
}

}  // namespace
