/// docs/machine-files.md names every key of a machine file, with its kind, and no other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <concepts>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <variant>

#include "simulator/machine.h"

namespace {

using testing::ContainerEq;

/// "baseboard.product" to its kind; lists of objects have the path of one of their objects.
using Keys = std::map<std::string, std::string>;

/// Collects the keys that the simulator reads.
class KeyCollector {
 public:
  KeyCollector(Keys& keys, std::string path) : keys_(keys), path_(std::move(path)) {}

  template <class Value>
  void Field(const char* key, Value& value) {
    keys_[path_ + key] = Kind(path_ + key, value);
  }

 private:
  std::string Kind(const std::string&, std::string&) { return "text"; }
  std::string Kind(const std::string&, bool&) { return "flag"; }
  template <std::integral Number>
  std::string Kind(const std::string&, Number&) {
    return "number";
  }
  template <class Value>
  std::string Kind(const std::string& path, std::optional<Value>&) {
    Value value{};
    return Kind(path, value);
  }
  template <class Value>
  std::string Kind(const std::string& path, std::vector<Value>&) {
    Value value{};
    return "list of " + Kind(path, value);
  }
  std::string Kind(const std::string&, simulator::Bytes&) { return "bytes"; }
  template <class... Values>
  std::string Kind(const std::string&, std::variant<Values...>&) {
    return "text or number";
  }
  template <class Value>
  std::string Kind(const std::string& path, std::map<std::string, Value>&) {
    Value value{};
    return "map to " + Kind(path, value);
  }
  template <class Object>
    requires std::is_class_v<Object>
  std::string Kind(const std::string& path, Object& object) {
    KeyCollector inner(keys_, path + ".");
    Fields(inner, object);
    return "object";
  }

  Keys& keys_;
  std::string path_;
};

Keys KeysOfTheSimulator() {
  Keys keys;
  simulator::Machine machine;
  KeyCollector collector(keys, "");
  Fields(collector, machine);
  return keys;
}

/// A heading "## `baseboard`" begins the keys of an object; a row "| `product` | text | ... |" is one key.
Keys KeysOfThePage() {
  std::ifstream page(VELMORA_MACHINES "/../docs/machine-files.md");
  const std::regex heading("#+ `([a-z_.]+)`");
  const std::regex row("\\| `([a-z_0-9]+)` \\| ([a-z ]+) \\| .+ \\|");
  std::string line;
  std::string path;
  Keys keys;
  while (std::getline(page, line)) {
    std::smatch found;
    if (std::regex_match(line, found, heading)) path = found[1].str() + ".";
    if (std::regex_match(line, found, row)) keys[path + found[1].str()] = found[2];
  }
  return keys;
}

TEST(MachineFilesPage, TellsEveryKeyWithItsKind) {
  const Keys page = KeysOfThePage();

  EXPECT_THAT(page, ContainerEq(KeysOfTheSimulator()));
  EXPECT_TRUE(page.contains("baseboard.bios_version"));
}

}  // namespace
