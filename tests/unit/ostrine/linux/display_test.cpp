#include "ostrine/linux/display.h"

#include <gtest/gtest.h>

#include "video_tree.h"

namespace ostrine {
namespace {

using test::EdidBytes;
using test::VideoTree;

class LaptopDisplay : public ::testing::Test {
 protected:
  LaptopDisplay() { test::BuildTwoCardLaptop(tree_); }
  void Set(const std::string& connector, const VideoTree::Attributes& attributes) const {
    tree_.Write(test::kIntelPlace + "/drm/card1/card1-" + connector, attributes);
  }
  VideoTree tree_;
};

TEST_F(LaptopDisplay, IsTheBuiltInPanel) {
  EXPECT_EQ(FindConnector(tree_.Path()).filename(), "card1-eDP-1");
  EXPECT_EQ(ReadDisplaySize(tree_.Path()), (DisplaySize{1920, 1080}));
  EXPECT_EQ(ReadDisplayRate(tree_.Path()), 60u);
  EXPECT_EQ(ReadDisplayDepth(tree_.Path()), 32u);
  EXPECT_EQ(ReadMonitorCaption(tree_.Path()), "AUO3DED");
}

TEST_F(LaptopDisplay, IsTheOuterOneWhileThePanelIsOff) {
  Set("eDP-1", {{"enabled", "disabled"}});
  EXPECT_EQ(ReadDisplaySize(tree_.Path()), (DisplaySize{3840, 2160}));
  EXPECT_EQ(ReadMonitorCaption(tree_.Path()), "DELL U2720Q");
}

TEST_F(LaptopDisplay, IsNoneWhileAllAreOffEvenIfAFrameBufferIsThere) {
  Set("eDP-1", {{"enabled", "disabled"}});
  Set("DP-1", {{"status", "disconnected"}});
  EXPECT_EQ(ReadDisplaySize(tree_.Path()), std::nullopt);
  EXPECT_EQ(ReadDisplayRate(tree_.Path()), std::nullopt);
  EXPECT_EQ(ReadMonitorCaption(tree_.Path()), std::nullopt);
}

TEST_F(LaptopDisplay, HasNoRateInAnotherModeThanItsOwn) {
  Set("eDP-1", {{"modes", "1280x720"}});
  EXPECT_EQ(ReadDisplaySize(tree_.Path()), (DisplaySize{1280, 720}));
  EXPECT_EQ(ReadDisplayRate(tree_.Path()), std::nullopt);
}

TEST_F(LaptopDisplay, WithSpoiltDescriptionHasASizeButNeitherRateNorName) {
  auto edid = EdidBytes{}.Build();
  edid[40] = 0x55;
  tree_.Root().Write("sys/devices/" + test::kIntelPlace + "/drm/card1/card1-eDP-1/edid", edid);
  EXPECT_EQ(ReadDisplaySize(tree_.Path()), (DisplaySize{1920, 1080}));
  EXPECT_EQ(ReadDisplayRate(tree_.Path()), std::nullopt);
  EXPECT_EQ(ReadMonitorCaption(tree_.Path()), std::nullopt);
}

TEST(DisplayWithoutConnectors, HasTheFrameBuffersSize) {
  const test::FakeRoot root;
  root.Write("sys/class/graphics/fb0/virtual_size", "1024,768\n");
  root.Write("sys/class/graphics/fb0/bits_per_pixel", "24\n");
  EXPECT_EQ(ReadDisplaySize(root.Path()), (DisplaySize{1024, 768}));
  EXPECT_EQ(ReadDisplayDepth(root.Path()), 24u);
  EXPECT_EQ(ReadDisplayRate(root.Path()), std::nullopt);
}

TEST(DisplayOfAnEmptyMachine, IsNone) {
  const test::FakeRoot root;
  EXPECT_TRUE(FindConnector(root.Path()).empty());
  EXPECT_EQ(ReadDisplaySize(root.Path()), std::nullopt);
  EXPECT_EQ(ReadDisplayDepth(root.Path()), std::nullopt);
  EXPECT_EQ(ReadMonitorCaption(root.Path()), std::nullopt);
}

TEST(DisplayOfAHostileTree, TellsNothingThatCannotBe) {
  const test::FakeRoot root;
  root.Write("sys/class/drm/card0-eDP-1/status", "connected\n");
  root.Write("sys/class/drm/card0-eDP-1/enabled", "enabled\n");
  root.Write("sys/class/drm/card0-eDP-1/modes", std::string(4000, '9'));
  root.Write("sys/class/drm/card0-eDP-1/edid", std::string(100'000, 'x'));
  root.Write("sys/class/graphics/fb0/bits_per_pixel", "4096\n");
  EXPECT_EQ(ReadDisplaySize(root.Path()), std::nullopt);
  EXPECT_EQ(ReadDisplayDepth(root.Path()), std::nullopt);
  EXPECT_EQ(ReadMonitorCaption(root.Path()), std::nullopt);
}

}  // namespace
}  // namespace ostrine
