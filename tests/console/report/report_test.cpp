#include <cstdio>
#include <cstdlib>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

const std::string ZOOS = SPX_SOURCE_DIR "/examples/zoos";

/// What stands between two texts, each time that they follow each other.
std::vector<std::string> between(const std::string& text, const std::string& begin, const std::string& end) {
  std::vector<std::string> found;
  for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at)) {
    at += begin.size();
    found.push_back(text.substr(at, text.find(end, at) - at));
  }
  return found;
}

class Report : public ConsoleTest {
 protected:
  std::string report(std::vector<std::string> words) {
    words.insert(words.end(), {"-o", at("report.html"), "--overwrite", "--gene-drops", "20"});
    EXPECT_EQ(run(words), 0) << takeErrors();
    return contentOf(at("report.html"));
  }

  nlohmann::json answer(std::vector<std::string> words) {
    takeOutput();
    words.insert(words.begin(), {"--studbook", ZOOS});
    words.insert(words.end(), {"--format", "json"});
    EXPECT_EQ(run(words), 0) << takeErrors();
    return nlohmann::json::parse(takeOutput());
  }

  void expectSound(const std::string& page) {
    EXPECT_EQ(std::system(("xmllint --noout '" + at("report.html") + "'").c_str()), 0);
    const std::vector<std::string> names = between(page, " id=\"", "\"");
    const std::set<std::string> known(names.begin(), names.end());
    EXPECT_EQ(names.size(), known.size()) << "every name is its own";
    for (const std::string& target : between(page, "href=\"#", "\"")) {
      EXPECT_TRUE(known.contains(target)) << "a link to nothing: " << target;
    }
    for (const char* outside : {"<script", "href=\"http", " src=\"http", "@import"}) {
      EXPECT_EQ(page.find(outside), std::string::npos) << outside;
    }
  }
};

std::string shown(double value, int decimals) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

TEST_F(Report, ShowsWhatTheCommandsAnswer) {
  const std::string page = report({"--studbook", ZOOS, "report", "--until", "2015-12-31", "--on", "2015-12-31"});
  expectSound(page);
  const nlohmann::json genetics = answer({"genetics", "--on", "2015-12-31"});
  EXPECT_NE(page.find(shown(genetics["gene_diversity"], 4)), std::string::npos);
  EXPECT_NE(page.find(shown(genetics["mean_f"], 4)), std::string::npos);
  const nlohmann::json ranking = answer({"mean-kinship", "--on", "2015-12-31"});
  EXPECT_NE(page.find("<li>" + std::to_string(ranking.size()) + " animals of the view"), std::string::npos);
  EXPECT_EQ(between(page, "<div class=\"card\" id=\"", "\"").size(), ranking.size()) << "a card for each living animal";
  EXPECT_NE(page.find(shown(ranking.front()["mk"], 4)), std::string::npos);
  EXPECT_GE(between(page, "<svg ", ">").size(), 8U);
}

TEST_F(Report, TextsOfTheStudbookAreInert) {
  const std::string animals = table("animals.csv",
                                    "id,sire,dam,sex,birth_date,birth_location\n"
                                    "\"<script>alert(1)</script>&\"\"'\xE2\x80\xAE\",,,M,2000-01-01,\"<b>Zoo\"\n"
                                    "2,,,F,2001-01-01,\"<b>Zoo\"\n");
  const std::string page = report({"--studbook", animals, "report", "--title", "<script>\xE2\x80\xAE&amp;"});
  expectSound(page);
  EXPECT_EQ(page.find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_NE(page.find("&lt;b&gt;Zoo"), std::string::npos);
}

TEST_F(Report, TakesTheSectionsThatAreAskedFor) {
  const std::string page = report({"--studbook", ZOOS, "report", "--sections", "census,mean-kinship"});
  expectSound(page);
  EXPECT_EQ(between(page, "<section id=\"", "\""),
            (std::vector<std::string>{"summary", "census", "mean-kinship", "assumptions"}));
  EXPECT_EQ(run({"--studbook", ZOOS, "report", "--sections", "censis"}), 2);
  EXPECT_NE(takeErrors().find("did you mean \"census\""), std::string::npos);
  EXPECT_EQ(run({"--studbook", ZOOS, "report", "--logo", ZOOS + "/animals.csv"}), 1);
}

TEST_F(Report, ADrawingHasTheFormatOfItsFile) {
  const std::pair<const char*, const char*> files[] = {{"n.png", "\x89PNG"}, {"n.pdf", "%PDF"}, {"n.svg", "<svg"}};
  for (const auto& [name, beginning] : files) {
    ASSERT_EQ(run({"--studbook", ZOOS, "draw", "census", "-o", at(name)}), 0) << takeErrors();
    EXPECT_TRUE(contentOf(at(name)).starts_with(beginning)) << name;
  }
  EXPECT_EQ(run({"--studbook", ZOOS, "draw", "census", "-o", at("n.gif")}), 2);
}

TEST_F(Report, StandsWithoutTheProgramsThatDraw) {
  const std::string path = std::getenv("PATH");
  setenv("PATH", home.c_str(), 1);
  const std::string page = report({"--studbook", ZOOS, "report", "--sections", "census"});
  setenv("PATH", path.c_str(), 1);
  expectSound(page);
  EXPECT_NE(page.find("Charts are left out: this picture needs the program gnuplot"), std::string::npos);
  EXPECT_EQ(page.find("<svg"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
