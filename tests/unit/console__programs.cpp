// Tests of running other programs without a command processor.
#include "console_code/console_programs.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <thread>

#include "console_code/console_win.h"
#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using PROGRAMS = CONSOLE_TEST;
using namespace std::chrono_literals;

// An executable script of that text in a folder.
std::string SCRIPT(const fs::path& path, const std::string& text) {
  std::ofstream(path) << "#!/bin/sh\n" << text << '\n';
  fs::permissions(path, fs::perms::owner_all);
  return path.string();
}

PROGRAM_CALL CALL(const std::string& path, const std::vector<std::string>& arguments = {},
                  const std::string& input = "") {
  PROGRAM_CALL call;
  call.PATH = path;
  call.ARGUMENTS = arguments;
  call.INPUT = input;
  return call;
}

TEST_F(PROGRAMS, READ_AND_WRITE) {
  const PROGRAM_ANSWER answer = RUN_PROGRAM(CALL("/bin/cat", {"-"}, "one\ntwo"));
  EXPECT_EQ(answer.END, PROGRAM_END::BY_ITSELF);
  EXPECT_EQ(answer.STATUS, 0);
  EXPECT_EQ(answer.OUTPUT, "one\ntwo");
  EXPECT_EQ(answer.ERRORS, "");
}

// More than any pipe holds, both ways at once.
TEST_F(PROGRAMS, PASS_ON_ANY_AMOUNT) {
  const std::string text(3'000'000, 'x');
  EXPECT_EQ(RUN_PROGRAM(CALL("/bin/cat", {}, text)).OUTPUT, text);
}

// An argument is one word, whatever stands in it: no shell sees it.
TEST_F(PROGRAMS, GET_THEIR_ARGUMENTS_AS_THEY_ARE) {
  const std::string path = SCRIPT(folder / "tell", "for a; do echo \"<$a>\"; done");
  const std::vector<std::string> words{
      "a b", "$(touch made)", "`touch made`", "; touch made", "'", "\"", "\\", "", "-x", "*"};
  std::string expected;
  for (const std::string& word : words) expected += "<" + word + ">\n";
  EXPECT_EQ(RUN_PROGRAM(CALL(path, words)).OUTPUT, expected);
  EXPECT_FALSE(fs::exists("made"));
}

TEST_F(PROGRAMS, TELL_HOW_THEY_ENDED) {
  const std::string path = SCRIPT(folder / "fail", "echo so far\necho 'no such thing' >&2\nexit 3");
  const PROGRAM_ANSWER answer = RUN_PROGRAM(CALL(path));
  EXPECT_EQ(answer.END, PROGRAM_END::BY_ITSELF);
  EXPECT_EQ(answer.STATUS, 3);
  EXPECT_EQ(answer.OUTPUT, "so far\n");
  EXPECT_EQ(answer.ERRORS, "no such thing\n");
  EXPECT_NE(RUN_PROGRAM(CALL(SCRIPT(folder / "die", "kill -9 $$"))).STATUS, 0);
}

TEST_F(PROGRAMS, THAT_ARE_NOT_THERE_ARE_NOT_STARTED) {
  EXPECT_EQ(RUN_PROGRAM(CALL((folder / "nothing").string())).END, PROGRAM_END::NOT_STARTED);
  std::ofstream(folder / "text") << "no program";
  EXPECT_EQ(RUN_PROGRAM(CALL((folder / "text").string())).END, PROGRAM_END::NOT_STARTED);
  PROGRAM_CALL call = CALL("/bin/cat");
  call.FOLDER = (folder / "no folder").string();
  EXPECT_EQ(RUN_PROGRAM(call).END, PROGRAM_END::NOT_STARTED);
}

