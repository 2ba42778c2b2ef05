// The LIST and TABLE commands and all their reports.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace FACETOR_LIST {

// Reports that are data (report.h). Those on sites are the subjects of RUN_FACETOR_LIST_GEOM.
enum REPORT_CODE {
  NO_REPORT,
  REPORT_CELLS,
  REPORT_XYZ,
  REPORT_ADPS,
  REPORT_BONDS,
  REPORT_ANGLES,
  REPORT_EDGES,
  REPORT_ORBIX,
  REPORT_SRB,
  REPORT_DISPL,
  REPORT_VALENCES,
  REPORT_MEASURES
};

// ---- commands ----
void RUN_FACETOR_LIST();
void RUN_FACETOR_TABLE();
// Their menus as they are now.
std::span<const std::string_view> LIST_MENU();
std::span<const std::string_view> TABLE_MENU();

// ---- summaries and cells ----
void FACETOR_LIST_PHASE();
void FACETOR_LIST_PHASE_USED();
void FACETOR_LIST_CELLS(std::string_view option = "");
void LIST_PHASE(const KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST& phases, int count);
// first, last: the blocks shown; the number of a row is its place in the list.
void LIST_PHASE_ESD(const KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST& phases, int first, int last);

// ---- pieces shared by all tables ----
std::string FACETOR_HEADSTART();
// Start of the row at a place of the display order: 44 columns, or blank for a block not shown.
std::string FACETOR_LINESTART(int place, bool esd = false);
bool BLOCK_IS_LISTED(int block);

// ---- symmetry, atoms, coordinates, displacement ----
void FACETOR_LIST_SYMM();
void LIST_SYMOPS();
void FACETOR_LIST_ATOMS(std::string_view option = "", int block = 0);  // 0: all listed blocks
void FACETOR_LIST_XYZ(int i, std::string_view option = "");
void FACETOR_LIST_ALL_XYZ(std::string_view option = "");
void FACETOR_LIST_ADPS(int i, std::string_view option = "");
void FACETOR_LIST_ALL_ADPS(std::string_view option = "");

// ---- measures ----
void FACETOR_LIST_MEASURES(std::string_view option = "");
void FACETOR_LIST_MEASURES_USED();  // with esds, of the used blocks alone

// ---- the sites that the user names ----

// Atoms of the reference block, or that none is wanted; without either the user was told why.
struct SITE_ANSWER {
  std::vector<int> SITES;
  bool ALL = false;
  bool NONE_WANTED = false;
};
SITE_ANSWER ASK_SITES();
// Asks until it is answered; pending text is used first. In a macro a name that fits no site drops
// the command. No sites: none is wanted.
std::vector<int> ASK_SITES_ONCE();

// ---- geometry ----
void RUN_FACETOR_LIST_GEOM(REPORT_CODE code, std::string_view option = "");
void FACETOR_LIST_BONDS(int i, std::string_view option = "");
void FACETOR_LIST_ALL_BONDS(std::string_view option = "");
void FACETOR_LIST_BONDVALENCE(int i, std::string_view option = "");
void FACETOR_LIST_ALL_BONDVALENCE(std::string_view option = "");
void FACETOR_LIST_ANGLES(int i, std::string_view option = "");
void FACETOR_LIST_ALL_ANGLES(std::string_view option = "");
void FACETOR_LIST_EDGES(int i, std::string_view option = "");
void FACETOR_LIST_ALL_EDGES(std::string_view option = "");
void FACETOR_LIST_ORBIX(int i);
void FACETOR_LIST_ALL_ORBIX();

}  // namespace FACETOR_LIST
