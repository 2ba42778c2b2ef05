// What the reports share: which blocks are listed, and the columns of the tables with one column a
// ligand or a pair of ligands. For the reports only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "src/facetor6_console/parameters.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

// Places of the display order whose blocks are listed: all, or those in use.
std::vector<int> LISTED_PLACES(bool all = FACETOR_CONSOLE::RUN.LIST_ALL_BLOCKS);

// So many numbers of a list, or what is left of it, from a place on.
std::vector<int> PART_OF(const std::vector<int>& list, std::size_t first, std::size_t length);

// True when the option text asks for esds.
bool WANTS_ESDS(std::string_view option);

// The first n characters (not bytes) of a label or name, without trailing blanks.
std::string FIRST_CHARACTERS(std::string_view text, int n);

// ---- tables with a column a ligand or pair, numbered from 1 ----

// Places of value m and of the label above it; and the first column behind q values.
REPORT_COLUMN VALUE_COLUMN(int m, bool esd);
int LABEL_COLUMN(int m, bool esd);
int END_COLUMN(int q, bool esd);

// Title of a table: words, the atom's label, the reference block's name.
std::string TABLE_TITLE(std::string_view words, int i);

// Start of the row of a place around reference centre i, with room for so many cells; with a
// sentence when the block has no match for the centre.
REPORT_ROW START_CENTRE_ROW(int place, int i, std::size_t cells);

// Label and symmetry code of ligand m of reference centre i.
std::string LIGAND_LABEL(int i, int m);
std::string LIGAND_CODE(int i, int m);

// Numbers of the atoms of the reference block that are in use.
std::vector<int> USED_ATOMS();

}  // namespace FACETOR_LIST
