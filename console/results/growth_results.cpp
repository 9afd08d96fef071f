#include "console/results/growth_results.h"

#include <cmath>
#include <numeric>

#include "spx/core/animal_data.h"
#include "spx/core/estimated_dates.h"
#include "spx/demography/census.h"
#include "spx/demography/growth.h"
#include "spx/demography/life_table.h"
#include "spx/demography/projection.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

/// Above this number of animals the bootstrap draws random groups of animals instead of single ones.
constexpr std::size_t MOST_SAMPLES = 2000;

std::vector<table_column> growthColumns(const time_unit& unit) {
  const std::string in = "in " + std::string(unit.name);
  const auto real = [](std::string name, std::string title, std::string help) {
    return table_column{.name = std::move(name),
                        .title = std::move(title),
                        .kind = COLUMN_KIND::REAL,
                        .decimals = 4,
                        .help = std::move(help)};
  };
  const auto bound = [](const char* name, const char* title) {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = 4};
  };
  return {
      {.name = "line", .title = "Line", .help = "whose births and deaths: those of one sex, or all"},
      real("r0", "Net reproductive rate R0", "expected offspring of its own sex of a newborn"),
      bound("r0_lower", "  from (95 %)"),
      bound("r0_upper", "  to"),
      real("generation_time", "Generation time", "mean age of parents at birth, " + in),
      bound("generation_time_lower", "  from (95 %)"),
      bound("generation_time_upper", "  to"),
      real("r", "Intrinsic rate r", "growth of the logarithm of the numbers per year"),
      bound("r_lower", "  from (95 %)"),
      bound("r_upper", "  to"),
      real("lambda", "Lambda", "growth factor per year from births and deaths; 1 means unchanged"),
      bound("lambda_lower", "  from (95 %)"),
      bound("lambda_upper", "  to"),
      real("lambda_leslie", "Lambda, Leslie matrix", "the same from the matrix that projection uses"),
      real("lambda_census", "Lambda, census", "growth factor of the counted numbers, entries and departures included"),
      real("generation_time_stable", "Generation time, stable", "in a population that grows by lambda, " + in),
      {.name = "runs", .title = "Bootstrap runs", .kind = COLUMN_KIND::INTEGER},
      {.name = "seed", .title = "Seed", .kind = COLUMN_KIND::INTEGER}};
}

double deathsOf(const life_tallies& data) {
  double deaths = 0;
  for (const class_tally& tally : data.tallies) deaths += tally.deaths;
  return deaths;
}

// When the view is of one sex, that sex is the line; otherwise the option decides.
SEX lineOf(const std::string& option) {
  if (View.sex == SEX::FEMALE || View.sex == SEX::MALE) return View.sex;
  if (View.sex != SEX::ALL) throw UsageError("growth needs females or males: leave out --sex " + getEnumName(View.sex));
  return option == "female" ? SEX::FEMALE : option == "male" ? SEX::MALE : SEX::ALL;
}

// The Leslie matrix is that of the females, so a view of males has no value.
double lambdaByMatrix(const life_tallies& data) {
  if (View.sex == SEX::MALE) return NOT_KNOWN;
  const double lambda = leslieLambda(stepRates(data, View.same_sex));
  return lambda > 0 ? std::pow(lambda, DAYS_PER_YEAR / View.class_width) : NOT_KNOWN;
}

std::string intervalNote(const growth_intervals& bounds, const life_tallies& samples) {
  const std::string note = "Each interval holds 95 % of the results of " + counted(bounds.runs, "run") +
                           " (bootstrap). A run draws as many animals as there are at random, some of them more than "
                           "once, and computes the rates from these";
  if (samples.samples == samples.counted) return note + ".";
  return note + "; because there are so many animals, it draws from " + std::to_string(samples.samples) +
         " random groups of them, which gives the same spread.";
}

}  // namespace

