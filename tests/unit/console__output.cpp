// Tests of the output channel: destinations, line breaks, star lines, warnings and the header.
#include "console_code/console/output.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

class OUTPUT : public CONSOLE_TEST {
 protected:
  static std::string WRITTEN(const std::string& text, const std::string& control = "") {
    return SAID("", [&] { WRITE_OUT(text, control); });
  }
};

std::vector<std::string> LINES(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST_F(OUTPUT, EMPTY_TEXT_IS_ONE_EMPTY_LINE) {
  EXPECT_EQ(WRITTEN(""), "\n");
}

TEST_F(OUTPUT, BAR_BREAKS_THE_LINE) {
  EXPECT_EQ(WRITTEN("a|b"), "a\nb\n");
  EXPECT_EQ(WRITTEN("a|"), "a\n\n");
  EXPECT_EQ(WRITTEN("|a"), "\na\n");
  EXPECT_EQ(WRITTEN("||a"), "\n\na\n");
  EXPECT_EQ(WRITTEN("|"), "\n\n");
}

TEST_F(OUTPUT, A_BAR_IN_A_TEXT_AS_IT_IS_IS_SHOWN) {
  EXPECT_EQ(WRITTEN("|named " + AS_IT_IS("a|b|") + "|end"), "\nnamed a|b|\nend\n");
  EXPECT_EQ(SAID("", [] { WARNING("|no file a|b"); }), "\n*****WARNING:\nno file a|b\n\n");
}

TEST_F(OUTPUT, CONTROL_CHARACTERS_ARE_BLANKS) {
  EXPECT_EQ(WRITTEN("a\tb\x1b[31mc\x7f"
                    "d\r."),
            "a b [31mc d .\n");
  EXPECT_EQ(WRITTEN("a\u0080b\u009fc"), "a b c\n");
  EXPECT_EQ(WRITTEN("a\u202ab\u202ec\u2066d\u2069e"), "a b c d e\n");
  // Their neighbours are letters and signs.
  EXPECT_EQ(WRITTEN("\u00a0\u2029\u202f\u2065\u206a\u00c5"),
            "\u00a0\u2029\u202f\u2065\u206a\u00c5\n");
  EXPECT_EQ(WRITTEN(AS_IT_IS("a\x1c|b")), "a |b\n");
}

TEST_F(OUTPUT, EACH_LINE_LOSES_TRAILING_BLANKS_AND_KEEPS_LEADING_ONES) {
  EXPECT_EQ(WRITTEN("  a  |  b   "), "  a\n  b\n");
}

TEST_F(OUTPUT, LONG_LINES_STAY_WHOLE) {
  const std::string line(1000, 'x');
  EXPECT_EQ(WRITTEN(line), line + "\n");
}

TEST_F(OUTPUT, WITHOUT_CONTROL_BOTH_CONSOLE_AND_LOG_GET_THE_LINE) {
  START_LOG();
  EXPECT_EQ(WRITTEN("a  |b"), "a\nb\n");
  EXPECT_EQ(TEXT_OF("test.log"), "a\nb\n");
}

TEST_F(OUTPUT, LOGONLY_GOES_TO_THE_LOG_ALONE) {
  START_LOG();
  EXPECT_EQ(WRITTEN("a", "logonly"), "");
  EXPECT_EQ(TEXT_OF("test.log"), "a\n");
}

TEST_F(OUTPUT, NOLOG_GOES_TO_THE_CONSOLE_ALONE) {
  START_LOG();
  EXPECT_EQ(WRITTEN("a", "NoLog"), "a\n");
  EXPECT_EQ(TEXT_OF("test.log"), "");
}

TEST_F(OUTPUT, NOLOG_WINS_OVER_LOGONLY) {
  START_LOG();
  EXPECT_EQ(WRITTEN("a", "LOGONLY NOLOG"), "a\n");
  EXPECT_EQ(TEXT_OF("test.log"), "");
}

TEST_F(OUTPUT, LOGONLY_WITHOUT_A_LOG_IS_LOST) {
  EXPECT_EQ(WRITTEN("a", "LOGONLY"), "");
}

TEST_F(OUTPUT, BLANK_SHIFTS_EVERY_LINE_BY_ONE_COLUMN) {
  EXPECT_EQ(WRITTEN("a|b", "BLANK"), " a\n b\n");
}

TEST_F(OUTPUT, UNIT_GETS_THE_LINES_AND_A_FURTHER_BLANK_WITH_THE_SHIFT) {
  START_LOG();
  ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(32, "data.txt", KVA_UTILITIES::UNIT_MODE::NEW), 0);
  EXPECT_EQ(WRITTEN("a  |b", "UNIT=   32"), "");
  EXPECT_EQ(WRITTEN("c", "UNIT=32    BLANK"), "");
  KVA_UTILITIES::CLOSE_UNIT(32);
  EXPECT_EQ(TEXT_OF("data.txt"), "a\nb\n  c\n");
  EXPECT_EQ(TEXT_OF("test.log"), "");
}

