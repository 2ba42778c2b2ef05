// The data file for fitting equations of state: its header, its columns, its rows.
#include <algorithm>  // for find_if
#include <cmath>      // for abs, isfinite, nearbyint, pow

#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/aligned_rows.h"
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
  std::string_view FORMAT;               // behind "Format 1 T sigT P sigP"
  int COUNT;                             // of cell parameters in the file
  std::array<EOS_COLUMN, 6> PARAMETERS;  // these
};

constexpr std::array<SYSTEM_COLUMNS, 10> system_columns{{
    {{SYSTEM::TRICLINIC},
     " a siga b sigb c sigc alpha sigal beta sigbe gamma sigga v sigv",
     6,
     {EOS_A, EOS_B, EOS_C, EOS_ALPHA, EOS_BETA, EOS_GAMMA}},
    {{SYSTEM::MONOCLINIC, 'a'},
     " a siga b sigb c sigc alpha sigal v sigv",
     4,
     {EOS_A, EOS_B, EOS_C, EOS_ALPHA}},
    {{SYSTEM::MONOCLINIC, 'b'},
     " a siga b sigb c sigc beta sigbe v sigv",
     4,
     {EOS_A, EOS_B, EOS_C, EOS_BETA}},
    {{SYSTEM::MONOCLINIC, 'c'},
     " a siga b sigb c sigc gamma sigga v sigv",
     4,
     {EOS_A, EOS_B, EOS_C, EOS_GAMMA}},
    {{SYSTEM::ORTHORHOMBIC}, "a siga b sigb c sigc v sigv", 3, {EOS_A, EOS_B, EOS_C}},
    {{SYSTEM::TETRAGONAL}, " a siga c sigc  v sigv", 2, {EOS_A, EOS_C}},
    {{SYSTEM::TRIGONAL}, " a siga c sigc  v sigv", 2, {EOS_A, EOS_C}},
    {{SYSTEM::HEXAGONAL}, " a siga c sigc  v sigv", 2, {EOS_A, EOS_C}},
    {{SYSTEM::CUBIC}, " v sigv", 0, {}},
    {volumes_of_polyhedra, " v sigv", 0, {}},
}};

// A monoclinic cell that does not show its unique axis counts as unique a.
const SYSTEM_COLUMNS& COLUMNS_OF(CRYSTAL_SYSTEM system) {
  if (system == CRYSTAL_SYSTEM{SYSTEM::MONOCLINIC}) system.UNIQUE_AXIS = 'a';
  return *std::find_if(system_columns.begin(), system_columns.end(),
                       [&](const SYSTEM_COLUMNS& columns) { return columns.OF == system; });
}

// ---- rows ----

// Decimals of a column whose esds are not too small for them.
int USUAL_DECIMALS(EOS_COLUMN column) {
  switch (column) {
    case EOS_T:
      return 1;
    case EOS_A:
    case EOS_B:
    case EOS_C:
    case EOS_V:
      return 4;
    default:
      return 3;
  }
}

// Units of the last of some decimals, as they show.
double UNITS(float esd, int decimals) {
  return std::nearbyint(static_cast<double>(esd) * std::pow(10.0, decimals));
}

// The usual decimals show an esd that is at least two units of the last one, or just one. Of a
// smaller one, two digits are shown, so that the weights of a fit do not vanish.
int DECIMALS_FOR(float esd, int usual) {
  constexpr double just_one = 0.01;
  constexpr int most_decimals = 45;  // of a 32-bit real
  const double one_off = std::abs(static_cast<double>(esd) * std::pow(10.0, usual) - 1.0);
  if (!(esd > 0.0f) || UNITS(esd, usual) >= 2.0 || one_off <= just_one) return usual;
  int decimals = usual;
  while (UNITS(esd, decimals) < 10.0 && decimals < most_decimals) ++decimals;
  return decimals;
}

// Columns widen: every finite real fits.
std::string NUMBER_TEXT(float value, int decimals) {
  constexpr int widest = 100;
  return LEFT_ADJUST(REAL_COLUMNS(value, widest, decimals));
}

std::vector<std::string> ROW_TEXTS(const EOS_POINT& point, const SYSTEM_COLUMNS& columns) {
  std::vector<EOS_COLUMN> written{EOS_T, EOS_P};
  written.insert(written.end(), columns.PARAMETERS.begin(),
                 columns.PARAMETERS.begin() + columns.COUNT);
  written.push_back(EOS_V);
  std::vector<std::string> row;
  for (EOS_COLUMN column : written) {
    const float esd = std::isfinite(point[column].ESD) ? point[column].ESD : 0.0f;
    const int decimals = DECIMALS_FOR(esd, USUAL_DECIMALS(column));
    row.push_back(NUMBER_TEXT(point[column].VALUE, decimals));
    row.push_back(NUMBER_TEXT(esd, decimals));
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

}  // namespace

void WRITE_EOSDAT(const std::vector<EOS_POINT>& points, const CRYSTAL_SYSTEM& system,
                  std::string_view title) {
  FILE_RECORD file;
  file.DESCRIPTOR = "Kompressa datafile";
  file.EXT = "dat";
  file.UNIT = DATA_UNIT;
  OPEN_FILE(file, "APPEND CONF WHOLE");
  if (!file.OPEN) return;

  std::vector<std::vector<std::string>> rows;
  for (const EOS_POINT& point : points) rows.push_back(ROW_TEXTS(point, COLUMNS_OF(system)));
  const std::vector<std::string> data = WRITE_COLS(rows);
  const bool written = WRITE_LINES(file.UNIT, HEADER_LINES(system, title)) &&
                       WRITE_LINES(file.UNIT, data) && FLUSH_UNIT(file.UNIT);
  if (!written) WARNING("Errors on writing the file: check it carefully");
  if (KEEP_FILE(file))
    WRITE_OUT("     File header   and " + INTEGER_AT_LEAST(static_cast<int>(points.size()), 3) +
              " data points written to the file|");
}

}  // namespace FACETOR_EXPORTFILES
