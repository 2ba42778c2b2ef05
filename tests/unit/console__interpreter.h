// What the tests of the command interpreter share: the program's command words, and a dialogue of
// one or more lines. Tests nothing itself.
#pragma once

#include <string>

#include "console_code/console/command.h"
#include "tests/unit/console__dialogue.h"

namespace CONSOLE_TESTS {

class INTERPRETER : public CONSOLE_TEST {
 protected:
  int icom = -9;
  std::string said;

  void SetUp() override {
    CONSOLE_TEST::SetUp();
    // Like the program's own table, in its order; TEST is reserved.
    for (const char* word :
         {"READ", "WRITE", "LIST", "SHOW", "SET", "EXPORT", "CLEAR", "USE", "OMIT", "SORT",
          "UNSORT", "CALC", "TRANSFORM", "CHECK", "TABLE", "ATOMEDIT", "PTEDIT", "TEST"})
      CONSOLE.COMMANDS.ADD({word, "Does something", 1, std::string(word) == "TEST"});
    CONSOLE.CLIST_GROUP_TITLE.ADD("Things to do");
  }

  // Number that COMMAND returns, given these lines.
  int COMMANDED(const std::string& input) {
    said = SAID(input, [this] { COMMAND(icom); });
    return icom;
  }

  // What is said about one line before an X ends the loop. The prompts themselves are left out.
  std::string ANSWERED(const std::string& line) {
    const std::string prompt = "\n" + CONSOLE.CMD_PROMPT;
    EXPECT_EQ(COMMANDED(line + "\nX\n"), -1) << line;
    EXPECT_EQ(said.substr(0, prompt.size()), prompt);
    EXPECT_EQ(said.substr(said.size() - prompt.size()), prompt);
    return said.substr(prompt.size(), said.size() - 2 * prompt.size());
  }

  int NUMBER_OF(const std::string& word) {
    for (int i = 1; i <= CONSOLE.COMMANDS.COUNT(); ++i)
      if (CONSOLE.COMMANDS(i).CLIST == word) return i;
    return 0;
  }
};

}  // namespace CONSOLE_TESTS
