#include "console/studbook/studbook_file.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "console/base/failure.h"
#include "console/studbook/journal.h"
#include "console/studbook/schema.h"
#include "console/studbook/table_sums.h"

namespace spx::console {
namespace {

constexpr int READER_WAIT_MS = 5000;
constexpr int WRITER_WAIT_MS = 60000;
constexpr int ONE_THREAD = SQLITE_OPEN_NOMUTEX;  // otherwise SQLite locks a mutex for every cell
constexpr std::string_view FIRST_BYTES("SQLite format 3\0", 16);

int pragma(SQLite::Database& database, const char* name) {
  return database.execAndGet(std::string("PRAGMA ") + name).getInt();
}

/// A read-only connection cannot roll back what a killed writer has left half done; opening the
/// file for writing and reading from it does.
void undoHalfDone(const std::string& path) {
  SQLite::Database database(databaseName(path), SQLite::OPEN_READWRITE, READER_WAIT_MS);
  database.exec("SELECT 1 FROM sqlite_schema LIMIT 1");
}

std::string reasonOf(const SQLite::Exception& error) {
  if (error.getExtendedErrorCode() == SQLITE_READONLY_DBMOVED) {
    return "was replaced by another program in the meantime; nothing was changed";
  }
  switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return "is in use by another program; nothing was changed";
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return std::string("is damaged: ") + error.what();
    case SQLITE_FULL:
      return "the disk is full";
    default:
      return error.what();
  }
}

/// The temporary name of a file that is about to replace another.
std::string nameBeside(const std::string& kept) {
  const std::string beside = kept + ".new";
  std::filesystem::remove(beside);
  return beside;
}

/// Copies a file that will be written to. An existing copy is replaced as a whole.
void copyAs(const std::string& path, const std::string& kept) {
  const std::string beside = nameBeside(kept);
  std::filesystem::copy_file(path, beside);
  std::filesystem::rename(beside, kept);
}

}  // namespace

void keepFile(const std::string& path, const std::string& kept) {
  const std::string beside = nameBeside(kept);
  std::error_code no_links;
  std::filesystem::create_hard_link(path, beside, no_links);
  if (no_links) {
    return copyAs(path, kept);
  }
  std::filesystem::rename(beside, kept);
  std::filesystem::remove(beside);  // rename() does nothing when both names are links to one file, which a killed
                                    // import can leave behind
}

bool isStudbookFile(const std::string& file) {
  if (!std::filesystem::is_regular_file(file)) {
    return false;
  }
  std::string begin(FIRST_BYTES.size(), ' ');
  return std::ifstream(file, std::ios::binary).read(begin.data(), static_cast<std::streamsize>(begin.size())) &&
         begin == FIRST_BYTES;
}

void failFor(const std::string& path, const SQLite::Exception& error) {
  throw Failure(path + ": " + reasonOf(error));
}

StudbookFile::StudbookFile(std::string path, FILE_ACCESS access) : path_(std::move(path)), access_(access) {
  try {
    try {
      open();
    } catch (const SQLite::Exception& error) {
      if (error.getExtendedErrorCode() != SQLITE_READONLY_ROLLBACK) {
        throw;
      }
      undoHalfDone(path_);
      open();
    }
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

StudbookFile::~StudbookFile() = default;

void StudbookFile::open() {
  const bool write = access_ != FILE_ACCESS::READ;
  database_ = std::make_unique<SQLite::Database>(databaseName(path_),
                                                 (write ? SQLite::OPEN_READWRITE : SQLite::OPEN_READONLY) | ONE_THREAD,
                                                 write ? WRITER_WAIT_MS : READER_WAIT_MS);
  // A view in place of a table could produce rows without end.
  sqlite3_db_config(database_->getHandle(), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  database_->exec("PRAGMA trusted_schema = OFF");
  database_->exec("PRAGMA foreign_keys = ON");
  // Another program may have switched the file to a write-ahead log, which would remain when the file is replaced.
  if (write) {
    database_->exec("PRAGMA journal_mode = DELETE");
  }
  database_->exec(write ? "BEGIN IMMEDIATE" : "BEGIN");
  const int version = checkKind();
  checkContent();
  if (access_ == FILE_ACCESS::WRITE && version != SCHEMA_VERSION) {
    former_version_ = version;
    upgrade();
  }
}

/// @return the version
int StudbookFile::checkKind() {
  if (pragma(*database_, "application_id") != APPLICATION_ID) {
    throw Failure(path_ + ": is an SQLite database, but not a studbook file");
  }
  const int version = pragma(*database_, "user_version");
  if (version < OLDEST_VERSION || version > SCHEMA_VERSION) {
    throw Failure(path_ + ": is a studbook file of version " + std::to_string(version) +
                  "; this program reads versions " + std::to_string(OLDEST_VERSION) + " to " +
                  std::to_string(SCHEMA_VERSION));
  }
  return version;
}

void StudbookFile::upgrade() {
  database_->exec("PRAGMA cache_spill = OFF");  // the file on disk must not change before commit() has made the backup
  dropTriggers(*database_);
  upgradeTables(*database_);
  createJournal(*database_);
  createTriggers(*database_);
}

void StudbookFile::checkContent() {
  try {
    if (access_ == FILE_ACCESS::READ) {
      checkStructure(*database_);
    } else if (access_ == FILE_ACCESS::WRITE) {
      checkStructure(*database_);
      checkEverything(*database_);
    }
  } catch (const TableError& error) {
    throw Failure(path_ + ": is damaged: " + error.what());
  }
}

bool StudbookFile::hasTable(const std::string& table) {
  try {
    return !storedColumns(*database_, table).empty();
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

std::size_t StudbookFile::countRows(const std::string& table) {
  try {
    constexpr std::uintmax_t SMALLEST_ROW = 8;
    const auto last = database_->execAndGet("SELECT coalesce(max(\"row\"), 0) FROM " + table).getInt64();
    const std::uintmax_t most = std::filesystem::file_size(path_) / SMALLEST_ROW;
    return std::min(static_cast<std::uintmax_t>(std::max<std::int64_t>(last, 0)), most);
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

void StudbookFile::commit() {
  const std::string kept = path_ + ".v" + std::to_string(former_version_) + ".bak";
  try {
    storeSums(*database_);
    if (former_version_ != 0) {
      copyAs(path_, kept);
    }
    database_->exec("COMMIT");
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  } catch (const TableError& error) {
    throw Failure(path_ + ": cannot be written: " + error.what());
  } catch (const std::filesystem::filesystem_error& error) {
    throw Failure(kept + ": the previous studbook cannot be kept: " + error.code().message());
  }
  if (former_version_ != 0) {
    std::cerr << "spx: " << path_ << " now has a history (format version " << SCHEMA_VERSION
              << "); the previous file is kept as " << kept << "\n";
    former_version_ = 0;
  }
}

std::string databaseName(const std::string& path) {
  return std::filesystem::absolute(path).string();
}

}  // namespace spx::console
