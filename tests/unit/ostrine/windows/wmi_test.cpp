#include "platform/ostrine/wmi.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <array>
#include <optional>

#include "tests/support/windows/fake_wmi.h"
#include "tests/support/windows/resources.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using namespace windows_support;

const std::wstring kQuery = L"SELECT Caption FROM Win32_Process WHERE Caption='a'";

/// A service that answers on this thread, which is in the multithreaded apartment.
class WmiConnection : public testing::Test {
 protected:
  WmiConnection() {
    wmi_.emplace();
    wmi_->tables[L"Win32_Process"] = {
        {{L"Caption", TextProperty(L"first")}, {L"ProcessId", NumberProperty(7)}},
        {{L"Caption", TextProperty(L"second")}}};
  }
  ~WmiConnection() override {
    EXPECT_EQ(wmi_->connections, 0) << "a connection was left open";
    wmi_.reset();
    CoUninitialize();
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    EXPECT_EQ(CoGetApartmentType(&type, &qualifier), CO_E_NOTINITIALIZED) << "COM was entered once too often";
  }

  const HRESULT entered_ = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  std::optional<FakeWmi> wmi_;
};

TEST_F(WmiConnection, AnswersWithTheFirstRow) {
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(kQuery, L"Caption"), L"first");
  EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectUInt(L"SELECT ProcessId FROM Win32_Process", L"ProcessId"), 7u);
  EXPECT_EQ(wmi_->queries.front(), kQuery);
}

TEST_F(WmiConnection, TakesAPropertyNameInEitherCaseButNoOtherProperty) {
  CWMI wmi(L"ROOT\\CIMV2");
  wmi_->tables[L"Win32_Process"].front()[L"CAPTION"] = TextProperty(L"first");
  EXPECT_EQ(wmi.SelectStr(kQuery, L"CAPTION"), L"first");
  EXPECT_EQ(wmi.SelectStr(kQuery, L"ProcessId"), L"");
}

