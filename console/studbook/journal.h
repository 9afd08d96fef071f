#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace SQLite {
class Database;
}

/// The history of a studbook file: every change of every cell, written by triggers in the
/// transaction of the change itself. docs/studbook-file.md describes its tables.
namespace spx::console {

/// The kinds of changes, as the journal stores them.
inline constexpr char EDIT_CHANGE[] = "edit";
inline constexpr char IMPORT_CHANGE[] = "import";
inline constexpr char UNDO_CHANGE[] = "undo";
inline constexpr char REDO_CHANGE[] = "redo";
inline constexpr char OUTSIDE_CHANGE[] = "outside";  ///< made by a program that keeps no journal

/// The description of a change.
struct change_note {
  std::string kind;
  std::string action;   ///< the command, such as `animal set 0042 sire=0003`
  std::string author;   ///< empty: the name of the user
  std::string message;  ///< why; may be empty
};

/// A change of the journal.
struct journal_change {
  std::int64_t number = 0;
  std::string time;  ///< UTC, YYYY-MM-DDThh:mm:ssZ; empty until the change is closed
  change_note note;
  std::int64_t undoes = 0;     ///< the change that this one takes back; 0 for none
  std::int64_t undone_by = 0;  ///< the change that undoes this one and was not itself undone; 0 for none
  std::size_t cells = 0;       ///< how many entries it has
};

/// The field of an entry that stands for the row itself: without an old value the row was added,
/// without a new one it was removed.
inline constexpr char WHOLE_ROW[] = "row";

/// One entry of the journal: a cell that was changed, or a row that was added or removed.
struct journal_cell {
  std::int64_t change = 0;
  std::string table;
  std::int64_t row = 0;
  std::string animal;  ///< the ID of the animal whose row or event it is; else empty
  std::string field;   ///< the column's name in the database
  std::optional<std::string> before;
  std::optional<std::string> after;
};

/// Makes the tables of the journal.
void createJournal(SQLite::Database& database);

/// Creates the triggers for the current columns of the tables, replacing existing ones. Changes are
/// not recorded before this call.
void createTriggers(SQLite::Database& database);

/// Removes all triggers of the file.
void dropTriggers(SQLite::Database& database);

/// Whether the file has a journal: those of version 1 do not.
bool hasJournal(SQLite::Database& database);

/// Begins a change: everything that the triggers record belongs to it until closeChange(). Earlier
/// changes by other programs first become a change of their own.
/// @param undoes  the change that this one takes back; 0 for none
/// @return the number of the change
std::int64_t openChange(SQLite::Database& database, const change_note& note, std::int64_t undoes = 0);

/// Ends the change that is open and notes the time.
void closeChange(SQLite::Database& database);

/// All changes, the first one first. Changes that another program has made since the last one come
/// at the end, without a time and with the number that they will get. Linear in the journal.
std::vector<journal_change> readChanges(SQLite::Database& database);

/// The entries of a change in the order in which they were made; for change 0, those that do not
/// belong to a change yet.
std::vector<journal_cell> readCells(SQLite::Database& database, std::int64_t change);

/// The entries of all changes, the first one first.
std::vector<journal_cell> readAllCells(SQLite::Database& database);

/// The net effect of the entries: one entry per cell, from its first value to its last, without cells that got their
/// first value back. They keep the order in which the cells were first changed.
std::vector<journal_cell> netCells(const std::vector<journal_cell>& cells);

}  // namespace spx::console
