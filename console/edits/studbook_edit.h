#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/studbook/journal.h"
#include "console/studbook/studbook_file.h"
#include "console/studbook/studbook_tables.h"

namespace spx::console {

/// The number of a row in a table of a studbook file.
using row_number = std::int64_t;

/// A value for a field.
struct field_value {
  std::string field;  ///< the column's name in the database; as typed where a function says so
  std::string value;
};

/// One change of a studbook file: a transaction with its entry in the journal. What was changed
/// lasts when commit() returns, and never otherwise.
///
///     StudbookEdit edit(file, {EDIT_CHANGE, "animal set 0042 sex=f"});
///     edit.set("animals", row, "sex", "f");
///     edit.commit();
///
/// All calls throw Failure with the file and the reason; SQLite::Exception leaves none of them.
class StudbookEdit {
 public:
  /// Opens the file for writing and begins the change.
  /// @param undoes  the change that this one takes back; 0 for none
  StudbookEdit(const std::string& path, const change_note& note, std::int64_t undoes = 0);

  const std::string& path() const { return file_->path(); }
  std::int64_t number() const { return number_; }
  SQLite::Database& database() { return file_->database(); }

  /// The rows whose column holds that text, in their order.
  std::vector<row_number> find(const std::string& table, const std::string& field, const std::string& value);

  /// All rows of a table in their order.
  std::vector<row_number> rows(const std::string& table);

  bool hasRow(const std::string& table, row_number row);

  std::string cell(const std::string& table, row_number row, const std::string& field);

  /// Gives a cell another text.
  void set(const std::string& table, row_number row, const std::string& field, std::string_view value);

  /// Adds a row after all others that there are or were.
  row_number insert(const std::string& table, const std::vector<field_value>& values);

  /// Adds a row with a number that is free.
  void insertAt(const std::string& table, row_number row, const std::vector<field_value>& values);

  void remove(const std::string& table, row_number row);

  /// Makes sure that a table has the column of a field.
  void needField(const std::string& table, const std::string& field);

  /// Gives a table one more column of the keeper's own. @return its name in the database
  std::string addUserField(const std::string& table, const std::string& title);

  /// Keeps a sentence for the keeper.
  void note(std::string text) { notes_.push_back(std::move(text)); }
  const std::vector<std::string>& notes() const { return notes_; }

  /// What this change has done up to now, as netCells has it.
  std::vector<journal_cell> cells();

  /// The tables as they would be.
  studbook_tables tables();

  /// Ends the change and brings it to the disk.
  void commit();

 private:
  std::shared_ptr<StudbookFile> file_;
  std::int64_t number_ = 0;
  std::vector<std::string> notes_;
};

}  // namespace spx::console
