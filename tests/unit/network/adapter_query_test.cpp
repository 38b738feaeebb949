#include "network/adapter_query.h"

#include <gtest/gtest.h>

namespace {

using namespace velmora::network;

TEST(AdapterQuery, EndsInTheNameBetweenItsQuotes) {
  EXPECT_EQ(QueryFor(kAskMacAddress, L"Intel(R) Wi-Fi 6 AX201 160MHz"),
            L"SELECT MACAddress FROM Win32_NetworkAdapter WHERE MACAddress IS NOT NULL and "
            L"Name='Intel(R) Wi-Fi 6 AX201 160MHz'");
  EXPECT_EQ(QueryFor(kAskGuid, L"Card"), L"SELECT GUID FROM Win32_NetworkAdapter WHERE Name='Card'");
  EXPECT_EQ(QueryFor(kAskType, L"Card"), L"SELECT AdapterType FROM Win32_NetworkAdapter WHERE Name='Card'");
}

TEST(AdapterQuery, AsksForThePropertyThatItSelects) {
  EXPECT_STREQ(kAskMacAddress.property, L"MACAddress");
  EXPECT_STREQ(kAskGuid.property, L"GUID");
  EXPECT_STREQ(kAskType.property, L"AdapterType");
}

TEST(AdapterQuery, HasTheNameAsItIs) {
  EXPECT_EQ(QueryFor(kAskGuid, L""), L"SELECT GUID FROM Win32_NetworkAdapter WHERE Name=''");
  EXPECT_EQ(QueryFor(kAskGuid, L"a\\b%_\"#2"),
            L"SELECT GUID FROM Win32_NetworkAdapter WHERE Name='a\\b%_\"#2'");
}

TEST(AdapterQuery, IsNotMadeOfANameThatWouldChangeIt) {
  EXPECT_EQ(QueryFor(kAskGuid, L"Anybody's card"), std::nullopt);
  EXPECT_EQ(QueryFor(kAskGuid, L"x' or Name='y"), std::nullopt);
  EXPECT_EQ(QueryFor(kAskGuid, L"'"), std::nullopt);
}

}  // namespace
