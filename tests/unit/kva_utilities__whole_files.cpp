// Files that are written whole: replaced at once or line by line, behind what they hold or over it,
// beside it or in place; and what is left when that fails.
#include "console_code/kva_utilities/whole_files.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>  // for setrlimit
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <thread>

#include "console_code/kva_utilities/system_files.h"
#include "own_folder.h"

using namespace KVA_UTILITIES;
namespace fs = std::filesystem;

namespace {

constexpr int unit = 41;

class WHOLE_FILES : public FOLDER_TESTS::OWN_FOLDER {
 protected:
  void TearDown() override {
    CLOSE_UNIT(unit);
    OWN_FOLDER::TearDown();
  }

  // From here on no file may hold more bytes: a disk on which there is room for a part alone.
  static void LIMIT_FILES(rlim_t bytes) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit room{bytes, bytes};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &room), 0);
  }

  static void WRITE_ROWS(int count) {
    for (int i = 0; i < count; ++i) WRITE_UNIT(unit, std::string(99, 'x'));
  }

  static KEPT KEEP(int wanted_error = 0) {
    int error = 0;
    const KEPT kept = KEEP_UNIT(unit, error);
    EXPECT_EQ(error, wanted_error);
    return kept;
  }
};

// ---- line by line ----

TEST_F(WHOLE_FILES, OLD_CONTENT_STANDS_UNTIL_THE_NEW_IS_KEPT) {
  PUT_FILE("old.txt", "one\n");
  ASSERT_EQ(OPEN_WHOLE(unit, "old.txt", UNIT_MODE::REPLACE), 0);
  EXPECT_TRUE(UNIT_WRITABLE(unit));
  EXPECT_TRUE(WRITE_UNIT(unit, "two"));
  EXPECT_TRUE(FLUSH_UNIT(unit));
  EXPECT_EQ(TEXT_OF("old.txt"), "one\n");
  EXPECT_EQ(KEEP(), KEPT::WHOLE);
  EXPECT_EQ(TEXT_OF("old.txt"), "two\n");
  ASSERT_EQ(OPEN_WHOLE(unit, "old.txt", UNIT_MODE::APPEND), 0);
  EXPECT_TRUE(WRITE_UNIT(unit, "three"));
  EXPECT_EQ(TEXT_OF("old.txt"), "two\n");
  EXPECT_EQ(KEEP(), KEPT::WHOLE);
  EXPECT_EQ(TEXT_OF("old.txt"), "two\nthree\n");
  EXPECT_EQ(FILES_IN("."), 3u) << "with the folders local and home";
  EXPECT_FALSE(WRITE_UNIT(unit, "four")) << "the unit is closed";
}

TEST_F(WHOLE_FILES, NEW_FILE_IS_NOT_THERE_BEFORE_IT_IS_KEPT) {
  ASSERT_EQ(OPEN_WHOLE(unit, "new.txt", UNIT_MODE::APPEND), 0);
  EXPECT_EQ(FILES_IN("."), 2u) << "nor is anything else";
  WRITE_UNIT(unit, "one");
  EXPECT_TRUE(FLUSH_UNIT(unit));
  EXPECT_FALSE(fs::exists("new.txt"));
  EXPECT_EQ(KEEP(), KEPT::WHOLE);
  EXPECT_EQ(TEXT_OF("new.txt"), "one\n");
  ASSERT_EQ(OPEN_WHOLE(unit, "empty.txt", UNIT_MODE::REPLACE), 0);
  EXPECT_EQ(KEEP(), KEPT::WHOLE);
  EXPECT_TRUE(fs::is_empty("empty.txt"));
}

TEST_F(WHOLE_FILES, CLOSING_DROPS_WHAT_WAS_WRITTEN) {
  PUT_FILE("old.txt", "one\n");
  for (const char* name : {"old.txt", "new.txt"})
    for (const UNIT_MODE mode : {UNIT_MODE::APPEND, UNIT_MODE::REPLACE}) {
      ASSERT_EQ(OPEN_WHOLE(unit, name, mode), 0);
      WRITE_ROWS(2000);  // more than are gathered
      EXPECT_EQ(FILES_IN("."), 4u);
      CLOSE_UNIT(unit);
      EXPECT_EQ(FILES_IN("."), 3u);
    }
  EXPECT_EQ(TEXT_OF("old.txt"), "one\n");
  EXPECT_EQ(KEEP(EBADF), KEPT::AS_IT_WAS);
}

