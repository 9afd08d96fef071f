#include "console/studbook/studbook_file.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include "console/base/failure.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

constexpr int WAIT_MS = 5000;
constexpr int ONE_THREAD = SQLITE_OPEN_NOMUTEX;  // else every cell takes a lock
constexpr std::string_view FIRST_BYTES("SQLite format 3\0", 16);

int pragma(SQLite::Database& database, const char* name) {
  return database.execAndGet(std::string("PRAGMA ") + name).getInt();
}

/// A reader may not undo what a killed writer left half done; any program that may write does so at
/// its first look.
void undoHalfDone(const std::string& path) {
  SQLite::Database database(path, SQLite::OPEN_READWRITE, WAIT_MS);
  database.exec("SELECT 1 FROM sqlite_schema LIMIT 1");
}

std::string reasonOf(const SQLite::Exception& error) {
  if (error.getExtendedErrorCode() == SQLITE_READONLY_DBMOVED) {
    return "was replaced by another program meanwhile; nothing was changed";
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

}  // namespace

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

StudbookFile::StudbookFile(std::string path, FILE_ACCESS access) : path_(std::move(path)) {
  try {
    try {
      open(access);
    } catch (const SQLite::Exception& error) {
      if (error.getExtendedErrorCode() != SQLITE_READONLY_ROLLBACK) {
        throw;
      }
      undoHalfDone(path_);
      open(access);
    }
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

StudbookFile::~StudbookFile() = default;

void StudbookFile::open(FILE_ACCESS access) {
  const bool write = access == FILE_ACCESS::WRITE;
  database_ = std::make_unique<SQLite::Database>(
      path_, (write ? SQLite::OPEN_READWRITE : SQLite::OPEN_READONLY) | ONE_THREAD, WAIT_MS);
  database_->exec("PRAGMA trusted_schema = OFF");
  database_->exec("PRAGMA foreign_keys = ON");
  // Another program may have given the file a log of its own, which would outlive a replaced file.
  if (write) {
    database_->exec("PRAGMA journal_mode = DELETE");
  }
  database_->exec(write ? "BEGIN IMMEDIATE" : "BEGIN");
  check();
}

// Version 1 is the first: from the second on, a file that is opened for writing is brought up to
// date here, in its transaction.
void StudbookFile::check() {
  if (pragma(*database_, "application_id") != APPLICATION_ID) {
    throw Failure(path_ + ": is a database, but no studbook file");
  }
  const int version = pragma(*database_, "user_version");
  if (version != SCHEMA_VERSION) {
    throw Failure(path_ + ": is a studbook file of version " + std::to_string(version) +
                  "; this program knows version " + std::to_string(SCHEMA_VERSION));
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
    return static_cast<std::size_t>(database_->execAndGet("SELECT coalesce(max(\"row\"), 0) FROM " + table).getInt64());
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

void StudbookFile::commit() {
  try {
    database_->exec("COMMIT");
  } catch (const SQLite::Exception& error) {
    failFor(path_, error);
  }
}

}  // namespace spx::console
