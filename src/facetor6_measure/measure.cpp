// The dialogue of MEASURE.
#include "src/facetor6_measure/measure.h"

#include <string>
#include <string_view>

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_list/list.h"

namespace FACETOR_MEASURE {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

// "name = expression" defines, "name =" removes, "name" shows.
void ANSWER_DEFINITION(std::string_view line) {
  if (CONSOLE.CUT) return WRITE_OUT("*****The definition does not fit on a line: nothing is kept");
  const std::size_t sign = line.find('=');
  const std::string name = LEFT_ADJUST(line.substr(0, sign));
  std::string error;
  if (sign == std::string_view::npos) {
    error = MISSING_MEASURE(name);
  } else {
    const std::string text = LEFT_ADJUST(line.substr(sign + 1));
    error = text.empty() ? REMOVE_MEASURE(name) : DEFINE_MEASURE(name, text);
  }
  if (!error.empty()) return WRITE_OUT(AS_IT_IS(error));
  for (const std::string& told : MEASURE_LINES(name)) WRITE_OUT(AS_IT_IS(told));
}

}  // namespace

void RUN_MEASURE() {
  const bool on_the_line = CONSOLE.INSTRING_LEN > 0;
  do {
    if (!on_the_line)
      GET_INPUT("     Measure (name = expression, blank to end):", HELP_WITH_EXPRESSIONS());
    if (CONSOLE.INSTRING_LEN == 0) return FACETOR_LIST::FACETOR_LIST_MEASURES_USED();
    const std::string line = CONSOLE.INSTRING;
    CLEAR_INPUT();
    ANSWER_DEFINITION(line);
    KEEP_RECORDED({""});  // it stays defined when a later line is dropped
  } while (!on_the_line);
}

}  // namespace FACETOR_MEASURE
