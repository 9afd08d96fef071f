#include <nlohmann/json.hpp>

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

using nlohmann::json;
using words = std::vector<std::string>;

/// A family of three generations at two zoos; 7 has no date at all.
class ViewOptionsTest : public ConsoleTest {
 protected:
  ViewOptionsTest() {
    std::filesystem::create_directory(at("book"));
    table("book/animals.csv",
          "id,sire,dam,sex,dob,dod,location,origin,f,Name\n"
          "1,WILD,WILD,m,1980,2001-05-04,Far,wild,0,Old Tom\n"
          "2,WILD,WILD,f,1982,,\"Zoo, X\",wild,0,Ada\n"
          "3,1,2,m,1990-04-01,,Far,captive,0.1,tomcat\n"
          "4,1,2,f,1992-06,1992-06-20,Far,captive,0.25,\n"
          "10,3,2,f,2004,,\"Zoo, X\",captive,,Bo\n"
          "7,,,f,,,,,,\n");
    run({"project", "create", "p"});
    takeErrors();
    takeOutput();
  }

  static std::string joined(const words& ids) {
    std::string text;
    for (const std::string& id : ids) {
      text += (text.empty() ? "" : " ") + id;
    }
    return text;
  }

  words inProject(words command) {
    command.insert(command.begin(), {"--project", "p", "--studbook", at("book")});
    return command;
  }

  /// The IDs that a command lists, in its order.
  std::string ids(words command) {
    command.insert(command.end(), {"--format", "json"});
    EXPECT_EQ(run(inProject(command)), 0) << takeErrors();
    words found;
    for (const json& animal : json::parse(takeOutput())) {
      found.push_back(animal["id"]);
    }
    return joined(found);
  }

  std::string entry(const std::string& file, const std::string& key) {
    const std::string content = contentOf(at("spx/projects/p/" + file));
    const std::size_t begin = content.find("\n" + key + " (");
    return begin == std::string::npos ? "" : content.substr(begin + 1, content.find('\n', begin + 1) - begin - 1);
  }
};

TEST_F(ViewOptionsTest, ListingsObeyTheOptionsThatTheyOffer) {
  const struct {
    words command;
    const char* ids;
  } cases[] = {
      {{"list"}, "1 2 3 4 7 10"},
      {{"list", "--sex", "f", "--origin", "captive"}, "4 10"},
      {{"list", "--location", "Far"}, "1 3 4"},
      {{"list", "--deme", "Zoo, X"}, "2 10"},
      {{"list", "--from", "2002"}, "2 3 10"},
      {{"list", "--from", "1991", "--until", "2000"}, "1 2 3 4"},
      {{"list", "--alive-on", "1992-06-10"}, "1 2 3 4"},
      {{"list", "--high-inbreeding", "0.2"}, "1 2 3 7"},
      {{"list", "--user-field", "Name=Bo"}, "10"},
      {{"living"}, "2 3 10"},
      {{"living", "--on", "1985-01-01"}, "1 2"},
      {{"living", "--monitor", "2003-01-01", "--location", "Far"}, "3"},
      {{"offspring", "--format", "json", "--", "1"}, "3 4"},
      {{"pedigree", "10"}, "1 2 3 10"},
      {{"find", "TOM"}, "1 3"},
      {{"list", "--where", "age_years<20", "--sort", "-id"}, "4"},
  };
  for (const auto& [command, expected] : cases) {
    SCOPED_TRACE(testing::PrintToString(command));
    if (command.size() > 3 && command[3] == "--") {
      EXPECT_EQ(run(inProject(command)), 0);
      EXPECT_EQ(json::parse(takeOutput()).size(), 2U);
    } else {
      EXPECT_EQ(ids(command), expected);
    }
  }
  EXPECT_EQ(run(inProject({"list", "--all", "--sex", "male"})), 2);
  EXPECT_NE(takeErrors().find("cannot be combined with --sex"), std::string::npos);
  EXPECT_EQ(run(inProject({"list", "--sex", "male", "--location", "Zoo, X"})), 0);
  EXPECT_EQ(takeOutput(), "no animals match --sex male --location \"Zoo, X\"\n");
}

TEST_F(ViewOptionsTest, TodayStaysOpenAndATypedDayStays) {
  EXPECT_EQ(run(inProject({"view", "set", "sex=male"})), 0);
  EXPECT_EQ(entry("current.view", "END_DATE"), "END_DATE (DATE) = today");
  EXPECT_EQ(entry("current.view", "MONITOR_DATE"), "MONITOR_DATE (DATE) = today");
  EXPECT_EQ(run(inProject({"view", "set", "on=2003-02-01", "location=Far"})), 0);
  EXPECT_EQ(entry("current.view", "MONITOR_DATE"), "MONITOR_DATE (DATE) = 2003-02-01");
  EXPECT_EQ(entry("current.view", "LOCATION_0"), "LOCATION_0 (TEXT) = Far");
  EXPECT_EQ(ids({"living"}), "3");
  EXPECT_EQ(run(inProject({"view", "save", "men"})), 0);
  EXPECT_EQ(entry("views/men.view", "END_DATE"), "END_DATE (DATE) = today");
  EXPECT_EQ(run(inProject({"view", "save", "men"})), 1);
  EXPECT_NE(takeErrors().find("already exists; use --overwrite"), std::string::npos);
  EXPECT_EQ(run(inProject({"view", "save", "men", "--overwrite", "--sex", "all"})), 0);
  EXPECT_EQ(run(inProject({"view", "clear"})), 0);
  EXPECT_EQ(ids({"living"}), "2 3 10");
  EXPECT_EQ(ids({"living", "--view", "men"}), "3");
  EXPECT_EQ(run(inProject({"view", "delete", "men"})), 0);
  EXPECT_EQ(run(inProject({"view", "delete", "men"})), 1);
}

