#include "console/tables/field_table.h"

#include <utility>

namespace spx::console {

namespace {

constexpr std::size_t MOST_COLUMNS = 16384;  // the limit of a spreadsheet's sheet

ColumnTitles findColumns(const table_source& source, const RowSource& rows, std::span<const table_field> fields) {
  if (rows.titles().size() > MOST_COLUMNS) {
    throw TableError(1, "has " + std::to_string(rows.titles().size()) + " columns; a table can have " +
                            std::to_string(MOST_COLUMNS));
  }
  if (!rows.fields().empty()) {
    return ColumnTitles(rows.fields(), fields);
  }
  return ColumnTitles(source.name, rows.titles(), fields, source.titles);
}

}  // namespace

FieldTable::FieldTable(const table_source& source, std::span<const table_field> fields, std::size_t id_field,
                       Faults& faults)
    : name_(source.name),
      rows_(source.open()),
      columns_(findColumns(source, *rows_, fields)),
      id_field_(id_field),
      faults_(faults) {
  rows_->settleColumns(fields, columns_);
}

bool FieldTable::next() {
  while (rows_->next()) {
    if (rows_->cells() == rows_->titles().size()) {
      return true;
    }
    const std::size_t id = columns_.column(id_field_);
    const bool has_id = id != ColumnTitles::NONE && id < rows_->cells();
    faults_.add({name_, rows_->line(), "", has_id ? std::string((*rows_)[id]) : "",
                 "the row has " + std::to_string(rows_->cells()) + " cells, the header line has " +
                     std::to_string(rows_->titles().size()),
                 row_kind_});
  }
  return false;
}

std::string_view FieldTable::operator[](std::size_t field) const {
  const std::size_t column = columns_.column(field);
  return column == ColumnTitles::NONE ? std::string_view() : (*rows_)[column];
}

void FieldTable::addFault(std::size_t field, const std::string& reason) {
  const std::size_t column = columns_.column(field);
  faults_.add({name_, rows_->line(), column == ColumnTitles::NONE ? "" : title(column), std::string((*this)[id_field_]),
               reason, row_kind_});
}

}  // namespace spx::console
