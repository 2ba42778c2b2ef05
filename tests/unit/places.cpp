#include "places.h"

std::string PLACES::SOURCE() {
  return GEMMARA_SOURCE;
}

std::string PLACES::PROGRAM() {
  return GEMMARA_PROGRAM;
}

std::string PLACES::FAULTS() {
  return GEMMARA_FAULTS;
}

std::string PLACES::SAMPLES() {
  return GEMMARA_SAMPLES;
}

bool PLACES::LINE_EDITING() {
  return GEMMARA_LINE_EDITING;
}
