// Tests of the settings file, working directory, operation mode, start of the console and system
// commands.
#include "console_code/console/settings.h"

#include <gtest/gtest.h>
#include <signal.h>        // for kill
#include <sys/resource.h>  // for setrlimit
#include <sys/stat.h>      // for mkfifo

#include <chrono>
#include <thread>

#include "console_code/console/output.h"
#include "tests/unit/console__dialogue.h"

namespace CONSOLE_TESTS {

class SETTINGS : public CONSOLE_TEST {
 protected:
  fs::path ini;

  void SetUp() override {
    CONSOLE_TEST::SetUp();
    ini = folder / "local/quorvansoftware/gemmara.ini";
  }

  void PUT_INI(const std::string& text) {
    fs::create_directories(ini.parent_path());
    PUT_FILE(ini, text);
  }

  static std::string PARAM(const std::string& key, int expected_ierr) {
    int ierr = -7;
    const std::string value = GET_PARAM(key, ierr);
    EXPECT_EQ(ierr, expected_ierr) << key;
    return value;
  }

  static std::string PADDED(std::string line) {
    line.resize(255, ' ');
    return line + "\n";
  }

  static std::string COMMANDED(const std::string& line) {
    return SAID("", [&] {
      bool err = true;
      SYSTEM_COMMAND(line, err);
      EXPECT_FALSE(err);
    });
  }
};

// ---- the settings file ----

TEST_F(SETTINGS, FIRST_RUN_MAKES_THE_FOLDER_AND_THE_FILE) {
  INIT_PARAMS();
  EXPECT_TRUE(fs::exists(ini));
  EXPECT_EQ(TEXT_OF(ini), "");
}

TEST_F(SETTINGS, LINES_ARE_READ_WITHOUT_THE_BLANK_ONES) {
  PUT_INI("WDIR  /data\n\n   \nMODE  EXPERT\r\nlast");
  INIT_PARAMS();
  EXPECT_EQ(INITPARMS(1), "WDIR  /data");
  EXPECT_EQ(INITPARMS(2), "MODE  EXPERT");
  EXPECT_EQ(INITPARMS(3), "last");
  EXPECT_EQ(INITPARMS(4), "");
}

TEST_F(SETTINGS, TWENTY_FIRST_LINE_ENDS_THE_READING) {
  std::string text;
  for (int i = 1; i <= 25; ++i) text += "K" + std::to_string(100 + i) + "  value\n";
  PUT_INI(text);
  INIT_PARAMS();
  EXPECT_EQ(INITPARMS(1), "K101  value");
  EXPECT_EQ(INITPARMS(20), "K120  value");
  EXPECT_EQ(PARAM("K121", 1), "");
}

TEST_F(SETTINGS, OLD_IMAGE_IS_FORGOTTEN) {
  INITPARMS(5) = "MODE  EXPERT";
  INIT_PARAMS();
  EXPECT_EQ(INITPARMS(5), "");
}

TEST_F(SETTINGS, KEYS_ARE_FOUND_IGNORING_CASE_AND_LEADING_BLANKS_AND_VALUES_KEEP_THEIR_CASE) {
  INITPARMS(2) = "   wdir    /Data/My Files";
  EXPECT_EQ(PARAM("WDIR", 0), "/Data/My Files");
  EXPECT_EQ(PARAM("MODE", 1), "");
  EXPECT_EQ(PARAM("", 1), "");
}

TEST_F(SETTINGS, COMMENTED_AND_BLANK_ENTRIES_ARE_PASSED_OVER) {
  INITPARMS(1) = "!WDIR  /comment";
  INITPARMS(2) = "WDIR";
  INITPARMS(3) = "WDIR  /data";
  INITPARMS(4) = "WDIR  /later";
  EXPECT_EQ(PARAM("WDIR", 0), "/data");
  INITPARMS(3) = "";
  INITPARMS(4) = "";
  EXPECT_EQ(PARAM("WDIR", 1), "");
}

TEST_F(SETTINGS, SAVED_ENTRY_REPLACES_THE_OLD_ONE_AND_LINES_ARE_PADDED_TO_255_COLUMNS) {
  INITPARMS(1) = "MODE  EXPERT";
  INITPARMS(3) = "wdir  /old";
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(INITPARMS(3), "WDIR  /new");
  EXPECT_EQ(TEXT_OF(ini), PADDED("MODE  EXPERT") + PADDED("WDIR  /new"));
}

TEST_F(SETTINGS, SAVED_ENTRY_TAKES_THE_FIRST_BLANK_PLACE) {
  INITPARMS(1) = "MODE  EXPERT";
  INITPARMS(2) = "WDIR";  // found, but blank
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(INITPARMS(2), "WDIR");
  EXPECT_EQ(INITPARMS(3), "WDIR  /new");
  EXPECT_EQ(PARAM("WDIR", 0), "/new");
}

TEST_F(SETTINGS, FULL_TABLE_STORES_NOTHING_NEW) {
  INITPARMS.FILL("KEYX  value");
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(PARAM("WDIR", 1), "");
  EXPECT_EQ(fs::file_size(ini), 20u * 256u);
}

TEST_F(SETTINGS, KEY_OF_ANOTHER_LENGTH_CHANGES_NOTHING_BUT_REWRITES_THE_FILE) {
  for (const char* key : {"WDI", "WDIRX", "WD R", ""}) {
    fs::remove(ini);
    INITPARMS.FILL("");
    INITPARMS(1) = "WDIR  /data";
    SAVE_PARAM(key, "value");
    EXPECT_EQ(INITPARMS(1), "WDIR  /data") << key;
    EXPECT_EQ(INITPARMS(2), "") << key;
    EXPECT_EQ(TEXT_OF(ini), PADDED("WDIR  /data")) << key;
  }
}

// What would come back from a line of the file as another name.
TEST_F(SETTINGS, VALUE_THAT_A_LINE_CANNOT_HOLD_IS_NOT_STORED) {
  SAVE_PARAM("WDIR", "/data");
  for (const char* value : {"/new\nline", "/new\r", "/blank ", "/blanks  "}) {
    SAVE_PARAM("WDIR", value);
    EXPECT_EQ(PARAM("WDIR", 0), "/data") << value;
    EXPECT_EQ(TEXT_OF(ini), PADDED("WDIR  /data")) << value;
  }
  SAVE_PARAM("WDIR", "/a b");
  EXPECT_EQ(PARAM("WDIR", 0), "/a b");
}

// Key, two blanks and 249 characters fill the 255 columns.
TEST_F(SETTINGS, VALUE_THAT_DOES_NOT_FIT_IS_NOT_STORED) {
  SAVE_PARAM("WDIR", std::string(249, 'a'));
  EXPECT_EQ(PARAM("WDIR", 0), std::string(249, 'a'));
  SAVE_PARAM("WDIR", std::string(250, 'b'));
  EXPECT_EQ(PARAM("WDIR", 0), std::string(249, 'a'));
}

TEST_F(SETTINGS, A_PIPE_IS_NOT_REPLACED_BY_A_FILE) {
  fs::create_directories(ini.parent_path());
  ASSERT_EQ(::mkfifo(ini.c_str(), 0600), 0);
  SAVE_PARAM("MODE", "DEBUG");
  EXPECT_TRUE(fs::is_fifo(ini));
}

TEST_F(SETTINGS, FILE_IN_A_READ_ONLY_FOLDER_IS_SAVED_IN_PLACE) {
  AS_A_COMMON_USER([this] {
    PUT_INI("MODE  EXPERT\nWDIR  /old\n" + std::string(1000, '\n'));
    LOCK_FOLDER(ini.parent_path());
    INIT_PARAMS();
    EXPECT_EQ(SAID("", [] { SAVE_PARAM("WDIR", "/new"); }), "");
    EXPECT_EQ(TEXT_OF(ini), PADDED("MODE  EXPERT") + PADDED("WDIR  /new"));
    fs::permissions(ini.parent_path(), fs::perms(0700));
  });
}

TEST_F(SETTINGS, READ_ONLY_FILE_IN_A_READ_ONLY_FOLDER_IS_READ_AND_STAYS) {
  AS_A_COMMON_USER([this] {
    PUT_INI("WDIR  /old\n");
    fs::permissions(ini, fs::perms(0400));
    LOCK_FOLDER(ini.parent_path());
    INIT_PARAMS();
    EXPECT_EQ(PARAM("WDIR", 0), "/old");
    EXPECT_EQ(SAID("", [] { SAVE_PARAM("WDIR", "/new"); }), "");
    EXPECT_EQ(TEXT_OF(ini), "WDIR  /old\n");
    fs::permissions(ini.parent_path(), fs::perms(0700));
  });
}

TEST_F(SETTINGS, FULL_DISK_IS_SILENT_AND_KEEPS_WHAT_WAS_SAVED) {
  IN_A_PROCESS([this] {
    SAVE_PARAM("WDIR", "/data");
    const std::string saved = TEXT_OF(ini);
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit room{300, 300};  // one line of 256 bytes and a part of the next
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &room), 0);
    EXPECT_EQ(SAID("", [] { SAVE_PARAM("MODE", "DEBUG"); }), "");
    EXPECT_EQ(TEXT_OF(ini), saved);
    EXPECT_EQ(PARAM("MODE", 0), "DEBUG") << "it holds for this run";
  });
}

