#include "console/project/view_settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "spx/core/estimated_dates.h"
#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"
#include "spx/support/text.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/tables/enum_names.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr char ALL[] = "all";
constexpr char NONE[] = "none";

[[noreturn]] void refuse(const view_setting& setting, const std::string& value, const std::string& reason) {
  throw UsageError(std::string(setting.name) + ": " + quotedText(value) + " " + reason);
}

open_dates open;
qs_lib::day_number first_day = 0;  // of the start view

void markDate(qs_lib::day_number DataFilter::*member, bool is_today) {
  if (member == &DataFilter::start_date) {
    open.from = View.start_date == first_day;
  } else if (member == &DataFilter::end_date) {
    open.until = is_today;
  } else {
    open.on = is_today;
  }
}

qs_lib::day_number today() {
  qs_lib::date_time_record now;
  qs_lib::getToday(now);
  return qs_lib::msToDay(qs_lib::dateToJulian(now));
}

template <auto MEMBER>
void applyDate(const view_setting& setting, const std::string& value) {
  const bool is_today = isSameWord(value, "today");
  const auto date = is_today ? dated_text{today()} : parseDate(value);
  if (!date || date->day == 0) {
    refuse(setting, value, "is not a date (YYYY-MM-DD or today)");
  }
  const qs_lib::day_number last = is_today ? date->day : lastDayOf(*date);
  if (MEMBER == &DataFilter::monitor_date && last != date->day) {
    refuse(setting, value, "is not one day (YYYY-MM-DD or today)");
  }
  View.*MEMBER = MEMBER == &DataFilter::end_date ? last : date->day;
  markDate(MEMBER, is_today);
}

template <auto MEMBER>
void applyTruth(const view_setting& setting, const std::string& value) {
  const auto truth = parseTruth(value);
  if (!truth) {
    refuse(setting, value, "must be yes or no");
  }
  View.*MEMBER = *truth;
}

/// A bound that is not set is NaN. With an upper bound alone the library accepts only unknown
/// values, so a lower bound of 0 is added.
template <auto LOWER, auto UPPER>
void completeBounds() {
  if (!std::isnan(View.*UPPER) && std::isnan(View.*LOWER)) {
    View.*LOWER = 0;
  }
}

template <auto MEMBER>
void applyBound(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, NONE)) {
    View.*MEMBER = std::numeric_limits<double>::quiet_NaN();
  } else {
    const auto bound = parseReal<double>(value);
    if (!bound || std::isnan(*bound)) {
      refuse(setting, value, "must be a number, or none");
    }
    View.*MEMBER = *bound;
  }
  completeBounds<&DataFilter::low_generation, &DataFilter::high_generation>();
  completeBounds<&DataFilter::low_inbreeding, &DataFilter::high_inbreeding>();
}

template <auto MEMBER, long LOWEST, long HIGHEST>
void applyNumber(const view_setting& setting, const std::string& value) {
  long number = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < LOWEST || number > HIGHEST) {
    refuse(setting, value, "must be a whole number from " + std::to_string(LOWEST) + " to " + std::to_string(HIGHEST));
  }
  using number_type = std::remove_reference_t<decltype(View.*MEMBER)>;
  View.*MEMBER = static_cast<number_type>(number);
}

// Accepts units as in "1y" and "2w" and converts them to days; a year has 365.25 days.
void applyClassWidth(const view_setting& setting, const std::string& value) {
  struct unit {
    char letter;
    double days;
  };
  constexpr unit UNITS[] = {{'y', DAYS_PER_YEAR}, {'m', DAYS_PER_YEAR / 12}, {'w', DAYS_PER_WEEK}, {'d', 1}};
  const auto named = std::find_if(std::begin(UNITS), std::end(UNITS),
                                  [&value](const unit& one) { return value.ends_with(one.letter); });
  const bool is_bare = named == std::end(UNITS);
  const auto number = parseReal<double>(is_bare ? value : value.substr(0, value.size() - 1));
  if (!number || !(*number > 0)) {
    refuse(setting, value, "must be a number above 0 of years, months, weeks or days, such as 1y, 6m, 2w or 30d");
  }
  View.class_width = *number * (is_bare ? 1 : named->days);
}

template <auto MEMBER>
void applyChoice(const view_setting& setting, const std::string& value) {
  using choice = std::remove_reference_t<decltype(View.*MEMBER)>;
  auto chosen = parseName<choice>(value);
  if constexpr (std::is_same_v<choice, SEX>) {
    chosen = chosen || value.size() != 1 ? chosen : parseSex(value);  // "m" and "f" too
  }
  if constexpr (std::is_same_v<choice, BIRTH_TYPE>) {
    chosen = chosen || value.empty() ? chosen : parseOrigin(value);  // "captive" and "wild" too
  }
  if (!chosen) {
    refuse(setting, value, "must be one of: " + joinedWords(typedNames<choice>()));
  }
  View.*MEMBER = *chosen;
}

