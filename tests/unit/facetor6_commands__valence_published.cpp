// Bond-valence sums of published structures, worked out here in double precision from the
// coordinates: the group closed from its generators, all images in plain loops over the cells, the
// law with parameters typed in. Compared with what the record holds and what the table shows.
#include <algorithm>  // for find, none_of, sort
#include <array>
#include <cmath>  // for exp, sqrt, floor, cos
#include <map>
#include <numbers>  // for pi

#include "facetor6_commands__published_crystals.h"
#include "facetor6_commands__valence_blocks.h"
#include "src/facetor6_readfiles/readfiles.h"

using namespace PUBLISHED_CRYSTALS;
using namespace VALENCE_TESTS;

namespace {

// ---- parameters ----

// Accumulated table of bond-valence parameters compiled by I. D. Brown, McMaster University,
// distributed by the International Union of Crystallography, edition of 2 May 2006, the first entry
// of each pair: d0 in angstroms; b is 0.37 for all of these.
constexpr double b = 0.37;
const std::map<std::string, double> d0_of{
    {"Si+4 O-2", 1.624}, {"Al+3 O-2", 1.620}, {"Mg+2 O-2", 1.693}, {"Ca+2 O-2", 1.967},
    {"Na+1 O-2", 1.803}, {"Ti+4 O-2", 1.815}, {"Zr+4 O-2", 1.928}, {"C+4 O-2", 1.390},
    {"Fe+3 O-2", 1.759}, {"S+6 O-2", 1.624},  {"Ni+3 O-2", 1.750}, {"Na+1 Cl-1", 2.150},
    {"Ca+2 F-1", 1.842}};

// ---- the group from its generators ----

// Rows of the matrix with the translation in 24ths behind each.
using OPERATOR = std::array<int, 12>;
constexpr int parts = 24;
constexpr OPERATOR identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

int MODULO(int translation) {
  return ((translation % parts) + parts) % parts;
}

// "-y,x-y,z+2/3"; letters, signs and fractions of single digits only.
OPERATOR PARSED(const std::string& text) {
  OPERATOR op{};
  std::size_t row = 0;
  int sign = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == ',') ++row;
    if (c == '+' || c == '-' || c == ',') sign = c == '-' ? -1 : 1;
    if (c >= 'x' && c <= 'z') op[4 * row + static_cast<std::size_t>(c - 'x')] = sign;
    if (c == '/')
      op[4 * row + 3] = MODULO(sign * (text[i - 1] - '0') * parts / (text[i + 1] - '0'));
  }
  return op;
}

OPERATOR PRODUCT(const OPERATOR& first, const OPERATOR& second) {
  OPERATOR op{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 4; ++j)
      for (std::size_t k = 0; k < 3; ++k) op[4 * i + j] += first[4 * i + k] * second[4 * k + j];
    op[4 * i + 3] = MODULO(op[4 * i + 3] + first[4 * i + 3]);
  }
  return op;
}

std::vector<OPERATOR> CLOSED(const std::vector<std::string>& generators) {
  std::vector<OPERATOR> group{identity};
  for (std::size_t i = 0; i < group.size(); ++i)
    for (const std::string& generator : generators) {
      const OPERATOR op = PRODUCT(PARSED(generator), group[i]);
      if (std::find(group.begin(), group.end(), op) == group.end()) group.push_back(op);
    }
  return group;
}

// ---- distances and sums ----

struct NEIGHBOUR {
  std::size_t POSITION = 0;
  std::array<double, 3> X{};
  double LENGTH = 0.0;
};

double LENGTH_OF(const std::array<double, 6>& cell, const std::array<double, 3>& v) {
  constexpr double degree = std::numbers::pi / 180.0;
  double square = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t j = (i + 1) % 3;
    const double cosine = std::cos(cell[3 + (3 - i - j)] * degree);  // of the third angle
    square += cell[i] * cell[i] * v[i] * v[i] + 2.0 * cell[i] * cell[j] * v[i] * v[j] * cosine;
  }
  return std::sqrt(square);
}

