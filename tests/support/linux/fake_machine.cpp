#include "tests/support/linux/fake_machine.h"

#include "ostrine/linux/system_root.h"

namespace ostrine {
namespace {

std::string& Current() {
  static std::string root = "/";
  return root;
}

}  // namespace

// In place of the library's own, weak definition.
const char* SystemRoot() noexcept { return Current().c_str(); }

namespace test {

ActsOn::ActsOn(const FakeMachine& machine) { Current() = machine.Path().string(); }
ActsOn::~ActsOn() { Current() = "/"; }

FakeMachine::FakeMachine() {
  std::filesystem::create_directories(Path() / "sys/devices");
  WriteFile("proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
}

void FakeMachine::Write(std::string_view place, const Attributes& attributes) const {
  std::filesystem::create_directories(Device(place));
  for (const auto& [name, text] : attributes) {
    root_.Write("sys/devices/" + std::string(place) + "/" + name, text + "\n");
  }
}

void FakeMachine::Add(std::string_view bus, std::string_view place, const Attributes& attributes) const {
  Write(place, attributes);
  const std::string folder = "sys/bus/" + std::string(bus);
  const std::string name = std::filesystem::path(place).filename().string();
  root_.Link(folder + "/devices/" + name, "../../../devices/" + std::string(place));
  root_.Link("sys/devices/" + std::string(place) + "/subsystem", (Path() / folder).string());
}

void FakeMachine::Bind(std::string_view bus, std::string_view place, std::string_view driver,
                       std::string_view module) const {
  const std::string folder = "sys/bus/" + std::string(bus) + "/drivers/" + std::string(driver);
  std::filesystem::create_directories(Path() / folder);
  root_.Link("sys/devices/" + std::string(place) + "/driver", (Path() / folder).string());
  if (module.empty()) return;
  const std::string module_folder = "sys/module/" + std::string(module);
  std::filesystem::create_directories(Path() / module_folder);
  if (!std::filesystem::is_symlink(Path() / folder / "module")) {
    root_.Link(folder + "/module", (Path() / module_folder).string());
  }
}

void FakeMachine::AddOfClass(std::string_view name, std::string_view place,
                             const Attributes& attributes) const {
  Write(place, attributes);
  const std::string entry = std::filesystem::path(place).filename().string();
  root_.Link("sys/class/" + std::string(name) + "/" + entry, "../../devices/" + std::string(place));
}

}  // namespace test
}  // namespace ostrine
