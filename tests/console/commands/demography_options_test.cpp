#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

std::vector<std::string> wordsOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The first animals of an example, and some animals with everything that can be wrong.
class MessyBook : public ConsoleTest {
 protected:
  static constexpr std::size_t SOUND = 100;
  static constexpr const char* COMMANDS[] = {"census",       "age-pyramid", "survival",   "life-table",
                                             "reproduction", "growth",      "projection", "demography"};

  MessyBook() {
    const std::string zoos = SPX_SOURCE_DIR "/examples/zoos/";
    std::string animals;
    std::set<std::string> ids;
    for (const std::string& line : linesOf(contentOf(zoos + "animals.csv"))) {
      if (ids.size() > SOUND) break;
      const std::string id = line.substr(0, line.find(','));
      ids.insert(id);
      animals += line + (animals.empty()       ? ",taxon,colour\n"
                         : ids.size() % 2 == 0 ? ",red deer,pale\n"
                                               : ",elk,dark\n");
    }
    table("animals.csv", animals +
                             "m1,WILD,WILD,male,,,,,,,captive-born,hand,elk,pale\n"
                             "m2,5,,male,1990-05-01,,2.1,1989-05-01,2.1,death,captive-born,hand,elk,pale\n"
                             "m3,5,,female,1980-05-01,,2.1,1980-05-01,2.1,death,captive-born,hand,elk,pale\n"
                             "m4,5,,female,1985-05-01,,2.1,1985-05-11,2.1,death,captive-born,hand,elk,pale\n"
                             "m5,,,female,1981-05-01,,2.1,1990-05-11,2.1,death,wild-born,hand,elk,pale\n"
                             "m6,,,female,1981,,2.1,1983-04,2.1,death,captive-born,hand,elk,dark\n"
                             "m7,,,,1982-06-01,900,2.1,1988-05-01,2.1,lost-to-follow-up,captive-born,hand,elk,dark\n"
                             "m8,,,,1984-06-01,,2.1,,,,captive-born,hand,elk,dark\n"
                             "m9,,,female,1984-02-01,,2.1,,,,captive-born,hand,elk,dark\n");
    std::string events;
    for (const std::string& line : linesOf(contentOf(zoos + "events.csv"))) {
      if (events.empty() || ids.contains(line.substr(0, line.find(',')))) events += line + "\n";
    }
    table("events.csv", events +
                            "m8,1980-01-01,arrival,2.2\n"
                            "m8,1985-01-01,arrival,2.2\n"
                            "m8,1986-01-01,population out,2.2\n"
                            "m8,1987-01-01,surplus,2.2\n"
                            "m9,1984-02-09,surplus,2.1\n");
    table("locations.csv", contentOf(zoos + "locations.csv"));
  }

  /// Standard output and error of a command, which must succeed.
  std::string answered(const std::string& words) {
    std::vector<std::string> all = {"--studbook", home};
    for (const std::string& word : wordsOf(words)) all.push_back(word);
    EXPECT_EQ(run(all), 0) << words;
    return takeOutput() + takeErrors();
  }

  /// The command for a day with many animals, with few runs where it makes runs.
  static std::string quick(const std::string& name, const std::string& options = "") {
    const bool has_runs = (name == "growth" || name == "projection") && options.find("--runs") == std::string::npos;
    return name + (name == "age-pyramid" ? " --on" : " --until") + " 1985-01-01" + (has_runs ? " --runs 5 " : " ") +
           options;
  }
};

/// An option and the commands that offer it: it changes the result of each of them, and no other command has it.
struct option_case {
  const char* option;
  const char* commands;
};

constexpr char ALL[] = "census age-pyramid survival life-table reproduction growth projection demography";
constexpr char SERIES[] = "census survival life-table reproduction growth projection demography";
constexpr char RATES[] = "life-table growth projection demography";

