// From followed features to fits, their table, and the sheet of the last ones.
#include "src/facetor6_graph/fit.h"

#include <algorithm>  // for max
#include <array>

#include "console_code/console/output.h"
#include "console_code/console/tables.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Line_Fit.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_graph/features.h"
#include "src/facetor6_sheets/csv.h"

namespace FACETOR_GRAPH {

using namespace FACETOR_LIST;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;
using XTAL::FIT_CURVE;
using XTAL::FIT_FAILURE;
using XTAL::FITTED_VALUE;
using XTAL::LINE_FIT;

namespace {

struct FEATURE_FIT {
  std::string LABEL;
  LINE_FIT FIT;
};

struct FITS {
  std::vector<FEATURE_FIT> ITEMS;
  FIT_CURVE CURVE = FIT_CURVE::LINE;
  REPORT_CELL AT;  // abscissa of the reference block
  std::string NAME_OF_ABSCISSA;
  std::string UNIT;  // of the abscissa; blank: none
};

// ---- the fits ----

std::vector<XTAL::FIT_POINT> POINTS_OF(const FOLLOWED& followed, const FEATURE_VALUES& feature) {
  std::vector<XTAL::FIT_POINT> points;
  for (std::size_t k = 0; k < followed.BLOCKS.size(); ++k) {
    const REPORT_CELL& x = followed.ABSCISSA.CELLS[k];
    const REPORT_CELL& y = feature.CELLS[k];
    if (HAS_NUMBER(x) && HAS_NUMBER(y))
      points.push_back({static_cast<double>(x.VALUE), static_cast<double>(x.STD),
                        static_cast<double>(y.VALUE), static_cast<double>(y.STD)});
  }
  return points;
}

// Unfinished where the user has stopped the work, here and below.
FITS FITS_OF(const FOLLOWED& followed, FIT_CURVE curve, WORK& work) {
  FITS fits;
  fits.CURVE = curve;
  fits.AT = followed.REFERENCE;
  fits.NAME_OF_ABSCISSA = followed.ABSCISSA.NAME;
  fits.UNIT = followed.ABSCISSA.UNIT;
  for (const FEATURE_VALUES& feature : followed.FEATURES) {
    if (!GO_ON(work, work.TOTAL)) break;
    fits.ITEMS.push_back(
        {feature.LABEL, XTAL::FIT_POINTS(POINTS_OF(followed, feature),
                                         static_cast<double>(fits.AT.VALUE), curve)});
  }
  return fits;
}

// ---- the sheet ----

// Relative slopes are shown so many times as large.
double RELATIVE_SCALE(const FITS& fits) {
  constexpr double thousand = 1e3;
  constexpr double million = 1e6;
  return fits.UNIT == "K" ? million : thousand;
}

REPORT_CELL CELL_OF(const FITTED_VALUE& value, double scale = 1.0) {
  return REAL_CELL(static_cast<float>(value.VALUE * scale), static_cast<float>(value.ESD * scale));
}

enum FIT_COLUMN { FEATURE, COUNT, AT, VALUE, SLOPE, RELATIVE, CHI_SQUARE, SECOND, FIT_COLUMNS };

std::vector<REPORT_COLUMN> COLUMNS_OF(FIT_CURVE curve) {
  struct ROW {
    std::string_view NAME;
    bool HAS_ESD;
  };
  constexpr std::array<ROW, FIT_COLUMNS> rows{{{"feature", false},  // ORDER FIT_COLUMN
                                               {"n", false},
                                               {"at", false},
                                               {"value", true},
                                               {"slope", true},
                                               {"relative", true},
                                               {"chi2", false},
                                               {"second", true}}};
  constexpr int decimals = 4;
  std::vector<REPORT_COLUMN> columns;
  for (const ROW& row : rows) {
    REPORT_COLUMN column;
    column.NAME = row.NAME;
    column.HAS_ESD = row.HAS_ESD;
    column.DECIMALS = decimals;
    columns.push_back(std::move(column));
  }
  if (curve == FIT_CURVE::LINE) columns.pop_back();
  return columns;
}

std::vector<REPORT_CELL> CELLS_OF(const FITS& fits, const FEATURE_FIT& item) {
  std::vector<REPORT_CELL> cells(FIT_COLUMNS, NO_VALUE_CELL());
  const LINE_FIT& fit = item.FIT;
  cells[FEATURE] = TEXT_CELL(item.LABEL);
  cells[COUNT] = WHOLE_CELL(fit.N);
  cells[AT] = fits.AT;
  if (fit.FAILURE == FIT_FAILURE::NONE) {
    cells[VALUE] = CELL_OF(fit.AT);
    cells[SLOPE] = CELL_OF(fit.SLOPE);
    cells[RELATIVE] = CELL_OF(fit.RELATIVE, RELATIVE_SCALE(fits));
    cells[CHI_SQUARE] = REAL_CELL(static_cast<float>(fit.CHI_SQUARE));
    cells[SECOND] = CELL_OF(fit.SECOND);
  }
  if (fits.CURVE == FIT_CURVE::LINE) cells.pop_back();
  return cells;
}

FACETOR_SHEETS::VALUE_SHEET SHEET_OF(const FITS& fits, WORK& work) {
  FACETOR_SHEETS::VALUE_SHEET sheet;
  sheet.COLUMNS = COLUMNS_OF(fits.CURVE);
  for (const FEATURE_FIT& item : fits.ITEMS) {
    if (!GO_ON(work, work.TOTAL)) break;
    sheet.ROWS.push_back(CELLS_OF(fits, item));
  }
  return sheet;
}

// ---- the table ----

// What is to be said of a feature behind its numbers, or instead of them; blank: nothing.
std::string REMARK_ON(const FITS& fits, const LINE_FIT& fit) {
  constexpr double straight = 4.0;  // reduced chi-square up to which a line will do
  const bool line = fits.CURVE == FIT_CURVE::LINE;
  switch (fit.FAILURE) {
    case FIT_FAILURE::FEW_POINTS:
      return line ? "No line: fewer than three blocks" : "No parabola: fewer than four blocks";
    case FIT_FAILURE::FEW_ABSCISSAE:
      return (line ? "No line: fewer than two different "
                   : "No parabola: fewer than three different ") +
             fits.NAME_OF_ABSCISSA;
    case FIT_FAILURE::NOT_FINITE:
      return std::string(line ? "No line" : "No parabola") + ": the numbers are too large";
    case FIT_FAILURE::NONE:
      break;
  }
  if (fit.SOME_ESDS) return "equal weights: just some blocks have an esd";
  return line && fit.CHI_SQUARE > straight ? "curved: try 2" : "";
}

// Where the columns stand when everything fits.
constexpr int number_width = 8;
constexpr int value_width = 16;

struct TABLE_COLUMN {
  FIT_COLUMN OF;
  std::string HEAD;
  int WIDTH;
};

std::vector<TABLE_COLUMN> TABLE_COLUMNS(const FITS& fits) {
  const std::string at = fits.NAME_OF_ABSCISSA + " = " + SHORTEST_REAL(fits.AT.VALUE);
  const std::string per = fits.UNIT.empty() ? fits.NAME_OF_ABSCISSA : fits.UNIT;
  std::vector<TABLE_COLUMN> columns{
      {COUNT, "N", 5},
      {VALUE, "AT " + at, value_width},
      {SLOPE, "PER " + per, value_width},
      {RELATIVE, (fits.UNIT == "K" ? "10^-6 PER " : "10^-3 PER ") + per, value_width},
      {CHI_SQUARE, "CHI2", number_width}};
  if (fits.CURVE == FIT_CURVE::PARABOLA)
    columns.push_back({SECOND, "PER " + per + "^2", value_width});
  return columns;
}

constexpr int first_at = 6;

int WIDEST_LABEL(const FITS& fits) {
  int widest = CHARACTERS("FEATURE");
  for (const FEATURE_FIT& item : fits.ITEMS) widest = std::max(widest, CHARACTERS(item.LABEL));
  return widest;
}

FIELD_LINE HEAD_LINE(const std::vector<TABLE_COLUMN>& columns, int label_width) {
  FIELD_LINE line{{0, first_at, "FEATURE"}};
  int at = first_at + label_width + 1;
  for (const TABLE_COLUMN& column : columns) {
    const bool number = column.OF == COUNT || column.OF == CHI_SQUARE;
    line.push_back({static_cast<int>(line.size()),
                    number ? at + column.WIDTH - CHARACTERS(column.HEAD) : at + 1, column.HEAD});
    at += column.WIDTH;
  }
  return line;
}

FIELD_LINE ITEM_LINE(const FITS& fits, const FEATURE_FIT& item,
                     const std::vector<TABLE_COLUMN>& columns, int label_width) {
  FIELD_LINE line{{0, first_at, item.LABEL, label_width}};
  int at = first_at + label_width + 1;
  const std::vector<REPORT_CELL> cells = CELLS_OF(fits, item);
  const std::string remark = REMARK_ON(fits, item.FIT);
  for (const TABLE_COLUMN& column : columns) {
    REPORT_COLUMN printed;
    printed.HAS_ESD = column.OF != COUNT && column.OF != CHI_SQUARE;
    printed.DECIMALS = 2;
    printed.AT = at;
    printed.WIDTH = column.WIDTH;
    const int number = static_cast<int>(line.size());
    if (item.FIT.FAILURE != FIT_FAILURE::NONE && column.OF != COUNT) break;
    line.push_back(CELL_FIELD(number, printed, cells[column.OF], true));
    at += column.WIDTH;
  }
  if (!remark.empty()) line.push_back({line.back().COLUMN, at + 1, remark});
  return line;
}

std::vector<FIELD_LINE> TABLE_OF(const FITS& fits, WORK& work) {
  const std::vector<TABLE_COLUMN> columns = TABLE_COLUMNS(fits);
  const int label_width = WIDEST_LABEL(fits);
  std::vector<FIELD_LINE> table{HEAD_LINE(columns, label_width)};
  for (const FEATURE_FIT& item : fits.ITEMS) {
    if (!GO_ON(work, work.TOTAL)) break;
    table.push_back(ITEM_LINE(fits, item, columns, label_width));
  }
  return table;
}

void TELL_STOPPED() {
  WRITE_OUT("|*****The fit was stopped");
}

}  // namespace

void RUN_FIT() {
  if (FACETOR_CONSOLE::CHECK_NOPHASES()) return;
  const SUBJECT_CHOICE subject = ASK_SUBJECT("Fit");
  if (subject.OF == SUBJECT::NONE) return;
  const ABSCISSA_CHOICE abscissa = ASK_ABSCISSA(true);
  if (abscissa.WHAT == AGAINST::NOTHING) return;
  WORK work("Following the values: site", static_cast<int>(subject.SITES.size()));
  const FOLLOWED followed = FOLLOW(subject, abscissa, CELL_FORM::PLAIN, work);
  if (work.STOPPED) return TELL_STOPPED();
  if (followed.FEATURES.empty())
    return WRITE_OUT("*****There is nothing to fit: no used block has such a value");
  if (!HAS_NUMBER(followed.REFERENCE))
    return WRITE_OUT("*****The reference block has no value of " + followed.ABSCISSA.NAME +
                     ": choose another abscissa");
  const FITS fits =
      FITS_OF(followed, abscissa.PARABOLA ? FIT_CURVE::PARABOLA : FIT_CURVE::LINE, work);
  FACETOR_SHEETS::VALUE_SHEET sheet = SHEET_OF(fits, work);
  std::vector<FIELD_LINE> table = TABLE_OF(fits, work);
  if (work.STOPPED) return TELL_STOPPED();
  work.WORDS.clear();  // no progress is shown among the rows
  WRITE_OUT_BLANK(1);
  if (!WRITE_TABLE(std::move(table), 1, &work)) return TELL_STOPPED();
  FACETOR_SHEETS::LAST_FIT = std::move(sheet);
}

}  // namespace FACETOR_GRAPH
