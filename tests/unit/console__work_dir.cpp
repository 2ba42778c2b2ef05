// Tests of the working directory: kept between runs, changed by CD, at the start of the console;
// and of the system commands.
#include <gtest/gtest.h>
#include <unistd.h>  // for isatty

#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "tests/unit/console__settings.h"

using namespace CONSOLE_TESTS;

namespace {

using WORK_DIR = SETTINGS;

// ---- working directory ----

TEST_F(WORK_DIR, WORKING_DIRECTORY_IS_SAVED_AND_RESTORED) {
  fs::create_directory("sub");
  fs::current_path("sub");
  SAVE_WORK_DIR();
  fs::current_path(folder);
  INIT_PARAMS();
  INIT_WORK_DIR();
  EXPECT_EQ(fs::current_path(), folder / "sub");
}

TEST_F(WORK_DIR, STORED_DIRECTORY_THAT_IS_GONE_IS_SHOWN_AS_THE_REAL_ONE_AND_STAYS_IN_THE_FILE) {
  PUT_INI("WDIR  /no/such/folder\n");
  INIT_PARAMS();
  EXPECT_EQ(SAID("", [] { INIT_WORK_DIR(); }), "");
  EXPECT_EQ(fs::current_path(), folder);
  EXPECT_EQ(PARAM("WDIR", 0), folder.string());
  EXPECT_EQ(TEXT_OF(ini), "WDIR  /no/such/folder\n");
}

TEST_F(WORK_DIR, DELETED_DIRECTORY_IS_NOT_SAVED) {
  CONSOLE.INITPARMS(1) = "WDIR  /data";
  fs::create_directory("gone");
  fs::current_path("gone");
  fs::remove(folder / "gone");
  SAVE_WORK_DIR();
  EXPECT_EQ(PARAM("WDIR", 0), "/data");
}

// Five folders of 48 characters make a path that no line of the settings can hold.
TEST_F(WORK_DIR, DIRECTORY_WITH_TOO_LONG_A_PATH_IS_SHOWN_AND_NOT_SAVED) {
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
  EXPECT_EQ(CONSOLE.MACRO_STATE, 1);
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), line);
  SAVE_WORK_DIR();
  EXPECT_EQ(TEXT_OF(ini), saved);
}

