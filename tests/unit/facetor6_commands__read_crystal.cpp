// Outputs of the CRYSTAL program: each marker present and absent, and the real files where they
// are.
#include <algorithm>  // for min
#include <cmath>
#include <fstream>
#include <sstream>

#include "phases.h"
#include "places.h"
#include "sanitized.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "structures.h"

using namespace FACETOR_READFILES;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

const std::string stars(79, '*');

const std::string banner = " " + stars + "\n *" + std::string(77, ' ') +
                           "*\n *                               CRYSTAL17" + std::string(37, ' ') +
                           "*\n " + stars + "\n";

const std::string cell_heading =
    "         A              B              C           ALPHA      BETA       GAMMA \n";
const std::string atom_heading =
    "     ATOM                 X/A                 Y/B                 Z/C    \n " + stars + "\n";
const std::string closing = "\n T = ATOM BELONGING TO THE ASYMMETRIC UNIT\n";

// Periclase, a = 4.2117: primitive cell a / sqrt(2), volume a^3 / 4, then the cubic cell.
const std::string periclase_primitive =
    " PRIMITIVE CELL - CENTRING CODE 5/0 VOLUME=    18.677400 - DENSITY  3.584 g/cm^3\n" +
    cell_heading +
    "     2.97812163     2.97812163     2.97812163    60.000000  60.000000  60.000000\n" + " " +
    stars + "\n ATOMS IN THE ASYMMETRIC UNIT    2 - ATOMS IN THE UNIT CELL:    2\n" + atom_heading +
    "      1 T  12 MG    0.000000000000E+00  0.000000000000E+00  0.000000000000E+00\n"
    "      2 T   8 O    -5.000000000000E-01 -5.000000000000E-01 -5.000000000000E-01\n";
const std::string periclase_cubic =
    "\n TRANSFORMATION MATRIX PRIMITIVE-CRYSTALLOGRAPHIC CELL\n"
    " -1.0000  1.0000  1.0000  1.0000 -1.0000  1.0000  1.0000  1.0000 -1.0000\n\n " +
    stars + "\n CRYSTALLOGRAPHIC CELL (VOLUME=         74.70960000)\n" + cell_heading +
    "     4.21170000     4.21170000     4.21170000    90.000000  90.000000  90.000000\n\n"
    " COORDINATES IN THE CRYSTALLOGRAPHIC CELL\n" +
    atom_heading +
    "      1 T  12 MG    0.000000000000E+00  0.000000000000E+00  0.000000000000E+00\n"
    "      2 T   8 O    -5.000000000000E-01 -5.000000000000E-01 -5.000000000000E-01\n";
const std::string periclase = periclase_primitive + periclase_cubic + closing;

const std::string number_225 = " SPACE  GROUP  N.                     :  225\n";
const std::string no_group = "    No space group info found in file!\n";
const std::string group_prompt = "\n     Input the IT space group number:";
const std::string no_modes = "     No mode information found in file\n";
const std::string what_to_do =
    ": read it again with another group, or move the origin by TRANSFORM";

const std::string energies =
    "  E0 = ZERO-POINT ENERGY\n"
    " EL            :    -274.668699891   -7474.115300     -721142.67123456\n"
    " E0            :       0.010005954       0.272276       26.27063385\n";

const std::string mode_heading =
    " EIGENVALUES (EIGV) OF THE MASS WEIGHTED HESSIAN MATRIX AND HARMONIC TRANSVERSE\n\n"
    "    MODES         EIGV          FREQUENCIES     IRREP  IR   INTENS    RAMAN\n"
    "             (HARTREE**2)   (CM**-1)     (THZ)             (KM/MOL)\n";
const std::string modes =
    mode_heading +
    "    1-   3   -0.4271E-20      0.0000    0.0000  (Fu )   A (     0.00)   I\n"
    "    4-   4    0.4500E-05    465.6000   13.9583  (A1g)   I (     0.00)   A\n"
    "\n    5-   6    0.9668E-07     68.2405    2.0458  (Eu )   A (     1.82)   I\n";

class CRYSTAL_OUTPUT : public PHASE_TESTS::PHASES {
 protected:
  // What the reader says of a file with the text; phase receives the record.
  std::string READ(const std::string& text, const std::string& answers = "") {
    PUT_FILE("a.out", text);
    KVA_UTILITIES::FILE_RECORD file;
    file.NAME = "a.out";
    KVA_UTILITIES::FILE_LINES lines;
    std::string message;
    KVA_UTILITIES::READ_FILE(file, lines, message);
    EXPECT_EQ(message, "");
    int nblocks = 0;
    const std::string said = SAID(answers, [&] { READ_OUT_FILE(lines, newx, nblocks); });
    EXPECT_EQ(nblocks, 1);
    phase = newx(1);
    return said;
  }

  STRUCTURE_LIST newx;
  CRYSTAL_STRUCTURE_TYPE phase;
};

std::string WARNED(const std::string& text) {
  return "\n*****WARNING: " + text + "\n\n";
}

}  // namespace

// ---- the whole ----