TEST_F(SETTINGS, LINK_TO_A_FULL_DEVICE_IS_SILENT_AND_STAYS) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  fs::create_directories(ini.parent_path());
  fs::create_symlink("/dev/full", ini);
  EXPECT_EQ(SAID("",
                 [] {
                   INIT_PARAMS();
                   SAVE_PARAM("WDIR", "/data");
                 }),
            "");
  EXPECT_EQ(fs::read_symlink(ini), "/dev/full");
  EXPECT_TRUE(fs::is_character_file(ini));
}

TEST_F(SETTINGS, LINK_TO_A_FILE_THAT_IS_NOT_THERE_YET_MAKES_THE_FILE) {
  fs::create_directories(ini.parent_path());
  fs::create_symlink(folder / "home/real.ini", ini);
  INIT_PARAMS();
  SAVE_PARAM("WDIR", "/data");
  EXPECT_TRUE(fs::is_symlink(ini));
  EXPECT_EQ(TEXT_OF(folder / "home/real.ini"), PADDED("WDIR  /data"));
}

// A process that saves without pause is killed again and again.
TEST_F(SETTINGS, KILL_IN_THE_MIDDLE_OF_A_SAVE_LEAVES_THE_OLD_OR_THE_NEW_FILE_WHOLE) {
  SAVE_PARAM("MODE", "NORMAL");
  SAVE_PARAM("WDIR", "/a");
  const std::string a = PADDED("MODE  NORMAL") + PADDED("WDIR  /a");
  const std::string b = PADDED("MODE  NORMAL") + PADDED("WDIR  /b");
  for (int i = 0; i < 25; ++i) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
      for (;;)
        for (const char* value : {"/a", "/b"}) SAVE_PARAM("WDIR", value);
    std::this_thread::sleep_for(std::chrono::microseconds(1000 + 313 * i));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const std::string found = TEXT_OF(ini);
    EXPECT_TRUE(found == a || found == b) << found;
  }
}

