// View files and the listings of views. Expected texts are in tests/views/expected; all_settings
// holds a view in which no stored setting has its default.
#include "spx/views/view_file.h"

#include <csignal>

#include <sys/resource.h>

#include "spx/core/meta_population.h"
#include "spx/support/configuration.h"
#include "spx/views/data_filter.h"

#include "tests/support/expected_file.h"
#include "tests/support/temporary_home.h"

namespace spx {
namespace {

constexpr char FAILED[] = "Could not save view settings\n";

class ViewFiles : public TemporaryHome {
 protected:
  ViewFiles() {
    MetaPop = MetaPopulation();
    MetaPop.addLevel("region");
    MetaPop.addMember("3", "Europe");
    std::filesystem::current_path(home);
    view.path = home;
  }

  const std::string all_settings = contentOf(SPX_SOURCE_DIR "/tests/views/expected/all_settings.view");

  static void change(const std::string& key, const std::string& value) {
    qs_lib::Configuration file;
    file.setName("v");
    file.setExtension("view");
    file.setSection("VIEW");
    file.load();
    file.set(key, "TEXT", value, "");
    EXPECT_TRUE(file.save());
  }

  DataFilter view;
};

TEST_F(ViewFiles, ComeBackWithoutSexAndTaxa) {
  writeContent("v.view", all_settings);
  EXPECT_TRUE(view.load("v"));
  EXPECT_EQ(view.sex, SEX::ALL);
  EXPECT_TRUE(view.taxa.empty());
  view.sex = SEX::MALE;
  view.taxa = {Subspecies.add("A")};
  view.save("again");
  expectFile(contentOf("again.view"), "views/expected/all_settings.view");
  EXPECT_TRUE(view.addDeme("3"));
  view.listView();
  expectFile(takeOutput(), "views/expected/all_settings.txt");
  change("Sex", "0");
  EXPECT_TRUE(view.load("v"));
  EXPECT_EQ(view.sex, SEX::FEMALE) << "the key that is looked for";
}

TEST_F(ViewFiles, OfFreshViewsHoldTheDefaults) {
  view.start_date = view.end_date = view.monitor_date = 0;
  view.save("v");
  expectFile(contentOf("v.view"), "views/expected/defaults.view");
  view.listView();
  expectFile(takeOutput(), "views/expected/defaults.txt");
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
  EXPECT_TRUE(view.addDeme("3"));
  view.save("v");
  view.filter_id = 0;
  EXPECT_THROW(view.load("v"), std::out_of_range) << "the packed deme";
  EXPECT_EQ(view.filter_id, 2) << "all other settings are read";
  change("METAPOPULATION", "");
  change("END_DATE", "1999-02-30");
  change("PRORATING", "si");
  change("LOW_AGE", "young");
  EXPECT_TRUE(view.load("v"));
  EXPECT_EQ(view.end_date, 0U);
  EXPECT_FALSE(view.prorating);
  EXPECT_TRUE(view.low_age != view.low_age);
}

TEST_F(ViewFiles, CanBeEntriesInMemory) {
  qs_lib::Configuration file = viewFile(home, "v");
  view.filter_id = 7;
  view.low_age = 30.26;
  writeView(view, file);
  EXPECT_EQ(file.entries().size(), 31u);
  EXPECT_TRUE(std::filesystem::is_empty(home));
  view.clearView();
  readView(view, file);
  EXPECT_EQ(view.filter_id, 7);
  EXPECT_EQ(view.low_age, 30.3);
  file.set("CENSUS_DAY", "INTEGER", "first", "");
  EXPECT_THROW(readView(view, file), std::invalid_argument);
}

TEST_F(ViewFiles, OfOtherKindsChangeNothing) {
  std::filesystem::create_directory("folder.view");
  for (const std::string& content : {std::string(), all_settings.substr(0, all_settings.size() / 2),
                                     std::string(2000, '\0'), "[BIOLOGY]" + all_settings.substr(6)}) {
    writeContent("bad.view", content);
    EXPECT_FALSE(view.load("bad")) << content;
  }
  EXPECT_FALSE(view.load("missing"));
  EXPECT_FALSE(view.load("folder"));
  EXPECT_EQ(view.filter_id, 0);
}

TEST_F(ViewFiles, StayInTheirDirectory) {
  std::filesystem::create_directory("views");
  view.save("outside");
  view.path = at("views");
  for (const char* name : {"..", ".", "", "a/b", "../outside", "/tmp/outside"}) {
    view.save(name);
    EXPECT_EQ(takeErrors(), FAILED) << name;
    EXPECT_FALSE(view.load(name)) << name;
  }
  EXPECT_TRUE(std::filesystem::is_empty("views"));
}

TEST_F(ViewFiles, KeepTheOldContentWhenSavingFails) {
  view.save("v");
  const std::string old = contentOf("v.view");
  view.filter_id = 7;
  const rlimit small = {64, 64};
  EXPECT_EXIT(setrlimit(RLIMIT_FSIZE, &small); view.save("v"); std::_Exit(0), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_EXIT(std::signal(SIGXFSZ, SIG_IGN); setrlimit(RLIMIT_FSIZE, &small); view.save("v");
              std::_Exit(takeErrors() == FAILED ? 3 : 4), testing::ExitedWithCode(3), "");
  EXPECT_EQ(contentOf("v.view"), old);
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

}  // namespace
}  // namespace spx
