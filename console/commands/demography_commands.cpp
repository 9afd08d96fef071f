#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "console/commands/checked_options.h"
#include "console/commands/command.h"
#include "console/output/table_options.h"
#include "console/project/view_options.h"
#include "console/project/view_settings.h"
#include "console/results/census_results.h"
#include "console/results/demography_page.h"
#include "console/results/growth_results.h"
#include "console/results/reproduction_results.h"
#include "console/results/survival_results.h"

namespace spx::console {
namespace {

/// The settings of a view that all demographic commands use.
constexpr unsigned WHO = VIEW_RECORDS | VIEW_PLACES | VIEW_LIVES;
constexpr unsigned WHO_AND_WHEN = WHO | VIEW_PERIOD;
constexpr unsigned RATES =
    WHO_AND_WHEN | VIEW_SURVIVAL | VIEW_CLASSES | VIEW_PRORATING | VIEW_UNKNOWN_SEX | VIEW_OFFSPRING;

/// The options of all of them; each command adds its own.
struct demography_options {
  view_choice view = {};
  table_options table = {};
  std::string unit = "years";
  survival_choice survival = {};
  bool summary = false;
  growth_choice growth = {};
  projection_choice projection = {};
  std::optional<double> litter_days = {};

  bool forPeople() const { return table.format == OUTPUT_FORMAT::TEXT; }
};

/// Computes the result of a command. Requires: the studbook is loaded and the view is set.
using result_table = Table (*)(const demography_options&);

/// Adds the options of one command.
using options_of = void (*)(CLI::App&, demography_options&);

/// Shows the table. For scripts its notes go to standard error, since they read only the table.
void show(const Table& table, const demography_options& options) {
  showTable(table, options.table);
  if (options.forPeople()) return;
  std::cout.flush();
  for (const std::string& note : table.notes) std::cerr << "spx: " << note << "\n";
}

void add(std::vector<command>& commands, const char* name, const char* help, result_table compute,
         options_of add_options) {
  const auto options = std::make_shared<demography_options>();
  commands.push_back({name, help,
                      [options, compute](Session& session) {
                        session.loadStudbook();
                        useView(session, options->view);
                        endWithStudbook();
                        show(compute(*options), *options);
                        return ExitCode::DONE;
                      },
                      [options, add_options](CLI::App& app) { add_options(app, *options); }});
}

void addUnit(CLI::App& app, demography_options& options) {
  addChoice(app, "--unit", options.unit, {"years", "days"}, "The unit of ages and times");
}

void addRuns(CLI::App& app, std::size_t& runs, std::uint32_t& seed, double least, const char* help) {
  addNumber(app, "--runs", runs, "COUNT", least, 1000000, std::string(help) + " (default: 1000)");
  app.add_option("--seed", seed, "Seed of the random numbers; the same seed gives the same results (default: 1)")
      ->type_name("NUMBER");
}

void addGroups(CLI::App& app, survival_choice& choice) {
  addChoice(app, "--by", choice.by, {"none", "sex", "origin", "rearing", "location", "taxon", "period"},
            "Compare groups of animals");
  app.add_option("--level", choice.level, "With --by location: the level of the places to compare")->type_name("LEVEL");
  addNumber(app, "--period-years", choice.period_years, "YEARS", 1, 1000,
            "With --by period: years of each period (default: 10)");
}

void addCounts(std::vector<command>& commands) {
  add(
      commands, "census", "Count the animals year by year, and show what changed their number",
      [](const demography_options&) { return censusTable(); },
      [](CLI::App& app, demography_options& options) {
        addTableOptions(app, options.table);
        addViewOptions(app, options.view, WHO_AND_WHEN | VIEW_CENSUS);
      });
  add(
      commands, "age-pyramid", "Show how many animals of each age and sex there are",
      [](const demography_options& options) { return pyramidTable(timeUnit(options.unit), options.forPeople()); },
      [](CLI::App& app, demography_options& options) {
        addUnit(app, options);
        addFormatOptions(app, options.table);
        addViewOptions(app, options.view, WHO | VIEW_DAY | VIEW_CLASSES | VIEW_UNKNOWN_SEX);
      });
}

void addRisks(std::vector<command>& commands) {
  add(
      commands, "survival", "Show what share of the animals reaches each age",
      [](const demography_options& options) {
        const time_unit unit = timeUnit(options.unit);
        return options.summary ? survivalSummary(options.survival, unit)
                               : survivalTable(options.survival, unit, options.forPeople());
      },
      [](CLI::App& app, demography_options& options) {
        addGroups(app, options.survival);
        app.add_flag("--summary", options.summary, "One row per group: deaths, median and mean age, log-rank test");
        addUnit(app, options);
        addTableOptions(app, options.table);
        addViewOptions(app, options.view, WHO_AND_WHEN | VIEW_SURVIVAL | VIEW_CLASSES);
        app.get_option("--summary")->excludes(app.get_option("--classes"));
      });
  add(
      commands, "life-table", "Show deaths and births by age and sex",
      [](const demography_options& options) { return lifeTableTable(timeUnit(options.unit)); },
      [](CLI::App& app, demography_options& options) {
        addUnit(app, options);
        addTableOptions(app, options.table);
        addViewOptions(app, options.view, RATES);
      });
  add(
      commands, "reproduction", "Show who breeds, when and how much",
      [](const demography_options& options) {
        return reproductionTable(options.litter_days, timeUnit(options.unit), options.forPeople());
      },
      [](CLI::App& app, demography_options& options) {
        addNumber(app, "--litter-days", options.litter_days, "DAYS", 0, 366,
                  "Births of a dam within this many days are one litter (default: as the life history says, or 7)");
        addUnit(app, options);
        addTableOptions(app, options.table);
        addViewOptions(app, options.view, WHO_AND_WHEN | VIEW_DAY | VIEW_CLASS_WIDTH);
      });
}

void addForecasts(std::vector<command>& commands) {
  add(
      commands, "growth", "Compute the growth rate from births and deaths by age",
      [](const demography_options& options) { return growthTable(options.growth, timeUnit(options.unit)); },
      [](CLI::App& app, demography_options& options) {
        growth_choice& growth = options.growth;
        addChoice(app, "--line", growth.line, {"female", "male", "both"},
                  "Whose births and deaths count, unless --sex is given");
        addChoice(app, "--parent-age", growth.parent_age, {"middle", "start"},
                  "The point of an age class at which births are placed");
        addRuns(app, growth.runs, growth.seed, 0, "Bootstrap runs; 0 for no intervals");
        addUnit(app, options);
        addFormatOptions(app, options.table);
        addViewOptions(app, options.view, RATES | VIEW_CENSUS);
        app.get_option("--line")->excludes(app.get_option("--sex"));
      });
  add(
      commands, "projection", "Show the numbers expected if births and deaths stay as they are",
      [](const demography_options& options) { return projectionTable(options.projection); },
      [](CLI::App& app, demography_options& options) {
        projection_choice& projection = options.projection;
        addNumber(app, "--years", projection.years, "YEARS", 1, 1000, "Years to look ahead (default: 20)");
        addNumber(app, "--fewer-than", projection.fewer_than, "COUNT", 0, 1e9,
                  "Count the runs with fewer animals (default: half of the animals)");
        addRuns(app, projection.runs, projection.seed, 1, "Runs with chance");
        addTableOptions(app, options.table);
        addViewOptions(app, options.view, RATES & ~VIEW_SEX);
      });
}

}  // namespace

void addDemographyCommands(std::vector<command>& commands) {
  addCounts(commands);
  addRisks(commands);
  addForecasts(commands);
  add(
      commands, "demography", "Show the figures of a yearly report on one page",
      [](const demography_options& options) { return demographyPage(options.forPeople()); },
      [](CLI::App& app, demography_options& options) {
        addTableOptions(app, options.table);
        addViewOptions(app, options.view, RATES | VIEW_CENSUS);
      });
}

}  // namespace spx::console
