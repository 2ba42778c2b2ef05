// Scratch folder, state, console and the guarded system calls of the fuzz targets.
#include "tests/fuzz/fuzz_support.h"

#include <fcntl.h>
#include <setjmp.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <streambuf>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/console/input.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"

namespace FUZZ {

namespace fs = std::filesystem;

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
  using namespace KVA_CONSOLE;
  constexpr int largest_unit = 99;
  for (int unit = -1; unit <= largest_unit; ++unit) KVA_UTILITIES::CLOSE_UNIT(unit);
  CONSOLE = CONSOLE_STATE{};
  CONSOLE.CMD_PROMPT = "G_MARA-6.1>";
}

void RESET_PHASES() {
  using namespace FACETOR_CONSOLE;
  ALLOCATE_PHASE_LIST(1);  // grows as needed
  RUN = RUN_PARAMETERS{};
  LIMITS_OF_BONDS = {};
  CLEAR_FACETOR_VALENCE();
  MEASURES.clear();
  SET_DEFAULT_CHARGES();
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

// Standard output: counted, since macros that start one another go on for long.
class CONSOLE_OUTPUT : public std::streambuf {
 protected:
  int_type overflow(int_type c) override {
    COUNT(1);
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char*, std::streamsize n) override {
    COUNT(n);
    return n;
  }

 private:
  void COUNT(std::streamsize n) {
    constexpr std::streamsize most = 150000;
    said += n;
    if (said > most) throw END_OF_DIALOGUE{};
  }
  std::streamsize said = 0;
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
  RESET_CONSOLE();
  RESET_PHASES();
  MAKE_SCRATCH();
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

void RUN_PROGRAM(const std::string& lines, int blank_lines, ROUTINE program) {
  const REDIRECTED console(lines, blank_lines);
  try {
    RUN_TO_EXIT(program);
  } catch (const END_OF_DIALOGUE&) {
  }
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
int __real_mkstemp(char* path);
int __real_chdir(const char* path);
int __real_system(const char* line);
[[noreturn]] void __real_exit(int status);

int __wrap_open(const char* path, int flags, ...);
int __wrap_mkdir(const char* path, mode_t mode);
int __wrap_mkstemp(char* path);
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

int __wrap_mkstemp(char* path) {
  if (FUZZ::guarded && FUZZ::REFUSED(path)) return -1;
  return __real_mkstemp(path);
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
