// The examples, calculated, against values worked out independently from the published coordinates
// (symmetry expansion, distances, convex hull of the ligands).
#include "phases.h"
#include "places.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/kva_crystal_structures/atom_search.h"

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

class PUBLISHED : public PHASE_TESTS::PHASES {
 protected:
  // Reads the example and calculates it up to dmax.
  void CALC(const std::string& file, const std::string& range) {
    START();
    CONSOLE_TESTS::PEND("cif " + PLACES::SOURCE() + "/examples/" + file);
    SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
    SAID(range + "\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
  }

  static int ATOM_NUMBER(const std::string& label) {
    return FIND_ALLATOMS_BY_NAME(REFERENCE(), label).at(0);
  }

  static float VOLUME(int block, const std::string& label) {
    return PHASE(block).POLYHEDRON(ATOM_NUMBER(label), POLY_VOLUME);
  }

  // Different bond lengths of the centre in ascending order.
  static std::vector<float> LENGTHS(int block, const std::string& label) {
    const int i = ATOM_NUMBER(label);
    std::vector<float> all;
    for (int j = 1; j <= PHASE(block).NBONDS(i); ++j)
      all.push_back(PHASE(block).BONDS(i, j, BOND_LENGTH));
    std::sort(all.begin(), all.end());
    std::vector<float> different;
    for (float length : all)
      if (different.empty() || length - different.back() > 0.0002f) different.push_back(length);
    return different;
  }

  static void EXPECT_LENGTHS(int block, const std::string& label,
                             const std::vector<float>& expected) {
    const std::vector<float> found = LENGTHS(block, label);
    ASSERT_EQ(found.size(), expected.size()) << label << " in block " << block;
    for (std::size_t k = 0; k < found.size(); ++k)
      EXPECT_NEAR(found[k], expected[k], 0.00011f) << label << " in block " << block;
  }
};

}  // namespace

// L. W. Finger and R. M. Hazen, Journal of Applied Physics 51 (1980) 5362-5367.
TEST_F(PUBLISHED, HEMATITE_UNDER_PRESSURE) {
  struct ROW {
    float NEAR;
    float FAR;
    float VOLUME;
  };
  const std::vector<ROW> rows{{1.9445f, 2.1129f, 10.732f}, {1.9380f, 2.1122f, 10.679f},
                              {1.9384f, 2.0996f, 10.579f}, {1.9389f, 2.0916f, 10.516f},
                              {1.9358f, 2.0948f, 10.510f}, {1.9186f, 2.1141f, 10.572f}};
  CALC("hematite-pressure/hematite.cif", "");
  ASSERT_EQ(NPHASES, 6);
  for (int block = 1; block <= 6; ++block) {
    const ROW& row = rows[static_cast<std::size_t>(block - 1)];
    EXPECT_EQ(PHASE(block).NBONDS(1), 6);
    EXPECT_LENGTHS(block, "Fe1", {row.NEAR, row.FAR});
    EXPECT_NEAR(VOLUME(block, "Fe1"), row.VOLUME, 0.00051f) << block;
  }
}

// L. A. V. Nagle-Cocco, C. L. Bull, C. J. Ridley and S. E. Dutton, Inorganic Chemistry 61 (2022)
// 4312-4321.
TEST_F(PUBLISHED, SODIUM_NICKELATE_UNDER_LOAD) {
  struct ROW {
    float NEAR;
    float FAR;
    float VOLUME;
  };
  const std::vector<ROW> rows{
      {1.9162f, 2.1459f, 10.332f}, {1.9149f, 2.1393f, 10.283f}, {1.9136f, 2.1344f, 10.252f},
      {1.9106f, 2.1325f, 10.207f}, {1.9126f, 2.1303f, 10.228f}, {1.9117f, 2.1256f, 10.194f},
      {1.9091f, 2.1290f, 10.187f}, {1.9085f, 2.1266f, 10.171f}, {1.9110f, 2.1219f, 10.183f},
      {1.9109f, 2.1231f, 10.195f}, {1.9108f, 2.1151f, 10.145f}};
  CALC("sodium-nickelate-pressure/nanio2.cif", "");
  ASSERT_EQ(NPHASES, 11);
  for (int block = 1; block <= 11; ++block) {
    const ROW& row = rows[static_cast<std::size_t>(block - 1)];
    EXPECT_LENGTHS(block, "Ni1", {row.NEAR, row.FAR});
    EXPECT_NEAR(VOLUME(block, "Ni1"), row.VOLUME, 0.0011f) << block;
  }
}

// P. Comodi, S. Nazzareni, P. F. Zanazzi and S. Speziale, American Mineralogist 93 (2008)
// 1530-1537: the abstract gives 1.66(9) and 24.7(1) at 3.9 GPa.
TEST_F(PUBLISHED, GYPSUM_UNDER_PRESSURE) {
  struct ROW {
    std::vector<float> SULFATE;
    float SULFATE_VOLUME;
    std::vector<float> CALCIUM;
    float CALCIUM_VOLUME;
  };
  const std::vector<ROW> rows{
      {{1.4739f, 1.4845f}, 1.657f, {2.3697f, 2.3925f, 2.5476f, 2.5496f}, 26.259f},
      {{1.4657f, 1.4900f}, 1.652f, {2.3589f, 2.4008f, 2.5273f, 2.5557f}, 26.145f},
      {{1.4474f, 1.5173f}, 1.668f, {2.3772f, 2.3890f, 2.5243f, 2.5641f}, 26.259f},
      {{1.4703f, 1.4729f}, 1.632f, {2.3509f, 2.4065f, 2.5295f, 2.5347f}, 26.037f},
      {{1.4635f, 1.4784f}, 1.632f, {2.3333f, 2.3691f, 2.5258f, 2.5351f}, 25.547f},
      {{1.4912f, 1.5028f}, 1.717f, {2.3122f, 2.3636f, 2.4825f, 2.5165f}, 24.970f},
      {{1.4500f, 1.5026f}, 1.648f, {2.3265f, 2.3376f, 2.4810f, 2.5002f}, 24.738f}};
  CALC("gypsum-pressure/gypsum.cif", "1.3 2.8");
  ASSERT_EQ(NPHASES, 7);
  for (int block = 1; block <= 7; ++block) {
    const ROW& row = rows[static_cast<std::size_t>(block - 1)];
    EXPECT_LENGTHS(block, "S", row.SULFATE);
    EXPECT_LENGTHS(block, "Ca", row.CALCIUM);
    EXPECT_NEAR(VOLUME(block, "S"), row.SULFATE_VOLUME, 0.0006f) << block;
    EXPECT_NEAR(VOLUME(block, "Ca"), row.CALCIUM_VOLUME, 0.0015f) << block;
  }
  EXPECT_EQ(PHASE(7).NBONDS(ATOM_NUMBER("Ca")), 8);
}
