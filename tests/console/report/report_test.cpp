#include <cstdio>
#include <cstdlib>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

const std::string ZOOS = SPX_SOURCE_DIR "/examples/zoos";

/// The texts between each pair of `begin` and `end`, in order.
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

/// The cells of the table with a caption, row by row, as a reader sees them; the first row holds the titles.
std::vector<std::vector<std::string>> tableOf(const std::string& page, const std::string& caption) {
  const std::string start = "<caption>" + caption + "</caption>";
  EXPECT_NE(page.find(start), std::string::npos) << caption;
  const std::size_t from = page.find(start) + start.size();
  std::vector<std::vector<std::string>> rows;
  for (const std::string& row : between(page.substr(from, page.find("</table>", from) - from), "<tr>", "</tr>")) {
    std::vector<std::string>& cells = rows.emplace_back();
    std::string text;
    bool in_tag = false;
    for (std::size_t at = 0; at < row.size(); ++at) {
      if (row.compare(at, 4, "<td>") == 0 || row.compare(at, 4, "<td ") == 0 || row.compare(at, 3, "<th") == 0) {
        cells.emplace_back();
      }
      in_tag = row[at] == '<' || (in_tag && row[at - 1] != '>');
      if (!in_tag && !cells.empty()) cells.back() += row[at];
    }
  }
  return rows;
}

