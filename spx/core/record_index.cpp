#include "spx/core/record_index.h"

#include <bit>
#include <cstring>
#include <functional>
#include <limits>
#include <string_view>

namespace spx {
namespace {

constexpr position EMPTY = std::numeric_limits<position>::max();
constexpr std::uint32_t NO_RECORD = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t NO_NUMBER = std::numeric_limits<std::uint64_t>::max();
constexpr std::size_t FIRST_SLOTS = 64;
constexpr unsigned SIZE_SHIFT = 56;
constexpr std::size_t LONGEST_EXACT = 7;

// The bytes are read as numbers, two or four at once.
static_assert(std::endian::native == std::endian::little);

template <class Number>
std::uint64_t numberAt(const char* bytes) {
  Number number = 0;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

// At most seven bytes, read in two pieces that may overlap.
std::uint64_t bytesOf(const std::string& id) {
  const char* const bytes = id.data();
  const std::size_t size = id.size();
  if (size >= 4) {
    return numberAt<std::uint32_t>(bytes) | numberAt<std::uint32_t>(bytes + size - 4)
                                                << 8 * (size - 4);
  }
  if (size >= 2) {
    return numberAt<std::uint16_t>(bytes) | numberAt<std::uint16_t>(bytes + size - 2)
                                                << 8 * (size - 2);
  }
  return size == 0 ? 0 : static_cast<unsigned char>(*bytes);
}

// Numbers that differ anywhere differ in the low bits.
std::size_t mixed(std::uint64_t number) {
  number ^= number >> 32;
  number *= 0x9E3779B97F4A7C15;
  number ^= number >> 29;
  number *= 0xD6E8FEB86659FD93;
  return number ^ number >> 32;
}

}  // namespace

id_word::id_word(const std::string& id)
    : word(id.size() <= LONGEST_EXACT
               ? bytesOf(id) | std::uint64_t{id.size()} << SIZE_SHIFT
               : std::hash<std::string_view>()(id) | std::uint64_t{0xFF} << SIZE_SHIFT) {}

// Eight digits at once: to pairs, to fours, to the number.
std::uint64_t id_word::number() const {
  constexpr std::uint64_t ZEROS = 0x3030303030303030;
  constexpr std::uint64_t SIXES = 0x0606060606060606;
  constexpr std::uint64_t HIGH_HALVES = 0xF0F0F0F0F0F0F0F0;
  constexpr std::uint64_t PAIRS = 0x000000FF000000FF;
  const std::uint64_t size = word >> SIZE_SHIFT;
  const bool begins_with_zero = (word & 0xFF) == '0' && size > 1;
  if (size == 0 || size > LONGEST_EXACT || begins_with_zero) {
    return NO_NUMBER;
  }
  // The last digit comes to the highest byte, zeros stand before the first.
  const auto shift = static_cast<unsigned>(8 * (8 - size));
  const std::uint64_t letters = word << shift | ZEROS >> (64 - shift);
  if ((letters & HIGH_HALVES) != ZEROS || ((letters + SIXES) & HIGH_HALVES) != ZEROS) {
    return NO_NUMBER;
  }
  std::uint64_t pairs = letters - ZEROS;
  pairs = pairs * 10 + (pairs >> 8);
  return ((pairs & PAIRS) * 0x000F424000000064 + (pairs >> 16 & PAIRS) * 0x0000271000000001) >> 32;
}

// Numbers that are much larger than the studbook are looked up as other IDs.
void RecordIndex::makeRoom() {
  numbered_.assign(2 * records_.size() + FIRST_SLOTS, NO_RECORD);
  slots_.assign(FIRST_SLOTS, {0, EMPTY});
  parents_.reserve(records_.size());
}

void RecordIndex::addNext() {
  const position record = parents_.size();
  const master_data& animal = records_[record];
  parents_.push_back({id_word(animal.sire_id), id_word(animal.dam_id)});
  const id_word word(animal.stud_id);
  const std::uint64_t number = word.number();
  if (number >= numbered_.size()) {
    enterSlot(word, record);
  } else if (numbered_[number] == NO_RECORD) {
    numbered_[number] = static_cast<short_position>(record);
  } else {
    duplicates_.insert(numbered_[number]);
  }
}

void RecordIndex::enterSlot(id_word word, position record) {
  if (2 * (used_ + 1) > slots_.size()) {
    grow();
  }
  slot& place = slots_[slotFor(word, records_[record].stud_id)];
  if (place.record == EMPTY) {
    place = {word.word, record};
    ++used_;
  } else {
    duplicates_.insert(place.record);
  }
}

position RecordIndex::find(id_word word, const std::string& id) const {
  const std::uint64_t number = word.number();
  if (number < numbered_.size()) {
    return numbered_[number] == NO_RECORD ? records_.size() : numbered_[number];
  }
  const slot& place = slots_[slotFor(word, id)];
  return place.record == EMPTY ? records_.size() : place.record;
}

// Where the search for the ID begins.
const void* RecordIndex::placeOf(id_word word) const {
  const std::uint64_t number = word.number();
  return number < numbered_.size()
             ? static_cast<const void*>(&numbered_[number])
             : static_cast<const void*>(&slots_[mixed(word.word) & (slots_.size() - 1)]);
}

void RecordIndex::fetchParentPlaces(position record) const {
  __builtin_prefetch(placeOf(parents_[record].sire));
  __builtin_prefetch(placeOf(parents_[record].dam));
}

position RecordIndex::probable(id_word word) const {
  const std::uint64_t number = word.number();
  if (number < numbered_.size()) {
    return numbered_[number] == NO_RECORD ? records_.size() : numbered_[number];
  }
  const slot& place = slots_[mixed(word.word) & (slots_.size() - 1)];
  return place.record != EMPTY && place.word == word.word ? place.record : records_.size();
}

bool RecordIndex::isDuplicate(position record) const {
  return !duplicates_.empty() && duplicates_.contains(find(records_[record].stud_id));
}

// The slot that holds the ID, or the empty one where it belongs.
std::size_t RecordIndex::slotFor(id_word word, const std::string& id) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = mixed(word.word) & mask;
  while (slots_[at].record != EMPTY &&
         (slots_[at].word != word.word ||
          (!word.isExact() && records_[slots_[at].record].stud_id != id))) {
    at = (at + 1) & mask;
  }
  return at;
}

void RecordIndex::grow() {
  std::vector<slot> former(slots_.size() * 2, {0, EMPTY});
  former.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (const slot& place : former) {
    if (place.record == EMPTY) {
      continue;
    }
    std::size_t at = mixed(place.word) & mask;
    while (slots_[at].record != EMPTY) {
      at = (at + 1) & mask;
    }
    slots_[at] = place;
  }
}

}  // namespace spx
