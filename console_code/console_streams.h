// What both systems' sides of console_win.h share: lines over the standard streams. C++ library
// only.
#pragma once

#include <string>
#include <string_view>

namespace KVA_CONSOLE {

// Writes text to std::cout as it is, and flushes it, unless it may wait.
void WRITE_STREAM(std::string_view text);

// To the end of its scope what is written may wait for more, as the rows of a table do.
struct STREAM_WAITS {
  STREAM_WAITS();
  ~STREAM_WAITS();
  STREAM_WAITS(const STREAM_WAITS&) = delete;
  STREAM_WAITS& operator=(const STREAM_WAITS&) = delete;
};

// Reads one line of std::cin; of a long one, somewhat more than 255 bytes. False at the end of
// input.
bool READ_STREAM(std::string& line);

}  // namespace KVA_CONSOLE