bool IS_ANION(const POSITION& position) {
  return position.ON_IT[0].LABEL.find('-') != std::string::npos;
}

// The images of the other kind of ion up to dmax.
std::vector<NEIGHBOUR> NEIGHBOURS_OF(const PUBLISHED_CRYSTAL& crystal, const POSITION& centre) {
  constexpr double same_place = 0.1;  // angstroms
  constexpr int cells = 3;
  std::vector<NEIGHBOUR> found;
  const std::vector<OPERATOR> group = CLOSED(crystal.GENERATORS);
  for (std::size_t p = 0; p < crystal.POSITIONS.size(); ++p) {
    const POSITION& ligand = crystal.POSITIONS[p];
    if (IS_ANION(ligand) == IS_ANION(centre)) continue;
    for (const OPERATOR& op : group)
      for (int t = 0; t < cells * cells * cells; ++t) {
        const std::array<int, 3> cell{t % cells - 1, t / cells % cells - 1, t / cells / cells - 1};
        NEIGHBOUR image{p, {}, 0.0};
        for (std::size_t i = 0; i < 3; ++i) {
          double x = op[4 * i + 3] / static_cast<double>(parts) - centre.X[i];
          for (std::size_t k = 0; k < 3; ++k) x += op[4 * i + k] * ligand.X[k];
          image.X[i] = x - std::floor(x) + cell[i];
        }
        image.LENGTH = LENGTH_OF(crystal.CELL, image.X);
        const auto same = [&](const NEIGHBOUR& other) {
          return LENGTH_OF(crystal.CELL, {image.X[0] - other.X[0], image.X[1] - other.X[1],
                                          image.X[2] - other.X[2]}) < same_place;
        };
        if (image.LENGTH < crystal.DMAX && std::none_of(found.begin(), found.end(), same))
          found.push_back(image);
      }
  }
  return found;
}

// Ascending lengths of the bonds of the site of that name.
std::vector<double> LENGTHS_OF(const PUBLISHED_CRYSTAL& crystal, const std::string& name) {
  std::vector<double> lengths;
  for (const POSITION& position : crystal.POSITIONS)
    if (position.NAME == name)
      for (const NEIGHBOUR& neighbour : NEIGHBOURS_OF(crystal, position))
        lengths.push_back(neighbour.LENGTH);
  std::sort(lengths.begin(), lengths.end());
  return lengths;
}

// Every species of the one site with every species of the other, weighted by both occupancies.
double VALENCE_OF(const POSITION& cation, const POSITION& anion, double length) {
  double valence = 0.0;
  for (const SPECIES& c : cation.ON_IT)
    for (const SPECIES& a : anion.ON_IT)
      valence += c.OCC * a.OCC * std::exp((d0_of.at(c.LABEL + " " + a.LABEL) - length) / b);
  return valence;
}

double SUM_AROUND(const PUBLISHED_CRYSTAL& crystal, const POSITION& centre) {
  double sum = 0.0;
  for (const NEIGHBOUR& neighbour : NEIGHBOURS_OF(crystal, centre)) {
    const POSITION& ligand = crystal.POSITIONS[neighbour.POSITION];
    sum += IS_ANION(centre) ? VALENCE_OF(ligand, centre, neighbour.LENGTH)
                            : VALENCE_OF(centre, ligand, neighbour.LENGTH);
  }
  return sum;
}

// ---- what the program makes of it ----

