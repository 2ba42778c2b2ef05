// The space group of a block: what is written of it, in the many ways in which it is written, and
// the group that it stands for.
#include <algorithm>  // for all_of, count, find_if
#include <cmath>      // for abs, sqrt

#include "cifcode/cif_full/structure.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFFULL {

using namespace KVA_UTILITIES;
using XTAL::SPACE_GROUP;

bool KNOWN_SYMMETRY::SAME_WORDS(const KNOWN_SYMMETRY& other) const {
  return OPERATORS == other.OPERATORS && HALL == other.HALL && HM == other.HM &&
         NUMBER == other.NUMBER && SETTING == other.SETTING && RHOMBOHEDRAL == other.RHOMBOHEDRAL;
}

namespace {

// ---- operators ----

// The first three fields of x,y,z,+1: time reversal leaves the atoms where they are.
std::string_view WITHOUT_TIME(std::string_view text) {
  std::size_t comma = 0;
  for (int k = 0; k < 3 && comma != std::string_view::npos; ++k)
    comma = text.find(',', comma + (k > 0 ? 1 : 0));
  return text.substr(0, comma);
}

// Operators with blanks but without quotes stand in several words: x, y, z
void JOIN_WORDS(std::vector<std::string>& operators) {
  std::vector<std::string> joined;
  bool open = false;
  for (const std::string& word : operators) {
    if (open)
      joined.back() += word;
    else
      joined.push_back(word);
    const std::string& text = joined.back();
    open = std::count(text.begin(), text.end(), ',') < 2 || text.ends_with(',');
  }
  operators = std::move(joined);
}

void ADD_OPERATORS(const BLOCK& block, FIELD field, std::vector<std::string>& operators) {
  const NAME_RANGE names = NAMES_OF(field);
  for (int name = names.FIRST; name < names.END; ++name) {
    const COLUMN column = COLUMN_OF(block, name);
    const std::size_t before = operators.size();
    for (int row = 1; row <= column.ROWS; ++row)
      if (!IS_NULL(column(row))) operators.emplace_back(column(row).TEXT());
    if (operators.size() > before) return;
  }
}

// All operators of the block; those of a magnetic group with its centring.
std::vector<std::string> OPERATORS_OF(const BLOCK& block) {
  std::vector<std::string> operators;
  ADD_OPERATORS(block, OPERATOR, operators);
  if (operators.empty()) {
    ADD_OPERATORS(block, MAGNETIC_OPERATOR, operators);
    if (!operators.empty()) ADD_OPERATORS(block, MAGNETIC_CENTRING, operators);
    for (std::string& text : operators) text = WITHOUT_TIME(text);
  }
  for (std::string& text : operators)
    for (char& c : text)
      if (static_cast<unsigned char>(c) < ' ') c = ' ';
  if (std::any_of(operators.begin(), operators.end(),
                  [](const std::string& text) { return text.ends_with(','); }))
    JOIN_WORDS(operators);
  return operators;
}

// ---- symbols ----

// a = b = c and alpha = beta = gamma, not 90: rhombohedral axes.
bool IS_RHOMBOHEDRAL(const XTAL::CRYSTAL_CELL& cell) {
  constexpr float same_length = 0.001f;  // of the length
  constexpr float same_angle = 0.05f;    // degrees
  const VECTOR3& l = cell.CELL;
  const VECTOR3& a = cell.ANG;
  return std::abs(l[1] - l[0]) <= same_length * l[0] &&
         std::abs(l[2] - l[0]) <= same_length * l[0] && std::abs(a[1] - a[0]) <= same_angle &&
         std::abs(a[2] - a[0]) <= same_angle && std::abs(a[0] - 90.0f) > same_angle;
}

// A symbol with its setting apart.
struct SYMBOL {
  std::string STEM;     // without quotes, marks and setting
  std::string SETTING;  // 1, 2, H, R or what stands behind ":"; blank without a choice
};

// Takes "(origin choice 2)" and the like off the symbol.
void TAKE_ORIGIN_WORDS(SYMBOL& symbol) {
  const int at = INDEXALL(symbol.STEM, "origin");
  if (at == 0) return;
  const std::size_t start = static_cast<std::size_t>(at - 1);
  const std::size_t digit = symbol.STEM.find_first_of("12", start);
  if (digit != std::string::npos) symbol.SETTING = symbol.STEM.substr(digit, 1);
  symbol.STEM = symbol.STEM.substr(0, start);
  while (!symbol.STEM.empty() &&
         std::string_view(" (,:").find(symbol.STEM.back()) != std::string_view::npos)
    symbol.STEM.pop_back();
}

void TAKE_COLON(SYMBOL& symbol) {
  const std::size_t colon = symbol.STEM.find(':');
  if (colon == std::string::npos) return;
  symbol.SETTING = U_CASE(LEFT_ADJUST(std::string_view(symbol.STEM).substr(colon + 1)));
  symbol.STEM = TRIM(std::string_view(symbol.STEM).substr(0, colon));
}

// Takes the letters that databases put behind a symbol: S and Z for the origins, H and R for the
// axes of rhombohedral groups.
void TAKE_LETTERS(SYMBOL& symbol) {
  std::string& stem = symbol.STEM;
  const bool rhombohedral_lattice = BEGINS_WITH(stem, "R");
  while (stem.size() > 2) {
    const char last = U_CASE(stem)[stem.size() - 1];
    const bool origin = last == 'S' || last == 'Z';
    const bool axes = last == 'H' || (last == 'R' && rhombohedral_lattice);
    if (!origin && !axes) return;
    if (axes) symbol.SETTING = last;
    if (origin && symbol.SETTING.empty()) symbol.SETTING = last == 'S' ? "1" : "2";
    stem = TRIM(std::string_view(stem).substr(0, stem.size() - 1));
  }
}

SYMBOL SYMBOL_OF(const std::string& text) {
  SYMBOL symbol;
  for (char c : text) {
    const bool mark = std::string_view("_~'\"\\").find(c) != std::string_view::npos;
    if (!mark) symbol.STEM += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  symbol.STEM = LEFT_ADJUST(symbol.STEM);
  TAKE_ORIGIN_WORDS(symbol);
  TAKE_COLON(symbol);
  TAKE_LETTERS(symbol);
  if (symbol.SETTING == "S") symbol.SETTING = "1";
  if (symbol.SETTING == "Z") symbol.SETTING = "2";
  return symbol;
}

bool SET_GROUP(const std::string& text, SPACE_GROUP& group, std::string_view mode = "") {
  XTAL::SET_SPACEGROUP(text, group, {}, mode);
  return !XTAL::ERR_SYMM;
}

// The group of a stem in a setting; where the group has no such setting, in its first one.
bool GROUP_OF_SYMBOL(const SYMBOL& symbol, SPACE_GROUP& group) {
  if (symbol.STEM.empty()) return false;
  if (!symbol.SETTING.empty() && SET_GROUP(symbol.STEM + ":" + symbol.SETTING, group)) return true;
  return SET_GROUP(symbol.STEM, group);
}

// The choice of axes or origin that the block tells elsewhere, where the symbol tells none.
void COMPLETE_SETTING(const KNOWN_SYMMETRY& words, SYMBOL& symbol) {
  if (!symbol.SETTING.empty()) return;
  const std::string code = U_CASE(words.SETTING);
  if (code == "1" || code == "2" || code == "H" || code == "R") symbol.SETTING = code;
  if (symbol.SETTING.empty() && words.RHOMBOHEDRAL && BEGINS_WITH(symbol.STEM, "R"))
    symbol.SETTING = "R";
}

bool GROUP_OF_HM(const KNOWN_SYMMETRY& words, SPACE_GROUP& group) {
  SYMBOL symbol = SYMBOL_OF(words.HM);
  COMPLETE_SETTING(words, symbol);
  return GROUP_OF_SYMBOL(symbol, group);
}

// The standard setting of a number.
bool GROUP_OF_NUMBER(const KNOWN_SYMMETRY& words, SPACE_GROUP& group) {
  NUMBER number;
  if (!GETNUM(words.NUMBER, number) || !SET_GROUP(words.NUMBER, group)) return false;
  SYMBOL symbol{group.SPG_SYMB, ""};
  COMPLETE_SETTING(words, symbol);
  return symbol.SETTING.empty() || GROUP_OF_SYMBOL(symbol, group);
}

bool GROUP_OF_HALL(const KNOWN_SYMMETRY& words, SPACE_GROUP& group) {
  return !words.HALL.empty() && SET_GROUP(words.HALL, group, "HAL");
}

bool GROUP_OF_OPERATORS(const KNOWN_SYMMETRY& words, SPACE_GROUP& group) {
  if (words.OPERATORS.empty()) return false;
  XTAL::SET_SPACEGROUP("", group, words.OPERATORS, "GEN");
  return !XTAL::ERR_SYMM;
}

// ---- one against the other ----

// The symbol without its setting, blanks and the ones of the full form, to be compared.
std::string PLAIN_STEM(const std::string& text) {
  std::string plain;
  for (char c : U_CASE(SYMBOL_OF(text).STEM))
    if (c != ' ' && c != '(' && c != ')') plain += c;
  return plain;
}

// Whether a symbol that leaves the origin or the axes open may mean the group.
bool MAY_MEAN(const std::string& symbol, const SPACE_GROUP& group) {
  return !group.SPG_SYMB.empty() && PLAIN_STEM(symbol) == PLAIN_STEM(group.SPG_SYMB);
}

std::string OPERATORS_WIN(const std::string& words, const SPACE_GROUP& group) {
  return words + " does not agree with the operators, which are read: " +
         (group.NUMSPG > 0 ? group.SPG_SYMB : "a setting without a symbol");
}

// Whether the symbol means another group, once the origin that it leaves open is allowed for.
bool CONTRADICTS(const std::string& symbol, const SPACE_GROUP& meant, const SPACE_GROUP& group) {
  return !XTAL::SPGR_EQUAL(meant, group) &&
         (!SYMBOL_OF(symbol).SETTING.empty() || !MAY_MEAN(symbol, group));
}

// Some write 0 where they know none.
bool IS_OTHER_NUMBER(const KNOWN_SYMMETRY& words, const SPACE_GROUP& group) {
  NUMBER number;
  return group.NUMSPG > 0 && GETNUM(words.NUMBER, number) && number.IVAL > 0 &&
         number.IVAL != group.NUMSPG;
}

// The operators' group, under the name of the symbol where this means the same. The first of
// symbol, Hall symbol and number that contradicts them is told.
SYMMETRY FROM_OPERATORS(const KNOWN_SYMMETRY& words, const SPACE_GROUP& group) {
  SYMMETRY symmetry{group, ""};
  SPACE_GROUP other;
  if (!words.HM.empty() && GROUP_OF_HM(words, other)) {
    if (XTAL::SPGR_EQUAL(other, group)) symmetry.GROUP = other;
    if (CONTRADICTS(words.HM, other, group))
      symmetry.TELLING = OPERATORS_WIN("The symbol " + words.HM, group);
  }
  if (symmetry.TELLING.empty() && GROUP_OF_HALL(words, other) && !XTAL::SPGR_EQUAL(other, group))
    symmetry.TELLING = OPERATORS_WIN("The Hall symbol " + words.HALL, group);
  if (symmetry.TELLING.empty() && IS_OTHER_NUMBER(words, group))
    symmetry.TELLING = OPERATORS_WIN("The number " + words.NUMBER, group);
  return symmetry;
}

// Hall symbol, Hermann-Mauguin symbol, number: the first that can be read; false when none can. One
// behind it that contradicts it is told.
bool FROM_SYMBOLS(const KNOWN_SYMMETRY& words, SYMMETRY& symmetry) {
  SPACE_GROUP other;
  const bool by_hall = GROUP_OF_HALL(words, symmetry.GROUP);
  if (!by_hall && (words.HM.empty() || !GROUP_OF_HM(words, symmetry.GROUP)))
    return GROUP_OF_NUMBER(words, symmetry.GROUP);
  const std::string read = by_hall ? "the Hall symbol " + words.HALL : "the symbol " + words.HM;
  if (by_hall && !words.HM.empty() && GROUP_OF_HM(words, other) &&
      CONTRADICTS(words.HM, other, symmetry.GROUP))
    symmetry.TELLING = "The symbol " + words.HM;
  else if (IS_OTHER_NUMBER(words, symmetry.GROUP))
    symmetry.TELLING = "The number " + words.NUMBER;
  if (!symmetry.TELLING.empty())
    symmetry.TELLING += " does not agree with " + read + ", which is read";
  return true;
}

SYMMETRY WITHOUT_GROUP(const KNOWN_SYMMETRY& words) {
  SYMMETRY symmetry;
  XTAL::SET_SPACEGROUP("P 1", symmetry.GROUP);
  const std::string unread = !words.HM.empty() ? words.HM : words.HALL;
  if (words.OPERATORS.empty())
    symmetry.TELLING =
        unread.empty() ? "No symmetry" : "The space group " + unread + " is not known";
  else
    symmetry.TELLING = "The operators make no space group and " +
                       (unread.empty() ? "there is no symbol" : unread + " is not known");
  symmetry.TELLING += ", space group set to P 1";
  return symmetry;
}

SYMMETRY SYMMETRY_OF(const KNOWN_SYMMETRY& words) {
  SYMMETRY symmetry;
  if (GROUP_OF_OPERATORS(words, symmetry.GROUP)) return FROM_OPERATORS(words, symmetry.GROUP);
  if (!FROM_SYMBOLS(words, symmetry)) return WITHOUT_GROUP(words);
  if (!words.OPERATORS.empty())
    symmetry.TELLING =
        "The operators make no space group, it is " + symmetry.GROUP.SPG_SYMB + " by the symbol";
  return symmetry;
}

// The symbol of a block. Where the words that stand behind it on its line make a group with it,
// they belong to it.
std::string SYMBOL_TEXT(const BLOCK& block, FIELD field, std::string_view mode) {
  const std::string text(FIRST_TEXT(block, field));
  const std::string_view behind = WORDS_BEHIND(block, field);
  if (behind.empty()) return text;
  const std::string whole = text + " " + std::string(behind);
  SPACE_GROUP group;
  return SET_GROUP(mode.empty() ? SYMBOL_OF(whole).STEM : whole, group, mode) ? whole : text;
}

}  // namespace

const SYMMETRY& READ_SYMMETRY(const BLOCK& block, const XTAL::CRYSTAL_CELL& cell,
                              std::optional<KNOWN_SYMMETRY>& last) {
  KNOWN_SYMMETRY words;
  words.OPERATORS = OPERATORS_OF(block);
  words.HALL = SYMBOL_TEXT(block, HALL_SYMBOL, "HAL");
  words.HM = SYMBOL_TEXT(block, HM_SYMBOL, "");
  words.NUMBER = FIRST_TEXT(block, GROUP_NUMBER);
  words.SETTING = FIRST_TEXT(block, GROUP_SETTING);
  words.RHOMBOHEDRAL = IS_RHOMBOHEDRAL(cell);
  if (!last || !last->SAME_WORDS(words)) {
    words.RESULT = SYMMETRY_OF(words);
    last = std::move(words);
  }
  return last->RESULT;
}

bool METRIC_FITS(const SPACE_GROUP& group, const XTAL::CRYSTAL_CELL& cell) {
  constexpr float tolerance = 0.005f;  // of the product of two lengths
  for (int i = 2; i <= group.NUMOPS; ++i) {
    const XTAL::IMATRIX3& r = group.SYMOP(i).ROT;
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = j; k < 3; ++k) {
        float turned = 0.0f;
        for (std::size_t l = 0; l < 3; ++l)
          for (std::size_t m = 0; m < 3; ++m)
            if (r[l][j] != 0 && r[m][k] != 0)
              turned += static_cast<float>(r[l][j] * r[m][k]) * cell.GD[l][m];
        if (std::abs(turned - cell.GD[j][k]) > tolerance * cell.CELL[j] * cell.CELL[k])
          return false;
      }
  }
  return true;
}

}  // namespace KVA_CIFFULL
