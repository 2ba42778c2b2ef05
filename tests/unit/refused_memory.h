// One allocation that can be refused. A test program that includes this has the operator new of
// refused_memory.cpp instead of the system's.
#pragma once

#include <cstddef>

namespace REFUSED_MEMORY {

extern std::size_t refused;  // bytes of the allocation that fails; 0: none

}  // namespace REFUSED_MEMORY