// The copy of the old content counts as well.
TEST_F(WHOLE_FILES, A_FULL_DISK_LEAVES_WHAT_WAS_THERE) {
  IN_A_PROCESS([] {
    PUT_FILE("old.txt", std::string(80, 'o') + "\n");
    LIMIT_FILES(100);
    for (const char* name : {"old.txt", "new.txt"})
      for (const UNIT_MODE mode : {UNIT_MODE::APPEND, UNIT_MODE::REPLACE}) {
        ASSERT_EQ(OPEN_WHOLE(unit, name, mode), 0);
        WRITE_ROWS(2);
        EXPECT_FALSE(FLUSH_UNIT(unit));
        EXPECT_FALSE(WRITE_UNIT(unit, "more"));
        EXPECT_EQ(KEEP(EFBIG), KEPT::AS_IT_WAS);
      }
    EXPECT_EQ(TEXT_OF("old.txt"), std::string(80, 'o') + "\n");
    EXPECT_EQ(FILES_IN("."), 3u);
  });
}

// A log has no other file beside it: the part of a line for which there was room goes again.
TEST_F(WHOLE_FILES, A_LINE_THAT_DOES_NOT_FIT_LEAVES_NO_PART_OF_ITSELF) {
  IN_A_PROCESS([] {
    LIMIT_FILES(150);
    ASSERT_EQ(OPEN_UNIT(unit, "run.log", UNIT_MODE::REPLACE), 0);
    EXPECT_TRUE(WRITE_UNIT(unit, std::string(99, 'x')));
    EXPECT_FALSE(WRITE_UNIT(unit, std::string(99, 'y')));
    EXPECT_EQ(TEXT_OF("run.log"), std::string(99, 'x') + "\n");
    EXPECT_TRUE(WRITE_UNIT(unit, "short"));
    EXPECT_EQ(TEXT_OF("run.log"), std::string(99, 'x') + "\nshort\n");
  });
}

TEST_F(WHOLE_FILES, NAMES_THAT_CANNOT_BE_WRITTEN_ARE_REFUSED_AT_ONCE) {
  fs::create_directory("folder");
  EXPECT_EQ(OPEN_WHOLE(unit, "folder", UNIT_MODE::REPLACE), EISDIR);
  EXPECT_EQ(OPEN_WHOLE(unit, "none/new.txt", UNIT_MODE::REPLACE), ENOENT);
  EXPECT_FALSE(UNIT_WRITABLE(unit));
  PUT_FILE("old.txt", "one\n");
  ASSERT_EQ(OPEN_UNIT(unit + 1, "old.txt", UNIT_MODE::APPEND), 0);
  EXPECT_EQ(OPEN_WHOLE(unit, "old.txt", UNIT_MODE::REPLACE), EBUSY);
  CLOSE_UNIT(unit + 1);
  AS_A_COMMON_USER([] {
    PUT_FILE("read_only.txt", "one\n");
    fs::permissions("read_only.txt", fs::perms(0400));
    EXPECT_EQ(OPEN_WHOLE(unit, "read_only.txt", UNIT_MODE::REPLACE), EACCES);
    LOCK_FOLDER("locked");
    EXPECT_EQ(OPEN_WHOLE(unit, "locked/new.txt", UNIT_MODE::REPLACE), EACCES);
  });
  EXPECT_EQ(TEXT_OF("old.txt"), "one\n");
}

// The name of the temporary file is longer than that of the file.
TEST_F(WHOLE_FILES, THE_LONGEST_NAME_CAN_BE_WRITTEN) {
  const std::string name(255, 'n');
  EXPECT_TRUE(REPLACE_FILE(name, "x"));
  EXPECT_EQ(TEXT_OF(name), "x");
}

TEST_F(WHOLE_FILES, A_LINK_TO_NO_FILE_MAKES_THE_FILE) {
  fs::create_directory("there");
  fs::create_symlink("there/further", "link");
  fs::create_symlink("file", "there/further");
  EXPECT_TRUE(REPLACE_FILE("link", "x"));
  EXPECT_TRUE(fs::is_symlink("link"));
  EXPECT_TRUE(fs::is_symlink("there/further"));
  EXPECT_EQ(TEXT_OF("there/file"), "x");
}

// ---- in place ----

