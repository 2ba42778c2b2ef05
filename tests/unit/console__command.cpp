// Tests of the command interpreter: built-ins, abbreviations, help, prompt.
#include <gtest/gtest.h>

#include <algorithm>

#include "console_code/kva_utilities/text.h"
#include "tests/unit/console__interpreter.h"

using namespace CONSOLE_TESTS;

namespace {

const std::string ambiguous = "*****Ambiguous command\n";

// ---- the table ----

TEST_F(INTERPRETER, WORD_GIVES_ITS_NUMBER_AND_THE_REST_STAYS_PENDING) {
  EXPECT_EQ(COMMANDED("  read   my file.cif  \n"), 1);
  EXPECT_EQ(CONSOLE.INSTRING, "my file.cif");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 11);
  EXPECT_EQ(CONSOLE.INCOM, "READ");
  EXPECT_EQ(said, "\nG_MARA-6.1>");
}

TEST_F(INTERPRETER, BLANK_LINES_PROMPT_AGAIN) {
  EXPECT_EQ(COMMANDED("\n    \n\t\nlist\n"), 3);
  EXPECT_EQ(said, "\nG_MARA-6.1>\nG_MARA-6.1>\nG_MARA-6.1>\nG_MARA-6.1>");
}

TEST_F(INTERPRETER, TAB_ENDS_THE_WORD) {
  EXPECT_EQ(COMMANDED("list\tatoms\n"), 3);
  EXPECT_EQ(CONSOLE.INSTRING, "atoms");
}

TEST_F(INTERPRETER, EVERY_WORD_IN_FULL) {
  for (int i = 1; i < CONSOLE.COMMANDS.COUNT(); ++i)
    EXPECT_EQ(COMMANDED(CONSOLE.COMMANDS(i).CLIST + "\n"), i);
}

TEST_F(INTERPRETER, UNIQUE_SINGLE_LETTERS) {
  EXPECT_EQ(COMMANDED("R\n"), NUMBER_OF("READ"));
  EXPECT_EQ(COMMANDED("w\n"), NUMBER_OF("WRITE"));
  EXPECT_EQ(COMMANDED("L\n"), NUMBER_OF("LIST"));
  EXPECT_EQ(COMMANDED("E\n"), NUMBER_OF("EXPORT"));
  EXPECT_EQ(COMMANDED("O\n"), NUMBER_OF("OMIT"));
  EXPECT_EQ(COMMANDED("a\n"), NUMBER_OF("ATOMEDIT"));
  EXPECT_EQ(COMMANDED("P\n"), NUMBER_OF("PTEDIT"));
  EXPECT_EQ(COMMANDED("ex\n"), NUMBER_OF("EXPORT"));
}

TEST_F(INTERPRETER, AMBIGUOUS_LETTERS) {
  for (const char* word : {"S", "c", "T", "U"}) EXPECT_EQ(ANSWERED(word), ambiguous) << word;
  EXPECT_EQ(COMMANDED("tr\n"), NUMBER_OF("TRANSFORM"));
  EXPECT_EQ(COMMANDED("so\n"), NUMBER_OF("SORT"));
  EXPECT_EQ(COMMANDED("us\n"), NUMBER_OF("USE"));
}

TEST_F(INTERPRETER, COMPLETE_WORD_IS_AMBIGUOUS_WHEN_IT_BEGINS_ANOTHER) {
  CONSOLE.COMMANDS.ADD({"LISTING", "Longer", 1, false});
  EXPECT_EQ(ANSWERED("LIST"), ambiguous);
}

TEST_F(INTERPRETER, UNKNOWN_WORDS_ARE_IGNORED_WITHOUT_A_MESSAGE) {
  for (const std::string& word :
       {std::string("LISTX"), std::string("XX"), std::string("foo"), std::string("123"),
        std::string(255, 'q'), std::string("\xC3\xA4\xFF"), std::string("*"), std::string("|")})
    EXPECT_EQ(ANSWERED(word), "") << word;
}

TEST_F(INTERPRETER, EMPTY_TABLE_HAS_NO_COMMAND) {
  CONSOLE.COMMANDS.CLEAR();
  EXPECT_EQ(ANSWERED("READ"), "");
}

