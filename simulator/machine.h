/// A whole machine as a plain value, from which the simulator answers both platform contracts.
///
/// A section that is absent has not been scripted: a call that would need it fails the test by name. A
/// machine that comes from a file is whole, so there a missing section means that the machine has no such
/// thing.
///
/// Each section stands in a file of its own with a list `Fields` of the keys by which a machine file holds
/// its members. One list serves reading, writing and filling: an archive has a member `Field(key, member)`
/// that does the one thing it is for.
#pragma once

#include <optional>
#include <string>

#include "simulator/sections/baseboard.h"

namespace simulator {

struct Machine {
  std::string name;  ///< what kind of machine this is, for people
  std::optional<Baseboard> baseboard;

  bool operator==(const Machine&) const = default;
};

template <class Archive>
void Fields(Archive& archive, Machine& machine) {
  archive.Field("name", machine.name);
  archive.Field("baseboard", machine.baseboard);
}

/// A machine of which nothing is scripted: any call fails the test by name.
Machine BlankMachine();

/// A machine that has nothing: every call is answered with its failure or with nothing.
Machine EmptyMachine();

}  // namespace simulator