TEST_F(SETTINGS, SAVED_FILE_READS_BACK) {
  SAVE_PARAM("WDIR", "/data/My Files");
  SAVE_PARAM("MODE", "DEBUG");
  INIT_PARAMS();
  EXPECT_EQ(PARAM("WDIR", 0), "/data/My Files");
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
}

TEST_F(SETTINGS, RUN_TYPE_5_WRITES_NO_FILE) {
  RUN_TYPE = 5;
  SAVE_PARAM("WDIR", "/data");
  EXPECT_EQ(PARAM("WDIR", 0), "/data");
  EXPECT_FALSE(fs::exists(ini));
}

TEST_F(SETTINGS, BROKEN_FILE_DOES_NO_HARM) {
  std::string rubbish;
  for (int i = 0; i < 5000; ++i) rubbish += static_cast<char>(i * 37 % 256);
  PUT_INI(rubbish + std::string(100000, 'x'));
  INIT_PARAMS();
  PARAM("WDIR", 1);
  SAVE_PARAM("WDIR", "/data");
  for (const std::string& line : INITPARMS) EXPECT_LE(line.size(), 255u);
}

// ---- where it lies ----

TEST_F(SETTINGS, BLANK_LOCALAPPDATA_MEANS_NO_FILE) {
  for (const char* value : {"", "   "}) {
    ::setenv("LOCALAPPDATA", value, 1);
    ::setenv("XDG_CONFIG_HOME", (folder / "xdg").c_str(), 1);
    INIT_PARAMS();
    SAVE_PARAM("WDIR", "/data");
    EXPECT_EQ(PARAM("WDIR", 0), "/data");
    EXPECT_FALSE(fs::exists(folder / "xdg"));
    EXPECT_FALSE(fs::exists(folder / "home/.config"));
  }
}

