// READ and EXPORT when there is no room in memory for the blocks.
#include "facetor6_commands__check_ptedit.h"
#include "refused_memory.h"
#include "src/facetor6_exportfiles/exportfiles.h"
#include "src/facetor6_readfiles/readfiles.h"

using namespace BLOCK_TESTS;
using REFUSED_MEMORY::refused;

namespace {

constexpr std::size_t block_size = sizeof(CRYSTAL_STRUCTURE_TYPE);

const std::string no_room =
    "\n*****WARNING: error allocating arrays in Allocate_crystal_structurelist called from ";
const std::string nothing_read =
    "\n*****WARNING:      No crystal structures were read from this file\n\n";

class MEMORY : public BLOCK_COMMANDS {
 protected:
  // What a command says when an allocation of so many bytes is refused.
  template <class COMMAND>
  static std::string REFUSED(std::size_t bytes, const std::string& answers, COMMAND command) {
    refused = bytes;
    const std::string said = SAID(answers, command);
    refused = 0;
    return said;
  }
};

}  // namespace

TEST_F(MEMORY, READ_WITHOUT_ROOM_FOR_THE_BLOCKS_OF_A_FILE_READS_NONE) {
  PUT_FILE("a.cif", "data_a\ndata_b\ndata_c\n");
  CONSOLE_TESTS::PEND("cif a");
  const std::string said = REFUSED(3 * block_size, "", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  EXPECT_TRUE(said.ends_with(no_room + "expand_phase_list\n\n" + nothing_read)) << said;
  PUT_FILE("a.out", "nothing\n");
  CONSOLE_TESTS::PEND("crystal a");
  const std::string out = REFUSED(block_size, "", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  EXPECT_TRUE(out.ends_with(no_room + "read_out_file\n\n" + nothing_read)) << out;
  EXPECT_EQ(NPHASES, 0);
}

// The list has room for 8 blocks and holds 7; of 3 new ones, 2 need more room.
TEST_F(MEMORY, READ_WITHOUT_ROOM_IN_THE_LIST_ADDS_NONE) {
  ASSERT_EQ(START_PHASES, 8);
  ADD_BLOCKS(7);
  PUT_FILE("a.cif", "data_a\ndata_b\ndata_c\n");
  CONSOLE_TESTS::PEND("cif a");
  // A list of 8 that grows doubles its room.
  const std::string said = REFUSED(16 * block_size, "\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  EXPECT_TRUE(said.ends_with(no_room +
                             "expand_phase_list\n\n"
                             "\n*****WARNING: Problem allocating arrays in add_phase_list, called "
                             "from read_phase_from_file\n\n"))
      << said;
  EXPECT_EQ(NPHASES, 7);
}

TEST_F(MEMORY, EXPORT_WITHOUT_ROOM_FOR_A_COPY_OF_THE_BLOCKS_ENDS) {
  ADD_BLOCKS(3);
  const std::string said = REFUSED(3 * block_size, "y\n", FACETOR_EXPORTFILES::RUN_EXPORT);
  EXPECT_TRUE(said.ends_with("Is this ok? (Y/N)?" + no_room + "run_export\n\n")) << said;
}
