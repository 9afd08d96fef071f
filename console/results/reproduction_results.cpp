#include "console/results/reproduction_results.h"

#include <cmath>

#include "spx/core/animal_data.h"
#include "spx/core/estimated_dates.h"
#include "spx/demography/reproduction.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"

#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

constexpr const char* MONTHS[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// The measures, for scripts and for people.
struct measure {
  const char* name;
  std::string title;
};

class Measures {
 public:
  Measures(const time_unit& unit, bool for_people)
      : unit_(unit), for_people_(for_people), table_(columns(unit, for_people)) {}

  void add(const measure& what, const char* sex, const qs_lib::basic_stat& stat, double scale, int decimals) {
    if (for_people_ && stat.sample_size == 0) return;
    const auto number = [&](double value) { return cell(value / scale, decimals); };
    table_.addRow({for_people_ ? what.title : what.name, sex, stat.sample_size, number(stat.mean), number(stat.median),
                   number(stat.minimum), number(stat.maximum), number(stat.confidence_interval.lower),
                   number(stat.confidence_interval.upper)});
  }

  void addShare(const measure& what, const char* sex, std::size_t number, double share,
                qs_lib::DataRange<double> interval) {
    table_.addRow({for_people_ ? what.title : what.name, sex, number, cell(share, 2), cell(NOT_KNOWN, 2),
                   cell(NOT_KNOWN, 2), cell(NOT_KNOWN, 2), cell(interval.lower, 2), cell(interval.upper, 2)});
  }

  void addCount(const std::string& name, std::size_t number) {
    if (!for_people_) table_.addRow({name, "all", number});
  }

  const time_unit& unit() const { return unit_; }
  Table& table() { return table_; }

 private:
  // People read a share with two decimals and days with none, in the same column.
  Cell cell(double value, int decimals) const {
    if (!for_people_) return value;
    return std::isnan(value) ? "-" : qs_lib::realToString(value, decimals);
  }

  static std::vector<table_column> columns(const time_unit& unit, bool for_people) {
    const COLUMN_KIND kind = for_people ? COLUMN_KIND::TEXT : COLUMN_KIND::REAL;
    const auto real = [kind](const char* name, const char* title, std::string help) {
      return table_column{
          .name = name, .title = title, .kind = kind, .help = std::move(help), .alignment = ALIGNMENT::RIGHT};
    };
    return {
        {.name = "measure", .title = "Measure"},
        {.name = "sex", .title = "Sex"},
        {.name = "n", .title = "Number", .kind = COLUMN_KIND::INTEGER, .help = "animals, births or litters counted"},
        real("mean", "Mean", "ages in " + std::string(unit.name)),
        real("median", "Median", ""),
        real("min", "Least", ""),
        real("max", "Most", ""),
        real("lower", "Lower", "95 % interval of the mean, or of the share (0.52 is 52 %)"),
        real("upper", "Upper", "")};
  }

  time_unit unit_;
  bool for_people_;
  Table table_;
};

void addParents(Measures& to, const char* sex, const parent_summary& parents) {
  const time_unit& unit = to.unit();
  to.add({"age_first_birth", "Age at first birth"}, sex, parents.first, unit.days, unit.decimals);
  to.add({"age_last_birth", "Age at last birth"}, sex, parents.last, unit.days, unit.decimals);
  to.add({"age_at_birth", "Age at all births"}, sex, parents.all, unit.days, unit.decimals);
  to.add({"lifetime_offspring", "Lifetime offspring"}, sex, parents.lifetime, 1, 2);
  const auto breeders = static_cast<double>(parents.breeders);
  const auto adults = static_cast<double>(parents.adults);
  to.addShare({"breeders", "Adults that have bred"}, sex, parents.adults, adults > 0 ? breeders / adults : NOT_KNOWN,
              wilsonInterval(breeders, adults));
}

// "Jan 0, Feb 2, ...": a line for people.
std::string monthsText(const reproduction_summary& summary) {
  std::string text = "Births by month:";
  for (std::size_t month = 0; month < summary.months.size(); ++month) {
    text += std::string(month == 0 ? " " : ", ") + MONTHS[month] + " " + std::to_string(summary.months[month]);
  }
  return text + ".";
}

std::string seasonText(const reproduction_summary& summary) {
  if (std::isnan(summary.mean_day)) return "";
  constexpr qs_lib::day_number NEW_YEAR_2001 = 2451911;
  const auto date = qs_lib::civilFromDay(NEW_YEAR_2001 + static_cast<qs_lib::day_number>(summary.mean_day) - 1);
  return "Mean day of birth: " + std::to_string(date.day) + " " + MONTHS[date.month - 1] + "; concentration " +
         qs_lib::realToString(summary.concentration, 2) + " (1: all on one day, 0: spread evenly over the year).";
}

std::string littersText(const reproduction_summary& summary) {
  std::string text = "Litters by size:";
  const char* between = " ";
  for (const auto& [size, number] : summary.litter_sizes) {
    text += between + std::to_string(number) + " of " + std::to_string(size);
    between = ", ";
  }
  return text + ".";
}

void addNotes(Table& table, const reproduction_summary& summary) {
  const sex_counts& births = summary.births;
  table.notes.push_back(counted(births.total(), "birth") + ": " + std::to_string(births.males) + " male, " +
                        std::to_string(births.females) + " female, " + std::to_string(births.unknown) +
                        " of unknown sex.");
  if (summary.months_unknown < births.total()) table.notes.push_back(monthsText(summary));
  const std::string season = seasonText(summary);
  if (!season.empty()) table.notes.push_back(season);
  if (!summary.litter_sizes.empty()) table.notes.push_back(littersText(summary));
  table.notes.push_back("Left out: from litters, " + counted(summary.dams_unknown, "birth") + " without a dam and " +
                        std::to_string(summary.days_unknown) + " without a day; from months, " +
                        counted(summary.months_unknown, "birth") + "; from ages at birth, " +
                        counted(summary.females.unknown_ages, "dam") + " and " +
                        counted(summary.males.unknown_ages, "sire") + " unknown or of unknown age.");
}

}  // namespace

