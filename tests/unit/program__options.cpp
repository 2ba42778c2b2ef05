// Runs the program with options: what it answers, with which status, and that nothing of the
// console starts. The manual and the manual page say the same.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>  // for getpid

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "places.h"

namespace {

namespace fs = std::filesystem;

struct RUN_RESULT {
  int STATUS = -1;
  std::string SAID;
  std::string ERRORS;
};

std::string TEXT_OF(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool CONTAINS(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

// A folder of its own for the program, with its settings below it.
class OPTIONS : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    folder = fs::temp_directory_path() /
             ("gemmara_options_" + std::to_string(::getpid()) + "_" + test.name());
    fs::remove_all(folder);
    fs::create_directories(folder / "local");
    fs::create_directories(folder / "work");
    ::setenv("LOCALAPPDATA", (folder / "local").c_str(), 1);
  }
  void TearDown() override { fs::remove_all(folder); }

  // Runs the program in the work folder; arguments as the shell takes them.
  RUN_RESULT RUN(const std::string& arguments) const {
    const std::string command = "cd '" + (folder / "work").string() + "' && { '" +
                                PLACES::PROGRAM() + "' " + arguments + "\n} < /dev/null > '" +
                                (folder / "said").string() + "' 2> '" +
                                (folder / "errors").string() + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            TEXT_OF(folder / "said"), TEXT_OF(folder / "errors")};
  }

  // No settings file, no macro, no log: the console has not started.
  bool NOTHING_WAS_MADE() const {
    return fs::is_empty(folder / "local") && fs::is_empty(folder / "work");
  }

  fs::path folder;
};

TEST_F(OPTIONS, HELP_TELLS_HOW_THE_PROGRAM_IS_CALLED) {
  const RUN_RESULT run = RUN("--help");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(run.ERRORS, "");
  EXPECT_TRUE(run.SAID.starts_with("Usage: gemmara [MACRO] [FILE.cif | FILE.out]...\n"))
      << run.SAID;
  for (const char* part : {"--help", "--version", "MACRO", ".mcr", "Exit status: 0 ", "64 ",
                           "LOCALAPPDATA", "XDG_CONFIG_HOME", "gemmara.ini"})
    EXPECT_TRUE(CONTAINS(run.SAID, part)) << part;
  EXPECT_TRUE(NOTHING_WAS_MADE());
}

TEST_F(OPTIONS, LINES_OF_HELP_FIT_A_NARROW_TERMINAL) {
  const std::string said = RUN("--help").SAID;
  ASSERT_TRUE(said.ends_with('\n'));
  for (std::size_t start = 0; start < said.size();) {
    const std::size_t end = said.find('\n', start);
    EXPECT_LE(end - start, 80u) << said.substr(start, end - start);
    start = end + 1;
  }
}

TEST_F(OPTIONS, VERSION_IS_THAT_OF_THE_HEADER_AND_ITS_DATE) {
  const RUN_RESULT run = RUN("--version");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(run.SAID, "Gemmara 6.1, 1-FEBRUARY-2025\n");
  EXPECT_EQ(run.ERRORS, "");
  EXPECT_TRUE(NOTHING_WAS_MADE());
}

TEST_F(OPTIONS, AN_UNKNOWN_OPTION_IS_ONE_LINE_AND_STATUS_64) {
  for (const std::string option : {"--bogus", "--", "--Help", "--help=all", "--version.mcr"}) {
    const RUN_RESULT run = RUN(option);
    EXPECT_EQ(run.STATUS, 64) << option;
    EXPECT_EQ(run.SAID, "") << option;
    EXPECT_EQ(run.ERRORS, "gemmara: unknown option " + option + ", see gemmara --help\n");
  }
  EXPECT_TRUE(NOTHING_WAS_MADE());
}

TEST_F(OPTIONS, AN_OPTION_COUNTS_WHEREVER_IT_STANDS_AND_THE_FIRST_ONE_DOES) {
  std::ofstream(folder / "work" / "run.mcr") << "EXIT\n";
  EXPECT_EQ(RUN("run --version").SAID, "Gemmara 6.1, 1-FEBRUARY-2025\n");
  EXPECT_EQ(RUN("--version --help").SAID, "Gemmara 6.1, 1-FEBRUARY-2025\n");
  EXPECT_EQ(RUN("--bogus --help").STATUS, 64);
  EXPECT_TRUE(fs::is_empty(folder / "local"));
}

TEST_F(OPTIONS, ANYTHING_ELSE_IS_A_MACRO) {
  std::ofstream(folder / "work" / "run.mcr") << "EXIT\n";
  std::ofstream(folder / "work" / "-v.mcr") << "EXIT\n";
  std::ofstream(folder / "work" / "--version.mcr") << "EXIT\n";
  for (const char* macro : {"run", "run.mcr", "-v", "./--version.mcr"}) {
    const RUN_RESULT run = RUN(macro);
    EXPECT_EQ(run.STATUS, 0) << macro;
    EXPECT_TRUE(CONTAINS(run.SAID, "\nG_MARA-6.1>EXIT\n")) << macro;
  }
  // A macro that is not there leaves the program to the user, whose input ends at once.
  EXPECT_EQ(RUN("none").STATUS, 2);
}

