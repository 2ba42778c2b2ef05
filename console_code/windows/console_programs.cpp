// Other programs by CreateProcessW, with pipes on their three streams, each of which has a thread
// of its own here.
#include "console_code/console_programs.h"

#include <windows.h>

#include <algorithm>  // for min
#include <array>
#include <atomic>
#include <memory>
#include <new>  // for bad_alloc
#include <string_view>
#include <thread>

#include "console_code/console_win.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/system_files.h"
#include "console_code/windows/wide_text.h"

namespace KVA_CONSOLE {

using KVA_UTILITIES::WIDE_TEXT;

namespace {

constexpr std::size_t most_output = std::size_t{64} << 20U;  // bytes

struct CLOSE_HANDLE {
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using OWNED_HANDLE = std::unique_ptr<void, CLOSE_HANDLE>;

// ---- pipes ----

struct PIPE {
  OWNED_HANDLE FROM;
  OWNED_HANDLE TO;
};

bool OPEN_PIPE(PIPE& pipe) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE from = nullptr;
  HANDLE to = nullptr;
  if (::CreatePipe(&from, &to, &inherited, 0) == 0) return false;
  pipe.FROM.reset(from);
  pipe.TO.reset(to);
  return true;
}

struct STREAMS {
  PIPE INPUT;
  PIPE OUTPUT;
  PIPE ERRORS;
};

// Our own ends are closed in the program.
void KEEP(const OWNED_HANDLE& handle) {
  ::SetHandleInformation(handle.get(), HANDLE_FLAG_INHERIT, 0);
}

// ---- starting ----

// A word of a command line as programs take it apart again: backslashes are doubled before a quote
// and at the end.
std::string QUOTED_WORD(const std::string& word) {
  std::string text = "\"";
  std::size_t backslashes = 0;
  for (const char c : word) {
    if (c == '"') text.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    text += c;
  }
  return text.append(backslashes, '\\') + "\"";
}

// The process; none when it cannot be started.
OWNED_HANDLE START(const PROGRAM_CALL& call, const STREAMS& streams) {
  std::string line = QUOTED_WORD(call.PATH);
  for (const std::string& argument : call.ARGUMENTS) line += " " + QUOTED_WORD(argument);
  std::wstring command = WIDE_TEXT(line);
  const std::wstring folder = WIDE_TEXT(call.FOLDER);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = streams.INPUT.FROM.get();
  start.hStdOutput = streams.OUTPUT.TO.get();
  start.hStdError = streams.ERRORS.TO.get();
  PROCESS_INFORMATION process{};
  if (::CreateProcessW(WIDE_TEXT(call.PATH).c_str(), command.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW, nullptr, folder.empty() ? nullptr : folder.c_str(), &start,
                       &process) == 0)
    return nullptr;
  ::CloseHandle(process.hThread);
  return OWNED_HANDLE(process.hProcess);
}

// ---- what goes in and comes out ----

void SEND(OWNED_HANDLE& to, std::string_view rest) {
  constexpr std::size_t at_once = 65536;
  while (!rest.empty()) {
    DWORD written = 0;
    const auto count = static_cast<DWORD>(std::min(rest.size(), at_once));
    if (::WriteFile(to.get(), rest.data(), count, &written, nullptr) == 0) break;
    rest.remove_prefix(written);
  }
  to.reset();
}

void RECEIVE(const OWNED_HANDLE& from, std::string& text, std::atomic<bool>& too_much) {
  std::array<char, 65536> part{};
  DWORD count = 0;
  while (::ReadFile(from.get(), part.data(), static_cast<DWORD>(part.size()), &count, nullptr) !=
             0 &&
         count > 0) {
    try {
      if (text.size() <= most_output) text.append(part.data(), count);
    } catch (const std::bad_alloc&) {  // nothing leaves a thread
      too_much = true;
    }
    if (text.size() > most_output) too_much = true;
  }
}

// Until the process ends, or has to be ended.
PROGRAM_END WAIT_FOR(const OWNED_HANDLE& process, std::chrono::milliseconds limit,
                     const std::atomic<bool>& too_much) {
  constexpr DWORD look_up_every = 50;  // milliseconds
  const auto end = std::chrono::steady_clock::now() + limit;
  while (::WaitForSingleObject(process.get(), look_up_every) == WAIT_TIMEOUT) {
    if (INTERRUPTED()) return PROGRAM_END::INTERRUPTED;
    if (too_much || std::chrono::steady_clock::now() > end) return PROGRAM_END::GIVEN_UP;
  }
  return PROGRAM_END::BY_ITSELF;
}

}  // namespace

PROGRAM_ANSWER RUN_PROGRAM(const PROGRAM_CALL& call) {
  PROGRAM_ANSWER answer;
  STREAMS streams;
  if (!OPEN_PIPE(streams.INPUT) || !OPEN_PIPE(streams.OUTPUT) || !OPEN_PIPE(streams.ERRORS))
    return answer;
  KEEP(streams.INPUT.TO);
  KEEP(streams.OUTPUT.FROM);
  KEEP(streams.ERRORS.FROM);
  const OWNED_HANDLE process = START(call, streams);
  if (!process) return answer;
  streams.INPUT.FROM.reset();
  streams.OUTPUT.TO.reset();
  streams.ERRORS.TO.reset();
  std::atomic<bool> too_much = false;
  std::thread input([&] { SEND(streams.INPUT.TO, call.INPUT); });
  std::thread output([&] { RECEIVE(streams.OUTPUT.FROM, answer.OUTPUT, too_much); });
  std::thread errors([&] { RECEIVE(streams.ERRORS.FROM, answer.ERRORS, too_much); });
  answer.END = WAIT_FOR(process, call.LIMIT, too_much);
  if (answer.END != PROGRAM_END::BY_ITSELF) {
    ::TerminateProcess(process.get(), 1);
    ::WaitForSingleObject(process.get(), INFINITE);
  }
  for (std::thread* const thread : {&input, &output, &errors}) thread->join();
  DWORD status = 1;
  ::GetExitCodeProcess(process.get(), &status);
  answer.STATUS = static_cast<int>(status);
  return answer;
}

namespace {

// Where installers put programs: for all users, those of 32 bits, and for one user.
struct INSTALL_FOLDER {
  const char* VARIABLE;  // of the environment
  std::string_view BELOW;
};
constexpr std::array<INSTALL_FOLDER, 3> install_folders{
    {{"ProgramFiles", ""}, {"ProgramFiles(x86)", ""}, {"LOCALAPPDATA", "\\Programs"}}};

}  // namespace

std::string FIND_PROGRAM(const std::string& name) {
  std::string folders;
  GET_ENVIRONMENT("PATH", folders);
  for (const INSTALL_FOLDER& place : install_folders) {
    std::string installed;
    if (GET_ENVIRONMENT(place.VARIABLE, installed))
      folders += ";" + installed + std::string(place.BELOW) + "\\" + name + "\\bin";
  }
  for (std::string_view rest = folders; !rest.empty();) {
    const std::size_t end = std::min(rest.find(';'), rest.size());
    const std::string path = std::string(rest.substr(0, end)) + "\\" + name + ".exe";
    if (KVA_UTILITIES::SYSTEM_PATH(path).is_absolute() && KVA_UTILITIES::FILE_EXISTS(path))
      return path;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return "";
}

}  // namespace KVA_CONSOLE
