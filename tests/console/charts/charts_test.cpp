#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "console/base/failure.h"
#include "console/charts/animal_pedigree.h"
#include "console/charts/chart.h"
#include "console/charts/drawing_tool.h"
#include "console/charts/result_charts.h"
#include "console/charts/table_values.h"
#include "console/studbook/record_genetics.h"
#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
    ++found;
  }
  return found;
}

// Quotes of gnuplot and Graphviz, a command to substitute, markup, a line break and a mark that turns the text.
const std::string HOSTILE = "O'Neil `touch pwned` $(id) \"x\\\" </svg><script>\n\xE2\x80\xAE";

class Charts : public ConsoleTest {
 protected:
  void expectPicture(const std::string& svg) {
    writeContent(at("picture.svg"), svg);
    EXPECT_EQ(std::system(("xmllint --noout '" + at("picture.svg") + "'").c_str()), 0) << svg;
    EXPECT_EQ(svg.find("<script"), std::string::npos);
    EXPECT_EQ(svg.find("\xE2\x80\xAE"), std::string::npos);
  }
};

TEST_F(Charts, StackedBarsStandForTheirValuesAndTextsAreInert) {
  chart drawing{
      .title = HOSTILE, .subtitle = HOSTILE, .description = HOSTILE, .x_label = HOSTILE, .y_label = "animals"};
  drawing.x_names = {"1990", HOSTILE, "1992"};
  drawing.series = {{.name = HOSTILE, .marks = MARKS::STACKED_BARS, .y = {3, 0, 2}},
                    {.name = "females", .marks = MARKS::STACKED_BARS, .y = {1, NAN, 5}}};
  const std::string svg = drawChart(drawing);
  expectPicture(svg);
  // A bar for each value above 0, and a sample in the key for each series.
  EXPECT_EQ(count(svg, "<polygon fill = 'rgb(  0, 114, 178)'"), 2U + 1U);
  EXPECT_EQ(count(svg, "<polygon fill = 'rgb(230, 159,   0)'"), 2U + 1U);
  EXPECT_NE(svg.find("O'Neil `touch pwned` $(id)"), std::string::npos) << "texts stay texts";
  EXPECT_EQ(std::system("test -e pwned"), 1 << 8);
}

TEST_F(Charts, SurvivalHasACurveAndABandForEachGroup) {
  Table survival({{"group", "Group"},
                  {.name = "time", .title = "", .kind = COLUMN_KIND::REAL},
                  {.name = "survival", .title = "", .kind = COLUMN_KIND::REAL},
                  {.name = "lower", .title = "", .kind = COLUMN_KIND::REAL},
                  {.name = "upper", .title = "", .kind = COLUMN_KIND::REAL}});
  survival.addRow({"female", 1.0, 0.8, 0.5, 0.95});
  survival.addRow({"female", 4.0, 0.0, NAN, NAN});
  survival.addRow({"male", 2.0, 0.5, 0.1, 0.8});
  const chart drawing = survivalChart(survival, "whose", "years");
  ASSERT_EQ(drawing.series.size(), 4U);
  EXPECT_EQ(drawing.series[1].name, "female");
  EXPECT_EQ(drawing.series[1].x, (std::vector<double>{0, 1, 4}));
  EXPECT_EQ(drawing.series[1].y, (std::vector<double>{1, 0.8, 0}));
  EXPECT_EQ(drawing.series[0].y_end, (std::vector<double>{1, 0.95})) << "no band where the interval is not known";
  EXPECT_EQ(drawing.series[3].x, (std::vector<double>{0, 2}));
  EXPECT_EQ(drawing.series[3].colour, 0) << "males are blue as in the census, though females come first";
  expectPicture(drawChart(drawing));
}

TEST_F(Charts, APyramidShowsEveryAnimalOnItsSide) {
  Table pyramid({{.name = "age", .title = "", .kind = COLUMN_KIND::REAL},
                 {.name = "males", .title = "", .kind = COLUMN_KIND::REAL},
                 {.name = "females", .title = "", .kind = COLUMN_KIND::REAL},
                 {.name = "unknown", .title = "", .kind = COLUMN_KIND::REAL}});
  pyramid.addRow({0.0, 2, 3, 1});
  pyramid.addRow({1.0, 0, 4, 0});
  pyramid.addRow({2.0, 0, 0, 0});
  pyramid.addRow({Cell(), 1, 1, 0});
  const chart drawing = pyramidChart(pyramid, "whose", "years");
  EXPECT_EQ(drawing.y_names, (std::vector<std::string>{"0", "1"}));
  EXPECT_EQ(drawing.series[0].x, (std::vector<double>{-2}));
  EXPECT_EQ(drawing.series[1].x_end, (std::vector<double>{3, 4}));
  EXPECT_EQ(drawing.series[2].x_end, (std::vector<double>{4})) << "unknown sexes stand beyond the females";
  expectPicture(drawChart(drawing));
}

TEST_F(Charts, AHeatMapHasARectangleForEachValue) {
  const heat_map drawing{.title = "Kinship",
                         .subtitle = "",
                         .description = "",
                         .scale_label = "kinship",
                         .names = {"1", "2", "'3"},
                         .values = {{0.5, 0.25, 0}, {0.25, 0.5, 0.125}, {0, 0.125, 0.5}}};
  const std::string svg = drawHeatMap(drawing);
  expectPicture(svg);
  const std::string cells =
      svg.substr(svg.find("gnuplot_plot_1"), svg.find("gnuplot_plot_1") == std::string::npos ? 0 : std::string::npos);
  EXPECT_GE(count(cells, "<polygon"), 9U);
}