TEST_F(PROGRAMS, RUN_IN_A_FOLDER) {
  fs::create_directory(folder / "figures");
  PROGRAM_CALL call = CALL(SCRIPT(folder / "where", "pwd"));
  EXPECT_EQ(RUN_PROGRAM(call).OUTPUT, folder.string() + "\n");
  call.FOLDER = "figures";
  EXPECT_EQ(RUN_PROGRAM(call).OUTPUT, (folder / "figures").string() + "\n");
  EXPECT_EQ(fs::current_path(), folder);
}

// A program that does not read what it is given does not end us by SIGPIPE.
TEST_F(PROGRAMS, MAY_LEAVE_THEIR_INPUT_UNREAD) {
  const PROGRAM_ANSWER answer =
      RUN_PROGRAM(CALL(SCRIPT(folder / "deaf", "echo done"), {}, std::string(3'000'000, 'x')));
  EXPECT_EQ(answer.STATUS, 0);
  EXPECT_EQ(answer.OUTPUT, "done\n");
}

// However they end: what was opened for them is closed.
TEST_F(PROGRAMS, LEAVE_NO_DESCRIPTOR_OPEN) {
  const auto count = [] {
    const fs::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
  };
  const std::string slow = SCRIPT(folder / "slow", "exec sleep 60");
  const auto before = count();
  RUN_PROGRAM(CALL("/bin/cat", {"-"}, "one"));
  EXPECT_EQ(count(), before);
  RUN_PROGRAM(CALL((folder / "nothing").string()));
  EXPECT_EQ(count(), before);
  PROGRAM_CALL call = CALL(slow, {}, std::string(3'000'000, 'x'));
  call.LIMIT = 1s;
  RUN_PROGRAM(call);
  EXPECT_EQ(count(), before);
}

// ---- programs that do not end ----

TEST_F(PROGRAMS, THAT_TAKE_TOO_LONG_ARE_GIVEN_UP) {
  PROGRAM_CALL call = CALL(SCRIPT(folder / "slow", "echo begun\nexec sleep 60"));
  call.LIMIT = 1s;
  const auto begun = std::chrono::steady_clock::now();
  const PROGRAM_ANSWER answer = RUN_PROGRAM(call);
  EXPECT_EQ(answer.END, PROGRAM_END::GIVEN_UP);
  EXPECT_NE(answer.STATUS, 0);
  EXPECT_EQ(answer.OUTPUT, "begun\n");
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 20s);
}

TEST_F(PROGRAMS, THAT_CLOSE_THEIR_OUTPUT_AND_STAY_ARE_GIVEN_UP) {
  PROGRAM_CALL call = CALL(SCRIPT(folder / "stay", "exec >&- 2>&-\nexec sleep 60"));
  call.LIMIT = 1s;
  EXPECT_EQ(RUN_PROGRAM(call).END, PROGRAM_END::GIVEN_UP);
}

TEST_F(PROGRAMS, THAT_WRITE_WITHOUT_END_ARE_GIVEN_UP) {
  const PROGRAM_ANSWER answer = RUN_PROGRAM(CALL(SCRIPT(folder / "talk", "exec yes")));
  EXPECT_EQ(answer.END, PROGRAM_END::GIVEN_UP);
  EXPECT_LT(answer.OUTPUT.size(), std::size_t{65} << 20U);
}

TEST_F(PROGRAMS, END_AT_THE_INTERRUPT_KEY) {
  LISTEN_FOR_INTERRUPT();
  std::thread key([] {
    std::this_thread::sleep_for(200ms);
    ::kill(::getpid(), SIGINT);
  });
  const auto begun = std::chrono::steady_clock::now();
  const PROGRAM_ANSWER answer = RUN_PROGRAM(CALL(SCRIPT(folder / "slow", "exec sleep 60")));
  key.join();
  EXPECT_EQ(answer.END, PROGRAM_END::INTERRUPTED);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 20s);
  STOP_LISTENING();
  FORGET_INTERRUPT();
}

// ---- where they are ----

