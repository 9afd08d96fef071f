#include <algorithm>
#include <functional>

#include "tests/console/check/check_fixture.h"

namespace spx::console {
namespace {

constexpr char PARENTS[] = "id,sire,dam,sex,birth_date\n1,,,m,1980\n2,,,f,1980\n";
constexpr char PLACES[] = "id,sire,dam,sex,birth_date,birth_location\n1,,,m,1980,1\n2,,,f,1980,1\n";
constexpr char ENDS[] = "id,sire,dam,sex,birth_date,death_date,death_event\n";

void setBreedingAges() {
  LifeHistory.setReproductiveAge(SEX::MALE, {700, 6000});
}

void setGestation() {
  LifeHistory.setGestation(100);
}

struct rule_case {
  CHECK check;
  std::string animals;
  const char* also = "";  ///< codes of other findings in the example
  const char* events = "";
  const char* locations = "";
  std::function<void()> set_life_history = {};
};

// The message must equal the documented one.
TEST_F(CheckTest, EveryRuleFindsItsExample) {
  const std::string base = PARENTS;
  const std::string places = PLACES;
  const std::string ends = ENDS;
  constexpr char ZOOS[] = "zoo,1,North\nzoo,2,South\n";
  const rule_case cases[] = {
      {CHECK::DUPLICATE_ID, base + "3,,,m,2000\n3,1,2,f,2000-05-01\n"},
      {CHECK::PADDED_ID, base + "3,,,m,2000\n\"3 \",,,f,2001\n"},
      {CHECK::LITTER_TWICE, base + "3,1,2,m,2000-05-01\n3,1,2,m,2000-05-01\n", "duplicate-id "},
      {CHECK::PARENT_SEX, base + "3,2,,m,2000\n"},
      {CHECK::PARENT_BOTH_SEXES, "id,sire,dam,sex,birth_date\n1,,,,1980\n3,1,,m,2000\n4,,1,m,2000\n"},
      {CHECK::OWN_PARENT, base + "3,3,2,m,2000\n"},
      {CHECK::PARENT_CYCLE, "id,sire,dam,sex\n1,3,,m\n3,4,,m\n4,1,,m\n", "undecided "},
      {CHECK::FUTURE_DATE, base + "3,1,2,m,2090-01-01\n"},
      {CHECK::DEATH_BEFORE_BIRTH, ends + "3,,,m,1991,1980,\n"},
      {CHECK::BORN_BEFORE_PARENT, "id,sire,dam,sex,birth_date\n1,,,m,1995-01-01\n3,1,,m,1990-05-01\n"},
      {CHECK::BORN_AFTER_DAM_DIED, ends + "2,,,f,1980,1999,\n3,,2,m,2000-05-01,,\n"},
      {CHECK::CONCEIVED_AFTER_SIRE_DIED, ends + "1,,,m,1980,1990,\n3,1,,m,2000-05-01,,\n"},
      {CHECK::EVENT_BEFORE_BIRTH, base + "3,,,m,2000-05-01\n", "", "3,1999-02-03,arrival,\n"},
      {CHECK::EVENT_AFTER_DEATH, ends + "3,,,m,,2005,\n", "", "3,2006-02-03,arrival,\n"},
      {CHECK::DAM_IN_TWO_PLACES, places + "3,1,2,m,2000-05-01,1\n4,1,2,m,2000-05-01,2\n", "", "", ZOOS},
      {CHECK::PLACEHOLDER_ID, base + "Pablo,1,2,m,2000\n"},
      {CHECK::MISSING_PARENT, base + "3,1l,2,m,2000\n"},
      {CHECK::PARENT_TOO_YOUNG, "id,sire,sex,birth_date\n1,,m,1999-11-01\n3,1,m,2000-05-01\n", "", "", "",
       setBreedingAges},
      {CHECK::PARENT_TOO_OLD, "id,sire,sex,birth_date\n1,,m,1980-01-01\n3,1,m,2000-05-01\n", "", "", "",
       setBreedingAges},
      {CHECK::PARENTS_APART, places + "3,1,2,m,2000-05-01,1\n", "", "1,1990-01-01,arrival,2\n", ZOOS},
      {CHECK::LITTER_INTERVAL, base + "3,1,2,m,2000-05-01\n4,1,2,f,2000-06-20\n", "", "", "", setGestation},
      {CHECK::NEAR_DUPLICATE, base + "3,1,2,m,2000-05-01\n4,1,2,m,2000-05-01\n"},
      {CHECK::EVENT_AFTER_LOSS, ends + "3,,,m,,2005,lost-to-follow-up\n", "", "3,2006-02-03,arrival,\n"},
      {CHECK::OVERLAPPING_STAYS, places + "3,,,m,2000,1\n", "", "3,2001-02-03,arrival,1\n3,2001-02-03,arrival,2\n",
       ZOOS},
      {CHECK::SIMILAR_LOCATIONS, "id,birth_location\n3,Dresden Zoo\n4,Drezden Zoo\n"},
      {CHECK::PARENT_SEX_UNKNOWN, "id,sire,sex,birth_date\n1,,,1980\n3,1,m,2000\n"},
      {CHECK::UNDECIDED, "id,sire,sex,birth_date\n1,,m,\n3,1,m,2000\n"},
  };
  std::size_t rule = 0;
  for (const rule_case& one : cases) {
    const check_code& code = codeOf(one.check);
    SCOPED_TRACE(code.code);
    EXPECT_EQ(one.check, checkCodes()[rule++].check) << "every rule has a row";
    LifeHistory.initialize();
    if (one.set_life_history) {
      one.set_life_history();
    }
    std::vector<finding> findings = findingsIn(one.animals, one.events, one.locations);
    const auto found =
        std::find_if(findings.begin(), findings.end(), [&](const finding& f) { return f.check == one.check; });
    if (found == findings.end()) {
      ADD_FAILURE() << codesOf(findings);
      continue;
    }
    EXPECT_EQ(found->message, code.example);
    findings.erase(found);
    EXPECT_EQ(codesOf(findings), one.also);
  }
  EXPECT_EQ(rule, checkCodes().size());
}

TEST_F(CheckTest, WhatMayBeTrueIsNotFound) {
  const std::string base = PARENTS;
  const std::string ends = ENDS;
  std::string litters = base;
  for (int id = 10; id < 90; ++id) {
    litters += std::to_string(id) + ",1,2,m," + std::to_string(1990 + id / 3) + "-05-01\n";
  }
  const struct {
    const char* why;
    std::string animals;
    const char* found = "";
    const char* events = "";
    const char* locations = "";
  } cases[] = {
      {"born in the parent's year, by year", base + "3,1,2,m,1980\n", "undecided "},
      {"hermaphrodites are sires and dams", "id,sire,dam,sex,birth_date\n1,,,h,1980\n3,1,,m,2000\n4,,1,m,2000\n"},
      {"unknown parents and groups", base + "3,UNK 7,GROUP 2,m,2000\n4,WILD,2,m,2000\n5,MULT,UNKF,f,2000\n"},
      {"died in the month of the birth", ends + "3,,,m,1991-05-20,1991-05,\n"},
      {"the dam died in the year of the birth", ends + "2,,,f,1980,2000,\n3,,2,m,2000-05-01,,\n"},
      {"the sire died before the birth", ends + "1,,,m,1980,1999,\n3,1,,m,2000-05-01,,\n"},
      {"a lost sire may live", ends + "1,,,m,1980,1990,lost-to-follow-up\n3,1,,m,2000-05-01,,\n"},
      {"an estimate that is wide enough",
       "id,sire,sex,birth_date,birth_accuracy,birth_range\n1,,m,1995-01-01,date range,2000\n3,1,m,1990-05-01,,\n",
       "undecided "},
      {"litters are usual here", litters},
      {"enclosures of one institution",
       "id,sire,dam,sex,birth_date,birth_location\n2,,,f,1980,1.1\n"
       "3,,2,m,2000-05-01,1.1\n4,,2,f,2000-05-01,1.2\n",
       "", "", "zoo,1,North\nenclosure,1.1,East\nenclosure,1.2,West\n"},
      {"the dam moved in the days of the birth", std::string(PLACES) + "3,,2,m,2000-05,2\n", "",
       "2,2000-05-15,arrival,2\n", "zoo,1,North\nzoo,2,South\n"},
      {"names that differ on purpose",
       "id,birth_location\n3,Zoo A\n4,Zoo B\n5,Aviary 11\n6,Aviary 12\n7,Northern\n8,Southern\n"},
      {"came back after a release", base, "", "1,1990-01-01,released,\n1,1991-01-01,from wild,\n"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.why);
    EXPECT_EQ(codesOf(findingsIn(one.animals, one.events, one.locations)), one.found);
  }
}

TEST_F(CheckTest, MissingParentsAreGuessed) {
  const std::string base =
      "id,sire,dam,sex,birth_date\n1,,,m,1980\n11,,,m,1980\nAB0042,,,f,1980\nLuna Bella,,,f,1980\n417,,,m,1980\n";
  const std::pair<const char*, const char*> cases[] = {{"9,1l,,m,2000", "Did you mean 11?"},
                                                       {"9,,ab42,m,2000", "Did you mean AB0042?"},
                                                       {"9,,AB0043,m,2000", "Did you mean AB0042?"},
                                                       {"9,AB0043,,m,2000", ""},
                                                       {"9,,luna-bella,m,2000", "Did you mean Luna Bella?"},
                                                       {"9,418,,m,2000", ""},
                                                       {"9,,Luna Bela,m,1970", ""}};
  for (const auto& [row, suggestion] : cases) {
    const std::vector<finding> findings = findingsIn(base + row + "\n");
    ASSERT_EQ(codesOf(findings), "missing-parent ") << row;
    EXPECT_EQ(findings[0].suggestion, suggestion) << row;
    EXPECT_EQ(findings[0].place.line, 7U);
  }
}

TEST_F(CheckTest, ACureIsGivenWhereOneIsSensible) {
  const std::string base = PARENTS;
  const std::pair<std::string, std::vector<std::vector<std::string>>> cases[] = {
      {base + "3,2,1,m,2000\n", {{"3", "sire", "1"}, {"3", "dam", "2"}}},
      {base + "3,3,,m,2000\n", {{"3", "sire", ""}}},
      {base + "8,,,,1990\n3,8,,m,2000\n", {{"8", "sex", "male"}}},
      {base + "3,001,,m,2000\n", {{"3", "sire", "1"}}},
      {base + "3,1l,,m,2000\n", {}},
      {base + "3,2,,m,2000\n", {}}};
  for (const auto& [animals, cure] : cases) {
    std::vector<std::vector<std::string>> changes;
    const finding found = findingsIn(animals).front();
    for (const field_change& change : found.cure) {
      changes.push_back({change.animal, change.field, change.value});
    }
    EXPECT_EQ(changes, cure) << animals;
  }
}

TEST_F(CheckTest, AChangeAddsAndCuresFindings) {
  const std::string base = PARENTS;
  const std::vector<finding> before = findingsIn(base + "3,2,,m,2000\n4,4,,m,2000\n");
  const std::vector<finding> after = findingsIn(base + "5,,,m,2000\n3,2,,m,2000\n4,x,,m,2000\n");
  EXPECT_EQ(codesOf(addedFindings(before, after)), "missing-parent ");
  EXPECT_EQ(codesOf(addedFindings(after, before)), "own-parent ");
}

// Cycles that share animals are reported as one, others each; a long one is shortened only in its message.
TEST_F(CheckTest, CyclesAreNamedOnce) {
  std::string animals = "id,sire,dam,sex\n";
  for (int id = 1; id <= 50000; ++id) {
    animals += std::to_string(id) + "," + std::to_string(id % 50000 + 1) + "," + std::to_string(id / 2) + ",h\n";
  }
  std::vector<finding> findings = findingsIn(animals + "a,b,c,h\nb,a,,h\nc,d,,h\nd,c,,h\n");
  std::erase_if(findings, [](const finding& one) { return one.check != CHECK::PARENT_CYCLE; });
  ASSERT_EQ(findings.size(), 3U);
  EXPECT_LT(findings[0].message.size(), 400U);
  EXPECT_EQ(findings[1].animals, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(findings[2].animals, (std::vector<std::string>{"c", "d"}));
}

TEST_F(CheckTest, TheDocumentationHasEveryRule) {
  const std::string page = contentOf(SPX_SOURCE_DIR "/docs/check.md");
  for (const check_code& rule : checkCodes()) {
    const std::string row = std::string("| `") + rule.code + "` | " + severityName(rule.severity) + " | " +
                            rule.explanation + " | " + rule.example + " |\n";
    EXPECT_NE(page.find(row), std::string::npos) << row;
  }
}

TEST_F(CheckTest, TheCommandShowsFindingsAndSaysHowBadTheyAre) {
  std::string animals = PARENTS;
  for (int id = 10; id < 22; ++id) {
    animals += std::to_string(id) + ",missing" + std::to_string(id) + ",2,m,2000\n";
  }
  const std::string file = table("a.csv", animals);
  const std::string wrong = table("wrong.csv", animals + "30,30,,m,2000\n");
  const struct {
    std::vector<std::string> words;
    int code;
    const char* shown;
  } cases[] = {
      {{"--studbook", file, "check"}, 0, "  ... and 2 more; --all shows them\n\nFound 12 warnings in 14 animals.\n"},
      {{"--studbook", file, "check", "--all"}, 0, ": missing21 has no record, but is the sire of 21\n"},
      {{"--studbook", file, "check", "--strict"}, 3, "12 warnings"},
      {{"--studbook", file, "check", "--strict", "--except", "missing-parent"}, 0, "Found nothing in 14 animals.\n"},
      {{"--studbook", wrong, "check"}, 3, "Found 1 error, 12 warnings in 15 animals.\n"},
      {{"--studbook", wrong, "check", "--except", "own-parent,parent-sex"}, 0, "12 warnings"},
      {{"--studbook", wrong, "check", "--only", "own-parent"},
       3,
       "Animals that are their own parent: 1 (error, own-parent)\n"},
      {{"--studbook", wrong, "check", "--only", "own-parents"}, 2, ""},
      {{"check", "--codes"}, 0, "\nduplicate-id "},
      {{"--studbook", wrong, "check", "--only", "own-parent", "--format", "json"},
       3,
       "\"message\":\"30 is its own sire\",\"suggestion\":\"Correct the sire, or make it unknown\","
       "\"values\":{\"role\":\"sire\"},\"fix\":[{\"animal\":\"30\",\"field\":\"sire\",\"value\":\"\"}]}"},
      {{"--studbook", wrong, "check", "--only", "own-parent", "--format", "csv"},
       3,
       "severity,code,animals,file,line,message,suggestion,values,fix\nerror,own-parent,30,"},
  };
  for (const auto& [words, code, shown] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    EXPECT_EQ(run(words), code);
    const std::string output = takeOutput();
    EXPECT_NE(output.find(shown), std::string::npos) << output;
    takeErrors();
  }
}

TEST_F(CheckTest, TheCommandNamesTheRowOfTheEvent) {
  const std::string animals = table("a.csv", "id,sex,birth_date,death_date\n7,f,1999,\n1,m,2000-05-01,2010\n");
  const std::string events = table("e.csv",
                                   "id,date,event\n7,2001,arrival\n1,2000-04,arrival\n7,2003,arrival\n"
                                   "1,2012,arrival\n7,2099,arrival\n");
  const std::string stored = at("s.studbook");
  ASSERT_EQ(run({"--events", events, "--studbook", stored, "import", animals}), 0) << takeErrors();
  // A studbook file has rows, which begin after the titles.
  for (const auto& [words, file, before] :
       {std::tuple{std::vector<std::string>{"--events", events, "--studbook", animals}, events, 0},
        {{"--studbook", stored}, stored + " (events)", 1}}) {
    std::vector<std::string> line = words;
    line.insert(line.end(), {"check", "--format", "csv"});
    EXPECT_EQ(run(line), 3);
    const std::string output = takeOutput();
    for (const auto& [row, message] : {std::pair{3, "1 was born 2000-05-01, but has the event arrival in Apr 2000"},
                                       {5, "1 died 2010, but has the event arrival in 2012"},
                                       {6, "7 has the event arrival in 2099, which is in the future"}}) {
      EXPECT_NE(output.find(file + "," + std::to_string(row - before) + ","), std::string::npos) << output;
      EXPECT_NE(output.find(message), std::string::npos) << output;
    }
  }
}

}  // namespace
}  // namespace spx::console
