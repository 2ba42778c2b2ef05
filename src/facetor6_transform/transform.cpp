// The dialogue of TRANSFORM, the new coordinates and their esds. Cell and operators stay.
#include "src/facetor6_transform/transform.h"

#include <algorithm>  // for max
#include <cmath>      // for abs, sqrt
#include <string>
#include <vector>

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace FACETOR_TRANSFORM {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

constexpr float smallest_determinant = 0.01f;
constexpr float unit_tolerance = 0.0001f;  // a determinant this close to 1 or -1 keeps the volume

struct TRANSFORMATION {
  MATRIX3 T{};
  VECTOR3 OFFSET{};
};

// The coordinates of the atoms of every block.
using SAVED_COORDINATES = std::vector<std::vector<VECTOR3>>;

// ---- what the user asks for ----

// True when the matrix keeps the volume of the cell; else says what is wrong.
bool IS_ACCEPTED(const MATRIX3& t) {
  const float determinant = XTAL::DETERMINANT(t);
  if (std::abs(determinant) < smallest_determinant) {
    WRITE_OUT("| *****The transformation has a determinant of zero. This makes no sense!");
    return false;
  }
  if (std::abs(std::abs(determinant) - 1.0f) < unit_tolerance) return true;
  WRITE_OUT("| *****The determinant of the transformation is " +
            KVA_UTILITIES::REAL_COLUMNS(determinant, 10, 4));
  WRITE_OUT("      This type of transformation is not yet suppported in Gemmara|");
  return false;
}

// Asks for the matrix until one is accepted; false when the user gives none.
bool ASK_MATRIX(MATRIX3& t) {
  while (true) {
    std::vector<std::vector<float>> rows(3, std::vector<float>(3, 0.0f));
    int ierr = 0;
    GET_INPUT_MATRIX(
        "Input the 3x3 transformation matrix T. Each line requires three values a,b,c so that "
        "x(new) = ax + by + cz",
        3, 3, rows, ierr);
    if (ierr != 0) return false;
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) t[i][j] = rows[i][j];
    if (IS_ACCEPTED(t)) return true;
  }
}

std::vector<int> BLOCKS_TO_TRANSFORM() {
  WRITE_OUT("|*****These are all the datablocks:|");
  FACETOR_LIST::FACETOR_LIST_PHASE();
  CLEAR_INPUT();
  return ASK_BLOCKS("Input the datablock numbers to transform, <CR> to exit: ");
}

// ---- coordinates ----

SAVED_COORDINATES SAVE_COORDINATES() {
  SAVED_COORDINATES saved;
  for (int block = 1; block <= NPHASES; ++block) {
    std::vector<VECTOR3> coordinates;
    for (int i = 1; i <= PHASE(block).NATOMS; ++i) coordinates.push_back(PHASE(block).ATOM(i).X);
    saved.push_back(coordinates);
  }
  return saved;
}

void RESTORE_COORDINATES(CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<VECTOR3>& saved) {
  for (int i = 1; i <= phase.NATOMS; ++i) phase.ATOM(i).X = saved[static_cast<std::size_t>(i - 1)];
}

void TRANSFORM_COORDINATES(CRYSTAL_STRUCTURE_TYPE& phase, const TRANSFORMATION& transformation) {
  for (int i = 1; i <= phase.NATOMS; ++i)
    phase.ATOM(i).X =
        XTAL::ADD(XTAL::MULTIPLY(transformation.T, phase.ATOM(i).X), transformation.OFFSET);
}

// Esds and displacement tensors of the new positions, from the record as it was before.
void TRANSFORM_ESDS(const CRYSTAL_STRUCTURE_TYPE& before, CRYSTAL_STRUCTURE_TYPE& phase,
                    const MATRIX3& t) {
  for (int i = 1; i <= phase.NATOMS; ++i) {
    const MATRIX3 vcv =
        XTAL::MULTIPLY(XTAL::MULTIPLY(t, CALC_VCV_XYZ(before, i, 1)), XTAL::TRANSPOSE(t));
    ATOM_TYPE& atom = phase.ATOM(i);
    for (std::size_t k = 0; k < 3; ++k) atom.X_STD[k] = std::sqrt(std::max(vcv[k][k], 0.0f));
    atom.U = APPLYSO_BETA(t, before.ATOM(i).U);
    atom.U_STD = CALC_ESD_BETA(before, i, 1, &t);
  }
}

void FINISH_BLOCK(CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<VECTOR3>& saved,
                  const MATRIX3& t) {
  CLEAR_GEOMETRY(phase);
  phase.BOND_CEN.ASSIGN(CAPACITY(phase));
  CRYSTAL_STRUCTURE_TYPE before = COPY_CRYSTAL_STRUCTURE(phase);  // without the tables, to be small
  RESTORE_COORDINATES(before, saved);
  TRANSFORM_ESDS(before, phase, t);
  SET_ALLATOM_MULTIP(phase);
}

// One round with chosen blocks; true when the user keeps the result.
bool TRANSFORM_BLOCKS(const std::vector<int>& blocks, const TRANSFORMATION& transformation) {
  const SAVED_COORDINATES saved = SAVE_COORDINATES();
  for (int block : blocks) TRANSFORM_COORDINATES(PHASE(block), transformation);
  WRITE_OUT("|    Here is the list of all the new atom coordinates:");
  FACETOR_LIST::FACETOR_LIST_ALL_XYZ();
  const bool keep =
      GET_ANSWER_YN("    Do you want to keep these transformed coordinates", "N") == 'Y';
  if (!keep) {
    for (int block = 1; block <= NPHASES; ++block)
      RESTORE_COORDINATES(PHASE(block), saved[static_cast<std::size_t>(block - 1)]);
    WRITE_OUT("|    The original atom coordinates have been restored:");
    FACETOR_LIST::FACETOR_LIST_ALL_XYZ();
    return false;
  }
  for (int block : blocks)
    FINISH_BLOCK(PHASE(block), saved[static_cast<std::size_t>(block - 1)], transformation.T);
  return true;
}

}  // namespace

void RUN_TRANSFORM() {
  ANNOUNCE("Transformation of atom coordinates");
  if (CHECK_NOPHASES()) {
    WARNING("There are no datasets to be modified");
    return;
  }
  WRITE_OUT(
      "|       This command enables you to transform the positional parameters of all atoms in one "
      "or more datablocks");
  WRITE_OUT("       The unit cell and the symmetry operators of the space group are not changed");
  WRITE_OUT(
      " The transformation to be applied (written as vectors and matrices) is x(new)=T.x(old) + "
      "Offset|");
  TRANSFORMATION transformation;
  if (!ASK_MATRIX(transformation.T)) return;
  GET_INPUT_NVALUES("Input the origin shift for x,y, & z:", transformation.OFFSET);
  do {
    const std::vector<int> blocks = BLOCKS_TO_TRANSFORM();
    if (blocks.empty() || !TRANSFORM_BLOCKS(blocks, transformation)) return;
    KEEP_RECORDED({"N"});
  } while (GET_ANSWER_YN("    Do you want to apply the same transformation to other datablocks",
                         "N") == 'Y');
}

}  // namespace FACETOR_TRANSFORM
