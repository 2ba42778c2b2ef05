// Bond valences by the exponential law of I. D. Brown and D. Altermatt, Acta Cryst. B41 (1985)
// 244-247, weighted by occupancy where a site holds several species. Prints nothing.
#include "src/kva_crystal_structures/valence.h"

#include <cmath>  // for exp

#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/kva_crystal_structures/coordination.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::BEGINS_WITH;

namespace {

constexpr float no_second_ligand = 0.0001f;  // occupancy below which a slot is empty
constexpr float no_second_centre = 0.001f;
constexpr std::size_t SLOTS = 1 + MAX_DUPLICATES;

// The species on a site: its atom and the duplicates of it. Empty slots are blank with occupancy 0.
struct SHARED_SITE {
  std::array<std::string, SLOTS> LABEL;
  std::array<float, SLOTS> OCC{};
};

SHARED_SITE SPECIES_OF_SITE(const CRYSTAL_STRUCTURE_TYPE& phase, int atom) {
  SHARED_SITE site;
  site.LABEL[0] = VALENCE_LABEL(phase.ATOM(atom));
  site.OCC[0] = phase.ATOM(atom).OCC;
  std::size_t slot = 0;
  for (int duplicate : phase.ATOM_DUP(atom)) {
    ++slot;
    if (duplicate <= 0) continue;
    site.LABEL[slot] = VALENCE_LABEL(phase.ATOM(duplicate));
    site.OCC[slot] = phase.ATOM(duplicate).OCC;
  }
  return site;
}

bool IS_CATION_LABEL(std::string_view label, const LIST<BV_PAIR>& pairs) {
  for (const BV_PAIR& pair : pairs)
    if (BEGINS_WITH(pair.CATION, label)) return true;
  return false;
}

// Row of the parameters of a species of the centre and one of the ligand, the cation first; 0 when
// there is none.
int PARAMETERS_OF_PAIR(const std::string& centre, const std::string& ligand, bool centre_is_cation,
                       const LIST<BV_PAIR>& pairs) {
  return centre_is_cation ? FIND_BVLOCAL(centre, ligand, pairs)
                          : FIND_BVLOCAL(ligand, centre, pairs);
}

float EXPONENTIAL_VALENCE(const VALENCE_LAW::TERM& term, float length) {
  // Rounded once from a wider result: the same digits on every machine.
  return static_cast<float>(std::exp(static_cast<double>((term.D0 - length) / term.B)));
}

VALENCE_LAW LAW_OF_SITES(const SHARED_SITE& centre, const SHARED_SITE& ligand,
                         bool centre_is_cation, const LIST<BV_PAIR>& pairs) {
  VALENCE_LAW law;
  const bool one_ligand = ligand.OCC[1] < no_second_ligand;
  if (!one_ligand && !(centre.OCC[1] < no_second_centre)) return law;
  law.COMMON_OCC = (one_ligand ? ligand : centre).OCC[0];
  for (std::size_t k = 0; k < SLOTS; ++k) {
    const std::string& centre_label = centre.LABEL[one_ligand ? k : 0];
    const std::string& ligand_label = ligand.LABEL[one_ligand ? 0 : k];
    const int row = PARAMETERS_OF_PAIR(centre_label, ligand_label, centre_is_cation, pairs);
    if (row == 0) continue;
    law.TERMS[static_cast<std::size_t>(law.COUNT++)] = {pairs(row).D0, pairs(row).B,
                                                        (one_ligand ? centre : ligand).OCC[k]};
  }
  return law;
}

// The valence as it is stored: in 32-bit reals.
float STORED_VALENCE(const VALENCE_LAW& law, float length) {
  float valence = 0.0f;
  for (int k = 0; k < law.COUNT; ++k) {
    const VALENCE_LAW::TERM& term = law.TERMS[static_cast<std::size_t>(k)];
    valence += EXPONENTIAL_VALENCE(term, length) * term.OCC;
  }
  return valence * law.COMMON_OCC;
}

void CALC_VALENCE_OF_CENTRE(CRYSTAL_STRUCTURE_TYPE& phase, int i, const LIST<BV_PAIR>& pairs) {
  float sum = 0.0f;
  float sum_std = 0.0f;
  for (int m : BONDS_PRESENT(phase, i)) {
    const SHARED_SITE centre = SPECIES_OF_SITE(phase, phase.BONDS.CENTRE(i, m));
    const SHARED_SITE ligand = SPECIES_OF_SITE(phase, phase.BONDS.LIGAND(i, m));
    const bool centre_is_cation = IS_CATION_LABEL(centre.LABEL[0], pairs);
    const float valence = STORED_VALENCE(LAW_OF_SITES(centre, ligand, centre_is_cation, pairs),
                                         phase.BONDS(i, m, BOND_LENGTH));
    phase.BONDS(i, m, BOND_VALENCE) = valence;
    const int row = PARAMETERS_OF_PAIR(centre.LABEL[0], ligand.LABEL[0], centre_is_cation, pairs);
    if (row > 0)
      phase.BONDS(i, m, BOND_VALENCE_STD) =
          valence * phase.BONDS(i, m, BOND_LENGTH_STD) / pairs(row).B;
    sum += valence;
    sum_std += phase.BONDS(i, m, BOND_VALENCE_STD);
  }
  phase.POLYHEDRON(i, POLY_VALENCE_SUM) = sum;
  phase.POLYHEDRON(i, POLY_VALENCE_SUM_STD) = sum_std;  // linear: the bonds share their parameters
}

}  // namespace

