// Stands in for line_editor.cpp where there is no libedit: lines are read plainly.
#include "console_code/console/line_editor.h"

namespace KVA_CONSOLE {

void START_LINE_EDITOR() {}

bool EDITING_POSSIBLE(const std::string& /*prompt*/) {
  return false;
}

bool EDIT_LINE(const std::string& /*prompt*/, const LINE_HELP& /*help*/, std::string& line) {
  line.clear();
  return false;
}

void REMEMBER_LINE(std::string_view /*line*/) {}

}  // namespace KVA_CONSOLE
