// This machine's own disks, against what lsblk says of them.
#include <gtest/gtest.h>
#include <stdio.h>

#include <array>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "ostrine/linux/block.h"
#include "ostrine/linux/block_space.h"

namespace ostrine {
namespace {

struct Listed {
  std::string name;
  std::string type;
  std::uint64_t size = 0;
  bool is_rotating = false;
};

std::string CommandOutput(const char* command) {
  struct Closer {
    void operator()(FILE* pipe) const { pclose(pipe); }
  };
  const std::unique_ptr<FILE, Closer> pipe(popen(command, "re"));
  std::string output;
  std::array<char, 4096> buffer;
  while (pipe && fgets(buffer.data(), buffer.size(), pipe.get()) != nullptr) output += buffer.data();
  return output;
}

std::vector<Listed> ListedDisks() {
  std::istringstream output(CommandOutput("lsblk -dbnro NAME,TYPE,SIZE,ROTA 2>/dev/null"));
  std::vector<Listed> disks;
  for (Listed disk; output >> disk.name >> disk.type >> disk.size >> disk.is_rotating;) {
    if (MayBeDisk(disk.name)) disks.push_back(disk);
  }
  return disks;
}

TEST(BlockMachine, HasTheDisksAndSizesThatLsblkLists) {
  const auto listed = ListedDisks();
  if (listed.empty()) GTEST_SKIP() << "no lsblk, or no disk";
  const auto names = DiskNames("/");
  ASSERT_EQ(names.size(), listed.size());
  for (const Listed& disk : listed) {
    SCOPED_TRACE(disk.name);
    const auto at = std::find(names.begin(), names.end(), disk.name);
    ASSERT_NE(at, names.end());
    const auto handle = OpenBlockDisk("/", static_cast<std::uint32_t>(at - names.begin()));
    ASSERT_TRUE(handle);
    EXPECT_EQ(ReadBlockNumber("/", *handle, DiskFact::kTotal), disk.size);
    EXPECT_EQ(ReadBlockNumber("/", *handle, DiskFact::kSolidState), disk.is_rotating ? 0u : 1u);
    const auto free_bytes = FreeBytesOnDisk("/", *handle, MountedFreeSpace);
    ASSERT_TRUE(free_bytes);
    EXPECT_LE(*free_bytes, disk.size);
  }
}

}  // namespace
}  // namespace ostrine
