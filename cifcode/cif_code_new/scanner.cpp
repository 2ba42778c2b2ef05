// The CIF scanner: blocks, keyed search, scalars and loops of a buffer of lines. Prints nothing.
#include "cifcode/cif_code_new/scanner.h"

#include <algorithm>  // for count_if, find, max, min

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFNEW {

using namespace KVA_UTILITIES;

// ---- error state ----

void INIT_ERR_KVACIF() {
  ERR_KVACIF = false;
  ERR_KVACIF_MESS.clear();
}

// ---- cleaning and blocks ----

namespace {

void LEFT_ADJUST_LINE(std::string& line) {
  if (line.starts_with(' ')) line = LEFT_ADJUST(line);
}

void LEFT_ADJUST_LINES(FILE_LINES& flines) {
  for (std::string& line : flines) LEFT_ADJUST_LINE(line);
}

bool STARTS_BLOCK(const std::string& line) {
  return !line.empty() && (line[0] == 'd' || line[0] == 'D') && BEGINS_WITH(line, "data_");
}

// Whether the next line starts a block with a structure; in_text: whether it stands in a text
// field.
bool STARTS_STRUCTURE(const std::string& line, bool& in_text) {
  if (line.starts_with(';')) in_text = !in_text;
  return !in_text && STARTS_BLOCK(line) && INDEXALL(line, "GLOBAL") == 0;
}

// Only a line that begins so can start a block or be the bound of a text field.
bool MAY_START_STRUCTURE(std::string_view line) {
  for (const char c : line)
    if (static_cast<unsigned char>(c) > ' ') return c == ';' || c == 'd' || c == 'D';
  return false;
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
    if (!STARTS_STRUCTURE(flines(i), in_text)) continue;
    ++nblocks;
    if (nblocks <= nlines.COUNT()) nlines(nblocks) = i;
  }
}

std::vector<std::string_view> BLOCKS_OF_CIF(std::string_view bytes) {
  std::vector<std::size_t> starts;
  std::string_view rest = WITHOUT_MARK(bytes);
  std::string line;
  bool in_text = false;
  while (!rest.empty()) {
    const std::size_t start = bytes.size() - rest.size();
    const std::string_view as_it_is = TAKE_LINE(rest);
    if (!MAY_START_STRUCTURE(as_it_is)) continue;
    line = as_it_is;
    CLEAN_LINE(line);
    LEFT_ADJUST_LINE(line);
    if (STARTS_STRUCTURE(line, in_text)) starts.push_back(start);
  }
  starts.push_back(bytes.size());
  std::vector<std::string_view> blocks;
  for (std::size_t k = 0; k + 1 < starts.size(); ++k)
    blocks.push_back(bytes.substr(starts[k], starts[k + 1] - starts[k]));
  return blocks;
}

void CLEAN_LINES_OF(std::string_view block, FILE_LINES& flines) {
  LINES_OF(block, flines);
  CLEAN_CIF(flines);
}

FILE_LINES BLOCK_LINES(const FILE_LINES& flines, int start, int end) {
  FILE_LINES block;
  for (int i = std::max(start, 1); i <= std::min(end, flines.COUNT()); ++i) block.ADD(flines(i));
  return block;
}

// ---- keyed search ----

namespace {

// What stands behind the first key from line to end; line becomes the key's line. Without a key
// line stays, and nothing is returned.
std::string_view FIND_KEY(const FILE_LINES& flines, int& line, int end, std::string_view key) {
  const TEXT_SEARCH wanted = SEARCH_FOR(LEFT_ADJUST_VIEW(key));
  const int last = std::min(end, flines.COUNT());
  for (int i = std::max(line, 1); i <= last; ++i) {
    const int at = INDEXALL(flines(i), wanted);
    if (at == 0 || LEFT_ADJUST_VIEW(flines(i)).starts_with('!')) continue;
    // What is glued to the key goes with it.
    std::string_view rest = flines(i);
    rest.remove_prefix(static_cast<std::size_t>(at - 1) + wanted.SUB.size());
    rest.remove_prefix(std::min(rest.find(' '), rest.size()));
    line = i;
    return LEFT_ADJUST_VIEW(rest);
  }
  return {};
}

}  // namespace

void FIND_KEY_STRING(const FILE_LINES& flines, int& line, int end, std::string_view key,
                     std::string& string) {
  string = FIND_KEY(flines, line, end, key);
}

void FIND_KEY_VALUE_STD(const FILE_LINES& flines, int& line, int end, std::string_view key,
                        std::span<float> values, std::span<float> stds, int& count) {
  GETNUM_STD(FIND_KEY(flines, line, end, key), values, stds, count);
}

// ---- scalars ----

void READ_CIF_VALUE(std::string_view key, const FILE_LINES& flines, int start, int end,
                    float& value, float& std) {
  int count = 0;
  FIND_KEY_VALUE_STD(flines, start, end, key, std::span(&value, 1), std::span(&std, 1), count);
  if (count == 1) return;
  value = 0.0f;
  std = 0.0f;
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

// Of a line that is adjusted.
bool IS_COMMENT_OR_BLANK(std::string_view line) {
  return line.empty() || line[0] == '#' || line[0] == '?';
}

// The words that end a loop's data are compared as they stand, in capitals.
bool ENDS_DATA(std::string_view line) {
  if (line.empty()) return false;
  return line[0] == '_' || line.starts_with("LOOP_") || line.starts_with("DATA_");
}

// A line without blanks around it: mostly there is nothing to adjust.
std::string_view ADJUSTED_LINE(const LINE_RANGE& range, int i) {
  const std::string_view line = range.FLINES(i);
  return line.starts_with(' ') || line.ends_with(' ') ? LEFT_ADJUST_VIEW(line) : line;
}

// First line that begins with the key; 0, with the error set, when there is none.
int FIND_HEADER(const LINE_RANGE& range, const std::string& key) {
  for (int line = range.FIRST; line <= range.LAST; ++line)
    if (BEGINS_WITH(ADJUSTED_LINE(range, line), key)) return line;
  ERR_KVACIF = true;
  ERR_KVACIF_MESS = "cifdata_key of " + TRIM(key) + " not found by read_loop_cif";
  return 0;
}

// Notes in which columns the labels stand. Returns the number of columns; line becomes the first
// line of data.
int READ_HEADER(const LINE_RANGE& range, int& line, CIFDATA_TYPE& cifdata) {
  int columns = 0;
  for (; line <= range.LAST; ++line) {
    const std::string_view text = ADJUSTED_LINE(range, line);
    if (IS_COMMENT_OR_BLANK(text)) continue;
    if (INDEXALL(text, cifdata.KEY) == 0) break;
    ++columns;
    for (int label = 1; label <= cifdata.NLABELS; ++label) {
      if (INDEXALL(text, TRIM_VIEW(cifdata.LABELS(label))) == 0) continue;
      cifdata.IND(label) = columns;
      break;
    }
  }
  return columns;
}

// The words of one row, as many as can be kept.
struct ROW_WORDS {
  ROW<std::string_view, MAX_LOOP_LABELS> WORDS;
  int COUNT = 0;  // words found, also those that were not kept

  void TAKE_LINE(std::string_view line) {
    constexpr auto room = static_cast<std::size_t>(MAX_LOOP_LABELS);
    const std::size_t used = std::min(static_cast<std::size_t>(COUNT), room);
    int found = 0;
    GETWORDS(line, std::span(WORDS.ITEMS).subspan(used), found);
    COUNT += found;
  }

  // The word in a column; blank beyond those that can be kept.
  std::string_view WORD(int column) const {
    return column <= MAX_LOOP_LABELS ? CUT_VIEW(WORDS(column), LOOP_WORD_LENGTH) : "";
  }
};

// Takes lines from line on until the row has a word for each column; false when the data end first.
bool READ_ROW(const LINE_RANGE& range, int& line, int columns, ROW_WORDS& row) {
  row.COUNT = 0;  // no word beyond it is asked for
  for (; line <= range.LAST; ++line) {
    const std::string_view text = ADJUSTED_LINE(range, line);
    if (IS_COMMENT_OR_BLANK(text)) continue;
    if (ENDS_DATA(text)) return false;
    row.TAKE_LINE(text);
    if (row.COUNT < columns) continue;
    ++line;
    return true;
  }
  return false;
}

std::size_t LINES_OF_DATA(const LINE_RANGE& range, int line) {
  std::size_t lines = 0;
  for (; line <= range.LAST && !ENDS_DATA(ADJUSTED_LINE(range, line)); ++line) ++lines;
  return lines;
}

// The last label that is a text: no texts are kept behind it.
int LAST_TEXT(const CIFDATA_TYPE& cifdata) {
  int label = cifdata.NLABELS;
  while (label > 0 && cifdata.VTYPE(label) != 'C') --label;
  return label;
}

void MAKE_ROOM(std::size_t rows, CIFDATA_TYPE& cifdata) {
  cifdata.CVAL.START(LAST_TEXT(cifdata), rows);
  cifdata.VAL.START(cifdata.NLABELS, rows);
  cifdata.VAL_STD.START(cifdata.NLABELS, rows);
}

void STORE_ROW(const ROW_WORDS& row, CIFDATA_TYPE& cifdata) {
  cifdata.CVAL.ADD_ROW();
  cifdata.VAL.ADD_ROW();
  cifdata.VAL_STD.ADD_ROW();
  ++cifdata.N;
  for (int label = 1; label <= cifdata.NLABELS; ++label) {
    if (cifdata.IND(label) == 0) continue;
    const std::string_view word = row.WORD(cifdata.IND(label));
    if (cifdata.VTYPE(label) == 'C') {
      std::string& text = cifdata.CVAL(cifdata.N, label);
      text = word;
      REPLACE_CHAR(text, '\'', ' ');
      text.resize(static_cast<std::size_t>(LENTRIM(text)));
      continue;
    }
    int count = 0;
    GETNUM_STD(word, std::span(&cifdata.VAL(cifdata.N, label), 1),
               std::span(&cifdata.VAL_STD(cifdata.N, label), 1), count);
  }
}

}  // namespace

void READ_LOOP_CIF(const FILE_LINES& flines, int start, int end, CIFDATA_TYPE& cifdata) {
  INIT_ERR_KVACIF();
  cifdata.KEY = LEFT_ADJUST(cifdata.KEY);
  cifdata.IND.FILL(0);
  cifdata.N = 0;
  const LINE_RANGE range{flines, std::max(start, 1), std::min(end, flines.COUNT())};
  int line = FIND_HEADER(range, cifdata.KEY);
  if (line == 0) return;
  const int columns = READ_HEADER(range, line, cifdata);
  MAKE_ROOM(LINES_OF_DATA(range, line), cifdata);
  ROW_WORDS row;
  while (READ_ROW(range, line, columns, row)) STORE_ROW(row, cifdata);
}

void READ_LOOP_CIF(FILE_LINES& flines, CIFDATA_TYPE& cifdata) {
  LEFT_ADJUST_LINES(flines);
  READ_LOOP_CIF(flines, 1, flines.COUNT(), cifdata);
}

}  // namespace KVA_CIFNEW
