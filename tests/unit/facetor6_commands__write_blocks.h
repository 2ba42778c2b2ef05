// What the tests of written files share: how far a written number may lie from the number, and
// made-up or real blocks that are read, calculated and written by the commands. Tests nothing
// itself.
#pragma once

#include <cmath>
#include <set>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/facetor6_writefiles/writefiles.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace WRITE_TESTS {

namespace fs = std::filesystem;
using namespace LIST_TESTS;
using namespace KVA_UTILITIES;
using CONSOLE_TESTS::PEND;

// ---- how far a written number may lie from the number ----

// The last digit written is that of the esd, or the second one when the esd begins with 1. Half a
// unit of it is largest for an esd of 19.5, which is written 2 one place higher: 5 / 19.5.
inline constexpr float half_unit_of_esd = 0.2565f;
// Without an esd 8 columns are filled: 6 decimals below 1, else at least 6 digits; 3 digits in
// exponent form.
inline constexpr float half_unit_below_1 = 5.1e-7f;
inline constexpr float half_unit = 5.1e-6f;
inline constexpr float half_unit_of_exponent = 0.0051f;
inline constexpr float rounding = 1e-6f;  // of 32-bit reals, relative

inline float MARGIN(float value, float esd) {
  const float size = std::abs(value);
  if (esd >= 1e-8f) return half_unit_of_esd * esd + rounding * size;
  if (size < 0.001f || size > 1e7f) return half_unit_of_exponent * size;
  return std::max(half_unit_below_1, half_unit * size) + rounding * size;
}

inline void EXPECT_WRITTEN(float seen, float value, float esd, const std::string& what) {
  EXPECT_NEAR(seen, value, MARGIN(value, esd)) << what;
}

// An esd is rounded up, from 2.1 to 3 at the most, or down by less than 0.1 of a digit of 2.
inline void EXPECT_ESD(float seen, float esd, const std::string& what) {
  if (esd < 1e-8f) {
    EXPECT_EQ(seen, 0.0f) << what;
    return;
  }
  EXPECT_GE(seen, 0.952f * esd) << what;
  EXPECT_LE(seen, 1.43f * esd) << what;
}

inline void EXPECT_VALUE_AND_ESD(float seen, float seen_esd, float value, float esd,
                                 const std::string& what) {
  EXPECT_WRITTEN(seen, value, esd, what);
  EXPECT_ESD(seen_esd, esd, what + ", esd");
}

// The tensor of an atom as U.
inline VECTOR6 U_OF(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR6& tensor) {
  VECTOR6 u{};
  XTAL::BETA_TO_U(tensor, u, phase.CELL);
  return u;
}

inline bool IS_ANISO(const ATOM_TYPE& atom) {
  return EQUAL_TEXT(atom.THTYPE, "aniso");
}

// Numbers of the atoms that are written: those in use, and those on their sites.
inline std::vector<int> NUMBERS_IN_USE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  std::vector<int> numbers;
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) == ATOM_USED ||
        (phase.ATOM_USE(i) < 0 && phase.ATOM_USE(-phase.ATOM_USE(i)) == ATOM_USED))
      numbers.push_back(i);
  return numbers;
}

inline std::string CENTRE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  return phase.ATOM(phase.BONDS.CENTRE(i, j)).LAB;
}

inline std::string LIGAND(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  return phase.ATOM(phase.BONDS.LIGAND(i, j)).LAB;
}

// ---- the commands ----

class WRITTEN_BLOCKS : public BLOCKS {
 protected:
  static std::string READ(const fs::path& path) {
    PEND("cif " + path.string());
    return SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  }

