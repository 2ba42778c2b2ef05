// Made-up series: a few structures, compressed from block to block and shaken a little.
#include "bench/series.h"

#include <array>
#include <random>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Space_Groups.h"

namespace BENCH {

using namespace KVA_UTILITIES;

namespace {

constexpr unsigned seed = 20250201;
constexpr float largest_shift = 0.0008f;  // fraction of a cell edge, of free coordinates
constexpr float coordinate_esd = 0.0002f;
constexpr float kpa_per_block = 1000.0f;
constexpr float strain_per_block = 0.00002f;
constexpr int longest_strain = 1000;  // blocks; then it begins again

struct SITE {
  std::string LABEL;
  VECTOR3 X{};
  std::array<bool, 3> FREE{true, true, true};  // coordinates that symmetry does not fix
};

struct STRUCTURE {
  std::string_view KIND;
  std::string_view SYMBOL;
  VECTOR3 LENGTHS{};  // angstroms
  VECTOR3 ANGLES{};   // degrees
  bool ANISOTROPIC = false;
  std::vector<SITE> SITES;
};

// ---- the structures ----

// Pyrope, after G. V. Gibbs and J. V. Smith, American Mineralogist 50 (1965) 2023-2039.
STRUCTURE GARNET() {
  constexpr std::array<bool, 3> fixed{};
  return {"garnet",
          "I a -3 d",
          {11.459f, 11.459f, 11.459f},
          {90.0f, 90.0f, 90.0f},
          false,
          {{"Mg1", {0.125f, 0.0f, 0.25f}, fixed},
           {"Al1", {0.0f, 0.0f, 0.0f}, fixed},
           {"Si1", {0.375f, 0.0f, 0.25f}, fixed},
           {"O1", {0.0329f, 0.0502f, 0.6534f}}}};
}

// Diopside, after M. Cameron, S. Sueno, C. T. Prewitt and J. J. Papike, American Mineralogist 58
// (1973) 594-618.
STRUCTURE PYROXENE() {
  constexpr std::array<bool, 3> on_axis{false, true, false};
  return {"pyroxene",
          "C 2/c",
          {9.746f, 8.899f, 5.251f},
          {90.0f, 105.63f, 90.0f},
          true,
          {{"Ca2", {0.0f, 0.3015f, 0.25f}, on_axis},
           {"Mg1", {0.0f, 0.9082f, 0.25f}, on_axis},
           {"Si1", {0.2862f, 0.0933f, 0.2293f}},
           {"O1", {0.1156f, 0.0873f, 0.1422f}},
           {"O2", {0.3611f, 0.2500f, 0.3180f}},
           {"O3", {0.3505f, 0.0176f, 0.9953f}}}};
}

// Silicon and oxygen by turns on a cubic mesh that fills the asymmetric unit, off all symmetry
// elements: every atom has six neighbours.
struct MESH {
  std::array<int, 3> POINTS{};   // along each axis of the asymmetric unit
  std::array<int, 3> IN_CELL{};  // along each axis of the cell
};

std::vector<SITE> MESH_SITES(const MESH& mesh) {
  std::vector<SITE> sites;
  for (int i = 0; i < mesh.POINTS[0]; ++i)
    for (int j = 0; j < mesh.POINTS[1]; ++j)
      for (int k = 0; k < mesh.POINTS[2]; ++k) {
        const std::array<int, 3> point{i, j, k};
        SITE site;
        site.LABEL = ((i + j + k) % 2 == 0 ? "Si" : "O") +
                     INTEGER_COLUMNS(static_cast<int>(sites.size()) + 1);
        for (std::size_t axis = 0; axis < 3; ++axis)
          site.X[axis] =
              (static_cast<float>(point[axis]) + 0.5f) / static_cast<float>(mesh.IN_CELL[axis]);
        sites.push_back(site);
      }
  return sites;
}

constexpr float mesh_width = 1.9f;  // angstroms

VECTOR3 MESH_CELL(const MESH& mesh) {
  VECTOR3 lengths{};
  for (std::size_t axis = 0; axis < 3; ++axis)
    lengths[axis] = mesh_width * static_cast<float>(mesh.IN_CELL[axis]);
  return lengths;
}

STRUCTURE TRICLINIC() {
  constexpr MESH mesh{{5, 5, 4}, {5, 5, 8}};
  return {"triclinic", "P -1", MESH_CELL(mesh), {89.0f, 91.5f, 92.0f}, true, MESH_SITES(mesh)};
}

STRUCTURE TWENTY() {
  constexpr MESH mesh{{5, 4, 1}, {5, 4, 2}};
  return {"twenty", "P -1", MESH_CELL(mesh), {89.0f, 91.5f, 92.0f}, true, MESH_SITES(mesh)};
}

STRUCTURE ZEOLITE() {
  constexpr MESH mesh{{5, 6, 10}, {10, 12, 20}};
  return {"zeolite", "C 2/c", MESH_CELL(mesh), {90.0f, 91.5f, 90.0f}, false, MESH_SITES(mesh)};
}

std::vector<STRUCTURE> STRUCTURES() {
  return {GARNET(), PYROXENE(), TRICLINIC(), ZEOLITE(), TWENTY()};
}

// ---- one block ----

// Numbers from -1 to 1. (The library's own distributions differ from one library to another.)
struct SHAKER {
  std::mt19937 RANDOM{seed};

