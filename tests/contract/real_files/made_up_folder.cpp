/// A folder of this system.
#include "tests/contract/made_up_folder.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

namespace contract {
namespace {

namespace fs = std::filesystem;

class RealFolder : public MadeUpFolder {
 public:
  RealFolder() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    top_ = fs::temp_directory_path() / ("velmora-contract-" + std::to_string(now));
    fs::create_directories(top_ / "sub" / "deep");
    Write("old.dmp");
    fs::last_write_time(top_ / "old.dmp", fs::file_time_type::clock::now() - std::chrono::hours(1));
    Write("new.dmp");
    Write("sub/inner.dmp");
  }
  ~RealFolder() override {
    std::error_code ignored;
    fs::remove_all(top_, ignored);
  }

  std::string Path() const override { return top_.string(); }
  bool Has(const std::string& path) override { return fs::exists(At(path)); }
  void PutFileInPlaceOf(const std::string& path) override {
    fs::remove_all(At(path));
    std::ofstream(At(path)) << "12345";
  }

 private:
  void Write(const char* name) const { std::ofstream(top_ / name) << "12345"; }
  fs::path At(std::string path) const {
    std::ranges::replace(path, '\\', '/');
    return top_ / path;
  }

  fs::path top_;
};

}  // namespace

std::unique_ptr<MadeUpFolder> MadeUpFolder::SetUp() { return std::make_unique<RealFolder>(); }

}  // namespace contract
