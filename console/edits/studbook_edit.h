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

/// One change of a studbook file: a transaction with its entry in the journal. The changes are
/// permanent once commit() has returned, and never otherwise.
///
///     StudbookEdit edit(file, {EDIT_CHANGE, "animal set 0042 sex=f"});
///     edit.set("animals", row, "sex", "f");
///     edit.commit();
///
/// All calls throw Failure with the file and the reason; none throws SQLite::Exception.
class StudbookEdit {
 public:
  /// Opens the file for writing and begins the change.
  /// @param undoes  the change that this one undoes; 0 for none
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

  /// Sets the text of a cell.
  void set(const std::string& table, row_number row, const std::string& field, std::string_view value);

  /// Adds a row after all existing and removed rows.
  row_number insert(const std::string& table, const std::vector<field_value>& values);

  /// Adds a row with the given number, which must be free.
  void insertAt(const std::string& table, row_number row, const std::vector<field_value>& values);

  void remove(const std::string& table, row_number row);

  /// Adds the column of a field if the table lacks it.
  void needField(const std::string& table, const std::string& field);

  /// Adds a user-defined column to a table. @return its name in the database
  std::string addUserField(const std::string& table, const std::string& title);

  /// Adds a sentence to be shown to the keeper.
  void note(std::string text) { notes_.push_back(std::move(text)); }
  const std::vector<std::string>& notes() const { return notes_; }

  /// What this change has done so far, as netCells() gives it.
  std::vector<journal_cell> cells();

  /// The tables as they would be after commit().
  studbook_tables tables();

  /// Ends the change and writes it to disk.
  void commit();

 private:
  std::shared_ptr<StudbookFile> file_;
  std::int64_t number_ = 0;
  std::vector<std::string> notes_;
};

}  // namespace spx::console
