// A console without blocks and definitions, before and after a test of MEASURE.
#pragma once

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
};

}  // namespace MEASURE_TESTS
