#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "spx/support/console.h"
#include "spx/support/julian_date.h"

/// Base of all fixtures: HOME is a fresh temporary directory, what goes to the standard streams is
/// kept for takeOutput() and takeErrors(), pauses are counted, and the process-wide switches start
/// from their defaults. After the test everything is restored and the directory removed.
class TemporaryHome : public testing::Test {
 protected:
  TemporaryHome() {
    char name[] = "/tmp/spx-test-XXXXXX";
    home = mkdtemp(name);
    if (const char* old_home = std::getenv("HOME")) {
      old_home_ = old_home;
    }
    setenv("HOME", home.c_str(), 1);
    resetSwitches();
    qs_lib::setPauseHandler([this] { ++pauses; });
  }

  ~TemporaryHome() override {
    resetSwitches();
    std::cout.rdbuf(old_output_);
    std::cerr.rdbuf(old_errors_);
    std::filesystem::current_path(old_directory_);
    old_home_ ? setenv("HOME", old_home_->c_str(), 1) : unsetenv("HOME");
    std::error_code ignored;
    std::filesystem::remove_all(home, ignored);
  }

  /// What was written to standard output since the last call.
  std::string takeOutput() { return std::exchange(output_, std::ostringstream()).str(); }
  std::string takeErrors() { return std::exchange(errors_, std::ostringstream()).str(); }

  /// A path in the home directory.
  std::string at(const std::string& name) const { return home + "/" + name; }

  static std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static void writeContent(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
  }

  std::string home;
  int pauses = 0;

 private:
  static void resetSwitches() {
    qs_lib::setVerbose(false);
    qs_lib::setUseTime(false);
    qs_lib::setDateTimeFormat({});
    qs_lib::setDisplayHandler({});
    qs_lib::setPauseHandler({});
  }

  std::filesystem::path old_directory_ = std::filesystem::current_path();
  std::optional<std::string> old_home_;
  std::ostringstream output_;
  std::ostringstream errors_;
  std::streambuf* old_output_ = std::cout.rdbuf(output_.rdbuf());
  std::streambuf* old_errors_ = std::cerr.rdbuf(errors_.rdbuf());
};
