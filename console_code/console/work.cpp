// The line that tells how far a long work has come, and its interruption.
#include "console_code/console/work.h"

#include "console_code/console/input.h"
#include "console_code/console_win.h"

namespace KVA_CONSOLE {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds before_first_show{500};
constexpr std::chrono::milliseconds between_shows{200};

void SHOW(WORK& work, int step) {
  if (work.WORDS.empty() || steady_clock::now() < work.NEXT_SHOW) return;
  work.SHOWN = true;
  work.NEXT_SHOW = steady_clock::now() + between_shows;
  SHOW_STATUS(work.WORDS + " " + std::to_string(step) + " of " + std::to_string(work.TOTAL));
}

}  // namespace

WORK::WORK(std::string_view words, int total)
    : WORDS(words), TOTAL(total), NEXT_SHOW(steady_clock::now() + before_first_show) {
  LISTEN_FOR_INTERRUPT();
}

WORK::~WORK() {
  if (SHOWN) SHOW_STATUS("");
  STOP_LISTENING();
  if (STOPPED) FORGET_INTERRUPT();
}

bool GO_ON(WORK& work, int step) {
  SHOW(work, step);
  if (!INTERRUPTED()) return true;
  STOP_MACRO();
  work.STOPPED = true;
  return false;
}

}  // namespace KVA_CONSOLE
