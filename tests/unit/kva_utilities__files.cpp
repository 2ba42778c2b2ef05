// Units, names and whole files.
#include "console_code/kva_utilities/files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

using namespace KVA_UTILITIES;
namespace fs = std::filesystem;

namespace {

class FILES : public testing::Test {
 protected:
  fs::path FOLDER = fs::temp_directory_path() / ("gemmara_files_" + std::to_string(::getpid()));

  void SetUp() override { fs::create_directories(FOLDER); }
  void TearDown() override { fs::remove_all(FOLDER); }

  std::string NAME(const std::string& file) const { return (FOLDER / file).string(); }

  std::string MADE(const std::string& file, const std::string& content) const {
    std::ofstream(NAME(file), std::ios::binary) << content;
    return NAME(file);
  }

  std::string CONTENT(const std::string& file) const {
    std::ifstream stream(NAME(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }

  // Lines of a file with the content; the message in message.
  FILE_LINES READ_BACK(const std::string& content, std::string& message) const {
    FILE_RECORD file;
    file.NAME = MADE("read.txt", content);
    FILE_LINES lines;
    READ_FILE(file, lines, message);
    return lines;
  }
};

constexpr int unit = 40;

}  // namespace

// ---- lines of bytes ----

TEST(LINES, ARE_TAKEN_OFF_BYTES_AS_OFF_A_FILE) {
  const std::string longest(LINE_LENGTH, 'a');
  std::string_view bytes = "one  \n\ntwo\r\n";
  EXPECT_EQ(COUNT_LINES(bytes), 3);
  EXPECT_EQ(TAKE_LINE(bytes), "one");
  EXPECT_EQ(TAKE_LINE(bytes), "");
  EXPECT_EQ(TAKE_LINE(bytes), "two\r");
  EXPECT_TRUE(bytes.empty());
  FILE_LINES lines;
  LINES_OF(longest + "b\nlast", lines);
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{longest, "last"}));
  LINES_OF("fewer\n", lines);
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"fewer"}));
  LINES_OF("", lines);
  EXPECT_EQ(lines.COUNT(), 0);
  EXPECT_EQ(WITHOUT_MARK("\xEF\xBB\xBF"
                         "a"),
            "a");
  EXPECT_EQ(WITHOUT_MARK("\xEF\xBB"), "\xEF\xBB");
}

// ---- units ----

TEST_F(FILES, OLD_FILES_MUST_EXIST_AND_ARE_READ_FROM_THE_START) {
  EXPECT_EQ(OPEN_UNIT(unit, NAME("none"), UNIT_MODE::OLD), ENOENT);
  MADE("old", "one\ntwo");
  ASSERT_EQ(OPEN_UNIT(unit, NAME("old"), UNIT_MODE::OLD), 0);
  EXPECT_TRUE(UNIT_READABLE(unit));
  std::string line;
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::LINE);
  EXPECT_EQ(line, "one");
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::LINE) << "a last line without a line end counts";
  EXPECT_EQ(line, "two");
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::END);
  CLOSE_UNIT(unit);
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::FAILED);
}

TEST_F(FILES, NEW_FILES_MUST_NOT_EXIST) {
  EXPECT_EQ(OPEN_UNIT(unit, NAME("new"), UNIT_MODE::NEW), 0);
  EXPECT_EQ(OPEN_UNIT(unit, NAME("new"), UNIT_MODE::NEW), EEXIST);
}

TEST_F(FILES, UNKNOWN_FILES_ARE_OPENED_OR_MADE_AND_LOSE_NOTHING) {
  MADE("old", "one\ntwo\n");
  ASSERT_EQ(OPEN_UNIT(unit, NAME("old"), UNIT_MODE::UNKNOWN), 0);
  std::string line;
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::LINE);
  EXPECT_EQ(line, "one") << "from the start";
  EXPECT_EQ(CONTENT("old"), "one\ntwo\n");
  EXPECT_EQ(OPEN_UNIT(unit, NAME("new"), UNIT_MODE::UNKNOWN), 0);
  EXPECT_TRUE(fs::exists(NAME("new")));
  fs::create_symlink(NAME("target"), NAME("link"));
  EXPECT_EQ(OPEN_UNIT(unit, NAME("link"), UNIT_MODE::UNKNOWN), 0);
  EXPECT_TRUE(fs::exists(NAME("target")));
  CLOSE_UNIT(unit);
}

