// What the tests of the reports share: small blocks put straight into the phase list, and what a
// report says of them. Tests nothing itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console__dialogue.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list.h"
#include "structures.h"

namespace LIST_TESTS {

using namespace FACETOR_LIST;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

// Head start, 45 columns: T above column 23, P above 32, IUSE above 42 to 45.
inline const std::string head = "       BLOCKNAME      T        P         IUSE";

// Line starts, 44 columns: number 1-3, title 6-19, T 21-26, P 28-34, use 44. With esds T from 21,
// with the blank of its text first, and the pressure of one atmosphere at 32.
inline const std::string start_1 = "  1: first         : 298.0   0.000         1";
inline const std::string start_2 = "  2: second        : 298.0   0.000         1";
inline const std::string start_3 = "  3: third         : 298.0   0.000         1";
inline const std::string esd_start_1 = "  1: first         : 298.0(10) 0.0001      1";
inline const std::string esd_start_2 = "  2: second        : 298.0(10) 0.0001      1";
inline const std::string esd_start_3 = "  3: third         : 298.0(10) 0.0001      1";

inline const std::string no_centre = "  No equivalent central atom in this structure";

class BLOCKS : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    INIT_PHASE_LIST();
    RUN = RUN_PARAMETERS{};
    CLEAR_FACETOR_VALENCE();
  }

  static void ADD(const std::string& title, CRYSTAL_STRUCTURE_TYPE phase) {
    phase.BLOCK_TITLE = title;
    phase.PT(TEMPERATURE, PT_VALUE) = 298.0f;
    phase.PT(TEMPERATURE, PT_ESD) = 1.0f;
    STRUCTURE_LIST newx;
    newx.ADD(phase);
    bool error = false;
    ADD_PHASE_LIST(newx, 1, error);
  }

  // A silicon and three oxygen atoms without symmetry.
  static void ADD(const std::string& title) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"Si1", {0.1f, 0.2f, 0.3f}},
                     {"O1", {0.4f, 0.2f, 0.3f}},
                     {"O2", {0.1f, 0.5f, 0.3f}},
                     {"O3", {0.1f, 0.2f, 0.6f}}}));
  }

  // Bonds of the first atom, their ligands the atoms 2, 3, 4, 2, ... A length of 0 leaves a gap.
  static void BOND(int block, const std::vector<float>& lengths, float std = 0.003f) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    phase.NBONDS(1) = 0;
    for (int j = 1; j <= static_cast<int>(lengths.size()); ++j) {
      const float length = lengths[static_cast<std::size_t>(j - 1)];
      if (length <= 0.0f) continue;
      ++phase.NBONDS(1);
      phase.BONDS(1, j, BOND_CENTRE) = 1;
      phase.BONDS(1, j, BOND_LENGTH) = length;
      phase.BONDS(1, j, BOND_LENGTH_STD) = std;
      phase.BONDS(1, j, BOND_LIGAND) = static_cast<float>(2 + (j - 1) % 3);
      phase.BONDS(1, j, BOND_SYMCODE) = static_cast<float>(j) + 0.555f;
    }
    phase.POLYHEDRON(1, POLY_MEAN_LENGTH) = 1.75f;
    phase.POLYHEDRON(1, POLY_ELONGATION) = 1.0125f;
    phase.POLYHEDRON(1, POLY_VARIANCE) = 12.5f;
    phase.POLYHEDRON(1, POLY_VOLUME) = 2.25f;
    phase.POLYHEDRON(1, POLY_VOLUME_STD) = 0.015f;
  }

  // Title and limits of a bond or valence table.
  static std::string TITLE(const std::string& words) {
    return "\n\n     " + words +
           " CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first)\n"
           "     BETWEEN  0.01 AND  2.20 ANGSTROM\n";
  }

  // Places from the given line on, so that a comparison shows them alone.
  static std::string ROWS(const std::string& text, std::string_view from) {
    const std::size_t at = text.find(from);
    return at == std::string::npos ? "no such line in:\n" + text : text.substr(at);
  }
};

}  // namespace LIST_TESTS
