// Runs the program at a terminal: its width and title, the line that tells how far long work is,
// and the interrupt key.
#include <regex>
#include <thread>

#include "places.h"
#include "program__terminal.h"

using namespace PROGRAM_TESTS;

namespace {

// ---- terminal ----

class TERMINAL : public STARTED {
 protected:
  // What the program says on a terminal of so many columns before it is told to end.
  std::string SAID_ON(unsigned short columns, const char* term) {
    const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(columns);
    if (terminal.MASTER < 0) return "";
    ::setenv("TERM", term, 1);
    START(terminal.SLAVE, ::fcntl(terminal.SLAVE, F_DUPFD_CLOEXEC, 3), our_own);
    TYPE_ON(terminal.MASTER, "EXIT\n");
    std::string said;
    READ_ON(terminal.MASTER, said);
    ::close(terminal.MASTER);
    EXPECT_GOOD_END();
    return said;
  }
};

// C columns give C - 2 when C - 1 is above 30, at most 255; else 100.
TEST_F(TERMINAL, WIDTH_COMES_FROM_ITS_COLUMNS) {
  struct CASE {
    unsigned short COLUMNS;
    std::size_t WIDTH;
  };
  for (const CASE& c :
       {CASE{80, 78}, CASE{32, 30}, CASE{31, 100}, CASE{0, 100}, CASE{257, 255}, CASE{500, 255}}) {
    const std::string said = SAID_ON(c.COLUMNS, "dumb");
    if (said.empty()) GTEST_SKIP() << "no pseudo terminal here";
    EXPECT_NE(said.find("\n" + std::string(c.WIDTH, '*') + "\r\n"), std::string::npos) << c.COLUMNS;
  }
}

TEST_F(TERMINAL, TITLE_IS_SET_WHERE_THE_TERMINAL_CAN) {
  const std::string title = "\033]0;Gemmara \007";
  const std::string said = SAID_ON(80, "xterm");
  if (said.empty()) GTEST_SKIP() << "no pseudo terminal here";
  EXPECT_NE(said.find(title), std::string::npos);
  EXPECT_EQ(SAID_ON(80, "dumb").find('\033'), std::string::npos);
  EXPECT_EQ(SAID_ON(80, "").find('\033'), std::string::npos);
}

// Output that goes to a file is the same whatever the input is: no title, 100 columns, no echo.
TEST_F(TERMINAL, INPUT_FROM_A_TERMINAL_LEAVES_OUTPUT_TO_A_FILE_AS_IT_IS) {
  const std::string expected = TIMELESS(RUN("HELP\nEXIT\n").SAID);
  fs::remove_all(folder / "local/quorvansoftware");  // the directory that the run has saved
  const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(80);
  if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
  ::setenv("TERM", "xterm", 1);
  START(terminal.SLAVE, NEW_FILE("said"), our_own);
  TYPE_ON(terminal.MASTER, "HELP\nEXIT\n");
  EXPECT_GOOD_END();
  ::close(terminal.MASTER);
  EXPECT_EQ(TIMELESS(TEXT_OF(folder / "said")), expected);
}

// ---- tables ----

// Two blocks; a bond table with esds of six bonds, its heads from column 46 on, eleven columns
// each.
TEST_F(TERMINAL, A_WIDE_TABLE_IS_SHOWN_IN_PANELS_AND_LOGGED_WHOLE) {
  fs::copy(fs::path(PLACES::SOURCE()) / "examples/hematite-pressure/hematite.cif",
           work / "hematite.cif");
  const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(80);
  if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
  ::setenv("TERM", "dumb", 1);
  PUT_FILE(work / "wide.mcr",
           "LOG wide\nREAD cif hematite.cif\nY\nCALC poly\n\n\nTABLE bond\nFe1\n\nEXIT\n");
  START(terminal.SLAVE, ::fcntl(terminal.SLAVE, F_DUPFD_CLOEXEC, 3), our_own);
  TYPE_ON(terminal.MASTER, "MACRO wide\n");
  std::string said;
  READ_ON(terminal.MASTER, said);
  ::close(terminal.MASTER);
  EXPECT_GOOD_END();
  const std::string start = "       BLOCKNAME      T        P         IUSE";
  std::string panels;
  for (std::string line : LINES(FROM_LINE(said, start + " O1         O1         O1"))) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.find("central atom is") != std::string::npos) break;
    panels += line + "\n";
  }
  const std::string head = start + " O1         O1         O1\n";
  const std::string row = "  1: Hematite_0.00 : 298.000   0.0001      1";
  EXPECT_TRUE(panels.starts_with(head + row + "  2.113(4)   2.113(4)   2.113(4)\n")) << panels;
  EXPECT_NE(panels.find("\n\n" + head + row + "  1.944(3)   1.944(3)   1.944(3)\n"),
            std::string::npos)
      << panels;
  EXPECT_NE(panels.find("\n\n" + start + " N AVERAGE  QE       AV\n" + row +
                        "  6  2.0287  1.0265  85.657\n"),
            std::string::npos)
      << panels;
  for (const std::string& line : LINES(panels)) EXPECT_LE(line.size(), 80u);
  EXPECT_NE(
      TEXT_OF(work / "wide.log")
          .find("\n" + row + "  2.113(4)   2.113(4)   2.113(4)   1.944(3)   1.944(3)   1.944(3)"),
      std::string::npos);
}