TEST_F(CRYSTAL_OUTPUT, THE_CRYSTALLOGRAPHIC_CELL_OF_A_CENTRED_LATTICE) {
  EXPECT_EQ(READ(banner + number_225 + periclase), no_modes);
  EXPECT_EQ(phase.SPG.SPG_SYMB, "F m -3 m");
  EXPECT_FLOAT_EQ(phase.CELL.CELL[0], 4.2117f);
  EXPECT_FLOAT_EQ(phase.CELL.ANG[2], 90.0f);
  EXPECT_FLOAT_EQ(phase.CELL.CELLVOL, 74.7096f);
  ASSERT_EQ(phase.NATOMS, 2);
  EXPECT_EQ(phase.ATOM(1).LAB, "Mg1");
  EXPECT_EQ(phase.ATOM(2).LAB, "O2");
  EXPECT_EQ(phase.ATOM(2).CHEMSYMB, "O");
  EXPECT_EQ(phase.ATOM(2).SFACSYMB, "O");
  EXPECT_EQ(phase.ATOM(2).Z, 8);
  EXPECT_EQ(phase.ATOM(2).OCC, 1.0f);
  EXPECT_EQ(phase.ATOM_USE(2), ATOM_USED);
  EXPECT_EQ(phase.ATOM(2).X[1], -0.5f);
  EXPECT_EQ(phase.ATOM(2).UEQ, 0.0f);
}

TEST_F(CRYSTAL_OUTPUT, THE_WHOLE_DIALOGUE) {
  PUT_FILE("mgo.b3.out", banner + periclase);
  CONSOLE_TESTS::PEND("crystal mgo.b3.out");
  EXPECT_EQ(SAID("225\n\n", READ_PHASE_FROM_FILE),
            "\n\nSuccessfully opened out file\nNamed mgo.b3.out\n\n" + no_group + group_prompt +
                no_modes +
                "\nThe following  1 crystal structures were read from the file:\n"
                "\n       BLOCKNAME              T       P\n"
                "  1: mgo.b3                  0.0   0.000\n"
                "Do you want to add this new data (Y/N) <Y>?"
                "\nThe loaded phases are now:\n       BLOCKNAME      T        P         IUSE\n"
                "  1: mgo.b3        : 298.0   0.000         1\n");
  EXPECT_FLOAT_EQ(PHASE(1).PT(TEMPERATURE, PT_VALUE), 298.0f);
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_ESD), 0.0f);
  EXPECT_FLOAT_EQ(PHASE(1).PT(PRESSURE, PT_VALUE), 0.0001f);
  EXPECT_EQ(PHASE(1).PT(PRESSURE, PT_ESD), 0.0f);
}

TEST_F(CRYSTAL_OUTPUT, A_FILE_OF_ANOTHER_KIND_GIVES_A_RECORD_OF_DEFAULTS) {
  EXPECT_EQ(READ("data_x\n_cell_length_a 5.0\n", "\n"), no_group + group_prompt + no_modes);
  EXPECT_EQ(phase.SPG.SPG_SYMB, "P 1");
  EXPECT_EQ(phase.NATOMS, 0);
  EXPECT_EQ(phase.CELL.CELL[0], 10.0f);
  EXPECT_EQ(phase.MODE_LIST.NMODES, 0);
  for (int pair = 1; pair <= 10; ++pair) EXPECT_EQ(phase.METADATA(pair, 1), "");
}

// ---- title, input, energies ----

TEST_F(CRYSTAL_OUTPUT, THE_PROGRAM_IS_NAMED_WITHOUT_ITS_FRAME) {
  READ(" CRYSTAL in a line before the banner\n" + banner + number_225 + periclase);
  EXPECT_EQ(phase.METADATA(1, 1), "_computing_structure_solution");
  EXPECT_EQ(phase.METADATA(1, 2), "DFT simulation with CRYSTAL17");
  EXPECT_EQ(phase.METADATA(2, 1), "_computing_structure_refinement");
  EXPECT_EQ(phase.METADATA(2, 2), "DFT simulation with CRYSTAL17");
  EXPECT_EQ(phase.METADATA(3, 1), "");
}

TEST_F(CRYSTAL_OUTPUT, THE_LAST_PART_OF_THE_DECK_IS_KEPT) {
  READ("TITLE\nEND\n99 0\nEND\n  DFT\nBIPOSIZE\n15000000\nSHRINK\nENDSCF\n" + banner + number_225 +
       periclase);
  EXPECT_EQ(phase.METADATA(3, 1), "_refine_special_details");
  EXPECT_EQ(
      phase.METADATA(3, 2),
      " Input control parameters for the CRYSTAL program were:|DFT|BIPOSIZE|15000000|SHRINK|");
}

TEST_F(CRYSTAL_OUTPUT, A_DECK_WITHOUT_ONE_OF_ITS_MARKS_IS_NOT_KEPT) {
  for (const char* deck : {"BIPOSIZE\n15000000\nEND\n", "END\nDFT\nEND\n", "END\nBIPOSIZE\n1\n"}) {
    READ(deck + banner + number_225 + periclase);
    EXPECT_EQ(phase.METADATA(3, 1), "") << deck;
  }
}

