#pragma once

namespace velmora::testing {

/// While it lives, allocation number `number` (counted from 0) of this thread fails with std::bad_alloc; with
/// `forever` every one from it on. What the simulator allocates for itself does not count.
class FailingAllocation {
 public:
  explicit FailingAllocation(int number, bool forever = false);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();
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

}  // namespace velmora::testing
