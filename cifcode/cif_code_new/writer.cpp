// Symmetry codes, numbers and texts as words of a CIF.
#include "cifcode/cif_code_new/writer.h"

#include <algorithm>  // for any_of
#include <array>
#include <cmath>  // for abs, llround

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFNEW {

using namespace KVA_UTILITIES;

std::string WRITE_SYMCODE(float code) {
  std::string text = LEFT_ADJUST(REAL_COLUMNS(code, 7, 3));
  REPLACE_CHAR(text, '.', '_');
  return text;
}

// A pressure in kPa has eight digits and more, of which the exponent form keeps three.
std::string CIF_NUMBER(float value, float esd) {
  const float exponent_form = value < 0.0f ? 999999.0f : 1.0e7f;
  constexpr float whole_digits = 1.0e15f;
  const float magnitude = std::abs(value);
  if (!(esd > 0.0f) && magnitude >= exponent_form && magnitude < whole_digits)
    return std::to_string(std::llround(value));
  return LEFT_ADJUST(SETNUM_STD(value, esd < 0.0f ? 0.0f : esd));
}

bool IS_RESERVED(std::string_view text) {
  constexpr std::string_view reserved_characters = "_#$'\"[];";
  constexpr std::array<std::string_view, 5> reserved_words{"data_", "loop_", "global_", "save_",
                                                           "stop_"};
  if (text.empty()) return false;
  return reserved_characters.find(text.front()) != std::string_view::npos ||
         std::any_of(reserved_words.begin(), reserved_words.end(),
                     [text](std::string_view word) { return BEGINS_WITH(text, word); });
}

std::string IN_QUOTES(const std::string& word) {
  // Only double quotes group words on reading.
  const char quote = word.find('"') == std::string::npos ? '"' : '\'';
  return quote + word + quote;
}

std::string CIF_WORD(std::string_view text) {
  const std::string word = LEFT_ADJUST(text);
  const bool plain = word.find(' ') == std::string::npos && !IS_RESERVED(word);
  return plain ? word : IN_QUOTES(word);
}

}  // namespace KVA_CIFNEW
