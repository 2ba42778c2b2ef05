// Names that must differ: blocks of a file, columns of a sheet.
#pragma once

#include <string>
#include <string_view>

#include "console_code/kva_utilities/text_list.h"

namespace KVA_UTILITIES {

// Names that are taken, with how often each was asked for.
struct NAMES_TAKEN {
  bool CAPITALS_DIFFER = false;  // else small and capital letters are the same
  TEXT_COUNTS NAMES;
};

// The name, which is taken then; with _2, _3 ... behind it, within length bytes, when it was taken
// before.
std::string UNIQUE_NAME(std::string_view name, NAMES_TAKEN& taken, int length);

}  // namespace KVA_UTILITIES
