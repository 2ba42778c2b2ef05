// Names that must differ.
#include "console_code/kva_utilities/names.h"

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

std::string KEY_OF(std::string_view name, const NAMES_TAKEN& taken) {
  return taken.CAPITALS_DIFFER ? std::string(name) : U_CASE(name);
}

}  // namespace

std::string UNIQUE_NAME(std::string_view name, NAMES_TAKEN& taken, int length) {
  int& count = taken.COUNTS[KEY_OF(name, taken)];
  if (++count == 1) return std::string(name);
  while (true) {
    const std::string suffix = "_" + INTEGER_COLUMNS(count);
    const std::string unique = CUT_TEXT(name, length - static_cast<int>(suffix.size())) + suffix;
    if (taken.COUNTS.emplace(KEY_OF(unique, taken), 1).second) return unique;
    ++count;
  }
}

}  // namespace KVA_UTILITIES
