// What TAB adds to a line: offered words, entries of menus, names of files.
#include "console_code/console/completion.h"

#include <array>

#include "console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using TEXTS = std::vector<std::string>;

constexpr std::array<std::string_view, 3> list_menu{"block names", "bond lengths", "cells"};
constexpr std::array<std::string_view, 2> file_menu{"cif", "Crystal17 out"};

// A command line: two commands have menus, and names of files may follow.
LINE_HELP COMMAND_LINE() {
  return {.WORDS = {{"LIST", list_menu}, {"LOG"}, {"READ", file_menu}, {"SET"}, {"SETUP"}},
          .FILES = true};
}

void EXPECT_COMPLETION(const COMPLETION& completion, std::size_t typed, const std::string& text,
                       const TEXTS& candidates) {
  EXPECT_EQ(completion.TYPED, typed);
  EXPECT_EQ(completion.TEXT, text);
  EXPECT_EQ(completion.CANDIDATES, candidates);
}

// ---- words ----

TEST(COMPLETION_OF_WORDS, ONLY_FITTING_WORD_TAKES_THE_PLACE_OF_ITS_START_IN_ANY_CASE) {
  EXPECT_COMPLETION(COMPLETE("r", COMMAND_LINE()), 1, "READ ", {"READ"});
  EXPECT_COMPLETION(COMPLETE("  Lis", COMMAND_LINE()), 3, "LIST ", {"LIST"});
}

TEST(COMPLETION_OF_WORDS, SEVERAL_FITTING_WORDS_GIVE_WHAT_THEY_HAVE_IN_COMMON) {
  EXPECT_COMPLETION(COMPLETE("s", COMMAND_LINE()), 1, "SET", {"SET", "SETUP"});
  EXPECT_COMPLETION(COMPLETE("set", COMMAND_LINE()), 3, "set", {"SET", "SETUP"});
  EXPECT_COMPLETION(COMPLETE("l", COMMAND_LINE()), 1, "l", {"LIST", "LOG"});
}

TEST(COMPLETION_OF_WORDS, EMPTY_LINE_OFFERS_ALL) {
  EXPECT_COMPLETION(COMPLETE("", COMMAND_LINE()), 0, "", {"LIST", "LOG", "READ", "SET", "SETUP"});
}

TEST(COMPLETION_OF_WORDS, NOTHING_FITS) {
  EXPECT_COMPLETION(COMPLETE("xyz", COMMAND_LINE()), 0, "", {});
  EXPECT_COMPLETION(COMPLETE("", LINE_HELP{}), 0, "", {});
}

// Labels stand alone on their line, so no blank is put behind them. Equal ones count once.
TEST(COMPLETION_OF_WORDS, LABELS) {
  const LINE_HELP labels{.WORDS = {{"Si1"}, {"O1"}, {"O10"}, {"O1"}}};
  EXPECT_COMPLETION(COMPLETE("s", labels), 1, "Si1", {"Si1"});
  EXPECT_COMPLETION(COMPLETE("o", labels), 1, "O1", {"O1", "O10"});
  EXPECT_COMPLETION(COMPLETE("O1 ", labels), 0, "", {});
}

// ---- menus ----

TEST(COMPLETION_OF_MENUS, FIRST_WORD_OF_AN_ENTRY_FOLLOWS_ITS_COMMAND) {
  EXPECT_COMPLETION(COMPLETE("LIST ce", COMMAND_LINE()), 2, "cells ", {"cells"});
  EXPECT_COMPLETION(COMPLETE("LIST b", COMMAND_LINE()), 1, "b", {"block", "bond"});
  EXPECT_COMPLETION(COMPLETE("LIST ", COMMAND_LINE()), 0, "", {"block", "bond", "cells"});
  EXPECT_COMPLETION(COMPLETE("READ cry", COMMAND_LINE()), 3, "Crystal17 ", {"Crystal17"});
}

