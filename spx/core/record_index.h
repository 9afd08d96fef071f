#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "spx/core/master_data.h"

namespace spx {

/// From studbook ID to the first record that bears it, in expected constant time. It holds
/// positions, no text, so it stays right while the records move; records that are appended have to
/// be entered with add(). Lives on the stack of one pass over the studbook.
class RecordIndex {
 public:
  /// Enters every record. Linear. The sequence must outlive the index.
  explicit RecordIndex(const std::vector<master_data>& records);

  /// Enters the record at a position that is not entered yet.
  void add(position record);

  /// The first record with the ID; the number of records when there is none.
  position find(std::string_view id) const;

  /// Has the memory fetched that find(id) will read, in two steps of which the second wants to come
  /// some lookups after the first: a studbook of a million animals fits no cache, and a pass knows
  /// its next lookups.
  void fetchSlot(std::string_view id) const;
  void fetchRecord(std::string_view id) const;
  void fetchParentSlots(const master_data& animal) const;
  void fetchParentRecords(const master_data& animal) const;

  /// Whether another record bears the same ID as the one at this position.
  bool isDuplicate(position record) const;

 private:
  struct slot {
    std::size_t hash;
    position record;
  };

  std::size_t slotFor(std::size_t hash, std::string_view id) const;
  void grow();

  const std::vector<master_data>& records_;
  std::vector<slot> slots_;  ///< open addressing, a power of two, at most half full
  std::size_t used_ = 0;
  std::unordered_set<position> duplicates_;  ///< first records whose ID occurs again
};

}  // namespace spx
