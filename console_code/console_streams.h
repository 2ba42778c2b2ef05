// What both systems' sides of console_win.h share: lines over the standard streams, and the
// temporary files of REPLACE_FILE. C++ library only.
#pragma once

#include <string>
#include <string_view>

namespace KVA_CONSOLE {

// Writes text to std::cout as it is, and flushes it.
void WRITE_STREAM(std::string_view text);

// Reads one line of std::cin; of a long one, somewhat more than 255 bytes. False at the end of
// input.
bool READ_STREAM(std::string& line);

// Stands behind the name of a file that is being saved, before what tells one writer from another.
inline constexpr std::string_view TEMPORARY_MARK = ".saving-";

// A program that is killed while it saves leaves its temporary file. A young one may be that of a
// program that is still at it.
void REMOVE_STALE_TEMPORARIES(const std::string& target);

}  // namespace KVA_CONSOLE