TEST_F(Charts, GroupsOfAHeatMapAreNamedOnce) {
  const heat_map drawing{.title = "Kinship",
                         .subtitle = "",
                         .description = "",
                         .scale_label = "kinship",
                         .names = {"1", "2", "3", "4"},
                         .groups = {"Zoo A", "Zoo A", "Zoo B", HOSTILE},
                         .values = {{0.5, 0, 0, 0}, {0, 0.5, 0, 0}, {0, 0, 0.5, 0}, {0, 0, 0, 0.5}}};
  const std::string svg = drawHeatMap(drawing);
  expectPicture(svg);
  EXPECT_EQ(count(svg, "Zoo A"), 1U);
  EXPECT_EQ(count(svg, "Zoo B"), 1U);
}

TEST_F(Charts, AWidePictureFitsIntoAPng) {
  const auto widthOf = [](const char* size) {
    const std::string svg = std::string("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"") + size +
                            "\" height=\"10pt\"><rect width=\"5\" height=\"5\"/></svg>";
    const std::string png = convertedImage(svg, IMAGE_FORMAT::PNG);
    return static_cast<unsigned char>(png[18]) * 256 + static_cast<unsigned char>(png[19]);
  };
  EXPECT_EQ(widthOf("300pt"), 800) << "twice the size, at 4 pixels for 3 points";
  EXPECT_NEAR(widthOf("20000pt"), 32000, 2) << "a PNG ends at 32767 pixels";
}

TEST_F(Charts, AMissingProgramIsNamedWithItsPackage) {
  const std::string path = std::getenv("PATH");
  setenv("PATH", home.c_str(), 1);
  try {
    drawPedigree({.title = "", .subtitle = "", .description = "", .animals = {}});
    ADD_FAILURE() << "drawn without Graphviz";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(),
                 "this picture needs the program dot; install the package that holds it: apt install graphviz");
  }
  setenv("PATH", path.c_str(), 1);
}

class Pedigrees : public Charts {
 protected:
  /// 5 is inbred: its parents 3 and 4 are full sibs. 9 is the mate of 5; nothing of 8 is drawn. Dates are inverted on
  /// purpose: they play no part.
  void SetUp() override {
    const std::string animals = table("animals.csv",
                                      "id,sire,dam,sex,birth_date,death_date\n"
                                      "1,,,M,1990,1999\n2,,,F,1990,\n3,1,2,M,1980,\n4,1,2,F,1980,\n"
                                      "5,3,4,F,1970,\n6,9,5,,2001,\n9,,,M,1960,\n8,,,M,1960,\n");
    loadStudbook(studbook_files{.animals = animals, .events = {}, .locations = {}, .programs = {}, .titles = {}});
    computeRecordGenetics();
  }
  static std::vector<std::string> ids(const pedigree_drawing& drawing) {
    std::vector<std::string> out;
    for (const drawn_animal& animal : drawing.animals) {
      out.push_back(animal.lines.front());
    }
    return out;
  }
};

TEST_F(Pedigrees, RelativesAreFoundByTheirParentsAlone) {
  EXPECT_EQ(ids(animalPedigree("5", {})), (std::vector<std::string>{"5", "3", "4", "1", "2"}));
  EXPECT_EQ(ids(animalPedigree("5", {.ancestors = 1})), (std::vector<std::string>{"5", "3", "4"}));
  EXPECT_EQ(ids(animalPedigree("5", {.ancestors = 0, .descendants = 2})), (std::vector<std::string>{"5", "6", "9"}));
  EXPECT_THROW(animalPedigree("no such", {}), Failure);
}

TEST_F(Pedigrees, OnlyMatesWithoutARecordAreWild) {
  const std::string animals =
      table("wild.csv", "id,sire,dam,sex,birth_date\n1,P1,P2,M,1999-05-01\nP1,,,M,\nP2,,,F,1990-04-01\n");
  dropStudbook();
  loadStudbook(studbook_files{.animals = animals, .events = {}, .locations = {}, .programs = {}, .titles = {}});
  const pedigree_drawing drawing = animalPedigree("1", {});
  ASSERT_EQ(drawing.animals.size(), 3U);
  EXPECT_EQ(drawing.animals[1].lines, (std::vector<std::string>{"P1", "wild"}));
  EXPECT_EQ(drawing.animals[2].lines, (std::vector<std::string>{"P2", "1990"}));
}

TEST_F(Pedigrees, SymbolsTellSexDeathAndRelatedParents) {
  const pedigree_drawing drawing = animalPedigree("6", {});
  const std::string svg = drawPedigree(drawing);
  expectPicture(svg);
  EXPECT_EQ(count(svg, "class=\"slash\""), 1U) << "1 is dead";
  EXPECT_EQ(count(pedigreeDot(drawing), "shape=box"), 3U);
  EXPECT_EQ(count(pedigreeDot(drawing), "shape=ellipse"), 3U);
  EXPECT_EQ(count(pedigreeDot(drawing), "shape=diamond"), 1U);
  EXPECT_EQ(count(pedigreeDot(drawing), ":invis:"), 2U) << "two lines, from 3 and from 4, are double";
  EXPECT_NE(svg.find("F 0.250"), std::string::npos);
}

TEST_F(Pedigrees, ACycleIsRefusedAndTextsAreInert) {
  pedigree_drawing drawing{.title = HOSTILE, .subtitle = "", .description = HOSTILE, .animals = {}};
  drawing.animals = {{.lines = {HOSTILE, HOSTILE}, .dead = true}, {.lines = {"b"}, .sire = 0}};
  expectPicture(drawPedigree(drawing));
  drawing.animals[0].dam = 1;
  EXPECT_THROW(drawPedigree(drawing), Failure);
}

}  // namespace
}  // namespace spx::console