TEST_F(CRYSTAL_OUTPUT, ENERGIES_STAND_ALONE_OR_BEHIND_THE_DECK_AS_SPELLED) {
  const std::string lines =
      "| Final Energies were:|  Electronic energy = -721142.67123456 KJ/MOL"
      "|  Zero-point energy = 26.27063385 KJ/MOL";
  READ(banner + number_225 + periclase + energies);
  EXPECT_EQ(phase.METADATA(3, 2), lines);
  READ("END\nBIPOSIZE\n7\nEND\n" + banner + number_225 + periclase + energies);
  EXPECT_EQ(phase.METADATA(3, 2),
            " Input control parameters for the CRYSTAL program were:|BIPOSIZE|7|" + lines);
}

TEST_F(CRYSTAL_OUTPUT, AN_ENERGY_OF_ZERO_OR_WITH_TWO_NUMBERS_IS_LEFT_OUT) {
  READ(banner + number_225 + periclase +
       " ZERO-POINT ENERGY\n EL            :  1.0  2.0\n E0            :  1.0  2.0  0.0\n");
  EXPECT_EQ(phase.METADATA(3, 2), "| Final Energies were:");
  READ(banner + number_225 + periclase + " EL            :  1.0  2.0  3.0\n");
  EXPECT_EQ(phase.METADATA(3, 2), "") << "no zero-point energy, no energies";
}

TEST_F(CRYSTAL_OUTPUT, A_LONG_DECK_IS_CUT_BEHIND_THE_LAST_WHOLE_PIECE) {
  std::string deck = "END\nBIPOSIZE\n";
  for (int i = 0; i < 100; ++i) deck += "PARAMETER\n";
  READ(deck + "END\n" + banner + number_225 + periclase + energies);
  const std::string& text = phase.METADATA(3, 2);
  // Head 56, "BIPOSIZE|" 9, and pieces of 10 up to 600: 53 of them.
  EXPECT_EQ(text.size(), 56u + 9u + 53u * 10u);
  EXPECT_TRUE(text.ends_with("PARAMETER|PARAMETER|"));
}

// ---- space group ----

TEST_F(CRYSTAL_OUTPUT, THE_GROUP_IS_ASKED_FOR_WHEN_THE_LINE_IS_WORDED_OTHERWISE) {
  EXPECT_EQ(
      READ(banner + " SPACE GROUP (CENTROSYMMETRIC)        :  F M 3 M\n" + periclase, "225\n"),
      no_group + group_prompt + no_modes);
  EXPECT_EQ(phase.SPG.NUMSPG, 225);
}

TEST_F(CRYSTAL_OUTPUT, A_BLANK_ANSWER_MEANS_NO_SYMMETRY) {
  const std::string primitive =
      " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=   120.000000 - DENSITY  1.0 g/cm^3\n" +
      cell_heading + " 4.0 5.0 6.0 90 90 90\n" + atom_heading +
      "   1 T  14 SI    1.000000000000E-01  2.000000000000E-01  3.000000000000E-01\n" + closing;
  EXPECT_EQ(READ(banner + primitive, "\n"), no_group + group_prompt + no_modes);
  EXPECT_EQ(phase.SPG.SPG_SYMB, "P 1");
}

// The cell of periclase holds four lattice points: a group without F centring makes the two listed
// atoms as well, and a quarter of the crystal.
TEST_F(CRYSTAL_OUTPUT, A_GROUP_OF_ANOTHER_CENTRING_IS_TOLD) {
  for (const char* symbol : {"P 1", "P m -3 m", "I m -3 m"}) {
    EXPECT_EQ(READ(banner + periclase, symbol + std::string("\n")),
              no_group + group_prompt +
                  WARNED("The atoms listed in the file do not follow from space group " +
                         std::string(symbol) + what_to_do) +
                  no_modes)
        << symbol;
    EXPECT_EQ(phase.SPG.SPG_SYMB, symbol);
  }
  EXPECT_EQ(READ(banner + periclase, "F m -3\n"), no_group + group_prompt + no_modes);
}

TEST_F(CRYSTAL_OUTPUT, AN_UNKNOWN_GROUP_IS_ASKED_FOR_AGAIN) {
  const std::string range = ": a number from 1 to 230 or a symbol is";
  EXPECT_EQ(READ(banner + periclase, "231\nF q q q\n225\n"),
            no_group + group_prompt + WARNED("Space group 231 is not known" + range) +
                group_prompt + WARNED("Space group F q q q is not known" + range) + group_prompt +
                no_modes);
  EXPECT_EQ(phase.SPG.NUMSPG, 225);
  EXPECT_EQ(READ(banner + " SPACE  GROUP  N.                     :  999\n" + periclase, "225\n"),
            WARNED("Space group 999 is not known" + range) + group_prompt + no_modes);
}

