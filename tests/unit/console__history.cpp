// The file of the lines that were typed: where it lies, what it keeps, and how long it grows.
#include "console_code/console/history.h"

#include <algorithm>  // for count

#include "console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

class HISTORY : public CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    CONSOLE.HISTORY_FILE = (folder / "typed").string();
  }
  void TearDown() override {
    CONSOLE.HISTORY_FILE.clear();
    CONSOLE_TEST::TearDown();
  }
};

using LINES = std::vector<std::string>;

TEST_F(HISTORY, LIES_BESIDE_THE_SETTINGS_FILE) {
  SAID("", [] { INIT_CONSOLE(""); });
  EXPECT_EQ(CONSOLE.HISTORY_FILE, (folder / "local/quorvansoftware/gemmara.history").string());
  ::setenv("LOCALAPPDATA", "local", 1);  // from the working directory
  SAID("", [] { INIT_CONSOLE(""); });
  EXPECT_EQ(CONSOLE.HISTORY_FILE, (folder / "local/quorvansoftware/gemmara.history").string());
  ::unsetenv("LOCALAPPDATA");
  SAID("", [] { INIT_CONSOLE(""); });
  EXPECT_EQ(CONSOLE.HISTORY_FILE,
            (folder / "home/.config/quorvansoftware/gemmara.history").string());
  ::setenv("LOCALAPPDATA", "", 1);  // no settings, no history
  SAID("", [] { INIT_CONSOLE(""); });
  EXPECT_EQ(CONSOLE.HISTORY_FILE, "");
}

TEST_F(HISTORY, LINES_COME_BACK_IN_THEIR_ORDER) {
  EXPECT_EQ(READ_HISTORY(), LINES{});
  ADD_TO_HISTORY("HELP");
  ADD_TO_HISTORY("LIST cells");
  EXPECT_EQ(READ_HISTORY(), (LINES{"HELP", "LIST cells"}));
  EXPECT_EQ(TEXT_OF("typed"), "HELP\nLIST cells\n");
}

TEST_F(HISTORY, IS_ITS_OWNERS_ALONE) {
  ADD_TO_HISTORY("HELP");
  EXPECT_EQ(fs::status("typed").permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(HISTORY, LAST_THOUSAND_LINES_ARE_GIVEN_AND_A_LONG_FILE_IS_CUT_TO_THEM) {
  const auto numbered = [](int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i) text += "line " + std::to_string(i) + "\n";
    return text;
  };
  PUT_FILE("typed", numbered(1, 1100));
  EXPECT_EQ(READ_HISTORY().size(), 1000u);
  EXPECT_EQ(READ_HISTORY().front(), "line 101");
  EXPECT_EQ(TEXT_OF("typed"), numbered(1, 1100));  // not yet long enough

  PUT_FILE("typed", numbered(1, 1200));
  EXPECT_EQ(READ_HISTORY().size(), 1000u);
  EXPECT_EQ(TEXT_OF("typed"), numbered(1, 1200));

  PUT_FILE("typed", numbered(1, 1201));
  EXPECT_EQ(READ_HISTORY().size(), 1000u);
  EXPECT_EQ(READ_HISTORY().back(), "line 1201");
  EXPECT_EQ(TEXT_OF("typed"), numbered(202, 1201));
}

TEST_F(HISTORY, ODD_FILES_DO_NO_HARM) {
  PUT_FILE("typed", std::string("\n  \nHELP\r\n") + std::string(1, '\0') + "\n\377\376" +
                        std::string(5000, 'x'));
  EXPECT_FALSE(READ_HISTORY().empty());
  EXPECT_EQ(READ_HISTORY().front(), "HELP");
  for (const std::string& line : READ_HISTORY()) EXPECT_LE(line.size(), 255u);
}

TEST_F(HISTORY, NOTHING_IS_SAID_WHERE_IT_CANNOT_BE_KEPT) {
  for (const std::string& path : {std::string(), (folder / "home").string(),
                                  (folder / "nowhere/typed").string(), FULL_DEVICE()}) {
    CONSOLE.HISTORY_FILE = path;
    EXPECT_EQ(SAID("",
                   [] {
                     ADD_TO_HISTORY("HELP");
                     EXPECT_EQ(READ_HISTORY(), LINES{});
                   }),
              "")
        << path;
  }
}

// Each of four programs adds its lines whole.
TEST_F(HISTORY, PROGRAMS_ADD_TO_IT_AT_ONE_TIME) {
  constexpr int lines = 200;
  std::vector<pid_t> children;
  for (const char letter : {'a', 'b', 'c', 'd'}) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0; i < lines; ++i) ADD_TO_HISTORY(std::string(100, letter));
      ::_exit(0);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) ::waitpid(child, nullptr, 0);
  const LINES kept = READ_HISTORY();
  for (const char letter : {'a', 'b', 'c', 'd'})
    EXPECT_EQ(std::count(kept.begin(), kept.end(), std::string(100, letter)), lines);
  EXPECT_EQ(kept.size(), 4u * lines);
}

}  // namespace
