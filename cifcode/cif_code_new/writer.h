// Pieces of a CIF as it is written: data names at column 1, values of scalar items from column 40.
// All write to an open unit. A line that the system refuses sets ERR_KVACIF.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/kva_utilities/aligned_rows.h"
#include "src/kva_crystal_structures/records.h"

namespace KVA_CIFNEW {

// A symmetry code held as a number, 12.555, as text, "12_555".
std::string WRITE_SYMCODE(float code);

// A value with its esd as one word. An esd below 0 has no meaning and is left out: the value
// counts.
std::string CIF_NUMBER(float value, float esd);

// A text as one word of a loop: in quotes where it would be cut or taken for something else.
std::string CIF_WORD(std::string_view text);

std::string IN_QUOTES(const std::string& word);

// True when the text, without quotes, would be read as something else.
bool IS_RESERVED(std::string_view text);

// One line, as it stands.
void WRITE_CIF_LINE(std::string_view line, int unit);

// Writes the lines that have gathered. The error is that of WRITE_CIF_LINE.
void WRITE_CIF_END(int unit);

// "loop_" with an empty line before it, and its data names, four blanks before each.
void WRITE_CIF_LOOP_HEAD(const std::vector<std::string>& names, int unit);

// Rows of a loop in aligned columns; blank cells as ".". A row that begins with "?" would be passed
// over on reading: such a word stands in quotes. Many rows are added first and written line by
// line.
void WRITE_CIF_ROWS(const std::vector<std::vector<std::string>>& rows, int unit);
void ADD_CIF_ROW(std::vector<std::string> row, KVA_UTILITIES::ALIGNED_ROWS& rows);

void WRITE_CIF_VALUE(std::string_view name, float value, float esd, int unit);

// "|" in text is a line break; a blank text writes "?".
void WRITE_CIF_TEXT(std::string_view name, std::string_view text, int unit);
void WRITE_CIF_CELL(const XTAL::CRYSTAL_CELL& cell, int unit);
void WRITE_CIF_AUDIT(std::string_view method, int unit);

// True when atom i stands in the file: it is in use, or shares the site of one that is.
bool IS_WRITTEN(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase, int i);

// The loops of atom types (where any has a charge), of sites and of anisotropic displacements.
void WRITE_CIF_ATOMS(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase, int unit);

}  // namespace KVA_CIFNEW