// Atoms have the name of their position; a prime each tells the second and third species.
std::string CIF_OF(const PUBLISHED_CRYSTAL& crystal) {
  static constexpr std::array<const char*, 6> names{"length_a",    "length_b",   "length_c",
                                                    "angle_alpha", "angle_beta", "angle_gamma"};
  std::string types;
  std::string sites;
  for (const POSITION& position : crystal.POSITIONS)
    for (std::size_t k = 0; k < position.ON_IT.size(); ++k) {
      const SPECIES& species = position.ON_IT[k];
      types += species.LABEL + " " + species.LABEL + "\n";
      sites += position.NAME + std::string(k, '\'') + " " + species.LABEL;
      for (double x : position.X) sites += " " + std::to_string(x);
      sites += " " + std::to_string(species.OCC) + "\n";
    }
  std::string text = "data_published\n";
  for (std::size_t i = 0; i < names.size(); ++i)
    text += std::string("_cell_") + names[i] + " " + std::to_string(crystal.CELL[i]) + "\n";
  return text + "_space_group_name_H-M_alt '" + crystal.SYMBOL + "'\n\nloop_\n_atom_type_symbol\n" +
         "_atom_type_description\n" + types + "\nloop_\n_atom_site_label\n" +
         "_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n" +
         "_atom_site_occupancy\n" + sites;
}

class VALENCE_PUBLISHED : public VALENCES {
 protected:
  // Reads the crystal from a CIF and calculates bonds up to its limit, then valences with these
  // answers; what is said then.
  static std::string CALCULATED(const PUBLISHED_CRYSTAL& crystal,
                                const std::string& answers = "n\n") {
    START();
    PUT_FILE("published.cif", CIF_OF(crystal));
    CONSOLE_TESTS::PEND("cif published.cif");
    SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
    SAID("0.5 " + std::to_string(crystal.DMAX) + "\n", RUN_FACETOR_CALC_BONDS);
    return CALC(answers);
  }

  // The atom of exactly that label; 0 when there is none.
  static int ATOM_NUMBER(const std::string& label) {
    for (int i = 1; i <= REFERENCE().NATOMS; ++i)
      if (REFERENCE().ATOM(i).LAB == label) return i;
    return 0;
  }

  static double STORED(const std::string& label) {
    return static_cast<double>(REFERENCE().POLYHEDRON(ATOM_NUMBER(label), POLY_VALENCE_SUM));
  }

  // The last word of the block's row in the table of the site: the sum with three decimals.
  static std::string SHOWN(const std::string& said, const std::string& label) {
    const std::size_t title = said.find("BOND VALENCES FROM CENTRAL ATOM " + label + " ");
    if (title == std::string::npos) return "";
    const std::size_t row = said.find("\n  1: published", title);
    const std::size_t end = said.find('\n', row + 1);
    const std::string line = said.substr(row, end - row);
    return line.substr(line.find_last_of(' ') + 1);
  }

  // Each site's sum, held and shown, is that worked out here.
  static void EXPECT_SUMS(const PUBLISHED_CRYSTAL& crystal) {
    ASSERT_EQ(CLOSED(crystal.GENERATORS).size(), crystal.OPERATORS);
    const std::string said = CALCULATED(crystal);
    for (const POSITION& position : crystal.POSITIONS) {
      const std::string& name = position.NAME;
      const int number = ATOM_NUMBER(name);
      ASSERT_GT(number, 0) << name;
      const auto neighbours = static_cast<int>(NEIGHBOURS_OF(crystal, position).size());
      EXPECT_EQ(REFERENCE().NBONDS(number), neighbours) << name;
      const double sum = SUM_AROUND(crystal, position);
      EXPECT_NEAR(STORED(name), sum, to_be_held) << name;
      const std::string shown = SHOWN(said, name);
      ASSERT_EQ(shown.size(), 5u) << name << " is shown with three decimals: " << shown;
      EXPECT_NEAR(std::stod(shown), sum, to_be_shown) << name;
    }
    EXPECT_ENVIRONMENTS(crystal);
  }

 private:
  static constexpr double to_be_held = 0.0001;
  static constexpr double to_be_shown = 0.0005 + to_be_held;  // rounded to three decimals

