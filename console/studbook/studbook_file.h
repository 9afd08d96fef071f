#pragma once

#include <memory>
#include <string>

namespace SQLite {
class Database;
class Exception;
}  // namespace SQLite

namespace spx::console {

enum class FILE_ACCESS { READ, WRITE };

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
  /// Opens the file and looks whether it is a studbook file of a version that can be read; for
  /// writing, brings an older version up to date in the transaction. What a killed writer left half
  /// done is undone.
  StudbookFile(std::string path, FILE_ACCESS access);
  ~StudbookFile();  ///< undoes what was not committed
  StudbookFile(const StudbookFile&) = delete;
  StudbookFile& operator=(const StudbookFile&) = delete;

  const std::string& path() const { return path_; }
  SQLite::Database& database() { return *database_; }

  /// Whether the studbook has that table: one that was imported or written to.
  bool hasTable(const std::string& table);

  /// The highest row number of a table that there is: the rows are numbered without gaps.
  std::size_t countRows(const std::string& table);

  /// Brings to the disk what was written. A file of an older version is kept as PATH.vN.bak, with
  /// its version in place of N, and the user is told.
  void commit();

 private:
  void open(FILE_ACCESS access);
  void check(FILE_ACCESS access);
  void upgrade();

  std::string path_;
  std::unique_ptr<SQLite::Database> database_;
  int former_version_ = 0;  ///< of a file that is being brought up to date; else 0
};

/// Gives a file a second name, so that its content stays when the first is replaced, or copies it
/// where the disk cannot. A former file of that name is replaced. Throws std::filesystem errors.
void keepFile(const std::string& path, const std::string& kept);

/// Throws Failure: what an error of SQLite means for that file.
[[noreturn]] void failFor(const std::string& path, const SQLite::Exception& error);

}  // namespace spx::console
