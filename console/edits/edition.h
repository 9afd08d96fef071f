#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// A column of a table in one edition of a studbook.
struct edition_column {
  std::string field;  ///< the name of the built-in field that it holds; else empty
  std::string title;  ///< as the table has it
};

/// The rows of a table as texts. A cell costs its bytes and eight more.
class EditionTable {
 public:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  /// Reads all rows. Throws TableError and UsageError.
  EditionTable(const table_source& source, std::span<const table_field> fields);

  /// A table without columns, for an edition that lacks the table.
  EditionTable() = default;

  bool isGiven() const { return !columns_.empty(); }
  const std::vector<edition_column>& columns() const { return columns_; }
  std::size_t rows() const { return lines_.size(); }

  std::string_view cell(std::size_t row, std::size_t column) const;

  /// The position of the row: its line, or its number in a studbook file.
  std::size_t line(std::size_t row) const { return lines_[row]; }

  /// Of an event: see RowSource.
  std::size_t animalRow(std::size_t row) const { return animal_rows_[row]; }

  /// The column of a built-in field; NONE when there is none.
  std::size_t column(std::string_view field) const;

  /// The column that means the same as one of another table; NONE when there is none.
  std::size_t columnLike(const edition_column& other) const;

  /// The cell of a field; empty without such a column.
  std::string_view value(std::size_t row, std::string_view field) const;

 private:
  std::vector<edition_column> columns_;
  std::string texts_;
  std::vector<std::size_t> ends_;
  std::vector<std::size_t> lines_;
  std::vector<std::size_t> animal_rows_;
};

/// All tables of a studbook at one time.
struct edition {
  std::string name;
  EditionTable animals;
  EditionTable events;
  EditionTable locations;
  EditionTable programs;
};

/// Reads the tables as texts. Their titles are checked, but not the values of their cells. Throws
/// Failure and UsageError.
edition readEdition(const studbook_tables& tables);

}  // namespace spx::console