TEST_F(SETTINGS, BELOW_LOCALAPPDATA_ONLY_ONE_FOLDER_IS_MADE) {
  ::setenv("LOCALAPPDATA", (folder / "none").c_str(), 1);
  SAVE_PARAM("WDIR", "/data");
  EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST_F(SETTINGS, WITHOUT_LOCALAPPDATA_THE_FILE_LIES_IN_THE_XDG_FOLDER) {
  ::unsetenv("LOCALAPPDATA");
  ::setenv("XDG_CONFIG_HOME", (folder / "deep/xdg").c_str(), 1);
  SAVE_PARAM("WDIR", "/data");
  EXPECT_EQ(TEXT_OF(folder / "deep/xdg/quorvansoftware/gemmara.ini"), PADDED("WDIR  /data"));
}

TEST_F(SETTINGS, WITHOUT_AN_XDG_FOLDER_IT_LIES_BELOW_HOME) {
  ::unsetenv("LOCALAPPDATA");
  for (const char* xdg : {"", "relative"}) {
    fs::remove_all(folder / "home/.config");
    ::setenv("XDG_CONFIG_HOME", xdg, 1);
    SAVE_PARAM("WDIR", "/data");
    EXPECT_TRUE(fs::exists(folder / "home/.config/quorvansoftware/gemmara.ini")) << xdg;
    EXPECT_FALSE(fs::exists(folder / "relative"));
  }
}

TEST_F(SETTINGS, WITHOUT_A_HOME_THERE_IS_NO_FILE) {
  ::unsetenv("LOCALAPPDATA");
  ::unsetenv("HOME");
  SAVE_PARAM("WDIR", "/data");
  EXPECT_EQ(PARAM("WDIR", 0), "/data");
}

TEST_F(SETTINGS, FOLDER_IN_PLACE_OF_THE_FILE_IS_SILENT) {
  fs::create_directories(ini);
  EXPECT_EQ(SAID("",
                 [] {
                   INIT_PARAMS();
                   SAVE_PARAM("WDIR", "/data");
                 }),
            "");
  EXPECT_TRUE(fs::is_directory(ini));
}

// ---- working directory ----

TEST_F(SETTINGS, WORKING_DIRECTORY_IS_SAVED_AND_RESTORED) {
  fs::create_directory("sub");
  fs::current_path("sub");
  SAVE_WORK_DIR();
  fs::current_path(folder);
  INIT_PARAMS();
  INIT_WORK_DIR();
  EXPECT_EQ(fs::current_path(), folder / "sub");
}

TEST_F(SETTINGS, STORED_DIRECTORY_THAT_IS_GONE_IS_SHOWN_AS_THE_REAL_ONE_AND_STAYS_IN_THE_FILE) {
  PUT_INI("WDIR  /no/such/folder\n");
  INIT_PARAMS();
  EXPECT_EQ(SAID("", [] { INIT_WORK_DIR(); }), "");
  EXPECT_EQ(fs::current_path(), folder);
  EXPECT_EQ(PARAM("WDIR", 0), folder.string());
  EXPECT_EQ(TEXT_OF(ini), "WDIR  /no/such/folder\n");
}

TEST_F(SETTINGS, DELETED_DIRECTORY_IS_NOT_SAVED) {
  INITPARMS(1) = "WDIR  /data";
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(folder / "gone");
  SAVE_WORK_DIR();
  EXPECT_EQ(PARAM("WDIR", 0), "/data");
}

// Five folders of 48 characters make a path that no line of the settings can hold.
TEST_F(SETTINGS, DIRECTORY_WITH_TOO_LONG_A_PATH_IS_SHOWN_AND_NOT_SAVED) {
  COMMANDED("cd home");
  const std::string saved = TEXT_OF(ini);
  fs::path deep = folder / "home";
  for (const char c : {'a', 'b', 'c', 'd', 'e'}) deep /= std::string(48, c);
  fs::create_directories(deep);
  COMMANDED("cd " + fs::relative(deep).string());
  EXPECT_EQ(fs::current_path(), deep);
  const std::string line = "\n    Current working directory is now: " + deep.string() + "\n\n";
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), line);
  EXPECT_EQ(TEXT_OF(ini), saved);

  // A macro that is started there does not restore the directory, and the entry stays.
  PUT_FILE("run.mcr", "HELP\n");
  RESET_STATE();
  SAID("", [] { INIT_CONSOLE("run"); });
  EXPECT_EQ(MACRO_STATE, 1);
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), line);
  SAVE_WORK_DIR();
  EXPECT_EQ(TEXT_OF(ini), saved);
}

