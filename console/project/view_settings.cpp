#include "console/project/view_settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"
#include "spx/support/text.h"
#include "spx/views/data_filter.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr char ALL[] = "all";
constexpr char NONE[] = "none";

[[noreturn]] void refuse(const view_setting& setting, const std::string& value, const std::string& reason) {
  throw UsageError(std::string(setting.name) + ": " + quotedText(value) + " " + reason);
}

template <auto MEMBER>
void applyDate(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, "today")) {
    qs_lib::date_time_record today;
    qs_lib::getToday(today);
    View.*MEMBER = qs_lib::msToDay(qs_lib::dateToJulian(today));
    return;
  }
  const auto date = parseDate(value);
  if (!date || date->day == 0) {
    refuse(setting, value, "is no date (YYYY-MM-DD or today)");
  }
  View.*MEMBER = date->day;
}

template <auto MEMBER>
void applyTruth(const view_setting& setting, const std::string& value) {
  const bool is_true = qs_lib::stringToBool(value);
  const auto is_word = [&value](const char* word) { return isSameWord(value, word); };
  const auto no_words = {"false", "f", "no", "n", "0", "off"};
  if (!is_true && std::none_of(no_words.begin(), no_words.end(), is_word)) {
    refuse(setting, value, "is neither yes nor no");
  }
  View.*MEMBER = is_true;
}

// A bound that is not set is NaN; the library takes an upper bound without a lower one for nothing.
template <auto MEMBER>
void applyBound(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, NONE)) {
    View.*MEMBER = std::numeric_limits<double>::quiet_NaN();
    return;
  }
  const auto bound = parseReal<double>(value);
  if (!bound || std::isnan(*bound)) {
    refuse(setting, value, "is no number (or none)");
  }
  View.*MEMBER = *bound;
}

template <auto MEMBER, long LOWEST, long HIGHEST>
void applyNumber(const view_setting& setting, const std::string& value) {
  long number = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || number < LOWEST || number > HIGHEST) {
    refuse(setting, value, "is no whole number from " + std::to_string(LOWEST) + " to " + std::to_string(HIGHEST));
  }
  using number_type = std::remove_reference_t<decltype(View.*MEMBER)>;
  View.*MEMBER = static_cast<number_type>(number);
}

void applyClassWidth(const view_setting& setting, const std::string& value) {
  const auto days = parseReal<double>(value);
  if (!days || !(*days > 0)) {
    refuse(setting, value, "is no number of days above 0");
  }
  View.class_width = *days;
}

// The display names are those of listings and tables; the names end where the first value has none.
template <auto MEMBER>
void applyChoice(const view_setting& setting, const std::string& value) {
  using choice = std::remove_reference_t<decltype(View.*MEMBER)>;
  std::string names;
  for (std::uint32_t number = 0; !getEnumName(static_cast<choice>(number)).empty(); ++number) {
    const std::string name = getEnumName(static_cast<choice>(number));
    if (isSameWord(value, name)) {
      View.*MEMBER = static_cast<choice>(number);
      return;
    }
    names += (names.empty() ? "" : ", ") + name;
  }
  refuse(setting, value, "is none of " + names);
}

void applyTaxon(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, ALL)) {
    View.taxa.clear();
  } else if (!View.addTaxon(value)) {
    refuse(setting, value, "is no taxon of the studbook (spx taxa lists them)");
  }
}

// By identifier, or by name in the first level that has it.
void applyDeme(const view_setting& setting, const std::string& value) {
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
    refuse(setting, value, "is no location of the studbook (spx locations lists them)");
  }
}

void applyUserField(const view_setting& setting, const std::string& value) {
  if (isSameWord(value, ALL)) {
    View.user_filters.clear();
    return;
  }
  // Titles may hold "=" themselves: the longest title that fits is meant.
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

constexpr char DATES[] = "DATE";
constexpr char REALS[] = "NUMBER";
constexpr char TRUTHS[] = "yes|no";
constexpr char ACCURACIES[] = "ACCURACY";

}  // namespace

