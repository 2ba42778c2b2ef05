// Windows calls behind console_win.h: console, environment, directories, the file dialogue and
// system commands. Nothing else in the program may call the system for these.
#include "console_code/console_win.h"

#include <fcntl.h>  // for _O_BINARY
#include <io.h>     // for _setmode
#include <windows.h>

// Behind windows.h, which they need.
#include <commdlg.h>   // for GetOpenFileNameW
#include <shellapi.h>  // for CommandLineToArgvW

#include <algorithm>  // for max, min
#include <array>
#include <atomic>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>

#include "console_code/console_streams.h"
#include "console_code/kva_utilities/system_files.h"
#include "console_code/windows/wide_text.h"

namespace KVA_CONSOLE {

using KVA_UTILITIES::NARROW_TEXT;
using KVA_UTILITIES::WIDE_TEXT;

namespace {

constexpr DWORD longest_path = 32768;  // characters, of any path of the system

// ---- console ----

bool IS_CONSOLE(HANDLE stream) {
  DWORD mode = 0;
  return ::GetConsoleMode(stream, &mode) != 0;
}

HANDLE INPUT() {
  return ::GetStdHandle(STD_INPUT_HANDLE);
}

HANDLE OUTPUT() {
  return ::GetStdHandle(STD_OUTPUT_HANDLE);
}

HANDLE ERRORS() {
  return ::GetStdHandle(STD_ERROR_HANDLE);
}

std::optional<CONSOLE_SCREEN_BUFFER_INFO> BUFFER_OF(HANDLE stream) {
  CONSOLE_SCREEN_BUFFER_INFO state{};
  if (::GetConsoleScreenBufferInfo(stream, &state) == 0) return std::nullopt;
  return state;
}

int WINDOW_COLUMNS(const CONSOLE_SCREEN_BUFFER_INFO& state) {
  return state.srWindow.Right - state.srWindow.Left + 1;
}

int WINDOW_ROWS(const CONSOLE_SCREEN_BUFFER_INFO& state) {
  return state.srWindow.Bottom - state.srWindow.Top + 1;
}

// Characters and not bytes, so that the console's code page does not matter.
void WRITE_CHARACTERS(HANDLE console, std::string_view text) {
  constexpr std::size_t at_once = 8192;  // older systems take no more than 64 KB
  const std::wstring wide = WIDE_TEXT(text);
  for (std::size_t at = 0; at < wide.size(); at += at_once) {
    const std::size_t count = std::min(at_once, wide.size() - at);
    DWORD written = 0;
    ::WriteConsoleW(console, wide.data() + at, static_cast<DWORD>(count), &written, nullptr);
  }
}

std::atomic<bool> interrupt_seen = false;  // set by a thread of the system's
bool interrupts_kept = false;

// The interrupt key ends a reading a moment before the system's thread tells us.
void WAIT_FOR_INTERRUPT() {
  constexpr int longest = 200;  // milliseconds
  for (int i = 0; i < longest && !interrupt_seen; ++i) ::Sleep(1);
  interrupt_seen = true;
}

// A line as typed. False at the end of input, which Ctrl-Z at the start of a line means, and when
// the interrupt key ended the reading.
bool READ_CHARACTERS(HANDLE console, std::string& line) {
  constexpr wchar_t end_of_input = 0x1A;
  std::wstring typed;
  while (!typed.ends_with(L'\n')) {
    std::array<wchar_t, KVA_UTILITIES::LINE_LENGTH> part{};
    DWORD read = 0;
    ::SetLastError(ERROR_SUCCESS);
    if (::ReadConsoleW(console, part.data(), static_cast<DWORD>(part.size()), &read, nullptr) ==
            0 ||
        read == 0) {
      if (interrupts_kept && ::GetLastError() == ERROR_OPERATION_ABORTED) {
        WAIT_FOR_INTERRUPT();
        typed.clear();
      }
      break;
    }
    typed.append(part.data(), read);
  }
  line.clear();
  if (typed.empty() || typed.front() == end_of_input) return false;
  line = NARROW_TEXT(typed.substr(0, typed.find_first_of(L"\r\n")));
  return true;
}

}  // namespace

// Files are opened past the numbers of the standard streams, so none can be taken for one. Input
// is not read ahead: a command that shares it begins where we have stopped.
void FILL_STANDARD_STREAMS() {
  for (std::FILE* const stream : {stdin, stdout}) ::_setmode(::_fileno(stream), _O_BINARY);
  std::setvbuf(stdin, nullptr, _IONBF, 0);
}

// A terminal that shows the console in a window of its own takes no size from us: the console's
// window is hidden then.
void SIZE_CONSOLE() {
  constexpr int wanted_columns = 120;
  constexpr int wanted_rows = 80;
  constexpr int spare_columns = 2;
  constexpr int spare_rows = 7;
  constexpr int screens = 5;  // that can be scrolled through
  const auto state = BUFFER_OF(OUTPUT());
  if (!state || ::IsWindowVisible(::GetConsoleWindow()) == 0) return;
  const COORD largest = ::GetLargestConsoleWindowSize(OUTPUT());  // that the screen has room for
  const int columns = largest.X < wanted_columns ? largest.X - spare_columns : wanted_columns;
  const int rows = std::min(largest.Y - spare_rows, wanted_rows);
  if (columns < 1 || rows < 1) return;
  const auto set_window = [](int width, int height) {
    const SMALL_RECT window{0, 0, static_cast<SHORT>(width - 1), static_cast<SHORT>(height - 1)};
    ::SetConsoleWindowInfo(OUTPUT(), TRUE, &window);
  };
  // The window may at no time be larger than the buffer.
  set_window(std::min(columns, WINDOW_COLUMNS(*state)), std::min(rows, WINDOW_ROWS(*state)));
  ::SetConsoleScreenBufferSize(
      OUTPUT(), {static_cast<SHORT>(columns + 1), static_cast<SHORT>(screens * rows)});
  set_window(columns, rows);
}

int CONSOLE_COLUMNS() {
  const auto state = BUFFER_OF(OUTPUT());
  return state ? WINDOW_COLUMNS(*state) : 0;
}

void SET_CONSOLE_TITLE(std::string_view title) {
  if (IS_CONSOLE(OUTPUT())) ::SetConsoleTitleW(WIDE_TEXT(title).c_str());
}

void WRITE_CONSOLE(std::string_view text) {
  if (IS_CONSOLE(OUTPUT()))
    WRITE_CHARACTERS(OUTPUT(), text);
  else
    WRITE_STREAM(text);
}

bool READ_CONSOLE(std::string& line) {
  return IS_CONSOLE(INPUT()) ? READ_CHARACTERS(INPUT(), line) : READ_STREAM(line);
}

void SHOW_STATUS(std::string_view text) {
  const auto state = BUFFER_OF(ERRORS());
  if (!state) return;
  const COORD start{0, state->dwCursorPosition.Y};
  const int columns = std::max(state->dwSize.X - 1, 0);  // a full row would move the cursor on
  DWORD written = 0;
  ::FillConsoleOutputCharacterW(ERRORS(), L' ', static_cast<DWORD>(columns), start, &written);
  ::SetConsoleCursorPosition(ERRORS(), start);
  WRITE_CHARACTERS(ERRORS(), text.substr(0, static_cast<std::size_t>(columns)));
}

// ---- interrupt key ----

namespace {

// The key is dealt with; other events, such as the window being closed, are not ours.
BOOL WINAPI REMEMBER_INTERRUPT(DWORD event) {
  if (event != CTRL_C_EVENT) return FALSE;
  interrupt_seen = true;
  return TRUE;
}

}  // namespace

void LISTEN_FOR_INTERRUPT() {
  if (interrupts_kept) return;
  interrupt_seen = false;
  ::SetConsoleCtrlHandler(REMEMBER_INTERRUPT, TRUE);
}

void STOP_LISTENING() {
  if (!interrupts_kept) ::SetConsoleCtrlHandler(REMEMBER_INTERRUPT, FALSE);
}

void KEEP_INTERRUPTS() {
  if (!IS_CONSOLE(INPUT())) return;
  interrupts_kept = true;
  ::SetConsoleCtrlHandler(REMEMBER_INTERRUPT, TRUE);
}

void FORGET_INTERRUPT() {
  interrupt_seen = false;
}

// The system ends the reading by itself.
void LET_INTERRUPT_END_READING(bool /*on*/) {}

bool INTERRUPTED() {
  return interrupt_seen;
}

// ---- arguments and environment ----

// The arguments of main have been through the code page and may have lost characters.
std::vector<std::string> COMMAND_LINE(int /*argc*/, char** /*argv*/) {
  int count = 0;
  const std::unique_ptr<wchar_t*, HLOCAL(WINAPI*)(HLOCAL)> words(
      ::CommandLineToArgvW(::GetCommandLineW(), &count), ::LocalFree);
  std::vector<std::string> arguments;
  for (int i = 0; words && i < count; ++i) arguments.push_back(NARROW_TEXT(words.get()[i]));
  return arguments;
}

bool GET_ENVIRONMENT(const std::string& name, std::string& value) {
  std::vector<wchar_t> found(longest_path);
  ::SetLastError(ERROR_SUCCESS);
  const DWORD length =
      ::GetEnvironmentVariableW(WIDE_TEXT(name).c_str(), found.data(), longest_path);
  const bool set = length < longest_path && (length > 0 || ::GetLastError() == ERROR_SUCCESS);
  value = set ? NARROW_TEXT({found.data(), length}) : "";
  return set;
}

bool GET_HOME(std::string& path) {
  return GET_ENVIRONMENT("USERPROFILE", path);
}

// ---- files and directories ----

const std::string_view PATH_SEPARATORS = "\\/";

namespace {

// Whether windows can be seen: not so in a session over the network that has a console alone.
bool WINDOWS_ARE_SHOWN() {
  USEROBJECTFLAGS flags{};
  DWORD length = 0;
  return ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                     &length) != 0 &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

// Pairs of a name and a pattern, each ended by a null, and one more at the end.
std::wstring DIALOGUE_FILTER(const FILE_QUESTION& question) {
  const std::wstring null(1, L'\0');
  return WIDE_TEXT(question.DESCRIPTOR) + null + L"*." + WIDE_TEXT(question.EXT) + null +
         L"All Formats" + null + L"*.*" + null;
}

}  // namespace

FILE_CHOICE CHOOSE_FILE(const FILE_QUESTION& question, std::string& name) {
  name.clear();
  if (!IS_CONSOLE(INPUT()) || !IS_CONSOLE(OUTPUT()) || !WINDOWS_ARE_SHOWN())
    return FILE_CHOICE::NO_DIALOGUE;
  const std::wstring title = WIDE_TEXT(question.TITLE);
  const std::wstring filter = DIALOGUE_FILTER(question);
  const std::wstring folder = WIDE_TEXT(question.FOLDER);
  const std::wstring extension = WIDE_TEXT(question.EXT);
  std::vector<wchar_t> chosen(longest_path);
  OPENFILENAMEW dialogue{};
  dialogue.lStructSize = sizeof dialogue;
  dialogue.hwndOwner = ::GetConsoleWindow();
  dialogue.lpstrFilter = filter.c_str();
  dialogue.lpstrFile = chosen.data();
  dialogue.nMaxFile = longest_path;
  dialogue.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  dialogue.lpstrTitle = title.c_str();
  dialogue.lpstrDefExt = extension.c_str();
  dialogue.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (question.MUST_EXIST) dialogue.Flags |= OFN_FILEMUSTEXIST;
  if (::GetOpenFileNameW(&dialogue) == 0)
    return ::CommDlgExtendedError() == 0 ? FILE_CHOICE::CANCELLED : FILE_CHOICE::NO_DIALOGUE;
  name = NARROW_TEXT(chosen.data());
  return FILE_CHOICE::CHOSEN;
}

std::string GET_DIRECTORY() {
  std::vector<wchar_t> path(longest_path);
  const DWORD length = ::GetCurrentDirectoryW(longest_path, path.data());
  return length < longest_path ? NARROW_TEXT({path.data(), length}) : "";
}

bool CHANGE_DIRECTORY(const std::string& path) {
  return ::SetCurrentDirectoryW(WIDE_TEXT(path).c_str()) != 0;
}

bool MAKE_DIRECTORY(const std::string& path) {
  return ::CreateDirectoryW(WIDE_TEXT(path).c_str(), nullptr) != 0;
}

// ---- system commands ----

const std::string_view LISTING_COMMAND = "dir";

namespace {

struct CLOSE_HANDLE {
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using OWNED_HANDLE = std::unique_ptr<void, CLOSE_HANDLE>;

// Ctrl-C is for the command; we wait on.
BOOL WINAPI LEAVE_INTERRUPT_TO_COMMAND(DWORD event) {
  return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT ? TRUE : FALSE;
}

// A command may leave our console in a mode in which it does not echo.
struct CONSOLE_MODE {
  HANDLE STREAM;
  DWORD MODE = 0;
  bool KNOWN = false;
};

std::array<CONSOLE_MODE, 3> CONSOLE_MODES() {
  std::array<CONSOLE_MODE, 3> modes{{{INPUT()}, {OUTPUT()}, {ERRORS()}}};
  for (CONSOLE_MODE& mode : modes) mode.KNOWN = ::GetConsoleMode(mode.STREAM, &mode.MODE) != 0;
  return modes;
}

void RESTORE_CONSOLE_MODES(const std::array<CONSOLE_MODE, 3>& modes) {
  for (const CONSOLE_MODE& mode : modes)
    if (mode.KNOWN) ::SetConsoleMode(mode.STREAM, mode.MODE);
}

// Starts the command processor on our streams and waits for it. False when it cannot be started.
bool RUN_AND_WAIT(std::wstring command) {
  STARTUPINFOW streams{};
  streams.cb = sizeof streams;
  streams.dwFlags = STARTF_USESTDHANDLES;
  streams.hStdInput = INPUT();
  streams.hStdOutput = OUTPUT();
  streams.hStdError = ERRORS();
  for (const HANDLE stream : {INPUT(), OUTPUT(), ERRORS()})
    ::SetHandleInformation(stream, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  PROCESS_INFORMATION process{};
  if (::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                       &streams, &process) == 0)
    return false;
  const OWNED_HANDLE thread(process.hThread);
  const OWNED_HANDLE handle(process.hProcess);
  ::WaitForSingleObject(handle.get(), INFINITE);
  return true;
}

}  // namespace

void RUN_COMMAND_LINE(const std::string& line) {
  std::cout.flush();
  const std::array<CONSOLE_MODE, 3> modes = CONSOLE_MODES();
  std::string processor;
  if (!GET_ENVIRONMENT("COMSPEC", processor)) processor = "cmd.exe";
  ::SetConsoleCtrlHandler(LEAVE_INTERRUPT_TO_COMMAND, TRUE);
  // With /s the processor takes off the outer quotes alone.
  const bool started = RUN_AND_WAIT(WIDE_TEXT("\"" + processor + "\" /s /c \"" + line + "\""));
  ::SetConsoleCtrlHandler(LEAVE_INTERRUPT_TO_COMMAND, FALSE);
  if (!started) WRITE_CONSOLE("The system could not run the command\n");
  RESTORE_CONSOLE_MODES(modes);
}

}  // namespace KVA_CONSOLE