TEST_F(SETTINGS, DIRECTORY_WHOSE_NAME_A_LINE_CANNOT_HOLD_IS_SHOWN_AND_NOT_SAVED) {
  COMMANDED("cd home");
  const std::string saved = TEXT_OF(ini);
  for (const char* name : {"two\nlines", "blank ", "return\r"}) {
    fs::create_directory(folder / name);
    fs::current_path(folder / name);
    SAVE_WORK_DIR();
    EXPECT_EQ(TEXT_OF(ini), saved) << name;
    EXPECT_EQ(PARAM("WDIR", 0), (folder / "home").string());
  }
}

TEST_F(SETTINGS, DELETED_DIRECTORY_HAS_NO_LINE) {
  COMMANDED("cd home");
  fs::remove(folder / "home");
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), "");
}

// ---- CD ----

TEST_F(SETTINGS, CD_CHANGES_OUR_OWN_DIRECTORY_AND_SAVES_IT) {
  fs::create_directory("sub");
  fs::create_directory("sub/My Files");
  EXPECT_EQ(COMMANDED("cd sub"), "");
  EXPECT_EQ(fs::current_path(), folder / "sub");
  EXPECT_EQ(PARAM("WDIR", 0), (folder / "sub").string());
  EXPECT_EQ(TEXT_OF(ini), PADDED("WDIR  " + (folder / "sub").string()));
  COMMANDED("ChDir   My Files  ");
  EXPECT_EQ(fs::current_path(), folder / "sub/My Files");
  COMMANDED("cd ..");
  EXPECT_EQ(fs::current_path(), folder / "sub");
  COMMANDED("cd \"My Files\"");
  EXPECT_EQ(fs::current_path(), folder / "sub/My Files");
  COMMANDED("cd ../..");
  EXPECT_EQ(fs::current_path(), folder);
  COMMANDED("cd " + (folder / "sub").string());
  EXPECT_EQ(fs::current_path(), folder / "sub");
  COMMANDED("cd ../local");
  EXPECT_EQ(fs::current_path(), folder / "local");
  COMMANDED("cd ~");
  EXPECT_EQ(fs::current_path(), folder / "home");
}