TEST_F(Report, EveryFigureIsThatOfItsCommand) {
  const std::vector<std::string> day = {"--until", "2015-12-31", "--on", "2015-12-31"};
  const std::string page = report({"--studbook", ZOOS, "report", "--until", "2015-12-31", "--on", "2015-12-31"});

  const nlohmann::json census = answer({"census", "--until", "2015-12-31"});
  const auto shown_census = tableOf(page, "Animals present on each census day, and what changed their number");
  ASSERT_EQ(shown_census.size(), census.size() + 1);
  const char* CENSUS[] = {"males",  "females", "unknown",    "total", "births",
                          "deaths", "entries", "departures", "losses"};
  for (std::size_t row = 0; row < census.size(); ++row) {
    EXPECT_EQ(shown_census[row + 1][0], census[row]["date"].get<std::string>());
    for (std::size_t at = 0; at < std::size(CENSUS); ++at) {
      EXPECT_EQ(shown_census[row + 1][at + 1], census[row][CENSUS[at]].dump());
    }
  }

  const nlohmann::json pyramid = answer({"age-pyramid", "--on", "2015-12-31"});
  const auto shown_pyramid = tableOf(page, "Animals by age and sex");
  ASSERT_EQ(shown_pyramid.size(), pyramid.size() + 1);
  for (std::size_t row = 0; row < pyramid.size(); ++row) {
    EXPECT_EQ(std::stod(shown_pyramid[row + 1][1]), pyramid[row]["males"].get<double>());
    EXPECT_EQ(std::stod(shown_pyramid[row + 1][2]), pyramid[row]["females"].get<double>());
  }

  const nlohmann::json growth = answer({"growth", "--until", "2015-12-31"});
  const auto shown_growth = tableOf(page, "Growth by births and deaths, and by the census");
  const std::pair<std::size_t, const char*> GROWTH[] = {
      {1, "r0"},      {2, "r0_lower"},      {4, "generation_time"}, {7, "r"},
      {10, "lambda"}, {12, "lambda_upper"}, {13, "lambda_leslie"},  {14, "lambda_census"}};
  for (const auto& [row, name] : GROWTH) EXPECT_EQ(shown_growth[row][1], shown(growth[name], 4)) << name;

  const nlohmann::json lives = answer({"life-table", "--until", "2015-12-31"});
  const auto shown_lives = tableOf(page, "Life table");
  ASSERT_EQ(shown_lives.size(), lives.size() + 1);
  for (std::size_t row = 0; row < lives.size(); ++row) {
    EXPECT_EQ(shown_lives[row + 1][0], lives[row]["sex"].get<std::string>());
    EXPECT_EQ(shown_lives[row + 1][2], shown(lives[row]["at_risk"], 1));
    EXPECT_EQ(shown_lives[row + 1][6], shown(lives[row]["l"], 3));
    EXPECT_EQ(shown_lives[row + 1][9], shown(lives[row]["m"], 3));
  }

  const nlohmann::json year = answer({"demography", "--until", "2015-12-31"});
  const auto shown_year = tableOf(page, "The last twelve months, and the rates of the period");
  ASSERT_EQ(shown_year.size(), year.size() + 1);
  for (std::size_t row = 0; row < year.size(); ++row) {
    EXPECT_EQ(shown_year[row + 1][1], year[row]["figure"].get<std::string>());
    EXPECT_NEAR(std::stod(shown_year[row + 1][2]), year[row]["value"].get<double>(), 5.001e-4);
  }

  const nlohmann::json ranking = answer({"mean-kinship", "--on", "2015-12-31"});
  const auto shown_ranking = tableOf(page, "The living, from the lowest mean kinship to the highest");
  ASSERT_EQ(shown_ranking.size(), ranking.size() + 1);
  for (std::size_t row = 0; row < ranking.size(); ++row) {
    EXPECT_EQ(shown_ranking[row + 1][0], ranking[row]["id"].get<std::string>());
    EXPECT_EQ(shown_ranking[row + 1][2], shown(ranking[row]["mk"], 4));
  }

  const nlohmann::json pairs = answer({"pairs", "--pick", "10", "--on", "2015-12-31"});
  const auto shown_pairs = tableOf(page, "The pairs that keep gene diversity highest");
  ASSERT_EQ(shown_pairs.size(), pairs.size() + 1);
  for (std::size_t row = 0; row < pairs.size(); ++row) {
    EXPECT_EQ(shown_pairs[row + 1][1], pairs[row]["sire"].get<std::string>());
    EXPECT_EQ(shown_pairs[row + 1][2], pairs[row]["dam"].get<std::string>());
  }

  // The summary answers the first questions of a reader.
  const std::string summary = between(page, "<section id=\"summary\">", "</section>").at(0);
  const nlohmann::json founders = answer({"founders", "--on", "2015-12-31", "--runs", "20"});
  std::size_t nearly_lost = 0;
  std::size_t named_lost = 0;
  for (const nlohmann::json& founder : founders) {
    const bool is_nearly_lost = founder["living_descendants"] > 0 && founder["retention"] < 0.25;
    nearly_lost += is_nearly_lost;
    const std::string named =
        founder["id"].get<std::string>() + " (" + shown(100 * founder["retention"].get<double>(), 0) + " % left)";
    named_lost += is_nearly_lost && summary.find(named) != std::string::npos;
  }
  ASSERT_GT(nearly_lost, 6U);
  EXPECT_EQ(named_lost, 6U) << summary;
  EXPECT_NE(summary.find(" and " + std::to_string(nearly_lost - named_lost) + " more"), std::string::npos);
  EXPECT_NE(summary.find("<b>" + std::to_string(nearly_lost) + "</b><span>founders nearly lost"), std::string::npos);
  EXPECT_NE(summary.find("<b>" + std::to_string(ranking.size()) + "</b><span>animals alive"), std::string::npos);
  EXPECT_NE(
      summary.find("pair next: " + pairs[0]["sire"].get<std::string>() + " with " + pairs[0]["dam"].get<std::string>()),
      std::string::npos);
  const double decade = year[11]["value"];
  ASSERT_EQ(year[11]["figure"], "lambda by census, 10 years");
  EXPECT_NE(summary.find((decade > 1 ? "grew by " : "fell by ") + shown(std::abs(100 * (decade - 1)), 1) + " % a year"),
            std::string::npos);
}

