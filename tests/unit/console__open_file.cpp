// Tests of OPEN_FILE: every mode with the file there and absent, names and access.
#include "console_code/console/open_file.h"

#include <gtest/gtest.h>

#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using KVA_UTILITIES::FILE_RECORD;

class OPENING : public CONSOLE_TEST {
 protected:
  FILE_RECORD file;
  std::string said;

  void SetUp() override {
    CONSOLE_TEST::SetUp();
    NEW_RECORD();
  }
  void TearDown() override {
    KVA_UTILITIES::CLOSE_FILE(file);
    CONSOLE_TEST::TearDown();
  }

  void NEW_RECORD() {
    KVA_UTILITIES::CLOSE_FILE(file);
    file = {};
    file.DESCRIPTOR = "data file";
    file.UNIT = 32;
    file.EXT = "dat";
  }

  // With the name pending; input is what can be typed behind it.
  bool OPENED(const std::string& name, const std::string& control, const std::string& input = "") {
    PEND(name);
    said = SAID(input, [&] { OPEN_FILE(file, control); });
    return file.OPEN;
  }

  // lines: that stand in the file already, and are told.
  static std::string SUCCESS(const std::string& name, int lines = 0) {
    const std::string behind =
        "     The file exists: this is added behind its " + std::to_string(lines) + " lines\n";
    return "\nSuccessfully opened data file\nNamed " + name + "\n" + (lines > 0 ? behind : "") +
           "\n";
  }
  const std::string prompt = "\n     Open data file (*.dat):";
};

// ---- names ----

TEST_F(OPENING, PENDING_TEXT_IS_THE_NAME) {
  EXPECT_TRUE(OPENED("new.txt", "REPLACE"));
  EXPECT_EQ(said, "\n" + SUCCESS("new.txt"));
  EXPECT_EQ(file.NAME, "new.txt");
  EXPECT_EQ(file.SHORT_NAME, "new.txt");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
  EXPECT_TRUE(fs::exists("new.txt"));
}

TEST_F(OPENING, WITHOUT_PENDING_TEXT_THE_NAME_IS_ASKED_FOR) {
  EXPECT_TRUE(OPENED("", "REPLACE", "new.txt\n"));
  EXPECT_EQ(said, "\n" + prompt + SUCCESS("new.txt"));
}

TEST_F(OPENING, SAVE_CHANGES_THE_WORD_OF_THE_PROMPT) {
  EXPECT_FALSE(OPENED("", "REPLACE SAVE", "\n"));
  EXPECT_EQ(said, "\n\n     Save data file (*.dat):");
}

TEST_F(OPENING, BLANK_ANSWER_GIVES_UP) {
  EXPECT_FALSE(OPENED("", "OLD", "   \n"));
  EXPECT_EQ(said, "\n" + prompt);
  EXPECT_EQ(file.NAME, "");
}

TEST_F(OPENING, FILE_NAME_PROMPT_LEAVES_THE_ANSWER_PENDING) {
  EXPECT_EQ(SAID("some name\n", [] { GET_INPUT_FILENAME("Open", "cif file", "cif"); }),
            "     Open cif file (*.cif):");
  EXPECT_EQ(CONSOLE.INSTRING, "some name");
}

TEST_F(OPENING, NAME_WITHOUT_A_DOT_GETS_THE_EXTENSION) {
  EXPECT_TRUE(OPENED("new", "REPLACE"));
  EXPECT_EQ(file.NAME, "new.dat");
}

TEST_F(OPENING, DOT_IN_A_FOLDER_COUNTS_AS_ONE) {
  fs::create_directory("v1.2");
  EXPECT_TRUE(OPENED("v1.2/new", "REPLACE"));
  EXPECT_EQ(file.NAME, "v1.2/new");
  EXPECT_EQ(file.SHORT_NAME, "new");
}

