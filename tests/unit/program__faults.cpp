// Whole sessions under faults from outside: memory that is refused, a disk that fills, files that
// may not be written, signals. No file that was there is lost or torn, what is written is whole,
// nothing stays beside it, the message names the file, and the exit status tells the end.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>  // for atoi
#include <map>
#include <random>
#include <regex>

#include "places.h"
#include "program__console.h"
#include "sanitized.h"

using namespace PROGRAM_TESTS;

namespace {

constexpr int no_memory = 71;  // exit status
constexpr int end_of_input = 2;
constexpr int killed = 128;  // and the number of the signal

const std::string old_cif = "data_mine\n_cell_length_a 5.0\n";
const std::string old_dat = "mine\n";
const std::string old_csv = "mine,1\n";
// Files beside the CIF and the data of EXPORT, all of them sheets or what GRAPH writes.
constexpr std::array<const char*, 5> sheets_and_graphs{"old.csv", "fit.csv", "graph.csv",
                                                       "graph.gp", "graph.svg"};
const std::string picture = "<svg/>\n";

std::string FROM_ENVIRONMENT(const char* name) {
  const char* const text = std::getenv(name);
  return text != nullptr ? text : "";
}

// Runs by hand may be many: tests/faults/run.sh.
long FROM_ENVIRONMENT(const char* name, long usual) {
  const std::string text = FROM_ENVIRONMENT(name);
  return text.empty() ? usual : std::strtol(text.c_str(), nullptr, 10);
}

class FAULTS : public PROGRAM {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "the sanitizer's own library must come first";
    PROGRAM::SetUp();
    fs::create_directory_symlink(fs::path(PLACES::SOURCE()) / "examples/hematite-pressure",
                                 work / "data");
    PUT_FILE(folder / "input", TEXT_OF(fs::path(PLACES::SOURCE()) / "tests/faults/session.in"));
    usual_path = FROM_ENVIRONMENT("PATH");
    ::setenv("PATH", (folder.string() + "/bin:" + usual_path).c_str(), 1);
    PUT_STAND_IN("cat > /dev/null; echo '<svg/>'");
    START_ANEW();
    FAULTY("");  // the settings are there from here on
    START_ANEW();
    undisturbed = FAULTY("FAULT_COUNTS='" + (folder / "counts").string() + "'");
    std::istringstream(TEXT_OF(folder / "counts")) >> allocations >> calls;
    complete_cif = TEXT_OF(work / "old.cif");
    complete_dat = TEXT_OF(work / "old.dat");
    for (const char* name : sheets_and_graphs) complete[name] = TEXT_OF(work / name);
    random.seed(static_cast<unsigned>(FROM_ENVIRONMENT("FAULT_SEED", 20)));
  }

  void TearDown() override {
    if (!usual_path.empty()) ::setenv("PATH", usual_path.c_str(), 1);
    PROGRAM::TearDown();
  }

  // A program that is found in place of gnuplot.
  void PUT_STAND_IN(const std::string& text) const {
    fs::create_directories(folder / "bin");
    PUT_FILE(folder / "bin/gnuplot", "#!/bin/sh\n" + text + "\n");
    fs::permissions(folder / "bin/gnuplot", fs::perms::owner_all);
  }

  // The files as they are before the session.
  void START_ANEW() const {
    for (const char* name : {"new.cif", "run.log", "rec.mcr"}) fs::remove(work / name);
    PUT_FILE(work / "old.cif", old_cif);
    PUT_FILE(work / "old.dat", old_dat);
    for (const char* name : sheets_and_graphs) PUT_FILE(work / name, old_csv);
  }

  // Runs the session of folder/input with these settings of the library.
  RUN_RESULT FAULTY(const std::string& settings) const {
    return SHELL("timeout -s KILL 60 env LD_PRELOAD='" + PLACES::FAULTS() + "' " + settings +
                 " \"$GEMMARA\" < ../input");
  }

  long UP_TO(long most) { return std::uniform_int_distribution<long>(1, most)(random); }

  static long RUNS(long usual) { return FROM_ENVIRONMENT("FAULT_RUNS", usual); }

  std::string SETTINGS() const { return TEXT_OF(folder / "local/quorvansoftware/gemmara.ini"); }

