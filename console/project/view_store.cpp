#include "console/project/view_store.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"
#include "spx/support/file_name.h"
#include "spx/support/number_text.h"
#include "spx/support/text.h"
#include "spx/support/tokenizer.h"
#include "spx/views/data_filter.h"
#include "spx/views/view_file.h"

#include "console/base/failure.h"
#include "console/base/natural_order.h"
#include "console/base/quoted_text.h"
#include "console/project/view_settings.h"
#include "console/tables/enum_names.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

constexpr char TODAY[] = "today";
constexpr char USER_FILTER_KEY[] = "USER_FILTER_";
constexpr char TAXON_KEY[] = "TAXON_";
constexpr char LOCATION_KEY[] = "LOCATION_";

/// An entry of a view file and the setting that it sets.
struct view_entry {
  const char* key;
  const char* setting;
  /// Converts the value in the file to what would be typed; an empty result leaves the setting unchanged.
  std::string (*typed)(const std::string& value);
};

std::string asItIs(const std::string& value) {
  return value;
}

std::string realNumber(const std::string& value) {
  return isSameWord(value, "nan") ? "none" : value;
}

/// Files hold the number of an enumerator; in an edited file its name is accepted too.
template <class Enumeration>
std::string choice(const std::string& value) {
  const std::vector<std::string>& names = typedNames<Enumeration>();
  std::size_t number = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, number);
  const bool is_number = result.ec == std::errc() && result.ptr == end && number < names.size();
  return is_number ? names[number] : value;
}

constexpr view_entry ENTRIES[] = {
    {"FILTER_ID", "filter-id", asItIs},
    {"START_DATE", "from", asItIs},
    {"END_DATE", "until", asItIs},
    {"MONITOR_DATE", "on", asItIs},
    {"USE_EMERGE", "den-emerge", asItIs},
    {"CENSUS_INTERVAL", "census-interval", choice<qs_lib::TIME_INTERVAL>},
    {"CENSUS_DAY", "census-day", asItIs},
    {"CENSUS_MONTH", "census-month", asItIs},
    {"LEFT_TRUNCATED", "left-truncated", asItIs},
    {"RIGHT_CENSORED", "right-censored", asItIs},
    {"PRORATING", "prorating", asItIs},
    {"SAME_SEX", "same-sex", asItIs},
    {"BIRTH_DATE_ACCURACY", "birth-accuracy", choice<DATE_ACCURACY>},
    {"DEATH_DATE_ACCURACY", "death-accuracy", choice<DATE_ACCURACY>},
    {"EVENT_DATE_ACCURACY", "event-accuracy", choice<DATE_ACCURACY>},
    {"ORIGIN", "origin", choice<BIRTH_TYPE>},
    {"REARING", "rearing", choice<REARING>},
    {"USE_NEONATE", "neonates", asItIs},
    {"USE_STILLBIRTH", "stillbirths", asItIs},
    {"LOW_GENERATION", "low-generation", realNumber},
    {"HIGH_GENERATION", "high-generation", realNumber},
    {"LOW_INBREEDING", "low-inbreeding", realNumber},
    {"HIGH_INBREEDING", "high-inbreeding", realNumber},
    {"LOW_AGE", "low-age", realNumber},
    {"HIGH_AGE", "high-age", realNumber},
    {"CLASS_WIDTH", "class-width", asItIs},
    {"NUMBER_OF_CLASSES", "classes", asItIs},
    {"GENERIC_PARENTS", "generic-parents", asItIs},
    {"SEX", "sex", choice<SEX>},
    {"HANDLE_UNKNOWN", "handle-unknown", choice<HANDLE_UNKNOWN>},
    {"HANDLE_PARENT", "handle-parent", choice<HANDLE_UNKNOWN>},
    {"CONTRACEPTION", "contraception", choice<BIRTH_CONTROL>},
};

std::string numbered(const char* key, std::size_t number) {
  return key + std::to_string(number);
}

void replaceValue(qs_lib::Configuration& file, const char* key, const std::string& value) {
  const qs_lib::ConfigElement entry = file.get(key);
  file.set(key, entry.type, value, entry.description);
}

