// Rows of bonds and angles with their symmetry codes.
#include "src/facetor6_writefiles/geometry_loops.h"

#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace FACETOR_WRITEFILES {

using namespace KVA_CIFNEW;
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
void WRITE_LOOP(const std::vector<std::string>& names, const CIF_ROWS& rows, int unit) {
  if (rows.empty()) return;
  WRITE_CIF_LOOP_HEAD(names, unit);
  WRITE_CIF_ROWS(rows, unit);
}

}  // namespace

void WRITE_CIF_BONDS(const CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<int>& centres,
                     int unit) {
  constexpr int length_decimals = 4;
  CIF_ROWS rows;
  for (int i : centres)
    for (int j : BONDS_TO_WRITE(phase, i))
      rows.push_back({CENTRE_LABEL(phase, i, j), LIGAND_LABEL(phase, i, j),
                      VALUE_TEXT(phase.BONDS(i, j, BOND_LENGTH), phase.BONDS(i, j, BOND_LENGTH_STD),
                                 length_decimals),
                      CENTRE_CODE(phase, i), LIGAND_CODE(phase, i, j)});
  WRITE_LOOP({"_geom_bond_atom_site_label_1", "_geom_bond_atom_site_label_2", "_geom_bond_distance",
              "_geom_bond_site_symmetry_1", "_geom_bond_site_symmetry_2"},
             rows, unit);
}

void ADD_CIF_ANGLES(const CRYSTAL_STRUCTURE_TYPE& phase, int centre, CIF_ROWS& rows) {
  const std::vector<int> bonds = BONDS_TO_WRITE(phase, centre);
  for (std::size_t first = 0; first < bonds.size(); ++first)
    for (std::size_t second = first + 1; second < bonds.size(); ++second)
      rows.push_back(ANGLE_ROW(phase, centre, bonds[first], bonds[second]));
}

void WRITE_CIF_ANGLES(const CIF_ROWS& rows, int unit) {
  WRITE_LOOP({"_geom_angle_atom_site_label_1", "_geom_angle_atom_site_label_2",
              "_geom_angle_atom_site_label_3", "_geom_angle", "_geom_angle_site_symmetry_1",
              "_geom_angle_site_symmetry_2", "_geom_angle_site_symmetry_3"},
             rows, unit);
}

}  // namespace FACETOR_WRITEFILES
