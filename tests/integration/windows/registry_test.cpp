#include "platform/os/registry.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace velmora::os {
namespace {

constexpr wchar_t kPath[] = L"Software\\VelmoraTest";

class Registry : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::RegCreateKeyW(HKEY_LOCAL_MACHINE, kPath, &written_), ERROR_SUCCESS);
    ASSERT_EQ(RegOpenKeyExW(LocalMachine(), kPath, 0, kKeyRead, key_), 0u);
  }
  void TearDown() override {
    EXPECT_EQ(RegCloseKey(key_), 0u);
    ::RegCloseKey(written_);
    ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, kPath);
  }
  void Write(const wchar_t* name, DWORD type, const void* data, std::size_t size) {
    ASSERT_EQ(
        ::RegSetValueExW(written_, name, 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)),
        ERROR_SUCCESS);
  }

  HKEY written_ = nullptr;
  RegistryKey key_ = nullptr;
};

TEST_F(Registry, GivesValuesAsTheyAreStored) {
  const DWORD number = 9;
  Write(L"Number", REG_DWORD, &number, sizeof number);
  Write(L"Text", REG_SZ, L"abcd", 3 * sizeof(wchar_t));  // without a zero
  std::array<unsigned char, 16> data{};
  std::uint32_t type = 0;
  std::uint32_t size = data.size();
  EXPECT_EQ(RegQueryValueExW(key_, L"Number", &type, data.data(), size), 0u);
  EXPECT_EQ(type, 4u);
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(data[0], 9);
  size = data.size();
  EXPECT_EQ(RegQueryValueExW(key_, L"Text", nullptr, data.data(), size), 0u);
  EXPECT_EQ(size, 6u);
  EXPECT_EQ(std::memcmp(data.data(), L"abc", 6), 0);
}

TEST_F(Registry, TellsTheSizeOfAValueThatDoesNotFit) {
  Write(L"Odd", REG_SZ, "abcdefghi", 9);
  std::array<unsigned char, 16> data{};
  data.fill(0xEE);
  std::uint32_t size = 8;
  EXPECT_EQ(RegQueryValueExW(key_, L"Odd", nullptr, data.data(), size), 234u);
  EXPECT_EQ(size, 9u);
  EXPECT_EQ(data[0], 0xEE);
  size = 9;
  EXPECT_EQ(RegQueryValueExW(key_, L"Odd", nullptr, data.data(), size), 0u);
  EXPECT_EQ(data[8], 'i');
}

TEST_F(Registry, HasNoValueOrKeyThatIsMissing) {
  std::uint32_t size = 0;
  EXPECT_EQ(RegQueryValueExW(key_, L"NoSuch", nullptr, nullptr, size), 2u);
  RegistryKey other = key_;
  EXPECT_EQ(RegOpenKeyExW(LocalMachine(), L"Software\\VelmoraTest\\NoSuch", 0, kKeyRead, other), 2u);
  EXPECT_EQ(other, key_) << "the key was written although there is none";
}

}  // namespace
}  // namespace velmora::os
