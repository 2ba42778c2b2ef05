// Which atoms lie around a point, which atom lies at a position or bears a name, and how many
// distinct positions an atom has. These are the only searches under the symmetry of a record.
#pragma once

#include <string_view>
#include <vector>

#include "src/kva_crystal_structures/image_boxes.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Columns of a neighbour row; 1 and 3 stay 0, as rows are copied into BONDS.
enum NEIGHBOUR_COLUMN {
  NEIGHBOUR_DISTANCE = 2,  // angstroms
  NEIGHBOUR_VECTOR_X = 4,  // 4 to 6: fractional vector from the search point
  NEIGHBOUR_ATOM = 7,
  NEIGHBOUR_OPERATOR = 8,
  NEIGHBOUR_COLUMNS = 8
};
using NEIGHBOUR_TABLE = KVA_UTILITIES::TABLE<float, NEIGHBOUR_COLUMNS>;

inline constexpr float SAME_NEIGHBOUR_SQ = 0.01f;  // square angstroms: closer images are one atom
inline constexpr int MOST_CELLS = 20;              // searched each way; more set a warning
inline constexpr float DEFAULT_RADIUS = 1.0f;      // angstroms, of FIND_ATOM
inline constexpr float MATCH_RADIUS = 0.02f;       // angstroms: an atom is at a position

// All atoms from dmin to dmax angstroms (limits included) around x_frac, in the order of discovery:
// atom, operator, cell offset, centring vector; of coincident ones the first. table gets MAX_BONDS
// rows, count of them in use; a further one sets the warning "Too many distances around atom: ...".
// Options: "OMIT" searches omitted atoms too; "FINDOPS" lists every operator that reaches an atom,
// and measures from the point as given. Offsets of more than one cell along an edge come behind all
// others. For a single search of a record give the record itself.
void DISTANCE_ARRAY(const ATOM_IMAGES& images, const VECTOR3& x_frac, float dmin, float dmax,
                    int& count, NEIGHBOUR_TABLE& table, std::string_view options = "");
void DISTANCE_ARRAY(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac, float dmin,
                    float dmax, int& count, NEIGHBOUR_TABLE& table, std::string_view options = "");

// What FIND_ATOM found: ATOM 0 when nothing.
struct FOUND_ATOM {
  int ATOM = 0;      // atom number
  VECTOR3 X{};       // its position near the point asked for
  int OPERATOR = 0;  // operator that brings it there
};

// Nearest atom to x_frac within dmax angstroms; of equal ones (to 0.001 angstroms) the lowest
// number, operator and cell. Of coincident images it is the first, unless x_frac lies at a later
// one and not at that.
FOUND_ATOM FIND_ATOM(const ATOM_IMAGES& images, const VECTOR3& x_frac,
                     std::string_view options = "", float dmax = DEFAULT_RADIUS);

// Numbers of the atoms whose label begins with name, ignoring case. Options: "dup" takes duplicates
// too, "omit" omitted atoms.
std::vector<int> FIND_ALLATOMS_BY_NAME(const CRYSTAL_STRUCTURE_TYPE& phase, std::string_view name,
                                       std::string_view options = "");

// Sets MULT: distinct positions of the atom, those that differ by a centring vector counted once.
void SET_ATOM_MULTIP(CRYSTAL_STRUCTURE_TYPE& phase, int i);
void SET_ALLATOM_MULTIP(CRYSTAL_STRUCTURE_TYPE& phase);

// Symmetry code of x_frac, an image of atom i by operator op, a lattice vector included: the number
// of the operator among all of the group (centring copies too) and whole-cell translations, such
// as 3.655.
float SYMMETRY_CODE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op, const VECTOR3& x_frac);

}  // namespace KVA_CRYSTAL_STRUCTURES
