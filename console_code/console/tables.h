// Printing of tables. A table that is wider than the window of the terminal is shown there in
// panels; the log, and whatever is no terminal, get whole lines.
#pragma once

#include <vector>

#include "console_code/kva_utilities/layout.h"

namespace KVA_CONSOLE {

// Sets the columns of the table and writes its lines. starts: columns that begin every panel.
void WRITE_TABLE(std::vector<KVA_UTILITIES::FIELD_LINE> table, int starts);

}  // namespace KVA_CONSOLE
