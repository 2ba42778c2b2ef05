// What the tests of the program as a process share: a folder of its own, a run with given input,
// and ways to look at what was said. Tests nothing itself.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "places.h"

namespace PROGRAM_TESTS {

namespace fs = std::filesystem;

struct RUN_RESULT {
  int STATUS = -1;  // of the shell that ran the program
  std::string SAID;
  std::string ERRORS;
};

inline std::string TEXT_OF(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void PUT_FILE(const fs::path& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

inline std::vector<std::string> LINES(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The text from the first line that begins with start.
inline std::string FROM_LINE(const std::string& text, const std::string& start) {
  const std::size_t at = ("\n" + text).find("\n" + start);
  return at == std::string::npos ? "" : text.substr(at);
}

inline std::size_t COUNT_OF(const std::string& text, std::string_view word) {
  std::size_t count = 0;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
    ++count;
  return count;
}

// Without the line that holds the time.
inline std::string TIMELESS(const std::string& text) {
  std::string kept;
  for (const std::string& line : LINES(text))
    if (line.find("Current date and time:") == std::string::npos) kept += line + "\n";
  return kept;
}

// A folder of its own for the program, with its settings and home below it.
class PROGRAM : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    folder = fs::canonical(fs::temp_directory_path()) /
             ("gemmara_program_" + std::to_string(::getpid()) + "_" + test.name());
    fs::remove_all(folder);
    for (const char* sub : {"work", "local", "home", "xdg"}) fs::create_directories(folder / sub);
    work = folder / "work";
    ::setenv("LOCALAPPDATA", (folder / "local").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (folder / "xdg").c_str(), 1);
    ::setenv("HOME", (folder / "home").c_str(), 1);
  }
  void TearDown() override { fs::remove_all(folder); }

  // Runs a shell line in the work folder; $GEMMARA is the program.
  RUN_RESULT SHELL(const std::string& line) const {
    ::setenv("GEMMARA", PLACES::PROGRAM().c_str(), 1);
    const std::string command = "cd '" + work.string() + "' && { " + line + "\n} > '" +
                                (folder / "said").string() + "' 2> '" +
                                (folder / "errors").string() + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            TEXT_OF(folder / "said"), TEXT_OF(folder / "errors")};
  }

  // Runs the program with these lines of input.
  RUN_RESULT RUN(const std::string& input, const std::string& argument = "") const {
    PUT_FILE(folder / "input", input);
    return SHELL("\"$GEMMARA\" " + argument + " < '" + (folder / "input").string() + "'");
  }

  fs::path folder;
  fs::path work;
};

}  // namespace PROGRAM_TESTS
