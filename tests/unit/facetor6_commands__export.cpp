// EXPORT: its dialogue, every line of a data file for each crystal system, and what becomes of a
// file that was there.
#include "src/facetor6_exportfiles/exportfiles.h"

#include <sys/resource.h>  // for setrlimit

#include <csignal>
#include <ctime>
#include <limits>

#include "console_code/kva_utilities/text.h"
#include "facetor6_commands__list_blocks.h"

using namespace FACETOR_EXPORTFILES;
using namespace LIST_TESTS;
using XTAL::SYSTEM;
namespace fs = std::filesystem;

namespace {

const std::string opening =
    "\n***** This routine allows you to export data to Kompressa data files\n\n"
    "\n     Data from the following USED datablocks will be exported, in this order:\n";
const std::string is_this_ok = "     Is this ok? (Y/N)?";
const std::string menu =
    "\n     Possible selections for Type of data to export:\n      1: cell data\n"
    "      2: polyhedral volumes\n      0: Exit\n\n     Enter selection by number:";
const std::string cells =
    "\n     Full unit cell, P and T data from used datablocks will be written to an Kompressa "
    "file\n\n";
const std::string volumes =
    "\n     Selected polyhedral volume data from used datablocks will be written to an Kompressa "
    "file\n\n"
    "\n****Now select the polyhedron volumes by central atom name in reference datablock, which "
    "are:\n";
const std::string which_atom = "    Enter central atom name:";
const std::string which_file = "\n\n     Open Kompressa datafile (*.dat):";
const std::string failed = "\n*****WARNING: Errors on writing the file: check it carefully\n\n";

// told: what is said of the lines that the file holds already.
std::string OPENED(const std::string& name, const std::string& told = "") {
  return "\nSuccessfully opened Kompressa datafile\nNamed " + name + "\n" + told + "\n";
}

std::string LEFT_OUT(const std::string& blocks) {
  return "\n*****WARNING: Left out, as the polyhedron is not complete there: block #" + blocks +
         "\n\n";
}

std::string COUNT(const std::string& count) {
  return "     File header   and " + count + " data points written to the file\n\n";
}

// Today as 01-FEB-2025.
std::string TODAY() {
  std::array<char, 12> day{};
  const std::time_t now = std::time(nullptr);
  EXPECT_EQ(std::strftime(day.data(), day.size(), "%d-%b-%Y", std::localtime(&now)), 11u);
  return KVA_UTILITIES::U_CASE(day.data());
}

std::string HEADER(const std::string& format, const std::string& system = "",
                   const std::string& title = "", const std::string& per = "cell") {
  return " \nTitle Datafile created by Gemmara on " + TODAY() + "\n" +
         (title.empty() ? "" : " \n#   " + title + "\n") + " \nTscale K\nPscale GPa\nVscale A^3/" +
         per + "\n" + (system.empty() ? "" : "System " + system + "\n") +
         " \nFormat 1 T sigT P sigP" + format + "\n";
}

const std::string triclinic_format =
    " a siga b sigb c sigc alpha sigal beta sigbe gamma sigga v sigv";

// The numbers of the block that ADD_CELL makes.
const std::string conditions = " 298.0  1.0  3.500  0.002";
const std::string lengths = "  5.0000  0.0010  6.0000  0.0020  7.0000  0.0030";
const std::string volume = "  210.5000  0.2500";

class EXPORT : public BLOCKS {
 protected:
  static void ADD_CELL(const XTAL::CRYSTAL_SYSTEM& system) {
    CRYSTAL_STRUCTURE_TYPE phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1", {});
    phase.SPG.CRYSTALSYS = system;
    phase.CELL.CELL = {5, 6, 7};
    phase.CELL.CELL_STD = {0.001f, 0.002f, 0.003f};
    phase.CELL.ANG = {98.5f, 101.25f, 115.125f};
    phase.CELL.ANG_STD = {0.01f, 0.02f, 0.03f};
    phase.CELL.CELLVOL = 210.5f;
    phase.CELL.STDVOL = 0.25f;
    ADD("first", phase);
    PHASE(NPHASES).PT(PRESSURE, PT_VALUE) = 3.5f;
    PHASE(NPHASES).PT(PRESSURE, PT_ESD) = 0.002f;
  }