// Diamond: the carbon lies at 1/8,1/8,1/8 with the second origin, at 0,0,0 with the first.
TEST_F(CRYSTAL_OUTPUT, A_NUMBER_MEANS_THE_SECOND_ORIGIN) {
  const std::string diamond =
      " PRIMITIVE CELL - CENTRING CODE 5/0 VOLUME=    11.340000 - DENSITY  3.5 g/cm^3\n"
      " CRYSTALLOGRAPHIC CELL (VOLUME=         45.38000000)\n" +
      cell_heading + " 3.567 3.567 3.567 90 90 90\n\n" + atom_heading +
      "   1 T   6 C     1.250000000000E-01  1.250000000000E-01  1.250000000000E-01\n"
      "   2 F   6 C    -1.250000000000E-01 -1.250000000000E-01 -1.250000000000E-01\n" +
      closing;
  EXPECT_EQ(READ(banner + " SPACE  GROUP  N.                     :  227\n" + diamond), no_modes);
  EXPECT_EQ(phase.SPG.SPG_SYMB, "F d -3 m");
  EXPECT_EQ(phase.ATOM(1).MULT, 2);
  const std::string asked = no_group + group_prompt;
  EXPECT_EQ(READ(banner + diamond, "F d -3 m:1\n"),
            asked +
                WARNED("The atoms listed in the file do not follow from space group F d -3 m:1" +
                       what_to_do) +
                no_modes)
      << "a setting that was asked for stays";
  EXPECT_EQ(phase.SPG.SPG_SYMB, "F d -3 m:1");
}

// Of two origins the second lies on a centre of symmetry. Numbers of the groups with two, from
// International Tables A.
TEST_F(CRYSTAL_OUTPUT, NUMBERS_OF_ALL_GROUPS_WITH_TWO_ORIGINS_MEAN_THE_SECOND) {
  for (int number : {48,  50,  59,  68,  70,  85,  86,  88,  125, 126, 129, 130,
                     133, 134, 137, 138, 141, 142, 201, 203, 222, 224, 227, 228}) {
    READ(banner + " SPACE  GROUP  N.                     :  " + std::to_string(number) + "\n");
    EXPECT_EQ(phase.SPG.NUMSPG, number);
    EXPECT_EQ(phase.SPG.CENTRED, 2) << number;
  }
}

// ---- operators of the file ----

namespace {

// Two atoms related by a two-fold axis along b at z = 1/4, a setting with a shifted origin of P 2.
const std::string shifted_p2 =
    " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=   120.000000 - DENSITY  1.0 g/cm^3\n" +
    cell_heading + " 4.0 5.0 6.0 90 90 90\n" + atom_heading +
    "   1 T  14 SI    1.000000000000E-01  2.000000000000E-01  3.000000000000E-01\n"
    "   2 F  14 SI   -1.000000000000E-01  2.000000000000E-01  2.000000000000E-01\n" +
    closing;
const std::string printed_p2 =
    " ****   2 SYMMOPS - TRANSLATORS IN FRACTIONAL UNITS\n"
    " **** MATRICES AND TRANSLATORS IN THE CRYSTALLOGRAPHIC REFERENCE FRAME\n"
    "   V INV                    ROTATION MATRICES                   TRANSLATORS\n"
    "   1   1  1.00  0.00  0.00  0.00  1.00  0.00  0.00  0.00  1.00  0.00  0.00  0.00\n"
    "   2   2 -1.00  0.00 -0.00  0.00  1.00  0.00  0.00  0.00 -1.00  0.00  0.00  0.50\n"
    "\n";
const std::string misfit = "The atoms listed in the file do not follow from space group P 2";

}  // namespace

TEST_F(CRYSTAL_OUTPUT, OPERATORS_OF_THE_FILE_STAND_IN_FOR_A_GROUP_THAT_DOES_NOT_FIT) {
  const std::string group = " SPACE  GROUP  N.                     :    3\n";
  EXPECT_EQ(READ(banner + group + shifted_p2 + printed_p2),
            WARNED(misfit + ", the operators in the file are used") + no_modes);
  ASSERT_EQ(phase.SPG.MULTIP, 2);
  EXPECT_EQ(phase.SPG.SYMOPSYMB(2), "-x,y,-z+1/2");
  EXPECT_EQ(READ(banner + group + printed_p2 + shifted_p2),
            WARNED(misfit + ", the operators in the file are used") + no_modes)
      << "a table above the geometry serves too";
  EXPECT_EQ(READ(banner + group + shifted_p2), WARNED(misfit + what_to_do) + no_modes);
  EXPECT_EQ(phase.SPG.SYMOPSYMB(2), "-x,y,-z");
}

// Cartesian matrices have the same heading of columns.
TEST_F(CRYSTAL_OUTPUT, OPERATORS_OF_ANOTHER_FRAME_ARE_PASSED_OVER) {
  std::string other = printed_p2;
  other.replace(0, other.find('\n'), " ****   2 SYMMOPS - TRANSLATORS IN BOHR");
  other.replace(other.rfind("0.50"), 4, "0.25");
  EXPECT_EQ(READ(banner + " SPACE  GROUP  N.                     :    3\n" + shifted_p2 + other +
                 printed_p2),
            WARNED(misfit + ", the operators in the file are used") + no_modes);
  EXPECT_EQ(phase.SPG.SYMOPSYMB(2), "-x,y,-z+1/2");
}

