// The phase record: one crystal structure with all that was read of it and calculated from it.
// Records and their upkeep only; nothing is calculated or printed here.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "common_code/Raman_module.h"
#include "console_code/kva_utilities/table.h"
#include "console_code/kva_utilities/vectors.h"
#include "foundations/XTAL_Space_Groups.h"
#include "foundations/XTAL_Unit_Cell.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::LIST;
using KVA_UTILITIES::MATRIX3;
using KVA_UTILITIES::MATRIX6;
using KVA_UTILITIES::ROW;
using KVA_UTILITIES::VECTOR3;
using KVA_UTILITIES::VECTOR6;

inline constexpr int MAX_BONDS = 20;      // bonds of a centre
inline constexpr int MAX_DUPLICATES = 2;  // further atoms of a site that are remembered
inline constexpr int START_CAPACITY = 8;  // atoms that an empty record has room for
inline constexpr int TITLE_LENGTH = 80;   // bytes of a block's title

// Conditions of a block whose file tells none. They were not measured and have no esds.
inline constexpr float ROOM_TEMPERATURE = 298.0f;  // K
inline constexpr float ONE_ATMOSPHERE = 0.0001f;   // GPa

// Values of ATOM_USE; a negative value -k marks a duplicate of atom k.
inline constexpr int ATOM_OMITTED = 0;
inline constexpr int ATOM_USED = 1;
// Value of NBONDS for a centre that has no match in this block.
inline constexpr int NO_CENTRE = -1;

// Columns of BONDS(i, j, column): centre i of the reference block, its bond j. Numbers are stored
// as reals and read back by truncation. A row whose BOND_CENTRE is 0 holds no bond.
enum BOND_COLUMN {
  BOND_CENTRE = 1,      // atom number of the centre in this block
  BOND_LENGTH = 2,      // angstroms
  BOND_LENGTH_STD = 3,  // its esd
  BOND_VECTOR_X = 4,    // fractional vector from the centre to the ligand
  BOND_VECTOR_Y = 5,
  BOND_VECTOR_Z = 6,
  BOND_LIGAND = 7,         // atom number of the ligand in this block
  BOND_OPERATOR = 8,       // number of the operator that produced the ligand
  BOND_SYMCODE = 9,        // symmetry code of the ligand, 3.655
  BOND_DISPL_CENTRE = 10,  // rms displacement of the centre along the bond, angstroms
  BOND_DISPL_LIGAND = 11,  // rms displacement of the ligand along the bond, angstroms
  BOND_LENGTH_SRB = 12,    // length with the simple rigid-bond correction, angstroms
  BOND_VALENCE = 13,       // valence units
  BOND_VALENCE_STD = 14,
  BOND_COLUMNS = 14
};

// Columns of BOND_CEN(i, column): where reference centre i lies in this block.
enum CENTRE_COLUMN {
  CENTRE_ATOM = 1,  // atom number in this block
  CENTRE_X = 2,     // fractional position as matched in this block
  CENTRE_Y = 3,
  CENTRE_Z = 4,
  CENTRE_SYMCODE = 5,  // symmetry code as a number
  CENTRE_COLUMNS = 5
};

// Columns of BANGLES(i, j, k, column), ligands j < k of centre i.
enum ANGLE_COLUMN { ANGLE = 1, ANGLE_STD = 2, EDGE = 3, EDGE_STD = 4, ANGLE_COLUMNS = 4 };

// Columns of POLYHEDRON(i, column).
enum POLYHEDRON_COLUMN {
  POLY_MEAN_LENGTH = 1,  // angstroms
  POLY_ELONGATION = 2,   // quadratic elongation
  POLY_VARIANCE = 3,     // angle variance, square degrees
  POLY_VOLUME = 4,       // cubic angstroms
  POLY_MEAN_EDGE = 5,    // angstroms
  POLY_VOLUME_STD = 6,
  POLY_CENTRE_X = 7,       // 7 to 9: fractional position of the centre
  POLY_BARYCENTRE_X = 10,  // 10 to 12: barycentre of the ligands, fractional
  POLY_SPHERE_X = 13,      // 13 to 15: centre of the fitted sphere, fractional
  POLY_DELTA = 16,         // centre atom to sphere centre, angstroms
  POLY_RADIUS = 17,        // mean radius of the sphere, angstroms
  POLY_RADIUS_SDEV = 18,   // standard deviation of the radii, angstroms
  POLY_IDEAL_VOLUME = 19,  // cubic angstroms
  POLY_VOLUME_SRB = 20,    // volume from rigid-bond corrected lengths
  POLY_VALENCE_SUM = 21,   // valence units
  POLY_VALENCE_SUM_STD = 22,
  POLY_COLUMNS = 22
};