TEST_F(OPENING, OLD_FILE_BEHIND_A_DOTTED_FOLDER_IS_FOUND_WITH_ITS_EXTENSION) {
  fs::create_directory("v1.2");
  PUT_FILE("v1.2/quartz.dat", "x");
  EXPECT_TRUE(OPENED("v1.2/quartz", "OLD"));
  EXPECT_EQ(file.NAME, "v1.2/quartz.dat");
  EXPECT_TRUE(OPENED("./v1.2/quartz", "OLD"));
  EXPECT_EQ(file.NAME, "./v1.2/quartz.dat");
  // A name that is there as typed is taken as typed.
  PUT_FILE("v1.2/quartz", "y");
  EXPECT_TRUE(OPENED("v1.2/quartz", "OLD"));
  EXPECT_EQ(file.NAME, "v1.2/quartz");
  // A dot in the last part is the user's own extension.
  PUT_FILE("v1.2/a.b.dat", "x");
  EXPECT_FALSE(OPENED("v1.2/a.b", "OLD", "\n"));
}

TEST_F(OPENING, REST_OF_THE_LINE_IS_THE_NAME_WITH_ITS_BLANKS) {
  EXPECT_TRUE(OPENED("my data file.txt", "REPLACE"));
  EXPECT_EQ(file.NAME, "my data file.txt");
  EXPECT_TRUE(fs::exists("my data file.txt"));
}

TEST_F(OPENING, QUOTES_AROUND_THE_NAME_GO) {
  EXPECT_TRUE(OPENED("\"my data.txt\"", "REPLACE"));
  EXPECT_EQ(file.NAME, "my data.txt");
  EXPECT_TRUE(OPENED("'other data.txt'", "REPLACE"));
  EXPECT_EQ(file.NAME, "other data.txt");
  EXPECT_TRUE(OPENED("it's.txt", "REPLACE"));
  EXPECT_EQ(file.NAME, "it's.txt");
}

TEST_F(OPENING, TILDE_IS_THE_HOME_DIRECTORY) {
  EXPECT_TRUE(OPENED("~/new.txt", "REPLACE"));
  EXPECT_EQ(file.NAME, (folder / "home/new.txt").string());
  EXPECT_TRUE(fs::exists(folder / "home/new.txt"));
}

TEST_F(OPENING, USER_PATHS) {
  const std::string home = (folder / "home").string();
  EXPECT_EQ(USER_PATH("~"), home);
  EXPECT_EQ(USER_PATH("\"~/a b\""), home + "/a b");
  EXPECT_EQ(USER_PATH("~other/x"), "~other/x");
  EXPECT_EQ(USER_PATH("  a  "), "a");
  EXPECT_EQ(USER_PATH("\""), "\"");
  ::unsetenv("HOME");
  EXPECT_EQ(USER_PATH("~/x"), "~/x");
}

TEST_F(OPENING, EMPTY_QUOTES_ARE_NO_NAME) {
  EXPECT_TRUE(OPENED("\"\"", "REPLACE", "new.txt\n"));
  EXPECT_EQ(said, "\n*****Failed to read file name, try again\n" + prompt + SUCCESS("new.txt"));
}

TEST_F(OPENING, SHORT_NAME_IS_WHAT_STANDS_BEHIND_THE_LAST_SEPARATOR) {
  fs::create_directory("sub");
  EXPECT_TRUE(OPENED("sub/new.txt", "REPLACE"));
  EXPECT_EQ(file.SHORT_NAME, "new.txt");
  EXPECT_TRUE(OPENED("back\\slash.txt", "REPLACE"));
  EXPECT_EQ(file.NAME, "back\\slash.txt");
  EXPECT_EQ(file.SHORT_NAME, "slash.txt");
}

TEST_F(OPENING, NAME_BEYOND_255_CHARACTERS_DOES_NOT_OPEN) {
  ASSERT_TRUE(fs::exists("home"));
  std::string name;
  while (name.size() < 250) name += "./";
  name += "dirs/new";
  EXPECT_FALSE(OPENED(name, "REPLACE", "\n"));
  EXPECT_EQ(said, "\nError trying to open file data file\nNamed " + name + " try again\n" + prompt);
}

// ---- modes ----

