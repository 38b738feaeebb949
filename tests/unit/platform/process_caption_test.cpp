#include "platform/process_caption.h"

#include <gtest/gtest.h>

namespace {

using velmora::ProcessCaption;
using velmora::ProgramPath;

TEST(ProcessCaption, IsTheFileNameOfTheProgram) {
  EXPECT_EQ(ProcessCaption("/usr/bin/sleep", "other"), "sleep");
  EXPECT_EQ(ProcessCaption("sleep", "other"), "sleep");
  EXPECT_EQ(ProcessCaption("/usr/bin/", "other"), "");
}

TEST(ProcessCaption, IsTheProcessesOwnNameWithoutAProgram) {
  EXPECT_EQ(ProcessCaption("", "kworker/0:1"), "kworker/0:1");
  EXPECT_EQ(ProcessCaption("", ""), "");
}

TEST(ProgramPath, LeavesOutTheMarkOfAFileThatIsGoneOnce) {
  EXPECT_EQ(ProgramPath("/usr/bin/sleep"), "/usr/bin/sleep");
  EXPECT_EQ(ProgramPath("/usr/bin/sleep (deleted)"), "/usr/bin/sleep");
  EXPECT_EQ(ProgramPath("/tmp/a (deleted) (deleted)"), "/tmp/a (deleted)");
  EXPECT_EQ(ProgramPath("/tmp/a (deleted)/b"), "/tmp/a (deleted)/b");
  EXPECT_EQ(ProgramPath(""), "");
}

}  // namespace