TEST_F(OUTPUT, UNREADABLE_UNIT_WRITES_NOTHING_AT_ALL) {
  START_LOG();
  for (const char* control : {"UNIT=", "UNIT=abc", "UNIT=1.5", "UNIT=3 2", "UNIT=99999999999"})
    EXPECT_EQ(WRITTEN("a", control), "") << control;
  EXPECT_EQ(TEXT_OF("test.log"), "");
}

TEST_F(OUTPUT, UNIT_THAT_IS_NOT_OPEN_IS_HARMLESS) {
  EXPECT_EQ(WRITTEN("a", "UNIT=   77"), "");
}

TEST_F(OUTPUT, RUN_TYPE_5_LEAVES_THE_CONSOLE_SILENT) {
  START_LOG();
  CONSOLE.RUN_TYPE = 5;
  EXPECT_EQ(WRITTEN("a"), "");
  EXPECT_EQ(WRITTEN("b", "NOLOG"), "");
  EXPECT_EQ(WRITTEN("c", "LOGONLY"), "");
  EXPECT_EQ(TEXT_OF("test.log"), "a\nc\n");
}

TEST_F(OUTPUT, BLANK_LINES_BY_NUMBER) {
  EXPECT_EQ(SAID("", [] { WRITE_OUT_BLANK(3); }), "\n\n\n");
  EXPECT_EQ(SAID("", [] { WRITE_OUT_BLANK(0); }), "");
  EXPECT_EQ(SAID("", [] { WRITE_OUT_BLANK(-4); }), "");
}

TEST_F(OUTPUT, EVERY_LOG_LINE_IS_IN_THE_FILE_AT_ONCE) {
  START_LOG();
  WRITTEN("first");
  EXPECT_EQ(TEXT_OF("test.log"), "first\n");  // the unit is still open
}

TEST_F(OUTPUT, LOG_ON_A_FULL_DISK_IS_CLOSED_WITH_ONE_MESSAGE) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  CONSOLE.LOG_FILE.UNIT = LOG_UNIT;
  CONSOLE.LOG_FILE.NAME = "/dev/full";
  ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(LOG_UNIT, "/dev/full", KVA_UTILITIES::UNIT_MODE::OLD), 0);
  CONSOLE.LOG_FILE.OPEN = true;
  EXPECT_EQ(WRITTEN("a|b"), "a\n*****Log file /dev/full cannot be written and was closed\nb\n");
  EXPECT_FALSE(CONSOLE.LOG_FILE.OPEN);
}

TEST_F(OUTPUT, WARNING_HAS_A_BLANK_LINE_ON_BOTH_SIDES) {
  START_LOG();
  EXPECT_EQ(SAID("", [] { WARNING("Bad thing  "); }), "\n*****WARNING: Bad thing\n\n");
  EXPECT_EQ(SAID("", [] { WARNING("Other", "NOLOG"); }), "\n*****WARNING: Other\n\n");
  EXPECT_EQ(TEXT_OF("test.log"), "\n*****WARNING: Bad thing\n\n");
}

