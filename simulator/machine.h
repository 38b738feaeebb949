/// A whole machine as a plain value, from which the simulator answers both platform contracts.
///
/// A section that is absent has not been scripted: a call that would need it fails the test by name. A
/// machine that comes from a file is whole, so there a missing section means that the machine has no such
/// thing.
#pragma once

#include <optional>
#include <string>

namespace simulator {

/// A text that the firmware or the system may hold; a query for an absent one fails.
using Text = std::optional<std::string>;

/// The baseboard and the BIOS. File key `baseboard`.
struct Baseboard {
  Text product;
  Text manufacturer;
  Text version;
  Text serial_number;
  Text bios_version;
  Text bios_manufacturer;
  Text bios_release_date;

  bool operator==(const Baseboard&) const = default;
};

struct Machine {
  std::string name;  ///< what kind of machine this is, for people
  std::optional<Baseboard> baseboard;

  bool operator==(const Machine&) const = default;
};

/// A machine of which nothing is scripted: any call fails the test by name.
Machine BlankMachine();

/// A machine that has nothing: every call is answered with its failure or with nothing.
Machine EmptyMachine();

}  // namespace simulator
