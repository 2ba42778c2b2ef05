// Rows of bonds and angles with their symmetry codes.
#include "src/facetor6_writefiles/geometry_loops.h"

#include <array>

#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace FACETOR_WRITEFILES {

using namespace KVA_CIFNEW;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

std::string VALUE_TEXT(float value, float std, int plain_decimals) {
  if (NOTNUM(std)) return LEFT_ADJUST(WRITE_VAL(value, 'F', 8, plain_decimals));
  return CIF_NUMBER(value, std);
}

std::string CENTRE_LABEL(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  return CIF_WORD(phase.ATOM(phase.BONDS.CENTRE(i, j)).LAB);
}

std::string LIGAND_LABEL(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  return CIF_WORD(phase.ATOM(phase.BONDS.LIGAND(i, j)).LAB);
}

std::string LIGAND_CODE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  return WRITE_SYMCODE(phase.BONDS(i, j, BOND_SYMCODE));
}

std::string CENTRE_CODE(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return WRITE_SYMCODE(phase.BOND_CEN(i, CENTRE_SYMCODE));
}

std::vector<std::string> ANGLE_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j, int k) {
  constexpr int angle_decimals = 3;
  return {
      LIGAND_LABEL(phase, i, j),
      CENTRE_LABEL(phase, i, j),
      LIGAND_LABEL(phase, i, k),
      VALUE_TEXT(phase.BANGLES(i, j, k, ANGLE), phase.BANGLES(i, j, k, ANGLE_STD), angle_decimals),
      LIGAND_CODE(phase, i, j),
      CENTRE_CODE(phase, i),
      LIGAND_CODE(phase, i, k)};
}

// Bonds of centre i whose atoms stand in the file.
std::vector<int> BONDS_TO_WRITE(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<int> bonds;
  for (int j : BONDS_PRESENT(phase, i))
    if (IS_WRITTEN(phase, phase.BONDS.CENTRE(i, j)) && IS_WRITTEN(phase, phase.BONDS.LIGAND(i, j)))
      bonds.push_back(j);
  return bonds;
}

// A loop without rows is no CIF: nothing is written then.
bool WRITE_LOOP(const std::vector<std::string>& names, const ALIGNED_ROWS& rows, int unit, int step,
                WORK& work) {
  constexpr std::size_t rows_at_once = 1000;
  if (rows.ENDS.empty()) return true;
  WRITE_CIF_LOOP_HEAD(names, unit);
  for (std::size_t k = 0; k < rows.ENDS.size(); ++k) {
    if (k % rows_at_once == 0 && !GO_ON(work, step)) return false;
    WRITE_CIF_LINE(ALIGNED_LINE(rows, k), unit);
  }
  return true;
}

// ---- the loops ----

void ADD_BONDS(const CRYSTAL_STRUCTURE_TYPE& phase, int i, ALIGNED_ROWS& rows) {
  constexpr int length_decimals = 4;
  for (int j : BONDS_TO_WRITE(phase, i))
    ADD_CIF_ROW({CENTRE_LABEL(phase, i, j), LIGAND_LABEL(phase, i, j),
                 VALUE_TEXT(phase.BONDS(i, j, BOND_LENGTH), phase.BONDS(i, j, BOND_LENGTH_STD),
                            length_decimals),
                 CENTRE_CODE(phase, i), LIGAND_CODE(phase, i, j)},
                rows);
}

void ADD_ANGLES(const CRYSTAL_STRUCTURE_TYPE& phase, int i, ALIGNED_ROWS& rows) {
  const std::vector<int> bonds = BONDS_TO_WRITE(phase, i);
  for (std::size_t first = 0; first < bonds.size(); ++first)
    for (std::size_t second = first + 1; second < bonds.size(); ++second)
      ADD_CIF_ROW(ANGLE_ROW(phase, i, bonds[first], bonds[second]), rows);
}

struct GEOMETRY_LOOP {
  std::vector<std::string> NAMES;
  void (*ADD)(const CRYSTAL_STRUCTURE_TYPE& phase, int i, ALIGNED_ROWS& rows);  // what centre i has
};

const std::array<GEOMETRY_LOOP, 2> geometry_loops{
    {{{"_geom_bond_atom_site_label_1", "_geom_bond_atom_site_label_2", "_geom_bond_distance",
       "_geom_bond_site_symmetry_1", "_geom_bond_site_symmetry_2"},
      ADD_BONDS},
     {{"_geom_angle_atom_site_label_1", "_geom_angle_atom_site_label_2",
       "_geom_angle_atom_site_label_3", "_geom_angle", "_geom_angle_site_symmetry_1",
       "_geom_angle_site_symmetry_2", "_geom_angle_site_symmetry_3"},
      ADD_ANGLES}}};

}  // namespace

bool WRITE_CIF_GEOMETRY(const CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<int>& centres,
                        int unit, int step, WORK& work) {
  for (const GEOMETRY_LOOP& loop : geometry_loops) {
    ALIGNED_ROWS rows;
    for (int i : centres) {
      if (!GO_ON(work, step)) return false;
      loop.ADD(phase, i, rows);
    }
    if (!WRITE_LOOP(loop.NAMES, rows, unit, step, work)) return false;
  }
  return GO_ON(work, step);
}

}  // namespace FACETOR_WRITEFILES