constexpr option_case OPTIONS[] = {
    {"--sex female", "census age-pyramid survival life-table reproduction growth demography"},
    {"--origin captive-born", ALL},
    {"--rearing parent", ALL},
    {"--taxon elk", ALL},
    {"--user-field colour=pale", ALL},
    {"--location 2.1", ALL},
    {"--birth-accuracy accurate", ALL},
    {"--death-accuracy accurate", ALL},
    {"--event-accuracy accurate", ALL},
    {"--low-generation 1", ALL},
    {"--high-generation 1", ALL},
    {"--low-inbreeding 0.01", ALL},
    {"--high-inbreeding 0.01", ALL},
    {"--neonates no", ALL},
    {"--stillbirths no", ALL},
    {"--den-emerge yes", ALL},
    {"--from 1979-01-01", SERIES},
    {"--until 1983-03-03", SERIES},
    {"--on 1983-01-01", "age-pyramid reproduction"},
    {"--class-width 3m", "age-pyramid survival life-table reproduction growth projection demography"},
    {"--classes 3", "age-pyramid survival life-table growth projection demography"},
    {"--handle-unknown ignore", "age-pyramid life-table growth projection demography"},
    {"--left-truncated no", "survival life-table growth projection demography"},
    {"--right-censored no", "survival life-table growth projection demography"},
    {"--prorating no", RATES},
    {"--same-sex no", RATES},
    {"--census-interval biennial", "census growth demography"},
    {"--census-month 7", "census growth demography"},
    {"--census-day 25 --census-month 5", "census growth demography"},
    {"--unit days", "age-pyramid survival life-table reproduction growth"},
    {"--by sex", "survival"},
    {"--by location", "survival"},
    {"--by period --period-years 5", "survival"},
    {"--by location --level region", "survival"},
    {"--summary", "survival"},
    {"--litter-days 366", "reproduction"},
    {"--line male", "growth"},
    {"--parent-age start", "growth"},
    {"--runs 30", "growth projection"},
    {"--seed 7", "growth projection"},
    {"--years 3", "projection"},
    {"--fewer-than 3", "projection"},
};

TEST_F(MessyBook, EveryOptionIsObeyedOrNotOffered) {
  for (const char* name : COMMANDS) {
    const std::string base = answered(quick(name));
    const std::string offered = answered(std::string(name) + " --help");
    for (const auto& [option, commands] : OPTIONS) {
      SCOPED_TRACE(std::string(name) + " " + option);
      const std::vector<std::string> names = wordsOf(commands);
      const std::string first = wordsOf(option).front();
      const bool is_offered = offered.find("  " + first + " ") != std::string::npos ||
                              offered.find("  " + first + ",") != std::string::npos;
      const bool is_obeyed = std::find(names.begin(), names.end(), name) != names.end();
      EXPECT_EQ(is_offered, is_obeyed);
      if (is_obeyed) {
        EXPECT_NE(answered(quick(name, option)), base) << "the option changes nothing";
      }
    }
  }
}

TEST_F(MessyBook, OptionsThatExcludeEachOtherSaySo) {
  const std::pair<const char*, const char*> ROWS[] = {
      {"survival --level region", "--level chooses the places to compare; it can only be used with --by location"},
      {"survival --by sex --period-years 5", "--period-years can only be used with --by period"},
      {"survival --summary --classes 5", "--summary"},
      {"growth --line male --sex female", "--line"},
      {"growth --sex unknown", "growth needs females or males"},
      {"survival --by location --level country", "is not a level"},
  };
  for (const auto& [words, message] : ROWS) {
    SCOPED_TRACE(words);
    std::vector<std::string> all = wordsOf(words);
    all.insert(all.begin(), {"--studbook", home});
    EXPECT_EQ(run(all), 2);
    EXPECT_NE(takeErrors().find(message), std::string::npos);
  }
}

/// The numbers in "120 of 159 animals counted; left out: 3 stillborn, 2 age unknown."
struct counted_animals {
  std::size_t counted = 0;
  std::size_t in_view = 0;
  std::size_t left_out = 0;
};

