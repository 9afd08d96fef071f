// View files and the listings of views.
#include <csignal>
#include <filesystem>
#include <stdexcept>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "spx/support/configuration.h"
#include "spx/views/data_filter.h"
#include "spx/views/meta_population.h"

#include "tests/support/temporary_home.h"

namespace spx {
namespace {

constexpr char FAILED[] = "Could not save view settings\n";

qs_lib::day_number dayOf(const char* date) {
  return qs_lib::msToDay(qs_lib::dateToJulian(std::string(date)));
}

class ViewFiles : public TemporaryHome {
 protected:
  ViewFiles() {
    MetaPop = MetaPopulation();
    MetaPop.addLevel("region");
    MetaPop.addMember("3", "Europe");
    Subspecies.add("A");
    view.path = home;
    std::filesystem::current_path(home);
  }

  // A view in which no stored setting has its default.
  void fill() {
    view.filter_id = 12;
    view.start_date = dayOf("1990-03-05");
    view.end_date = dayOf("2000-06-30");
    view.monitor_date = 0;
    view.low_generation = 0.25;
    view.high_inbreeding = 0.12345;
    view.low_age = -1;
    view.high_age = 3650;
    view.birth_accuracy = DATE_ACCURACY::BY_DAY;
    view.death_accuracy = DATE_ACCURACY::BY_YEAR;
    view.event_accuracy = DATE_ACCURACY::ACCURATE;
    view.sex = SEX::MALE;
    view.handle_unknown = HANDLE_UNKNOWN::IGNORE;
    view.handle_parent = HANDLE_UNKNOWN::EQUAL;
    view.origin = BIRTH_TYPE{0xFFFFFFFF};  // from a damaged file
    view.contraception = BIRTH_CONTROL::INTACT;
    view.census_interval = qs_lib::TIME_INTERVAL::MONTH;
    view.census_day = 31;
    view.census_month = 12;
    view.generic_parents = view.use_emerge = view.prorating = true;
    view.use_neonate = view.use_stillbirth = view.same_sex = false;
    view.left_truncated = view.right_censored = false;
    view.addTaxon("A");
  }

  std::string entries(const std::string& name) const {
    qs_lib::Configuration file;
    file.setDirectory(home);
    file.setName(name);
    file.setExtension("view");
    EXPECT_TRUE(file.load());
    std::string text;
    for (const auto& [key, entry] : file.entries()) {
      text += key + "|" + entry.type + "|" + entry.value + "|" + entry.description + "\n";
    }
    return text;
  }

  void change(const std::string& key, const std::string& value) const {
    qs_lib::Configuration file;
    file.setDirectory(home);
    file.setName("v");
    file.setExtension("view");
    file.setSection("VIEW");
    file.load();
    file.set(key, "TEXT", value, "");
    EXPECT_TRUE(file.save());
  }

