// What a command says on its standard output.
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace PROGRAM_TESTS {

// "" when it cannot be run.
inline std::string SAID_BY(const std::string& command) {
  std::string said;
  FILE* stream = ::popen(command.c_str(), "r");
  if (stream == nullptr) return said;
  std::array<char, 4096> buffer{};
  while (std::fgets(buffer.data(), static_cast<int>(buffer.size()), stream) != nullptr)
    said += buffer.data();
  ::pclose(stream);
  return said;
}

}  // namespace PROGRAM_TESTS