TEST(COMPLETION_OF_MENUS, COMMAND_MAY_BE_CUT_SHORT_AS_LONG_AS_ONE_FITS) {
  EXPECT_COMPLETION(COMPLETE("li BO", COMMAND_LINE()), 2, "bond ", {"bond"});
  EXPECT_COMPLETION(COMPLETE("l bo", COMMAND_LINE()), 0, "", {});
}

TEST(COMPLETION_OF_MENUS, WHOLE_WORD_COUNTS_BEFORE_ONE_THAT_IT_BEGINS) {
  const LINE_HELP help{.WORDS = {{"SETUP", file_menu}, {"SET", list_menu}}, .FILES = true};
  EXPECT_COMPLETION(COMPLETE("set ce", help), 2, "cells ", {"cells"});
}

// ---- files ----

class COMPLETION_OF_FILES : public CONSOLE_TEST {};

const LINE_HELP file_name{.FILES = true};

TEST_F(COMPLETION_OF_FILES, NAMES_IN_THE_WORKING_DIRECTORY) {
  PUT_FILE("quartz.cif", "");
  PUT_FILE("quartz2.cif", "");
  PUT_FILE("Beryl.cif", "");
  EXPECT_COMPLETION(COMPLETE("B", file_name), 1, "Beryl.cif", {"Beryl.cif"});
  EXPECT_COMPLETION(COMPLETE("q", file_name), 1, "quartz", {"quartz.cif", "quartz2.cif"});
  EXPECT_COMPLETION(COMPLETE("quartz", file_name), 6, "quartz", {"quartz.cif", "quartz2.cif"});
  EXPECT_COMPLETION(COMPLETE("b", file_name), 0, "", {});  // files have their own case
}

TEST_F(COMPLETION_OF_FILES, FOLDERS_END_WITH_A_SLASH_AND_ARE_ENTERED) {
  fs::create_directory("data");
  PUT_FILE("data/garnet.cif", "");
  EXPECT_COMPLETION(COMPLETE("da", file_name), 2, "data/", {"data/"});
  EXPECT_COMPLETION(COMPLETE("data/", file_name), 0, "garnet.cif", {"garnet.cif"});
  EXPECT_COMPLETION(COMPLETE("nothere/g", file_name), 0, "", {});
  EXPECT_COMPLETION(COMPLETE((folder / "data/ga").string(), file_name), 2, "garnet.cif",
                    {"garnet.cif"});
}

TEST_F(COMPLETION_OF_FILES, TILDE_IS_THE_HOME_DIRECTORY) {
  PUT_FILE("home/salt.cif", "");
  EXPECT_COMPLETION(COMPLETE("~/s", file_name), 1, "salt.cif", {"salt.cif"});
}

TEST_F(COMPLETION_OF_FILES, HIDDEN_ONES_ONLY_WHEN_THEY_ARE_MEANT) {
  fs::create_directory("d");
  PUT_FILE("d/.hidden", "");
  PUT_FILE("d/seen", "");
  EXPECT_COMPLETION(COMPLETE("d/", file_name), 0, "seen", {"seen"});
  EXPECT_COMPLETION(COMPLETE("d/.", file_name), 1, ".hidden", {".hidden"});
}

TEST_F(COMPLETION_OF_FILES, NAMES_WITH_BLANKS_AND_IN_QUOTES) {
  PUT_FILE("my first.cif", "");
  PUT_FILE("first", "");
  EXPECT_COMPLETION(COMPLETE("my fi", file_name), 5, "my first.cif", {"my first.cif"});
  EXPECT_COMPLETION(COMPLETE("READ cif my fi", COMMAND_LINE()), 5, "my first.cif",
                    {"my first.cif"});
  EXPECT_COMPLETION(COMPLETE("READ cif \"my", COMMAND_LINE()), 2, "my first.cif", {"my first.cif"});
  EXPECT_COMPLETION(COMPLETE("READ cif fi", COMMAND_LINE()), 2, "first", {"first"});
}