  // Exports the cells to the file.
  static std::string EXPORT_CELLS(const std::string& name = "out.dat") {
    return SAID("y\n1\n" + name + "\n\n", RUN_EXPORT);
  }

  // What the cells of one block of that system give.
  std::string FILE_FOR(const XTAL::CRYSTAL_SYSTEM& system) {
    INIT_PHASE_LIST();
    fs::remove("out.dat");
    ADD_CELL(system);
    EXPORT_CELLS();
    return TEXT_OF("out.dat");
  }
};

}  // namespace

// ---- the dialogue ----

TEST_F(EXPORT, NEEDS_BLOCKS) {
  EXPECT_EQ(SAID("", RUN_EXPORT), "\n*****WARNING: No datablocks with use flags set!\n\n");
}

TEST_F(EXPORT, A_NO_OR_A_BLANK_ENDS_THE_COMMAND) {
  ADD("first");
  for (const std::string answer : {"n\n", "\n"})
    EXPECT_EQ(SAID(answer, RUN_EXPORT), opening + head + "\n" + start_1 + "\n" + is_this_ok);
}

TEST_F(EXPORT, CELLS_OF_THE_USED_BLOCKS_AND_THE_MENU_AGAIN) {
  ADD("first");
  ADD("second");
  ADD("third");
  IUSE(2) = 0;
  EXPECT_EQ(SAID("y\n1\nout\n0\n", RUN_EXPORT), opening + head + "\n" + start_1 + "\n" + start_3 +
                                                    "\n" + is_this_ok + menu + cells + which_file +
                                                    OPENED("out.dat") + COUNT("  2") + menu);
}

TEST_F(EXPORT, THE_COUNT_IS_SHOWN_WHOLE) {
  for (int block = 1; block <= 1000; ++block) ADD_CELL({SYSTEM::TRICLINIC});
  EXPECT_NE(EXPORT_CELLS().find(COUNT("1000")), std::string::npos);
}

TEST_F(EXPORT, WITHOUT_A_FILE_NAME_NOTHING_IS_WRITTEN) {
  ADD("first");
  EXPECT_EQ(SAID("y\n1\n\n\n", RUN_EXPORT),
            opening + head + "\n" + start_1 + "\n" + is_this_ok + menu + cells + which_file + menu);
}

// ---- cells ----

TEST_F(EXPORT, A_TRICLINIC_CELL) {
  EXPECT_EQ(FILE_FOR({SYSTEM::TRICLINIC}),
            HEADER(triclinic_format, "TRICLINIC") + conditions + lengths +
                "  98.500  0.010  101.250  0.020  115.125  0.030" + volume + "\n");
}

TEST_F(EXPORT, A_MONOCLINIC_CELL_HAS_THE_ANGLE_OF_ITS_UNIQUE_AXIS) {
  EXPECT_EQ(FILE_FOR({SYSTEM::MONOCLINIC, 'a'}),
            HEADER(" a siga b sigb c sigc alpha sigal v sigv", "MONO A-UNI") + conditions +
                lengths + "  98.500  0.010" + volume + "\n");
  EXPECT_EQ(FILE_FOR({SYSTEM::MONOCLINIC, 'b'}),
            HEADER(" a siga b sigb c sigc beta sigbe v sigv", "MONO B-UNI") + conditions + lengths +
                "  101.250  0.020" + volume + "\n");
  EXPECT_EQ(FILE_FOR({SYSTEM::MONOCLINIC, 'c'}),
            HEADER(" a siga b sigb c sigc gamma sigga v sigv", "MONO C-UNI") + conditions +
                lengths + "  115.125  0.030" + volume + "\n");
}

TEST_F(EXPORT, A_MONOCLINIC_CELL_WITHOUT_A_NAMED_AXIS_COUNTS_AS_UNIQUE_A) {
  EXPECT_EQ(FILE_FOR({SYSTEM::MONOCLINIC}),
            HEADER(" a siga b sigb c sigc alpha sigal v sigv", "MONOCLINIC") + conditions +
                lengths + "  98.500  0.010" + volume + "\n");
}

