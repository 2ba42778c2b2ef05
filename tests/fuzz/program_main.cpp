// The program under a name that a fuzz target can call, and what it does behind its start.
#define main GEMMARA_MAIN  // libFuzzer brings a main of its own
#include "src/facetor6_main/facetor6_main.cpp"

void GEMMARA_GO_ON(const std::string& macro) {
  CONSOLE.RUN_TYPE = 1;
  INIT_CONSOLE(macro);
  COMMAND_LOOP();
}
