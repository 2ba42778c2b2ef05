// Types at the program's terminal: keys, history, TAB, and where lines are read plainly instead.

#include "places.h"
#include "program__terminal.h"

using namespace PROGRAM_TESTS;

namespace {

const std::string new_prompt = "\nG_MARA-6.1>";
const std::string new_site_prompt = "\n    Enter central site name (or ALL):";

// Keys as a terminal of the type xterm sends them.
const std::string up = "\033[A";
const std::string left = "\033[D";
const std::string start_of_line = "\001";
const std::string end_of_input = "\004";
const std::string backspace = "\177";
const std::string enter = "\r";

// Two atoms, so that one letter tells a label.
constexpr std::string_view salt =
    "data_salt\n_cell_length_a 5.64\n_cell_length_b 5.64\n_cell_length_c 5.64\n"
    "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
    "_symmetry_space_group_name_H-M 'F m -3 m'\n\nloop_\n_atom_site_label\n"
    "_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
    "Na1 0 0 0\nCl1 0.5 0.5 0.5\n";

class AT_TERMINAL : public STARTED {
 protected:
  void SetUp() override {
    STARTED::SetUp();
    if (!PLACES::LINE_EDITING()) GTEST_SKIP() << "built without libedit";
    history = folder / "local/quorvansoftware/gemmara.history";
    PUT_FILE(work / "salt.cif", salt);
  }
  void TearDown() override {
    if (terminal.MASTER >= 0) ::close(terminal.MASTER);
    STARTED::TearDown();
  }

  // 102 columns make lines of 100 stars, as there are without a terminal.
  void BEGIN(const char* term = "xterm", bool editing = true) {
    constexpr unsigned short columns = 102;
    if (terminal.MASTER >= 0) ::close(terminal.MASTER);
    terminal = OPEN_TERMINAL(columns);
    if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
    ::setenv("TERM", term, 1);
    START(terminal.SLAVE, ::fcntl(terminal.SLAVE, F_DUPFD_CLOEXEC, 3), NEW_FILE("errors"));
    edited = editing;
    EXPECT_AWAITED(new_prompt);
  }

  void EXPECT_AWAITED(const std::string& text) {
    said.clear();
    READ_ON(terminal.MASTER, said, text);
    EXPECT_NE(said.find(text), std::string::npos) << said;
    if (edited) AWAIT_EDITOR(terminal.MASTER);
    EXPECT_EQ(KEYS_COME_SINGLY(terminal.MASTER), edited);
  }

  // Types and waits for what the program then says.
  void TYPE(const std::string& keys, const std::string& awaited = new_prompt) {
    TYPE_ON(terminal.MASTER, keys);
    EXPECT_AWAITED(awaited);
  }

  void END_BY(const std::string& keys = "EXIT\r") {
    TYPE_ON(terminal.MASTER, keys);
    said.clear();
    READ_ON(terminal.MASTER, said);
    EXPECT_GOOD_END();
  }

  std::string LOGGED() const { return TEXT_OF(work / "run.log"); }