TEST_F(EXPORT, AN_ORTHORHOMBIC_CELL_WITH_ITS_NAMES_JOINED) {
  EXPECT_EQ(
      FILE_FOR({SYSTEM::ORTHORHOMBIC}),
      HEADER("a siga b sigb c sigc v sigv", "ORTHORHOMBIC") + conditions + lengths + volume + "\n");
  EXPECT_NE(TEXT_OF("out.dat").find("\nFormat 1 T sigT P sigPa siga b sigb c sigc v sigv\n"),
            std::string::npos);
}

TEST_F(EXPORT, TETRAGONAL_TRIGONAL_AND_HEXAGONAL_CELLS_HAVE_TWO_LENGTHS) {
  for (SYSTEM system : {SYSTEM::TETRAGONAL, SYSTEM::TRIGONAL, SYSTEM::HEXAGONAL})
    EXPECT_EQ(FILE_FOR({system}),
              HEADER(" a siga c sigc  v sigv", KVA_UTILITIES::U_CASE(XTAL::SYSTEM_NAME(system))) +
                  conditions + "  5.0000  0.0010  7.0000  0.0030" + volume + "\n");
}

TEST_F(EXPORT, A_CUBIC_CELL_HAS_ITS_VOLUME_ALONE) {
  EXPECT_EQ(FILE_FOR({SYSTEM::CUBIC}), HEADER(" v sigv", "CUBIC") + conditions + volume + "\n");
}

TEST_F(EXPORT, WITHOUT_A_SYSTEM_THE_CELL_IS_TRICLINIC) {
  EXPECT_EQ(FILE_FOR({}), FILE_FOR({SYSTEM::TRICLINIC}));
}

TEST_F(EXPORT, THE_SYSTEMS_OF_THE_SPACE_GROUPS_ARE_UNDERSTOOD) {
  const std::vector<std::pair<std::string, std::string>> groups{
      {"P -1", "TRICLINIC"},    {"P n m a", "ORTHORHOMBIC"}, {"I 41/a", "TETRAGONAL"},
      {"R -3 c", "TRIGONAL"},   {"P 63/m", "HEXAGONAL"},     {"F d -3 m", "CUBIC"},
      {"P 21/c", "MONOCLINIC"}, {"P 32 2 1", "TRIGONAL"}};
  for (const auto& [symbol, system] : groups) {
    INIT_PHASE_LIST();
    fs::remove("out.dat");
    ADD("first", MADE({5, 5, 5}, {90, 90, 90}, symbol, {}));
    EXPORT_CELLS();
    EXPECT_NE(TEXT_OF("out.dat").find("\nSystem " + system + "\n"), std::string::npos) << symbol;
  }
}

TEST_F(EXPORT, BLOCKS_OF_TWO_SYSTEMS_ARE_TRICLINIC) {
  const std::string angles = "  98.500  0.010  101.250  0.020  115.125  0.030";
  const std::string row = conditions + lengths + angles + volume + "\n";
  using PAIR = std::array<XTAL::CRYSTAL_SYSTEM, 2>;
  for (const auto& [first, second] :
       {PAIR{{{SYSTEM::CUBIC}, {SYSTEM::TETRAGONAL}}},
        PAIR{{{SYSTEM::TRIGONAL}, {SYSTEM::HEXAGONAL}}},
        PAIR{{{SYSTEM::MONOCLINIC, 'b'}, {SYSTEM::MONOCLINIC, 'c'}}},
        PAIR{{{SYSTEM::MONOCLINIC, 'b'}, {SYSTEM::MONOCLINIC}}},
        PAIR{{{SYSTEM::TRICLINIC}, {SYSTEM::CUBIC}}}, PAIR{{{SYSTEM::CUBIC}, {}}}}) {
    INIT_PHASE_LIST();
    fs::remove("out.dat");
    ADD_CELL(first);
    ADD_CELL(second);
    EXPORT_CELLS();
    EXPECT_EQ(TEXT_OF("out.dat"), HEADER(triclinic_format, "TRICLINIC") + row + row)
        << SYSTEM_TEXT(first) << ", " << SYSTEM_TEXT(second);
  }
}

