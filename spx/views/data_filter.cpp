#include "spx/views/data_filter.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <optional>

#include "spx/core/meta_population.h"
#include "spx/support/file_name.h"
#include "spx/support/read_file.h"
#include "spx/support/tokenizer.h"

namespace spx {
namespace {

using qs_lib::day_number;

constexpr double NOT_SET = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t LONGEST_DEME_NAME = 1023;

day_number today() {
  qs_lib::date_time_record record;
  qs_lib::getToday(record);
  return qs_lib::msToDay(qs_lib::dateToJulian(record));
}

// The census day of a year, at most the last day of its month.
std::optional<day_number> censusDate(std::int64_t year, int month, int day) {
  const unsigned last = qs_lib::daysInMonth(year, static_cast<unsigned>(month));
  const auto wanted = static_cast<unsigned>(std::max(day, 1));
  return qs_lib::dayFromCivil({year, static_cast<unsigned>(month), std::min(wanted, last)});
}

}  // namespace

DataFilter::DataFilter() {
  clearView();
}

void DataFilter::clearView() {
  start_date = qs_lib::msToDay(qs_lib::dateToJulian(std::string("1800")));
  end_date = today();
  monitor_date = end_date;
  low_generation = high_generation = NOT_SET;
  low_inbreeding = high_inbreeding = NOT_SET;
  low_age = high_age = NOT_SET;
  birth_accuracy = death_accuracy = event_accuracy = DATE_ACCURACY::ALL_DATES;
  sex = SEX::ALL;
  handle_unknown = HANDLE_UNKNOWN::EQUAL;
  handle_parent = HANDLE_UNKNOWN::OBSERVED_RATIO;
  origin = BIRTH_TYPE::CAPTIVE_BORN;
  rearing = REARING::ALL;
  contraception = BIRTH_CONTROL::NO_SELECTION;
  census_interval = qs_lib::TIME_INTERVAL::ANNUAL;
  taxa.clear();
  demes.clear();
  user_filters.clear();
  filter_id = 0;
  class_width = 365.25;
  number_of_classes = 25;
  census_day = 1;
  census_month = 1;
  use_neonate = true;
  use_stillbirth = true;
  use_emerge = false;
  left_truncated = true;
  right_censored = true;
  prorating = false;
  same_sex = true;
  MetaPop.selectMembers(true);
}

bool DataFilter::autoMonitorDate() {
  if (end_date == 0 || census_month < 1 || census_month > 12) {
    return false;
  }
  const std::int64_t end_year = qs_lib::civilFromDay(end_date).year;
  std::optional<day_number> end = censusDate(end_year, census_month, census_day);
  if (!end || *end > end_date) {
    end = censusDate(end_year - 1, census_month, census_day);
  }
  const std::int64_t start_year = qs_lib::civilFromDay(start_date).year;
  std::optional<day_number> start = censusDate(start_year, census_month, census_day);
  if (!start || *start < start_date) {
    start = censusDate(start_year + 1, census_month, census_day);
  }
  if (!end || !start) {
    return false;
  }
  end_date = *end;
  monitor_date = *end;
  start_date = *start;
  return true;
}

bool DataFilter::addUserView(int field, const std::string& value) {
  if (field < 0) {
    return false;
  }
  user_filters.push_back({field, value});
  return true;
}

bool DataFilter::addDeme(packed_deme id) {
  if (!MetaPop.memberExists(id)) {
    return false;
  }
  if (demes.empty()) {
    MetaPop.selectMembers(false);
  }
  demes.insert(id);
  MetaPop.selectMember(id, true);
  return true;
}

bool DataFilter::addDeme(const std::string& id) {
  DemeID deme;
  deme.set(id);
  return addDeme(deme.binary());
}

bool DataFilter::addDeme(const std::string& level, const std::string& name) {
  const packed_deme id = MetaPop.getMemberID(level, name);
  return id != -1 && addDeme(id);
}

bool DataFilter::addTaxon(const std::string& name) {
  const taxon_handle taxon = Subspecies.find(name);
  if (taxon == Subspecies.end() || name == GENERIC_TAXON) {
    return false;
  }
  taxa.push_back(taxon);
  return true;
}

std::string DataFilter::createDemeString(bool numeric, int separator) const {
  std::string text;
  for (const packed_deme deme : demes) {
    text += numeric ? std::to_string(deme) : MetaPop.getMemberName(deme);
    text += static_cast<char>(separator);
  }
  return text;
}

std::string DataFilter::createTaxonString(int separator) const {
  if (taxa.empty()) {
    return "all";
  }
  std::string text;
  for (const taxon_handle& taxon : taxa) {
    text += Subspecies.getName(taxon);
    text += static_cast<char>(separator);
  }
  return text;
}

bool DataFilter::extractDemeString(const std::string& text) {
  if (text.empty()) {
    return false;
  }
  demes.clear();
  const qs_lib::Tokenizer tokens(text, ";");
  for (const std::string& token : tokens.tokens()) {
    addDeme(static_cast<packed_deme>(std::stoi(token)));
  }
  return true;
}

bool DataFilter::loadDemeFile(const std::string& file, const std::string& level) {
  qs_lib::ReadFile reader;
  reader.setDirectory(path);
  reader.setName(file);
  reader.setExtension("fed");
  if (!qs_lib::isPlainName(file) || !reader.fileOpen()) {
    std::cerr << "Could not open " << reader.getFileName() << "\n";
    return false;
  }
  std::string line;
  while (reader.readLine(line, LONGEST_DEME_NAME)) {
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    if (!line.empty() && line.find('#') == std::string::npos) {
      addDeme(level, line);
    }
  }
  reader.fileClose();
  return true;
}

}  // namespace spx
