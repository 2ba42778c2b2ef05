// Expressions in a block: the order of measures, values, and esds.
#include "src/kva_crystal_structures/measures/measure.h"

#include <algorithm>  // for find, min, sort
#include <cmath>      // for abs, isfinite, sqrt

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/measures/arithmetic.h"
#include "src/kva_crystal_structures/measures/quantities.h"

namespace KVA_CRYSTAL_STRUCTURES {

// ---- the list ----

std::size_t FIND_MEASURE(const std::vector<MEASURE>& measures, std::string_view name) {
  std::size_t place = 0;
  while (place < measures.size() && !KVA_UTILITIES::EQUAL_TEXT(measures[place].NAME, name)) ++place;
  return place;
}

namespace {

// Places of the measures that each one uses.
std::vector<std::vector<std::size_t>> USES_OF(const std::vector<MEASURE>& measures) {
  std::vector<std::vector<std::size_t>> uses;
  for (const MEASURE& measure : measures) {
    uses.emplace_back();
    for (const NODE& node : measure.FORMULA.NODES)
      if (node.OP == OPERATION::MEASURE) uses.back().push_back(FIND_MEASURE(measures, node.NAME));
  }
  return uses;
}

}  // namespace

std::vector<std::size_t> ORDER_OF_USE(const std::vector<MEASURE>& measures) {
  const std::vector<std::vector<std::size_t>> uses = USES_OF(measures);
  std::vector<std::size_t> order;
  std::vector<char> placed(measures.size() + 1, 0);
  bool more = true;
  while (more) {
    more = false;
    for (std::size_t m = 0; m < measures.size(); ++m) {
      const bool ready = std::all_of(uses[m].begin(), uses[m].end(),
                                     [&](std::size_t used) { return placed[used] != 0; });
      if (placed[m] != 0 || !ready) continue;
      placed[m] = 1;
      order.push_back(m);
      more = true;
    }
  }
  return order;
}

// ---- one expression ----

namespace {

// What the nodes of an expression are in a block.
struct NODE_SOURCES {
  const std::vector<MEASURE>& MEASURES;
  const std::vector<MEASURED>& VALUES;            // of the measures in this block
  const std::vector<MEASURED>& REFERENCE_VALUES;  // and in the reference block
  const std::vector<MEASURED>& CALLS;             // of the expression, those in ref(...) there
};

const MEASURED& MEASURE_OF_NODE(const NODE& node, const NODE_SOURCES& from) {
  const std::size_t place = FIND_MEASURE(from.MEASURES, node.NAME);
  return node.IN_REFERENCE ? from.REFERENCE_VALUES[place] : from.VALUES[place];
}

double VALUE_OF_LEAF(const NODE& node, const NODE_SOURCES& from) {
  if (node.OP == OPERATION::NUMBER) return node.VALUE;
  if (node.OP == OPERATION::QUANTITY) return from.CALLS[static_cast<std::size_t>(node.INDEX)].VALUE;
  return MEASURE_OF_NODE(node, from).VALUE;
}

bool IS_LEAF(const NODE& node) {
  return node.OP == OPERATION::NUMBER || node.OP == OPERATION::QUANTITY ||
         node.OP == OPERATION::MEASURE;
}

// Adds a leaf's terms, times the derivative by the leaf.
void ADD_LEAF(const MEASURED& leaf, double slope, MEASURED& sum) {
  if (!(slope > 0.0) && !(slope < 0.0)) return;
  for (const ESD_TERM& term : leaf.TERMS) sum.TERMS.push_back({term.PARAMETER, slope * term.SHARE});
  sum.INDEPENDENT += slope * slope * leaf.INDEPENDENT;
}

void MERGE_TERMS(std::vector<ESD_TERM>& terms) {
  std::sort(terms.begin(), terms.end(),
            [](const ESD_TERM& a, const ESD_TERM& b) { return a.PARAMETER < b.PARAMETER; });
  std::size_t kept = 0;
  for (const ESD_TERM& term : terms) {
    if (kept > 0 && terms[kept - 1].PARAMETER == term.PARAMETER)
      terms[kept - 1].SHARE += term.SHARE;
    else
      terms[kept++] = term;
  }
  terms.resize(kept);
}

// An esd that is far below what independent quantities would give is what the rounding has left of
// none.
void CLEAR_WHAT_CANCELS(MEASURED& measured) {
  constexpr double rest = 1e-4;
  const double variance = VARIANCE_OF(measured.TERMS);
  if (!std::isfinite(variance) || variance < rest * rest * measured.INDEPENDENT)
    measured.TERMS.clear();
}

// Values of the nodes, and then, from the root down, the derivatives of the root by them.
MEASURED MEASURE_EXPRESSION(const MEASURE& measure, const NODE_SOURCES& from) {
  const std::vector<NODE>& nodes = measure.FORMULA.NODES;
  std::vector<OPERATED> operated(nodes.size());
  for (std::size_t k = 0; k < nodes.size(); ++k) {
    const NODE& node = nodes[k];
    if (IS_LEAF(node))
      operated[k].VALUE = VALUE_OF_LEAF(node, from);
    else
      operated[k] =
          OPERATE(node.OP, operated[static_cast<std::size_t>(node.LEFT)].VALUE,
                  node.RIGHT < 0 ? 0.0 : operated[static_cast<std::size_t>(node.RIGHT)].VALUE);
  }
  MEASURED measured{operated.back().VALUE, {}, 0.0};
  if (!std::isfinite(measured.VALUE)) return measured;
  std::vector<double> slopes(nodes.size(), 0.0);
  slopes.back() = 1.0;
  for (std::size_t k = nodes.size(); k-- > 0;) {
    const NODE& node = nodes[k];
    const double slope = slopes[k];
    if (node.OP == OPERATION::NUMBER && node.ESD > 0.0)
      ADD_LEAF({0.0,
                {TERM_OF_NUMBER(measure.NUMBER, static_cast<int>(k), node.ESD)},
                node.ESD * node.ESD},
               slope, measured);
    else if (node.OP == OPERATION::QUANTITY)
      ADD_LEAF(from.CALLS[static_cast<std::size_t>(node.INDEX)], slope, measured);
    else if (node.OP == OPERATION::MEASURE)
      ADD_LEAF(MEASURE_OF_NODE(node, from), slope, measured);
    if (node.LEFT >= 0) slopes[static_cast<std::size_t>(node.LEFT)] += slope * operated[k].BY_LEFT;
    if (node.RIGHT >= 0)
      slopes[static_cast<std::size_t>(node.RIGHT)] += slope * operated[k].BY_RIGHT;
  }
  MERGE_TERMS(measured.TERMS);
  CLEAR_WHAT_CANCELS(measured);
  return measured;
}

MEASURED NO_VALUE() {
  return {std::nan(""), {}, 0.0};
}

// The calls of a measure in a block; those inside ref(...) are taken from the reference block.
std::vector<MEASURED> MEASURE_CALLS(const MEASURE& measure, const MEASURE_SETTINGS& settings,
                                    const std::vector<MEASURED>* in_reference,
                                    MEASURED_BLOCK& block) {
  std::vector<MEASURED> calls;
  for (std::size_t k = 0; k < measure.FORMULA.CALLS.size(); ++k) {
    const CALL& call = measure.FORMULA.CALLS[k];
    if (call.IN_REFERENCE && in_reference != nullptr)
      calls.push_back((*in_reference)[k]);
    else
      calls.push_back(MEASURE_CALL(call, measure.BOUND.ATOMS, settings, block));
  }
  return calls;
}

}  // namespace

// ---- all measures ----

MEASURED_REFERENCE MEASURE_REFERENCE(const std::vector<MEASURE>& measures,
                                     const MEASURE_SETTINGS& settings, MEASURED_BLOCK& reference) {
  MEASURED_REFERENCE result;
  result.VALUES.assign(measures.size(), NO_VALUE());
  result.CALLS.resize(measures.size());
  result.ORDER = ORDER_OF_USE(measures);
  for (std::size_t m : result.ORDER) {
    if (!measures[m].PROBLEM.empty()) continue;
    result.CALLS[m] = MEASURE_CALLS(measures[m], settings, nullptr, reference);
    result.VALUES[m] =
        MEASURE_EXPRESSION(measures[m], {measures, result.VALUES, result.VALUES, result.CALLS[m]});
  }
  return result;
}

std::vector<MEASURED> MEASURE_IN_BLOCK(const std::vector<MEASURE>& measures,
                                       const MEASURE_SETTINGS& settings,
                                       const MEASURED_REFERENCE& in_reference,
                                       MEASURED_BLOCK& block) {
  std::vector<MEASURED> values(measures.size(), NO_VALUE());
  for (std::size_t m : in_reference.ORDER) {
    if (!measures[m].PROBLEM.empty()) continue;
    const std::vector<MEASURED> calls =
        MEASURE_CALLS(measures[m], settings, &in_reference.CALLS[m], block);
    values[m] = MEASURE_EXPRESSION(measures[m], {measures, values, in_reference.VALUES, calls});
  }
  return values;
}

// ---- what is matched ----

namespace {

void ADD_TARGET(const TARGET& target, std::vector<TARGET>& targets) {
  const bool listed = std::any_of(targets.begin(), targets.end(), [&](const TARGET& other) {
    return other.ATOM == target.ATOM && other.X == target.X;
  });
  if (!listed) targets.push_back(target);
}

}  // namespace

MATCH_BASIS MATCH_BASIS_OF(const std::vector<MEASURE>& measures,
                           const CRYSTAL_STRUCTURE_TYPE& reference, float radius) {
  MATCH_BASIS basis{IMAGES_OF(reference), {}, {}, radius};
  std::vector<char> is_centre(static_cast<std::size_t>(reference.NATOMS) + 1, 0);
  for (const MEASURE& measure : measures) {
    if (!measure.PROBLEM.empty()) continue;
    for (const CALL& call : measure.FORMULA.CALLS) {
      if (call.IN_REFERENCE) continue;
      for (const POINT_ITEM& item : call.POINTS) {
        if (item.ATOM < 0) continue;
        const BOUND_ATOM& atom = measure.BOUND.ATOMS[static_cast<std::size_t>(item.ATOM)];
        if (ROW_OF(call.KIND).NEEDS_BONDS)
          is_centre[static_cast<std::size_t>(atom.SITE)] = 1;
        else
          ADD_TARGET({atom.SITE, NARROW(atom.X)}, basis.ATOMS);
      }
    }
  }
  for (BOND_TARGETS& centre : TARGETS_OF(reference))
    if (is_centre[static_cast<std::size_t>(centre.CENTRE.ATOM)] != 0)
      basis.TARGETS.push_back(std::move(centre));
  return basis;
}

double VARIANCE_OF(const std::vector<ESD_TERM>& terms) {
  double variance = 0.0;
  for (const ESD_TERM& term : terms) variance += term.SHARE * term.SHARE;
  return variance;
}

MEASURED_VALUE AS_VALUE(const MEASURED& measured) {
  if (!(std::abs(measured.VALUE) <= static_cast<double>(KVA_UTILITIES::LARGEST_REAL))) return {};
  const double esd = std::sqrt(VARIANCE_OF(measured.TERMS));
  const bool has_esd = esd <= static_cast<double>(KVA_UTILITIES::LARGEST_REAL);
  return {true, static_cast<float>(measured.VALUE), has_esd ? static_cast<float>(esd) : 0.0f};
}

// ---- before the bonds are known ----

float SHORTEST_DISTANCE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float shortest_sensible = 0.1f;  // angstroms
  constexpr float shell = 0.5f;              // so thin that it never holds too many atoms
  const ATOM_IMAGES images = IMAGES_OF(phase);
  int count = 0;
  NEIGHBOUR_TABLE table;
  for (float dmax = shell; dmax < LONGEST_SHORT_BOND + shell; dmax += shell) {
    float shortest = dmax;
    bool found = false;
    for (int i = 1; i <= phase.NATOMS; ++i) {
      if (phase.ATOM_USE(i) != ATOM_USED) continue;
      DISTANCE_ARRAY(images, phase.ATOM(i).X, shortest_sensible, shortest, count, table);
      for (int r = 1; r <= count; ++r) shortest = std::min(shortest, table(r, NEIGHBOUR_DISTANCE));
      found = found || count > 0;
    }
    if (found) return std::min(shortest, LONGEST_SHORT_BOND);
  }
  return LONGEST_SHORT_BOND;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