TEST_F(INTERPRETER, RESERVED_COMMAND_IS_REFUSED_UNTIL_IT_IS_UNLOCKED) {
  EXPECT_EQ(ANSWERED("TEST"), "");
  EXPECT_EQ(COMMANDED("TA\n"), NUMBER_OF("TABLE"));
  CONSOLE.RESERVED_ON = true;
  EXPECT_EQ(COMMANDED("TEST\n"), 18);
  EXPECT_EQ(COMMANDED("te\n"), 18);
}

TEST_F(INTERPRETER, RESERVED_COMMAND_MAKES_AN_ABBREVIATION_AMBIGUOUS_ONLY_WHEN_UNLOCKED) {
  EXPECT_EQ(ANSWERED("T"), ambiguous);
  CONSOLE.RESERVED_ON = true;
  EXPECT_EQ(ANSWERED("T"), ambiguous);
  CONSOLE.COMMANDS.CLEAR();
  CONSOLE.COMMANDS.ADD({"TABLE", "A command", 1, false});
  CONSOLE.COMMANDS.ADD({"TEST", "A reserved one", 1, true});
  EXPECT_EQ(ANSWERED("T"), ambiguous);
  CONSOLE.RESERVED_ON = false;
  EXPECT_EQ(COMMANDED("T\n"), 1);
}

// ---- the end ----

TEST_F(INTERPRETER, EXIT_GIVES_0_AND_X_MINUS_1) {
  for (const char* word : {"EXIT", "exit", "EXITS", "exitnow", "noexit", "EXIT now"})
    EXPECT_EQ(COMMANDED(std::string(word) + "\n"), 0) << word;
  EXPECT_EQ(COMMANDED("X\n"), -1);
  EXPECT_EQ(COMMANDED("x rest\n"), -1);
}

TEST_F(INTERPRETER, EXIT_WORKS_FROM_A_MACRO) {
  START_MACRO_WITH("EXIT\n");
  EXPECT_EQ(COMMANDED(""), 0);
}

// ---- test order ----

TEST_F(INTERPRETER, TEST_ORDER_SETTLES_A_WORD_THAT_HOLDS_TWO) {
  // TIMELOG is LOG: it asks for the log's name and does not touch the time.
  EXPECT_EQ(ANSWERED("TIMELOG\n"), "\n\n     Open Log file (*.log):");
  EXPECT_FALSE(CONSOLE.TIME_IN_PROMPT);
  EXPECT_EQ(COMMANDED("HELPEXIT\n"), 0);
  COMMANDED("XTIME\nX\n");  // X is the whole word or nothing
  EXPECT_TRUE(CONSOLE.TIME_IN_PROMPT);
  CONSOLE.TIME_IN_PROMPT = false;
  // SYSTIME holds TIME, which is tested before SYS.
  COMMANDED("SYSTIME\nX\n");
  EXPECT_TRUE(CONSOLE.TIME_IN_PROMPT);
  EXPECT_EQ(CONSOLE.SYSTEM_MODE, 0);
}

TEST_F(INTERPRETER, DIR_ANYWHERE_IN_THE_WORD_IS_DIR) {
  testing::internal::CaptureStdout();
  fs::create_directory("only_this");
  EXPECT_EQ(ANSWERED("CHECKDIR only_this/.."), "");
  const std::string listed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(listed, "home\nlocal\nonly_this\n");
}

TEST_F(INTERPRETER, DIR_WITHOUT_ARGUMENT_LISTS_WHERE_WE_ARE) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(ANSWERED("dir"), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "home\nlocal\n");
}

TEST_F(INTERPRETER, CD_CHANGES_AND_SHOWS_THE_DIRECTORY) {
  EXPECT_EQ(ANSWERED("CD home"),
            "\n    Current working directory is now: " + (folder / "home").string() + "\n\n");
  EXPECT_EQ(fs::current_path(), folder / "home");
  EXPECT_EQ(ANSWERED("cd"),
            "\n    Current working directory is now: " + (folder / "home").string() + "\n\n");
  EXPECT_EQ(ANSWERED("cd .."),
            "\n    Current working directory is now: " + folder.string() + "\n\n");
}

TEST_F(INTERPRETER, INFO_WRITES_THE_HEADER) {
  const std::string header = ANSWERED("info");
  EXPECT_EQ(std::count(header.begin(), header.end(), '\n'), 24);
  EXPECT_EQ(header.substr(0, 101), std::string(100, '*') + "\n");
}