// Another name of the same file must show the new content, too.
TEST_F(WHOLE_FILES, A_FILE_WITH_TWO_NAMES_IS_WRITTEN_IN_PLACE_AND_BROUGHT_BACK) {
  PUT_FILE("old.txt", "old content\n");
  fs::create_hard_link("old.txt", "other.txt");
  EXPECT_TRUE(REPLACE_FILE("old.txt", "new\n"));
  EXPECT_EQ(TEXT_OF("other.txt"), "new\n");
  ASSERT_EQ(OPEN_WHOLE(unit, "old.txt", UNIT_MODE::APPEND), 0);
  WRITE_UNIT(unit, "more");
  EXPECT_EQ(KEEP(), KEPT::WHOLE);
  EXPECT_EQ(TEXT_OF("other.txt"), "new\nmore\n");
  IN_A_PROCESS([] {
    LIMIT_FILES(150);
    for (const UNIT_MODE mode : {UNIT_MODE::APPEND, UNIT_MODE::REPLACE}) {
      ASSERT_EQ(OPEN_WHOLE(unit, "old.txt", mode), 0);
      WRITE_ROWS(2);
      EXPECT_EQ(KEEP(EFBIG), KEPT::AS_IT_WAS);
      EXPECT_EQ(TEXT_OF("other.txt"), "new\nmore\n");
      ASSERT_EQ(OPEN_WHOLE(unit, "old.txt", mode), 0);
      WRITE_ROWS(1);
      EXPECT_TRUE(FLUSH_UNIT(unit));
      EXPECT_EQ(TEXT_OF("other.txt"), "new\nmore\n") << "before it is kept nothing goes out";
      CLOSE_UNIT(unit);
      EXPECT_EQ(TEXT_OF("other.txt"), "new\nmore\n");
    }
  });
}

TEST_F(WHOLE_FILES, A_FILE_IN_A_LOCKED_FOLDER_IS_WRITTEN_IN_PLACE) {
  AS_A_COMMON_USER([] {
    fs::create_directory("set");
    PUT_FILE("set/old.txt", "old\n");
    LOCK_FOLDER("set");
    ASSERT_EQ(OPEN_WHOLE(unit, "set/old.txt", UNIT_MODE::APPEND), 0);
    WRITE_UNIT(unit, "new");
    EXPECT_EQ(KEEP(), KEPT::WHOLE);
    EXPECT_EQ(TEXT_OF("set/old.txt"), "old\nnew\n");
    LIMIT_FILES(100);
    ASSERT_EQ(OPEN_WHOLE(unit, "set/old.txt", UNIT_MODE::REPLACE), 0);
    WRITE_ROWS(2);
    EXPECT_EQ(KEEP(EFBIG), KEPT::AS_IT_WAS);
    EXPECT_EQ(TEXT_OF("set/old.txt"), "old\nnew\n");
  });
}

// What stands behind the name of our own output is the file that the shell has opened.
TEST_F(WHOLE_FILES, A_FILE_THAT_IS_OPEN_HERE_STAYS_THE_SAME_FILE) {
  PUT_FILE("out.txt", "");
  std::FILE* const held = std::fopen("out.txt", "a");
  struct stat before {};
  struct stat after {};
  ASSERT_EQ(::stat("out.txt", &before), 0);
  EXPECT_TRUE(REPLACE_FILE("out.txt", "x"));
  ASSERT_EQ(::stat("out.txt", &after), 0);
  std::fclose(held);
  EXPECT_EQ(before.st_ino, after.st_ino);
  EXPECT_EQ(TEXT_OF("out.txt"), "x");
}

TEST_F(WHOLE_FILES, A_FULL_DEVICE_TAKES_NOTHING) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  ASSERT_EQ(OPEN_WHOLE(unit, "/dev/full", UNIT_MODE::APPEND), 0);
  WRITE_UNIT(unit, "x");
  EXPECT_FALSE(FLUSH_UNIT(unit));
  EXPECT_EQ(KEEP(ENOSPC), KEPT::AS_IT_WAS);
  ASSERT_EQ(OPEN_WHOLE(unit, "/dev/null", UNIT_MODE::REPLACE), 0);
  WRITE_UNIT(unit, "x");
  EXPECT_EQ(KEEP(), KEPT::WHOLE);
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

// Another user's file that we may write keeps its owner; where it cannot be given to him, it is
// written in place.
TEST_F(WHOLE_FILES, A_FILE_KEEPS_ITS_OWNER) {
  if (::geteuid() != 0) GTEST_SKIP() << "only the superuser gives files away";
  PUT_FILE("theirs.txt", "old\n");
  ASSERT_EQ(::chown("theirs.txt", 65534, 65534), 0);
  EXPECT_TRUE(REPLACE_FILE("theirs.txt", "new\n"));
  struct stat status {};
  ASSERT_EQ(::stat("theirs.txt", &status), 0);
  EXPECT_EQ(status.st_uid, 65534u);
  PUT_FILE("ours.txt", "old\n");
  fs::permissions("ours.txt", fs::perms(0666));
  AS_A_COMMON_USER([] { EXPECT_TRUE(REPLACE_FILE("ours.txt", "new\n")); });
  ASSERT_EQ(::stat("ours.txt", &status), 0);
  EXPECT_EQ(status.st_uid, 0u);
  EXPECT_EQ(TEXT_OF("ours.txt"), "new\n");
}