TEST_F(COMPLETION_OF_FILES, WHERE_NO_ENTRY_OF_THE_MENU_FITS) {
  PUT_FILE("cube.mcr", "");
  EXPECT_COMPLETION(COMPLETE("LOG c", COMMAND_LINE()), 1, "cube.mcr", {"cube.mcr"});
  EXPECT_COMPLETION(COMPLETE("READ c", COMMAND_LINE()), 1, "c", {"Crystal17", "cif"});
  EXPECT_COMPLETION(COMPLETE("READ cu", COMMAND_LINE()), 2, "cube.mcr", {"cube.mcr"});
  EXPECT_COMPLETION(COMPLETE("cu", COMMAND_LINE()), 0, "", {});  // no command
}

// "\303\244" and "\303\266" are two letters whose first bytes are the same.
TEST_F(COMPLETION_OF_FILES, WHAT_THEY_HAVE_IN_COMMON_ENDS_WITH_A_WHOLE_CHARACTER) {
  PUT_FILE("r\303\244", "");
  PUT_FILE("r\303\266", "");
  EXPECT_COMPLETION(COMPLETE("r", file_name), 1, "r", {"r\303\244", "r\303\266"});
}

TEST_F(COMPLETION_OF_FILES, NAMES_THAT_NO_LINE_CAN_HOLD_ARE_LEFT_OUT) {
  PUT_FILE("odd\nname", "");
  PUT_FILE("odd\033[2J", "");
  PUT_FILE("odder", "");
  EXPECT_COMPLETION(COMPLETE("od", file_name), 2, "odder", {"odder"});
}

TEST(COMPLETION_OF_EXPRESSIONS, WORDS_STAND_BEHIND_SIGNS_AND_BRACKETS) {
  LINE_HELP help;
  help.EXPRESSION = true;
  help.WORDS = {{"O1"}, {"O10"}, {"Si1"}, {"angle"}, {"kink"}};
  EXPECT_COMPLETION(COMPLETE("m = angle(O1,S", help), 1, "Si1", {"Si1"});
  EXPECT_COMPLETION(COMPLETE("m = 180-ki", help), 2, "kink", {"kink"});
  EXPECT_COMPLETION(COMPLETE("m = an", help), 2, "angle", {"angle"});
  EXPECT_COMPLETION(COMPLETE("m = dist(o", help), 1, "O1", {"O1", "O10"});
  EXPECT_COMPLETION(COMPLETE("m = 2*ki", help), 2, "kink", {"kink"});
  EXPECT_COMPLETION(COMPLETE("m = angle(O1,Q", help), 0, "", {});
  EXPECT_COMPLETION(COMPLETE("m = kink(", help), 0, "", {"O1", "O10", "Si1", "angle", "kink"});
}

TEST(COMPLETION_OF_EXPRESSIONS, SITES_HAVE_SIGNS_BRACKETS_AND_QUOTES_IN_THEM) {
  LINE_HELP help;
  help.EXPRESSION = true;
  help.WORDS = {{"C(11)"}, {"C(12)"}, {"O1*"}, {"'O-H4'"}, {"H1'"}, {"x"}};
  EXPECT_COMPLETION(COMPLETE("m = dist(C(", help), 2, "C(1", {"C(11)", "C(12)"});
  EXPECT_COMPLETION(COMPLETE("m = dist(c(11", help), 4, "C(11)", {"C(11)"});
  EXPECT_COMPLETION(COMPLETE("m = 2*x(O1*", help), 3, "O1*", {"O1*"});
  EXPECT_COMPLETION(COMPLETE("m = x('o-", help), 3, "'O-H4'", {"'O-H4'"});
  EXPECT_COMPLETION(COMPLETE("m = x(h1", help), 2, "H1'", {"H1'"});
}

}  // namespace
