// What the tests of the menus and of the dialogue for a site share: a block with two centres, and
// what each report says of them. Tests nothing itself.
#pragma once

#include "facetor6_commands__list_blocks.h"

namespace LIST_TESTS {

inline const std::string ask =
    "     The central atom is at the position for the reference block and given by list/table xyz\n"
    "\n\n\n    Enter central site name (or ALL):";

// ---- the tables of a silicon with two bonds and of an oxygen with one ----

inline const std::string adps_title =
    "\n\n ADPs TRANSFORMED TO POSITION EQUIVALENT TO ATOM IN REFERENCE BLOCK (first) AT";
inline const std::string si_at = "  0.100  0.200  0.300\n";
inline const std::string o_at = "  0.400  0.200  0.300\n";
inline const std::string si_site = "1 Si1       (Si  )";
inline const std::string o_site = "1 O1        (O   )";
// Six values of 10 columns, or fields of 13.
inline const std::string no_tensor = "   0.00000   0.00000   0.00000   0.00000   0.00000   0.00000";
inline const std::string no_esd_tensor =
    " 0.00000      0.00000      0.00000      0.00000      0.00000      0.00000      0.000";

inline std::string XYZ_TITLE(const std::string& label) {
  return "\n\n ATOMS EQUIVALENT TO ATOM " + label + " IN REFERENCE BLOCK (first)\n" + head;
}

inline std::string AROUND(const std::string& words) {
  return "\n\n     " + words + " AROUND CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first)\n" +
         head;
}

inline const std::string no_polyhedron = "\n\n     NO POLYHEDRON FOUND AROUND CENTRAL ATOM ";

enum class MENU { LIST, TABLE };

// A report by its code and by its row of a menu, and what it says of the two atoms.
struct LISTED_REPORT {
  REPORT_CODE CODE;
  std::string OPTION;
  MENU COMMAND;
  std::string ROW;
  std::string OF_SI;
  std::string OF_O;
};

class LISTING : public BLOCKS {
 protected:
  void SetUp() override {
    BLOCKS::SetUp();
    ADD("first");
    BV_PAIRS.ADD({"SI+4", "O-2", 0.37f, 1.624f, "a paper"});
  }

  static void ADD_BONDS() {
    BOND(1, {1.5f, 1.6f});
    BOND(1, {1.7f}, 0.003f, 2);
    for (int centre : {1, 2}) ADD_BOND_VALUES(1, centre);
    ADD_ANGLES(1, 2);
    VALENCES_DONE = true;
  }

  // The oxygens that have no bonds are kept out of the way of ALL.
  static void OMIT_THE_OTHERS() {
    for (int i : {3, 4}) PHASE(1).ATOM_USE(i) = ATOM_OMITTED;
  }

  static std::string DRIVER(REPORT_CODE code, const std::string& answers,
                            std::string_view option = "") {
    return SAID(answers, [code, option] { RUN_FACETOR_LIST_GEOM(code, option); });
  }

  static std::string ANSWERED(MENU command, const std::string& answers) {
    return SAID(answers, command == MENU::LIST ? RUN_FACETOR_LIST : RUN_FACETOR_TABLE);
  }

