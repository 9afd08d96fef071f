#include "console/output/animal_card.h"

#include <ostream>

#include "spx/core/animal_data.h"
#include "spx/core/user_fields.h"

#include "console/output/animal_table.h"
#include "console/output/json_rows.h"
#include "console/tables/loading_notes.h"

namespace spx::console {
namespace {

/// Two facts in one line: "2001-03-04 at Ashgrove (2.1)".
std::string joined(const std::string& first, const char* between, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + between + second;
}

std::string dateAndPlace(const move_data& event) {
  const std::string date = dateText({event.date, event.accuracy, event.range});
  return joined(event.date == 0 ? "on an unknown day" : date, " at ", placeText(event.location));
}

std::string valueOf(const Table& record, const char* name) {
  for (std::size_t column = 0; column < record.columns().size(); ++column) {
    if (record.columns()[column].name == name) {
      return cellText(record.cell(0, column), record.columns()[column]);
    }
  }
  return "";
}

std::size_t offspringOf(const master_data& parent) {
  std::size_t count = 0;
  for (const missing_parent& missing : Animals.missing_parents) {
    count += &Animals.records[missing.stand_in] == &parent ? missing.offspring.size() : 0;
  }
  for (const master_data& animal : Animals.records) {
    count += animal.sire_id == parent.stud_id || animal.dam_id == parent.stud_id ? 1 : 0;
  }
  return count;
}

std::string endText(const master_data& animal) {
  return animal.death.event == MOVE_TYPE::LOST_TO_FOLLOW_UP ? "Lost" : "Died";
}

/// The card: a line per fact that is known.
Table cardOf(const master_data& animal, const Table& record) {
  std::vector<table_column> columns;
  std::vector<Cell> values;
  const auto add = [&](const std::string& title, const std::string& value) {
    columns.push_back({title, title});
    values.emplace_back(value);
  };
  const auto add_fact = [&](const char* title, const char* name) { add(title, valueOf(record, name)); };
  add("ID", animal.stud_id);
  add_fact("Sex", "sex");
  add_fact("Status", "status");
  if (hasRow(animal)) {
    add("Born", dateAndPlace(animal.birth));
  }
  if (animal.death.date != 0) {
    add(endText(animal), dateAndPlace(animal.death));
  }
  add_fact("Age (years)", "age_years");
  if (const std::string place = valueOf(record, "current_location_name"); !place.empty()) {
    add("Location", place);
  }
  add_fact("Sire", "sire");
  add_fact("Dam", "dam");
  add("Offspring", std::to_string(offspringOf(animal)));
  add_fact("Origin", "origin");
  add_fact("Rearing", "rearing");
  add_fact("Taxon", "taxon");
  add_fact("Inbreeding", "fcoef");
  for (const char* kind : {"cites", "genetic", "maternal", "average"}) {
    add_fact((std::string("Generation (") + (kind == std::string_view("cites") ? "CITES" : kind) + ")").c_str(),
             (std::string("g_") + kind).c_str());
  }
  for (std::size_t field = 0; field < animal.user_data.size(); ++field) {
    add(userFieldName(field), animal.user_data[field]);
  }
  Table card(std::move(columns));
  card.is_record = true;
  card.addRow(std::move(values));
  return card;
}

void writeCard(std::ostream& out, const master_data& animal, const Table& record, const Table& events,
               std::size_t width) {
  const Table card = cardOf(animal, record);
  writeText(out, card, wholeTable(card, OUTPUT_FORMAT::TEXT), width);
  if (events.rows() != 0) {
    out << "\n";
    writeText(out, events, wholeTable(events, OUTPUT_FORMAT::TEXT), width);
  }
}

/// The record with a column for each fact of each event.
Table flatRecord(const Table& record, const Table& events) {
  std::vector<table_column> columns = record.columns();
  std::vector<Cell> cells;
  for (std::size_t column = 0; column < columns.size(); ++column) {
    cells.push_back(record.cell(0, column));
  }
  for (std::size_t row = 0; row < events.rows(); ++row) {
    for (std::size_t column = 0; column < events.columns().size(); ++column) {
      columns.push_back(events.columns()[column]);
      columns.back().name = "events_" + std::to_string(row + 1) + "_" + columns.back().name;
      cells.push_back(events.cell(row, column));
    }
  }
  Table flat(std::move(columns));
  flat.addRow(std::move(cells));
  return flat;
}

void writeCardJson(std::ostream& out, const Table& record, const Table& events) {
  fact_object card = rowObject(record, wholeTable(record, OUTPUT_FORMAT::JSON), 0);
  const table_part all = wholeTable(events, OUTPUT_FORMAT::JSON);
  card["events"] = fact_object::array();
  for (const std::size_t row : all.rows) {
    card["events"].push_back(rowObject(events, all, row));
  }
  out << card.dump() << "\n";
}

}  // namespace

void showCard(position animal, const table_options& typed) {
  table_options options = typed;
  options.format = formatOfFile(typed.format, typed.output.file, false);
  const Table record = animalRecord(animal);
  const Table events = eventTable(Animals.records[animal]);
  ResultOutput output(options.output, options.format == OUTPUT_FORMAT::TEXT);
  if (options.format == OUTPUT_FORMAT::TEXT) {
    writeCard(output.stream(), Animals.records[animal], record, events, output.width());
  } else if (options.format == OUTPUT_FORMAT::CSV) {
    const Table flat = flatRecord(record, events);
    writeCsv(output.stream(), flat, wholeTable(flat, OUTPUT_FORMAT::CSV));
  } else {
    writeCardJson(output.stream(), record, events);
  }
  output.finish();
}

}  // namespace spx::console
