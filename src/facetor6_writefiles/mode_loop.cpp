// The loop of vibrational modes of a written CIF.
#include <algorithm>  // for any_of
#include <array>
#include <string>
#include <vector>

#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_writefiles/writefiles.h"

namespace FACETOR_WRITEFILES {

using namespace KVA_CIFNEW;
using namespace KVA_UTILITIES;
using RAMAN::MODE_TYPE;

namespace {

constexpr int mode_number_width = 10;  // columns of a number in the loop

// ORDER MODE_TEXTS
constexpr std::array<std::string_view, 11> mode_names{
    "_mode_name        ", "_mode_symmetry    ", "_mode_w0          ", "_mode_ir_active   ",
    "_mode_raman_active", "_mode_gamma_1",      "_mode_gamma_2",      "_mode_gamma_3",
    "_mode_gamma_4",      "_mode_gamma_5",      "_mode_gamma_6"};

// A number as text, blank when it was never given or is none.
std::string NUMBER_TEXT(float value) {
  const bool given = value > RAMAN::MODE_UNSET;
  return given ? LEFT_ADJUST(RFORM(value, mode_number_width)) : "";
}

// ORDER MODE_TEXTS
std::array<std::string, 11> MODE_TEXTS(const MODE_TYPE& mode) {
  return {CIF_WORD(mode.NAME),      CIF_WORD(mode.SYMMETRY),     NUMBER_TEXT(mode.W0),
          CIF_WORD(mode.IR_ACTIVE), CIF_WORD(mode.RAMAN_ACTIVE), NUMBER_TEXT(mode.G[0]),
          NUMBER_TEXT(mode.G[1]),   NUMBER_TEXT(mode.G[2]),      NUMBER_TEXT(mode.G[3]),
          NUMBER_TEXT(mode.G[4]),   NUMBER_TEXT(mode.G[5])};
}

}  // namespace

void WRITE_CIF_MODES(const RAMAN::MODE_LIST_TYPE& modes, int unit) {
  if (modes.NMODES == 0) return;
  std::vector<std::array<std::string, 11>> texts;
  for (int m = 1; m <= modes.NMODES; ++m) texts.push_back(MODE_TEXTS(modes.MODE(m)));

  std::vector<std::size_t> used;
  for (std::size_t column = 0; column < mode_names.size(); ++column)
    if (std::any_of(texts.begin(), texts.end(),
                    [column](const auto& row) { return !row[column].empty(); }))
      used.push_back(column);
  if (used.empty()) return;

  WRITE_CIF_LINE(" ", unit);
  WRITE_CIF_LINE("loop_", unit);
  for (std::size_t column : used) WRITE_CIF_LINE("     " + std::string(mode_names[column]), unit);
  std::vector<std::vector<std::string>> rows;
  for (const auto& row : texts) {
    rows.emplace_back();
    for (std::size_t column : used) rows.back().push_back(row[column]);
  }
  WRITE_CIF_ROWS(rows, unit);
}

}  // namespace FACETOR_WRITEFILES
