// What TAB adds to a line that is being typed. Looks into directories; asks and prints nothing.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace KVA_CONSOLE {

// A word that may begin a line, and the menu of which an entry's first word may follow it.
struct OFFERED_WORD {
  std::string WORD;
  std::span<const std::string_view> MENU = {};
};

// What the one who asks for a line knows of it.
struct LINE_HELP {
  std::vector<OFFERED_WORD> WORDS = {};
  bool FILES =
      false;  // names of files may stand in it, behind the first word where there are WORDS
  bool EXPRESSION = false;  // WORDS may stand anywhere in it, between signs and brackets
  bool SECRET = false;      // it is not kept in the history
};

struct COMPLETION {
  std::size_t TYPED = 0;  // bytes before the cursor that TEXT takes the place of
  std::string TEXT;       // as far as all candidates agree; what was typed, when they do not
  std::vector<std::string> CANDIDATES;  // in alphabetical order
};

// before: the line up to the cursor. Words are found in any case, names of files in their own.
COMPLETION COMPLETE(std::string_view before, const LINE_HELP& help);

}  // namespace KVA_CONSOLE
