/// What every implementation of CWMI owes, and what velmora's copying makes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <optional>

#include "tests/contract/backend.h"

namespace contract {
namespace {

const std::wstring kCim = L"ROOT\\CIMV2";
const std::wstring kFirmware = L"ROOT\\WMI";

class Wmi : public testing::Test {
 protected:
  ~Wmi() override { EXPECT_EQ(backend_->OpenConnections(), before_) << "a connection was left open"; }

  /// One query that has an answer.
  Selection AnsweredSelection() const {
    for (const auto& selection : backend_->Selections()) {
      if (!selection.text.empty()) return selection;
    }
    return {};
  }
  static std::wstring Select(CWMI& wmi, const Selection& selection) {
    return wmi.SelectStr(selection.query, selection.property);
  }

  std::unique_ptr<Backend> backend_ = Backend::SetUp();
  const std::optional<int> before_ = backend_->OpenConnections();
  const Selection answered_ = AnsweredSelection();
};

TEST_F(Wmi, AnswersWithThePropertyOfTheFirstObject) {
  ASSERT_FALSE(answered_.text.empty()) << "the backend knows no query with an answer";
  for (const auto& selection : backend_->Selections()) {
    CWMI wmi(kCim);
    EXPECT_EQ(Select(wmi, selection), selection.text);
    if (!selection.number) continue;
    EXPECT_EQ(wmi.SelectUInt(selection.query, selection.property), *selection.number);
  }
}

TEST_F(Wmi, AnswersSeveralQueriesOverOneConnection) {
  CWMI wmi(kCim);
  for (int i = 0; i < 3; ++i) {
    for (const auto& selection : backend_->Selections()) EXPECT_EQ(Select(wmi, selection), selection.text);
  }
}

TEST_F(Wmi, IsEmptyForANamespaceThatIsNotThere) {
  for (const wchar_t* name : {L"ROOT\\NOSUCH", L"", L"\\", L"ROOT\\CIMV2\\"}) {
    CWMI wmi(name);
    EXPECT_EQ(Select(wmi, answered_), L"") << "another namespace must not be asked instead";
    EXPECT_EQ(wmi.SelectUInt(answered_.query, answered_.property), 0u);
  }
}

TEST_F(Wmi, IsEmptyForAQueryThatIsNone) {
  CWMI wmi(kCim);
  const std::vector<std::wstring> broken{
      L"",
      L"SELECT",
      L"SELECT Caption FROM",
      L"Caption FROM Win32_Process",
      L"SELECT Caption FROM Win32_Process WHERE Caption='",
      L"SELECT Caption FROM Win32_Process WHERE Caption='it's'",
      L"SELECT Caption FROM Win32_Process WHERE Caption LIKE",
      answered_.query + L" '",
      std::wstring(L"SELECT\0Caption FROM Win32_Process", 33),
      L"SELECT Caption FROM Win32_Process WHERE Caption='" + std::wstring(65'536, L'x') + L"'",
      std::wstring(65'536, L'S'),
  };
  for (const auto& query : broken) {
    EXPECT_EQ(wmi.SelectStr(query, L"Caption"), L"") << query.size() << " characters";
    EXPECT_EQ(wmi.SelectUInt(query, L"ProcessId"), 0u);
  }
  EXPECT_EQ(Select(wmi, answered_), answered_.text) << "the connection answers on";
}

TEST_F(Wmi, IsEmptyForAClassOrAPropertyThatIsNotThere) {
  CWMI wmi(kCim);
  EXPECT_EQ(wmi.SelectStr(L"SELECT Name FROM Win32_NoSuchClassOfOurs", L"Name"), L"");
  EXPECT_EQ(wmi.SelectStr(answered_.query, L"NoSuchProperty"), L"");
  EXPECT_EQ(wmi.SelectStr(answered_.query, L""), L"");
  EXPECT_EQ(wmi.SelectUInt(answered_.query, L"NoSuchProperty"), 0u);
}

TEST_F(Wmi, KeepsANameThatIsNoneWithinItsQuotes) {
  CWMI wmi(kCim);
  const std::wstring query = L"SELECT Name FROM Win32_Service WHERE Name='zz\\\\nosuch%'";
  EXPECT_EQ(wmi.SelectStr(query, L"Name"), L"");
}

TEST_F(Wmi, CopiesTheFirmwaresOutput) {
  const auto expected = backend_->AnsweredFirmwareCall();
  if (!expected) GTEST_SKIP() << "this machine's firmware has no method";
  CWMI wmi(kFirmware);
  std::array<unsigned char, 256> output{};
  ASSERT_TRUE(wmi.GetOutPutUInt(expected->input, output.data(), output.size()));
  ASSERT_LE(expected->output.size(), output.size());
  EXPECT_TRUE(std::equal(expected->output.begin(), expected->output.end(), output.begin()));
}

TEST_F(Wmi, WritesNoMoreOfTheFirmwaresOutputThanFits) {
  const auto expected = backend_->AnsweredFirmwareCall();
  if (!expected) GTEST_SKIP() << "this machine's firmware has no method";
  CWMI wmi(kFirmware);
  std::array<unsigned char, 4> output{0xEE, 0xEE, 0xEE, 0xEE};
  wmi.GetOutPutUInt(expected->input, output.data(), 2);
  EXPECT_EQ(output[2], 0xEE);
  EXPECT_EQ(output[3], 0xEE);
}

TEST_F(Wmi, ReportsTheErrorOfAFirmwareCallThatFails) {
  CWMI wmi(kFirmware);
  std::array<unsigned char, 256> output{};
  EXPECT_FALSE(wmi.GetOutPutUInt(backend_->RefusedFirmwareInput(), output.data(), output.size()));
  EXPECT_NE(backend_->LastError(), 0u);
}

TEST_F(Wmi, HasNoFirmwareMethodElsewhere) {
  const auto known = backend_->AnsweredFirmwareCall();
  const std::uint64_t input = known ? known->input : backend_->RefusedFirmwareInput();
  for (const wchar_t* name : {L"ROOT\\CIMV2", L"ROOT\\NOSUCH"}) {
    CWMI wmi(name);
    std::array<unsigned char, 256> output{};
    EXPECT_FALSE(wmi.GetOutPutUInt(input, output.data(), output.size()));
    EXPECT_NE(backend_->LastError(), 0u);
  }
}

TEST_F(Wmi, SharesItsConnectionWithCopiesThatOutliveIt) {
  std::optional<CWMI> original(std::in_place, kCim);
  const auto of_one = backend_->OpenConnections();
  CWMI copy(*original);
  CWMI copy_of_copy(copy);
  EXPECT_EQ(backend_->OpenConnections(), of_one) << "a copy must not connect anew";

  original.reset();
  EXPECT_EQ(backend_->OpenConnections(), of_one) << "the copies still use it";
  EXPECT_EQ(Select(copy, answered_), answered_.text);
  EXPECT_EQ(Select(copy_of_copy, answered_), answered_.text);
}

TEST_F(Wmi, OutlivesItsCopies) {
  CWMI original(kCim);
  {
    const CWMI copy(original);
  }
  EXPECT_EQ(Select(original, answered_), answered_.text);
}

TEST_F(Wmi, GivesItsOwnConnectionUpWhenAnotherIsAssigned) {
  CWMI one(kCim);
  const auto of_one = backend_->OpenConnections();
  {
    CWMI other(kFirmware);
    other = one;
    EXPECT_EQ(backend_->OpenConnections(), of_one) << "the firmware's connection has no owner left";
    EXPECT_EQ(Select(other, answered_), answered_.text) << "the namespace comes along";
  }
  EXPECT_EQ(Select(one, answered_), answered_.text);
}

TEST_F(Wmi, StaysAsItIsWhenAssignedToItself) {
  CWMI wmi(kCim);
  const auto of_one = backend_->OpenConnections();
  const CWMI& itself = wmi;
  wmi = itself;
  EXPECT_EQ(backend_->OpenConnections(), of_one);
  EXPECT_EQ(Select(wmi, answered_), answered_.text);
}

TEST_F(Wmi, MayBeAssignedToAndFromOneThatIsNotConnected) {
  CWMI connected(kCim);
  CWMI unconnected(L"ROOT\\NOSUCH");
  CWMI copy(unconnected);
  copy = connected;
  EXPECT_EQ(Select(copy, answered_), answered_.text);
  copy = unconnected;
  EXPECT_EQ(Select(copy, answered_), L"");
}

TEST_F(Wmi, IsReleasedOnceInWhateverOrderItsOwnersGo) {
  for (int first = 0; first < 3; ++first) {
    for (const bool upwards : {true, false}) {
      std::array<std::optional<CWMI>, 3> owners;
      owners[0].emplace(kCim);
      owners[1].emplace(*owners[0]);
      owners[2].emplace(*owners[1]);
      for (int i = 0; i < 3; ++i)
        owners[static_cast<std::size_t>((first + (upwards ? i : 3 - i)) % 3)].reset();
      EXPECT_EQ(backend_->OpenConnections(), before_);
    }
  }
}

}  // namespace
}  // namespace contract
