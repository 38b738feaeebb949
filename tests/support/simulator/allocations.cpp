/// Replaces the global allocation functions, so that a test can count allocations and make one fail.
#include "tests/support/simulator/allocations.h"

#include <cstdlib>
#include <limits>
#include <new>

#include "simulator/run.h"

namespace {

constexpr int kNever = std::numeric_limits<int>::max();

thread_local int allocations = 0;
thread_local int fails_at = kNever;
thread_local bool fails_forever = false;
thread_local bool has_failed = false;

void* Allocate(std::size_t size) {
  if (!simulator::IsInsideSimulator()) {
    const int number = allocations++;
    if (number == fails_at || (fails_forever && number > fails_at)) {
      has_failed = true;
      throw std::bad_alloc();
    }
  }
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void* AllocateOrNot(std::size_t size) noexcept {
  try {
    return Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return AllocateOrNot(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return AllocateOrNot(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace velmora::testing {

FailingAllocation::FailingAllocation(int number, bool forever) {
  fails_at = allocations + number;
  fails_forever = forever;
  has_failed = false;
}

FailingAllocation::~FailingAllocation() { fails_at = kNever; }
bool FailingAllocation::Happened() const { return has_failed; }

AllocationCounter::AllocationCounter() : first_(allocations) {}
int AllocationCounter::Count() const { return allocations - first_; }

}  // namespace velmora::testing