TEST_F(FILES, APPENDING_KEEPS_AND_REPLACING_DROPS_WHAT_WAS) {
  MADE("a", "one\n");
  ASSERT_EQ(OPEN_UNIT(unit, NAME("a"), UNIT_MODE::APPEND), 0);
  EXPECT_TRUE(WRITE_UNIT(unit, "two"));
  EXPECT_EQ(CONTENT("a"), "one\ntwo\n") << "every line is on the disk when it is written";
  ASSERT_EQ(OPEN_UNIT(unit, NAME("a"), UNIT_MODE::REPLACE), 0);
  EXPECT_TRUE(WRITE_UNIT(unit, " "));
  CLOSE_UNIT(unit);
  EXPECT_EQ(CONTENT("a"), " \n");
}

TEST_F(FILES, DIRECTORIES_ARE_REFUSED_AND_FULL_DISKS_ARE_TOLD) {
  EXPECT_NE(OPEN_UNIT(unit, FOLDER.string(), UNIT_MODE::OLD), 0);
  EXPECT_NE(OPEN_UNIT(unit, FOLDER.string(), UNIT_MODE::REPLACE), 0);
  ASSERT_EQ(OPEN_UNIT(unit, "/dev/full", UNIT_MODE::APPEND), 0);
  EXPECT_FALSE(WRITE_UNIT(unit, "text"));
  CLOSE_UNIT(unit);
  EXPECT_FALSE(WRITE_UNIT(unit, "text")) << "no file is open";
}

// ---- names ----

TEST(NAMES, BOTH_SEPARATORS_ARE_UNDERSTOOD) {
  EXPECT_EQ(FILENAME("/a/b/c.cif"), "c.cif");
  EXPECT_EQ(FILENAME("a\\b\\c.cif"), "c.cif");
  EXPECT_EQ(FILENAME("c.cif", "NOEXT"), "c");
  EXPECT_EQ(FILENAME("/a.b/c", "noext"), "c");
  EXPECT_EQ(FILENAME("a.b.c", "NOEXT"), "a.b");
}

// ---- whole files ----

TEST_F(FILES, LINE_ENDS_OF_BOTH_KINDS_AND_THE_BYTE_ORDER_MARK) {
  std::string message;
  const FILE_LINES lines = READ_BACK(
      "\xEF\xBB\xBF"
      "one\r\ntwo  \n\nthree",
      message);
  EXPECT_EQ(message, "");
  ASSERT_EQ(lines.COUNT(), 4);
  EXPECT_EQ(lines(1), "one");
  EXPECT_EQ(lines(2), "two");
  EXPECT_EQ(lines(3), "");
  EXPECT_EQ(lines(4), "three");
}

TEST_F(FILES, LINES_ARE_CUT_AT_255_BYTES) {
  std::string message;
  EXPECT_EQ(READ_BACK(std::string(10'000'000, 'x') + "\ny", message)(1).size(), 255u);
  EXPECT_EQ(READ_BACK(std::string(254, 'x') + "\xC3\xA9\n", message)(1).size(), 254u)
      << "a character is not cut in two";
}

TEST_F(FILES, MESSAGES_OF_FILES_THAT_CANNOT_BE_READ) {
  FILE_RECORD file;
  FILE_LINES lines;
  std::string message;
  READ_FILE(file, lines, message);
  EXPECT_EQ(message, "File cannot be read: No file name given");
  file.NAME = NAME("none");
  READ_FILE(file, lines, message);
  EXPECT_EQ(message, "*****Error opening file: " + NAME("none"));
  file.NAME = FOLDER.string();
  READ_FILE(file, lines, message);
  EXPECT_EQ(message, "*****Error opening file: " + FOLDER.string());
  EXPECT_EQ(READ_BACK("", message).COUNT(), 0);
  EXPECT_EQ(message, "*****Error in reading file: " + NAME("read.txt") + " or it is empty");
}