  // Whatever happened: nothing lies about, the log and the macro end in a whole line, the settings
  // are what they were.
  void EXPECT_TIDY(const std::string& fault) const {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
      EXPECT_EQ(entry.path().string().find(".saving-"), std::string::npos)
          << entry.path() << " after " << fault;
    for (const char* name : {"run.log", "rec.mcr"}) {
      const std::string text = TEXT_OF(work / name);
      EXPECT_TRUE(text.empty() || text.ends_with('\n')) << name << " after " << fault;
    }
    EXPECT_TRUE(SETTINGS().starts_with("WDIR  " + work.string() + " ")) << fault;
  }

  // The files hold what they did or what the undisturbed session writes.
  void EXPECT_OLD_OR_COMPLETE(const std::string& fault) const {
    const std::string cif = TEXT_OF(work / "old.cif");
    EXPECT_TRUE(cif == old_cif || cif == complete_cif) << fault << "\n" << cif.size();
    const std::string dat = TEXT_OF(work / "old.dat");
    EXPECT_TRUE(dat == old_dat || dat == complete_dat) << fault << "\n" << dat;
    for (const char* name : sheets_and_graphs) {
      const std::string text = TEXT_OF(work / name);
      EXPECT_TRUE(text == old_csv || text == complete.at(name)) << fault << name << "\n" << text;
    }
    const std::string made = TEXT_OF(work / "new.cif");
    EXPECT_TRUE(!fs::exists(work / "new.cif") || old_cif + made == complete_cif) << fault;
  }

  // What was loaded may be less than usual; it is written whole all the same. It is told, unless no
  // memory was left for the telling, of which the status tells.
  void EXPECT_WHOLE_BLOCKS(const RUN_RESULT& run, const std::string& fault) const {
    const std::string& said = run.SAID;
    const std::string cif = TEXT_OF(work / "old.cif");
    ASSERT_TRUE(cif.starts_with(old_cif)) << fault;
    const std::size_t blocks = COUNT_OF(cif, "\ndata_");
    EXPECT_EQ(COUNT_OF(cif, "\n_atom_site_label\n") + COUNT_OF(cif, "\n    _atom_site_label\n"),
              blocks)
        << fault;
    const bool told =
        run.STATUS == no_memory || COUNT_OF(said, " structures written to file\n") > 0;
    EXPECT_TRUE(blocks == 0 || told) << fault << said;
    EXPECT_TRUE(TEXT_OF(work / "old.dat").starts_with(old_dat)) << fault;
    const auto expect_rows = [&](const char* name, const char* head, const std::string& told_by) {
      const std::string csv = TEXT_OF(work / name);
      const std::string rows = " " + std::to_string(LINES(csv).size() - 1) + " rows written to ";
      EXPECT_TRUE(csv == old_csv ||
                  (csv.starts_with(head) && csv.ends_with('\n') &&
                   (run.STATUS == no_memory || said.find(rows + told_by) != std::string::npos)))
          << fault << csv << said;
    };
    expect_rows("old.csv", "block,title,", "the file\n");
    expect_rows("fit.csv", "feature,n,", "the file\n");
    EXPECT_WHOLE_GRAPH(said, fault);
  }

  // Each file of the graph is the old one or the whole new one, and the picture is the last of
  // them.
  void EXPECT_WHOLE_GRAPH(const std::string& said, const std::string& fault) const {
    const std::string sheet = TEXT_OF(work / "graph.csv");
    const std::string script = TEXT_OF(work / "graph.gp");
    const std::string drawn = TEXT_OF(work / "graph.svg");
    EXPECT_TRUE(sheet == old_csv || (sheet.starts_with("block,title,") && sheet.ends_with('\n')))
        << fault << sheet;
    EXPECT_TRUE(script == old_csv || sheet != old_csv) << fault;
    EXPECT_TRUE(script == old_csv || script.find("\nplot 'graph.csv'") != std::string::npos)
        << fault << script;
    EXPECT_TRUE(script == old_csv || script.ends_with("\n")) << fault << script;
    EXPECT_TRUE(drawn == old_csv || (drawn == picture && script != old_csv)) << fault << drawn;
    EXPECT_TRUE(drawn == picture || COUNT_OF(said, "The graph is drawn in") == 0) << fault << said;
  }

