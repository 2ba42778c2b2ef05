// Mode lists: their upkeep, their reading from a CIF block, and what symmetry does to a tensor.
#include "common_code/Raman_module.h"

#include <algorithm>  // for max
#include <cmath>      // for abs
#include <exception>

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace RAMAN {

using namespace KVA_UTILITIES;

void INIT_ERR_MODE() {
  ERR_MODE = false;
  ERR_MODE_MESS.clear();
  WARN_MODE = false;
  WARN_MODE_MESS.clear();
}

void INIT_MODE_TYPE(MODE_TYPE& mode) {
  mode = MODE_TYPE{};
}

void ALLOCATE_MODE_LIST(int n, MODE_LIST_TYPE& list) {
  list = MODE_LIST_TYPE{};
  try {
    list.MODE.ASSIGN(std::max(n, 0), MODE_TYPE{});
  } catch (const std::exception&) {
    ERR_MODE = true;
    ERR_MODE_MESS = "Problems allocating memory for Mode_List_Type variable";
  }
  list.NMODES = list.MODE.COUNT();
}

// ---- symmetry of a tensor ----

namespace {

// What a crystal system does to each component, from 0: 'f' free, '0' zero, '1' equal to the first.
struct SYSTEM_FORM {
  std::string_view SYSTEM;
  std::string_view COMPONENTS;
};

constexpr std::array<SYSTEM_FORM, 6> system_forms{{
    {"MONO", "fff0f0"},
    {"ORTH", "fff000"},
    {"CUBI", "f11000"},
    {"TRIG", "f1f000"},
    {"HEXA", "f1f000"},
    {"TETR", "f1f000"},
}};

std::string_view FORM_OF(const std::string& sys) {
  const std::string system = U_CASE(sys).substr(0, 4);
  for (const SYSTEM_FORM& form : system_forms)
    if (form.SYSTEM == system) return form.COMPONENTS;
  return "ffffff";
}

}  // namespace

void APPLY_SYMM_GRUN(const std::string& sys, MODE_TYPE& mode) {
  const std::string_view form = FORM_OF(sys);
  for (std::size_t k = 0; k < 6; ++k) {
    if (form[k] == '0') mode.G[k] = 0.0f;
    if (form[k] == '1') mode.G[k] = mode.G[0];
  }
}

void CHECK_SYMM_GRUN(const std::string& sys, const MODE_TYPE& mode) {
  const std::string_view form = FORM_OF(sys);
  for (std::size_t k = 0; k < 6; ++k)
    if (form[k] == 'f' && std::abs(mode.G[k]) < TINY_REAL) {
      WARN_MODE = true;
      WARN_MODE_MESS = "At least one mode gamma expected to be non-zero is zero: check input";
    }
}

// ---- reading ----

namespace {

constexpr std::array<std::string_view, 11> CIF_MODE_LABELS{
    "_mode_gamma_1",  "_mode_gamma_2",   "_mode_gamma_3",     "_mode_gamma_4",
    "_mode_gamma_5",  "_mode_gamma_6",   "_mode_w0",          "_mode_name",
    "_mode_symmetry", "_mode_ir_active", "_mode_raman_active"};
enum MODE_LABEL { GAMMA = 1, W0 = 7, NAME, SYMMETRY, IR_ACTIVE, RAMAN_ACTIVE };  // 1-based

constexpr int text_length = 80;
constexpr int flag_length = 8;

MODE_TYPE MODE_OF_ROW(const KVA_CIFNEW::CIFDATA_TYPE& loop, int row) {
  MODE_TYPE mode;
  for (int k = 0; k < 6; ++k) mode.G[static_cast<std::size_t>(k)] = loop.VAL(row, GAMMA + k);
  mode.W0 = loop.VAL(row, W0);
  mode.NAME = CUT_TEXT(LEFT_ADJUST(loop.CVAL(row, NAME)), text_length);
  mode.SYMMETRY = CUT_TEXT(LEFT_ADJUST(loop.CVAL(row, SYMMETRY)), text_length);
  mode.IR_ACTIVE = CUT_TEXT(U_CASE(LEFT_ADJUST(loop.CVAL(row, IR_ACTIVE))), flag_length);
  mode.RAMAN_ACTIVE = CUT_TEXT(U_CASE(LEFT_ADJUST(loop.CVAL(row, RAMAN_ACTIVE))), flag_length);
  return mode;
}

KVA_CIFNEW::CIFDATA_TYPE READ_MODE_LOOP(const FILE_LINES& flines, int start, int end) {
  KVA_CIFNEW::CIFDATA_TYPE loop;
  loop.KEY = "_mode_";
  loop.NLABELS = static_cast<int>(CIF_MODE_LABELS.size());
  for (int label = 1; label <= loop.NLABELS; ++label) {
    loop.LABELS(label) = CIF_MODE_LABELS[static_cast<std::size_t>(label - 1)];
    loop.VTYPE(label) = label <= W0 ? 'F' : 'C';
  }
  KVA_CIFNEW::READ_LOOP_CIF(flines, start, end, loop);
  return loop;
}

}  // namespace

void READ_MODE_LIST(const FILE_LINES& flines, int start, int end, MODE_LIST_TYPE& list) {
  INIT_ERR_MODE();
  ALLOCATE_MODE_LIST(0, list);
  const KVA_CIFNEW::CIFDATA_TYPE loop = READ_MODE_LOOP(flines, start, end);
  if (KVA_CIFNEW::ERR_KVACIF) return KVA_CIFNEW::INIT_ERR_KVACIF();
  if (loop.N == 0) {
    ERR_MODE = true;
    ERR_MODE_MESS = "Mode loop found in cif, but no data lines read from cif";
    return;
  }
  ALLOCATE_MODE_LIST(loop.N, list);
  if (ERR_MODE) return;
  for (int row = 1; row <= loop.N; ++row) list.MODE(row) = MODE_OF_ROW(loop, row);
  KVA_CIFNEW::READ_CIF_SYSTEM(flines, start, end, list.SYSTEM);
  if (!list.SYSTEM.empty())
    for (MODE_TYPE& mode : list.MODE) {
      APPLY_SYMM_GRUN(list.SYSTEM, mode);
      CHECK_SYMM_GRUN(list.SYSTEM, mode);
    }
  KVA_CIFNEW::READ_CIF_TEXT("_chemical_name_mineral", flines, start, end, list.NAME);
}

}  // namespace RAMAN
