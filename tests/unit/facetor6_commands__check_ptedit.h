// What the tests of CHECK, PTEDIT and refused files share: blocks of one atom put straight into the
// phase list. Tests nothing itself.
#pragma once

#include <string>

#include "phases.h"
#include "structures.h"

namespace BLOCK_TESTS {

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class BLOCK_COMMANDS : public PHASE_TESTS::PHASES {
 protected:
  // At 298(1) K and 0.00(2) GPa.
  static void ADD_BLOCKS(int n) {
    for (int i = 0; i < n; ++i) {
      CRYSTAL_STRUCTURE_TYPE phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"O1", {0, 0, 0}}});
      phase.PT(TEMPERATURE, PT_VALUE) = 298;
      phase.PT(TEMPERATURE, PT_ESD) = 1;
      phase.PT(PRESSURE, PT_ESD) = 0.02f;
      ADD(phase);
    }
  }

  static float P(int block) { return PHASE(block).PT(PRESSURE, PT_VALUE); }
  static float T(int block) { return PHASE(block).PT(TEMPERATURE, PT_VALUE); }
  static float ESD_P(int block) { return PHASE(block).PT(PRESSURE, PT_ESD); }
  static float ESD_T(int block) { return PHASE(block).PT(TEMPERATURE, PT_ESD); }

  static bool HOLDS(const std::string& said, const std::string& text) {
    return said.find(text) != std::string::npos;
  }
};

}  // namespace BLOCK_TESTS
