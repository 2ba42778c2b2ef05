// Recognising what people write for a space group, and the row of the settings table that fits.
#include <algorithm>  // for find_if, sort
#include <optional>

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Space_Group_Parts.h"

namespace XTAL {

using namespace KVA_UTILITIES;

namespace {

std::string WITHOUT(std::string_view text, std::string_view characters) {
  std::string kept;
  for (char c : text)
    if (characters.find(c) == std::string_view::npos) kept += c;
  return kept;
}

// The symbol without the blanks around its ":", and without a setting that names the default: the
// second origin, hexagonal axes. A ":" without a setting is dropped.
std::string WITH_PLAIN_SETTING(const std::string& symbol) {
  const std::size_t colon = symbol.find(':');
  if (colon == std::string::npos) return symbol;
  const std::string stem = TRIM(std::string_view(symbol).substr(0, colon));
  const std::string setting = WITHOUT(std::string_view(symbol).substr(colon + 1), " ");
  if (setting.empty() || setting == "2" || setting == "H") return stem;
  return stem + ":" + setting;
}

int FIND_ROW(const std::string& text, std::string_view SPGR_INFO_TYPE::*column,
             std::string_view ignored) {
  for (std::size_t row = 0; row < SPGR_INFO.size(); ++row)
    if (WITHOUT(U_CASE(SPGR_INFO[row].*column), ignored) == text) return static_cast<int>(row);
  return -1;
}

RESOLVED_SYMBOL OF_ROW(int row) {
  const SPGR_INFO_TYPE& info = SPGR_INFO[static_cast<std::size_t>(row)];
  return {row, info.N, std::string(info.HM), std::string(info.HALL), false};
}

// The only number in the text, when it holds nothing else.
std::optional<NUMBER> ONLY_NUMBER(std::string_view text) {
  std::string rest(text);
  const std::string word = CUT_WORD(rest);
  NUMBER number;
  if (!rest.empty() || !GETNUM(word, number)) return std::nullopt;
  return number;
}

const EXTRA_SYMBOL* FIND_EXTRA(const std::string& text_without_blanks) {
  const auto found =
      std::find_if(EXTRA_SYMBOLS.begin(), EXTRA_SYMBOLS.end(), [&](const EXTRA_SYMBOL& extra) {
        return WITHOUT(U_CASE(extra.HM), " ") == text_without_blanks;
      });
  return found == EXTRA_SYMBOLS.end() ? nullptr : &*found;
}

}  // namespace

int ROW_OF_NUMBER(int number) {
  for (std::size_t row = 0; row < SPGR_INFO.size(); ++row)
    if (SPGR_INFO[row].N == number) return static_cast<int>(row);
  return -1;
}

RESOLVED_SYMBOL RESOLVE_SYMBOL(std::string_view text) {
  const std::string symbol = WITH_PLAIN_SETTING(U_CASE(LEFT_ADJUST(text)));
  if (symbol.empty()) return {};
  if (const std::optional<NUMBER> number = ONLY_NUMBER(symbol)) {
    const int row = number->WHOLE ? ROW_OF_NUMBER(number->IVAL) : -1;
    return row < 0 ? RESOLVED_SYMBOL{} : OF_ROW(row);
  }
  int row = FIND_ROW(symbol, &SPGR_INFO_TYPE::HM, "");
  if (row >= 0) return OF_ROW(row);
  row = FIND_ROW(WITHOUT(symbol, " "), &SPGR_INFO_TYPE::HM, " ");
  if (row >= 0) return OF_ROW(row);
  row = FIND_ROW(symbol, &SPGR_INFO_TYPE::HALL, "");
  if (row >= 0) {
    RESOLVED_SYMBOL resolved = OF_ROW(row);
    resolved.WAS_HALL = true;
    return resolved;
  }
  // Screw axes are also written 2(1) or 2_1.
  const std::string plain = WITHOUT(symbol, " ()_");
  row = FIND_ROW(plain, &SPGR_INFO_TYPE::HM, " ");
  if (row >= 0) return OF_ROW(row);
  const EXTRA_SYMBOL* extra = FIND_EXTRA(plain);
  if (extra == nullptr) return {};
  return {-1, extra->N, std::string(extra->HM), std::string(extra->HALL), false};
}

// ---- the row of a list of operators ----

namespace {

// Lattice letter of a Hall symbol.
char LATTICE_LETTER(std::string_view hall) {
  return hall[hall[0] == '-' ? 1 : 0];
}

// Operators of a row in ascending order, made once.
const std::vector<EXACT_OP>& SORTED_OPERATORS(std::size_t row) {
  static std::array<std::vector<EXACT_OP>, 612> made;
  if (made[row].empty()) {
    made[row] = CLOSE_GROUP(DECODE_HALL(SPGR_INFO[row].HALL));
    std::sort(made[row].begin(), made[row].end());
  }
  return made[row];
}

}  // namespace

int ROW_WITH_OPERATORS(const SPACE_GROUP& spacegroup, std::vector<EXACT_OP> operators) {
  std::sort(operators.begin(), operators.end());
  for (std::size_t row = 0; row < SPGR_INFO.size(); ++row) {
    const SPGR_INFO_TYPE& info = SPGR_INFO[row];
    const auto pg = static_cast<std::size_t>(info.PG - 1);
    if (POINT_GROUPS[pg] != spacegroup.PG || LATTICE_LETTER(info.HALL) != spacegroup.SPG_LAT)
      continue;
    if (SORTED_OPERATORS(row) == operators) return static_cast<int>(row);
  }
  return -1;
}

}  // namespace XTAL