TEST_F(EXPORT, POINTS_STAND_IN_DISPLAY_ORDER_AND_IN_COLUMNS) {
  ADD_CELL({SYSTEM::CUBIC});
  ADD_CELL({SYSTEM::CUBIC});
  ADD_CELL({SYSTEM::CUBIC});
  PHASE(2).PT(TEMPERATURE, PT_VALUE) = 4.2f;
  PHASE(2).PT(TEMPERATURE, PT_ESD) = 12.5f;
  PHASE(2).PT(PRESSURE, PT_VALUE) = -0.25f;
  PHASE(3).PT(PRESSURE, PT_VALUE) = 105.5f;
  PHASE(3).CELL.CELLVOL = 55.25f;
  IUSE(1) = 0;
  ISORT(1) = 3;
  ISORT(3) = 1;
  EXPORT_CELLS();
  EXPECT_EQ(TEXT_OF("out.dat"), HEADER(" v sigv", "CUBIC") +
                                    " 298.0   1.0  105.500  0.002   55.2500  0.2500\n"
                                    "   4.2  12.5   -0.250  0.002  210.5000  0.2500\n");
}

TEST_F(EXPORT, COLUMNS_WIDEN_FOR_LONG_NUMBERS) {
  ADD_CELL({SYSTEM::CUBIC});
  ADD_CELL({SYSTEM::CUBIC});
  PHASE(1).PT(TEMPERATURE, PT_ESD) = 100.0f;
  PHASE(1).PT(PRESSURE, PT_VALUE) = -1000.5f;
  PHASE(1).CELL.CELLVOL = 123456.0f;
  EXPECT_TRUE(EXPORT_CELLS().ends_with(OPENED("out.dat") + COUNT("  2") + menu)) << "no warning";
  EXPECT_EQ(TEXT_OF("out.dat"), HEADER(" v sigv", "CUBIC") +
                                    " 298.0  100.0  -1000.500  0.002  123456.0000  0.2500\n"
                                    " 298.0    1.0      3.500  0.002     210.5000  0.2500\n");
}

// In units of the last decimal: 5 show as they are, as do 1.6, which are 2, and 1 to a percent;
// 0.5, 1.02, 1.2 and 1.4 need further digits.
TEST_F(EXPORT, SMALL_ESDS_ARE_SHOWN_WITH_TWO_DIGITS) {
  const auto volume_of = [](float value, float esd) {
    INIT_PHASE_LIST();
    fs::remove("out.dat");
    ADD_CELL({SYSTEM::CUBIC});
    PHASE(1).CELL.CELLVOL = value;
    PHASE(1).CELL.STDVOL = esd;
    EXPORT_CELLS();
    const std::string text = TEXT_OF("out.dat");
    return text.substr(text.rfind("0.002") + 7);
  };
  EXPECT_EQ(volume_of(5.1f, 0.0005f), "5.1000  0.0005\n");
  EXPECT_EQ(volume_of(4.9134f, 0.00005f), "4.913400  0.000050\n");
  EXPECT_EQ(volume_of(4.9134f, 0.0001f), "4.9134  0.0001\n");
  EXPECT_EQ(volume_of(4.9134f, 0.000101f), "4.9134  0.0001\n");
  EXPECT_EQ(volume_of(4.9134f, 0.000102f), "4.91340  0.00010\n");
  EXPECT_EQ(volume_of(4.9134f, 0.00012f), "4.91340  0.00012\n");
  EXPECT_EQ(volume_of(4.9134f, 0.00014f), "4.91340  0.00014\n");
  EXPECT_EQ(volume_of(4.9134f, 0.00016f), "4.9134  0.0002\n") << "shows as two units";
  EXPECT_EQ(volume_of(4.9134f, 0.0f), "4.9134  0.0000\n");
  EXPECT_EQ(volume_of(4.9134f, 0.0000996f), "4.9134  0.0001\n");
  EXPECT_EQ(volume_of(4.9134f, 0.0000098f), "4.913400  0.000010\n");
  EXPECT_EQ(volume_of(100.0f, std::numeric_limits<float>::quiet_NaN()), "100.0000  0.0000\n");
}