TEST_F(ViewOptionsTest, AFileThatAPersonEditedLoads) {
  const struct {
    const char* content;
    const char* ids;
    const char* fault;
  } cases[] = {
      {"[VIEW]\n[END]\n", "1 2 3 4 7 10", ""},
      {"[VIEW]\nEND_DATE (DATE) =\nSEX (INTEGER) = male\n[END]\n", "1 3", ""},
      {"[VIEW]\nSEX (INTEGER) = 0\nLOCATION_0 (TEXT) = Far\n[END]\n", "4", ""},
      {"[VIEW]\nLOCATION_0 (TEXT) = Near\n[END]\n", nullptr, "\"Near\" is not a location of the studbook"},
      {"[VIEW]\nSEX (INTEGER) = 77\n[END]\n", nullptr, "SEX: sex: \"77\" must be one of: female, male"},
      {"[VIEW]\nCENSUS_DAY (INTEGER) = 40\n[END]\n", nullptr, "\"40\" must be a whole number from 1 to 31"},
  };
  for (const auto& [content, expected, fault] : cases) {
    SCOPED_TRACE(content);
    writeContent(at("spx/projects/p/views/v.view"), content);
    if (expected != nullptr) {
      EXPECT_EQ(ids({"list", "--view", "v"}), expected);
    } else {
      EXPECT_EQ(run(inProject({"list", "--view", "v"})), 1);
      EXPECT_NE(takeErrors().find(fault), std::string::npos) << fault;
    }
  }
}

TEST_F(ViewOptionsTest, ExportsAndTracingTakeTheAnimalsOfTheView) {
  EXPECT_EQ(run(inProject({"export", "pedigree", "--location", "Zoo, X", "--from", "2003"})), 0);
  const auto rows = [this] {
    const std::string content = contentOf(at("spx/projects/p/export/pedigree.csv"));
    return std::count(content.begin(), content.end(), '\n') - 1;
  };
  EXPECT_EQ(rows(), 2);
  EXPECT_EQ(run(inProject({"export", "pedigree", "--user-field", "Name=Bo", "--with-ancestors"})), 0);
  EXPECT_EQ(rows(), 4);
  EXPECT_EQ(run(inProject({"export", "fields", "--sex", "female"})), 0);
  EXPECT_EQ(contentOf(at("spx/projects/p/export/animal_data.csv")).find("2001"), std::string::npos) << "of the male";
  takeOutput();
  EXPECT_EQ(run(inProject({"trace-parents"})), 1);
  EXPECT_NE(takeErrors().find("the life history has no reproductive ages"), std::string::npos);
  EXPECT_TRUE(std::filesystem::is_empty(at("spx/projects/p/reports")));
  EXPECT_EQ(run(inProject({"life-history", "set", "male-reproductive-lower=400", "male-reproductive-upper=4000"})), 0);
  EXPECT_EQ(run(inProject({"trace-parents", "--sex", "male"})), 0);
  EXPECT_NE(takeOutput().find("Both parents unknown : 0\n"), std::string::npos);
  EXPECT_EQ(run(inProject({"trace-parents"})), 0);
  EXPECT_NE(takeOutput().find("Both parents unknown : 1\n"), std::string::npos);
}

TEST_F(ViewOptionsTest, TheCandidatesOfAnAnimalCanBeLimited) {
  const std::string book = table("sires.csv", "id,sire,dam,sex,dob\n1,,,m,1980\n2,,,m,1981\n3,,,m,1982\n4,,1,f,1990\n");
  const auto trace = [&](words options) {
    options.insert(options.begin(),
                   {"--studbook", book, "trace-parents", "--to", home, "--overwrite", "--sex", "female",
                    "--life-history", "male-reproductive-lower=100", "--life-history", "male-reproductive-upper=9000"});
    EXPECT_EQ(run(options), 0) << takeErrors();
    return contentOf(at("parents-female.xml"));
  };
  const auto count = [](const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
      ++found;
    }
    return found;
  };
  EXPECT_EQ(count(trace({}), "<SIRE>"), 3U);
  const std::string limited = trace({"--most-candidates", "1"});
  EXPECT_EQ(count(limited, "<SIRE>"), 1U);
  EXPECT_EQ(count(limited, "<SIRES_OMITTED>2</SIRES_OMITTED>"), 1U);
}

TEST_F(ViewOptionsTest, ALargeReportIsAnnounced) {
  std::string rows = "id,sire,sex,dob\n";
  for (int id = 0; id < 660; ++id) {
    rows += "A" + std::to_string(id) + ",,m," + (id % 2 == 0 ? "1990\n" : "2000\n");
  }
  const std::string book = table("many.csv", rows);
  const auto announced = [&](const std::string& most) {
    takeErrors();
    EXPECT_EQ(run({"--studbook", book, "trace-parents", "--to", home, "--overwrite", "--life-history",
                   "male-reproductive-lower=100", "--life-history", "male-reproductive-upper=9000", "--most-candidates",
                   most}),
              0);
    return takeErrors();
  };
  // Each of 330 animals has 330 possible sires.
  const std::string announcement = announced("1000");
  EXPECT_NE(announcement.find("108900 possible parents; the report will take about 14 MB"), std::string::npos)
      << announcement;
  const double bytes = static_cast<double>(std::filesystem::file_size(at("parents-all.xml")));
  EXPECT_NEAR(bytes / 1e6, 14, 3) << "the announced size";
  EXPECT_EQ(announced("1").find("MB"), std::string::npos);
}

}  // namespace
}  // namespace spx::console
