// What both systems' sides of console_win.h share: lines over the standard streams. C++ library
// only.
#pragma once

#include <string>
#include <string_view>

namespace KVA_CONSOLE {

// Writes text to std::cout as it is, and flushes it.
void WRITE_STREAM(std::string_view text);

// Reads one line of std::cin; of a long one, somewhat more than 255 bytes. False at the end of
// input.
bool READ_STREAM(std::string& line);

}  // namespace KVA_CONSOLE
