// Crystal systems, and the cells that the esds of lengths, angles and volumes are measured in.
#include "src/kva_crystal_structures/cell_shifts.h"

#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::INDEXALL;

SYSTEM SYSTEM_OF(const XTAL::SPACE_GROUP& group) {
  const std::string& text = group.CRYSTALSYS;
  if (INDEXALL(text, "cubic") > 0) return SYSTEM::CUBIC;
  if (INDEXALL(text, "tetragonal") > 0 || INDEXALL(text, "hexagonal") > 0 ||
      INDEXALL(text, "trigonal") > 0)
    return SYSTEM::UNIAXIAL;
  if (INDEXALL(text, "orthorhombic") > 0) return SYSTEM::ORTHORHOMBIC;
  // With a unique axis the text reads "Mono b-uni".
  if (INDEXALL(text, "mono") == 1) return SYSTEM::MONOCLINIC;
  return INDEXALL(text, "triclinic") > 0 ? SYSTEM::TRICLINIC : SYSTEM::UNKNOWN;
}

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

std::vector<CELL_SHIFT> SHIFTS_OF_SYSTEM(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles) {
  const XTAL::CRYSTAL_CELL& cell = phase.CELL;
  const VECTOR3& orthogonal_angles = keep_angles ? cell.ANG : right_angles;
  const SYSTEM system = SYSTEM_OF(phase.SPG);
  if (system == SYSTEM::UNKNOWN) return {};
  if (system == SYSTEM::CUBIC) return {CUBIC_SHIFT(cell, orthogonal_angles)};
  if (system == SYSTEM::UNIAXIAL) return UNIAXIAL_SHIFTS(cell);
  const bool orthogonal = system == SYSTEM::ORTHORHOMBIC;
  std::vector<CELL_SHIFT> shifts;
  for (std::size_t k = 0; k < 3; ++k)
    shifts.push_back(LENGTH_SHIFT(cell, k, orthogonal ? orthogonal_angles : cell.ANG));
  if (orthogonal) return shifts;
  for (std::size_t k = 0; k < 3; ++k) shifts.push_back(ANGLE_SHIFT(cell, k));
  return shifts;
}

}  // namespace

std::vector<CELL_SHIFT> CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles) {
  std::vector<CELL_SHIFT> shifts = SHIFTS_OF_SYSTEM(phase, keep_angles);
  std::erase_if(shifts, [&](const CELL_SHIFT& shift) {
    return shift.CELL == phase.CELL.CELL && shift.ANG == phase.CELL.ANG;
  });
  return shifts;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
