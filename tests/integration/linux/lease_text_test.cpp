#include "platform/linux/lease_text.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/linux/config_text.h"

namespace velmora::os {
namespace {

constexpr const char* kLeases = R"(# a comment
default-duid "\000\001\000\001;{}";
lease {
  interface "eth0";
  fixed-address 192.0.2.50;
  option dhcp-server-identifier 192.0.2.1;
  renew 4 2024/02/29 10:00:00;
  expire 4 2024/02/29 13:07:00;
}
lease {
  interface "wlan0";
  fixed-address 10.0.0.9;
  expire never;
}
lease {
  interface "eth0";
  fixed-address 192.0.2.51;
  option host-name "a } name; {";
  expire epoch 1709300000; # Fri Mar  1 13:33:20 2024
}
)";

TEST(ClientLeases, TheLatestOfTheInterfaceCounts) {
  const auto lease = FindClientLease(kLeases, "eth0");
  ASSERT_TRUE(lease);
  EXPECT_EQ(TextOf(lease->address), "192.0.2.51");
  EXPECT_EQ(lease->expires, 1709300000);
  EXPECT_EQ(lease->server, "");
  const auto endless = FindClientLease(kLeases, "wlan0");
  ASSERT_TRUE(endless);
  EXPECT_EQ(endless->expires, std::numeric_limits<std::int64_t>::max());
  EXPECT_FALSE(FindClientLease(kLeases, "eth"));
}

TEST(ClientLeases, TellServerAndEnd) {
  const auto lease = FindClientLease(
      "lease { fixed-address 192.0.2.50;\noption dhcp-server-identifier 192.0.2.1;"
      "expire 4 2024/02/29 13:07:00; }",
      "eth0");
  ASSERT_TRUE(lease) << "a block that names no interface is of any";
  EXPECT_EQ(lease->server, "192.0.2.1");
  EXPECT_EQ(lease->expires, 1709212020);
}

TEST(ClientLeases, ThatAreNotWholeDoNotCount) {
  for (const char* text :
       {"", "lease {", "lease { fixed-address 192.0.2.50;", "lease { fixed-address 192.0.2.; }", "lease { }",
        "}}}lease", "pool { lease { fixed-address 192.0.2.50; } }",
        "lease { interface \"eth0; fixed-address 192.0.2.50; }"}) {
    EXPECT_FALSE(FindClientLease(text, "eth0")) << text;
  }
}

TEST(LeaseTimes, AreDatesAsTheCalendarHasThem) {
  EXPECT_EQ(ParseLeaseTime("1970/01/01 00:00:00"), 0);
  EXPECT_EQ(ParseLeaseTime("2024/02/29 13:07:00"), 1709212020);
  for (const char* text :
       {"", "2023/02/29 00:00:00", "2024/13/01 00:00:00", "2024/02/29 24:00:00", "2024/02/29 13:07",
        "2024/02/29 13:07:00 ", "2024-02-29 13:07:00", "-024/02/29 13:07:00"}) {
    EXPECT_FALSE(ParseLeaseTime(text)) << text;
  }
}

TEST(ServerReplies, HoldTheAddressAtItsPlace) {
  std::vector<std::uint8_t> reply(240, 0);
  reply[0] = 2;
  reply[16] = 192;
  reply[18] = 2;
  reply[19] = 50;
  const std::uint8_t mark[] = {0x63, 0x82, 0x53, 0x63};
  std::copy(std::begin(mark), std::end(mark), reply.begin() + 236);
  const auto lease = ParseReply(reply);
  ASSERT_TRUE(lease);
  EXPECT_EQ(TextOf(lease->address), "192.0.2.50");
  EXPECT_FALSE(ParseReply(Bytes(reply).first(239)));
  reply[236] = 0;
  EXPECT_FALSE(ParseReply(reply));
}

TEST(ConfigTexts, GiveTheLastValueOfAKey) {
  EXPECT_EQ(KeyValue("A=1\nB=2\nA=3\n", "A"), "3");
  EXPECT_EQ(KeyValue("# A=1\n;A=2\n  A = \"3 4\" \r\n", "A"), "3 4");
  EXPECT_EQ(KeyValue("AB=1\n=2\nA\n", "A"), "");
  EXPECT_EQ(KeyValue("A='", "A"), "'");
}

TEST(ConfigTexts, KeepSectionsApart) {
  const char* text = "Key=outside\n[One]\nKey=1\n[Two]\nKey=2\n[One]\nOther=3\n";
  EXPECT_EQ(SectionValue(text, "One", "Key"), "1");
  EXPECT_EQ(SectionValue(text, "Two", "Key"), "2");
  EXPECT_EQ(SectionValue(text, "One", "Other"), "3");
  EXPECT_EQ(SectionValue(text, "", "Key"), "");
  EXPECT_EQ(SectionValue("[", "", "Key"), "");
}

}  // namespace
}  // namespace velmora::os
