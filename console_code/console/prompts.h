// Questions: lists, choices, yes or no, values, texts. Each takes its line from GET_INPUT. When the
// command is dropped the answer is none: an empty list, no choice, no, zeros, a blank text.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/table.h"

namespace KVA_CONSOLE {

// Whole numbers from 1 to nmax, with ranges such as 4,-7; pending text is used first. Fewer than
// asked for or none: the list ends.
std::vector<int> GET_LIST(std::string_view prompt, int nmax);

// A choice, from 1, out of list; 0 for none. Pending text is used first unless use_pending is
// false.
int GET_LIST_SELECTION(std::string_view title, std::span<const std::string_view> list,
                       bool use_pending = true);

// The entry that the first pending word begins: 0 none, -1 ambiguous. One fit takes the word off.
int GET_LIST_INSTRING(std::span<const std::string_view> list);

// The entry of all that the first pending word begins, when the word begins none that is offered;
// else blank.
std::string_view PENDING_ENTRY(std::span<const std::string_view> all,
                               std::span<const std::string_view> offered);

// One of two characters. control: its first character selects the default, "r" refuses a blank.
char GET_ANSWER(std::string_view prompt, char ay, char an, std::string_view control = "");
char GET_ANSWER_YN(std::string_view prompt, std::string_view default_answer = "");

// Position of word in INSTRING, ignoring case, 0 if absent.
int ANSWER(std::string_view word);

// One or two values; "nofeed" and "option" in control. A blank answer leaves zeros.
void GET_INPUT_VALUES(std::string_view prompt, float& v1, float* v2 = nullptr,
                      std::string_view control = "");

// As many values as v has room for; what is no number is skipped. Returns how many were found.
int GET_INPUT_NVALUES(std::string_view prompt, std::span<float> v);

// Minimum and maximum, in order; step if asked for.
void GET_INPUT_RANGE(std::string_view prompt, float& vmin, float& vmax, float* step = nullptr);

// A matrix of nrow by ncol, row by row. ierr is 0 when all rows were given, else -1.
void GET_INPUT_MATRIX(std::string_view prompt, int nrow, int ncol,
                      std::vector<std::vector<float>>& m, int& ierr);

// A text; "R" in control refuses a blank one.
std::string GET_INPUT_STRING(std::string_view prompt, std::string_view control = "");

}  // namespace KVA_CONSOLE
