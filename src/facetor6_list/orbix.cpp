// The sphere fitted to each polyhedron and the distortion parameters that follow from it.
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr float no_volume = 0.1f;  // cubic angstroms

std::string POSITION_TEXT(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int first_column) {
  std::string text;
  for (int k = 0; k < 3; ++k) text += REAL_COLUMNS(phase.POLYHEDRON(i, first_column + k), 8, 4);
  return text;
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

std::string ORBIX_ROW(int place, int i) {
  constexpr std::array<POLYHEDRON_COLUMN, 6> shown{
      POLY_DELTA, POLY_RADIUS, POLY_RADIUS_SDEV, POLY_MEAN_LENGTH, POLY_VOLUME, POLY_IDEAL_VOLUME};
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(place));
  std::string line;
  if (!START_CENTRE_ROW(place, i, false, line)) return line;
  line += INTEGER_COLUMNS(phase.NBONDS(i), 3);
  if (!HAS_SPHERE(phase, i))
    return line + "  Polyhedron has zero volume, probably co-planar ligands";
  line += POSITION_TEXT(phase, i, POLY_SPHERE_X);
  for (POLYHEDRON_COLUMN column : shown) line += REAL_COLUMNS(phase.POLYHEDRON(i, column), 7, 3);
  for (float distortion : DISTORTIONS(phase, i)) line += REAL_COLUMNS(distortion, 7, 3);
  return line + POSITION_TEXT(phase, i, POLY_BARYCENTRE_X);
}

}  // namespace

void FACETOR_LIST_ORBIX(int i) {
  const int n = REFERENCE().NBONDS(i);
  const std::string& label = REFERENCE().ATOM(i).LAB;
  if (n < 3) return WRITE_OUT("||     NO POLYHEDRON FOUND AROUND CENTRAL ATOM " + label);
  if (n == 3)
    return WRITE_OUT("||     POLYHEDRON AROUND CENTRAL ATOM " + label +
                     " HAS CN=3, NO DISTORTION PARAMETERS CAN BE CALCULATED");
  WRITE_OUT(TABLE_TITLE("||     POLYHEDRON AROUND CENTRAL ATOM ", i) +
            ", parameters as defined in Acta Cryst. B52 (1996) 78-81");
  WRITE_OUT(FACETOR_HEADSTART() +
            " N  CENTROID COORDINATES  DELTA(A) Rsph SDEV(R) AVERAGE VOLUME VIDEAL VDIST   ECCV   "
            "SPHV  BARYCENTRE COORDINATES");
  for (int place : LISTED_PLACES()) WRITE_OUT(ORBIX_ROW(place, i));
}

void FACETOR_LIST_ALL_ORBIX() {
  FOR_EACH_USED_ATOM([](int i, std::string_view) { FACETOR_LIST_ORBIX(i); }, "");
}

}  // namespace FACETOR_LIST
