// Tests of the operating system's side: reading lines, environment, directories, commands, and the
// replacement of a file.
#include "console_code/console_win.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>  // for setrlimit
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "tests/unit/console__dialogue.h"

namespace CONSOLE_TESTS {
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

// ---- replacing a file ----

std::size_t FILES_IN(const fs::path& path) {
  return static_cast<std::size_t>(
      std::distance(fs::directory_iterator(path), fs::directory_iterator()));
}

TEST_F(CONSOLE_WIN, REPLACED_FILE_HOLDS_THE_NEW_CONTENT_AND_NOTHING_IS_LEFT_BESIDE_IT) {
  fs::create_directory("set");
  EXPECT_TRUE(REPLACE_FILE("set/file.ini", "first line\n"));
  EXPECT_EQ(TEXT_OF("set/file.ini"), "first line\n");
  EXPECT_TRUE(REPLACE_FILE("set/file.ini", "2\n"));
  EXPECT_EQ(TEXT_OF("set/file.ini"), "2\n");
  EXPECT_EQ(FILES_IN("set"), 1u);
}

TEST_F(CONSOLE_WIN, REPLACED_FILE_KEEPS_ITS_RIGHTS_AND_A_NEW_ONE_FOLLOWS_THE_MASK) {
  PUT_FILE("old.ini", "x");
  fs::permissions("old.ini", fs::perms(0640));
  EXPECT_TRUE(REPLACE_FILE("old.ini", "y"));
  EXPECT_EQ(fs::status("old.ini").permissions(), fs::perms(0640));
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(REPLACE_FILE("new.ini", "y"));
  ::umask(mask);
  EXPECT_EQ(fs::status("new.ini").permissions(), fs::perms(0640));
}

TEST_F(CONSOLE_WIN, LINK_STAYS_A_LINK) {
  PUT_FILE("real.ini", "x");
  fs::create_symlink("real.ini", "link.ini");
  EXPECT_TRUE(REPLACE_FILE("link.ini", "y"));
  EXPECT_TRUE(fs::is_symlink("link.ini"));
  EXPECT_EQ(TEXT_OF("real.ini"), "y");
}

TEST_F(CONSOLE_WIN, NO_FOLDER_MEANS_NOTHING_CHANGED) {
  EXPECT_FALSE(REPLACE_FILE("none/file.ini", "x"));
  EXPECT_FALSE(fs::exists("none"));
}

TEST_F(CONSOLE_WIN, FOLDER_IN_PLACE_OF_THE_FILE_STAYS) {
  fs::create_directory("file.ini");
  PUT_FILE("file.ini/inside", "x");
  EXPECT_FALSE(REPLACE_FILE("file.ini", "x"));
  EXPECT_TRUE(fs::exists("file.ini/inside"));
}

TEST_F(CONSOLE_WIN, FILE_IN_A_READ_ONLY_FOLDER_IS_OVERWRITTEN_IN_PLACE) {
  AS_A_COMMON_USER([] {
    fs::create_directory("set");
    PUT_FILE("set/file.ini", "longer content");
    LOCK_FOLDER("set");
    EXPECT_TRUE(REPLACE_FILE("set/file.ini", "short"));
    EXPECT_EQ(TEXT_OF("set/file.ini"), "short");
  });
}

TEST_F(CONSOLE_WIN, READ_ONLY_FILE_IN_A_READ_ONLY_FOLDER_STAYS) {
  AS_A_COMMON_USER([] {
    fs::create_directory("set");
    PUT_FILE("set/file.ini", "old");
    fs::permissions("set/file.ini", fs::perms(0400));
    LOCK_FOLDER("set");
    EXPECT_FALSE(REPLACE_FILE("set/file.ini", "new"));
    EXPECT_EQ(TEXT_OF("set/file.ini"), "old");
  });
}

// A limit on the size of files stands for a disk on which only a part of the content has room.
TEST_F(CONSOLE_WIN, FULL_DISK_KEEPS_THE_OLD_CONTENT_AND_LEAVES_NOTHING_BESIDE_IT) {
  IN_A_PROCESS([] {
    fs::create_directory("set");
    PUT_FILE("set/file.ini", "old");
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit room{100, 100};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &room), 0);
    EXPECT_FALSE(REPLACE_FILE("set/file.ini", std::string(1000, 'x')));
    EXPECT_EQ(TEXT_OF("set/file.ini"), "old");
    EXPECT_EQ(FILES_IN("set"), 1u);
  });
}

TEST_F(CONSOLE_WIN, DEVICE_STAYS_A_DEVICE) {
  const std::string device = FULL_DEVICE();
  if (device.empty()) GTEST_SKIP() << "no full device";
  fs::create_symlink(device, "full.ini");
  EXPECT_FALSE(REPLACE_FILE("full.ini", "x")) << "nothing can be written to it";
  EXPECT_TRUE(fs::is_symlink("full.ini"));
  EXPECT_TRUE(fs::is_character_file(device));
}

// Half an hour ago a program was killed while it saved; another one is at it now.
TEST_F(CONSOLE_WIN, WHAT_A_KILLED_PROGRAM_LEFT_BEHIND_GOES) {
  fs::create_directory("set");
  for (const char* name : {"old.ini", "old.ini.saving-abcdef", "old.ini.saving-ghijkl",
                           "old.ini.backup", "new.ini.saving-mnopqr"}) {
    PUT_FILE(fs::path("set") / name, "x");
    fs::last_write_time(fs::path("set") / name,
                        fs::file_time_type::clock::now() - std::chrono::minutes(30));
  }
  fs::last_write_time("set/old.ini.saving-ghijkl", fs::file_time_type::clock::now());
  EXPECT_TRUE(REPLACE_FILE("set/old.ini", "y"));
  EXPECT_FALSE(fs::exists("set/old.ini.saving-abcdef"));
  EXPECT_TRUE(fs::exists("set/old.ini.saving-ghijkl")) << "it may be in use";
  EXPECT_TRUE(fs::exists("set/old.ini.backup")) << "it is the user's";
  EXPECT_TRUE(fs::exists("set/new.ini.saving-mnopqr")) << "it belongs to another file";
}

// Whoever reads meanwhile finds one content or the other, whole.
TEST_F(CONSOLE_WIN, TWO_WRITERS_NEVER_MIX) {
  const std::string a(5000, 'a');
  const std::string b(5000, 'b');
  ASSERT_TRUE(REPLACE_FILE("file.ini", a));
  const auto write = [](const std::string& text) {
    for (int i = 0; i < 50; ++i) REPLACE_FILE("file.ini", text);
  };
  std::thread first(write, a);
  std::thread second(write, b);
  for (int i = 0; i < 200; ++i) {
    const std::string found = TEXT_OF("file.ini");
    EXPECT_TRUE(found == a || found == b);
  }
  first.join();
  second.join();
}

}  // namespace
}  // namespace CONSOLE_TESTS
