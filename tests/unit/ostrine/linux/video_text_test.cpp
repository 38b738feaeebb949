#include "ostrine/linux/video_text.h"

#include <gtest/gtest.h>

#include <random>

namespace ostrine {
namespace {

TEST(PciWindow, IsTheLargestPrefetchableMemoryRegion) {
  EXPECT_EQ(LargestWindow("0x00000000d0000000 0x00000000d0ffffff 0x0000000000040200\n"
                          "0x0000006000000000 0x00000061ffffffff 0x000000000014220c\n"
                          "0x0000006200000000 0x0000006201ffffff 0x000000000014220c\n"),
            std::uint64_t{8} << 30);
}

TEST(PciWindow, IsNotARegionForPortsNorOneThatIsNotPrefetchableNorABridgesNorOneWithoutSize) {
  EXPECT_EQ(LargestWindow("0x3000 0x303f 0x40101\n"), std::nullopt);
  EXPECT_EQ(LargestWindow("0xd0000000 0xd0ffffff 0x40200\n"), std::nullopt);
  EXPECT_EQ(LargestWindow("0x0 0x0 0x2200\n"), std::nullopt);
  EXPECT_EQ(LargestWindow("0x0 0xffffffffffffffff 0x2200\n"), std::nullopt);
  EXPECT_EQ(LargestWindow("0x2 0x1 0x2200\n"), std::nullopt);
  EXPECT_EQ(LargestWindow("\n\n\n\n\n\n0x0 0xfff 0x2200\n"), std::nullopt) << "a seventh region";
  EXPECT_EQ(LargestWindow(""), std::nullopt);
  EXPECT_EQ(LargestWindow("0x0 0xfff\n0 fff 2200\n0x0 0xfff 0x2200 0x1\n0xg 0xfff 0x2200"), std::nullopt);
}

TEST(ModeText, IsTheFirstLinesSize) {
  EXPECT_EQ(FirstMode("1920x1080\n1280x720"), (DisplaySize{1920, 1080}));
  EXPECT_EQ(FirstMode("1920x1080i"), (DisplaySize{1920, 1080}));
  for (const char* modes :
       {"", "\n1920x1080", "1920", "1920x", "x1080", "0x1080", "1920x0", "-1x5", "99999999999x1"}) {
    EXPECT_EQ(FirstMode(modes), std::nullopt) << modes;
  }
}

TEST(VirtualSizeText, IsTwoNumbersWithAComma) {
  EXPECT_EQ(ParseVirtualSize("1024,768"), (DisplaySize{1024, 768}));
  for (const char* text : {"", "1024", "1024,", "1024,768,1", "1024x768", "0,0"}) {
    EXPECT_EQ(ParseVirtualSize(text), std::nullopt) << text;
  }
}

TEST(KernelDate, IsReadInEachFormThatKernelsHave) {
  EXPECT_EQ(KernelBuildDate("#1 SMP PREEMPT_DYNAMIC Debian 6.1.115-1 (2024-11-01)"), "2024-11-01");
  EXPECT_EQ(KernelBuildDate("#45-Ubuntu SMP PREEMPT_DYNAMIC Fri Aug 30 12:02:04 UTC 2024"), "2024-08-30");
  EXPECT_EQ(KernelBuildDate("#1 SMP Tue Mar  5 09:14:01 CET 2013"), "2013-03-05");
  EXPECT_EQ(KernelBuildDate("#1 SMP PREEMPT_DYNAMIC Mon, 04 Nov 2024 22:12:51 +0000"), "2024-11-04");
}

TEST(KernelDate, IsNotMadeUpFromOtherForms) {
  for (const char* text : {"", "#1 SMP", "(2024-13-01)", "(2024-00-10)", "(1980-01-01)", "(2024-11-1)", "Nov",
                           "Nov 2024", "May 40 2024", "Fri Nov 1 12:02:04 UTC"}) {
    EXPECT_EQ(KernelBuildDate(text), std::nullopt) << text;
  }
}

TEST(ConnectorName, TellsTheBuiltInPanelFromOuterAndVirtualDisplays) {
  for (const char* name : {"card0-eDP-1", "card12-LVDS-1", "card1-DSI-1"}) {
    EXPECT_EQ(RankConnector(name), ConnectorRank::kBuiltIn) << name;
  }
  for (const char* name : {"card0-DP-1", "card0-HDMI-A-1", "card1-VGA-1"}) {
    EXPECT_EQ(RankConnector(name), ConnectorRank::kOuter) << name;
  }
  EXPECT_EQ(RankConnector("card0-Virtual-1"), ConnectorRank::kVirtual);
  for (const char* name : {"card0", "renderD128", "version", "", "-"}) {
    EXPECT_EQ(RankConnector(name), std::nullopt) << name;
  }
}

TEST(VideoTextProperty, AnyBytesAreSurvived) {
  const std::string seeds[] = {"0x0000006000000000 0x00000061ffffffff 0x000000000014220c\n", "1920x1080i\n",
                               "1024,768", "#1 SMP Fri, 01 Nov 2024 22:12:51 (2024-11-01)", "card1-eDP-1"};
  std::mt19937 engine(2);
  for (int i = 0; i < 20000; ++i) {
    std::string text = seeds[engine() % std::size(seeds)];
    for (int k = 0; k < 3; ++k) text[engine() % text.size()] = static_cast<char>(engine());
    text.resize(engine() % (text.size() + 1));
    LargestWindow(text);
    RankConnector(text);
    if (const auto size = FirstMode(text)) {
      EXPECT_NE(size->width, 0u);
    }
    if (const auto size = ParseVirtualSize(text)) {
      EXPECT_NE(size->height, 0u);
    }
    if (const auto date = KernelBuildDate(text)) {
      EXPECT_EQ(date->size(), 10u);
    }
  }
}

}  // namespace
}  // namespace ostrine
