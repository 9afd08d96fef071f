#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "spx/core/master_data.h"
#include "spx/core/sub_taxa.h"

#include "console/studbook/bytes.h"

/// What the tables of a studbook give when they are read, as bytes: the demes, programmes, taxa and
/// user-defined fields, and the records as they are before anything is derived from them.
namespace spx::console {

/// Writes records. Taxa and places become numbers, which the registries explain.
class RecordWriter {
 public:
  RecordWriter();

  void write(const master_data& animal, ByteWriter& out);

  /// Writes the registries of the studbook in use, and what the numbers in the records mean: to be
  /// called after the last record.
  void writeRegistries(ByteWriter& out) const;

 private:
  using place = std::pair<packed_deme, std::uint64_t>;

  void writeEvent(const move_data& event, ByteWriter& out);

  std::map<const std::string*, std::uint64_t> taxa_;
  std::map<place, std::uint64_t> numbers_;
  std::vector<place> places_;  ///< by their numbers
};

/// Reads them again. All calls throw BadBytes.
class RecordReader {
 public:
  /// Fills the registries of an empty studbook.
  explicit RecordReader(ByteReader& registries);

  void read(ByteReader& in, master_data& animal) const;

 private:
  void readEvent(ByteReader& in, move_data& event) const;

  std::vector<taxon_handle> taxa_;
  std::vector<std::pair<packed_deme, std::uint64_t>> places_;
};

}  // namespace spx::console
