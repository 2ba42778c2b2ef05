// Labels to sites, codes to images, and the nearest images.
#include "src/kva_crystal_structures/measures/call_atoms.h"

#include <algorithm>  // for any_of, sort, tie
#include <cmath>      // for ceil, floor, round, sqrt
#include <tuple>      // for tie

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/measures/features.h"
#include "src/kva_crystal_structures/measures/free_parameters.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::INTEGER_COLUMNS;

// ---- labels ----

namespace {

// The first atom at the place of an atom.
int SITE_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int atom) {
  const int use = phase.ATOM_USE(atom);
  return use < ATOM_OMITTED ? -use : atom;
}

// Atoms whose label fits, one for each place.
template <class FITS>
std::vector<int> ATOMS_LABELLED(const CRYSTAL_STRUCTURE_TYPE& phase, FITS fits) {
  std::vector<int> atoms;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    if (!fits(phase.ATOM(i).LAB)) continue;
    const bool same_place = std::any_of(atoms.begin(), atoms.end(), [&](int other) {
      return SITE_OF(phase, other) == SITE_OF(phase, i);
    });
    if (!same_place) atoms.push_back(i);
  }
  return atoms;
}

// The atom that a label means; 0 with the error set.
int FIND_LABEL(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOM_TEXT& text,
               EXPRESSION_ERROR& error) {
  const std::string& label = text.LABEL;
  std::vector<int> atoms =
      ATOMS_LABELLED(phase, [&](const std::string& other) { return other == label; });
  if (atoms.empty())
    atoms = ATOMS_LABELLED(
        phase, [&](const std::string& other) { return KVA_UTILITIES::EQUAL_TEXT(other, label); });
  if (atoms.size() == 1 && phase.ATOM_USE(SITE_OF(phase, atoms[0])) == ATOM_USED) return atoms[0];
  if (atoms.empty())
    error.TEXT = "the reference block has no site " + label + ": LIST site names shows them";
  else if (atoms.size() > 1)
    error.TEXT = "several sites are called " + label + ": give them different labels";
  else
    error.TEXT = "site " + label + " is omitted: USE it in ATOMEDIT first";
  error.AT = text.AT;
  return 0;
}

// ---- images ----

constexpr double same_image = 0.1;      // angstroms; images of one site closer than this are one
constexpr double same_place = 0.01;     // angstroms; of different sites
constexpr double equally_near = 0.001;  // angstroms

// The reference block in 64-bit reals.
struct WIDE_BLOCK {
  const CRYSTAL_STRUCTURE_TYPE& PHASE;
  WIDE33 FRAME{};
};

double DISTANCE(const WIDE_BLOCK& block, const WIDE3& x1_frac, const WIDE3& x2_frac) {
  return LENGTH(MULTIPLY(block.FRAME, SUBTRACT(x2_frac, x1_frac)));
}

WIDE3 IMAGE_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int atom, int op,
                     const std::array<int, 3>& cells) {
  const XTAL::SYM_OP& operation = phase.SPG.SYMOP(op);
  const WIDE3 image = ADD(MULTIPLY(operation.ROT, WIDE(phase.ATOM(atom).X)), WIDE(operation.TR));
  return ADD(image, {static_cast<double>(cells[0]), static_cast<double>(cells[1]),
                     static_cast<double>(cells[2])});
}

struct NEAR_IMAGE {
  BOUND_ATOM AT;
  double DISTANCE = 0.0;
};

// Of images equally near the lowest operator comes first, then the lowest cell.
bool COMES_BEFORE(const NEAR_IMAGE& a, const NEAR_IMAGE& b) {
  return std::tie(a.AT.OPERATOR, a.AT.CELLS) < std::tie(b.AT.OPERATOR, b.AT.CELLS);
}

void SORT_IMAGES(std::vector<NEAR_IMAGE>& images) {
  std::sort(images.begin(), images.end(),
            [](const NEAR_IMAGE& a, const NEAR_IMAGE& b) { return a.DISTANCE < b.DISTANCE; });
  for (auto first = images.begin(); first != images.end();) {
    auto behind = first;
    while (behind != images.end() && behind->DISTANCE - first->DISTANCE < equally_near) ++behind;
    std::sort(first, behind, COMES_BEFORE);
    first = behind;
  }
}

