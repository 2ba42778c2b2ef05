// Tests of the operating system's side: reading lines, environment, directories and commands.
#include "console_code/console_win.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using CONSOLE_WIN = CONSOLE_TEST;

TEST_F(CONSOLE_WIN, TEXT_IS_WRITTEN_AS_IT_IS) {
  EXPECT_EQ(SAID("", [] { WRITE_CONSOLE("a  "); }), "a  ");
}

TEST_F(CONSOLE_WIN, NO_TERMINAL_HAS_NO_COLUMNS_AND_NO_TITLE) {
  if (::isatty(STDOUT_FILENO) != 0) GTEST_SKIP() << "the tests run on a terminal";
  EXPECT_EQ(CONSOLE_COLUMNS(), 0);
  EXPECT_EQ(SAID("", [] { SET_CONSOLE_TITLE("Gemmara "); }), "");
}

TEST_F(CONSOLE_WIN, LINES_ARE_READ_ONE_BY_ONE) {
  SAID("one\n\nthree", [] {
    std::string line;
    EXPECT_TRUE(READ_CONSOLE(line));
    EXPECT_EQ(line, "one");
    EXPECT_TRUE(READ_CONSOLE(line));
    EXPECT_EQ(line, "");
    EXPECT_TRUE(READ_CONSOLE(line));
    EXPECT_EQ(line, "three");
    EXPECT_FALSE(READ_CONSOLE(line));
    EXPECT_EQ(line, "");
  });
}

TEST_F(CONSOLE_WIN, ENVIRONMENT_TELLS_UNSET_FROM_BLANK) {
  std::string value = "old";
  ::setenv("GEMMARA_TEST", "text", 1);
  EXPECT_TRUE(GET_ENVIRONMENT("GEMMARA_TEST", value));
  EXPECT_EQ(value, "text");
  ::setenv("GEMMARA_TEST", "", 1);
  EXPECT_TRUE(GET_ENVIRONMENT("GEMMARA_TEST", value));
  EXPECT_EQ(value, "");
  ::unsetenv("GEMMARA_TEST");
  EXPECT_FALSE(GET_ENVIRONMENT("GEMMARA_TEST", value));
}

TEST_F(CONSOLE_WIN, HOME_IS_THAT_OF_THE_ENVIRONMENT) {
  std::string home;
  ::setenv("HOME", "/home/curie", 1);
  EXPECT_TRUE(GET_HOME(home));
  EXPECT_EQ(home, "/home/curie");
  ::unsetenv("HOME");
  EXPECT_FALSE(GET_HOME(home));
}

TEST_F(CONSOLE_WIN, ARGUMENTS_COME_AS_THEY_ARE) {
  std::string name = "gemmara";
  std::string argument = "gr\xC3\xBC n.mcr";
  std::vector<char*> arguments{name.data(), argument.data()};
  EXPECT_EQ(COMMAND_LINE(2, arguments.data()), (std::vector<std::string>{name, argument}));
  EXPECT_TRUE(COMMAND_LINE(0, arguments.data()).empty());
}

// The prompt takes the name then.
TEST_F(CONSOLE_WIN, NO_DIALOGUE_FOR_FILES_HERE) {
  std::string name = "old";
  EXPECT_EQ(CHOOSE_FILE({"Open cif file", "cif file", "cif", "", true}, name),
            FILE_CHOICE::NO_DIALOGUE);
  EXPECT_EQ(name, "");
}

TEST_F(CONSOLE_WIN, DIRECTORIES_ARE_MADE_CHANGED_AND_TOLD) {
  EXPECT_EQ(GET_DIRECTORY(), folder.string());
  EXPECT_TRUE(MAKE_DIRECTORY("sub"));
  EXPECT_FALSE(MAKE_DIRECTORY("sub"));
  EXPECT_FALSE(MAKE_DIRECTORY("none/sub"));
  EXPECT_TRUE(CHANGE_DIRECTORY("sub"));
  EXPECT_EQ(GET_DIRECTORY(), (folder / "sub").string());
  EXPECT_FALSE(CHANGE_DIRECTORY("none"));
}

TEST_F(CONSOLE_WIN, DELETED_DIRECTORY_HAS_A_BLANK_NAME) {
  fs::create_directory("gone");
  ASSERT_TRUE(CHANGE_DIRECTORY("gone"));
  fs::remove(folder / "gone");
  EXPECT_EQ(GET_DIRECTORY(), "");
}

TEST_F(CONSOLE_WIN, COMMAND_LINES_RUN_IN_THE_SHELL) {
  RUN_COMMAND_LINE("echo one > out.txt; echo two >> out.txt; exit 3");
  EXPECT_EQ(TEXT_OF("out.txt"), "one\ntwo\n");
}

// The error stream stands for the terminal that the command shares with us.
TEST_F(CONSOLE_WIN, COMMAND_CANNOT_LEAVE_A_STREAM_THAT_DOES_NOT_WAIT) {
  const int flags = ::fcntl(STDERR_FILENO, F_GETFL);
  RUN_COMMAND_LINE(
      "python3 -c 'import fcntl; fcntl.fcntl(2, fcntl.F_SETFL, fcntl.fcntl(2, fcntl.F_GETFL) | "
      "2048)'");
  EXPECT_EQ(::fcntl(STDERR_FILENO, F_GETFL), flags);
}

// The command sends the interrupt to itself and to us, as the terminal does at Ctrl-C.
TEST_F(CONSOLE_WIN, INTERRUPT_ENDS_THE_COMMAND_AND_NOT_US) {
  RUN_COMMAND_LINE("kill -INT $PPID; kill -INT $$; echo alive > out.txt");
  EXPECT_FALSE(fs::exists("out.txt"));
  struct sigaction action {};
  ASSERT_EQ(::sigaction(SIGINT, nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_DFL);  // at our own prompt it ends the program
}

}  // namespace
