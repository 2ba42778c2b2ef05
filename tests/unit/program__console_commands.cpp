// Runs the program as a process and reads what its commands say: help, the command table, and the
// log of a dialogue.
#include "program__console.h"

using namespace PROGRAM_TESTS;

namespace {

const std::string help_text =
    "        ******General Commands******\n"
    "           EXIT     HELP     INFO    LOG     MODE\n"
    "\n"
    "        ******Configuration******\n"
    "           SHOW      :  Show program parameters\n"
    "           SET       :  Set program parameters\n"
    "\n"
    "        ******File Input/Output******\n"
    "           READ      :  Read in crystal data from file\n"
    "           WRITE     :  Write crystal data to file\n"
    "           EXPORT    :  Export data\n"
    "\n"
    "        ******Data management******\n"
    "           CLEAR     :  Clear all data\n"
    "           USE       :  Use data blocks\n"
    "           OMIT      :  Omit data blocks\n"
    "           SORT      :  Sort data blocks\n"
    "           UNSORT    :  Unsort data blocks\n"
    "           CHECK     :  Check CIF contents\n"
    "           ATOMEDIT  :  Edit atom data and flags\n"
    "           PTEDIT    :  Edit the P and/or T data\n"
    "TEST"
    "\n"
    "        ******Calculations & Results******\n"
    "           LIST      :  List crystal data\n"
    "           CALC      :  Calculate structural parameters\n"
    "           TRANSFORM :  Transform atom coordinates\n"
    "           TABLE     :  List crystal data with esds\n"
    "\n"
    "        ******Measures, sheets and graphs******\n"
    "           MEASURE   :  Define and list measures\n"
    "           CSV       :  Write data as a sheet\n"
    "           GRAPH     :  Draw a graph\n"
    "           FIT       :  Fit lines against P or T\n"
    "\n"
    "        ******System & Macro Commands******\n"
    "           TIME     RECORD   MACRO     END\n"
    "           SYS      DIR       CD\n"
    "\n"
    "G_MARA-6.1>";

// The help text with or without the reserved command.
std::string HELP_TEXT(const std::string& test_line) {
  std::string text = help_text;
  return text.replace(text.find("TEST"), 4, test_line);
}

TEST_F(PROGRAM, HELP_SHOWS_THE_TABLE_BY_GROUPS) {
  const RUN_RESULT run = RUN("HELP\nEXIT\n");
  EXPECT_EQ(FROM_LINE(run.SAID, "        ******General"), HELP_TEXT(""));
}

TEST_F(PROGRAM, TEST_COMMAND_IS_HIDDEN_AND_REFUSED_UNTIL_UNLOCKED) {
  RUN_RESULT run = RUN("TEST\nEXIT\n");
  EXPECT_EQ(run.SAID.find("Test routine"), std::string::npos);
  run = RUN("PRIV\nkompressa\nHELP\nEXIT\n");
  EXPECT_EQ(FROM_LINE(run.SAID, "        ******General"),
            HELP_TEXT("           TEST      :  Test routine\n"));
  run = RUN("PRIV\nkompressa\nTEST\nEXIT\n");
  // The text has 38 characters: column (100 - 38) / 2 = 31, so 30 stars before it; one blank.
  EXPECT_NE(run.SAID.find("\n" + std::string(30, '*') + "Test routine to look at BVS parameters " +
                          std::string(31, '*') + "\n\n"),
            std::string::npos);
}

// One session with a line of words for each command. What a command says behind its prompt is told
// from what the others say by a text of its own, which stands nowhere else.
TEST_F(PROGRAM, EVERY_WORD_OF_THE_TABLE_LEADS_TO_ITS_HANDLER) {
  PUT_FILE(work / "two.cif", "data_first\n_cell_length_a 5\ndata_second\n_cell_length_a 5\n");
  struct CASE {
    std::string TYPED;
    std::string TELLING;  // text that only this command's handler writes
  };
  const std::string first = "  1: first         : 298.0   0.000         1\n";
  const std::string second = "  2: second        : 298.0   0.000         1\n";
  const std::string heading = "       BLOCKNAME      T        P         IUSE\n";
  const std::vector<CASE> cases{
      {"READ cif two\nY\n", "\nThe following  2 crystal structures were read from the file:\n"},
      {"LIST\n\n", "     Possible selections for List:\n"},
      {"SHOW\n", "Current Settings"},
      {"SET\n\n", "     Possible selections for Setting program parameters:\n"},
      {"EXPORT\nN\n", "This routine allows you to export data to Kompressa data files"},
      {"USE\n\n", "Input the datablock numbers to use, <CR> to exit:" + heading + first + second},
      {"OMIT\n\n", "Input the datablock numbers to omit, <CR> to exit:" + heading + first + second},
      // Equal temperatures keep their order, which is then turned round.
      {"SORT\nT\nD\n", "Sort increasing or decreasing? (I/D) <I>?" + heading + second + first},
      {"UNSORT\n", "G_MARA-6.1>" + heading + first + second},
      {"CALC\n\n", "     Possible selections for Calculations:\n"},
      {"TRANSFORM\n\n", "Transformation of atom coordinates"},
      {"CHECK\n\n", "This routine just checks for the presence of items in a CIF"},
      {"TABLE\n\n", "     Possible selections for Table:\n"},
      {"ATOMEDIT\nEXIT\n", "Edit utility for atom entries"},
      {"PTEDIT\n\n", "This command allows you to reset the P and/or T of the datablocks"},
      {"PRIV\nkompressa\n", "     Password:"},
      {"TEST\n", "Test routine to look at BVS parameters"},
      {"WRITE cif new\nN\n", "Only crystal structures from the following USED datablocks"},
      {"CLEAR\n", "     All data blocks deleted from list\n"},
  };
  std::string session;
  for (const CASE& c : cases) session += c.TYPED;
  const RUN_RESULT run = RUN(session + "EXIT\n");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(run.ERRORS, "");
  const std::string prompt = "G_MARA-6.1>";
  std::size_t at = run.SAID.find(prompt);
  for (const CASE& c : cases) {
    const std::size_t end = run.SAID.find(prompt, at + 1);
    ASSERT_NE(end, std::string::npos) << c.TYPED;
    EXPECT_NE(run.SAID.substr(at, end - at).find(c.TELLING), std::string::npos) << c.TYPED;
    EXPECT_EQ(COUNT_OF(run.SAID, c.TELLING), 1u) << c.TYPED;
    at = end;
  }
  EXPECT_EQ(run.SAID.substr(at), prompt) << "each command has taken its own lines and no more";
}

TEST_F(PROGRAM, ABBREVIATIONS_OF_THE_TABLE) {
  for (const char* word : {"S", "C", "T", "U", "TR TABLE"}) {
    const RUN_RESULT run = RUN(std::string(word) + "\nEXIT\n");
    const bool unique = std::string_view(word) == "TR TABLE";
    EXPECT_EQ(COUNT_OF(run.SAID, "*****Ambiguous command\n"), unique ? 0u : 1u) << word;
  }
}

TEST_F(PROGRAM, EVERY_COMMAND_COMES_BACK_WITHOUT_DATA) {
  for (const char* word : {"WRITE", "LIST", "SHOW", "SET", "EXPORT", "CLEAR", "USE", "OMIT", "SORT",
                           "UNSORT", "CALC", "TRANSFORM", "TABLE", "PTEDIT"}) {
    const RUN_RESULT run = RUN(std::string(word) + "\n\n\n\n\n\nEXIT\n");
    EXPECT_EQ(run.STATUS, 0) << word;
    EXPECT_EQ(run.ERRORS, "") << word;
  }
}

TEST_F(PROGRAM, LOG_HOLDS_WHAT_THE_CONSOLE_SHOWED_AND_WHAT_WAS_TYPED) {
  const RUN_RESULT run = RUN("LOG run\nMODE\nabc\n\nS\nfoo | bar\nHELP\nEXIT\n");
  const std::string log = TEXT_OF(work / "run.log");
  const std::string expected =
      "\n"
      "G_MARA-6.1>MODE\n"
      "\n"
      "Now running in Default Mode\n"
      "     Available modes are:  0 = Default user, 1 = Expert, 2 = Debug\n"
      "\n"
      "     Input operation mode:abc\n"
      "\n"
      "*****WARNING: Illegal value input, try again:\n"
      "\n"
      "     Input operation mode:\n"
      "     No change in operation mode\n"
      "\n"
      "G_MARA-6.1>S\n"
      "*****Ambiguous command\n"
      "\n"
      "G_MARA-6.1>foo | bar\n"
      "\n"
      "G_MARA-6.1>HELP\n"
      "\n" +
      HELP_TEXT("") + "EXIT\n";
  ASSERT_GT(log.size(), expected.size());
  EXPECT_EQ(log.substr(log.size() - expected.size()), expected);
  // Before it: the opening lines and the header.
  const std::string head =
      "\nSuccessfully opened Log file\nNamed run.log\n\n" + std::string(100, '*') + "\n";
  EXPECT_EQ(log.substr(0, head.size()), head);
}

}  // namespace
