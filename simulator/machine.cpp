#include "simulator/machine.h"

namespace simulator {
namespace {

/// Gives every section that is absent its empty value.
struct SectionFiller {
  template <class Section>
  void Field(const char* /*key*/, std::optional<Section>& section) {
    if (!section) section.emplace();
  }
  void Field(const char* /*key*/, const std::string& /*name*/) {}
};

}  // namespace

Machine BlankMachine() { return {}; }

Machine EmptyMachine() {
  Machine machine;
  SectionFiller filler;
  Fields(filler, machine);
  return machine;
}

}  // namespace simulator
