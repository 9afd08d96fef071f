#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "spx/core/master_data.h"
#include "spx/support/export.h"
#include "spx/support/fetch_ahead.h"
#include "spx/support/text_hash.h"

namespace spx {

/// A studbook ID in two words of bytes. An ID of up to fifteen bytes is stored whole; of a longer one the words hold a
/// hash, so two longer IDs with equal words must still be compared as texts. Little-endian only (asserted in the
/// source file): several bytes, or digits, are read as one number.
struct id_words {
  std::uint64_t low;   ///< the first eight bytes, or the hash
  std::uint64_t high;  ///< bytes 9 to 15; its highest byte holds the size, or 255 for a hash

  explicit id_words(const std::string& id);

  bool operator==(const id_words&) const = default;

  /// Whether equal words mean equal IDs.
  bool isExact() const { return high >> 56 != 0xFF; }

  /// The value of an ID that is a number of at most eight digits without leading zeros; the largest
  /// 64-bit value for every other ID.
  std::uint64_t number() const;
};

/// Finds the first record with a studbook ID in expected constant time. The index holds the IDs that
/// a record had when it was entered, so records may move and change their parents. Requires: records
/// that are appended are entered with addNext(); otherwise the positions of the index and of the
/// records differ. Lives on the stack of one pass over the studbook.
///
/// The records of a million animals do not fit into a cache, so memory access takes most of the time.
/// The index reads the records once and gives each ID a number, under which it keeps the record;
/// a pass over all parents then reads four bytes for a parent and four for its record. Most
/// studbooks number their animals: such IDs are their own numbers, so that parents are stored near
/// their offspring; other IDs get numbers in the order of their appearance, and the index keeps
/// their texts.
class SPX_EXPORT RecordIndex {
 public:
  /// How many records ahead a pass should prefetch: at FETCH_FIRST the numbers of a record's parents, and at FETCH_NEXT
  /// the memory that these numbers lead to, which can be found only once the numbers are in the cache.
  static constexpr position FETCH_FIRST = 16;
  static constexpr position FETCH_NEXT = 8;

  /// Enters every record. Linear. The sequence must outlive the index.
  explicit RecordIndex(const std::vector<master_data>& records) : RecordIndex(records, [](const master_data&) {}) {}

  /// The same.
  /// @param visit  is called with each record, in order, while it is in the cache
  template <class Visit>
  RecordIndex(const std::vector<master_data>& records, Visit visit) : records_(records) {
    makeRoom();
    for (position record = 0; record < records.size(); ++record) {
      if (record + FETCH_FIRST < records.size()) {
        const master_data& later = records[record + FETCH_FIRST];
        qs_lib::fetchAhead(&later.stud_id, &later.dam_id);
      }
      addNext();
      visit(records[record]);
    }
  }

  /// Enters the first record that is not entered yet.
  void addNext();

  /// The first record with the ID; the number of records when there is none.
  position find(const std::string& id) const;

  /// @{
  /// The first record with the ID that the record named as its parent when it was entered; the
  /// number of records when there is none.
  position findSire(position record) const { return recordOf(parents_[record].sire); }
  position findDam(position record) const { return recordOf(parents_[record].dam); }
  /// @}

  /// @{
  /// The ID that the record named as its parent when it was entered.
  std::string sireId(position record) const { return textOf(parents_[record].sire); }
  std::string damId(position record) const { return textOf(parents_[record].dam); }
  /// @}

  /// @{
  /// Prefetches the memory that findSire() and findDam() of a record will read. The first step must
  /// come some records before the second, and that some records before the search.
  void fetchParents(position record) const { qs_lib::fetchAhead(&parents_[record]); }
  void fetchParentPlaces(position record) const {
    const parent_numbers& parents = parents_[record];
    qs_lib::fetchAhead(&first_records_[parents.sire], &first_records_[parents.dam]);
  }
  /// @}

  /// Whether another record has the same ID as the one at this position.
  bool isDuplicate(position record) const { return is_duplicate_[record]; }

 private:
  // Four bytes are enough for 600 million records and their parents, which take 240 gigabytes.
  using id_number = std::uint32_t;
  using short_position = std::uint32_t;
  static constexpr short_position NO_RECORD = std::numeric_limits<short_position>::max();

  struct slot {
    id_words words;
    id_number number;
  };
  struct parent_numbers {
    id_number sire;
    id_number dam;
  };

  void makeRoom();
  position recordOf(id_number number) const {
    const short_position record = first_records_[number];
    return record == NO_RECORD ? records_.size() : record;
  }
  id_number numberOf(const std::string& id);
  std::string textOf(id_number number) const;
  std::string_view keptText(id_number number) const;
  std::size_t hashOf(const id_words& words) const;
  std::size_t slotFor(const id_words& words, const std::string& id) const;
  void growSlots();

  const std::vector<master_data>& records_;
  const qs_lib::hash_seed& seed_ = qs_lib::processSeed();
  std::size_t first_text_ = 0;                 ///< below are the IDs that are numbers, from here on the others
  std::vector<short_position> first_records_;  ///< by the number of the ID
  std::vector<parent_numbers> parents_;        ///< by record
  std::vector<slot> slots_;                    ///< of other IDs: open addressing, a power of two, at most half full
  std::string texts_;                          ///< of these IDs, one after the other, in numbers' order
  std::vector<std::size_t> begins_;            ///< of each in texts_, and the end of the last
  std::vector<bool> is_duplicate_;             ///< by record
};

}  // namespace spx