TEST_F(CRYSTAL_OUTPUT, OPERATORS_THAT_DO_NOT_FIT_EITHER_ARE_NOT_TAKEN) {
  std::string wrong = printed_p2;
  wrong.replace(wrong.rfind("0.50"), 4, "0.25");
  EXPECT_EQ(READ(banner + " SPACE  GROUP  N.                     :    3\n" + shifted_p2 + wrong),
            WARNED(misfit + what_to_do) + no_modes);
  EXPECT_EQ(phase.SPG.SYMOPSYMB(2), "-x,y,-z");
}

TEST_F(CRYSTAL_OUTPUT, NO_SYMMETRY_STAYS_NO_SYMMETRY) {
  EXPECT_EQ(
      READ(banner + shifted_p2 + printed_p2, "\n"),
      no_group + group_prompt +
          WARNED("The atoms listed in the file do not follow from space group P 1" + what_to_do) +
          no_modes);
  EXPECT_EQ(phase.SPG.MULTIP, 1);
  EXPECT_EQ(phase.NATOMS, 1) << "only the atoms of the asymmetric unit are read";
}

// ---- cell and atoms ----

TEST_F(CRYSTAL_OUTPUT, THE_PRIMITIVE_CELL_WHERE_NO_OTHER_IS_PRINTED) {
  READ(banner + " SPACE  GROUP  N.                     :  166\n" + periclase_primitive + closing);
  EXPECT_FLOAT_EQ(phase.CELL.CELL[0], 2.97812163f);
  EXPECT_FLOAT_EQ(phase.CELL.ANG[0], 60.0f);
  EXPECT_FLOAT_EQ(phase.CELL.CELLVOL, 18.6774f);
}

TEST_F(CRYSTAL_OUTPUT, THE_FIRST_OPTIMISED_GEOMETRY_COUNTS) {
  const auto geometry = [](const std::string& heading, const std::string& a) {
    return heading + "\n PRIMITIVE CELL - CENTRING CODE 1/1 VOLUME=   1.0\n" + cell_heading + a +
           " 5.0 6.0 90 90 90\n" + atom_heading + "   1 T  8 O  0.1 0.2 0.3\n" + closing;
  };
  const std::string wave = geometry(" GEOMETRY FOR WAVE FUNCTION", "4.1");
  const std::string first = geometry(" FINAL OPTIMIZED GEOMETRY", "4.2");
  const std::string second = geometry(" FINAL OPTIMIZED GEOMETRY", "4.3");
  READ(banner + wave + first + second, "\n");
  EXPECT_FLOAT_EQ(phase.CELL.CELL[0], 4.2f);
  READ(banner + wave, "\n");
  EXPECT_FLOAT_EQ(phase.CELL.CELL[0], 4.1f);
}

TEST_F(CRYSTAL_OUTPUT, FEWER_THAN_SIX_NUMBERS_LEAVE_THE_DEFAULT_CELL) {
  READ(banner + " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=  9.0\n" + cell_heading +
           " 4.0 5.0 6.0 90 90\n",
       "\n");
  EXPECT_EQ(phase.CELL.CELL[0], 10.0f);
  READ(banner + " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=  9.0\n" + cell_heading, "\n");
  EXPECT_EQ(phase.CELL.CELL[0], 10.0f);
  EXPECT_EQ(READ(banner + " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=  9.0\n" + cell_heading +
                     " 0.0 5.0 6.0 90 90 90\n",
                 "\n"),
            no_group + group_prompt +
                WARNED("Bad cell parameters in the file: the cell is not read") + no_modes);
  EXPECT_EQ(phase.CELL.CELL[0], 10.0f);
}

TEST_F(CRYSTAL_OUTPUT, ATOM_LINES_OF_BOTH_WIDTHS_UP_TO_A_LINE_OF_ANOTHER_SHAPE) {
  const std::string table = banner + " PRIMITIVE CELL - CENTRING CODE 1/0 VOLUME=  120.0\n" +
                            cell_heading + " 4.0 5.0 6.0 90 90 90\n" + atom_heading;
  READ(table +
           "   1 T   8 O    -4.464847892753E-01 -5.351521072468E-02  2.500000000000E-01\n"
           "      5 T 272 HF    4.539539759625E-01 -1.889504076977E-03  3.025729511773E-01\n"
           "   6 T   0 XX    1.000000000000E-01  2.000000000000E-01  3.000000000000E-01\n"
           " 7 X 8 O 0.1 0.2 0.3\n"
           "   8 T   8 O     1.000000000000E-01  2.000000000000E-01  9.000000000000E-01\n",
       "\n");
  ASSERT_EQ(phase.NATOMS, 3);
  EXPECT_FLOAT_EQ(phase.ATOM(1).X[0], -0.4464847892753f);
  EXPECT_EQ(phase.ATOM(2).LAB, "Hf2");
  EXPECT_EQ(phase.ATOM(2).Z, 72) << "272 has a pseudopotential";
  EXPECT_FLOAT_EQ(phase.ATOM(2).X[1], -1.889504076977e-3f);
  EXPECT_EQ(phase.ATOM(3).LAB, "XX3") << "a site without an element";
  EXPECT_EQ(phase.ATOM(3).CHEMSYMB, "");
  for (const char* line : {"1 T 8 O 0.1 0.2\n", "1 T -8 O 0.1 0.2 0.3\n", "1.5 T 8 O 0.1 0.2 0.3\n",
                           "1 T O 8 0.1 0.2 0.3\n", "1 T 8 O nan 0.2 0.3\n"}) {
    READ(table + line, "\n");
    EXPECT_EQ(phase.NATOMS, 0) << line;
  }
}

