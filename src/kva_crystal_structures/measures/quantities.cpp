// Quantities of a block: where their atoms lie in it, their values, and their derivatives.
#include "src/kva_crystal_structures/measures/quantities.h"

#include <algorithm>  // for any_of, find, max
#include <cmath>
#include <limits>

#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/coordination.h"
#include "src/kva_crystal_structures/displacement.h"
#include "src/kva_crystal_structures/measures/features.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::EQUAL_TEXT;

namespace {

constexpr double step = 1e-6;  // of fractions, angstroms and degrees

// ---- names of parameters ----

enum PARAMETER_CLASS { OF_NUMBER, OF_SITE, OF_CELL, OF_CONDITION, OF_DISPLACEMENT, OF_OCCUPANCY };

std::int64_t PARAMETER_NAME(PARAMETER_CLASS kind, int owner, int index) {
  constexpr std::int64_t owners = 1LL << 24;
  constexpr std::int64_t indices = 1LL << 32;
  return (static_cast<std::int64_t>(kind) * owners + owner) * indices + index;
}

// ---- atoms in the block ----

// An atom of the block as an operator and a lattice vector put it; ATOM 0 when there is none.
struct BLOCK_ATOM {
  int ATOM = 0;
  int OPERATOR = 1;
  WIDE3 X{};
};

// The lattice vector nearest to v.
WIDE3 NEAREST_LATTICE_VECTOR(const XTAL::SPACE_GROUP& group, const WIDE3& v) {
  WIDE3 nearest{};
  double smallest = std::numeric_limits<double>::infinity();
  for (const VECTOR3& centring : group.LATT_TRANS) {
    WIDE3 vector = WIDE(centring);
    double off = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      vector[k] += std::round(v[k] - vector[k]);
      off += std::abs(v[k] - vector[k]);
    }
    if (!(off < smallest)) continue;
    smallest = off;
    nearest = vector;
  }
  return nearest;
}

// The same image with all digits that 64-bit reals have.
BLOCK_ATOM IN_WIDE_REALS(const CRYSTAL_STRUCTURE_TYPE& phase, const FOUND_ATOM& found) {
  if (found.ATOM == 0) return {};
  const XTAL::SYM_OP& op = phase.SPG.SYMOP(found.OPERATOR);
  const WIDE3 image = ADD(MULTIPLY(op.ROT, WIDE(phase.ATOM(found.ATOM).X)), WIDE(op.TR));
  const WIDE3 lattice = NEAREST_LATTICE_VECTOR(phase.SPG, SUBTRACT(WIDE(found.X), image));
  return {found.ATOM, found.OPERATOR, ADD(image, lattice)};
}

// The atom in use that lies where an atom of the reference block does.
BLOCK_ATOM BLOCK_ATOM_AT(const MEASURED_BLOCK& block, const WIDE3& x_frac, float radius) {
  const FOUND_ATOM found = FIND_ATOM(block.IMAGES, NARROW(x_frac), "OMIT", radius);
  if (found.ATOM == 0 || block.PHASE.ATOM_USE(found.ATOM) != ATOM_USED) return {};
  return IN_WIDE_REALS(block.PHASE, found);
}

// ---- the points of a call ----

// A call in a block: the atoms that it measures, and what does not change when they move a little.
struct CALL_IN_BLOCK {
  const CALL& OF;
  std::vector<BLOCK_ATOM> ATOMS;  // those of the call; of a polyhedron the centre, then its ligands
  std::vector<HULL_FACE> FACES;
  std::vector<VALENCE_LAW> LAWS;  // of each bond
};

// Where values are worked out, so that memory is asked for once.
struct WORKSPACE {
  std::vector<WIDE3> X_FRAC;
  std::vector<WIDE3> X_CART;
  std::vector<WIDE3> POINTS;
};

double BOND_VALENCES(const std::vector<VALENCE_LAW>& laws, WIDE_POINTS ligands) {
  double sum = 0.0;
  for (std::size_t m = 0; m < ligands.size(); ++m)
    sum += VALENCE_BY_LAW(laws[m], LENGTH(ligands[m]));
  return sum;
}