TEST_F(EXPORT, EACH_NUMBER_HAS_THE_DECIMALS_OF_ITS_OWN_ESD) {
  ADD_CELL({SYSTEM::TETRAGONAL});
  ADD_CELL({SYSTEM::TETRAGONAL});
  PHASE(1).PT(TEMPERATURE, PT_ESD) = 0.02f;
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.0004f;
  PHASE(1).CELL.CELL_STD[0] = 0.00003f;
  EXPORT_CELLS();
  EXPECT_EQ(TEXT_OF("out.dat"),
            HEADER(" a siga c sigc  v sigv", "TETRAGONAL") +
                " 298.000  0.020  3.50000  0.00040  5.000000  0.000030  7.0000  0.0030  210.5000"
                "  0.2500\n"
                " 298.0    1.0    3.500    0.002    5.0000    0.0010    7.0000  0.0030  210.5000"
                "  0.2500\n");
}

// a = b = c and alpha = beta = gamma: a and c alone would not tell the angle.
TEST_F(EXPORT, RHOMBOHEDRAL_AXES_ARE_WRITTEN_WITH_ALL_PARAMETERS) {
  const auto add = [](float angle) {
    ADD_CELL({SYSTEM::TRIGONAL});
    PHASE(NPHASES).CELL.CELL = {5, 5, 5};
    PHASE(NPHASES).CELL.ANG = {angle, angle, angle};
  };
  add(90);
  add(55.25f);
  EXPORT_CELLS();
  EXPECT_EQ(TEXT_OF("out.dat"),
            HEADER(triclinic_format, "TRICLINIC") +
                " 298.0  1.0  3.500  0.002  5.0000  0.0010  5.0000  0.0020  5.0000  0.0030  90.000"
                "  0.010  90.000  0.020  90.000  0.030  210.5000  0.2500\n"
                " 298.0  1.0  3.500  0.002  5.0000  0.0010  5.0000  0.0020  5.0000  0.0030  55.250"
                "  0.010  55.250  0.020  55.250  0.030  210.5000  0.2500\n");
  INIT_PHASE_LIST();
  fs::remove("out.dat");
  add(90);
  EXPORT_CELLS();
  EXPECT_NE(TEXT_OF("out.dat").find("System TRIGONAL\n"), std::string::npos);
}

// ---- volumes of polyhedra ----

TEST_F(EXPORT, VOLUMES_OF_A_POLYHEDRON) {
  ADD("first");
  ADD("second");
  ADD("third");
  BOND(1, {1.6f, 1.6f, 1.6f, 1.6f});
  BOND(2, {1.6f, 1.6f, 1.6f, 1.6f});
  PHASE(2).POLYHEDRON(1, POLY_VOLUME) = 12.125f;
  PHASE(2).PT(PRESSURE, PT_VALUE) = 3.5f;
  PHASE(3).NBONDS(1) = NO_CENTRE;
  const std::string sites = SAID("", [] { FACETOR_LIST_ATOMS("", 1); });
  EXPECT_EQ(SAID("y\n2\nSi1\nout\n\n\n", RUN_EXPORT),
            opening + head + "\n" + start_1 + "\n  2: second        : 298.0   3.500         1\n" +
                start_3 + "\n" + is_this_ok + menu + volumes + sites + "\n\n" + which_atom +
                "\n    Polyhedral volumes for Si1  will be written to the kompressa dat file\n" +
                LEFT_OUT("3") + which_file + OPENED("out.dat") + COUNT("  2") + which_atom + menu);
  EXPECT_EQ(TEXT_OF("out.dat"), HEADER(" v sigv", "", "Polyhedral Volumes for Si1", "polyhedron") +
                                    " 298.0  1.0  0.000  0.000   2.2500  0.0150\n"
                                    " 298.0  1.0  3.500  0.000  12.1250  0.0150\n");
}

