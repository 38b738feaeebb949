/// Which files below a folder are opened while it lives: what a reader does to a fake tree, as the kernel saw
/// it.
#pragma once

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <system_error>

namespace ostrine::test {

class AccessRecorder {
 public:
  /// Watches `folder` and the real folders below it. Files that are reached through links are seen at their
  /// own place.
  explicit AccessRecorder(std::filesystem::path folder) : folder_(std::move(folder)) {
    descriptor_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "inotify");
    Watch(folder_);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_)) {
      if (entry.is_directory() && !entry.is_symlink()) Watch(entry.path());
    }
  }
  AccessRecorder(const AccessRecorder&) = delete;
  AccessRecorder& operator=(const AccessRecorder&) = delete;
  ~AccessRecorder() { close(descriptor_); }

  /// Paths, below the folder, of the files (not folders) that were opened since the last call.
  std::set<std::string> Opened() {
    std::set<std::string> opened;
    for (const auto& [path, times] : TimesOpened()) opened.insert(path);
    return opened;
  }

  /// The same with how often each was opened; a file that is opened and not read counts once.
  std::map<std::string, int> TimesOpened() {
    std::map<std::string, int> opened;
    alignas(inotify_event) std::array<char, 65536> buffer;
    for (;;) {
      const ssize_t size = read(descriptor_, buffer.data(), buffer.size());
      if (size <= 0) return opened;
      for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        EXPECT_EQ(event.mask & IN_Q_OVERFLOW, 0u) << "accesses were lost";
        if ((event.mask & IN_ISDIR) == 0 && (event.mask & IN_OPEN) != 0 && event.len != 0) {
          const auto path = folders_[event.wd] / (buffer.data() + at + sizeof event);
          ++opened[path.lexically_relative(folder_).string()];
        }
        at += sizeof event + event.len;
      }
    }
  }

 private:
  void Watch(const std::filesystem::path& folder) {
    const int watch = inotify_add_watch(descriptor_, folder.c_str(), IN_OPEN | IN_ACCESS);
    if (watch < 0) throw std::system_error(errno, std::generic_category(), folder.string());
    folders_[watch] = folder;
  }

  std::filesystem::path folder_;
  int descriptor_ = -1;
  std::map<int, std::filesystem::path> folders_;
};

}  // namespace ostrine::test
