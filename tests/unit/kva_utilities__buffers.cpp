// Searching and cleaning the lines of a file, and what a file that fails leaves of the last one.
#include <gtest/gtest.h>

#include <string>

#include "console_code/kva_utilities/files.h"
#include "places.h"

using namespace KVA_UTILITIES;

TEST(BUFFERS, SEARCHES_KEEP_TO_THEIR_RANGE) {
  const FILE_LINES lines{{"key 1", "b", "  Key 3", "d", "KEY 5"}};
  EXPECT_EQ(FINDLINE(lines, "key", 2, 4), 3);
  EXPECT_EQ(FINDLINE(lines, "key", 4, 4), 0);
  EXPECT_EQ(FINDLINE(lines, "key", 2, 2), 0);
  EXPECT_EQ(PREVLINE(lines, "key", 2, 4), 3);
  EXPECT_EQ(PREVLINE(lines, "key", 4, 4), 0) << "not beyond the first line of the range";
  EXPECT_EQ(PREVLINE(lines, "key", 2, 2), 0);
}

TEST(BUFFERS, A_RANGE_BELOW_1_IS_THE_WHOLE_FILE_AND_ONE_BEYOND_IT_ENDS_WITH_IT) {
  const FILE_LINES lines{{"key 1", "b", "key 3"}};
  EXPECT_EQ(FINDLINE(lines, "key", -5, -5), 1);
  EXPECT_EQ(PREVLINE(lines, "key", -5, -5), 3);
  EXPECT_EQ(FINDLINE(lines, "none", 1, 99), 0);
  EXPECT_EQ(PREVLINE(lines, "key", 1, 99), 3);
  EXPECT_EQ(FINDLINE(lines, "key", 4, 0), 0);
}

TEST(BUFFERS, LETTERS_OF_OTHER_ALPHABETS_ARE_NO_CONTROL_CHARACTERS) {
  FILE_LINES lines{{"\xC3\x85 \x1F\x01x"}};
  CLEAN_FILE(lines);
  EXPECT_EQ(lines(1), "\xC3\x85   x");
}

TEST(BUFFERS, A_WORD_THAT_HOLDS_THE_OLD_ONE_IS_PUT_ONCE_AND_LINES_STAY_WITHIN_255) {
  FILE_LINES lines{{"pos pos", std::string(254, 'x') + "a"}};
  REPLACE_WORD(lines, "pos", "my_pos");
  EXPECT_EQ(lines(1), "my_pos my_pos");
  REPLACE_WORD(lines, "a", "bcd");
  EXPECT_EQ(lines(2), std::string(254, 'x') + "b");
}

TEST(BUFFERS, READING_KEEPS_NOTHING_OF_THE_LAST_FILE) {
  FILE_RECORD file;
  FILE_LINES lines{{"of the last file"}};
  std::string message = "of the last file";
  READ_FILE(file, lines, message);
  EXPECT_EQ(lines.COUNT(), 0);
  file.NAME = "/no/such/file";
  lines = {{"of the last file"}};
  READ_FILE(file, lines, message);
  EXPECT_EQ(lines.COUNT(), 0);
  EXPECT_EQ(message, "*****Error opening file: /no/such/file");
  file.NAME = PLACES::SOURCE() + "/.clang-format";
  lines = {{"of the last file"}};
  READ_FILE(file, lines, message);
  EXPECT_EQ(message, "");
  EXPECT_EQ(FINDLINE(lines, "of the last file", 0, 0), 0);
}