// The second block has lost a ligand and keeps the volume of the rest; the volumes of the others
// are none. Their numbers are those of the blocks, in the order of the file.
TEST_F(EXPORT, INCOMPLETE_POLYHEDRA_ARE_LEFT_OUT_AND_TOLD) {
  for (const char* title : {"first", "second", "third", "fourth", "fifth"}) ADD(title);
  for (int block = 1; block <= 5; ++block) BOND(block, {1.6f, 1.6f, 1.6f, 1.6f});
  PHASE(2).BONDS.CLEAR_ROW(1, 3);
  PHASE(3).POLYHEDRON(1, POLY_VOLUME) = std::numeric_limits<float>::quiet_NaN();
  PHASE(5).POLYHEDRON(1, POLY_VOLUME) = 0.009f;
  std::swap(ISORT(1), ISORT(5));
  IUSE(4) = 0;
  EXPECT_NE(SAID("y\n2\nSi1\nout\n\n\n", RUN_EXPORT)
                .find(LEFT_OUT("5, 2, 3") + which_file + OPENED("out.dat") + COUNT("  1")),
            std::string::npos);
  EXPECT_EQ(TEXT_OF("out.dat"), HEADER(" v sigv", "", "Polyhedral Volumes for Si1", "polyhedron") +
                                    " 298.0  1.0  0.000  0.000  2.2500  0.0150\n");
}

TEST_F(EXPORT, WITHOUT_A_COMPLETE_POLYHEDRON_NO_FILE_IS_OPENED) {
  ADD("first");
  ADD("second");
  BOND(1, {1.6f, 1.6f, 1.6f, 1.6f});
  IUSE(1) = 0;
  const std::string said = SAID("y\n2\nSi1\n\n\n", RUN_EXPORT);
  EXPECT_TRUE(said.ends_with(which_atom + LEFT_OUT("2") + which_atom + menu)) << said;
  EXPECT_EQ(said.find("will be written to the kompressa"), std::string::npos);
}

TEST_F(EXPORT, WHY_A_CENTRE_HAS_NO_VOLUME) {
  ADD("first");
  BOND(1, {1.6f, 1.6f, 1.6f, 1.6f});
  const std::string no_volume =
      "     ***** No polyhedral volume has been calculated for this central atom\n";
  const auto answer_for = [](const std::string& name) {
    const std::string said = SAID("y\n2\n" + name + "\n\n\n", RUN_EXPORT);
    const std::string rest = said.substr(said.find(which_atom) + which_atom.size());
    return rest.substr(0, rest.find(which_atom));
  };
  EXPECT_EQ(answer_for("Xx"),
            "     *****No atom site with this name found in the reference block\n");
  EXPECT_EQ(answer_for("O1"), no_volume) << "no bonds at all";
  PHASE(1).NBONDS(1) = 3;
  EXPECT_EQ(answer_for("Si1"),
            "     ***** This atom has 3 ligands and therefore no polyhedral volume\n");
  PHASE(1).NBONDS(1) = 1;
  EXPECT_EQ(answer_for("Si1"),
            "     ***** This atom has 1 ligands and therefore no polyhedral volume\n");
  PHASE(1).NBONDS(1) = 4;
  PHASE(1).POLYHEDRON(1, POLY_VOLUME) = 0.009f;
  EXPECT_EQ(answer_for("Si1"), no_volume) << "4 ligands, volume below 0.01";
  PHASE(1).ATOM_USE(1) = ATOM_OMITTED;
  EXPECT_EQ(answer_for("Si1"),
            "     ***** This atom is marked not to be used and cannot be selected\n");
  PHASE(1).ATOM_USE(1) = -2;
  EXPECT_EQ(answer_for("Si1"),
            "     ***** This atom is a duplicate of another atom and cannot be selected\n");
  EXPECT_FALSE(fs::exists("out.dat"));
}