// The fourth name of gypsum would end in column 71.
TEST_F(TERMINAL, NAMES_OF_SITES_ARE_SHOWN_IN_PANELS_AND_LOGGED_WHOLE) {
  fs::copy(fs::path(PLACES::SOURCE()) / "examples/gypsum-pressure/gypsum.cif", work / "gypsum.cif");
  const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(70);
  if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
  ::setenv("TERM", "dumb", 1);
  PUT_FILE(work / "names.mcr", "LOG names\nREAD cif gypsum.cif\nY\nLIST site names\nEXIT\n");
  START(terminal.SLAVE, ::fcntl(terminal.SLAVE, F_DUPFD_CLOEXEC, 3), our_own);
  TYPE_ON(terminal.MASTER, "MACRO names\n");
  std::string said;
  READ_ON(terminal.MASTER, said);
  ::close(terminal.MASTER);
  EXPECT_GOOD_END();
  std::erase(said, '\r');
  const std::string start = std::string(34, ' ') + "Site name: ";
  EXPECT_NE(said.find("\n" + start + "Ca      S       O1\n\n" + start + "O2      OW\n"),
            std::string::npos)
      << said;
  EXPECT_NE(TEXT_OF(work / "names.log").find("\n" + start + "Ca      S       O1      O2      OW\n"),
            std::string::npos);
}

// ---- interrupts ----

class INTERRUPTED : public STARTED {
 protected:
  // With a pipe to type on, and the output in a file.
  void START_WITH_PIPE(int errors = our_own) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    input = ends[1];
    START(ends[0], NEW_FILE("said"), errors);
  }
  void TYPE(std::string_view text) const { TYPE_ON(input, text); }

  // Waits until the program has said the text.
  bool HEARD(const std::string& text) const {
    for (const auto end = steady_clock::now() + patience; steady_clock::now() < end;) {
      if (TEXT_OF(folder / "said").find(text) != std::string::npos) return true;
      std::this_thread::sleep_for(5ms);
    }
    return false;
  }

  // Blocks of a group with many operators, which no machine reads in a moment.
  void PUT_MANY_BLOCKS(const std::string& name, int count) const {
    constexpr std::string_view block =
        "data_a\n_cell_length_a 5.64\n_cell_length_b 5.64\n_cell_length_c 5.64\n"
        "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
        "_symmetry_space_group_name_H-M 'F m -3 m'\n\nloop_\n_atom_site_label\n"
        "_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
        "Na1 0 0 0\nCl1 0.5 0.5 0.5\n";
    std::string blocks;
    for (int i = 0; i < count; ++i) blocks += block;
    PUT_FILE(work / name, blocks);
  }

  // Time passes for the program while it does nothing.
  void PAUSE(std::chrono::milliseconds time) const {
    ::kill(-child, SIGSTOP);
    std::this_thread::sleep_for(time);
    ::kill(-child, SIGCONT);
  }

  int input = -1;
};

