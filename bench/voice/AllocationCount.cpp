#include "AllocationCount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

// The allocator itself.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)
void* allocate(std::size_t size) {
  count.fetch_add(1, std::memory_order_relaxed);
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

}  // namespace

namespace orivex::bench {

std::size_t allocationCount() {
  return count.load(std::memory_order_relaxed);
}

}  // namespace orivex::bench

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc)
