// No fact about a card or a display wakes a card that sleeps.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "access_recorder.h"
#include "ostrine/linux/display.h"
#include "video_tree.h"

namespace ostrine {
namespace {

using test::VideoTree;

/// Files of a PCI function behind which stands a question to the hardware, and nodes that wake it when
/// opened.
constexpr const char* kWaking[] = {"config",
                                   "rom",
                                   "resource0",
                                   "resource1",
                                   "reset",
                                   "d3cold_allowed",
                                   "current_link_speed",
                                   "mem_info_vram_used",
                                   "gpu_busy_percent",
                                   "pp_dpm_sclk",
                                   "vbios_version",
                                   "hwmon/hwmon3/temp1_input",
                                   "drm/card0/gt_cur_freq_mhz"};

/// What may be opened of a function: the kernel's own notes.
const std::set<std::string> kNotes{"class",    "vendor",   "device", "modalias",       "boot_vga",
                                   "resource", "revision", "uevent", "runtime_status", "mem_info_vram_total"};

void AskAllCards(const VideoTree& tree) {
  const VideoCards cards = FindVideoCards(tree.Path());
  for (const auto card : {cards.internal, cards.independent}) {
    if (!card) continue;
    for (const auto fact : {CardFact::kName, CardFact::kDriverVersion, CardFact::kDriverDate}) {
      ReadCardText(tree.Path(), *card, fact);
    }
    ReadCardMemory(tree.Path(), *card);
    ReadCardProblem(tree.Path(), *card);
  }
  ReadDisplaySize(tree.Path());
  ReadDisplayRate(tree.Path());
  ReadDisplayDepth(tree.Path());
  ReadMonitorCaption(tree.Path());
}

class VideoAccess : public ::testing::Test {
 protected:
  VideoAccess() {
    test::BuildTwoCardLaptop(tree_);
    for (const char* file : kWaking) tree_.Write(test::kNvidiaPlace, {{file, "0"}});
    for (const char* file : kWaking) tree_.Write(test::kIntelPlace, {{file, "0"}});
    for (const char* node :
         {"dev/dri/card0", "dev/dri/card1", "dev/dri/renderD128", "dev/fb0", "dev/nvidia0"}) {
      tree_.Root().Write(node, "0");
    }
  }
  /// Files of the sleeping card that were opened.
  std::set<std::string> OpenedOfSleepingCard(test::AccessRecorder& recorder) const {
    std::set<std::string> files;
    const std::string folder = "sys/devices/" + test::kNvidiaPlace + "/";
    for (const std::string& path : recorder.Opened()) {
      if (path.starts_with(folder)) files.insert(path.substr(folder.size()));
    }
    return files;
  }
  VideoTree tree_;
};

TEST_F(VideoAccess, OpensOnlyTheKernelsNotesOfASleepingCard) {
  test::AccessRecorder recorder(tree_.Path());
  AskAllCards(tree_);
  const auto opened = OpenedOfSleepingCard(recorder);
  EXPECT_TRUE(opened.contains("power/runtime_status"));
  for (const std::string& file : opened) {
    EXPECT_TRUE(kNotes.contains(std::filesystem::path(file).filename().string())) << file;
  }
}

TEST_F(VideoAccess, LeavesTheConnectorsOfASleepingCardAlone) {
  test::AccessRecorder recorder(tree_.Path());
  AskAllCards(tree_);
  for (const std::string& file : OpenedOfSleepingCard(recorder)) {
    EXPECT_FALSE(file.starts_with("drm/")) << file;
  }
}

TEST_F(VideoAccess, LooksAtTheConnectorsOnceTheCardIsAwake) {
  tree_.Write(test::kNvidiaPlace, {{"power/runtime_status", "active"}});
  tree_.Write(test::kIntelPlace + "/drm/card1/card1-eDP-1", {{"enabled", "disabled"}});
  test::AccessRecorder recorder(tree_.Path());
  ReadDisplaySize(tree_.Path());
  EXPECT_TRUE(OpenedOfSleepingCard(recorder).contains("drm/card0/card0-DP-2/status"));
}

TEST_F(VideoAccess, LooksAtEachFactOfTheDisplayOnceForAQuestion) {
  test::AccessRecorder recorder(tree_.Path());
  const auto expect_once = [&] {
    const auto opened = recorder.TimesOpened();
    EXPECT_TRUE(opened.contains("sys/devices/" + test::kIntelPlace + "/drm/card1/card1-eDP-1/enabled"));
    for (const auto& [path, times] : opened) {
      // A card's sleep is a fact of each of its connectors.
      EXPECT_TRUE(times == 1 || path.ends_with("power/runtime_status")) << path;
    }
  };
  EXPECT_TRUE(ReadDisplaySize(tree_.Path()));
  expect_once();
  EXPECT_TRUE(ReadDisplayRate(tree_.Path()));
  expect_once();
  EXPECT_TRUE(ReadMonitorCaption(tree_.Path()));
  expect_once();
}

TEST_F(VideoAccess, NeverOpensADeviceNodeOrAnythingThatWakesACardThatIsAwake) {
  test::AccessRecorder recorder(tree_.Path());
  AskAllCards(tree_);
  const auto opened = recorder.Opened();
  EXPECT_FALSE(opened.empty());
  for (const std::string& path : opened) {
    EXPECT_FALSE(path.starts_with("dev/")) << path;
    for (const char* file : kWaking) EXPECT_FALSE(path.ends_with("/" + std::string(file))) << path;
  }
}

}  // namespace
}  // namespace ostrine
