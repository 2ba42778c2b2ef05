// Lines over std::cin and std::cout. Calls no system itself.
#include "console_code/console_streams.h"

#include <iostream>

#include "console_code/kva_utilities/files.h"

namespace KVA_CONSOLE {

namespace {

bool may_wait = false;

}  // namespace

// One line that could not be written must not silence those that follow.
void WRITE_STREAM(std::string_view text) {
  std::cout.clear();
  std::cout << text;
  if (!may_wait) std::cout.flush();
}

STREAM_WAITS::STREAM_WAITS() {
  may_wait = true;
}

STREAM_WAITS::~STREAM_WAITS() {
  may_wait = false;
  std::cout.flush();
}

bool READ_STREAM(std::string& line) {
  using TRAITS = std::char_traits<char>;
  constexpr std::size_t kept = KVA_UTILITIES::LINE_LENGTH + 4;  // a character may reach beyond
  line.clear();
  std::streambuf& input = *std::cin.rdbuf();
  TRAITS::int_type c = input.sbumpc();
  if (TRAITS::eq_int_type(c, TRAITS::eof())) return false;
  for (; !TRAITS::eq_int_type(c, TRAITS::eof()) && c != '\n'; c = input.sbumpc())
    if (line.size() < kept) line += TRAITS::to_char_type(c);
  if (line.size() < kept && line.ends_with('\r')) line.pop_back();
  return true;
}

}  // namespace KVA_CONSOLE