  RUN_RESULT undisturbed;
  long allocations = 0;
  long calls = 0;
  std::string complete_cif;
  std::string complete_dat;
  std::map<std::string, std::string> complete;  // of sheets_and_graphs
  std::string usual_path;
  std::mt19937 random;
};

TEST_F(FAULTS, THE_SESSION_WRITES_ALL_ITS_FILES) {
  EXPECT_EQ(undisturbed.STATUS, 0);
  EXPECT_EQ(COUNT_OF(undisturbed.SAID, "   17 structures written to file\n"), 2u);
  EXPECT_EQ(COUNT_OF(undisturbed.SAID, "    17 data points written to the file\n") +
                COUNT_OF(undisturbed.SAID, " 17 data points written to the file\n"),
            1u);
  EXPECT_EQ(old_cif + TEXT_OF(work / "new.cif"), complete_cif);
  EXPECT_EQ(LINES(complete["old.csv"]).size(), 19u) << "a head and 18 blocks";
  EXPECT_EQ(LINES(complete["graph.csv"]).size(), 18u) << "a head and 17 used blocks";
  EXPECT_TRUE(complete["graph.gp"].find("plot 'graph.csv'") != std::string::npos);
  EXPECT_EQ(complete["graph.svg"], picture);
  EXPECT_EQ(LINES(complete["fit.csv"]).size(), 4u) << "a head, and a, c, V of a hexagonal cell";
  EXPECT_GT(allocations, 10000);
  EXPECT_GT(calls, 300);
  EXPECT_TIDY("nothing");
}

// ---- memory ----

TEST_F(FAULTS, A_REFUSED_ALLOCATION_ENDS_A_COMMAND_AT_MOST) {
  const std::regex told(
      "not enough memory|allocating arrays|Nothing was written|cannot be written|stopped");
  for (long i = 0; i < RUNS(50); ++i) {
    const std::string fault = "FAULT_MEMORY=" + std::to_string(UP_TO(allocations));
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    EXPECT_TRUE(run.STATUS == 0 || run.STATUS == end_of_input || run.STATUS == no_memory)
        << fault << " " << run.STATUS << run.ERRORS;
    EXPECT_EQ(run.STATUS == no_memory,
              run.ERRORS == "gemmara: there is not enough memory to go on\n")
        << fault << run.ERRORS;
    const bool otherwise = TIMELESS(run.SAID) != TIMELESS(undisturbed.SAID);
    EXPECT_TRUE(run.STATUS != 0 || !otherwise || std::regex_search(run.SAID, told))
        << fault << run.SAID;
    EXPECT_TIDY(fault);
    EXPECT_WHOLE_BLOCKS(run, fault);
  }
}

TEST_F(FAULTS, WITHOUT_MEMORY_FROM_A_MOMENT_ON_IT_ENDS_AND_SAYS_SO) {
  for (long i = 0; i < RUNS(10); ++i) {
    const long every = std::array{1, 2, 7, 100}[static_cast<std::size_t>(UP_TO(4) - 1)];
    const std::string fault = "FAULT_MEMORY=" + std::to_string(UP_TO(allocations)) +
                              " FAULT_MEMORY_EVERY=" + std::to_string(every);
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    EXPECT_TRUE(run.STATUS == 0 || run.STATUS == end_of_input || run.STATUS == no_memory)
        << fault << " " << run.STATUS << run.ERRORS;
    EXPECT_TIDY(fault);
    EXPECT_WHOLE_BLOCKS(run, fault);
  }
}

// ---- the disk ----

TEST_F(FAULTS, A_DISK_THAT_FILLS_LEAVES_OLD_OR_COMPLETE_FILES) {
  const long all = static_cast<long>(3 * complete_cif.size());
  for (long i = 0; i < RUNS(15); ++i) {
    const std::string fault = "FAULT_DISK=" + std::to_string(UP_TO(all) - 1);
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    EXPECT_EQ(run.STATUS, 0) << fault;
    EXPECT_TIDY(fault);
    EXPECT_OLD_OR_COMPLETE(fault);
    for (const char* name : {"old.cif", "new.cif"}) {
      const std::string message =
          std::string("*****Nothing was written to ") + name + ": No space left on device\n";
      const std::string text = TEXT_OF(work / name);
      EXPECT_EQ(text == old_cif || text.empty(), COUNT_OF(run.SAID, message) == 1)
          << fault << run.SAID;
    }
  }
}

