/// Replaces the global allocation functions by ones that count.
#include "benchmarks/allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local long allocations = 0;

void* Allocate(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace velmora::benchmarks {

long Allocations() { return allocations; }

}  // namespace velmora::benchmarks