// The files are read without a question and in the order given, before the macro starts.
TEST_F(OPTIONS, CIFS_ARE_READ_BEFORE_THE_MACRO) {
  const fs::path series = fs::path(PLACES::SOURCE()) / "tests/transcripts/data/series";
  for (const char* name : {"P2.cif", "P0.5.CIF"}) {
    std::string there = name;
    for (char& c : there)
      if (c >= 'C' && c <= 'I') c = static_cast<char>(c + ('a' - 'A'));
    fs::copy(series / there, folder / "work" / name);
  }
  std::ofstream(folder / "work/end.mcr") << "EXIT\n";
  const RUN_RESULT run = RUN("P2.cif end.mcr P0.5.CIF");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_TRUE(CONTAINS(run.SAID,
                       "\nNamed P2.cif\nNamed P0.5.CIF\n\n"
                       "The following  2 crystal structures were read from the file:\n\n"
                       "       BLOCKNAME              T       P\n"
                       "  1: P2                    298.0   0.000\n"
                       "  2: P0.5                  298.0   0.000\n\n"
                       "The loaded phases are now:\n"))
      << run.SAID;
  EXPECT_FALSE(CONTAINS(run.SAID, "Do you want to add")) << run.SAID;
  EXPECT_TRUE(CONTAINS(run.SAID, "\nG_MARA-6.1>EXIT\n")) << run.SAID;
}

TEST_F(OPTIONS, A_SECOND_MACRO_IS_TOLD) {
  std::ofstream(folder / "work/end.mcr") << "EXIT\n";
  const RUN_RESULT run = RUN("end more.mcr");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_TRUE(CONTAINS(run.SAID,
                       "\n*****WARNING: more.mcr is not read: it is no CIF or output, and there is "
                       "a macro already\n"))
      << run.SAID;
}

// Names with blanks, patterns that no shell has looked at, and files that are not there.
TEST_F(OPTIONS, FILES_THAT_CANNOT_BE_READ_ARE_TOLD_AND_LEFT_OUT) {
  const fs::path data = fs::path(PLACES::SOURCE()) / "tests/transcripts/data";
  fs::copy(data / "series/P2.cif", folder / "work/two GPa.cif");
  fs::copy(data / "series/P2.cif", folder / "work/P2.cif");
  fs::copy(data / "periclase.out", folder / "work/periclase.out");
  std::ofstream(folder / "work/end.mcr") << "EXIT\n";
  const RUN_RESULT run = RUN("'two GPa.cif' none.cif periclase.out 'Q*.cif' 'P*.cif' end");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_TRUE(CONTAINS(run.SAID,
                       "\nNamed two GPa.cif\nNamed none.cif\n*****File none.cif does not exist, it "
                       "is left out\nNamed periclase.out\n*****The file does not tell the number "
                       "of its space group, it is left out: READ Crystal17 with this file alone "
                       "asks for it\n*****No file fits Q*.cif, it is left out\nNamed P2.cif\n"))
      << run.SAID;
  EXPECT_TRUE(CONTAINS(run.SAID, "following  2 crystal structures")) << run.SAID;
}

TEST_F(OPTIONS, AN_OUTPUT_ALONE_ASKS_FOR_ITS_GROUP) {
  const fs::path data = fs::path(PLACES::SOURCE()) / "tests/transcripts/data";
  fs::copy(data / "periclase.out", folder / "work/periclase.out");
  std::ofstream(folder / "work/answers") << "225\nX\n";
  const RUN_RESULT run = RUN("periclase.out < answers");
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_TRUE(CONTAINS(run.SAID, "Input the IT space group number:")) << run.SAID;
  EXPECT_TRUE(CONTAINS(run.SAID, "\nThe loaded phases are now:\n")) << run.SAID;
}

TEST_F(OPTIONS, AN_ANSWER_THAT_CANNOT_BE_WRITTEN_IS_STATUS_1) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full on this system";
  for (const char* option : {"--help", "--version"}) {
    const RUN_RESULT run = RUN(std::string(option) + " > /dev/full");
    EXPECT_EQ(run.STATUS, 1) << option;
    EXPECT_EQ(run.ERRORS, "gemmara: standard output cannot be written\n") << option;
  }
}

TEST_F(OPTIONS, THE_MANUAL_SHOWS_THE_HELP) {
  const std::string manual = TEXT_OF(fs::path(PLACES::SOURCE()) / "docs/manual.md");
  EXPECT_TRUE(CONTAINS(manual, "```help\n" + RUN("--help").SAID + "```\n"));
}

TEST_F(OPTIONS, THE_MANUAL_PAGE_AND_THE_PACKAGES_HAVE_THE_VERSION) {
  const fs::path build = fs::path(PLACES::PROGRAM()).parent_path();
  const std::string page = TEXT_OF(build / "gemmara.1");
  EXPECT_TRUE(page.starts_with(".TH GEMMARA 1 \"1 February 2025\" \"Gemmara 6.1\"")) << page;
  const std::string project = TEXT_OF(fs::path(PLACES::SOURCE()) / "CMakeLists.txt");
  EXPECT_TRUE(CONTAINS(project, "project(gemmara VERSION 6.1 "));
}

TEST_F(OPTIONS, THE_MANUAL_PAGE_TELLS_EVERY_OPTION_STATUS_AND_VARIABLE) {
  const std::string page = TEXT_OF(fs::path(PLACES::SOURCE()) / "packaging/gemmara.1");
  for (const char* part :
       {"\n.B \\-\\-help\n", "\n.B \\-\\-version\n", "\n.B 0\n", "\n.B 1\n", "\n.B 2\n",
        "\n.B 64\n", "\n.B LOCALAPPDATA\n", "XDG_CONFIG_HOME", "quorvansoftware/gemmara.ini"})
    EXPECT_TRUE(CONTAINS(page, part)) << part;
}

}  // namespace
