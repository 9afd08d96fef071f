#include "console/tables/locations_table.h"

#include <cmath>
#include <set>
#include <vector>

#include "spx/core/breeding_program.h"

#include "console/base/quoted_text.h"
#include "console/tables/field_table.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

enum location_field : std::size_t { LEVEL, DEME, NAME, LATITUDE, LONGITUDE };

constexpr table_field LOCATION_FIELDS[] = {
    {"level", {}},
    {"id", {"deme", "deme_id", "location_id"}, true},
    {"name", {"location", "site", "institution", "zoo", "ort", "nom", "nombre"}, true},
    {"latitude", {"lat", "breite", "latitud"}},
    {"longitude", {"lon", "long", "lng", "lange", "longitud"}},
};

constexpr table_field PROGRAM_FIELDS[] = {{"name", {"program", "programme", "programm", "programa"}, true}};

struct location {
  DemeID deme;
  std::string name;
  gis_point point;
};

class LocationsReader {
 public:
  LocationsReader(const table_source& source, LocationRegistry& locations, Faults& faults)
      : table_(source, LOCATION_FIELDS, DEME, faults), locations_(locations) {
    table_.callRows("location");
  }

  /// All rows first: a level exists only when its name is known, and deep demes may come first.
  void read() {
    while (table_.next()) {
      readRow();
    }
    for (std::size_t level = 0; level < levels_.size(); ++level) {
      const std::string& name = levels_[level];
      locations_.addLevel(name.empty() ? "Level " + std::to_string(level + 1) : name);
    }
    for (const location& each : rows_) {
      locations_.add(each.deme, each.name, each.point);
    }
    locations_.setComplete();
  }

 private:
  void readRow() {
    location row;
    row.deme = table_.read(DEME, parseDeme, "location identifier (numbers from 1 to 255)");
    row.name = table_[NAME].empty() ? table_[DEME] : table_[NAME];
    row.point = {readDegrees(LATITUDE, 90), readDegrees(LONGITUDE, 180)};
    if (row.deme.getLevel() < 0) {
      return;
    }
    if (!known_.insert(row.deme.binary()).second) {
      return table_.addFault(DEME, "the location is listed twice");
    }
    nameLevel(static_cast<std::size_t>(row.deme.getLevel()));
    rows_.push_back(std::move(row));
  }

  double readDegrees(std::size_t field, double limit) {
    const double degrees = table_.read(field, parseReal<double>, "number of degrees");
    if (std::abs(degrees) > limit) {
      table_.addFault(field,
                      quotedText(table_[field]) + " is beyond " + std::to_string(static_cast<int>(limit)) + " degrees");
    }
    return degrees;
  }

  void nameLevel(std::size_t level) {
    if (levels_.size() <= level) {
      levels_.resize(level + 1);
    }
    const std::string_view name = table_[LEVEL];
    if (levels_[level].empty()) {
      levels_[level] = name;
    }
    if (!name.empty() && name != levels_[level]) {
      table_.addFault(LEVEL, "identifiers of this depth belong to the level " + quotedText(levels_[level]) + ", not " +
                                 quotedText(name));
    }
  }

  FieldTable table_;
  LocationRegistry& locations_;
  std::vector<std::string> levels_;
  std::vector<location> rows_;
  std::set<packed_deme> known_;
};

}  // namespace

std::span<const table_field> locationFields() {
  return LOCATION_FIELDS;
}

std::span<const table_field> programFields() {
  return PROGRAM_FIELDS;
}

void readLocations(const table_source& source, LocationRegistry& locations, Faults& faults) {
  LocationsReader(source, locations, faults).read();
}

void readPrograms(const table_source& source, Faults& faults) {
  FieldTable table(source, PROGRAM_FIELDS, 0, faults);
  table.callRows("programme");
  while (table.next()) {
    if (table[0].empty()) {
      table.addFault(0, "the name is missing");
    } else {
      Management.addProgram(std::string(table[0]));
    }
  }
}

}  // namespace spx::console
