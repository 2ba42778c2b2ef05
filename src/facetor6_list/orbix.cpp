// The sphere fitted to each polyhedron and the distortion parameters that follow from it.
#include <array>

#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/bond_reports.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

constexpr float no_volume = 0.1f;  // cubic angstroms

constexpr int first_column = 45;

struct ORBIX_COLUMN {
  std::string_view NAME;
  std::string_view UNIT;
  std::string_view HEAD;
  int HEAD_AT;
  int WIDTH;
  int DECIMALS;
  bool IN_SHEET;
};
constexpr std::array<ORBIX_COLUMN, 16> columns{
    {{"N", "", "N", 47, 3, 0, false},
     {"xc", "", "", 0, 8, 4, true},
     {"yc", "", "", 0, 8, 4, true},
     {"zc", "", "CENTROID COORDINATES", 50, 8, 4, true},
     {"delta", "A", "DELTA(A)", 72, 7, 3, true},
     {"rsph", "A", "Rsph", 81, 7, 3, true},
     {"sdr", "A", "SDEV(R)", 86, 7, 3, true},
     {"mean", "A", "AVERAGE", 94, 7, 3, false},
     {"vol", "A^3", "VOLUME", 102, 7, 3, true},
     {"videal", "A^3", "VIDEAL", 109, 7, 3, true},
     {"vdist", "", "VDIST", 116, 7, 3, true},
     {"ecc", "", "ECCV", 124, 7, 3, true},
     {"sph", "", "SPHV", 131, 7, 3, true},
     {"xb", "", "", 0, 8, 4, false},
     {"yb", "", "", 0, 8, 4, false},
     {"zb", "", "BARYCENTRE COORDINATES", 137, 8, 4, false}}};

void ADD_ORBIX_COLUMNS(REPORT& report) {
  int at = first_column;
  for (const ORBIX_COLUMN& shown : columns) {
    REPORT_COLUMN column;
    column.NAME = REFERENCE().ATOM(report.CENTRE).LAB + "_" + std::string(shown.NAME);
    column.UNIT = shown.UNIT;
    column.IN_SHEET = shown.IN_SHEET;
    column.DECIMALS = shown.DECIMALS;
    column.AT = at;
    column.WIDTH = shown.WIDTH;
    column.HEAD = shown.HEAD;
    column.HEAD_AT = shown.HEAD_AT;
    report.COLUMNS.push_back(column);
    at += shown.WIDTH;
  }
}

void ADD_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int first, REPORT_ROW& row) {
  for (int k = 0; k < 3; ++k) row.CELLS.push_back(REAL_CELL(phase.POLYHEDRON(i, first + k)));
}

// Volume distortion, eccentricity and sphericity as defined by T. Balic-Zunic and E. Makovicky,
// Acta Cryst. B52 (1996) 78-81.
std::array<float, 3> DISTORTIONS(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const float r = phase.POLYHEDRON(i, POLY_RADIUS);
  const float inner = 1.0f - phase.POLYHEDRON(i, POLY_DELTA) / r;
  return {1.0f - phase.POLYHEDRON(i, POLY_VOLUME) / phase.POLYHEDRON(i, POLY_IDEAL_VOLUME),
          1.0f - inner * inner * inner, 1.0f - 3.0f * phase.POLYHEDRON(i, POLY_RADIUS_SDEV) / r};
}

bool HAS_SPHERE(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return !(phase.POLYHEDRON(i, POLY_VOLUME) < no_volume) &&
         phase.POLYHEDRON(i, POLY_RADIUS) > 0.0f && phase.POLYHEDRON(i, POLY_IDEAL_VOLUME) > 0.0f;
}

void ADD_ORBIX_CELLS(int i, REPORT_ROW& row) {
  constexpr std::array<POLYHEDRON_COLUMN, 6> shown{
      POLY_DELTA, POLY_RADIUS, POLY_RADIUS_SDEV, POLY_MEAN_LENGTH, POLY_VOLUME, POLY_IDEAL_VOLUME};
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(row.HEAD.BLOCK);
  row.CELLS.push_back(WHOLE_CELL(phase.NBONDS(i)));
  if (!HAS_SPHERE(phase, i)) {
    row.SENTENCE = "  Polyhedron has zero volume, probably co-planar ligands";
    return;
  }
  ADD_POSITION(phase, i, POLY_SPHERE_X, row);
  for (POLYHEDRON_COLUMN column : shown)
    row.CELLS.push_back(REAL_CELL(phase.POLYHEDRON(i, column)));
  for (float distortion : DISTORTIONS(phase, i)) row.CELLS.push_back(REAL_CELL(distortion));
  ADD_POSITION(phase, i, POLY_BARYCENTRE_X, row);
}

// The only line of the report on a centre that has none; blank for one that has.
std::string NO_ORBIX_LINE(int i) {
  const int n = REFERENCE().NBONDS(i);
  const std::string& label = REFERENCE().ATOM(i).LAB;
  if (n < 3) return "     NO POLYHEDRON FOUND AROUND CENTRAL ATOM " + label;
  if (n > 3) return "";
  return "     POLYHEDRON AROUND CENTRAL ATOM " + label +
         " HAS CN=3, NO DISTORTION PARAMETERS CAN BE CALCULATED";
}

}  // namespace

REPORT ORBIX_REPORT(int i, const std::vector<int>& places) {
  REPORT report;
  report.QUANTITY = "orbix";
  report.CENTRE = i;
  report.TITLE = {"", "", NO_ORBIX_LINE(i)};
  if (!report.TITLE.back().empty()) return report;
  report.IS_TABLE = true;
  report.TITLE.back() = TABLE_TITLE("     POLYHEDRON AROUND CENTRAL ATOM ", i) +
                        ", parameters as defined in Acta Cryst. B52 (1996) 78-81";
  ADD_ORBIX_COLUMNS(report);
  for (int place : places) {
    REPORT_ROW row = START_CENTRE_ROW(place, i, report.COLUMNS.size());
    if (row.SENTENCE.empty()) ADD_ORBIX_CELLS(i, row);
    report.ROWS.push_back(std::move(row));
  }
  return report;
}

}  // namespace FACETOR_LIST
