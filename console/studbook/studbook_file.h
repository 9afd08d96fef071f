#pragma once

#include <memory>
#include <string>

namespace SQLite {
class Database;
class Exception;
}  // namespace SQLite

namespace spx::console {

/// What a studbook file is opened for. REPLACE keeps writers away and looks at nothing but the kind
/// of the file.
enum class FILE_ACCESS { READ, WRITE, REPLACE };

/// Whether a file begins as an SQLite database does. False for what cannot be looked at twice, such
/// as a pipe.
bool isStudbookFile(const std::string& file);

/// A studbook file that is open, in one transaction: everything read through it is of one state,
/// and nothing written through it lasts before commit().
///
/// While another program has the file to itself, opening and committing wait: readers for five
/// seconds, writers, which take turns, for a minute. All calls throw Failure, with the file and the
/// reason.
class StudbookFile {
 public:
  /// Opens the file and looks whether it is a studbook file of a version that can be read, with the
  /// tables that were stored in it; for writing, reads and checks all of it, and brings an older
  /// version up to date in the transaction. What a killed writer left half done is undone.
  StudbookFile(std::string path, FILE_ACCESS access);
  ~StudbookFile();  ///< undoes what was not committed
  StudbookFile(const StudbookFile&) = delete;
  StudbookFile& operator=(const StudbookFile&) = delete;

  const std::string& path() const { return path_; }
  FILE_ACCESS access() const { return access_; }
  SQLite::Database& database() { return *database_; }

  /// Whether the studbook has that table: one that was imported or written to.
  bool hasTable(const std::string& table);

  /// About how many rows a table has: its highest row number, or fewer where the file is too small
  /// for so many.
  std::size_t countRows(const std::string& table);

  /// Stores the sums of the tables anew, and brings to the disk what was written. Reads all tables.
  /// A file of an older version is kept as PATH.vN.bak, with its version in place of N, and the user
  /// is told.
  void commit();

 private:
  void open();
  int checkKind();
  void checkContent();
  void upgrade();

  std::string path_;
  FILE_ACCESS access_;
  std::unique_ptr<SQLite::Database> database_;
  int former_version_ = 0;  ///< of a file that is being brought up to date; else 0
};

/// The path under which SQLite finds the file: without a directory it reads ":memory:" and "file:..."
/// as something else.
std::string databaseName(const std::string& path);

/// Gives a file a second name, so that its content stays when the first is replaced, or copies it
/// where the disk cannot. A former file of that name is replaced. Throws std::filesystem errors.
void keepFile(const std::string& path, const std::string& kept);

/// Throws Failure: what an error of SQLite means for that file.
[[noreturn]] void failFor(const std::string& path, const SQLite::Exception& error);

}  // namespace spx::console
