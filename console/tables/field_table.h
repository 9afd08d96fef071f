#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console/base/quoted_text.h"
#include "console/tables/column_titles.h"
#include "console/tables/faults.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// A table whose columns are identified by their fields. Errors in a row are added to the faults,
/// with file, line, title and animal; errors in the table as a whole are thrown.
class FieldTable {
 public:
  /// Opens the table. Throws TableError and UsageError; see ColumnTitles.
  /// @param id_field  the field that names the animal in messages
  /// @param faults    must outlive the table
  FieldTable(const table_source& source, std::span<const table_field> fields, std::size_t id_field, Faults& faults);

  /// Goes to the next row; rows with too few or too many cells become faults. Throws TableError.
  bool next();

  /// Whether there is a column of that field.
  bool has(std::size_t field) const { return columns_.column(field) != ColumnTitles::NONE; }

  /// The cell of a field; empty when the table has no such column. Valid until next().
  std::string_view operator[](std::size_t field) const;

  /// @{
  /// See RowSource.
  std::size_t line() const { return rows_->line(); }
  std::size_t animalRow() const { return rows_->animalRow(); }
  /// @}

  /// A cell by its column.
  std::string_view cell(std::size_t column) const { return (*rows_)[column]; }
  const std::string& title(std::size_t column) const { return rows_->titles()[column]; }
  const std::vector<std::size_t>& otherColumns() const { return columns_.others(); }

  /// Reads the cell of a field; a text that the reader refuses becomes the fault "... is not a valid
  /// `what`", and the value a default one.
  template <typename Reader>
  auto read(std::size_t field, Reader reader, const char* what) {
    const auto value = reader((*this)[field]);
    if (!value) {
      addFault(field, quotedText((*this)[field]) + " is not a valid " + what);
    }
    return value.value_or(typename decltype(value)::value_type{});
  }

  void addFault(std::size_t field, const std::string& reason);

  /// Sets what messages call a row, before its name; "animal" at first.
  void callRows(const char* kind) { row_kind_ = kind; }

 private:
  std::string name_;
  std::unique_ptr<RowSource> rows_;
  ColumnTitles columns_;
  std::size_t id_field_;
  Faults& faults_;
  const char* row_kind_ = "animal";
};

}  // namespace spx::console