TEST_F(OPENING, MODE_0_OPENS_WHAT_IS_THERE_OR_MAKES_IT) {
  PUT_FILE("old.txt", "content\n");
  EXPECT_TRUE(OPENED("old.txt", ""));
  EXPECT_EQ(TEXT_OF("old.txt"), "content\n");
  EXPECT_TRUE(OPENED("new.txt", ""));
  EXPECT_TRUE(fs::exists("new.txt"));
}

TEST_F(OPENING, APPEND_WRITES_BEHIND_AN_OLD_FILE_AND_MAKES_A_NEW_ONE) {
  PUT_FILE("old.txt", "content\n");
  EXPECT_TRUE(OPENED("old.txt", "append"));
  EXPECT_EQ(said, "\n" + SUCCESS("old.txt", 1));
  KVA_UTILITIES::WRITE_UNIT(32, "more");
  EXPECT_EQ(TEXT_OF("old.txt"), "content\nmore\n");
  EXPECT_TRUE(OPENED("new.txt", "APPEND"));
  EXPECT_EQ(said, "\n" + SUCCESS("new.txt"));
  KVA_UTILITIES::WRITE_UNIT(32, "first");
  EXPECT_EQ(TEXT_OF("new.txt"), "first\n");
}

TEST_F(OPENING, APPEND_CONFIRMS_NOTHING) {
  PUT_FILE("old.txt", "content\n\nwithout an end");
  EXPECT_TRUE(OPENED("old.txt", "APPEND CONF"));
  EXPECT_EQ(said, "\n" + SUCCESS("old.txt", 3));
}

// ---- kinds of files ----

TEST_F(OPENING, A_FILE_OF_ANOTHER_KIND_IS_NOT_WRITTEN_AND_ANOTHER_NAME_IS_ASKED_FOR) {
  for (const std::string other :
       {"cif", "OUT", "mcr", "log", "csv", "tsv", "tex", "svg", "pdf", "png", "gp"}) {
    const std::string name = "folder.d/a." + other;
    for (const char* control : {"APPEND CONF", "REPLACE", "REPLACE CONFIRM", "NEW"}) {
      EXPECT_FALSE(OPENED(name, control, "\n"));
      EXPECT_EQ(said, "\n*****The file " + name + " is of another kind\n" + prompt) << control;
    }
  }
  PUT_FILE("a.cif", "data_a\n");
  EXPECT_TRUE(OPENED("a.cif", "APPEND", "b.dat\n"));
  EXPECT_EQ(TEXT_OF("a.cif"), "data_a\n");
}

TEST_F(OPENING, FILES_OF_ITS_OWN_KIND_AND_OF_NONE_ARE_WRITTEN) {
  for (const char* name : {"a.dat", "a.DAT", "a.txt", "a.cif.dat", "a.cif2", "dat"})
    EXPECT_TRUE(OPENED(name, "APPEND")) << name;
  file.EXT = "svg";
  EXPECT_TRUE(OPENED("a.png", "REPLACE"));
  file.EXT = "csv";
  EXPECT_TRUE(OPENED("a.tex", "REPLACE"));
  EXPECT_FALSE(OPENED("a.svg", "REPLACE", "\n"));
}

TEST_F(OPENING, ANY_KIND_IS_READ) {
  PUT_FILE("a.cif", "data_a\n");
  EXPECT_TRUE(OPENED("a.cif", "OLD READ"));
}

TEST_F(OPENING, IN_A_MACRO_A_FILE_OF_ANOTHER_KIND_DROPS_THE_COMMAND) {
  START_MACRO_WITH("answer\n");
  EXPECT_FALSE(OPENED("a.cif", "APPEND"));
  EXPECT_EQ(said, "\n*****The file a.cif is of another kind\n");
  EXPECT_TRUE(CONSOLE.DROPPED);
  EXPECT_EQ(CONSOLE.MACRO_STATE, 1) << "the macro goes on";
}

TEST_F(OPENING, NEW_REFUSES_AN_OLD_FILE) {
  PUT_FILE("old.txt", "content\n");
  EXPECT_TRUE(OPENED("old.txt", "NEW", "new.txt\n"));
  EXPECT_EQ(said, "\n*****File old.txt already exists, overwriting not allowed\n" + prompt +
                      SUCCESS("new.txt"));
  EXPECT_EQ(TEXT_OF("old.txt"), "content\n");
}

