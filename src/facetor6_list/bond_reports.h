// The reports on a centre, as data: a column a ligand or a pair of ligands of the reference block,
// a row for each of some places of the display order. Without bonds a report has no columns.
#pragma once

#include <vector>

#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

enum class BOND_FORM { LENGTHS, SRB, DISPLACEMENTS };

// Bond lengths, in angstroms, with coordination, mean, distortion and volume behind them; lengths
// corrected for rigid-bond motion; or displacements along the bonds.
REPORT BOND_REPORT(int i, BOND_FORM form, bool with_esds, const std::vector<int>& places);

// Angles at the centre, in degrees, and their variance; edges between ligands that are neighbours,
// in angstroms, and their mean.
REPORT ANGLE_REPORT(int i, bool with_esds, const std::vector<int>& places);
REPORT EDGE_REPORT(int i, bool with_esds, const std::vector<int>& places);

// The sphere fitted to the ligands and the distortions that follow from it. Only for more than
// three ligands.
REPORT ORBIX_REPORT(int i, const std::vector<int>& places);

// Bond valences and their sum.
REPORT VALENCE_REPORT(int i, bool with_esds, const std::vector<int>& places);

}  // namespace FACETOR_LIST
