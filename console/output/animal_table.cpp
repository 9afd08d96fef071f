#include "console/output/animal_table.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>

#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/user_fields.h"
#include "spx/views/data_filter.h"

#include "console/base/natural_order.h"
#include "console/project/life_on_day.h"
#include "console/tables/loading_notes.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

bool isUnknownParent(const std::string& id) {
  return id == UNKNOWN_PARENT || id == UNKNOWN_SIRE || id == UNKNOWN_DAM;
}

/// Whether the location is known. The deme for unknown locations has a number too, which must not be shown.
bool isKnownPlace(packed_deme location) {
  return location != 0 && !isSameWord(MetaPop.getMemberName(location), "unknown");
}

Cell placeCell(packed_deme location) {
  if (!isKnownPlace(location)) {
    return {};
  }
  DemeID deme;
  deme.set(location);
  return shortDemeText(deme);
}

Cell placeNameCell(packed_deme location) {
  return isKnownPlace(location) ? Cell(MetaPop.getMemberName(location)) : Cell();
}

Cell accuracyCell(const move_data& event) {
  return event.date == 0 ? Cell() : Cell(getEnumName(event.accuracy));
}

Cell rangeCell(const move_data& event) {
  return event.date == 0 ? Cell() : Cell(event.range);
}

/// An animal and its life, which is computed only when a column needs it.
class AnimalNow {
 public:
  explicit AnimalNow(const master_data& animal) : record(animal) {}
  const LifeOnDay& life() { return life_ ? *life_ : life_.emplace(record, View.monitor_date); }

  const master_data& record;

 private:
  std::optional<LifeOnDay> life_;
};

struct animal_fact {
  const char* name;
  const char* title;
  COLUMN_KIND kind;
  Cell (*read)(AnimalNow& animal);
};

template <GENERATION KIND>
Cell generationCell(AnimalNow& animal) {
  return animal.record.generation[KIND];
}

constexpr animal_fact FACTS[] = {
    {"id_key", "Key", COLUMN_KIND::INTEGER, [](AnimalNow& now) { return Cell(now.record.id_key); }},
    {"id", "ID", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(now.record.stud_id); }},
    {"sire", "Sire", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(now.record.sire_id); }},
    {"dam", "Dam", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(now.record.dam_id); }},
    {"sex", "Sex", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(getEnumName(now.record.sex)); }},
    {"birth_date", "Born", COLUMN_KIND::DATE,
     [](AnimalNow& now) { return hasRow(now.record) ? Cell(now.record.birth) : Cell(); }},
    {"birth_accuracy", "Accuracy of birth", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return accuracyCell(now.record.birth); }},
    {"birth_range", "Range of birth (days)", COLUMN_KIND::INTEGER,
     [](AnimalNow& now) { return rangeCell(now.record.birth); }},
    {"birth_location", "Born at", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return placeCell(now.record.birth.location); }},
    {"death_date", "Died or lost", COLUMN_KIND::DATE, [](AnimalNow& now) { return Cell(now.record.death); }},
    {"death_accuracy", "Accuracy of death", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return accuracyCell(now.record.death); }},
    {"death_range", "Range of death (days)", COLUMN_KIND::INTEGER,
     [](AnimalNow& now) { return rangeCell(now.record.death); }},
    {"death_location", "Died at", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return placeCell(now.record.death.location); }},
    {"death_event", "End", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return now.record.death.date == 0 ? Cell() : Cell(getEnumName(now.record.death.event)); }},
    {"origin", "Origin", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(getEnumName(now.record.birth_type)); }},
    {"rearing", "Rearing", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(getEnumName(now.record.rearing)); }},
    {"taxon", "Taxon", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(Subspecies.getName(now.record.taxon)); }},
    {"fcoef", "F", COLUMN_KIND::REAL, [](AnimalNow& now) { return Cell(now.record.fcoef); }},
    {"g_cites", "Generation (CITES)", COLUMN_KIND::REAL, generationCell<G_CITES>},
    {"g_genetic", "Generation (genetic)", COLUMN_KIND::REAL, generationCell<G_GENETIC>},
    {"g_maternal", "Generation (maternal)", COLUMN_KIND::REAL, generationCell<G_MATERNAL>},
    {"g_average", "Generation (average)", COLUMN_KIND::REAL, generationCell<G_AVERAGE>},
    {"breeder", "Has offspring", COLUMN_KIND::FLAG, [](AnimalNow& now) { return Cell(now.record.breeder); }},
    {"selected", "Selected", COLUMN_KIND::FLAG, [](AnimalNow& now) { return Cell(now.record.selected); }},
    {"age_years", "Age", COLUMN_KIND::REAL,
     [](AnimalNow& now) {
       const auto years = now.life().ageYears();
       return years ? Cell(*years) : Cell();
     }},
    {"status", "Status", COLUMN_KIND::TEXT, [](AnimalNow& now) { return Cell(getText(now.life().status())); }},
    {"current_location", "Location number", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return placeCell(now.life().location()); }},
    {"current_location_name", "Location", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return placeNameCell(now.life().location()); }},
    {"birth_location_name", "Birthplace", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return placeNameCell(now.record.birth.location); }},
    {"death_location_name", "Place of death", COLUMN_KIND::TEXT,
     [](AnimalNow& now) { return placeNameCell(now.record.death.location); }},
};
constexpr std::size_t FACT_COUNT = std::size(FACTS);

