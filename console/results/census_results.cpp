#include "console/results/census_results.h"

#include <algorithm>
#include <cmath>

#include "spx/core/animal_data.h"
#include "spx/core/estimated_dates.h"
#include "spx/demography/age_structure.h"
#include "spx/demography/census.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

Table tableOf(const std::vector<census_row>& rows, bool starts_from_nothing) {
  Table table({{.name = "date", .title = "Date", .kind = COLUMN_KIND::DATE, .help = "the census day"},
               {.name = "males", .title = "Male", .kind = COLUMN_KIND::INTEGER, .help = "animals present on that day"},
               {.name = "females", .title = "Female", .kind = COLUMN_KIND::INTEGER},
               {.name = "unknown", .title = "Unkn.", .kind = COLUMN_KIND::INTEGER, .help = "sex unknown"},
               {.name = "total",
                .title = "Total",
                .kind = COLUMN_KIND::INTEGER,
                .help = "the total before + births + in - deaths - out - lost"},
               {.name = "births", .title = "Births", .kind = COLUMN_KIND::INTEGER, .help = "since the previous census"},
               {.name = "deaths", .title = "Deaths", .kind = COLUMN_KIND::INTEGER},
               {.name = "entries",
                .title = "In",
                .kind = COLUMN_KIND::INTEGER,
                .help = "from the wild, from outside the population, from other locations"},
               {.name = "departures",
                .title = "Out",
                .kind = COLUMN_KIND::INTEGER,
                .help = "released, surplus, out of the population, to other locations"},
               {.name = "losses", .title = "Lost", .kind = COLUMN_KIND::INTEGER, .help = "lost to follow-up"}});
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const census_row& row = rows[at];
    std::vector<Cell> cells = {known_date{row.date}, row.present.males, row.present.females, row.present.unknown,
                               row.present.total()};
    if (at > 0 || starts_from_nothing) {
      for (const std::size_t number : {row.births, row.deaths, row.entries, row.departures, row.losses}) {
        cells.emplace_back(number);
      }
    }
    table.addRow(std::move(cells));
  }
  return table;
}

}  // namespace

Table censusTable() {
  const Presence presence(Animals.records, View, presenceSettings(View));
  const qs_lib::day_number first = firstDay(presence);
  const std::vector<qs_lib::day_number> days = first == 0 ? std::vector<qs_lib::day_number>() : censusDays(View, first);
  const std::vector<census_row> rows = census(presence, days);
  Table table = tableOf(rows, !days.empty() && days.front() < first);
  table.heading = "Census: " + viewText();
  table.if_empty = first == 0 ? "No animals of the view were ever present." : "There is no census day in the period.";
  const double lambda = censusLambda(presence, View);
  if (!std::isnan(lambda)) {
    table.notes.push_back("Growth over the period: " + qs_lib::realToString((lambda - 1) * 100, 1) + " % a year.");
  }
  const left_out_counts left_out =
      days.empty() ? leftOutBetween(presence, 1, 0) : leftOutBetween(presence, days.front(), days.back());
  addCountNotes(table, presence.in_view, left_out, presence.findings);
  return table;
}

