// What the tests of the program at a terminal share: a pseudo terminal and the program started on
// it. Tests nothing itself.
#pragma once

#include <fcntl.h>  // for open
#include <poll.h>
#include <signal.h>
#include <stdlib.h>     // for posix_openpt
#include <sys/ioctl.h>  // for TIOCSWINSZ
#include <termios.h>

#include <chrono>
#include <thread>  // for sleep_for

#include "places.h"
#include "program__console.h"

namespace PROGRAM_TESTS {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

inline constexpr int our_own = -1;  // in place of a stream
inline constexpr auto patience = 20s;

// The two ends of a pseudo terminal; -1 where there is none.
struct PSEUDO_TERMINAL {
  int MASTER = -1;  // where its user types and reads
  int SLAVE = -1;   // what the program takes for a terminal
};

inline PSEUDO_TERMINAL OPEN_TERMINAL(unsigned short columns) {
  PSEUDO_TERMINAL terminal;
  terminal.MASTER = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal.MASTER < 0 || ::grantpt(terminal.MASTER) != 0 || ::unlockpt(terminal.MASTER) != 0)
    return {};
  terminal.SLAVE = ::open(::ptsname(terminal.MASTER), O_RDWR | O_NOCTTY | O_CLOEXEC);
  winsize size{};
  size.ws_col = columns;
  size.ws_row = 40;
  ::ioctl(terminal.SLAVE, TIOCSWINSZ, &size);
  return terminal;
}

// Whether the terminal gives the program each key at once, as an editor wants it.
inline bool KEYS_COME_SINGLY(int terminal) {
  termios state{};
  EXPECT_EQ(::tcgetattr(terminal, &state), 0);
  return (state.c_lflag & static_cast<tcflag_t>(ICANON)) == 0;
}

// Until an editor has taken over the terminal: keys that come before are shown twice.
inline void AWAIT_EDITOR(int terminal) {
  const auto end = steady_clock::now() + patience;
  while (!KEYS_COME_SINGLY(terminal) && steady_clock::now() < end) std::this_thread::sleep_for(1ms);
}

// Reads on until the text holds the word so often; up to the end when word is blank.
inline void READ_ON(int stream, std::string& text, std::string_view word = "",
                    std::size_t times = 1) {
  const auto end = steady_clock::now() + patience;
  while (word.empty() || COUNT_OF(text, word) < times) {
    pollfd ready{stream, POLLIN, 0};
    if (::poll(&ready, 1, 100) == 0) {
      if (steady_clock::now() > end) return;
      continue;
    }
    char buffer[4096];
    const ssize_t n = ::read(stream, buffer, sizeof buffer);
    if (n <= 0) return;  // the terminal has no program any more
    text.append(buffer, static_cast<std::size_t>(n));
  }
}

// The program started in a session and process group of its own, as a terminal would have it.
class STARTED : public PROGRAM {
 protected:
  // The streams are closed on our side.
  void START(int input, int output, int errors) {
    child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::setsid();
      int place = STDIN_FILENO;
      for (const int stream : {input, output, errors}) {
        if (stream != our_own) ::dup2(stream, place);
        ++place;
      }
      ::ioctl(STDIN_FILENO, TIOCSCTTY, 0);  // of which the interrupt key comes, if it is one
      if (::chdir(work.c_str()) == 0) ::execl(PLACES::PROGRAM().c_str(), "gemmara", nullptr);
      ::_exit(99);
    }
    for (const int stream : {input, output, errors})
      if (stream != our_own) ::close(stream);
  }

  int NEW_FILE(const std::string& name) const {
    return ::open((folder / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  }

  static void TYPE_ON(int stream, std::string_view text) {
    ASSERT_EQ(::write(stream, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }

  int END_STATUS() const {
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
  }

  void EXPECT_GOOD_END() const {
    const int status = END_STATUS();
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  }

  pid_t child = 0;
};

}  // namespace PROGRAM_TESTS
