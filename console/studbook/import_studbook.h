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

/// A studbook file in the making, beside the place that it takes as a whole in the end. Until then,
/// and when anything fails, what is in that place stays as it is.
///
///     NewStudbook book(path);
///     loadStudbook(book.copying(openTables(files)));
///     book.finish({IMPORT_CHANGE, "import animals.csv"});
class NewStudbook {
 public:
  /// Begins a file that will be at that path. Throws Failure when it cannot be written there, or
  /// when something is there that is no studbook file, or a damaged one: it is not replaced.
  explicit NewStudbook(const std::string& path);
  ~NewStudbook();
  NewStudbook(const NewStudbook&) = delete;
  NewStudbook& operator=(const NewStudbook&) = delete;

  /// The same tables, of which every row is stored when it is read; reading them throws Failure when
  /// that cannot be done. The object must outlive them.
  studbook_tables copying(const studbook_tables& tables);

  /// Completes the file, brings it to the disk and puts it in its place. An existing studbook file
  /// is kept as backup(). Throws Failure.
  /// @param note  the first change of its history
  /// @return whether there was one
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
