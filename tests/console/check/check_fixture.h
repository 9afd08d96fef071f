#pragma once

#include <string>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/project/biology.h"

#include "console/check/check_studbook.h"
#include "tests/console/console_fixture.h"

namespace spx::console {

/// Tables are loaded and checked on 1 January 2026.
class CheckTest : public ConsoleTest {
 protected:
  std::vector<finding> findingsIn(const std::string& animals, const std::string& events = "",
                                  const std::string& locations = "") {
    studbook_files files;
    files.animals = table("animals.csv", animals);
    files.events = events.empty() ? "" : table("events.csv", "id,date,event,location\n" + events);
    files.locations = locations.empty() ? "" : table("locations.csv", "level,id,name\n" + locations);
    const loading_notes notes = loadStudbook(files);
    takeErrors();
    return findingsOf(Animals.records, notes);
  }

  static std::vector<finding> findingsOf(const std::vector<master_data>& records, const loading_notes& notes = {}) {
    const qs_lib::day_number today = qs_lib::msToDay(qs_lib::dateToJulian(std::string("2026-01-01")));
    const auto place_of = [&notes](position record) { return source_place{"animals.csv", notes.lineOf(record)}; };
    return checkStudbook({records, LifeHistory, MetaPop, today, place_of});
  }

  /// The codes of what was found, one blank after each.
  static std::string codesOf(const std::vector<finding>& findings) {
    std::string codes;
    for (const finding& one : findings) {
      codes += std::string(codeOf(one.check).code) + " ";
    }
    return codes;
  }
};

}  // namespace spx::console
