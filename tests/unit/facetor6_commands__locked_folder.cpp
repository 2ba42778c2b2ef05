// WRITE, EXPORT and LOG into a folder that takes no file: the failure is told, another name is
// asked for, and nothing is lost.
#include "console_code/console/open_file.h"
#include "facetor6_commands__check_ptedit.h"
#include "src/facetor6_exportfiles/exportfiles.h"
#include "src/facetor6_writefiles/writefiles.h"

using namespace BLOCK_TESTS;
namespace fs = std::filesystem;

namespace {

class LOCKED : public BLOCK_COMMANDS {
 protected:
  void SetUp() override {
    BLOCK_COMMANDS::SetUp();
    ADD_BLOCKS(2);
  }

  // What stands between the name that is refused and the one that is taken.
  static std::string REFUSED_AND_OPENED(const std::string& kind, const std::string& ext) {
    return "Error trying to open file " + kind + "\nNamed locked/out." + ext +
           " try again\n\n     Open " + kind + " (*." + ext + "):\nSuccessfully opened " + kind +
           "\nNamed out." + ext + "\n\n";
  }
};

}  // namespace

TEST_F(LOCKED, WRITE_ASKS_FOR_ANOTHER_NAME) {
  AS_A_COMMON_USER([] {
    LOCK_FOLDER("locked");
    CONSOLE_TESTS::PEND("cif locked/out");
    const std::string said = SAID("out\ny\n", FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
    EXPECT_TRUE(HOLDS(said, REFUSED_AND_OPENED("cif file", "cif"))) << said;
    EXPECT_TRUE(said.ends_with("    2 structures written to file\n"));
    EXPECT_TRUE(fs::is_empty("locked"));
    EXPECT_TRUE(HOLDS(TEXT_OF("out.cif"), "data_test_block\n"));
  });
}

TEST_F(LOCKED, EXPORT_ASKS_FOR_ANOTHER_NAME) {
  AS_A_COMMON_USER([] {
    LOCK_FOLDER("locked");
    const std::string said = SAID("y\n1\nlocked/out\nout\n\n", FACETOR_EXPORTFILES::RUN_EXPORT);
    EXPECT_TRUE(HOLDS(said, REFUSED_AND_OPENED("Kompressa datafile", "dat"))) << said;
    EXPECT_TRUE(HOLDS(said, "     File header   and   2 data points written to the file\n"));
    EXPECT_TRUE(fs::is_empty("locked"));
    EXPECT_TRUE(HOLDS(TEXT_OF("out.dat"), "Format 1 T sigT P sigP"));
  });
}

TEST_F(LOCKED, READ_ONLY_FILES_ARE_NOT_ADDED_TO) {
  AS_A_COMMON_USER([] {
    for (const char* name : {"old.cif", "old.dat"}) {
      PUT_FILE(name, "content\n");
      fs::permissions(name, fs::perms(0400));
    }
    CONSOLE_TESTS::PEND("cif old");
    std::string said = SAID("\n\n", FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
    EXPECT_TRUE(HOLDS(said, "Error trying to open file cif file\nNamed old.cif try again\n"));
    said = SAID("y\n1\nold\n\n\n", FACETOR_EXPORTFILES::RUN_EXPORT);
    EXPECT_TRUE(
        HOLDS(said, "Error trying to open file Kompressa datafile\nNamed old.dat try again\n"));
    for (const char* name : {"old.cif", "old.dat"}) EXPECT_EQ(TEXT_OF(name), "content\n");
  });
}

TEST_F(LOCKED, LOG_ASKS_FOR_ANOTHER_NAME) {
  AS_A_COMMON_USER([] {
    LOCK_FOLDER("locked");
    CONSOLE_TESTS::PEND("locked/out");
    const std::string said = SAID("out\n", KVA_CONSOLE::OPEN_LOG_FILE);
    EXPECT_TRUE(HOLDS(said, REFUSED_AND_OPENED("Log file", "log"))) << said;
    EXPECT_TRUE(fs::is_empty("locked"));
    EXPECT_TRUE(HOLDS(TEXT_OF("out.log"), "Version date: "));
  });
}