double POLYHEDRON_QUANTITY(const CALL_IN_BLOCK& call, WIDE_POINTS ligands) {
  switch (call.OF.KIND) {
    case QUANTITY::MEAN:
    case QUANTITY::BOND:
      return MEAN_LENGTH_OF(ligands);
    case QUANTITY::VOL:
      return VOLUME_WITHIN(call.FACES, ligands);
    case QUANTITY::QE:
      return QUADRATIC_ELONGATION(call.FACES, ligands);
    case QUANTITY::AV:
      return ANGLE_VARIANCE(ligands);
    case QUANTITY::BVS:
      return BOND_VALENCES(call.LAWS, ligands);
    case QUANTITY::BAUR:
      return BAUR_INDEX(ligands);
    case QUANTITY::ECON:
      return EFFECTIVE_COORDINATION(ligands);
    case QUANTITY::SHIFT:
      return DISTANCE_TO_CENTROID(ligands);
    case QUANTITY::SIGMA:
      return CIS_DEVIATION(ligands);
    case QUANTITY::BOND_ANGLE:
      return WIDE_ANGLE(ligands[0], ligands[1]);
    case QUANTITY::EDGE:
      return LENGTH(SUBTRACT(ligands[1], ligands[0]));
    default:
      return no_value;
  }
}

double POINT_QUANTITY(const CALL& call, WIDE_POINTS p) {
  const auto first = static_cast<std::size_t>(call.FIRST_GROUP);
  switch (call.KIND) {
    case QUANTITY::DIST:
      return LENGTH(SUBTRACT(p[1], p[0]));
    case QUANTITY::ANGLE:
      return WIDE_ANGLE(SUBTRACT(p[0], p[1]), SUBTRACT(p[2], p[1]));
    case QUANTITY::TORSION:
      return TORSION_OF(p[0], p[1], p[2], p[3]);
    case QUANTITY::OFFPLANE:
      return OFF_PLANE(p[0], p.subspan(first));
    case QUANTITY::PLANES:
      return ANGLE_OF_PLANES(p.first(first), p.subspan(first));
    default:
      return no_value;
  }
}

// The quantity of positions (in the workspace, fractional) in a cell with the frame.
double EVALUATE(const CALL_IN_BLOCK& call, const WIDE33& frame, WORKSPACE& work) {
  const QUANTITY kind = call.OF.KIND;
  if (kind == QUANTITY::X || kind == QUANTITY::Y || kind == QUANTITY::Z)
    return work.X_FRAC[0][static_cast<std::size_t>(kind) - static_cast<std::size_t>(QUANTITY::X)];
  work.X_CART.clear();
  for (const WIDE3& x_frac : work.X_FRAC) work.X_CART.push_back(MULTIPLY(frame, x_frac));
  if (!ROW_OF(kind).NEEDS_BONDS) {
    COMBINE_POINTS(call.OF.POINTS, work.X_CART.data(), work.POINTS);
    return POINT_QUANTITY(call.OF, work.POINTS);
  }
  work.POINTS.clear();
  for (std::size_t m = 1; m < work.X_CART.size(); ++m)
    work.POINTS.push_back(SUBTRACT(work.X_CART[m], work.X_CART[0]));
  return POLYHEDRON_QUANTITY(call, work.POINTS);
}

void SET_POSITIONS(const CALL_IN_BLOCK& call, WORKSPACE& work) {
  work.X_FRAC.clear();
  for (const BLOCK_ATOM& atom : call.ATOMS) work.X_FRAC.push_back(atom.X);
}

// Moves all images of a site with its parameter.
void MOVE_SITE(const CALL_IN_BLOCK& call, const MEASURED_BLOCK& block, int site,
               const FREE_PARAMETER& parameter, double amount, WORKSPACE& work) {
  const WIDE3 move{parameter.DIRECTION[0] * amount, parameter.DIRECTION[1] * amount,
                   parameter.DIRECTION[2] * amount};
  for (std::size_t k = 0; k < call.ATOMS.size(); ++k) {
    const BLOCK_ATOM& atom = call.ATOMS[k];
    if (atom.ATOM == site)
      work.X_FRAC[k] = ADD(atom.X, MULTIPLY(block.PHASE.SPG.SYMOP(atom.OPERATOR).ROT, move));
  }
}

// ---- derivatives ----

// Difference of two values; of torsions, which begin anew at 180, the shorter way round.
double DIFFERENCE(QUANTITY kind, double up, double down) {
  constexpr double turn = 360.0;
  const double difference = up - down;
  return kind == QUANTITY::TORSION ? difference - turn * std::round(difference / turn) : difference;
}

const std::vector<FREE_PARAMETER>& PARAMETERS_OF_SITE(MEASURED_BLOCK& block, int site) {
  std::optional<std::vector<FREE_PARAMETER>>& parameters =
      block.SITES[static_cast<std::size_t>(site - 1)];
  if (!parameters) parameters = SITE_PARAMETERS(block.PHASE, site);
  return *parameters;
}

