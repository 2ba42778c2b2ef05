// The tables behind the bond valences and the elements, row by row: against published values, and
// against independent tables of facts where these are at hand.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "foundations/XTAL_Bond_Valence_Tables.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "foundations/XTAL_Space_Group_Tables.h"
#include "places.h"

using namespace XTAL;

namespace {

using CELLS = std::vector<std::string>;

// Rows of a table of facts behind its head line; none when the table is not at hand.
std::vector<CELLS> FACTS(const std::string& name) {
  std::ifstream file(std::filesystem::path(PLACES::SAMPLES()) / "../data" / name);
  std::vector<CELLS> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::istringstream stream(line);
    CELLS cells;
    for (std::string cell; std::getline(stream, cell, '\t');) cells.push_back(cell);
    rows.push_back(cells);
  }
  return rows;
}

constexpr const char* no_facts = "no table of facts beside the samples";
constexpr std::size_t anions = static_cast<std::size_t>(NUMBER_OF_ANIONS);

const BVS_TABLE_TYPE* CATION(std::string_view label) {
  for (const BVS_TABLE_TYPE& row : BVS_TABLE)
    if (row.SYMB == label) return &row;
  return nullptr;
}

}  // namespace

// ---- bond-valence parameters ----

TEST(BOND_VALENCE_TABLE, THE_ANIONS_IN_THEIR_ORDER) {
  const std::vector<std::string_view> order{"O-2",  "F-1", "CL-1", "BR-1", "I-1", "S-2", "SE-2",
                                            "TE-2", "N-3", "P-3",  "AS-3", "H-1", "O-1", "SE-1"};
  EXPECT_EQ(std::vector<std::string_view>(BVS_ANIONS.begin(), BVS_ANIONS.end()), order);
}

// D0 with oxygen, fluorine and chlorine, B 0.37: I. D. Brown and D. Altermatt, Acta Cryst. B41
// (1985) 244-247; N. E. Brese and M. O'Keeffe, Acta Cryst. B47 (1991) 192-197 for Si+4 with O-2 and
// for the chlorides of Mg, Ca and Na.
TEST(BOND_VALENCE_TABLE, PUBLISHED_PARAMETERS_OF_COMMON_CATIONS) {
  struct PUBLISHED {
    std::string_view CATION;
    std::size_t ANION;
    float D0;
  };
  constexpr std::size_t oxygen = 0;
  constexpr std::size_t fluorine = 1;
  constexpr std::size_t chlorine = 2;
  for (const PUBLISHED& published : std::vector<PUBLISHED>{{"SI+4", oxygen, 1.624f},
                                                           {"MG+2", oxygen, 1.693f},
                                                           {"CA+2", oxygen, 1.967f},
                                                           {"NA+1", oxygen, 1.803f},
                                                           {"K+1", oxygen, 2.132f},
                                                           {"FE+2", oxygen, 1.734f},
                                                           {"FE+3", oxygen, 1.759f},
                                                           {"TI+4", oxygen, 1.815f},
                                                           {"P+5", oxygen, 1.617f},
                                                           {"MG+2", fluorine, 1.578f},
                                                           {"CA+2", fluorine, 1.842f},
                                                           {"NA+1", fluorine, 1.677f},
                                                           {"K+1", fluorine, 1.992f},
                                                           {"MG+2", chlorine, 2.08f},
                                                           {"CA+2", chlorine, 2.37f},
                                                           {"NA+1", chlorine, 2.15f}}) {
    const BVS_TABLE_TYPE* row = CATION(published.CATION);
    ASSERT_NE(row, nullptr) << published.CATION;
    EXPECT_EQ(row->D0[published.ANION], published.D0) << published.CATION;
    EXPECT_EQ(row->B[published.ANION], 0.37f) << published.CATION;
  }
}

TEST(BOND_VALENCE_TABLE, THE_FIRST_ROW) {
  const BVS_TABLE_TYPE& row = BVS_TABLE[0];
  EXPECT_EQ(row.SYMB, "AC+3");
  const std::array<float, 4> d0{2.24f, 2.13f, 2.63f, 2.75f};
  const std::array<float, 4> b{0.37f, 0.37f, 0.37f, 0.4f};
  const std::array<int, 4> references{2, 2, 2, 16};
  for (std::size_t a = 0; a < d0.size(); ++a) {
    EXPECT_EQ(row.D0[a], d0[a]) << BVS_ANIONS[a];
    EXPECT_EQ(row.B[a], b[a]) << BVS_ANIONS[a];
    EXPECT_EQ(row.REF[a], references[a]) << BVS_ANIONS[a];
  }
}

