#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "console/tables/row_source.h"

struct sqlite3_stmt;

namespace SQLite {
class Database;
}

namespace spx::console {

/// The number of rows of a table, and a checksum over its titles, fields and cells in their order,
/// which shows whether the table is still the one that was stored.
struct table_sum {
  std::int64_t rows = 0;
  std::uint64_t sum = 0;

  bool operator==(const table_sum&) const = default;
};

/// The rows of a table in the database of a studbook file, in the order of their numbers, with the
/// titles and the cells that the source had.
class DatabaseRows : public RowSource {
 public:
  /// The database must outlive the rows. Throws TableError, also when the columns do not fit the
  /// table.
  DatabaseRows(SQLite::Database& database, const std::string& table);

  bool next() override;
  std::size_t line() const override;
  std::size_t animalRow() const override;

  /// The sum of the rows read so far.
  const table_sum& sum() const { return sum_; }

 private:
  void readColumns(const std::string& table);
  void findGaps();
  void prepare(const std::string& query);
  std::string_view read(std::size_t cell) const;
  void addToSum(std::string_view text);
  [[noreturn]] void fail() const;

  SQLite::Database& database_;
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> rows_;
  bool has_animal_;  ///< the second column is the row of the animal
  std::vector<std::string_view> texts_;
  std::vector<std::int64_t> animals_;  ///< the numbers of all rows of animals; empty where they have no gaps
  table_sum sum_;
};

}  // namespace spx::console
