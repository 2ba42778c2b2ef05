// Tests of the one reader: console, macro, log, recording, and the end of input.
#include "console_code/console/input.h"

#include <gtest/gtest.h>

#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

class INPUT : public CONSOLE_TEST {
 protected:
  static std::string ASKED(const std::string& input, const std::string& prompt = "Name: ") {
    return SAID(input, [&] { GET_INPUT(prompt); });
  }
};
using INPUT_DEATH = INPUT;

TEST_F(INPUT, PROMPT_IS_SHOWN_TRIMMED_WITHOUT_A_LINE_END) {
  EXPECT_EQ(ASKED("abc\n"), "Name:");
  EXPECT_EQ(CONSOLE.INSTRING, "abc");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 3);
}

TEST_F(INPUT, LEADING_AND_TRAILING_BLANKS_GO) {
  ASKED("   a b  \n");
  EXPECT_EQ(CONSOLE.INSTRING, "a b");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 3);
}

TEST_F(INPUT, BLANK_LINES_LEAVE_NOTHING_PENDING) {
  for (const char* line : {"\n", "    \n", "\t\t\n", "\r\n"}) {
    PEND("old text");
    ASKED(line);
    EXPECT_EQ(CONSOLE.INSTRING, "");
    EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
  }
}

TEST_F(INPUT, PENDING_TEXT_IS_LOST) {
  PEND("old text");
  ASKED("new\n");
  EXPECT_EQ(CONSOLE.INSTRING, "new");
}

TEST_F(INPUT, CONTROL_CHARACTERS_COUNT_AS_BLANKS) {
  ASKED(
      std::string("a\tb\x01"
                  "c\x7f"
                  "d\0e\x1b[A\r\n",
                  14));
  EXPECT_EQ(CONSOLE.INSTRING, "a b c d e [A");
}

const std::string too_long =
    "\n*****WARNING: The line is longer than 255 characters: the rest of it is not read\n\n";

TEST_F(INPUT, LINES_ARE_CUT_AT_255_BYTES_AND_THAT_IS_TOLD) {
  for (const std::string end : {"\n", "\r\n"}) {
    EXPECT_EQ(ASKED(std::string(255, 'a') + end), "Name:");
    EXPECT_EQ(CONSOLE.INSTRING, std::string(255, 'a'));
    EXPECT_EQ(ASKED(std::string(255, 'a') + "b" + end), "Name:" + too_long);
    EXPECT_EQ(CONSOLE.INSTRING, std::string(255, 'a'));
    EXPECT_EQ(ASKED(std::string(1000000, 'a') + end), "Name:" + too_long);
    EXPECT_EQ(CONSOLE.INSTRING_LEN, 255);
  }
}

// 254 bytes and an a-umlaut of two: the character would end at 256, so it goes as a whole.
TEST_F(INPUT, CUT_IS_NOT_INSIDE_A_CHARACTER) {
  ASKED(std::string(254, 'a') + "\xC3\xA4\n");
  EXPECT_EQ(CONSOLE.INSTRING, std::string(254, 'a'));
  ASKED(std::string(253, 'a') + "\xC3\xA4\n");
  EXPECT_EQ(CONSOLE.INSTRING, std::string(253, 'a') + "\xC3\xA4");
}

TEST_F(INPUT, LAST_LINE_NEEDS_NO_LINE_END) {
  ASKED("abc");
  EXPECT_EQ(CONSOLE.INSTRING, "abc");
}

TEST_F(INPUT, CONSOLE_READER_TELLS_THE_END_OF_INPUT) {
  EXPECT_EQ(SAID("", [] { EXPECT_FALSE(GET_INPUT_CMD("Name: ")); }), "Name:");
}

TEST_F(INPUT, LOG_HOLDS_PROMPT_AND_ANSWER_AS_ONE_LINE) {
  START_LOG();
  ASKED("  abc  \n");
  ASKED("\n");
  ASKED("a|b\n", "     ");
  EXPECT_EQ(TEXT_OF("test.log"), "Name:  abc\nName:\na|b\n");
}

// ---- macro ----

TEST_F(INPUT, MACRO_LINE_IS_ECHOED_AS_IF_TYPED) {
  START_MACRO_WITH("  first line  \nsecond\n");
  EXPECT_EQ(ASKED(""), "Name:  first line\n");
  EXPECT_EQ(CONSOLE.INSTRING, "first line");
  EXPECT_EQ(ASKED(""), "Name:second\n");
  EXPECT_EQ(CONSOLE.INSTRING, "second");
}

TEST_F(INPUT, MACRO_ECHO_DOES_NOT_GO_TO_THE_LOG_TWICE) {
  START_MACRO_WITH("line\n");
  START_LOG();
  ASKED("");
  EXPECT_EQ(TEXT_OF("test.log"), "Name:line\n");
}

TEST_F(INPUT, A_BAR_IS_SHOWN_IN_MACRO_ECHO_AND_LOG) {
  START_MACRO_WITH("a|b\n");
  START_LOG();
  EXPECT_EQ(ASKED(""), "Name:a|b\n");
  EXPECT_EQ(TEXT_OF("test.log"), "Name:a|b\n");
}

TEST_F(INPUT, END_OF_A_MACRO_IS_AN_EMPTY_ANSWER_AND_THEN_THE_CONSOLE_IS_ASKED) {
  START_MACRO_WITH("line\n");
  START_LOG();
  EXPECT_EQ(SAID("typed\n",
                 [] {
                   GET_INPUT("A:");
                   GET_INPUT("B:");
                   EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
                   GET_INPUT("C:");
                   EXPECT_EQ(CONSOLE.INSTRING, "typed");
                 }),
            "A:line\nB:\n***** Macro completed\nC:");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
  EXPECT_EQ(TEXT_OF("test.log"), "A:line\n***** Macro completed\nB:\nC:typed\n");
}