Table growthTable(const growth_choice& options, const time_unit& unit) {
  const SEX line = lineOf(options.line);
  const PARENT_AGE age = options.parent_age == "start" ? PARENT_AGE::START : PARENT_AGE::MIDDLE;
  const life_tallies samples = lifeTallies(Animals, View, presenceSettings(View), ageClasses(View), gestationDays(),
                                           options.runs > 0 ? MOST_SAMPLES : 1, options.seed);
  const life_tallies data = joinSamples(samples);
  const growth_rates growth =
      growthRates(line == SEX::ALL ? lifeTableOfAll(data, View.same_sex)
                                   : lifeTable(data.of(0, line), data.classes, line, View.same_sex),
                  age);
  const growth_intervals bounds = bootstrapGrowth(samples, line, View.same_sex, age, options.runs, options.seed);
  Table table(growthColumns(unit));
  table.is_record = true;
  table.heading = "Growth: " + viewText();
  table.addRow({line == SEX::ALL ? "both" : getEnumName(line), growth.r0, bounds.r0.lower, bounds.r0.upper,
                growth.generation_time / unit.days, bounds.generation_time.lower / unit.days,
                bounds.generation_time.upper / unit.days, growth.r * DAYS_PER_YEAR, bounds.r.lower * DAYS_PER_YEAR,
                bounds.r.upper * DAYS_PER_YEAR, growth.lambda, bounds.lambda.lower, bounds.lambda.upper,
                lambdaByMatrix(data), censusLambda(Presence(Animals.records, View, presenceSettings(View)), View),
                growth.stable_generation / unit.days, bounds.runs, options.seed});
  if (std::isnan(growth.lambda)) table.notes.push_back("No births to parents of known age: there is no growth rate.");
  if (bounds.failed != 0) {
    table.notes.push_back(counted(bounds.failed, "bootstrap run") + " without births gave no growth rate.");
  }
  if (bounds.runs > 0) table.notes.push_back(intervalNote(bounds, samples));
  if (data.counted > 0) addDeathNote(table, deathsOf(data));
  addCountNotes(table, data.in_view, data.left_out, data.findings);
  return table;
}

namespace {

Table emptyProjection(double fewer_than) {
  const auto number = [](const char* name, const char* title, std::string help) {
    return table_column{
        .name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = 1, .help = std::move(help)};
  };
  return Table({{.name = "year", .title = "Year", .kind = COLUMN_KIND::REAL, .decimals = 0, .help = "from now"},
                number("expected", "Expected", "numbers from the Leslie matrix, without chance"),
                number("females", "Females", "of them"),
                number("males", "Males", "of them"),
                number("lower", "Lower", "with chance: 2.5 % of the runs have fewer"),
                number("median", "Median", "with chance: half of the runs have fewer"),
                number("upper", "Upper", "with chance: 2.5 % of the runs have more"),
                {.name = "extinct",
                 .title = "Extinct",
                 .kind = COLUMN_KIND::PERCENT,
                 .decimals = 1,
                 .help = "runs with no male or no female left"},
                {.name = "fewer",
                 .title = "Fewer",
                 .kind = COLUMN_KIND::PERCENT,
                 .decimals = 1,
                 .help = "runs with fewer than " + qs_lib::defaultReal(fewer_than) + " animals (--fewer-than)"}});
}

double sumOf(const std::vector<double>& counts) {
  return std::accumulate(counts.begin(), counts.end(), 0.0);
}

}  // namespace

Table projectionTable(const projection_choice& options) {
  if (View.sex != SEX::ALL) throw UsageError("a projection needs both sexes: set sex=all in the view");
  const life_tallies data = lifeTallies(Animals, View, presenceSettings(View), ageClasses(View), gestationDays());
  const Presence presence(Animals.records, View, presenceSettings(View));
  const age_structure structure = ageStructure(presence, View, View.end_date);
  const step_rates rates = stepRates(data, View.same_sex);
  const class_counts start =
      startingNumbers(structure, std::max(rates.female_survival.size(), rates.male_survival.size()));
  const double step_years = View.class_width / DAYS_PER_YEAR;
  const auto steps = static_cast<std::size_t>(std::ceil(options.years / step_years));
  const double fewer_than = options.fewer_than.value_or(std::floor(start.total() / 2));
  const auto expected = projectExpected(start, rates, steps);
  const auto chance = projectChance(start, rates, steps, {options.runs, options.seed, fewer_than});
  Table table = emptyProjection(fewer_than);
  table.heading = "Projection from " + dayText(structure.date) + ": " + whoText();
  table.if_empty = "No animals are present on " + dayText(structure.date) + ": there is nothing to project.";
  if (start.total() == 0) {
    addCountNotes(table, data.in_view, data.left_out, data.findings);
    return table;
  }
  for (std::size_t step = 0; step < expected.size() && step < chance.size(); ++step) {
    const class_counts& numbers = expected[step];
    table.addRow({static_cast<double>(step) * step_years, numbers.total(), sumOf(numbers.females), sumOf(numbers.males),
                  chance[step].lower, chance[step].median, chance[step].upper, chance[step].extinct,
                  chance[step].below});
  }
  table.notes.push_back(counted(options.runs, "run") + ", seed " + std::to_string(options.seed) +
                        ". The rates of the life table stay as they are; nothing enters or leaves.");
  const double births = birthsToKeep(start.total(), data) / step_years;
  if (!std::isnan(births)) {
    table.notes.push_back("Keeping " + qs_lib::realToString(start.total(), 0) + " animals takes " +
                          qs_lib::realToString(births, 1) + " births a year.");
  }
  addDeathNote(table, deathsOf(data));
  addCountNotes(table, data.in_view, data.left_out, data.findings);
  return table;
}

}  // namespace spx::console
