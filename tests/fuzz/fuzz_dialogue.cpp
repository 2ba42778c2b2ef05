// Bytes as a macro for the whole program, with small files to read beside it. A line that begins
// with "=" stands for a definition of MEASURE that its other bytes choose, one with "==" for the
// command MEASURE with such a definition. A macro whose first line begins with "FILES" is a session
// by the grammar of tests/judges/random_sessions.py, which has written it: the line names its files
// in GEMMARA_FUZZ_FILES. Lines of sessions are changed, moved and put together as wholes, and
// behind CLEAR a session must go on as in a fresh program.
#include <cstdlib>
#include <cstring>  // for memcpy
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <system_error>
#include <vector>

#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/reports.h"
#include "tests/fuzz/fuzz_support.h"
#include "tests/fuzz/measure_grammar.h"

int GEMMARA_MAIN(int argc, char** argv);
void GEMMARA_GO_ON(const std::string& macro);

// libFuzzer's own change of bytes.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned int seed);
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t first_size,
                                                 const std::uint8_t* second,
                                                 std::size_t second_size, std::uint8_t* data,
                                                 std::size_t most, unsigned int seed);

namespace {

using namespace FACETOR_CONSOLE;
using namespace FACETOR_LIST;

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

// A row of a report has no more cells than there are columns.
void LOOK_AT_ROWS() {
  if (NPHASES == 0) return;
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES) {
    if (!IS_OFFERED(entry.CODE)) continue;
    for (const REPORT& report : REPORTS_OF(entry.CODE, USED_ATOMS(), LISTED_PLACES(true)))
      for (const REPORT_ROW& row : report.ROWS)
        FUZZ::MUST_HOLD(row.CELLS.size() <= report.COLUMNS.size(),
                        "a row is no longer than its head: " + report.QUANTITY);
  }
}