// A limit on the size of files, as of a quota, ends the writing and not the program. The shell
// counts in units of 512 bytes.
TEST_F(FAULTS, A_LIMIT_OF_SIZE_LEAVES_THE_OLD_FILE) {
  START_ANEW();
  ASSERT_GT(complete_cif.size(), 51200u);
  const RUN_RESULT run = SHELL("{ ulimit -f 100; \"$GEMMARA\" < ../input; } | cat");
  EXPECT_EQ(TEXT_OF(work / "old.cif"), old_cif);
  EXPECT_FALSE(fs::exists(work / "new.cif"));
  EXPECT_EQ(TEXT_OF(work / "old.dat"), complete_dat) << "it is small";
  for (const char* name : sheets_and_graphs)
    EXPECT_EQ(TEXT_OF(work / name), complete[name]) << "it is small";
  EXPECT_EQ(COUNT_OF(run.SAID, "*****Nothing was written to old.cif: File too large\n"), 1u)
      << run.SAID;
  EXPECT_TRUE(run.SAID.ends_with("***** Macro recording stopped\n\nG_MARA-6.1>")) << run.SAID;
  EXPECT_TIDY("ulimit -f 100");
}

// Where no file can stand beside it the old one is written in place, and brought back.
TEST_F(FAULTS, A_FILE_THAT_IS_WRITTEN_IN_PLACE_IS_BROUGHT_BACK) {
  START_ANEW();
  EXPECT_EQ(FAULTY("FAULT_FIXED=old.").STATUS, 0);
  EXPECT_EQ(TEXT_OF(work / "old.cif"), complete_cif);
  EXPECT_EQ(TEXT_OF(work / "old.dat"), complete_dat);
  EXPECT_TIDY("a file that stays in its place");
  PUT_FILE(folder / "input", "READ cif data/hematite.cif\nY\nWRITE cif old.cif\nY\nEXIT\n");
  START_ANEW();
  EXPECT_EQ(FAULTY("FAULT_DENIED=.saving-").STATUS, 0);
  const std::string whole = TEXT_OF(work / "old.cif");
  EXPECT_EQ(COUNT_OF(whole, "\ndata_Hematite_"), 6u);
  for (const char* fault :
       {"FAULT_FIXED=old. FAULT_DISK=15000", "FAULT_DENIED=.saving- FAULT_DISK=2000"}) {
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    EXPECT_EQ(COUNT_OF(run.SAID, "*****Nothing was written to old.cif: No space left on device\n"),
              1u)
        << run.SAID;
    EXPECT_EQ(TEXT_OF(work / "old.cif"), old_cif) << fault;
    EXPECT_TIDY(fault);
  }
  EXPECT_GT(whole.size(), 7500u);
}

// What the disk did not take when asked to must not take the place of what it has.
TEST_F(FAULTS, A_FILE_THAT_THE_DISK_DOES_NOT_TAKE_REPLACES_NOTHING) {
  START_ANEW();
  const RUN_RESULT run = FAULTY("FAULT_UNSAFE=1");
  EXPECT_EQ(COUNT_OF(run.SAID, "*****Nothing was written to old.cif: Input/output error\n"), 1u)
      << run.SAID;
  EXPECT_EQ(TEXT_OF(work / "old.cif"), old_cif);
  EXPECT_TIDY("FAULT_UNSAFE=1");
}

// ---- graphs ----

// Faults between the question for the files of a graph and the answer: allocations and bytes of
// GRAPH alone, so that each of them is reached.
class FAULTS_OF_GRAPHS : public FAULTS {
 protected:
  void SetUp() override {
    FAULTS::SetUp();
    if (IsSkipped()) return;
    const std::string read = "READ cif data/hematite.cif\nY\nCALC poly\n\n0\n";
    before = COUNTED(read + "EXIT\n");
    behind = COUNTED(read + "GRAPH bond Fe1 P graph.svg\nY\nEXIT\n");
    for (const char* name : sheets_and_graphs) complete[name] = TEXT_OF(work / name);
  }

  // The allocations of a session, which is then the one that is played.
  long COUNTED(const std::string& lines) {
    PUT_FILE(folder / "input", lines);
    START_ANEW();
    said_undisturbed = FAULTY("FAULT_COUNTS='" + (folder / "counts").string() + "'").SAID;
    long count = 0;
    std::istringstream(TEXT_OF(folder / "counts")) >> count;
    return count;
  }

