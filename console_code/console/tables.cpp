// Printing of tables, in panels where the window is narrow.
#include "console_code/console/tables.h"

#include "console_code/console/output.h"
#include "console_code/console_streams.h"
#include "console_code/console_win.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

void WRITE_TABLE(std::vector<FIELD_LINE> table, int starts) {
  SET_COLUMNS(table);
  const int window = CONSOLE_COLUMNS();
  const auto panels =
      window > 0 ? PANELS(table, starts, window) : std::vector<std::vector<std::string>>{};
  const STREAM_WAITS rows_together;
  if (panels.size() < 2) {
    for (const FIELD_LINE& line : table) WRITE_OUT(AS_IT_IS(LINE_TEXT(line)));
    return;
  }
  for (const FIELD_LINE& line : table) WRITE_OUT(AS_IT_IS(LINE_TEXT(line)), "LOGONLY");
  for (std::size_t k = 0; k < panels.size(); ++k) {
    if (k > 0) WRITE_OUT(" ", "NOLOG");
    for (const std::string& line : panels[k]) WRITE_OUT(AS_IT_IS(line), "NOLOG");
  }
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
