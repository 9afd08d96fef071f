#include <algorithm>
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "spx/analyses/data_summary.h"
#include "spx/core/animal_data.h"
#include "spx/views/data_filter.h"

#include "console/commands/command.h"
#include "console/output/output_format.h"
#include "console/output/record_stream.h"

namespace spx::console {
namespace {

/// "by month" as `by_month`.
std::string factName(std::string text) {
  std::replace(text.begin(), text.end(), ' ', '_');
  return text;
}

template <typename Counts>
fact_record countFacts(const Counts& counts) {
  fact_record facts = fact_record::object();
  for (const auto& [kind, count] : counts) {
    facts[factName(getEnumName(kind))] = count;
  }
  return facts;
}

/// The day for which living animals are counted: the end of the view's period, or its start.
fact_record referenceDate() {
  const qs_lib::day_number day = View.end_date != 0 ? View.end_date : View.start_date;
  if (day == 0) {
    return nullptr;
  }
  return qs_lib::julianToISO(qs_lib::dayToMs(day));
}

fact_record summaryFacts(const DataSummary& data) {
  return {{"reference_date", referenceDate()},
          {"records", data.records},
          {"living", data.living},
          {"died", data.died},
          {"disappeared", data.disappeared},
          {"sexes", countFacts(data.sexes)},
          {"unknown_both", data.unknown_both},
          {"unknown_sire", data.unknown_sire},
          {"unknown_dam", data.unknown_dam},
          {"group_sire", data.group_sire},
          {"group_dam", data.group_dam},
          {"birth_accuracy", countFacts(data.birth_accuracy)},
          {"death_accuracy", countFacts(data.death_accuracy)},
          {"oldest_age_days", data.oldest_age},
          {"oldest_id", data.oldest_id},
          {"breeders", data.breeders},
          {"living_breeders", data.living_breeders},
          {"wild_origin", data.wild_origin},
          {"living_wild_origin", data.living_wild_origin},
          {"bred_founders", data.bred_founders},
          {"potential_founders", data.potential_founders}};
}

ExitCode summary(Session& session, OUTPUT_FORMAT format) {
  session.loadStudbook();
  DataSummary data;
  if (!data.initialize()) {
    return ExitCode::FAILED;
  }
  data.analyse();
  if (format == OUTPUT_FORMAT::TEXT) {
    data.reportConsole();
  } else {
    writeRecord(std::cout, format, summaryFacts(data));
  }
  return ExitCode::DONE;
}

ExitCode info(Session& session) {
  session.loadStudbook();
  Animals.info();
  return ExitCode::DONE;
}

}  // namespace

void addStudbookCommands(std::vector<command>& commands) {
  const auto format = std::make_shared<OUTPUT_FORMAT>(OUTPUT_FORMAT::TEXT);
  const auto add_format = [format](CLI::App& app) { addFormatOption(app, *format); };
  commands.push_back({"summary", "Summarise the studbook: numbers, parentage, dates, ages",
                      [format](Session& session) { return summary(session, *format); }, add_format});
  commands.push_back({"info", "Show how much room the records take", info});
}

}  // namespace spx::console