// What is shown of a measure, typed again, is the same measure.
void TYPE_MEASURES_AGAIN() {
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

// ---- sessions ----

constexpr std::string_view files_word = "FILES ";

bool IS_SESSION(std::string_view bytes) {
  return bytes.starts_with(files_word);
}

// The files that the first line names: f1.cif, f2.out and so on, macros by their own names.
void PUT_FILES_OF(std::string_view bytes) {
  const char* const folder = std::getenv("GEMMARA_FUZZ_FILES");
  if (folder == nullptr) return;
  std::istringstream names(std::string(bytes.substr(files_word.size(), bytes.find('\n'))));
  int number = 0;
  for (std::string name; names >> name && number < 5;) {
    const std::string path = std::string(folder) + "/" + name;
    std::error_code none;
    if (name.find('/') != std::string::npos || !std::filesystem::is_regular_file(path, none))
      return;
    std::ifstream file(path, std::ios::binary);
    const std::string extension = name.substr(name.rfind('.') + 1);
    if (extension != "mcr") name = "f" + std::to_string(++number) + "." + extension;
    FUZZ::PUT_FILE(name, std::string(std::istreambuf_iterator<char>(file), {}));
  }
}

void PUT_INPUT(std::string_view bytes) {
  PUT_DATA();
  if (!IS_SESSION(bytes)) return FUZZ::PUT_FILE("m.mcr", MACRO_OF(bytes));
  PUT_FILES_OF(bytes);
  bytes.remove_prefix(std::min(bytes.find('\n') + 1, bytes.size()));
  FUZZ::PUT_FILE("m.mcr", "CLEAR\n" + MACRO_OF(bytes));
}

void GO_ON_WITH_MACRO() {
  GEMMARA_GO_ON("m.mcr");
}

std::string PLAYED(std::string_view bytes, FUZZ::ROUTINE program) {
  PUT_INPUT(bytes);
  return FUZZ::RUN_PROGRAM("LIST block\nEXIT\n", blank_lines, program);
}

// The session once more, behind itself and in a fresh program.
void PLAY_BEHIND_CLEAR(std::string_view bytes) {
  FUZZ::START_WITH_BLOCKS();
  const std::string behind = PLAYED(bytes, GO_ON_WITH_MACRO);
  const std::string files_behind = FUZZ::FILES_THERE();
  FUZZ::START();
  const std::string fresh = PLAYED(bytes, GO_ON_WITH_MACRO);
  FUZZ::MUST_HOLD(behind == fresh,
                  "behind CLEAR it says\n" + behind + "\nwhat a fresh program says\n" + fresh);
  FUZZ::MUST_HOLD(files_behind == FUZZ::FILES_THERE(), "behind CLEAR it writes the same files");
}

// ---- changes of whole lines ----

using LINES = std::vector<std::string_view>;  // each with its end

LINES LINES_IN(std::string_view bytes) {
  LINES lines;
  while (!bytes.empty()) {
    const std::size_t length = std::min(bytes.find('\n'), bytes.size() - 1) + 1;
    lines.push_back(bytes.substr(0, length));
    bytes.remove_prefix(length);
  }
  return lines;
}

// Puts as many lines as there is room for; how many bytes these are.
std::size_t PUT_LINES(const LINES& lines, std::uint8_t* data, std::size_t most) {
  std::string text;
  for (const std::string_view line : lines) text += line;
  const std::size_t size = std::min(text.size(), most);
  std::memcpy(data, text.data(), size);
  return size;
}

std::string_view VIEW_OF(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Some lines of a text go, come twice, or to another place.
LINES WITH_LINES_MOVED(LINES lines, std::minstd_rand& random) {
  constexpr std::size_t longest = 12;
  const auto below = [&](std::size_t n) { return random() % n; };
  const auto at = [&](std::size_t place) {
    return lines.begin() + static_cast<std::ptrdiff_t>(place);
  };
  const std::size_t first = below(lines.size());
  const std::size_t count = 1 + below(std::min(longest, lines.size() - first));
  const LINES part(at(first), at(first + count));
  const std::size_t kind = below(3);
  if (kind != 1) lines.erase(at(first), at(first + count));
  if (kind != 0) lines.insert(at(below(lines.size() + 1)), part.begin(), part.end());
  return lines;
}

}  // namespace

// The first line stays, and so do the ends of lines where bytes of one are changed.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                    unsigned int seed) {
  std::minstd_rand random(seed);
  const std::string text = FUZZ::TEXT_OF(data, size);
  LINES lines = LINES_IN(text);
  if (!IS_SESSION(text) || lines.size() < 3 || random() % 4 == 0)
    return LLVMFuzzerMutate(data, size, most);
  LINES rest(lines.begin() + 1, lines.end());
  std::string changed;
  if (random() % 3 == 0) {
    std::string_view& line = rest[random() % rest.size()];
    changed = line.substr(0, line.size() - 1);
    const std::size_t length = changed.size();
    changed.resize(length + 20);
    changed.resize(
        LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(changed.data()), length, changed.size()));
    changed += '\n';
    line = changed;
  } else {
    rest = WITH_LINES_MOVED(rest, random);
  }
  rest.insert(rest.begin(), lines.front());
  return PUT_LINES(rest, data, most);
}

// The beginning of the first and the end of the second, cut between lines.
std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t first_size,
                                      const std::uint8_t* second, std::size_t second_size,
                                      std::uint8_t* data, std::size_t most, unsigned int seed) {
  std::minstd_rand random(seed);
  LINES lines = LINES_IN(VIEW_OF(first, first_size));
  const LINES others = LINES_IN(VIEW_OF(second, second_size));
  lines.resize(lines.empty() ? 0 : 1 + random() % lines.size());
  const std::size_t from = others.empty() ? 0 : random() % others.size();
  lines.insert(lines.end(), others.begin() + static_cast<std::ptrdiff_t>(from), others.end());
  return PUT_LINES(lines, data, most);
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes = FUZZ::TEXT_OF(data, size);
  FUZZ::START();
  PLAYED(bytes, RUN_MACRO);
  FUZZ::WITH_CONSOLE("", 0, TYPE_MEASURES_AGAIN);
  FUZZ::WITH_CONSOLE("", 0, LOOK_AT_ROWS);
  if (IS_SESSION(bytes)) PLAY_BEHIND_CLEAR(bytes);
  return 0;
}
