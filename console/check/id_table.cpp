#include "console/check/id_table.h"

#include <bit>

#include "spx/support/fetch_ahead.h"
#include "spx/support/text_hash.h"

namespace spx::console {
namespace {

std::uint32_t tagOf(std::uint64_t hash) {
  return static_cast<std::uint32_t>(hash >> 32U);
}

}  // namespace

IdTable::IdTable(const std::vector<master_data>& records)
    : records_(records), slots_(std::bit_ceil(2 * records.size() + 1)) {}

std::uint32_t IdTable::enter(position record) {
  const std::string& id = records_[record].stud_id;
  const std::uint64_t hash = qs_lib::text_hash()(id);
  slot& entry = slots_[placeOf(hash, id)];
  if (entry.record == NONE) {
    entry = {tagOf(hash), static_cast<std::uint32_t>(record)};
    return NONE;
  }
  return entry.record;
}

std::uint32_t IdTable::find(std::string_view id) const {
  return slots_[placeOf(qs_lib::text_hash()(id), id)].record;
}

void IdTable::fetchSlot(std::string_view id) const {
  qs_lib::fetchAhead(&slots_[qs_lib::text_hash()(id) & (slots_.size() - 1)]);
}

void IdTable::fetchRecord(std::string_view id) const {
  const std::uint32_t record = slots_[qs_lib::text_hash()(id) & (slots_.size() - 1)].record;
  if (record != NONE) {
    qs_lib::fetchAhead(&records_[record].stud_id);
  }
}

/// The slot of the ID, or the free one where it would stand.
std::size_t IdTable::placeOf(std::uint64_t hash, std::string_view id) const {
  const std::size_t mask = slots_.size() - 1;
  const std::uint32_t tag = tagOf(hash);
  std::size_t place = hash & mask;
  while (slots_[place].record != NONE && (slots_[place].tag != tag || records_[slots_[place].record].stud_id != id)) {
    place = (place + 1) & mask;
  }
  return place;
}

}  // namespace spx::console
