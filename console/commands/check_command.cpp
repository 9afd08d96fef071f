#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/project/biology.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/check/check_studbook.h"
#include "console/commands/check_fix.h"
#include "console/commands/command.h"
#include "console/output/result_output.h"
#include "console/output/table_options.h"
#include "console/results/findings_output.h"
#include "console/studbook/load_studbook.h"
#include "console/tables/loading_notes.h"

namespace spx::console {
namespace {

struct check_options {
  table_options output;
  std::vector<std::string> only;
  std::vector<std::string> except;
  bool all = false;
  bool strict = false;
  bool codes = false;
  bool placeholders = false;
  std::string id_prefix;
  bool fix = false;
  std::vector<std::string> sure;
  edit_options edit;
};

std::vector<CHECK> rulesOf(const std::vector<std::string>& codes, const char* option) {
  std::vector<CHECK> rules;
  for (const std::string& code : codes) {
    const auto rule = checkOfCode(code);
    if (!rule) {
      std::vector<std::string> known;
      for (const check_code& one : checkCodes()) {
        known.emplace_back(one.code);
      }
      throw UsageError(std::string(option) + ": " + quotedText(code) + " is not a code of spx check" +
                       suggestion(code, known));
    }
    rules.push_back(*rule);
  }
  return rules;
}

bool isAmong(const std::vector<CHECK>& rules, CHECK rule) {
  return std::find(rules.begin(), rules.end(), rule) != rules.end();
}

/// Returns a function that gives the place of an animal's event. It sorts the rows at its first call.
auto placesOfEvents(const loading_notes& notes) {
  const auto by_animal = [](const event_row& a, const event_row& b) { return a.animal < b.animal; };
  return [&notes, by_animal, rows = std::vector<event_row>()](position record, std::size_t event) mutable {
    if (rows.empty()) {
      rows = notes.events;
      std::stable_sort(rows.begin(), rows.end(), by_animal);
    }
    const auto first =
        std::lower_bound(rows.begin(), rows.end(), event_row{static_cast<std::uint32_t>(record), 0}, by_animal);
    return source_place{notes.events_table, first[static_cast<std::ptrdiff_t>(event)].line};
  };
}

std::vector<finding> chosenFindings(const check_options& options, const loading_notes& notes) {
  const std::vector<CHECK> only = rulesOf(options.only, "--only");
  const std::vector<CHECK> except = rulesOf(options.except, "--except");
  const qs_lib::day_number today = qs_lib::msToDay(qs_lib::dateToJulian(qs_lib::getTodayAsISO()));
  const auto place_of = [&notes](position record) { return source_place{notes.animals_table, notes.lineOf(record)}; };
  std::vector<finding> findings =
      checkStudbook({Animals.records, LifeHistory, MetaPop, today, place_of, placesOfEvents(notes)});
  std::erase_if(findings, [&](const finding& one) {
    return (!only.empty() && !isAmong(only, one.check)) || isAmong(except, one.check) ||
           (options.placeholders && one.check == CHECK::PLACEHOLDER_ID);
  });
  return findings;
}

ExitCode showCodes(const table_options& output) {
  Table table({{.name = "code", .title = "Code"},
               {.name = "severity", .title = "Severity"},
               {.name = "explanation", .title = "What it compares"},
               {.name = "example", .title = "Example", .in_text = false}});
  for (const check_code& rule : checkCodes()) {
    table.addRow({rule.code, severityName(rule.severity), rule.explanation, rule.example});
  }
  showTable(table, output);
  return ExitCode::DONE;
}

/// Applies cures. Requires a studbook file, since tables are not changed.
ExitCode fix(Session& session, const check_options& options) {
  const std::vector<CHECK> sure = rulesOf(options.sure, "--yes");
  session.writableStudbook();
  session.loadStudbook();
  const std::vector<finding> findings = chosenFindings(options, session.notes());
  dropStudbook();
  return fixFindings(session, options.edit, findings, sure);
}

ExitCode check(Session& session, const check_options& options) {
  if (options.codes) {
    return showCodes(options.output);
  }
  if (options.fix || !options.sure.empty()) {
    return fix(session, options);
  }
  session.useIdPrefix(options.id_prefix);
  session.loadStudbook();
  const std::vector<finding> findings = chosenFindings(options, session.notes());
  table_options shown = options.output;
  shown.format = formatOfFile(shown.format, shown.output.file, false);
  const bool is_text = shown.format == OUTPUT_FORMAT::TEXT;
  ResultOutput output(options.output.output, is_text);
  if (is_text) {
    const auto animals = std::count_if(Animals.records.begin(), Animals.records.end(), hasRow);
    listFindings(output.stream(), findings, options.all, static_cast<std::size_t>(animals), output.width());
  } else {
    writeFindings(output.stream(), options.output.format, findings);
  }
  output.finish();
  const finding_counts counts(findings);
  // No other rule checks placeholders, so the keeper has to accept them explicitly.
  const bool has_placeholders = std::any_of(findings.begin(), findings.end(),
                                            [](const finding& one) { return one.check == CHECK::PLACEHOLDER_ID; });
  const bool is_faulty = counts.errors != 0 || has_placeholders || (options.strict && counts.warnings != 0);
  return is_faulty ? ExitCode::DATA_FAULTS : ExitCode::DONE;
}

}  // namespace

void addCheckCommands(std::vector<command>& commands) {
  const auto options = std::make_shared<check_options>();
  commands.push_back(
      {"check", "List what is, or may be, wrong with the studbook",
       [options](Session& session) { return check(session, *options); },
       [options](CLI::App& app) {
         app.add_option("--only", options->only, "Findings with this code only; may be repeated")
             ->type_name("CODE")
             ->delimiter(',')
             ->allow_extra_args(false);
         app.add_option("--except", options->except, "No findings with this code; may be repeated")
             ->type_name("CODE")
             ->delimiter(',')
             ->allow_extra_args(false);
         app.add_flag("--codes", options->codes, "List the codes and what they compare");
         app.add_flag("--all", options->all, "List all findings, not the first ten of each kind");
         app.add_flag("--fix", options->fix, "Fix what has only one sensible fix; asks about each");
         app.add_option("--yes", options->sure, "Fix findings with this code without asking")
             ->type_name("CODE")
             ->delimiter(',')
             ->allow_extra_args(false);
         addEditOptions(app, options->edit);
         app.add_flag("--strict", options->strict, "Exit with 3 on warnings too");
         app.add_flag("--placeholders", options->placeholders, "Accept animals whose IDs are placeholders");
         app.add_option("--id-prefix", options->id_prefix, "Put a text before every ID")->type_name("TEXT");
         addFormatOptions(app, options->output);
       }});
}

}  // namespace spx::console