  long before = 0;
  long behind = 0;
  std::string said_undisturbed;
};

TEST_F(FAULTS_OF_GRAPHS, REFUSED_MEMORY_LEAVES_OLD_OR_WHOLE_FILES) {
  ASSERT_EQ(complete["graph.svg"], picture);
  ASSERT_GT(behind, before + 100);
  const std::regex told("not enough memory|cannot be written|could not be|Nothing was written");
  for (long i = 0; i < RUNS(50); ++i) {
    const std::string fault = "FAULT_MEMORY=" + std::to_string(before + UP_TO(behind - before));
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    EXPECT_TRUE(run.STATUS == 0 || run.STATUS == end_of_input || run.STATUS == no_memory)
        << fault << " " << run.STATUS << run.ERRORS;
    EXPECT_TRUE(run.STATUS != 0 || TIMELESS(run.SAID) == TIMELESS(said_undisturbed) ||
                std::regex_search(run.SAID, told))
        << fault << run.SAID;
    EXPECT_TIDY(fault);
    EXPECT_WHOLE_GRAPH(run.SAID, fault);
  }
}

TEST_F(FAULTS_OF_GRAPHS, A_DISK_THAT_FILLS_IS_TOLD_BY_THE_FILE_THAT_IT_LACKS) {
  const std::size_t all = complete["graph.csv"].size() + complete["graph.gp"].size();
  for (long i = 0; i < RUNS(20); ++i) {
    const long bytes = UP_TO(static_cast<long>(all + picture.size()) + 20) - 1;
    const std::string fault = "FAULT_DISK=" + std::to_string(bytes);
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    EXPECT_EQ(run.STATUS, 0) << fault;
    EXPECT_TIDY(fault);
    EXPECT_WHOLE_GRAPH(run.SAID, fault);
    for (const char* name : {"graph.csv", "graph.gp", "graph.svg"}) {
      const std::string text = TEXT_OF(work / name);
      const std::string lacks = std::string("*****The file ") + name + " could not be written";
      EXPECT_TRUE(text == old_csv || text == complete[name]) << fault << name;
      EXPECT_LE(COUNT_OF(run.SAID, lacks), text == old_csv ? 1u : 0u) << fault << run.SAID;
    }
    EXPECT_EQ(TEXT_OF(work / "graph.svg") == old_csv,
              COUNT_OF(run.SAID, " could not be written: No space left on device\n") == 1)
        << fault << run.SAID;
  }
}

// A picture that stays away leaves the old one; the other two files are there.
TEST_F(FAULTS_OF_GRAPHS, A_PROGRAM_THAT_FAILS_LEAVES_THE_OLD_PICTURE) {
  for (const char* const text : {"echo half; exit 3", "kill -9 $$", "exit 0"}) {
    PUT_STAND_IN(text);
    START_ANEW();
    const RUN_RESULT run = FAULTY("");
    EXPECT_EQ(run.STATUS, 0) << text;
    EXPECT_EQ(COUNT_OF(run.SAID, "*****gnuplot: it drew nothing\n"), 1u) << run.SAID;
    EXPECT_EQ(TEXT_OF(work / "graph.svg"), old_csv) << text;
    EXPECT_EQ(TEXT_OF(work / "graph.csv"), complete["graph.csv"]) << text;
    EXPECT_TIDY(text);
  }
}

// While the picture is drawn, Ctrl-C ends the drawing, and another signal ends us.
TEST_F(FAULTS_OF_GRAPHS, A_SIGNAL_WHILE_IT_IS_DRAWN_LEAVES_THE_OLD_PICTURE) {
  PUT_STAND_IN("echo $$ > drawing; exec sleep 20");
  for (const int signal : {SIGTERM, SIGINT}) {
    START_ANEW();
    fs::remove(work / "drawing");
    const auto begun = std::chrono::steady_clock::now();
    const RUN_RESULT run =
        SHELL("\"$GEMMARA\" < ../input & while [ ! -s drawing ]; do sleep 0.01; done; kill -" +
              std::to_string(signal) + " $!; wait $!");
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));
    EXPECT_EQ(run.STATUS, signal == SIGINT ? 0 : killed + signal);
    EXPECT_EQ(COUNT_OF(run.SAID, "*****gnuplot was stopped\n"), signal == SIGINT ? 1u : 0u)
        << run.SAID;
    EXPECT_EQ(TEXT_OF(work / "graph.svg"), old_csv);
    EXPECT_TIDY("signal " + std::to_string(signal));
  }
}