TEST_F(FILES, A_READ_FAILURE_BEHIND_GOOD_LINES_LEAVES_NONE_OF_THEM) {
  // A line without an end, beyond all bounds: 64 MB of nothing behind the first line.
  FILE_RECORD file;
  file.NAME = MADE("endless", "one\n");
  file.OPEN = true;
  fs::resize_file(file.NAME, 64 << 20);
  FILE_LINES lines;
  std::string message;
  const std::string name = file.NAME;
  READ_FILE(file, lines, message);
  EXPECT_EQ(message, "*****Error in reading file: " + name + " or it is empty");
  EXPECT_EQ(lines.COUNT(), 0);
  EXPECT_FALSE(file.OPEN);
}

TEST_F(FILES, A_FILE_THAT_THE_SYSTEM_CANNOT_READ) {
  const std::string name = "/proc/self/mem";  // a regular file; its first bytes are no memory
  if (!fs::is_regular_file(name)) GTEST_SKIP() << "no " << name;
  FILE_RECORD file;
  file.NAME = name;
  FILE_LINES lines;
  std::string message;
  READ_FILE(file, lines, message);
  EXPECT_EQ(message, "*****Error in reading file: /proc/self/mem or it is empty");
  ASSERT_EQ(OPEN_UNIT(unit, name, UNIT_MODE::OLD), 0);
  std::string line;
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::FAILED);
  CLOSE_UNIT(unit);
}

TEST_F(FILES, CLOSING_BLANKS_THE_NAMES_AND_KEEPS_WHAT_KIND_OF_FILE_IT_IS) {
  FILE_RECORD file;
  file.NAME = MADE("a.txt", "one\n");
  file.SHORT_NAME = "a.txt";
  file.DESCRIPTOR = "data file";
  file.EXT = "dat";
  file.UNIT = unit;
  ASSERT_EQ(OPEN_UNIT(unit, file.NAME, UNIT_MODE::OLD), 0);
  file.OPEN = true;
  CLOSE_FILE(file);
  EXPECT_FALSE(file.OPEN);
  EXPECT_FALSE(UNIT_READABLE(unit));
  EXPECT_EQ(file.NAME, "");
  EXPECT_EQ(file.SHORT_NAME, "");
  EXPECT_EQ(file.DESCRIPTOR, "data file");
  EXPECT_EQ(file.EXT, "dat");
  EXPECT_EQ(file.UNIT, unit);
}

TEST_F(FILES, AN_ERROR_CLOSES_THE_RECORD) {
  FILE_RECORD file;
  file.NAME = MADE("empty", "");
  file.OPEN = true;
  FILE_LINES lines;
  std::string message;
  READ_FILE(file, lines, message);
  EXPECT_FALSE(file.OPEN);
  EXPECT_EQ(file.NAME, "");
}

// ---- buffers ----

namespace {

FILE_LINES LINES_OF(std::vector<std::string> lines) {
  return {std::move(lines)};
}

// ---- units that cannot do what is asked of them ----

TEST_F(FILES, A_UNIT_THAT_IS_NOT_OPEN_DOES_NOTHING) {
  std::string line = "before";
  int error = 0;
  EXPECT_FALSE(UNIT_READABLE(unit));
  EXPECT_FALSE(UNIT_WRITABLE(unit));
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::FAILED);
  EXPECT_EQ(line, "");
  EXPECT_FALSE(WRITE_UNIT(unit, "line"));
  EXPECT_EQ(UNIT_POSITION(unit), -1);
  EXPECT_FALSE(CUT_UNIT(unit, 0));
  EXPECT_FALSE(FLUSH_UNIT(unit));
  EXPECT_EQ(KEEP_UNIT(unit, error), KEPT::AS_IT_WAS);
  EXPECT_EQ(error, EBADF);
}

TEST_F(FILES, WHAT_IS_WRITTEN_WHOLE_IS_NEITHER_READ_NOR_CUT) {
  std::string line;
  int error = 0;
  ASSERT_EQ(OPEN_WHOLE(unit, NAME("whole.txt"), UNIT_MODE::REPLACE), 0);
  EXPECT_FALSE(UNIT_READABLE(unit));
  EXPECT_TRUE(UNIT_WRITABLE(unit));
  EXPECT_EQ(READ_UNIT(unit, line), READ_STATUS::FAILED);
  EXPECT_EQ(UNIT_POSITION(unit), -1);
  EXPECT_TRUE(WRITE_UNIT(unit, "line"));
  EXPECT_FALSE(CUT_UNIT(unit, 0));
  EXPECT_EQ(KEEP_UNIT(unit, error), KEPT::WHOLE);
  EXPECT_EQ(CONTENT("whole.txt"), "line\n");
}

