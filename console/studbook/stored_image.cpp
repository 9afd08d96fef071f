#include "console/studbook/stored_image.h"

#include <cstdint>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/core/animal_data.h"
#include "spx/version.h"

#include "console/studbook/bytes.h"
#include "console/studbook/record_image.h"
#include "console/tables/read_ahead.h"

namespace spx::console {
namespace {

/// Raised when the bytes, or what is understood by the cells of a table, change between releases.
constexpr std::uint32_t FORM = 1;

constexpr std::size_t PART_SIZE = std::size_t{256} << 10;

/// A studbook that needs more for one part has no image.
constexpr std::size_t LARGEST_PART = std::size_t{512} << 20;

/// Every table that the image depends on.
constexpr const char* SOURCES[] = {"animals", "events", "locations", "programs", "columns"};
constexpr const char* CHANGES[] = {"insert", "update", "delete"};

std::string triggerName(const std::string& table, const std::string& change) {
  return "spx_image_" + table + "_" + change;
}

std::uint32_t stampOf(SQLite::Database& database) {
  return database.execAndGet("PRAGMA schema_version").getUInt();
}

/// Gives the schema a version of its own, by which an image is known as that of this file: every
/// change of the schema leads to another, and so does a file that is written from a dump.
std::uint32_t newStamp(SQLite::Database& database) {
  constexpr std::uint32_t LARGEST = 0x7FFFFFFF;
  std::random_device random;
  database.exec("PRAGMA schema_version = " + std::to_string(random() % LARGEST + 1));
  return stampOf(database);
}

void createImage(SQLite::Database& database) {
  database.exec("CREATE TABLE spx_image (part INTEGER PRIMARY KEY, bytes BLOB NOT NULL) STRICT");
  for (const char* table : SOURCES) {
    for (const char* change : CHANGES) {
      std::ostringstream trigger;
      trigger << "CREATE TRIGGER " << triggerName(table, change) << " AFTER " << change << " ON " << table
              << " BEGIN DELETE FROM spx_image; END";
      database.exec(trigger.str());
    }
  }
}

/// What else tells an image of these tables and this program from others.
std::string stateOf(SQLite::Database& database) {
  ByteWriter state;
  state.fixed(FORM);
  state.text(libraryVersion());
  for (const std::string table : {"animals", "events"}) {
    state.fixed(database.execAndGet("SELECT coalesce(max(\"row\"), 0) FROM " + table).getInt64());
  }
  return state.bytes();
}

/// The number of a part's place in all the images that there are.
std::uint64_t placeOf(std::uint32_t stamp, std::uint32_t part) {
  return std::uint64_t{stamp} << 32 | part;
}

/// The parts of a new image, in any order.
class ImageWriter {
 public:
  explicit ImageWriter(SQLite::Database& database)
      : stamp_(newStamp(database)), insert_(database, "INSERT INTO spx_image VALUES (?, ?)") {}

  void write(std::uint32_t part, const std::string& bytes) {
    ByteWriter sum;
    sum.fixed(checkSum(bytes, placeOf(stamp_, part)));
    const std::string blob = sum.bytes() + bytes;
    insert_.bind(1, part);
    insert_.bindNoCopy(2, blob.data(), static_cast<int>(blob.size()));
    insert_.exec();
    insert_.reset();
  }

 private:
  std::uint32_t stamp_;
  SQLite::Statement insert_;
};

/// One part of an image, and whether it was the last.
class ImagePart {
 public:
  /// Takes the next row of the parts. Throws BadBytes.
  ImagePart(SQLite::Statement& parts, std::uint64_t place) : is_last_(!parts.executeStep()) {
    if (is_last_) {
      return;
    }
    const SQLite::Column blob = parts.getColumn(0);
    bytes_.assign(static_cast<const char*>(blob.getBlob()), static_cast<std::size_t>(blob.getBytes()));
    const auto sum = ByteReader(bytes_).fixed<std::uint64_t>();
    if (sum != checkSum(content(), place)) {
      throw BadBytes();
    }
  }

  bool isLast() const { return is_last_; }
  std::string_view content() const { return std::string_view(bytes_).substr(sizeof(std::uint64_t)); }

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

void dropImage(SQLite::Database& database) {
  for (const char* table : SOURCES) {
    for (const char* change : CHANGES) {
      database.exec("DROP TRIGGER IF EXISTS " + triggerName(table, change));
    }
  }
  database.exec("DROP TABLE IF EXISTS spx_image");
}

void storeImage(SQLite::Database& database, std::size_t first) {
  dropImage(database);
  createImage(database);
  ImageWriter image(database);
  RecordWriter writer;
  bool fits = true;
  std::uint32_t parts = 0;
  for (position record = first; fits && record < Animals.records.size();) {
    ByteWriter part;
    while (record < Animals.records.size() && part.bytes().size() < PART_SIZE) {
      writer.write(Animals.records[record++], part);
    }
    fits = part.bytes().size() <= LARGEST_PART;
    if (fits) {
      image.write(++parts, part.bytes());
    }
  }
  ByteWriter head;
  head.text(stateOf(database));
  head.number(Animals.records.size() - first);
  writer.writeRegistries(head);
  if (fits && head.bytes().size() <= LARGEST_PART) {
    image.write(0, head.bytes());
  } else {
    database.exec("DELETE FROM spx_image");
  }
}

bool restoreImage(SQLite::Database& database, const std::function<void(std::size_t)>& note) {
  try {
    const std::uint32_t stamp = stampOf(database);
    SQLite::Statement parts(database, "SELECT bytes FROM spx_image ORDER BY part");
    std::uint32_t next = 0;
    const auto take = [&] { return ImagePart(parts, placeOf(stamp, next++)); };
    const ImagePart head = take();
    if (head.isLast()) {
      return false;
    }
    ByteReader in(head.content());
    if (in.text() != stateOf(database)) {
      return false;
    }
    std::uint64_t missing = in.number();
    const RecordReader reader(in);
    ReadAhead<ImagePart> ahead(take);
    for (ImagePart part = ahead.take(); !part.isLast(); part = ahead.take()) {
      const std::size_t added = addRecords(part, reader);
      if (added == 0 || added > missing) {
        return false;
      }
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
