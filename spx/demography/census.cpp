#include "spx/demography/census.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "spx/core/estimated_dates.h"
#include "spx/demography/statistics.h"

namespace spx {
namespace {

using qs_lib::day_number;
using qs_lib::TIME_INTERVAL;

constexpr int MONTHS = 12;

// The census day of a month, counted from month 0 of year 0.
std::optional<day_number> dayOfMonth(std::int64_t month_number, int day) {
  const std::int64_t year = month_number >= 0 ? month_number / MONTHS : -((MONTHS - 1 - month_number) / MONTHS);
  const auto month = static_cast<unsigned>(month_number - year * MONTHS + 1);
  const unsigned last = qs_lib::daysInMonth(year, month);
  return qs_lib::dayFromCivil({year, month, std::min(static_cast<unsigned>(std::max(day, 1)), last)});
}

// Months between two censuses; 0 for steps of days.
int monthsOf(TIME_INTERVAL interval) {
  switch (interval) {
    case TIME_INTERVAL::DAY:
    case TIME_INTERVAL::WEEK:
      return 0;
    case TIME_INTERVAL::MONTH:
      return 1;
    case TIME_INTERVAL::QUARTER:
      return 3;
    case TIME_INTERVAL::BIANNUAL:
      return 6;
    case TIME_INTERVAL::BIENNIAL:
      return 2 * MONTHS;
    case TIME_INTERVAL::FIVE_YEAR:
      return 5 * MONTHS;
    default:
      return MONTHS;
  }
}

std::vector<day_number> monthlyDays(const DataFilter& view, int step) {
  std::vector<day_number> days;
  const std::int64_t last_year = qs_lib::civilFromDay(view.end_date).year;
  std::int64_t month = (qs_lib::civilFromDay(view.start_date).year - 1) * MONTHS;
  const std::int64_t years = std::max(step / MONTHS, 1);
  month -= (month / MONTHS % years) * MONTHS;
  const int census_month = std::clamp(view.census_month, 1, MONTHS);
  for (month += census_month - 1; month / MONTHS <= last_year + years; month += step) {
    const auto day = dayOfMonth(month, view.census_day);
    if (day && *day >= view.start_date && *day <= view.end_date) days.push_back(*day);
  }
  return days;
}

std::vector<day_number> dailyDays(const DataFilter& view, day_number first, day_number step) {
  std::vector<day_number> days;
  day_number day = view.start_date;
  if (first > day) day += (first - 1 - day) / step * step;
  for (; day <= view.end_date; day += step) {
    days.push_back(day);
    if (view.end_date - day < step) break;
  }
  return days;
}

// Numbers of arrivals and departures by the census that they come before.
class Changes {
 public:
  explicit Changes(const std::vector<day_number>& days) : days_(days), rows_(days.size()) {
    for (std::size_t row = 0; row < days.size(); ++row) rows_[row].date = days[row];
  }

  void add(const stay& time, SEX sex) {
    const std::size_t begin = rowOf(time.from);
    if (begin == rows_.size()) return;
    ++rows_[begin].present.of(sex);
    ++(time.start == STAY_START::BORN ? rows_[begin].births : rows_[begin].entries);
    const std::size_t end = time.end == STAY_END::PRESENT ? rows_.size() : rowOf(time.to);
    if (end == rows_.size()) return;
    --rows_[end].present.of(sex);  // may wrap below 0; rows() adds the changes up to valid numbers
    ++counted(rows_[end], time.end);
  }

  // Adds up the changes, which turns them into the numbers of animals.
  std::vector<census_row> rows() {
    for (std::size_t row = 1; row < rows_.size(); ++row) {
      rows_[row].present.males += rows_[row - 1].present.males;
      rows_[row].present.females += rows_[row - 1].present.females;
      rows_[row].present.unknown += rows_[row - 1].present.unknown;
    }
    return std::move(rows_);
  }

 private:
  std::size_t rowOf(day_number day) const {
    return static_cast<std::size_t>(std::lower_bound(days_.begin(), days_.end(), day) - days_.begin());
  }

  static std::size_t& counted(census_row& row, STAY_END end) {
    switch (end) {
      case STAY_END::DIED:
        return row.deaths;
      case STAY_END::LOST:
        return row.losses;
      default:
        return row.departures;
    }
  }

  const std::vector<day_number>& days_;
  std::vector<census_row> rows_;
};

}  // namespace

std::size_t& sex_counts::of(SEX sex) {
  return sex == SEX::MALE ? males : sex == SEX::FEMALE ? females : unknown;
}

std::vector<day_number> censusDays(const DataFilter& view, day_number first) {
  if (view.end_date < view.start_date) return {};
  const int months = monthsOf(view.census_interval);
  if (months == 0) {
    return dailyDays(view, first, view.census_interval == TIME_INTERVAL::DAY ? 1 : 7);
  }
  std::vector<day_number> days = monthlyDays(view, months);
  if (first == 0) return days;
  const auto after = std::lower_bound(days.begin(), days.end(), first);
  if (after != days.begin()) days.erase(days.begin(), std::prev(after));
  return days;
}

day_number firstDay(const Presence& presence) {
  day_number first = 0;
  for (const Presence::life& life : presence.lives()) {
    const day_number from = presence.stays(life).front().from;
    if (first == 0 || from < first) first = from;
  }
  return first;
}

std::vector<census_row> census(const Presence& presence, const std::vector<day_number>& days) {
  Changes changes(days);
  for (const Presence::life& life : presence.lives()) {
    for (const stay& time : presence.stays(life)) changes.add(time, life.sex);
  }
  return changes.rows();
}

double censusLambda(const std::vector<census_row>& rows) {
  double n = 0;
  double sum_t = 0;
  double sum_y = 0;
  double sum_tt = 0;
  double sum_ty = 0;
  for (const census_row& row : rows) {
    if (row.present.total() == 0) continue;
    const double t = (double{1} * row.date - rows.front().date) / DAYS_PER_YEAR;
    const double y = std::log(static_cast<double>(row.present.total()));
    n += 1;
    sum_t += t;
    sum_y += y;
    sum_tt += t * t;
    sum_ty += t * y;
  }
  const double spread = n * sum_tt - sum_t * sum_t;
  return n < 2 || !(spread > 0) ? NOT_KNOWN : std::exp((n * sum_ty - sum_t * sum_y) / spread);
}

double censusLambda(const Presence& presence, const DataFilter& view) {
  return censusLambda(census(presence, censusDays(view, firstDay(presence))));
}

}  // namespace spx
