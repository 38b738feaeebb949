/// Which repairs would take the ground from under whoever asks for them. Pure.
#pragma once

#include <string>

#include "velmora-report/lifelines.h"

namespace report {

/// What a repair is about to take out for a while, or for good.
struct RepairTarget {
  std::string place;  ///< see PlaceOf
  bool is_only_working_display = false;
  bool may_carry_disks = false;  ///< a bus, on which a disk may hang
};

/// Why the target is not to be taken out, as the end of a sentence: "it is the only display". Empty when
/// nothing speaks against it.
std::string WhyNotToRemove(const RepairTarget& target, const Lifelines& lifelines);

}  // namespace report