void applyTaxon(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, ALL)) {
    View.taxa.clear();
  } else if (!View.addTaxon(value)) {
    refuse(setting, value, "is not a taxon of the studbook (spx taxa lists them)");
  }
}

// By identifier, or by name in the first level that has it.
void applyLocation(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, ALL)) {
    View.demes.clear();
    MetaPop.selectMembers(true);
    return;
  }
  for (const deme_level& level : MetaPop.levels()) {
    if (View.addDeme(level.name, value)) {
      return;
    }
  }
  const auto deme = parseDeme(value);
  if (!deme || !View.addDeme(deme->binary())) {
    refuse(setting, value, "is not a location of the studbook (spx locations lists them)");
  }
}

void applyUserField(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, ALL)) {
    View.user_filters.clear();
    return;
  }
  // Titles may contain "=", so the longest matching title is taken.
  std::size_t best = user_field_list.size();
  for (std::size_t field = 0; field < user_field_list.size(); ++field) {
    const std::string& name = user_field_list[field].name;
    if (value.starts_with(name + "=") &&
        (best == user_field_list.size() || name.size() > user_field_list[best].name.size())) {
      best = field;
    }
  }
  if (best == user_field_list.size()) {
    refuse(setting, value, "is not FIELD=VALUE with a field that spx user-fields lists");
  }
  View.addUserView(static_cast<int>(best), value.substr(user_field_list[best].name.size() + 1));
}

constexpr char DATES[] = "YYYY-MM-DD|today";
constexpr char REALS[] = "NUMBER|none";
constexpr char TRUTHS[] = "yes|no";

template <typename Enum>
std::string choices() {
  return joinedWords(typedNames<Enum>(), "|");
}

