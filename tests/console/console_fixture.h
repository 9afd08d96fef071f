#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "spx/project/biology.h"

#include "console/commands/command_line.h"
#include "console/studbook/load_studbook.h"
#include "tests/support/temporary_home.h"

namespace spx::console {

/// Tables live in the temporary home; commands run in this process.
class ConsoleTest : public TemporaryHome {
 protected:
  ~ConsoleTest() override {
    dropStudbook();
    LifeHistory.initialize();
  }

  /// Writes a table into the home directory. @return its path
  std::string table(const std::string& name, const std::string& content) {
    writeContent(at(name), content);
    return at(name);
  }

  /// Runs the program with these words. @return its exit code
  static int run(const std::vector<std::string>& words) {
    std::vector<const char*> arguments = {"spx"};
    for (const std::string& word : words) {
      arguments.push_back(word.c_str());
    }
    return runCommandLine(static_cast<int>(arguments.size()), arguments.data());
  }
};

}  // namespace spx::console