TEST_F(OPENING, OLD_OPENS_AT_THE_START_AND_REFUSES_AN_ABSENT_FILE) {
  PUT_FILE("old.txt", "content\n");
  EXPECT_TRUE(OPENED("none.txt", "OLD READ", "old.txt\n"));
  EXPECT_EQ(said, "\n*****File none.txt does not exist, but is required to pre-exist\n" + prompt +
                      SUCCESS("old.txt"));
  std::string line;
  EXPECT_EQ(KVA_UTILITIES::READ_UNIT(32, line), KVA_UTILITIES::READ_STATUS::LINE);
  EXPECT_EQ(line, "content");
  EXPECT_FALSE(fs::exists("none.txt"));
}

TEST_F(OPENING, REPLACE_DOES_NOT_ASK) {
  PUT_FILE("old.txt", "content\n");
  EXPECT_TRUE(OPENED("old.txt", "REPLACE"));
  EXPECT_EQ(said, "\n" + SUCCESS("old.txt"));
  EXPECT_EQ(TEXT_OF("old.txt"), "");
}

TEST_F(OPENING, REPLACE_CONFIRM_ASKS_BEFORE_IT_OVERWRITES) {
  PUT_FILE("old.txt", "content\n");
  EXPECT_TRUE(OPENED("old.txt", "REPLACE CONFIRM", "y\n"));
  EXPECT_EQ(said, "\n*****File old.txt exists\nDo you want to overwrite it (Y/N) <N>?" +
                      SUCCESS("old.txt"));
  EXPECT_EQ(TEXT_OF("old.txt"), "");
}

TEST_F(OPENING, REPLACE_CONFIRM_WITHOUT_A_YES_ASKS_FOR_ANOTHER_NAME) {
  for (const char* answer : {"n\n", "\n"}) {
    NEW_RECORD();
    PUT_FILE("old.txt", "content\n");
    EXPECT_FALSE(OPENED("old.txt", "REPLACE CONF", std::string(answer) + "\n"));
    EXPECT_EQ(said, "\n*****File old.txt exists\nDo you want to overwrite it (Y/N) <N>?" + prompt);
    EXPECT_EQ(TEXT_OF("old.txt"), "content\n");
  }
}

TEST_F(OPENING, REPLACE_CONFIRM_MAKES_AN_ABSENT_FILE_WITHOUT_A_QUESTION) {
  EXPECT_TRUE(OPENED("new.txt", "REPLACE CONFIRM"));
  EXPECT_EQ(said, "\n" + SUCCESS("new.txt"));
}

// ---- a file that is open already ----

TEST_F(OPENING, OPEN_FILE_IS_KEPT_UNLESS_THE_USER_AGREES_TO_CLOSE_IT) {
  ASSERT_TRUE(OPENED("first.txt", "REPLACE"));
  const std::string question =
      "\ndata file named first.txt is already open\n"
      "Do you want to close this and open a new file (Y/N) <Y>?";
  EXPECT_TRUE(OPENED("", "REPLACE", "n\n"));
  EXPECT_EQ(said, question);
  EXPECT_EQ(file.NAME, "first.txt");
  EXPECT_TRUE(KVA_UTILITIES::UNIT_WRITABLE(32));

  EXPECT_TRUE(OPENED("", "REPLACE", "\nsecond.txt\n"));
  EXPECT_EQ(said, question + prompt + SUCCESS("second.txt"));
  EXPECT_EQ(file.NAME, "second.txt");

  EXPECT_FALSE(OPENED("", "REPLACE", "y\n\n"));
  EXPECT_EQ(file.NAME, "");
}

TEST_F(OPENING, PENDING_NAME_CLOSES_THE_OPEN_FILE_WITHOUT_A_QUESTION) {
  ASSERT_TRUE(OPENED("first.txt", "REPLACE"));
  EXPECT_TRUE(OPENED("second.txt", "REPLACE"));
  EXPECT_EQ(said, "\n" + SUCCESS("second.txt"));
}

// ---- failures ----

