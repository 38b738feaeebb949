/// Machines of the test's own making: a tree below a root folder, in the form in which the kernel shows it.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "tests/unit/ostrine/linux/fake_root.h"

namespace ostrine::test {

using Attributes = std::map<std::string, std::string>;

class FakeMachine {
 public:
  FakeMachine();

  const FakeRoot& Root() const { return root_; }
  std::filesystem::path Path() const { return root_.Path(); }
  std::filesystem::path Device(std::string_view place) const { return Path() / "sys/devices" / place; }

  /// A device at `place` below sys/devices that `bus` lists.
  void Add(std::string_view bus, std::string_view place, const Attributes& attributes) const;
  /// Binds the device at `place` to `driver` of `bus`, which `module` brings unless that is empty.
  void Bind(std::string_view bus, std::string_view place, std::string_view driver,
            std::string_view module = {}) const;
  /// A folder of class `name` at `place`: a network interface, an input device, a chip, a battery.
  void AddOfClass(std::string_view name, std::string_view place, const Attributes& attributes) const;
  void Write(std::string_view place, const Attributes& attributes) const;
  void WriteFile(std::string_view name, std::string_view text) const { root_.Write(name, text); }

 private:
  FakeRoot root_;
};

/// A laptop of today: wireless and wired network, Bluetooth, a sleeping graphics card without a driver,
/// sound, a fingerprint reader, two like USB hubs of which one is switched off, a keyboard that the firmware
/// describes, an unknown firmware device, sensors, two batteries, and firmware settings.
void BuildLaptop(const FakeMachine& machine);

/// Its modules and the kernel's list of them.
void BuildModules(const FakeMachine& machine);

/// While it lives, the library's operations see this machine in place of the real one.
class ActsOn {
 public:
  explicit ActsOn(const FakeMachine& machine);
  ActsOn(const ActsOn&) = delete;
  ActsOn& operator=(const ActsOn&) = delete;
  ~ActsOn();
};

}  // namespace ostrine::test
