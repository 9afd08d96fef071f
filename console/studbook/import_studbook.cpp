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

namespace spx::console {
namespace {

namespace fs = std::filesystem;

/// The source with its rows stored as they are read.
table_source copied(const table_source& source, SQLite::Database& database, const char* table,
                    const std::string& path) {
  if (!source.open) {
    return {};
  }
  return {source.name, [=, &database] { return copyRows(source.open(), database, table, path); }, source.estimate_rows};
}

}  // namespace

NewStudbook::NewStudbook(const std::string& path)
    // What a symbolic link names is replaced, and not the link.
    : path_(fs::weakly_canonical(path).string()), stage_(path_) {
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
    throw Failure(path_ + ": is not a studbook file; it will not be overwritten");
  }
  StudbookFile(path_, FILE_ACCESS::READ);
}

void NewStudbook::create() {
  database_ = std::make_unique<SQLite::Database>(stage_.writePath(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX);
  // Nobody sees the file before it is complete and synced as a whole.
  database_->exec("PRAGMA page_size = 16384");  // less to do per row for the whole that is read
  database_->exec("PRAGMA journal_mode = OFF");
  database_->exec("PRAGMA synchronous = OFF");
  database_->exec("PRAGMA locking_mode = EXCLUSIVE");
  database_->exec("BEGIN");
  createTables(*database_);
  createJournal(*database_);
}

studbook_tables NewStudbook::copying(const studbook_tables& tables) {
  studbook_tables copies = tables;
  copies.animals = copied(tables.animals, *database_, "animals", path_);
  copies.events = copied(tables.events, *database_, "events", path_);
  copies.locations = copied(tables.locations, *database_, "locations", path_);
  copies.programs = copied(tables.programs, *database_, "programs", path_);
  return copies;
}

bool NewStudbook::finish(const change_note& note) {
  try {
    createAnimalIndex(*database_);
    createEventIndex(*database_);
    createTriggers(*database_);
    openChange(*database_, note);
    closeChange(*database_);
    database_->exec("COMMIT");
    database_.reset();
    return replace();
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  } catch (const fs::filesystem_error& error) {
    throw Failure(path_ + ": the former studbook cannot be kept: " + error.code().message());
  }
}

/// The former file is held against writers until it is replaced: one that comes later finds that
/// the file under its hands is another one, and fails. A journal would be taken for that of the new
/// file: opening applies it to the former one, and without that it is dropped.
bool NewStudbook::replace() {
  checkTarget();
  std::unique_ptr<StudbookFile> former;
  if (fs::exists(path_)) {
    former = std::make_unique<StudbookFile>(path_, FILE_ACCESS::WRITE);
    keepFile(path_, path_ + ".bak");
  } else {
    for (const char* ending : {"-journal", "-wal", "-shm"}) {
      fs::remove(path_ + ending);
    }
  }
  errno = 0;
  if (!stage_.commit()) {
    failToWrite();
  }
  return former != nullptr;
}

void NewStudbook::failToWrite() const {
  throw Failure(path_ + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
}

}  // namespace spx::console