TEST_F(INTERPRETER, MODE_ASKS_FOR_THE_MODE) {
  ANSWERED("MODE\n1");
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 1);
}

// ---- prompt ----

TEST_F(INTERPRETER, VERSION_IS_ADDED_TO_THE_STEM) {
  CONSOLE.CMD_PROMPT = "G_MARA";
  SET_CMD_PROMPT();
  EXPECT_EQ(CONSOLE.CMD_PROMPT, "G_MARA-6.1>");
}

TEST_F(INTERPRETER, PROMPT_ENDS_AT_THE_FIRST_MARK) {
  CONSOLE.CMD_PROMPT = "AB>CD>";
  EXPECT_EQ(SET_CMD_PROMPT_DATE(), "AB>");
  CONSOLE.CMD_PROMPT = "AB  ";
  EXPECT_EQ(SET_CMD_PROMPT_DATE(), "AB>");
  CONSOLE.CMD_PROMPT = "";
  EXPECT_EQ(SET_CMD_PROMPT_DATE(), ">");
}

TEST_F(INTERPRETER, TIME_FLIPS_DATE_AND_TIME_IN_THE_PROMPT) {
  COMMANDED("TIME\nX\n");
  EXPECT_TRUE(CONSOLE.TIME_IN_PROMPT);
  std::string before;
  std::string prompt;
  do {  // once more if the minute turns meanwhile
    before = KVA_UTILITIES::DATE_KVA() + " " + KVA_UTILITIES::CLOCK_KVA().substr(0, 5);
    prompt = SET_CMD_PROMPT_DATE();
  } while (before != KVA_UTILITIES::DATE_KVA() + " " + KVA_UTILITIES::CLOCK_KVA().substr(0, 5));
  EXPECT_EQ(prompt, before + " G_MARA-6.1>");
  COMMANDED("time\nX\n");
  EXPECT_FALSE(CONSOLE.TIME_IN_PROMPT);
  EXPECT_EQ(SET_CMD_PROMPT_DATE(), "G_MARA-6.1>");
}

// The time stands before the prompt of the system mode as well. There TIME is a line for the shell.
TEST_F(INTERPRETER, TIME_STANDS_IN_THE_PROMPT_OF_THE_SYSTEM_MODE) {
  std::string before;
  do {  // once more if the minute turns meanwhile
    CONSOLE.TIME_IN_PROMPT = false;
    before = KVA_UTILITIES::DATE_KVA() + " " + KVA_UTILITIES::CLOCK_KVA().substr(0, 5);
    COMMANDED("TIME\nSYS\ntime true 2> time.txt\nPROG\nX\n");
  } while (before != KVA_UTILITIES::DATE_KVA() + " " + KVA_UTILITIES::CLOCK_KVA().substr(0, 5));
  EXPECT_EQ(said, "\nG_MARA-6.1>\n" + before + " G_MARA-6.1>" +
                      "     To exit from system and return to the program, type PROG\n" + "\n" +
                      before + " SYSTEM>\n" + before + " SYSTEM>\n" + before + " G_MARA-6.1>");
  EXPECT_TRUE(CONSOLE.TIME_IN_PROMPT);
  EXPECT_TRUE(fs::exists("time.txt")) << "the shell has run the line";
}

// ---- reserved commands ----

TEST_F(INTERPRETER, PRIV_OPENS_WITH_THE_WORD_AND_CLOSES_AT_ONCE) {
  EXPECT_EQ(ANSWERED("PRIV\nwrong"), "\n     Password:");
  EXPECT_FALSE(CONSOLE.RESERVED_ON);
  ANSWERED("PRIV\n");
  EXPECT_FALSE(CONSOLE.RESERVED_ON);
  EXPECT_EQ(ANSWERED("PRIV\n  Kompressa"), "\n     Password:");
  EXPECT_TRUE(CONSOLE.RESERVED_ON);
  EXPECT_EQ(ANSWERED("priv"), "");
  EXPECT_FALSE(CONSOLE.RESERVED_ON);
}

// ---- system mode ----