counted_animals countedIn(const std::string& line) {
  counted_animals found;
  EXPECT_EQ(std::sscanf(line.c_str(), "%zu of %zu", &found.counted, &found.in_view), 2) << line;
  const std::size_t at = line.find("left out: ");
  std::istringstream reasons(at == std::string::npos ? "" : line.substr(at + 10));
  for (std::string reason; std::getline(reasons, reason, ',');) found.left_out += std::stoul(reason);
  return found;
}

TEST_F(MessyBook, CountedAndLeftOutAddUpToTheView) {
  // The records alone decide which animals are in the view; places, periods and early deaths leave some of them out.
  const std::pair<const char*, const char*> VIEWS[] = {
      {"", ""},
      {"--sex female", ""},
      {"--birth-accuracy accurate --origin captive-born", ""},
      {"--taxon elk", "--location 2.1 --neonates no"},
      {"--user-field colour=pale", "--stillbirths no --neonates no"},
  };
  for (const auto& [records, others] : VIEWS) {
    SCOPED_TRACE(std::string(records) + " " + others);
    const std::size_t in_view = linesOf(answered(std::string("list --format csv --columns id ") + records)).size() - 1;
    for (const char* name : COMMANDS) {
      SCOPED_TRACE(name);
      const bool is_of_both_sexes = std::string(name) == "projection" || std::string(name) == "reproduction";
      if (is_of_both_sexes && std::string(records) == "--sex female") continue;
      const std::string answer = answered(quick(name, std::string("--format csv ") + records + " " + others));
      std::size_t notes = 0;
      for (std::string line : linesOf(answer)) {
        if (line.find(" counted.") == std::string::npos && line.find(" counted; left out") == std::string::npos)
          continue;
        for (const char* start : {"spx: ", "Population: ", "Survival: "}) {
          if (line.starts_with(start)) line.erase(0, std::string(start).size());
        }
        const counted_animals found = countedIn(line);
        ++notes;
        EXPECT_EQ(found.in_view, in_view);
        EXPECT_EQ(found.counted + found.left_out, in_view);
      }
      EXPECT_GE(notes, 1U);
    }
  }
}

TEST_F(MessyBook, ReasonsAreNamed) {
  const std::pair<const char*, const char*> ROWS[] = {
      {"census", "1 neither birth nor entry is dated, 1 died or lost before birth"},
      {"census --stillbirths no --neonates no", "2 stillborn, 7 died as neonates"},
      {"age-pyramid --location 2.1", " never in the chosen locations, "},
      {"survival", "1 wild-born with unknown day of entry"},
      {"reproduction --from 1980-01-01 --until 1980-12-31", " not born there in the period"},
      {"survival", "4 age unknown"},
      {"survival --right-censored no", " no death known"},
      {"survival --by location --level region --from 1984-01-01", " not there in the period"},
      {"life-table --handle-unknown ignore", " sex unknown, "},
      {"census", "1 event before birth ignored, 1 departure of animals already gone"},
      {"age-pyramid --den-emerge yes", "It is not set when the young leave the den"},
  };
  for (const auto& [words, reason] : ROWS) {
    const std::string answer = answered(std::string(words) + " --format csv");
    EXPECT_NE(answer.find(reason), std::string::npos) << words << ": " << reason << "\n" << answer;
  }
}

TEST_F(MessyBook, AnAgeEndsWhenTheAnimalWasLastKnown) {
  const std::string rows = answered("list --columns id,age_years,status --where id=m6 --format csv") +
                           answered("list --columns id,age_years,status --where id=m7 --format csv") +
                           answered("list --columns id,age_years,status --where id=m8 --format csv");
  EXPECT_NE(rows.find("\nm7,5."), std::string::npos) << rows;
  EXPECT_NE(rows.find("\nm8,1.5"), std::string::npos) << "it left at one and a half\n" << rows;
}

