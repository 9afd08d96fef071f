#include "console/project/view_store.h"

#include <charconv>
#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "spx/core/user_fields.h"
#include "spx/support/file_name.h"
#include "spx/support/number_text.h"
#include "spx/support/text.h"
#include "spx/support/tokenizer.h"
#include "spx/views/data_filter.h"
#include "spx/views/view_file.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/project/view_settings.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

constexpr char REARING_KEY[] = "REARING";
constexpr char CLASS_WIDTH_KEY[] = "CLASS_WIDTH";
constexpr char CLASSES_KEY[] = "NUMBER_OF_CLASSES";
constexpr char USER_FILTER_KEY[] = "USER_FILTER_";
constexpr char TAXON_KEY[] = "TAXON_";
constexpr char BOUND_KEYS[][16] = {"LOW_GENERATION",  "HIGH_GENERATION", "LOW_INBREEDING",
                                   "HIGH_INBREEDING", "LOW_AGE",         "HIGH_AGE"};
constexpr double DataFilter::*BOUNDS[] = {&DataFilter::low_generation, &DataFilter::high_generation,
                                          &DataFilter::low_inbreeding, &DataFilter::high_inbreeding,
                                          &DataFilter::low_age,        &DataFilter::high_age};

/// Entries whose text is what the setting takes.
constexpr std::pair<const char*, const char*> TYPED_ENTRIES[] = {
    {"START_DATE", "from"},
    {"END_DATE", "until"},
    {"MONITOR_DATE", "monitor"},
    {"CENSUS_DAY", "census-day"},
    {"CENSUS_MONTH", "census-month"},
    {"FILTER_ID", "filter-id"},
    {"USE_NEONATE", "neonates"},
    {"USE_STILLBIRTH", "stillbirths"},
    {"USE_EMERGE", "den-emerge"},
    {"LEFT_TRUNCATED", "left-truncated"},
    {"RIGHT_CENSORED", "right-censored"},
    {"PRORATING", "prorating"},
    {"SAME_SEX", "same-sex"},
    {"GENERIC_PARENTS", "generic-parents"},
};

std::string numbered(const char* key, std::size_t number) {
  return key + std::to_string(number);
}

std::string text(const qs_lib::Configuration& file, const std::string& key) {
  return file.get(key).value;
}

/// A choice as the name that settings take; nothing for a number that has none.
template <class Enumeration>
std::string choiceName(const qs_lib::Configuration& file, const char* key) {
  std::string name = getEnumName(static_cast<Enumeration>(std::stoul(text(file, key))));
  if (name.empty()) {
    throw std::out_of_range(key);
  }
  return name;
}

// The library writes bounds with one or four decimals; a person may have typed more.
void addExactBounds(qs_lib::Configuration& file) {
  for (std::size_t i = 0; i < std::size(BOUNDS); ++i) {
    const double bound = View.*BOUNDS[i];
    const qs_lib::ConfigElement entry = file.get(BOUND_KEYS[i]);
    if (std::isnan(bound) || entry.value.real() == bound) {
      continue;
    }
    char digits[32];
    const auto end = std::to_chars(digits, std::end(digits), bound).ptr;
    file.set(BOUND_KEYS[i], entry.type, std::string(digits, end), entry.description);
  }
}

// Names that hold the separator of the list cannot be told from it.
void addExactTaxa(qs_lib::Configuration& file) {
  for (std::size_t i = 0; i < View.taxa.size(); ++i) {
    file.set(numbered(TAXON_KEY, i), "TEXT", Subspecies.getName(View.taxa[i]), "Selected taxon");
  }
}

void addMissingEntries(qs_lib::Configuration& file) {
  file.set(REARING_KEY, "INTEGER", std::to_string(static_cast<std::uint32_t>(View.rearing)), "Rearing of individuals");
  file.set(CLASS_WIDTH_KEY, "REAL", qs_lib::realToString(View.class_width, 6), "Width of age classes (days)");
  file.set(CLASSES_KEY, "INTEGER", std::to_string(View.number_of_classes), "Number of age classes");
  for (std::size_t i = 0; i < View.user_filters.size(); ++i) {
    const user_filter& filter = View.user_filters[i];
    file.set(numbered(USER_FILTER_KEY, i), "TEXT", filter.value, userFieldName(static_cast<std::size_t>(filter.field)));
  }
}

void restoreTaxa(const qs_lib::Configuration& file) {
  setViewSetting("taxon", "all");
  if (file.entries().contains(numbered(TAXON_KEY, 0))) {
    for (std::size_t i = 0; file.entries().contains(numbered(TAXON_KEY, i)); ++i) {
      setViewSetting("taxon", text(file, numbered(TAXON_KEY, i)));
    }
    return;
  }
  const qs_lib::Tokenizer names(text(file, "TAXON"), ";");
  for (const std::string& name : names.tokens()) {
    setViewSetting("taxon", name);
  }
}