TEST_F(OPENING, FAILURE_NAMES_THE_FILE_ON_THE_CONSOLE_ONLY_AND_ASKS_AGAIN) {
  START_LOG();
  EXPECT_TRUE(OPENED("none/new.txt", "REPLACE", "new.txt\n"));
  EXPECT_EQ(said, "\nError trying to open file data file\nNamed none/new.txt try again\n" + prompt +
                      SUCCESS("new.txt"));
  EXPECT_EQ(TEXT_OF("test.log"), "\n\n     Open data file (*.dat):new.txt\n" + SUCCESS("new.txt"));
}

TEST_F(OPENING, DIRECTORY_IS_REFUSED_LIKE_A_FILE_THAT_FAILS_TO_OPEN) {
  fs::create_directory("sub.dat");
  for (const char* control : {"OLD READ", "OLD", "APPEND", "REPLACE", ""}) {
    EXPECT_FALSE(OPENED("sub", control, "\n"));
    EXPECT_EQ(said, "\nError trying to open file data file\nNamed sub.dat try again\n" + prompt)
        << control;
  }
  EXPECT_TRUE(fs::is_directory("sub.dat"));
}

TEST_F(OPENING, READ_ONLY_FILE_CAN_BE_READ_AND_NOT_WRITTEN) {
  AS_A_COMMON_USER([this] {
    PUT_FILE("old.txt", "content\n");
    fs::permissions("old.txt", fs::perms(0400));
    EXPECT_TRUE(OPENED("old.txt", "OLD READ"));
    KVA_UTILITIES::CLOSE_FILE(file);
    for (const char* control : {"OLD", ""}) {
      EXPECT_FALSE(OPENED("old.txt", control, "\n"));
      EXPECT_EQ(said,
                "\n\n*****WARNING: Error trying to open file   old.txt\n\n"
                "     Write access was requested, but file locked against writing\n" +
                    prompt);
    }
    for (const char* control : {"REPLACE", "APPEND"}) {
      EXPECT_FALSE(OPENED("old.txt", control, "\n"));
      EXPECT_EQ(said, "\nError trying to open file data file\nNamed old.txt try again\n" + prompt);
    }
    EXPECT_EQ(TEXT_OF("old.txt"), "content\n");
  });
}

TEST_F(OPENING, REFUSED_ACCESS_IS_TOLD_ON_THE_CONSOLE_ONLY_AND_CLOSES_THE_UNIT) {
  AS_A_COMMON_USER([this] {
    START_LOG();
    PUT_FILE("old.txt", "content\n");
    fs::permissions("old.txt", fs::perms(0400));
    EXPECT_FALSE(OPENED("old.txt", "OLD", "\n"));
    EXPECT_EQ(TEXT_OF("test.log"), "\n" + prompt + "\n");
    EXPECT_FALSE(KVA_UTILITIES::UNIT_READABLE(32));
    EXPECT_EQ(file.NAME, "");
  });
}

TEST_F(OPENING, FOLDER_THAT_TAKES_NO_FILE_IS_A_FAILURE_TO_OPEN) {
  AS_A_COMMON_USER([this] {
    LOCK_FOLDER("locked");
    for (const char* control : {"REPLACE", "REPLACE CONFIRM", "NEW", "APPEND", ""}) {
      EXPECT_FALSE(OPENED("locked/new", control, "\n"));
      EXPECT_EQ(said,
                "\nError trying to open file data file\nNamed locked/new.dat try again\n" + prompt)
          << control;
    }
    EXPECT_TRUE(fs::is_empty("locked"));
  });
}

TEST_F(OPENING, WRITE_ONLY_FILE_CANNOT_BE_READ) {
  AS_A_COMMON_USER([this] {
    PUT_FILE("old.txt", "content\n");
    fs::permissions("old.txt", fs::perms(0200));
    EXPECT_FALSE(OPENED("old.txt", "OLD READ", "\n"));
    EXPECT_EQ(said,
              "\n\n*****WARNING: Error trying to open file   old.txt\n\n"
              "     Read access was requested, but file is locked against reading\n" +
                  prompt);
    EXPECT_TRUE(OPENED("old.txt", "OLD"));
  });
}

