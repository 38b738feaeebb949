/// Runs one operation on one machine with everything below it going wrong in turn.
///
/// The operation is run clean, which counts its platform calls and its allocations. Then every call is made
/// to fail, to succeed with nothing, to give an over-long or endless answer, and to throw, and every
/// allocation is made to fail: once, and from there on for ever. Each time
/// - nothing is thrown out of it,
/// - no handle is left open or closed twice, and no call is unscripted,
/// - what comes out is what came out clean or a documented failure; of an over-long answer also what the
///   operation's table says is a right reading of it.
/// Leaks and accesses outside of memory are the sanitizers' to find.
#pragma once

#include <string>
#include <vector>

#include "simulator/machine.h"
#include "tests/torture/operation.h"

namespace torture {

/// At most so many calls and so many allocations of one run are made to go wrong: the first, the last, and
/// evenly spread ones between. A longer run leaves the others out and says how many.
inline constexpr int kMostPlaces = VELMORA_TORTURED_PLACES;

struct Survey {
  int points = 0;    ///< runs in which something went wrong on purpose
  int left_out = 0;  ///< runs that the bound left out
  std::vector<std::string> findings;
};

Survey Torture(const Operation& operation, const simulator::Machine& machine,
               const std::string& machine_name);

/// The places out of `count` that are tried, in rising order.
std::vector<int> PlacesToTry(int count);

}  // namespace torture
