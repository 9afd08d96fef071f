#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "spx/core/master_data.h"

namespace spx::console {

/// From ID to the first record that was entered with it. Half the slots stay free, and a slot keeps half the hash, so
/// that a search reads one slot and one record: a studbook of a million animals fits no cache.
class IdTable {
 public:
  static constexpr std::uint32_t NONE = std::numeric_limits<std::uint32_t>::max();

  /// Room for all records, which must outlive the table.
  explicit IdTable(const std::vector<master_data>& records);

  /// Enters a record. @return the earlier record with its ID; NONE when it is the first
  std::uint32_t enter(position record);

  /// The first record with the ID; NONE when there is none.
  std::uint32_t find(std::string_view id) const;

  /// @{
  /// Prefetches what a search will read, in two steps: its slot, and some searches later the record that this names.
  void fetchSlot(std::string_view id) const;
  void fetchRecord(std::string_view id) const;
  /// @}

 private:
  struct slot {
    std::uint32_t tag = 0;  ///< the upper half of the hash, which the place does not tell
    std::uint32_t record = NONE;
  };

  std::size_t placeOf(std::uint64_t hash, std::string_view id) const;

  const std::vector<master_data>& records_;
  std::vector<slot> slots_;  ///< a power of two; open addressing
};

}  // namespace spx::console
