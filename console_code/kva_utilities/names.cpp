// Names that must differ.
#include "console_code/kva_utilities/names.h"

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

// How often the name was asked for.
int& COUNT_OF(std::string_view name, NAMES_TAKEN& taken) {
  const std::size_t k = taken.CAPITALS_DIFFER ? FIND_OR_ADD(name, taken.NAMES)
                                              : FIND_OR_ADD(U_CASE(name), taken.NAMES);
  return taken.NAMES.COUNTS[k];
}

}  // namespace

std::string UNIQUE_NAME(std::string_view name, NAMES_TAKEN& taken, int length) {
  while (true) {
    const int count = ++COUNT_OF(name, taken);
    if (count == 1) return std::string(name);
    const std::string suffix = "_" + INTEGER_COLUMNS(count);
    const std::string unique = CUT_TEXT(name, length - static_cast<int>(suffix.size())) + suffix;
    int& taken_before = COUNT_OF(unique, taken);
    if (taken_before > 0) continue;
    taken_before = 1;
    return unique;
  }
}

}  // namespace KVA_UTILITIES
