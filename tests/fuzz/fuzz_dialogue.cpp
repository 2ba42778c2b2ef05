// Bytes as a macro for the whole program, with small files to read beside it. A line that begins
// with
// "=" stands for a definition of MEASURE that its other bytes choose, one with "==" for the command
// MEASURE with such a definition.
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "tests/fuzz/fuzz_support.h"
#include "tests/fuzz/measure_grammar.h"

int GEMMARA_MAIN(int argc, char** argv);

namespace {

constexpr int blank_lines = 20;

// Enough for a dialogue, and not for one that takes seconds.
constexpr std::size_t most_lines = 150;

std::string LINE_OF(std::string_view bytes) {
  if (bytes.starts_with("==")) return "MEASURE " + FUZZ::DEFINITION_OF(bytes.substr(2));
  if (bytes.starts_with("=")) return FUZZ::DEFINITION_OF(bytes.substr(1));
  return std::string(bytes);
}

std::string MACRO_OF(std::string_view bytes) {
  std::string macro;
  std::size_t start = 0;
  for (std::size_t line = 0; line < most_lines && start < bytes.size(); ++line) {
    const std::size_t end = std::min(bytes.find('\n', start), bytes.size());
    macro += LINE_OF(bytes.substr(start, end - start)) + "\n";
    start = end + 1;
  }
  return macro;
}

// What is shown of a measure, typed again, is the same measure.
void TYPE_MEASURES_AGAIN() {
  using namespace FACETOR_CONSOLE;
  if (NPHASES == 0) return;
  const std::size_t count = MEASURES.size();
  for (std::size_t k = 0; k < count; ++k) {
    const std::string shown = MEASURE_LINES(MEASURES[k].NAME).front();
    const std::size_t sign = shown.find('=');
    if (!MEASURES[k].PROBLEM.empty() || !DEFINE_MEASURE("again", shown.substr(sign + 2)).empty())
      continue;
    const std::vector<MEASURED_VALUE> values = MEASURE_BLOCKS({IREFERENCE}).front();
    const MEASURED_VALUE& first = values[k];
    const MEASURED_VALUE& second = values.back();
    FUZZ::MUST_HOLD(first.FOUND == second.FOUND, "a measure typed again has a value: " + shown);
    FUZZ::MUST_HOLD(!first.FOUND || first.VALUE == second.VALUE,
                    "a measure typed again has the same value: " + shown);
  }
}

void RUN_MACRO() {
  char program[] = "gemmara";
  char macro[] = "m.mcr";
  char* arguments[] = {program, macro, nullptr};
  GEMMARA_MAIN(2, arguments);
}

void PUT_DATA() {
  static const std::string mixed = FUZZ::PROJECT_FILE("tests/transcripts/data/mixed.cif");
  static const std::string required = FUZZ::PROJECT_FILE("tests/transcripts/data/required.cif");
  static const std::string quartz = FUZZ::PROJECT_FILE("tests/fuzz/seeds/cif/quartz_modes.cif");
  static const std::string output =
      FUZZ::PROJECT_FILE("tests/fuzz/seeds/crystal_output/primitive.out");
  FUZZ::PUT_FILE("a.cif", mixed);
  FUZZ::PUT_FILE("r.cif", required);
  FUZZ::PUT_FILE("q.cif", quartz);
  FUZZ::PUT_FILE("p.out", output);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FUZZ::START();
  PUT_DATA();
  FUZZ::PUT_FILE("m.mcr", MACRO_OF(FUZZ::TEXT_OF(data, size)));
  FUZZ::RUN_PROGRAM("LIST block\nEXIT\n", blank_lines, RUN_MACRO);
  FUZZ::WITH_CONSOLE("", 0, TYPE_MEASURES_AGAIN);
  return 0;
}