/// Stores the exact bound: the library writes bounds with only one or four decimals.
void addExactBound(qs_lib::Configuration& file, const char* key, double bound) {
  if (!std::isnan(bound) && file.get(key).value.real() != bound) {
    char digits[32];
    replaceValue(file, key, std::string(digits, std::to_chars(digits, std::end(digits), bound).ptr));
  }
}

void addExactBounds(qs_lib::Configuration& file) {
  addExactBound(file, "LOW_GENERATION", View.low_generation);
  addExactBound(file, "HIGH_GENERATION", View.high_generation);
  addExactBound(file, "LOW_INBREEDING", View.low_inbreeding);
  addExactBound(file, "HIGH_INBREEDING", View.high_inbreeding);
  addExactBound(file, "LOW_AGE", View.low_age);
  addExactBound(file, "HIGH_AGE", View.high_age);
}

void keepOpenDates(qs_lib::Configuration& file) {
  if (openDates().until) {
    replaceValue(file, "END_DATE", TODAY);
  }
  if (openDates().on) {
    replaceValue(file, "MONITOR_DATE", TODAY);
  }
}

/// A location as a person names it: its name if that identifies it, else its identifier.
std::string locationName(packed_deme location) {
  const std::string& name = MetaPop.getMemberName(location);
  const auto has_name = [&name](const deme_level& level) {
    return std::any_of(level.members.begin(), level.members.end(),
                       [&name](const deme_member& member) { return member.name == name; });
  };
  const auto& levels = MetaPop.levels();
  const auto first = std::find_if(levels.begin(), levels.end(), has_name);
  if (first != levels.end() && MetaPop.getMemberID(first->name, name) == location) {
    return name;
  }
  DemeID deme;
  deme.set(location);
  return shortDemeText(deme);
}

void addLists(qs_lib::Configuration& file) {
  // One entry per taxon, since names may contain the separator of the library's list.
  for (std::size_t i = 0; i < View.taxa.size(); ++i) {
    file.set(numbered(TAXON_KEY, i), "TEXT", Subspecies.getName(View.taxa[i]), "Selected taxon");
  }
  std::size_t number = 0;
  for (const packed_deme location : View.demes) {
    file.set(numbered(LOCATION_KEY, number++), "TEXT", locationName(location),
             "Selected location, by name or identifier; replaces METAPOPULATION");
  }
  for (std::size_t i = 0; i < View.user_filters.size(); ++i) {
    const user_filter& filter = View.user_filters[i];
    file.set(numbered(USER_FILTER_KEY, i), "TEXT", filter.value, userFieldName(static_cast<std::size_t>(filter.field)));
  }
}

void addMissingEntries(qs_lib::Configuration& file) {
  file.set("REARING", "INTEGER", std::to_string(static_cast<std::uint32_t>(View.rearing)), "Rearing of individuals");
  file.set("CLASS_WIDTH", "REAL", qs_lib::realToString(View.class_width, 6), "Width of age classes (days)");
  file.set("NUMBER_OF_CLASSES", "INTEGER", std::to_string(View.number_of_classes), "Number of age classes");
}

/// The values of KEY_0, KEY_1 and so on.
std::vector<qs_lib::ConfigElement> numberedEntries(const qs_lib::Configuration& file, const char* key) {
  std::vector<qs_lib::ConfigElement> found;
  for (std::size_t i = 0; file.entries().contains(numbered(key, i)); ++i) {
    found.push_back(file.get(numbered(key, i)));
  }
  return found;
}

void restoreTaxa(const qs_lib::Configuration& file) {
  const auto exact = numberedEntries(file, TAXON_KEY);
  for (const qs_lib::ConfigElement& entry : exact) {
    setViewSetting("taxon", entry.value);
  }
  const qs_lib::Tokenizer names(exact.empty() ? file.get("TAXON").value : "", ";");
  for (const std::string& name : names.tokens()) {
    setViewSetting("taxon", name);
  }
}

void restoreLocations(const qs_lib::Configuration& file) {
  const auto named = numberedEntries(file, LOCATION_KEY);
  for (const qs_lib::ConfigElement& entry : named) {
    setViewSetting("location", entry.value);
  }
  const qs_lib::Tokenizer numbers(named.empty() ? file.get("METAPOPULATION").value : "", ";");
  for (const std::string& token : numbers.tokens()) {
    const packed_deme number = std::stoll(token);
    if (!View.addDeme(number)) {
      DemeID deme;
      deme.set(number);
      throw UsageError("location " + shortDemeText(deme) + " is not in the studbook");
    }
  }
}