// All images of a site within a radius, by every operator that brings one there.
std::vector<NEAR_IMAGE> IMAGES_WITHIN(const WIDE_BLOCK& block, int site, const WIDE3& from,
                                      double radius) {
  constexpr double most_cells = 100.0;  // along an axis: cells of no size have no end of them
  std::vector<NEAR_IMAGE> images;
  WIDE3 reach{};
  for (std::size_t k = 0; k < 3; ++k)
    reach[k] = std::min(radius * static_cast<double>(block.PHASE.CELL.RCELL[k]), most_cells);
  for (int op = 1; op <= block.PHASE.SPG.MULTIP; ++op) {
    const WIDE3 at = SUBTRACT(IMAGE_POSITION(block.PHASE, site, op, {}), from);
    std::array<int, 3> low{};
    std::array<int, 3> high{};
    for (std::size_t k = 0; k < 3; ++k) {
      low[k] = static_cast<int>(std::ceil(-reach[k] - at[k]));
      high[k] = static_cast<int>(std::floor(reach[k] - at[k]));
    }
    for (int t1 = low[0]; t1 <= high[0]; ++t1)
      for (int t2 = low[1]; t2 <= high[1]; ++t2)
        for (int t3 = low[2]; t3 <= high[2]; ++t3) {
          BOUND_ATOM image{site, site, op, {t1, t2, t3}, {}};
          image.X = IMAGE_POSITION(block.PHASE, site, op, image.CELLS);
          const double distance = DISTANCE(block, from, image.X);
          if (distance <= radius) images.push_back({image, distance});
        }
  }
  return images;
}

bool AT_ONE_PLACE(const WIDE_BLOCK& block, const BOUND_ATOM& a, const BOUND_ATOM& b) {
  return DISTANCE(block, a.X, b.X) < (a.SITE == b.SITE ? same_image : same_place);
}

// The images of a site within a radius that do not stand in the call yet, each place once.
std::vector<NEAR_IMAGE> FREE_IMAGES(const WIDE_BLOCK& block, int site, const WIDE3& from,
                                    double radius, const std::vector<BOUND_ATOM>& standing) {
  std::vector<NEAR_IMAGE> images = IMAGES_WITHIN(block, site, from, radius);
  SORT_IMAGES(images);
  std::vector<NEAR_IMAGE> kept;
  for (const NEAR_IMAGE& image : images) {
    const auto is_there = [&](const BOUND_ATOM& other) {
      return AT_ONE_PLACE(block, image.AT, other);
    };
    const bool listed = std::any_of(kept.begin(), kept.end(),
                                    [&](const NEAR_IMAGE& other) { return is_there(other.AT); });
    if (!listed && std::none_of(standing.begin(), standing.end(), is_there)) kept.push_back(image);
  }
  return kept;
}

// How many of the images lie as far away as the one at the place, and the distance behind them.
void COUNT_EQUAL(const std::vector<NEAR_IMAGE>& images, std::size_t place, CHAIN_STEP& step) {
  std::size_t first = 0;
  std::size_t behind = 0;
  while (behind <= place) {
    first = behind;
    while (behind < images.size() &&
           images[behind].DISTANCE - images[first].DISTANCE < equally_near)
      ++behind;
  }
  step.LENGTH = images[place].DISTANCE;
  step.EQUAL = static_cast<int>(behind - first);
  step.NEXT = behind < images.size() ? images[behind].DISTANCE : 0.0;
}

