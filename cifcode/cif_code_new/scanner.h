// The lexical layer of CIF: lines of a file to blocks, numbers, texts and loops. A small line-based
// scanner, forgiving by design: a value stands on its data name's line, names are matched as
// lower-cased substrings, and a loop is found by its first data name. Prints nothing.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/table.h"

namespace KVA_CIFNEW {

using KVA_UTILITIES::FILE_LINES;
using KVA_UTILITIES::LIST;
using KVA_UTILITIES::ROW;

inline constexpr int MAX_LOOP_LABELS = 20;   // columns of a loop that can be read
inline constexpr int LOOP_WORD_LENGTH = 40;  // characters of a loop value that are kept
inline constexpr int LOOP_KEY_LENGTH = 80;

// The values of a loop by row and label, both from 1.
template <class T>
struct LOOP_VALUES {
  int NLABELS = 0;
  std::vector<T> ITEMS;  // row by row

  T& operator()(int row, int label) { return ITEMS[PLACE(row, label)]; }
  const T& operator()(int row, int label) const { return ITEMS[PLACE(row, label)]; }
  int COUNT() const { return NLABELS > 0 ? static_cast<int>(ITEMS.size()) / NLABELS : 0; }
  void ADD_ROW() { ITEMS.resize(ITEMS.size() + static_cast<std::size_t>(NLABELS)); }

  // Empties the table and makes room for so many rows.
  void START(int nlabels, std::size_t rows) {
    NLABELS = nlabels;
    ITEMS.clear();
    ITEMS.reserve(rows * static_cast<std::size_t>(nlabels));
  }

  std::size_t PLACE(int row, int label) const {
    return KVA_UTILITIES::POSITION((row - 1) * NLABELS + label, ITEMS.size());
  }
};

// A loop to read, and what was read of it.
struct CIFDATA_TYPE {
  int NLABELS = 0;  // labels in use, at most 20; set by the caller
  int N = 0;        // rows read
  std::string KEY;  // prefix of the loop's data names; by the caller
  // data names wanted; by the caller, whose texts must outlive the reading
  ROW<std::string_view, MAX_LOOP_LABELS> LABELS;
  ROW<char, MAX_LOOP_LABELS> VTYPE;  // 'C' text, else number with esd; by the caller
  ROW<int, MAX_LOOP_LABELS> IND;     // column of each label, 0 if absent
  LOOP_VALUES<std::string> CVAL;     // texts, up to the last label that is one
  LOOP_VALUES<float> VAL;            // values
  LOOP_VALUES<float> VAL_STD;        // their esds
};

// Error state, cleared by INIT_ERR_KVACIF. Texts of 256 characters.
inline bool ERR_KVACIF = false;
inline std::string ERR_KVACIF_MESS;
void INIT_ERR_KVACIF();

// Control characters to blanks, lines left-adjusted, the older operator name to the newer one.
void CLEAN_CIF(FILE_LINES& flines);

// Line numbers at which data blocks start; "data_global" starts none. nblocks is only raised: set
// it to 0 before. nlines has an entry for each line that begins with data_, unused ones 0.
void FIND_ALL_BLOCKS_CIF(const FILE_LINES& flines, LIST<int>& nlines, int& nblocks);

// The blocks by the same rule, each as it stands in the file: from its first line up to that of the
// next. bytes are those of the whole file.
std::vector<std::string_view> BLOCKS_OF_CIF(std::string_view bytes);

// The lines of such a block, cleaned.
void CLEAN_LINES_OF(std::string_view block, FILE_LINES& flines);

// First line from line to end that holds key; string receives what stands behind it and line
// becomes its number. Without a match line stays and string is blank.
void FIND_KEY_STRING(const FILE_LINES& flines, int& line, int end, std::string_view key,
                     std::string& string);

// The same search and then the numbers with esds behind the key: count of them, at most room in
// values and stds (which must be of the same size) is filled.
void FIND_KEY_VALUE_STD(const FILE_LINES& flines, int& line, int end, std::string_view key,
                        std::span<float> values, std::span<float> stds, int& count);

// The number behind key with its esd; 0 and 0 unless exactly one number stands there.
void READ_CIF_VALUE(std::string_view key, const FILE_LINES& flines, int start, int end,
                    float& value, float& std);

// All that stands behind key on its line, quotes included, or blank.
void READ_CIF_TEXT(std::string_view key, const FILE_LINES& flines, int start, int end,
                   std::string& text);

// One of the seven crystal systems in lower case, or blank.
void READ_CIF_SYSTEM(const FILE_LINES& flines, int start, int end, std::string& system);

// Reads the loop described by cifdata out of flines, whose lines it left-adjusts. An absent loop
// leaves ERR_KVACIF with "cifdata_key of ... not found by read_loop_cif".
void READ_LOOP_CIF(FILE_LINES& flines, CIFDATA_TYPE& cifdata);

// The same in lines start to end of a buffer, which stay as they are.
void READ_LOOP_CIF(const FILE_LINES& flines, int start, int end, CIFDATA_TYPE& cifdata);

// The lines start to end of a buffer, as a buffer of their own.
FILE_LINES BLOCK_LINES(const FILE_LINES& flines, int start, int end);

}  // namespace KVA_CIFNEW
