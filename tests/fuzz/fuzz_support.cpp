// Scratch folder, state, console and the guarded system calls of the fuzz targets.
#include "tests/fuzz/fuzz_support.h"

#include <fcntl.h>
#include <setjmp.h>
#include <spawn.h>
#include <unistd.h>

#include <algorithm>  // for sort
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <numeric>  // for accumulate
#include <streambuf>
#include <vector>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/console/input.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_sheets/csv.h"

namespace FUZZ {

namespace fs = std::filesystem;
using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;

namespace {

// ---- scratch folder ----

// In memory where the system has a place for that.
const fs::path& SCRATCH() {
  static const fs::path folder = [] {
    const fs::path memory = "/dev/shm";
    const fs::path root = fs::is_directory(memory) ? memory : fs::temp_directory_path();
    return root / ("gemmara_fuzz_" + std::to_string(::getpid()));
  }();
  return folder;
}

struct REMOVE_SCRATCH {
  ~REMOVE_SCRATCH() {
    std::error_code ignored;
    fs::remove_all(SCRATCH(), ignored);
  }
};

void MAKE_SCRATCH() {
  static const REMOVE_SCRATCH at_end;
  std::error_code ignored;
  for (const auto& entry : fs::directory_iterator(SCRATCH(), ignored)) fs::remove_all(entry);
  fs::create_directories(SCRATCH() / "home");
  fs::current_path(SCRATCH());
  ::setenv("LOCALAPPDATA", SCRATCH().c_str(), 1);
  ::setenv("HOME", (SCRATCH() / "home").c_str(), 1);
}

// ---- state ----

void RESET_CONSOLE() {
  constexpr int largest_unit = 99;
  for (int unit = -1; unit <= largest_unit; ++unit) KVA_UTILITIES::CLOSE_UNIT(unit);
  CONSOLE = CONSOLE_STATE{};
  CONSOLE.CMD_PROMPT = "G_MARA-6.1>";
}

// What SET and MEASURE have made, which CLEAR leaves.
void RESET_SETTINGS() {
  RUN = RUN_PARAMETERS{};
  MEASURES.clear();
}

void RESET_PHASES() {
  ALLOCATE_PHASE_LIST(1);  // grows as needed
  LIMITS_OF_BONDS = {};
  CLEAR_FACETOR_VALENCE();
  SET_DEFAULT_CHARGES();
  FACETOR_SHEETS::LAST_FIT = {};
  KVA_CIFNEW::INIT_ERR_KVACIF();
  KVA_CRYSTAL_STRUCTURES::INIT_ERR_KVASTRUCTURES();
}

// ---- console ----

// Standard input: a text, then blank lines, then the end of the dialogue.
class CONSOLE_INPUT : public std::streambuf {
 public:
  CONSOLE_INPUT(const std::string& lines, int blank_lines) : text(lines) {
    if (!text.empty() && text.back() != '\n') text += '\n';
    text.append(static_cast<std::size_t>(blank_lines), '\n');
    setg(text.data(), text.data(), text.data() + text.size());
  }

 protected:
  int_type underflow() override {
    if (gptr() == egptr()) throw END_OF_DIALOGUE{};
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::string text;
};

// Standard output: kept, and no more than so much, since macros that start one another go on for
// long.
class CONSOLE_OUTPUT : public std::streambuf {
 public:
  std::string SAID;

 protected:
  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char character = traits_type::to_char_type(c);
    ADD({&character, 1});
    return c;
  }
  std::streamsize xsputn(const char* text, std::streamsize n) override {
    ADD({text, static_cast<std::size_t>(n)});
    return n;
  }

 private:
  void ADD(std::string_view text) {
    constexpr std::size_t most = 150000;
    SAID += text;
    if (SAID.size() > most) throw END_OF_DIALOGUE{};
  }
};

// The program's own code runs, so the guarded calls are its calls and not the fuzzer's.
bool guarded = false;

// In place of the real console while it lives.
class REDIRECTED {
 public:
  REDIRECTED(const std::string& lines, int blank_lines)
      : input(lines, blank_lines),
        old_input(std::cin.rdbuf(&input)),
        old_output(std::cout.rdbuf(&output)) {
    std::cout.exceptions(std::ios::badbit);
    guarded = true;
  }
  ~REDIRECTED() {
    guarded = false;
    std::cout.exceptions(std::ios::goodbit);
    std::cin.rdbuf(old_input);
    std::cout.rdbuf(old_output);
    std::cout.clear();
  }
  REDIRECTED(const REDIRECTED&) = delete;
  REDIRECTED& operator=(const REDIRECTED&) = delete;

  const std::string& SAID() const { return output.SAID; }

