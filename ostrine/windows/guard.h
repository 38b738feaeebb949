/// Keeps exceptions, want of memory included, inside the library.
#pragma once

#include <utility>

namespace ostrine {

/// What `ask` answers, or `fallback` when it throws.
template <class Result, class Ask>
Result Guarded(Result fallback, Ask&& ask) noexcept {
  try {
    return std::forward<Ask>(ask)();
  } catch (...) {
    return fallback;
  }
}

}  // namespace ostrine