TEST_F(WmiConnection, NeverWaitsForEver) {
  wmi_->has_firmware = true;
  wmi_->tables[L"VelmoraFirmware"] = {{{L"__RELPATH", TextProperty(L"VelmoraFirmware=@")}}};
  wmi_->firmware = [](const std::wstring&) { return FakeRow{{L"OutData", BytesProperty({0})}}; };
  wmi_->calls_return_at_once = true;
  std::array<unsigned char, 256> output{};
  CWMI wmi(L"ROOT\\WMI");
  wmi.SelectStr(kQuery, L"Caption");
  EXPECT_TRUE(wmi.GetOutPutUInt(1, output.data(), output.size()));
  EXPECT_EQ(wmi_->connect_flags & WBEM_FLAG_CONNECT_USE_MAX_WAIT, WBEM_FLAG_CONNECT_USE_MAX_WAIT);
  EXPECT_EQ(wmi_->waits.size(), 4u) << "a row, the class, an instance, the call";
  EXPECT_THAT(wmi_->waits, Each(AllOf(Ge(0), Le(30'000))));
}

TEST_F(WmiConnection, SendsOnlyWhatIsAQuery) {
  CWMI wmi(L"ROOT\\CIMV2");
  for (const std::wstring& query :
       {std::wstring(), std::wstring(L"SELECT Caption FROM Win32_Process WHERE Caption='"),
        std::wstring(L"SELECT Caption FROM Win32_Process WHERE Caption='a' OR 1=1"),
        kQuery + std::wstring(1, L'\0'),
        L"SELECT Caption FROM Win32_Process WHERE Caption='" + std::wstring(1, L'\0') + L"'",
        L"SELECT Caption FROM Win32_Process WHERE Caption='" + std::wstring(70'000, L'a') + L"'"}) {
    EXPECT_EQ(wmi.SelectStr(query, L"Caption"), L"");
    EXPECT_EQ(wmi.SelectUInt(query, L"Caption"), 0u);
  }
  EXPECT_THAT(wmi_->queries, IsEmpty());
}

TEST_F(WmiConnection, ConnectsToNoNamespaceThatIsNoName) {
  for (const std::wstring& name :
       {std::wstring(), std::wstring(L"\\"), std::wstring(L"\\\\host\\ROOT\\CIMV2"),
        std::wstring(L"ROOT\\CIMV2\\"), std::wstring(L"ROOT\\CIMV2\0\\X", 13)}) {
    EXPECT_EQ(CWMI(name).SelectStr(kQuery, L"Caption"), L"");
  }
  EXPECT_EQ(wmi_->connect_flags, 0) << "the service was asked";
}

TEST_F(WmiConnection, IsEmptyWhicheverStepFailsAndHoweverItDoes) {
  for (const Step step : {Step::kCreateLocator, Step::kConnect, Step::kExecQuery, Step::kNext, Step::kGet}) {
    for (const HRESULT result : {E_FAIL, static_cast<HRESULT>(WBEM_E_ACCESS_DENIED), RPC_E_DISCONNECTED, S_OK,
                                 static_cast<HRESULT>(WBEM_S_TIMEDOUT), static_cast<HRESULT>(WBEM_S_FALSE)}) {
      wmi_->answers = {{step, result}};
      CWMI wmi(L"ROOT\\CIMV2");
      EXPECT_EQ(wmi.SelectStr(kQuery, L"Caption"), L"")
          << "step " << static_cast<int>(step) << ", " << result;
      EXPECT_EQ(wmi.SelectUInt(kQuery, L"Caption"), 0u);
    }
  }
}

TEST_F(WmiConnection, AnswersOnAfterAQueryThatFailed) {
  CWMI wmi(L"ROOT\\CIMV2");
  wmi_->answers = {{Step::kNext, static_cast<HRESULT>(WBEM_S_TIMEDOUT)}};
  EXPECT_EQ(wmi.SelectStr(kQuery, L"Caption"), L"");
  wmi_->answers.clear();
  EXPECT_EQ(wmi.SelectStr(kQuery, L"Caption"), L"first");
}

TEST_F(WmiConnection, IsSharedByCopiesAndEndsWithTheLast) {
  std::optional<CWMI> original(std::in_place, L"ROOT\\CIMV2");
  CWMI copy(*original);
  CWMI assigned(L"ROOT\\WMI");
  EXPECT_EQ(wmi_->connections, 2);
  assigned = copy;
  EXPECT_EQ(wmi_->connections, 1) << "the connection that was assigned over is still open";
  original.reset();
  EXPECT_EQ(wmi_->connections, 1);
  EXPECT_EQ(copy.SelectStr(kQuery, L"Caption"), L"first");
  EXPECT_EQ(assigned.SelectStr(kQuery, L"Caption"), L"first");
}

TEST_F(WmiConnection, KeepsTheThreadInComUntilTheLastCopyHasGone) {
  // The thread's own entry is given back here, so that only the copies hold it in COM.
  std::optional<CWMI> original(std::in_place, L"ROOT\\CIMV2");
  std::optional<CWMI> copy(*original);
  CoUninitialize();
  original.reset();
  EXPECT_EQ(copy->SelectStr(kQuery, L"Caption"), L"first");
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);  // what the fixture gives back, and the service stands in
  copy.reset();
  EXPECT_EQ(wmi_->connections, 0);
}

TEST_F(WmiConnection, KeepsNothingOfTenThousandQueries) {
  const auto ask = [&](int times) {
    for (int i = 0; i < times; ++i) {
      EXPECT_EQ(CWMI(L"ROOT\\CIMV2").SelectStr(kQuery, L"Caption"), L"first");
      wmi_->queries.clear();
      wmi_->waits.clear();
    }
  };
  constexpr std::size_t kTolerance = 4096;
  ask(1000);
  const std::size_t bytes = HeapBytes();
  const std::size_t handles = HandleCount();
  ask(10'000);
  EXPECT_EQ(wmi_->objects, 0);
  EXPECT_EQ(HandleCount(), handles);
  EXPECT_LE(HeapBytes(), bytes + kTolerance);
}

}  // namespace
