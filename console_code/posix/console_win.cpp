// POSIX calls behind console_win.h: terminal, environment, directories, system commands, and adding
// to a file. Nothing else in the program may call the system for these.
#include "console_code/console_win.h"

#include <fcntl.h>      // for open, fcntl
#include <signal.h>     // for sigaction
#include <sys/ioctl.h>  // for TIOCGWINSZ
#include <sys/stat.h>   // for mkdir
#include <unistd.h>     // for isatty, chdir, write, close

#include <array>
#include <cerrno>
#include <csignal>     // for sig_atomic_t
#include <cstdio>      // for clearerr, fflush
#include <cstdlib>     // for getenv, system
#include <filesystem>  // for current_path
#include <iostream>

#include "console_code/console_streams.h"

namespace KVA_CONSOLE {

namespace {

constexpr mode_t settings_folder_mode = 0700;  // as the XDG base directory specification asks

bool WRITE_ALL(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// ---- standard streams ----

// The terminal is said to be one that takes more than text.
bool TAKES_SEQUENCES() {
  std::string terminal;
  return GET_ENVIRONMENT("TERM", terminal) && !terminal.empty() && terminal != "dumb";
}

std::array<int, 3> STREAM_FLAGS() {
  return {::fcntl(STDIN_FILENO, F_GETFL), ::fcntl(STDOUT_FILENO, F_GETFL),
          ::fcntl(STDERR_FILENO, F_GETFL)};
}

// A command may leave our terminal in a state in which reading fails instead of waiting.
void RESTORE_STREAM_FLAGS(const std::array<int, 3>& flags) {
  for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (const int flag = flags[static_cast<std::size_t>(stream)]; flag >= 0)
      ::fcntl(stream, F_SETFL, flag);
}

}  // namespace

// ---- terminal ----

void FILL_STANDARD_STREAMS() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    // The lowest free descriptor is taken, which is the one that is missing.
    if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF) ::open("/dev/null", O_RDWR);
}

// A terminal's window belongs to the user.
void SIZE_CONSOLE() {}

int CONSOLE_COLUMNS() {
  winsize size{};
  if (::isatty(STDOUT_FILENO) == 0 || ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return 0;
  return size.ws_col;
}

bool AT_TERMINAL() {
  return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0 && TAKES_SEQUENCES();
}

void SET_CONSOLE_TITLE(std::string_view title) {
  if (::isatty(STDOUT_FILENO) == 0 || !TAKES_SEQUENCES()) return;
  WRITE_CONSOLE("\033]0;" + std::string(title) + "\007");
}

void WRITE_CONSOLE(std::string_view text) {
  WRITE_STREAM(text);
}

bool READ_CONSOLE(std::string& line) {
  LET_INTERRUPT_END_READING(true);
  const bool read = !INTERRUPTED() && READ_STREAM(line);
  LET_INTERRUPT_END_READING(false);
  if (!read && INTERRUPTED()) std::clearerr(stdin);
  return read;
}

void SHOW_STATUS(std::string_view text) {
  if (::isatty(STDERR_FILENO) == 0) return;
  constexpr std::string_view start_of_line = "\r\033[K";
  WRITE_ALL(STDERR_FILENO, std::string(start_of_line) + std::string(text));
}

// ---- interrupt key ----

namespace {

volatile std::sig_atomic_t interrupt_seen = 0;
bool interrupts_kept = false;
struct sigaction usual_interrupt {};

void REMEMBER_INTERRUPT(int /*signal*/) {
  interrupt_seen = 1;
}

// A signal that comes just before the wait for input does not end it: until somebody answers, the
// wait is ended a second later once more.
void END_WAIT_LATER(int /*signal*/) {
  if (interrupt_seen != 0) ::alarm(1);
}

void END_READING(int signal) {
  interrupt_seen = 1;
  END_WAIT_LATER(signal);
}

// flags: SA_RESTART where a call that waits is to go on behind the signal.
struct sigaction ACTION(void (*routine)(int), int flags) {
  struct sigaction action {};
  action.sa_handler = routine;
  action.sa_flags = flags;
  return action;
}

}  // namespace

void LISTEN_FOR_INTERRUPT() {
  if (!interrupts_kept) interrupt_seen = 0;
  const struct sigaction listening = ACTION(REMEMBER_INTERRUPT, SA_RESTART);
  ::sigaction(SIGINT, &listening, &usual_interrupt);
}

void STOP_LISTENING() {
  ::sigaction(SIGINT, &usual_interrupt, nullptr);
}

// A program that was started to ignore the key goes on ignoring it.
void KEEP_INTERRUPTS() {
  struct sigaction found {};
  if (::isatty(STDIN_FILENO) == 0 || ::sigaction(SIGINT, nullptr, &found) != 0) return;
  if (found.sa_handler == SIG_IGN) return;
  interrupts_kept = true;
  const struct sigaction waking = ACTION(END_WAIT_LATER, 0);
  ::sigaction(SIGALRM, &waking, nullptr);
  LET_INTERRUPT_END_READING(false);
}

bool INTERRUPTED() {
  return interrupt_seen != 0;
}

void FORGET_INTERRUPT() {
  interrupt_seen = 0;
}

void LET_INTERRUPT_END_READING(bool on) {
  if (!interrupts_kept) return;
  const struct sigaction kept =
      on ? ACTION(END_READING, 0) : ACTION(REMEMBER_INTERRUPT, SA_RESTART);
  ::sigaction(SIGINT, &kept, nullptr);
  if (!on) ::alarm(0);
}

// ---- arguments and environment ----

std::vector<std::string> COMMAND_LINE(int argc, char** argv) {
  return {argv, argv + argc};
}

bool GET_ENVIRONMENT(const std::string& name, std::string& value) {
  const char* const found = std::getenv(name.c_str());
  value = found != nullptr ? found : "";
  return found != nullptr;
}

bool GET_HOME(std::string& path) {
  return GET_ENVIRONMENT("HOME", path);
}

// ---- files and directories ----

const std::string_view PATH_SEPARATORS = "/";

FILE_CHOICE CHOOSE_FILE(const FILE_QUESTION& /*question*/, std::string& name) {
  name.clear();
  return FILE_CHOICE::NO_DIALOGUE;
}

std::string GET_DIRECTORY() {
  std::error_code error;
  return std::filesystem::current_path(error).string();
}

bool CHANGE_DIRECTORY(const std::string& path) {
  return ::chdir(path.c_str()) == 0;
}

bool MAKE_DIRECTORY(const std::string& path) {
  return ::mkdir(path.c_str(), settings_folder_mode) == 0;
}

// ---- system commands ----

const std::string_view LISTING_COMMAND = "ls";

// std::system ignores an interrupt on our side while the command runs, so that Ctrl-C ends the
// command and not the program.
void RUN_COMMAND_LINE(const std::string& line) {
  std::cout.flush();
  const std::array<int, 3> flags = STREAM_FLAGS();
  // Input from a file is given back as far as we have not used it: the command shares its position.
  std::fflush(stdin);
  if (std::system(line.c_str()) == -1) WRITE_CONSOLE("The system could not run the command\n");
  RESTORE_STREAM_FLAGS(flags);
}

// ---- adding to a file ----

bool APPEND_TO_FILE(const std::string& path, std::string_view text) {
  constexpr mode_t owner_alone = 0600;
  const int descriptor =
      ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, owner_alone);
  if (descriptor < 0) return false;
  const bool written = WRITE_ALL(descriptor, text);
  return ::close(descriptor) == 0 && written;
}

}  // namespace KVA_CONSOLE
