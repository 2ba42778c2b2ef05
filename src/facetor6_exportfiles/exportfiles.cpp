// The dialogue of EXPORT and what goes into the data points.
#include "src/facetor6_exportfiles/exportfiles.h"

#include <cmath>  // for abs, isfinite

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace FACETOR_EXPORTFILES {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr float least_volume = 0.01f;  // cubic angstroms; below: no volume was calculated
constexpr XTAL::CRYSTAL_SYSTEM no_symmetry{XTAL::SYSTEM::TRICLINIC};

EOS_POINT CONDITIONS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  EOS_POINT point;
  point[EOS_T] = {phase.PT(TEMPERATURE, PT_VALUE), phase.PT(TEMPERATURE, PT_ESD)};
  point[EOS_P] = {phase.PT(PRESSURE, PT_VALUE), phase.PT(PRESSURE, PT_ESD)};
  return point;
}

// ---- cells ----

EOS_POINT CELL_POINT(const CRYSTAL_STRUCTURE_TYPE& phase) {
  EOS_POINT point = CONDITIONS(phase);
  for (std::size_t k = 0; k < 3; ++k) {
    point[EOS_A + k] = {phase.CELL.CELL[k], phase.CELL.CELL_STD[k]};
    point[EOS_ALPHA + k] = {phase.CELL.ANG[k], phase.CELL.ANG_STD[k]};
  }
  point[EOS_V] = {phase.CELL.CELLVOL, phase.CELL.STDVOL};
  return point;
}

// Axes whose parameters a, c and V alone do not tell. A cubic cell has right angles.
bool HAS_RHOMBOHEDRAL_AXES(const XTAL::CRYSTAL_CELL& cell) {
  constexpr float same = 0.00001f;  // angstroms and degrees: less than any file gives
  const auto all_equal = [](const VECTOR3& v) {
    return std::abs(v[0] - v[1]) < same && std::abs(v[1] - v[2]) < same;
  };
  return all_equal(cell.CELL) && all_equal(cell.ANG) && !(std::abs(cell.ANG[0] - 90.0f) < same);
}

// The crystal system that all phases share, or triclinic, whose columns tell every cell.
XTAL::CRYSTAL_SYSTEM COMMON_SYSTEM(const STRUCTURE_LIST& phases, int n) {
  const XTAL::CRYSTAL_SYSTEM system = phases(1).SPG.CRYSTALSYS;
  if (system.NAME == XTAL::SYSTEM::UNKNOWN) return no_symmetry;
  for (int k = 1; k <= n; ++k)
    if (phases(k).SPG.CRYSTALSYS != system || HAS_RHOMBOHEDRAL_AXES(phases(k).CELL))
      return no_symmetry;
  return system;
}

// ---- polyhedra ----

// Why atom i has no volume to write; blank when it has.
std::string REASON_AGAINST(int i) {
  if (i == 0) return "     *****No atom site with this name found in the reference block";
  const CRYSTAL_STRUCTURE_TYPE& phase = REFERENCE();
  if (phase.ATOM_USE(i) < ATOM_OMITTED)
    return "     ***** This atom is a duplicate of another atom and cannot be selected";
  if (phase.ATOM_USE(i) == ATOM_OMITTED)
    return "     ***** This atom is marked not to be used and cannot be selected";
  if (phase.NBONDS(i) >= 1 && phase.NBONDS(i) <= 3)
    return "     ***** This atom has " + INTEGER_AT_LEAST(phase.NBONDS(i), 1) +
           " ligands and therefore no polyhedral volume";
  if (!(phase.POLYHEDRON(i, POLY_VOLUME) >= least_volume))
    return "     ***** No polyhedral volume has been calculated for this central atom";
  return "";
}

// True when the polyhedron has all the ligands that it has in the reference block, and a volume.
bool IS_COMPLETE(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const float volume = phase.POLYHEDRON(i, POLY_VOLUME);
  return static_cast<int>(BONDS_PRESENT(phase, i).size()) >= REFERENCE().NBONDS(i) &&
         std::isfinite(volume) && volume >= least_volume;
}

