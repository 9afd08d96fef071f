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

TEST_F(GeneticsCommands, NamesForScriptsStay) {
  const struct {
    std::vector<std::string> words;
    const char* header;
  } cases[] = {
      {{"inbreeding"}, "id,f,ancestral_f,sire,dam"},
      {{"inbreeding", "--partial"}, "id,founder,partial_f"},
      {{"inbreeding", "--ancestors"}, "id,ancestor,f_part"},
      {{"kinship", "--all"}, "id1,id2,kinship"},
      {{"kinship", "C", "E", "--matrix"}, "id,C,E"},
      {{"mean-kinship"}, "id,sex,mk,known,f,offspring,age,location"},
      {{"founders", "--runs", "9"},
       "id,contribution,target,retention,lost,living_descendants,population_descendants,state"},
      {{"gene-drop", "--runs", "9"}, "statistic,what,mean,sd,minimum,low,median,high,maximum,runs,seed"},
      {{"generations"}, "id,cites,genetic,maternal,equivalent,traced,maximum"},
      {{"completeness", "--generations", "2"}, "id,index,g1,g2"},
      {{"pairs"}, "sire,dam,offspring_f,mean_mk,mk_difference,unknown,diversity_change"},
      {{"pairs", "--pick", "1"},
       "rank,sire,dam,offspring_f,mean_mk,mk_difference,unknown,diversity_change,gene_diversity"},
      {{"effective-size"}, "method,title,ne,se,low,high,used,left_out,assumes"},
      {{"effective-size", "--intervals"}, "path,mean,se,births"},
  };
  for (auto [words, header] : cases) {
    SCOPED_TRACE(words.front());
    std::vector<std::string> csv = words;
    csv.insert(csv.end(), {"--format", "csv"});
    const std::string shown = text(csv);
    EXPECT_EQ(shown.substr(0, shown.find_first_of("\r\n")), header);
    const nlohmann::json rows = json(words);
    ASSERT_FALSE(rows.empty());
    std::string keys;
    for (std::istringstream names(header); std::getline(names, keys, ',');) {
      EXPECT_TRUE(rows[0].contains(keys)) << keys;
    }
  }
  const nlohmann::json page = json({"genetics"});
  for (const char* key : {"animals", "living", "founders", "mean_f", "mean_kinship", "gene_diversity", "fg", "fe", "fa",
                          "equivalent_generations", "without_birth_date", "unknown"}) {
    EXPECT_TRUE(page.contains(key)) << key;
  }
}

// Every kind of placeholder for an unknown parent, as tables name it.
constexpr char PLACEHOLDERS[] =
    "id,sire,dam,sex,birth_date,origin\n"
    "A,WILD,WILD,m,1990,wild\n"
    "B,WILD,WILD,f,1990,wild\n"
    "C,WILD,B,f,1996,captive\n"
    "D,UNK,B,f,1996,captive\n"
    "E,UNKM,UNKF,f,1996,captive\n"
    "F,MULT3,B,f,1997,captive\n"
    "G,HERD 1,GROUP 2,f,1998,captive\n"
    "H,X9,B,f,1998,captive\n"
    "I,P12,B,f,1998,captive\n"
    "J,A,MULT,f,1999,captive\n";

TEST_F(GeneticsCommands, FoundersAreAnimalsAndNotPlaceholders) {
  studbook = table("placeholders.csv", PLACEHOLDERS);
  const figures all = numbers({"founders", "--runs", "9"}, "id", "living_descendants");
  EXPECT_EQ(all, (figures{{"A", 1}, {"B", 5}, {"E", 0}, {"G", 0}, {"P12", 1}, {"PB", 1}, {"X9", 1}}));
  EXPECT_EQ(numbers({"founders", "--runs", "9", "--unknown", "exclude"}, "id", "living_descendants"),
            (figures{{"A", 1}, {"B", 5}, {"P12", 1}, {"PB", 1}, {"X9", 1}}));
  // Of ten living animals B has itself and five halves; known are all but D, F and J (half), E and G.
  EXPECT_NEAR(numbers({"founders", "--runs", "9"}, "id", "contribution")["B"], 0.35, 1e-15);
  EXPECT_NEAR(numbers({"founders", "--runs", "9", "--unknown", "exclude"}, "id", "contribution")["B"], 3.5 / 6.5,
              1e-15);
  const std::string shown = text({"founders", "--runs", "9"});
  EXPECT_NE(shown.find("PB is the wild mate of B."), std::string::npos) << shown;
  EXPECT_NE(shown.find("3 missing parents of animals whose other parent is known: 15.0 % of the genes"),
            std::string::npos)
      << shown;
  EXPECT_EQ(numbers({"kinship", "X9", "H"}, "id2", "kinship"), (figures{{"H", 0.25}})) << "by the ID in the table";
  takeErrors();
  text({"inbreeding"});
  EXPECT_EQ(takeErrors(), "spx: 2 parents have no record (2 references): X9, P12\n") << "groups have none";
}

