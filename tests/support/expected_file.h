#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include <gtest/gtest.h>

/// The text with what differs from run to run replaced: today's date, times of day and time used.
inline std::string masked(std::string text, const std::string& today) {
  text = std::regex_replace(text, std::regex(today), "TODAY");
  text = std::regex_replace(text, std::regex("TODAYT\\d\\d:\\d\\d:\\d\\d"), "TODAYTNOW");
  return std::regex_replace(text, std::regex("(\"Time used\">)\\d+\\.\\d{4}<"), "$1SECONDS<");
}

/// Compares a whole text with a file below tests/. With SPX_REWRITE_EXPECTED=1 in the environment
/// the file is written instead: read the difference before it is committed.
inline void expectFile(const std::string& text, const std::string& name) {
  const std::string path = SPX_SOURCE_DIR "/tests/" + name;
  if (std::getenv("SPX_REWRITE_EXPECTED") != nullptr) {
    std::ofstream(path, std::ios::binary) << text;
    GTEST_SKIP() << "rewritten: " << path;
  }
  std::ifstream file(path, std::ios::binary);
  EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(file), {})) << path;
}
