#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "spx/support/atomic_file.h"

#include "console/studbook/journal.h"
#include "console/studbook/studbook_tables.h"

namespace SQLite {
class Database;
}

namespace spx::console {

/// A new studbook file, written under a temporary name in the same directory and moved into place
/// as a whole by finish(). Until then, and when anything fails, an existing file is unchanged.
///
///     NewStudbook book(path);
///     loadStudbook(book.copying(openTables(files)));
///     book.finish({IMPORT_CHANGE, "import animals.csv"});
class NewStudbook {
 public:
  /// Begins a file for that path. Throws Failure when it cannot be written there, or when the path
  /// names something that is not a studbook file, or a damaged one; these are not replaced.
  explicit NewStudbook(const std::string& path);
  ~NewStudbook();
  NewStudbook(const NewStudbook&) = delete;
  NewStudbook& operator=(const NewStudbook&) = delete;

  /// The same tables, each row of which is stored when it is read; reading throws Failure when a row
  /// cannot be stored. The object must outlive them.
  studbook_tables copying(const studbook_tables& tables);

  /// Completes the file, writes it to disk and moves it into place. An existing studbook file is
  /// kept as backup(). Throws Failure.
  /// @param note  the first change of its history
  /// @return whether there was an existing file
  bool finish(const change_note& note);

  /// The path of the file, without symbolic links, and that of the studbook that it has replaced.
  const std::string& path() const { return path_; }
  std::string backup() const { return path_ + ".bak"; }

 private:
  void checkTarget() const;
  void create();
  bool replace();
  [[noreturn]] void failToWrite() const;

  std::string path_;
  qs_lib::AtomicFile stage_;
  std::unique_ptr<SQLite::Database> database_;
};

}  // namespace spx::console
