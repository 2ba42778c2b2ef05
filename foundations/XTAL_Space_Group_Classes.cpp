// Laue class, point group and crystal system from the rotation parts of a group.
#include <algorithm>  // for any_of
#include <map>
#include <set>

#include "foundations/XTAL_Space_Group_Parts.h"

namespace XTAL {

namespace {

// A point group by the numbers of its rotations.
struct POINT_GROUP_COUNTS {
  std::string_view PG;
  int ORDER;
  // How many of -1, 2, -2, 3, 4, -4, 6, -6.
  std::array<int, 8> COUNTS;
  std::string_view LAUE;
};

constexpr std::array<int, 8> counted_types{-1, 2, -2, 3, 4, -4, 6, -6};

constexpr std::array<POINT_GROUP_COUNTS, 32> point_groups{{
    {"1", 1, {0, 0, 0, 0, 0, 0, 0, 0}, "-1"},
    {"-1", 2, {1, 0, 0, 0, 0, 0, 0, 0}, "-1"},
    {"2", 2, {0, 1, 0, 0, 0, 0, 0, 0}, "2/m"},
    {"m", 2, {0, 0, 1, 0, 0, 0, 0, 0}, "2/m"},
    {"2/m", 4, {1, 1, 1, 0, 0, 0, 0, 0}, "2/m"},
    {"222", 4, {0, 3, 0, 0, 0, 0, 0, 0}, "mmm"},
    {"mm2", 4, {0, 1, 2, 0, 0, 0, 0, 0}, "mmm"},
    {"mmm", 8, {1, 3, 3, 0, 0, 0, 0, 0}, "mmm"},
    {"4", 4, {0, 1, 0, 0, 2, 0, 0, 0}, "4/m"},
    {"-4", 4, {0, 1, 0, 0, 0, 2, 0, 0}, "4/m"},
    {"4/m", 8, {1, 1, 1, 0, 2, 2, 0, 0}, "4/m"},
    {"422", 8, {0, 5, 0, 0, 2, 0, 0, 0}, "4/mmm"},
    {"4mm", 8, {0, 1, 4, 0, 2, 0, 0, 0}, "4/mmm"},
    {"-42m", 8, {0, 3, 2, 0, 0, 2, 0, 0}, "4/mmm"},
    {"4/mmm", 16, {1, 5, 5, 0, 2, 2, 0, 0}, "4/mmm"},
    {"3", 3, {0, 0, 0, 2, 0, 0, 0, 0}, "-3"},
    {"-3", 6, {1, 0, 0, 2, 0, 0, 0, 0}, "-3"},
    {"32", 6, {0, 3, 0, 2, 0, 0, 0, 0}, "-3m"},
    {"3m", 6, {0, 0, 3, 2, 0, 0, 0, 0}, "-3m"},
    {"-3m", 12, {1, 3, 3, 2, 0, 0, 0, 0}, "-3m"},
    {"6", 6, {0, 1, 0, 2, 0, 0, 2, 0}, "6/m"},
    {"-6", 6, {0, 0, 1, 2, 0, 0, 0, 2}, "6/m"},
    {"6/m", 12, {1, 1, 1, 2, 0, 0, 2, 2}, "6/m"},
    {"622", 12, {0, 7, 0, 2, 0, 0, 2, 0}, "6/mmm"},
    {"6mm", 12, {0, 1, 6, 2, 0, 0, 2, 0}, "6/mmm"},
    {"-6m2", 12, {0, 3, 4, 2, 0, 0, 0, 2}, "6/mmm"},
    {"6/mmm", 24, {1, 7, 7, 2, 0, 0, 2, 2}, "6/mmm"},
    {"23", 12, {0, 3, 0, 8, 0, 0, 0, 0}, "m-3"},
    {"m-3", 24, {1, 3, 3, 8, 0, 0, 0, 0}, "m-3"},
    {"432", 24, {0, 9, 0, 8, 6, 0, 0, 0}, "m-3m"},
    {"-43m", 24, {0, 3, 6, 8, 0, 6, 0, 0}, "m-3m"},
    {"m-3m", 48, {1, 9, 9, 8, 6, 6, 0, 0}, "m-3m"},
}};

struct LAUE_SYSTEM {
  std::string_view LAUE_START;
  SYSTEM NAME;
};

// First that fits the start of the Laue class, so "-1" stands behind what it begins.
constexpr std::array<LAUE_SYSTEM, 8> laue_systems{{
    {"2/m", SYSTEM::MONOCLINIC},
    {"mmm", SYSTEM::ORTHORHOMBIC},
    {"4/m", SYSTEM::TETRAGONAL},
    {"-3", SYSTEM::TRIGONAL},
    {"6/m", SYSTEM::HEXAGONAL},
    {"m-3", SYSTEM::CUBIC},
    {"m3", SYSTEM::CUBIC},
    {"-1", SYSTEM::TRICLINIC},
}};

IMATRIX3 PROPER(const IMATRIX3& rot) {
  return DETERMINANT(rot) < 0 ? NEGATIVE(rot) : rot;
}

// Each rotation part of the operators once.
std::set<IMATRIX3> ROTATIONS(const SPACE_GROUP& spacegroup) {
  std::set<IMATRIX3> rotations;
  for (const SYM_OP& op : spacegroup.SYMOP) rotations.insert(op.ROT);
  return rotations;
}

// A three-fold axis along a+b+c: rhombohedral axes.
bool HAS_RHOMBOHEDRAL_AXES(const std::set<IMATRIX3>& rotations) {
  return std::any_of(rotations.begin(), rotations.end(), [](const IMATRIX3& rot) {
    const IMATRIX3 proper = PROPER(rot);
    return ROTATION_TYPE(proper) == 3 && proper[2][2] == 0;
  });
}

// A two-fold axis along a cell edge, or a mirror at right angles to one.
bool HAS_TWOFOLD_ALONG_EDGE(const std::set<IMATRIX3>& rotations) {
  return std::any_of(rotations.begin(), rotations.end(), [](const IMATRIX3& rot) {
    const IMATRIX3 proper = PROPER(rot);
    return ROTATION_TYPE(proper) == 2 && proper[0][0] == 1 && proper[1][0] == 0 &&
           proper[2][0] == 0;
  });
}

// The Laue class with its setting, for trigonal groups.
std::string LAUE_IN_SETTING(std::string_view laue, const std::set<IMATRIX3>& rotations) {
  if (!laue.starts_with("-3")) return std::string(laue);
  if (HAS_RHOMBOHEDRAL_AXES(rotations)) return std::string(laue) + " R";
  if (laue == "-3") return "-3";
  return HAS_TWOFOLD_ALONG_EDGE(rotations) ? "-3m1" : "-31m";
}

}  // namespace

std::string_view SYSTEM_NAME(SYSTEM system) {
  switch (system) {
    case SYSTEM::TRICLINIC:
      return "Triclinic";
    case SYSTEM::MONOCLINIC:
      return "Monoclinic";
    case SYSTEM::ORTHORHOMBIC:
      return "Orthorhombic";
    case SYSTEM::TETRAGONAL:
      return "Tetragonal";
    case SYSTEM::TRIGONAL:
      return "Trigonal";
    case SYSTEM::HEXAGONAL:
      return "Hexagonal";
    case SYSTEM::CUBIC:
      return "Cubic";
    case SYSTEM::UNKNOWN:
      break;
  }
  return "";
}

std::string SYSTEM_TEXT(const CRYSTAL_SYSTEM& system) {
  if (system.UNIQUE_AXIS == ' ') return std::string(SYSTEM_NAME(system.NAME));
  return "Mono " + std::string(1, system.UNIQUE_AXIS) + "-uni";
}

void SET_CLASSES(SPACE_GROUP& spacegroup) {
  if (spacegroup.MULTIP == 0) return SET_ERR_SYMM("No symmetry operators are given");
  const std::set<IMATRIX3> rotations = ROTATIONS(spacegroup);
  const int order = static_cast<int>(rotations.size());
  std::map<int, int> found;
  for (const IMATRIX3& rot : rotations) {
    const int type = ROTATION_TYPE(rot);
    if (type == 0) return SET_ERR_SYMM("Rotation Not Determined");
    ++found[type];
  }
  for (const POINT_GROUP_COUNTS& row : point_groups) {
    bool same = row.ORDER == order;
    for (std::size_t k = 0; k < counted_types.size(); ++k)
      same = same && found[counted_types[k]] == row.COUNTS[k];
    if (!same) continue;
    spacegroup.PG = row.PG;
    spacegroup.LAUE = LAUE_IN_SETTING(row.LAUE, rotations);
    for (const LAUE_SYSTEM& system : laue_systems)
      if (spacegroup.LAUE.starts_with(system.LAUE_START)) {
        spacegroup.CRYSTALSYS = {system.NAME};
        return;
      }
    return SET_ERR_SYMM("Laue Number Incorrect");
  }
  SET_ERR_SYMM("Point Group Number Incorrect");
}

}  // namespace XTAL
