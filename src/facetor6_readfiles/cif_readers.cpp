// Cell, temperature, pressure, symbol and operators out of the lines of one CIF block.
#include <algorithm>  // for count, min
#include <array>
#include <span>
#include <string>
#include <vector>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace FACETOR_READFILES {

using namespace KVA_CIFNEW;
using namespace KVA_UTILITIES;

namespace {

// The number with its esd behind the first of the names that has exactly one; false without any.
bool READ_FIRST_NUMBER(std::span<const std::string_view> names, const FILE_LINES& flines, int start,
                       int end, float& value, float& std) {
  for (std::string_view name : names) {
    float found = 0.0f;
    float found_std = 0.0f;
    int count = 0;
    int line = start;
    FIND_KEY_VALUE_STD(flines, line, end, name, std::span(&found, 1), std::span(&found_std, 1),
                       count);
    if (count != 1) continue;
    value = found;
    std = found_std;
    return true;
  }
  return false;
}

// What lies between the first and the last quote of one kind; false without two of them.
bool BETWEEN(std::string_view text, char quote, std::string& inside) {
  const std::size_t first = text.find(quote);
  if (first == std::string_view::npos) return false;
  const std::size_t last = text.rfind(quote);
  if (last == first) return false;
  inside = text.substr(first + 1, last - first - 1);
  return true;
}

// Text between apostrophes or, failing that, between double quotes.
bool QUOTED_TEXT(std::string_view text, std::string& inside) {
  return BETWEEN(text, '\'', inside) || BETWEEN(text, '"', inside);
}

}  // namespace

// ---- cell and conditions ----

void READ_CIF_CELL(const FILE_LINES& flines, int start, int end, std::array<float, 6>& values,
                   std::array<float, 6>& stds) {
  constexpr std::array<std::string_view, 6> names{"_cell_length_a",   "_cell_length_b",
                                                  "_cell_length_c",   "_cell_angle_alpha",
                                                  "_cell_angle_beta", "_cell_angle_gamma"};
  values = {1.0f, 1.0f, 1.0f, 90.0f, 90.0f, 90.0f};
  stds = {};
  for (std::size_t k = 0; k < names.size(); ++k)
    READ_FIRST_NUMBER(std::span(&names[k], 1), flines, start, end, values[k], stds[k]);
}

bool READ_CIF_TEMP(const FILE_LINES& flines, int start, int end, float& t, float& sigt) {
  constexpr std::array<std::string_view, 2> names{"_diffrn_ambient_temperature",
                                                  "_cell_measurement_temperature"};
  t = ROOM_TEMPERATURE;
  sigt = 0.0f;
  return READ_FIRST_NUMBER(names, flines, start, end, t, sigt);
}

void READ_CIF_PRESSURE(const FILE_LINES& flines, int start, int end, float& p, float& sigp) {
  constexpr std::array<std::string_view, 2> names{"_diffrn_ambient_pressure",
                                                  "_cell_measurement_pressure"};
  constexpr float gpa_per_kpa = 0.000001f;
  p = 0.0f;
  sigp = 0.0f;
  float p_kpa = 0.0f;
  float sigp_kpa = 0.0f;
  if (!READ_FIRST_NUMBER(names, flines, start, end, p_kpa, sigp_kpa)) return;
  p = p_kpa * gpa_per_kpa;
  sigp = sigp_kpa * gpa_per_kpa;
}

// ---- symbol ----

namespace {

// The first n characters without trailing blanks.
std::string UP_TO(const std::string& symbol, std::size_t n) {
  return TRIM(symbol.substr(0, n));
}

// The symbol with its setting as ":1" or ":R", or without the name of a default setting: databases
// write "F d -3 m S", "R -3 m H", "R 3 m RS" and the like.
std::string WITH_SETTING(const std::string& symbol) {
  const std::size_t n = symbol.size();
  if (n < 2) return symbol;
  const std::string upper = U_CASE(symbol);
  const char last = upper[n - 1];
  const char before = upper[n - 2];
  if (last == '1') {
    if (before == 'Z' || before == 'S') return UP_TO(symbol, n - 2) + ":1";
    const std::size_t first_origin = symbol.find(":1");
    return first_origin == std::string::npos ? symbol : UP_TO(symbol, first_origin) + ":1";
  }
  if (last == 'S' || last == 'Z') {
    if (before == 'H') return UP_TO(symbol, n - 2);
    return before == 'R' ? UP_TO(symbol, n - 2) + ":R" : UP_TO(symbol, n - 1);
  }
  if (last == 'R') return before == 'H' ? UP_TO(symbol, n - 2) : UP_TO(symbol, n - 2) + ":R";
  if (last == 'H') return UP_TO(symbol, before == ':' ? n - 2 : n - 1);
  return symbol;
}

}  // namespace