TEST_F(CRYSTAL_OUTPUT, A_SLAB_HAS_NO_ATOMS_IN_FRACTIONS_OF_A_CELL) {
  READ(banner + " PRIMITIVE CELL\n" + cell_heading + " 4.0 4.0 500.0 90 90 90\n" +
           "     ATOM                 X/A                 Y/B             Z(ANGSTROM)*\n " + stars +
           "\n   1 T  12 MG  0.0 0.0 1.0525\n",
       "\n");
  EXPECT_EQ(phase.NATOMS, 0);
}

// ---- modes ----

TEST_F(CRYSTAL_OUTPUT, MODES_ARE_ROWS_OF_THE_TABLE_UP_TO_A_BLANK_LINE) {
  EXPECT_EQ(READ(banner + number_225 + periclase + modes),
            "     File also contained information on  2 modes\n");
  ASSERT_EQ(phase.MODE_LIST.NMODES, 2);
  const RAMAN::MODE_TYPE& first = phase.MODE_LIST.MODE(1);
  EXPECT_EQ(first.NAME, "1-3");
  EXPECT_EQ(first.SYMMETRY, "Fu");
  EXPECT_EQ(first.W0, 0.0f);
  EXPECT_EQ(first.IR_ACTIVE, "A");
  EXPECT_EQ(first.RAMAN_ACTIVE, "I");
  EXPECT_EQ(first.G[0], RAMAN::MODE_UNSET);
  const RAMAN::MODE_TYPE& second = phase.MODE_LIST.MODE(2);
  EXPECT_EQ(second.NAME, "4");
  EXPECT_EQ(second.SYMMETRY, "A1g");
  EXPECT_FLOAT_EQ(second.W0, 465.6f);
  EXPECT_EQ(second.IR_ACTIVE, "I");
  EXPECT_EQ(second.RAMAN_ACTIVE, "A");
}

TEST_F(CRYSTAL_OUTPUT, A_COUNT_OF_MODES_HAS_2_COLUMNS_OR_MORE) {
  std::string rows = mode_heading;
  for (int i = 1; i <= 99; ++i)
    rows += "    4-   4    0.4E-05    465.6   13.9  (A1g)   I ( 0.00)   A\n";
  EXPECT_EQ(READ(banner + number_225 + periclase + rows),
            "     File also contained information on 99 modes\n");
  rows += "    4-   4    0.4E-05    465.6   13.9  (A1g)   I ( 0.00)   A\n";
  EXPECT_EQ(READ(banner + number_225 + periclase + rows),
            "     File also contained information on 100 modes\n");
  EXPECT_EQ(phase.MODE_LIST.NMODES, 100);
}

TEST_F(CRYSTAL_OUTPUT, EIGENVALUES_OF_AN_OPTIMISER_ARE_NO_MODES) {
  const std::string hessian = " EIGENVALUES OF THE ESTIMATED HESSIAN\n 0.1 0.2\n";
  EXPECT_EQ(READ(banner + number_225 + periclase + hessian), no_modes);
  const std::string adaption = " +++ SYMMETRY ADAPTION OF VIBRATIONAL MODES +++\n\n";
  EXPECT_EQ(READ(banner + number_225 + periclase + hessian + adaption + modes),
            "     File also contained information on  2 modes\n");
  EXPECT_EQ(READ(banner + number_225 + periclase + mode_heading), no_modes);
}

TEST_F(CRYSTAL_OUTPUT, BROKEN_MODE_ROWS_ARE_PASSED_OVER) {
  EXPECT_EQ(READ(banner + number_225 + periclase + mode_heading +
                 "    1-   3   0.1  **********    0.0000  (Fu )   A (     0.00)   I\n"
                 "    (((\n"
                 "    4        0.1  10.0    0.0000  (Fu )\n"
                 "    5-   5   0.1  20.0    0.5\n"),
            "     File also contained information on  1 modes\n");
  EXPECT_EQ(phase.MODE_LIST.MODE(1).NAME, "5");
  EXPECT_EQ(phase.MODE_LIST.MODE(1).SYMMETRY, "");
}

// ---- files cut anywhere ----

TEST_F(CRYSTAL_OUTPUT, A_FILE_CUT_SHORT_ANYWHERE_IS_READ) {
  const std::string text = "END\nBIPOSIZE\n7\nEND\n" + banner + number_225 + periclase + modes;
  constexpr std::size_t step = sanitized ? 31 : 7;
  for (std::size_t length = 1; length < text.size(); length += step) {
    const std::string part = text.substr(0, length);
    const bool told =
        part.find(" SPACE  GROUP  N.                     :  225\n") != std::string::npos;
    // A number that is cut is another number, or none.
    CONSOLE_TESTS::REDIRECTED console("1\n1\n");
    KVA_UTILITIES::FILE_LINES lines;
    std::istringstream stream(part);
    for (std::string line; std::getline(stream, line);) lines.ADD(line);
    int nblocks = 0;
    READ_OUT_FILE(lines, newx, nblocks);
    EXPECT_EQ(nblocks, 1);
    if (told) {
      EXPECT_EQ(newx(1).SPG.NUMSPG, 225) << length;
    }
  }
}