void ADD_TERM(MEASURED& measured, std::int64_t name, double share) {
  if (share > 0.0 || share < 0.0) measured.TERMS.push_back({name, share});
}

void ADD_SITE_TERMS(const CALL_IN_BLOCK& call, MEASURED_BLOCK& block, int site, WORKSPACE& work,
                    MEASURED& measured) {
  int index = 0;
  for (const FREE_PARAMETER& parameter : PARAMETERS_OF_SITE(block, site)) {
    ++index;
    if (!(parameter.ESD > 0.0)) continue;
    MOVE_SITE(call, block, site, parameter, step, work);
    const double up = EVALUATE(call, block.FRAME, work);
    MOVE_SITE(call, block, site, parameter, -step, work);
    const double down = EVALUATE(call, block.FRAME, work);
    ADD_TERM(measured, PARAMETER_NAME(OF_SITE, block.NUMBER, 4 * site + index),
             DIFFERENCE(call.OF.KIND, up, down) / (2.0 * step) * parameter.ESD);
  }
  MOVE_SITE(call, block, site, {}, 0.0, work);
}

void ADD_TERMS(const CALL_IN_BLOCK& call, MEASURED_BLOCK& block, WORKSPACE& work,
               MEASURED& measured) {
  for (std::size_t k = 0; k < call.ATOMS.size(); ++k) {
    const int site = call.ATOMS[k].ATOM;
    const auto begin = call.ATOMS.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(k);
    const bool done =
        std::any_of(begin, end, [&](const BLOCK_ATOM& other) { return other.ATOM == site; });
    if (!done) ADD_SITE_TERMS(call, block, site, work, measured);
  }
  for (std::size_t k = 0; k < block.CELL_PARAMETERS.size(); ++k) {
    const double up = EVALUATE(call, block.FRAMES_UP[k], work);
    const double down = EVALUATE(call, block.FRAMES_DOWN[k], work);
    ADD_TERM(measured, PARAMETER_NAME(OF_CELL, block.NUMBER, static_cast<int>(k)),
             DIFFERENCE(call.OF.KIND, up, down) / (2.0 * step) * block.CELL_PARAMETERS[k].ESD);
  }
}

// ---- atoms and centroids ----

// Whether two different atoms of the call have been matched with one place.
bool SHARE_A_PLACE(const MEASURED_BLOCK& block, const std::vector<BLOCK_ATOM>& atoms) {
  constexpr double one_place = 0.01;  // angstroms
  for (std::size_t j = 0; j < atoms.size(); ++j)
    for (std::size_t k = j + 1; k < atoms.size(); ++k)
      if (LENGTH(MULTIPLY(block.FRAME, SUBTRACT(atoms[k].X, atoms[j].X))) < one_place) return true;
  return false;
}

MEASURED MEASURE_ATOMS(const CALL& call, const std::vector<BOUND_ATOM>& bound,
                       const MEASURE_SETTINGS& settings, MEASURED_BLOCK& block) {
  CALL_IN_BLOCK in_block{call, {}, {}, {}};
  for (const POINT_ITEM& item : call.POINTS) {
    if (item.ATOM < 0) continue;
    in_block.ATOMS.push_back(
        BLOCK_ATOM_AT(block, bound[static_cast<std::size_t>(item.ATOM)].X, settings.RADIUS));
    if (in_block.ATOMS.back().ATOM == 0) return {no_value, {}, 0.0};
  }
  if (SHARE_A_PLACE(block, in_block.ATOMS)) return {no_value, {}, 0.0};
  WORKSPACE work;
  SET_POSITIONS(in_block, work);
  MEASURED measured{EVALUATE(in_block, block.FRAME, work), {}, 0.0};
  if (std::isfinite(measured.VALUE)) ADD_TERMS(in_block, block, work, measured);
  return measured;
}

// ---- U and occupancy ----

// The atom with the label's element at the place of a matched atom; 0 when another shares it.
int ATOM_OF_ELEMENT(const CRYSTAL_STRUCTURE_TYPE& phase, int site, const ATOM_TYPE& wanted,
                    bool shared) {
  if (EQUAL_TEXT(phase.ATOM(site).CHEMSYMB, wanted.CHEMSYMB)) return site;
  for (int i = site + 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) == -site && EQUAL_TEXT(phase.ATOM(i).CHEMSYMB, wanted.CHEMSYMB)) return i;
  return shared ? 0 : site;
}

