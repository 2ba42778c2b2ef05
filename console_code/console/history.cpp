// The file of the lines that were typed. Fails in silence: nobody works for the sake of it.
#include "console_code/console/history.h"

#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr int history_unit = 98;
// Cutting the file can lose a line that another program adds meanwhile, so it is done seldom.
constexpr std::size_t longest_file = HISTORY_LENGTH + HISTORY_LENGTH / 5;

std::vector<std::string> LINES_OF_FILE() {
  std::vector<std::string> lines;
  if (OPEN_UNIT(history_unit, CONSOLE.HISTORY_FILE, UNIT_MODE::OLD) != 0) return lines;
  for (std::string line; READ_UNIT(history_unit, line) == READ_STATUS::LINE;)
    if (LENTRIM(line) > 0) lines.push_back(line);
  CLOSE_UNIT(history_unit);
  return lines;
}

}  // namespace

std::vector<std::string> READ_HISTORY() {
  if (CONSOLE.HISTORY_FILE.empty()) return {};
  std::vector<std::string> lines = LINES_OF_FILE();
  if (lines.size() <= HISTORY_LENGTH) return lines;
  const bool too_long = lines.size() > longest_file;
  lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(HISTORY_LENGTH));
  if (!too_long) return lines;
  std::string content;
  for (const std::string& line : lines) content += line + "\n";
  REPLACE_FILE(CONSOLE.HISTORY_FILE, content);
  return lines;
}

void ADD_TO_HISTORY(std::string_view line) {
  if (!CONSOLE.HISTORY_FILE.empty()) APPEND_TO_FILE(CONSOLE.HISTORY_FILE, std::string(line) + "\n");
}

}  // namespace KVA_CONSOLE
