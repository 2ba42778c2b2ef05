// Names of several files at once: words of a line, patterns, and the order in which a series is
// meant. Knows nothing of the files themselves.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KVA_UTILITIES {

// Names that blanks divide; double quotes keep one whole.
std::vector<std::string> FILE_WORDS(std::string_view text);

// Whether the name holds *, ?, [...], {P} or {T}.
bool IS_PATTERN(std::string_view name);

// The numbers that stand in a name where its pattern has {P} (GPa) and {T} (K).
struct PATTERN_NUMBERS {
  std::optional<float> P;
  std::optional<float> T;
};

// Whether the name fits the pattern: * any characters, ? one, [a-c] one of those, [!a] none of
// those, {P} and {T} a number such as 1.54 or 1p54, as long as it can be.
bool FITS_PATTERN(std::string_view pattern, std::string_view name, PATTERN_NUMBERS& numbers);

// Order of a series: numbers by their values with decimals, P0.5 before P2 before P10.
bool NATURAL_LESS(std::string_view a, std::string_view b);

}  // namespace KVA_UTILITIES
