// Printing of tables, in panels where the window is narrow.
#include "console_code/console/tables.h"

#include "console_code/console/output.h"
#include "console_code/console_streams.h"
#include "console_code/console_win.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

// Looks at the key in front of every so many lines.
bool MAY_WRITE(std::size_t line, WORK* work) {
  constexpr std::size_t lines_at_once = 100;
  return work == nullptr || line % lines_at_once != 0 || GO_ON(*work, work->TOTAL);
}

// Each line is let go when it is written: all at once they would take a while.
bool WRITE_LINES(std::vector<FIELD_LINE>& table, std::string_view control, WORK* work) {
  for (std::size_t k = 0; k < table.size(); ++k) {
    if (!MAY_WRITE(k, work)) return false;
    WRITE_OUT(AS_IT_IS(LINE_TEXT(table[k])), control);
    table[k] = FIELD_LINE{};
  }
  return true;
}

}  // namespace

bool WRITE_TABLE(std::vector<FIELD_LINE> table, int starts, WORK* work) {
  SET_COLUMNS(table);
  const int window = CONSOLE_COLUMNS();
  const auto panels =
      window > 0 ? PANELS(table, starts, window) : std::vector<std::vector<std::string>>{};
  const STREAM_WAITS rows_together;
  if (panels.size() < 2) return WRITE_LINES(table, "", work);
  if (!WRITE_LINES(table, "LOGONLY", work)) return false;
  for (std::size_t k = 0; k < panels.size(); ++k) {
    if (k > 0) WRITE_OUT(" ", "NOLOG");
    for (std::size_t line = 0; line < panels[k].size(); ++line) {
      if (!MAY_WRITE(line, work)) return false;
      WRITE_OUT(AS_IT_IS(panels[k][line]), "NOLOG");
    }
  }
  return true;
}

bool LINES_STAY_WHOLE() {
  return CONSOLE_COLUMNS() == 0;
}

void WRITE_TABLE(const LONG_TABLE& table) {
  const STREAM_WAITS rows_together;
  const std::vector<COLUMN_SHIFT> shifts = SHIFTS_OF(table);
  std::string line;
  for (TABLE_PLACE place; place.LINE < table.ENDS.size();) {
    TAKE_LINE(table, shifts, place, line);
    WRITE_OUT(AS_IT_IS(line));
  }
}

}  // namespace KVA_CONSOLE
