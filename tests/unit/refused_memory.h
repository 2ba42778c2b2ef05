// Takes the place of the program's own allocation in a test program, so that one of them can be
// refused. For a program of one source only.
#pragma once

#include <cstdlib>
#include <new>

namespace REFUSED_MEMORY {

inline std::size_t refused = 0;  // bytes of the allocation that fails; 0: none

}  // namespace REFUSED_MEMORY

void* operator new(std::size_t bytes) {
  const bool fails = bytes > 0 && bytes == REFUSED_MEMORY::refused;
  void* const memory = fails ? nullptr : std::malloc(bytes + 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
