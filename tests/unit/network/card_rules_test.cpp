#include "network/card_rules.h"

#include <gtest/gtest.h>

namespace {

using namespace velmora::network;

const std::wstring kClass =
    L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}\\";

TEST(CardRules, TakeACardForInternalWhoseHardwareIdBeginsWithPci) {
  EXPECT_TRUE(IsInternal(L"PCI\\VEN_8086&DEV_A0F0&SUBSYS_00748086&REV_20"));
  EXPECT_TRUE(IsInternal(L"PCI"));
  EXPECT_TRUE(IsInternal(L"PCIE\\ANYTHING")) << "the rule knows no separator";
}

TEST(CardRules, TakeACardForInternalWhoseHardwareIdBeginsWithQcms) {
  EXPECT_TRUE(IsInternal(L"QCMS\\VEN_QCOM&DEV_0C9F"));
  EXPECT_TRUE(IsInternal(L"QCMS"));
}

TEST(CardRules, LeaveOutEveryOtherBeginning) {
  EXPECT_FALSE(IsInternal(L"USB\\VID_0BDA&PID_8153&REV_3000"));
  EXPECT_FALSE(IsInternal(L"{5D624F94-8850-40C3-A3FA-A4FD2080BAF3}\\VWIFIMP_WFD"));
  EXPECT_FALSE(IsInternal(L"QCM\\VEN_QCOM"));
  EXPECT_FALSE(IsInternal(L"PC"));
  EXPECT_FALSE(IsInternal(L""));
}

TEST(CardRules, LeaveOutLettersOfTheOtherCase) {
  EXPECT_FALSE(IsInternal(L"pci\\VEN_8086&DEV_A0F0"));
  EXPECT_FALSE(IsInternal(L"Pci\\VEN_8086&DEV_A0F0"));
  EXPECT_FALSE(IsInternal(L"qcms\\VEN_QCOM"));
}

TEST(CardRules, LookForTheBeginningAndNothingFurther) {
  EXPECT_FALSE(IsInternal(L"ROOT\\PCI\\VEN_8086"));
  EXPECT_FALSE(IsInternal(L" PCI\\VEN_8086"));
  EXPECT_FALSE(IsInternal(L"USB\\QCMS"));
  EXPECT_TRUE(IsInternal(L"QCMS\\PCI")) << "a later PCI does not matter";
}

TEST(CardRules, KnowTheMediumOfEachKind) {
  EXPECT_EQ(MediumOf(NETWORK_CARD_WIRELESS), Medium{9});
  EXPECT_EQ(MediumOf(NETWORK_CARD_WIRED), Medium{14});
  EXPECT_EQ(MediumOf(NETWORK_CARD_MOBILE), Medium{8});
}

TEST(CardRules, KnowNoMediumOfANumberThatIsNoKind) {
  EXPECT_EQ(MediumOf(NETWORK_CARD_TYPE{3}), std::nullopt);
  EXPECT_EQ(MediumOf(NETWORK_CARD_TYPE{0xFFFFFFFF}), std::nullopt);
}

TEST(CardRules, NumberTheKindsAsHostsDo) {
  EXPECT_EQ(NETWORK_CARD_WIRELESS, 0U);
  EXPECT_EQ(NETWORK_CARD_WIRED, 1U);
  EXPECT_EQ(NETWORK_CARD_MOBILE, 2U);
}

TEST(CardRules, WriteTheInstanceKeysWithFourDigits) {
  EXPECT_EQ(ClassKeyPath(0), kClass + L"0000");
  EXPECT_EQ(ClassKeyPath(9), kClass + L"0009");
  EXPECT_EQ(ClassKeyPath(10), kClass + L"0010");
  EXPECT_EQ(ClassKeyPath(29), kClass + L"0029");
}

TEST(CardRules, MatchByInstanceIdForTheArmProcessorOnly) {
  EXPECT_EQ(KeyMatchFor(3), KeyMatch::kInstanceId);
  for (const std::uint32_t kind : {0U, 1U, 2U, 4U, 0x103U, 0xFFFFFFFFU}) {
    EXPECT_EQ(KeyMatchFor(kind), KeyMatch::kComponentId) << kind;
  }
}

}  // namespace