TEST_F(INTERRUPTED, COMMAND_ENDS_AND_THE_PROGRAM_COMES_BACK_TO_ITS_PROMPT) {
  ASSERT_NO_FATAL_FAILURE(START_WITH_PIPE());
  // The shell is busy itself: one that is just starting another program can lose the signal.
  TYPE("SYS\necho started; n=0; while [ $n -lt 30000000 ]; do n=$((n+1)); done; echo done\n");
  ASSERT_TRUE(HEARD("started"));
  ::kill(-child, SIGINT);
  TYPE("PROG\nEXIT\n");
  ::close(input);
  EXPECT_GOOD_END();
  EXPECT_FALSE(TEXT_OF(folder / "said").find("done") != std::string::npos);
}

// The line that tells how far the work is comes half a second after its beginning, and the rest of
// these blocks takes seconds on any machine: the signal finds the program at work.
TEST_F(INTERRUPTED, LONG_WORK_STOPS_AND_WHAT_IS_LOADED_STAYS) {
  constexpr int blocks_of_seconds = 100000;
  PUT_MANY_BLOCKS("many.cif", blocks_of_seconds);
  PUT_FILE(work / "small.cif", "data_small\n");
  PUT_FILE(work / "run.mcr", "READ cif small\nY\nREAD cif many\nCLEAR\n");
  const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(80);
  if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
  ASSERT_NO_FATAL_FAILURE(START_WITH_PIPE(terminal.SLAVE));
  TYPE("MACRO run\n");
  std::string shown;
  READ_ON(terminal.MASTER, shown, "Reading structures: block");
  ::kill(-child, SIGINT);
  TYPE("LIST block\nEXIT\n");
  ::close(input);
  READ_ON(terminal.MASTER, shown);
  ::close(terminal.MASTER);
  EXPECT_GOOD_END();
  const std::string said = TEXT_OF(folder / "said");
  EXPECT_NE(said.find("***** Macro stopped\n\n*****WARNING:      No crystal structures were read "
                      "from this file\n"),
            std::string::npos);
  EXPECT_TRUE(said.ends_with("  1: small         : 298.0   0.000         1\n\nG_MARA-6.1>"))
      << said;
}

TEST_F(INTERRUPTED, AT_THE_PROMPT_IT_ENDS_THE_PROGRAM_AND_THE_LOG_IS_WHOLE) {
  ASSERT_NO_FATAL_FAILURE(START_WITH_PIPE());
  TYPE("LOG run\nRECORD rec\nfoo\n");
  ASSERT_TRUE(HEARD("intiated\n\nG_MARA-6.1>\nG_MARA-6.1>"));
  ::kill(-child, SIGINT);
  ::close(input);
  const int status = END_STATUS();
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
  EXPECT_EQ(TEXT_OF(work / "rec.mcr"), "foo\n");
  EXPECT_NE(TEXT_OF(work / "run.log").find("G_MARA-6.1>foo\n"), std::string::npos);
}

// ---- the interrupt key at a terminal ----

class INTERRUPT_KEY : public STARTED {
 protected:
  static constexpr std::string_view main_prompt = "G_MARA-6.1>";

  // With the hematite series loaded. False where there is no pseudo terminal.
  bool START_WITH_HEMATITE(const char* term) {
    const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(80);
    if (terminal.MASTER < 0) return false;
    fs::create_directory_symlink(fs::path(PLACES::SOURCE()) / "examples/hematite-pressure",
                                 work / "data");
    ::setenv("TERM", term, 1);
    keys = terminal.MASTER;
    START(terminal.SLAVE, ::fcntl(terminal.SLAVE, F_DUPFD_CLOEXEC, 3), our_own);
    READ_ON(keys, said, main_prompt);
    TYPE("READ cif data/hematite\n", "<Y>?");
    TYPE("Y\n", main_prompt);
    return true;
  }

  // Types the text and waits for what is to be said behind it.
  void TYPE(std::string_view text, std::string_view awaited) {
    said.clear();
    TYPE_ON(keys, text);
    READ_ON(keys, said, awaited);
    EXPECT_NE(said.find(awaited), std::string::npos) << text << " " << said;
  }