bool SHARES_ITS_SITE(const CRYSTAL_STRUCTURE_TYPE& phase, int site) {
  return phase.ATOM_DUP(site, 1) > 0;
}

MEASURED MEASURE_SITE(const CALL& call, const BOUND_ATOM& bound, const MEASURE_SETTINGS& settings,
                      const MEASURED_BLOCK& block) {
  const BLOCK_ATOM matched = BLOCK_ATOM_AT(block, bound.X, settings.RADIUS);
  const ATOM_TYPE& wanted = settings.REFERENCE.ATOM(bound.ATOM);
  const int i = matched.ATOM == 0
                    ? 0
                    : ATOM_OF_ELEMENT(block.PHASE, matched.ATOM, wanted,
                                      SHARES_ITS_SITE(settings.REFERENCE, bound.SITE));
  if (i == 0) return {no_value, {}, 0.0};
  const ATOM_TYPE& atom = block.PHASE.ATOM(i);
  const bool is_u = call.KIND == QUANTITY::UISO;
  const double value = static_cast<double>(is_u ? atom.UEQ : atom.OCC);
  const double esd = static_cast<double>(is_u ? U_EQUIV_STD(block.PHASE, i) : atom.OCC_STD);
  const bool is_told = value > 0.0 || value < 0.0 || esd > 0.0;  // a U of 0.00(4) is one
  if (is_u && !is_told) return {no_value, {}, 0.0};
  MEASURED measured{value, {}, 0.0};
  ADD_TERM(measured, PARAMETER_NAME(is_u ? OF_DISPLACEMENT : OF_OCCUPANCY, block.NUMBER, i), esd);
  return measured;
}

// ---- cell and conditions ----

MEASURED MEASURE_VOLUME(const MEASURED_BLOCK& block) {
  MEASURED measured{static_cast<double>(block.PHASE.CELL.CELLVOL), {}, 0.0};
  const auto volume = [](const WIDE33& frame) { return frame[0][0] * frame[1][1] * frame[2][2]; };
  for (std::size_t k = 0; k < block.CELL_PARAMETERS.size(); ++k)
    ADD_TERM(measured, PARAMETER_NAME(OF_CELL, block.NUMBER, static_cast<int>(k)),
             (volume(block.FRAMES_UP[k]) - volume(block.FRAMES_DOWN[k])) / (2.0 * step) *
                 block.CELL_PARAMETERS[k].ESD);
  return measured;
}

MEASURED MEASURE_CELL(QUANTITY kind, const MEASURED_BLOCK& block) {
  if (kind == QUANTITY::CELL_V) return MEASURE_VOLUME(block);
  const auto component =
      static_cast<std::size_t>(kind) - static_cast<std::size_t>(QUANTITY::CELL_A);
  MEASURED measured{block.CELL[component], {}, 0.0};
  for (std::size_t k = 0; k < block.CELL_PARAMETERS.size(); ++k)
    ADD_TERM(measured, PARAMETER_NAME(OF_CELL, block.NUMBER, static_cast<int>(k)),
             block.CELL_PARAMETERS[k].DIRECTION[component] * block.CELL_PARAMETERS[k].ESD);
  return measured;
}

MEASURED MEASURE_CONDITION(QUANTITY kind, const MEASURED_BLOCK& block) {
  const int row = kind == QUANTITY::CONDITION_T ? TEMPERATURE : PRESSURE;
  MEASURED measured{static_cast<double>(block.PHASE.PT(row, PT_VALUE)), {}, 0.0};
  ADD_TERM(measured, PARAMETER_NAME(OF_CONDITION, block.NUMBER, row),
           static_cast<double>(block.PHASE.PT(row, PT_ESD)));
  return measured;
}

// ---- polyhedra ----

// The bond rows that a call measures; blank when one of them is missing.
std::vector<int> ROWS_OF_CALL(const CALL& call, const CRYSTAL_STRUCTURE_TYPE& phase, int i,
                              int all_rows) {
  std::vector<int> rows = BONDS_PRESENT(phase, i);
  if (ROW_OF(call.KIND).TAKES != ARGUMENTS::SITE_AND_BONDS)
    return static_cast<int>(rows.size()) == all_rows ? rows : std::vector<int>{};
  std::vector<int> wanted;
  for (int k = 0; k < ROW_OF(call.KIND).COUNT; ++k)
    wanted.push_back(call.BONDS[static_cast<std::size_t>(k)]);
  for (int j : wanted)
    if (std::find(rows.begin(), rows.end(), j) == rows.end()) return {};
  return wanted;
}

