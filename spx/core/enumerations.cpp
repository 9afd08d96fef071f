#include "spx/core/enumerations.h"

#include <cstddef>

namespace spx {
namespace {

// One text of fixed width per value, in the order of the values.
constexpr char sex_name[][15] = {"female", "male", "hermaphrodite", "abnormal", "unknown", "all"};

constexpr char birth_control[][15] = {"intact", "neutered", "vasectomy", "contracepted", "reversed", "no selection"};

constexpr char move_name[][20] = {
    "birth",    "from wild",      "arrival",    "population in",  "social in",         "management in",
    "released", "population out", "social out", "management out", "lost-to-follow-up", "death",
    "surplus",  "no event",       "all"};

constexpr char est_name[][15] = {"accurate", "by day",     "by week", "by month",
                                 "by year",  "date range", "unknown", "all dates"};

constexpr char birth_origin[][15] = {"wild-born", "captive-born", "unknown", "all"};

constexpr char rearing_name[][15] = {"parent", "hand", "foster",  "colony", "supplemental",
                                     "peer",   "none", "unknown", "all"};

constexpr char sort_name[][15] = {"no order", "birth", "death",    "studbook ID",  "sire ID",
                                  "dam ID",   "event", "location", "unknown order"};

constexpr char repro_name[][20] = {"oviparous", "ovoviviparous", "viviparous", "unknown"};

constexpr char season_name[][15] = {"birth-flow", "birth-pulse"};

constexpr char handle_name[][20] = {"ignore", "equal", "observed ratio"};

constexpr char viability[][20] = {"all", "stillbirths", "non-viable", "neonatal", "viable"};

constexpr char timeinterval[][20] = {"day", "week", "month", "quarter", "biannual", "annual", "biennial", "five-year"};

template <std::size_t ROWS, std::size_t WIDTH, typename Value>
std::string nameIn(const char (&table)[ROWS][WIDTH], Value value) {
  const auto row = static_cast<std::size_t>(value);
  return row < ROWS ? std::string(table[row]) : std::string();
}

}  // namespace

std::string getEnumName(SEX value) {
  return nameIn(sex_name, value);
}

std::string getEnumName(BIRTH_CONTROL value) {
  return nameIn(birth_control, value);
}

std::string getEnumName(MOVE_TYPE value) {
  return nameIn(move_name, value);
}

std::string getEnumName(DATE_ACCURACY value) {
  return nameIn(est_name, value);
}

std::string getEnumName(BIRTH_TYPE value) {
  return nameIn(birth_origin, value);
}

std::string getEnumName(REARING value) {
  return nameIn(rearing_name, value);
}

std::string getEnumName(SORT_FIELD value) {
  return nameIn(sort_name, value);
}

std::string getEnumName(SORT_ORDER value) {
  return value == SORT_ORDER::ASCENDING ? "ascending" : "descending";
}

std::string getEnumName(REPRODUCTIVE_SYSTEM value) {
  return nameIn(repro_name, value);
}

std::string getEnumName(REPRODUCTIVE_SEASON value) {
  return nameIn(season_name, value);
}

std::string getEnumName(HANDLE_UNKNOWN value) {
  return nameIn(handle_name, value);
}

std::string getEnumName(OFFSPRING_VIABILITY value) {
  return nameIn(viability, value);
}

std::string getEnumName(qs_lib::TIME_INTERVAL value) {
  return nameIn(timeinterval, value);
}

}  // namespace spx
