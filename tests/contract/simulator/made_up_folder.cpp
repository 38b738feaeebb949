/// A folder of a simulated machine.
#include "tests/contract/made_up_folder.h"

#include <algorithm>

#include "simulator/run.h"

namespace contract {
namespace {

simulator::Machine MachineWithTheFolder() {
  auto machine = simulator::EmptyMachine();
  machine.files = {{.path = "C:", .folder = true},
                   {.path = "C:\\top", .folder = true},
                   {.path = "C:\\top\\old.dmp", .last_write_time = 1000, .contents = "12345"},
                   {.path = "C:\\top\\new.dmp", .last_write_time = 2000, .contents = "12345"},
                   {.path = "C:\\top\\sub", .folder = true},
                   {.path = "C:\\top\\sub\\inner.dmp", .last_write_time = 2000, .contents = "12345"},
                   {.path = "C:\\top\\sub\\deep", .folder = true}};
  return machine;
}

class SimulatedFolder : public MadeUpFolder {
 public:
  std::string Path() const override { return "C:\\top"; }
  bool Has(const std::string& path) override {
    return std::ranges::count(*run_.machine().files, "C:\\top\\" + path, &simulator::File::path) > 0;
  }
  void PutFileInPlaceOf(const std::string& path) override {
    const std::string full = "C:\\top\\" + path;
    std::erase_if(*run_.machine().files, [&](const simulator::File& file) {
      return file.path == full || file.path.starts_with(full + "\\");
    });
    run_.machine().files->push_back({.path = full});
  }

 private:
  simulator::Run run_{MachineWithTheFolder()};
};

}  // namespace

std::unique_ptr<MadeUpFolder> MadeUpFolder::SetUp() { return std::make_unique<SimulatedFolder>(); }

}  // namespace contract
