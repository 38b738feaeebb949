#include "network/address_state.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/support/naive_network.h"

namespace {

using velmora::network::ClassifyAddress;
using velmora::network::IsAddressAssigned;

constexpr bool kDhcp = true;
constexpr bool kByHand = false;

TEST(AddressState, IsReadyForAnOrdinaryAddressByDhcp) {
  EXPECT_EQ(ClassifyAddress("10.1.2.3", "10.1.2.1", kDhcp), IP_STATE_READY);
}

TEST(AddressState, IsStaticForAnOrdinaryAddressWithoutDhcp) {
  EXPECT_EQ(ClassifyAddress("10.1.2.3", "10.1.2.1", kByHand), IP_STATE_STATIC);
}

TEST(AddressState, IsUnusableForAnAddressThatTheMachineGaveItself) {
  EXPECT_EQ(ClassifyAddress("169.254.10.3", "169.254.10.1", kDhcp), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("169.254.10.3", "169.254.10.1", kByHand), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("169.253.10.3", "169.253.10.1", kDhcp), IP_STATE_READY);
  EXPECT_EQ(ClassifyAddress("168.254.10.3", "168.254.10.1", kDhcp), IP_STATE_READY);
}

TEST(AddressState, IsUnusableForFourZeros) {
  EXPECT_EQ(ClassifyAddress("0.0.0.0", "0.0.0.0", kDhcp), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("0.0.0.0", "0.0.0.0", kByHand), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("0.0.0.1", "0.0.0.0", kDhcp), IP_STATE_READY);
}

TEST(AddressState, LooksAtTheGatewayBeforeTheNumbers) {
  EXPECT_EQ(ClassifyAddress("169.254.10.3", "10.0.0.1", kDhcp), IP_STATE_OTHER_PREFIX);
  EXPECT_EQ(ClassifyAddress("0.0.0.0", "", kDhcp), IP_STATE_OTHER_PREFIX);
}

TEST(AddressState, IsAnotherPrefixWhenTheLastDotsStandAtDifferentPositions) {
  EXPECT_EQ(ClassifyAddress("192.168.1.20", "10.0.0.1", kDhcp), IP_STATE_OTHER_PREFIX);
}

TEST(AddressState, DoesNotLookAtTheGatewaysDigits) {
  EXPECT_EQ(ClassifyAddress("10.20.30.40", "10.20.99.1", kDhcp), IP_STATE_READY);
  EXPECT_EQ(ClassifyAddress("10.20.30.40", "no.ga.te.way", kDhcp), IP_STATE_READY);
}

TEST(AddressState, IsAnotherPrefixWithoutAGateway) {
  EXPECT_EQ(ClassifyAddress("10.1.2.3", "", kDhcp), IP_STATE_OTHER_PREFIX);
}

TEST(AddressState, IsAnotherPrefixForAnAddressWithoutADotOrWithItsOnlyDotInFront) {
  EXPECT_EQ(ClassifyAddress("1234567", "1234567", kDhcp), IP_STATE_OTHER_PREFIX);
  EXPECT_EQ(ClassifyAddress(".123456", ".123456", kDhcp), IP_STATE_OTHER_PREFIX);
}

TEST(AddressState, IsNoAddressForATextOfSixCharactersWhateverTheGatewayIs) {
  EXPECT_EQ(ClassifyAddress("1.2.3.", "1.2.3.", kDhcp), IP_STATE_NO_ADDRESS);
  EXPECT_EQ(ClassifyAddress("", "10.0.0.1", kDhcp), IP_STATE_NO_ADDRESS);
  EXPECT_EQ(ClassifyAddress("1.2.3.4", "1.2.3.1", kDhcp), IP_STATE_READY);
}

TEST(AddressState, ReadsAtMostFourPartsAndTakesMissingOnesAsZero) {
  EXPECT_EQ(ClassifyAddress("0.0.0.0.7", "0.0.0.0.1", kDhcp), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("000000.0", "000000.1", kDhcp), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("169.254.", "169.254.", kDhcp), IP_STATE_UNUSABLE);
}

TEST(AddressState, ReadsPartsUpToTheirFirstOtherCharacterAndOverlongOnesAsLarge) {
  EXPECT_EQ(ClassifyAddress("0x1.a.b.c", "0x1.a.b.1", kDhcp), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress(" 169.+254x.1.1", " 169.+254x.1.2", kDhcp), IP_STATE_UNUSABLE);
  EXPECT_EQ(ClassifyAddress("99999999999.0.0.0", "99999999999.0.0.1", kDhcp), IP_STATE_READY);
  EXPECT_EQ(ClassifyAddress("4294967296.0.0.0", "4294967296.0.0.1", kDhcp), IP_STATE_READY);
}

TEST(AddressState, HasTheNumbersThatHostsKnow) {
  EXPECT_EQ(static_cast<std::int32_t>(IP_STATE_NO_ADDRESS), -1);
  EXPECT_EQ(static_cast<std::int32_t>(IP_STATE_READY), 0);
  EXPECT_EQ(static_cast<std::int32_t>(IP_STATE_UNUSABLE), 1);
  EXPECT_EQ(static_cast<std::int32_t>(IP_STATE_OTHER_PREFIX), 2);
  EXPECT_EQ(static_cast<std::int32_t>(IP_STATE_STATIC), 3);
}

TEST(AddressState, MeansAnAssignedAddressUnlessThereIsNoneOrAnUnusableOne) {
  EXPECT_TRUE(IsAddressAssigned(IP_STATE_READY));
  EXPECT_TRUE(IsAddressAssigned(IP_STATE_OTHER_PREFIX));
  EXPECT_TRUE(IsAddressAssigned(IP_STATE_STATIC));
  EXPECT_FALSE(IsAddressAssigned(IP_STATE_NO_ADDRESS));
  EXPECT_FALSE(IsAddressAssigned(IP_STATE_UNUSABLE));
}

std::string RandomAddress(std::mt19937& random) {
  static const std::vector<std::string> kPieces{".",  ".", ".", "0", "169",       "254",
                                                "10", "-", " ", "x", "4294967296"};
  std::string text;
  for (auto left = std::uniform_int_distribution<int>(0, 8)(random); left > 0; --left) {
    text += kPieces[std::uniform_int_distribution<std::size_t>(0, kPieces.size() - 1)(random)];
  }
  return text;
}

TEST(AddressStateProperty, IsWhatASlowReadingOfTheRuleGives) {
  std::mt19937 random(75);
  for (int round = 0; round < 50'000; ++round) {
    const std::string address = RandomAddress(random);
    const std::string gateway = random() % 2 == 0 ? address : RandomAddress(random);
    const bool has_dhcp = random() % 2 == 0;
    ASSERT_EQ(static_cast<int>(ClassifyAddress(address, gateway, has_dhcp)),
              velmora::testing::NaiveAddressState(address, gateway, has_dhcp))
        << address << " through " << gateway;
  }
}

}  // namespace
