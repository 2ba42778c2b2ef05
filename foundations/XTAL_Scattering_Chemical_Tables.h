// The chemical elements, and the lookup from any atom label to an element. Prints nothing.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace XTAL {

struct CHEM_INFO_TYPE {
  std::string_view SYMB;  // upper case, at most 2 characters
  std::string_view NAME;  // at most 12 characters
  int Z;                  // atomic number
};

// Rows 1 to 105 by atomic number, then Boron-11, "Zero" and Deuterium. 0-based in code.
extern const std::array<CHEM_INFO_TYPE, 108> CHEM_INFO;

inline constexpr std::string_view NO_ELEMENT = "**";  // in place of a symbol

// Element symbol ("Fe", "F") and atomic number of a label; NO_ELEMENT and 0 when it names none.
// The two-letter reading wins over the one-letter reading.
void GET_CHEMSYMB(std::string_view label, std::string& chemsymb, int& z);

// Whether the whole text, ignoring case, is a symbol of the table.
bool IS_CHEMSYMB(std::string_view text);

}  // namespace XTAL