TEST_F(INTERPRETER, SYSTEM_MODE_PASSES_WHOLE_LINES_TO_THE_SHELL_UNTIL_PROG) {
  EXPECT_EQ(COMMANDED("SYS\necho EXIT > out.txt\n\nPROGRESS\nX\n"), -1);
  EXPECT_EQ(said,
            "\nG_MARA-6.1>     To exit from system and return to the program, type PROG\n"
            "\nSYSTEM>\nSYSTEM>\nSYSTEM>\nG_MARA-6.1>");
  EXPECT_EQ(TEXT_OF("out.txt"), "EXIT\n");
  EXPECT_EQ(CONSOLE.SYSTEM_MODE, 0);
}

TEST_F(INTERPRETER, SYSTEM_MODE_DOES_NOT_RUN_HALF_A_LINE) {
  COMMANDED("SYS\ntouch made " + std::string(250, 'x') + "\nPROG\nX\n");
  EXPECT_FALSE(fs::exists("made"));
  EXPECT_NE(said.find("\n\n*****The command does not fit on a line: nothing is run\n\nSYSTEM>"),
            std::string::npos)
      << said;
}

TEST_F(INTERPRETER, SYSTEM_MODE_KNOWS_NO_COMMANDS_BUT_CD) {
  COMMANDED("system\ntrue EXIT\ncd home\nprog\nX\n");
  EXPECT_EQ(icom, -1);
  EXPECT_EQ(said.find("working directory"), std::string::npos);
  EXPECT_EQ(fs::current_path(), folder / "home");
}

// ---- help ----

TEST_F(INTERPRETER, HELP_LISTS_GROUPS_IN_TITLE_ORDER) {
  CONSOLE.COMMANDS.CLEAR();
  CONSOLE.COMMANDS.ADD({"READ", "Read it  ", 2, false});
  CONSOLE.COMMANDS.ADD({"SHOW", "Show it", 1, false});
  CONSOLE.COMMANDS.ADD({"SECRET", "Hidden", 1, true});
  CONSOLE.COMMANDS.ADD({"LONGCOMMAN", "Ten letters", 0, false});
  CONSOLE.COMMANDS.ADD({"WRITE", "Write it", 2, false});
  CONSOLE.COMMANDS.ADD({"NOWHERE", "Group without a title", 3, false});
  CONSOLE.COMMANDS.ADD({"HIDDEN", "Alone in its group", 4, true});
  CONSOLE.CLIST_GROUP_TITLE.CLEAR();
  for (const char* title : {"Parameters  ", "Files", "  ", "All hidden", "None"})
    CONSOLE.CLIST_GROUP_TITLE.ADD(title);
  const std::string expected =
      "\n"
      "        ******General Commands******\n"
      "           EXIT     HELP     INFO    LOG     MODE\n"
      "           LONGCOMMAN:  Ten letters\n"
      "\n"
      "        ******Parameters******\n"
      "           SHOW      :  Show it\n"
      "\n"
      "        ******Files******\n"
      "           READ      :  Read it\n"
      "           WRITE     :  Write it\n"
      "\n"
      "        ******System & Macro Commands******\n"
      "           TIME     RECORD   MACRO     END\n"
      "           SYS      DIR       CD\n";
  EXPECT_EQ(ANSWERED("help"), expected);
  EXPECT_EQ(ANSWERED("HELPME"), expected);

  CONSOLE.RESERVED_ON = true;
  EXPECT_NE(ANSWERED("help").find("           SECRET    :  Hidden\n"), std::string::npos);
}

TEST_F(INTERPRETER, HELP_LEAVES_OUT_A_DISABLED_MODE) {
  CONSOLE.OPERATION_MODE = -1;
  EXPECT_NE(ANSWERED("help").find("           EXIT     HELP     INFO    LOG\n"), std::string::npos);
}

// ---- log ----

TEST_F(INTERPRETER, LOG_HOLDS_THE_WHOLE_DIALOGUE) {
  COMMANDED("LOG run\nfoo\nS\nLIST atoms\n");
  const std::string log = TEXT_OF("run.log");
  const std::string tail =
      "\nG_MARA-6.1>foo\n"
      "\nG_MARA-6.1>S\n*****Ambiguous command\n"
      "\nG_MARA-6.1>LIST atoms\n";
  ASSERT_GT(log.size(), tail.size());
  EXPECT_EQ(log.substr(log.size() - tail.size()), tail);
}

}  // namespace
