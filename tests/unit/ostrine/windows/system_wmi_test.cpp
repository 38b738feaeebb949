/// CWMI with the system's own service, on threads that stand differently towards COM.
#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <array>
#include <optional>
#include <thread>

#include "platform/ostrine/wmi.h"
#include "tests/support/windows/resources.h"

namespace {

/// The calling thread's apartment; none when it has not entered COM.
std::optional<APTTYPE> Apartment() {
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  const HRESULT result = CoGetApartmentType(&type, &qualifier);
  return SUCCEEDED(result) ? std::optional(type) : std::nullopt;
}

std::wstring AskForThisProcess() {
  const std::wstring query =
      L"SELECT ProcessId FROM Win32_Process WHERE ProcessId=" + std::to_wstring(GetCurrentProcessId());
  return CWMI(L"ROOT\\CIMV2").SelectStr(query, L"ProcessId");
}

/// Asks twice on a new thread that has entered COM as `mode` says, or not at all.
void AskOnThread(std::optional<COINIT> mode) {
  std::thread([mode] {
    if (mode) {
      ASSERT_EQ(CoInitializeEx(nullptr, static_cast<DWORD>(*mode)), S_OK);
    }
    const auto before = Apartment();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(AskForThisProcess(), std::to_wstring(GetCurrentProcessId()));
    EXPECT_EQ(Apartment(), before);
    if (mode) CoUninitialize();
    EXPECT_EQ(Apartment(), std::nullopt) << "COM was entered and left unequally often";
  }).join();
}

TEST(SystemWmi, AnswersOnAThreadThatHasNotEnteredCom) { AskOnThread(std::nullopt); }
TEST(SystemWmi, AnswersInASingleThreadedApartment) { AskOnThread(COINIT_APARTMENTTHREADED); }
TEST(SystemWmi, AnswersInTheMultithreadedApartment) { AskOnThread(COINIT_MULTITHREADED); }

TEST(SystemWmi, LeavesComWithTheLastOfSeveralCopies) {
  std::thread([] {
    std::optional<CWMI> original(std::in_place, L"ROOT\\CIMV2");
    std::optional<CWMI> copy(*original);
    original.reset();
    EXPECT_NE(Apartment(), std::nullopt);
    copy.reset();
    EXPECT_EQ(Apartment(), std::nullopt);
  }).join();
}

TEST(SystemWmi, LeavesComAfterAConnectionThatFailed) {
  std::thread([] {
    EXPECT_EQ(CWMI(L"ROOT\\NOSUCH").SelectStr(L"SELECT Name FROM Win32_Service", L"Name"), L"");
    EXPECT_EQ(Apartment(), std::nullopt);
  }).join();
}

TEST(SystemWmi, HasNoFirmwareMethodOnAMachineWithoutOne) {
  std::array<unsigned char, 256> output{};
  for (const std::uint64_t input : {0x250105u, 0x0802u, 0x0202u}) {
    SetLastError(0);
    EXPECT_FALSE(CWMI(L"ROOT\\WMI").GetOutPutUInt(input, output.data(), output.size()));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
  }
  EXPECT_FALSE(CWMI(L"ROOT\\NOSUCH").GetOutPutUInt(0x0802, output.data(), output.size()));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
}

TEST(SystemWmi, SurvivesAQuoteWithinALiteral) {
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(L"SELECT Name FROM Win32_Service WHERE Name='it\\'s'", L"Name"),
            L"");
}

TEST(SystemWmi, KeepsNothingOfManyQueries) {
  const auto ask = [](int times) {
    for (int i = 0; i < times; ++i) {
      EXPECT_NE(CWMI(L"ROOT\\CIMV2").SelectStr(L"SELECT Name FROM Win32_BIOS", L"Name"), L"");
    }
  };
  constexpr std::size_t kTolerance = 16384;
  ask(20);
  const std::size_t bytes = windows_support::HeapBytes();
  const std::size_t handles = windows_support::HandleCount();
  ask(200);
  EXPECT_LE(windows_support::HandleCount(), handles + 2) << "the system's threads come and go";
  EXPECT_LE(windows_support::HeapBytes(), bytes + kTolerance);
}

}  // namespace
