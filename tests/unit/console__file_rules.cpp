// Which file a name means, how long a name may be, and where no settings are looked for.
#include "console_code/console/open_file.h"
#include "tests/unit/console__settings.h"

using namespace CONSOLE_TESTS;

namespace {

class FILE_RULES : public SETTINGS {
 protected:
  KVA_UTILITIES::FILE_RECORD file;

  void TearDown() override {
    KVA_UTILITIES::CLOSE_FILE(file);
    SETTINGS::TearDown();
  }

  // The name of the file that is opened; blank when none is.
  std::string OPENED(const std::string& name, const std::string& control) {
    KVA_UTILITIES::CLOSE_FILE(file);
    file = {};
    file.DESCRIPTOR = "data file";
    file.UNIT = DATA_UNIT;
    file.EXT = "dat";
    REDIRECTED console("\n");
    PEND(name);
    OPEN_FILE(file, control);
    return file.NAME;
  }
};

// The "." of the folder is that of an extension, so that v1.2/quartz is the whole name.
TEST_F(FILE_RULES, A_FILE_THAT_IS_WRITTEN_IS_THE_ONE_THAT_IS_NAMED) {
  fs::create_directory("v1.2");
  PUT_FILE("v1.2/quartz.dat", "content\n");
  for (const char* control : {"REPLACE", "REPLACE CONFIRM", "APPEND", "NEW"}) {
    EXPECT_EQ(OPENED("v1.2/quartz", control), "v1.2/quartz") << control;
    EXPECT_EQ(TEXT_OF("v1.2/quartz.dat"), "content\n") << control;
    fs::remove("v1.2/quartz");
  }
}

// Ten folders of 24 characters and their separators are 250; the extension counts as well.
TEST_F(FILE_RULES, A_NAME_HAS_UP_TO_255_CHARACTERS) {
  std::string deep;
  for (int i = 0; i < 10; ++i) deep += std::string(24, 'd') + "/";
  fs::create_directories(deep);
  EXPECT_EQ(OPENED(deep + "a", "REPLACE"), deep + "a.dat") << "255";
  EXPECT_TRUE(fs::exists(deep + "a.dat"));
  EXPECT_EQ(OPENED(deep + "ab", "REPLACE"), "") << "256";
  EXPECT_FALSE(fs::exists(deep + "ab.dat"));
}

TEST_F(FILE_RULES, A_MACRO_AT_START_IS_NAMED_WITH_ITS_EXTENSION) {
  fs::create_directory("v1.2");
  PUT_FILE("v1.2/run", "not this one\n");
  PUT_FILE("v1.2/run.mcr", "HELP\n");
  fs::current_path("v1.2");
  SAID("", [] { INIT_CONSOLE("run"); });
  EXPECT_EQ(CONSOLE.MACRO_FILE.NAME, (folder / "v1.2/run.mcr").string());
  RESET_STATE();
  EXPECT_EQ(SAID("", [] { INIT_CONSOLE("   "); }), "") << "a blank argument names none";
}

TEST_F(FILE_RULES, BLANK_LOCALAPPDATA_USES_NO_OTHER_PLACE_EVEN_WHEN_THERE_IS_ONE) {
  ::setenv("LOCALAPPDATA", " ", 1);
  ::setenv("XDG_CONFIG_HOME", (folder / "xdg").c_str(), 1);
  for (const char* place : {"xdg", "home/.config"}) {
    fs::create_directories(folder / place / "quorvansoftware");
    PUT_FILE(folder / place / "quorvansoftware/gemmara.ini", "WDIR  /old\n");
  }
  INIT_PARAMS();
  PARAM("WDIR", 1);
  SAVE_PARAM("WDIR", "/new");
  for (const char* place : {"xdg", "home/.config"})
    EXPECT_EQ(TEXT_OF(folder / place / "quorvansoftware/gemmara.ini"), "WDIR  /old\n") << place;
}

}  // namespace
