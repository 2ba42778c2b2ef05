// Other programs by posix_spawn, with pipes on their three streams.
#include "console_code/console_programs.h"

#include <fcntl.h>  // for fcntl
#include <poll.h>
#include <signal.h>  // for sigaction, kill
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>  // for pipe, read, write, close, access, environ

#include <algorithm>  // for min
#include <array>
#include <cerrno>
#include <string_view>

#include "console_code/console_win.h"

namespace KVA_CONSOLE {

namespace {

using std::chrono::steady_clock;

constexpr std::size_t most_output = std::size_t{64} << 20U;  // bytes

// ---- pipes ----

// One end each; -1: closed.
struct PIPE {
  int FROM = -1;
  int TO = -1;
  PIPE() = default;
  PIPE(const PIPE&) = delete;
  PIPE& operator=(const PIPE&) = delete;
  ~PIPE() {
    if (FROM >= 0) ::close(FROM);
    if (TO >= 0) ::close(TO);
  }
};

void CLOSE(int& descriptor) {
  if (descriptor >= 0) ::close(descriptor);
  descriptor = -1;
}

// Both ends are closed in programs that are started.
bool OPEN_PIPE(PIPE& pipe) {
  std::array<int, 2> ends{-1, -1};
  if (::pipe(ends.data()) != 0) return false;
  pipe.FROM = ends[0];
  pipe.TO = ends[1];
  return ::fcntl(pipe.FROM, F_SETFD, FD_CLOEXEC) == 0 && ::fcntl(pipe.TO, F_SETFD, FD_CLOEXEC) == 0;
}

// Of our own end: reading and writing do not wait.
void DO_NOT_WAIT(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

struct STREAMS {
  PIPE INPUT;
  PIPE OUTPUT;
  PIPE ERRORS;
};

// ---- starting ----

std::vector<char*> ARGUMENT_LIST(std::vector<std::string>& words) {
  std::vector<char*> list;
  for (std::string& word : words) list.push_back(word.data());
  list.push_back(nullptr);
  return list;
}

// What the program begins with; false when memory is refused, so that it gets no stream of ours.
bool SET_STREAMS(const PROGRAM_CALL& call, const STREAMS& streams,
                 posix_spawn_file_actions_t& actions) {
  const auto put = [&](int descriptor, int place) {
    return ::posix_spawn_file_actions_adddup2(&actions, descriptor, place) == 0;
  };
  return put(streams.INPUT.FROM, STDIN_FILENO) && put(streams.OUTPUT.TO, STDOUT_FILENO) &&
         put(streams.ERRORS.TO, STDERR_FILENO) &&
         (call.FOLDER.empty() ||
          ::posix_spawn_file_actions_addchdir_np(&actions, call.FOLDER.c_str()) == 0);
}

// The number of the process; -1 when there is none. What we ignore the program does not.
pid_t START(const PROGRAM_CALL& call, const STREAMS& streams) {
  std::vector<std::string> words{call.PATH};
  words.insert(words.end(), call.ARGUMENTS.begin(), call.ARGUMENTS.end());
  const std::vector<char*> arguments = ARGUMENT_LIST(words);
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawnattr_init(&attributes);
  sigset_t usual;
  ::sigemptyset(&usual);
  ::sigaddset(&usual, SIGPIPE);
  ::posix_spawnattr_setsigdefault(&attributes, &usual);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  pid_t process = -1;
  const bool started = SET_STREAMS(call, streams, actions) &&
                       ::posix_spawn(&process, call.PATH.c_str(), &actions, &attributes,
                                     arguments.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  ::posix_spawnattr_destroy(&attributes);
  return started ? process : -1;
}

// ---- what goes in and comes out ----

// Closes our end when all is written, or nobody reads.
void SEND(int& descriptor, std::string_view& rest) {
  const ssize_t sent = ::write(descriptor, rest.data(), rest.size());
  if (sent > 0) rest.remove_prefix(static_cast<std::size_t>(sent));
  const bool waiting = sent < 0 && (errno == EAGAIN || errno == EINTR);
  if (rest.empty() || (sent < 0 && !waiting)) CLOSE(descriptor);
}

// Closes our end when nothing more will come.
void RECEIVE(int& descriptor, std::string& text) {
  std::array<char, 65536> part{};
  const ssize_t count = ::read(descriptor, part.data(), part.size());
  if (count > 0) return void(text.append(part.data(), static_cast<std::size_t>(count)));
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  CLOSE(descriptor);
}

bool HAS_EVENT(const pollfd& watched) {
  return watched.fd >= 0 && watched.revents != 0;
}

// Sends the rest, and receives until the program has closed its output.
PROGRAM_END TALK(std::string_view rest, steady_clock::time_point end, STREAMS& streams,
                 PROGRAM_ANSWER& answer) {
  constexpr int look_up_every = 50;  // milliseconds
  if (rest.empty()) CLOSE(streams.INPUT.TO);
  while (streams.OUTPUT.FROM >= 0 || streams.ERRORS.FROM >= 0) {
    if (INTERRUPTED()) return PROGRAM_END::INTERRUPTED;
    if (steady_clock::now() > end || answer.OUTPUT.size() + answer.ERRORS.size() > most_output)
      return PROGRAM_END::GIVEN_UP;
    std::array<pollfd, 3> watched{{{streams.INPUT.TO, POLLOUT, 0},
                                   {streams.OUTPUT.FROM, POLLIN, 0},
                                   {streams.ERRORS.FROM, POLLIN, 0}}};
    if (::poll(watched.data(), watched.size(), look_up_every) <= 0) continue;
    if (HAS_EVENT(watched[0])) SEND(streams.INPUT.TO, rest);
    if (HAS_EVENT(watched[1])) RECEIVE(streams.OUTPUT.FROM, answer.OUTPUT);
    if (HAS_EVENT(watched[2])) RECEIVE(streams.ERRORS.FROM, answer.ERRORS);
  }
  return PROGRAM_END::BY_ITSELF;
}

// Its status; of a process that a signal ended, the signal's number. One that has closed its output
// and goes on is given up as well.
int WAIT_FOR(pid_t process, steady_clock::time_point end, PROGRAM_END& how) {
  constexpr int look_up_every = 5;  // milliseconds
  int status = 0;
  while (true) {
    const pid_t ended = ::waitpid(process, &status, WNOHANG);
    if (ended == process || (ended < 0 && errno != EINTR)) break;
    if (how == PROGRAM_END::BY_ITSELF && INTERRUPTED()) how = PROGRAM_END::INTERRUPTED;
    if (how == PROGRAM_END::BY_ITSELF && steady_clock::now() > end) how = PROGRAM_END::GIVEN_UP;
    if (how != PROGRAM_END::BY_ITSELF) ::kill(process, SIGKILL);
    ::poll(nullptr, 0, look_up_every);
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
}

// A program that is still there when we give up, as memory is refused, is ended.
struct NONE_LEFT {
  pid_t PROCESS;
  explicit NONE_LEFT(pid_t process) : PROCESS(process) {}
  NONE_LEFT(const NONE_LEFT&) = delete;
  NONE_LEFT& operator=(const NONE_LEFT&) = delete;
  ~NONE_LEFT() {
    if (PROCESS < 0) return;
    ::kill(PROCESS, SIGKILL);
    ::waitpid(PROCESS, nullptr, 0);
  }
};

// A program that ends before it has read all must not end us.
struct WITHOUT_PIPE_SIGNAL {
  struct sigaction FOUND {};
  WITHOUT_PIPE_SIGNAL() {
    struct sigaction ignoring {};
    ignoring.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &ignoring, &FOUND);
  }
  WITHOUT_PIPE_SIGNAL(const WITHOUT_PIPE_SIGNAL&) = delete;
  WITHOUT_PIPE_SIGNAL& operator=(const WITHOUT_PIPE_SIGNAL&) = delete;
  ~WITHOUT_PIPE_SIGNAL() { ::sigaction(SIGPIPE, &FOUND, nullptr); }
};

}  // namespace

PROGRAM_ANSWER RUN_PROGRAM(const PROGRAM_CALL& call) {
  const WITHOUT_PIPE_SIGNAL without_pipe_signal;
  PROGRAM_ANSWER answer;
  STREAMS streams;
  if (!OPEN_PIPE(streams.INPUT) || !OPEN_PIPE(streams.OUTPUT) || !OPEN_PIPE(streams.ERRORS))
    return answer;
  NONE_LEFT started(START(call, streams));
  if (started.PROCESS < 0) return answer;
  CLOSE(streams.INPUT.FROM);
  CLOSE(streams.OUTPUT.TO);
  CLOSE(streams.ERRORS.TO);
  for (const int descriptor : {streams.INPUT.TO, streams.OUTPUT.FROM, streams.ERRORS.FROM})
    DO_NOT_WAIT(descriptor);
  const steady_clock::time_point end = steady_clock::now() + call.LIMIT;
  answer.END = TALK(call.INPUT, end, streams, answer);
  answer.STATUS = WAIT_FOR(started.PROCESS, end, answer.END);
  started.PROCESS = -1;
  return answer;
}

std::string FIND_PROGRAM(const std::string& name) {
  std::string folders;
  GET_ENVIRONMENT("PATH", folders);
  for (std::string_view rest = folders; !rest.empty();) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const std::string path = std::string(rest.substr(0, end)) + "/" + name;
    struct stat status {};
    if (path.starts_with('/') && end > 0 && ::access(path.c_str(), X_OK) == 0 &&
        ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
      return path;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return "";
}

}  // namespace KVA_CONSOLE
