#include "console/results/registry_tables.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"
#include "spx/views/data_filter.h"

#include "console/output/animal_table.h"
#include "console/project/view_animals.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

/// How many animals live at each location itself, or in one within it.
std::map<packed_deme, std::size_t> animalsByLocation() {
  std::map<packed_deme, std::size_t> counts;
  for (const position animal : livingOfView()) {
    DemeID deme;
    deme.set(currentDeme(Animals.records[animal], View.monitor_date));
    for (int level = deme.getLevel(); level >= 0; --level) {
      ++counts[deme.binary()];
      deme.blocks[static_cast<std::size_t>(level)] = 0;
    }
  }
  return counts;
}

std::string numberOf(packed_deme location) {
  DemeID deme;
  deme.set(location);
  return shortDemeText(deme);
}

}  // namespace

Table locationTable() {
  Table table({{"location", "Number"},
               {"name", "Name"},
               {"level", "Level"},
               {.name = "living", .title = "Living animals", .kind = COLUMN_KIND::INTEGER},
               {.name = "latitude", .title = "Latitude", .kind = COLUMN_KIND::REAL, .in_text = false},
               {.name = "longitude", .title = "Longitude", .kind = COLUMN_KIND::REAL, .in_text = false}});
  const std::map<packed_deme, std::size_t> living = animalsByLocation();
  // In the order of the identifiers, so that each location stands above those within it.
  std::map<std::string, std::vector<Cell>> rows;
  for (const deme_level& level : MetaPop.levels()) {
    for (const deme_member& member : level.members) {
      const auto count = living.find(member.id);
      if (!placeText(member.id).empty()) {
        DemeID deme;
        deme.set(member.id);
        rows[deme.text()] = {numberOf(member.id),
                             member.name,
                             level.name,
                             count == living.end() ? std::size_t{0} : count->second,
                             member.point.latitude,
                             member.point.longitude};
      }
    }
  }
  for (auto& row : rows) {
    table.addRow(std::move(row.second));
  }
  table.one_row = "location";
  table.many_rows = "locations";
  table.if_empty = "the studbook has no locations";
  return table;
}

Table taxonTable() {
  std::map<std::string, std::size_t> counts;
  for (const std::string& name : Subspecies.names()) {
    counts[name] = 0;
  }
  for (const position animal : animalsOfView()) {
    ++counts[Subspecies.getName(Animals.records[animal].taxon)];
  }
  Table table(
      {{.name = "taxon", .title = "Taxon"}, {.name = "animals", .title = "Animals", .kind = COLUMN_KIND::INTEGER}});
  for (const auto& [name, count] : counts) {
    table.addRow({name, count});
  }
  return table;
}

Table programTable() {
  Table table(std::vector<table_column>{{"name", "Breeding programme"}});
  for (const std::string& name : Management.programs()) {
    table.addRow(std::vector<Cell>{name});
  }
  table.if_empty = "the studbook has no table of breeding programmes";
  return table;
}

Table userFieldTable() {
  Table table({{"name", "User-defined field"}, {"type", "Values"}});
  for (const user_field& field : user_field_list) {
    table.addRow({field.name, qs_lib::getFieldTypeName(field.type)});
  }
  table.if_empty = "the studbook has no user-defined fields";
  return table;
}

}  // namespace spx::console