  PSEUDO_TERMINAL terminal;
  bool edited = true;  // lines are edited now
  std::string said;    // on the terminal, since the last keys
  fs::path history;
};

// ---- the library ----

// A file of its name that is no library stands for one that is not installed.
TEST_F(AT_TERMINAL, WITHOUT_THE_LIBRARY_LINES_ARE_READ_PLAINLY) {
  const fs::path libraries = folder / "libraries";
  fs::create_directory(libraries);
  for (const char* const name : {"libedit.so.2", "libedit.so.0"})
    PUT_FILE(libraries / name, "not a library");
  ::setenv("LD_LIBRARY_PATH", libraries.c_str(), 1);
  BEGIN("xterm", false);
  ::unsetenv("LD_LIBRARY_PATH");
  TYPE("LOG run\n");
  END_BY("EXIT\n");
  EXPECT_EQ(COUNT_OF(LOGGED(), "\nG_MARA-6.1>EXIT\n"), 1u);
}

// ---- keys ----

TEST_F(AT_TERMINAL, KEYS_MOVE_AND_CHANGE) {
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("EL" + start_of_line + "H" + "\005" + "X" + backspace + "P" + enter);  // ^E: to the end
  EXPECT_NE(said.find("General Commands"), std::string::npos);
  TYPE("ac" + left + "b" + enter);
  TYPE("one two\027three" + enter);    // ^W: the word before
  TYPE("gone\025kept" + enter);        // ^U: the line
  TYPE("ne\033[1~o\033[4~s" + enter);  // Home and End
  END_BY();
  const std::string logged = LOGGED();
  for (const char* line : {"HELP", "abc", "one three", "kept", "ones", "EXIT"})
    EXPECT_EQ(COUNT_OF(logged, "\nG_MARA-6.1>" + std::string(line) + "\n"), 1u) << line;
}

// Bytes behind the 255th are cut, and "\303\251" is one letter, which one backspace takes away.
TEST_F(AT_TERMINAL, LONG_LINES_AND_LETTERS_BEYOND_ASCII) {
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE(std::string(700, 'x') + enter);
  TYPE("a\303\251b" + enter);
  TYPE("c\303\251" + backspace + "d" + enter);
  TYPE("a\026\033b" + enter);  // ^V takes the next key, Escape, as a character
  END_BY();
  const std::string logged = LOGGED();
  EXPECT_NE(logged.find(">" + std::string(255, 'x') + "\n"), std::string::npos);
  EXPECT_NE(logged.find(">a\303\251b\n"), std::string::npos);
  EXPECT_NE(logged.find(">cd\n"), std::string::npos);
  EXPECT_NE(logged.find(">a b\n"), std::string::npos);
}

// Where the user's locale knows ASCII alone, as on a bare system, and where there is none of its
// name.
TEST_F(AT_TERMINAL, A_LETTER_IS_ONE_LETTER_IN_THE_C_LOCALE_AND_IN_NONE) {
  for (const char* const locale : {"C", "xx_XX.UTF-8"}) {
    ::setenv("LC_ALL", locale, 1);
    BEGIN();
    ::unsetenv("LC_ALL");
    TYPE("LOG run" + enter);
    TYPE("c\303\251" + backspace + "d" + enter);
    END_BY();
    EXPECT_NE(LOGGED().find(">cd\n"), std::string::npos) << locale << LOGGED();
    fs::remove(work / "run.log");
  }
}

TEST_F(AT_TERMINAL, TERMINAL_IS_AS_BEFORE_WHILE_A_COMMAND_RUNS_AND_AT_THE_END) {
  BEGIN();
  TYPE("SYS" + enter, "\nSYSTEM>");
  TYPE("stty -a | tr ' ' '\\n' | grep icanon" + enter, "\nSYSTEM>");
  EXPECT_NE(said.find("\nicanon"), std::string::npos) << said;
  TYPE("PROG" + enter);
  END_BY();
}

// ---- history ----

TEST_F(AT_TERMINAL, HISTORY_WITHIN_A_RUN_AND_FROM_RUN_TO_RUN) {
  BEGIN();
  TYPE("first" + enter);
  TYPE("second" + enter);
  TYPE("second" + enter);
  TYPE("  " + enter);
  TYPE("LOG run" + enter);
  TYPE(up + up + up + enter);
  END_BY();
  EXPECT_NE(LOGGED().find("\nG_MARA-6.1>first\n"), std::string::npos);
  EXPECT_EQ(TEXT_OF(history), "first\nsecond\nLOG run\nfirst\nEXIT\n");

  BEGIN();
  TYPE("LOG later" + enter);
  TYPE(up + up + up + up + up + enter);
  END_BY();
  EXPECT_NE(TEXT_OF(work / "later.log").find("\nG_MARA-6.1>second\n"), std::string::npos);
}

TEST_F(AT_TERMINAL, HISTORY_HAS_NO_PASSWORDS_AND_NO_LINES_OF_MACROS) {
  PUT_FILE(work / "run.mcr", "HELP\n");
  BEGIN();
  TYPE("MACRO run" + enter, "***** Macro completed\r\n\r\nG_MARA-6.1>");
  TYPE("PRIV" + enter, "Password:");
  TYPE("guess" + enter);
  END_BY();
  EXPECT_EQ(TEXT_OF(history), "MACRO run\nPRIV\nEXIT\n");
}

TEST_F(AT_TERMINAL, HISTORY_IN_OTHER_CHARACTERS_HIDES_NO_OLDER_LINES) {
  fs::create_directories(history.parent_path());
  PUT_FILE(history, "HELP\n\351\350\n");  // Latin-1
  BEGIN();
  TYPE(up + enter);
  EXPECT_NE(said.find("General Commands"), std::string::npos);
  END_BY();
}

TEST_F(AT_TERMINAL, NOTHING_IS_SAID_WHERE_NO_HISTORY_CAN_BE_KEPT) {
  PUT_FILE(folder / "file", "");
  for (const std::string& place : {(folder / "file").string(), std::string()}) {
    ::setenv("LOCALAPPDATA", place.c_str(), 1);
    BEGIN();
    TYPE("foo" + enter);
    EXPECT_EQ(said, "foo\r\n\r\nG_MARA-6.1>");
    TYPE(up + up + enter);
    END_BY();
    EXPECT_EQ(TEXT_OF(folder / "errors"), "");
  }
}

// ---- TAB ----

TEST_F(AT_TERMINAL, TAB_COMPLETES_COMMANDS_MENU_WORDS_FILES_AND_LABELS) {
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("rea\tci\tsal\t" + enter, "(Y/N) <Y>?");
  TYPE(enter);
  TYPE("LIST x\t" + enter, new_site_prompt);
  TYPE("c\t" + enter, new_site_prompt);
  EXPECT_NE(said.find("Cl1"), std::string::npos);
  TYPE("A\t" + enter, new_site_prompt);
  TYPE(enter);
  TYPE("ATOMEDIT" + enter, "\nATOMEDIT>");
  TYPE("om\t" + enter, "(blank to exit):");
  TYPE("N\t" + enter, "(blank to exit):");
  TYPE(enter, "\nATOMEDIT>");
  TYPE("X" + enter);
  END_BY();
  const std::string logged = LOGGED();
  for (const char* line :
       {"G_MARA-6.1>READ cif salt.cif", "G_MARA-6.1>LIST xyz",
        "    Enter central site name (or ALL):Cl1", "    Enter central site name (or ALL):ALL",
        "ATOMEDIT>OMIT", "     Input the element or atom name to be omitted (blank to exit):Na1"})
    EXPECT_EQ(COUNT_OF(logged, "\n" + std::string(line) + "\n"), 1u) << line;
}

// Each chlorine at half an edge; of the six images the first operator with a centring brings one,
// and the lowest cell is the one at -1/2, 0, 0. The next are half a diagonal away: 2.82 sqrt(3).
TEST_F(AT_TERMINAL, TAB_COMPLETES_SITES_QUANTITIES_AND_NAMES_IN_A_MEASURE) {
  const std::string measure_prompt = "\n     Measure (name = expression, blank to end):";
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("READ cif salt" + enter, "(Y/N) <Y>?");
  TYPE(enter);
  TYPE("mea\t" + enter, measure_prompt);
  TYPE("length = DIS\t(na\t, cl\t)" + enter, measure_prompt);
  TYPE("twice = 2*len\t + sq\t(0)" + enter, measure_prompt);
  TYPE("cen\t", "troid");
  TYPE("\025twi\t" + enter, measure_prompt);  // ^U: the line goes
  TYPE("thrice = 3*lemgth" + left + left + left + backspace + "n" + enter, measure_prompt);
  TYPE(enter);
  END_BY();
  const std::string logged = LOGGED();
  const std::size_t start = logged.find("G_MARA-6.1>MEASURE\n");
  ASSERT_NE(start, std::string::npos) << logged;
  EXPECT_EQ(logged.substr(start),
            "G_MARA-6.1>MEASURE" + measure_prompt +
                "length = dist(Na1, Cl1)\n"
                "     length = dist(Na1[1_555], Cl1[49_444])\n"
                "     reference block: 2.82000 Å\n"
                "     Na1-Cl1 2.820 (6 equal, next 4.884)" +
                measure_prompt +
                "twice = 2*length + sqrt(0)\n"
                "     twice = 2*length + sqrt(0)\n"
                "     reference block: 5.64000" +
                measure_prompt +
                "twice\n"
                "     twice = 2*length + sqrt(0)\n"
                "     reference block: 5.64000" +
                measure_prompt +
                "thrice = 3*length\n"
                "     thrice = 3*length\n"
                "     reference block: 8.46000" +
                measure_prompt +
                "\n"
                "       BLOCKNAME      T        P         IUSE length      twice       thrice\n"
                "  1: salt          : 298.000   0.0001      1  2.82000     5.64000     8.46000\n"
                "\n"
                "G_MARA-6.1>EXIT\n");
}

TEST_F(AT_TERMINAL, TAB_COMPLETES_A_FILE_NAME_AT_ITS_PROMPT) {
  BEGIN();
  TYPE("READ cif" + enter, "Open cif file (*.cif):");
  TYPE("s\t" + enter, "(Y/N) <Y>?");
  EXPECT_NE(said.find("Named salt.cif"), std::string::npos);
  TYPE("N" + enter);
  END_BY();
}

TEST_F(AT_TERMINAL, TAB_SHOWS_WHAT_FITS_WHERE_SEVERAL_DO) {
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("S\t", "G_MARA-6.1>S");
  EXPECT_NE(said.find("\nSET   SHOW  SORT  SYS"), std::string::npos) << said;
  TYPE("Y\t" + enter, "\nSYSTEM>");
  TYPE("PROG" + enter);
  END_BY();
  EXPECT_EQ(LOGGED().find("SHOW"), std::string::npos);  // what TAB shows is not logged
}

TEST_F(AT_TERMINAL, TAB_SHOWS_TWO_HUNDRED_AND_COUNTS_THE_REST) {
  for (int i = 101; i <= 303; ++i) PUT_FILE(work / ("n" + std::to_string(i) + ".cif"), "");
  BEGIN();
  TYPE("READ cif" + enter, "Open cif file (*.cif):");
  TYPE("n\t", "... and 3 more");
  EXPECT_NE(said.find("n300.cif"), std::string::npos);
  EXPECT_EQ(said.find("n301.cif"), std::string::npos);
  TYPE("1" + backspace + backspace + "salt.cif" + enter, "(Y/N) <Y>?");
  TYPE("N" + enter);
  END_BY();
}

TEST_F(AT_TERMINAL, TAB_OFFERS_NO_COMMANDS_TO_THE_SYSTEM) {
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("SYS" + enter, "\nSYSTEM>");
  TYPE("TIM\t" + enter, "\nSYSTEM>");
  TYPE("PROG" + enter);
  END_BY();
  EXPECT_EQ(COUNT_OF(LOGGED(), "SYSTEM>TIM\n"), 1u) << LOGGED();
}

TEST_F(AT_TERMINAL, TAB_OFFERS_MODE_IN_EVERY_MODE) {
  BEGIN();
  TYPE("MODE" + enter, "Input operation mode:");
  TYPE("1" + enter, "Now running in Expert Mode");
  TYPE("MO\t" + enter, "Input operation mode:");
  TYPE("0" + enter, "Now running in Default Mode");
  END_BY();
}

TEST_F(AT_TERMINAL, TAB_BEHIND_A_WHOLE_NAME_SHOWS_AND_CHANGES_NOTHING) {
  BEGIN();
  TYPE("READ cif" + enter, "Open cif file (*.cif):");
  TYPE("salt.cif\t" + enter, "(Y/N) <Y>?");
  EXPECT_NE(said.find("Named salt.cif"), std::string::npos);
  EXPECT_EQ(said.find("\nsalt.cif"), std::string::npos) << said;
  TYPE("N" + enter);
  END_BY();
}

// ---- what is said ----

// The same session by keys and by a pipe.
TEST_F(AT_TERMINAL, LOG_AND_RECORDED_MACRO_ARE_THE_SAME_AS_BY_A_PIPE) {
  const auto keep = [&](const std::string& mark) {
    fs::rename(work / "run.log", folder / ("log" + mark));
    fs::rename(work / "rec.mcr", folder / ("macro" + mark));
    fs::remove_all(folder / "local/quorvansoftware");  // the directory that the run has saved
  };
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("REC\trec" + enter);
  TYPE("RAD cif salt.cif" + start_of_line + "\033[CE" + enter, "(Y/N) <Y>?");
  TYPE("X" + backspace + "Y" + enter);
  TYPE("LI\txy\t" + enter, new_site_prompt);
  TYPE("n\t" + enter, new_site_prompt);
  TYPE(enter);
  TYPE("foo  " + enter);
  TYPE(up + enter);
  TYPE("END" + enter);
  END_BY();
  keep("1");
  RUN("LOG run\nRECORD rec\nREAD cif salt.cif\nY\nLIST xyz\nNa1\n\nfoo  \nfoo\nEND\nEXIT\n");
  keep("2");
  EXPECT_EQ(TIMELESS(TEXT_OF(folder / "log1")), TIMELESS(TEXT_OF(folder / "log2")));
  EXPECT_EQ(TEXT_OF(folder / "macro1"), TEXT_OF(folder / "macro2"));
  EXPECT_NE(TEXT_OF(folder / "macro1").find("LIST xyz\nNa1\n"), std::string::npos);
}

// Typing without special keys shows what it always has: prompt, keys, new line.
TEST_F(AT_TERMINAL, SCREEN_IS_THE_SAME_AS_WITHOUT_EDITING) {
  std::vector<std::string> screens;
  for (const bool editing : {true, false}) {
    BEGIN(editing ? "xterm" : "dumb", editing);
    TYPE("HELP" + enter);
    screens.push_back(said);
    END_BY();
  }
  EXPECT_EQ(screens[0], screens[1]);
}

// Prompts may hold labels in other characters than the terminal's.
TEST_F(AT_TERMINAL, PROMPT_IN_OTHER_CHARACTERS_IS_SHOWN_AND_READ_PLAINLY) {
  std::string text(salt);
  text.replace(text.find("Na1"), 3, "Na\351");
  PUT_FILE(work / "latin.cif", text);
  BEGIN();
  TYPE("READ cif latin" + enter, "(Y/N) <Y>?");
  TYPE("Y" + enter);
  TYPE("CALC polyhedra" + enter, "(blank for no change):");
  TYPE("2 3" + enter, "Enter selection by number:");
  TYPE(enter);
  TYPE("WRITE cif out" + enter, "Is this ok? (Y/N)?");
  TYPE("Y" + enter, "<Y>?");
  edited = false;
  TYPE("N" + enter, "Bonds from :Na\351 (Y/N)?");
  edited = true;
  TYPE("Y" + enter, "Bonds from :Cl1 (Y/N)?");
  TYPE("N" + enter);
  END_BY();
}

// ---- the end ----

TEST_F(AT_TERMINAL, END_OF_INPUT_ENDS_THE_PROGRAM) {
  BEGIN();
  TYPE("foo" + enter);
  TYPE_ON(terminal.MASTER, end_of_input);
  const int status = END_STATUS();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 2) << status;
  EXPECT_EQ(TEXT_OF(folder / "errors"), "Gemmara: end of input\n");
  EXPECT_FALSE(KEYS_COME_SINGLY(terminal.MASTER));
}

