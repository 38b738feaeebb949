/// Answers that a test makes the platform give in place of proper ones.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "simulator/run.h"

namespace simulator {

/// How many characters an over-long text has: more than any buffer of the library.
inline constexpr std::size_t kOverlongSize = 70'000;

/// The text that a call gives under `fault`: an over-long one, or none.
std::wstring SpoiledText(Fault fault);

/// The list of texts likewise: one over-long text among many short ones, or none.
std::vector<std::wstring> SpoiledTexts(Fault fault);

/// The number likewise: the greatest, or 0.
unsigned int SpoiledNumber(Fault fault);

}  // namespace simulator
