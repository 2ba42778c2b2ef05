// Lines over std::cin and std::cout, and temporary files that were left behind. Calls no system
// itself.
#include "console_code/console_streams.h"

#include <chrono>
#include <filesystem>  // for directory_iterator
#include <iostream>

#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/system_files.h"

namespace KVA_CONSOLE {

using KVA_UTILITIES::SYSTEM_PATH;

// One line that could not be written must not silence those that follow.
void WRITE_STREAM(std::string_view text) {
  std::cout.clear();
  std::cout << text << std::flush;
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

void REMOVE_STALE_TEMPORARIES(const std::string& target) {
  namespace fs = std::filesystem;
  constexpr std::chrono::minutes stale{1};
  const fs::path start = SYSTEM_PATH(target + std::string(TEMPORARY_MARK));
  std::error_code error;
  std::error_code ignored;
  fs::directory_iterator file(start.parent_path(), error);
  for (; !error && file != fs::directory_iterator(); file.increment(error)) {
    if (!file->path().native().starts_with(start.native())) continue;
    const fs::file_time_type written = fs::last_write_time(file->path(), ignored);
    if (ignored) continue;  // its program has finished meanwhile
    if (fs::file_time_type::clock::now() - written > stale) fs::remove(file->path(), ignored);
  }
}

}  // namespace KVA_CONSOLE
