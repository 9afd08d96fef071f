#include <iostream>

#include "spx/analyses/data_summary.h"
#include "spx/core/animal_data.h"
#include "spx/core/inconsistency.h"

#include "console/command.h"

namespace spx::console {
namespace {

ExitCode check(Session& session) {
  session.loadStudbook();
  for (const inconsistency& finding : Animals.inconsistencies) {
    std::cout << inconsistencyText(finding) << "\n";
  }
  const std::size_t count = Animals.inconsistencies.size();
  std::cout << (count == 0 ? "No" : std::to_string(count))
            << (count == 1 ? " inconsistency" : " inconsistencies") << " found\n";
  return count == 0 ? ExitCode::DONE : ExitCode::DATA_FAULTS;
}

ExitCode summary(Session& session) {
  session.loadStudbook();
  DataSummary data;
  if (!data.initialize()) return ExitCode::FAILED;
  data.analyse();
  data.reportConsole();
  return ExitCode::DONE;
}

ExitCode info(Session& session) {
  session.loadStudbook();
  Animals.info();
  return ExitCode::DONE;
}

}  // namespace

void addStudbookCommands(std::vector<command>& commands) {
  commands.push_back({"check", "List the inconsistencies of the studbook", check});
  commands.push_back(
      {"summary", "Summarise the studbook: numbers, parentage, dates, ages", summary});
  commands.push_back({"info", "Show how much room the records take", info});
}

}  // namespace spx::console
