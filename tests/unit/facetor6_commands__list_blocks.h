// What the tests of the reports share: small blocks put straight into the phase list, and what a
// report says of them. Tests nothing itself.
#pragma once

#include <string>
#include <string_view>
#include <utility>  // for as_const
#include <vector>

#include "phases.h"
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

class BLOCKS : public PHASE_TESTS::PHASES {
 protected:
  static void ADD(const std::string& title, CRYSTAL_STRUCTURE_TYPE phase) {
    phase.BLOCK_TITLE = title;
    phase.PT(TEMPERATURE, PT_VALUE) = 298.0f;
    phase.PT(TEMPERATURE, PT_ESD) = 1.0f;
    PHASES::ADD(phase);
  }

  // A silicon and three oxygen atoms without symmetry.
  static void ADD(const std::string& title) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"Si1", {0.1f, 0.2f, 0.3f}},
                     {"O1", {0.4f, 0.2f, 0.3f}},
                     {"O2", {0.1f, 0.5f, 0.3f}},
                     {"O3", {0.1f, 0.2f, 0.6f}}}));
  }

  // Bonds of a centre, their ligands the atoms 2, 3, 4, 2, ... A length of 0 leaves a gap.
  static void BOND(int block, const std::vector<float>& lengths, float std = 0.003f,
                   int centre = 1) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    phase.NBONDS(centre) = 0;
    for (int j = 1; j <= static_cast<int>(lengths.size()); ++j) {
      const float length = lengths[static_cast<std::size_t>(j - 1)];
      if (length <= 0.0f) continue;
      ++phase.NBONDS(centre);
      phase.BONDS(centre, j, BOND_CENTRE) = static_cast<float>(centre);
      phase.BONDS(centre, j, BOND_LENGTH) = length;
      phase.BONDS(centre, j, BOND_LENGTH_STD) = std;
      phase.BONDS(centre, j, BOND_LIGAND) = static_cast<float>(2 + (j - 1) % 3);
      phase.BONDS(centre, j, BOND_SYMCODE) = static_cast<float>(j) + 0.555f;
    }
    phase.POLYHEDRON(centre, POLY_MEAN_LENGTH) = 1.75f;
    phase.POLYHEDRON(centre, POLY_ELONGATION) = 1.0125f;
    phase.POLYHEDRON(centre, POLY_VARIANCE) = 12.5f;
    phase.POLYHEDRON(centre, POLY_VOLUME) = 2.25f;
    phase.POLYHEDRON(centre, POLY_VOLUME_STD) = 0.015f;
  }

  // What else the bonds of a centre have: bond j a corrected length 0.01 above the plain one, a
  // displacement of 0.1 j, and a valence of 0.25 j.
  static void ADD_BOND_VALUES(int block, int centre = 1) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int j = 1; j <= MAX_BONDS; ++j) {
      if (std::as_const(phase).BONDS(centre, j, BOND_CENTRE) <= 0.0f) continue;
      phase.BONDS(centre, j, BOND_LENGTH_SRB) = phase.BONDS(centre, j, BOND_LENGTH) + 0.01f;
      phase.BONDS(centre, j, BOND_DISPL_CENTRE) = 0.1f * static_cast<float>(j);
      phase.BONDS(centre, j, BOND_VALENCE) = 0.25f * static_cast<float>(j);
      phase.BONDS(centre, j, BOND_VALENCE_STD) = 0.01f;
    }
    phase.POLYHEDRON(centre, POLY_VOLUME_SRB) = 2.5f;
    phase.POLYHEDRON(centre, POLY_VALENCE_SUM) = 0.75f;
    phase.POLYHEDRON(centre, POLY_VALENCE_SUM_STD) = 0.02f;
  }

  // Angles 100 + j + k and edges j + k / 10 of the pairs j < k of n ligands.
  static void ADD_ANGLES(int block, int n, int centre = 1) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int k = 2; k <= n; ++k)
      for (int j = 1; j < k; ++j) {
        phase.BANGLES(centre, j, k, ANGLE) = static_cast<float>(100 + j + k);
        phase.BANGLES(centre, j, k, ANGLE_STD) = 0.5f;
        phase.BANGLES(centre, j, k, EDGE) = static_cast<float>(j) + 0.1f * static_cast<float>(k);
        phase.BANGLES(centre, j, k, EDGE_STD) = 0.004f;
      }
    phase.POLYHEDRON(centre, POLY_MEAN_EDGE) = 1.25f;
  }

  // Title and limits of a bond or valence table.
  static std::string TITLE(const std::string& words, const std::string& label = "Si1") {
    return "\n\n     " + words + " CENTRAL ATOM " + label +
           "    (NAME IN REFERENCE BLOCK first)\n"
           "     BETWEEN  0.01 AND  2.20 ANGSTROM\n";
  }

  // Places from the given line on, so that a comparison shows them alone.
  static std::string ROWS(const std::string& text, std::string_view from) {
    const std::size_t at = text.find(from);
    return at == std::string::npos ? "no such line in:\n" + text : text.substr(at);
  }
};

}  // namespace LIST_TESTS
