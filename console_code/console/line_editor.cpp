// Editing a line at a terminal with libedit. Nothing else in the program uses that library, which
// is loaded at start: where it is not installed, lines are read plainly. Nothing here reaches the
// log or a recorded macro.
#include "console_code/console/line_editor.h"

#include <dlfcn.h>  // for dlopen, dlsym
#include <histedit.h>
#include <langinfo.h>  // for nl_langinfo_l
#include <locale.h>    // for newlocale, uselocale

#include <algorithm>  // for max, min
#include <cerrno>
#include <cstdio>
#include <cstdlib>  // for mbstowcs
#include <new>      // for bad_alloc

#include "console_code/console/history.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

// ---- the library ----

// What it is called on Debian, on other systems of ELF, and on those of Mach-O.
constexpr const char* library_names[] = {"libedit.so.2", "libedit.so.0", "libedit.3.dylib"};

// Its routines, each under its own name without el_.
struct {
  decltype(&::el_init) INIT;
  decltype(&::el_get) GET;
  decltype(&::el_set) SET;
  decltype(&::el_source) SOURCE;
  decltype(&::el_resize) RESIZE;
  decltype(&::el_gets) GETS;
  decltype(&::el_line) LINE;
  decltype(&::el_insertstr) INSERTSTR;
  decltype(&::el_deletestr) DELETESTR;
  decltype(&::history_init) HISTORY_INIT;
  decltype(&::history) HISTORY;
} libedit;

template <typename ROUTINE>
bool FIND_ROUTINE(void* library, const char* name, ROUTINE& routine) {
  routine = reinterpret_cast<ROUTINE>(::dlsym(library, name));
  return routine != nullptr;
}

bool LOAD_LIBRARY() {
  void* library = nullptr;
  for (const char* const name : library_names)
    if (library == nullptr) library = ::dlopen(name, RTLD_NOW);
  return library != nullptr && FIND_ROUTINE(library, "el_init", libedit.INIT) &&
         FIND_ROUTINE(library, "el_get", libedit.GET) &&
         FIND_ROUTINE(library, "el_set", libedit.SET) &&
         FIND_ROUTINE(library, "el_source", libedit.SOURCE) &&
         FIND_ROUTINE(library, "el_resize", libedit.RESIZE) &&
         FIND_ROUTINE(library, "el_gets", libedit.GETS) &&
         FIND_ROUTINE(library, "el_line", libedit.LINE) &&
         FIND_ROUTINE(library, "el_insertstr", libedit.INSERTSTR) &&
         FIND_ROUTINE(library, "el_deletestr", libedit.DELETESTR) &&
         FIND_ROUTINE(library, "history_init", libedit.HISTORY_INIT) &&
         FIND_ROUTINE(library, "history", libedit.HISTORY);
}

// ---- what is edited ----

// They live to the end of the process: to end them would throw away what was typed ahead.
EditLine* editor = nullptr;
History* history_lines = nullptr;
bool editor_works = false;

std::string last_line;  // of the history

// Of the line that is being edited, for the routines that libedit calls.
std::string shown_prompt;
const LINE_HELP* line_help = nullptr;

// ---- characters ----

locale_t terminal_locale = nullptr;

// That of the user; where it knows ASCII alone, UTF-8, as terminals have it.
locale_t FIND_TERMINAL_LOCALE() {
  constexpr std::string_view ascii = "ANSI_X3.4-1968";
  const locale_t usual = ::newlocale(LC_CTYPE_MASK, "", nullptr);
  if (usual != nullptr && ::nl_langinfo_l(CODESET, usual) != ascii) return usual;
  const locale_t utf_8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (utf_8 == nullptr) return usual;
  if (usual != nullptr) ::freelocale(usual);
  return utf_8;
}

// The characters are those of the terminal to the end of the scope, and for this file alone:
// elsewhere in the program a text is its bytes.
struct TERMINAL_CHARACTERS {
  TERMINAL_CHARACTERS() : BEFORE(::uselocale(terminal_locale)) {}
  ~TERMINAL_CHARACTERS() { ::uselocale(BEFORE); }
  TERMINAL_CHARACTERS(const TERMINAL_CHARACTERS&) = delete;
  TERMINAL_CHARACTERS& operator=(const TERMINAL_CHARACTERS&) = delete;

  locale_t BEFORE;  // what holds outside the scope
};

constexpr int no_characters = -1;

// How many characters the bytes are; no_characters when they are none of the terminal's.
int CHARACTERS(const std::string& text) {
  return static_cast<int>(std::mbstowcs(nullptr, text.c_str(), 0));
}

// ---- TAB ----

void SHOW_CANDIDATES(const std::vector<std::string>& candidates) {
  constexpr std::size_t most_shown = 200;
  constexpr int gap = 2;
  constexpr int usual_columns = 80;
  const std::size_t shown = std::min(candidates.size(), most_shown);
  int longest = 0;
  for (std::size_t i = 0; i < shown; ++i) longest = std::max(longest, LENTRIM(candidates[i]));
  const int width = longest + gap;
  const int columns = CONSOLE_COLUMNS() > 0 ? CONSOLE_COLUMNS() : usual_columns;
  const auto in_row = static_cast<std::size_t>(std::max(columns / width, 1));
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    text += i % in_row == 0 ? "\n" : "";
    text += TEXT_COLUMNS(candidates[i], width);
  }
  if (shown < candidates.size())
    text += "\n... and " + std::to_string(candidates.size() - shown) + " more";
  WRITE_CONSOLE(text + "\n");
}

