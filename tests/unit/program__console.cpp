// Runs the program as a process and reads what it says: start-up, settings between runs, end of
// input, closed output, recorded sessions.
#include "program__console.h"
#include "places.h"
#include "sanitized.h"

#include <algorithm>

using namespace PROGRAM_TESTS;

namespace {

// The frame of the header with a text from column 10 on.
std::string FRAMED(const std::string& text) {
  std::string line = "*" + std::string(98, ' ') + "*";
  return line.replace(9, text.size(), text);
}

// ---- start and end ----

TEST_F(PROGRAM, HEADER_SHOWS_THE_IDENTITY) {
  const RUN_RESULT run = RUN("EXIT\n");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(run.ERRORS, "");
  const std::string frame = FRAMED("");
  std::string title = frame;
  title.replace(45, 7, "Gemmara");  // column (100 - 7) / 2 = 46
  const std::vector<std::string> expected{
      std::string(100, '*'),
      frame,
      title,
      frame,
      FRAMED("     Authors: The Gemmara developers"),
      FRAMED("Version date: 1-FEBRUARY-2025"),
      FRAMED("     Version:  6.10"),
      frame,
      frame,
      FRAMED("Reads series of crystal structures from CIF files"),
      FRAMED("Finds the bonds once, on a reference block"),
      FRAMED("Measures the same bonds, angles and polyhedra in every block"),
      FRAMED("Propagates the estimated standard uncertainty of every value"),
      FRAMED("Polyhedral volumes, distortion and sphere-fit parameters"),
      FRAMED("Bond valences and bond-valence sums"),
      FRAMED("Writes tables, CIF and equation-of-state data files"),
      frame,
      frame,
      frame,
      frame,
      frame,
      frame,
      std::string(100, '*'),
      "",
      "G_MARA-6.1>"};
  EXPECT_EQ(LINES(TIMELESS(run.SAID)), expected);
}

TEST_F(PROGRAM, EXIT_AND_X_END_IT_WITH_STATUS_0) {
  EXPECT_EQ(RUN("EXIT\n").STATUS, 0);
  EXPECT_EQ(RUN("x\n").STATUS, 0);
  PUT_FILE(work / "end.mcr", "X\n");
  EXPECT_EQ(RUN("", "end").STATUS, 0);
  EXPECT_EQ(RUN("MACRO end\n").STATUS, 0);
}

TEST_F(PROGRAM, END_OF_INPUT_ENDS_IT_WITH_STATUS_2_AND_KEEPS_THE_LOG) {
  const RUN_RESULT run = RUN("LOG run\nTIME\nTIME\n");
  EXPECT_EQ(run.STATUS, 2);
  EXPECT_EQ(run.ERRORS, "Gemmara: end of input\n");
  const std::string log = TEXT_OF(work / "run.log");
  const std::string tail = "G_MARA-6.1>TIME\n\n";  // and the blank line before the last prompt
  EXPECT_EQ(log.substr(log.size() - tail.size()), tail);
  // The working directory is not saved.
  EXPECT_EQ(TEXT_OF(folder / "local/quorvansoftware/gemmara.ini"), "");
}

TEST_F(PROGRAM, END_OF_INPUT_IN_A_DIALOGUE_ENDS_IT_TOO) {
  for (const char* input :
       {"", "READ\n", "PRIV\n", "MODE\nabc\n", "RECORD\n", "SYS\n", "MACRO none\n", "LOG\n"}) {
    const RUN_RESULT run = RUN(input);
    EXPECT_EQ(run.STATUS, 2) << input;
    EXPECT_EQ(run.ERRORS, "Gemmara: end of input\n") << input;
  }
}

TEST_F(PROGRAM, LAST_LINE_NEEDS_NO_LINE_END) {
  EXPECT_EQ(RUN("EXIT").STATUS, 0);
}

TEST_F(PROGRAM, NO_INPUT_AT_ALL) {
  const RUN_RESULT run = SHELL("\"$GEMMARA\" < /dev/null");
  EXPECT_EQ(run.STATUS, 2);
}

TEST_F(PROGRAM, CLOSED_STREAMS_DO_NOT_HANG_IT) {
  EXPECT_NE(SHELL("timeout 20 \"$GEMMARA\" <&-").STATUS, 124);
  EXPECT_NE(SHELL("timeout 20 \"$GEMMARA\" < /dev/null >&-").STATUS, 124);
  EXPECT_NE(SHELL("printf 'HELP\\nHELP\\nEXIT\\n' | timeout 20 \"$GEMMARA\" > /dev/full").STATUS,
            124);
}

TEST_F(PROGRAM, FILES_ARE_NOT_TAKEN_FOR_CLOSED_STREAMS) {
  PUT_FILE(folder / "input", "LOG run\nHELP\nDIR\nEXIT\n");
  const std::string input = " < '" + (folder / "input").string() + "'";
  SHELL("\"$GEMMARA\"" + input);
  const std::string log = TIMELESS(TEXT_OF(work / "run.log"));
  fs::remove(work / "run.log");
  EXPECT_EQ(SHELL("\"$GEMMARA\"" + input + " >&- 2>&-").STATUS, 0);
  // The directory, which the first run saved, is in the header now.
  std::string again = TIMELESS(TEXT_OF(work / "run.log"));
  const std::string directory = "\n    Current working directory is now: " + work.string() + "\n\n";
  ASSERT_NE(again.find(directory), std::string::npos);
  again.erase(again.find(directory), directory.size());
  EXPECT_EQ(again, log);
}

TEST_F(PROGRAM, OUTPUT_CLOSED_EARLY_IS_NO_ENDLESS_LOOP) {
  const RUN_RESULT run = SHELL("yes HELP | timeout 20 \"$GEMMARA\" | head -n 1; exit 0");
  EXPECT_EQ(run.SAID, std::string(100, '*') + "\n");
}

TEST_F(PROGRAM, HUGE_AND_BINARY_LINES_DO_NO_HARM) {
  const RUN_RESULT run = SHELL(
      "{ head -c 20000000 /dev/zero | tr '\\0' 'x'; echo; head -c 20000 /dev/urandom | tr -d "
      "'\\nxX'; echo; echo X; } | timeout 60 \"$GEMMARA\"");
  EXPECT_TRUE(run.STATUS == 0 || run.STATUS == 2) << run.STATUS;
}

// ---- settings between runs ----

TEST_F(PROGRAM, DIRECTORY_IS_RESTORED_IN_THE_NEXT_RUN) {
  fs::create_directory(work / "My Data");
  RUN("CD My Data\nEXIT\n");
  const RUN_RESULT run = RUN("DIR ..\nEXIT\n");
  const std::string line = "    Current working directory is now: " + (work / "My Data").string();
  EXPECT_EQ(FROM_LINE(run.SAID, "    Current"), line + "\n\n\nG_MARA-6.1>My Data\n\nG_MARA-6.1>");
}

TEST_F(PROGRAM, MODE_IS_SAVED_AND_NOT_READ_BACK) {
  RUN("MODE\n2\nEXIT\n");
  EXPECT_NE(TEXT_OF(folder / "local/quorvansoftware/gemmara.ini").find("MODE  DEBUG "),
            std::string::npos);
  const RUN_RESULT run = RUN("MODE\n\nEXIT\n");
  EXPECT_NE(run.SAID.find("\nNow running in Default Mode\n"), std::string::npos);
}

TEST_F(PROGRAM, WITHOUT_LOCALAPPDATA_A_RUN_STAYS_WHERE_IT_WAS_STARTED) {
  ::unsetenv("LOCALAPPDATA");
  const RUN_RESULT first = RUN("CD ..\nEXIT\n");
  EXPECT_EQ(FROM_LINE(first.SAID, "    Current"),
            "    Current working directory is now: " + folder.string() + "\n\n\nG_MARA-6.1>");
  const fs::path ini = folder / "xdg/quorvansoftware/gemmara.ini";
  EXPECT_EQ(TEXT_OF(ini).substr(0, 7 + folder.string().size()), "WDIR  " + folder.string() + " ");
  const RUN_RESULT second = RUN("DIR\nEXIT\n");
  EXPECT_EQ(second.SAID.find("Current working directory"), std::string::npos);
}

TEST_F(PROGRAM, TWO_AT_ONCE_DO_NOT_SPOIL_THE_SETTINGS) {
  SHELL(
      "for i in 1 2 3 4 5 6 7 8; do printf 'MODE\\n1\\nCD .\\nEXIT\\n' | \"$GEMMARA\" & done; "
      "wait");
  std::string expected_mode = "MODE  EXPERT";
  std::string expected_directory = "WDIR  " + work.string();
  expected_mode.resize(255, ' ');
  expected_directory.resize(255, ' ');
  std::vector<std::string> lines = LINES(TEXT_OF(folder / "local/quorvansoftware/gemmara.ini"));
  std::sort(lines.begin(), lines.end());
  EXPECT_EQ(lines, (std::vector<std::string>{expected_mode, expected_directory}));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder / "local/quorvansoftware"),
                          fs::directory_iterator()),
            1);
}

