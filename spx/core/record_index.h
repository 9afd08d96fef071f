#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "spx/core/master_data.h"

namespace spx {

/// A studbook ID in one word. Up to seven bytes are the ID itself; of a longer one it is a hash,
/// and two of them that are equal have to be compared by their texts.
struct id_word {
  std::uint64_t word;  ///< the size, or 255 for a hash, above seven bytes

  explicit id_word(const std::string& id);

  /// Whether equal words mean equal IDs.
  bool isExact() const { return word >> 56 != 0xFF; }

  /// The number that the ID is, written without zeros before it; the largest value for other IDs.
  std::uint64_t number() const;
};

/// From studbook ID to the first record that bears it, in expected constant time. It holds
/// positions and IDs as words, no text, so it stays right while the records move; records that are
/// appended have to be entered with addNext(). Lives on the stack of one pass over the studbook.
///
/// A studbook of a million animals fits no cache, so that reading the memory is what takes time.
/// The index reads the records once; a pass over all parents asks them again for long IDs only.
/// Most studbooks number their animals: numbers are looked up in a plain table, where parents lie
/// near their offspring, and all other IDs by a hash.
class RecordIndex {
 public:
  /// Enters every record. Linear. The sequence must outlive the index.
  explicit RecordIndex(const std::vector<master_data>& records)
      : RecordIndex(records, [](const master_data&) {}) {}

  /// The same.
  /// @param visit  is handed each record, in their order, while it is at hand
  template <class Visit>
  RecordIndex(const std::vector<master_data>& records, Visit visit) : records_(records) {
    constexpr position FETCH_AHEAD = 16;
    makeRoom();
    for (position record = 0; record < records.size(); ++record) {
      if (record + FETCH_AHEAD < records.size()) {
        __builtin_prefetch(&records[record + FETCH_AHEAD].stud_id);
        __builtin_prefetch(&records[record + FETCH_AHEAD].dam_id);
      }
      addNext();
      visit(records[record]);
    }
  }

  /// Enters the first record that is not entered yet.
  void addNext();

  /// The first record with the ID; the number of records when there is none.
  position find(const std::string& id) const { return find(id_word(id), id); }

  /// @{
  /// The first record with the ID that the record named as its parent when it was entered; the
  /// number of records when there is none.
  position findSire(position record) const {
    return find(parents_[record].sire, records_[record].sire_id);
  }
  position findDam(position record) const {
    return find(parents_[record].dam, records_[record].dam_id);
  }
  /// @}

  /// Has the memory fetched that the search for the parents of a record will read, in two steps
  /// that want to come some searches before the next: a pass knows what it will search for.
  void fetchParents(position record) const { __builtin_prefetch(&parents_[record]); }
  void fetchParentPlaces(position record) const;

  /// @{
  /// Where the search for a parent of that record will probably end, for whoever keeps more facts
  /// of the records; the end position when it would take more than a look.
  position probableSire(position record) const { return probable(parents_[record].sire); }
  position probableDam(position record) const { return probable(parents_[record].dam); }
  /// @}

  /// Whether another record bears the same ID as the one at this position.
  bool isDuplicate(position record) const;

 private:
  using short_position = std::uint32_t;  // more records of half a kilobyte fit no memory

  struct slot {
    std::uint64_t word;
    position record;
  };
  struct parent_words {
    id_word sire;
    id_word dam;
  };

  void makeRoom();
  position find(id_word word, const std::string& id) const;
  position probable(id_word word) const;
  const void* placeOf(id_word word) const;
  std::size_t slotFor(id_word word, const std::string& id) const;
  void enterSlot(id_word word, position record);
  void grow();

  const std::vector<master_data>& records_;
  std::vector<short_position> numbered_;  ///< by number
  std::vector<slot> slots_;  ///< of the other IDs: open addressing, a power of two, half full
  std::size_t used_ = 0;
  std::vector<parent_words> parents_;        ///< by record
  std::unordered_set<position> duplicates_;  ///< first records whose ID occurs again
};

}  // namespace spx