unsigned char COMPLETE_LINE(EditLine* line) {
  const LineInfo* const info = libedit.LINE(line);
  const std::string before(info->buffer, info->cursor);
  const COMPLETION completion = COMPLETE(before, *line_help);
  const std::string typed = before.substr(before.size() - completion.TYPED);
  if (completion.CANDIDATES.empty() || CHARACTERS(completion.TEXT) == no_characters)
    return CC_ERROR;
  if (completion.TEXT == typed && completion.CANDIDATES.size() == 1) return CC_ERROR;
  if (completion.TEXT == typed) {
    SHOW_CANDIDATES(completion.CANDIDATES);
    return CC_REDISPLAY;
  }
  libedit.DELETESTR(line, CHARACTERS(typed));
  libedit.INSERTSTR(line, completion.TEXT.c_str());
  return CC_REFRESH;
}

// The library that calls it knows no exceptions.
unsigned char ADD_COMPLETION(EditLine* line, int /*key*/) {
  try {
    return COMPLETE_LINE(line);
  } catch (const std::bad_alloc&) {
    return CC_ERROR;
  }
}

// ---- the editor ----

char* PROMPT_OF_LINE(EditLine* /*line*/) {
  return shown_prompt.data();
}

// One that it has no description of, or that cannot clear the rest of a line, shows a muddle.
bool TERMINAL_CAN_EDIT() {
  constexpr char clear_rest[] = "ce";
  char* sequence = nullptr;
  return libedit.GET(editor, EL_GETTC, clear_rest, &sequence, nullptr) == 0 && sequence != nullptr;
}

void SET_KEYS() {
  constexpr char tab_routine[] = "add-completion";
  libedit.SET(editor, EL_EDITOR, "emacs");
  libedit.SET(editor, EL_ADDFN, tab_routine, "Complete the word before the cursor", ADD_COMPLETION);
  libedit.SET(editor, EL_BIND, "^I", tab_routine, nullptr);
  libedit.SET(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  libedit.SET(editor, EL_BIND, "^W", "ed-delete-prev-word", nullptr);
  // Home and End as some terminals send them, whatever their description says.
  libedit.SET(editor, EL_BIND, "\033[1~", "ed-move-to-beg", nullptr);
  libedit.SET(editor, EL_BIND, "\033[4~", "ed-move-to-end", nullptr);
}

void PUT_IN_HISTORY(const std::string& line) {
  HistEvent event{};
  last_line = line;
  // A line in other characters would stand in the way to those before it.
  if (CHARACTERS(line) != no_characters)
    libedit.HISTORY(history_lines, &event, H_ENTER, line.c_str());
}

void START_HISTORY() {
  HistEvent event{};
  history_lines = libedit.HISTORY_INIT();
  if (history_lines == nullptr) return;
  libedit.HISTORY(history_lines, &event, H_SETSIZE, static_cast<int>(HISTORY_LENGTH));
  libedit.SET(editor, EL_HIST, libedit.HISTORY, history_lines);
  for (const std::string& line : READ_HISTORY()) PUT_IN_HISTORY(line);
}

}  // namespace

void START_LINE_EDITOR() {
  if (editor != nullptr || !AT_TERMINAL() || !LOAD_LIBRARY()) return;
  // The library's own messages would stand in the dialogue.
  std::FILE* const unseen = std::fopen("/dev/null", "we");
  if (unseen == nullptr) return;
  terminal_locale = FIND_TERMINAL_LOCALE();
  const TERMINAL_CHARACTERS scope;
  editor = libedit.INIT("gemmara", stdin, stdout, unseen);
  if (editor == nullptr || !TERMINAL_CAN_EDIT()) return;
  SET_KEYS();
  START_HISTORY();
  libedit.SET(editor, EL_PROMPT, PROMPT_OF_LINE);
  libedit.SET(editor, EL_SIGNAL, 1);  // a signal finds the terminal as the program found it
  libedit.SOURCE(editor, nullptr);    // the user's own keys
  editor_works = true;
}

bool EDITING_POSSIBLE(const std::string& prompt) {
  if (!editor_works) return false;
  const TERMINAL_CHARACTERS scope;
  return CHARACTERS(prompt) != no_characters;
}

namespace {

// What has been typed of a line that did not come to its end.
std::string EDITED_TEXT() {
  const LineInfo* const info = libedit.LINE(editor);
  return {info->buffer, info->lastchar};
}

}  // namespace

bool EDIT_LINE(const std::string& prompt, const LINE_HELP& help, std::string& line) {
  const TERMINAL_CHARACTERS scope;
  shown_prompt = prompt;
  line_help = &help;
  libedit.RESIZE(editor);
  const char* typed = nullptr;
  int count = 0;
  LET_INTERRUPT_END_READING(true);
  const bool begun = !INTERRUPTED();
  while (!INTERRUPTED()) {
    typed = libedit.GETS(editor, &count);
    if (typed != nullptr || count >= 0 || errno != EINTR) break;
  }
  LET_INTERRUPT_END_READING(false);
  line_help = nullptr;
  if (INTERRUPTED()) {
    line = begun ? EDITED_TEXT() : "";
    WRITE_CONSOLE("^C");  // as the terminal itself shows the key where no line is edited
    return false;
  }
  line = typed != nullptr && count > 0 ? typed : "";
  const bool read = !line.empty();
  if (line.ends_with('\n')) line.pop_back();
  return read;
}

void REMEMBER_LINE(std::string_view line) {
  const std::string kept = LEFT_ADJUST(line);
  if (history_lines == nullptr || kept.empty() || kept == last_line) return;
  const TERMINAL_CHARACTERS scope;
  PUT_IN_HISTORY(kept);
  ADD_TO_HISTORY(kept);
}

}  // namespace KVA_CONSOLE
