#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "console/base/failure.h"
#include "console/charts/animal_pedigree.h"
#include "console/charts/chart.h"
#include "console/charts/drawing_tool.h"
#include "console/charts/kinship_map.h"
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

// Quotes of gnuplot and Graphviz, a command to substitute, markup, a line break and a mark that reverses the
// direction of writing.
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

table_column numbers(const char* name) {
  return {.name = name, .title = "", .kind = COLUMN_KIND::REAL};
}

TEST_F(Charts, CountsAreStackedInTheOrderOfTheKey) {
  Table census({{.name = "date", .title = "", .kind = COLUMN_KIND::DATE},
                numbers("males"),
                numbers("females"),
                numbers("unknown"),
                numbers("total")});
  census.addRow({known_date{2451545}, 1, 2, 0, 3});
  census.addRow({known_date{2451911}, 2, 2, 1, 5});
  const chart drawing = censusChart(census, "whose");
  EXPECT_EQ(drawing.x_names, (std::vector<std::string>{"2000", "2001"}));
  EXPECT_EQ(drawing.description, "The number of animals changes from 3 (2000) to 5 (2001).");
  ASSERT_EQ(drawing.series.size(), 3U);
  EXPECT_EQ(drawing.series[0].y, (std::vector<double>{1, 2}));
  EXPECT_EQ(drawing.series[1].y, (std::vector<double>{2, 2}));
  EXPECT_EQ(drawing.series[2].y, (std::vector<double>{0, 1}));
  const std::string svg = drawChart(drawing);
  expectPicture(svg);
  EXPECT_EQ(count(svg, "<polygon fill = 'rgb(238, 238, 238)'"), 1U + 1U) << "one bar of unknown sex, one in the key";
  EXPECT_EQ(count(svg, ">0.5<"), 0U) << "a scale of whole animals";
}

TEST_F(Charts, BirthsStandInTheirMonths) {
  Table births({{"measure", ""}, numbers("n")});
  births.addRow({"litter_size", 9});
  births.addRow({"births_in_month_1", 3});
  births.addRow({"births_in_month_12", 4});
  const chart drawing = birthsChart(births, "whose");
  EXPECT_EQ(drawing.x_names[11], "Dec");
  EXPECT_EQ(drawing.series[0].y, (std::vector<double>{3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4}));
  expectPicture(drawChart(drawing));
}

TEST_F(Charts, FoundersStandByTheirContributionUpToAsManyAsFit) {
  Table founders({{"id", ""}, numbers("contribution"), numbers("retention")});
  founders.addRow({"small", 0.1, 0.9});
  founders.addRow({"large", 0.6, 0.5});
  founders.addRow({"middle", 0.3, 0.75});
  const chart all = foundersChart(founders, "whose");
  EXPECT_EQ(all.y_names, (std::vector<std::string>{"small", "middle", "large"})) << "from the bottom";
  EXPECT_EQ(all.series[0].x_end, (std::vector<double>{10, 30, 60}));
  EXPECT_EQ(all.series[1].x, (std::vector<double>{90, 75, 50}));
  const chart two = foundersChart(founders, "whose", 2);
  EXPECT_EQ(two.y_names, (std::vector<std::string>{"middle", "large"}));
  EXPECT_EQ(two.description, "3 founders; the 2 largest are shown.");
  expectPicture(drawChart(two));
}

TEST_F(Charts, LinesAndBandsRunThroughTheirYears) {
  Table years({{.name = "year", .title = "", .kind = COLUMN_KIND::REAL, .decimals = 0},
               numbers("expected"),
               numbers("lower"),
               numbers("median"),
               numbers("upper"),
               numbers("mean_f"),
               numbers("gene_diversity")});
  years.addRow({2000.0, 10, 8, 10, 12, 0.0, 0.94});
  years.addRow({2001.0, 11, 7, 10.5, 14, 0.125, 0.88});
  const chart projection = projectionChart(years, "whose");
  EXPECT_EQ(projection.series[0].y, (std::vector<double>{8, 7}));
  EXPECT_EQ(projection.series[0].y_end, (std::vector<double>{12, 14}));
  EXPECT_EQ(projection.series[2].y, (std::vector<double>{10, 11}));
  const chart inbreeding = inbreedingChart(years, "whose");
  EXPECT_EQ(inbreeding.series[0].x, (std::vector<double>{2000, 2001}));
  EXPECT_EQ(inbreeding.description, "Mean inbreeding changes from 0 (2000) to 0.13 (2001).");
  const chart diversity = diversityChart(years, "whose");
  EXPECT_DOUBLE_EQ(diversity.y_from, 0.8) << "the scale begins at the tenth below the least";
  EXPECT_EQ(diversity.y_to, 1);
  for (const chart& drawing : {projection, inbreeding, diversity}) expectPicture(drawChart(drawing));
}

TEST_F(Charts, ChartsOfNothingAreRefused) {
  Table census({{.name = "date", .title = "", .kind = COLUMN_KIND::DATE},
                numbers("males"),
                numbers("females"),
                numbers("unknown"),
                numbers("total")});
  census.addRow({known_date{2451545}, 0, 0, 0, 0});
  EXPECT_THROW(censusChart(census, ""), Failure);
  Table births({{"measure", ""}, numbers("n")});
  births.addRow({"births_in_month_1", 0});
  EXPECT_THROW(birthsChart(births, ""), Failure);
}

TEST_F(Charts, LikenessPutsRelativesTogether) {
  // Two families, whose members alternate: 0 and 2, 1 and 3.
  const std::vector<std::vector<double>> likeness = {
      {0.5, 0.0, 0.25, 0.0}, {0.0, 0.5, 0.0, 0.125}, {0.25, 0.0, 0.5, 0.0}, {0.0, 0.125, 0.0, 0.5}};
  EXPECT_EQ(orderedByLikeness(likeness), (std::vector<std::size_t>{0, 2, 1, 3}));
  EXPECT_TRUE(orderedByLikeness({}).empty());
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
                 "this picture needs the program dot; install the package that contains it: apt install graphviz");
  }
  setenv("PATH", path.c_str(), 1);
}

class Pedigrees : public Charts {
 protected:
  /// 5 is inbred: its parents 3 and 4 are full sibs. 9 is the mate of 5; 8 is not drawn. Dates are inverted on
  /// purpose: they must not matter.
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
