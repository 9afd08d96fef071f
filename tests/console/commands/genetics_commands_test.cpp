// The genetic commands on a drawn family: figures by hand, names for scripts, views and bad input.
#include <cmath>
#include <map>
#include <sstream>

#include <nlohmann/json.hpp>

#include "spx/project/biology.h"

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

//  A(m) B(f)    a zoo each: A, B, C, D, E in 1; F from the wild in 2 with G, its only offspring
//   |\ /|
//   | C | D     C and D are full sibs, E is their offspring; H is D's by an unknown male
constexpr char FAMILY[] =
    "id,sire,dam,sex,birth_date,birth_location,death_date,origin\n"
    "A,WILD,WILD,m,1990-01-01,1,2001-05-01,wild\n"
    "B,WILD,WILD,f,1991-01-01,1,,wild\n"
    "C,A,B,m,1995-01-01,1,,captive\n"
    "D,A,B,f,1996-01-01,1,,captive\n"
    "E,C,D,f,2000-01-01,1,,captive\n"
    "F,WILD,WILD,m,1992-01-01,2,,wild\n"
    "G,F,UNK,f,1999-01-01,2,,captive\n"
    "H,UNK,D,m,2001-01-01,1,,captive\n";

class GeneticsCommands : public ConsoleTest {
 protected:
  GeneticsCommands() { LifeHistory.initialize(); }

  std::string text(std::vector<std::string> words) {
    words.insert(words.begin(), {"--studbook", studbook});
    code = run(words);
    return takeOutput();
  }

  nlohmann::json json(std::vector<std::string> words) {
    words.insert(words.end(), {"--format", "json"});
    return nlohmann::json::parse(text(std::move(words)), nullptr, false);
  }

  /// The numbers of a column by the texts of another.
  std::map<std::string, double> numbers(std::vector<std::string> words, const char* key, const char* column) {
    std::map<std::string, double> found;
    for (const nlohmann::json& row : json(std::move(words))) {
      found[row[key]] = row[column].is_null() ? std::nan("") : row[column].get<double>();
    }
    return found;
  }

  std::string studbook = table("family.csv", FAMILY);
  int code = 0;
};

using figures = std::map<std::string, double>;

TEST_F(GeneticsCommands, GiveTheFiguresOfTheFamily) {
  EXPECT_EQ(numbers({"inbreeding"}, "id", "f"),
            (figures{{"A", 0}, {"B", 0}, {"C", 0}, {"D", 0}, {"E", 0.25}, {"F", 0}, {"G", 0}, {"H", 0}}));
  EXPECT_EQ(numbers({"inbreeding", "E", "--partial"}, "founder", "partial_f"), (figures{{"A", 0.125}, {"B", 0.125}}));
  EXPECT_EQ(numbers({"inbreeding", "E", "--ancestors"}, "ancestor", "f_part"), (figures{{"A", 0.125}, {"B", 0.125}}));
  EXPECT_EQ(numbers({"kinship", "C", "D", "E"}, "id2", "kinship"), (figures{{"D", 0.25}, {"E", 0.375}}));
  EXPECT_EQ(numbers({"kinship", "A", "E", "--matrix"}, "id", "E"), (figures{{"A", 0.25}, {"E", 0.625}}));
  EXPECT_EQ(numbers({"generations", "E", "H"}, "id", "genetic"), (figures{{"E", 2}, {"H", 2}}));
  EXPECT_EQ(numbers({"generations", "E", "H"}, "id", "equivalent"), (figures{{"E", 2}, {"H", 1}}));
  EXPECT_EQ(numbers({"completeness", "E", "H", "--generations", "2"}, "id", "g1"), (figures{{"E", 1}, {"H", 0.5}}));
  // The living: B C D E F G H. E's kinships with them: B .25, C and D .375, itself .625, H .1875.
  EXPECT_NEAR(numbers({"mean-kinship"}, "id", "mk")["E"], (0.25 + 0.375 * 2 + 0.625 + 0.1875) / 7, 1e-15);
  EXPECT_NEAR(numbers({"founders", "--runs", "50"}, "id", "contribution")["F"], 1.5 / 7, 1e-15);
  EXPECT_EQ(numbers({"founders", "--runs", "50"}, "id", "living_descendants"), (figures{{"A", 4}, {"B", 4}, {"F", 1}}));
  EXPECT_EQ(numbers({"pairs", "--males", "C"}, "dam", "offspring_f"),
            (figures{{"B", 0.25}, {"D", 0.25}, {"E", 0.375}, {"G", 0}}));
}

