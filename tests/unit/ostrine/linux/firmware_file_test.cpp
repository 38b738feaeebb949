#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "fake_root.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

using test::FakeRoot;

TEST(FirmwareFile, ReadsAllBytesUpToTheLimitAndRefusesOneMore) {
  const FakeRoot root;
  root.Write("file", std::string(5000, 'x'));
  EXPECT_EQ(ReadBytes(root.Path() / "file", 5000), std::vector<std::uint8_t>(5000, 'x'));
  EXPECT_EQ(ReadBytes(root.Path() / "file", 5001), std::vector<std::uint8_t>(5000, 'x'));
  EXPECT_EQ(ReadBytes(root.Path() / "file", 4999), std::nullopt);
}

TEST(FirmwareFile, ReadsAnEmptyFileAsNoBytes) {
  const FakeRoot root;
  root.Write("file", "");
  EXPECT_EQ(ReadBytes(root.Path() / "file", 0), std::vector<std::uint8_t>());
  EXPECT_EQ(ReadAttribute(root.Path() / "file"), "");
}

/// Pages of alternating rights, each of which is a line of /proc/self/maps.
class ManyMappings {
 public:
  ManyMappings() : start_(mmap(nullptr, kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
    if (start_ == MAP_FAILED) return;
    for (std::size_t page = 0; page < kPages; page += 2) {
      mprotect(static_cast<char*>(start_) + page * kPageSize, kPageSize, PROT_READ);
    }
  }
  ManyMappings(const ManyMappings&) = delete;
  ManyMappings& operator=(const ManyMappings&) = delete;
  ~ManyMappings() {
    if (start_ != MAP_FAILED) munmap(start_, kSize);
  }

 private:
  static constexpr std::size_t kPages = 400;
  static inline const std::size_t kPageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  static inline const std::size_t kSize = kPages * kPageSize;
  void* start_;
};

TEST(FirmwareFile, ReadsAProcFileWhoseStatedSizeIsZero) {
  const ManyMappings mappings;
  ASSERT_EQ(std::filesystem::file_size("/proc/self/maps"), 0u);
  const auto bytes = ReadBytes("/proc/self/maps", 1 << 20);
  ASSERT_TRUE(bytes);
  EXPECT_GT(bytes->size(), 2 * kAttributeLimit);
  EXPECT_EQ(bytes->back(), '\n');
  EXPECT_EQ(ReadBytes("/proc/self/maps", 100), std::nullopt);
}

TEST(FirmwareFile, RefusesAFolderAPipeAndADeviceWithoutWaiting) {
  const FakeRoot root;
  ASSERT_EQ(mkfifo(root.Place("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadBytes(root.Path(), 100), std::nullopt);
  EXPECT_EQ(ReadBytes(root.Path() / "pipe", 100), std::nullopt);
  EXPECT_EQ(ReadBytes("/dev/zero", 100), std::nullopt);
  EXPECT_EQ(ReadAttribute(root.Path()), std::nullopt);
  EXPECT_EQ(ReadAttribute(root.Path() / "pipe"), std::nullopt);
  EXPECT_EQ(ReadAttribute("/dev/zero"), std::nullopt);
}

TEST(FirmwareFile, RefusesAFileThatIsNotThere) {
  const FakeRoot root;
  EXPECT_EQ(ReadBytes(root.Path() / "file", 100), std::nullopt);
  EXPECT_EQ(ReadAttribute(root.Path() / "file"), std::nullopt);
}

TEST(FirmwareFile, TakesOneNewlineFromAnAttributeAndNothingElse) {
  const FakeRoot root;
  root.Write("one", " text \n");
  root.Write("two", "text\n\n");
  root.Write("none", "text");
  root.Write("only", "\n");
  EXPECT_EQ(ReadAttribute(root.Path() / "one"), " text ");
  EXPECT_EQ(ReadAttribute(root.Path() / "two"), "text\n");
  EXPECT_EQ(ReadAttribute(root.Path() / "none"), "text");
  EXPECT_EQ(ReadAttribute(root.Path() / "only"), "");
}

TEST(FirmwareFile, RefusesAnAttributeOfMoreThanAPage) {
  const FakeRoot root;
  root.Write("page", std::string(kAttributeLimit, 'x'));
  root.Write("more", std::string(kAttributeLimit + 1, 'x'));
  EXPECT_EQ(ReadAttribute(root.Path() / "page"), std::string(kAttributeLimit, 'x'));
  EXPECT_EQ(ReadAttribute(root.Path() / "more"), std::nullopt);
}

}  // namespace
}  // namespace ostrine