// The k-th nearest image, with one further known; false when none is found.
bool NEAREST_IMAGE(const WIDE_BLOCK& block, int site, const WIDE3& from, int k,
                   const std::vector<BOUND_ATOM>& standing, BOUND_ATOM& found, CHAIN_STEP& step) {
  constexpr double first_radius = 4.0;  // angstroms
  constexpr double last_radius = 300.0;
  constexpr double growth = 1.5;
  const auto place = static_cast<std::size_t>(k - 1);
  for (double radius = first_radius; radius < last_radius; radius *= growth) {
    const std::vector<NEAR_IMAGE> images = FREE_IMAGES(block, site, from, radius, standing);
    if (images.size() <= place) continue;
    COUNT_EQUAL(images, place, step);
    if (!(step.NEXT > 0.0)) continue;
    found = images[place].AT;
    return true;
  }
  return false;
}

// ---- one call ----

// What has been read of a call: its points so far, and what the last of them is called.
struct CALL_SO_FAR {
  std::vector<BOUND_ATOM> STANDING;
  std::vector<WIDE3> POINTS;
  std::string LAST;
};

bool CODES_CAN_TELL(const std::array<int, 3>& cells) {
  return std::all_of(cells.begin(), cells.end(), [](int t) { return t >= -5 && t <= 4; });
}

// An atom with a code, or the first of a call.
EXPRESSION_ERROR PLACE_CODED(const WIDE_BLOCK& block, const ATOM_TEXT& text, BOUND_ATOM& atom) {
  if (text.NEAREST > 0)
    return {"[" + INTEGER_COLUMNS(text.NEAREST) +
                "] counts from the atom before: the first atom of a call takes a code as in [" +
                "4_655]",
            text.AT};
  if (text.OPERATOR > block.PHASE.SPG.MULTIP)
    return {"the group has " + INTEGER_COLUMNS(block.PHASE.SPG.MULTIP) +
                " operators: LIST symmetry shows them",
            text.AT};
  if (text.CODED) {
    atom.OPERATOR = text.OPERATOR;
    atom.CELLS = text.CELLS;
  }
  atom.X = IMAGE_POSITION(block.PHASE, atom.ATOM, atom.OPERATOR, atom.CELLS);
  return {};
}

EXPRESSION_ERROR PLACE_NEAREST(const WIDE_BLOCK& block, const ATOM_TEXT& text,
                               const CALL_SO_FAR& call, BOUND_ATOM& atom, CHAIN_STEP& step) {
  BOUND_ATOM found;
  const int k = std::max(text.NEAREST, 1);
  if (!NEAREST_IMAGE(block, atom.SITE, call.POINTS.back(), k, call.STANDING, found, step) ||
      !CODES_CAN_TELL(found.CELLS))
    return {"no such image of " + text.LABEL + " is near: give a code as in [4_655]", text.AT};
  atom.OPERATOR = found.OPERATOR;
  atom.CELLS = found.CELLS;
  atom.X = IMAGE_POSITION(block.PHASE, atom.ATOM, atom.OPERATOR, atom.CELLS);
  step.FROM = call.LAST;
  step.TO = text.LABEL;
  return {};
}

EXPRESSION_ERROR BIND_ATOM(const WIDE_BLOCK& block, const ATOM_TEXT& text, CALL_SO_FAR& call,
                           BOUND_ATOM& atom, std::vector<CHAIN_STEP>& steps) {
  EXPRESSION_ERROR error;
  atom.ATOM = FIND_LABEL(block.PHASE, text, error);
  if (atom.ATOM == 0) return error;
  atom.SITE = SITE_OF(block.PHASE, atom.ATOM);
  if (text.CODED || call.POINTS.empty()) {
    error = PLACE_CODED(block, text, atom);
  } else {
    CHAIN_STEP step;
    error = PLACE_NEAREST(block, text, call, atom, step);
    if (error.TEXT.empty()) steps.push_back(step);
  }
  if (!error.TEXT.empty()) return error;
  const auto is_there = [&](const BOUND_ATOM& other) { return AT_ONE_PLACE(block, atom, other); };
  if (std::any_of(call.STANDING.begin(), call.STANDING.end(), is_there))
    return {
        "two atoms of the call are at one place: choose another symmetry code for " + text.LABEL,
        text.AT};
  call.STANDING.push_back(atom);
  call.POINTS.push_back(atom.X);
  call.LAST = text.LABEL;
  return {};
}