TEST_F(EXPORT, A_CENTRE_IS_NAMED_BY_THE_START_OF_ITS_LABEL) {
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"O11", {0.4f, 0.2f, 0.3f}},
                     {"O1", {0.1f, 0.2f, 0.3f}},
                     {"LongLabel12", {0.7f, 0.2f, 0.3f}}}));
  for (int i = 1; i <= 3; ++i) {
    BOND(1, {1.6f, 1.6f, 1.6f, 1.6f}, 0.003f, i);
    PHASE(1).POLYHEDRON(i, POLY_VOLUME) = 2.25f;
  }
  const auto title_for = [](const std::string& name) {
    fs::remove("out.dat");
    SAID("y\n2\n" + name + "\nout\n\n\n", RUN_EXPORT);
    const std::string text = TEXT_OF("out.dat");
    const std::size_t at = text.find("#   ");
    return text.substr(at, text.find('\n', at) - at);
  };
  EXPECT_EQ(title_for("o1"), "#   Polyhedral Volumes for O11");
  EXPECT_EQ(title_for("longlabel19"), "#   Polyhedral Volumes for LongLabel12")
      << "10 characters count";
}

// ---- the file itself ----

TEST_F(EXPORT, A_FILE_OF_VOLUMES_NAMES_NO_SYSTEM) {
  EOS_POINT point;
  point[EOS_T] = {298.0f, 1.0f};
  point[EOS_V] = {210.5f, 0.25f};
  const std::string row = " 298.0  1.0  0.000  0.000  210.5000  0.2500\n";
  const auto text_for = [&point](const XTAL::CRYSTAL_SYSTEM& system, const std::string& title) {
    fs::remove("out.dat");
    CONSOLE_TESTS::PEND("out");
    SAID("", [&] { WRITE_EOSDAT({point}, system, title); });
    return TEXT_OF("out.dat");
  };
  EXPECT_EQ(text_for(volumes_of_polyhedra, ""), HEADER(" v sigv", "", "", "polyhedron") + row);
  EXPECT_EQ(text_for({SYSTEM::CUBIC}, "Anything"), HEADER(" v sigv", "CUBIC", "Anything") + row);
}

TEST_F(EXPORT, A_SECOND_EXPORT_IS_ADDED_BEHIND_THE_FIRST) {
  ADD_CELL({SYSTEM::CUBIC});
  PUT_FILE("out.dat", "mine\n");
  EXPORT_CELLS();
  EXPORT_CELLS();
  const std::string text = HEADER(" v sigv", "CUBIC") + conditions + volume + "\n";
  EXPECT_EQ(TEXT_OF("out.dat"), "mine\n" + text + text);
}

TEST_F(EXPORT, A_FULL_DISK_IS_TOLD) {
  ADD("first");
  fs::create_symlink("/dev/full", "full.dat");
  EXPECT_EQ(EXPORT_CELLS("full.dat"), opening + head + "\n" + start_1 + "\n" + is_this_ok + menu +
                                          cells + which_file + OPENED("full.dat") + failed +
                                          "*****Nothing was written to full.dat: No space left on "
                                          "device\n" +
                                          menu);
}

TEST_F(EXPORT, A_WRITE_THAT_FAILS_HALFWAY_LEAVES_WHAT_WAS_THERE) {
  ADD("first");
  PUT_FILE("out.dat", "mine\n");
  rlimit unlimited{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &unlimited), 0);
  rlimit limited = unlimited;
  limited.rlim_cur = 50;
  auto* const old_handler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
  const std::string said = EXPORT_CELLS();
  ::setrlimit(RLIMIT_FSIZE, &unlimited);
  std::signal(SIGXFSZ, old_handler);
  EXPECT_EQ(said,
            opening + head + "\n" + start_1 + "\n" + is_this_ok + menu + cells + which_file +
                OPENED("out.dat", "     The file exists: this is added behind its 1 lines\n") +
                failed + "*****Nothing was written to out.dat: File too large\n" + menu);
  EXPECT_EQ(TEXT_OF("out.dat"), "mine\n");
}

TEST_F(EXPORT, A_FOLDER_THAT_CANNOT_BE_WRITTEN_TO_IS_TOLD) {
  ADD("first");
  EXPECT_EQ(SAID("y\n1\n/proc/out.dat\n\n\n", RUN_EXPORT),
            opening + head + "\n" + start_1 + "\n" + is_this_ok + menu + cells + which_file +
                "Error trying to open file Kompressa datafile\nNamed /proc/out.dat try again\n"
                "\n     Open Kompressa datafile (*.dat):" +
                menu);
}
