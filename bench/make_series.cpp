// Writes a made-up series to standard output: gemmara_series KIND BLOCKS.
#include <iostream>

#include "bench/series.h"
#include "console_code/kva_utilities/numbers.h"

int main(int argc, char** argv) {
  KVA_UTILITIES::NUMBER blocks;
  if (argc != 3 || !KVA_UTILITIES::GETNUM(argv[2], blocks) || !blocks.WHOLE) {
    std::cerr << "usage: gemmara_series KIND BLOCKS, with KIND one of";
    for (std::string_view kind : BENCH::SERIES_KINDS()) std::cerr << ' ' << kind;
    std::cerr << '\n';
    return 1;
  }
  const std::string text = BENCH::SERIES_TEXT(argv[1], blocks.IVAL);
  std::cout << text;
  return text.empty() ? 1 : 0;
}