  // The sums are near the charges and the bonds as known: a structure typed in right.
  static void EXPECT_ENVIRONMENTS(const PUBLISHED_CRYSTAL& crystal) {
    for (const ENVIRONMENT& known : crystal.ENVIRONMENTS) {
      EXPECT_NEAR(STORED(known.NAME), known.CHARGE, known.WITHIN) << known.NAME;
      if (known.BONDS.empty()) continue;
      const std::vector<double> lengths = LENGTHS_OF(crystal, known.NAME);
      std::size_t next = 0;
      for (const BOND_GROUP& group : known.BONDS) {
        ASSERT_LE(next + group.COUNT, lengths.size()) << known.NAME;
        double sum = 0.0;
        for (std::size_t k = 0; k < group.COUNT; ++k) sum += lengths[next++];
        EXPECT_NEAR(sum / static_cast<double>(group.COUNT), group.MEAN, 0.006) << known.NAME;
      }
      EXPECT_EQ(next, lengths.size()) << known.NAME << ": bonds in all";
    }
  }
};

// The spinel with these species on its sites.
PUBLISHED_CRYSTAL SPINEL_OF(const std::vector<SPECIES>& tetrahedral,
                            const std::vector<SPECIES>& octahedral) {
  PUBLISHED_CRYSTAL crystal = spinel;
  crystal.POSITIONS[0].ON_IT = tetrahedral;
  crystal.POSITIONS[1].ON_IT = octahedral;
  crystal.ENVIRONMENTS.clear();  // those of the published species
  return crystal;
}

const std::vector<SPECIES> magnesium{{"Mg+2", 1.0}};
const std::vector<SPECIES> aluminium{{"Al+3", 1.0}};

}  // namespace

// ---- published structures ----

TEST_F(VALENCE_PUBLISHED, QUARTZ) {
  EXPECT_SUMS(quartz);
}

TEST_F(VALENCE_PUBLISHED, FORSTERITE) {
  EXPECT_SUMS(forsterite);
}

TEST_F(VALENCE_PUBLISHED, CORUNDUM) {
  EXPECT_SUMS(corundum);
}

TEST_F(VALENCE_PUBLISHED, HEMATITE) {
  EXPECT_SUMS(hematite);
}

TEST_F(VALENCE_PUBLISHED, CALCITE) {
  EXPECT_SUMS(calcite);
}

TEST_F(VALENCE_PUBLISHED, RUTILE) {
  EXPECT_SUMS(rutile);
}

TEST_F(VALENCE_PUBLISHED, ZIRCON) {
  EXPECT_SUMS(zircon);
}

TEST_F(VALENCE_PUBLISHED, SPINEL) {
  EXPECT_SUMS(spinel);
}

TEST_F(VALENCE_PUBLISHED, PYROPE) {
  EXPECT_SUMS(pyrope);
}

TEST_F(VALENCE_PUBLISHED, ALBITE) {
  EXPECT_SUMS(albite);
}

TEST_F(VALENCE_PUBLISHED, DIOPSIDE) {
  EXPECT_SUMS(diopside);
}

TEST_F(VALENCE_PUBLISHED, HALITE) {
  EXPECT_SUMS(halite);
}

TEST_F(VALENCE_PUBLISHED, PERICLASE) {
  EXPECT_SUMS(periclase);
}

TEST_F(VALENCE_PUBLISHED, FLUORITE) {
  EXPECT_SUMS(fluorite);
}

TEST_F(VALENCE_PUBLISHED, PEROVSKITE) {
  EXPECT_SUMS(perovskite);
}

TEST_F(VALENCE_PUBLISHED, ANHYDRITE) {
  EXPECT_SUMS(anhydrite);
}

TEST_F(VALENCE_PUBLISHED, GYPSUM) {
  EXPECT_SUMS(gypsum);
}

TEST_F(VALENCE_PUBLISHED, SODIUM_NICKELATE) {
  EXPECT_SUMS(sodium_nickelate);
}

// ---- one composition in several ways ----