TEST_F(SETTINGS, CD_FALLS_BACK_TO_THE_UPPER_CASE_COPY) {
  fs::create_directories("UPPER/SUB");
  COMMANDED("cd upper");
  EXPECT_EQ(fs::current_path(), folder / "UPPER");
  COMMANDED("cd Sub");
  EXPECT_EQ(fs::current_path(), folder / "UPPER/SUB");
  COMMANDED("cd ../sub");
  EXPECT_EQ(fs::current_path(), folder / "UPPER/SUB");
  fs::current_path(folder);
  fs::create_directory("upper");
  COMMANDED("cd upper");
  EXPECT_EQ(fs::current_path(), folder / "upper");  // as typed comes first
}

TEST_F(SETTINGS, CD_UP_STOPS_AT_THE_ROOT) {
  fs::current_path("/");
  COMMANDED("cd ..");
  EXPECT_EQ(fs::current_path(), "/");
}

TEST_F(SETTINGS, CD_WITHOUT_A_DIRECTORY_STAYS_AND_SAVES_NOTHING) {
  EXPECT_EQ(COMMANDED("cd"), "");
  EXPECT_EQ(COMMANDED("chdir   "), "");
  EXPECT_EQ(fs::current_path(), folder);
  EXPECT_EQ(PARAM("WDIR", 1), "");
}

TEST_F(SETTINGS, CD_THAT_FAILS_SAYS_SO_STAYS_AND_SAVES_NOTHING) {
  PUT_FILE("file.txt", "x");
  const std::string long_name(250, 'x');
  for (const std::string& name : {std::string("none"), std::string("file.txt"), long_name}) {
    EXPECT_EQ(COMMANDED("cd " + name), "     Cannot change directory to " + name + "\n");
    EXPECT_EQ(fs::current_path(), folder);
  }
  EXPECT_EQ(PARAM("WDIR", 1), "");
}

TEST_F(SETTINGS, ONLY_THE_WHOLE_WORD_IS_CD) {
  PUT_FILE("cdx", "#!/bin/sh\necho ran > ran.txt\n");
  fs::permissions("cdx", fs::perms(0755));
  ::setenv("PATH", (folder.string() + ":" + std::getenv("PATH")).c_str(), 1);
  COMMANDED("cdx home");
  EXPECT_EQ(TEXT_OF("ran.txt"), "ran\n");
  EXPECT_EQ(fs::current_path(), folder);
}

TEST_F(SETTINGS, OTHER_LINES_GO_TO_THE_SHELL_AS_TYPED_AND_THEIR_STATUS_IS_IGNORED) {
  EXPECT_EQ(COMMANDED("echo 'Two  Words' > Out.txt; exit 4"), "");
  EXPECT_EQ(TEXT_OF("Out.txt"), "Two  Words\n");
}

// ---- operation mode ----

TEST_F(SETTINGS, MODE_IS_SHOWN_IN_WORDS) {
  const std::vector<std::string> words{"Default", "Expert", "Debug"};
  for (OPERATION_MODE = 0; OPERATION_MODE <= 2; ++OPERATION_MODE)
    EXPECT_EQ(SAID("", [] { WRITE_MODE(); }),
              "\nNow running in " + words[static_cast<std::size_t>(OPERATION_MODE)] + " Mode\n");
}

const std::string mode_question =
    "     Available modes are:  0 = Default user, 1 = Expert, 2 = Debug\n"
    "\n     Input operation mode:";

