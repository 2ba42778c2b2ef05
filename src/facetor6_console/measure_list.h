// The measures that the user has defined, and their values in the blocks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console_code/console/completion.h"
#include "src/kva_crystal_structures/measures/measure.h"

namespace FACETOR_CONSOLE {

using KVA_CRYSTAL_STRUCTURES::MEASURE;
using KVA_CRYSTAL_STRUCTURES::MEASURED_VALUE;

// In the order of definition. They last to the end of the run; what they are bound to follows the
// reference block.
inline std::vector<MEASURE> MEASURES;

// Defines or replaces; returns what is wrong, blank when it is kept.
std::string DEFINE_MEASURE(std::string_view name, std::string_view text);
// Removes; returns what is wrong, blank when it is gone.
std::string REMOVE_MEASURE(std::string_view name);
// Why there is no measure of that name; blank when there is one.
std::string MISSING_MEASURE(std::string_view name);

// What is told of a measure: its expression with symmetry codes, its value in the reference block,
// and the steps that were chosen.
std::vector<std::string> MEASURE_LINES(std::string_view name);

// Works the codes out anew when the reference block is another than before, or has changed, and
// tells which are other ones, and which measures do not fit it.
void FOLLOW_REFERENCE();

// Values of all measures in blocks with these numbers: by block, then by measure.
std::vector<std::vector<MEASURED_VALUE>> MEASURE_BLOCKS(const std::vector<int>& blocks);

// The same of expressions without atoms or names of measures, such as "V/ref(V)".
std::vector<std::vector<MEASURED_VALUE>> MEASURE_EXPRESSIONS(
    const std::vector<std::string>& expressions, const std::vector<int>& blocks);

// Warns of what is doubtful about the atoms that the measures are matched with in these blocks, and
// of results of CALC that a measure waits for.
void WARN_OF_MEASURED_MATCHES(const std::vector<int>& blocks);

// Words that may stand in an expression, for a prompt: labels, quantities, functions, names.
KVA_CONSOLE::LINE_HELP HELP_WITH_EXPRESSIONS();

}  // namespace FACETOR_CONSOLE