TEST_F(GeneticsCommands, GeneticsIsOneRecordWithThePopulationBesideTheView) {
  const nlohmann::json whole = json({"genetics"});
  EXPECT_EQ(whole["living"], 7);
  EXPECT_EQ(whole["animals"], 8);
  EXPECT_EQ(whole["founders"], 3);
  EXPECT_EQ(whole["phantom_founders"], 2);
  EXPECT_NEAR(whole["mean_f"], 0.25 / 7, 1e-15);
  EXPECT_NEAR(whole["gene_diversity"].get<double>() + whole["mean_kinship"].get<double>(), 1, 1e-15);
  EXPECT_NEAR(whole["fg"].get<double>() * 2 * whole["mean_kinship"].get<double>(), 1, 1e-15);
  const nlohmann::json zoo = json({"genetics", "--location", "2"});
  EXPECT_EQ(zoo["living"], 2);
  // F with itself .5, with G .25 twice, G with itself .5.
  EXPECT_EQ(zoo["mean_kinship"], 0.375);
  EXPECT_EQ(zoo["population"]["living"], 7);
  EXPECT_EQ(zoo["population"]["mean_kinship"], whole["mean_kinship"]);
  EXPECT_NE(text({"genetics", "--location", "2"}).find("All"), std::string::npos);
}

TEST_F(GeneticsCommands, ObeyTheView) {
  EXPECT_EQ(json({"mean-kinship", "--sex", "female"}).size(), 4U);
  EXPECT_EQ(json({"mean-kinship", "--on", "1999-06-01"}).size(), 6U) << "A lives, E and H are not born";
  EXPECT_EQ(json({"inbreeding", "--on", "1999-06-01"}).size(), 6U);
  EXPECT_EQ(json({"inbreeding", "--location", "2"}).size(), 2U);
  EXPECT_EQ(json({"inbreeding"}).size() - json({"inbreeding", "--living"}).size(), 1U);
}

TEST_F(GeneticsCommands, UnknownParentsAreFoundersOrLeftOut) {
  const figures excluded = numbers({"inbreeding", "--unknown", "exclude"}, "id", "f");
  EXPECT_TRUE(std::isnan(excluded.at("H")));
  EXPECT_EQ(excluded.at("E"), 0.25);
  // Among the known halves of G and F: k = .25 / (.5 x 1).
  EXPECT_EQ(numbers({"kinship", "F", "G", "--unknown", "exclude"}, "id2", "kinship"), (figures{{"G", 0.5}}));
  EXPECT_NE(text({"mean-kinship", "--unknown", "exclude"}).find("known founders"), std::string::npos);
}

TEST_F(GeneticsCommands, TracedParentsAreTheAverageOfTheirCandidates) {
  text({"inbreeding", "--trace-parents"});
  EXPECT_NE(takeErrors().find("reproductive ages"), std::string::npos);
  run({"project", "create", "zoo"});
  run({"--project", "zoo", "life-history", "set", "male-reproductive-lower=700", "male-reproductive-upper=5000",
       "female-reproductive-lower=700", "female-reproductive-upper=5000"});
  takeOutput();
  // At H's birth its father was A, dead by 2001-05, or its uncle C: F = (1/4 + 1/4) / 2.
  const figures traced = numbers({"--project", "zoo", "inbreeding", "H", "--trace-parents"}, "id", "f");
  EXPECT_EQ(traced, (figures{{"H", 0.25}}));
}

TEST_F(GeneticsCommands, RowOrderChangesNothing) {
  std::vector<std::string> lines;
  std::istringstream rows(FAMILY);
  for (std::string line; std::getline(rows, line);) lines.push_back(line + "\n");
  std::string turned = lines.front();
  for (std::size_t line = lines.size(); line-- > 1;) turned += lines[line];
  const std::vector<std::vector<std::string>> commands = {
      {"genetics"}, {"inbreeding"},    {"mean-kinship"}, {"founders", "--runs", "100"}, {"gene-drop", "--runs", "100"},
      {"pairs"},    {"effective-size"}};
  std::vector<std::string> first;
  for (const auto& words : commands) first.push_back(json(words).dump());
  studbook = table("turned.csv", turned);
  for (std::size_t which = 0; which < commands.size(); ++which) {
    EXPECT_EQ(json(commands[which]).dump(), first[which]) << commands[which].front();
  }
}

