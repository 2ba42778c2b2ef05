// What the console tests share: a folder of their own, fresh console state, and a dialogue with
// given input lines whose output is returned. Tests nothing itself.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>       // for mknod
#include <sys/sysmacros.h>  // for makedev
#include <sys/wait.h>       // for waitpid
#include <unistd.h>         // for getpid, chown, seteuid, fork

#include <cstdio>  // for fflush
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console_code/console/input.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/files.h"

namespace CONSOLE_TESTS {

namespace fs = std::filesystem;
using namespace KVA_CONSOLE;

// Standard input and output replaced by texts while it lives.
class REDIRECTED {
 public:
  explicit REDIRECTED(const std::string& text) : input(text) {
    old_input = std::cin.rdbuf(input.rdbuf());
    old_output = std::cout.rdbuf(output.rdbuf());
  }
  ~REDIRECTED() {
    std::cin.rdbuf(old_input);
    std::cout.rdbuf(old_output);
  }
  REDIRECTED(const REDIRECTED&) = delete;
  REDIRECTED& operator=(const REDIRECTED&) = delete;
  std::string OUTPUT() const { return output.str(); }
  bool ALL_READ() { return input.rdbuf()->in_avail() == 0; }

 private:
  std::istringstream input;
  std::ostringstream output;
  std::streambuf* old_input;
  std::streambuf* old_output;
};

inline void PEND(const std::string& text) {
  CONSOLE.INSTRING = text;
  CONSOLE.INSTRING_LEN = static_cast<int>(text.size());
}

// A folder of its own, which is the working directory, with the settings below it.
class CONSOLE_TEST : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    start = fs::current_path();
    folder = fs::canonical(fs::temp_directory_path()) /
             ("gemmara_" + std::to_string(::getpid()) + "_" + test.name());
    fs::remove_all(folder);
    fs::create_directory(folder);
    fs::create_directory(folder / "local");
    fs::create_directory(folder / "home");
    fs::current_path(folder);
    ::setenv("LOCALAPPDATA", (folder / "local").c_str(), 1);
    ::setenv("HOME", (folder / "home").c_str(), 1);
    ::unsetenv("XDG_CONFIG_HOME");
    RESET_STATE();
  }

  void TearDown() override {
    RESET_STATE();
    fs::current_path(start);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
      if (entry.is_directory()) fs::permissions(entry, fs::perms::owner_all, fs::perm_options::add);
    fs::remove_all(folder);
  }

  static void RESET_STATE() {
    KVA_UTILITIES::CLOSE_FILE(CONSOLE.LOG_FILE);
    KVA_UTILITIES::CLOSE_FILE(CONSOLE.MACRO_FILE);
    CONSOLE = CONSOLE_STATE{};
    CONSOLE.CMD_PROMPT = "G_MARA-6.1>";
    PROGRAM_NAME = "Gemmara";
    PROGRAM_VERSION = 6.1f;
    PROGRAM_VERSION_DATE = "1-FEBRUARY-2025";
    PROGRAM_AUTHORS = "The Gemmara developers";
    PROGRAM_INI_FILE = "/quorvansoftware/gemmara.ini";
    PROGRAM_COMMENT.FILL("");
  }

  // What the routine says when it is given the input.
  template <class ROUTINE>
  static std::string SAID(const std::string& input, ROUTINE routine) {
    REDIRECTED console(input);
    routine();
    EXPECT_TRUE(console.ALL_READ()) << "input was left unread";
    return console.OUTPUT();
  }

  // Runs the body in a process of its own, where it may change limits and rights. What it expects
  // is expected of the test.
  template <class BODY>
  static void IN_A_PROCESS(BODY body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      body();
      std::fflush(nullptr);
      ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == no_other_user)
      GTEST_SKIP() << "there is no user but the superuser here";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "see above; status " << status;
  }

  // Runs the body as a user whom the rights of files bind, which the superuser is not. The test's
  // folder is that user's then.
  template <class BODY>
  void AS_A_COMMON_USER(BODY body) const {
    IN_A_PROCESS([&] {
      if (::geteuid() == 0 && !BECOME_NOBODY()) ::_exit(no_other_user);
      body();
    });
  }

  bool BECOME_NOBODY() const {
    constexpr uid_t nobody = 65534;
    for (const fs::path& path : {folder, folder / "local", folder / "home"})
      if (::chown(path.c_str(), nobody, nobody) != 0) return false;
    return ::setegid(nobody) == 0 && ::seteuid(nobody) == 0;
  }

  // A device on which every write finds the disk full. The superuser has one of his own here, since
  // a fault of ours could cost him the system's. Blank where there is none.
  std::string FULL_DEVICE() const {
    if (::geteuid() != 0) return fs::exists("/dev/full") ? "/dev/full" : "";
    const std::string path = (folder / "full").string();
    if (::mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0) return "";
    return std::ofstream(path).is_open() ? path : "";
  }

  // A folder whose owner may not make files in it; it is his own again at the end of the test.
  static void LOCK_FOLDER(const fs::path& path) {
    fs::create_directory(path);
    fs::permissions(path, fs::perms(0500));
  }

  static void PUT_FILE(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }

  static std::string TEXT_OF(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // Starts the macro with these lines.
  static void START_MACRO_WITH(const std::string& lines) {
    PUT_FILE("test.mcr", lines);
    CONSOLE.MACRO_FILE.UNIT = MACRO_UNIT;
    CONSOLE.MACRO_FILE.NAME = "test.mcr";
    ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(MACRO_UNIT, "test.mcr", KVA_UTILITIES::UNIT_MODE::OLD), 0);
    CONSOLE.MACRO_FILE.OPEN = true;
    CONSOLE.MACRO_STATE = 1;
  }

  static void START_LOG() {
    CONSOLE.LOG_FILE.UNIT = LOG_UNIT;
    CONSOLE.LOG_FILE.NAME = "test.log";
    ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(LOG_UNIT, "test.log", KVA_UTILITIES::UNIT_MODE::REPLACE), 0);
    CONSOLE.LOG_FILE.OPEN = true;
  }

  static constexpr int no_other_user = 77;  // status of a process that could not become another

  fs::path start;
  fs::path folder;
};

}  // namespace CONSOLE_TESTS
