#include "ostrine/linux/video_cards.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "video_tree.h"

namespace ostrine {
namespace {

using test::VideoTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint64_t kIntelCard = 0x0010;   // 00:02.0
constexpr std::uint64_t kNvidiaCard = 0x0100;  // 01:00.0

TEST(CardNumbers, StandForPciAddresses) {
  for (const char* address :
       {"0000:00:02.0", "0000:01:00.0", "0000:ff:1f.7", "10000:e1:00.0", "ffffffff:00:00.0"}) {
    const auto card = CardNumber(address);
    ASSERT_TRUE(card) << address;
    EXPECT_EQ(CardAddress(*card), address);
  }
  for (const char* text :
       {"", "0000", "0000:00", "0000:00:02", "0000:00:02.", "0000:00:02.8", "0000:00:20.0", "0000:100:02.0",
        "100000000:00:02.0", "0000:00:02.0 ", "-1:00:02.0", "x:00:02.0"}) {
    EXPECT_FALSE(CardNumber(text)) << text;
  }
}

class TwoCardLaptop : public ::testing::Test {
 protected:
  TwoCardLaptop() { test::BuildTwoCardLaptop(tree_); }
  VideoTree tree_;
};

TEST_F(TwoCardLaptop, HasAnInternalAndAnIndependentCard) {
  EXPECT_THAT(DisplayFunctions(tree_.Path()), ElementsAre("0000:00:02.0", "0000:01:00.0"));
  EXPECT_EQ(FindVideoCards(tree_.Path()),
            (VideoCards{.count = 2, .internal = kIntelCard, .independent = kNvidiaCard}));
}

TEST_F(TwoCardLaptop, NamesItsCardsByTheDatabase) {
  EXPECT_EQ(tree_.Text(kIntelCard, CardFact::kName), "Intel Corporation Alder Lake-P GT2 [Iris Xe Graphics]");
  EXPECT_EQ(tree_.Text(kNvidiaCard, CardFact::kName),
            "NVIDIA Corporation GA107M [GeForce RTX 3050 Ti Mobile]");
}

TEST_F(TwoCardLaptop, NamesThemByTheirNumbersWithoutADatabase) {
  std::filesystem::remove(tree_.Path() / "usr/share/misc/pci.ids");
  EXPECT_THAT(tree_.Text(kNvidiaCard, CardFact::kName), ::testing::HasSubstr("10DE:25A0"));
}

TEST_F(TwoCardLaptop, TellsDriversOfTheKernelAndFromElsewhereApart) {
  EXPECT_EQ(tree_.Text(kIntelCard, CardFact::kDriverVersion), "6.1.0.18");
  EXPECT_EQ(tree_.Text(kIntelCard, CardFact::kDriverDate), "2024-02-01");
  tree_.Root().Write("sys/module/nvidia/version", "535.161.07\n");
  EXPECT_EQ(tree_.Text(kNvidiaCard, CardFact::kDriverVersion), "535.161.07");
  EXPECT_EQ(tree_.Text(kNvidiaCard, CardFact::kDriverDate), "");
}

TEST_F(TwoCardLaptop, HasMemoryAboveFourGibibytes) {
  EXPECT_EQ(ReadCardMemory(tree_.Path(), kNvidiaCard), std::uint64_t{8} << 30);
  EXPECT_EQ(ReadCardMemory(tree_.Path(), kIntelCard), std::uint64_t{256} << 20);
}

TEST_F(TwoCardLaptop, DoesNotTakeTheUsualWindowForTheMemoryOfAGraphicsCard) {
  tree_.Write(test::kNvidiaPlace, {{"resource", test::ResourceText(256)}});
  EXPECT_EQ(ReadCardMemory(tree_.Path(), kNvidiaCard), std::nullopt);
}

TEST_F(TwoCardLaptop, PrefersWhatTheDriverStates) {
  tree_.Write(test::kNvidiaPlace, {{"mem_info_vram_total", "6442450944"}});
  EXPECT_EQ(ReadCardMemory(tree_.Path(), kNvidiaCard), 6442450944u);
  tree_.Write(test::kNvidiaPlace, {{"mem_info_vram_total", "0"}});
  EXPECT_EQ(ReadCardMemory(tree_.Path(), kNvidiaCard), std::uint64_t{8} << 30);
}

TEST_F(TwoCardLaptop, HasNoProblemButWithoutADriver) {
  EXPECT_EQ(ReadCardProblem(tree_.Path(), kIntelCard), 0u);
  std::filesystem::remove(tree_.Path() / "sys/devices" / test::kNvidiaPlace / "driver");
  EXPECT_EQ(ReadCardProblem(tree_.Path(), kNvidiaCard), 28u);
  EXPECT_EQ(tree_.Text(kNvidiaCard, CardFact::kDriverVersion), "");
  EXPECT_EQ(tree_.Text(kNvidiaCard, CardFact::kDriverDate), "");
}

TEST_F(TwoCardLaptop, HasNothingToTellOfACardThatHasGone) {
  std::filesystem::remove(tree_.Path() / "sys/bus/pci/devices/0000:01:00.0");
  EXPECT_EQ(tree_.Text(kNvidiaCard, CardFact::kName), "");
  EXPECT_EQ(ReadCardMemory(tree_.Path(), kNvidiaCard), std::nullopt);
  EXPECT_EQ(ReadCardProblem(tree_.Path(), kNvidiaCard), std::nullopt);
}

TEST_F(TwoCardLaptop, TakesNoOtherFunctionForACard) {
  const std::uint64_t sound = kNvidiaCard | 1;
  EXPECT_EQ(ReadCardText(tree_.Path(), sound, CardFact::kName), std::nullopt);
  EXPECT_EQ(ReadCardProblem(tree_.Path(), ~0ull), std::nullopt);
}

TEST(VideoCardsOfALaptop, WithAnApuAndAGraphicsCardOfTheSameMakerAreToldApart) {
  const VideoTree tree;
  const std::string graphics = "pci0000:00/0000:00:01.1/0000:01:00.0/0000:02:00.0/0000:03:00.0";
  const std::string apu = "pci0000:00/0000:00:08.1/0000:07:00.0";
  tree.AddFunction(graphics, "1002", "73FF", "030000", {{"boot_vga", "0"}});
  tree.AddFunction("pci0000:00/0000:00:01.1/0000:01:00.0/0000:02:00.0/0000:03:00.1", "1002", "AB28", "040300",
                   {});
  tree.AddFunction(apu, "1002", "1638", "030000", {{"boot_vga", "1"}, {"mem_info_vram_total", "536870912"}});
  tree.AddFunction("pci0000:00/0000:00:08.1/0000:07:00.1", "1002", "1637", "040300", {});
  tree.AddFunction("pci0000:00/0000:00:08.1/0000:07:00.2", "1022", "15DF", "108000", {});
  const VideoCards cards = FindVideoCards(tree.Path());
  EXPECT_EQ(cards.count, 2u);
  EXPECT_EQ(tree.Text(cards.internal, CardFact::kName), "AMD Cezanne [Radeon Vega]");
  EXPECT_EQ(tree.Text(cards.independent, CardFact::kName), "AMD Navi 23 [Radeon RX 6600M]");
  EXPECT_EQ(ReadCardMemory(tree.Path(), *cards.internal), std::uint64_t{512} << 20);
}

TEST(VideoCardsOfAnOldLaptop, WithTwoDisplayFunctionsAreOne) {
  const VideoTree tree;
  tree.AddFunction("pci0000:00/0000:00:02.0", "8086", "27A2", "030000", {{"boot_vga", "1"}});
  tree.AddFunction("pci0000:00/0000:00:02.1", "8086", "27A6", "038000", {});
  EXPECT_THAT(DisplayFunctions(tree.Path()), ElementsAre("0000:00:02.0"));
  EXPECT_EQ(FindVideoCards(tree.Path()), (VideoCards{.count = 1, .internal = kIntelCard}));
}

TEST(VideoCardsOfALaptop, WithAGraphicsCardOnlyHaveNoInternalOne) {
  const VideoTree tree;
  tree.AddFunction(test::kNvidiaPlace, "10DE", "25A0", "030000", {{"boot_vga", "1"}});
  EXPECT_EQ(FindVideoCards(tree.Path()), (VideoCards{.count = 1, .independent = kNvidiaCard}));
}

TEST(VideoCardsOfAVirtualMachine, AreItsEmulatedOne) {
  const VideoTree tree;
  tree.AddFunction("pci0000:00/0000:00:02.0", "1234", "1111", "030000",
                   {{"resource", test::ResourceText(16)}});
  EXPECT_EQ(FindVideoCards(tree.Path()), (VideoCards{.count = 1, .internal = kIntelCard}));
  EXPECT_EQ(ReadCardMemory(tree.Path(), kIntelCard), 16u << 20);
}

TEST(VideoCardsOfAServer, LeaveVirtualFunctionsOut) {
  const VideoTree tree;
  tree.AddFunction(test::kNvidiaPlace, "10DE", "25A0", "030200", {});
  tree.AddFunction("pci0000:00/0000:00:06.0/0000:01:01.0", "10DE", "25A0", "030200", {});
  tree.Link("sys/devices/pci0000:00/0000:00:06.0/0000:01:01.0/physfn", "../0000:01:00.0");
  EXPECT_THAT(DisplayFunctions(tree.Path()), ElementsAre("0000:01:00.0"));
}

TEST(VideoCardsOfAnEmptyMachine, AreNone) {
  const VideoTree tree;
  EXPECT_EQ(FindVideoCards(tree.Path()), VideoCards());
  const test::FakeRoot nothing;
  EXPECT_EQ(FindVideoCards(nothing.Path()), VideoCards());
}

TEST(VideoCardsOfAHostileTree, AreThoseThatLookLikeOnes) {
  const VideoTree tree;
  tree.Link("sys/bus/pci/devices/0000:00:03.0", "0000:00:03.0");
  tree.Link("sys/bus/pci/devices/0000:00:04.0", "../../../../../../nowhere");
  tree.AddFunction("pci0000:00/nonsense", "10DE", "25A0", "030000", {});
  tree.AddFunction("pci0000:00/0000:00:05.0", "10DE", "25A0", "030000",
                   {{"class", "0x0300000000"}, {"vendor", "junk"}});
  tree.AddFunction("pci0000:00/0000:00:06.0", "10DE", "25A0", "030000",
                   {{"vendor", "0xFFFFFFFF"},
                    {"resource", std::string(4000, '9')},
                    {"mem_info_vram_total", "-5"},
                    {"power/runtime_status", std::string(3000, 'x')}});
  EXPECT_THAT(DisplayFunctions(tree.Path()), ElementsAre("0000:00:06.0"));
  const VideoCards cards = FindVideoCards(tree.Path());
  ASSERT_TRUE(cards.internal);
  EXPECT_EQ(ReadCardMemory(tree.Path(), *cards.internal), std::nullopt);
  EXPECT_EQ(ReadCardProblem(tree.Path(), *cards.internal), 28u);
}

}  // namespace
}  // namespace ostrine
