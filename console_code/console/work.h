// Long work: how far it has come, and the interrupt key that stops it. What is shown never reaches
// the console's output or the log.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace KVA_CONSOLE {

// Work of a known number of steps, from its beginning to the end of the scope. Meanwhile the
// interrupt key does not end the program.
struct WORK {
  WORK(std::string_view words, int total);
  ~WORK();
  WORK(const WORK&) = delete;
  WORK& operator=(const WORK&) = delete;

  std::string WORDS;  // what is being done, as "Reading structures"; blank: nothing is shown
  int TOTAL = 0;      // steps in all
  bool SHOWN = false;
  bool STOPPED = false;                             // by the user
  std::chrono::steady_clock::time_point NEXT_SHOW;  // when the line is shown or renewed
};

// Called before each step with its number, the first being 1, and behind the last step once more
// with the number of that. False when the user has stopped the work; a running macro is stopped
// then as well.
bool GO_ON(WORK& work, int step);

}  // namespace KVA_CONSOLE
