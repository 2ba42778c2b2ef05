// The lookup from any atom label to an element.
#include "foundations/XTAL_Scattering_Chemical_Tables.h"

#include "console_code/kva_utilities/text.h"

namespace XTAL {

namespace {

constexpr std::string_view no_part_of_symbol = "1234567890+-.()";

// Row of a symbol in upper case without trailing blanks; nothing when there is none.
const CHEM_INFO_TYPE* FIND_SYMBOL(std::string_view symbol) {
  if (symbol.empty()) return nullptr;
  for (const CHEM_INFO_TYPE& row : CHEM_INFO)
    if (row.SYMB.front() == symbol.front() && row.SYMB == symbol) return &row;
  return nullptr;
}

}  // namespace

void GET_CHEMSYMB(std::string_view label, std::string& chemsymb, int& z) {
  chemsymb = NO_ELEMENT;
  z = 0;
  std::string symbol = KVA_UTILITIES::U_CASE(KVA_UTILITIES::LEFT_ADJUST_VIEW(label).substr(0, 2));
  if (symbol.size() == 2 && no_part_of_symbol.find(symbol[1]) != std::string_view::npos)
    symbol.resize(1);
  symbol = KVA_UTILITIES::TRIM(symbol);
  const CHEM_INFO_TYPE* row = FIND_SYMBOL(symbol);
  if (row == nullptr) row = FIND_SYMBOL(std::string_view(symbol).substr(0, 1));
  if (row == nullptr) return;
  chemsymb = row->SYMB.substr(0, 1);
  chemsymb += KVA_UTILITIES::L_CASE(row->SYMB.substr(1));
  z = row->Z;
}

bool IS_CHEMSYMB(std::string_view text) {
  return FIND_SYMBOL(KVA_UTILITIES::U_CASE(KVA_UTILITIES::TRIM(text))) != nullptr;
}

}  // namespace XTAL