  // A block of each crystal system with atoms of every kind of displacement, texts, modes and
  // labels that a CIF must quote.
  static void ADD_MADE_UP() {
    struct MADE_UP {
      std::string SYMBOL;
      VECTOR3 LENGTHS;
      VECTOR3 ANGLES;
      VECTOR3 ANGLE_ESDS;
    };
    const std::vector<MADE_UP> made_up{{"P -1", {5, 6, 7}, {98, 101, 115}, {0.02f, 0.011f, 0.3f}},
                                       {"P 1 21/c 1", {5, 6, 7}, {90, 101, 90}, {0, 0.011f, 0}},
                                       {"P n m a", {5, 6, 7}, {90, 90, 90}, {}},
                                       {"I 41/a", {6, 6, 7}, {90, 90, 90}, {}},
                                       {"R -3 c", {6, 6, 9}, {90, 90, 120}, {}},
                                       {"P 63/m", {6, 6, 7}, {90, 90, 120}, {}},
                                       {"F d -3 m:1", {9, 9, 9}, {90, 90, 90}, {}}};
    for (const MADE_UP& made : made_up) {
      CRYSTAL_STRUCTURE_TYPE phase =
          MADE(made.LENGTHS, made.ANGLES, made.SYMBOL,
               {{"Fe 1", {0.1013f, 0.2027f, 0.3039f}, {0.0002f, 0.0011f, 0.00025f}},
                {"?2", {0.25f, 0.125f, 0}},
                {"O1\"", {0.41f, 0.12f, 0.3333f}, {0.003f, 0.0019f, 0.012f}},
                {"_O2", {0.9f, 0.00042f, 0.7f}}},
               {0.0007f, 0.001f, 0.0195f}, made.ANGLE_ESDS);
      SET_TEXTS_AND_ATOMS(phase);
      if (made.SYMBOL == "P 1 21/c 1") phase.SPG.CRYSTALSYS.UNIQUE_AXIS = 'b';
      std::string title = made.SYMBOL;  // blanks would come back as "_"
      REPLACE_CHAR(title, ' ', '_');
      ADD(title, phase);
      PHASE(NPHASES).PT(PRESSURE, PT_VALUE) = 3.5f;
      PHASE(NPHASES).PT(PRESSURE, PT_ESD) = 0.02f;
    }
  }

  // Ions that share a site whose symmetry ties the components of their tensors, in oblique cells
  // and in others.
  static void ADD_TIED() {
    struct TIED {
      std::string SYMBOL;
      VECTOR3 LENGTHS;
      VECTOR3 ANGLES;
      VECTOR3 X;
      VECTOR6 U;
      VECTOR6 U_STD;
    };
    const std::vector<TIED> all{{"P -1",
                                 {5, 6, 7},
                                 {98, 101, 115},
                                 {0.1f, 0.2f, 0.3f},
                                 {0.012f, 0.02f, 0.009f, 0.002f, -0.003f, 0.004f},
                                 {0.0003f, 0.0007f, 0.0005f, 0.0004f, 0.0006f, 0.0002f}},
                                {"P 1 2/m 1",
                                 {5, 6, 7},
                                 {90, 120, 90},
                                 {0.1f, 0, 0.3f},
                                 {0.012f, 0.02f, 0.009f, 0, 0.004f, 0},
                                 {0.0003f, 0.0007f, 0.0005f, 0, 0.0006f, 0}},
                                {"P 3",
                                 {6, 6, 9},
                                 {90, 90, 120},
                                 {0, 0, 0.3f},
                                 {0.012f, 0.012f, 0.009f, 0.006f, 0, 0},
                                 {0.0006f, 0.0006f, 0.0005f, 0.0003f, 0, 0}},
                                {"P 6/m m m",
                                 {6, 6, 9},
                                 {90, 90, 120},
                                 {0.2f, 0.4f, 0},
                                 {0.012f, 0.01f, 0.009f, 0.005f, 0, 0},
                                 {0.0003f, 0.0008f, 0.0005f, 0.0004f, 0, 0}},
                                {"P 4 m m",
                                 {6, 6, 9},
                                 {90, 90, 90},
                                 {0.2f, 0.2f, 0.3f},
                                 {0.012f, 0.012f, 0.009f, 0.001f, 0.002f, 0.002f},
                                 {0.0006f, 0.0006f, 0.0005f, 0.0003f, 0.0002f, 0.0002f}},
                                {"P m -3 m",
                                 {6, 6, 6},
                                 {90, 90, 90},
                                 {0.2f, 0.2f, 0.2f},
                                 {0.012f, 0.012f, 0.012f, 0.002f, 0.002f, 0.002f},
                                 {0.0006f, 0.0006f, 0.0006f, 0.0003f, 0.0003f, 0.0003f}},
                                {"R -3 m:R",
                                 {6, 6, 6},
                                 {75, 75, 75},
                                 {0.2f, 0.2f, 0.2f},
                                 {0.012f, 0.012f, 0.012f, 0.002f, 0.002f, 0.002f},
                                 {0.0006f, 0.0006f, 0.0006f, 0.0003f, 0.0003f, 0.0003f}}};
    for (const TIED& tied : all) {
      CRYSTAL_STRUCTURE_TYPE phase =
          MADE(tied.LENGTHS, tied.ANGLES, tied.SYMBOL, {{"Fe1", tied.X}, {"Mg1", tied.X}});
      for (int i : {1, 2}) {
        ATOM_TYPE& atom = phase.ATOM(i);
        atom.SFACSYMB = i == 1 ? "Fe+3" : "Mg+2";
        atom.CHARGE = i == 1 ? 3.0f : 2.0f;
        atom.OCC = i == 1 ? 0.6f : 0.4f;
        atom.THTYPE = "Aniso";
        atom.UTYPE = "u_ij";
        atom.U = tied.U;
        atom.U_STD = tied.U_STD;
      }
      SET_ALLATOM_MULTIP(phase);
      SET_ALLATOM_ADP(phase);
      std::string title = tied.SYMBOL;
      REPLACE_CHAR(title, ' ', '_');
      ADD(title, phase);
    }
  }