void restoreDemes(const std::string& packed) {
  setViewSetting("deme", "all");
  const qs_lib::Tokenizer numbers(packed, ";");
  for (const std::string& token : numbers.tokens()) {
    const packed_deme number = std::stoll(token);
    if (!View.addDeme(number)) {
      DemeID deme;
      deme.set(number);
      throw UsageError("location " + deme.text() + " is not in the studbook");
    }
  }
}

void restoreMissingEntries(const qs_lib::Configuration& file) {
  const auto has = [&file](const std::string& key) { return file.entries().contains(key); };
  if (has(REARING_KEY)) {
    setViewSetting("rearing", choiceName<REARING>(file, REARING_KEY));
  }
  if (has(CLASS_WIDTH_KEY)) {
    setViewSetting("class-width", text(file, CLASS_WIDTH_KEY));
  }
  if (has(CLASSES_KEY)) {
    setViewSetting("classes", text(file, CLASSES_KEY));
  }
  setViewSetting("user-field", "all");
  for (std::size_t i = 0; has(numbered(USER_FILTER_KEY, i)); ++i) {
    const qs_lib::ConfigElement entry = file.get(numbered(USER_FILTER_KEY, i));
    setViewSetting("user-field", entry.description + "=" + entry.value);
  }
}

// The library reads the deme list as 32-bit numbers, which packed demes exceed.
void readKnownEntries(qs_lib::Configuration file) {
  file.set("METAPOPULATION", "TEXT", "", "");
  readView(View, file);
}

/// The library takes what it can of a damaged file; here each text has to be one that a person may
/// type.
void checkEntries(const qs_lib::Configuration& file) {
  for (const auto& [key, setting] : TYPED_ENTRIES) {
    setViewSetting(setting, text(file, key));
  }
  setViewSetting("origin", choiceName<BIRTH_TYPE>(file, "ORIGIN"));
  setViewSetting("contraception", choiceName<BIRTH_CONTROL>(file, "CONTRACEPTION"));
  setViewSetting("census-interval", choiceName<qs_lib::TIME_INTERVAL>(file, "CENSUS_INTERVAL"));
  setViewSetting("handle-unknown", choiceName<HANDLE_UNKNOWN>(file, "HANDLE_UNKNOWN"));
  setViewSetting("handle-parent", choiceName<HANDLE_UNKNOWN>(file, "HANDLE_PARENT"));
  setViewSetting("birth-accuracy", choiceName<DATE_ACCURACY>(file, "BIRTH_DATE_ACCURACY"));
  setViewSetting("death-accuracy", choiceName<DATE_ACCURACY>(file, "DEATH_DATE_ACCURACY"));
  setViewSetting("event-accuracy", choiceName<DATE_ACCURACY>(file, "EVENT_DATE_ACCURACY"));
}

void loadEntries(const qs_lib::Configuration& file) {
  readKnownEntries(file);
  checkEntries(file);
  setViewSetting("sex", choiceName<SEX>(file, "SEX"));
  restoreMissingEntries(file);
  restoreTaxa(file);
  restoreDemes(text(file, "METAPOPULATION"));
}

}  // namespace

void saveView(const std::string& directory, const std::string& name) {
  if (!qs_lib::isPlainName(name)) {
    throw UsageError(quotedText(name) + " cannot be the name of a view");
  }
  qs_lib::Configuration file = viewFile(directory, name);
  writeView(View, file);
  addExactBounds(file);
  addExactTaxa(file);
  addMissingEntries(file);
  if (!file.save()) {
    throw Failure(file.getFileName() + ": cannot be written");
  }
}

void loadView(const std::string& directory, const std::string& name) {
  qs_lib::Configuration file = viewFile(directory, name);
  if (!qs_lib::isPlainName(name) || !file.load()) {
    throw Failure(file.getFileName() + ": is no view file, or cannot be read");
  }
  setStartView();
  try {
    loadEntries(file);
  } catch (const std::logic_error&) {  // a number that is none, or that stands for nothing
    setStartView();
    throw Failure(file.getFileName() + ": is damaged: a number in it is none, or stands for nothing");
  } catch (const std::runtime_error& error) {
    setStartView();
    throw Failure(file.getFileName() + ": " + error.what());
  }
}

bool viewExists(const std::string& directory, const std::string& name) {
  return fs::exists(viewFile(directory, name).getFileName());
}

}  // namespace spx::console
