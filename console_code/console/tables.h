// Printing of tables. A table that is wider than the window of the terminal is shown there in
// panels; the log, and whatever is no terminal, get whole lines.
#pragma once

#include <vector>

#include "console_code/console/work.h"
#include "console_code/kva_utilities/layout.h"
#include "console_code/kva_utilities/long_table.h"

namespace KVA_CONSOLE {

// Sets the columns of the table and writes its lines. starts: columns that begin every panel.
// False when the user has stopped the work, if any, among them.
bool WRITE_TABLE(std::vector<KVA_UTILITIES::FIELD_LINE> table, int starts, WORK* work = nullptr);

// Whether there is no window that asks for panels, and a table of whole lines.
bool LINES_STAY_WHOLE();
void WRITE_TABLE(const KVA_UTILITIES::LONG_TABLE& table);

}  // namespace KVA_CONSOLE
