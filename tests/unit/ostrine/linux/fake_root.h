/// A root folder of the test's own making, gone with the object.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/fsuid.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

namespace ostrine::test {

/// All that a file holds; empty when there is none.
inline std::string ContentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class FakeRoot {
 public:
  FakeRoot() {
    // A tree is hundreds of small files; in memory they cost nothing.
    const bool has_memory_folder = access("/dev/shm", W_OK) == 0;
    std::string name = (has_memory_folder ? "/dev/shm/" : ::testing::TempDir()) + "ostrine-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::filesystem::filesystem_error("mkdtemp", name, {});
    path_ = name;
    // Whoever the test acts as must get as far as the files.
    std::filesystem::permissions(path_, std::filesystem::perms(0755));
  }
  FakeRoot(const FakeRoot&) = delete;
  FakeRoot& operator=(const FakeRoot&) = delete;
  ~FakeRoot() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }

  /// The path of `name` below the root, with its folders made.
  std::filesystem::path Place(std::string_view name) const {
    const auto path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    return path;
  }
  void Write(std::string_view name, std::string_view text) const {
    std::ofstream(Place(name), std::ios::binary)
        .write(text.data(), static_cast<std::streamsize>(text.size()));
  }
  void Write(std::string_view name, std::span<const std::uint8_t> bytes) const {
    Write(name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  }
  /// Makes `name` a link that says `target`.
  void Link(std::string_view name, std::string_view target) const {
    std::filesystem::create_symlink(target, Place(name));
  }
  /// Takes every right to `name` from everybody but the superuser.
  void Forbid(std::string_view name) const {
    std::filesystem::permissions(path_ / name, std::filesystem::perms::none);
  }

 private:
  std::filesystem::path path_;
};

/// While it lives, this thread meets files as a user without rights, also when the superuser runs the tests.
class WithoutRights {
 public:
  WithoutRights() : group_(setfsgid(kNobody)), user_(setfsuid(kNobody)) {}
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;
  ~WithoutRights() {
    setfsuid(static_cast<uid_t>(user_));
    setfsgid(static_cast<gid_t>(group_));
  }

 private:
  static constexpr unsigned int kNobody = 65534;
  int group_;
  int user_;
};

}  // namespace ostrine::test
