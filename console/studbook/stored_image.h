#pragma once

#include <cstddef>
#include <functional>

namespace SQLite {
class Database;
}

namespace spx::console {

/// A studbook file also keeps what its tables give when they are read, as one image: to take that
/// into the store is a matter of copying. The tables alone are the studbook. Triggers empty the
/// image when one of them changes, and one that is not of this file, of this program's form and
/// version, or is damaged, is passed over.

/// Drops the image with its triggers: to be called before a change. Throws SQLite::Exception.
void dropImage(SQLite::Database& database);

/// Keeps the image of the studbook in use, whose tables have been read and are as they are in the
/// database. To be called within the transaction that has changed them, after everything else. A
/// studbook with texts of hundreds of megabytes in one animal gets none. Throws SQLite::Exception.
/// @param first  the record of the first animal that is from the tables
void storeImage(SQLite::Database& database, std::size_t first);

/// Fills the studbook in use, which has the pseudo parents only, from the image. The database
/// belongs to this call until it ends.
/// @param note  hears how many records have been added
/// @return false when there is no good image; what the studbook then holds is of no use
bool restoreImage(SQLite::Database& database, const std::function<void(std::size_t)>& note);

}  // namespace spx::console
