// The sites of a block: their elements and charges, positions, occupancies and displacements.
#include <algorithm>  // for lower_bound, min, sort
#include <cmath>      // for round
#include <cstdint>

#include "cifcode/cif_code_new/atom_table.h"
#include "cifcode/cif_full/structure.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/kva_crystal_structures/displacement.h"

namespace KVA_CIFFULL {

using namespace KVA_UTILITIES;
using KVA_CRYSTAL_STRUCTURES::EIGHT_PI_SQ;

namespace {

constexpr int label_length = 20;
constexpr int symbol_length = 4;

// ---- what is told of sites ----

// One kind: how many sites, and the first.
struct TOLD_SITES {
  std::string_view WORDS;  // with " first " and the label behind them
  int COUNT = 0;
  std::string FIRST = {};

  void NOTE(std::string_view label) {
    if (++COUNT == 1) FIRST = CUT_TEXT(label, label_length);
  }
};

enum TOLD_KIND {
  NO_POSITION,
  DUMMY,
  UNREADABLE_POSITION,
  BROKEN_ESD,
  UNREADABLE_OCCUPANCY,
  UNREADABLE_DISPLACEMENT,
  LABEL_UNKNOWN,
  TOLD_KINDS
};

using TOLD = std::array<TOLD_SITES, TOLD_KINDS>;  // ORDER TOLD_KIND
const TOLD nothing_told{{
    {"sites without coordinates are left out"},
    {"sites with the flag dum are left out"},
    {"sites whose coordinates are no numbers are left out"},
    {"sites with an esd that cannot be read, which is left out"},
    {"sites with an occupancy that is no number, which is read as 1"},
    {"sites with a displacement that is no number, which is not read"},
    {"labels of displacements that no site has, which are not read"},
}};

// ---- values of a row ----

// The text of a value, blank for ? and . and where there is no such column.
std::string_view TEXT_OF(const COLUMN& column, int row) {
  if (row > column.ROWS) return {};
  const VALUE& value = column(row);
  return IS_NULL(value) ? std::string_view() : value.TEXT();
}

// ---- elements and charges ----

// Words that stand for a group of atoms around the atom that counts.
struct NAMED_GROUP {
  std::string_view WORD;
  std::string_view ELEMENT;
};
constexpr std::array<NAMED_GROUP, 1> named_groups{{{"WAT", "O"}}};  // water in the AMCSD

KNOWN_ELEMENT ELEMENT_OF(std::string_view text) {
  KNOWN_ELEMENT element{std::string(text), "", 0};
  std::string_view meant = text;
  for (const NAMED_GROUP& group : named_groups)
    if (BEGINS_WITH(text, group.WORD)) meant = group.ELEMENT;
  XTAL::GET_CHEMSYMB(meant, element.CHEMSYMB, element.Z);
  if (element.CHEMSYMB == XTAL::NO_ELEMENT) element.CHEMSYMB.clear();
  return element;
}

// The element of a type symbol or label. A file has few, so that those met before are kept.
const KNOWN_ELEMENT& FIND_ELEMENT(std::string_view text, std::vector<KNOWN_ELEMENT>& elements) {
  constexpr std::size_t deciding = 3;  // characters that the lookup and the groups look at
  constexpr std::size_t most_kept = 64;
  const std::string_view start = text.substr(0, deciding);
  for (const KNOWN_ELEMENT& element : elements)
    if (element.TEXT == start) return element;
  if (elements.size() >= most_kept) elements.clear();
  elements.push_back(ELEMENT_OF(start));
  return elements.back();
}

// "Fe3+", "O2-", "Na+", "Fe+3", "Fe2.5+": letters, and the number with a sign before or behind it.
// False without a charge.
bool READ_CHARGE(std::string_view symbol, float& charge) {
  const std::size_t letters = symbol.find_first_of("+-0123456789");
  if (letters == std::string_view::npos || letters == 0) return false;
  std::string_view rest = symbol.substr(letters);
  const bool behind = rest.ends_with('+') || rest.ends_with('-');
  const char sign = behind ? rest.back() : rest.front();
  if (sign != '+' && sign != '-') return false;
  if (behind)
    rest.remove_suffix(1);
  else
    rest.remove_prefix(1);
  NUMBER number;
  number.VAL = 1.0f;  // Na+
  if (!rest.empty() && (rest[0] == '+' || rest[0] == '-' || !GETNUM(rest, number))) return false;
  charge = sign == '-' ? -number.VAL : number.VAL;
  return true;
}

// The loop of atom types, by symbol.
struct TYPE_ROW {
  std::string_view SYMBOL;
  float CHARGE = 0.0f;
  bool HAS_CHARGE = false;

