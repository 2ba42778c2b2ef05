// The EXPORT command: cells or polyhedral volumes of the used blocks as a data file for fitting
// equations of state.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "src/kva_crystal_structures/records.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace FACETOR_EXPORTFILES {

// Columns of a data point, from 0.
enum EOS_COLUMN { EOS_T = 0, EOS_P, EOS_A, EOS_B, EOS_C, EOS_ALPHA, EOS_BETA, EOS_GAMMA, EOS_V };

// T (K), P (GPa), a b c (angstroms), alpha beta gamma (degrees), V (cubic angstroms), with esds.
using EOS_POINT = std::array<KVA_CRYSTAL_STRUCTURES::VALUE_ESD, 9>;

void RUN_EXPORT();
void EXPORT_CELL_EOSDAT(const KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST& phases, int n);
void EXPORT_POLYVOL_EOSDAT(const KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST& phases, int n);

// Writes the points to a file that the user names: cells of the crystal system, or else volumes of
// polyhedra.
inline constexpr XTAL::CRYSTAL_SYSTEM volumes_of_polyhedra{};
void WRITE_EOSDAT(const std::vector<EOS_POINT>& points, const XTAL::CRYSTAL_SYSTEM& system,
                  std::string_view title = "");

}  // namespace FACETOR_EXPORTFILES
