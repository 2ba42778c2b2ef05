// What the tests of the settings share: the settings file of the test, its entries, and system
// commands. Tests nothing itself.
#pragma once

#include <string>

#include "console_code/console/settings.h"
#include "tests/unit/console__dialogue.h"

namespace CONSOLE_TESTS {

class SETTINGS : public CONSOLE_TEST {
 protected:
  fs::path ini;

  void SetUp() override {
    CONSOLE_TEST::SetUp();
    ini = folder / "local/quorvansoftware/gemmara.ini";
  }

  void PUT_INI(const std::string& text) {
    fs::create_directories(ini.parent_path());
    PUT_FILE(ini, text);
  }

  static std::string PARAM(const std::string& key, int expected_ierr) {
    int ierr = -7;
    const std::string value = GET_PARAM(key, ierr);
    EXPECT_EQ(ierr, expected_ierr) << key;
    return value;
  }

  static std::string PADDED(std::string line) {
    line.resize(255, ' ');
    return line + "\n";
  }

  static std::string COMMANDED(const std::string& line) {
    return SAID("", [&] {
      bool err = true;
      SYSTEM_COMMAND(line, err);
      EXPECT_FALSE(err);
    });
  }
};

}  // namespace CONSOLE_TESTS
