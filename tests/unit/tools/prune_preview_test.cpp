#include "velmora-report/prune_preview.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using report::FilesThatWouldGo;
using report::TreeFile;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> PathsOf(const std::vector<TreeFile>& files) {
  std::vector<std::string> paths;
  for (const TreeFile& file : files) paths.push_back(file.path);
  return paths;
}

const std::vector<TreeFile> kFiles{{"new", 9, 1}, {"old", 1, 1}, {"middle", 5, 1}, {"old too", 1, 1}};

TEST(PrunePreview, TellsOfTheOldestFirstAndLeavesTheNewest) {
  EXPECT_THAT(PathsOf(FilesThatWouldGo(kFiles, 1)), ElementsAre("old", "old too", "middle"));
  EXPECT_THAT(PathsOf(FilesThatWouldGo(kFiles, 3)), ElementsAre("old"));
  EXPECT_THAT(FilesThatWouldGo(kFiles, 0), SizeIs(4));
}

TEST(PrunePreview, TellsOfNothingWhenAllStay) {
  EXPECT_THAT(FilesThatWouldGo(kFiles, 4), IsEmpty());
  EXPECT_THAT(FilesThatWouldGo(kFiles, 2147483647), IsEmpty());
  EXPECT_THAT(FilesThatWouldGo(kFiles, -1), IsEmpty());
  EXPECT_THAT(FilesThatWouldGo({}, 0), IsEmpty());
}

TEST(PrunePreview, TellsOfAThousandAtMost) {
  EXPECT_THAT(FilesThatWouldGo(std::vector<TreeFile>(1500), 0), SizeIs(1000));
  EXPECT_THAT(FilesThatWouldGo(std::vector<TreeFile>(1500), 501), SizeIs(999));
}

}  // namespace