std::vector<view_setting> allSettings() {
  using D = DataFilter;
  const std::string accuracies = choices<DATE_ACCURACY>();
  const std::string methods = choices<HANDLE_UNKNOWN>();
  return {
      {"sex", nullptr, choices<SEX>(), "Only animals of this sex", VIEW_SEX, false, applyChoice<&D::sex>},
      {"origin", nullptr, choices<BIRTH_TYPE>(), "Only animals of this origin", VIEW_FACTS, false,
       applyChoice<&D::origin>},
      {"rearing", nullptr, choices<REARING>(), "Only animals reared in this way", VIEW_FACTS, false,
       applyChoice<&D::rearing>},
      {"taxon", nullptr, "NAME", "Only animals of this taxon; may be repeated", VIEW_TAXA, true, applyTaxon},
      {"location", "deme", "NAME", "Only animals at this location, by name or identifier; may be repeated", VIEW_PLACES,
       true, applyLocation},
      {"user-field", nullptr, "FIELD=VALUE", "Only animals with this value in a user-defined field; may be repeated",
       VIEW_TAXA, true, applyUserField},
      {"on", "monitor", DATES, "The day on which animals count as living and present", VIEW_DAY, false,
       applyDate<&D::monitor_date>},
      {"from", nullptr, DATES, "First day of the period; a year or month begins with its first day", VIEW_PERIOD, false,
       applyDate<&D::start_date>},
      {"until", "to", DATES, "Last day of the period; a year or month ends with its last day", VIEW_PERIOD, false,
       applyDate<&D::end_date>},
      {"birth-accuracy", nullptr, accuracies, "Only animals whose birth date is at least this exact", VIEW_FACTS, false,
       applyChoice<&D::birth_accuracy>},
      {"death-accuracy", nullptr, accuracies, "Only animals whose death date is at least this exact", VIEW_FACTS, false,
       applyChoice<&D::death_accuracy>},
      {"event-accuracy", nullptr, accuracies,
       "Only animals whose events between birth and death all have dates at least this exact", VIEW_FACTS, false,
       applyChoice<&D::event_accuracy>},
      {"low-generation", nullptr, REALS, "Lowest generation number", VIEW_FACTS, false, applyBound<&D::low_generation>},
      {"high-generation", nullptr, REALS, "Highest generation number", VIEW_FACTS, false,
       applyBound<&D::high_generation>},
      {"low-inbreeding", nullptr, REALS, "Lowest inbreeding coefficient", VIEW_FACTS, false,
       applyBound<&D::low_inbreeding>},
      {"high-inbreeding", nullptr, REALS, "Highest inbreeding coefficient", VIEW_FACTS, false,
       applyBound<&D::high_inbreeding>},
      {"low-age", nullptr, REALS, "Lowest age (in files and reports only)", VIEW_WORDS, false, applyBound<&D::low_age>},
      {"high-age", nullptr, REALS, "Highest age (in files and reports only)", VIEW_WORDS, false,
       applyBound<&D::high_age>},
      {"contraception", nullptr, choices<BIRTH_CONTROL>(), "Contraception method (in files and reports only)",
       VIEW_WORDS, false, applyChoice<&D::contraception>},
      {"handle-unknown", nullptr, methods, "How animals of unknown sex count", VIEW_UNKNOWN_SEX, false,
       applyChoice<&D::handle_unknown>},
      {"handle-parent", nullptr, methods, "How unknown parents count", VIEW_PARENTS, false,
       applyChoice<&D::handle_parent>},
      {"census-interval", nullptr, choices<qs_lib::TIME_INTERVAL>(), "Time between two censuses", VIEW_CENSUS, false,
       applyChoice<&D::census_interval>},
      {"census-day", nullptr, "1-31", "Day of the month of the census; ignored for day and week", VIEW_CENSUS, false,
       applyNumber<&D::census_day, 1, 31>},
      {"census-month", nullptr, "1-12", "Month of the census; of the first one when a year has several", VIEW_CENSUS,
       false, applyNumber<&D::census_month, 1, 12>},
      {"class-width", nullptr, "WIDTH",
       "Width of the age classes, such as 1y, 6m or 30d (a bare number is days); ages known less exactly are left out",
       VIEW_CLASS_WIDTH, false, applyClassWidth},
      {"classes", nullptr, "COUNT", "Number of age classes (for survival: those shown in text)", VIEW_CLASS_COUNT,
       false, applyNumber<&D::number_of_classes, 1, 100000>},
      {"neonates", nullptr, TRUTHS,
       "Include animals that died as neonates (up to 30 days old, or as the life history says)", VIEW_LIVES, false,
       applyTruth<&D::use_neonate>},
      {"stillbirths", nullptr, TRUTHS, "Include animals that died on the day of their birth", VIEW_LIVES, false,
       applyTruth<&D::use_stillbirth>},
      {"den-emerge", nullptr, TRUTHS,
       "Count from the day on which animals emerge from the den (needs den-emerge in the life history)", VIEW_LIVES,
       false, applyTruth<&D::use_emerge>},
      {"left-truncated", nullptr, TRUTHS, "Animals that come later are at risk only from the age at which they come",
       VIEW_SURVIVAL, false, applyTruth<&D::left_truncated>},
      {"right-censored", nullptr, TRUTHS,
       "Count animals that left or are still alive, up to the age at which they were last seen", VIEW_SURVIVAL, false,
       applyTruth<&D::right_censored>},
      {"prorating", nullptr, TRUTHS, "Count an animal seen for part of an age class as that part", VIEW_PRORATING,
       false, applyTruth<&D::prorating>},
      {"same-sex", nullptr, TRUTHS, "Count offspring of the parent's sex only", VIEW_OFFSPRING, false,
       applyTruth<&D::same_sex>},
      {"generic-parents", nullptr, TRUTHS, "Assume generic unknown parents", VIEW_PARENTS, false,
       applyTruth<&D::generic_parents>},
      {"filter-id", nullptr, "NUMBER", "The number of the view, 0 for none (in files and reports only)", VIEW_WORDS,
       false, applyNumber<&D::filter_id, 0, std::numeric_limits<int>::max()>},
  };
}

}  // namespace

const std::vector<view_setting>& viewSettings() {
  static const std::vector<view_setting> settings = allSettings();
  return settings;
}

void checkViewBounds() {
  if (View.start_date > View.end_date) {
    throw UsageError("the period ends before it begins: from " + qs_lib::julianToISO(qs_lib::dayToMs(View.start_date)) +
                     " until " + qs_lib::julianToISO(qs_lib::dayToMs(View.end_date)));
  }
  if (View.low_generation > View.high_generation) {
    throw UsageError("low-generation is above high-generation, so no animal could match");
  }
  if (View.low_inbreeding > View.high_inbreeding) {
    throw UsageError("low-inbreeding is above high-inbreeding, so no animal could match");
  }
}

void setViewSetting(const std::string& name, const std::string& value) {
  std::vector<std::string> names;
  for (const view_setting& setting : viewSettings()) {
    if (isSameWord(name, setting.name) || (setting.alias != nullptr && isSameWord(name, setting.alias))) {
      return setting.apply(setting, value);
    }
    names.emplace_back(setting.name);
  }
  throw UsageError("there is no view setting " + quotedText(name) + suggestion(name, names));
}

open_dates openDates() {
  return open;
}

void setStartView() {
  View.clearView();
  open = {};
  first_day = View.start_date;
  View.origin = BIRTH_TYPE::ALL;
  View.prorating = true;
}

}  // namespace spx::console