  // What a command says behind its line. The line itself is shown twice where it was typed before
  // the program asked for it.
  std::string ANSWER_TO(const std::string& command) {
    TYPE(command + "\n", main_prompt);
    const std::size_t last = said.rfind(command + "\r\n");
    EXPECT_NE(last, std::string::npos) << said;
    return last == std::string::npos ? said : said.substr(last);
  }

  // What is said behind the key, to the main prompt, without the sequences of the terminal.
  std::string PRESSED() {
    TYPE("\003", main_prompt);
    std::string text;
    for (const char c : said)
      if (c != '\r') text += c;
    return text;
  }

  void END_PROGRAM() {
    TYPE_ON(keys, "EXIT\n");
    READ_ON(keys, said);
    ::close(keys);
    EXPECT_GOOD_END();
  }

  int keys = -1;
  std::string said;
};

struct STEP {
  std::string_view LINE;
  std::string_view AWAITED;  // behind it
};

// One for each kind of question, and those of which a part has been answered. The key is pressed
// behind the last step.
const std::vector<std::vector<STEP>> dialogues{
    {{"CALC", "by number:"}},
    {{"READ cif data/hematite", "<Y>?"}},
    {{"READ cif", "(*.cif):"}},
    {{"OMIT", "to exit:"}},
    {{"OMIT 1", "no change):"}},
    {{"CALC", "by number:"}, {"1", "no change):"}},
    {{"PTEDIT", "to exit)?"}},
    {{"PTEDIT", "to exit)?"}, {"P", "optional):"}},
    {{"LIST xyz", "(or ALL):"}},
    {{"PRIV", "Password:"}},
    {{"MODE", "operation mode:"}},
    {{"SET exclude", "<Y>?"}, {"N", "same element distances"}},
    {{"SET output", "<N>?"}},
    {{"SORT", "<P>?"}, {"P", "<I>?"}},
    {{"WRITE cif new", "Is this ok"}},
    {{"EXPORT", "Is this ok"}},
    {{"TRANSFORM", "Row 1:"}},
    {{"TRANSFORM", "Row 1:"}, {"0 1 0", "Row 2:"}},
    {{"LOG", "(*.log):"}},
    {{"ATOMEDIT", "ATOMEDIT>"}},
    {{"ATOMEDIT", "ATOMEDIT>"}, {"OMIT", "to exit:"}},
    {{"ATOMEDIT", "ATOMEDIT>"}, {"SYS", "SYSTEM>"}},
    {{"SYS", "SYSTEM>"}}};

TEST_F(INTERRUPT_KEY, DROPS_THE_COMMAND_AT_EVERY_KIND_OF_PROMPT_AND_KEEPS_ALL_AS_IT_WAS) {
  for (const char* term : {"xterm", "dumb"}) {
    if (!START_WITH_HEMATITE(term)) GTEST_SKIP() << "no pseudo terminal here";
    const std::string settings = ANSWER_TO("SHOW");
    const std::string blocks = ANSWER_TO("LIST block");
    TYPE("RECORD rec\n", main_prompt);
    for (const std::vector<STEP>& dialogue : dialogues) {
      for (const STEP& step : dialogue) TYPE(std::string(step.LINE) + "\n", step.AWAITED);
      EXPECT_TRUE(PRESSED().ends_with("^C\n\nG_MARA-6.1>")) << dialogue.front().LINE << said;
    }
    TYPE("END\n", main_prompt);
    EXPECT_EQ(TEXT_OF(work / "rec.mcr"), "END\n");
    EXPECT_EQ(ANSWER_TO("SHOW"), settings);
    EXPECT_EQ(ANSWER_TO("LIST block"), blocks);
    EXPECT_FALSE(fs::exists(work / "new.cif"));
    END_PROGRAM();
    fs::remove(work / "data");
    fs::remove(work / "rec.mcr");
  }
}

