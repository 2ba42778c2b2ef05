// Bytes as numbers: words, values with esds, list-directed input, the prompts that take it, and
// numbers into columns.
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "console_code/console/prompts.h"
#include "console_code/kva_utilities/aligned_rows.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;
using FUZZ::MUST_HOLD;

constexpr int blank_lines = 50;

// ---- numbers into columns ----

void WRITE_NUMBER(float value, float std) {
  for (const int w : {0, 1, 5, 8, 40})
    for (const int d : {0, 1, 4, 60}) {
      const auto width = static_cast<std::size_t>(w);
      MUST_HOLD(REAL_COLUMNS(value, w, d).size() == width, "a real fills its columns");
      MUST_HOLD(EXPONENT_COLUMNS(value, w, d).size() == width,
                "an exponent form fills its columns");
      WRITE_VAL(value, 'F', w, d);
      WRITE_VAL(value, 'E', w, d);
    }
  for (const int w : {1, 8, 10}) RFORM(value, w);
  const std::string written = SETNUM_STD(value, std);
  if (!std::isfinite(value) || !std::isfinite(std) || std < 0.0f) return;
  std::array<float, 1> back{};
  std::array<float, 1> back_std{};
  int count = 0;
  GETNUM_STD(written, back, back_std, count);
  MUST_HOLD(count == 1, "a value with its esd reads back");
}

// ---- texts to numbers ----

void READ_WORDS(const std::string& text) {
  NUMBER number;
  if (GETNUM(text, number)) {
    MUST_HOLD(std::isfinite(number.VAL), "what reads as a number is finite");
    WRITE_NUMBER(number.VAL, 0.0f);
  } else {
    MUST_HOLD(ERR_TEXT, "what is no number is told");
  }
  int count = 0;
  std::array<std::string, 3> words;
  GETWORDS(text, words, count);
  MUST_HOLD(count >= 0, "words are counted");
  GETWORDS(text, std::span<std::string>(), count);
}

void READ_VALUES_WITH_ESDS(const std::string& text) {
  int count = 0;
  std::array<float, 3> values{};
  std::array<float, 3> stds{};
  GETNUM_STD(text, values, stds, count);
  GETNUM_STD(text, std::span(values).first(1), stds, count);
  for (std::size_t i = 0; i < values.size(); ++i) {
    MUST_HOLD(std::isfinite(values[i]), "values are finite");
    MUST_HOLD(std::isfinite(stds[i]), "esds are finite");
    WRITE_NUMBER(values[i], stds[i]);
  }
  for (const NUMBER& number : NUM_FROM_TEXT(text)) MUST_HOLD(std::isfinite(number.VAL), "finite");
}

void READ_LISTS(const std::string& text) {
  std::array<float, 4> reals{};
  READ_REALS(text, reals);
  for (const float real : reals) MUST_HOLD(std::isfinite(real), "reals are finite");
  int count = 0;
  std::array<int, 4> integers{};
  READ_INTEGERS(text, integers, count);
  MUST_HOLD(count >= 0 && count <= 4, "no more numbers than there is room for");
}

// ---- prompts ----

void ASK() {
  constexpr int largest = 20;
  const std::vector<int> list = GET_LIST("list", largest);
  MUST_HOLD(list.size() <= largest, "no longer list than asked for");
  for (const int number : list) MUST_HOLD(number >= 1 && number <= largest, "numbers in range");
  float v1 = 0.0f;
  float v2 = 0.0f;
  GET_INPUT_VALUES("one", v1);
  GET_INPUT_VALUES("two", v1, &v2, "option");
  std::array<float, 3> values{};
  GET_INPUT_NVALUES("values", values);
  float step = 0.0f;
  GET_INPUT_RANGE("range", v1, v2, &step);
  MUST_HOLD(v1 <= v2 && step >= 0.0f, "a range in order");
  std::vector<std::vector<float>> matrix(3, std::vector<float>(3, 0.0f));
  int ierr = 0;
  GET_INPUT_MATRIX("matrix", 3, 3, matrix, ierr);
  constexpr std::array<std::string_view, 3> menu{"cells", "xyz", "x bonds"};
  const int choice = GET_LIST_SELECTION("menu", menu);
  MUST_HOLD(choice >= 0 && choice <= 3, "a choice of the menu");
}

// The bytes themselves as reals, for the writers.
void WRITE_BYTES(const std::uint8_t* data, std::size_t size) {
  std::array<float, 2> reals{};
  if (size < sizeof(reals)) return;
  std::memcpy(reals.data(), data, sizeof(reals));
  WRITE_NUMBER(reals[0], reals[1]);
  INFINITE_NUMBER(reals[0]);
  const std::vector<int> order = SET_SORT(reals, (data[0] & 1U) != 0);
  for (const int place : order) MUST_HOLD(place == 1 || place == 2, "places of the list");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = FUZZ::TEXT_OF(data, size);
  std::vector<std::vector<std::string>> cells;
  for (const std::string& line : FUZZ::LINES_OF(text)) {
    READ_WORDS(line);
    READ_VALUES_WITH_ESDS(line);
    READ_LISTS(line);
    std::array<std::string, 3> words;
    int count = 0;
    GETWORDS(line, words, count);
    cells.emplace_back(words.begin(), words.end());
  }
  WRITE_COLS(cells);
  WRITE_BYTES(data, size);
  FUZZ::START();
  FUZZ::WITH_CONSOLE(text, blank_lines, ASK);
  return 0;
}
