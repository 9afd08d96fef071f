#pragma once

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

/// The first fault of the markup in an XML text; empty when elements nest and texts are escaped.
inline std::string xmlFault(const std::string& xml) {
  const std::string entities = " lt gt amp quot apos #9 #10 #13 ";
  std::vector<std::string> open;
  for (std::size_t at = 0; (at = xml.find_first_of("<&", at)) != std::string::npos; ++at) {
    const bool is_tag = xml[at] == '<';
    const std::string token = xml.substr(at + 1, xml.find(is_tag ? '>' : ';', at) - at - 1);
    if (is_tag && !open.empty() && token == "/" + open.back()) {
      open.pop_back();
    } else if (is_tag ? token[0] == '/' : entities.find(" " + token + " ") == std::string::npos) {
      return token;
    } else if (is_tag && token[0] != '?') {
      open.push_back(token.substr(0, token.find(' ')));
    }
  }
  return open.empty() ? "" : open.back();
}

/// Requires that a report is well-formed: by xmlFault(), and by xmllint where it is installed.
inline void expectWellFormed(const std::string& file, const std::string& xml) {
  EXPECT_EQ(xmlFault(xml), "") << xml;
  if (std::system("command -v xmllint >/dev/null") == 0) {
    EXPECT_EQ(std::system(("xmllint --noout '" + file + "'").c_str()), 0) << xml;
  }
}
