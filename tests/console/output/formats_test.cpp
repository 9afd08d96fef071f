#include <sstream>

#include <nlohmann/json.hpp>

#include "spx/support/text.h"

#include "tests/console/console_fixture.h"

namespace spx::console {
namespace {

using nlohmann::json;
using words = std::vector<std::string>;

class FormatsTest : public ConsoleTest {
 protected:
  /// The output of a command on a studbook.
  std::string output(const std::string& studbook, words command, const std::string& format) {
    command.insert(command.begin(), {"--studbook", studbook});
    command.insert(command.end(), {"--format", format});
    run(command);
    return takeOutput();
  }

  const std::string example = SPX_SOURCE_DIR "/examples/studbook";
};

/// The first column of a table for people.
std::vector<std::string> idsOfText(const std::string& listing) {
  std::vector<std::string> ids;
  std::istringstream lines(listing);
  std::size_t width = 0;
  for (std::string line; std::getline(lines, line) && !(line.empty() && width != 0);) {
    if (width != 0 && line.front() != ' ') {
      ids.push_back(qs_lib::allTrim(line.substr(0, width)));
    } else if (width == 0 && line.starts_with("--")) {
      width = line.find(' ');
    }
  }
  return ids;
}

TEST_F(FormatsTest, ScriptsGetTheAnimalsOfTheListingInItsOrder) {
  const words commands[] = {{"list"},
                            {"list", "--all"},
                            {"list", "--sex", "male", "--from", "1990"},
                            {"living", "--on", "2005-06-30"},
                            {"offspring", "0021"},
                            {"pedigree", "0120"}};
  for (const words& command : commands) {
    SCOPED_TRACE(testing::PrintToString(command));
    std::vector<std::string> ids;
    for (const json& animal : json::parse(output(example, command, "json"))) {
      ids.push_back(animal["id"]);
    }
    EXPECT_EQ(ids, idsOfText(output(example, command, "text")));
    EXPECT_GT(ids.size(), 2U);
  }
}

TEST_F(FormatsTest, AListingReadAgainIsTheSameStudbook) {
  const std::string copy = table("copy.csv", output(example, {"list"}, "csv"));
  const words records = {
      "list", "--columns",
      "id,sire,dam,sex,birth_date,birth_accuracy,birth_range,birth_location,death_date,death_accuracy,"
      "death_range,death_location,death_event,origin,rearing,taxon,fcoef,g_cites,breeder"};
  for (const char* format : {"text", "csv", "json"}) {
    EXPECT_EQ(output(copy, records, format), output(example, records, format));
  }
}

TEST_F(FormatsTest, AnyTextComesThroughWhole) {
  const std::string file = table("a.csv",
                                 "id,sire,birth_date,g_cites,breeder,\"no\"\"te\"\n"
                                 "J\xFCrgen,WILD,1990-05,1.3,maybe,\"a,\"\"b\"\"\n\"\n"
                                 "2\xC3\xBC,J\xFCrgen,,,, \n");
  const json animals = json::parse(output(file, {"list"}, "json"));
  const json& first = animals[1];  // an unknown birth comes first
  EXPECT_EQ(first["id"], "J\xC3\xBCrgen");
  EXPECT_EQ(first["birth_date"], "1990-05-01");
  EXPECT_EQ(first["birth_accuracy"], "by month");
  EXPECT_EQ(first["g_cites"], 1.3);
  EXPECT_EQ(first["user_fields"], json({{"breeder", "maybe"}, {"no\"te", "a,\"b\"\n"}}));
  EXPECT_EQ(animals[0]["id"], "2\xC3\xBC");
  EXPECT_TRUE(animals[0]["birth_date"].is_null());
  EXPECT_EQ(animals[0]["fcoef"], 0);
  const std::string csv = output(file, {"list"}, "csv");
  EXPECT_NE(csv.find(",breeder,selected,age_years,status,current_location,current_location_name,birth_location_name,"
                     "death_location_name,user_fields_breeder,\"no\"\"te\"\n"),
            std::string::npos);
  EXPECT_NE(csv.find(",1.3,0,0,0,true,true,"), std::string::npos);
  EXPECT_NE(csv.find(",living,,,,,maybe,\"a,\"\"b\"\"\n\"\n"), std::string::npos) << "an unknown place is no number";
  EXPECT_NE(csv.find(",J\xFCrgen,WILD,"), std::string::npos);
}

TEST_F(FormatsTest, TheCardHasTheEventsAndTheSummaryItsCounters) {
  const json card = json::parse(output(example, {"show", "0003"}, "json"));
  EXPECT_EQ(card["birth_range"], 400);
  EXPECT_EQ(card["death_location_name"], "Ashgrove Paddock A");
  EXPECT_EQ(card["events"][1]["event"], "social in");
  EXPECT_EQ(card["events"][1]["location"], "2.1.1");
  const json summary = json::parse(output(example, {"summary"}, "json"));
  EXPECT_EQ(summary["records"], 150);
  EXPECT_EQ(summary["sexes"]["abnormal"], 1);
  EXPECT_EQ(summary["death_accuracy"]["by_week"], 2);
}

}  // namespace
}  // namespace spx::console
