// The data names that structures need: what each fills, and the older names for the same. Knows
// nothing of files or values.
#pragma once

#include <array>
#include <string_view>

namespace KVA_CIFFULL {

// What a data name fills. A field may have several names, of which the first with a value counts.
enum FIELD : unsigned char {
  NO_FIELD = 0,
  CELL_LENGTH_A,
  CELL_LENGTH_B,
  CELL_LENGTH_C,
  CELL_ANGLE_ALPHA,
  CELL_ANGLE_BETA,
  CELL_ANGLE_GAMMA,
  CELL_VOLUME,
  OPERATOR,           // x,y,z
  MAGNETIC_OPERATOR,  // x,y,z,+1
  MAGNETIC_CENTRING,  // x+1/2,y,z,-1
  HALL_SYMBOL,
  HM_SYMBOL,
  GROUP_NUMBER,
  GROUP_SETTING,  // code of the International Tables: 1, 2, h, r, b1
  TEMPERATURE_K,
  PRESSURE_KPA,
  SITE_LABEL,
  SITE_TYPE,
  SITE_X,
  SITE_Y,
  SITE_Z,
  SITE_OCCUPANCY,
  SITE_U_ISO,
  SITE_B_ISO,
  SITE_CALC_FLAG,
  ANISO_LABEL,
  ANISO_U_11,  // the six of a kind in the order 11, 22, 33, 12, 13, 23
  ANISO_U_22,
  ANISO_U_33,
  ANISO_U_12,
  ANISO_U_13,
  ANISO_U_23,
  ANISO_B_11,
  ANISO_B_22,
  ANISO_B_33,
  ANISO_B_12,
  ANISO_B_13,
  ANISO_B_23,
  ANISO_BETA_11,
  ANISO_BETA_22,
  ANISO_BETA_33,
  ANISO_BETA_12,
  ANISO_BETA_13,
  ANISO_BETA_23,
  TYPE_SYMBOL,
  TYPE_OXIDATION,
  TYPE_DESCRIPTION,
  MODE_ITEM,  // that there is a loop of vibrational modes
  FIELD_COUNT
};

struct NAME_ROW {
  FIELD FILLS;
  std::string_view NAME;  // lower case, with "_" for the "." of the newer dictionaries
};

// In the order of the fields; within a field the name that counts first stands first.
inline constexpr std::array NAMES{
    NAME_ROW{CELL_LENGTH_A, "_cell_length_a"},
    NAME_ROW{CELL_LENGTH_B, "_cell_length_b"},
    NAME_ROW{CELL_LENGTH_C, "_cell_length_c"},
    NAME_ROW{CELL_ANGLE_ALPHA, "_cell_angle_alpha"},
    NAME_ROW{CELL_ANGLE_BETA, "_cell_angle_beta"},
    NAME_ROW{CELL_ANGLE_GAMMA, "_cell_angle_gamma"},
    NAME_ROW{CELL_VOLUME, "_cell_volume"},
    NAME_ROW{OPERATOR, "_space_group_symop_operation_xyz"},
    NAME_ROW{OPERATOR, "_symmetry_equiv_pos_as_xyz"},
    NAME_ROW{OPERATOR, "_symmetry_equiv_as_xyz"},
    NAME_ROW{MAGNETIC_OPERATOR, "_space_group_symop_magn_operation_xyz"},
    NAME_ROW{MAGNETIC_CENTRING, "_space_group_symop_magn_centering_xyz"},
    NAME_ROW{HALL_SYMBOL, "_space_group_name_hall"},
    NAME_ROW{HALL_SYMBOL, "_symmetry_space_group_name_hall"},
    NAME_ROW{HM_SYMBOL, "_space_group_name_h-m_alt"},
    NAME_ROW{HM_SYMBOL, "_symmetry_space_group_name_h-m"},
    NAME_ROW{HM_SYMBOL, "_space_group_name_h-m_full"},
    NAME_ROW{HM_SYMBOL, "_space_group_name_h-m_ref"},
    NAME_ROW{HM_SYMBOL, "_space_group_name_h-m"},
    NAME_ROW{GROUP_NUMBER, "_space_group_it_number"},
    NAME_ROW{GROUP_NUMBER, "_symmetry_int_tables_number"},
    NAME_ROW{GROUP_SETTING, "_space_group_it_coordinate_system_code"},
    NAME_ROW{TEMPERATURE_K, "_diffrn_ambient_temperature"},
    NAME_ROW{TEMPERATURE_K, "_diffrn_ambient_temp"},
    NAME_ROW{TEMPERATURE_K, "_cell_measurement_temperature"},
    NAME_ROW{TEMPERATURE_K, "_cell_measurement_temp"},
    NAME_ROW{PRESSURE_KPA, "_diffrn_ambient_pressure"},
    NAME_ROW{PRESSURE_KPA, "_cell_measurement_pressure"},
    NAME_ROW{SITE_LABEL, "_atom_site_label"},
    NAME_ROW{SITE_TYPE, "_atom_site_type_symbol"},
    NAME_ROW{SITE_X, "_atom_site_fract_x"},
    NAME_ROW{SITE_Y, "_atom_site_fract_y"},
    NAME_ROW{SITE_Z, "_atom_site_fract_z"},
    NAME_ROW{SITE_OCCUPANCY, "_atom_site_occupancy"},
    NAME_ROW{SITE_U_ISO, "_atom_site_u_iso_or_equiv"},
    NAME_ROW{SITE_B_ISO, "_atom_site_b_iso_or_equiv"},
    NAME_ROW{SITE_CALC_FLAG, "_atom_site_calc_flag"},
    NAME_ROW{ANISO_LABEL, "_atom_site_aniso_label"},
    NAME_ROW{ANISO_U_11, "_atom_site_aniso_u_11"},
    NAME_ROW{ANISO_U_22, "_atom_site_aniso_u_22"},
    NAME_ROW{ANISO_U_33, "_atom_site_aniso_u_33"},
    NAME_ROW{ANISO_U_12, "_atom_site_aniso_u_12"},
    NAME_ROW{ANISO_U_13, "_atom_site_aniso_u_13"},
    NAME_ROW{ANISO_U_23, "_atom_site_aniso_u_23"},
    NAME_ROW{ANISO_B_11, "_atom_site_aniso_b_11"},
    NAME_ROW{ANISO_B_22, "_atom_site_aniso_b_22"},
    NAME_ROW{ANISO_B_33, "_atom_site_aniso_b_33"},
    NAME_ROW{ANISO_B_12, "_atom_site_aniso_b_12"},
    NAME_ROW{ANISO_B_13, "_atom_site_aniso_b_13"},
    NAME_ROW{ANISO_B_23, "_atom_site_aniso_b_23"},
    NAME_ROW{ANISO_BETA_11, "_atom_site_aniso_beta_11"},
    NAME_ROW{ANISO_BETA_22, "_atom_site_aniso_beta_22"},
    NAME_ROW{ANISO_BETA_33, "_atom_site_aniso_beta_33"},
    NAME_ROW{ANISO_BETA_12, "_atom_site_aniso_beta_12"},
    NAME_ROW{ANISO_BETA_13, "_atom_site_aniso_beta_13"},
    NAME_ROW{ANISO_BETA_23, "_atom_site_aniso_beta_23"},
    NAME_ROW{TYPE_SYMBOL, "_atom_type_symbol"},
    NAME_ROW{TYPE_OXIDATION, "_atom_type_oxidation_number"},
    NAME_ROW{TYPE_DESCRIPTION, "_atom_type_description"},
    NAME_ROW{MODE_ITEM, "_mode_name"},
    NAME_ROW{MODE_ITEM, "_mode_symmetry"},
    NAME_ROW{MODE_ITEM, "_mode_w0"},
};

inline constexpr int NO_NAME = -1;
inline constexpr int NAME_COUNT = static_cast<int>(NAMES.size());

// Row of NAMES for a data name as a file has it; NO_NAME when no structure needs it.
int NAME_NUMBER(std::string_view name);

// Rows of NAMES that fill the field: the first, and one behind the last.
struct NAME_RANGE {
  int FIRST = 0;
  int END = 0;
};
NAME_RANGE NAMES_OF(FIELD field);

// Whether the value may have blanks that divide it, where it lacks its quotes.
constexpr bool IS_SYMBOL(FIELD field) {
  return field == HALL_SYMBOL || field == HM_SYMBOL;
}

// Whether a bare unit may stand behind the value.
constexpr bool TAKES_UNIT(FIELD field) {
  return field == TEMPERATURE_K || field == PRESSURE_KPA;
}

}  // namespace KVA_CIFFULL