TEST_F(GeneticsCommands, PairsNameWhoIsLeftOut) {
  const std::string ranked = text({"pairs", "--males", "A,C,G"});
  EXPECT_NE(ranked.find("not alive: A"), std::string::npos) << ranked;
  EXPECT_NE(ranked.find("not male: G"), std::string::npos) << ranked;
  EXPECT_EQ(json({"pairs", "--max-kinship", "0"}).size(), 5U) << "G with two males, F with three females";
  EXPECT_EQ(json({"pairs", "--same-location"}).size(), 7U);
  EXPECT_EQ(json({"pairs", "--pick", "9"}).size(), 3U) << "each male once";
  EXPECT_EQ(json({"pairs", "--pick", "9", "--same-location"}).size(), 3U);
}

TEST_F(GeneticsCommands, BadInputGetsAClearAnswer) {
  const struct {
    const char* rows;
    std::vector<std::string> words;
    const char* answer;
  } cases[] = {
      {"1,3,,m,\n2,1,,m,\n3,2,,m,\n",
       {"genetics"},
       "animals are their own ancestors: 1, whose parent is 3, whose parent is 2"},
      {"1,1,,m,\n", {"inbreeding"}, "1, which is its own parent"},
      {"1,,,m,1990-01-01\n", {"kinship", "1"}, "second ID"},
      {"1,,,m,1990-01-01\n", {"kinship"}, "--all"},
      {"1,,,m,1990-01-01\n", {"kinship", "1", "2"}, "there is no animal \"2\""},
      {"1,,,m,1990-01-01\n", {"inbreeding", "--sex", "female"}, "no animals match"},
      {"1,,,m,1990-01-01\n", {"mean-kinship", "--on", "1980-01-01"}, "no animals match"},
      {"1,,,m,1990-01-01\n", {"pairs"}, "no female of the view can breed"},
  };
  for (const auto& [rows, words, answer] : cases) {
    studbook = table("bad.csv", std::string("id,sire,dam,sex,birth_date\n") + rows);
    text(words);
    const std::string errors = takeErrors();
    EXPECT_NE(errors.find(answer), std::string::npos) << words.front() << ": " << errors;
    EXPECT_NE(code, 0);
  }
  studbook = table("dead.csv", "id,sire,dam,sex,birth_date,death_date\n1,,,m,1990-01-01,1999-01-01\n");
  text({"genetics"});
  EXPECT_NE(takeErrors().find("no animal of the view is alive"), std::string::npos);
}

// One animal, and founders alone, are small populations, not mistakes.
TEST_F(GeneticsCommands, SmallPopulationsAreComputed) {
  studbook = table("one.csv", "id,sire,dam\n1,,\n");
  EXPECT_EQ(json({"genetics"})["fg"], 1);
  EXPECT_EQ(json({"genetics"})["ne_inbreeding"], nullptr);
  studbook = table("founders.csv", "id,sire,dam\n1,,\n2,,\n3,,\n4,,\n");
  EXPECT_EQ(json({"genetics"})["gene_diversity"], 0.875);
  EXPECT_EQ(json({"genetics"})["fe"], 4);
  for (const char* command :
       {"effective-size", "gene-drop", "founders", "generations", "completeness", "mean-kinship"}) {
    text({command});
    EXPECT_EQ(code, 0) << command;
  }
}

TEST_F(GeneticsCommands, ListingsShowInbreedingAndGenerations) {
  const nlohmann::json shown = json({"show", "E"});
  EXPECT_EQ(shown["fcoef"], 0.25);
  EXPECT_NE(text({"list"}).find("0.2500"), std::string::npos);
  EXPECT_EQ(json({"list", "--low-inbreeding", "0.2"}).size(), 1U);
  studbook = table("given.csv", "id,sire,dam,fcoef\n1,,,0.125\n2,1,,\n");
  EXPECT_EQ(json({"show", "1"})["fcoef"], 0.125) << "what the table gives stays";
  EXPECT_EQ(json({"show", "2"})["fcoef"], 0);
}

}  // namespace
}  // namespace spx::console
