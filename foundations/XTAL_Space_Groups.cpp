// The one entry point from a description of a space group to its record.
#include "foundations/XTAL_Space_Groups.h"

#include <algorithm>  // for count_if, find_if

#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Space_Group_Parts.h"

namespace XTAL {

using namespace KVA_UTILITIES;

namespace {

constexpr int symbol_length = 20;
constexpr int hall_length = 16;

// ---- what a row of the tables adds ----

void SET_ASYMMETRIC_UNIT(const SPGR_INFO_TYPE& info, SPACE_GROUP& spacegroup) {
  for (std::size_t k = 0; k < 3; ++k)
    for (std::size_t limit = 0; limit < 2; ++limit)
      spacegroup.R_ASYM_UNIT[k][limit] = static_cast<float>(info.ASU[2 * k + limit]) / 24.0f;
}

const WYCKOFF_INFO_TYPE* FIND_WYCKOFF_KEY(std::string_view symbol) {
  const auto found =
      std::find_if(WYCKOFF_INFO.begin(), WYCKOFF_INFO.end(),
                   [symbol](const WYCKOFF_INFO_TYPE& key) { return key.HM == symbol; });
  return found == WYCKOFF_INFO.end() ? nullptr : &*found;
}

// The orbits of the row's symbol or, failing that, of another symbol for the same operators.
void SET_WYCKOFF(const SPGR_INFO_TYPE& info, SPACE_GROUP& spacegroup) {
  const WYCKOFF_INFO_TYPE* key = FIND_WYCKOFF_KEY(info.HM);
  for (std::size_t row = 0; key == nullptr && row < SPGR_INFO.size(); ++row)
    if (SPGR_INFO[row].HALL == info.HALL) key = FIND_WYCKOFF_KEY(SPGR_INFO[row].HM);
  if (key == nullptr) return;
  std::vector<WYCKOFF_ORBIT> orbits;
  for (int i = key->FIRST; i < key->FIRST + key->COUNT; ++i) {
    const WYCKOFF_ORBIT_INFO& orbit = WYCKOFF_ORBITS[static_cast<std::size_t>(i)];
    orbits.push_back(
        {orbit.MULTIPLICITY, std::string(orbit.LETTER), std::string(orbit.COORDINATES)});
  }
  spacegroup.WYCKOFF = std::move(orbits);
}

// The setting behind ":" in lower case.
std::string WITH_LOWER_SETTING(const std::string& symbol) {
  const std::size_t colon = symbol.find(':');
  if (colon == std::string::npos) return symbol;
  return symbol.substr(0, colon) + L_CASE(std::string_view(symbol).substr(colon));
}

void SET_FROM_ROW(int row, SPACE_GROUP& spacegroup) {
  const SPGR_INFO_TYPE& info = SPGR_INFO[static_cast<std::size_t>(row)];
  SET_ASYMMETRIC_UNIT(info, spacegroup);
  SET_WYCKOFF(info, spacegroup);
}

void SET_NAMES(int number, const std::string& symbol, const std::string& hall,
               SPACE_GROUP& spacegroup) {
  spacegroup.NUMSPG = number;
  spacegroup.SPG_SYMB = CUT_TEXT(WITH_LOWER_SETTING(symbol), symbol_length);
  spacegroup.HALL = CUT_TEXT(hall, hall_length);
  spacegroup.GHALL = spacegroup.HALL;
}

// ---- from generators to the record ----

// Generators that are neither the inversion nor a translation.
int COUNT_GENERATORS(const std::vector<EXACT_OP>& generators) {
  return static_cast<int>(
      std::count_if(generators.begin(), generators.end(),
                    [](const EXACT_OP& op) { return op.ROT != IDENTITY && op.ROT != INVERSION; }));
}

// Closes the generators and fills the record; the closed operators, empty after a failure.
std::vector<EXACT_OP> FILL_FROM_GENERATORS(const std::vector<EXACT_OP>& generators,
                                           SPACE_GROUP& spacegroup) {
  const std::vector<EXACT_OP> operators = CLOSE_GROUP(generators);
  if (operators.empty() || !FILL_FROM_OPERATORS(operators, spacegroup)) return {};
  spacegroup.NUM_GEN = COUNT_GENERATORS(generators);
  SET_CLASSES(spacegroup);
  if (ERR_SYMM) return {};
  return operators;
}

// Operator texts as generators; empty with the error set when one is wrong.
std::vector<EXACT_OP> READ_GENERATORS(std::span<const std::string> texts) {
  std::vector<EXACT_OP> generators;
  for (const std::string& text : texts) {
    int start = 1;
    SYM_OP op;
    READ_XSYM(text, start, op.ROT, op.TR);
    if (ERR_SYMM) return {};
    generators.push_back(EXACT_FROM(op.ROT, op.TR));
  }
  return generators;
}

// ---- modes ----

void SET_FROM_SYMBOL(std::string_view text, SPACE_GROUP& spacegroup) {
  const RESOLVED_SYMBOL resolved = RESOLVE_SYMBOL(text);
  if (resolved.HALL.empty())
    return SET_ERR_SYMM("Error in the provided symbol/number of the space group");
  if (FILL_FROM_GENERATORS(DECODE_HALL(resolved.HALL), spacegroup).empty())
    return SET_ERR_SYMM(" Error in generators");
  SET_NAMES(resolved.N, resolved.HM, resolved.HALL, spacegroup);
  if (resolved.ROW >= 0) SET_FROM_ROW(resolved.ROW, spacegroup);
  spacegroup.SG_SETTING = resolved.ROW >= 0 ? "Tabulated Setting" : "Non-standard Setting";
  spacegroup.INFO = resolved.WAS_HALL ? "Generated from Hall symbol"
                                      : "IT (Generated from Hermann-Mauguin symbol)";
}

// Names, limits and orbits of the first row with the same operators; without one the Hall symbol
// that they were made from, if they were and it fits: a part of it would be another one.
void IDENTIFY(const std::vector<EXACT_OP>& operators, SPACE_GROUP& spacegroup,
              const std::string& hall = "") {
  const int row = ROW_WITH_OPERATORS(spacegroup, operators);
  if (row < 0) return SET_NAMES(0, "unknown", LENTRIM(hall) <= hall_length ? hall : "", spacegroup);
  const SPGR_INFO_TYPE& info = SPGR_INFO[static_cast<std::size_t>(row)];
  SET_NAMES(info.N, std::string(info.HM), std::string(info.HALL), spacegroup);
  SET_FROM_ROW(row, spacegroup);
}

// Whether the operators are those of a row, once they are identified.
void SET_SETTING(SPACE_GROUP& spacegroup) {
  spacegroup.SG_SETTING = spacegroup.NUMSPG > 0 ? "Tabulated Setting" : "Non-standard Setting";
}

void SET_FROM_HALL(std::string_view text, SPACE_GROUP& spacegroup) {
  const std::vector<EXACT_OP> generators = DECODE_HALL(text);
  if (ERR_SYMM) return;
  if (generators.empty())
    return SET_ERR_SYMM("Error in the provided symbol/number of the space group");
  const std::vector<EXACT_OP> operators = FILL_FROM_GENERATORS(generators, spacegroup);
  if (operators.empty()) return;
  IDENTIFY(operators, spacegroup, LEFT_ADJUST(text));
  SET_SETTING(spacegroup);
  spacegroup.INFO = "Generated from Hall symbol";
}

void SET_FROM_OPERATOR_LIST(std::span<const std::string> gen, SPACE_GROUP& spacegroup) {
  if (gen.empty())
    return SET_ERR_SYMM(" Generators should be provided in GEN calling Set_SpaceGroup");
  const std::vector<EXACT_OP> generators = READ_GENERATORS(gen);
  if (generators.empty()) return;
  const std::vector<EXACT_OP> operators = FILL_FROM_GENERATORS(generators, spacegroup);
  if (operators.empty()) return;
  IDENTIFY(operators, spacegroup);
  spacegroup.INFO = spacegroup.NUMSPG > 0 ? "IT (Identified from user-given operators)"
                                          : "Non-Conventional (user-given operators)";
}

// The operators in the order in which they are given, without their products.
void SET_FIXED(std::span<const std::string> gen, SPACE_GROUP& spacegroup) {
  if (gen.empty()) return SET_ERR_SYMM(" Generators should be provided if FIX option is Used");
  const std::vector<EXACT_OP> operators = READ_GENERATORS(gen);
  if (operators.empty() || !FILL_FROM_OPERATORS(operators, spacegroup)) return;
  SET_OPERATOR_LIST(operators, spacegroup);
  spacegroup.NUM_GEN = COUNT_GENERATORS(operators);
  SET_CLASSES(spacegroup);
  if (ERR_SYMM) return;
  IDENTIFY(operators, spacegroup);
  SET_SETTING(spacegroup);
  spacegroup.INFO = "Fixed symmetry operators (no info)";
}

// The generators of the standard setting, for a symbol or number.
void SET_FROM_IT_GENERATORS(std::string_view text, SPACE_GROUP& spacegroup) {
  const RESOLVED_SYMBOL resolved = RESOLVE_SYMBOL(text);
  const auto row = std::find_if(IT_GEN.begin(), IT_GEN.end(), [&resolved](const IT_GEN_TYPE& gen) {
    return gen.HM == resolved.HM;
  });
  if (row == IT_GEN.end())
    return SET_ERR_SYMM(" Problems in SpaceGroup: " + TRIM(text) +
                        "=> the HM symbol or the number is incorrect");
  std::vector<std::string> texts;
  std::string_view rest = row->GENERATORS;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    texts.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (FILL_FROM_GENERATORS(READ_GENERATORS(texts), spacegroup).empty())
    return SET_ERR_SYMM(" Error in generators");
  SET_NAMES(resolved.N, resolved.HM, resolved.HALL, spacegroup);
  SET_FROM_ROW(resolved.ROW, spacegroup);
  spacegroup.SG_SETTING = "Tabulated Setting";
  spacegroup.INFO = "Generated from explicit IT generators";
}

}  // namespace

void SET_SPACEGROUP(std::string_view spacegen, SPACE_GROUP& spacegroup,
                    std::span<const std::string> gen, std::string_view mode) {
  spacegroup = SPACE_GROUP{};
  ERR_SYMM = false;
  ERR_SYMM_MESS.clear();
  const std::string way = U_CASE(TRIM(mode));
  if (way.empty() || way == "HMS")
    SET_FROM_SYMBOL(spacegen, spacegroup);
  else if (way == "HAL")
    SET_FROM_HALL(spacegen, spacegroup);
  else if (way == "GEN")
    SET_FROM_OPERATOR_LIST(gen, spacegroup);
  else if (way == "FIX")
    SET_FIXED(gen, spacegroup);
  else if (way == "ITC")
    SET_FROM_IT_GENERATORS(spacegen, spacegroup);
  else
    SET_ERR_SYMM(" Problems in SpaceGroup");
  if (ERR_SYMM) spacegroup.MULTIP = 0;
}

}  // namespace XTAL