bool isShown(std::string_view name, ANIMAL_LIST list) {
  if (name == "status") {
    return list == ANIMAL_LIST::ALL;
  }
  constexpr std::string_view SHOWN[] = {"id",         "sex",       "sire",  "dam",
                                        "birth_date", "age_years", "fcoef", "current_location_name"};
  return std::find(std::begin(SHOWN), std::end(SHOWN), name) != std::end(SHOWN);
}

std::vector<table_column> columnsOf(ANIMAL_LIST list) {
  constexpr char USER_FIELDS[] = "user_fields";
  std::vector<table_column> columns;
  for (const animal_fact& fact : FACTS) {
    const int decimals = std::string_view(fact.name) == "fcoef" ? 4 : 1;
    columns.push_back({fact.name, fact.title, fact.kind, decimals, "", isShown(fact.name, list)});
    if (fact.name == std::string_view("sire") || fact.name == std::string_view("dam")) {
      columns.back().shown = parentText;
    }
  }
  for (const user_field& field : user_field_list) {
    const bool is_taken = std::any_of(std::begin(FACTS), std::end(FACTS),
                                      [&field](const animal_fact& fact) { return field.name == fact.name; });
    table_column column{is_taken ? std::string(USER_FIELDS) + "_" + field.name : field.name, field.name};
    column.in_text = false;
    column.group = USER_FIELDS;
    column.key = field.name;
    columns.push_back(std::move(column));
  }
  return columns;
}

Cell readCell(AnimalNow& now, std::size_t column) {
  if (column < FACT_COUNT) {
    return FACTS[column].read(now);
  }
  const std::size_t field = column - FACT_COUNT;
  return field < now.record.user_data.size() ? Cell(now.record.user_data[field]) : Cell("");
}

/// Reads the cells of animals, a row after the other.
class AnimalReader {
 public:
  explicit AnimalReader(std::vector<position> animals) : animals_(std::move(animals)) {}
  Cell read(std::size_t row, std::size_t column) {
    if (!now_ || row != row_) {
      now_.emplace(Animals.records[animals_[row]]);
      row_ = row;
    }
    return readCell(*now_, column);
  }

 private:
  std::vector<position> animals_;
  std::size_t row_ = 0;
  std::optional<AnimalNow> now_;
};

}  // namespace

Table animalTable(std::vector<position> animals, ANIMAL_LIST list) {
  Table table(columnsOf(list));
  table.one_row = "animal";
  table.many_rows = "animals";
  const std::size_t count = animals.size();
  const auto reader = std::make_shared<AnimalReader>(std::move(animals));
  table.setRows(count, [reader](std::size_t row, std::size_t column) { return reader->read(row, column); });
  return table;
}

Table animalRecord(position animal) {
  Table table = animalTable({animal}, ANIMAL_LIST::ALL);
  table.is_record = true;
  table.one_row.clear();
  return table;
}

Table eventTable(const master_data& animal) {
  Table table({{"date", "Date", COLUMN_KIND::DATE},
               {.name = "accuracy", .title = "Accuracy", .in_text = false},
               {.name = "range", .title = "Range (days)", .kind = COLUMN_KIND::INTEGER, .in_text = false},
               {"event", "Event"},
               {.name = "location", .title = "Number", .in_text = false},
               {"location_name", "Location"}});
  for (const move_data& event : animal.moves) {
    table.addRow({event, accuracyCell(event), rangeCell(event), getEnumName(event.event), placeCell(event.location),
                  placeNameCell(event.location)});
  }
  return table;
}

void sortNaturally(std::vector<position>& animals) {
  std::stable_sort(animals.begin(), animals.end(), [](position a, position b) {
    return compareNaturally(Animals.records[a].stud_id, Animals.records[b].stud_id) < 0;
  });
}

void sortByBirth(std::vector<position>& animals) {
  sortNaturally(animals);
  std::stable_sort(animals.begin(), animals.end(), [](position a, position b) {
    return Animals.records[a].birth.date < Animals.records[b].birth.date;
  });
}

std::string parentText(const std::string& id) {
  return id.empty() || isUnknownParent(id) ? "unknown" : id == WILD_PARENT ? "wild" : id;
}

std::string placeText(packed_deme location) {
  if (!isKnownPlace(location)) {
    return "";
  }
  DemeID deme;
  deme.set(location);
  const std::string& name = MetaPop.getMemberName(location);
  const std::string number = shortDemeText(deme);
  return name == number ? name : name + " (" + number + ")";
}

}  // namespace spx::console