  bool operator<(const TYPE_ROW& other) const { return SYMBOL < other.SYMBOL; }
};

// Its charge: of the symbol itself, else the oxidation number, else of the description.
TYPE_ROW READ_TYPE(std::string_view symbol, std::string_view oxidation,
                   std::string_view description) {
  TYPE_ROW type{symbol, 0.0f, true};
  if (READ_CHARGE(symbol, type.CHARGE)) return type;
  VALUE_STD number;
  if (!oxidation.empty() && READ_NUMBER(oxidation, number) != NUMBER_FOUND::NONE) {
    type.CHARGE = number.VALUE;
    return type;
  }
  type.HAS_CHARGE =
      READ_CHARGE(description, type.CHARGE) &&
      XTAL::IS_CHEMSYMB(description.substr(0, description.find_first_of("+-0123456789")));
  return type;
}

std::vector<TYPE_ROW> READ_TYPES(const BLOCK& block) {
  std::vector<TYPE_ROW> types;
  const PLACE place = PLACE_OF(block, TYPE_SYMBOL);
  if (place.SLOT < 0) return types;
  const COLUMN symbols = COLUMN_OF(block, TYPE_SYMBOL, place.LOOP);
  const COLUMN oxidation = COLUMN_OF(block, TYPE_OXIDATION, place.LOOP);
  const COLUMN description = COLUMN_OF(block, TYPE_DESCRIPTION, place.LOOP);
  if (oxidation.ROWS == 0 && description.ROWS == 0) return types;
  for (int row = 1; row <= symbols.ROWS; ++row)
    types.push_back(
        READ_TYPE(TEXT_OF(symbols, row), TEXT_OF(oxidation, row), TEXT_OF(description, row)));
  std::stable_sort(types.begin(), types.end());
  return types;
}

float CHARGE_OF(std::string_view type_symbol, const std::vector<TYPE_ROW>& types) {
  float charge = 0.0f;
  if (READ_CHARGE(type_symbol, charge)) return charge;
  const auto found =
      std::lower_bound(types.begin(), types.end(), TYPE_ROW{type_symbol, 0.0f, false});
  return found != types.end() && found->SYMBOL == type_symbol && found->HAS_CHARGE ? found->CHARGE
                                                                                   : 0.0f;
}

// "Fe+3" where a charge is known that a scattering symbol can tell, else "Fe".
std::string SCATTERING_SYMBOL(const std::string& element, float charge) {
  const float whole = std::round(charge);
  if (element.empty() || whole != charge || charge == 0.0f || std::abs(charge) > 9.0f)
    return element;
  return CUT_TEXT(
      element + (charge < 0.0f ? "-" : "+") + INTEGER_COLUMNS(static_cast<int>(std::abs(whole))),
      symbol_length);
}

// "Fe+0": no charge, stated as WRITE states it, so that nothing else is assumed.
bool STATES_NO_CHARGE(std::string_view symbol) {
  return symbol.ends_with("+0") && symbol.find_first_of("+-0123456789") == symbol.size() - 2;
}

// ---- sites ----

struct SITE_COLUMNS {
  COLUMN LABEL;
  COLUMN TYPE;
  std::array<COLUMN, 3> X;
  COLUMN OCCUPANCY;
  COLUMN U;
  COLUMN B;
  COLUMN FLAG;
};

// All columns of the loop in which the coordinates stand.
SITE_COLUMNS SITE_COLUMNS_OF(const BLOCK& block) {
  const int loop = PLACE_OF(block, SITE_X).LOOP;
  const auto column = [&](FIELD field) { return COLUMN_OF(block, field, loop); };
  return {
      column(SITE_LABEL),     column(SITE_TYPE),  {column(SITE_X), column(SITE_Y), column(SITE_Z)},
      column(SITE_OCCUPANCY), column(SITE_U_ISO), column(SITE_B_ISO),
      column(SITE_CALC_FLAG)};
}

// What the sites of a block are read with.
struct SITE_WORK {
  SITE_COLUMNS COLUMNS;
  std::vector<TYPE_ROW> TYPES;
  std::vector<KNOWN_ELEMENT>& ELEMENTS;
  TOLD& TELL;
};

// False, with a note, when the row has no position.
bool READ_POSITION(const SITE_WORK& work, int row, std::string_view label, ATOM_TYPE& atom) {
  bool readable = true;
  bool broken = false;
  for (std::size_t k = 0; k < 3; ++k) {
    const std::string_view text = TEXT_OF(work.COLUMNS.X[k], row);
    if (text.empty()) {
      work.TELL[NO_POSITION].NOTE(label);
      return false;
    }
    VALUE_STD number;
    const NUMBER_FOUND found = READ_NUMBER(text, number);
    readable = readable && found != NUMBER_FOUND::NONE;
    broken = broken || found == NUMBER_FOUND::WITH_BROKEN_ESD;
    atom.X[k] = number.VALUE;
    atom.X_STD[k] = number.STD;
  }
  if (!readable) work.TELL[UNREADABLE_POSITION].NOTE(label);
  if (readable && broken) work.TELL[BROKEN_ESD].NOTE(label);
  return readable;
}

void READ_ELEMENT(const SITE_WORK& work, int row, std::string_view label, ATOM_TYPE& atom) {
  const std::string_view type = TEXT_OF(work.COLUMNS.TYPE, row);
  const KNOWN_ELEMENT* element = &FIND_ELEMENT(type.empty() ? label : type, work.ELEMENTS);
  if (element->Z == 0 && !type.empty()) element = &FIND_ELEMENT(label, work.ELEMENTS);
  atom.CHEMSYMB = element->CHEMSYMB;
  atom.Z = element->Z;
  if (!type.empty()) atom.CHARGE = CHARGE_OF(type, work.TYPES);
  atom.SFACSYMB = element->Z > 0 && STATES_NO_CHARGE(type)
                      ? atom.CHEMSYMB + "+0"
                      : SCATTERING_SYMBOL(atom.CHEMSYMB, atom.CHARGE);
}

void READ_OCCUPANCY(const SITE_WORK& work, int row, std::string_view label, ATOM_TYPE& atom) {
  const std::string_view text = TEXT_OF(work.COLUMNS.OCCUPANCY, row);
  VALUE_STD occupancy{1.0f, 0.0f};
  if (!text.empty() && READ_NUMBER(text, occupancy) == NUMBER_FOUND::NONE) {
    work.TELL[UNREADABLE_OCCUPANCY].NOTE(label);
    occupancy = {1.0f, 0.0f};
  }
  atom.OCC = occupancy.VALUE;
  atom.OCC_STD = occupancy.STD;
}

// U where it is given, else B.
void READ_ISOTROPIC(const SITE_WORK& work, int row, std::string_view label, ATOM_TYPE& atom) {
  const std::string_view u_text = TEXT_OF(work.COLUMNS.U, row);
  const std::string_view text = u_text.empty() ? TEXT_OF(work.COLUMNS.B, row) : u_text;
  if (text.empty()) return;
  VALUE_STD number;
  if (READ_NUMBER(text, number) == NUMBER_FOUND::NONE)
    return work.TELL[UNREADABLE_DISPLACEMENT].NOTE(label);
  if (u_text.empty()) {
    atom.BISO = number.VALUE;
    atom.BISO_STD = number.STD;
  } else {
    atom.UEQ = number.VALUE;
    atom.BISO_STD = EIGHT_PI_SQ * number.STD;
  }
}

bool IS_DUMMY(const SITE_WORK& work, int row) {
  return EQUAL_TEXT(TEXT_OF(work.COLUMNS.FLAG, row), "dum") &&
         !TEXT_OF(work.COLUMNS.FLAG, row).empty();
}

// A site without a label is called by its type symbol and its number among the rows.
std::string LABEL_OF(const SITE_WORK& work, int row) {
  const std::string_view label = LEFT_ADJUST_VIEW(TEXT_OF(work.COLUMNS.LABEL, row));
  if (!label.empty()) return CUT_TEXT(label, label_length);
  return CUT_TEXT(std::string(TEXT_OF(work.COLUMNS.TYPE, row)) + INTEGER_COLUMNS(row),
                  label_length);
}

// False when the row is no site.
bool READ_SITE(const SITE_WORK& work, int row, ATOM_TYPE& atom) {
  atom.LAB = LABEL_OF(work, row);
  if (IS_DUMMY(work, row)) {
    work.TELL[DUMMY].NOTE(atom.LAB);
    return false;
  }
  if (!READ_POSITION(work, row, atom.LAB, atom)) return false;
  READ_ELEMENT(work, row, atom.LAB, atom);
  READ_OCCUPANCY(work, row, atom.LAB, atom);
  READ_ISOTROPIC(work, row, atom.LAB, atom);
  return true;
}

// The sites as they were taken, for their displacements.
struct TAKEN_SITES {
  std::vector<std::string_view> LABELS;  // whole, by atom
  std::vector<int> ROWS;                 // of the loop, by atom
};

TAKEN_SITES TAKE_SITES(const SITE_WORK& work, STRUCTURE& structure) {
  TAKEN_SITES taken;
  const int rows = work.COLUMNS.X[0].ROWS;
  structure.ATOMS.ITEMS.reserve(static_cast<std::size_t>(rows));
  taken.LABELS.reserve(static_cast<std::size_t>(rows));
  taken.ROWS.reserve(static_cast<std::size_t>(rows));
  for (int row = 1; row <= rows; ++row) {
    ATOM_TYPE atom;
    if (!READ_SITE(work, row, atom)) continue;
    structure.ATOMS.ADD(std::move(atom));
    taken.LABELS.push_back(LEFT_ADJUST_VIEW(TEXT_OF(work.COLUMNS.LABEL, row)));
    taken.ROWS.push_back(row);
  }
  return taken;
}

// ---- displacements ----

// Atoms by their labels, each to be had once, those of one label in order.
struct LABEL_TABLE {
  struct ENTRY {
    std::string_view LABEL;
    int NEXT = 0;  // atom to be had next, 0 when all were
    int LAST = 0;
  };
  std::vector<ENTRY> ENTRIES;
  std::vector<int> SLOTS;     // places in ENTRIES plus 1, 0 when empty
  std::vector<int> FOLLOWER;  // next atom with the same label, by atom
};

// Slot of the label, or the empty one where it would stand.
std::size_t SLOT_OF(const LABEL_TABLE& table, std::string_view label) {
  std::size_t slot = std::hash<std::string_view>()(label) % table.SLOTS.size();
  while (table.SLOTS[slot] != 0 &&
         table.ENTRIES[static_cast<std::size_t>(table.SLOTS[slot] - 1)].LABEL != label)
    slot = (slot + 1) % table.SLOTS.size();
  return slot;
}

LABEL_TABLE TABLE_OF(const std::vector<std::string_view>& labels) {
  LABEL_TABLE table;
  table.ENTRIES.reserve(labels.size());
  table.SLOTS.assign(2 * labels.size() + 1, 0);
  table.FOLLOWER.assign(labels.size() + 1, 0);
  int atom = 0;
  for (std::string_view label : labels) {
    ++atom;
    int& place = table.SLOTS[SLOT_OF(table, label)];
    if (place == 0) {
      table.ENTRIES.push_back({label, atom, atom});
      place = static_cast<int>(table.ENTRIES.size());
      continue;
    }
    LABEL_TABLE::ENTRY& entry = table.ENTRIES[static_cast<std::size_t>(place - 1)];
    table.FOLLOWER[static_cast<std::size_t>(entry.LAST)] = atom;
    entry.LAST = atom;
  }
  return table;
}

// The next atom of the label: 0 when each has been had, -1 when no atom has the label.
int TAKE_ATOM(LABEL_TABLE& table, std::string_view label) {
  const int place = table.SLOTS[SLOT_OF(table, label)];
  if (place == 0) return -1;
  LABEL_TABLE::ENTRY& entry = table.ENTRIES[static_cast<std::size_t>(place - 1)];
  const int atom = entry.NEXT;
  entry.NEXT = table.FOLLOWER[static_cast<std::size_t>(atom)];
  return atom;
}

// A form in which tensors are given, and what makes U of it.
struct TENSOR_KIND {
  FIELD FIRST;  // of its six items
  std::string_view UTYPE;
  float PER_U;
};
constexpr std::array<TENSOR_KIND, 3> tensor_kinds{{
    {ANISO_U_11, "u_ij", 1.0f},
    {ANISO_B_11, "u_ij", EIGHT_PI_SQ},
    {ANISO_BETA_11, "beta", 1.0f},
}};

// The columns of the three forms in one loop.
using TENSOR_COLUMNS = std::array<std::array<COLUMN, 6>, tensor_kinds.size()>;

TENSOR_COLUMNS TENSOR_COLUMNS_OF(const BLOCK& block, int loop) {
  TENSOR_COLUMNS columns;
  for (std::size_t kind = 0; kind < tensor_kinds.size(); ++kind)
    for (std::size_t k = 0; k < 6; ++k)
      columns[kind][k] = COLUMN_OF(block, static_cast<FIELD>(tensor_kinds[kind].FIRST + k), loop);
  return columns;
}

enum class TENSOR_FOUND { YES, NONE, UNREADABLE };

// The six numbers of a row; those that are absent are 0 when others are there.
TENSOR_FOUND READ_SIX(const std::array<COLUMN, 6>& columns, int row, float per_u, VECTOR6& u,
                      VECTOR6& u_std) {
  bool any = false;
  for (std::size_t k = 0; k < 6; ++k) {
    const std::string_view text = TEXT_OF(columns[k], row);
    VALUE_STD number;
    if (!text.empty() && READ_NUMBER(text, number) == NUMBER_FOUND::NONE)
      return TENSOR_FOUND::UNREADABLE;
    any = any || !text.empty();
    u[k] = number.VALUE / per_u;
    u_std[k] = number.STD / per_u;
  }
  return any ? TENSOR_FOUND::YES : TENSOR_FOUND::NONE;
}

// The first form that the row has.
TENSOR_FOUND READ_TENSOR(const TENSOR_COLUMNS& columns, int row, ATOM_TYPE& tensor) {
  TENSOR_FOUND found = TENSOR_FOUND::NONE;
  for (std::size_t kind = 0; kind < tensor_kinds.size() && found == TENSOR_FOUND::NONE; ++kind) {
    if (columns[kind][0].ROWS == 0) continue;
    found = READ_SIX(columns[kind], row, tensor_kinds[kind].PER_U, tensor.U, tensor.U_STD);
    if (tensor.UTYPE != tensor_kinds[kind].UTYPE) tensor.UTYPE = tensor_kinds[kind].UTYPE;
  }
  return found;
}

void STORE_TENSOR(const ATOM_TYPE& tensor, ATOM_TYPE& atom) {
  atom.U = tensor.U;
  atom.U_STD = tensor.U_STD;
  atom.UTYPE = tensor.UTYPE;
  atom.THTYPE = "Aniso";
}

// Tensors in the loop of the sites themselves.
void READ_TENSORS_OF_SITES(const BLOCK& block, int loop, const TAKEN_SITES& taken, TOLD& told,
                           STRUCTURE& structure) {
  const TENSOR_COLUMNS columns = TENSOR_COLUMNS_OF(block, loop);
  ATOM_TYPE tensor;
  for (int i = 1; i <= structure.ATOMS.COUNT(); ++i) {
    const TENSOR_FOUND found =
        READ_TENSOR(columns, taken.ROWS[static_cast<std::size_t>(i - 1)], tensor);
    if (found == TENSOR_FOUND::YES) STORE_TENSOR(tensor, structure.ATOMS(i));
    if (found == TENSOR_FOUND::UNREADABLE)
      told[UNREADABLE_DISPLACEMENT].NOTE(structure.ATOMS(i).LAB);
  }
}

// Tensors in a loop with labels of its own.
void READ_LABELLED_TENSORS(const BLOCK& block, const COLUMN& labels, LABEL_TABLE& table, TOLD& told,
                           STRUCTURE& structure) {
  const TENSOR_COLUMNS columns = TENSOR_COLUMNS_OF(block, labels.LOOP);
  ATOM_TYPE tensor;
  for (int row = 1; row <= labels.ROWS; ++row) {
    const std::string_view label = LEFT_ADJUST_VIEW(TEXT_OF(labels, row));
    const TENSOR_FOUND found = READ_TENSOR(columns, row, tensor);
    if (found == TENSOR_FOUND::NONE) continue;
    if (found == TENSOR_FOUND::UNREADABLE) {
      told[UNREADABLE_DISPLACEMENT].NOTE(label);
      continue;
    }
    const int atom = TAKE_ATOM(table, label);
    if (atom > 0) STORE_TENSOR(tensor, structure.ATOMS(atom));
    if (atom < 0) told[LABEL_UNKNOWN].NOTE(label);
  }
}

// Loop of the first tensor of that kind; -2 without one.
int LOOP_OF(const BLOCK& block, const TENSOR_KIND& kind) {
  const PLACE place = PLACE_OF(block, kind.FIRST);
  return place.SLOT < 0 ? -2 : place.LOOP;
}

void READ_TENSORS(const BLOCK& block, int site_loop, const TAKEN_SITES& taken, TOLD& told,
                  STRUCTURE& structure) {
  std::vector<int> done;
  LABEL_TABLE table;
  for (const TENSOR_KIND& kind : tensor_kinds) {
    const int loop = LOOP_OF(block, kind);
    if (loop < -1 || std::find(done.begin(), done.end(), loop) != done.end()) continue;
    done.push_back(loop);
    COLUMN labels = COLUMN_OF(block, ANISO_LABEL, loop);
    if (labels.ROWS == 0 && loop == site_loop) {
      READ_TENSORS_OF_SITES(block, loop, taken, told, structure);
      continue;
    }
    if (table.SLOTS.empty()) table = TABLE_OF(taken.LABELS);
    READ_LABELLED_TENSORS(block, labels, table, told, structure);
  }
}

}  // namespace

void READ_SITES(const BLOCK& block, std::vector<KNOWN_ELEMENT>& elements, STRUCTURE& structure) {
  TOLD told = nothing_told;
  const SITE_WORK work{SITE_COLUMNS_OF(block), READ_TYPES(block), elements, told};
  const TAKEN_SITES taken = TAKE_SITES(work, structure);
  if (taken.ROWS.empty()) return;
  READ_TENSORS(block, work.COLUMNS.X[0].LOOP, taken, told, structure);
  for (const TOLD_SITES& kind : told)
    if (kind.COUNT > 0)
      structure.TELLINGS.push_back(INTEGER_COLUMNS(kind.COUNT) + " " + std::string(kind.WORDS) +
                                   ", first " + kind.FIRST);
}

}  // namespace KVA_CIFFULL
