#include "refused_memory.h"

#include <cstdlib>
#include <new>

std::size_t REFUSED_MEMORY::refused = 0;

void* operator new(std::size_t bytes) {
  const bool fails = bytes > 0 && bytes == REFUSED_MEMORY::refused;
  void* const memory = fails ? nullptr : std::malloc(bytes + 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

// All forms stand here: memory that is got by one of somebody else's must not be given back by
// ours.
void* operator new(std::size_t bytes, const std::nothrow_t& /*tag*/) noexcept {
  const bool fails = bytes > 0 && bytes == REFUSED_MEMORY::refused;
  return fails ? nullptr : std::malloc(bytes + 1);
}

void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
  std::free(memory);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
