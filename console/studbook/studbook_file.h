#pragma once

#include <memory>
#include <string>

namespace SQLite {
class Database;
class Exception;
}  // namespace SQLite

namespace spx::console {

/// What a studbook file is opened for. REPLACE locks out writers and checks only that it is a
/// studbook file.
enum class FILE_ACCESS { READ, WRITE, REPLACE };

/// Whether a file begins as an SQLite database does. False for anything that can be read only once,
/// such as a pipe.
bool isStudbookFile(const std::string& file);

/// An open studbook file, in one transaction: everything read through it is of one state, and
/// nothing written through it is permanent before commit().
///
/// While another program has locked the file, opening and committing wait: readers for five
/// seconds; writers, which take turns, for a minute. All calls throw Failure, with the file and the
/// reason.
class StudbookFile {
 public:
  /// Opens the file and checks that it is a studbook file of a readable version with the tables
  /// that were stored in it. For writing, reads and checks all of it, and upgrades an older version
  /// within the transaction. What a killed writer has left half done is rolled back.
  StudbookFile(std::string path, FILE_ACCESS access);
  ~StudbookFile();  ///< rolls back what was not committed
  StudbookFile(const StudbookFile&) = delete;
  StudbookFile& operator=(const StudbookFile&) = delete;

  const std::string& path() const { return path_; }
  FILE_ACCESS access() const { return access_; }
  SQLite::Database& database() { return *database_; }

  /// Whether the studbook has that table: one that was imported or written to.
  bool hasTable(const std::string& table);

  /// Estimates the number of rows of a table: its highest row number, or less when the file is too
  /// small for that.
  std::size_t countRows(const std::string& table);

  /// Computes and stores the sums of the tables, and writes the transaction to disk. Reads all
  /// tables. A file of an older version is kept as PATH.vN.bak, N being its version, and standard
  /// error says so.
  void commit();

 private:
  void open();
  int checkKind();
  void checkContent();
  void upgrade();

  std::string path_;
  FILE_ACCESS access_;
  std::unique_ptr<SQLite::Database> database_;
  int former_version_ = 0;  ///< version of a file that is being upgraded; else 0
};

/// The path to give to SQLite, which gives names such as ":memory:" and "file:..." another meaning
/// unless a directory precedes them.
std::string databaseName(const std::string& path);

/// Keeps a file under a second name when the first is about to be replaced: as a hard link, or as a copy where the file
/// system has no links. An existing file of that name is replaced. Throws std::filesystem errors.
void keepFile(const std::string& path, const std::string& kept);

/// Throws Failure with the meaning of an SQLite error for that file.
[[noreturn]] void failFor(const std::string& path, const SQLite::Exception& error);

}  // namespace spx::console