Table reproductionTable(std::optional<double> litter_days, const time_unit& unit, bool for_people) {
  reproduction_settings settings = reproductionSettings();
  if (litter_days) settings.litter_days = *litter_days;
  const reproduction_summary summary = reproductionOf(Animals, View, presenceSettings(View), settings);
  Measures measures(unit, for_people);
  measures.addShare({"male_share", "Males at birth"}, "all", summary.births.males + summary.births.females,
                    summary.male_share, summary.male_share_interval);
  if (View.sex != SEX::MALE) addParents(measures, "female", summary.females);
  if (View.sex != SEX::FEMALE) addParents(measures, "male", summary.males);
  measures.add({"litter_size", "Litter size"}, "all", summary.litters, 1, 2);
  measures.add({"birth_interval", "Days between litters"}, "all", summary.intervals, 1, 0);
  for (std::size_t month = 0; month < 12; ++month) {
    measures.addCount("births_in_month_" + std::to_string(month + 1), summary.months[month]);
  }
  for (const auto& [size, number] : summary.litter_sizes) {
    measures.addCount("litters_of_" + std::to_string(size), number);
  }
  Table& table = measures.table();
  table.heading = "Reproduction: " + viewText() + "; adults on " + dayText(summary.date);
  if (View.sex == SEX::FEMALE || View.sex == SEX::MALE) {
    table.notes.push_back("Young of every sex count; --sex chooses the parents that are shown.");
  }
  addNotes(table, summary);
  addCountNotes(table, summary.in_view, summary.left_out, summary.findings);
  return std::move(table);
}

}  // namespace spx::console