double POSITIVE_OR_NONE(float value) {
  return value > 0.0f ? static_cast<double>(value) : no_value;
}

// The value that CALC has stored; geometry: what the positions give, where CALC has none.
double STORED_VALUE(const CALL& call, const CRYSTAL_STRUCTURE_TYPE& phase, int i,
                    const std::vector<int>& rows, double geometry) {
  constexpr std::size_t smallest_hull = 4;
  const auto [j, k] = std::minmax(call.BONDS[0], call.BONDS[1]);
  switch (call.KIND) {
    case QUANTITY::MEAN:
      return static_cast<double>(phase.POLYHEDRON(i, POLY_MEAN_LENGTH));
    case QUANTITY::VOL:
      return rows.size() < smallest_hull ? no_value
                                         : static_cast<double>(phase.POLYHEDRON(i, POLY_VOLUME));
    case QUANTITY::QE:
      return std::isfinite(geometry) ? POSITIVE_OR_NONE(phase.POLYHEDRON(i, POLY_ELONGATION))
                                     : no_value;
    case QUANTITY::AV:
      // Without an elongation there is no volume, and the variance has been cleared.
      return std::isfinite(geometry) && phase.POLYHEDRON(i, POLY_ELONGATION) > 0.0f
                 ? static_cast<double>(phase.POLYHEDRON(i, POLY_VARIANCE))
                 : no_value;
    case QUANTITY::BVS:
      return POSITIVE_OR_NONE(phase.POLYHEDRON(i, POLY_VALENCE_SUM));
    case QUANTITY::BOND:
      return static_cast<double>(phase.BONDS(i, call.BONDS[0], BOND_LENGTH));
    case QUANTITY::BOND_ANGLE:
      return static_cast<double>(phase.BANGLES(i, j, k, ANGLE));
    case QUANTITY::EDGE:
      return static_cast<double>(phase.BANGLES(i, j, k, EDGE));
    default:
      return geometry;
  }
}

// Centre and ligands of the rows.
std::vector<BLOCK_ATOM> POLYHEDRON_ATOMS(const MEASURED_BLOCK& block, int i,
                                         const std::vector<int>& rows) {
  const CRYSTAL_STRUCTURE_TYPE& phase = block.PHASE;
  const VECTOR3 centre = CENTRE_POSITION(phase, i);
  const FOUND_ATOM found = FIND_ATOM(block.IMAGES, centre, "OMIT", MATCH_RADIUS);
  std::vector<BLOCK_ATOM> atoms{IN_WIDE_REALS(phase, found)};
  for (int j : rows)
    atoms.push_back(
        IN_WIDE_REALS(phase, {phase.BONDS.LIGAND(i, j), XTAL::ADD(centre, phase.BONDS.VECTOR(i, j)),
                              phase.BONDS.OPERATOR(i, j)}));
  return atoms;
}

bool NEEDS_FACES(QUANTITY kind) {
  return kind == QUANTITY::VOL || kind == QUANTITY::QE;
}

MEASURED MEASURE_POLYHEDRON(const CALL& call, const BOUND_ATOM& bound,
                            const MEASURE_SETTINGS& settings, MEASURED_BLOCK& block) {
  const CRYSTAL_STRUCTURE_TYPE& phase = block.PHASE;
  const int i = bound.SITE;
  if (i > CAPACITY(phase) || phase.NBONDS(i) <= 0) return {no_value, {}, 0.0};
  if (call.KIND == QUANTITY::N) return {static_cast<double>(phase.NBONDS(i)), {}, 0.0};
  const std::vector<int> rows = ROWS_OF_CALL(call, phase, i, settings.REFERENCE.NBONDS(i));
  if (rows.empty() || (call.KIND == QUANTITY::BVS && !settings.VALENCES))
    return {no_value, {}, 0.0};
  CALL_IN_BLOCK in_block{call, POLYHEDRON_ATOMS(block, i, rows), {}, {}};
  if (in_block.ATOMS[0].ATOM == 0) return {no_value, {}, 0.0};
  WORKSPACE work;
  SET_POSITIONS(in_block, work);
  if (NEEDS_FACES(call.KIND)) {
    EVALUATE(in_block, block.FRAME, work);  // sets the ligands
    in_block.FACES = HULL_FACES(work.POINTS);
  }
  if (call.KIND == QUANTITY::BVS)
    for (int j : rows) in_block.LAWS.push_back(VALENCE_LAW_OF(phase, i, j, settings.PAIRS));
  const double geometry = EVALUATE(in_block, block.FRAME, work);
  MEASURED measured{STORED_VALUE(call, phase, i, rows, geometry), {}, 0.0};
  if (std::isfinite(measured.VALUE)) ADD_TERMS(in_block, block, work, measured);
  return measured;
}

