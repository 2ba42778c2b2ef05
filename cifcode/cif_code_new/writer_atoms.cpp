// The atom loops of a CIF.
#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFNEW {

using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr float eight_pi_sq = 78.95683521f;  // B = 8 pi^2 U
constexpr int plain_width = 8;               // columns of a tensor component without an esd

bool IS_ANISOTROPIC(const ATOM_TYPE& atom) {
  return INDEXALL(atom.THTYPE, "aniso") > 0;
}

// Isotropic, with a displacement that was given.
bool IS_ISOTROPIC(const ATOM_TYPE& atom) {
  const bool given = atom.BISO > 0.0f || atom.BISO < 0.0f || atom.UEQ > 0.0f || atom.UEQ < 0.0f;
  return INDEXALL(atom.THTYPE, "isotr") > 0 && given;
}

struct TENSOR {
  VECTOR6 U{};
  VECTOR6 STD{};
};

// The atom's tensor as u_ij.
TENSOR U_OF_ATOM(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom) {
  TENSOR tensor{atom.U, atom.U_STD};
  if (INDEXALL(atom.UTYPE, "beta") > 0) {
    XTAL::BETA_TO_U(atom.U, tensor.U, phase.CELL);
    XTAL::BETA_TO_U(atom.U_STD, tensor.STD, phase.CELL);
  }
  return tensor;
}

float MEAN_OF_DIAGONAL(const VECTOR6& v) {
  return (v[0] + v[1] + v[2]) / 3.0f;
}

// Value and kind of the atom's displacement.
void ADD_DISPLACEMENT(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom,
                      std::vector<std::string>& row) {
  if (IS_ANISOTROPIC(atom)) {
    const TENSOR tensor = U_OF_ATOM(phase, atom);
    row.push_back(CIF_NUMBER(MEAN_OF_DIAGONAL(tensor.U), MEAN_OF_DIAGONAL(tensor.STD)));
    row.push_back("Uani");
  } else if (IS_ISOTROPIC(atom)) {
    row.push_back(CIF_NUMBER(atom.BISO / eight_pi_sq, atom.BISO_STD / eight_pi_sq));
    row.push_back("Uiso");
  } else {
    row.insert(row.end(), {".", "."});
  }
}

std::vector<std::string> SITE_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom,
                                  bool with_displacements) {
  std::vector<std::string> row{CIF_WORD(atom.LAB), CIF_WORD(atom.SFACSYMB)};
  for (std::size_t k = 0; k < 3; ++k) row.push_back(CIF_NUMBER(atom.X[k], atom.X_STD[k]));
  row.push_back(CIF_NUMBER(atom.OCC, atom.OCC_STD));
  if (with_displacements) ADD_DISPLACEMENT(phase, atom, row);
  return row;
}

std::vector<std::string> ANISO_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TYPE& atom) {
  const TENSOR tensor = U_OF_ATOM(phase, atom);
  std::vector<std::string> row{CIF_WORD(atom.LAB)};
  for (std::size_t k = 0; k < 6; ++k)
    row.push_back(tensor.STD[k] > TINY_REAL ? CIF_NUMBER(tensor.U[k], tensor.STD[k])
                                            : LEFT_ADJUST(RFORM(tensor.U[k], plain_width)));
  return row;
}

// Atoms in use, duplicates and omitted ones left out.
std::vector<const ATOM_TYPE*> ATOMS_TO_WRITE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  std::vector<const ATOM_TYPE*> atoms;
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) > ATOM_OMITTED) atoms.push_back(&phase.ATOM(i));
  return atoms;
}

void WARN_OF_SHARED_SITES(const CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) < ATOM_OMITTED) {
      WARN_KVACIF = true;
      WARN_KVACIF_MESS = "Only the first of the atoms that share a site is written to the cif";
    }
}

}  // namespace

void WRITE_CIF_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, int unit) {
  bool any_isotropic = false;
  bool any_anisotropic = false;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    any_isotropic = any_isotropic || IS_ISOTROPIC(phase.ATOM(i));
    any_anisotropic = any_anisotropic || IS_ANISOTROPIC(phase.ATOM(i));
  }
  const bool with_displacements = any_isotropic || any_anisotropic;
  if (ATOMS_TO_WRITE(phase).empty()) return;  // a loop without rows is no CIF

  std::vector<std::string> names{"_atom_site_label",   "_atom_site_type_symbol",
                                 "_atom_site_fract_x", "_atom_site_fract_y",
                                 "_atom_site_fract_z", "_atom_site_occupancy"};
  if (with_displacements)
    names.insert(names.end(), {"_atom_site_U_iso_or_equiv", "_atom_site_adp_type"});
  WRITE_CIF_LOOP_HEAD(names, unit);
  std::vector<std::vector<std::string>> rows;
  for (const ATOM_TYPE* atom : ATOMS_TO_WRITE(phase))
    rows.push_back(SITE_ROW(phase, *atom, with_displacements));
  WRITE_CIF_ROWS(rows, unit);
  WARN_OF_SHARED_SITES(phase);
  if (!any_anisotropic) return;

  WRITE_CIF_LOOP_HEAD(
      {"_atom_site_aniso_label ", "_atom_site_aniso_U_11  ", "_atom_site_aniso_U_22  ",
       "_atom_site_aniso_U_33  ", "_atom_site_aniso_U_12  ", "_atom_site_aniso_U_13  ",
       "_atom_site_aniso_U_23  "},
      unit);
  rows.clear();
  for (const ATOM_TYPE* atom : ATOMS_TO_WRITE(phase))
    if (IS_ANISOTROPIC(*atom)) rows.push_back(ANISO_ROW(phase, *atom));
  WRITE_CIF_ROWS(rows, unit);
}

}  // namespace KVA_CIFNEW
