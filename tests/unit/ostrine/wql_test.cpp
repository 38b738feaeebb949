#include "ostrine/common/wql.h"

#include <gtest/gtest.h>

namespace ostrine {
namespace {

using RecordList = std::vector<WqlRecord>;

WqlRow RowOf(const WqlRecord& record) {
  return [&record](std::wstring_view property) { return FindProperty(record, property); };
}

WqlTable TableOf(const RecordList& records) {
  return [&records](const WqlVisitor& visit) {
    for (const WqlRecord& record : records) {
      if (!visit(RowOf(record))) return;
    }
  };
}

/// What a caller of the whole reader sees: the text of the selected property, empty for no row and no query.
std::wstring Select(const RecordList& records, std::wstring_view text) {
  const auto query = ParseWql(text);
  return query ? TextOf(SelectFirst(*query, TableOf(records))) : std::wstring();
}

const RecordList& Processes() {
  static const RecordList records = {
      {{L"Caption", L"System"}, {L"ProcessId", std::uint64_t{4}}, {L"ExecutablePath", WqlValue{}}},
      {{L"Caption", L"svchost.exe"},
       {L"ProcessId", std::uint64_t{812}},
       {L"ExecutablePath", L"C:\\Windows\\System32\\svchost.exe"}},
      {{L"Caption", L"svchost.exe"}, {L"ProcessId", std::uint64_t{944}}},
      {{L"Caption", L"unsecapp.exe"},
       {L"ProcessId", std::uint64_t{5120}},
       {L"ExecutablePath", L"C:\\Windows\\system32\\wbem\\unsecapp.exe"}},
  };
  return records;
}

const RecordList& Services() {
  static const RecordList records = {
      {{L"Name", L"Audiosrv"}, {L"State", L"Running"}},
      {{L"Name", L"WpnService"}, {L"State", L"Running"}},
      {{L"Name", L"WpnUserService_4a1f2"}, {L"State", L"Stopped"}},
      {{L"Name", L"WpnUserService_9bb"}, {L"State", L"Running"}},
  };
  return records;
}

const RecordList& Adapters() {
  static const RecordList records = {
      {{L"Name", L"Ethernet"}, {L"MACAddress", WqlValue{}}, {L"GUID", L"{1}"}},
      {{L"Name", L"Ethernet"},
       {L"MACAddress", L"00:11:22:33:44:55"},
       {L"GUID", L"{2}"},
       {L"AdapterType", L"Ethernet 802.3"}},
  };
  return records;
}

TEST(WqlReader, TakesAQueryApart) {
  const auto query = ParseWql(L"SELECT GUID FROM Win32_NetworkAdapter WHERE Name='Wi-Fi' AND Index <> 7");
  ASSERT_TRUE(query);
  EXPECT_EQ(query->property, L"GUID");
  EXPECT_EQ(query->class_name, L"Win32_NetworkAdapter");
  ASSERT_EQ(query->conditions.size(), 2u);
  EXPECT_EQ(query->conditions[0].property, L"Name");
  EXPECT_EQ(query->conditions[0].comparison, WqlOperator::kEqual);
  EXPECT_EQ(query->conditions[0].literal, WqlValue(L"Wi-Fi"));
  EXPECT_EQ(query->conditions[1].comparison, WqlOperator::kNotEqual);
  EXPECT_EQ(query->conditions[1].literal, WqlValue(std::uint64_t{7}));
}

TEST(WqlReader, FindsTheProcessIdOfAProcess) {
  const std::wstring query = L"SELECT ProcessId FROM Win32_Process WHERE Caption='unsecapp.exe'";
  EXPECT_EQ(NumberOf(SelectFirst(*ParseWql(query), TableOf(Processes()))), 5120u);
}

TEST(WqlReader, AnswersTheFirstOfSeveralProcesses) {
  EXPECT_EQ(Select(Processes(), L"SELECT ProcessId FROM Win32_Process WHERE Caption='svchost.exe'"), L"812");
}

TEST(WqlReader, FindsTheCaptionOfAProcessInEitherCase) {
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE Caption='SVCHOST.EXE'"),
            L"svchost.exe");
}

TEST(WqlReader, FindsTheExecutableOfAProcess) {
  EXPECT_EQ(Select(Processes(), L"SELECT ExecutablePath FROM Win32_Process WHERE Caption='unsecapp.exe'"),
            L"C:\\Windows\\system32\\wbem\\unsecapp.exe");
}

TEST(WqlReader, AnswersTheEmptyTextWhenTheFirstRowHasNoSuchValue) {
  EXPECT_EQ(Select(Processes(), L"SELECT ExecutablePath FROM Win32_Process WHERE Caption='System'"), L"");
}

TEST(WqlReader, FindsTheStateOfAService) {
  EXPECT_EQ(Select(Services(), L"SELECT State FROM Win32_Service WHERE Name='audiosrv'"), L"Running");
}

TEST(WqlReader, AnswersAServiceNameAsItIsRegistered) {
  EXPECT_EQ(Select(Services(), L"SELECT Name FROM Win32_Service WHERE Name='AUDIOSRV'"), L"Audiosrv");
}

TEST(WqlReader, FindsTheFirstPerUserServiceByItsPattern) {
  EXPECT_EQ(Select(Services(), L"SELECT Name FROM Win32_Service Where name like 'WpnUserService_%'"),
            L"WpnUserService_4a1f2");
}

TEST(WqlReader, FindsTheKindOfConverterOfADisplayAdapter) {
  const RecordList cards = {{{L"Caption", L"Intel(R) UHD Graphics"}, {L"AdapterDACType", L"Internal"}}};
  EXPECT_EQ(
      Select(cards,
             L"SELECT AdapterDACType FROM Win32_VideoController WHERE Caption ='Intel(R) UHD Graphics'"),
      L"Internal");
}

TEST(WqlReader, SkipsAdaptersWithoutAnAddress) {
  EXPECT_EQ(
      Select(Adapters(),
             L"SELECT MACAddress FROM Win32_NetworkAdapter WHERE MACAddress IS NOT NULL and Name='Ethernet'"),
      L"00:11:22:33:44:55");
}

TEST(WqlReader, FindsIdentifierAndTypeOfAnAdapter) {
  EXPECT_EQ(Select(Adapters(), L"SELECT GUID FROM Win32_NetworkAdapter WHERE Name='Ethernet'"), L"{1}");
  EXPECT_EQ(Select(Adapters(), L"SELECT AdapterType FROM Win32_NetworkAdapter WHERE Name='Ethernet'"), L"");
}

TEST(WqlReader, FindsTheSignedUsbDriverOfTheBluetoothClass) {
  const RecordList drivers = {
      {{L"DeviceName", L"USB hub"}, {L"HardwareID", L"USB\\ROOT_HUB30"}, {L"DeviceClass", L"USB"}},
      {{L"DeviceName", L"Mouse"}, {L"HardwareID", L"BTHLE\\Dev_1"}, {L"DeviceClass", L"BLUETOOTH"}},
      {{L"DeviceName", L"Radio"}, {L"HardwareID", L"USB\\VID_8087&PID_0026"}, {L"DeviceClass", L"Bluetooth"}},
  };
  EXPECT_EQ(
      Select(drivers,
             L"SELECT DeviceName FROM Win32_PnPSignedDriver WHERE HardWareID like 'USB%' and DeviceClass = "
             L"'BLUETOOTH'"),
      L"Radio");
}

TEST(WqlReader, AnswersNothingWhenNoRowMatches) {
  EXPECT_EQ(Select(Services(), L"SELECT State FROM Win32_Service WHERE Name='absent'"), L"");
}

TEST(WqlReader, SelectsTheFirstRowWhenThereIsNoCondition) {
  EXPECT_EQ(Select(Services(), L"SELECT Name FROM Win32_Service"), L"Audiosrv");
}

TEST(WqlReader, IsNotWidenedByANameThatBreaksOutOfItsQuotes) {
  for (const wchar_t* name :
       {L"zz' OR Name LIKE '%", L"zz' OR '1'='1", L"' OR Name IS NOT NULL OR Name='", L"zz'; DROP",
        L"zz' or name<>'", L"' AND Name LIKE '%",
        L"x' UNION SELECT Name FROM Win32_Service WHERE Name LIKE '%", L"\\' OR Name LIKE \\'%", L"%",
        L"_udiosrv", L"zz')) OR ((Name LIKE '%", L"''", L"'", L"\\", L"\\'"}) {
    const std::wstring query = std::wstring(L"SELECT Name FROM Win32_Service WHERE Name='") + name + L"'";
    EXPECT_EQ(Select(Services(), query), L"") << testing::PrintToString(query);
  }
}

TEST(WqlReader, CanOnlyBeNarrowedByAFurtherCondition) {
  EXPECT_EQ(Select(Services(), L"SELECT State FROM Win32_Service WHERE Name='Audiosrv' AND State<>'Running'"),
            L"");
}

TEST(WqlReader, RejectsWhatIsNotInTheGrammar) {
  for (const wchar_t* text : {L"",
                              L" ",
                              L"SELECT",
                              L"SELECT a",
                              L"SELECT a FROM",
                              L"SELECT * FROM b",
                              L"SELECT a, c FROM b",
                              L"SELECT a FROM b;",
                              L"SELECT a FROM b c",
                              L"SELECT a FROM b WHERE",
                              L"SELECT a FROM b WHERE a",
                              L"SELECT a FROM b WHERE a=",
                              L"SELECT a FROM b WHERE a='x",
                              L"SELECT a FROM b WHERE a=\"x\"",
                              L"SELECT a FROM b WHERE a='x' AND",
                              L"SELECT a FROM b WHERE a='x' OR a='y'",
                              L"SELECT a FROM b WHERE NOT a='x'",
                              L"SELECT a FROM b WHERE (a='x')",
                              L"SELECT a FROM b WHERE a='x''y'",
                              L"SELECT a FROM b WHERE a='x\\y'",
                              L"SELECT a FROM b WHERE a=-1",
                              L"SELECT a FROM b WHERE a=1x",
                              L"SELECT a FROM b WHERE a=18446744073709551616",
                              L"SELECT a FROM b WHERE a > 1",
                              L"SELECT a FROM b WHERE a < > 1",
                              L"SELECT a FROM b WHERE a = NULL",
                              L"SELECT a FROM b WHERE a IS 1",
                              L"SELECT a FROM b WHERE a IS NOT 1",
                              L"SELECT a FROM b WHERE a LIKE 1",
                              L"SELECT a FROM b WHERE a LIKE '[ab]%'",
                              L"SELECT a FROM b WHERE 'x'=a",
                              L"SELECTa FROM b",
                              L"SELECT aFROM b",
                              L"SELECT 1a FROM b",
                              L"SELECT from FROM b",
                              L"SELECT a FROM b WHERE and = 1"}) {
    EXPECT_FALSE(ParseWql(text)) << testing::PrintToString(std::wstring(text));
  }
}

TEST(WqlReader, RejectsEveryQueryThatEndsEarlyInsideItsConditions) {
  const std::wstring whole = L"SELECT a FROM b WHERE a IS NOT NULL AND c LIKE 'x' AND d = 'y'";
  ASSERT_TRUE(ParseWql(whole));
  const std::size_t first = whole.find(L"NULL") + 4;
  const std::size_t second = whole.find(L"'x'") + 3;
  for (std::size_t length = whole.find(L"WHERE") + 1; length < whole.size(); ++length) {
    if (whole[length - 1] == L' ' && (length - 1 == first || length - 1 == second)) continue;
    if (length == first || length == second) continue;
    EXPECT_FALSE(ParseWql(whole.substr(0, length))) << length;
  }
}

TEST(WqlReader, AcceptsAnySpacingAndAnyCaseOfKeywords) {
  EXPECT_TRUE(ParseWql(L"\t select\r\na\tfrom b where a='x'and c LIKE'%'And d is\nnot null \r\n"));
  EXPECT_TRUE(ParseWql(L"SELECT __Path FROM _b9 WHERE a<>0"));
}

TEST(WqlReader, ReadsABackslashBeforeABackslashOrAQuoteAsThatCharacter) {
  const auto query = ParseWql(L"SELECT a FROM b WHERE a='C:\\\\x\\'s \\\"y\\\"'");
  ASSERT_TRUE(query);
  EXPECT_EQ(query->conditions[0].literal, WqlValue(L"C:\\x's \"y\""));
}

TEST(WqlReader, ReadsTheLargestNumber) {
  const auto query = ParseWql(L"SELECT a FROM b WHERE a=18446744073709551615");
  ASSERT_TRUE(query);
  EXPECT_EQ(query->conditions[0].literal, WqlValue(~std::uint64_t{0}));
}

TEST(WqlReader, ReadsALongNameWithZerosInIt) {
  std::wstring name(65536, L'\0');
  name[5] = L'%';
  const auto query = ParseWql(L"SELECT a FROM b WHERE a LIKE '" + name + L"'");
  ASSERT_TRUE(query);
  EXPECT_EQ(query->conditions[0].literal, WqlValue(name));
  EXPECT_EQ(Select({{{L"a", name}}}, L"SELECT a FROM b WHERE a='" + name + L"'"), name);
  EXPECT_EQ(Select({{{L"a", L""}}}, L"SELECT a FROM b WHERE a='" + name + L"'"), L"");
}

TEST(WqlReader, RejectsAZeroOutsideAText) {
  EXPECT_FALSE(ParseWql(std::wstring_view(L"SELECT a FROM b\0", 16)));
  EXPECT_FALSE(ParseWql(std::wstring_view(L"SELECT\0a FROM b", 15)));
}

TEST(WqlReader, ReadsManyConditions) {
  std::wstring text = L"SELECT a FROM b WHERE a=1";
  for (int i = 0; i < 10000; ++i) text += L" AND a=1";
  const auto query = ParseWql(text);
  ASSERT_TRUE(query);
  EXPECT_EQ(query->conditions.size(), 10001u);
}

TEST(WqlComparison, HoldsForNumbersByValue) {
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE ProcessId = 0812"), L"svchost.exe");
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE ProcessId <> 4"), L"svchost.exe");
}

TEST(WqlComparison, NeverHoldsBetweenATextAndANumber) {
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE ProcessId = '4'"), L"");
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE ProcessId <> '4'"), L"");
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE ProcessId LIKE '%'"), L"");
  EXPECT_EQ(Select(Processes(), L"SELECT Caption FROM Win32_Process WHERE Caption <> 4"), L"");
}

TEST(WqlComparison, NeverHoldsForNullButIsNullDoes) {
  const RecordList records = {{{L"a", WqlValue{}}, {L"b", L"row"}}};
  for (const wchar_t* condition : {L"a=''", L"a<>'x'", L"a=0", L"a<>1", L"a LIKE '%'", L"a IS NOT NULL"}) {
    EXPECT_EQ(Select(records, std::wstring(L"SELECT b FROM t WHERE ") + condition), L"")
        << testing::PrintToString(std::wstring(condition));
  }
  EXPECT_EQ(Select(records, L"SELECT b FROM t WHERE a IS NULL"), L"row");
  EXPECT_EQ(Select(records, L"SELECT b FROM t WHERE unknown IS NULL"), L"row");
}

TEST(WqlComparison, TakesTheEmptyTextAsAValue) {
  EXPECT_EQ(
      Select({{{L"a", L""}, {L"b", L"row"}}}, L"SELECT b FROM t WHERE a IS NOT NULL AND a='' AND a LIKE '%'"),
      L"row");
}

TEST(WqlTables, AreLeftAtTheFirstMatch) {
  int rows_read = 0;
  const WqlTable endless = [&](const WqlVisitor& visit) {
    const WqlRow row = [&](std::wstring_view) { return WqlValue(static_cast<std::uint64_t>(rows_read)); };
    while (visit(row)) ++rows_read;
  };
  EXPECT_EQ(NumberOf(SelectFirst(*ParseWql(L"SELECT a FROM b WHERE a=3"), endless)), 3u);
  EXPECT_EQ(rows_read, 3);
}

TEST(WqlTables, MayGoOnAfterTheyWereToldToStop) {
  const WqlTable stubborn = [](const WqlVisitor& visit) {
    for (const std::uint64_t value : {1u, 2u, 3u}) visit([&](std::wstring_view) { return WqlValue(value); });
  };
  EXPECT_EQ(NumberOf(SelectFirst(*ParseWql(L"SELECT a FROM b"), stubborn)), 1u);
}

TEST(WqlTables, AreNotAskedForPropertiesBehindAFailedCondition) {
  std::vector<std::wstring> asked;
  const WqlRow row = [&](std::wstring_view property) {
    asked.emplace_back(property);
    return WqlValue(L"x");
  };
  EXPECT_FALSE(MatchesConditions(*ParseWql(L"SELECT a FROM t WHERE b='y' AND c='x'"), row));
  EXPECT_EQ(asked, std::vector<std::wstring>{L"b"});
}

TEST(WqlValues, TurnIntoTextAndIntoNumbersOf32Bits) {
  EXPECT_EQ(TextOf(WqlValue{}), L"");
  EXPECT_EQ(TextOf(WqlValue(L"x")), L"x");
  EXPECT_EQ(TextOf(WqlValue(~std::uint64_t{0})), L"18446744073709551615");
  EXPECT_EQ(NumberOf(WqlValue(std::uint64_t{0xFFFFFFFF})), 0xFFFFFFFFu);
  EXPECT_EQ(NumberOf(WqlValue(std::uint64_t{0x100000000})), 0u);
  EXPECT_EQ(NumberOf(WqlValue(L"12")), 0u);
  EXPECT_EQ(NumberOf(WqlValue{}), 0u);
}

}  // namespace
}  // namespace ostrine
