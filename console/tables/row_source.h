#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "console/tables/title_choice.h"

namespace spx::console {

struct table_field;
class ColumnTitles;

/// A table that cannot be read any further: the file is unreadable, is not text, or has broken quotes.
class TableError : public std::runtime_error {
 public:
  TableError(std::size_t line, const std::string& reason) : std::runtime_error(reason), line_(line) {}
  /// The line, from 1, in which the row begins; 0 when the fault is in the table as a whole.
  std::size_t line() const { return line_; }

 private:
  std::size_t line_;
};

/// The rows of a table in their order, wherever the table is kept; read in constant memory.
class RowSource {
 public:
  virtual ~RowSource() = default;
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;

  const std::vector<std::string>& titles() const { return titles_; }

  /// For each column the name of its field, when the table was stored with that information; other names mean
  /// columns that are not fields. Empty when the fields must be found by the titles.
  const std::vector<std::string>& fields() const { return fields_; }

  /// Called before the first row, with the fields that the columns hold. Does nothing unless overridden.
  virtual void settleColumns(std::span<const table_field> /*fields*/, const ColumnTitles& /*columns*/) {}

  /// Goes to the next row. @return false at the end. Throws TableError.
  virtual bool next() = 0;

  /// The position of the row, from 1: the line in which it begins, or its row number.
  virtual std::size_t line() const = 0;

  /// For events: the number of the animal among the rows of the animals table, from 1, where it is
  /// stored with the event; else 0.
  virtual std::size_t animalRow() const { return 0; }

  // The cells of the row, valid until next().

  std::size_t cells() const { return cells_.size(); }
  std::string_view operator[](std::size_t cell) const { return cells_[cell]; }
  std::span<const std::string_view> row() const { return cells_; }

 protected:
  RowSource() = default;

  std::vector<std::string> titles_;
  std::vector<std::string> fields_;
  std::span<const std::string_view> cells_;
};

/// One table of a studbook; `open` is null when the table is not given.
struct table_source {
  using opener = std::function<std::unique_ptr<RowSource>()>;

  std::string name;                            ///< as messages show it
  opener open;                                 ///< throws TableError; null for a table that is not given
  std::function<std::size_t()> estimate_rows;  ///< roughly how many rows there are; 0 for unknown
  title_choices titles = {};                   ///< not asked where the source has settled its columns
};

}  // namespace spx::console