// Puts the mean of the last points in their place.
void MAKE_CENTROID(int count, std::vector<WIDE3>& points) {
  const auto first = points.end() - count;
  const WIDE3 mean = MEAN_OF({first, points.end()});
  points.erase(first, points.end());
  points.push_back(mean);
}

// Points of a plane that lie in line make none.
EXPRESSION_ERROR CHECK_PLANES(const WIDE_BLOCK& block, const CALL& call,
                              const std::vector<WIDE3>& points_frac) {
  const ARGUMENTS takes = ROW_OF(call.KIND).TAKES;
  if (takes != ARGUMENTS::POINT_AND_PLANE && takes != ARGUMENTS::TWO_PLANES) return {};
  std::vector<WIDE3> points;
  for (const WIDE3& x_frac : points_frac) points.push_back(MULTIPLY(block.FRAME, x_frac));
  const WIDE_POINTS all(points);
  const auto first = static_cast<std::size_t>(call.FIRST_GROUP);
  const bool first_fails = takes == ARGUMENTS::TWO_PLANES && IN_ONE_LINE(all.first(first));
  if (!first_fails && !IN_ONE_LINE(all.subspan(first))) return {};
  return {"the atoms of a plane are in line: choose others", call.AT};
}

EXPRESSION_ERROR BIND_CALL(const WIDE_BLOCK& block, const EXPRESSION& expression, const CALL& call,
                           BOUND_ATOMS& bound) {
  CALL_SO_FAR so_far;
  for (const POINT_ITEM& item : call.POINTS) {
    if (item.ATOM < 0) {
      MAKE_CENTROID(item.COUNT, so_far.POINTS);
      so_far.LAST = "centroid";
      continue;
    }
    const auto k = static_cast<std::size_t>(item.ATOM);
    EXPRESSION_ERROR error =
        BIND_ATOM(block, expression.ATOMS[k], so_far, bound.ATOMS[k], bound.STEPS);
    if (!error.TEXT.empty()) return error;
  }
  return CHECK_PLANES(block, call, so_far.POINTS);
}

std::string CODE_TEXT(const BOUND_ATOM& atom) {
  std::string text = "[" + INTEGER_COLUMNS(atom.OPERATOR) + "_";
  for (int t : atom.CELLS) text += static_cast<char>('5' + t);
  return text + "]";
}

}  // namespace

EXPRESSION_ERROR BIND_ATOMS(const EXPRESSION& expression, const CRYSTAL_STRUCTURE_TYPE& reference,
                            BOUND_ATOMS& bound) {
  bound.ATOMS.assign(expression.ATOMS.size(), {});
  bound.STEPS.clear();
  const WIDE_BLOCK block{reference, WIDE_FRAME(WIDE_CELL(reference.CELL))};
  for (const CALL& call : expression.CALLS) {
    EXPRESSION_ERROR error = BIND_CALL(block, expression, call, bound);
    if (!error.TEXT.empty()) return error;
  }
  return {};
}

std::string TEXT_WITH_CODES(const EXPRESSION& expression, const BOUND_ATOMS& bound) {
  std::string text;
  std::size_t copied = 0;
  for (std::size_t k = 0; k < expression.ATOMS.size(); ++k) {
    const ATOM_TEXT& atom = expression.ATOMS[k];
    if (atom.CODED) continue;
    text += expression.TEXT.substr(copied, atom.LABEL_END - copied) + CODE_TEXT(bound.ATOMS[k]);
    copied = atom.END;
  }
  return text + expression.TEXT.substr(copied);
}

void COMBINE_POINTS(const std::vector<POINT_ITEM>& items, const WIDE3* positions,
                    std::vector<WIDE3>& points) {
  points.clear();
  for (const POINT_ITEM& item : items) {
    if (item.ATOM < 0)
      MAKE_CENTROID(item.COUNT, points);
    else
      points.push_back(*positions++);
  }
}

}  // namespace KVA_CRYSTAL_STRUCTURES