  static void SET_TEXTS_AND_ATOMS(CRYSTAL_STRUCTURE_TYPE& phase) {
    phase.METADATA(1, 1) = "_computing_structure_solution";
    phase.METADATA(1, 2) = "the authors' own program";
    phase.METADATA(2, 1) = "_refine_special_details";
    phase.METADATA(2, 2) = "two|;lines";
    phase.METADATA(3, 1) = "_chemical_name_mineral";
    phase.ATOM(1).OCC = 0.75f;
    phase.ATOM(1).OCC_STD = 0.013f;
    phase.ATOM(1).THTYPE = "Aniso";
    phase.ATOM(1).UTYPE = "u_ij";
    phase.ATOM(1).U = {0.0112f, 0.0223f, 0.0334f, 0.0011f, -0.0022f, 0};
    phase.ATOM(1).U_STD = {0.0003f, 0.0012f, 0.00195f, 0, 0.0002f, 0};
    phase.ATOM(2).SFACSYMB = "";
    phase.ATOM(2).CHEMSYMB = "";
    phase.ATOM(2).Z = 0;
    phase.ATOM(4).SFACSYMB = "O";
    phase.ATOM(4).CHEMSYMB = "O";
    phase.ATOM(4).Z = 8;
    phase.ATOM(3).BISO = 1.2f;
    phase.ATOM(3).BISO_STD = 0.05f;
    SET_ALLATOM_ADP(phase);
    RAMAN::ALLOCATE_MODE_LIST(2, phase.MODE_LIST);
    phase.MODE_LIST.MODE(1).NAME = "one of two";
    phase.MODE_LIST.MODE(2).W0 = 464.5f;
  }

  // All files of a folder instead of the blocks that were there.
  static void READ_SERIES(const fs::path& folder_of) {
    INIT_PHASE_LIST();
    std::set<fs::path> files;
    for (const fs::directory_entry& file : fs::directory_iterator(folder_of))
      files.insert(file.path());
    for (const fs::path& file : files) READ(file);
  }

  static void CALC() { SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS); }

  static void WRITE(const std::string& name) {
    PEND("cif " + name);
    const std::string answers = SUM_NBONDS(REFERENCE()) > 0 ? "y\ny\n" : "y\n";
    const std::string said = SAID(answers, FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
    EXPECT_NE(said.find(INTEGER_COLUMNS(NPHASES, 5) + " structures written to file\n"),
              std::string::npos);
  }

  // Forgets all blocks and reads the file instead.
  static std::string READ_ALONE(const std::string& name) {
    INIT_PHASE_LIST();
    return READ(name);
  }

  // Large structures are not calculated, to keep the tests short.
  static bool CALC_IS_SHORT() {
    constexpr int many_atoms = 500;
    int atoms = 0;
    for (int k = 1; k <= NPHASES; ++k) atoms += PHASE(k).NATOMS;
    return atoms < many_atoms;
  }
};

}  // namespace WRITE_TESTS
