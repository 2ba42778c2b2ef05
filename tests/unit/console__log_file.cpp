// Tests of the log: when a file is a new log and begins with the header, and what ends one.
#include <gtest/gtest.h>

#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using KVA_UTILITIES::FILE_RECORD;

class LOG_OPENING : public CONSOLE_TEST {
 protected:
  static std::string LOGGED(const std::string& name, const std::string& input = "") {
    PEND(name);
    return SAID(input, [] { OPEN_LOG_FILE(); });
  }
  static std::size_t HEADERS_IN(const fs::path& path) {
    std::size_t count = 0;
    std::istringstream stream(TEXT_OF(path));
    for (std::string line; std::getline(stream, line);)
      if (line.find("Version date: ") != std::string::npos) ++count;
    return count;
  }
};

TEST_F(LOG_OPENING, NEW_LOG_BEGINS_WITH_THE_HEADER_WHICH_THE_CONSOLE_DOES_NOT_SHOW) {
  EXPECT_EQ(LOGGED("run"), "\n\nSuccessfully opened Log file\nNamed run.log\n\n");
  EXPECT_EQ(CONSOLE.LOG_FILE.UNIT, 90);
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
}

TEST_F(LOG_OPENING, OLD_LOG_IS_APPENDED_TO) {
  PUT_FILE("run.log", "earlier\n");
  LOGGED("run.log");
  EXPECT_EQ(TEXT_OF("run.log").substr(0, 8), "earlier\n");
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
}

TEST_F(LOG_OPENING, SAME_LOG_AGAIN_GETS_NO_SECOND_HEADER) {
  LOGGED("run.log");
  LOGGED("run.log");
  EXPECT_TRUE(CONSOLE.LOG_FILE.OPEN);
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
  LOGGED("", "n\n");
  EXPECT_TRUE(CONSOLE.LOG_FILE.OPEN);
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
}

TEST_F(LOG_OPENING, ANOTHER_NAME_IS_A_NEW_LOG_WITH_A_HEADER) {
  LOGGED("one.log");
  LOGGED("", "y\ntwo.log\n");
  EXPECT_EQ(CONSOLE.LOG_FILE.NAME, "two.log");
  EXPECT_EQ(HEADERS_IN("two.log"), 1u);
  SAID("", [] { WRITE_OUT("only here"); });
  EXPECT_EQ(TEXT_OF("one.log").find("only here"), std::string::npos);
}

TEST_F(LOG_OPENING, SAME_NAME_IN_ANOTHER_FOLDER_IS_A_NEW_LOG_WITH_A_HEADER) {
  LOGGED("run");
  fs::current_path("home");
  LOGGED("run");
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
  fs::current_path(folder / "local");
  PUT_FILE("run.log", "earlier\n");
  LOGGED("", "\nrun\n");
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
  EXPECT_EQ(HEADERS_IN(folder / "run.log"), 1u);
  EXPECT_EQ(HEADERS_IN(folder / "home/run.log"), 1u);
}

// The folder does not matter to a name from the root.
TEST_F(LOG_OPENING, SAME_LOG_BY_ITS_FULL_NAME_GETS_NO_SECOND_HEADER_ANYWHERE) {
  const std::string name = (folder / "run.log").string();
  LOGGED(name);
  fs::current_path("home");
  LOGGED(name);
  EXPECT_EQ(HEADERS_IN(name), 1u);
}

TEST_F(LOG_OPENING, LOG_THAT_WAS_DELETED_BEGINS_ANEW) {
  LOGGED("run");
  fs::remove("run.log");
  LOGGED("run");
  EXPECT_EQ(HEADERS_IN("run.log"), 1u);
}

TEST_F(LOG_OPENING, NO_NAME_MEANS_NO_LOG) {
  EXPECT_EQ(LOGGED("", "\n"), "\n\n     Open Log file (*.log):");
  EXPECT_FALSE(CONSOLE.LOG_FILE.OPEN);
}

TEST_F(LOG_OPENING, A_FILE_IS_OPEN_ONCE) {
  LOGGED("run.txt");
  fs::create_hard_link("run.txt", "link.txt");
  const std::string before = TEXT_OF("run.txt");
  for (const char* name : {"run.txt", "./run.txt", "link.txt"}) {
    FILE_RECORD file;
    file.DESCRIPTOR = "data file";
    file.UNIT = DATA_UNIT;
    file.EXT = "dat";
    PEND(name);
    const std::string said = SAID("\n", [&file] { OPEN_FILE(file, "REPLACE"); });
    EXPECT_NE(said.find("Error trying to open file data file\nNamed " + std::string(name)),
              std::string::npos)
        << said;
    EXPECT_FALSE(file.OPEN);
  }
  EXPECT_TRUE(TEXT_OF("run.txt").starts_with(before)) << "nothing of the log is lost";
  WRITE_LOG("more");
  EXPECT_TRUE(TEXT_OF("run.txt").ends_with("more\n"));
}

TEST_F(LOG_OPENING, A_DOT_IN_THE_HOME_FOLDER_IS_NOT_THAT_OF_AN_EXTENSION) {
  fs::create_directory(folder / "ho.me");
  ::setenv("HOME", (folder / "ho.me").c_str(), 1);
  LOGGED("~/run");
  EXPECT_TRUE(fs::exists(folder / "ho.me" / "run.log"));
}

TEST_F(LOG_OPENING, FULL_DISK_CLOSES_THE_LOG) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  fs::create_symlink("/dev/full", "run.log");
  EXPECT_EQ(LOGGED("run.log"), "\n\n*****Log file run.log cannot be written and was closed\n");
  EXPECT_FALSE(CONSOLE.LOG_FILE.OPEN);
}

}  // namespace
