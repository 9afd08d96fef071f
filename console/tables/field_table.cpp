#include "console/tables/field_table.h"

#include <utility>

namespace spx::console {

FieldTable::FieldTable(std::string file, std::span<const table_field> fields, std::size_t id_field,
                       std::span<const title_choice> choices, Faults& faults)
    : file_(std::move(file)),
      csv_(file_),
      columns_(file_, csv_.titles(), fields, choices),
      id_field_(id_field),
      faults_(faults) {}

bool FieldTable::next() {
  while (csv_.next()) {
    if (csv_.cells() == csv_.titles().size()) return true;
    faults_.add({file_, csv_.line(), "", "",
                 "the row has " + std::to_string(csv_.cells()) + " cells, the header line has " +
                     std::to_string(csv_.titles().size())});
  }
  return false;
}

std::string_view FieldTable::operator[](std::size_t field) const {
  const std::size_t column = columns_.column(field);
  return column == ColumnTitles::NONE ? std::string_view() : csv_[column];
}

void FieldTable::addFault(std::size_t field, const std::string& reason) {
  const std::size_t column = columns_.column(field);
  faults_.add({file_, csv_.line(), column == ColumnTitles::NONE ? "" : title(column),
               std::string((*this)[id_field_]), reason});
}

}  // namespace spx::console