  DataFilter view;
};

TEST_F(ViewFiles, HoldAllSettingsWithTypesAndDescriptions) {
  fill();
  view.save("v");
  EXPECT_EQ(entries("v"),
            "BIRTH_DATE_ACCURACY|INTEGER|1|Accuracy in birth\n"
            "CENSUS_DAY|INTEGER|31|Census day\n"
            "CENSUS_INTERVAL|INTEGER|2|Census interval\n"
            "CENSUS_MONTH|INTEGER|12|Census month [1-12]\n"
            "CONTRACEPTION|INTEGER|0|Contraception method\n"
            "DEATH_DATE_ACCURACY|INTEGER|4|Accuracy in death\n"
            "END_DATE|DATE|2000-06-30|End date\n"
            "EVENT_DATE_ACCURACY|INTEGER|0|Accuracy in events\n"
            "FILTER_ID|INTEGER|12|Filter ID\n"
            "GENERIC_PARENTS|BOOLEAN|true|Assume generic unknown parents\n"
            "HANDLE_PARENT|TEXT|1|Method of handling unknown parents\n"
            "HANDLE_UNKNOWN|TEXT|0|Method of handling unknown sex\n"
            "HIGH_AGE|REAL|3650.0|Upper age\n"
            "HIGH_GENERATION|REAL|nan|Upper range of generation number\n"
            "HIGH_INBREEDING|REAL|0.1235|Upper range of inbreeding\n"
            "LEFT_TRUNCATED|BOOLEAN|false|Left truncated\n"
            "LOW_AGE|REAL|-1.0|Lower age\n"
            "LOW_GENERATION|REAL|0.2|Lower range of generation number\n"
            "LOW_INBREEDING|REAL|nan|Lower range of inbreeding\n"
            "METAPOPULATION|TEXT||Location(s) included in metapopulation\n"
            "MONITOR_DATE|DATE||Monitor date\n"
            "ORIGIN|INTEGER|-1|Origin of idividuals\n"
            "PRORATING|BOOLEAN|true|Prorating\n"
            "RIGHT_CENSORED|BOOLEAN|false|Right censored\n"
            "SAME_SEX|BOOLEAN|false|Same sex offspring\n"
            "SEX|INTEGER|1|Selected Sex group\n"
            "START_DATE|DATE|1990-03-05|Start date\n"
            "TAXON|TEXT|A;|Selected taxon (e.g. sub-species)\n"
            "USE_EMERGE|BOOLEAN|true|Use day when animals emerge from the den\n"
            "USE_NEONATE|BOOLEAN|false|Include neonates\n"
            "USE_STILLBIRTH|BOOLEAN|false|Include stillbirths\n");
}

TEST_F(ViewFiles, ComeBackWithoutSexAndTaxa) {
  fill();
  view.save("v");
  DataFilter loaded;
  loaded.path = view.path;
  EXPECT_TRUE(loaded.load("v"));
  EXPECT_EQ(loaded.sex, SEX::ALL);
  EXPECT_TRUE(loaded.taxa.empty());
  loaded.sex = view.sex;
  loaded.taxa = view.taxa;
  loaded.save("again");
  EXPECT_EQ(contentOf("again.view"), contentOf("v.view"));
  change("Sex", "0");
  EXPECT_TRUE(loaded.load("v"));
  EXPECT_EQ(loaded.sex, SEX::FEMALE) << "the key that is looked for";
}

TEST_F(ViewFiles, WithDemesRaiseAnErrorAtTheEndOfLoading) {
  view.filter_id = 5;
  EXPECT_TRUE(view.addDeme("3"));
  view.save("v");
  EXPECT_NE(entries("v").find("\nMETAPOPULATION|TEXT|216172782113783808;|"), std::string::npos);
  DataFilter loaded;
  loaded.path = view.path;
  EXPECT_THROW(loaded.load("v"), std::out_of_range);
  EXPECT_EQ(loaded.filter_id, 5) << "all other settings are read";
}

TEST_F(ViewFiles, WithWrongValuesFollowTheConversions) {
  view.save("v");
  for (const char* key : {"FILTER_ID", "CENSUS_DAY", "ORIGIN", "HANDLE_PARENT", "Sex"}) {
    change(key, "none");
    EXPECT_THROW(view.load("v"), std::invalid_argument) << key;
    change(key, "99999999999");
    EXPECT_THROW(view.load("v"), std::out_of_range) << key;
    change(key, " 2 and more");
    EXPECT_TRUE(view.load("v")) << key;
  }
  EXPECT_EQ(view.filter_id, 2);
  change("END_DATE", "1999-02-30");
  change("PRORATING", "si");
  change("USE_NEONATE", " Yes ");
  change("LOW_AGE", "young");
  EXPECT_TRUE(view.load("v"));
  EXPECT_TRUE(view.end_date == 0 && !view.prorating && view.use_neonate &&
              view.low_age != view.low_age);
}

TEST_F(ViewFiles, OfOtherKindsChangeNothing) {
  view.save("v");
  const std::string good = contentOf("v.view");
  view.filter_id = 9;
  std::filesystem::create_directory("folder.view");
  std::string other = good;
  const std::string contents[] = {"", good.substr(0, good.size() / 2), std::string(2000, '\0'),
                                  other.replace(good.find("VIEW"), 4, "BIOLOGY"), "FILTER_ID"};
  for (const std::string& content : contents) {
    writeContent("bad.view", content);
    EXPECT_FALSE(view.load("bad")) << content;
  }
  for (const char* name : {"missing", "folder", "V"}) {
    EXPECT_FALSE(view.load(name)) << name;
  }
  EXPECT_EQ(view.filter_id, 9);
}

TEST_F(ViewFiles, StayInTheirDirectory) {
  std::filesystem::create_directory("views");
  view.save("outside");
  view.path = home + "/views";
  const std::string names[] = {
      "..", ".", "", "a/b", "../outside", "/tmp/v", std::string("a\0b", 3)};
  for (const std::string& name : names) {
    view.save(name);
    EXPECT_EQ(takeErrors(), FAILED) << name;
    EXPECT_FALSE(view.load(name)) << name;
  }
  EXPECT_TRUE(std::filesystem::is_empty("views"));
  view.save("a.b ~");
  EXPECT_TRUE(view.load("a.b ~"));
}

TEST_F(ViewFiles, AreOldOrNewWhenSavingFails) {
  view.save("v");
  const std::string old = contentOf("v.view");
  view.filter_id = 7;
  const rlimit small = {64, 64};
  EXPECT_EXIT(setrlimit(RLIMIT_FSIZE, &small); view.save("v");
              std::_Exit(0), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_EXIT(std::signal(SIGXFSZ, SIG_IGN); setrlimit(RLIMIT_FSIZE, &small); view.save("v");
              std::_Exit(takeErrors() == FAILED ? 3 : 4), testing::ExitedWithCode(3), "");
  EXPECT_EQ(contentOf("v.view"), old);
  view.path += "/missing";
  view.save("v");
  EXPECT_EQ(takeErrors(), FAILED);
}

TEST_F(ViewFiles, AreListedByName) {
  for (const char* name : {"wild", "Asia", "b.2"}) {
    view.save(name);
  }
  writeContent("zoos.fed", "Europe\n");
  EXPECT_TRUE(view.listViews("view"));
  EXPECT_EQ(takeOutput(), "Available views:\nAsia\nb.2\nwild\n");
  view.path += "/missing";
  EXPECT_FALSE(view.listViews("view"));
  EXPECT_EQ(takeOutput(), "");
}

TEST_F(ViewFiles, SettingsAreListed) {
  const std::string rule(70, '-');
  view.clearView();
  view.listView();
  EXPECT_NE(takeOutput().find("\nFilter ID         : n/a\n"), std::string::npos);
  fill();
  view.addDeme("3");
  view.listView();
  EXPECT_EQ(takeOutput(), rule + "\nView and analyses settings\n" + rule +
                              "\nFilter ID         : 12\n"
                              "Start date        : 1990-03-05\n"
                              "End date          : 2000-06-30\n"
                              "Monitor date      : \n"
                              "Census interval   : month [2]\n"
                              "Census day        : 31\n"
                              "Census month      : December\n"
                              "Class width       : 365.25\n"
                              "Number of classes : 25\n"
                              "Left truncated    : false\n"
                              "Right censored    : false\n"
                              "Prorating         : true\n"
                              "Same sex          : false\n"
                              "Birth accuracy    : by day\n"
                              "Death accuracy    : by year\n"
                              "Event accuracy    : accurate\n"
                              "Origin            : \n"
                              "Include neonates? : false\n"
                              "Use den emerge    : true\n"
                              "Generations       : 0.25 - nan\n"
                              "Inbreeding        : nan - 0.12345\n"
                              "Age group         : -1 - 3650\n"
                              "Generic parents?  : true\n"
                              "Unknown parent    : equal\n"
                              "Sex  group        : male - Handle unknown : ignore\n"
                              "Contraception     : intact\n"
                              "Locations         : Europe;\n"
                              "Subspecies        : A;\n");
}

}  // namespace
}  // namespace spx