// ---- macros ----

TEST_F(PROGRAM, HEADER_COMES_BETWEEN_OPENING_A_MACRO_AND_ITS_FIRST_LINE) {
  PUT_FILE(work / "run.mcr", "foo\nEXIT\n");
  const RUN_RESULT run = RUN("", "run");
  const std::string said = TIMELESS(run.SAID);
  const std::string opened = "\n\nSuccessfully opened file for macros\nNamed " +
                             (work / "run.mcr").string() + "\n\n" + std::string(100, '*') + "\n";
  EXPECT_EQ(said.substr(0, opened.size()), opened);
  EXPECT_EQ(FROM_LINE(said, "G_MARA"), "G_MARA-6.1>foo\n\nG_MARA-6.1>EXIT\n");
  EXPECT_EQ(run.STATUS, 0);
}

TEST_F(PROGRAM, MACRO_THAT_CANNOT_BE_OPENED_LEAVES_THE_PROGRAM_TO_THE_USER) {
  const RUN_RESULT run = RUN("\nEXIT\n", "none");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(LINES(run.SAID)[1], "*****File " + (work / "none.mcr").string() +
                                    " does not exist, but is required to pre-exist");
}

TEST_F(PROGRAM, FURTHER_ARGUMENTS_ARE_NOT_LOOKED_AT_AND_A_BLANK_ONE_IS_NONE) {
  PUT_FILE(work / "run.mcr", "EXIT\n");
  EXPECT_EQ(RUN("", "run.mcr none.mcr").STATUS, 0);
  const RUN_RESULT run = RUN("EXIT\n", "''");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(run.SAID.find("macros"), std::string::npos);
}