TEST_F(OPENING, STRANGE_NAMES_DO_NO_HARM) {
  for (const std::string& name :
       {std::string(255, 'x'), std::string("/"), std::string("."), std::string(".."),
        std::string("///"), std::string("\\"), std::string("~"), std::string("a\x80\xff"),
        std::string("no/such/folder/file")}) {
    NEW_RECORD();
    OPENED(name, "OLD READ", "\n");
    EXPECT_FALSE(file.OPEN) << name;
  }
}

// ---- macros ----

TEST_F(OPENING, PROMPTED_NAME_WHILE_RECORDING_IS_WARNED_OF_AND_RECORDED_ALL_THE_SAME) {
  START_MACRO_WITH("");
  CONSOLE.MACRO_STATE = -1;
  EXPECT_TRUE(OPENED("", "REPLACE", "new.txt\n"));
  EXPECT_EQ(said,
            "\n"
            " *****Selecting a filename this way will not be recorded by the Macro\n"
            " *****For recording enter the filename with the command\n" +
                prompt + SUCCESS("new.txt"));
  EXPECT_EQ(TEXT_OF("test.mcr"), "new.txt\n");
  EXPECT_TRUE(OPENED("other.txt", "REPLACE"));
  EXPECT_EQ(said, "\n" + SUCCESS("other.txt"));
}

TEST_F(OPENING, MACRO_ANSWERS_THE_NAME_PROMPT) {
  START_MACRO_WITH("new.txt\n");
  EXPECT_TRUE(OPENED("", "REPLACE"));
  EXPECT_EQ(said, "\n" + prompt + "new.txt\n" + SUCCESS("new.txt"));
}

// The overwrite question, a blank answer to it, and a name at the prompt, recorded and replayed.
TEST_F(OPENING, RECORDED_OVERWRITE_QUESTION_REPLAYS) {
  PUT_FILE("old.txt", "content\n");
  START_MACRO_WITH("");
  CONSOLE.MACRO_STATE = -1;
  EXPECT_TRUE(OPENED("old.txt", "REPLACE CONFIRM", "\nold.txt\nY\n"));
  KVA_UTILITIES::CLOSE_FILE(CONSOLE.MACRO_FILE);
  EXPECT_EQ(TEXT_OF("test.mcr"), "\nold.txt\nY\n");

  NEW_RECORD();
  START_MACRO_WITH("\nold.txt\nY\n");
  EXPECT_TRUE(OPENED("old.txt", "REPLACE CONFIRM"));
  const std::string question = "*****File old.txt exists\nDo you want to overwrite it (Y/N) <N>?";
  EXPECT_EQ(said,
            "\n" + question + "\n" + prompt + "old.txt\n" + question + "Y\n" + SUCCESS("old.txt"));
}

TEST_F(OPENING, MACRO_RECORD_IS_SET_UP) {
  PEND("session");
  SAID("", [] { OPEN_MACRO_FILE("REPLACE CONFIRM"); });
  EXPECT_TRUE(CONSOLE.MACRO_FILE.OPEN);
  EXPECT_EQ(CONSOLE.MACRO_FILE.NAME, "session.mcr");
  EXPECT_EQ(CONSOLE.MACRO_FILE.DESCRIPTOR, "file for macros");
  EXPECT_EQ(CONSOLE.MACRO_FILE.UNIT, 91);
}

// ---- several files ----

class OPENING_SEVERAL : public OPENING {
 protected:
  void SetUp() override {
    OPENING::SetUp();
    for (const char* name : {"a10.dat", "a2.dat", ".hidden.dat", "b c.dat", "[x].dat"})
      PUT_FILE(name, "line");
    fs::create_directory("a3.dat");
  }

  // Names that are opened, with a blank between; input is what can be typed behind the line.
  std::string NAMES(const std::string& line, const std::string& input = "") {
    PEND(line);
    std::string names;
    said = SAID(input, [&] {
      for (const NAMED_FILE& found : OPEN_FILES(file, "OLD READ"))
        names += (names.empty() ? "" : " ") + found.NAME;
    });
    NEW_RECORD();
    return names;
  }
};

