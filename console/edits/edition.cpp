#include "console/edits/edition.h"

#include <algorithm>

#include "console/base/failure.h"
#include "console/tables/animals_table.h"
#include "console/tables/events_table.h"
#include "console/tables/locations_table.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

ColumnTitles settledColumns(const table_source& source, const RowSource& rows, std::span<const table_field> fields) {
  return rows.fields().empty() ? ColumnTitles(source.name, rows.titles(), fields, source.titles)
                               : ColumnTitles(rows.fields(), fields);
}

EditionTable readTable(const table_source& source, std::span<const table_field> fields) {
  if (!source.open) {
    return {};
  }
  try {
    return EditionTable(source, fields);
  } catch (const TableError& error) {
    throw Failure(source.name + (error.line() == 0 ? "" : ":" + std::to_string(error.line())) + ": " + error.what());
  }
}

}  // namespace

EditionTable::EditionTable(const table_source& source, std::span<const table_field> fields) {
  const std::unique_ptr<RowSource> rows = source.open();
  const ColumnTitles settled = settledColumns(source, *rows, fields);
  for (const std::string& title : rows->titles()) {
    columns_.push_back({"", title});
  }
  for (std::size_t field = 0; field < fields.size(); ++field) {
    if (settled.column(field) != ColumnTitles::NONE) {
      columns_[settled.column(field)].field = fields[field].name;
    }
  }
  rows->settleColumns(fields, settled);
  while (rows->next()) {
    if (rows->cells() != columns_.size()) {
      throw TableError(rows->line(), "the row has " + std::to_string(rows->cells()) + " cells, not " +
                                         std::to_string(columns_.size()));
    }
    for (const std::string_view cell : rows->row()) {
      texts_ += cell;
      ends_.push_back(texts_.size());
    }
    lines_.push_back(rows->line());
    animal_rows_.push_back(rows->animalRow());
  }
}

std::string_view EditionTable::cell(std::size_t row, std::size_t column) const {
  const std::size_t place = row * columns_.size() + column;
  const std::size_t begin = place == 0 ? 0 : ends_[place - 1];
  return std::string_view(texts_).substr(begin, ends_[place] - begin);
}

std::size_t EditionTable::column(std::string_view field) const {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [&](const edition_column& column) { return column.field == field; });
  return found == columns_.end() ? NONE : static_cast<std::size_t>(found - columns_.begin());
}

std::size_t EditionTable::columnLike(const edition_column& other) const {
  if (!other.field.empty()) {
    return column(other.field);
  }
  const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const edition_column& column) {
    return column.field.empty() && isSameWord(column.title, other.title);
  });
  return found == columns_.end() ? NONE : static_cast<std::size_t>(found - columns_.begin());
}

std::string_view EditionTable::value(std::size_t row, std::string_view field) const {
  const std::size_t found = column(field);
  return found == NONE ? std::string_view() : cell(row, found);
}

edition readEdition(const studbook_tables& tables) {
  return {tables.file, readTable(tables.animals, animalFields()), readTable(tables.events, eventFields()),
          readTable(tables.locations, locationFields()), readTable(tables.programs, programFields())};
}

}  // namespace spx::console
