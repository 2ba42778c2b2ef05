// What the bond table and the valence table share. For these two only.
#pragma once

#include <string>
#include <string_view>

namespace FACETOR_LIST {

// Angstroms; a row whose length does not exceed it holds no bond.
inline constexpr float shortest_shown = 0.0001f;

inline constexpr int value_decimals = 4;  // of a length, a displacement or a valence

// The range of the bond search.
std::string LIMITS_LINE();

// Title and limits; false when the centre has no bonds, which it then says instead.
bool WRITE_BOND_TITLE(int i, std::string_view words);

// Head with the ligands of reference centre i, their codes if wanted, and end_words end_offset
// columns behind where the next label would stand.
void WRITE_BOND_HEAD(int i, bool esd, int end_offset, std::string_view end_words);

}  // namespace FACETOR_LIST
