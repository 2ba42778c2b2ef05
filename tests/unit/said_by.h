// What a command says on its standard output, and what a judge says of the program.
#pragma once

#include <unistd.h>  // for getpid

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "places.h"

namespace PROGRAM_TESTS {

// "" when it cannot be run. status, if asked for: as of std::system.
inline std::string SAID_BY(const std::string& command, int* status = nullptr) {
  std::string said;
  FILE* stream = ::popen(command.c_str(), "r");
  if (stream == nullptr) return said;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), stream) != nullptr)
    said += buffer.data();
  const int ended = ::pclose(stream);
  if (status != nullptr) *status = ended;
  return said;
}

// Runs a script of tests/judges on the program, in a folder of its own and with Debian's python.
inline std::string JUDGED_BY(const std::string& script, int& status) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / ("gemmara_" + std::to_string(::getpid()));
  fs::create_directories(folder);
  status = -1;
  std::string said = SAID_BY("cd '" + folder.string() + "' && LOCALAPPDATA='" + folder.string() +
                                 "' /usr/bin/python3 -B '" + PLACES::SOURCE() + "/tests/judges/" +
                                 script + "' '" + PLACES::PROGRAM() + "' 2>&1",
                             &status);
  fs::remove_all(folder);
  return said;
}

}  // namespace PROGRAM_TESTS
