// Whole sessions under faults from outside: memory that is refused, a disk that fills, files that
// may not be written, signals. No file that was there is lost or torn, what is written is whole,
// nothing stays beside it, the message names the file, and the exit status tells the end.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
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

// Runs by hand may be many: tests/faults/run.sh.
long FROM_ENVIRONMENT(const char* name, long usual) {
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtol(text, nullptr, 10) : usual;
}

class FAULTS : public PROGRAM {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "the sanitizer's own library must come first";
    PROGRAM::SetUp();
    fs::create_directory_symlink(fs::path(PLACES::SOURCE()) / "examples/hematite-pressure",
                                 work / "data");
    PUT_FILE(folder / "input", TEXT_OF(fs::path(PLACES::SOURCE()) / "tests/faults/session.in"));
    START_ANEW();
    FAULTY("");  // the settings are there from here on
    START_ANEW();
    undisturbed = FAULTY("FAULT_COUNTS='" + (folder / "counts").string() + "'");
    std::istringstream(TEXT_OF(folder / "counts")) >> allocations >> calls;
    complete_cif = TEXT_OF(work / "old.cif");
    complete_dat = TEXT_OF(work / "old.dat");
    complete_csv = TEXT_OF(work / "old.csv");
    random.seed(static_cast<unsigned>(FROM_ENVIRONMENT("FAULT_SEED", 20)));
  }

  // The files as they are before the session.
  void START_ANEW() const {
    for (const char* name : {"new.cif", "run.log", "rec.mcr"}) fs::remove(work / name);
    PUT_FILE(work / "old.cif", old_cif);
    PUT_FILE(work / "old.dat", old_dat);
    PUT_FILE(work / "old.csv", old_csv);
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
    const std::string csv = TEXT_OF(work / "old.csv");
    EXPECT_TRUE(csv == old_csv || csv == complete_csv) << fault << "\n" << csv;
    const std::string made = TEXT_OF(work / "new.cif");
    EXPECT_TRUE(!fs::exists(work / "new.cif") || old_cif + made == complete_cif) << fault;
  }

  // What was loaded may be less than usual; it is written whole all the same.
  void EXPECT_WHOLE_BLOCKS(const std::string& said, const std::string& fault) const {
    const std::string cif = TEXT_OF(work / "old.cif");
    ASSERT_TRUE(cif.starts_with(old_cif)) << fault;
    const std::size_t blocks = COUNT_OF(cif, "\ndata_");
    EXPECT_EQ(COUNT_OF(cif, "\n_atom_site_label\n") + COUNT_OF(cif, "\n    _atom_site_label\n"),
              blocks)
        << fault;
    const bool told = COUNT_OF(said, " structures written to file\n") > 0;
    EXPECT_TRUE(blocks == 0 || told) << fault << said;
    EXPECT_TRUE(TEXT_OF(work / "old.dat").starts_with(old_dat)) << fault;
    const std::string csv = TEXT_OF(work / "old.csv");
    const bool rows_told = said.find(" " + std::to_string(LINES(csv).size() - 1) +
                                     " rows written to the file\n") != std::string::npos;
    EXPECT_TRUE(csv == old_csv || (csv.starts_with("block,title,") && rows_told)) << fault << csv;
  }

  RUN_RESULT undisturbed;
  long allocations = 0;
  long calls = 0;
  std::string complete_cif;
  std::string complete_dat;
  std::string complete_csv;
  std::mt19937 random;
};

TEST_F(FAULTS, THE_SESSION_WRITES_ALL_ITS_FILES) {
  EXPECT_EQ(undisturbed.STATUS, 0);
  EXPECT_EQ(COUNT_OF(undisturbed.SAID, "   17 structures written to file\n"), 2u);
  EXPECT_EQ(COUNT_OF(undisturbed.SAID, "    17 data points written to the file\n") +
                COUNT_OF(undisturbed.SAID, " 17 data points written to the file\n"),
            1u);
  EXPECT_EQ(old_cif + TEXT_OF(work / "new.cif"), complete_cif);
  EXPECT_EQ(LINES(complete_csv).size(), 19u) << "a head and 18 blocks";
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
    EXPECT_WHOLE_BLOCKS(run.SAID, fault);
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
    EXPECT_WHOLE_BLOCKS(run.SAID, fault);
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
  EXPECT_EQ(TEXT_OF(work / "old.csv"), complete_csv) << "it is small";
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
  const std::string complete = TEXT_OF(work / "old.cif");
  EXPECT_EQ(COUNT_OF(complete, "\ndata_Hematite_"), 6u);
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
  EXPECT_GT(complete.size(), 7500u);
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
      EXPECT_WHOLE_BLOCKS(run.SAID, fault);
    else
      EXPECT_OLD_OR_COMPLETE(fault);
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