TEST_F(FILES, WHAT_IS_WRITTEN_LINE_BY_LINE_IS_CUT_AND_NOT_KEPT) {
  constexpr int other = 33;
  int error = 0;
  ASSERT_EQ(OPEN_UNIT(other, "/dev/null", UNIT_MODE::UNKNOWN), 0);
  ASSERT_EQ(OPEN_UNIT(unit, NAME("plain.txt"), UNIT_MODE::NEW), 0) << "a device is no such file";
  EXPECT_TRUE(FLUSH_UNIT(unit));
  EXPECT_TRUE(WRITE_UNIT(unit, "one"));
  EXPECT_EQ(UNIT_POSITION(unit), 4);
  EXPECT_TRUE(WRITE_UNIT(unit, "two"));
  EXPECT_EQ(KEEP_UNIT(unit, error), KEPT::AS_IT_WAS);
  EXPECT_EQ(error, EBADF);
  EXPECT_FALSE(CUT_UNIT(unit, -1));
  EXPECT_TRUE(CUT_UNIT(unit, 4));
  CLOSE_UNIT(unit);
  CLOSE_UNIT(other);
  EXPECT_EQ(CONTENT("plain.txt"), "one\n");
}

}  // namespace

// The system tells no size of this file, which has more than nothing in it.
TEST_F(FILES, BYTES_BEYOND_THE_SIZE_THAT_WAS_TOLD_ARE_READ) {
  const fs::path version = "/proc/version";
  if (!fs::is_regular_file(version)) GTEST_SKIP() << "no " << version;
  std::ifstream stream(version, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>()};
  ASSERT_LT(fs::file_size(version), content.size());
  std::string bytes;
  EXPECT_TRUE(READ_FILE_BYTES(version.string(), bytes));
  EXPECT_EQ(bytes, content);
}

TEST(BUFFERS, CONTROL_CHARACTERS_BECOME_BLANKS) {
  FILE_LINES lines = LINES_OF({"a\tb\r", std::string("x\0y", 3)});
  CLEAN_FILE(lines);
  EXPECT_EQ(lines(1), "a b");
  EXPECT_EQ(lines(2), "x y");
}

TEST(BUFFERS, BLANK_LINES_GO_TO_THE_END_AND_COMMENTS_GO) {
  FILE_LINES lines = LINES_OF({"", "a", "  ", "b"});
  STRIP_BLANK_LINES(lines);
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"a", "b", "  ", ""}));
  lines = LINES_OF({"a # b", "#c", "d"});
  STRIP_COMMENTS(lines, "#");
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"a", "", "d"}));
}

TEST(BUFFERS, WORDS_ARE_REPLACED_AND_COUNTED_IGNORING_CASE) {
  FILE_LINES lines = LINES_OF({"Old old", "none", "xOLDx"});
  EXPECT_EQ(COUNT_KEY(lines, "old"), 2);
  REPLACE_WORD(lines, "old", "newer");
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"newer newer", "none", "xnewerx"}));
}

TEST(BUFFERS, LINES_ARE_FOUND_BY_THEIR_START) {
  const FILE_LINES lines = LINES_OF({"a", "  KEY 1", "b key", "key 2", ""});
  EXPECT_EQ(FINDLINE(lines, "key", 0, 0), 2);
  EXPECT_EQ(FINDLINE(lines, "key", 3, 0), 4);
  EXPECT_EQ(FINDLINE(lines, "key", 3, 3), 0);
  EXPECT_EQ(PREVLINE(lines, "key", 0, 0), 4);
  EXPECT_EQ(PREVLINE(lines, "key", 0, 3), 2);
  EXPECT_EQ(FINDLINE(lines, "", 0, 0), 0);
  EXPECT_EQ(NEXTBLANK(lines, 1), 5);
  EXPECT_EQ(NEXTBLANK(lines, 5), 6);
  EXPECT_EQ(NEXTBLANK(LINES_OF({"a", "b", "c", " "}), 1), 4) << "a line of one letter is none";
}
