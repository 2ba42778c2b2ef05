// What the reports share: which blocks are listed, and the columns of the tables with one column a
// ligand or a pair of ligands. For the reports only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console_code/console/work.h"
#include "src/facetor6_list/list.h"

namespace FACETOR_LIST {

// Places of the display order whose blocks are listed.
std::vector<int> LISTED_PLACES();

// True when the option text asks for esds.
bool WANTS_ESDS(std::string_view option);

// The first n characters (not bytes) of a label or name, without trailing blanks.
std::string FIRST_CHARACTERS(std::string_view text, int n);

// ---- tables with a column a ligand or pair, numbered from 1 ----

// First column of value m, of the label above it, and of what stands behind q values.
int VALUE_COLUMN(int m, bool esd);
int LABEL_COLUMN(int m, bool esd);
int END_COLUMN(int q, bool esd);

// Title of a table: words, the atom's label, the reference block's name.
std::string TABLE_TITLE(std::string_view words, int i);

// Head line with a label over each column.
std::string TABLE_HEAD(const std::vector<std::string>& labels, bool esd);

// Symmetry codes below the labels, with or without the word "symcodes:".
std::string CODE_LINE(const std::vector<std::string>& codes, bool esd, bool with_word);

// Line start of a row around reference centre i. False when the block has no match for the centre;
// the row then ends with the words for that.
bool START_CENTRE_ROW(int place, int i, bool esd, std::string& line);

// Value m as value(esd) or as a real in 8 columns; and the words for none.
void PUT_VALUE(std::string& line, int m, bool esd, float value, float std, int decimals);
void PUT_NO_VALUE(std::string& line, int m, bool esd);

// Label and symmetry code of ligand m of reference centre i.
std::string LIGAND_LABEL(int i, int m);
std::string LIGAND_CODE(int i, int m);

// Whether the user has stopped a list of many tables, which is told. step: the next table, from 1.
bool LIST_STOPPED(KVA_CONSOLE::WORK& work, int step);

// Numbers of the atoms of the reference block that are in use; calls a routine for each, unless the
// user stops the list.
std::vector<int> USED_ATOMS();
void FOR_EACH_USED_ATOM(void (*report)(int, std::string_view), std::string_view option);

}  // namespace FACETOR_LIST