TEST(BOND_VALENCE_TABLE, LABELS_ARE_AN_ELEMENT_AND_ITS_CHARGE_AND_STAND_ONCE) {
  std::map<std::string_view, int> seen;
  for (const BVS_TABLE_TYPE& row : BVS_TABLE) {
    EXPECT_EQ(++seen[row.SYMB], 1) << row.SYMB;
    EXPECT_LE(row.SYMB.size(), 4u);
    const std::size_t sign = row.SYMB.find('+');
    ASSERT_NE(sign, std::string_view::npos) << row.SYMB;
    // Ammonium is the one group among the elements.
    EXPECT_TRUE(row.SYMB == "NH+1" || IS_CHEMSYMB(row.SYMB.substr(0, sign))) << row.SYMB;
    EXPECT_TRUE(row.SYMB.size() == sign + 2 && row.SYMB[sign + 1] >= '1' &&
                row.SYMB[sign + 1] <= '9')
        << row.SYMB;
  }
}

TEST(BOND_VALENCE_TABLE, EVERY_FIGURE_IS_THAT_OF_THE_TABLE_OF_FACTS) {
  const std::vector<CELLS> facts = FACTS("bond_valence.tsv");
  if (facts.empty()) GTEST_SKIP() << no_facts;
  ASSERT_EQ(facts.size(), BVS_TABLE.size());
  for (std::size_t i = 0; i < facts.size(); ++i) {
    const BVS_TABLE_TYPE& row = BVS_TABLE[i];
    ASSERT_EQ(facts[i].size(), 1 + 3 * anions);
    EXPECT_EQ(row.SYMB, facts[i][0]);
    for (std::size_t a = 0; a < anions; ++a) {
      EXPECT_EQ(row.D0[a], std::stof(facts[i][1 + a])) << row.SYMB << " " << BVS_ANIONS[a];
      EXPECT_EQ(row.B[a], std::stof(facts[i][1 + anions + a])) << row.SYMB << " " << BVS_ANIONS[a];
      EXPECT_EQ(row.REF[a], std::stoi(facts[i][1 + 2 * anions + a]))
          << row.SYMB << " " << BVS_ANIONS[a];
    }
  }
}

TEST(BOND_VALENCE_REFERENCES, EVERY_TEXT_IS_THAT_OF_THE_TABLE_OF_FACTS) {
  const std::vector<CELLS> facts = FACTS("bond_valence_references.tsv");
  if (facts.empty()) GTEST_SKIP() << no_facts;
  ASSERT_EQ(facts.size(), BVS_REFERENCES.size());
  for (std::size_t i = 0; i < facts.size(); ++i) EXPECT_EQ(BVS_REFERENCES[i], facts[i][2]);
}

TEST(BOND_VALENCE_REFERENCES, EACH_NAMES_A_YEAR_BUT_THE_UNPUBLISHED_ONES) {
  constexpr std::size_t private_communication = 5;
  EXPECT_EQ(BVS_REFERENCES[0], "Unknown  (provided by the user)");
  for (std::size_t i = 1; i < BVS_REFERENCES.size(); ++i) {
    const bool has_year = BVS_REFERENCES[i].find("(19") != std::string_view::npos ||
                          BVS_REFERENCES[i].find("(20") != std::string_view::npos;
    EXPECT_EQ(has_year, i != private_communication) << BVS_REFERENCES[i];
  }
}

// ---- atomic properties ----

TEST(ATOM_PROPERTIES, HYDROGEN_TWICE_AND_DEUTERIUM_COME_FIRST) {
  constexpr std::array<float, 3> masses{1.0079f, 1.008f, 2.0141f};
  for (std::size_t i = 0; i < masses.size(); ++i) {
    EXPECT_EQ(AP_TABLE[i].Z, 1);
    EXPECT_EQ(AP_TABLE[i].MASS, masses[i]);
    EXPECT_EQ(AP_TABLE[i].RADIUS, 0.37f);
    EXPECT_EQ(AP_TABLE[i].SYMB, i < 2 ? "H" : "D");
  }
  EXPECT_NE(AP_TABLE[3].Z, 1);
}

TEST(ATOM_PROPERTIES, ALL_ROWS_OF_AN_ELEMENT_AGREE_AND_THE_LAST_ONE_IS_ITS_DEFAULT_STATE) {
  for (std::size_t i = 1; i < AP_TABLE.size(); ++i) {
    const AP_TABLE_TYPE& before = AP_TABLE[i - 1];
    const AP_TABLE_TYPE& row = AP_TABLE[i];
    if (row.Z == before.Z) {
      EXPECT_EQ(row.DEFAULT_OXIDATION, before.DEFAULT_OXIDATION) << row.SYMB;
    } else {
      EXPECT_GT(row.Z, before.Z) << row.SYMB;
      EXPECT_EQ(before.OXIDATION, before.DEFAULT_OXIDATION) << before.SYMB;
    }
  }
  EXPECT_EQ(AP_TABLE.back().OXIDATION, AP_TABLE.back().DEFAULT_OXIDATION);
}