// ---- real files ----

namespace {

const std::filesystem::path samples = std::filesystem::path(PLACES::SAMPLES()) / "crystal-out";

std::string SAMPLE(const std::string& name) {
  std::ifstream stream(samples / (name + ".out"));
  std::stringstream text;
  text << stream.rdbuf();
  return text.str();
}

struct REAL_FILE {
  std::string NAME;
  std::string ANSWERS;  // to the prompt for the group
  int NUMBER;           // of the group
  VECTOR3 LENGTHS;      // as the file prints them
  VECTOR3 ANGLES;
  float VOLUME;
  std::size_t ATOMS;  // in the asymmetric unit
  int NMODES;
};

// Numbers read in the files by eye: those behind the last heading that counts.
const std::vector<REAL_FILE> real_files{
    {"c06-quartz-freq",
     "154\n",
     0,
     {4.91457896f, 4.91457896f, 5.40485895f},
     {90, 90, 120},
     113.054442f,
     2,
     18},
    {"c14-corundum-opt",
     "167\n",
     167,
     {4.55961109f, 4.55961109f, 12.34812538f},
     {90, 90, 120},
     222.32446976f,
     2,
     0},
    {"c14-corundum-qha-opt-freq",
     "167\n",
     0,
     {4.78247716f, 4.78247716f, 12.96799714f},
     {90, 90, 120},
     256.867612f,
     9,
     60},
    {"c17-first-cycle-opt",
     "",
     1,
     {4.42938658f, 3.37482143f, 5.40033702f},
     {90.0f, 89.998663f, 90.0f},
     80.726337f,
     6,
     0},
    {"c17-mgo-external-scf", "", 225, {4.21f, 4.21f, 4.21f}, {90, 90, 90}, 74.618461f, 2, 0},
    {"c17-mgo-opt",
     "225\n",
     225,
     {3.88436123f, 3.88436123f, 3.88436123f},
     {90, 90, 90},
     58.60826038f,
     2,
     0},
    {"c17-nio-external-opt",
     "",
     123,
     {3.07364385f, 3.07364385f, 4.49784307f},
     {90, 90, 90},
     42.492412f,
     4,
     0},
    {"c22-mgo-opt",
     "225\n",
     225,
     {4.24021929f, 4.24021929f, 4.24021929f},
     {90, 90, 90},
     76.23685177f,
     2,
     0},
    {"c17-p4nmm-spin-opt",
     "129\n",
     0,
     {3.99860746f, 3.99860746f, 4.62794930f},
     {90, 90, 90},
     73.995641f,
     3,
     0},
};

}  // namespace

TEST_F(CRYSTAL_OUTPUT, REAL_FILES_GIVE_THE_NUMBERS_THAT_THEY_PRINT) {
  if (!std::filesystem::exists(samples)) GTEST_SKIP() << "no sample files in " << samples;
  for (const REAL_FILE& real : real_files) {
    READ(SAMPLE(real.NAME), real.ANSWERS);
    if (real.NUMBER > 0) {
      EXPECT_EQ(phase.SPG.NUMSPG, real.NUMBER) << real.NAME;
    }
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_FLOAT_EQ(phase.CELL.CELL[k], real.LENGTHS[k]) << real.NAME;
      EXPECT_FLOAT_EQ(phase.CELL.ANG[k], real.ANGLES[k]) << real.NAME;
    }
    EXPECT_FLOAT_EQ(phase.CELL.CELLVOL, real.VOLUME) << real.NAME;
    EXPECT_EQ(static_cast<std::size_t>(phase.NATOMS), real.ATOMS) << real.NAME;
    EXPECT_EQ(phase.MODE_LIST.NMODES, real.NMODES) << real.NAME;
  }
}

TEST_F(CRYSTAL_OUTPUT, EVERY_ATOM_OF_THE_UNIT_CELL_FOLLOWS_FROM_THOSE_READ) {
  if (!std::filesystem::exists(samples)) GTEST_SKIP() << "no sample files in " << samples;
  struct CONTENT {
    std::string NAME;
    std::string ANSWERS;
    int ATOMS;  // "ATOMS IN THE UNIT CELL" of the primitive cell
  };
  for (const CONTENT& content :
       {CONTENT{"c06-quartz-freq", "154\n", 9}, CONTENT{"c14-corundum-opt", "167\n", 10},
        CONTENT{"c14-corundum-qha-opt-freq", "167\n", 30}, CONTENT{"c17-zif8-p0", "217\n", 138},
        CONTENT{"c17-p4nmm-spin-opt", "129\n", 4}, CONTENT{"c17-nio-walltime", "", 4},
        CONTENT{"c17-paracetamol-freq-r0", "", 80}, CONTENT{"c17-paracetamol-freq-m4", "", 80},
        CONTENT{"c22-dryice-freq-ir", "205\n", 12}, CONTENT{"c22-dryice-freq-plus1", "", 12},
        CONTENT{"c22-dryice-raman-plus1", "", 12}, CONTENT{"c17-mgo-scf", "225\n", 2}}) {
    READ(SAMPLE(content.NAME), content.ANSWERS);
    SET_ALLATOM_MULTIP(phase);
    int atoms = 0;
    for (int i = 1; i <= phase.NATOMS; ++i) atoms += phase.ATOM(i).MULT;
    EXPECT_EQ(atoms, content.ATOMS) << content.NAME;
  }
}