TEST_F(SETTINGS, MODE_IS_ASKED_FOR_AND_SAVED) {
  EXPECT_EQ(SAID("1\n", [] { SET_MODE(); }),
            "\nNow running in Default Mode\n" + mode_question + "\nNow running in Expert Mode\n");
  EXPECT_EQ(OPERATION_MODE, 1);
  EXPECT_EQ(PARAM("MODE", 0), "EXPERT");
  SAID("2\n", [] { SET_MODE(); });
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
  SAID("0\n", [] { SET_MODE(); });
  EXPECT_EQ(OPERATION_MODE, 0);
  EXPECT_EQ(PARAM("MODE", 0), "NORMAL");
}

TEST_F(SETTINGS, BLANK_ANSWER_KEEPS_THE_MODE_AND_SAVES_IT_ALL_THE_SAME) {
  OPERATION_MODE = 2;
  EXPECT_EQ(SAID("\n", [] { SET_MODE(); }),
            "\nNow running in Debug Mode\n" + mode_question + "     No change in operation mode\n");
  EXPECT_EQ(OPERATION_MODE, 2);
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
}

TEST_F(SETTINGS, IMPOSSIBLE_MODES_REPEAT_THE_PROMPT_ALONE) {
  EXPECT_EQ(SAID("3\n-1\n1e30\n1\n", [] { SET_MODE(); }),
            "\nNow running in Default Mode\n" + mode_question +
                "\n     Input operation mode:\n     Input operation mode:"
                "\n     Input operation mode:\nNow running in Expert Mode\n");
}

TEST_F(SETTINGS, MODE_IS_ROUNDED_TO_THE_NEAREST) {
  SAID("1.6\n", [] { SET_MODE(); });
  EXPECT_EQ(OPERATION_MODE, 2);
  SAID("2.6\n-0.4\n", [] { SET_MODE(); });
  EXPECT_EQ(OPERATION_MODE, 0);
}

TEST_F(SETTINGS, MODE_COMMAND_CAN_BE_DISABLED) {
  OPERATION_MODE = -1;
  EXPECT_EQ(SAID("", [] { SET_MODE(); }), "");
  EXPECT_EQ(OPERATION_MODE, -1);
  EXPECT_FALSE(fs::exists(ini));
}

// ---- start ----

TEST_F(SETTINGS, START_RESTORES_THE_DIRECTORY_AND_NOT_THE_MODE) {
  fs::create_directory("sub");
  PUT_INI("MODE  DEBUG\nWDIR  " + (folder / "sub").string() + "\n");
  RUN_TYPE = 3;
  EXPECT_EQ(SAID("", [] { INIT_CONSOLE(""); }), "");
  EXPECT_EQ(fs::current_path(), folder / "sub");
  EXPECT_EQ(OPERATION_MODE, 0);
  EXPECT_EQ(RUN_TYPE, 1);
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
}

TEST_F(SETTINGS, WITHOUT_LOCALAPPDATA_THE_STORED_DIRECTORY_IS_NEITHER_RESTORED_NOR_SHOWN) {
  ::unsetenv("LOCALAPPDATA");
  fs::create_directories("home/.config/quorvansoftware");
  PUT_FILE("home/.config/quorvansoftware/gemmara.ini", "MODE  DEBUG\nWDIR  /\n");
  INIT_CONSOLE("");
  EXPECT_EQ(fs::current_path(), folder);
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), "");
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
  COMMANDED("cd home");
  EXPECT_EQ(PARAM("WDIR", 0), (folder / "home").string());
  EXPECT_EQ(TEXT_OF("home/.config/quorvansoftware/gemmara.ini"), "");  // relative to the new place
  EXPECT_EQ(TEXT_OF(folder / "home/.config/quorvansoftware/gemmara.ini"),
            PADDED("MODE  DEBUG") + PADDED("WDIR  " + (folder / "home").string()));
}

