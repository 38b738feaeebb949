#include "platform/linux/system_path.h"

#include <gtest/gtest.h>

#include <random>

namespace velmora::os {
namespace {

TEST(SystemPath, TurnsEveryBackslashIntoASlash) {
  EXPECT_EQ(SystemPath("/var/dumps\\a\\b.dmp"), "/var/dumps/a/b.dmp");
  EXPECT_EQ(SystemPath(L"/var\\\u00E9t\u00E9\\\U0001F600"), "/var/\u00E9t\u00E9/\U0001F600");
  EXPECT_EQ(SystemPath("relative\\name"), "relative/name");
}

TEST(SystemPath, KnowsTheHostsFileByItsWindowsPath) {
  EXPECT_EQ(SystemPath(L"C:\\Windows\\System32\\drivers\\etc\\hosts"), "/etc/hosts");
  EXPECT_EQ(SystemPath("c:\\WINDOWS\\system32\\DRIVERS\\etc\\HOSTS"), "/etc/hosts");
}

TEST(SystemPath, IsNothingForOtherWindowsPaths) {
  for (const char* path : {"C:\\Windows\\INF\\oem1.inf", "C:\\", "c:relative", "Z:/x", "\\\\.\\IBTRSTD",
                           "\\\\server\\share\\file", "C:\\Windows\\System32\\drivers\\etc\\hosts\\x",
                           "C:\\Windows\\INF\\..\\System32\\drivers\\etc\\hosts", ""}) {
    EXPECT_EQ(SystemPath(path), std::nullopt) << path;
  }
}

TEST(SystemPath, IsNothingForWhatIsNoText) {
  EXPECT_EQ(SystemPath(std::wstring(L"/a") + static_cast<wchar_t>(0xD800)), std::nullopt);
  EXPECT_EQ(SystemPath(std::wstring(L"/a") + static_cast<wchar_t>(0xDC7F)), std::nullopt);
  EXPECT_EQ(SystemPath(std::wstring(L"/a") + static_cast<wchar_t>(0x110000)), std::nullopt);
}

TEST(ListedFolder, StandsBeforeThePatternOfEverything) {
  EXPECT_EQ(ListedFolder("/var/dumps//*.*"), "/var/dumps");
  EXPECT_EQ(ListedFolder(L"/var\\dumps//*.*"), "/var/dumps");
  EXPECT_EQ(ListedFolder("///*.*"), "/");
}

TEST(ListedFolder, IsNeverTheRootForWantOfAName) {
  EXPECT_EQ(ListedFolder("//*.*"), std::nullopt);
  EXPECT_EQ(ListedFolder(L"//*.*"), std::nullopt);
}

TEST(ListedFolder, IsNothingForOtherPatterns) {
  for (const char* pattern : {"", "/var", "/var/*", "/var//*.dmp", "C:\\Windows\\INF//*.*"}) {
    EXPECT_EQ(ListedFolder(pattern), std::nullopt) << pattern;
  }
}

TEST(EntryName, IsGivenWithAFinalZero) {
  char narrow[4] = {'x', 'x', 'x', 'x'};
  EXPECT_TRUE(PutName("abc", narrow));
  EXPECT_STREQ(narrow, "abc");
  wchar_t wide[3];
  EXPECT_TRUE(PutName("\xC3\xA9\xE2\x82\xAC", wide));
  EXPECT_STREQ(wide, L"\u00E9\u20AC");
}

TEST(EntryName, IsRefusedWhenItDoesNotFit) {
  char narrow[4];
  EXPECT_FALSE(PutName("abcd", narrow));
  wchar_t wide[4];
  EXPECT_FALSE(PutName("abcd", wide));
}

TEST(EntryName, IsRefusedWhereItWouldReadAsAPath) {
  char narrow[20];
  wchar_t wide[20];
  EXPECT_FALSE(PutName("a\\b", narrow));
  EXPECT_FALSE(PutName("a\\b", wide));
  EXPECT_FALSE(PutName("", narrow));
}

TEST(EntryName, ComesBackAsItWasWhateverItsBytes) {
  std::mt19937 random(20240607);
  std::uniform_int_distribution<int> any_byte(1, 255);
  std::uniform_int_distribution<std::size_t> any_length(1, 12);
  for (int i = 0; i < 20000; ++i) {
    std::string name(any_length(random), 0);
    for (char& byte : name) {
      const int value = any_byte(random);
      byte = value == '\\' || value == ':' ? 'x' : static_cast<char>(value);
    }
    wchar_t wide[260];
    ASSERT_TRUE(PutName(name, wide));
    EXPECT_EQ(SystemPath(std::wstring_view(wide)), name);
  }
}

TEST(EntryName, KeepsCharactersThatLookLikeBrokenOnes) {
  wchar_t wide[20];
  ASSERT_TRUE(PutName("\xEF\xBF\xBD\xFF\xED\xB2\x80", wide));
  EXPECT_EQ(std::wstring(wide).substr(0, 2), (std::wstring{0xFFFD, 0xDCFF}));
  EXPECT_EQ(SystemPath(std::wstring_view(wide)), "\xEF\xBF\xBD\xFF\xED\xB2\x80");
}

}  // namespace
}  // namespace velmora::os