TEST_F(OPENING_SEVERAL, PATTERNS_FIND_FILES_IN_NATURAL_ORDER_AND_NO_FOLDERS) {
  EXPECT_EQ(NAMES("a*"), "a2.dat a10.dat");
  EXPECT_EQ(NAMES("*.dat"), "[x].dat a2.dat a10.dat b c.dat");
  EXPECT_EQ(NAMES(".h*"), ".hidden.dat");
  EXPECT_EQ(NAMES("./a?.dat a10"), "./a2.dat a10.dat");
  EXPECT_EQ(NAMES("z*", "\n"), "");
  EXPECT_NE(said.find("*****No file fits z*: DIR shows the names\n"), std::string::npos) << said;
  EXPECT_EQ(NAMES("a2.dat z*", "\n"), "") << "all or none";
}

TEST_F(OPENING_SEVERAL, A_FILE_OF_THAT_NAME_IS_MEANT_BEFORE_A_PATTERN) {
  EXPECT_EQ(NAMES("[x].dat"), "[x].dat");
  EXPECT_EQ(NAMES("[x]"), "[x].dat");
  EXPECT_EQ(FILES_NAMED("[x].dat", "dat").front().NAME, "[x].dat");
  EXPECT_EQ(NAMES("b c.dat"), "b c.dat");
  EXPECT_EQ(NAMES("b c"), "b c.dat");
}

TEST_F(OPENING_SEVERAL, QUOTES_KEEP_ONE_NAME_TOGETHER_AND_ITS_STARS) {
  EXPECT_EQ(NAMES("\"b c.dat\""), "b c.dat");
  EXPECT_EQ(NAMES("\"a*\""), "a2.dat a10.dat");
  EXPECT_EQ(NAMES("'a*'"), "a2.dat a10.dat");
  EXPECT_EQ(NAMES("\"b c.dat\" a2.dat"), "b c.dat a2.dat");
  EXPECT_EQ(NAMES("\"d e.dat\"", "\n"), "");
  EXPECT_NE(said.find("*****File d e.dat does not exist, but is required to pre-exist\n"),
            std::string::npos)
      << said;
}

TEST_F(OPENING_SEVERAL, AN_OPEN_FILE_STAYS_OPEN_UNLESS_IT_MAY_BE_CLOSED) {
  ASSERT_TRUE(OPENED("a2.dat", "OLD READ"));
  std::vector<NAMED_FILE> files;
  SAID("N\n", [&] { files = OPEN_FILES(file, "OLD READ"); });
  EXPECT_TRUE(files.empty());
  EXPECT_TRUE(file.OPEN);
  EXPECT_EQ(file.NAME, "a2.dat");
}

TEST_F(OPENING_SEVERAL, WORDS_BEHIND_A_MACRO_THAT_IS_NOT_THERE_ARE_NO_ARGUMENTS) {
  EXPECT_FALSE(OPENED("none 1 2", "OLD READ MACRO", "\n"));
  EXPECT_NE(said.find("*****File none 1 2.dat does not exist"), std::string::npos) << said;
  EXPECT_TRUE(CONSOLE.MACRO_ARGUMENTS.empty());
  fs::create_directory("v1.2");
  EXPECT_FALSE(OPENED("v1.2/none", "OLD", "\n"));
  EXPECT_NE(said.find("*****File v1.2/none does not exist"), std::string::npos) << said;
}

TEST_F(OPENING_SEVERAL, A_NEW_FILE_NEEDS_A_NAME_THAT_FITS) {
  std::string name;
  const auto ask = [&](const std::string& line) {
    PEND(line);
    return SAID("c.dat\n", [&] { name = NAME_OF_NEW_FILE(file); });
  };
  EXPECT_NE(ask("\"\"").find("*****Failed to read file name, try again\n"), std::string::npos);
  EXPECT_EQ(name, "c.dat");
  const std::string told = ask(std::string(252, 'n'));  // 256 characters with ".dat"
  EXPECT_NE(told.find("*****The name of the file is too long: choose another name\n"),
            std::string::npos)
      << told;
  EXPECT_EQ(name, "c.dat");
}

}  // namespace