TEST_F(VALENCE_PUBLISHED, A_MIXED_SITE_HAS_THE_MEAN_SUM_OF_ITS_END_MEMBERS) {
  CALCULATED(SPINEL_OF(magnesium, magnesium));
  const std::array<double, 2> of_magnesium{STORED("T"), STORED("M")};
  CALCULATED(SPINEL_OF(aluminium, aluminium));
  const std::array<double, 2> of_aluminium{STORED("T"), STORED("M")};
  CALCULATED(spinel);
  const double tetrahedral = 0.782 * of_magnesium[0] + 0.218 * of_aluminium[0];
  const double octahedral = 0.109 * of_magnesium[1] + 0.891 * of_aluminium[1];
  EXPECT_NEAR(STORED("T"), tetrahedral, 1e-5);
  EXPECT_NEAR(STORED("M"), octahedral, 1e-5);
  // The oxygen has a quarter of the one's bonds and three of six of the other's.
  EXPECT_NEAR(STORED("O"), tetrahedral / 4.0 + octahedral / 2.0, 1e-5);
}

TEST_F(VALENCE_PUBLISHED, MIXED_CATIONS_AROUND_A_SINGLE_ANION_ARE_NO_TWO_MULTIPLE_SITES) {
  // Seen from the cations the centre is mixed, seen from the oxygen the ligands are.
  const std::string said = CALCULATED(spinel);
  EXPECT_FALSE(BV_FLAGS(BV_MULTIPLE_SITES));
  EXPECT_FALSE(HOLDS(said, "Bond valences cannot be calculated"));
}

TEST_F(VALENCE_PUBLISHED, THE_ORDER_OF_THE_SPECIES_DOES_NOT_MATTER) {
  const PUBLISHED_CRYSTAL turned =
      SPINEL_OF({{"Al+3", 0.218}, {"Mg+2", 0.782}}, {{"Mg+2", 0.109}, {"Al+3", 0.891}});
  EXPECT_SUMS(turned);
  const std::array<double, 3> sums{STORED("T"), STORED("M"), STORED("O")};
  CALCULATED(spinel);
  EXPECT_NEAR(STORED("T"), sums[0], 1e-5);
  EXPECT_NEAR(STORED("M"), sums[1], 1e-5);
  EXPECT_NEAR(STORED("O"), sums[2], 1e-5);
}

TEST_F(VALENCE_PUBLISHED, ONE_SPECIES_IN_TWO_OR_THREE_PARTS_SUMS_AS_THE_WHOLE) {
  CALCULATED(SPINEL_OF(magnesium, aluminium));
  const std::array<double, 3> whole{STORED("T"), STORED("M"), STORED("O")};
  const PUBLISHED_CRYSTAL parted =
      SPINEL_OF({{"Mg+2", 0.75}, {"Mg+2", 0.25}}, {{"Al+3", 0.5}, {"Al+3", 0.25}, {"Al+3", 0.25}});
  EXPECT_SUMS(parted);
  EXPECT_NEAR(STORED("T"), whole[0], 1e-5);
  EXPECT_NEAR(STORED("M"), whole[1], 1e-5);
  EXPECT_NEAR(STORED("O"), whole[2], 1e-5);
}

TEST_F(VALENCE_PUBLISHED, AN_AVERAGE_CATION_HAS_THE_LAW_OF_ITS_AVERAGE_D0) {
  // One cation of d0 = 0.782 * 1.693 + 0.218 * 1.620 = 1.677086 set by the user: 4 bonds of
  // 8.0836 * (0.26171 - 0.125) * sqrt(3) = 1.914105 angstroms, 4 exp(-0.237019 / 0.37) = 2.107922.
  // The mixed site has the mean of the exponentials, which is more.
  CALCULATED(SPINEL_OF(magnesium, magnesium), "y\n1 1.677086 0.37\n\n\nn\n");
  const double average = STORED("T");
  EXPECT_NEAR(average, 2.107922, 1e-4);
  CALCULATED(spinel);
  EXPECT_NEAR(STORED("T"), SUM_AROUND(spinel, spinel.POSITIONS[0]), 1e-4);
  EXPECT_GT(STORED("T"), average + 0.005);
}