TEST_F(PROGRAMS, ARE_FOUND_IN_THE_FOLDERS_FOR_PROGRAMS) {
  std::string path;
  GET_ENVIRONMENT("PATH", path);
  fs::create_directory(folder / "first");
  fs::create_directory(folder / "second");
  const std::string program = SCRIPT(folder / "second" / "drawer", "");
  ::setenv("PATH", (folder.string() + "/first:" + folder.string() + "/second").c_str(), 1);
  EXPECT_EQ(FIND_PROGRAM("drawer"), program);
  EXPECT_EQ(FIND_PROGRAM("other"), "");
  std::ofstream(folder / "first" / "drawer") << "not executable";
  EXPECT_EQ(FIND_PROGRAM("drawer"), program);
  fs::create_directory(folder / "first" / "plotter");
  EXPECT_EQ(FIND_PROGRAM("plotter"), "");  // a folder of that name
  ::setenv("PATH", path.c_str(), 1);
}

// Whoever opens a folder of data does not run the programs in it.
TEST_F(PROGRAMS, ARE_NOT_TAKEN_FROM_THE_CURRENT_FOLDER) {
  std::string path;
  GET_ENVIRONMENT("PATH", path);
  fs::create_directory(folder / "sub");
  SCRIPT(folder / "drawer", "");
  SCRIPT(folder / "sub" / "drawer", "");
  for (const char* const folders : {":", ".", "sub", "", ":/nowhere:"}) {
    ::setenv("PATH", folders, 1);
    EXPECT_EQ(FIND_PROGRAM("drawer"), "") << folders;
  }
  ::setenv("PATH", path.c_str(), 1);
}

// ---- what the system refuses ----

// As many descriptors as are open and a few more: two pipes and a half at most.
TEST_F(PROGRAMS, ARE_NOT_STARTED_WITHOUT_PIPES) {
  const std::string path = SCRIPT(folder / "tell", "echo done");
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  const int lowest_free = ::dup(0);
  ASSERT_GE(lowest_free, 0);
  ::close(lowest_free);
  for (int more = 0; more < 6; ++more) {
    rlimit few = usual;
    few.rlim_cur = static_cast<rlim_t>(lowest_free + more);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    const PROGRAM_ANSWER answer = RUN_PROGRAM(CALL(path));
    ::setrlimit(RLIMIT_NOFILE, &usual);
    EXPECT_EQ(answer.END, PROGRAM_END::NOT_STARTED) << more;
  }
  EXPECT_EQ(RUN_PROGRAM(CALL(path)).OUTPUT, "done\n");
}

// It reads nothing for a while, so that the pipe is full, and then closes it.
TEST_F(PROGRAMS, MAY_CLOSE_THEIR_INPUT_BEFORE_ITS_END) {
  const PROGRAM_ANSWER answer = RUN_PROGRAM(CALL(
      SCRIPT(folder / "deaf", "exec <&-\nsleep 0.3\necho done"), {}, std::string(3'000'000, 'x')));
  EXPECT_EQ(answer.END, PROGRAM_END::BY_ITSELF);
  EXPECT_EQ(answer.OUTPUT, "done\n");
}

// The interrupt comes when the output is closed already.
TEST_F(PROGRAMS, END_AT_THE_INTERRUPT_KEY_WHEN_THEY_SAY_NOTHING_MORE) {
  LISTEN_FOR_INTERRUPT();
  std::thread key([] {
    std::this_thread::sleep_for(500ms);
    ::kill(::getpid(), SIGINT);
  });
  const auto begun = std::chrono::steady_clock::now();
  const PROGRAM_ANSWER answer =
      RUN_PROGRAM(CALL(SCRIPT(folder / "stay", "exec >&- 2>&-\nexec sleep 60")));
  key.join();
  EXPECT_EQ(answer.END, PROGRAM_END::INTERRUPTED);
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 20s);
  STOP_LISTENING();
  FORGET_INTERRUPT();
}

}  // namespace