TEST_F(OUTPUT, ANNOUNCE_WITH_BLANK_TEXT_IS_A_FULL_STAR_LINE) {
  const std::string stars(100, '*');
  EXPECT_EQ(SAID("", [] { ANNOUNCE(""); }), "\n" + stars + "\n\n");
  EXPECT_EQ(SAID("", [] { ANNOUNCE("   "); }), "\n" + stars + "\n\n");
}

// Width 100, length 4: column 48, so 47 stars, the text, one blank, and 48 stars to column 100.
TEST_F(OUTPUT, ANNOUNCE_PUTS_THE_TEXT_BEHIND_A_STAR_WITH_ONE_BLANK_AFTER_IT) {
  EXPECT_EQ(SAID("", [] { ANNOUNCE("Test  "); }),
            "\n" + std::string(47, '*') + "Test " + std::string(48, '*') + "\n\n");
}

// Width 40, length 5: (40 - 5) / 2 is 17.5, toward zero 17.
TEST_F(OUTPUT, ANNOUNCE_ROUNDS_ITS_COLUMN_TOWARD_ZERO) {
  CONSOLE.WIDTH = 40;
  EXPECT_EQ(SAID("", [] { ANNOUNCE("Tests"); }),
            "\n" + std::string(16, '*') + "Tests " + std::string(18, '*') + "\n\n");
}

TEST_F(OUTPUT, ANNOUNCE_BEGINS_A_LONG_TEXT_IN_COLUMN_1) {
  CONSOLE.WIDTH = 40;
  const std::string text(60, 'a');
  EXPECT_EQ(SAID("", [&] { ANNOUNCE(text); }), "\n" + text + "\n\n");
  // Length 39: (40 - 39) / 2 is 0, below 1; the text and its blank fill the 40 columns.
  const std::string nearly(39, 'a');
  EXPECT_EQ(SAID("", [&] { ANNOUNCE(nearly); }), "\n" + nearly + "\n\n");
}

TEST_F(OUTPUT, ANNOUNCE_PASSES_ITS_CONTROL_ON) {
  START_LOG();
  EXPECT_EQ(SAID("", [] { ANNOUNCE("Test", "LOGONLY"); }), "");
  EXPECT_EQ(LINES(TEXT_OF("test.log")).size(), 3u);
}

// ---- header ----

// The frame of width w with a text from a column on.
std::string FRAME_WITH(std::size_t w, std::size_t column, const std::string& text) {
  std::string line = "*" + std::string(w - 2, ' ') + "*";
  return line.replace(column - 1, text.size(), text);
}

TEST_F(OUTPUT, HEADER_LINE_FOR_LINE) {
  PROGRAM_COMMENT(1) = "Does one thing";
  PROGRAM_COMMENT(7) = "Does another";
  const std::vector<std::string> said = LINES(SAID("", [] { WRITE_HEADER(); }));
  const std::string frame = FRAME_WITH(100, 1, "*");
  const std::string stars(100, '*');
  // The name has 7 characters: column (100 - 7) / 2 = 46.
  const std::vector<std::string> expected{
      stars,
      frame,
      FRAME_WITH(100, 46, "Gemmara"),
      frame,
      FRAME_WITH(100, 10, "     Authors: The Gemmara developers"),
      FRAME_WITH(100, 10, "Version date: 1-FEBRUARY-2025"),
      FRAME_WITH(100, 10, "     Version:  6.10"),
      frame,
      frame,
      FRAME_WITH(100, 10, "Does one thing"),
      frame,
      frame,
      frame,
      frame,
      frame,
      FRAME_WITH(100, 10, "Does another"),
      frame,
      frame,
      frame,
      frame,
      frame,
      "",
      frame,
      stars};
  ASSERT_EQ(said.size(), expected.size());
  constexpr std::size_t time_line = 21;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (i == time_line) continue;
    EXPECT_EQ(said[i], expected[i]) << "line " << i + 1;
  }
  // "Current date and time: DD-MMM-YYYY hh:mm" from column 10.
  const std::string& time = said[time_line];
  EXPECT_EQ(time.substr(0, 32), "*        Current date and time: ");
  EXPECT_EQ(time.substr(32, 11).find('-'), 2u);
  EXPECT_EQ(time[43], ' ');
  EXPECT_EQ(time[46], ':');
  EXPECT_EQ(time.substr(49), std::string(50, ' ') + "*");
}

