#pragma once

#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace velmora::testing {

/// While it lives, allocation number `number` (counted from 0) of this thread fails with std::bad_alloc; with
/// `forever` every one from it on. What the simulator allocates for itself does not count.
class FailingAllocation {
 public:
  explicit FailingAllocation(int number, bool forever = false);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();

  /// Whether the allocation was asked for and failed.
  bool Happened() const;
};

/// Counts the allocations of this thread while it lives.
class AllocationCounter {
 public:
  AllocationCounter();
  AllocationCounter(const AllocationCounter&) = delete;
  AllocationCounter& operator=(const AllocationCounter&) = delete;

  int Count() const;

 private:
  int first_;
};

/// The results of `operation` with its first allocation failing, then its second, and so on. The last result
/// is that of the run which was through before its turn to fail came.
template <class Operation>
auto WithEachAllocationFailing(Operation operation) {
  constexpr int kMore = 10'000;  // than any operation of the library may need
  std::vector<std::invoke_result_t<Operation>> results;
  for (int number = 0; number < kMore; ++number) {
    bool happened = false;
    auto result = [&] {
      const FailingAllocation failing(number);
      auto kept = operation();
      happened = failing.Happened();
      return kept;
    }();
    results.push_back(std::move(result));
    if (!happened) return results;
  }
  throw std::logic_error("the operation never gets through");
}

}  // namespace velmora::testing