  static std::vector<LISTED_REPORT> REPORTS();
};

// Values 45-52 and 53-60, the end group from 63 (61 to 62 blank) or for one bond from 55; with esds
// fields 46-56 and 57-67, the end group from 68 or 57.
inline std::vector<LISTED_REPORT> LISTING::REPORTS() {
  const std::string plain_xyz = " SITE      ATOM     X         Y         Z       OCC\n" + start_1;
  const std::string esd_xyz =
      " SITE      ATOM      X            Y            Z            OCC\n" + esd_start_1;
  const std::string plain_u = head +
                              " SITE      ATOM     U11       U22       U33       U12       U13     "
                              "  U23        Ueq  Beq\n" +
                              start_1;
  const std::string plain_beta =
      head +
      " SITE      ATOM     b11       b22       b33       b12       b13       b23        Beq\n" +
      start_1;
  const std::string esd_u = head +
                            " SITE      ATOM      U11          U22          U33          U12      "
                            "    U13          U23        Ueq       Beq\n" +
                            esd_start_1;
  const std::string esd_beta = head +
                               " SITE      ATOM      b11          b22          b33          b12   "
                               "       b13          b23        Beq\n" +
                               esd_start_1;
  const std::string srb_words = "SRB-CORRECTED BOND LENGTHS FROM";
  const std::string displ_words = "THERMAL DISPLACEMENTS ALONG BONDS OF";
  const std::string valence_words = "BOND VALENCES FROM";
  return {
      {REPORT_XYZ, "", MENU::LIST, "6",
       XYZ_TITLE("Si1") + plain_xyz + si_site + "   0.10000   0.20000   0.30000 1.000\n",
       XYZ_TITLE("O1") + plain_xyz + o_site + "   0.40000   0.20000   0.30000 1.000\n"},
      {REPORT_XYZ, "ESD", MENU::TABLE, "2",
       XYZ_TITLE("Si1") + esd_xyz + si_site + " 0.100000     0.200000     0.300000     1.00000\n",
       XYZ_TITLE("O1") + esd_xyz + o_site + " 0.400000     0.200000     0.300000     1.00000\n"},
      {REPORT_ADPS, "U", MENU::LIST, "7\nU",
       adps_title + si_at + plain_u + si_site + no_tensor + " 0.0000  0.000\n",
       adps_title + o_at + plain_u + o_site + no_tensor + " 0.0000  0.000\n"},
      {REPORT_ADPS, "BETA", MENU::LIST, "7\nb",
       adps_title + si_at + plain_beta + si_site + no_tensor + "  0.000\n",
       adps_title + o_at + plain_beta + o_site + no_tensor + "  0.000\n"},
      {REPORT_ADPS, "ESD, U", MENU::TABLE, "3\n",
       adps_title + si_at + esd_u + si_site + no_esd_tensor + "    0.000\n",
       adps_title + o_at + esd_u + o_site + no_esd_tensor + "    0.000\n"},
      {REPORT_ADPS, "ESD, BETA", MENU::TABLE, "3\nB",
       adps_title + si_at + esd_beta + si_site + no_esd_tensor + "\n",
       adps_title + o_at + esd_beta + o_site + no_esd_tensor + "\n"},
      {REPORT_BONDS, "", MENU::LIST, "8",
       TITLE("BONDS FROM") + head + " O1      O2       N AVERAGE  VOLUME\n" + start_1 +
           "  1.5000  1.6000    2  1.7500   2.250\n",
       TITLE("BONDS FROM", "O1") + head + " O1       N AVERAGE  VOLUME\n" + start_1 +
           "  1.7000    1  1.7500   2.250\n"},
      {REPORT_BONDS, "ESD", MENU::TABLE, "4",
       TITLE("BONDS FROM") + head + " O1         O2          N AVERAGE  VOLUME\n" + esd_start_1 +
           "  1.500(3)   1.600(3)    2  1.7500 2.250(15)\n",
       TITLE("BONDS FROM", "O1") + head + " O1          N AVERAGE  VOLUME\n" + esd_start_1 +
           "  1.700(3)    1  1.7500 2.250(15)\n"},
      {REPORT_ANGLES, "", MENU::LIST, "9",
       AROUND("ANGLES") + " O1-O2    AngleVar\n" + start_1 + " 103.000    12.5000\n",
       "\n\n     NO ANGLES FOUND FROM CENTRAL ATOM O1\n"},
      {REPORT_ANGLES, "ESD", MENU::TABLE, "5",
       AROUND("ANGLES") + " O1-O2      AngleVar\n" + esd_start_1 + "  103.0(5)    12.5000\n",
       "\n\n     NO ANGLES FOUND FROM CENTRAL ATOM O1\n"},
      {REPORT_EDGES, "", MENU::LIST, "10",
       AROUND("EDGES") + " O1-O2    AVERAGE\n" + start_1 + "   1.200     1.250\n",
       "\n\n     NO EDGES FOUND AROUND CENTRAL ATOM O1\n"},
      {REPORT_EDGES, "ESD", MENU::TABLE, "6",
       AROUND("EDGES") + " O1-O2      AVERAGE\n" + esd_start_1 + "  1.200(4)     1.250\n",
       "\n\n     NO EDGES FOUND AROUND CENTRAL ATOM O1\n"},
      {REPORT_ORBIX, "", MENU::LIST, "11", no_polyhedron + "Si1\n", no_polyhedron + "O1\n"},
      {REPORT_SRB, "", MENU::LIST, "12",
       TITLE(srb_words) + head + " O1      O2        N SRB AVE RAW AVE  SRBVOL  RAWVOL\n" +
           start_1 + "  1.5100  1.6100    2  1.5600  1.7500  2.5000  2.2500\n",
       TITLE(srb_words, "O1") + head + " O1        N SRB AVE RAW AVE  SRBVOL  RAWVOL\n" + start_1 +
           "  1.7100    1  1.7100  1.7500  2.5000  2.2500\n"},
      {REPORT_DISPL, "", MENU::LIST, "13",
       TITLE(displ_words) + head + " O1      O2        N AVERAGE\n" + start_1 +
           "  0.1000  0.2000    2  0.1500  1.7500\n",
       TITLE(displ_words, "O1") + head + " O1        N AVERAGE\n" + start_1 +
           "  0.1000    1  0.1000  1.7500\n"},
      {REPORT_VALENCES, "", MENU::LIST, "14",
       TITLE(valence_words) + head + " O1      O2        BVSUM\n" + start_1 +
           "  0.2500  0.5000     0.750\n",
       TITLE(valence_words, "O1") + head + " O1        BVSUM\n" + start_1 + "  0.2500     0.750\n"},
      {REPORT_VALENCES, "ESD", MENU::TABLE, "7",
       TITLE(valence_words) + head + " O1         O2          BVSUM\n" + esd_start_1 +
           "  0.250(10)  0.500(10)  0.75(2)\n",
       TITLE(valence_words, "O1") + head + " O1          BVSUM\n" + esd_start_1 +
           "  0.250(10)  0.75(2)\n"}};
}

}  // namespace LIST_TESTS
