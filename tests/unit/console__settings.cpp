// Tests of the settings file and the operation mode.
#include <gtest/gtest.h>
#include <signal.h>        // for kill
#include <sys/resource.h>  // for setrlimit
#include <sys/stat.h>      // for mkfifo

#include <chrono>
#include <thread>

#include "tests/unit/console__settings.h"

using namespace CONSOLE_TESTS;

namespace {

// ---- the settings file ----

TEST_F(SETTINGS, FIRST_RUN_MAKES_THE_FOLDER_AND_THE_FILE) {
  INIT_PARAMS();
  EXPECT_TRUE(fs::exists(ini));
  EXPECT_EQ(TEXT_OF(ini), "");
}

TEST_F(SETTINGS, LINES_ARE_READ_WITHOUT_THE_BLANK_ONES) {
  PUT_INI("WDIR  /data\n\n   \nMODE  EXPERT\r\nlast");
  INIT_PARAMS();
  EXPECT_EQ(CONSOLE.INITPARMS(1), "WDIR  /data");
  EXPECT_EQ(CONSOLE.INITPARMS(2), "MODE  EXPERT");
  EXPECT_EQ(CONSOLE.INITPARMS(3), "last");
  EXPECT_EQ(CONSOLE.INITPARMS(4), "");
}

TEST_F(SETTINGS, TWENTY_FIRST_LINE_ENDS_THE_READING) {
  std::string text;
  for (int i = 1; i <= 25; ++i) text += "K" + std::to_string(100 + i) + "  value\n";
  PUT_INI(text);
  INIT_PARAMS();
  EXPECT_EQ(CONSOLE.INITPARMS(1), "K101  value");
  EXPECT_EQ(CONSOLE.INITPARMS(20), "K120  value");
  EXPECT_EQ(PARAM("K121", 1), "");
}

TEST_F(SETTINGS, OLD_IMAGE_IS_FORGOTTEN) {
  CONSOLE.INITPARMS(5) = "MODE  EXPERT";
  INIT_PARAMS();
  EXPECT_EQ(CONSOLE.INITPARMS(5), "");
}

TEST_F(SETTINGS, KEYS_ARE_FOUND_IGNORING_CASE_AND_LEADING_BLANKS_AND_VALUES_KEEP_THEIR_CASE) {
  CONSOLE.INITPARMS(2) = "   wdir    /Data/My Files";
  EXPECT_EQ(PARAM("WDIR", 0), "/Data/My Files");
  EXPECT_EQ(PARAM("MODE", 1), "");
  EXPECT_EQ(PARAM("", 1), "");
}

TEST_F(SETTINGS, COMMENTED_AND_BLANK_ENTRIES_ARE_PASSED_OVER) {
  CONSOLE.INITPARMS(1) = "!WDIR  /comment";
  CONSOLE.INITPARMS(2) = "WDIR";
  CONSOLE.INITPARMS(3) = "WDIR  /data";
  CONSOLE.INITPARMS(4) = "WDIR  /later";
  EXPECT_EQ(PARAM("WDIR", 0), "/data");
  CONSOLE.INITPARMS(3) = "";
  CONSOLE.INITPARMS(4) = "";
  EXPECT_EQ(PARAM("WDIR", 1), "");
}

TEST_F(SETTINGS, SAVED_ENTRY_REPLACES_THE_OLD_ONE_AND_LINES_ARE_PADDED_TO_255_COLUMNS) {
  CONSOLE.INITPARMS(1) = "MODE  EXPERT";
  CONSOLE.INITPARMS(3) = "wdir  /old";
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(CONSOLE.INITPARMS(3), "WDIR  /new");
  EXPECT_EQ(TEXT_OF(ini), PADDED("MODE  EXPERT") + PADDED("WDIR  /new"));
}

TEST_F(SETTINGS, SAVED_ENTRY_TAKES_THE_FIRST_BLANK_PLACE) {
  CONSOLE.INITPARMS(1) = "MODE  EXPERT";
  CONSOLE.INITPARMS(2) = "WDIR";  // found, but blank
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(CONSOLE.INITPARMS(2), "WDIR");
  EXPECT_EQ(CONSOLE.INITPARMS(3), "WDIR  /new");
  EXPECT_EQ(PARAM("WDIR", 0), "/new");
}

TEST_F(SETTINGS, THE_ONLY_BLANK_PLACE_MAY_BE_THE_FIRST) {
  CONSOLE.INITPARMS.FILL("KEYX  value");
  CONSOLE.INITPARMS(1) = "";
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(CONSOLE.INITPARMS(1), "WDIR  /new");
}

TEST_F(SETTINGS, FULL_TABLE_STORES_NOTHING_NEW) {
  CONSOLE.INITPARMS.FILL("KEYX  value");
  SAVE_PARAM("WDIR", "/new");
  EXPECT_EQ(PARAM("WDIR", 1), "");
  EXPECT_EQ(fs::file_size(ini), 20u * 256u);
}

TEST_F(SETTINGS, KEY_OF_ANOTHER_LENGTH_CHANGES_NOTHING_BUT_REWRITES_THE_FILE) {
  for (const char* key : {"WDI", "WDIRX", "WD R", ""}) {
    fs::remove(ini);
    CONSOLE.INITPARMS.FILL("");
    CONSOLE.INITPARMS(1) = "WDIR  /data";
    SAVE_PARAM(key, "value");
    EXPECT_EQ(CONSOLE.INITPARMS(1), "WDIR  /data") << key;
    EXPECT_EQ(CONSOLE.INITPARMS(2), "") << key;
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
  const std::string device = FULL_DEVICE();
  if (device.empty()) GTEST_SKIP() << "no full device";
  fs::create_directories(ini.parent_path());
  fs::create_symlink(device, ini);
  EXPECT_EQ(SAID("",
                 [] {
                   INIT_PARAMS();
                   SAVE_PARAM("WDIR", "/data");
                 }),
            "");
  EXPECT_EQ(fs::read_symlink(ini), device);
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

// A process that saves a short and a long file in turn is stopped again and again, and then killed.
// What it has left is looked at each time. A key that is none changes no entry and saves all the
// same.
TEST_F(SETTINGS, KILL_IN_THE_MIDDLE_OF_A_SAVE_LEAVES_THE_OLD_OR_THE_NEW_FILE_WHOLE) {
  const auto save_short = [] {
    CONSOLE.INITPARMS.FILL("");
    CONSOLE.INITPARMS(1) = "WDIR  /short";
    SAVE_PARAM("", "");
  };
  const auto save_long = [] {
    CONSOLE.INITPARMS.FILL("WDIR  /long");
    SAVE_PARAM("", "");
  };
  save_long();
  const std::string long_file = TEXT_OF(ini);
  save_short();
  const std::string short_file = TEXT_OF(ini);
  ASSERT_EQ(long_file.size(), 20 * short_file.size());
  for (int kills = 0; kills < 10; ++kills) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    while (child == 0) {
      save_long();
      save_short();
    }
    for (int looks = 1; looks <= 40; ++looks) {
      std::this_thread::sleep_for(std::chrono::microseconds(100 + 17 * looks));
      ::kill(child, looks < 40 ? SIGSTOP : SIGKILL);
      ::waitpid(child, nullptr, WUNTRACED);
      const std::string found = TEXT_OF(ini);
      EXPECT_TRUE(found == long_file || found == short_file) << found;
      if (looks < 40) ::kill(child, SIGCONT);
    }
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
  CONSOLE.RUN_TYPE = 5;
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
  for (const std::string& line : CONSOLE.INITPARMS) EXPECT_LE(line.size(), 255u);
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

// ---- operation mode ----

TEST_F(SETTINGS, MODE_IS_SHOWN_IN_WORDS) {
  const std::vector<std::string> words{"Default", "Expert", "Debug"};
  for (CONSOLE.OPERATION_MODE = 0; CONSOLE.OPERATION_MODE <= 2; ++CONSOLE.OPERATION_MODE)
    EXPECT_EQ(
        SAID("", [] { WRITE_MODE(); }),
        "\nNow running in " + words[static_cast<std::size_t>(CONSOLE.OPERATION_MODE)] + " Mode\n");
}

const std::string mode_question =
    "     Available modes are:  0 = Default user, 1 = Expert, 2 = Debug\n"
    "\n     Input operation mode:";

TEST_F(SETTINGS, MODE_IS_ASKED_FOR_AND_SAVED) {
  EXPECT_EQ(SAID("1\n", [] { SET_MODE(); }),
            "\nNow running in Default Mode\n" + mode_question + "\nNow running in Expert Mode\n");
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 1);
  EXPECT_EQ(PARAM("MODE", 0), "EXPERT");
  SAID("2\n", [] { SET_MODE(); });
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
  SAID("0\n", [] { SET_MODE(); });
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 0);
  EXPECT_EQ(PARAM("MODE", 0), "NORMAL");
}

TEST_F(SETTINGS, BLANK_ANSWER_KEEPS_THE_MODE_AND_SAVES_IT_ALL_THE_SAME) {
  CONSOLE.OPERATION_MODE = 2;
  EXPECT_EQ(SAID("\n", [] { SET_MODE(); }),
            "\nNow running in Debug Mode\n" + mode_question + "     No change in operation mode\n");
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 2);
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
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 2);
  SAID("2.6\n-0.4\n", [] { SET_MODE(); });
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 0);
}

TEST_F(SETTINGS, MODE_COMMAND_CAN_BE_DISABLED) {
  CONSOLE.OPERATION_MODE = -1;
  EXPECT_EQ(SAID("", [] { SET_MODE(); }), "");
  EXPECT_EQ(CONSOLE.OPERATION_MODE, -1);
  EXPECT_FALSE(fs::exists(ini));
}

}  // namespace