namespace {

std::string bar(double animals, double per_mark) {
  return std::string(static_cast<std::size_t>(std::lround(animals / per_mark)), '#');
}

std::string numberText(double animals) {
  return qs_lib::realToString(animals, animals == std::floor(animals) ? 0 : 1);
}

// Classes beyond the oldest animal are not shown.
std::size_t usedClasses(const age_structure& structure) {
  std::size_t used = structure.rows.size();
  while (used > 0 && structure.rows[used - 1].total() == 0) --used;
  return used;
}

std::string classText(const age_structure& structure, std::size_t at, const time_unit& unit) {
  const int decimals = std::fmod(structure.class_width, unit.days) == 0 ? 0 : 2;
  const std::string text = qs_lib::realToString(structure.rows[at].age / unit.days, decimals);
  return at + 1 == structure.rows.size() ? text + "+" : text;
}

Table drawnPyramid(const age_structure& structure, const time_unit& unit) {
  constexpr double WIDEST = 24;
  const std::size_t used = usedClasses(structure);
  double most = WIDEST;
  for (std::size_t at = 0; at < used; ++at) {
    most = std::max({most, structure.rows[at].males, structure.rows[at].females});
  }
  const double per_mark = most / WIDEST;
  Table table(
      {{.name = "males", .title = "Males", .alignment = ALIGNMENT::RIGHT},
       {.name = "male_bar", .title = "", .alignment = ALIGNMENT::RIGHT},
       {.name = "age",
        .title = "Age",
        .help = "at the start of the class, in " + std::string(unit.name),
        .alignment = ALIGNMENT::RIGHT},
       {.name = "female_bar", .title = ""},
       {.name = "females", .title = "Females", .alignment = ALIGNMENT::RIGHT},
       {.name = "unknown", .title = "Unknown", .help = "animals of unknown sex", .alignment = ALIGNMENT::RIGHT}});
  for (std::size_t at = used; at-- > 0;) {
    const age_row& row = structure.rows[at];
    table.addRow({numberText(row.males), bar(row.males, per_mark), classText(structure, at, unit),
                  bar(row.females, per_mark), numberText(row.females), numberText(row.unknown)});
  }
  if (per_mark > 1) table.notes.push_back("Each mark stands for " + qs_lib::realToString(per_mark, 1) + " animals.");
  return table;
}

// Halves appear where animals of unknown sex are shared.
int decimalsOf(const age_structure& structure) {
  const auto is_whole = [](const age_row& row) {
    return row.males == std::floor(row.males) && row.females == std::floor(row.females);
  };
  return is_whole(structure.unknown_age) && std::all_of(structure.rows.begin(), structure.rows.end(), is_whole) ? 0 : 1;
}

Table plainPyramid(const age_structure& structure, const time_unit& unit) {
  const auto number = [](const char* name, const char* title, int decimals) {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = decimals};
  };
  const int decimals = decimalsOf(structure);
  Table table({number("age", "Age", std::fmod(structure.class_width, unit.days) == 0 ? 0 : 2),
               number("males", "Males", decimals), number("females", "Females", decimals),
               number("unknown", "Unknown", decimals)});
  for (std::size_t at = 0; at < usedClasses(structure); ++at) {
    const age_row& row = structure.rows[at];
    table.addRow({row.age / unit.days, row.males, row.females, row.unknown});
  }
  const age_row& row = structure.unknown_age;
  if (row.total() > 0) table.addRow({Cell(), row.males, row.females, row.unknown});  // an empty age means unknown
  return table;
}

void addPyramidNotes(Table& table, const age_structure& structure) {
  const age_row& unknown = structure.unknown_age;
  double total = unknown.total();
  for (const age_row& row : structure.rows) total += row.total();
  table.notes.push_back(numberText(total) + (total == 1 ? " animal" : " animals") + " present on " +
                        dayText(structure.date) + ".");
  if (unknown.total() > 0) {
    table.notes.push_back("Age unknown: " + numberText(unknown.males) + " male, " + numberText(unknown.females) +
                          " female, " + numberText(unknown.unknown) + " of unknown sex.");
  }
  if (structure.shared_unknown > 0) {
    table.notes.push_back(numberText(structure.shared_unknown) +
                          " of unknown sex are shared between males and females (see --handle-unknown).");
  }
}

}  // namespace

Table pyramidTable(const time_unit& unit, bool for_people) {
  const Presence presence(Animals.records, View, presenceSettings(View));
  const age_structure structure = ageStructure(presence, View, View.monitor_date);
  Table table = for_people ? drawnPyramid(structure, unit) : plainPyramid(structure, unit);
  table.heading = "Age pyramid on " + dayText(structure.date) + ": " + whoText();
  table.if_empty = "No animals are present on that day.";
  addPyramidNotes(table, structure);
  left_out_counts left_out = presence.left_out;
  const std::size_t present = presence.presentOn(structure.date).size();
  left_out[LEFT_OUT::OUTSIDE_PERIOD] += presence.lives().size() - present;
  addCountNotes(table, presence.in_view, left_out, presence.findings);
  return table;
}

}  // namespace spx::console
