// Bytes as a macro for the whole program, with small files to read beside it.
#include "tests/fuzz/fuzz_support.h"

int GEMMARA_MAIN(int argc, char** argv);

namespace {

constexpr int blank_lines = 20;

// Enough for a dialogue, and not for one that takes seconds.
constexpr std::size_t most_lines = 150;

std::string FIRST_LINES(const std::string& text) {
  std::size_t end = 0;
  for (std::size_t line = 0; line < most_lines && end < text.size(); ++line)
    end = std::min(text.find('\n', end), text.size() - 1) + 1;
  return text.substr(0, end);
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
  FUZZ::PUT_FILE("m.mcr", FIRST_LINES(FUZZ::TEXT_OF(data, size)));
  FUZZ::RUN_PROGRAM("LIST block\nEXIT\n", blank_lines, RUN_MACRO);
  return 0;
}