 private:
  CONSOLE_INPUT input;
  CONSOLE_OUTPUT output;
  std::streambuf* old_input;
  std::streambuf* old_output;
};

// Where the program goes instead of ending the process.
jmp_buf after_exit;

}  // namespace

// ---- texts and files ----

std::string TEXT_OF(const std::uint8_t* data, std::size_t size) {
  std::string text;
  text.reserve(size);
  for (std::size_t i = 0; i < size; ++i) text += static_cast<char>(data[i]);
  return text;
}

KVA_UTILITIES::FILE_LINES LINES_OF(const std::string& text) {
  KVA_UTILITIES::FILE_LINES lines;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.ADD(KVA_UTILITIES::CUT_LINE(std::string_view(text).substr(start, end - start)));
    start = end + 1;
  }
  return lines;
}

void START() {
  RESET_PHASES();
  START_WITH_BLOCKS();
}

void START_WITH_BLOCKS() {
  RESET_CONSOLE();
  RESET_SETTINGS();
  MAKE_SCRATCH();
}

std::string FILES_THERE() {
  std::vector<std::string> lines;
  std::error_code none;
  for (const auto& entry : fs::recursive_directory_iterator(SCRATCH()))
    if (entry.is_regular_file())
      lines.push_back(entry.path().string() + " " + std::to_string(entry.file_size(none)) + "\n");
  std::sort(lines.begin(), lines.end());
  return std::accumulate(lines.begin(), lines.end(), std::string());
}

void PUT_FILE(const std::string& name, std::string_view text) {
  std::ofstream(SCRATCH() / name, std::ios::binary) << text;
}

std::string PROJECT_FILE(const std::string& name) {
  std::ifstream file(fs::path(GEMMARA_SOURCE) / name, std::ios::binary);
  MUST_HOLD(file.is_open(), "there is " + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

// ---- running ----

void WITH_CONSOLE(const std::string& lines, int blank_lines, ROUTINE routine) {
  const REDIRECTED console(lines, blank_lines);
  try {
    routine();
  } catch (const END_OF_DIALOGUE&) {
  }
}

namespace {

// The program's way out of the process leads here. Only frames without memory of their own lie
// between: those of the command loop.
void RUN_TO_EXIT(ROUTINE program) {
  if (setjmp(after_exit) == 0) program();
}

}  // namespace

std::string RUN_PROGRAM(const std::string& lines, int blank_lines, ROUTINE program) {
  const REDIRECTED console(lines, blank_lines);
  try {
    RUN_TO_EXIT(program);
  } catch (const END_OF_DIALOGUE&) {
  }
  return console.SAID();
}

void MUST_HOLD(bool statement, std::string_view what) {
  if (statement) return;
  std::cerr << "This must hold, but does not: " << what << "\n" << std::flush;
  std::abort();
}

namespace {

// Names may lead into the scratch folder alone.
bool IS_HARMLESS(const char* path) {
  const std::string name = path;
  if (name.find("..") != std::string::npos) return false;
  return !name.starts_with('/') || name.starts_with(SCRATCH().string() + "/");
}

bool REFUSED(const char* path) {
  if (IS_HARMLESS(path)) return false;
  errno = EACCES;
  return true;
}

}  // namespace

}  // namespace FUZZ

// ---- guarded system calls, put in place of the real ones by the linker ----

extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_mkdir(const char* path, mode_t mode);
int __real_mkostemp(char* path, int flags);
int __real_posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const* arguments,
                       char* const* environment);
int __real_chdir(const char* path);
int __real_system(const char* line);
[[noreturn]] void __real_exit(int status);

int __wrap_open(const char* path, int flags, ...);
int __wrap_mkdir(const char* path, mode_t mode);
int __wrap_mkostemp(char* path, int flags);
int __wrap_posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const* arguments,
                       char* const* environment);
int __wrap_chdir(const char* path);
int __wrap_system(const char* line);
[[noreturn]] void __wrap_exit(int status);

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if (FUZZ::guarded && FUZZ::REFUSED(path)) return -1;
  return __real_open(path, flags, mode);
}

int __wrap_mkdir(const char* path, mode_t mode) {
  if (FUZZ::guarded && FUZZ::REFUSED(path)) return -1;
  return __real_mkdir(path, mode);
}

int __wrap_mkostemp(char* path, int flags) {
  if (FUZZ::guarded && FUZZ::REFUSED(path)) return -1;
  return __real_mkostemp(path, flags);
}

int __wrap_posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                       const posix_spawnattr_t* attributes, char* const* arguments,
                       char* const* environment) {
  if (FUZZ::guarded) return ENOENT;
  return __real_posix_spawn(process, path, actions, attributes, arguments, environment);
}

int __wrap_chdir(const char* path) {
  if (!FUZZ::guarded) return __real_chdir(path);
  errno = EACCES;
  return -1;
}

int __wrap_system(const char* line) {
  return FUZZ::guarded ? 0 : __real_system(line);
}

void __wrap_exit(int status) {
  if (FUZZ::guarded) longjmp(FUZZ::after_exit, 1);
  __real_exit(status);
}

}  // extern "C"