// The log of the first run holds every prompt with its answer, and a replay shows them so.
TEST_F(PROGRAM, REPLAYED_SESSION_SAYS_WHAT_THE_FIRST_RUN_SAID) {
  fs::create_directory_symlink(fs::path(PLACES::SOURCE()) / "examples/hematite-pressure",
                               work / "data");
  // Blank answers, wrong ones asked for again, files named at the prompt, a log that is kept open,
  // a list over several lines, a menu left by a blank.
  const std::string session =
      "MODE\nabc\n7\n\n"
      "LOG\nn\n"
      "foo\n"
      "PRIV\nwrong\n"
      "\n"
      "READ cif\nnone\n\n"
      "READ cif\ndata/hematite\nY\n"
      "OMIT\n2\n0\n4,-5\n\n"
      "SHOW\n\n"
      "S\n"
      "END\n";
  const RUN_RESULT first = RUN("LOG first\nRECORD rec\n" + session + "EXIT\n");
  EXPECT_EQ(first.STATUS, 0);
  EXPECT_EQ(TEXT_OF(work / "rec.mcr"), session);
  std::string logged = TEXT_OF(work / "first.log");
  fs::remove(work / "first.log");
  const RUN_RESULT second = RUN("LOG first\nMACRO rec\nEXIT\n");
  EXPECT_EQ(second.STATUS, 0);

  const auto between = [](const std::string& text, const std::string& start,
                          const std::string& end) {
    const std::size_t from = text.find(start) + start.size();
    return text.substr(from, text.find(end) - from);
  };
  logged = between(logged, "***** Macro recording intiated\n", "***** Macro recording stopped\n");
  std::string replayed = between(second.SAID, "***** Running macro\n", "***** Macro completed\n");
  // While recording, a prompt for a file name is preceded by two lines of warning.
  for (const std::string line :
       {" *****Selecting a filename this way will not be recorded by the Macro\n",
        " *****For recording enter the filename with the command\n"}) {
    EXPECT_NE(logged.find(line), std::string::npos);
    for (std::size_t at = logged.find(line); at != std::string::npos; at = logged.find(line))
      logged.erase(at, line.size());
  }
  // The end of the macro is found at the prompt behind END.
  EXPECT_EQ(replayed, logged + "\nG_MARA-6.1>\n");
}

