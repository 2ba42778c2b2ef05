// The data file for fitting equations of state: its header, its columns, its rows.
#include <algorithm>  // for any_of, find_if

#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_exportfiles/exportfiles.h"

namespace FACETOR_EXPORTFILES {

using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;
using XTAL::CRYSTAL_SYSTEM;
using XTAL::SYSTEM;

namespace {

// ---- columns by crystal system ----

struct SYSTEM_COLUMNS {
  CRYSTAL_SYSTEM OF;
  std::string_view FORMAT;             // behind "Format 1 T sigT P sigP"
  std::vector<EOS_COLUMN> PARAMETERS;  // cell parameters in the file
};

const std::array<SYSTEM_COLUMNS, 10> system_columns{{
    {{SYSTEM::TRICLINIC},
     " a siga b sigb c sigc alpha sigal beta sigbe gamma sigga v sigv",
     {EOS_A, EOS_B, EOS_C, EOS_ALPHA, EOS_BETA, EOS_GAMMA}},
    {{SYSTEM::MONOCLINIC, 'a'},
     " a siga b sigb c sigc alpha sigal v sigv",
     {EOS_A, EOS_B, EOS_C, EOS_ALPHA}},
    {{SYSTEM::MONOCLINIC, 'b'},
     " a siga b sigb c sigc beta sigbe v sigv",
     {EOS_A, EOS_B, EOS_C, EOS_BETA}},
    {{SYSTEM::MONOCLINIC, 'c'},
     " a siga b sigb c sigc gamma sigga v sigv",
     {EOS_A, EOS_B, EOS_C, EOS_GAMMA}},
    {{SYSTEM::ORTHORHOMBIC}, "a siga b sigb c sigc v sigv", {EOS_A, EOS_B, EOS_C}},
    {{SYSTEM::TETRAGONAL}, " a siga c sigc  v sigv", {EOS_A, EOS_C}},
    {{SYSTEM::TRIGONAL}, " a siga c sigc  v sigv", {EOS_A, EOS_C}},
    {{SYSTEM::HEXAGONAL}, " a siga c sigc  v sigv", {EOS_A, EOS_C}},
    {{SYSTEM::CUBIC}, " v sigv", {}},
    {volumes_of_polyhedra, " v sigv", {}},
}};

// A monoclinic cell that does not show its unique axis counts as unique a.
const SYSTEM_COLUMNS& COLUMNS_OF(CRYSTAL_SYSTEM system) {
  if (system == CRYSTAL_SYSTEM{SYSTEM::MONOCLINIC}) system.UNIQUE_AXIS = 'a';
  return *std::find_if(system_columns.begin(), system_columns.end(),
                       [&](const SYSTEM_COLUMNS& columns) { return columns.OF == system; });
}

// ---- rows ----

struct NUMBER_FORMAT {
  int WIDTH;
  int DECIMALS;
};

NUMBER_FORMAT VALUE_FORMAT(EOS_COLUMN column) {
  switch (column) {
    case EOS_T:
      return {7, 1};
    case EOS_P:
      return {8, 3};
    case EOS_A:
    case EOS_B:
    case EOS_C:
      return {9, 4};
    case EOS_V:
      return {10, 4};
    default:
      return {9, 3};
  }
}

NUMBER_FORMAT ESD_FORMAT(EOS_COLUMN column) {
  return column == EOS_T ? NUMBER_FORMAT{4, 1} : VALUE_FORMAT(column);
}

std::string CELL_TEXT(float value, NUMBER_FORMAT format) {
  return LEFT_ADJUST(REAL_COLUMNS(value, format.WIDTH, format.DECIMALS));
}

std::vector<std::string> ROW_TEXTS(const EOS_POINT& point, const SYSTEM_COLUMNS& columns) {
  std::vector<EOS_COLUMN> written{EOS_T, EOS_P};
  written.insert(written.end(), columns.PARAMETERS.begin(), columns.PARAMETERS.end());
  written.push_back(EOS_V);
  std::vector<std::string> row;
  for (EOS_COLUMN column : written) {
    row.push_back(CELL_TEXT(point[column].VALUE, VALUE_FORMAT(column)));
    row.push_back(CELL_TEXT(point[column].ESD, ESD_FORMAT(column)));
  }
  return row;
}

// ---- the file ----

std::vector<std::string> HEADER_LINES(const CRYSTAL_SYSTEM& system, std::string_view title) {
  std::vector<std::string> lines{" ", "Title Datafile created by Gemmara on " + DATE_KVA()};
  if (!title.empty()) {
    lines.push_back(" ");
    lines.push_back("#   " + std::string(title));
  }
  lines.insert(lines.end(), {" ", "Tscale K", "Pscale GPa"});
  const bool volumes = system == volumes_of_polyhedra;
  lines.push_back(volumes ? "Vscale A^3/polyhedron" : "Vscale A^3/cell");
  if (!volumes) lines.push_back("System " + U_CASE(SYSTEM_TEXT(system)));
  lines.push_back(" ");
  lines.push_back("Format 1 T sigT P sigP" + std::string(COLUMNS_OF(system).FORMAT));
  return lines;
}

// False when the system refused a line.
bool WRITE_LINES(int unit, const std::vector<std::string>& lines) {
  for (const std::string& line : lines)
    if (!WRITE_UNIT(unit, line)) return false;
  return true;
}

bool HAS_STARS(const std::vector<std::string>& lines) {
  return std::any_of(lines.begin(), lines.end(),
                     [](const std::string& line) { return line.find('*') != std::string::npos; });
}

}  // namespace

void WRITE_EOSDAT(const std::vector<EOS_POINT>& points, const CRYSTAL_SYSTEM& system,
                  std::string_view title) {
  FILE_RECORD file;
  file.DESCRIPTOR = "Kompressa datafile";
  file.EXT = "dat";
  file.UNIT = DATA_UNIT;
  OPEN_FILE(file, "APPEND CONF");
  if (!file.OPEN) return;

  std::vector<std::vector<std::string>> rows;
  for (const EOS_POINT& point : points) rows.push_back(ROW_TEXTS(point, COLUMNS_OF(system)));
  const std::vector<std::string> data = WRITE_COLS(rows);
  const bool written =
      WRITE_LINES(file.UNIT, HEADER_LINES(system, title)) && WRITE_LINES(file.UNIT, data);
  CLOSE_FILE(file);
  if (written)
    WRITE_OUT("     File header   and " + INTEGER_COLUMNS(static_cast<int>(points.size()), 3) +
              " data points written to the file|");
  if (!written || HAS_STARS(data)) WARNING("Errors on writing the file: check it carefully");
}

}  // namespace FACETOR_EXPORTFILES
