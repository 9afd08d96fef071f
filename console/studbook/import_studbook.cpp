#include "console/studbook/import_studbook.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/base/failure.h"
#include "console/studbook/copying_rows.h"
#include "console/studbook/schema.h"
#include "console/studbook/studbook_file.h"
#include "console/studbook/table_sums.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

/// The source with its rows stored as they are read.
table_source copied(const table_source& source, SQLite::Database& database, const char* table,
                    const std::string& path) {
  if (!source.open) {
    return {};
  }
  return {source.name, [=, &database] { return copyRows(source.open(), database, table, path); }, source.estimate_rows,
          source.titles};
}

}  // namespace

NewStudbook::NewStudbook(const std::string& path)
    // The target of a symbolic link is replaced, not the link.
    : path_(fs::weakly_canonical(fs::absolute(path)).string()), stage_(path_) {
  checkTarget();
  errno = 0;
  if (!stage_.create()) {
    failToWrite();
  }
  try {
    create();
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

NewStudbook::~NewStudbook() = default;

void NewStudbook::checkTarget() const {
  if (!fs::exists(path_)) {
    return;
  }
  if (!isStudbookFile(path_)) {
    throw Failure(path_ + ": not a studbook file; it will not be overwritten");
  }
  StudbookFile(path_, FILE_ACCESS::READ);
}

void NewStudbook::create() {
  database_ = std::make_unique<SQLite::Database>(databaseName(stage_.writePath()),
                                                 SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
  // No journal and no syncs are needed: nobody sees the file before it is complete and has been synced as a whole.
  database_->exec("PRAGMA page_size = 16384");  // makes reading the whole file cheaper per row
  database_->exec("PRAGMA journal_mode = OFF");
  database_->exec("PRAGMA synchronous = OFF");
  database_->exec("PRAGMA locking_mode = EXCLUSIVE");
  database_->exec("BEGIN");
  createTables(*database_);
  createJournal(*database_);
}

studbook_tables NewStudbook::copying(const studbook_tables& tables) {
  studbook_tables copies = tables;
  for (const stored_table& table : storedTableList()) {
    copies.*table.source = copied(tables.*table.source, *database_, table.name, path_);
  }
  return copies;
}

bool NewStudbook::finish(const change_note& note) {
  try {
    createAnimalIndex(*database_);
    createEventIndex(*database_);
    createTriggers(*database_);
    openChange(*database_, note);
    closeChange(*database_);
    storeSums(*database_);
    database_->exec("COMMIT");
    database_.reset();
    return replace();
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  } catch (const fs::filesystem_error& error) {
    throw Failure(backup() + ": the replaced studbook cannot be kept: " + error.code().message());
  }
}

/// The existing file is locked against writers until it is replaced; a writer that comes later notices that the file
/// has been replaced, and fails. A leftover journal must not be applied to the new file: opening the existing file
/// applies it to that one, and without an existing file it is removed.
bool NewStudbook::replace() {
  checkTarget();
  std::unique_ptr<StudbookFile> replaced;
  if (fs::exists(path_)) {
    replaced = std::make_unique<StudbookFile>(path_, FILE_ACCESS::REPLACE);
    keepFile(path_, backup());
  } else {
    for (const char* ending : {"-journal", "-wal", "-shm"}) {
      fs::remove(path_ + ending);
    }
  }
  errno = 0;
  if (!stage_.commit()) {
    failToWrite();
  }
  return replaced != nullptr;
}

void NewStudbook::failToWrite() const {
  throw Failure(path_ + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
}

}  // namespace spx::console
