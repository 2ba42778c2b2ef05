// CHECK when there is no room in memory for the blocks that it has read.
#include "facetor6_commands__check_ptedit.h"
#include "refused_memory.h"
#include "src/facetor6_readfiles/check.h"

using namespace BLOCK_TESTS;
using FACETOR_READFILES::RUN_CHECK_CIF;
using REFUSED_MEMORY::refused;

// The list has room for 8 blocks and holds 7; of 3 new ones, 2 need more room.
TEST_F(BLOCK_COMMANDS, CHECK_WITHOUT_ROOM_FOR_THE_BLOCKS_SAYS_SO_AND_ADDS_NONE) {
  ASSERT_EQ(START_PHASES, 8);
  ADD_BLOCKS(7);
  PUT_FILE("a.cif", "data_a\ndata_b\ndata_c\n");
  PUT_FILE("list.cif", "data_\n");
  CONSOLE_TESTS::PEND("a");
  refused = 16 * sizeof(CRYSTAL_STRUCTURE_TYPE);  // a list of 8 that grows doubles its room
  const std::string said = SAID("list\n\n", RUN_CHECK_CIF);
  refused = 0;
  EXPECT_TRUE(
      said.ends_with("\n*****WARNING: error allocating arrays in Allocate_crystal_structurelist "
                     "called from expand_phase_list\n\n"
                     "\n*****WARNING:\nProblem allocating arrays in add_phase_list, called from "
                     "run_check_cif\n\n"))
      << said;
  EXPECT_EQ(NPHASES, 7);
  EXPECT_EQ(NUMPHASES_USED(), 7);
}