/// Applies the entries of the file. A missing entry, or an empty date, keeps the setting of the start view.
void restoreEntries(const qs_lib::Configuration& file) {
  for (const view_entry& entry : ENTRIES) {
    const std::string value = qs_lib::allTrim(file.get(entry.key).value);
    const bool is_date = std::string(entry.key).ends_with("_DATE");
    if (!file.entries().contains(entry.key) || (is_date && value.empty())) {
      continue;
    }
    try {
      setViewSetting(entry.setting, entry.typed(value));
    } catch (const UsageError& error) {
      throw UsageError(std::string(entry.key) + ": " + error.what());
    }
  }
}

void loadEntries(const qs_lib::Configuration& file) {
  restoreEntries(file);
  restoreTaxa(file);
  restoreLocations(file);
  for (const qs_lib::ConfigElement& entry : numberedEntries(file, USER_FILTER_KEY)) {
    setViewSetting("user-field", entry.description + "=" + entry.value);
  }
}

void writeEntries(qs_lib::Configuration& file) {
  writeView(View, file);
  addExactBounds(file);
  keepOpenDates(file);
  addLists(file);
  addMissingEntries(file);
}

}  // namespace

std::vector<std::pair<std::string, std::string>> viewSettingTexts() {
  qs_lib::Configuration file;
  writeEntries(file);
  std::vector<std::pair<std::string, std::string>> texts;
  for (const view_entry& entry : ENTRIES) {
    const std::string value = entry.typed(file.get(entry.key).value);
    texts.emplace_back(entry.setting, value == "true" ? "yes" : value == "false" ? "no" : value);
  }
  const auto add_list = [&](const char* setting, const char* key) {
    const auto entries = numberedEntries(file, key);
    for (const qs_lib::ConfigElement& entry : entries) {
      const bool is_filter = std::string(key) == USER_FILTER_KEY;
      texts.emplace_back(setting, is_filter ? entry.description + "=" + entry.value : std::string(entry.value));
    }
    if (entries.empty()) {
      texts.emplace_back(setting, "all");
    }
  };
  add_list("taxon", TAXON_KEY);
  add_list("location", LOCATION_KEY);
  add_list("user-field", USER_FILTER_KEY);
  return texts;
}

void saveView(const std::string& directory, const std::string& name) {
  if (!qs_lib::isPlainName(name)) {
    throw UsageError(quotedText(name) + " is not a valid view name");
  }
  qs_lib::Configuration file = viewFile(directory, name);
  writeEntries(file);
  if (!file.save()) {
    throw Failure(file.getFileName() + ": cannot be written");
  }
}

void loadView(const std::string& directory, const std::string& name) {
  qs_lib::Configuration file = viewFile(directory, name);
  if (!qs_lib::isPlainName(name) || !file.load()) {
    throw Failure(file.getFileName() + ": not a view file, or unreadable");
  }
  setStartView();
  try {
    loadEntries(file);
  } catch (const std::logic_error&) {
    setStartView();
    throw Failure(file.getFileName() + ": METAPOPULATION: a value is not a number or has no meaning");
  } catch (const std::runtime_error& error) {
    setStartView();
    throw Failure(file.getFileName() + ": " + error.what());
  }
}

bool viewExists(const std::string& directory, const std::string& name) {
  return fs::exists(viewFile(directory, name).getFileName());
}

void deleteView(const std::string& directory, const std::string& name) {
  const std::string file = viewFile(directory, name).getFileName();
  std::error_code failed;
  if (!qs_lib::isPlainName(name) || !fs::remove(file, failed)) {
    throw Failure(failed ? file + ": cannot be removed: " + failed.message()
                         : "there is no view " + quotedText(name) + " in " + directory);
  }
}

std::vector<std::string> viewNames(const std::string& directory) {
  std::vector<std::string> names;
  std::error_code failed;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, failed)) {
    if (entry.path().extension() == ".view") {
      names.push_back(entry.path().stem().string());
    }
  }
  if (failed) {
    throw Failure(directory + ": cannot be read: " + failed.message());
  }
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return compareNaturally(a, b) < 0; });
  return names;
}

}  // namespace spx::console