TEST_F(INPUT, MACRO_READING_ERROR_ABORTS_IT) {
  START_MACRO_WITH("line\n");
  KVA_UTILITIES::CLOSE_UNIT(MACRO_UNIT);  // so that the next read fails
  EXPECT_EQ(ASKED(""), "Name:\n***** Macro aborted because of reading error from macro file\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(INPUT, MACRO_LINES_MAY_END_WITH_RETURNS_AND_HOLD_CONTROL_CHARACTERS) {
  START_MACRO_WITH("one\r\n\ttwo\x02three\r\nlast");
  EXPECT_EQ(ASKED(""), "Name:one\n");
  EXPECT_EQ(ASKED(""), "Name: two three\n");
  EXPECT_EQ(ASKED(""), "Name:last\n");
}

TEST_F(INPUT, MACRO_LINES_ARE_CUT_AT_255_BYTES_AND_THAT_IS_TOLD) {
  const std::string whole(255, 'a');
  START_MACRO_WITH(whole + "\n" + whole + "\r\n" + whole + "b\n");
  EXPECT_EQ(ASKED(""), "Name:" + whole + "\n");
  EXPECT_EQ(ASKED(""), "Name:" + whole + "\n");
  EXPECT_EQ(ASKED(""), "Name:" + whole + "\n" + too_long);
  EXPECT_EQ(CONSOLE.INSTRING, whole);
}

// ---- a command that is dropped ----

TEST_F(INPUT, NOTHING_IS_ASKED_OR_SAID_ONCE_THE_COMMAND_IS_DROPPED) {
  PEND("old text");
  DROP_COMMAND();
  EXPECT_EQ(ASKED(""), "");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(INPUT, LINES_OF_A_DROPPED_COMMAND_LEAVE_THE_MACRO_AND_FINISHED_STEPS_STAY) {
  PUT_FILE("rec.mcr", "");
  CONSOLE.MACRO_FILE.UNIT = MACRO_UNIT;
  CONSOLE.MACRO_FILE.NAME = "rec.mcr";
  KVA_UTILITIES::OPEN_UNIT(MACRO_UNIT, "rec.mcr", KVA_UTILITIES::UNIT_MODE::REPLACE);
  CONSOLE.MACRO_FILE.OPEN = true;
  CONSOLE.MACRO_STATE = -1;
  KEEP_RECORDED({});
  ASKED("first\n");
  KEEP_RECORDED({});
  ASKED("second\n");
  ASKED("of the second\n");
  DROP_COMMAND();
  CONSOLE.DROPPED = false;
  EXPECT_EQ(TEXT_OF("rec.mcr"), "first\n");
  KEEP_RECORDED({});
  ASKED("third\n");
  ASKED("done\n");
  KEEP_RECORDED({"", "EXIT"});
  ASKED("half\n");
  DROP_COMMAND();
  EXPECT_EQ(TEXT_OF("rec.mcr"), "first\nthird\ndone\n\nEXIT\n");
}

// ---- recording ----

class RECORDING : public INPUT {
 protected:
  void SetUp() override {
    INPUT::SetUp();
    START_MACRO_WITH("");
    CONSOLE.MACRO_STATE = -1;
  }
};

TEST_F(RECORDING, EVERY_ANSWER_IS_A_LINE_AND_A_BLANK_ONE_AN_EMPTY_LINE) {
  ASKED("  first  \n");
  ASKED("\n");
  ASKED("a|b\n");
  EXPECT_EQ(TEXT_OF("test.mcr"), "first\n\na|b\n");
}

TEST_F(RECORDING, NOTHING_IS_WRITTEN_WHEN_THE_FILE_IS_CLOSED) {
  KVA_UTILITIES::CLOSE_FILE(CONSOLE.MACRO_FILE);
  EXPECT_EQ(ASKED("abc\n"), "Name:");
  EXPECT_EQ(TEXT_OF("test.mcr"), "");
}

TEST_F(RECORDING, FULL_DISK_STOPS_IT_WITH_A_MESSAGE) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(MACRO_UNIT, "/dev/full", KVA_UTILITIES::UNIT_MODE::OLD), 0);
  EXPECT_EQ(ASKED("abc\n"),
            "Name:***** Macro recording stopped because test.mcr cannot be written\n");
  EXPECT_EQ(CONSOLE.INSTRING, "abc");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
}

// ---- end of input ----

TEST_F(INPUT_DEATH, END_OF_INPUT_ENDS_THE_PROGRAM_WITH_STATUS_2) {
  EXPECT_EXIT(
      {
        REDIRECTED console("");
        GET_INPUT("Name:");
      },
      testing::ExitedWithCode(2), "^Gemmara: end of input\n$");
}

// ---- words ----

TEST_F(INPUT, WORDS_ARE_TAKEN_OFF_THE_PENDING_TEXT) {
  PEND("one   two");
  EXPECT_EQ(TAKE_WORD(), "one");
  EXPECT_EQ(CONSOLE.INSTRING, "two");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 3);
  EXPECT_EQ(TAKE_WORD(), "two");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
  EXPECT_EQ(TAKE_WORD(), "");
}

TEST_F(INPUT, CLEARING_LEAVES_NOTHING_PENDING) {
  PEND("text");
  CLEAR_INPUT();
  EXPECT_EQ(CONSOLE.INSTRING, "");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

}  // namespace
