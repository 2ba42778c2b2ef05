// Tests of macros by command: recording, replay, failures, and macros that start one another.
#include <gtest/gtest.h>

#include "tests/unit/console__interpreter.h"

using namespace CONSOLE_TESTS;

namespace {

using MACROS = INTERPRETER;

std::string OPENED_MACRO(const std::string& name) {
  return "\n\nSuccessfully opened file for macros\nNamed " + name + "\n\n";
}

TEST_F(MACROS, RECORDING_FROM_START_TO_END) {
  EXPECT_EQ(ANSWERED("RECORD session"), "       Open a file to record the commands\n" +
                                            OPENED_MACRO("session.mcr") +
                                            "***** Macro recording intiated\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, -1);
  EXPECT_EQ(ANSWERED("foo  bar"), "");
  EXPECT_EQ(ANSWERED(""), "");
  EXPECT_EQ(ANSWERED("end"), "***** Macro recording stopped\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  // The X lines are those that end each piece of the dialogue here.
  EXPECT_EQ(TEXT_OF("session.mcr"), "X\nfoo  bar\nX\n\nX\nend\n");
}

TEST_F(MACROS, ANY_WORD_WITH_END_IN_IT_STOPS_A_RECORDING_AND_NOTHING_ELSE) {
  ANSWERED("RECORD session");
  EXPECT_EQ(ANSWERED("APPEND"), "***** Macro recording stopped\n");
  EXPECT_EQ(ANSWERED("END"), "");
  EXPECT_EQ(ANSWERED("APPEND"), "");
}

TEST_F(MACROS, END_FALLS_THROUGH_TO_THE_NEXT_TESTS_WHEN_NOTHING_IS_RECORDED) {
  PUT_FILE("run.mcr", "X\n");
  EXPECT_EQ(COMMANDED("ENDMACRO run\n"), -1);
  CONSOLE.COMMANDS.ADD({"ENDING", "A command", 1, false});
  EXPECT_EQ(COMMANDED("ENDING\n"), 19);
}

TEST_F(MACROS, A_CIF_IS_NO_MACRO) {
  const std::string refusal =
      "\n*****This is a CIF, not a macro: READ cif reads it\n***** Failed to start macro\n";
  for (const char* text : {"data_a\n", "\n  # by hand\n\n  DATA_quartz\n_cell_length_a 5\n",
                           " \t \n\t# by hand\n\tdata_quartz\n"}) {
    PUT_FILE("a.cif", text);
    EXPECT_EQ(ANSWERED("MACRO a.cif"), refusal) << text;
    EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
    EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
  }
  PUT_FILE("run.mcr", "# comment\nX\ndata_a\n");
  EXPECT_EQ(COMMANDED("MACRO run\n"), -1);
}

TEST_F(MACROS, RECORDING_TO_ANOTHER_KIND_OF_FILE_FAILS_IN_A_MACRO_TOO) {
  PUT_FILE("run.mcr", "RECORD a.cif\nEND\n");
  EXPECT_EQ(COMMANDED("MACRO run\nX\n"), -1);
  EXPECT_TRUE(
      said.ends_with("       Open a file to record the commands\n"
                     "\n*****The file a.cif is of another kind\n"
                     "***** Macro recording FAILED to be intiated\n"
                     "\nG_MARA-6.1>"))
      << said;
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
}

TEST_F(MACROS, RECORDING_WITHOUT_A_NAME_FAILS) {
  EXPECT_EQ(ANSWERED("RECORD\n"),
            "       Open a file to record the commands\n"
            "\n\n     Open file for macros (*.mcr):***** Macro recording FAILED to be intiated\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
}

TEST_F(MACROS, RECORDING_OVER_AN_OLD_FILE_ASKS) {
  PUT_FILE("old.mcr", "content\n");
  EXPECT_EQ(ANSWERED("RECORD old\ny"),
            "       Open a file to record the commands\n"
            "\n*****File old.mcr exists\nDo you want to overwrite it (Y/N) <N>?"
            "\nSuccessfully opened file for macros\nNamed old.mcr\n\n"
            "***** Macro recording intiated\n");
}

TEST_F(MACROS, MACRO_RUNS_AND_GOES_BACK_TO_THE_CONSOLE) {
  PUT_FILE("run.mcr", "foo\n\nEND\n");
  EXPECT_EQ(COMMANDED("MACRO run\nLIST\n"), 3);
  EXPECT_EQ(said, "\nG_MARA-6.1>" + OPENED_MACRO("run.mcr") +
                      "***** Running macro\n"
                      "\nG_MARA-6.1>foo\n"
                      "\nG_MARA-6.1>\n"
                      "\nG_MARA-6.1>END\n"
                      "\nG_MARA-6.1>\n***** Macro completed\n"
                      "\nG_MARA-6.1>");
}

TEST_F(MACROS, MACRO_THAT_IS_NOT_FOUND_FAILS) {
  EXPECT_EQ(ANSWERED("MACRO none\n"),
            "\n*****File none.mcr does not exist, but is required to pre-exist\n"
            "\n     Open file for macros (*.mcr):***** Failed to start macro\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
}

TEST_F(MACROS, MACRO_IN_A_MACRO_REPLACES_IT) {
  PUT_FILE("first.mcr", "MACRO second\nLIST\n");
  PUT_FILE("second.mcr", "READ\n");
  EXPECT_EQ(COMMANDED("MACRO first\n"), 1);
  EXPECT_EQ(COMMANDED("X\n"), -1);  // LIST of the first file is never read
  EXPECT_NE(said.find("***** Macro completed"), std::string::npos);
}

TEST_F(MACROS, RECORD_IN_A_MACRO_ENDS_THE_MACRO_AND_RECORDS) {
  PUT_FILE("first.mcr", "RECORD session\nLIST\n");
  EXPECT_EQ(COMMANDED("MACRO first\nREAD\n"), 1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, -1);
  EXPECT_EQ(TEXT_OF("session.mcr"), "READ\n");
}

TEST_F(MACROS, MACRO_WHILE_RECORDING_ENDS_THE_RECORDING_AND_RUNS) {
  PUT_FILE("run.mcr", "READ\n");
  EXPECT_EQ(COMMANDED("RECORD session\nMACRO run\n"), 1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 1);
  EXPECT_EQ(TEXT_OF("session.mcr"), "MACRO run\n");
}

TEST_F(MACROS, FAILED_MACRO_IN_A_MACRO_LEAVES_NO_MACRO) {
  PUT_FILE("first.mcr", "MACRO none\nLIST\n");
  EXPECT_EQ(COMMANDED("MACRO first\nX\n"), -1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_NE(said.find("***** Failed to start macro\n"), std::string::npos);
}

TEST_F(MACROS, FAILED_MACRO_WHILE_RECORDING_ENDS_THE_RECORDING) {
  EXPECT_EQ(COMMANDED("RECORD session\nfoo\nMACRO none\n\nbar\nEND\nX\n"), -1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
  EXPECT_EQ(TEXT_OF("session.mcr"), "foo\nMACRO none\n");
  EXPECT_NE(said.find("***** Failed to start macro\n\nG_MARA-6.1>\nG_MARA-6.1>\nG_MARA-6.1>"),
            std::string::npos)
      << "END does nothing any more";
}

TEST_F(MACROS, FAILED_RECORDING_IN_A_REPLAY_ENDS_THE_REPLAY) {
  PUT_FILE("first.mcr", "RECORD none/session\nfoo\n");
  EXPECT_EQ(COMMANDED("MACRO first\nX\n"), -1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
  EXPECT_EQ(said.find("foo"), std::string::npos) << "the rest of the macro is never read";
  EXPECT_TRUE(said.ends_with("***** Macro recording FAILED to be intiated\n\nG_MARA-6.1>"));
  EXPECT_EQ(TEXT_OF("first.mcr"), "RECORD none/session\nfoo\n");
}

TEST_F(MACROS, RECORDING_IN_A_READ_ONLY_FOLDER_ASKS_FOR_ANOTHER_NAME) {
  AS_A_COMMON_USER([this] {
    LOCK_FOLDER("locked");
    EXPECT_EQ(ANSWERED("RECORD locked/rec\nrec"),
              "       Open a file to record the commands\n"
              "\nError trying to open file file for macros\nNamed locked/rec.mcr try again\n"
              "\n     Open file for macros (*.mcr):"
              "\nSuccessfully opened file for macros\nNamed rec.mcr\n\n"
              "***** Macro recording intiated\n");
    EXPECT_TRUE(fs::is_empty("locked"));
    EXPECT_EQ(TEXT_OF("rec.mcr"), "X\n");
  });
}

TEST_F(MACROS, READ_ONLY_MACRO_RUNS) {
  AS_A_COMMON_USER([this] {
    PUT_FILE("run.mcr", "READ\n");
    fs::permissions("run.mcr", fs::perms(0400));
    EXPECT_EQ(COMMANDED("MACRO run\n"), 1);
  });
}

// Nothing but zeros, and no end of line.
TEST_F(MACROS, MACRO_WITHOUT_A_LINE_END_IS_ABORTED) {
  fs::create_symlink("/dev/zero", "zero.mcr");
  EXPECT_EQ(COMMANDED("MACRO zero\nX\n"), -1);
  EXPECT_TRUE(said.ends_with(
      "\n***** Macro aborted because of reading error from macro file\n\nG_MARA-6.1>"));
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
}

// ---- arguments ----

const std::string called = "\nG_MARA-6.1>";

TEST_F(MACROS, WORDS_BEHIND_THE_NAME_STAND_FOR_DOLLAR_NUMBERS) {
  PUT_FILE("run.mcr", "LIST $1 $2$1 $ $$ $0 $a 5$\nLIST $$2 $12\n");
  EXPECT_EQ(COMMANDED("MACRO run \"P 1.cif\" x\n"), 3);
  EXPECT_EQ(CONSOLE.INSTRING, "P 1.cif xP 1.cif $ $$ $0 $a 5$");
  EXPECT_TRUE(
      said.ends_with("***** Running macro\n" + called + "LIST P 1.cif xP 1.cif $ $$ $0 $a 5$\n"))
      << said;
  CLEAR_INPUT();
  EXPECT_EQ(COMMANDED(""), 3);
  EXPECT_EQ(CONSOLE.INSTRING, "$x P 1.cif2");  // nine at most, a digit each
}

TEST_F(MACROS, NAME_OF_A_MACRO_MAY_STAND_IN_QUOTES_OR_BE_THE_WHOLE_LINE) {
  PUT_FILE("my run.mcr", "READ\n");
  PUT_FILE("my.mcr", "LIST $1\n");
  EXPECT_EQ(COMMANDED("MACRO my run\n"), 1);
  EXPECT_EQ(COMMANDED("X\n"), -1);
  EXPECT_EQ(COMMANDED("MACRO my walk\n"), 3);
  EXPECT_EQ(CONSOLE.INSTRING, "walk");
  CLEAR_INPUT();
  EXPECT_EQ(COMMANDED("X\n"), -1);
  EXPECT_EQ(COMMANDED("MACRO \"my run\" walk\n"), 1);
  EXPECT_EQ(CONSOLE.MACRO_ARGUMENTS, std::vector<std::string>{"walk"});
}

TEST_F(MACROS, NAME_AND_WORDS_MAY_BE_TYPED_AT_THE_PROMPT) {
  PUT_FILE("run.mcr", "LIST $1\n");
  EXPECT_EQ(COMMANDED("MACRO\nrun a.cif\n"), 3);
  EXPECT_EQ(CONSOLE.INSTRING, "a.cif");
}

TEST_F(MACROS, WORDS_OF_A_MACRO_GO_TO_ANOTHER_ONLY_IF_THEY_ARE_HANDED_ON) {
  PUT_FILE("first.mcr", "MACRO second $2\n");
  PUT_FILE("second.mcr", "LIST $1\nLIST $2\n");
  EXPECT_EQ(COMMANDED("MACRO first a b\n"), 3);
  EXPECT_EQ(CONSOLE.INSTRING, "b");
  CLEAR_INPUT();
  EXPECT_EQ(COMMANDED("X\n"), -1);
  EXPECT_EQ(said, called + "LIST $2\n" +
                      "*****The macro was given no word for $2: start it as MACRO second.mcr WORD1 "
                      "WORD2\n***** Macro stopped\n" +
                      called);
}

TEST_F(MACROS, MACRO_THAT_LACKS_A_WORD_STOPS_BEFORE_ITS_COMMAND) {
  PUT_FILE("run.mcr", "LIST $1\nREAD\n");
  EXPECT_EQ(
      ANSWERED("MACRO run"),
      OPENED_MACRO("run.mcr") + "***** Running macro\n" + called +
          "LIST $1\n*****The macro was given no word for $1: start it as MACRO run.mcr WORD1\n"
          "***** Macro stopped\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
}

TEST_F(MACROS, MACRO_THAT_LACKS_A_WORD_DROPS_THE_COMMAND_THAT_ASKS) {
  PUT_FILE("run.mcr", "LOG\n$1\n");
  EXPECT_EQ(COMMANDED("MACRO run\n"), 0);
  EXPECT_TRUE(CONSOLE.DROPPED);
  EXPECT_TRUE(
      said.ends_with("LOG\n\n\n     Open Log file (*.log):$1\n"
                     "*****The macro was given no word for $1: start it as MACRO run.mcr WORD1\n"
                     "***** Macro stopped\n"))
      << said;
  EXPECT_FALSE(CONSOLE.LOG_FILE.OPEN);
}

TEST_F(MACROS, DOLLARS_OF_THE_SHELL_ARE_ITS_OWN) {
  PUT_FILE("run.mcr", "SYS\nawk '{print $2}' $1 > out.txt\nPROG\nREAD\n");
  PUT_FILE("a.txt", "1 one\n2 two\n");
  EXPECT_EQ(COMMANDED("MACRO run a.txt\n"), 1);
  EXPECT_EQ(TEXT_OF("out.txt"), "one\ntwo\n");
}

TEST_F(MACROS, LINE_THAT_ITS_WORDS_MAKE_TOO_LONG_IS_CUT_AND_TOLD) {
  PUT_FILE("run.mcr", "LIST " + std::string(200, 'a') + " $1\n");
  EXPECT_EQ(COMMANDED("MACRO run " + std::string(100, 'b') + "\n"), 3);
  EXPECT_EQ(CONSOLE.INSTRING, std::string(200, 'a') + " " + std::string(49, 'b'));
  EXPECT_TRUE(said.ends_with(
      "\n*****WARNING: The line is longer than 255 characters: the rest of it is not read\n\n"))
      << said;
}

// ---- macros that start one another ----

const std::string endless = "***** Macros start one another without end, last ";
const std::string not_started = "\n***** Failed to start macro\n";

TEST_F(MACROS, MACRO_THAT_STARTS_ITSELF_COMES_TO_AN_END) {
  PUT_FILE("first.mcr", "MACRO first\n");
  EXPECT_EQ(COMMANDED("MACRO first\nX\n"), -1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
  EXPECT_TRUE(said.ends_with(endless + "first.mcr" + not_started + "\nG_MARA-6.1>"));
}

TEST_F(MACROS, TWO_MACROS_THAT_START_EACH_OTHER_COME_TO_AN_END) {
  PUT_FILE("first.mcr", "MACRO second\nfoo\n");
  PUT_FILE("second.mcr", "MACRO first\nfoo\n");
  EXPECT_EQ(COMMANDED("MACRO first\nX\n"), -1);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_TRUE(said.ends_with(endless + "first.mcr" + not_started + "\nG_MARA-6.1>"));
  EXPECT_EQ(said.find("foo"), std::string::npos);
}

TEST_F(MACROS, THOUSANDTH_MACRO_OF_A_CHAIN_RUNS_AND_THE_NEXT_DOES_NOT) {
  PUT_FILE("last.mcr", "LIST\n");
  START_MACRO_WITH("MACRO last\n");
  CONSOLE.MACRO_CHAIN = 999;
  EXPECT_EQ(COMMANDED(""), 3);
  EXPECT_EQ(said.find(endless), std::string::npos);
  START_MACRO_WITH("MACRO last\n");
  CONSOLE.MACRO_CHAIN = 1000;
  EXPECT_EQ(COMMANDED("X\n"), -1);
  EXPECT_TRUE(said.ends_with(endless + "last.mcr" + not_started + "\nG_MARA-6.1>"));
}

TEST_F(MACROS, TYPED_LINE_BEGINS_A_NEW_CHAIN) {
  PUT_FILE("run.mcr", "");
  std::string typed;
  for (int i = 0; i < 1001; ++i) typed += "MACRO run\n";
  EXPECT_EQ(COMMANDED(typed + "X\n"), -1);
  EXPECT_EQ(said.find(endless), std::string::npos);
}

// ---- a macro that is kept open ----

// The running macro is kept open when the user does not want another file: nothing may be written
// over it.
TEST_F(MACROS, KEEPING_A_MACRO_OPEN_KEEPS_WHAT_IT_IS) {
  const std::string first = "HELP\nRECORD\nN\nfoo\nINFO\n";
  PUT_FILE("first.mcr", first);
  EXPECT_EQ(COMMANDED("MACRO first\nX\n"), -1);
  EXPECT_EQ(TEXT_OF("first.mcr"), first);
  EXPECT_NE(said.find("***** Macro recording FAILED to be intiated\n"), std::string::npos);
  EXPECT_NE(said.find(">INFO\n"), std::string::npos) << "the replay went on";
  EXPECT_EQ(COMMANDED("RECORD second\nMACRO\nN\nbar\nEND\nX\n"), -1);
  EXPECT_EQ(TEXT_OF("second.mcr"), "MACRO\nN\nbar\nEND\n");
}

}  // namespace
