// The CIF scanner: blocks, keyed search, scalars and loops of a buffer of lines. Prints nothing.
#include "cifcode/cif_code_new/scanner.h"

#include <algorithm>  // for min, max
#include <span>

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFNEW {

using namespace KVA_UTILITIES;

// ---- error state ----

void INIT_ERR_KVACIF() {
  ERR_KVACIF = false;
  ERR_KVACIF_MESS.clear();
  WARN_KVACIF = false;
  WARN_KVACIF_MESS.clear();
}

// ---- cleaning and blocks ----

namespace {

void LEFT_ADJUST_LINES(FILE_LINES& flines) {
  for (std::string& line : flines)
    if (line.starts_with(' ')) line = LEFT_ADJUST(line);
}

bool STARTS_BLOCK(const std::string& line) {
  return BEGINS_WITH(line, "data_");
}

}  // namespace

void CLEAN_CIF(FILE_LINES& flines) {
  CLEAN_FILE(flines);
  LEFT_ADJUST_LINES(flines);
  REPLACE_WORD(flines, "_symmetry_equiv_pos_as_xyz", "_space_group_symop_operation_xyz");
}

void FIND_ALL_BLOCKS_CIF(const FILE_LINES& flines, LIST<int>& nlines, int& nblocks) {
  const auto headings = std::count_if(flines.begin(), flines.end(), STARTS_BLOCK);
  nlines.ASSIGN(static_cast<int>(headings), 0);
  bool in_text = false;
  for (int i = 1; i <= flines.COUNT(); ++i) {
    const std::string& line = flines(i);
    if (line.starts_with(';')) {
      in_text = !in_text;
    } else if (!in_text && STARTS_BLOCK(line) && INDEXALL(line, "GLOBAL") == 0) {
      ++nblocks;
      if (nblocks <= nlines.COUNT()) nlines(nblocks) = i;
    }
  }
}

FILE_LINES BLOCK_LINES(const FILE_LINES& flines, int start, int end) {
  FILE_LINES block;
  for (int i = std::max(start, 1); i <= std::min(end, flines.COUNT()); ++i) block.ADD(flines(i));
  return block;
}

// ---- keyed search ----

void FIND_KEY_STRING(const FILE_LINES& flines, int& line, int end, std::string_view key,
                     std::string& string) {
  string.clear();
  const std::string wanted = LEFT_ADJUST(key);
  const int last = std::min(end, flines.COUNT());
  for (int i = std::max(line, 1); i <= last; ++i) {
    const int at = INDEXALL(flines(i), wanted);
    if (at == 0 || LEFT_ADJUST(flines(i)).starts_with('!')) continue;
    // What is glued to the key goes with it.
    std::string rest = flines(i).substr(static_cast<std::size_t>(at - 1) + wanted.size());
    rest.erase(0, std::min(rest.find(' '), rest.size()));
    string = LEFT_ADJUST(rest);
    line = i;
    return;
  }
}

void FIND_KEY_VALUE_STD(const FILE_LINES& flines, int& line, int end, std::string_view key,
                        std::vector<float>& values, std::vector<float>& stds, int& count) {
  std::string string;
  FIND_KEY_STRING(flines, line, end, key, string);
  GETNUM_STD(string, values, stds, count);
}

// ---- scalars ----

void READ_CIF_VALUE(std::string_view key, const FILE_LINES& flines, int start, int end,
                    float& value, float& std) {
  std::vector<float> values(1, 0.0f);
  std::vector<float> stds(1, 0.0f);
  int count = 0;
  FIND_KEY_VALUE_STD(flines, start, end, key, values, stds, count);
  value = count == 1 ? values[0] : 0.0f;
  std = count == 1 ? stds[0] : 0.0f;
}

void READ_CIF_TEXT(std::string_view key, const FILE_LINES& flines, int start, int end,
                   std::string& text) {
  FIND_KEY_STRING(flines, start, end, key, text);
}

void READ_CIF_SYSTEM(const FILE_LINES& flines, int start, int end, std::string& system) {
  constexpr std::array<std::string_view, 2> names{"_space_group_crystal_system",
                                                  "_symmetry_cell_setting"};
  constexpr std::array<std::string_view, 7> systems{
      "triclinic", "monoclinic", "orthorhombic", "tetragonal", "trigonal", "hexagonal", "cubic"};
  system.clear();
  std::string text;
  for (std::string_view name : names)
    if (text.empty()) READ_CIF_TEXT(name, flines, start, end, text);
  text = L_CASE(text);
  if (std::find(systems.begin(), systems.end(), text) != systems.end()) system = text;
}

// ---- loops ----

namespace {

bool IS_COMMENT_OR_BLANK(const std::string& line) {
  return LENTRIM(line) == 0 || line[0] == '#' || line[0] == '?';
}

// The words that end a loop's data are compared as they stand, in capitals.
bool ENDS_DATA(const std::string& line) {
  return line.starts_with('_') || line.starts_with("LOOP_") || line.starts_with("DATA_");
}

// First line that begins with the key; 0, with the error set, when there is none.
int FIND_HEADER(const FILE_LINES& flines, const std::string& key) {
  int line = 1;
  while (line <= flines.COUNT()) {
    std::string string;
    FIND_KEY_STRING(flines, line, flines.COUNT(), key, string);
    const int at = INDEXALL(flines(line), key);
    if (at == 0) break;
    if (at == 1) return line;
    ++line;
  }
  ERR_KVACIF = true;
  ERR_KVACIF_MESS = "cifdata_key of " + TRIM(key) + " not found by read_loop_cif";
  return 0;
}

// Notes in which columns the labels stand. Returns the number of columns; line becomes the first
// line of data.
int READ_HEADER(const FILE_LINES& flines, int& line, CIFDATA_TYPE& cifdata) {
  int columns = 0;
  for (; line <= flines.COUNT(); ++line) {
    if (IS_COMMENT_OR_BLANK(flines(line))) continue;
    if (INDEXALL(flines(line), cifdata.KEY) == 0) break;
    ++columns;
    for (int label = 1; label <= cifdata.NLABELS; ++label) {
      if (INDEXALL(flines(line), TRIM(cifdata.LABELS(label))) == 0) continue;
      cifdata.IND(label) = columns;
      break;
    }
  }
  return columns;
}

// The words of one row, as many as can be kept.
struct ROW_WORDS {
  ROW<std::string, MAX_LOOP_LABELS> WORDS;
  int COUNT = 0;  // words found, also those that were not kept

  void TAKE_LINE(const std::string& line) {
    constexpr auto room = static_cast<std::size_t>(MAX_LOOP_LABELS);
    const std::size_t used = std::min(static_cast<std::size_t>(COUNT), room);
    const std::span<std::string> free = std::span(WORDS.ITEMS).subspan(used);
    int found = 0;
    GETWORDS(line, free, found);
    for (std::string& word : free) word = CUT_TEXT(word, LOOP_WORD_LENGTH);
    COUNT += found;
  }

  // The word in a column; blank beyond those that can be kept.
  const std::string& WORD(int column) const {
    static const std::string none;
    return column <= MAX_LOOP_LABELS ? WORDS(column) : none;
  }
};

// Takes lines from line on until the row has a word for each column; false when the data end first.
bool READ_ROW(const FILE_LINES& flines, int& line, int columns, ROW_WORDS& row) {
  row = ROW_WORDS{};
  for (; line <= flines.COUNT(); ++line) {
    if (IS_COMMENT_OR_BLANK(flines(line))) continue;
    if (ENDS_DATA(flines(line))) return false;
    row.TAKE_LINE(flines(line));
    if (row.COUNT < columns) continue;
    ++line;
    return true;
  }
  return false;
}

void STORE_ROW(const ROW_WORDS& row, CIFDATA_TYPE& cifdata) {
  cifdata.CVAL.ROWS.emplace_back();
  cifdata.VAL.ROWS.emplace_back();
  cifdata.VAL_STD.ROWS.emplace_back();
  ++cifdata.N;
  for (int label = 1; label <= cifdata.NLABELS; ++label) {
    if (cifdata.IND(label) == 0) continue;
    std::string word = row.WORD(cifdata.IND(label));
    if (cifdata.VTYPE(label) == 'C') {
      REPLACE_CHAR(word, '\'', ' ');
      cifdata.CVAL(cifdata.N, label) = TRIM(word);
      continue;
    }
    int count = 0;
    GETNUM_STD(word, std::span(&cifdata.VAL(cifdata.N, label), 1),
               std::span(&cifdata.VAL_STD(cifdata.N, label), 1), count);
  }
}

}  // namespace

void READ_LOOP_CIF(FILE_LINES& flines, CIFDATA_TYPE& cifdata) {
  INIT_ERR_KVACIF();
  LEFT_ADJUST_LINES(flines);
  cifdata.KEY = LEFT_ADJUST(cifdata.KEY);
  cifdata.IND.FILL(0);
  cifdata.N = 0;
  int line = FIND_HEADER(flines, cifdata.KEY);
  if (line == 0) return;
  const int columns = READ_HEADER(flines, line, cifdata);
  cifdata.CVAL.ROWS.clear();
  cifdata.VAL.ROWS.clear();
  cifdata.VAL_STD.ROWS.clear();
  ROW_WORDS row;
  while (READ_ROW(flines, line, columns, row)) STORE_ROW(row, cifdata);
}

}  // namespace KVA_CIFNEW
