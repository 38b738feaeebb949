#include "platform/os/last_error.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace velmora::os {
namespace {

TEST(LastErrorOnLinux, TellsTheSystemsErrorsByTheirWindowsNumbers) {
  const struct {
    int error;
    std::uint32_t number;
  } cases[] = {{0, 0},           {ENOENT, 2},   {ENOTDIR, 3},     {EMFILE, 4},    {EACCES, 5},
               {EPERM, 5},       {EROFS, 5},    {EISDIR, 5},      {EBADF, 6},     {ENOMEM, 8},
               {EIO, 31},        {ETXTBSY, 32}, {EOPNOTSUPP, 50}, {ENODEV, 55},   {EINVAL, 87},
               {ESRCH, 87},      {EBUSY, 170},  {EEXIST, 183},    {ENOEXEC, 193}, {ENAMETOOLONG, 206},
               {ETIMEDOUT, 1460}};
  for (const auto& [error, number] : cases) {
    errno = error;
    EXPECT_EQ(LastError(), number) << error;
  }
}

TEST(LastErrorOnLinux, GivesBackWhatWasSet) {
  for (const std::uint32_t number : {0u, 2u, 0xFFFFu, 0xE000020Bu, 0xFFFFFFFFu}) {
    SetLastError(number);
    EXPECT_EQ(LastError(), number);
  }
}

}  // namespace
}  // namespace velmora::os
