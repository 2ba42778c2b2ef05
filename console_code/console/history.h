// The lines that were typed in this and in earlier runs, in a file beside the settings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVA_CONSOLE {

inline constexpr std::size_t HISTORY_LENGTH = 1000;  // lines that are kept from run to run

// The last lines of earlier runs, the oldest first. A file that has grown long is cut to them.
std::vector<std::string> READ_HISTORY();

// Adds a line to the file. Other running programs may do so at the same time. A file that cannot be
// written is left alone.
void ADD_TO_HISTORY(std::string_view line);

}  // namespace KVA_CONSOLE