// When memory is refused for what the program has drawn so far, nothing of it is left running.
TEST_F(FAULTS_OF_GRAPHS, REFUSED_MEMORY_ENDS_THE_PROGRAM_THAT_DRAWS) {
  PUT_STAND_IN("cat > /dev/null; echo $$ > drawing; : > refused; printf '%0100d' 0; exec sleep 20");
  START_ANEW();
  const auto begun = std::chrono::steady_clock::now();
  const RUN_RESULT run = FAULTY("FAULT_MEMORY_AT=refused");
  EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(10));
  EXPECT_EQ(run.STATUS, 0);
  EXPECT_EQ(COUNT_OF(run.SAID, "not enough memory"), 1u) << run.SAID;
  const int process = std::atoi(TEXT_OF(work / "drawing").c_str());
  ASSERT_GT(process, 1);
  EXPECT_EQ(::kill(process, 0), -1) << "it draws on";
  EXPECT_FALSE(fs::exists(work / "refused"));
  EXPECT_EQ(TEXT_OF(work / "graph.svg"), old_csv);
  EXPECT_EQ(TEXT_OF(work / "graph.csv"), complete["graph.csv"]);
  EXPECT_TIDY("no memory while it is drawn");
}

// ---- what the name leads to ----

// Another user's file, a folder and a full device: told by name, and another name is asked for or
// nothing is written. The blank line gives up.
TEST_F(FAULTS, TARGETS_THAT_CANNOT_BE_WRITTEN_ARE_NAMED) {
  START_ANEW();
  fs::create_directory(work / "folder.cif");
  fs::create_symlink("/dev/full", work / "full.cif");
  PUT_FILE(folder / "input",
           "READ cif data/hematite.cif\nY\nWRITE cif old.cif\n\n0\nWRITE cif folder.cif\n\n0\n"
           "WRITE cif full.cif\nY\nEXIT\n");
  const RUN_RESULT run = FAULTY("FAULT_DENIED=old.cif");
  EXPECT_EQ(run.STATUS, 0);
  for (const char* name : {"old.cif", "folder.cif"})
    EXPECT_EQ(COUNT_OF(run.SAID, "Error trying to open file cif file\nNamed " + std::string(name) +
                                     " try again\n"),
              1u)
        << run.SAID;
  EXPECT_EQ(COUNT_OF(run.SAID, "*****Nothing was written to full.cif: No space left on device\n"),
            1u)
      << run.SAID;
  EXPECT_EQ(TEXT_OF(work / "old.cif"), old_cif);
  EXPECT_TRUE(fs::is_empty(work / "folder.cif"));
  EXPECT_TRUE(fs::is_symlink(work / "full.cif"));
}