EOS_POINT VOLUME_POINT(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  EOS_POINT point = CONDITIONS(phase);
  point[EOS_V] = {phase.POLYHEDRON(i, POLY_VOLUME), phase.POLYHEDRON(i, POLY_VOLUME_STD)};
  return point;
}

// The phases are the used blocks, in their order.
void WRITE_VOLUMES_OF(int i, const STRUCTURE_LIST& phases, int n) {
  const std::string label = REFERENCE().ATOM(i).LAB;
  const std::vector<int> blocks = USED_BLOCKS();
  std::vector<EOS_POINT> points;
  std::string left_out;
  for (int k = 1; k <= n; ++k)
    if (IS_COMPLETE(phases(k), i))
      points.push_back(VOLUME_POINT(phases(k), i));
    else
      left_out +=
          (left_out.empty() ? "" : ", ") + INTEGER_COLUMNS(blocks[static_cast<std::size_t>(k - 1)]);
  if (!points.empty())
    WRITE_OUT("|    Polyhedral volumes for " + AS_IT_IS(label) +
              "  will be written to the kompressa dat file");
  if (!left_out.empty())
    WARNING("Left out, as the polyhedron is not complete there: block #" + left_out);
  if (points.empty()) return;
  WRITE_EOSDAT(points, volumes_of_polyhedra, "Polyhedral Volumes for " + label);
}

}  // namespace

void EXPORT_CELL_EOSDAT(const STRUCTURE_LIST& phases, int n) {
  WRITE_OUT(
      "|     Full unit cell, P and T data from used datablocks will be written to an Kompressa "
      "file|");
  std::vector<EOS_POINT> points;
  for (int k = 1; k <= n; ++k) points.push_back(CELL_POINT(phases(k)));
  WRITE_EOSDAT(points, COMMON_SYSTEM(phases, n));
}

void EXPORT_POLYVOL_EOSDAT(const STRUCTURE_LIST& phases, int n) {
  WRITE_OUT(
      "|     Selected polyhedral volume data from used datablocks will be written to an Kompressa "
      "file|");
  WRITE_OUT(
      "|****Now select the polyhedron volumes by central atom name in reference datablock, which "
      "are:");
  FACETOR_LIST::FACETOR_LIST_ATOMS("", IREFERENCE);
  WRITE_OUT("|");
  constexpr int name_length = 10;
  while (true) {
    GET_INPUT("    Enter central atom name:", HELP_WITH_LABELS());
    if (CONSOLE.INSTRING_LEN == 0) return;
    const int i = ATOM_NAMED(CUT_TEXT(CONSOLE.INSTRING, name_length));
    CLEAR_INPUT();
    const std::string reason = REASON_AGAINST(i);
    if (reason.empty())
      WRITE_VOLUMES_OF(i, phases, n);
    else
      WRITE_OUT(reason);
  }
}

void RUN_EXPORT() {
  if (CHECK_NOPHASES()) return;
  WRITE_OUT("|***** This routine allows you to export data to Kompressa data files|");
  WRITE_OUT("|     Data from the following USED datablocks will be exported, in this order:");
  FACETOR_LIST::FACETOR_LIST_PHASE_USED();
  if (GET_ANSWER_YN("     Is this ok?") != 'Y') return;

  STRUCTURE_LIST phases;
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(phases, NPHASES);
  if (ERR_KVASTRUCTURES) return WARNING(ERR_KVASTRUCTURES_MESS + " called from run_export");
  int n = 0;
  COPY_STRUCTURES_USED(PHASE, IUSE, ISORT, phases, n);

  enum EXPORT_CHOICE { CELLS = 1, VOLUMES };
  constexpr std::array<std::string_view, 2> menu{"cell data", "polyhedral volumes"};  // same order
  while (true) {
    switch (GET_LIST_SELECTION("Type of data to export", menu)) {
      case CELLS:
        EXPORT_CELL_EOSDAT(phases, n);
        break;
      case VOLUMES:
        EXPORT_POLYVOL_EOSDAT(phases, n);
        break;
      default:
        return;
    }
    KEEP_RECORDED({""});
  }
}

}  // namespace FACETOR_EXPORTFILES
