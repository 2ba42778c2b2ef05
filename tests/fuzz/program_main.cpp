// The program under a name that a fuzz target can call.
#define main GEMMARA_MAIN  // libFuzzer brings a main of its own
#include "src/facetor6_main/facetor6_main.cpp"
