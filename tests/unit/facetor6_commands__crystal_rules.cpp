// Outputs of the CRYSTAL program in which a table stands before or behind the geometry that counts.
#include "phases.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "structures.h"

using namespace FACETOR_READFILES;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

const std::string head =
    " *******************************************************************************\n"
    " *                               CRYSTAL17                                     *\n"
    " *******************************************************************************\n"
    " SPACE  GROUP  N.                     :    1\n";
const std::string cell_heading =
    "         A              B              C           ALPHA      BETA       GAMMA \n";
const std::string primitive =
    " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=   120.000000 - DENSITY  1.0 g/cm^3\n" +
    cell_heading + " 4.0 5.0 6.0 90 90 90\n";
const std::string crystallographic = " CRYSTALLOGRAPHIC CELL (VOLUME=         504.00000000)\n" +
                                     cell_heading + " 7.0 8.0 9.0 90 90 90\n";
const std::string atoms =
    "     ATOM                 X/A                 Y/B                 Z/C    \n"
    " *******************************************************************************\n"
    "   1 T   8 O     1.000000000000E-01  2.000000000000E-01  3.000000000000E-01\n"
    "\n T = ATOM BELONGING TO THE ASYMMETRIC UNIT\n";
const std::string optimised = " FINAL OPTIMIZED GEOMETRY - DIMENSIONALITY OF THE SYSTEM    3\n";
const std::string modes =
    " EIGENVALUES (EIGV) OF THE MASS WEIGHTED HESSIAN MATRIX\n\n"
    "    MODES         EIGV          FREQUENCIES     IRREP  IR   INTENS    RAMAN\n"
    "             (HARTREE**2)   (CM**-1)     (THZ)             (KM/MOL)\n"
    "    4-   4    0.4500E-05    465.6000   13.9583  (A1g)   I (     0.00)   A\n\n";
const std::string no_modes = "     No mode information found in file\n";

class CRYSTAL_RULES : public PHASE_TESTS::PHASES {
 protected:
  // What the reader says of the text; newx(1) receives the record.
  std::string READ(const std::string& text) {
    KVA_UTILITIES::FILE_LINES lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.ADD(line);
    int nblocks = 0;
    return SAID("", [&] { READ_OUT_FILE(lines, newx, nblocks); });
  }

  STRUCTURE_LIST newx;
};

}  // namespace

TEST_F(CRYSTAL_RULES, A_CELL_BEHIND_THE_END_OF_THE_GEOMETRY_IS_THAT_OF_ANOTHER) {
  READ(head + primitive + atoms + crystallographic + atoms);
  EXPECT_FLOAT_EQ(newx(1).CELL.CELL[0], 4.0f);
  EXPECT_FLOAT_EQ(newx(1).CELL.CELLVOL, 120.0f);
  READ(head + primitive + crystallographic + atoms);
  EXPECT_FLOAT_EQ(newx(1).CELL.CELL[0], 7.0f);
  EXPECT_FLOAT_EQ(newx(1).CELL.CELLVOL, 504.0f);
}

TEST_F(CRYSTAL_RULES, MODES_BEFORE_THE_OPTIMISED_GEOMETRY_ARE_THOSE_OF_ANOTHER) {
  EXPECT_EQ(READ(head + modes + optimised + primitive + atoms), no_modes);
  EXPECT_EQ(newx(1).MODE_LIST.NMODES, 0);
  EXPECT_EQ(READ(head + modes + primitive + atoms),
            "     File also contained information on  1 modes\n")
      << "without an optimised one all of the file counts";
  EXPECT_EQ(READ(head + optimised + primitive + atoms + modes),
            "     File also contained information on  1 modes\n");
}
