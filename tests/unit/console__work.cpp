// Tests of long work: the line that tells how far it is, on the terminal alone, and its
// interruption.
#include "console_code/console/work.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>  // for posix_openpt
#include <unistd.h>

#include "console_code/console_win.h"
#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

// A file or a terminal in place of standard error while it lives.
class ERROR_STREAM {
 public:
  explicit ERROR_STREAM(int stream) : usual(::dup(STDERR_FILENO)) {
    ::dup2(stream, STDERR_FILENO);
    ::close(stream);
  }
  ~ERROR_STREAM() {
    ::dup2(usual, STDERR_FILENO);
    ::close(usual);
  }
  ERROR_STREAM(const ERROR_STREAM&) = delete;
  ERROR_STREAM& operator=(const ERROR_STREAM&) = delete;

 private:
  int usual;
};

class LONG_WORK : public CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0)
      GTEST_SKIP() << "no pseudo terminal here";
    slave = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
  }
  void TearDown() override {
    ::close(master);
    CONSOLE_TEST::TearDown();
  }

  // What was shown on the terminal, of which no more than the length is read.
  std::string SHOWN(std::size_t length) const {
    std::string text;
    for (pollfd ready{master, POLLIN, 0}; text.size() < length && ::poll(&ready, 1, 5000) > 0;) {
      char buffer[256];
      const ssize_t n = ::read(master, buffer, std::min(sizeof buffer, length - text.size()));
      if (n <= 0) break;
      text.append(buffer, static_cast<std::size_t>(n));
    }
    return text;
  }

  // The time of the next show comes or does not come at once, so that no test must wait for it.
  static void LET_IT_BE_TIME(WORK& work) { work.NEXT_SHOW = steady_clock::now(); }
  static void LET_IT_BE_EARLY(WORK& work) { work.NEXT_SHOW = steady_clock::time_point::max(); }

  int master = -1;
  int slave = -1;
};

const std::string start_of_line = "\r\033[K";

TEST_F(LONG_WORK, LINE_COMES_AFTER_HALF_A_SECOND_AND_IS_RENEWED_FIVE_TIMES_A_SECOND) {
  const ERROR_STREAM terminal(slave);
  const auto before = steady_clock::now();
  WORK work("Counting", 10);
  const auto behind = steady_clock::now();
  EXPECT_GE(work.NEXT_SHOW, before + 500ms);
  EXPECT_LE(work.NEXT_SHOW, behind + 500ms);
  LET_IT_BE_TIME(work);
  const auto shown = steady_clock::now();
  EXPECT_TRUE(GO_ON(work, 1));
  EXPECT_GE(work.NEXT_SHOW, shown + 200ms);
  EXPECT_LE(work.NEXT_SHOW, steady_clock::now() + 200ms);
}

TEST_F(LONG_WORK, LINE_IS_RENEWED_IN_ITS_PLACE_AND_GONE_AT_THE_END) {
  const ERROR_STREAM terminal(slave);
  START_LOG();
  const std::string said = SAID("", [] {
    WORK work("Counting", 10);
    LET_IT_BE_EARLY(work);
    EXPECT_TRUE(GO_ON(work, 1));
    LET_IT_BE_TIME(work);
    EXPECT_TRUE(GO_ON(work, 2));
    LET_IT_BE_EARLY(work);
    EXPECT_TRUE(GO_ON(work, 3));
    LET_IT_BE_TIME(work);
    EXPECT_TRUE(GO_ON(work, 4));
  });
  SHOW_STATUS("end");
  const std::string expected = start_of_line + "Counting 2 of 10" + start_of_line +
                               "Counting 4 of 10" + start_of_line + start_of_line + "end";
  EXPECT_EQ(SHOWN(expected.size()), expected);
  EXPECT_EQ(said, "");
  EXPECT_EQ(TEXT_OF("test.log"), "");
}

TEST_F(LONG_WORK, SHORT_WORK_SHOWS_NOTHING) {
  const ERROR_STREAM terminal(slave);
  {
    WORK work("Counting", 10);
    LET_IT_BE_EARLY(work);
    EXPECT_TRUE(GO_ON(work, 10));
  }
  SHOW_STATUS("end");
  EXPECT_EQ(SHOWN(start_of_line.size() + 3), start_of_line + "end");
}

TEST_F(LONG_WORK, NOTHING_IS_SHOWN_WHERE_THERE_IS_NO_TERMINAL) {
  ::close(slave);
  const ERROR_STREAM file(::open("errors.txt", O_WRONLY | O_CREAT, 0600));
  {
    WORK work("Counting", 10);
    LET_IT_BE_TIME(work);
    EXPECT_TRUE(GO_ON(work, 1));
  }
  EXPECT_TRUE(fs::exists("errors.txt"));
  EXPECT_EQ(TEXT_OF("errors.txt"), "");
}

TEST_F(LONG_WORK, INTERRUPT_STOPS_THE_WORK_AND_IS_THE_USUAL_ONE_BEHIND_IT) {
  ::close(slave);
  {
    WORK work("Counting", 10);
    EXPECT_TRUE(GO_ON(work, 1));
    ::raise(SIGINT);
    EXPECT_FALSE(GO_ON(work, 2));
  }
  struct sigaction action {};
  ASSERT_EQ(::sigaction(SIGINT, nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
  WORK next("Counting", 10);
  EXPECT_TRUE(GO_ON(next, 1)) << "the earlier interrupt is forgotten";
}

TEST_F(LONG_WORK, INTERRUPT_STOPS_A_REPLAY_AND_NOT_A_RECORDING) {
  ::close(slave);
  const auto interrupted = [] {
    WORK work("Counting", 10);
    ::raise(SIGINT);
    EXPECT_FALSE(GO_ON(work, 1));
  };
  START_MACRO_WITH("LIST\n");
  EXPECT_EQ(SAID("", interrupted), "***** Macro stopped\n");
  EXPECT_EQ(CONSOLE.MACRO_STATE, 0);
  EXPECT_FALSE(CONSOLE.MACRO_FILE.OPEN);
  START_MACRO_WITH("");
  CONSOLE.MACRO_STATE = -1;
  EXPECT_EQ(SAID("", interrupted), "");
  EXPECT_EQ(CONSOLE.MACRO_STATE, -1);
  EXPECT_TRUE(CONSOLE.MACRO_FILE.OPEN);
}

}  // namespace