TEST_F(AT_TERMINAL, INTERRUPT_DROPS_THE_LINE_AND_THE_TERMINAL_IS_AS_BEFORE_AT_THE_END) {
  BEGIN();
  TYPE("LOG run" + enter);
  TYPE("foo" + enter);
  TYPE_ON(terminal.MASTER, "half");
  READ_ON(terminal.MASTER, said, "half");
  TYPE("\003");
  END_BY();
  EXPECT_FALSE(KEYS_COME_SINGLY(terminal.MASTER));
  EXPECT_NE(LOGGED().find("G_MARA-6.1>foo\n\nG_MARA-6.1>^C\n\nG_MARA-6.1>EXIT\n"),
            std::string::npos)
      << LOGGED();
  EXPECT_EQ(TEXT_OF(history), "LOG run\nfoo\nEXIT\n");
}

// The alarm that ends a wait may come when the interrupt has been answered.
TEST_F(AT_TERMINAL, A_LATE_ALARM_AT_THE_PROMPT_ENDS_NOTHING) {
  BEGIN();
  TYPE("LOG run" + enter);
  ASSERT_EQ(::kill(child, SIGALRM), 0);
  std::this_thread::sleep_for(100ms);
  TYPE("foo" + enter);
  END_BY();
  EXPECT_NE(LOGGED().find("G_MARA-6.1>foo\n\nG_MARA-6.1>EXIT\n"), std::string::npos) << LOGGED();
}

