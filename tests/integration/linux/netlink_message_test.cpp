#include "platform/linux/netlink_message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "platform/linux/network_state.h"
#include "platform/linux/wifi_scan.h"
#include "tests/integration/linux/netlink_bytes.h"

namespace velmora::os {
namespace {

using test::Attributes;
using test::operator+;
using test::ByteVector;
using testing::ElementsAre;

TEST(NetlinkMessages, AreTakenOneByOne) {
  const ByteVector bytes = test::Message(20, std::uint32_t{7}) + test::Message(21, std::uint8_t{1});
  Bytes rest = bytes;
  const auto first = TakeMessage(rest);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->type, 20);
  EXPECT_THAT(first->payload, ElementsAre(7, 0, 0, 0));
  const auto second = TakeMessage(rest);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->type, 21);
  EXPECT_FALSE(TakeMessage(rest));
}

TEST(NetlinkMessages, EndWhereALengthLies) {
  for (const std::uint32_t length : {0U, 15U, 21U, 0xFFFFFFFFU}) {
    ByteVector bytes = test::Message(20, std::uint32_t{7});
    std::memcpy(bytes.data(), &length, sizeof length);
    Bytes rest = bytes;
    EXPECT_FALSE(TakeMessage(rest)) << length;
    EXPECT_EQ(rest.size(), bytes.size());
  }
}

TEST(NetlinkAttributes, AreFoundByTheirTypeAndSize) {
  const Attributes attributes = Attributes().Number<std::uint32_t>(3, 77).Text(5, "eth0").Put(
      7, Attributes().Number<std::uint8_t>(1, 9));
  EXPECT_EQ(FindNumber<std::uint32_t>(attributes.Bytes(), 3), 77u);
  EXPECT_FALSE(FindNumber<std::uint16_t>(attributes.Bytes(), 3)) << "of another size";
  EXPECT_EQ(FindText(attributes.Bytes(), 5), "eth0");
  EXPECT_EQ(FindText(attributes.Bytes(), 6), "");
  const auto nested = FindAttribute(attributes.Bytes(), 7);
  ASSERT_TRUE(nested) << "the mark of nesting does not belong to the type";
  EXPECT_EQ(FindNumber<std::uint8_t>(*nested, 1), 9);
}

TEST(NetlinkAttributes, EndWhereALengthLies) {
  ByteVector bytes = Attributes().Number<std::uint32_t>(3, 77).Bytes();
  for (const std::uint16_t length : std::initializer_list<std::uint16_t>{0, 3, 9, 0xFFFF}) {
    std::memcpy(bytes.data(), &length, sizeof length);
    EXPECT_FALSE(FindAttribute(bytes, 3)) << length;
  }
}

TEST(NetlinkRequests, SayTheirLengthAndNumber) {
  NetlinkRequest request(16, Extent::kAll, std::uint32_t{0x01020304});
  request.PutNumber(3, 5);
  request.PutText(2, "nl80211");
  const ByteVector bytes = request.Encode(42);
  Bytes rest = bytes;
  const auto message = TakeMessage(rest);
  ASSERT_TRUE(message);
  EXPECT_TRUE(rest.empty());
  EXPECT_EQ(message->sequence, 42u);
  EXPECT_EQ(message->flags, 0x301) << "a request for all that there is";
  EXPECT_EQ(FindNumber<std::uint32_t>(message->payload.subspan(4), 3), 5u);
  EXPECT_EQ(FindText(message->payload.subspan(4), 2), "nl80211");
}

TEST(NetlinkParsers, ReadNothingOutsideOfBytesThatWereTamperedWith) {
  std::mt19937 random(11);
  const auto number = [&](std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
  };
  const ByteVector whole =
      test::Message(16, std::array<std::uint8_t, 16>{}, Attributes().Text(3, "eth0")) +
      test::Message(24, std::array<std::uint8_t, 12>{}, Attributes().Number<std::uint32_t>(4, 1));
  for (int i = 0; i < 20000; ++i) {
    ByteVector bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(number(whole.size() + 1)));
    for (std::size_t change = number(4); change > 0 && !bytes.empty(); --change) {
      bytes[number(bytes.size())] = static_cast<std::uint8_t>(number(256));
    }
    // An allocation of exactly this size lets the sanitizer see a step beyond it.
    const ByteVector exact(bytes);
    Bytes rest = exact;
    std::size_t taken = 0;
    while (const auto message = TakeMessage(rest)) taken += message->whole.size();
    EXPECT_LE(taken, exact.size());
    for (const auto& link : ParseLinks(exact)) EXPECT_FALSE(link.name.empty());
    for (const auto& address : ParseAddresses(exact)) EXPECT_LE(address.prefix_length, 32u);
    ParseDefaultRoutes(exact);
    ParseScan(exact, 24);
  }
}

}  // namespace
}  // namespace velmora::os