// Atoms, modes and texts read in the files by eye.
TEST_F(CRYSTAL_OUTPUT, REAL_FILES_GIVE_THEIR_ATOMS_MODES_AND_ENERGIES) {
  if (!std::filesystem::exists(samples)) GTEST_SKIP() << "no sample files in " << samples;
  const auto expect_atom = [&](int i, const std::string& label, int z, const VECTOR3& x) {
    ASSERT_LE(i, phase.NATOMS);
    const ATOM_TYPE& atom = phase.ATOM(i);
    EXPECT_EQ(atom.LAB, label);
    EXPECT_EQ(atom.Z, z) << label;
    for (std::size_t k = 0; k < 3; ++k) {
      const float difference = atom.X[k] - x[k];
      EXPECT_NEAR(difference, std::round(difference), 1e-6f) << label << " " << k;
    }
  };
  const auto expect_mode = [&](int m, const std::string& name, const std::string& symmetry,
                               float w0, const std::string& infrared, const std::string& raman) {
    ASSERT_LE(m, phase.MODE_LIST.NMODES);
    const RAMAN::MODE_TYPE& mode = phase.MODE_LIST.MODE(m);
    EXPECT_EQ(mode.NAME, name);
    EXPECT_EQ(mode.SYMMETRY, symmetry) << name;
    EXPECT_FLOAT_EQ(mode.W0, w0) << name;
    EXPECT_EQ(mode.IR_ACTIVE, infrared) << name;
    EXPECT_EQ(mode.RAMAN_ACTIVE, raman) << name;
  };

  READ(SAMPLE("c06-quartz-freq"), "154\n");
  EXPECT_EQ(phase.NATOMS, 2);
  expect_atom(1, "Si1", 14, {0.4705925485842f, 0, 0});
  expect_atom(2, "O2", 8, {0.4151440131428f, 0.2670973406544f, 0.1199927007933f});
  EXPECT_EQ(phase.MODE_LIST.NMODES, 18);
  expect_mode(1, "1", "A2", -1.8930f, "A", "I");
  expect_mode(4, "6", "A1", 219.7171f, "I", "A");
  expect_mode(18, "26-27", "E", 1234.6791f, "A", "A");
  EXPECT_TRUE(phase.METADATA(3, 2).ends_with(
      "| Final Energies were:|  Electronic energy = -3457002.71656049 KJ/MOL"
      "|  Zero-point energy = 94.18458299 KJ/MOL"))
      << phase.METADATA(3, 2);

  READ(SAMPLE("c22-dryice-freq-ir"), "205\n");
  EXPECT_EQ(phase.NATOMS, 2);
  expect_atom(1, "C1", 6, {0, 0, 0});
  expect_atom(2, "O2", 8, {0.1233375230529f, 0.1233375230529f, 0.1233375230529f});
  EXPECT_EQ(phase.MODE_LIST.NMODES, 15);
  expect_mode(1, "1-3", "Fu", 0.0f, "A", "I");
  expect_mode(10, "23-25", "Fu", 659.4536f, "A", "I");
  expect_mode(15, "34-36", "Fu", 2392.5167f, "A", "I");

  // The crystallographic cell of a centred lattice, and a deck.
  READ(SAMPLE("c17-zif8-p0"), "217\n");
  for (float length : phase.CELL.CELL) EXPECT_FLOAT_EQ(length, 17.06628113f);
  EXPECT_FLOAT_EQ(phase.CELL.CELLVOL, 4970.69008349f);
  expect_atom(1, "N1", 7, {0.08999523110902f, 0.4713115851657f, -0.1822472005790f});
  expect_atom(2, "C2", 6, {0.1298820258791f, 0.4014878141022f, -0.1864719316891f});
  expect_atom(4, "H4", 1, {0.03429029211555f, -0.4020275436905f, -0.1077776386308f});
  EXPECT_EQ(phase.METADATA(3, 2),
            " Input control parameters for the CRYSTAL program "
            "were:|EXCHSIZE|15000000|BIPOSIZE|15000000|MAXCYCLE|999|"
            "SCFDIR|TOLINTEG|8 8 8 8 16|TOLDEE|8|SHRINK|4 4|END|END|");

  // The last of several geometries.
  READ(SAMPLE("c17-p4nmm-spin-opt"), "129\n");
  expect_atom(3, "S3", 16, {0, 0.5f, 0.2623673089662f});
}
