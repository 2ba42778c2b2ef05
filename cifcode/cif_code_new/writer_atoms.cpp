// The atom loops of a CIF.
#include <algorithm>  // for find, none_of

#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/kva_crystal_structures/displacement.h"

namespace KVA_CIFNEW {

using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr int plain_width = 8;  // columns of a tensor component without an esd

bool IS_ANISOTROPIC(const ATOM_TYPE& atom) {
  return INDEXALL(atom.THTYPE, "aniso") > 0;
}

// Isotropic, with a displacement that was given: as B or as U, B tells it.
bool IS_ISOTROPIC(const ATOM_TYPE& atom) {
  return INDEXALL(atom.THTYPE, "isotr") > 0 && atom.BISO != 0.0f;
}

// The atom's tensor as u_ij.
TENSOR U_OF_ATOM(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom) {
  const TENSOR tensor{atom.U, atom.U_STD};
  return IS_BETA(atom) ? TENSOR_AS_U(tensor, phase.CELL) : tensor;
}

// Value and kind of the displacement of atom i.
void ADD_DISPLACEMENT(const CRYSTAL_STRUCTURE_TYPE& phase, int i, std::vector<std::string>& row) {
  const ATOM_TYPE& atom = phase.ATOM(i);
  if (IS_ANISOTROPIC(atom)) {
    const float ueq = XTAL::U_EQUIV(phase.CELL, U_OF_ATOM(phase, atom).VALUE);
    row.push_back(CIF_NUMBER(ueq, CALC_ESD_U_EQUIV(phase, i)));
    row.push_back("Uani");
  } else if (IS_ISOTROPIC(atom)) {
    row.push_back(CIF_NUMBER(atom.BISO / EIGHT_PI_SQ, atom.BISO_STD / EIGHT_PI_SQ));
    row.push_back("Uiso");
  } else {
    row.insert(row.end(), {".", "."});
  }
}

// Blank where stars say that the atom is no element: a CIF has "." for that.
std::string SYMBOL_OF(const ATOM_TYPE& atom) {
  return atom.SFACSYMB == XTAL::NO_ELEMENT ? "" : atom.SFACSYMB;
}

std::vector<std::string> SITE_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int i,
                                  bool with_displacements) {
  const ATOM_TYPE& atom = phase.ATOM(i);
  std::vector<std::string> row{CIF_WORD(atom.LAB), CIF_WORD(SYMBOL_OF(atom))};
  for (std::size_t k = 0; k < 3; ++k) row.push_back(CIF_NUMBER(atom.X[k], atom.X_STD[k]));
  row.push_back(CIF_NUMBER(atom.OCC, atom.OCC_STD));
  if (with_displacements) ADD_DISPLACEMENT(phase, i, row);
  return row;
}

std::vector<std::string> ANISO_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom) {
  const TENSOR tensor = U_OF_ATOM(phase, atom);
  std::vector<std::string> row{CIF_WORD(atom.LAB)};
  for (std::size_t k = 0; k < 6; ++k)
    row.push_back(tensor.STD[k] > TINY_REAL ? CIF_NUMBER(tensor.VALUE[k], tensor.STD[k])
                                            : LEFT_ADJUST(RFORM(tensor.VALUE[k], plain_width)));
  return row;
}

std::vector<int> ATOMS_TO_WRITE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  std::vector<int> atoms;
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (IS_WRITTEN(phase, i)) atoms.push_back(i);
  return atoms;
}

bool HAS_CHARGE(std::string_view symbol) {
  return symbol.find_first_of("+-") != std::string_view::npos;
}

// The symbols of the atoms, each once. Without this loop a type symbol is read as its element
// alone, so it is written where any of them has a charge.
void WRITE_ATOM_TYPES(const CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<int>& atoms,
                      int unit) {
  std::vector<std::string> symbols;
  for (int i : atoms) {
    const std::string symbol = SYMBOL_OF(phase.ATOM(i));
    if (LENTRIM(symbol) > 0 && std::find(symbols.begin(), symbols.end(), symbol) == symbols.end())
      symbols.push_back(symbol);
  }
  if (std::none_of(symbols.begin(), symbols.end(), HAS_CHARGE)) return;
  WRITE_CIF_LOOP_HEAD({"_atom_type_symbol", "_atom_type_description"}, unit);
  std::vector<std::vector<std::string>> rows;
  for (const std::string& symbol : symbols) rows.push_back({CIF_WORD(symbol), CIF_WORD(symbol)});
  WRITE_CIF_ROWS(rows, unit);
}

void WRITE_SITES(const CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<int>& atoms,
                 bool with_displacements, int unit) {
  std::vector<std::string> names{"_atom_site_label",   "_atom_site_type_symbol",
                                 "_atom_site_fract_x", "_atom_site_fract_y",
                                 "_atom_site_fract_z", "_atom_site_occupancy"};
  if (with_displacements)
    names.insert(names.end(), {"_atom_site_U_iso_or_equiv", "_atom_site_adp_type"});
  WRITE_CIF_LOOP_HEAD(names, unit);
  std::vector<std::vector<std::string>> rows;
  for (int i : atoms) rows.push_back(SITE_ROW(phase, i, with_displacements));
  WRITE_CIF_ROWS(rows, unit);
}

void WRITE_TENSORS(const CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<int>& atoms, int unit) {
  WRITE_CIF_LOOP_HEAD(
      {"_atom_site_aniso_label ", "_atom_site_aniso_U_11  ", "_atom_site_aniso_U_22  ",
       "_atom_site_aniso_U_33  ", "_atom_site_aniso_U_12  ", "_atom_site_aniso_U_13  ",
       "_atom_site_aniso_U_23  "},
      unit);
  std::vector<std::vector<std::string>> rows;
  for (int i : atoms)
    if (IS_ANISOTROPIC(phase.ATOM(i))) rows.push_back(ANISO_ROW(phase, phase.ATOM(i)));
  WRITE_CIF_ROWS(rows, unit);
}

}  // namespace

bool IS_WRITTEN(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const int use = phase.ATOM_USE(i);
  return use > ATOM_OMITTED || (use < ATOM_OMITTED && phase.ATOM_USE(-use) > ATOM_OMITTED);
}

void WRITE_CIF_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, int unit) {
  bool any_isotropic = false;
  bool any_anisotropic = false;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    any_isotropic = any_isotropic || IS_ISOTROPIC(phase.ATOM(i));
    any_anisotropic = any_anisotropic || IS_ANISOTROPIC(phase.ATOM(i));
  }
  const std::vector<int> atoms = ATOMS_TO_WRITE(phase);
  if (atoms.empty()) return;  // a loop without rows is no CIF
  WRITE_ATOM_TYPES(phase, atoms, unit);
  WRITE_SITES(phase, atoms, any_isotropic || any_anisotropic, unit);
  if (any_anisotropic) WRITE_TENSORS(phase, atoms, unit);
}

}  // namespace KVA_CIFNEW
