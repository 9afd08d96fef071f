#include "console/studbook_file/stored_image.h"

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/core/animal_data.h"
#include "spx/version.h"

#include "console/studbook_file/bytes.h"
#include "console/studbook_file/record_image.h"
#include "console/tables/read_ahead.h"

namespace spx::console {
namespace {

/// Raised when the bytes, or what is understood by the cells of a table, change between releases.
constexpr std::uint32_t FORM = 1;

constexpr std::size_t PART_SIZE = std::size_t{256} << 10;

/// Every table that the image depends on.
constexpr const char* SOURCES[] = {"animals", "events", "locations", "programs", "columns"};

void createImage(SQLite::Database& database) {
  database.exec(
      "CREATE TABLE IF NOT EXISTS image (part INTEGER PRIMARY KEY, bytes BLOB NOT NULL) STRICT");
  for (const char* table : SOURCES) {
    for (const char* change : {"insert", "update", "delete"}) {
      std::ostringstream trigger;
      trigger << "CREATE TRIGGER IF NOT EXISTS image_" << table << "_" << change << " AFTER "
              << change << " ON " << table << " BEGIN DELETE FROM image; END";
      database.exec(trigger.str());
    }
  }
}

std::int64_t askNumber(SQLite::Database& database, const std::string& query) {
  return database.execAndGet(query).getInt64();
}

/// What tells an image of these tables from others: a change that no trigger has seen, as one of
/// the schema, shows here.
std::string stateOf(SQLite::Database& database) {
  ByteWriter state;
  state.fixed(FORM);
  state.text(libraryVersion());
  state.fixed(askNumber(database, "PRAGMA schema_version"));
  for (const char* table : {"animals", "events"}) {
    state.fixed(askNumber(database, std::string("SELECT coalesce(max(\"row\"), 0) FROM ") + table));
  }
  return state.bytes();
}

void insertPart(SQLite::Database& database, std::int64_t part, const std::string& bytes) {
  ByteWriter whole;
  whole.fixed(checkSum(bytes));
  SQLite::Statement insert(database, "INSERT INTO image VALUES (?, ?)");
  const std::string blob = whole.bytes() + bytes;
  insert.bind(1, part);
  insert.bindNoCopy(2, blob.data(), static_cast<int>(blob.size()));
  insert.exec();
}

/// One part of an image, and whether it was the last.
class ImagePart {
 public:
  /// Takes the next row of the parts. Throws BadBytes.
  explicit ImagePart(SQLite::Statement& parts) : is_last_(!parts.executeStep()) {
    if (is_last_) return;
    const SQLite::Column blob = parts.getColumn(0);
    bytes_.assign(static_cast<const char*>(blob.getBlob()),
                  static_cast<std::size_t>(blob.getBytes()));
    if (ByteReader(bytes_).fixed<std::uint64_t>() != checkSum(content())) throw BadBytes();
  }

  bool isLast() const { return is_last_; }
  std::string_view content() const {
    return std::string_view(bytes_).substr(sizeof(std::uint64_t));
  }

 private:
  bool is_last_;
  std::string bytes_;
};

/// Adds the records of a part. @return how many
std::size_t addRecords(const ImagePart& part, const RecordReader& reader) {
  const std::size_t before = Animals.records.size();
  ByteReader in(part.content());
  while (!in.atEnd()) {
    master_data animal;
    reader.read(in, animal);
    Animals.addMaster(std::move(animal));
  }
  return Animals.records.size() - before;
}

}  // namespace

void storeImage(SQLite::Database& database, std::size_t first) {
  createImage(database);
  database.exec("DELETE FROM image");
  RecordWriter writer;
  std::int64_t parts = 0;
  for (position record = first; record < Animals.records.size();) {
    ByteWriter part;
    while (record < Animals.records.size() && part.bytes().size() < PART_SIZE) {
      writer.write(Animals.records[record++], part);
    }
    insertPart(database, ++parts, part.bytes());
  }
  ByteWriter head;
  head.text(stateOf(database));
  head.number(Animals.records.size() - first);
  writer.writeRegistries(head);
  insertPart(database, 0, head.bytes());
}

bool restoreImage(SQLite::Database& database, const std::function<void(std::size_t)>& note) {
  try {
    SQLite::Statement parts(database, "SELECT bytes FROM image ORDER BY part");
    const ImagePart head(parts);
    if (head.isLast()) return false;
    ByteReader in(head.content());
    if (in.text() != stateOf(database)) return false;
    std::uint64_t missing = in.number();
    const RecordReader reader(in);
    ReadAhead<ImagePart> ahead([&parts] { return ImagePart(parts); });
    for (ImagePart part = ahead.take(); !part.isLast(); part = ahead.take()) {
      const std::size_t added = addRecords(part, reader);
      if (added > missing) return false;
      missing -= added;
      note(added);
    }
    return missing == 0;
  } catch (const BadBytes&) {
    return false;
  } catch (const SQLite::Exception&) {
    return false;
  }
}

}  // namespace spx::console