TEST(ATOM_PROPERTIES, SYMBOLS_BELONG_TO_THEIR_ATOMIC_NUMBERS) {
  for (const AP_TABLE_TYPE& row : AP_TABLE) {
    std::string symbol;
    int z = 0;
    GET_CHEMSYMB(row.SYMB, symbol, z);
    EXPECT_EQ(z, row.Z) << row.SYMB;
  }
}

TEST(ATOM_PROPERTIES, EVERY_ROW_IS_THAT_OF_THE_TABLE_OF_FACTS) {
  const std::vector<CELLS> facts = FACTS("atom_properties.tsv");
  if (facts.empty()) GTEST_SKIP() << no_facts;
  ASSERT_EQ(facts.size(), AP_TABLE.size());
  for (std::size_t i = 0; i < facts.size(); ++i) {
    const AP_TABLE_TYPE& row = AP_TABLE[i];
    EXPECT_EQ(row.Z, std::stoi(facts[i][0])) << i;
    EXPECT_EQ(row.SYMB, facts[i][1]) << i;
    EXPECT_EQ(row.OXIDATION, std::stoi(facts[i][2])) << row.SYMB;
    EXPECT_EQ(row.DEFAULT_OXIDATION, std::stoi(facts[i][3])) << row.SYMB;
    EXPECT_EQ(row.MASS, std::stof(facts[i][4])) << row.SYMB;
    EXPECT_EQ(row.RADIUS, std::stof(facts[i][5])) << row.SYMB;
  }
}

// ---- elements ----

TEST(ELEMENT_TABLE, SYMBOLS_OF_THE_PERIODIC_TABLE) {
  std::istringstream symbols(
      "H HE LI BE B C N O F NE NA MG AL SI P S CL AR "
      "K CA SC TI V CR MN FE CO NI CU ZN GA GE AS SE BR KR "
      "RB SR Y ZR NB MO TC RU RH PD AG CD IN SN SB TE I XE "
      "CS BA LA CE PR ND PM SM EU GD TB DY HO ER TM YB LU "
      "HF TA W RE OS IR PT AU HG TL PB BI PO AT RN "
      "FR RA AC TH PA U NP PU AM CM BK CF ES FM MD NO LR RF DB");
  std::size_t row = 0;
  for (std::string symbol; symbols >> symbol; ++row) {
    EXPECT_EQ(CHEM_INFO[row].SYMB, symbol);
    EXPECT_EQ(CHEM_INFO[row].Z, static_cast<int>(row) + 1) << symbol;
  }
  EXPECT_EQ(row, 105u);
}

TEST(ELEMENT_TABLE, THE_THREE_SPECIAL_ROWS) {
  struct SPECIAL {
    std::string_view SYMB;
    std::string_view NAME;
    int Z;
  };
  constexpr std::array<SPECIAL, 3> rows{
      {{"BS", "Boron-11", 5}, {"ZE", "Zero", 0}, {"D", "Deuterium", 1}}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(CHEM_INFO[105 + i].SYMB, rows[i].SYMB);
    EXPECT_EQ(CHEM_INFO[105 + i].NAME, rows[i].NAME);
    EXPECT_EQ(CHEM_INFO[105 + i].Z, rows[i].Z);
  }
}

TEST(ELEMENT_TABLE, EVERY_ROW_IS_THAT_OF_THE_TABLE_OF_FACTS) {
  const std::vector<CELLS> facts = FACTS("elements.tsv");
  if (facts.empty()) GTEST_SKIP() << no_facts;
  ASSERT_EQ(facts.size(), CHEM_INFO.size());
  for (std::size_t i = 0; i < facts.size(); ++i) {
    EXPECT_EQ(CHEM_INFO[i].Z, std::stoi(facts[i][1])) << i;
    EXPECT_EQ(CHEM_INFO[i].SYMB, facts[i][2]) << i;
    EXPECT_EQ(CHEM_INFO[i].NAME, facts[i][4]) << i;
  }
}

// ---- settings ----

TEST(SETTINGS_TABLE, LIMITS_OF_THE_ASYMMETRIC_UNITS_ARE_THOSE_OF_THE_TABLE_OF_FACTS) {
  const std::vector<CELLS> facts = FACTS("space_group_settings.tsv");
  if (facts.empty()) GTEST_SKIP() << no_facts;
  ASSERT_EQ(facts.size(), SPGR_INFO.size());
  constexpr std::size_t first_limit = 8;
  for (std::size_t i = 0; i < facts.size(); ++i) {
    EXPECT_EQ(SPGR_INFO[i].HM, facts[i][2]) << i;
    for (std::size_t k = 0; k < 6; ++k)
      EXPECT_EQ(SPGR_INFO[i].ASU[k], std::stoi(facts[i][first_limit + k])) << SPGR_INFO[i].HM;
  }
}