// Indices of PT(condition, item).
enum PT_ROW { TEMPERATURE = 1, PRESSURE = 2, PT_ROWS = 5 };  // K, GPa; rows 3 to 5 are spare
enum PT_COLUMN { PT_VALUE = 1, PT_ESD = 2 };

// Bonds by centre, bond and column. A row is stored once it has been written to; a row that was
// never written reads as 0 through a const record.
struct BOND_TABLE {
  static constexpr ROW<float, BOND_COLUMNS> NO_BOND{};  // what is read where no row is
  LIST<std::vector<ROW<float, BOND_COLUMNS>>> CENTRES;

  ROW<float, BOND_COLUMNS>& ROW_OF(int i, int j);  // is made if need be
  const ROW<float, BOND_COLUMNS>& ROW_OF(int i, int j) const {
    const auto& rows = CENTRES(i);
    const auto row = static_cast<std::size_t>(j - 1);
    return row < rows.size() ? rows[row] : NO_BOND;
  }
  float operator()(int i, int j, int column) const { return ROW_OF(i, j)(column); }
  float& operator()(int i, int j, int column);
  void ASSIGN(int n);                  // n centres without rows
  void MAKE_ROOM(int i, int n);        // for n rows of centre i, which are to be written
  int ROWS_OF(int i) const;            // rows of centre i, those without a bond included
  void CLEAR_ROW(int i, int j);        // zeros in row j of centre i, which is made if need be
  bool HAS_BOND(int i, int j) const {  // whether row j of centre i holds a bond
    return (*this)(i, j, BOND_CENTRE) > 0.0f;
  }
  int CENTRE(int i, int j) const;  // atom numbers in this block; 0 when there is no bond
  int LIGAND(int i, int j) const;
  int OPERATOR(int i, int j) const;    // that produced the ligand
  VECTOR3 VECTOR(int i, int j) const;  // columns 4 to 6
  void PUT_VECTOR(int i, int j, const VECTOR3& v);
};

// Angles and edges by centre, ligand pair j < k and column, stored as far as written.
struct ANGLE_TABLE {
  LIST<std::vector<ROW<float, ANGLE_COLUMNS>>> CENTRES;

  float operator()(int i, int j, int k, int column) const;
  float& operator()(int i, int j, int k, int column);
  ROW<float, ANGLE_COLUMNS>& ROW_OF(int i, int j, int k);  // is made if need be
  void ASSIGN(int n);
};

// Pairs of texts by pair and column, stored as far as written; the others are blank.
struct TEXT_PAIRS {
  static constexpr int PAIRS = 10;
  LIST<ROW<std::string, 2>> ITEMS;

  const std::string& operator()(int pair, int column) const;
  std::string& operator()(int pair, int column);
  static constexpr int COUNT() { return PAIRS; }
};

struct ATOM_TYPE {
  std::string LAB;         // label, 20 characters
  std::string CHEMSYMB;    // chemical symbol, 2
  std::string SFACSYMB;    // scattering factor symbol with the charge, 4
  std::string WYCK = ".";  // Wyckoff letter
  bool ACTIVE = true;
  int Z = 0;     // atomic number
  int MULT = 0;  // distinct positions in the primitive cell
  VECTOR3 X{};   // fractional coordinates
  VECTOR3 X_STD{};
  float OCC = 0.0f;  // site occupancy
  float OCC_STD = 0.0f;
  float BISO = 0.0f;  // square angstroms
  float BISO_STD = 0.0f;
  std::string UTYPE = "none";    // kind of U: "u_ij" or "beta"
  std::string THTYPE = "isotr";  // "isotr" or "Aniso"; compared ignoring case
  VECTOR6 U{};                   // order 11, 22, 33, 12, 13, 23
  VECTOR6 U_STD{};
  float UEQ = 0.0f;     // equivalent isotropic U, square angstroms
  float CHARGE = 0.0f;  // formal charge
};