TEST_F(SETTINGS, MACRO_GIVEN_AT_START_IS_OPENED_IN_THE_CURRENT_DIRECTORY) {
  PUT_FILE("run.mcr", "HELP\n");
  PUT_INI("WDIR  /\n");
  const std::string name = (folder / "run.mcr").string();
  for (const char* argument : {"run", "run.mcr", "  run.mcr "}) {
    RESET_STATE();
    EXPECT_EQ(SAID("", [&] { INIT_CONSOLE(argument); }),
              "\n\nSuccessfully opened file for macros\nNamed " + name + "\n\n");
    EXPECT_EQ(MACRO_STATE, 1);
    EXPECT_EQ(fs::current_path(), folder);         // the stored one is not restored
    EXPECT_EQ(PARAM("WDIR", 0), folder.string());  // and what is shown is where we are
  }
  EXPECT_EQ(TEXT_OF(ini), "WDIR  /\n");
}

TEST_F(SETTINGS, MACRO_ARGUMENT_WITH_A_FOLDER_STAYS_AS_TYPED) {
  fs::create_directory("sub");
  PUT_FILE("sub/run.mcr", "HELP\n");
  for (const char* argument : {"sub/run.mcr", "sub/run", "./sub/run"}) {
    RESET_STATE();
    SAID("", [&] { INIT_CONSOLE(argument); });
    EXPECT_EQ(MACRO_STATE, 1) << argument;
    EXPECT_EQ(MACRO_FILE.NAME,
              std::string(argument).substr(0, argument[0] == '.' ? 9 : 7) + ".mcr");
  }
}

// The extension goes to the argument itself: a dot in the path of the directory is not one in it.
TEST_F(SETTINGS, MACRO_ARGUMENT_GETS_ITS_EXTENSION_ALSO_IN_A_DOTTED_FOLDER) {
  fs::create_directory("v1.2");
  PUT_FILE("v1.2/run.mcr", "HELP\n");
  fs::current_path("v1.2");
  SAID("", [] { INIT_CONSOLE("run"); });
  EXPECT_EQ(MACRO_FILE.NAME, (folder / "v1.2/run.mcr").string());
}

TEST_F(SETTINGS, MACRO_THAT_CANNOT_BE_OPENED_IS_ASKED_FOR_AND_A_BLANK_GIVES_UP) {
  PUT_INI("WDIR  /\n");
  const std::string name = (folder / "none.mcr").string();
  EXPECT_EQ(SAID("\n", [] { INIT_CONSOLE("none"); }),
            "\n*****File " + name + " does not exist, but is required to pre-exist\n" +
                "\n     Open file for macros (*.mcr):");
  EXPECT_EQ(MACRO_STATE, 0);
  EXPECT_EQ(fs::current_path(), folder);
}

TEST_F(SETTINGS, MACRO_PATH_THAT_GROWS_TOO_LONG_STAYS_AS_TYPED) {
  const fs::path deep = folder / std::string(200, 'd');
  fs::create_directory(deep);
  fs::current_path(deep);
  const std::string name(60, 'm');
  PUT_FILE(name + ".mcr", "HELP\n");
  SAID("", [&] { INIT_CONSOLE(name); });
  EXPECT_EQ(MACRO_FILE.NAME, name + ".mcr");
}

TEST_F(SETTINGS, WIDTH_IS_100_WITHOUT_A_TERMINAL) {
  if (::isatty(STDOUT_FILENO) != 0) GTEST_SKIP() << "the tests run on a terminal";
  INIT_CONSOLE("");
  EXPECT_EQ(WIDTH, 100);
}

using SETTINGS_DEATH = SETTINGS;

TEST_F(SETTINGS_DEATH, CLOSING_SAVES_THE_DIRECTORY_AND_ENDS_WITH_STATUS_0) {
  EXPECT_EXIT(CLOSE_CONSOLE(), testing::ExitedWithCode(0), "^$");
  EXPECT_EQ(TEXT_OF(ini), PADDED("WDIR  " + folder.string()));
}

}  // namespace CONSOLE_TESTS
