// Questions for a character, values and texts. Asks; keeps nothing but the pending input.
#include "console_code/console/prompts.h"

#include <algorithm>  // for all_of, copy, fill, min
#include <array>
#include <cmath>  // for abs

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr int matrix_limit = 10;  // rows and columns stay below it

bool SAME_LETTER(char a, char b) {
  return EQUAL_TEXT({&a, 1}, {&b, 1});
}

// Both, or the second alone left out when that is allowed. Values not read are 0.
bool READ_VALUES(std::array<float, 2>& values, bool two, bool option) {
  values = {0.0f, 0.0f};
  if (!two) return READ_REALS(CONSOLE.INSTRING, std::span(values).first(1));
  if (READ_REALS(CONSOLE.INSTRING, values)) return true;
  values = {0.0f, 0.0f};
  return option && READ_REALS(CONSOLE.INSTRING, std::span(values).first(1));
}

bool MATRIX_FITS(const std::vector<std::vector<float>>& m, int nrow, int ncol) {
  if (nrow >= matrix_limit || ncol >= matrix_limit || nrow < 2 || ncol < 1) return false;
  if (m.size() < static_cast<std::size_t>(nrow)) return false;
  return std::all_of(m.begin(), m.begin() + nrow, [ncol](const std::vector<float>& row) {
    return row.size() >= static_cast<std::size_t>(ncol);
  });
}

}  // namespace

// ---- one character ----

int ANSWER(std::string_view word) {
  return INDEXALL(CONSOLE.INSTRING, word);
}

char GET_ANSWER(std::string_view prompt, char ay, char an, std::string_view control) {
  const bool refuse_blank = INDEXALL(control, "r") > 0;
  char preset = ' ';
  if (!control.empty()) preset = SAME_LETTER(control[0], ay) ? ay : an;

  std::string shown = TRIM(prompt) + " (" + ay + "/" + an + ")";
  if (preset != ' ') shown += std::string(" <") + preset + ">";
  shown += "? ";
  while (true) {
    GET_INPUT(shown);
    if (CONSOLE.DROPPED) return an;
    if (CONSOLE.INSTRING_LEN == 0 && !refuse_blank) return preset;
    const bool is_an = ANSWER({&an, 1}) > 0;
    const bool is_ay = ANSWER({&ay, 1}) > 0;
    CLEAR_INPUT();
    if (is_an) return an;
    if (is_ay) return ay;
  }
}

char GET_ANSWER_YN(std::string_view prompt, std::string_view default_answer) {
  return GET_ANSWER(prompt, 'Y', 'N', default_answer);
}

// ---- values ----

void GET_INPUT_VALUES(std::string_view prompt, float& v1, float* v2, std::string_view control) {
  const bool two = v2 != nullptr;
  const bool option = INDEXALL(control, "option") > 0;
  std::array<float, 2> values{};
  if (INDEXALL(control, "nofeed") == 0) WRITE_OUT_BLANK(1);
  while (true) {
    GET_INPUT(prompt);
    if (CONSOLE.INSTRING_LEN == 0) {
      values = {0.0f, 0.0f};
      break;
    }
    if (READ_VALUES(values, two, option)) break;
    WARNING("Illegal value input, try again:");
  }
  v1 = values[0];
  if (two) *v2 = values[1];
}

int GET_INPUT_NVALUES(std::string_view prompt, std::span<float> v) {
  std::fill(v.begin(), v.end(), 0.0f);
  GET_INPUT(prompt);
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT(CONSOLE.INSTRING);
  const std::size_t count = std::min(numbers.size(), v.size());
  for (std::size_t i = 0; i < count; ++i) v[i] = numbers[i].VAL;
  return static_cast<int>(count);
}

void GET_INPUT_RANGE(std::string_view prompt, float& vmin, float& vmax, float* step) {
  constexpr std::array<float, 3> start{0.0f, 0.0f, 1.0f};  // minimum, maximum, step
  const std::size_t wanted = step != nullptr ? 3 : 2;
  std::array<float, 3> range = start;
  while (true) {
    range = start;
    WRITE_OUT_BLANK(1);
    GET_INPUT(prompt);
    if (CONSOLE.INSTRING_LEN == 0 || READ_REALS(CONSOLE.INSTRING, std::span(range).first(wanted)))
      break;
  }
  const bool in_order = range[0] < range[1] + TINY_REAL;
  vmin = in_order ? range[0] : range[1];
  vmax = in_order ? range[1] : range[0];
  if (step == nullptr) return;
  *step = std::abs(range[2]);
  if (!(*step > TINY_REAL)) *step = LARGEST_REAL;
}

void GET_INPUT_MATRIX(std::string_view prompt, int nrow, int ncol,
                      std::vector<std::vector<float>>& m, int& ierr) {
  for (std::vector<float>& row : m) std::fill(row.begin(), row.end(), 0.0f);
  ierr = -1;
  if (!MATRIX_FITS(m, nrow, ncol)) return;
  WRITE_OUT(TRIM(prompt) + ":");
  for (int i = 1; i <= nrow;) {
    GET_INPUT("  Row " + INTEGER_AT_LEAST(i, 1) + ":");
    if (CONSOLE.INSTRING_LEN == 0) return;
    std::vector<float> row(static_cast<std::size_t>(ncol), 0.0f);
    if (!READ_REALS(CONSOLE.INSTRING, row)) {
      WARNING("Error reading input for this row, try again");
      continue;
    }
    std::copy(row.begin(), row.end(), m[POSITION(i, m.size())].begin());
    ++i;
  }
  ierr = 0;
}

// ---- texts ----

std::string GET_INPUT_STRING(std::string_view prompt, std::string_view control) {
  const bool refuse_blank = INDEXALL(control, "R") > 0;
  WRITE_OUT_BLANK(1);
  do GET_INPUT(prompt);
  while (refuse_blank && CONSOLE.INSTRING_LEN == 0 && !CONSOLE.DROPPED);
  return LEFT_ADJUST(CONSOLE.INSTRING);
}

}  // namespace KVA_CONSOLE