TEST_F(GeneticsCommands, AGroupMayListItsCandidates) {
  studbook = table("groups.csv",
                   "id,sire,dam,sex,birth_date\n1,,,m,1990\n2,,,m,1990\n3,,,f,1990\n4,MULT 1/2,3,f,2000\n"
                   "5,herd1 / 1/2,3,f,2000\n6,GROUP 1/7,3,f,2000\n8,1/2,3,f,2000\n9,HERD 1,3,f,2000\n");
  EXPECT_EQ(numbers({"kinship", "1", "4", "5", "6", "8", "9"}, "id2", "kinship").size(), 5U);
  const nlohmann::json pairs = json({"kinship", "1", "4", "5", "6", "8", "9", "--limit", "5"});
  std::vector<double> with_first;
  for (const nlohmann::json& pair : pairs) with_first.push_back(pair["kinship"]);
  // Sire of 4 with 1/2, of 5 with 2/3: half of that and half the kinship of 1 with itself. 1/2 is an animal.
  EXPECT_EQ(with_first.size(), 5U);
  EXPECT_NEAR(with_first[0], 0.125, 1e-15);
  EXPECT_NEAR(with_first[1], 1.0 / 6, 1e-15);
  EXPECT_EQ(std::vector<double>(with_first.begin() + 2, with_first.end()), std::vector<double>(3, 0.0));
  takeErrors();
  text({"genetics"});
  EXPECT_EQ(takeErrors(),
            "spx: 1 parent has no record (1 reference): 1/2\n"
            "spx: 1 group names an animal without a record and counts as unknown: GROUP 1/7\n");
  EXPECT_EQ(numbers({"mean-kinship"}, "id", "known")["6"], 0.5);
  EXPECT_EQ(numbers({"mean-kinship"}, "id", "known")["4"], 1);
}

// K's only offspring left a grandchild in zoo 2; Q's died.
constexpr char TWO_ZOOS[] =
    "id,sire,dam,sex,birth_date,birth_location,death_date,origin\n"
    "K,WILD,WILD,m,1980-01-01,1,1999-01-01,wild\n"
    "Q,WILD,WILD,m,1980-01-01,1,1999-01-01,wild\n"
    "M,WILD,WILD,f,1985-01-01,1,,wild\n"
    "L,K,M,m,1990-01-01,1,2001-01-01,captive\n"
    "R,Q,M,m,1990-01-01,1,2001-01-01,captive\n"
    "N,L,Z,f,1998-01-01,2,,captive\n"
    "Z,WILD,WILD,f,1992-01-01,2,,wild\n";

TEST_F(GeneticsCommands, AFounderWhoseDescendantsLiveElsewhereIsNotLost) {
  studbook = table("zoos.csv", TWO_ZOOS);
  std::map<std::string, std::string> states;
  for (const nlohmann::json& row : json({"founders", "--location", "1", "--runs", "9"})) {
    states[row["id"]] = row["state"].get<std::string>() + " " + row["living_descendants"].dump() + " " +
                        row["population_descendants"].dump();
  }
  EXPECT_EQ(states,
            (std::map<std::string, std::string>{{"K", "represented 0 1"}, {"M", "living 0 1"}, {"Q", "lost 0 0"}}));
  const nlohmann::json zoo = json({"genetics", "--location", "1"});
  EXPECT_EQ(zoo["lost_founders"], 1);
  EXPECT_EQ(zoo["living_founders"], 1);
  EXPECT_EQ(zoo["potential_founders"], 0);
  EXPECT_EQ(json({"genetics", "--sex", "male", "--on", "1998-06-01"})["lost_founders"], 0);
}