TEST_F(Report, ShowsWhatTheCommandsAnswer) {
  const std::string page = report({"--studbook", ZOOS, "report", "--until", "2015-12-31", "--on", "2015-12-31"});
  expectSound(page);
  const nlohmann::json genetics = answer({"genetics", "--on", "2015-12-31"});
  EXPECT_NE(page.find(shown(genetics["gene_diversity"], 4)), std::string::npos);
  EXPECT_NE(page.find(shown(genetics["mean_f"], 4)), std::string::npos);
  const nlohmann::json ranking = answer({"mean-kinship", "--on", "2015-12-31"});
  EXPECT_NE(page.find("<li>" + std::to_string(ranking.size()) + " animals are alive and present on 2015-12-31, at "),
            std::string::npos);
  EXPECT_EQ(between(page, "<div class=\"card\" id=\"", "\"").size(), ranking.size()) << "a card for each living animal";
  EXPECT_NE(page.find(shown(ranking.front()["mk"], 4)), std::string::npos);
  EXPECT_GE(between(page, "<svg ", ">").size(), 8U);
}

TEST_F(Report, TextsOfTheStudbookAreInert) {
  const std::string animals = table("animals.csv",
                                    "id,sire,dam,sex,birth_date,birth_location\n"
                                    "\"<script>alert(1)</script>&\"\"'\xE2\x80\xAE\",,,M,2000-01-01,\"<b>Zoo\"\n"
                                    "2,,,F,2001-01-01,\"<b>Zoo\"\n"
                                    "3,\"<script>alert(1)</script>&\"\"'\xE2\x80\xAE\",2,F,2004-01-01,\"<b>Zoo\"\n");
  const std::string page = report({"--studbook", animals, "report", "--cards", "--title", "<script>\xE2\x80\xAE&amp;"});
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

TEST_F(Report, EachSectionStandsAlone) {
  for (const char* name : {"census", "ages", "survival", "reproduction", "growth", "genetics", "founders",
                           "mean-kinship", "pairs", "animals", "quality"}) {
    SCOPED_TRACE(name);
    const std::string page = report({"--studbook", ZOOS, "report", "--sections", name});
    expectSound(page);
    EXPECT_EQ(between(page, "<section id=\"", "\""), (std::vector<std::string>{"summary", name, "assumptions"}));
  }
}

TEST_F(Report, TitleAndLogoStandAtTheTop) {
  const std::pair<const char*, const char*> LOGOS[] = {
      {"<svg xmlns=\"http://www.w3.org/2000/svg\"/>", "src=\"data:image/svg+xml;base64,PHN2ZyB4bWxucz0i"},
      {"\x89PNG\r\n", "src=\"data:image/png;base64,iVBORw0K\""},
      {"\xFF\xD8\xFF", "src=\"data:image/jpeg;base64,/9j/\""},
  };
  for (const auto& [bytes, source] : LOGOS) {
    writeContent(at("logo"), bytes);
    const std::string page = report(
        {"--studbook", ZOOS, "report", "--sections", "quality", "--title", "Deer & <goats>", "--logo", at("logo")});
    expectSound(page);
    EXPECT_NE(page.find("<h1>Deer &amp; &lt;goats&gt;</h1>"), std::string::npos);
    EXPECT_NE(page.find("<title>Deer &amp; &lt;goats&gt;</title>"), std::string::npos);
    EXPECT_NE(page.find(source), std::string::npos) << source;
  }
  writeContent(at("logo"), "");
  EXPECT_EQ(run({"--studbook", ZOOS, "report", "--logo", at("logo")}), 1);
  EXPECT_EQ(run({"--studbook", ZOOS, "report", "--logo", at("missing.png")}), 1);
  EXPECT_NE(takeErrors().find("--logo: cannot read"), std::string::npos);
}

// 5 is the offspring of full sibs, 6 of a wild sire, which is called P5 as the mate of 5.
TEST_F(Report, CardsShowTheAncestorsOfAnAnimal) {
  const std::string animals = table("animals.csv",
                                    "id,sire,dam,sex,birth_date\n1,WILD,UNK,M,1990\n2,,,F,1991\n3,1,2,M,1994\n"
                                    "4,1,2,F,1995\n5,3,4,F,1999\n6,WILD,5,F,2003\n");
  const std::string page = report({"--studbook", animals, "report", "--sections", "animals", "--cards"});
  expectSound(page);
  const auto rowsOf = [&page](const std::string& id) {
    const std::string card = between(page, "id=\"animal-" + id + "\"", "</table>").at(0);
    std::string text;
    for (const std::string& row : between(card, "<tr>", "</tr>")) {
      for (const std::string& cell : between(row, "<td", "</td>")) {
        for (const std::string& part : between(">" + cell.substr(cell.find('>') + 1) + "<", ">", "<")) text += part;
        text += "|";
      }
      text += "\n";
    }
    return text;
  };
  EXPECT_EQ(rowsOf("5"),
            "3 1994|1 1990|wild|\nunknown|\n2 1991|unknown|\nunknown|\n"
            "4 1995|1 1990|wild|\nunknown|\n2 1991|unknown|\nunknown|\n");
  EXPECT_EQ(rowsOf("6"), "P5|||\n|\n||\n|\n5 1999|3 1994|1 1990|\n2 1991|\n4 1995|1 1990|\n2 1991|\n");
  EXPECT_NE(page.find("their locations are not recorded"), std::string::npos);
  EXPECT_NE(page.find("The studbook records no deaths"), std::string::npos);
}

TEST_F(Report, ADrawingHasTheFormatOfItsFile) {
  const std::pair<const char*, const char*> files[] = {{"n.png", "\x89PNG"}, {"n.pdf", "%PDF"}, {"n.svg", "<svg"}};
  for (const auto& [name, beginning] : files) {
    ASSERT_EQ(run({"--studbook", ZOOS, "draw", "census", "-o", at(name)}), 0) << takeErrors();
    EXPECT_TRUE(contentOf(at(name)).starts_with(beginning)) << name;
  }
  EXPECT_EQ(run({"--studbook", ZOOS, "draw", "census", "-o", at("n.gif")}), 2);
}

TEST_F(Report, DrawingsThatCannotBeSayWhy) {
  struct row {
    std::vector<std::string> words;
    int code;
    const char* message;
  };
  const row ROWS[] = {
      {{"pedigree", "47O"}, 1, "there is no animal \"47O\"; did you mean \"47\"?"},
      {{"pedigree", "470", "--depth", "-1"}, 2, "--depth"},
      {{"pedigree", "470", "--fill", "red"}, 2, "\"red\" must be one of: inbreeding, nothing"},
      {{"pedigree", "470", "--format", "gif"}, 2, "use svg, png, pdf or dot"},
      {{"census", "--format", "dot"}, 2, "use svg, png or pdf"},
      {{"census", "--until", "1900-01-01"}, 1, "no animals are present on any census day"},
      {{"births", "--until", "1900-01-01"}, 1, "no births of a known month"},
      {{"survival", "--until", "1900-01-01"}, 1, "No animal was watched at a known age."},
      {{"survival", "--by", "age"}, 2, "\"age\" must be one of: none, sex, origin"},
      {{"pyramid", "--on", "1900-01-01"}, 1, "No animals are present on that day."},
      {{"kinship", "--on", "1900-01-01"}, 1, "no animal"},
      {{"kinship", "--order", "age"}, 2, "must be one of: likeness, location"},
      {{"diversity", "--until", "1900-01-01"}, 1, "present"},
      {{"founders", "--runs", "0"}, 2, "--runs"},
      {{"founders", "--runs", "-5"}, 2, "--runs"},
      {{"projection", "--runs", "0"}, 2, "--runs"},
      {{"projection", "--sex", "male"}, 2, "--sex"},
      {{"nothing"}, 2, "there is no command \"nothing\" in spx draw"},
  };
  for (row one : ROWS) {
    SCOPED_TRACE(one.words.front() + " " + one.words.back());
    one.words.insert(one.words.begin(), {"--studbook", ZOOS, "draw"});
    takeOutput();
    EXPECT_EQ(run(one.words), one.code);
    EXPECT_EQ(takeOutput(), "");
    const std::string error = takeErrors();
    EXPECT_NE(error.find(one.message), std::string::npos) << error;
  }
}

TEST_F(Report, StandsWithoutLivingAnimals) {
  const std::string page = report({"--studbook", ZOOS, "report", "--until", "1900-01-01", "--on", "1900-01-01"});
  expectSound(page);
  EXPECT_NE(page.find("0 animals are alive and present on 1900-01-01"), std::string::npos);
  const std::string all = std::to_string(answer({"list"}).size());
  EXPECT_NE(page.find("0 of " + all + " animals counted; left out: " + all + " not there in the period."),
            std::string::npos);
  EXPECT_EQ(page.find("nan"), std::string::npos);
  for (const std::string& section : between(page, "<section id=\"", "</section>")) {
    EXPECT_TRUE(section.find("<p") != std::string::npos || section.find("<li>") != std::string::npos) << section;
  }
}

TEST_F(Report, EveryChartSaysWhatWhoseAndWhen) {
  const std::pair<const char*, const char*> CHARTS[] = {
      {"census", "zoos: Alderhay Zoo, until 2015-12-31"},    {"survival", "zoos: Alderhay Zoo, until 2015-12-31"},
      {"births", "zoos: Alderhay Zoo, until 2015-12-31"},    {"projection", "zoos: Alderhay Zoo, until 2015-12-31"},
      {"diversity", "zoos: Alderhay Zoo, until 2015-12-31"}, {"pyramid", "zoos: Alderhay Zoo, on 2015-12-31"},
      {"founders", "zoos: Alderhay Zoo, on 2015-12-31"},     {"kinship", "zoos: Alderhay Zoo, on 2015-12-31"},
  };
  for (const auto& [name, subtitle] : CHARTS) {
    const bool has_day = std::string(subtitle).find(" on ") != std::string::npos;
    takeOutput();
    ASSERT_EQ(run({"--studbook", ZOOS, "draw", name, "--location", "Alderhay Zoo", has_day ? "--on" : "--until",
                   "2015-12-31"}),
              0)
        << name << takeErrors();
    EXPECT_NE(takeOutput().find(subtitle), std::string::npos) << name;
  }
}

TEST_F(Report, SaysWhyGeneticsAndTheCensusCountOtherAnimals) {
  const std::string book =
      table("undated.csv", "id,sire,dam,sex,birth_date\n1,,,m,\n2,,,f,2001-05-01\n3,1,2,m,2010-05-01\n");
  const std::string page = report({"--studbook", book, "report", "--sections", "census"});
  EXPECT_NE(page.find("3 animals are alive and present"), std::string::npos);
  EXPECT_NE(page.find("they count 1 animal fewer than genetics."), std::string::npos);
  const std::string dated = report({"--studbook", book, "report", "--sections", "census", "--undated", "exclude"});
  EXPECT_NE(dated.find("2 animals are alive and present"), std::string::npos);
  EXPECT_EQ(dated.find("fewer than genetics"), std::string::npos);
  takeOutput();
  EXPECT_EQ(run({"--studbook", book, "draw", "kinship", "--undated", "exclude"}), 0);
  EXPECT_EQ(takeOutput().find(">1<"), std::string::npos) << "the animal 1 is not in the picture";
}

TEST_F(Report, StandsWithoutTheProgramsThatDraw) {
  const std::string path = std::getenv("PATH");
  setenv("PATH", home.c_str(), 1);
  const std::string page = report({"--studbook", ZOOS, "report", "--sections", "census"});
  setenv("PATH", path.c_str(), 1);
  expectSound(page);
  EXPECT_NE(page.find("A chart is left out: this picture needs the program gnuplot"), std::string::npos);
  EXPECT_EQ(page.find("<svg"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