void READ_CIF_HM(const FILE_LINES& flines, int start, int end, std::string& symbol) {
  constexpr std::array<std::string_view, 2> names{"_symmetry_space_group_name_H-M",
                                                  "_space_group_name_H-M_alt"};
  std::string text;
  for (std::string_view name : names)
    if (text.empty()) READ_CIF_TEXT(name, flines, start, end, text);
  symbol.clear();
  if (text.starts_with('?') || text.starts_with('#') || !QUOTED_TEXT(text, symbol)) return;
  symbol = TRIM(symbol.substr(0, symbol.find(":2")));  // the second origin is the default
  symbol = WITH_SETTING(symbol);
  if (symbol.ends_with(':')) symbol = UP_TO(symbol, symbol.size() - 1);
}

void FIX_SPACEGROUP(std::string& symbol, bool& flag) {
  if (symbol.find(' ') != std::string::npos) return;
  REPLACE_CHAR(symbol, '"', ' ');
  REPLACE_CHAR(symbol, '\'', ' ');
  symbol = LEFT_ADJUST(symbol);
  if (symbol.empty()) return;
  if (symbol.size() == 4 && symbol.find('/') == std::string::npos) {
    symbol = {symbol[0], ' ', symbol[1], ' ', symbol[2], ' ', symbol[3]};
    flag = false;
    return;
  }
  constexpr int repaired_length = 40;
  symbol = CUT_TEXT(symbol.substr(0, 1) + " " + symbol.substr(1), repaired_length);
}

// ---- operators ----

namespace {

// Number of the line that holds the operators' data name; 0 when there is none. behind receives
// what follows the name.
int FIND_OPERATORS(const FILE_LINES& flines, int start, int end, std::string& behind) {
  constexpr std::array<std::string_view, 2> names{"_symmetry_equiv_pos_as_xyz",
                                                  "_space_group_symop_operation_xyz"};
  for (std::string_view name : names) {
    int line = start;
    FIND_KEY_STRING(flines, line, end, name, behind);
    if (line != start || !behind.empty()) return line;
  }
  return 0;
}

}  // namespace

void READ_CIF_SYMM(const FILE_LINES& flines, int start, int end, std::vector<std::string>& symm) {
  symm.clear();
  std::string behind;
  const int name_line = FIND_OPERATORS(flines, start, end, behind);
  if (name_line == 0) return;
  std::string op;
  if (QUOTED_TEXT(behind, op)) symm.push_back(op);
  for (int line = name_line + 1; line <= std::min(end, flines.COUNT()); ++line) {
    const std::string_view text = LEFT_ADJUST_VIEW(flines(line));
    if (text.empty()) return;
    if (text[0] == '#' || text[0] == '?') continue;
    if (QUOTED_TEXT(text, op)) symm.push_back(op);
  }
}

namespace {

// The operator on a line of such a loop, without the columns before and behind it; blank when the
// line holds none.
std::string_view BARE_OPERATOR(std::string_view text) {
  const std::size_t number = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::size_t start = number < text.size() && text[number] == ' ' ? number + 1 : 0;
  const std::size_t first = text.find(',', start);
  if (first == std::string_view::npos) return {};
  const std::size_t second = text.find(',', first + 1);
  if (second == std::string_view::npos) return {};
  const std::size_t field = text.find_first_not_of(' ', second + 1);
  return text.substr(start, text.find(' ', field) - start);
}

}  // namespace

void READ_BARE_OPERATORS(const FILE_LINES& flines, int start, int end,
                         std::vector<std::string>& symm) {
  symm.clear();
  std::string behind;
  const int name_line = FIND_OPERATORS(flines, start, end, behind);
  if (name_line == 0) return;
  for (int line = name_line + 1; line <= std::min(end, flines.COUNT()); ++line) {
    const std::string_view text = LEFT_ADJUST_VIEW(flines(line));
    if (text.starts_with('#') || (symm.empty() && text.starts_with('_'))) continue;
    const std::string_view op = BARE_OPERATOR(text);
    if (op.empty()) return;
    symm.emplace_back(op);
  }
}

}  // namespace FACETOR_READFILES
