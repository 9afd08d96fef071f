#include "console/project/view_animals.h"

#include <algorithm>
#include <cmath>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/user_fields.h"
#include "spx/demography/presence.h"
#include "spx/views/data_filter.h"

#include "console/base/display_text.h"
#include "console/project/view_settings.h"
#include "console/tables/enum_names.h"

namespace spx::console {
namespace {

/// Whether a stay overlaps the period of the view.
bool isInPeriod(const stay& time) {
  return time.from <= View.end_date && time.to > View.start_date;
}

std::string quotedValue(const std::string& value) {
  const bool is_plain = !value.empty() && value.find_first_of(" \t\"'\\$&;|<>()*?") == std::string::npos;
  return is_plain ? visibleText(value) : "\"" + visibleText(value) + "\"";
}

/// Collects options as they would be typed.
class OptionText {
 public:
  void add(const char* name, const std::string& value) {
    text_ += (text_.empty() ? "--" : " --") + std::string(name) + " " + quotedValue(value);
  }
  template <typename Enum>
  void add(const char* name, Enum value, Enum all) {
    if (value != all) {
      add(name, typedWord(getEnumName(value)));
    }
  }
  void addBound(const char* name, double value) {
    if (!std::isnan(value)) {
      std::string digits = std::to_string(value);
      digits.erase(digits.find_last_not_of('0') + 1);
      add(name, digits.ends_with('.') ? digits.substr(0, digits.size() - 1) : digits);
    }
  }
  void addDay(const char* name, qs_lib::day_number day) { add(name, qs_lib::julianToISO(qs_lib::dayToMs(day))); }
  std::string text() const { return text_; }

 private:
  std::string text_;
};

void addPeriod(OptionText& options) {
  if (!openDates().from) {
    options.addDay("from", View.start_date);
  }
  if (!openDates().until) {
    options.addDay("until", View.end_date);
  }
}

void addLists(OptionText& options) {
  for (const taxon_handle& taxon : View.taxa) {
    options.add("taxon", Subspecies.getName(taxon));
  }
  for (const packed_deme location : View.demes) {
    options.add("location", MetaPop.getMemberName(location));
  }
  for (const user_filter& filter : View.user_filters) {
    options.add("user-field", userFieldName(static_cast<std::size_t>(filter.field)) + "=" + filter.value);
  }
}

}  // namespace

bool hasPeriod() {
  return !openDates().from || !openDates().until;
}

std::vector<position> animalsOfView() {
  std::vector<position> animals;
  if (View.demes.empty() && !hasPeriod()) {
    for (position animal = 0; animal < Animals.records.size(); ++animal) {
      if (isInViewRecord(Animals.records[animal], View)) {
        animals.push_back(animal);
      }
    }
    return animals;
  }
  const Presence presence(Animals.records, View, presenceSettings(View));
  for (const Presence::life& life : presence.lives()) {
    const auto stays = presence.stays(life);
    if (!hasPeriod() || std::any_of(stays.begin(), stays.end(), isInPeriod)) {
      animals.push_back(life.animal);
    }
  }
  return animals;
}

std::vector<position> livingOfView() {
  return Presence(Animals.records, View, presenceSettings(View)).presentOn(View.monitor_date);
}

std::string viewText(bool with_day) {
  OptionText options;
  options.add("sex", View.sex, SEX::ALL);
  options.add("origin", View.origin, BIRTH_TYPE::ALL);
  options.add("rearing", View.rearing, REARING::ALL);
  addLists(options);
  options.add("birth-accuracy", View.birth_accuracy, DATE_ACCURACY::ALL_DATES);
  options.add("death-accuracy", View.death_accuracy, DATE_ACCURACY::ALL_DATES);
  options.add("event-accuracy", View.event_accuracy, DATE_ACCURACY::ALL_DATES);
  options.addBound("low-generation", View.low_generation);
  options.addBound("high-generation", View.high_generation);
  options.addBound("low-inbreeding", View.low_inbreeding);
  options.addBound("high-inbreeding", View.high_inbreeding);
  addPeriod(options);
  if (with_day && !openDates().on) {
    options.addDay("on", View.monitor_date);
  }
  return options.text();
}

std::string noAnimalsText(bool with_day) {
  const std::string asked = viewText(with_day);
  return asked.empty() ? "the studbook has no animals" : "no animals match " + asked;
}

std::vector<bool> chosenRecords(const std::vector<position>& animals) {
  std::vector<bool> chosen(Animals.records.size());
  for (const position animal : animals) {
    chosen[animal] = true;
  }
  return chosen;
}

bool isFixedPlaceholder(const std::string& id) {
  constexpr const char* FIXED[] = {WILD_PARENT, UNKNOWN_PARENT, UNKNOWN_SIRE, UNKNOWN_DAM, GROUP_PARENT};
  return std::any_of(std::begin(FIXED), std::end(FIXED), [&id](const char* each) { return id == each; });
}

}  // namespace spx::console
