#include "spx/core/record_index.h"

#include <bit>
#include <functional>
#include <limits>

namespace spx {
namespace {

constexpr position EMPTY = std::numeric_limits<position>::max();
constexpr std::size_t SMALLEST = 64;
constexpr position FETCH_AHEAD = 16;

}  // namespace

RecordIndex::RecordIndex(const std::vector<master_data>& records) : records_(records) {
  slots_.assign(std::bit_ceil(records.size() * 2 + SMALLEST), {0, EMPTY});
  for (position record = 0; record < records.size(); ++record) {
    if (record + FETCH_AHEAD < records.size()) {
      fetchSlot(records[record + FETCH_AHEAD].stud_id);
    }
    add(record);
  }
}

void RecordIndex::add(position record) {
  if (2 * (used_ + 1) > slots_.size()) {
    grow();
  }
  const std::string_view id = records_[record].stud_id;
  const std::size_t hash = std::hash<std::string_view>()(id);
  slot& place = slots_[slotFor(hash, id)];
  if (place.record == EMPTY) {
    place = {hash, record};
    ++used_;
  } else {
    duplicates_.insert(place.record);
  }
}

position RecordIndex::find(std::string_view id) const {
  const slot& place = slots_[slotFor(std::hash<std::string_view>()(id), id)];
  return place.record == EMPTY ? records_.size() : place.record;
}

void RecordIndex::fetchSlot(std::string_view id) const {
  const std::size_t hash = std::hash<std::string_view>()(id);
  __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
}

void RecordIndex::fetchRecord(std::string_view id) const {
  const std::size_t hash = std::hash<std::string_view>()(id);
  const slot& place = slots_[hash & (slots_.size() - 1)];
  if (place.record != EMPTY && place.hash == hash) {
    __builtin_prefetch(&records_[place.record].stud_id);
    __builtin_prefetch(&records_[place.record].taxon);
    __builtin_prefetch(&records_[place.record].birth);
  }
}

void RecordIndex::fetchParentSlots(const master_data& animal) const {
  fetchSlot(animal.sire_id);
  fetchSlot(animal.dam_id);
}

void RecordIndex::fetchParentRecords(const master_data& animal) const {
  fetchRecord(animal.sire_id);
  fetchRecord(animal.dam_id);
}

bool RecordIndex::isDuplicate(position record) const {
  return !duplicates_.empty() && duplicates_.contains(find(records_[record].stud_id));
}

// The slot that holds the ID, or the empty one where it belongs.
std::size_t RecordIndex::slotFor(std::size_t hash, std::string_view id) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (slots_[at].record != EMPTY &&
         (slots_[at].hash != hash || records_[slots_[at].record].stud_id != id)) {
    at = (at + 1) & mask;
  }
  return at;
}

void RecordIndex::grow() {
  std::vector<slot> former(slots_.size() * 2, {0, EMPTY});
  former.swap(slots_);
  for (const slot& place : former) {
    if (place.record != EMPTY) {
      slots_[slotFor(place.hash, records_[place.record].stud_id)] = place;
    }
  }
}

}  // namespace spx
