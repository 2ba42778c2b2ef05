// What the tests of the bond valences share: blocks put straight into the phase list with their
// bonds measured, and the dialogue of the calculation. Tests nothing itself.
#pragma once

#include <cmath>  // for exp
#include <string>
#include <string_view>
#include <vector>

#include "phases.h"
#include "src/facetor6_calc/calc.h"
#include "structures.h"

namespace VALENCE_TESTS {

using namespace FACETOR_CALC;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class VALENCES : public PHASE_TESTS::PHASES {
 protected:
  // Adds a block and measures the bonds of all blocks.
  static void ADD(const CRYSTAL_STRUCTURE_TYPE& phase) {
    PHASES::ADD(phase);
    SAID("\n", RUN_FACETOR_CALC_BONDS);
  }

  static std::string CALC(const std::string& answers = "n\n") {
    return SAID(answers, RUN_FACETOR_CALC_VALENCE);
  }

  // Bonds between any two atoms are looked for.
  static void ALLOW_ALL_BONDS() { RUN.BONDEX = {}; }
};

// One pair in a large cell: d = 9 * 0.18 = 1.62 angstroms.
inline CRYSTAL_STRUCTURE_TYPE PAIR(const std::string& centre, const std::string& ligand) {
  return MADE({9, 9, 9}, {90, 90, 90}, "P 1",
              {{centre, {0, 0, 0}}, {ligand, {0.18f, 0, 0}, {0.001f, 0, 0}}});
}

// Pairs far from each other in a cell of 60 angstroms: each label with an oxygen at 1.8 angstroms.
// Atoms 1, 3, 5 ... are the labels, 2, 4, 6 ... their oxygens.
inline CRYSTAL_STRUCTURE_TYPE OXIDES(const std::vector<std::string>& labels) {
  std::vector<SITE> sites;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const VECTOR3 x{0.1f * static_cast<float>(i % 7), 0.1f * static_cast<float>(i / 7), 0.1f};
    sites.push_back({labels[i] + "1", x});
    sites.push_back({"O" + std::to_string(i), {x[0], x[1], 0.13f}});
  }
  return MADE({60, 60, 60}, {90, 90, 90}, "P 1", sites);
}

// s = exp((d0 - d) / b).
inline float LAW(float d0, float b, float d) {
  return std::exp((d0 - d) / b);
}

inline bool HOLDS(const std::string& said, const std::string& text) {
  return said.find(text) != std::string::npos;
}

inline int TIMES(const std::string& said, const std::string& text) {
  int count = 0;
  for (std::size_t at = said.find(text); at != std::string::npos; at = said.find(text, at + 1))
    ++count;
  return count;
}

// The table as "SI+4 O-2" and the missing pairs alike.
inline std::vector<std::string> PAIRS_FOUND() {
  std::vector<std::string> pairs;
  for (const BV_PAIR& pair : BV_PAIRS) pairs.push_back(pair.CATION + " " + pair.ANION);
  return pairs;
}

inline std::vector<std::string> PAIRS_MISSING() {
  std::vector<std::string> pairs;
  for (const LABEL_PAIR& pair : BV_MISSING) pairs.push_back(pair.FIRST + " " + pair.SECOND);
  return pairs;
}

inline constexpr const char* question =
    "     Do you want to change any of these parameters? (Y/N) <N>?";

}  // namespace VALENCE_TESTS