TEST_F(MessyBook, TablesFitATerminal) {
  for (const char* words :
       {"census", "age-pyramid --on 1985-01-01", "survival --by sex", "survival --summary --by location",
        "survival --summary --by period --unit days", "life-table --unit days", "reproduction",
        "reproduction --unit days", "growth --runs 5", "projection --runs 5", "demography"}) {
    for (const std::string& line : linesOf(answered(words))) EXPECT_LE(line.size(), 80U) << words << "\n" << line;
  }
}

TEST_F(MessyBook, NamesForScriptsStay) {
  const std::pair<const char*, const char*> ROWS[] = {
      {"census", "date,males,females,unknown,total,births,deaths,entries,departures,losses"},
      {"age-pyramid", "age,males,females,unknown"},
      {"survival", "group,time,at_risk,deaths,censored,survival,std_error,lower,upper"},
      {"survival --summary --by sex",
       "group,watched,deaths,expected,median,median_lower,median_upper,mean,mean_error,chi_square,df,p"},
      {"life-table",
       "sex,age,at_risk,deaths,q,p,l,e,births,m,q_lower,q_upper,l_lower,l_upper,exposure,L,T,v,stable_age"},
      {"reproduction", "measure,sex,n,mean,median,min,max,lower,upper"},
      {"growth",
       "line,r0,r0_lower,r0_upper,generation_time,generation_time_lower,generation_time_upper,r,r_lower,r_upper,"
       "lambda,lambda_lower,lambda_upper,lambda_leslie,lambda_census,generation_time_stable,runs,seed"},
      {"projection", "year,expected,females,males,lower,median,upper,extinct,fewer"},
      {"demography", "section,figure,value,lower,upper"},
  };
  for (const auto& [words, header] : ROWS)
    EXPECT_EQ(linesOf(answered(std::string(words) + " --format csv"))[0], header);
}

TEST_F(MessyBook, TheGrowthOfTheCensusIsOneNumber) {
  for (const char* view : {"", " --from 1976-01-01 --until 1990-12-31", " --census-interval biennial --sex female",
                           " --census-month 7 --location 2.1"}) {
    SCOPED_TRACE(view);
    const auto growth =
        nlohmann::json::parse(linesOf(answered(std::string("growth --runs 0 --format json") + view))[0]);
    std::string page = answered(std::string("demography --format csv") + view);
    const std::string figure = "\"lambda by census, whole period\",";
    ASSERT_NE(page.find(figure), std::string::npos) << page;
    page.erase(0, page.find(figure) + figure.size());
    EXPECT_DOUBLE_EQ(std::stod(page), growth["lambda_census"].get<double>());
    const std::string census = answered(std::string("census") + view);
    char expected[64];
    std::snprintf(expected, sizeof expected, "Growth over the period: %.1f %% a year.", 100 * (std::stod(page) - 1));
    EXPECT_NE(census.find(expected), std::string::npos) << census;
  }
}

TEST_F(MessyBook, UnitsAreYearsOrDays) {
  const auto column = [this](const std::string& words, std::size_t at) {
    std::vector<double> values;
    for (const std::string& line : linesOf(answered(words + " --format csv"))) {
      std::istringstream cells(line);
      std::string cell;
      for (std::size_t i = 0; i <= at; ++i) std::getline(cells, cell, ',');
      if (!cell.empty() && (std::isdigit(static_cast<unsigned char>(cell[0])) != 0)) values.push_back(std::stod(cell));
    }
    return values;
  };
  const std::pair<const char*, std::size_t> TIMES[] = {
      {"age-pyramid --on 1985-01-01", 0}, {"survival", 1},
      {"survival --summary", 4},          {"life-table --columns sex,age", 1},
      {"life-table --columns sex,e", 1},  {"growth --runs 20", 4}};
  for (const auto& [words, at] : TIMES) {
    SCOPED_TRACE(words);
    const std::vector<double> years = column(words, at);
    const std::vector<double> days = column(std::string(words) + " --unit days", at);
    ASSERT_EQ(years.size(), days.size());
    ASSERT_FALSE(years.empty());
    for (std::size_t i = 0; i < years.size(); ++i) EXPECT_NEAR(years[i] * 365.25, days[i], 1e-6);
  }
}

