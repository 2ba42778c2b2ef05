// The menus of LIST and TABLE.
#include <array>
#include <span>

#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

// The choice of a menu that is longer when the reference block has bonds.
int CHOOSE(std::string_view title, std::span<const std::string_view> menu,
           std::size_t without_bonds) {
  const bool bonds = SUM_NBONDS(REFERENCE()) > 0;
  return GET_LIST_SELECTION(title, bonds ? menu : menu.first(without_bonds));
}

// "U" or "BETA", as the user wants.
std::string ASK_TENSOR() {
  return GET_ANSWER("Do you want to see Uij or betaij ?", 'U', 'b', "U") == 'b' ? "BETA" : "U";
}

void LIST_VALENCES(std::string_view option) {
  if (!VALENCES_DONE)
    return WRITE_OUT("| ***** No bond valences have been calculated - use calc*****");
  REPORT_BVS_PARAMS();
  RUN_FACETOR_LIST_GEOM(REPORT_VALENCES, option);
}

}  // namespace

void RUN_FACETOR_LIST() {
  enum LIST_ROW {
    NAMES = 1,
    CELLS,
    SYMMETRY,
    SITES,
    FACTORS,
    XYZ,
    ADPS,
    BONDS,
    ANGLES,
    EDGES,
    ORBIX,
    SRB,
    DISPL,
    VALENCES
  };
  constexpr std::array<std::string_view, 14> menu{// ORDER LIST_ROW
                                                  "block names",
                                                  "cells",
                                                  "symmetry",
                                                  "site names",
                                                  "scattering factors",
                                                  "xyz",
                                                  "adps",
                                                  "bond lengths",
                                                  "angles between bonds",
                                                  "edges of polyhedra",
                                                  "orbix poly params",
                                                  "rigid bond lengths",
                                                  "displace along bonds",
                                                  "valences of bonds"};
  if (CHECK_NOPHASES()) return;
  switch (CHOOSE("List", menu, ADPS)) {
    case NAMES:
      return FACETOR_LIST_PHASE();
    case CELLS:
      return FACETOR_LIST_CELLS();
    case SYMMETRY:
      return FACETOR_LIST_SYMM();
    case SITES:
      return FACETOR_LIST_ATOMS();
    case FACTORS:
      return FACETOR_LIST_ATOMS("SCAT");
    case XYZ:
      return RUN_FACETOR_LIST_GEOM(REPORT_XYZ);
    case ADPS:
      return RUN_FACETOR_LIST_GEOM(REPORT_ADPS, ASK_TENSOR());
    case BONDS:
      return RUN_FACETOR_LIST_GEOM(REPORT_BONDS);
    case ANGLES:
      return RUN_FACETOR_LIST_GEOM(REPORT_ANGLES);
    case EDGES:
      return RUN_FACETOR_LIST_GEOM(REPORT_EDGES);
    case ORBIX:
      return RUN_FACETOR_LIST_GEOM(REPORT_ORBIX);
    case SRB:
      return RUN_FACETOR_LIST_GEOM(REPORT_SRB);
    case DISPL:
      return RUN_FACETOR_LIST_GEOM(REPORT_DISPL);
    case VALENCES:
      return LIST_VALENCES("");
    default:
      return;
  }
}

void RUN_FACETOR_TABLE() {
  enum TABLE_ROW { CELLS = 1, XYZ, ADPS, BONDS, ANGLES, EDGES, VALENCES };
  constexpr std::array<std::string_view, 7> menu{
      // ORDER TABLE_ROW
      "cells", "xyz", "adps", "bond lengths", "angles between bonds", "edges", "valences of bonds"};
  if (CHECK_NOPHASES()) return;
  switch (CHOOSE("Table", menu, ADPS)) {
    case CELLS:
      return FACETOR_LIST_CELLS("ESD");
    case XYZ:
      return RUN_FACETOR_LIST_GEOM(REPORT_XYZ, "ESD");
    case ADPS:
      return RUN_FACETOR_LIST_GEOM(REPORT_ADPS, "ESD, " + ASK_TENSOR());
    case BONDS:
      return RUN_FACETOR_LIST_GEOM(REPORT_BONDS, "ESD");
    case ANGLES:
      return RUN_FACETOR_LIST_GEOM(REPORT_ANGLES, "ESD");
    case EDGES:
      return RUN_FACETOR_LIST_GEOM(REPORT_EDGES, "ESD");
    case VALENCES:
      return LIST_VALENCES("ESD");
    default:
      return;
  }
}

}  // namespace FACETOR_LIST