// ---- what symmetry fixes ----

bool IS_IN_DEGREES(QUANTITY kind) {
  return ROW_OF(kind).UNIT == "deg";
}

// A quantity whose esd is below the limit has none, and a value that is then zero but for the
// rounding of 32-bit coordinates is zero.
void CLEAR_WHAT_IS_FIXED(QUANTITY kind, MEASURED& measured) {
  const double limit = IS_IN_DEGREES(kind) ? 1e-4 : 1e-6;
  const double rounding = IS_IN_DEGREES(kind) ? 1e-4 : 5e-6;
  const double esd = std::sqrt(VARIANCE_OF(measured.TERMS));
  if (std::isfinite(esd) && !(esd < limit)) return;
  measured.TERMS.clear();
  const bool has_zero = kind <= QUANTITY::Z || kind == QUANTITY::SHIFT || kind == QUANTITY::SIGMA;
  if (has_zero && std::abs(measured.VALUE) < rounding) measured.VALUE = 0.0;
}

// Half a turn is positive, on whichever side of it the rounding has left a torsion.
void MAKE_HALF_A_TURN_POSITIVE(QUANTITY kind, MEASURED& measured) {
  constexpr double half_a_turn = 180.0;
  constexpr double rounding = 1e-4;
  if (kind == QUANTITY::TORSION && measured.VALUE + half_a_turn < rounding)
    measured.VALUE = half_a_turn;
}

MEASURED MEASURE_BY_KIND(const CALL& call, const std::vector<BOUND_ATOM>& bound,
                         const MEASURE_SETTINGS& settings, MEASURED_BLOCK& block) {
  if (call.KIND >= QUANTITY::CONDITION_T) return MEASURE_CONDITION(call.KIND, block);
  if (call.KIND >= QUANTITY::CELL_A) return MEASURE_CELL(call.KIND, block);
  const BOUND_ATOM& first = bound[static_cast<std::size_t>(call.POINTS.front().ATOM)];
  if (ROW_OF(call.KIND).NEEDS_BONDS) return MEASURE_POLYHEDRON(call, first, settings, block);
  if (call.KIND == QUANTITY::UISO || call.KIND == QUANTITY::OCC)
    return MEASURE_SITE(call, first, settings, block);
  return MEASURE_ATOMS(call, bound, settings, block);
}

}  // namespace

MEASURED MEASURE_CALL(const CALL& call, const std::vector<BOUND_ATOM>& bound,
                      const MEASURE_SETTINGS& settings, MEASURED_BLOCK& block) {
  MEASURED measured = MEASURE_BY_KIND(call, bound, settings, block);
  CLEAR_WHAT_IS_FIXED(call.KIND, measured);
  MAKE_HALF_A_TURN_POSITIVE(call.KIND, measured);
  measured.INDEPENDENT = VARIANCE_OF(measured.TERMS);
  return measured;
}

ESD_TERM TERM_OF_NUMBER(int measure, int node, double esd) {
  return {PARAMETER_NAME(OF_NUMBER, measure, node), esd};
}

MEASURED_BLOCK MEASURED_BLOCK_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int number) {
  MEASURED_BLOCK block{phase, number, IMAGES_OF(phase), WIDE_CELL(phase.CELL), {}, {}, {}, {}, {}};
  block.FRAME = WIDE_FRAME(block.CELL);
  for (const FREE_PARAMETER& parameter : CELL_PARAMETERS(phase)) {
    if (!(parameter.ESD > 0.0)) continue;
    WIDE6 up = block.CELL;
    WIDE6 down = block.CELL;
    for (std::size_t k = 0; k < 6; ++k) {
      up[k] += step * parameter.DIRECTION[k];
      down[k] -= step * parameter.DIRECTION[k];
    }
    block.CELL_PARAMETERS.push_back(parameter);
    block.FRAMES_UP.push_back(WIDE_FRAME(up));
    block.FRAMES_DOWN.push_back(WIDE_FRAME(down));
  }
  block.SITES.resize(static_cast<std::size_t>(phase.NATOMS));
  return block;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