/// Studbooks with hardly any data.
struct small_book {
  const char* animals;
  const char* command;
  const char* text;
};

constexpr char NOBODY[] = "";
constexpr char ONE[] = "1,,,f,2001-05-01,\n";
constexpr char UNDATED[] = "1,,,f,,\n2,,,m,,\n3,2,1,m,,\n";
constexpr char DEATHLESS[] = "1,,,f,2001-01-05,\n2,,,m,2001-03-05,\n3,2,1,m,2004-04-04,\n4,2,1,f,2005-06-06,\n";
constexpr char BY_YEAR[] = "1,,,f,2001,\n2,,1,m,2003,\n";
constexpr char STILLBORN[] = "1,,,f,2001-01-05,2001-01-05\n";

constexpr small_book SMALL_BOOKS[] = {
    {NOBODY, "census", "No animals of the view were ever present.\n\n0 of 0 animals counted."},
    {NOBODY, "age-pyramid", "No animals are present on that day."},
    {NOBODY, "survival", "No animal was watched at a known age.\n\n0 of 0 animals counted."},
    {NOBODY, "life-table", "No animal was watched at a known age.\n\n0 of 0 animals counted."},
    {NOBODY, "projection", "there is nothing to project.\n\n0 of 0 animals counted."},
    {NOBODY, "growth", "Net reproductive rate R0  -\n"},
    {NOBODY, "demography", "survival to 30 days                        -"},
    {UNDATED, "census", "0 of 3 animals counted; left out: 3 neither birth nor entry is dated."},
    {UNDATED, "survival", "0 of 3 animals counted; left out: 3 neither birth nor entry is dated."},
    {UNDATED, "reproduction", "0 births: 0 male, 0 female, 0 of unknown sex."},
    {ONE, "census", "0 of 1 animal counted; left out: 1 not there in the period."},
    {ONE, "age-pyramid", "1 animal present on 2001-05-01."},
    {ONE, "demography", "survival to 1 year                         -"},
    {ONE, "reproduction", "1 birth without a dam and 0 without a day; from months"},
    {STILLBORN, "survival", "all: 1 watched, 1 death; median 0.00 (95 % not reached to not reached)"},
    {STILLBORN, "life-table", "first 30 days 100.0 %"},
    {STILLBORN, "projection", "No animals are present on 2001-01-05: there is nothing to project."},
    {BY_YEAR, "age-pyramid", "2 animals present on 2003-12-31."},
    {BY_YEAR, "demography", "all animals, until 2003-12-31"},
    {DEATHLESS, "survival", "median not reached; mean up to the last age 4.42;\nfirst year 100.0 % survive."},
    {DEATHLESS, "survival", "No death is recorded: every animal counts as alive."},
    {DEATHLESS, "growth", "No death is recorded: every animal counts as alive."},
    {DEATHLESS, "census", "3 of 4 animals counted; left out: 1 not there in the period."},
    {DEATHLESS, "reproduction", "Adults that have bred  female       1  1.00"},
};

TEST_F(ConsoleTest, SmallBooksAreReportedAsTheyAre) {
  for (const auto& [animals, name, text] : SMALL_BOOKS) {
    SCOPED_TRACE(std::string(name) + " of\n" + animals);
    const std::string book = table("book.csv", std::string("id,sire,dam,sex,birth_date,death_date\n") + animals);
    ASSERT_EQ(run({"--studbook", book, name}), 0) << takeErrors();
    const std::string answer = takeOutput();
    EXPECT_NE(answer.find(text), std::string::npos) << answer;
    EXPECT_EQ(answer.find("nan"), std::string::npos) << answer;
    for (const std::string& line : linesOf(answer)) EXPECT_LE(line.size(), 80U) << line;
  }
}

}  // namespace
}  // namespace spx::console