// ---- plain reading ----

TEST_F(AT_TERMINAL, UNFIT_TERMINALS_ARE_READ_PLAINLY) {
  for (const char* term : {"dumb", "", "no-such-terminal"}) {
    BEGIN(term, false);
    TYPE("foo" + enter);
    EXPECT_EQ(said, "foo\r\n\r\nG_MARA-6.1>") << term;
    END_BY();
    EXPECT_EQ(TEXT_OF(folder / "errors"), "") << term;
  }
  EXPECT_FALSE(fs::exists(history));
}

TEST_F(AT_TERMINAL, NEITHER_PIPES_NOR_REDIRECTED_OUTPUT_ARE_EDITED) {
  terminal = OPEN_TERMINAL(102);
  if (terminal.MASTER < 0) GTEST_SKIP() << "no pseudo terminal here";
  ::setenv("TERM", "xterm", 1);
  // The output is a file.
  START(terminal.SLAVE, NEW_FILE("said"), our_own);
  TYPE_ON(terminal.MASTER, "foo\nEXIT\n");
  EXPECT_GOOD_END();
  EXPECT_TRUE(TEXT_OF(folder / "said").ends_with("\n\nG_MARA-6.1>\nG_MARA-6.1>"));
  // The input is a pipe.
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  ::close(terminal.MASTER);
  terminal = OPEN_TERMINAL(102);
  START(ends[0], terminal.SLAVE, our_own);
  TYPE_ON(ends[1], "foo\nEXIT\n");
  ::close(ends[1]);
  READ_ON(terminal.MASTER, said);
  EXPECT_GOOD_END();
  EXPECT_TRUE(said.ends_with("\r\n\r\nG_MARA-6.1>\r\nG_MARA-6.1>")) << said;
  EXPECT_FALSE(fs::exists(history));
}

}  // namespace
