// A console without blocks and definitions, before and after a test of MEASURE, and blocks for it.
#pragma once

#include <vector>

#include "console__dialogue.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"

namespace MEASURE_TESTS {

class MEASURE_TEST : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    FORGET();
  }
  void TearDown() override {
    FORGET();
    CONSOLE_TEST::TearDown();
  }

  static void FORGET() {
    FACETOR_CONSOLE::MEASURES.clear();
    FACETOR_CONSOLE::ALLOCATE_PHASE_LIST(FACETOR_CONSOLE::START_PHASES);
    FACETOR_CONSOLE::FOLLOW_REFERENCE();
    FACETOR_CONSOLE::RUN = {};
  }

  static void LOAD(const std::vector<KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE>& blocks) {
    KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST list;
    for (const auto& block : blocks) list.ADD(block);
    bool error = false;
    FACETOR_CONSOLE::ADD_PHASE_LIST(list, list.COUNT(), error);
    for (int b = 1; b <= FACETOR_CONSOLE::NPHASES; ++b)
      SET_ALLATOM_MULTIP(FACETOR_CONSOLE::PHASE(b));
    ASSERT_FALSE(error);
  }
};

}  // namespace MEASURE_TESTS
