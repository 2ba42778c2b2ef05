// Bytes as operators, Hall symbols and space-group symbols. What is accepted must be a group.
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "foundations/XTAL_Space_Groups.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

using namespace XTAL;
using FUZZ::MUST_HOLD;

void READ_ONE(const std::string& text) {
  IMATRIX3 rot{};
  VECTOR3 tr{};
  for (const bool proper : {false, true})
    for (const int from : {1, 3, -1}) {
      int start = from;
      READ_XSYM(text, start, rot, tr, proper);
    }
}

// A translation that is no n/24 is written as a decimal, and may be close enough to n/24 to be
// taken for that when it is read.
bool HAS_DECIMALS(const std::string& text) {
  return text.find('.') != std::string::npos;
}

// The text of an operator reads back as that operator.
void MUST_READ_BACK(const SYM_OP& op, const std::string& text) {
  const float tolerance = HAS_DECIMALS(text) ? 0.0021f : 0.00001f;
  IMATRIX3 rot{};
  VECTOR3 tr{};
  int start = 1;
  READ_XSYM(text, start, rot, tr);
  MUST_HOLD(!ERR_SYMM, "the text of an operator is an operator");
  MUST_HOLD(rot == op.ROT, "it has the same rotation");
  for (std::size_t k = 0; k < 3; ++k) {
    const float difference = tr[k] - op.TR[k];
    MUST_HOLD(std::abs(difference - std::round(difference)) < tolerance,
              "it has the same translation");
  }
}

void MUST_BE_A_GROUP(const SPACE_GROUP& group) {
  constexpr int most = 192;
  if (ERR_SYMM) return MUST_HOLD(group.MULTIP == 0, "a failed group has no operators");
  const int inversion = group.CENTRED == 1 ? 1 : 2;
  MUST_HOLD(group.MULTIP >= 1 && group.MULTIP <= most, "1 to 192 operators");
  MUST_HOLD(group.MULTIP == group.NUMOPS * group.NUMLAT * inversion, "blocks of operators");
  MUST_HOLD(group.SYMOP.COUNT() == group.MULTIP, "all operators");
  MUST_HOLD(group.SYMOPSYMB.COUNT() == group.MULTIP, "all texts");
  MUST_HOLD(group.LATT_TRANS.COUNT() == group.NUMLAT, "all centring vectors");
  MUST_HOLD(group.SYMOPSYMB(1) == "x,y,z", "the identity comes first");
  std::vector<std::string> texts(group.SYMOPSYMB.begin(), group.SYMOPSYMB.end());
  std::sort(texts.begin(), texts.end());
  MUST_HOLD(std::adjacent_find(texts.begin(), texts.end()) == texts.end(), "texts differ");
  for (int i = 1; i <= group.MULTIP; ++i) {
    MUST_HOLD(ROTATION_TYPE(group.SYMOP(i).ROT) != 0, "every rotation is one");
    MUST_READ_BACK(group.SYMOP(i), group.SYMOPSYMB(i));
  }
  if (std::any_of(texts.begin(), texts.end(), HAS_DECIMALS)) return;
  SPACE_GROUP again;
  SET_SPACEGROUP("", again, group.SYMOPSYMB.ITEMS(), "GEN");
  MUST_HOLD(!ERR_SYMM && again.MULTIP == group.MULTIP, "the operators make the same group");
  MUST_HOLD(SPGR_EQUAL(group, again), "with the same texts");
}

void MAKE(std::string_view symbol, const std::vector<std::string>& operators,
          std::string_view mode) {
  SPACE_GROUP group;
  SET_SPACEGROUP(symbol, group, operators, mode);
  if (mode != "FIX") MUST_BE_A_GROUP(group);
  int order = 0;
  LIST<int> ptr;
  LIST<VECTOR3> atr;
  for (const VECTOR3& x_frac : {VECTOR3{0, 0, 0}, VECTOR3{0.25f, 1e30f, -0.5f}})
    GET_STABILIZER(x_frac, group, order, ptr, atr);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = FUZZ::TEXT_OF(data, size);
  const std::vector<std::string> lines = FUZZ::LINES_OF(text).ITEMS;
  READ_ONE(text);
  for (const std::string& line : lines) READ_ONE(line);
  for (const char* mode : {"GEN", "FIX"}) MAKE("", lines, mode);
  for (const char* mode : {"", "HAL", "HMS", "ITC"})
    MAKE(lines.empty() ? "" : lines.front(), {}, mode);
  return 0;
}
