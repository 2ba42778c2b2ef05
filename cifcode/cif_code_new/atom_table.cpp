// Atom types, atom sites and anisotropic displacements of a block, in this order, into atom
// records.
#include "cifcode/cif_code_new/atom_table.h"

#include <algorithm>  // for find_if_not, max, min
#include <unordered_map>

#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/kva_crystal_structures/displacement.h"

namespace KVA_CIFNEW {

using namespace KVA_UTILITIES;
using KVA_CRYSTAL_STRUCTURES::ATOM_TYPE;

namespace {

// ---- the three loops ----

struct LABEL {
  std::string_view NAME;
  char VTYPE;
};

enum TYPE_LABEL { TYPE_SYMBOL = 1, TYPE_DESCRIPTION };
constexpr std::array<LABEL, 2> type_labels{{
    {"_atom_type_symbol", 'C'},
    {"_atom_type_description", 'C'},
}};

enum SITE_LABEL {
  SITE_NAME = 1,
  SITE_TYPE_SYMBOL,
  SITE_X,
  SITE_OCCUPANCY = SITE_X + 3,
  SITE_U_ISO,
  SITE_B_ISO,
};
constexpr std::array<LABEL, 8> site_labels{{
    {"_atom_site_label", 'C'},
    {"_atom_site_type_symbol", 'C'},
    {"_atom_site_fract_x", 'F'},
    {"_atom_site_fract_y", 'F'},
    {"_atom_site_fract_z", 'F'},
    {"_atom_site_occupancy", 'F'},
    {"_atom_site_U_iso_or_equiv", 'F'},
    {"_atom_site_B_iso_or_equiv", 'F'},
}};

enum ANISO_LABEL { ANISO_NAME = 1, ANISO_U = 2 };
constexpr std::array<LABEL, 7> aniso_labels{{
    {"_atom_site_aniso_label", 'C'},
    {"_atom_site_aniso_U_11", 'F'},
    {"_atom_site_aniso_U_22", 'F'},
    {"_atom_site_aniso_U_33", 'F'},
    {"_atom_site_aniso_U_12", 'F'},
    {"_atom_site_aniso_U_13", 'F'},
    {"_atom_site_aniso_U_23", 'F'},
}};

CIFDATA_TYPE READ_LOOP(const LINE_RANGE& block, std::string_view key,
                       std::span<const LABEL> labels) {
  CIFDATA_TYPE loop;
  loop.KEY = key;
  for (const LABEL& label : labels) {
    ++loop.NLABELS;
    loop.LABELS(loop.NLABELS) = label.NAME;
    loop.VTYPE(loop.NLABELS) = label.VTYPE;
  }
  READ_LOOP_CIF(block.FLINES, block.FIRST, block.LAST, loop);
  return loop;
}

// ---- atom types ----

struct ATOM_TYPE_ROW {
  std::string SNAME;     // type symbol, upper case
  std::string SCAT;      // scattering text in normal form
  float SCHARGE = 0.0f;  // charge told by it
};

// The digit behind the sign, with the sign; 0 without one.
float CHARGE_OF(const std::string& scat) {
  std::size_t sign = scat.find('+');
  if (sign == std::string::npos) sign = scat.find('-');
  if (sign == std::string::npos) return 0.0f;
  const char digit = scat[sign + 1];  // the end of the text has none
  if (digit < '0' || digit > '9') return 0.0f;
  const auto charge = static_cast<float>(digit - '0');
  return scat[sign] == '-' ? -charge : charge;
}

std::vector<ATOM_TYPE_ROW> READ_ATOM_TYPES(const LINE_RANGE& block) {
  const CIFDATA_TYPE loop = READ_LOOP(block, "_atom_type_", type_labels);
  std::vector<ATOM_TYPE_ROW> types;
  for (int row = 1; row <= loop.N; ++row) {
    ATOM_TYPE_ROW type;
    type.SNAME = U_CASE(LEFT_ADJUST(loop.CVAL(row, TYPE_SYMBOL)));
    type.SCAT = SCAT_FORMAT(loop.CVAL(row, TYPE_DESCRIPTION));
    if (type.SCAT == XTAL::NO_ELEMENT) type.SCAT.clear();  // it describes nothing
    type.SCHARGE = CHARGE_OF(type.SCAT);
    types.push_back(type);
  }
  return types;
}

// ---- the element of a site ----

// Element of a text with its atomic number; blank and 0 when the text names none.
void SET_ELEMENT(const std::string& text, ATOM_TYPE& atom) {
  XTAL::GET_CHEMSYMB(text, atom.CHEMSYMB, atom.Z);
  if (atom.CHEMSYMB == XTAL::NO_ELEMENT) atom.CHEMSYMB.clear();
}

// By the table of atom types, then by the site's type symbol, then by its label.
void CHOOSE_ELEMENT(const std::string& type_symbol, const std::vector<ATOM_TYPE_ROW>& types,
                    ATOM_TYPE& atom) {
  if (!type_symbol.empty()) {
    for (const ATOM_TYPE_ROW& type : types) {
      if (type.SNAME != U_CASE(type_symbol)) continue;
      atom.SFACSYMB = CUT_TEXT(type.SCAT, 4);
      atom.CHARGE = type.SCHARGE;
      SET_ELEMENT(atom.SFACSYMB, atom);
      break;
    }
    if (atom.SFACSYMB.empty()) {
      SET_ELEMENT(type_symbol, atom);
      atom.SFACSYMB = atom.CHEMSYMB;
    }
  }
  if (!atom.SFACSYMB.empty()) return;
  SET_ELEMENT(atom.LAB, atom);
  atom.SFACSYMB = U_CASE(atom.CHEMSYMB);
}

// ---- atom sites ----

// Values of neighbouring labels.
template <std::size_t N>
std::array<float, N> VECTOR_OF(const LOOP_VALUES<float>& values, int row, int first_label) {
  std::array<float, N> v{};
  for (float& component : v) component = values(row, first_label++);
  return v;
}

ATOM_TYPE ATOM_OF_ROW(const CIFDATA_TYPE& loop, int row, const std::vector<ATOM_TYPE_ROW>& types) {
  constexpr int label_length = 20;
  ATOM_TYPE atom;
  atom.LAB = CUT_TEXT(LEFT_ADJUST_VIEW(loop.CVAL(row, SITE_NAME)), label_length);
  CHOOSE_ELEMENT(LEFT_ADJUST(loop.CVAL(row, SITE_TYPE_SYMBOL)), types, atom);
  atom.X = VECTOR_OF<3>(loop.VAL, row, SITE_X);
  atom.X_STD = VECTOR_OF<3>(loop.VAL_STD, row, SITE_X);
  atom.OCC = loop.VAL(row, SITE_OCCUPANCY);
  atom.OCC_STD = loop.VAL_STD(row, SITE_OCCUPANCY);
  atom.UEQ = loop.VAL(row, SITE_U_ISO);
  atom.BISO = loop.VAL(row, SITE_B_ISO);
  atom.BISO_STD = loop.VAL_STD(row, SITE_B_ISO);
  // The esd of U is kept as that of the B that it becomes.
  if (!(atom.BISO > 0.0f))
    atom.BISO_STD = KVA_CRYSTAL_STRUCTURES::EIGHT_PI_SQ * loop.VAL_STD(row, SITE_U_ISO);
  return atom;
}

// False when the loop is absent or empty.
bool READ_SITES(const LINE_RANGE& block, const std::vector<ATOM_TYPE_ROW>& types,
                LIST<ATOM_TYPE>& atom) {
  const CIFDATA_TYPE loop = READ_LOOP(block, "_atom_site_", site_labels);
  if (ERR_KVACIF) return false;
  if (loop.N == 0) {
    ERR_KVACIF = true;
    ERR_KVACIF_MESS = "Loop for atoms found in cif, but no atom info from cif";
    return false;
  }
  atom.ITEMS.reserve(static_cast<std::size_t>(loop.N));
  for (int row = 1; row <= loop.N; ++row) atom.ADD(ATOM_OF_ROW(loop, row, types));
  return true;
}

// ---- anisotropic displacements ----

void SET_TENSOR(const CIFDATA_TYPE& loop, int row, ATOM_TYPE& atom) {
  atom.U = VECTOR_OF<6>(loop.VAL, row, ANISO_U);
  atom.U_STD = VECTOR_OF<6>(loop.VAL_STD, row, ANISO_U);
  atom.THTYPE = "Aniso";
  atom.UTYPE = "u_ij";
}

void READ_TENSORS(const LINE_RANGE& block, LIST<ATOM_TYPE>& atom) {
  const CIFDATA_TYPE loop = READ_LOOP(block, "_atom_site_aniso_", aniso_labels);
  if (loop.N == 0) return;
  if (loop.N > atom.COUNT()) {
    ERR_KVACIF = true;
    ERR_KVACIF_MESS = "More aniso displacement factors than atoms";
    return;
  }
  // Of atoms with one label the first is meant.
  std::unordered_map<std::string_view, int> atoms_by_label;
  for (int i = 1; i <= atom.COUNT(); ++i) atoms_by_label.emplace(atom(i).LAB, i);
  for (int row = 1; row <= loop.N; ++row) {
    const auto found = atoms_by_label.find(LEFT_ADJUST_VIEW(loop.CVAL(row, ANISO_NAME)));
    if (found != atoms_by_label.end()) SET_TENSOR(loop, row, atom(found->second));
  }
}

}  // namespace

std::string SCAT_FORMAT(std::string_view sin) {
  const std::string text = CUT_TEXT(LEFT_ADJUST(sin), 4);
  std::size_t sign = text.find('-');
  if (sign == std::string::npos) sign = text.find('+');
  if (sign == std::string::npos) return text;
  const std::size_t last = text.size() - 1;
  if (sign + 1 == last) return text;
  if (sign != last || sign == 0) return "";
  const std::string before = text.substr(0, sign);
  const auto letters_end = std::find_if_not(before.begin(), before.end(), ISLETTER);
  const std::string charge =
      letters_end == before.end() ? "1" : std::string(letters_end, before.end());
  return std::string(before.begin(), letters_end) + text[sign] + charge;
}

void READ_CIF_ATOMARRAY(const FILE_LINES& flines, int start, int end, LIST<ATOM_TYPE>& atom,
                        int& natoms) {
  INIT_ERR_KVACIF();
  natoms = 0;
  atom.CLEAR();
  const LINE_RANGE block{flines, std::max(start, 1), std::min(end, flines.COUNT())};
  if (block.FIRST > block.LAST) return;
  // A file need not have the loop of atom types; reading the sites forgets that it was missed.
  const std::vector<ATOM_TYPE_ROW> types = READ_ATOM_TYPES(block);
  if (!READ_SITES(block, types, atom)) return;
  natoms = atom.COUNT();
  READ_TENSORS(block, atom);
}

}  // namespace KVA_CIFNEW