// The same of sheets, of graphs, whose files are three, and of a sheet of a fit.
TEST_F(FAULTS, TARGETS_OF_SHEETS_AND_GRAPHS_ARE_NAMED) {
  START_ANEW();
  for (const char* const name : {"folder.csv", "folder.svg", "script.gp"})
    fs::create_directory(work / name);
  for (const char* const name : {"full.csv", "fullfit.tsv", "picture.svg"})
    fs::create_symlink("/dev/full", work / name);
  for (const char* const name : {"null.csv", "gone.svg"})
    fs::create_symlink("/dev/null", work / name);
  PUT_FILE(work / "theirs.csv", "theirs\n");
  PUT_FILE(folder / "input",
           "READ cif data/hematite.cif\nY\nCALC poly\n\n0\nFIT cells P\n"
           "CSV cells folder.csv\n\nCSV cells full.csv\nY\nCSV cells null.csv\nY\n"
           "CSV cells theirs.csv\nY\n\nCSV fit folder.csv\n\nCSV fit fullfit.tsv\nY\n"
           "GRAPH cells P folder.svg\n\nGRAPH cells P full.svg\nY\nGRAPH cells P script.svg\nY\n"
           "GRAPH cells P picture.svg\nY\nGRAPH cells P gone.svg\nY\n"
           "GRAPH cells P theirs.svg\nY\nEXIT\n");
  const RUN_RESULT run = FAULTY("FAULT_DENIED=theirs");
  EXPECT_EQ(run.STATUS, 0);
  const auto expect = [&](const std::string& line, std::size_t count) {
    EXPECT_EQ(COUNT_OF(run.SAID, line), count) << line << run.SAID;
  };
  expect("*****The file folder.csv is a folder: choose another name\n", 2);
  expect("*****Nothing was written to full.csv: No space left on device\n", 1);
  expect("*****The file theirs.csv cannot be written (Permission denied): choose another name\n",
         1);
  expect("*****Nothing was written to fullfit.tsv: No space left on device\n", 1);
  expect("     6 rows written to the file\n", 1);  // to nowhere
  expect("*****The file folder.svg is a folder: choose another name\n", 1);
  expect("*****The file full.csv could not be written: No space left on device\n", 1);
  expect("*****The file script.gp could not be written: Is a directory\n", 1);
  expect("*****The file picture.svg could not be written: No space left on device\n", 1);
  expect("*****The file theirs.csv could not be written: Permission denied\n", 1);
  expect("     The graph is drawn in gone.svg\n", 1);
  for (const char* const name : {"full.csv", "fullfit.tsv", "null.csv", "picture.svg", "gone.svg"})
    EXPECT_TRUE(fs::is_symlink(work / name)) << name;
  for (const char* const name : {"folder.csv", "folder.svg", "script.gp"})
    EXPECT_TRUE(fs::is_empty(work / name)) << name;
  EXPECT_EQ(TEXT_OF(work / "theirs.csv"), "theirs\n");
  EXPECT_TIDY("targets that cannot be written");
}

// gnuplot gets the whole script and is heard to its end, though its pipes are full or empty, or the
// call is interrupted, when they were said to be ready.
TEST_F(FAULTS, PIPES_THAT_ARE_NOT_READY_ARE_TRIED_AGAIN) {
  PUT_STAND_IN("cat > seen.gp; echo 'line 0: warning' >&2; echo '<svg/>'");
  START_ANEW();
  const RUN_RESULT run = FAULTY("FAULT_PIPES=1");
  EXPECT_EQ(run.STATUS, 0);
  for (const char* const name : sheets_and_graphs)
    EXPECT_EQ(TEXT_OF(work / name), complete[name]) << name;
  std::string to_output = complete["graph.gp"];
  const std::string output_line = "set output 'graph.svg'\n";
  to_output.erase(to_output.find(output_line), output_line.size());
  EXPECT_EQ(TEXT_OF(work / "seen.gp"), to_output);
}

// A pipe that nobody reads takes nothing; one that is read gets all, and stays a pipe.
TEST_F(FAULTS, A_PIPE_AND_STANDARD_OUTPUT_ARE_WRITTEN_THROUGH) {
  START_ANEW();
  const std::string pipe = (work / "pipe.cif").string();
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  fs::create_symlink("/dev/stdout", work / "out.cif");
  PUT_FILE(folder / "input", "READ cif data/hematite.cif\nY\nWRITE cif pipe.cif\n\n0\nEXIT\n");
  RUN_RESULT run = SHELL("timeout 30 \"$GEMMARA\" < ../input");
  EXPECT_EQ(COUNT_OF(run.SAID, "Error trying to open file cif file\nNamed pipe.cif try again\n"),
            1u)
      << run.SAID;

  PUT_FILE(folder / "input",
           "READ cif data/hematite.cif\nY\nWRITE cif pipe.cif\nY\nWRITE cif out.cif\nY\nEXIT\n");
  const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  run = SHELL("timeout 30 \"$GEMMARA\" < ../input | cat");
  EXPECT_EQ(COUNT_OF(run.SAID, "    6 structures written to file\n"), 2u) << run.SAID;
  std::string taken(1U << 16, ' ');
  taken.resize(
      static_cast<std::size_t>(std::max<ssize_t>(::read(reader, taken.data(), taken.size()), 0)));
  ::close(reader);
  EXPECT_EQ(COUNT_OF(taken, "\ndata_Hematite_"), 6u);
  EXPECT_NE(run.SAID.find(taken), std::string::npos) << "the same between the lines of the console";
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_TRUE(fs::is_symlink(work / "out.cif"));
}

// ---- signals ----

