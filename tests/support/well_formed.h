#pragma once

#include <cstdlib>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

/// The first fault of an XML text in the forms that reports use; empty when there is none.
inline std::string xmlFault(const std::string& xml) {
  static const std::set<std::string> ENTITIES = {"lt",   "gt", "amp", "quot",
                                                 "apos", "#9", "#10", "#13"};
  std::vector<std::string> open;
  std::size_t at = 0;
  while ((at = xml.find_first_of("<&", at)) != std::string::npos) {
    const bool is_tag = xml[at] == '<';
    const std::size_t end = xml.find(is_tag ? '>' : ';', at);
    const std::string token = xml.substr(at + 1, end - at - 1);
    const bool is_end = is_tag && token[0] == '/';
    if (end == std::string::npos || token.find('<') != std::string::npos ||
        (!is_tag && ENTITIES.count(token) == 0) ||
        (is_end && (open.empty() || "/" + open.back() != token))) {
      return token;
    }
    if (is_end) {
      open.pop_back();
    } else if (is_tag && token[0] != '?') {
      open.push_back(token.substr(0, token.find(' ')));
    }
    at = end + 1;
  }
  return open.empty() ? "" : open.back() + " is not closed";
}

/// Reads a report as others do: with xmllint too, where it is installed.
inline void expectWellFormed(const std::string& xml, const std::string& scratch_file) {
  EXPECT_EQ(xmlFault(xml), "") << xml;
  std::ofstream(scratch_file, std::ios::binary) << xml;
  if (std::system("command -v xmllint >/dev/null") == 0) {
    EXPECT_EQ(std::system(("xmllint --noout '" + scratch_file + "'").c_str()), 0) << xml;
  }
}