// ---- a signal ----

TEST_F(WHOLE_FILES, A_SIGNAL_LEAVES_NO_TEMPORARY_FILE) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
    PUT_FILE("old.txt", "one\n");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      REMOVE_TEMPORARIES_AT_SIGNALS();
      OPEN_WHOLE(unit, "old.txt", UNIT_MODE::APPEND);
      WRITE_ROWS(2000);
      const bool written = FILES_IN(".") == 4;
      if (written) ::raise(signal);
      ::_exit(1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
    EXPECT_EQ(TEXT_OF("old.txt"), "one\n");
    EXPECT_EQ(FILES_IN("."), 3u);
  }
}

TEST_F(WHOLE_FILES, A_LIMIT_OF_SIZE_IS_A_FAILURE_AND_NOT_THE_END) {
  IN_A_PROCESS([] {
    ::signal(SIGXFSZ, SIG_DFL);
    REMOVE_TEMPORARIES_AT_SIGNALS();
    const rlimit room{10, 10};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &room), 0);
    EXPECT_FALSE(REPLACE_FILE("new.txt", "more than ten bytes"));
    EXPECT_EQ(FILES_IN("."), 2u);
  });
}

// ---- replacing a file at once ----

TEST_F(WHOLE_FILES, REPLACED_FILE_HOLDS_THE_NEW_CONTENT_AND_NOTHING_IS_LEFT_BESIDE_IT) {
  fs::create_directory("set");
  EXPECT_TRUE(REPLACE_FILE("set/file.ini", "first line\n"));
  EXPECT_EQ(TEXT_OF("set/file.ini"), "first line\n");
  EXPECT_TRUE(REPLACE_FILE("set/file.ini", "2\n"));
  EXPECT_EQ(TEXT_OF("set/file.ini"), "2\n");
  EXPECT_EQ(FILES_IN("set"), 1u);
}

TEST_F(WHOLE_FILES, REPLACED_FILE_KEEPS_ITS_RIGHTS_AND_A_NEW_ONE_FOLLOWS_THE_MASK) {
  PUT_FILE("old.ini", "x");
  fs::permissions("old.ini", fs::perms(0640));
  EXPECT_TRUE(REPLACE_FILE("old.ini", "y"));
  EXPECT_EQ(fs::status("old.ini").permissions(), fs::perms(0640));
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(REPLACE_FILE("new.ini", "y"));
  ::umask(mask);
  EXPECT_EQ(fs::status("new.ini").permissions(), fs::perms(0640));
}

TEST_F(WHOLE_FILES, LINK_STAYS_A_LINK) {
  PUT_FILE("real.ini", "x");
  fs::create_symlink("real.ini", "link.ini");
  EXPECT_TRUE(REPLACE_FILE("link.ini", "y"));
  EXPECT_TRUE(fs::is_symlink("link.ini"));
  EXPECT_EQ(TEXT_OF("real.ini"), "y");
}

TEST_F(WHOLE_FILES, NO_FOLDER_MEANS_NOTHING_CHANGED) {
  EXPECT_FALSE(REPLACE_FILE("none/file.ini", "x"));
  EXPECT_FALSE(fs::exists("none"));
}

TEST_F(WHOLE_FILES, FOLDER_IN_PLACE_OF_THE_FILE_STAYS) {
  fs::create_directory("file.ini");
  PUT_FILE("file.ini/inside", "x");
  EXPECT_FALSE(REPLACE_FILE("file.ini", "x"));
  EXPECT_TRUE(fs::exists("file.ini/inside"));
}

TEST_F(WHOLE_FILES, FILE_IN_A_READ_ONLY_FOLDER_IS_OVERWRITTEN_IN_PLACE) {
  AS_A_COMMON_USER([] {
    fs::create_directory("set");
    PUT_FILE("set/file.ini", "longer content");
    LOCK_FOLDER("set");
    EXPECT_TRUE(REPLACE_FILE("set/file.ini", "short"));
    EXPECT_EQ(TEXT_OF("set/file.ini"), "short");
  });
}

