// A folder of its own for a test, which is the working directory, and processes of their own in
// which limits and rights may be changed. Tests nothing itself.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>       // for mknod
#include <sys/sysmacros.h>  // for makedev
#include <sys/wait.h>       // for waitpid
#include <unistd.h>         // for getpid, chown, seteuid, fork

#include <cstdio>  // for fflush
#include <filesystem>
#include <fstream>
#include <string>

namespace FOLDER_TESTS {

namespace fs = std::filesystem;

class OWN_FOLDER : public testing::Test {
 protected:
  void SetUp() override {
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    start = fs::current_path();
    folder = fs::canonical(fs::temp_directory_path()) /
             ("gemmara_" + std::to_string(::getpid()) + "_" + test.name());
    fs::remove_all(folder);
    for (const fs::path& path : {folder, folder / "local", folder / "home"})
      fs::create_directory(path);
    fs::current_path(folder);
  }

  void TearDown() override {
    fs::current_path(start);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
      if (entry.is_directory()) fs::permissions(entry, fs::perms::owner_all, fs::perm_options::add);
    fs::remove_all(folder);
  }

  // Runs the body in a process of its own, where it may change limits and rights. What it expects
  // is expected of the test.
  template <class BODY>
  static void IN_A_PROCESS(BODY body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      body();
      std::fflush(nullptr);
      ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == no_other_user)
      GTEST_SKIP() << "there is no user but the superuser here";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "see above; status " << status;
  }

  // Runs the body as a user whom the rights of files bind, which the superuser is not. The test's
  // folder is that user's then.
  template <class BODY>
  void AS_A_COMMON_USER(BODY body) const {
    IN_A_PROCESS([&] {
      if (::geteuid() == 0 && !BECOME_NOBODY()) ::_exit(no_other_user);
      body();
    });
  }

  bool BECOME_NOBODY() const {
    constexpr uid_t nobody = 65534;
    for (const fs::path& path : {folder, folder / "local", folder / "home"})
      if (::chown(path.c_str(), nobody, nobody) != 0) return false;
    return ::setegid(nobody) == 0 && ::seteuid(nobody) == 0;
  }

  // A device on which every write finds the disk full. The superuser has one of his own here, since
  // a fault of ours could cost him the system's. Blank where there is none.
  std::string FULL_DEVICE() const {
    if (::geteuid() != 0) return fs::exists("/dev/full") ? "/dev/full" : "";
    const std::string path = (folder / "full").string();
    if (::mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0) return "";
    return std::ofstream(path).is_open() ? path : "";
  }

  // A folder whose owner may not make files in it; it is his own again at the end of the test.
  static void LOCK_FOLDER(const fs::path& path) {
    fs::create_directory(path);
    fs::permissions(path, fs::perms(0500));
  }

  static void PUT_FILE(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }

  static std::string TEXT_OF(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static std::size_t FILES_IN(const fs::path& path) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(path), fs::directory_iterator()));
  }

  static constexpr int no_other_user = 77;  // status of a process that could not become another

  fs::path start;
  fs::path folder;
};

}  // namespace FOLDER_TESTS
