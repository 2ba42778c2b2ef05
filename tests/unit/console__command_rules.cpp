// Which built-in command a word that holds two of them is, and what the system mode takes for
// itself.
#include "tests/unit/console__interpreter.h"

using namespace CONSOLE_TESTS;

namespace {

using RULES = INTERPRETER;

TEST_F(RULES, ORDER_OF_ALL_BUILT_INS) {
  struct CASE {
    const char* TYPED;
    const char* TELLING;  // said by the first of the two and not by the second
  };
  for (const CASE& c : {CASE{"LOGHELP", "******General Commands******"},
                        CASE{"MODELOG\n", "     Open Log file (*.log):"},
                        CASE{"PRIVMODE\n", "     Input operation mode:"},
                        CASE{"INFOPRIV\n", "     Password:"}, CASE{"TIMEINFO", "Version date: "},
                        CASE{"DIRSYS\nPROG", "return to the program, type PROG"}})
    EXPECT_NE(ANSWERED(c.TYPED).find(c.TELLING), std::string::npos) << c.TYPED;
  ANSWERED("CDDIR home");
  EXPECT_EQ(fs::current_path(), folder) << "DIR comes before CD";
  ANSWERED("RECORDCD home");
  EXPECT_EQ(fs::current_path(), folder / "home") << "CD comes before RECORD";
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
}

TEST_F(RULES, ORDER_OF_THE_MACRO_COMMANDS_WHILE_RECORDING) {
  ANSWERED("RECORD first");
  EXPECT_NE(ANSWERED("ENDRECORD second").find("***** Macro recording intiated"), std::string::npos);
  EXPECT_EQ(CONSOLE.MACRO_FILE.NAME, "second.mcr");
  EXPECT_EQ(ANSWERED("MACROEND second"),
            "***** Macro recording stopped\n*****\"second\" behind the command is not used\n");
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
}

TEST_F(RULES, DIR_LISTS_THE_FOLDER_THAT_IS_NAMED) {
  PUT_FILE("home/only.cif", "");
  testing::internal::CaptureStdout();
  EXPECT_EQ(ANSWERED("dir home"), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "only.cif\n");
}

// Both as on systems that write paths with "\\".
TEST_F(RULES, BACKSLASHES_SEPARATE_FOLDERS) {
  fs::create_directories("UPPER/SUB");
  ANSWERED("cd upper\\sub");
  EXPECT_EQ(fs::current_path(), folder / "UPPER/SUB");
  PUT_FILE("a\\run.mcr", "HELP\n");
  SAID("", [] { INIT_CONSOLE("a\\run"); });
  EXPECT_EQ(CONSOLE.MACRO_STATE, 1);
  EXPECT_EQ(CONSOLE.MACRO_FILE.NAME, "a\\run.mcr")
      << "no directory is put before one that is named";
}

// The first word alone is looked at, anywhere in it.
TEST_F(RULES, SYSTEM_MODE_ENDS_BY_ITS_FIRST_WORD) {
  EXPECT_EQ(COMMANDED("SYS\necho PROG > out.txt\nunprogrammed\nREAD\n"), 1);
  EXPECT_EQ(TEXT_OF("out.txt"), "PROG\n");
}

}  // namespace
