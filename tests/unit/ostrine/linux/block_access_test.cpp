// No fact about a disk costs more than a look at what the kernel has in memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "access_recorder.h"
#include "disk_tree.h"
#include "ostrine/linux/block_space.h"

namespace ostrine {
namespace {

using test::DiskTree;

constexpr DiskFact kTexts[] = {DiskFact::kMediaType, DiskFact::kCaption, DiskFact::kSerialNumber,
                               DiskFact::kFirmware};
constexpr DiskFact kNumbers[] = {DiskFact::kTotal, DiskFact::kSolidState};

/// Attributes that the kernel answers from memory.
const std::set<std::string> kHarmless{
    "dev", "size", "removable", "partition", "rotational", "model",    "vendor",       "serial",
    "rev", "type", "name",      "fwrev",     "vpd_pg80",   "vpd_pg89", "firmware_rev", "mountinfo"};

void AskAllDisks(const DiskTree& tree) {
  for (std::uint32_t number = 0; number < DiskNames(tree.Path()).size(); ++number) {
    const auto handle = OpenBlockDisk(tree.Path(), number);
    ASSERT_TRUE(handle);
    for (const DiskFact fact : kTexts) ReadBlockText(tree.Path(), *handle, fact);
    for (const DiskFact fact : kNumbers) ReadBlockNumber(tree.Path(), *handle, fact);
    FreeBytesOnDisk(tree.Path(), *handle, [](const Path&, const BlockNumber&) { return 1; });
  }
}

class DiskAccess : public ::testing::Test {
 protected:
  DiskAccess() {
    test::BuildLaptopDisks(tree_);
    // What must not be touched: device nodes, and attributes behind which a command to the disk stands.
    for (const char* node :
         {"dev/nvme0n1", "dev/nvme0", "dev/sda", "dev/sdb", "dev/sg0", "dev/bsg/1:0:0:0"}) {
      tree_.Root().Write(node, "contents");
    }
    const std::string sata = "sys/devices/" + test::kSataTarget;
    for (const char* command :
         {"/rescan", "/delete", "/unload_heads", "/block/sda/stat", "/block/sda/events"}) {
      tree_.Root().Write(sata + command, "0");
    }
    tree_.Root().Write("sys/devices/" + test::kNvmeController + "/rescan_controller", "0");
  }
  DiskTree tree_;
};

TEST_F(DiskAccess, NeverOpensADeviceNode) {
  test::AccessRecorder recorder(tree_.Path());
  AskAllDisks(tree_);
  const auto opened = recorder.Opened();
  EXPECT_FALSE(opened.empty());
  for (const std::string& path : opened) {
    EXPECT_TRUE(path.starts_with("sys/") || path == "proc/self/mountinfo") << path;
  }
}

TEST_F(DiskAccess, OpensOnlyAttributesThatTheKernelAnswersFromMemory) {
  test::AccessRecorder recorder(tree_.Path());
  AskAllDisks(tree_);
  for (const std::string& path : recorder.Opened()) {
    EXPECT_TRUE(kHarmless.contains(std::filesystem::path(path).filename().string())) << path;
  }
}

/// Asks, and holds it to opening no file twice, nor any of another disk.
template <class Ask>
void ExpectShortQuestion(test::AccessRecorder& recorder, const std::string& disk, Ask&& ask) {
  recorder.Opened();
  ask();
  for (const auto& [path, times] : recorder.TimesOpened()) {
    EXPECT_EQ(times, 1) << path;
    const bool is_own = path.starts_with("sys/devices/" + disk) || path == "proc/self/mountinfo";
    EXPECT_TRUE(is_own) << path;
  }
}

TEST_F(DiskAccess, LooksAtEachFactOnceForAQuestion) {
  const std::vector<std::string> names = DiskNames(tree_.Path());
  test::AccessRecorder recorder(tree_.Path());
  for (std::uint32_t number = 0; number < names.size(); ++number) {
    SCOPED_TRACE(names[number]);
    const std::string device = names[number].starts_with("nvme") ? test::kNvmeController
                               : names[number] == "sda"          ? test::kSataTarget
                                                                 : test::kUsbTarget;
    std::optional<std::uint64_t> handle;
    ExpectShortQuestion(recorder, device, [&] { handle = OpenBlockDisk(tree_.Path(), number); });
    ASSERT_TRUE(handle);
    for (const DiskFact fact : kTexts) {
      ExpectShortQuestion(recorder, device, [&] { ReadBlockText(tree_.Path(), *handle, fact); });
    }
    for (const DiskFact fact : kNumbers) {
      ExpectShortQuestion(recorder, device, [&] { ReadBlockNumber(tree_.Path(), *handle, fact); });
    }
  }
}

TEST_F(DiskAccess, IsSeenByTheRecorder) {
  test::AccessRecorder recorder(tree_.Path());
  ReadBlockText(tree_.Path(), *OpenBlockDisk(tree_.Path(), 0), DiskFact::kCaption);
  const auto opened = recorder.Opened();
  EXPECT_TRUE(opened.contains("sys/devices/" + test::kNvmeController + "/model"));
  EXPECT_TRUE(recorder.Opened().empty());
}

}  // namespace
}  // namespace ostrine