TEST_F(WORK_DIR, DIRECTORY_WHOSE_NAME_A_LINE_CANNOT_HOLD_IS_SHOWN_AND_NOT_SAVED) {
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

TEST_F(WORK_DIR, DELETED_DIRECTORY_HAS_NO_LINE) {
  COMMANDED("cd home");
  fs::remove(folder / "home");
  EXPECT_EQ(SAID("", [] { WRITE_WDIR(); }), "");
}

// ---- CD ----

TEST_F(WORK_DIR, CD_CHANGES_OUR_OWN_DIRECTORY_AND_SAVES_IT) {
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

TEST_F(WORK_DIR, CD_FALLS_BACK_TO_THE_UPPER_CASE_COPY) {
  fs::create_directories("UPPER/SUB");
  COMMANDED("cd upper");
  EXPECT_EQ(fs::current_path(), folder / "UPPER");
  COMMANDED("cd Sub");
  EXPECT_EQ(fs::current_path(), folder / "UPPER/SUB");
  COMMANDED("cd ../sub");
  EXPECT_EQ(fs::current_path(), folder / "UPPER/SUB");
  fs::create_directory("../OTHER");
  COMMANDED("cd ../other");
  EXPECT_EQ(fs::current_path(), folder / "UPPER/OTHER");
  fs::current_path(folder);
  fs::create_directory("upper");
  COMMANDED("cd upper");
  EXPECT_EQ(fs::current_path(), folder / "upper");  // as typed comes first
}

TEST_F(WORK_DIR, CD_UP_STOPS_AT_THE_ROOT) {
  fs::current_path("/");
  COMMANDED("cd ..");
  EXPECT_EQ(fs::current_path(), "/");
}

TEST_F(WORK_DIR, CD_WITHOUT_A_DIRECTORY_STAYS_AND_SAVES_NOTHING) {
  EXPECT_EQ(COMMANDED("cd"), "");
  EXPECT_EQ(COMMANDED("chdir   "), "");
  EXPECT_EQ(fs::current_path(), folder);
  EXPECT_EQ(PARAM("WDIR", 1), "");
}

TEST_F(WORK_DIR, CD_THAT_FAILS_SAYS_SO_STAYS_AND_SAVES_NOTHING) {
  PUT_FILE("file.txt", "x");
  const std::string long_name(250, 'x');
  for (const std::string& name : {std::string("none"), std::string("file.txt"), long_name}) {
    EXPECT_EQ(COMMANDED("cd " + name),
              "     Cannot change directory to " + name + ": there is no such folder\n");
    EXPECT_EQ(fs::current_path(), folder);
  }
  EXPECT_EQ(PARAM("WDIR", 1), "");
}

TEST_F(WORK_DIR, CD_TO_A_FOLDER_THAT_MAY_NOT_BE_ENTERED_SAYS_SO) {
  AS_A_COMMON_USER([] {
    fs::create_directory("closed");
    fs::permissions("closed", fs::perms::owner_read);
    EXPECT_EQ(COMMANDED("cd closed"),
              "     Cannot change directory to closed: it may not be entered\n");
  });
}

TEST_F(WORK_DIR, ONLY_THE_WHOLE_WORD_IS_CD) {
  PUT_FILE("cdx", "#!/bin/sh\necho ran > ran.txt\n");
  fs::permissions("cdx", fs::perms(0755));
  ::setenv("PATH", (folder.string() + ":" + std::getenv("PATH")).c_str(), 1);
  COMMANDED("cdx home");
  EXPECT_EQ(TEXT_OF("ran.txt"), "ran\n");
  EXPECT_EQ(fs::current_path(), folder);
}

TEST_F(WORK_DIR, OTHER_LINES_GO_TO_THE_SHELL_AS_TYPED_AND_THEIR_STATUS_IS_IGNORED) {
  EXPECT_EQ(COMMANDED("echo 'Two  Words' > Out.txt; exit 4"), "");
  EXPECT_EQ(TEXT_OF("Out.txt"), "Two  Words\n");
}

// ---- a file chosen in a dialogue ----

TEST_F(WORK_DIR, FOLDER_OF_A_CHOSEN_FILE_IS_ENTERED_AND_SAVED) {
  fs::create_directory("sub");
  const std::string below = (folder / "sub").string() + "/";
  const std::string longest(255, 'x');
  const std::string longer(256, 'x');
  for (const auto& [path, pending] :
       {std::pair{below + "my data.cif", std::string("my data.cif")},
        std::pair{below + longest, longest}, std::pair{below + longer, below + longer}}) {
    fs::current_path(folder);
    PUT_INI("WDIR  /\n");
    TAKE_CHOSEN(path);
    EXPECT_EQ(CONSOLE.INSTRING, pending);
    EXPECT_EQ(CONSOLE.INSTRING_LEN, static_cast<int>(pending.size()));
    EXPECT_EQ(fs::current_path(), folder / "sub");
    EXPECT_EQ(PARAM("WDIR", 0), (folder / "sub").string());
  }
}

TEST_F(WORK_DIR, FOLDER_OF_A_CHOSEN_FILE_THAT_CANNOT_BE_ENTERED_IS_NOT_SAVED) {
  PUT_INI("WDIR  /\n");
  const std::string path = (folder / "none/my data.cif").string();
  TAKE_CHOSEN(path);
  EXPECT_EQ(CONSOLE.INSTRING, path);
  EXPECT_EQ(CONSOLE.INSTRING_LEN, static_cast<int>(path.size()));
  EXPECT_EQ(fs::current_path(), folder);
  EXPECT_EQ(TEXT_OF(ini), "WDIR  /\n");
}

// ---- start ----

TEST_F(WORK_DIR, START_RESTORES_THE_DIRECTORY_AND_NOT_THE_MODE) {
  fs::create_directory("sub");
  PUT_INI("MODE  DEBUG\nWDIR  " + (folder / "sub").string() + "\n");
  CONSOLE.RUN_TYPE = 3;
  EXPECT_EQ(SAID("", [] { INIT_CONSOLE(""); }), "");
  EXPECT_EQ(fs::current_path(), folder / "sub");
  EXPECT_EQ(CONSOLE.OPERATION_MODE, 0);
  EXPECT_EQ(CONSOLE.RUN_TYPE, 1);
  EXPECT_EQ(PARAM("MODE", 0), "DEBUG");
}

TEST_F(WORK_DIR, WITHOUT_LOCALAPPDATA_THE_STORED_DIRECTORY_IS_NEITHER_RESTORED_NOR_SHOWN) {
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

TEST_F(WORK_DIR, MACRO_GIVEN_AT_START_IS_OPENED_IN_THE_CURRENT_DIRECTORY) {
  PUT_FILE("run.mcr", "HELP\n");
  PUT_INI("WDIR  /\n");
  const std::string name = (folder / "run.mcr").string();
  for (const char* argument : {"run", "run.mcr", "  run.mcr "}) {
    RESET_STATE();
    EXPECT_EQ(SAID("", [&] { INIT_CONSOLE(argument); }),
              "\n\nSuccessfully opened file for macros\nNamed " + name + "\n\n");
    EXPECT_EQ(CONSOLE.MACRO_STATE, 1);
    EXPECT_EQ(fs::current_path(), folder);         // the stored one is not restored
    EXPECT_EQ(PARAM("WDIR", 0), folder.string());  // and what is shown is where we are
  }
  EXPECT_EQ(TEXT_OF(ini), "WDIR  /\n");
}

TEST_F(WORK_DIR, MACRO_ARGUMENT_WITH_A_FOLDER_STAYS_AS_TYPED) {
  fs::create_directory("sub");
  PUT_FILE("sub/run.mcr", "HELP\n");
  for (const char* argument : {"sub/run.mcr", "sub/run", "./sub/run"}) {
    RESET_STATE();
    SAID("", [&] { INIT_CONSOLE(argument); });
    EXPECT_EQ(CONSOLE.MACRO_STATE, 1) << argument;
    EXPECT_EQ(CONSOLE.MACRO_FILE.NAME,
              std::string(argument).substr(0, argument[0] == '.' ? 9 : 7) + ".mcr");
  }
}

// The extension goes to the argument itself: a dot in the path of the directory is not one in it.
TEST_F(WORK_DIR, MACRO_ARGUMENT_GETS_ITS_EXTENSION_ALSO_IN_A_DOTTED_FOLDER) {
  fs::create_directory("v1.2");
  PUT_FILE("v1.2/run.mcr", "HELP\n");
  fs::current_path("v1.2");
  SAID("", [] { INIT_CONSOLE("run"); });
  EXPECT_EQ(CONSOLE.MACRO_FILE.NAME, (folder / "v1.2/run.mcr").string());
}

TEST_F(WORK_DIR, MACRO_THAT_CANNOT_BE_OPENED_IS_ASKED_FOR_AND_A_BLANK_GIVES_UP) {
  PUT_INI("WDIR  /\n");
  const std::string name = (folder / "none.mcr").string();
  EXPECT_EQ(SAID("\n", [] { INIT_CONSOLE("none"); }),
            "\n*****File " + name + " does not exist, but is required to pre-exist\n" +
                "\n     Open file for macros (*.mcr):");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_EQ(fs::current_path(), folder);
}

TEST_F(WORK_DIR, MACRO_PATH_THAT_GROWS_TOO_LONG_STAYS_AS_TYPED) {
  const fs::path deep = folder / std::string(200, 'd');
  fs::create_directory(deep);
  fs::current_path(deep);
  const std::string name(60, 'm');
  PUT_FILE(name + ".mcr", "HELP\n");
  SAID("", [&] { INIT_CONSOLE(name); });
  EXPECT_EQ(CONSOLE.MACRO_FILE.NAME, name + ".mcr");
}

TEST_F(WORK_DIR, WIDTH_IS_100_WITHOUT_A_TERMINAL) {
  if (::isatty(STDOUT_FILENO) != 0) GTEST_SKIP() << "the tests run on a terminal";
  INIT_CONSOLE("");
  EXPECT_EQ(CONSOLE.WIDTH, 100);
}

using WORK_DIR_DEATH = SETTINGS;

TEST_F(WORK_DIR_DEATH, CLOSING_SAVES_THE_DIRECTORY_AND_ENDS_WITH_STATUS_0) {
  EXPECT_EXIT(CLOSE_CONSOLE(), testing::ExitedWithCode(0), "^$");
  EXPECT_EQ(TEXT_OF(ini), PADDED("WDIR  " + folder.string()));
}

}  // namespace