TEST_F(OUTPUT, HEADER_HEIGHT_DOES_NOT_VARY_WITH_THE_COMMENTS) {
  const std::size_t empty = LINES(SAID("", [] { WRITE_HEADER(); })).size();
  PROGRAM_COMMENT.FILL("words");
  EXPECT_EQ(LINES(SAID("", [] { WRITE_HEADER(); })).size(), empty);
}

TEST_F(OUTPUT, HEADER_ENDS_WITH_THE_WORKING_DIRECTORY) {
  CONSOLE.INITPARMS(1) = "WDIR  /some/place";
  const std::vector<std::string> said = LINES(SAID("", [] { WRITE_HEADER(); }));
  ASSERT_EQ(said.size(), 27u);
  EXPECT_EQ(said[24], "");
  EXPECT_EQ(said[25], "    Current working directory is now: " + folder.string());
  EXPECT_EQ(said[26], "");
}

TEST_F(OUTPUT, LOGONLY_HEADER_LEAVES_THE_CONSOLE_ALONE) {
  START_LOG();
  CONSOLE.INITPARMS(1) = "WDIR  /some/place";
  EXPECT_EQ(SAID("", [] { WRITE_HEADER("logonly"); }), "");
  EXPECT_EQ(LINES(TEXT_OF("test.log")).size(), 27u);
}

TEST_F(OUTPUT, HEADER_TAKES_ITS_WIDTH_FROM_THE_CONTROL) {
  const std::vector<std::string> said = LINES(SAID("", [] { WRITE_HEADER("WIDTH=   60"); }));
  for (const std::string& line : said) EXPECT_EQ(line.size(), 60u);
  EXPECT_EQ(said[2], FRAME_WITH(60, 26, "Gemmara"));  // (60 - 7) / 2 is 26
}

TEST_F(OUTPUT, HEADER_WITH_AN_UNREADABLE_OR_IMPOSSIBLE_WIDTH_HAS_THE_USUAL_ONE) {
  for (const char* control : {"WIDTH=", "WIDTH=abc", "WIDTH=   -5", "WIDTH=    0", "WIDTH=99999"})
    EXPECT_EQ(LINES(SAID("", [&] { WRITE_HEADER(control); }))[0], std::string(100, '*')) << control;
}

TEST_F(OUTPUT, LONG_HEADER_TEXTS_ARE_CUT_INSIDE_THE_FRAME) {
  PROGRAM_AUTHORS = std::string(255, 'a');
  PROGRAM_COMMENT(1) = std::string(255, 'c');
  const std::vector<std::string> said = LINES(SAID("", [] { WRITE_HEADER(); }));
  // "     Authors: " fills columns 10 to 23, names go to column 99, and the star keeps column 100.
  EXPECT_EQ(said[4],
            "*        "
            "     Authors: " +
                std::string(76, 'a') + "*");
  // A comment ends in column 98.
  EXPECT_EQ(said[9], "*        " + std::string(89, 'c') + " *");
}

TEST_F(OUTPUT, NARROW_HEADER_KEEPS_ITS_FRAME) {
  PROGRAM_COMMENT.FILL("Some words that do not fit");
  for (int width = 2; width <= 30; ++width) {
    CONSOLE.WIDTH = width;
    const std::vector<std::string> said = LINES(SAID("", [] { WRITE_HEADER(); }));
    ASSERT_EQ(said.size(), 24u);
    EXPECT_TRUE(std::all_of(said.begin(), said.end(), [width](const std::string& line) {
      return line.size() == static_cast<std::size_t>(width) && line.front() == '*' &&
             line.back() == '*';
    })) << width;
  }
}

TEST_F(OUTPUT, WORKING_DIRECTORY_LINE) {
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), "");
  CONSOLE.INITPARMS(3) = "WDIR  /data/My Files";
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }),
            "\n    Current working directory is now: " + folder.string() + "\n\n")
      << "the directory where we are, even when the entry holds another one";
}

}  // namespace