  float NEXT() {
    const double unit = static_cast<double>(RANDOM()) / static_cast<double>(std::mt19937::max());
    return static_cast<float>(2.0 * unit - 1.0);
  }
};

std::string NUMBER_TEXT(float value, float std) {
  return LEFT_ADJUST(SETNUM_STD(value, std));
}

void ADD_LINE(std::string& text, std::string_view line) {
  text += line;
  text += '\n';
}

void ADD_CELL(const STRUCTURE& structure, int block, std::string& text) {
  constexpr std::array<std::string_view, 3> lengths{"_cell_length_a      ", "_cell_length_b      ",
                                                    "_cell_length_c      "};
  constexpr std::array<std::string_view, 3> angles{"_cell_angle_alpha   ", "_cell_angle_beta    ",
                                                   "_cell_angle_gamma   "};
  constexpr float length_esd = 0.0005f;
  constexpr float angle_esd = 0.005f;
  const float scale = 1.0f - strain_per_block * static_cast<float>(block % longest_strain);
  for (std::size_t k = 0; k < 3; ++k)
    ADD_LINE(text, std::string(lengths[k]) + NUMBER_TEXT(structure.LENGTHS[k] * scale, length_esd));
  for (std::size_t k = 0; k < 3; ++k) {
    const bool right = !(structure.ANGLES[k] < 90.0f) && !(structure.ANGLES[k] > 90.0f);
    ADD_LINE(text,
             std::string(angles[k]) + (right ? "90" : NUMBER_TEXT(structure.ANGLES[k], angle_esd)));
  }
}

void ADD_HEAD(const STRUCTURE& structure, int block, std::string& text) {
  const std::string number = INTEGER_COLUMNS(block + 1);
  const float kpa = kpa_per_block * static_cast<float>(block + 1);
  ADD_LINE(text, "data_" + std::string(structure.KIND) + "_" + number);
  ADD_LINE(text, "_audit_creation_method   'made up for measuring'");
  ADD_LINE(text, "_chemical_name_common    " + std::string(structure.KIND));
  ADD_LINE(text, "_diffrn_ambient_temperature   298(1)");
  ADD_LINE(text, "_diffrn_ambient_pressure   " + NUMBER_TEXT(kpa, 2.0f));
  ADD_CELL(structure, block, text);
  ADD_LINE(text, "_symmetry_space_group_name_H-M   '" + std::string(structure.SYMBOL) + "'");
}

void ADD_OPERATORS(const XTAL::SPACE_GROUP& group, std::string& text) {
  ADD_LINE(text, "loop_");
  ADD_LINE(text, "_symmetry_equiv_pos_as_xyz");
  for (const std::string& op : group.SYMOPSYMB) ADD_LINE(text, "'" + op + "'");
}

void ADD_SITES(const STRUCTURE& structure, SHAKER& shaker, std::string& text) {
  for (std::string_view line : {"loop_", "_atom_site_label", "_atom_site_type_symbol",
                                "_atom_site_fract_x", "_atom_site_fract_y", "_atom_site_fract_z",
                                "_atom_site_occupancy", "_atom_site_U_iso_or_equiv"})
    ADD_LINE(text, line);
  for (const SITE& site : structure.SITES) {
    const std::string symbol = site.LABEL.substr(0, site.LABEL.find_first_of("0123456789"));
    std::string row = site.LABEL + " " + symbol;
    for (std::size_t k = 0; k < 3; ++k) {
      const float shift = largest_shift * shaker.NEXT();
      row += " " + (site.FREE[k] ? NUMBER_TEXT(site.X[k] + shift, coordinate_esd)
                                 : NUMBER_TEXT(site.X[k], 0.0f));
    }
    ADD_LINE(text, row + " 1 " + NUMBER_TEXT(0.008f + 0.001f * shaker.NEXT(), 0.0003f));
  }
}

void ADD_TENSORS(const STRUCTURE& structure, SHAKER& shaker, std::string& text) {
  for (std::string_view line :
       {"loop_", "_atom_site_aniso_label", "_atom_site_aniso_U_11", "_atom_site_aniso_U_22",
        "_atom_site_aniso_U_33", "_atom_site_aniso_U_12", "_atom_site_aniso_U_13",
        "_atom_site_aniso_U_23"})
    ADD_LINE(text, line);
  constexpr float off_diagonal = 0.0005f;
  constexpr float tensor_esd = 0.0003f;
  for (const SITE& site : structure.SITES) {
    std::string row = site.LABEL;
    for (int k = 0; k < 6; ++k) {
      const float mean = k < 3 ? 0.008f : 0.0f;
      row += " " + NUMBER_TEXT(mean + off_diagonal * shaker.NEXT(), tensor_esd);
    }
    ADD_LINE(text, row);
  }
}

}  // namespace

std::vector<std::string_view> SERIES_KINDS() {
  std::vector<std::string_view> kinds;
  for (const STRUCTURE& structure : STRUCTURES()) kinds.push_back(structure.KIND);
  return kinds;
}

std::string SERIES_TEXT(std::string_view kind, int blocks) {
  std::string text;
  for (const STRUCTURE& structure : STRUCTURES()) {
    if (structure.KIND != kind) continue;
    XTAL::SPACE_GROUP group;
    XTAL::SET_SPACEGROUP(structure.SYMBOL, group);
    SHAKER shaker;
    for (int block = 0; block < blocks; ++block) {
      ADD_HEAD(structure, block, text);
      ADD_OPERATORS(group, text);
      ADD_SITES(structure, shaker, text);
      if (structure.ANISOTROPIC) ADD_TENSORS(structure, shaker, text);
      ADD_LINE(text, "");
    }
  }
  return text;
}

}  // namespace BENCH
