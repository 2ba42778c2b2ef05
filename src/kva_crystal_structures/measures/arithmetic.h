// The arithmetic of expressions, with the derivatives that esds are propagated by.
#pragma once

#include "src/kva_crystal_structures/measures/words.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Value of an operation and its derivatives by its operands; not finite where there is none.
struct OPERATED {
  double VALUE = 0.0;
  double BY_LEFT = 0.0;
  double BY_RIGHT = 0.0;
};
OPERATED OPERATE(OPERATION operation, double left, double right);

}  // namespace KVA_CRYSTAL_STRUCTURES