TEST_F(FAULTS, A_SIGNAL_AT_ANY_CALL_LEAVES_OLD_OR_COMPLETE_FILES) {
  constexpr std::array ending{SIGTERM, SIGHUP, SIGPIPE, SIGINT};
  for (long i = 0; i < RUNS(30); ++i) {
    const int signal = ending[static_cast<std::size_t>(UP_TO(4) - 1)];
    const std::string fault =
        "FAULT_SIGNAL=" + std::to_string(signal) + " FAULT_CALL=" + std::to_string(UP_TO(calls));
    START_ANEW();
    const RUN_RESULT run = FAULTY(fault);
    // Ctrl-C stops a calculation or a reading alone, and a pipe without a reader a file alone.
    const bool goes_on = signal == SIGINT || signal == SIGPIPE;
    EXPECT_TRUE(run.STATUS == killed + signal || (goes_on && run.STATUS == 0))
        << fault << " " << run.STATUS;
    EXPECT_TIDY(fault);
    if (run.STATUS == 0 && signal == SIGINT)
      EXPECT_WHOLE_BLOCKS(run, fault);
    else
      EXPECT_OLD_OR_COMPLETE(fault);
  }
}

// The same of files that are written in place: they have another name each, or cannot be replaced,
// or no file can stand beside them. All calls of a session that writes a long sheet.
TEST_F(FAULTS, A_SIGNAL_WHILE_FILES_ARE_WRITTEN_IN_PLACE_LEAVES_OLD_OR_COMPLETE_FILES) {
  std::string six;
  for (int i = 0; i < 6; ++i) six += " data/hematite.cif";
  PUT_FILE(folder / "input", "READ cif" + six +
                                 "\nY\nCALC poly\n\n0\n"
                                 "WRITE cif old.cif\nY\nY\nCSV all old.csv\nY\nEXIT\n");
  const std::string counts = "FAULT_COUNTS='" + (folder / "counts").string() + "' ";
  for (const std::string in_place : {"", "FAULT_FIXED=old. ", "FAULT_DENIED=.saving- "}) {
    const auto start = [&] {
      START_ANEW();
      for (const char* const name : {"other.cif", "other.csv"}) fs::remove(work / name);
      if (!in_place.empty()) return;
      fs::create_hard_link(work / "old.cif", work / "other.cif");
      fs::create_hard_link(work / "old.csv", work / "other.csv");
    };
    start();
    FAULTY(counts + in_place);
    const std::string whole_cif = TEXT_OF(work / "old.cif");
    const std::string whole_csv = TEXT_OF(work / "old.csv");
    ASSERT_GT(whole_cif.size(), 100000u);
    ASSERT_GT(whole_csv.size(), 100000u);
    std::istringstream(TEXT_OF(folder / "counts")) >> allocations >> calls;
    std::size_t ended = 0;
    for (long call = 1; call <= calls; ++call) {
      const std::string fault = in_place + "FAULT_SIGNAL=15 FAULT_CALL=" + std::to_string(call);
      start();
      ended += FAULTY(fault).STATUS == killed + SIGTERM ? 1U : 0U;
      const std::string cif = TEXT_OF(work / "old.cif");
      const std::string csv = TEXT_OF(work / "old.csv");
      EXPECT_TRUE(cif == old_cif || cif == whole_cif) << fault << ": " << cif.size();
      EXPECT_TRUE(csv == old_csv || csv == whole_csv) << fault << ": " << csv.size();
      EXPECT_TIDY(fault);
    }
    EXPECT_EQ(ended, static_cast<std::size_t>(calls)) << in_place;
  }
}

TEST_F(FAULTS, A_SIGNAL_AT_ANY_MOMENT_LEAVES_OLD_OR_COMPLETE_FILES) {
  for (long i = 0; i < RUNS(8); ++i) {
    const std::string milliseconds = std::to_string(1000 + UP_TO(40)).substr(1);
    START_ANEW();
    const RUN_RESULT run = SHELL("timeout -s TERM 0." + milliseconds + " \"$GEMMARA\" < ../input");
    EXPECT_TRUE(run.STATUS == 0 || run.STATUS == 124) << run.STATUS;
    EXPECT_TIDY("SIGTERM after " + milliseconds + " ms");
    EXPECT_OLD_OR_COMPLETE("SIGTERM after " + milliseconds + " ms");
  }
}

}  // namespace
