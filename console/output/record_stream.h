#pragma once

#include <cstddef>
#include <iosfwd>

#include <nlohmann/json_fwd.hpp>

#include "console/output/output_format.h"

namespace spx::console {

/// Facts by name, in the order in which they are shown.
using fact_record = nlohmann::ordered_json;

/// Writes records one after the other, as they come.
///
/// JSON is an array with one object a line. Texts that are not UTF-8 are taken as Latin-1, so that
/// the output can always be read.
///
/// CSV is a header line and one line per record; cells are quoted where they have to be, and texts
/// keep their bytes. Nested values become columns of their own: `sexes` with `male` is
/// `sexes_male`, the first of the `events` has `events_1_date`. User-defined fields have their own
/// titles, after `user_fields_` only where a title is the name of a column as well.
class RecordStream {
 public:
  /// @param format  not TEXT
  /// @param shape   a record with the names of all values that will be written
  RecordStream(std::ostream& out, OUTPUT_FORMAT format, const fact_record& shape);

  void write(const fact_record& record);

  /// Ends the output; nothing can be written afterwards.
  void end();

 private:
  std::ostream& out_;
  bool is_json_;
  std::size_t written_ = 0;
};

/// Writes a single record: an object of JSON by itself, or two lines of CSV.
void writeRecord(std::ostream& out, OUTPUT_FORMAT format, const fact_record& record);

}  // namespace spx::console