struct CRYSTAL_STRUCTURE_TYPE {
  XTAL::CRYSTAL_CELL CELL;  // default 10 10 10 90 90 90
  XTAL::SPACE_GROUP SPG;    // default P1
  LIST<ATOM_TYPE> ATOM;     // in file order; room for the capacity
  int NATOMS = 0;           // atoms in use
  float SHORT_BOND = 0.0f;  // shortest bond found, at most 3.0
  LIST<int> NBONDS;         // bonds of each centre, or NO_CENTRE
  BOND_TABLE BONDS;
  KVA_UTILITIES::TABLE<float, CENTRE_COLUMNS> BOND_CEN;
  LIST<int> NANGLES;  // angles of each centre
  ANGLE_TABLE BANGLES;
  KVA_UTILITIES::TABLE<float, POLY_COLUMNS> POLYHEDRON;
  KVA_UTILITIES::TABLE<float, 2> PT;                   // PT(PRESSURE, PT_VALUE)
  std::string BLOCK_TITLE;                             // TITLE_LENGTH bytes
  TEXT_PAIRS METADATA;                                 // 10 pairs of CIF item and text of 600
  LIST<int> ATOM_USE;                                  // 1 used, 0 omitted, -k duplicate of k
  KVA_UTILITIES::TABLE<int, MAX_DUPLICATES> ATOM_DUP;  // atoms found on this atom's site
  RAMAN::MODE_LIST_TYPE MODE_LIST;
};

using STRUCTURE_LIST = LIST<CRYSTAL_STRUCTURE_TYPE>;

// Error and warning state of the model's routines; texts of 256 characters.
inline bool ERR_KVASTRUCTURES = false;
inline std::string ERR_KVASTRUCTURES_MESS;
inline bool WARN_KVASTRUCTURES = false;
inline std::string WARN_KVASTRUCTURES_MESS;
void INIT_ERR_KVASTRUCTURES();
void SET_ERR_KVASTRUCTURES(const std::string& text);
void SET_WARN_KVASTRUCTURES(const std::string& text);

// n empty records; an error when n is below 1.
void ALLOCATE_CRYSTAL_STRUCTURE_LIST(STRUCTURE_LIST& list, int n);
void INIT_CRYSTAL_STRUCTURE_LIST(STRUCTURE_LIST& list);
void INIT_CRYSTAL_STRUCTURE_TYPE(CRYSTAL_STRUCTURE_TYPE& phase);
CRYSTAL_STRUCTURE_TYPE COPY_CRYSTAL_STRUCTURE(const CRYSTAL_STRUCTURE_TYPE& phase);

// The blocks of source whose use flag is set, in the sort order.
void COPY_STRUCTURES_USED(const STRUCTURE_LIST& source, const LIST<int>& iuse,
                          const LIST<int>& isort, STRUCTURE_LIST& destination, int& count);

// Coordinates into the cell, all atoms used, duplicates of a site marked.
void CLEAN_CRYSTAL_STRUCTURE_TYPE(CRYSTAL_STRUCTURE_TYPE& phase);

// Gives the record room for n atoms (0: as many as now), never fewer than it holds. All calculated
// geometry of the record is lost and every atom is in use again.
void EXPAND_NATOMS(CRYSTAL_STRUCTURE_TYPE& phase, int n = 0);

// Atoms that the record has room for.
int CAPACITY(const CRYSTAL_STRUCTURE_TYPE& phase);

// Zeroes NBONDS, BONDS, NANGLES, BANGLES and POLYHEDRON; BOND_CEN stays.
void CLEAR_GEOMETRY(CRYSTAL_STRUCTURE_TYPE& phase);

// Number and fractional position of reference centre i as matched in this block.
int CENTRE_NUMBER(const CRYSTAL_STRUCTURE_TYPE& phase, int i);
VECTOR3 CENTRE_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int i);
void SET_CENTRE(CRYSTAL_STRUCTURE_TYPE& phase, int i, int atom, const VECTOR3& x_frac);

// Sum of the bonds of all atoms.
int SUM_NBONDS(const CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
