#include "tests/integration/linux/network_namespace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace velmora::os::test {
namespace {

void WriteTo(const char* path, const std::string& text) {
  const int file = open(path, O_WRONLY | O_CLOEXEC);
  if (file < 0) return;
  if (write(file, text.data(), text.size()) < 0) perror(path);
  close(file);
}

/// The superuser makes namespaces as he likes; anybody else only below one of users, in which he is
/// superuser.
bool Enter() {
  const unsigned int user = geteuid();
  const unsigned int group = getegid();
  const int users = user == 0 ? 0 : CLONE_NEWUSER;
  if (unshare(CLONE_NEWNET | CLONE_NEWNS | users) != 0) return false;
  if (users != 0) {
    WriteTo("/proc/self/setgroups", "deny");
    WriteTo("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    WriteTo("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  }
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("sysfs", "/sys", "sysfs", 0, nullptr) == 0;
}

}  // namespace

std::string InNetworkNamespace(const std::string& setup, const std::function<std::string()>& body) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    std::string text = "the network could not be set up";
    if (Enter() && std::system(("set -e; PATH=$PATH:/sbin:/usr/sbin; " + setup).c_str()) == 0) text = body();
    const ssize_t written = write(ends[1], text.data(), text.size());
    _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
  }
  close(ends[1]);
  std::string text;
  char part[512];
  for (ssize_t size = 0; (size = read(ends[0], part, sizeof part)) > 0;)
    text.append(part, static_cast<std::size_t>(size));
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  return text;
}

}  // namespace velmora::os::test
