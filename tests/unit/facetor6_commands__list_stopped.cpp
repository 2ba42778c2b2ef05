// The interrupt key while lists of many atoms are printed.
#include <algorithm>  // for count
#include <csignal>

#include "console_code/console/tables.h"
#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

// The key is pressed at every line that is written.
struct INTERRUPTING : std::stringbuf {
  int sync() override {
    std::raise(SIGINT);
    return 0;
  }
};

class STOPPED_LIST : public BLOCKS {
 protected:
  void SetUp() override {
    BLOCKS::SetUp();
    ADD("first");
    // Outside of a list the key does nothing here.
    usual = std::signal(SIGINT, SIG_IGN);
  }
  void TearDown() override {
    std::signal(SIGINT, usual);
    BLOCKS::TearDown();
  }

  template <class COMMAND>
  static std::string SAID_AND_STOPPED(COMMAND command) {
    INTERRUPTING output;
    std::streambuf* const old_output = std::cout.rdbuf(&output);
    command();
    std::cout.rdbuf(old_output);
    return output.str();
  }

  void (*usual)(int) = SIG_DFL;
};

const std::string stopped = "\n*****The list was stopped\n";

}  // namespace

TEST_F(STOPPED_LIST, THE_TABLE_OF_ONE_ATOM_IS_FINISHED_AND_NO_OTHER_BEGUN) {
  EXPECT_EQ(SAID_AND_STOPPED([] { FACETOR_LIST_ALL_XYZ(); }),
            SAID("", [] { FACETOR_LIST_XYZ(1); }) + stopped);
  EXPECT_EQ(SAID_AND_STOPPED([] { FACETOR_LIST_ALL_ADPS("U"); }),
            SAID("", [] { FACETOR_LIST_ADPS(1, "U"); }) + stopped);
  BOND(1, {1.5f, 1.6f});
  BOND(1, {1.5f}, 0.003f, 2);
  EXPECT_EQ(SAID_AND_STOPPED([] { FACETOR_LIST_ALL_BONDS(); }),
            SAID("", [] { FACETOR_LIST_BONDS(1); }) + stopped);
}

// So many blocks are listed in parts, and all tables of four sites are made before they are
// printed.
TEST_F(STOPPED_LIST, A_LIST_OF_MANY_BLOCKS_IS_STOPPED_BETWEEN_TABLES) {
  for (int block = 2; block <= 300; ++block) ADD("block");
  for (int centre = 1; centre <= 2; ++centre) BOND(1, {1.5f, 1.6f}, 0.003f, centre);
  const std::string first = SAID("", [] { FACETOR_LIST_BONDS(1); });
  EXPECT_EQ(SAID_AND_STOPPED([] { FACETOR_LIST_ALL_BONDS(); }), first + stopped);
}

// A table that is long work of its own.
TEST_F(STOPPED_LIST, A_TABLE_OF_LONG_WORK_IS_STOPPED_IN_ITS_ROWS) {
  constexpr int rows = 2500;
  std::vector<KVA_UTILITIES::FIELD_LINE> table;
  for (int k = 1; k <= rows; ++k) table.push_back({{0, 1, std::to_string(k)}});
  const auto written = [&](KVA_CONSOLE::WORK* work) {
    bool all = true;
    const std::string text = SAID("", [&] { all = KVA_CONSOLE::WRITE_TABLE(table, 1, work); });
    EXPECT_EQ(all, work == nullptr || !work->STOPPED);
    return std::count(text.begin(), text.end(), '\n');
  };
  KVA_CONSOLE::WORK work("", 1);
  EXPECT_EQ(written(&work), rows);
  std::raise(SIGINT);
  EXPECT_EQ(written(nullptr), rows) << "no work to stop";
  EXPECT_EQ(written(&work), 0);
}

TEST_F(STOPPED_LIST, THE_KEY_IS_OURS_AGAIN_BEHIND_THE_LIST) {
  SAID("", [] { FACETOR_LIST_ALL_XYZ(); });
  EXPECT_EQ(std::signal(SIGINT, SIG_IGN), SIG_IGN);
}