const std::vector<view_setting>& viewSettings() {
  static const std::vector<view_setting> settings = {
      {"from", DATES, "First day of the period", false, applyDate<&DataFilter::start_date>},
      {"until", DATES, "Last day of the period", false, applyDate<&DataFilter::end_date>},
      {"monitor", DATES, "The day on which living animals are taken", false, applyDate<&DataFilter::monitor_date>},
      {"sex", "SEX", "Only animals of this sex", false, applyChoice<&DataFilter::sex>},
      {"origin", "ORIGIN", "Only animals of this origin", false, applyChoice<&DataFilter::origin>},
      {"rearing", "REARING", "The kind of rearing that reports name", false, applyChoice<&DataFilter::rearing>},
      {"taxon", "NAME", "Only animals of this taxon", true, applyTaxon},
      {"deme", "DEME", "Only animals in this location, by name or identifier", true, applyDeme},
      {"user-field", "FIELD=VALUE", "Only animals with this value", true, applyUserField},
      {"birth-accuracy", ACCURACIES, "The worst accuracy of birth dates", false,
       applyChoice<&DataFilter::birth_accuracy>},
      {"death-accuracy", ACCURACIES, "The worst accuracy of death dates", false,
       applyChoice<&DataFilter::death_accuracy>},
      {"event-accuracy", ACCURACIES, "The worst accuracy of event dates", false,
       applyChoice<&DataFilter::event_accuracy>},
      {"low-generation", REALS, "Lowest generation number", false, applyBound<&DataFilter::low_generation>},
      {"high-generation", REALS, "Highest generation number (needs a lowest one)", false,
       applyBound<&DataFilter::high_generation>},
      {"low-inbreeding", REALS, "Lowest inbreeding coefficient", false, applyBound<&DataFilter::low_inbreeding>},
      {"high-inbreeding", REALS, "Highest inbreeding coefficient (needs a lowest one)", false,
       applyBound<&DataFilter::high_inbreeding>},
      {"low-age", REALS, "Lowest age that reports name", false, applyBound<&DataFilter::low_age>},
      {"high-age", REALS, "Highest age that reports name", false, applyBound<&DataFilter::high_age>},
      {"contraception", "METHOD", "The contraception that analyses take", false,
       applyChoice<&DataFilter::contraception>},
      {"handle-unknown", "METHOD", "How analyses treat animals of unknown sex", false,
       applyChoice<&DataFilter::handle_unknown>},
      {"handle-parent", "METHOD", "How analyses treat unknown parents", false, applyChoice<&DataFilter::handle_parent>},
      {"census-interval", "INTERVAL", "The interval between censuses", false,
       applyChoice<&DataFilter::census_interval>},
      {"census-day", "DAY", "Day of the census", false, applyNumber<&DataFilter::census_day, 1, 31>},
      {"census-month", "MONTH", "Month of the census", false, applyNumber<&DataFilter::census_month, 1, 12>},
      {"class-width", "DAYS", "Width of the age classes", false, applyClassWidth},
      {"classes", "COUNT", "Number of age classes", false, applyNumber<&DataFilter::number_of_classes, 1, 100000>},
      {"neonates", TRUTHS, "Include neonates", false, applyTruth<&DataFilter::use_neonate>},
      {"stillbirths", TRUTHS, "Include stillbirths", false, applyTruth<&DataFilter::use_stillbirth>},
      {"den-emerge", TRUTHS, "Count from the day when animals emerge from the den", false,
       applyTruth<&DataFilter::use_emerge>},
      {"left-truncated", TRUTHS, "Left truncation of life tables", false, applyTruth<&DataFilter::left_truncated>},
      {"right-censored", TRUTHS, "Right censoring of life tables", false, applyTruth<&DataFilter::right_censored>},
      {"prorating", TRUTHS, "Prorating", false, applyTruth<&DataFilter::prorating>},
      {"same-sex", TRUTHS, "Count same-sex offspring", false, applyTruth<&DataFilter::same_sex>},
      {"generic-parents", TRUTHS, "Assume generic unknown parents", false, applyTruth<&DataFilter::generic_parents>},
      {"filter-id", "NUMBER", "The number of the view, 0 for none", false,
       applyNumber<&DataFilter::filter_id, 0, std::numeric_limits<int>::max()>},
  };
  return settings;
}

void setViewSetting(const std::string& name, const std::string& value) {
  const std::string wanted = isSameWord(name, "to") ? "until" : name;
  std::vector<std::string> names;
  for (const view_setting& setting : viewSettings()) {
    if (isSameWord(wanted, setting.name)) {
      return setting.apply(setting, value);
    }
    names.emplace_back(setting.name);
  }
  throw UsageError("there is no view setting " + quotedText(name) + suggestion(name, names));
}

void setStartView() {
  View.clearView();
  View.origin = BIRTH_TYPE::ALL;
}

}  // namespace spx::console
