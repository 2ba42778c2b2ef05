// What the tests of the commands share: a program that has just been started, and blocks put
// straight into its phase list. Tests nothing itself.
#pragma once

#include "console__dialogue.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"

namespace PHASE_TESTS {

class PHASES : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    START();
  }

  // As at the start of the program: nothing is loaded, nothing is set.
  static void START() {
    FACETOR_CONSOLE::PHASE = {};  // without the room that an earlier test has left
    FACETOR_CONSOLE::INIT_PHASE_LIST();
    FACETOR_CONSOLE::RUN = FACETOR_CONSOLE::RUN_PARAMETERS{};
    FACETOR_CONSOLE::LIMITS_OF_BONDS = {};
    FACETOR_CONSOLE::CLEAR_FACETOR_VALENCE();
    FACETOR_CONSOLE::SET_DEFAULT_CHARGES();
  }

  static void ADD(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase) {
    KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST newx;
    newx.ADD(phase);
    bool error = true;
    FACETOR_CONSOLE::ADD_PHASE_LIST(newx, 1, error);
    EXPECT_FALSE(error);
  }
};

}  // namespace PHASE_TESTS
