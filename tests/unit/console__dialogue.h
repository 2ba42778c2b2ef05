// What the console tests share: a folder of their own, fresh console state, and a dialogue with
// given input lines whose output is returned. Tests nothing itself.
#pragma once

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console_code/console/input.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/files.h"
#include "own_folder.h"

namespace CONSOLE_TESTS {

namespace fs = std::filesystem;
using namespace KVA_CONSOLE;

// Standard input and output replaced by texts while it lives.
class REDIRECTED {
 public:
  explicit REDIRECTED(const std::string& text) : input(text) {
    old_input = std::cin.rdbuf(input.rdbuf());
    old_output = std::cout.rdbuf(output.rdbuf());
  }
  ~REDIRECTED() {
    std::cin.rdbuf(old_input);
    std::cout.rdbuf(old_output);
  }
  REDIRECTED(const REDIRECTED&) = delete;
  REDIRECTED& operator=(const REDIRECTED&) = delete;
  std::string OUTPUT() const { return output.str(); }
  bool ALL_READ() { return input.rdbuf()->in_avail() == 0; }

 private:
  std::istringstream input;
  std::ostringstream output;
  std::streambuf* old_input;
  std::streambuf* old_output;
};

inline void PEND(const std::string& text) {
  CONSOLE.INSTRING = text;
  CONSOLE.INSTRING_LEN = static_cast<int>(text.size());
}

// A folder of its own, with the settings below it.
class CONSOLE_TEST : public FOLDER_TESTS::OWN_FOLDER {
 protected:
  void SetUp() override {
    OWN_FOLDER::SetUp();
    ::setenv("LOCALAPPDATA", (folder / "local").c_str(), 1);
    ::setenv("HOME", (folder / "home").c_str(), 1);
    ::unsetenv("XDG_CONFIG_HOME");
    RESET_STATE();
  }

  void TearDown() override {
    RESET_STATE();
    OWN_FOLDER::TearDown();
  }

  static void RESET_STATE() {
    KVA_UTILITIES::CLOSE_FILE(CONSOLE.LOG_FILE);
    KVA_UTILITIES::CLOSE_FILE(CONSOLE.MACRO_FILE);
    CONSOLE = CONSOLE_STATE{};
    CONSOLE.CMD_PROMPT = "G_MARA-6.1>";
    PROGRAM_NAME = "Gemmara";
    PROGRAM_VERSION = 6.1f;
    PROGRAM_VERSION_DATE = "1-FEBRUARY-2025";
    PROGRAM_AUTHORS = "The Gemmara developers";
    PROGRAM_INI_FILE = "/quorvansoftware/gemmara.ini";
    PROGRAM_COMMENT.FILL("");
  }

  // What the routine says when it is given the input.
  template <class ROUTINE>
  static std::string SAID(const std::string& input, ROUTINE routine) {
    REDIRECTED console(input);
    routine();
    EXPECT_TRUE(console.ALL_READ()) << "input was left unread";
    return console.OUTPUT();
  }

  // Starts the macro with these lines.
  static void START_MACRO_WITH(const std::string& lines) {
    PUT_FILE("test.mcr", lines);
    CONSOLE.MACRO_FILE.UNIT = MACRO_UNIT;
    CONSOLE.MACRO_FILE.NAME = "test.mcr";
    ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(MACRO_UNIT, "test.mcr", KVA_UTILITIES::UNIT_MODE::OLD), 0);
    CONSOLE.MACRO_FILE.OPEN = true;
    CONSOLE.MACRO_STATE = 1;
  }

  static void START_LOG() {
    CONSOLE.LOG_FILE.UNIT = LOG_UNIT;
    CONSOLE.LOG_FILE.NAME = "test.log";
    ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(LOG_UNIT, "test.log", KVA_UTILITIES::UNIT_MODE::REPLACE), 0);
    CONSOLE.LOG_FILE.OPEN = true;
  }
};

}  // namespace CONSOLE_TESTS
