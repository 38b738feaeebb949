#pragma once

#include <utility>

namespace velmora {

/// Runs `operation` and returns its result, or `fallback` when it throws anything, running out of memory
/// included. Every exported operation whose body can throw stands inside one: no exception leaves the
/// library.
template <class Result, class Operation>
Result Answer(Result fallback, Operation&& operation) noexcept {
  try {
    return std::forward<Operation>(operation)();
  } catch (...) {
    return fallback;
  }
}

/// The same for an operation without a result: what it has done until it throws stays done.
template <class Operation>
void Attempt(Operation&& operation) noexcept {
  try {
    std::forward<Operation>(operation)();
  } catch (...) {  // the caller has no result to put a failure into
  }
}

}  // namespace velmora
