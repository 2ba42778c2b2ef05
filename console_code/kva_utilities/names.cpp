// Names that must differ.
#include "console_code/kva_utilities/names.h"

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

std::string UNIQUE_NAME(std::string_view name, NAMES_TAKEN& taken, int length) {
  int& count = taken.COUNTS[U_CASE(name)];
  if (++count == 1) return std::string(name);
  while (true) {
    const std::string suffix = "_" + INTEGER_COLUMNS(count);
    const std::string unique = CUT_TEXT(name, length - static_cast<int>(suffix.size())) + suffix;
    if (taken.COUNTS.emplace(U_CASE(unique), 1).second) return unique;
    ++count;
  }
}

}  // namespace KVA_UTILITIES
