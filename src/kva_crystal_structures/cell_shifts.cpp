// The cells that the esds of lengths, angles and volumes are measured in.
#include "src/kva_crystal_structures/cell_shifts.h"

namespace KVA_CRYSTAL_STRUCTURES {

using XTAL::SYSTEM;

namespace {

constexpr VECTOR3 right_angles{90.0f, 90.0f, 90.0f};

CELL_SHIFT CUBIC_SHIFT(const XTAL::CRYSTAL_CELL& cell, const VECTOR3& angles) {
  return {XTAL::ADD(cell.CELL, cell.CELL_STD), angles};
}

// One length longer by its esd.
CELL_SHIFT LENGTH_SHIFT(const XTAL::CRYSTAL_CELL& cell, std::size_t k, const VECTOR3& angles) {
  CELL_SHIFT shift{cell.CELL, angles};
  shift.CELL[k] += cell.CELL_STD[k];
  return shift;
}

CELL_SHIFT ANGLE_SHIFT(const XTAL::CRYSTAL_CELL& cell, std::size_t k) {
  CELL_SHIFT shift{cell.CELL, cell.ANG};
  shift.ANG[k] += cell.ANG_STD[k];
  return shift;
}

// a and b longer together, then c. Rhombohedral axes have no angle term.
std::vector<CELL_SHIFT> UNIAXIAL_SHIFTS(const XTAL::CRYSTAL_CELL& cell) {
  CELL_SHIFT base = LENGTH_SHIFT(cell, 0, cell.ANG);
  base.CELL[1] = base.CELL[0];
  return {base, LENGTH_SHIFT(cell, 2, cell.ANG)};
}

std::vector<CELL_SHIFT> LENGTH_SHIFTS(const XTAL::CRYSTAL_CELL& cell, const VECTOR3& angles) {
  return {LENGTH_SHIFT(cell, 0, angles), LENGTH_SHIFT(cell, 1, angles),
          LENGTH_SHIFT(cell, 2, angles)};
}

std::vector<CELL_SHIFT> ALL_SHIFTS(const XTAL::CRYSTAL_CELL& cell) {
  std::vector<CELL_SHIFT> shifts = LENGTH_SHIFTS(cell, cell.ANG);
  for (std::size_t k = 0; k < 3; ++k) shifts.push_back(ANGLE_SHIFT(cell, k));
  return shifts;
}

std::vector<CELL_SHIFT> SHIFTS_OF_SYSTEM(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles) {
  const XTAL::CRYSTAL_CELL& cell = phase.CELL;
  const VECTOR3& orthogonal_angles = keep_angles ? cell.ANG : right_angles;
  switch (phase.SPG.CRYSTALSYS.NAME) {
    case SYSTEM::CUBIC:
      return {CUBIC_SHIFT(cell, orthogonal_angles)};
    case SYSTEM::TETRAGONAL:
    case SYSTEM::TRIGONAL:
    case SYSTEM::HEXAGONAL:
      return UNIAXIAL_SHIFTS(cell);
    case SYSTEM::ORTHORHOMBIC:
      return LENGTH_SHIFTS(cell, orthogonal_angles);
    case SYSTEM::MONOCLINIC:
    case SYSTEM::TRICLINIC:
      return ALL_SHIFTS(cell);
    case SYSTEM::UNKNOWN:
      break;
  }
  return {};
}

}  // namespace

std::vector<CELL_SHIFT> SYMMETRIC_CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  if (!phase.SPG.LAUE.ends_with(" R")) return CELL_SHIFTS(phase);
  const XTAL::CRYSTAL_CELL& cell = phase.CELL;
  CELL_SHIFT lengths = LENGTH_SHIFT(cell, 0, cell.ANG);
  CELL_SHIFT angles = ANGLE_SHIFT(cell, 0);
  for (std::size_t k = 1; k < 3; ++k) {
    lengths.CELL[k] = lengths.CELL[0];
    angles.ANG[k] = angles.ANG[0];
  }
  return {lengths, angles};
}

std::vector<CELL_SHIFT> CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles) {
  std::vector<CELL_SHIFT> shifts = SHIFTS_OF_SYSTEM(phase, keep_angles);
  std::erase_if(shifts, [&](const CELL_SHIFT& shift) {
    return shift.CELL == phase.CELL.CELL && shift.ANG == phase.CELL.ANG;
  });
  return shifts;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