TEST_F(INTERRUPT_KEY, AT_THE_MAIN_PROMPT_DROPS_WHAT_IS_TYPED_AND_ELSE_SAYS_HOW_TO_LEAVE) {
  if (!START_WITH_HEMATITE("xterm")) GTEST_SKIP() << "no pseudo terminal here";
  EXPECT_TRUE(PRESSED().ends_with("^C\n     To leave the program type EXIT\n\nG_MARA-6.1>"))
      << said;
  if (PLACES::LINE_EDITING()) {
    AWAIT_EDITOR(keys);
    TYPE("CLEAR", "CLEAR");
    EXPECT_TRUE(PRESSED().ends_with("^C\n\nG_MARA-6.1>")) << said;
  }
  END_PROGRAM();
}

// What was done before the key was pressed stays, and a replay comes to the same.
TEST_F(INTERRUPT_KEY, FINISHED_STEPS_OF_A_DIALOGUE_STAY_IN_THE_MACRO_WITH_THE_WAY_BACK) {
  if (!START_WITH_HEMATITE("dumb")) GTEST_SKIP() << "no pseudo terminal here";
  TYPE("RECORD rec\n", main_prompt);
  TYPE("PTEDIT\n", "to exit)?");
  TYPE("P\n", "optional):");
  TYPE("1 3.5\n", "optional):");
  TYPE("2 nonsense\n", "optional):");
  PRESSED();
  TYPE("ATOMEDIT\n", "ATOMEDIT>");
  TYPE("SHOW\n", "ATOMEDIT>");
  TYPE("OMIT all\n", "to exit):");
  TYPE("O1\n", "to exit):");
  PRESSED();
  TYPE("MEASURE\n", "to end):");
  TYPE("ratio = c/a\n", "to end):");
  PRESSED();
  TYPE("END\n", main_prompt);
  EXPECT_EQ(TEXT_OF(work / "rec.mcr"),
            "PTEDIT\nP\n1 3.5\n\n\nATOMEDIT\nSHOW\nOMIT all\nO1\n\nEXIT\n"
            "MEASURE\nratio = c/a\n\nEND\n");
  TYPE("LIST block\n", main_prompt);
  EXPECT_NE(said.find("  1: Hematite_0.00 : 298.0   3.500         1"), std::string::npos) << said;
  END_PROGRAM();
}

// ---- how far long work is ----

TEST_F(INTERRUPTED, TERMINAL_SHOWS_HOW_FAR_LONG_WORK_IS_AND_NOTHING_ELSE_HOLDS_IT) {
  const std::string line = "\r\033[KReading structures: block ";
  PUT_MANY_BLOCKS("many.cif", 20000);
  const PSEUDO_TERMINAL terminal = OPEN_TERMINAL(80);
  if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
  ASSERT_NO_FATAL_FAILURE(START_WITH_PIPE(terminal.SLAVE));

  const auto begin = steady_clock::now();
  TYPE("LOG run\nREAD cif many\n");
  ASSERT_TRUE(HEARD("please be patient"));
  PAUSE(600ms);
  std::string shown;
  READ_ON(terminal.MASTER, shown, line);
  EXPECT_GE(steady_clock::now() - begin, 500ms);
  PAUSE(250ms);
  READ_ON(terminal.MASTER, shown, line, 2);
  ::kill(-child, SIGINT);
  TYPE("EXIT\n");
  ::close(input);
  READ_ON(terminal.MASTER, shown);
  ::close(terminal.MASTER);
  EXPECT_GOOD_END();

  // The file itself may take its time as well.
  const std::regex lines(
      "(\r\033\\[KReading the file 1 of 1\r\033\\[K)?"
      "(\r\033\\[KReading structures: block [0-9]+ of 20000){2,}\r\033\\[K");
  EXPECT_TRUE(std::regex_match(shown, lines)) << shown;
  for (const fs::path& kept : {folder / "said", work / "run.log"}) {
    EXPECT_EQ(TEXT_OF(kept).find("Reading"), std::string::npos) << kept;
    EXPECT_EQ(TEXT_OF(kept).find('\r'), std::string::npos) << kept;
    EXPECT_EQ(TEXT_OF(kept).find('\033'), std::string::npos) << kept;
  }
}

}  // namespace