TEST_F(WHOLE_FILES, READ_ONLY_FILE_IN_A_READ_ONLY_FOLDER_STAYS) {
  AS_A_COMMON_USER([] {
    fs::create_directory("set");
    PUT_FILE("set/file.ini", "old");
    fs::permissions("set/file.ini", fs::perms(0400));
    LOCK_FOLDER("set");
    EXPECT_FALSE(REPLACE_FILE("set/file.ini", "new"));
    EXPECT_EQ(TEXT_OF("set/file.ini"), "old");
  });
}

// A limit on the size of files stands for a disk on which only a part of the content has room.
TEST_F(WHOLE_FILES, FULL_DISK_KEEPS_THE_OLD_CONTENT_AND_LEAVES_NOTHING_BESIDE_IT) {
  IN_A_PROCESS([] {
    fs::create_directory("set");
    PUT_FILE("set/file.ini", "old");
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit room{100, 100};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &room), 0);
    EXPECT_FALSE(REPLACE_FILE("set/file.ini", std::string(1000, 'x')));
    EXPECT_EQ(TEXT_OF("set/file.ini"), "old");
    EXPECT_EQ(FILES_IN("set"), 1u);
  });
}

TEST_F(WHOLE_FILES, DEVICE_STAYS_A_DEVICE) {
  const std::string device = FULL_DEVICE();
  if (device.empty()) GTEST_SKIP() << "no full device";
  fs::create_symlink(device, "full.ini");
  EXPECT_FALSE(REPLACE_FILE("full.ini", "x")) << "nothing can be written to it";
  EXPECT_TRUE(fs::is_symlink("full.ini"));
  EXPECT_TRUE(fs::is_character_file(device));
}

// Half an hour ago a program was killed while it saved; another one is at it now.
TEST_F(WHOLE_FILES, WHAT_A_KILLED_PROGRAM_LEFT_BEHIND_GOES) {
  fs::create_directory("set");
  for (const char* name : {"old.ini", "old.ini.saving-abcdef", "old.ini.saving-ghijkl",
                           "old.ini.backup", "new.ini.saving-mnopqr"}) {
    PUT_FILE(fs::path("set") / name, "x");
    fs::last_write_time(fs::path("set") / name,
                        fs::file_time_type::clock::now() - std::chrono::minutes(30));
  }
  const auto now = fs::file_time_type::clock::now();
  fs::last_write_time("set/old.ini.saving-ghijkl", now);
  PUT_FILE("set/old.ini.saving-stuvwx", "x");
  fs::last_write_time("set/old.ini.saving-stuvwx", now - std::chrono::seconds(90));
  EXPECT_TRUE(REPLACE_FILE("set/old.ini", "y"));
  EXPECT_FALSE(fs::exists("set/old.ini.saving-abcdef"));
  EXPECT_FALSE(fs::exists("set/old.ini.saving-stuvwx")) << "older than a minute";
  EXPECT_TRUE(fs::exists("set/old.ini.saving-ghijkl")) << "it may be in use";
  EXPECT_TRUE(fs::exists("set/old.ini.backup")) << "it is the user's";
  EXPECT_TRUE(fs::exists("set/new.ini.saving-mnopqr")) << "it belongs to another file";
}

// Whoever reads meanwhile finds one content or the other, whole.
TEST_F(WHOLE_FILES, TWO_WRITERS_NEVER_MIX) {
  const std::string a(5000, 'a');
  const std::string b(5000, 'b');
  ASSERT_TRUE(REPLACE_FILE("file.ini", a));
  const auto write = [](const std::string& text) {
    for (int i = 0; i < 50; ++i) REPLACE_FILE("file.ini", text);
  };
  std::thread first(write, a);
  std::thread second(write, b);
  for (int i = 0; i < 200; ++i) {
    const std::string found = TEXT_OF("file.ini");
    EXPECT_TRUE(found == a || found == b);
  }
  first.join();
  second.join();
}

}  // namespace

// ---- pipes ----

// A pipe that does not wait holds some 64 kilobytes until its reader takes them.
TEST(PIPES, THAT_ARE_FULL_FOR_A_WHILE_TAKE_ALL) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  ASSERT_EQ(::fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
  const std::string text(300000, 'x');
  std::string taken;
  std::thread reader([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::array<char, 4096> part{};
    for (ssize_t count = 1; count > 0;) {
      count = ::read(ends[0], part.data(), part.size());
      if (count > 0) taken.append(part.data(), static_cast<std::size_t>(count));
    }
  });
  std::FILE* const stream = ::fdopen(ends[1], "w");
  int error = -1;
  EXPECT_EQ(WRITE_BYTES(stream, text, error), text.size());
  EXPECT_EQ(error, 0);
  std::fclose(stream);
  reader.join();
  ::close(ends[0]);
  EXPECT_EQ(taken, text);
}