TEST_F(GeneticsCommands, UnrelatedAnimalsElsewhereChangeNothing) {
  const std::string family = FAMILY;
  const auto record = [&](const char* command) {
    nlohmann::json found = json({command, "--location", "1"});
    if (found.is_object()) found.erase("population");
    return found.dump();
  };
  const char* const commands[] = {"genetics", "mean-kinship", "founders", "pairs", "gene-drop", "inbreeding"};
  std::vector<std::string> whole;
  for (const char* command : commands) whole.push_back(record(command));
  const std::size_t others = family.find("F,WILD");
  studbook = table("alone.csv", family.substr(0, others) + family.substr(family.find("H,UNK")));
  for (std::size_t which = 0; which < std::size(commands); ++which) {
    EXPECT_EQ(record(commands[which]), whole[which]) << commands[which];
  }
}

TEST_F(GeneticsCommands, ExcludingUnknownParentsReachesEveryFigure) {
  const nlohmann::json all = json({"genetics"});
  const nlohmann::json known = json({"genetics", "--unknown", "exclude"});
  // H has no known sire and G no known dam: F is known of 5 animals, of whom E has 1/4.
  EXPECT_NEAR(known["mean_f"], 0.25 / 5, 1e-15);
  EXPECT_EQ(known["highest_f"], 0.25);
  for (const char* changed : {"mean_f", "mean_kinship", "gene_diversity", "fg", "fe", "fa", "fa_with_members"}) {
    EXPECT_NE(known[changed], all[changed]) << changed;
  }
  for (const char* same : {"living", "fe_known", "ne_inbreeding", "equivalent_generations", "completeness"}) {
    EXPECT_EQ(known[same], all[same]) << same;
  }
  EXPECT_NE(text({"genetics", "--unknown", "exclude"}).find("are over the known genes"), std::string::npos);
  EXPECT_TRUE(std::isnan(numbers({"mean-kinship", "--unknown", "exclude"}, "id", "f")["H"]));
  // G has half of F's genes: 1/4 is half of what it can have of them.
  EXPECT_EQ(numbers({"pairs", "--males", "F", "--unknown", "exclude"}, "dam", "offspring_f")["G"], 0.5);
  EXPECT_NE(numbers({"pairs", "--males", "F", "--unknown", "exclude"}, "dam", "diversity_change")["G"],
            numbers({"pairs", "--males", "F"}, "dam", "diversity_change")["G"]);
  const std::vector<std::vector<std::string>> refused = {
      {"inbreeding", "--partial"}, {"inbreeding", "--ancestors"}, {"gene-drop"}, {"effective-size"}, {"generations"}};
  for (std::vector<std::string> words : refused) {
    words.insert(words.end(), {"--unknown", "exclude"});
    text(words);
    EXPECT_EQ(code, 2) << words.front() << " does not depend on it";
    EXPECT_NE(takeErrors().find("--unknown"), std::string::npos) << words.front();
  }
}