TEST_F(PROGRAM, OVERWRITE_QUESTION_IN_A_REPLAY_TAKES_THE_RECORDED_ANSWERS) {
  PUT_FILE(work / "old.mcr", "content\n");
  PUT_FILE(work / "run.mcr", "RECORD old\nY\n");
  // RECORD ends the macro that runs, so its question goes to the console after an empty answer.
  const RUN_RESULT run = RUN("\nEXIT\n", "run");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(TEXT_OF(work / "old.mcr"), "content\n");
}

TEST_F(PROGRAM, A_FILE_TOO_LARGE_FOR_THE_MEMORY_LEAVES_WHAT_IS_LOADED) {
  if (sanitized) GTEST_SKIP() << "the sanitizer needs more room than any limit leaves";
  std::string blocks;
  for (int i = 0; i < 300000; ++i) blocks += "data_a\n";
  PUT_FILE(work / "small.cif", "data_small\n");
  PUT_FILE(work / "many_blocks.cif", blocks);
  PUT_FILE(work / "long.cif", "data_a\n" + std::string(20000000, '\n'));
  PUT_FILE(folder / "input",
           "READ cif small\nY\nREAD cif many_blocks\nREAD cif long\nLIST block\nEXIT\n");
  const RUN_RESULT run = SHELL("ulimit -v 200000; \"$GEMMARA\" < ../input");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_NE(run.SAID.find("*****WARNING: error allocating arrays in Allocate_crystal_structurelist "
                          "called from expand_phase_list\n\n\n*****WARNING:      No crystal "
                          "structures were read from "
                          "this file\n"),
            std::string::npos)
      << run.SAID;
  EXPECT_NE(run.SAID.find(
                "*****WARNING: There is not enough memory for this command, which was given up\n"),
            std::string::npos);
  EXPECT_TRUE(run.SAID.ends_with("  1: small         : 298.0   0.000         1\n\nG_MARA-6.1>"))
      << run.SAID;
}

TEST_F(PROGRAM, SYSTEM_OUTPUT_GOES_TO_THE_CONSOLE_IN_ORDER_AND_NOT_TO_THE_LOG) {
  const RUN_RESULT run = RUN("LOG run\nSYS\necho Hello\nPROG\nEXIT\n");
  EXPECT_EQ(FROM_LINE(run.SAID, "SYSTEM>"), "SYSTEM>Hello\n\nSYSTEM>\nG_MARA-6.1>");
  EXPECT_EQ(TEXT_OF(work / "run.log").find("Hello\n\n"), TEXT_OF(work / "run.log").find("Hello"));
  EXPECT_EQ(COUNT_OF(TEXT_OF(work / "run.log"), "Hello"), 1u);  // the line typed
}

// Input from a file is shared with the command, which reads on where the program has stopped.
TEST_F(PROGRAM, SYSTEM_COMMAND_READS_ON_IN_OUR_INPUT) {
  const RUN_RESULT run = RUN("SYS\nhead -n 1\nfor the command\nPROG\nEXIT\n");
  if (run.SAID.find("for the command") == std::string::npos)
    GTEST_SKIP() << "head reads ahead of its line here";
  EXPECT_NE(run.SAID.find("SYSTEM>for the command\n"), std::string::npos);
}

TEST_F(PROGRAM, COMMAND_THAT_READS_EVERYTHING_LEAVES_THE_END_OF_INPUT) {
  const RUN_RESULT run = RUN("SYS\ncat\none\ntwo\n");
  EXPECT_EQ(run.STATUS, 2);
  EXPECT_EQ(FROM_LINE(run.SAID, "SYSTEM>"), "SYSTEM>one\ntwo\n\nSYSTEM>");
}

}  // namespace