bool WITHOUT_CHARGE(const ATOM_TYPE& atom) {
  constexpr int shortest_charged_label = 3;
  return KVA_UTILITIES::LENTRIM(atom.SFACSYMB) < shortest_charged_label;
}

bool HAS_DEFAULT_CHARGE(const ATOM_TYPE& atom) {
  return atom.Z >= 1 && atom.Z <= NUMBER_OF_ELEMENTS;
}

std::string VALENCE_LABEL(const ATOM_TYPE& atom) {
  const bool no_element = WITHOUT_CHARGE(atom) && !HAS_DEFAULT_CHARGE(atom);
  return no_element ? std::string(XTAL::NO_ELEMENT) : atom.SFACSYMB;
}

int FIND_BVLOCAL(std::string_view label_1, std::string_view label_2, const LIST<BV_PAIR>& pairs) {
  for (int row = 1; row <= pairs.COUNT(); ++row)
    if (BEGINS_WITH(pairs(row).CATION, label_1) && BEGINS_WITH(pairs(row).ANION, label_2))
      return row;
  return 0;
}

VALENCE_LAW VALENCE_LAW_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m,
                           const LIST<BV_PAIR>& pairs) {
  const SHARED_SITE centre = SPECIES_OF_SITE(phase, phase.BONDS.CENTRE(i, m));
  const SHARED_SITE ligand = SPECIES_OF_SITE(phase, phase.BONDS.LIGAND(i, m));
  return LAW_OF_SITES(centre, ligand, IS_CATION_LABEL(centre.LABEL[0], pairs), pairs);
}

double VALENCE_BY_LAW(const VALENCE_LAW& law, double length) {
  double valence = 0.0;
  for (int k = 0; k < law.COUNT; ++k) {
    const VALENCE_LAW::TERM& term = law.TERMS[static_cast<std::size_t>(k)];
    valence += std::exp((static_cast<double>(term.D0) - length) / static_cast<double>(term.B)) *
               static_cast<double>(term.OCC);
  }
  return valence * static_cast<double>(law.COMMON_OCC);
}

void CALC_VALENCE_ALLBONDS(CRYSTAL_STRUCTURE_TYPE& phase, const LIST<BV_PAIR>& pairs) {
  if (pairs.COUNT() == 0) return;
  for (int i = 1; i <= CAPACITY(phase); ++i)
    if (phase.NBONDS(i) > 0) CALC_VALENCE_OF_CENTRE(phase, i, pairs);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