TEST_F(GeneticsCommands, AnimalsWithoutDatesLiveOrAreLeftOut) {
  studbook =
      table("undated.csv",
            "id,sire,dam,sex,birth_date,death_date\n1,,,m,,\n2,,,f,,\n3,1,2,m,2010,\n4,1,2,f,2011,\n5,,,m,,2015\n");
  EXPECT_EQ(json({"genetics"})["living"], 4);
  EXPECT_EQ(json({"genetics"})["without_birth_date"], 2);
  EXPECT_EQ(json({"genetics", "--undated", "living"})["living"], 4);
  EXPECT_EQ(json({"genetics", "--undated", "exclude"})["living"], 2);
  EXPECT_EQ(json({"genetics", "--undated", "exclude"})["mean_kinship"], 0.375) << "they are ancestors all the same";
  for (const char* command : {"genetics", "inbreeding", "mean-kinship", "founders", "gene-drop", "generations",
                              "completeness", "pairs", "effective-size"}) {
    const std::string counted = text({command});
    EXPECT_NE(counted.find("2 of the 4 living animals have no birth date."), std::string::npos) << command;
    EXPECT_NE(text({command, "--undated", "exclude"}).find("2 animals without any date are left out"),
              std::string::npos)
        << command;
  }
  EXPECT_EQ(text({"kinship", "1", "3"}).find("living animals"), std::string::npos) << "named, whoever lives";
  EXPECT_EQ(json({"inbreeding"}).size() - json({"inbreeding", "--undated", "exclude"}).size(), 2U);
  text({"kinship", "1", "3", "--undated", "exclude"});
  EXPECT_NE(takeErrors().find("IDs are named instead"), std::string::npos);
  text({"genetics", "--undated", "maybe"});
  EXPECT_NE(takeErrors().find("--undated must be one of: living, exclude"), std::string::npos);
  studbook = table("bare.csv", "id,sire,dam\n1,,\n2,,\n");
  text({"genetics", "--undated", "exclude"});
  EXPECT_NE(takeErrors().find("--undated living counts the 2 animals without dates"), std::string::npos);
}

TEST_F(GeneticsCommands, PairsNameWhoIsLeftOut) {
  const std::string ranked = text({"pairs", "--males", "A,C,G"});
  EXPECT_NE(ranked.find("not alive (1 animal): A."), std::string::npos) << ranked;
  EXPECT_NE(ranked.find("not male (1 animal): G."), std::string::npos) << ranked;
  EXPECT_EQ(json({"pairs", "--max-kinship", "0"}).size(), 5U) << "G with two males, F with three females";
  EXPECT_EQ(json({"pairs", "--same-location"}).size(), 7U);
  EXPECT_EQ(json({"pairs", "--pick", "9"}).size(), 3U) << "each male once";
  EXPECT_EQ(json({"pairs", "--pick", "9", "--same-location"}).size(), 3U);
  EXPECT_NE(ranked.find("no reproductive ages are set"), std::string::npos) << ranked;
  EXPECT_NE(text({"pairs", "--males", "C", "--females", "D", "--max-kinship", "0.1"}).find("No pair meets"),
            std::string::npos);
}

TEST_F(GeneticsCommands, PairsLeaveOutWhoCannotBreed) {
  studbook = table("unable.csv",
                   "id,sire,dam,sex,birth_date,Neutered\n1,,,m,2000,no\n2,,,m,2000,YES\n3,,,f,2000,\n4,,,h,2000,\n"
                   "5,,,unknown,2000,\n");
  EXPECT_EQ(json({"pairs", "--unable", "neutered=yes"}).size(), 3U) << "1 and 4 with 3 and 4, but 4 not with itself";
  const std::string shown = text({"pairs", "--unable", "neutered=yes"});
  EXPECT_NE(shown.find("Left out, unable to breed by neutered=yes (1 animal): 2."), std::string::npos) << shown;
  EXPECT_NE(shown.find("1 hermaphrodite stands among the sires and the dams."), std::string::npos) << shown;
  const std::string unknown = "Left out, sex unknown (1 animal): 5.";
  EXPECT_NE(shown.find(unknown), std::string::npos) << shown;
  EXPECT_EQ(shown.find(unknown), shown.rfind(unknown)) << "once for both sexes";
  text({"pairs", "--unable", "neuterd=yes"});
  EXPECT_NE(takeErrors().find("did you mean \"Neutered\"?"), std::string::npos);
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
      {"1,,,m,1990-01-01\n2,,,unknown,1990-01-01\n", {"pairs"}, "(left out: 1 sex unknown)"},
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
  EXPECT_NE(text({"mean-kinship"}).find("1 living animal;"), std::string::npos);
  EXPECT_NE(text({"founders", "--runs", "1"}).find("1 founder, 1 with genes in the 1 living animal."),
            std::string::npos);
  EXPECT_NE(text({"kinship", "--all"}).find("There is only one animal"), std::string::npos);
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
