#include "spx/core/record_index.h"

#include <bit>
#include <cstring>
#include <limits>
#include <string_view>

namespace spx {
namespace {

constexpr std::uint32_t EMPTY = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t NO_NUMBER = std::numeric_limits<std::uint64_t>::max();
constexpr std::size_t FIRST_SLOTS = 64;
constexpr unsigned SIZE_SHIFT = 56;
constexpr std::size_t WORD = sizeof(std::uint64_t);
constexpr std::size_t LONGEST_EXACT = 2 * WORD - 1;

// Several bytes are read at once as a number, the first one as the lowest: little-endian.
static_assert(std::endian::native == std::endian::little);

template <class Number>
std::uint64_t numberAt(const char* bytes) {
  Number number = 0;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

// At most eight bytes, in two reads that may overlap.
std::uint64_t bytesOf(const char* bytes, std::size_t size) {
  if (size >= 4) {
    return numberAt<std::uint32_t>(bytes) | numberAt<std::uint32_t>(bytes + size - 4) << 8 * (size - 4);
  }
  if (size >= 2) {
    return numberAt<std::uint16_t>(bytes) | numberAt<std::uint16_t>(bytes + size - 2) << 8 * (size - 2);
  }
  return size == 0 ? 0 : static_cast<unsigned char>(*bytes);
}

}  // namespace

id_words::id_words(const std::string& id) {
  const std::size_t size = id.size();
  if (size <= WORD) {
    low = bytesOf(id.data(), size);
    high = std::uint64_t{size} << SIZE_SHIFT;
  } else if (size <= LONGEST_EXACT) {
    low = numberAt<std::uint64_t>(id.data());
    high = bytesOf(id.data() + WORD, size - WORD) | std::uint64_t{size} << SIZE_SHIFT;
  } else {
    low = qs_lib::text_hash()(id);
    high = std::uint64_t{0xFF} << SIZE_SHIFT;
  }
}

// Converts eight digits at once: to pairs, to groups of four, to the number.
std::uint64_t id_words::number() const {
  constexpr std::uint64_t ZEROS = 0x3030303030303030;
  constexpr std::uint64_t SIXES = 0x0606060606060606;
  constexpr std::uint64_t HIGH_HALVES = 0xF0F0F0F0F0F0F0F0;
  constexpr std::uint64_t PAIRS = 0x000000FF000000FF;
  const std::uint64_t size = high >> SIZE_SHIFT;
  const bool begins_with_zero = (low & 0xFF) == '0' && size > 1;
  if (size == 0 || size > WORD || begins_with_zero) {
    return NO_NUMBER;
  }
  // The last digit moves to the highest byte; zeros fill the bytes before the first.
  const auto shift = static_cast<unsigned>(8 * (WORD - size));
  const std::uint64_t letters = low << shift | (ZEROS >> 1) >> (63 - shift);
  if ((letters & HIGH_HALVES) != ZEROS || ((letters + SIXES) & HIGH_HALVES) != ZEROS) {
    return NO_NUMBER;
  }
  std::uint64_t pairs = letters - ZEROS;
  pairs = pairs * 10 + (pairs >> 8);
  return ((pairs & PAIRS) * 0x000F424000000064 + (pairs >> 16 & PAIRS) * 0x0000271000000001) >> 32;
}

std::size_t RecordIndex::hashOf(const id_words& words) const {
  const std::uint64_t hash = qs_lib::hashWords(words.low, words.high, seed_);
  return qs_lib::hashWords(hash, seed_[0], seed_);
}

// IDs whose number is at least twice the number of records plus FIRST_SLOTS are treated as texts.
void RecordIndex::makeRoom() {
  first_text_ = 2 * records_.size() + FIRST_SLOTS;
  first_records_.reserve(first_text_ + records_.size());
  first_records_.assign(first_text_, NO_RECORD);
  slots_.assign(FIRST_SLOTS, {id_words(""), EMPTY});
  begins_.assign(1, 0);
  parents_.reserve(records_.size());
  is_duplicate_.reserve(records_.size());
}

void RecordIndex::addNext() {
  const position record = parents_.size();
  const master_data& animal = records_[record];
  parents_.push_back({numberOf(animal.sire_id), numberOf(animal.dam_id)});
  short_position& first = first_records_[numberOf(animal.stud_id)];
  is_duplicate_.push_back(first != NO_RECORD);
  if (first == NO_RECORD) {
    first = static_cast<short_position>(record);
  } else {
    is_duplicate_[first] = true;
  }
}

// The number of an ID: its own value, or for other IDs a number given at their first appearance.
RecordIndex::id_number RecordIndex::numberOf(const std::string& id) {
  const id_words words(id);
  const std::uint64_t number = words.number();
  if (number < first_text_) {
    return static_cast<id_number>(number);
  }
  std::size_t at = slotFor(words, id);
  if (slots_[at].number == EMPTY) {
    if (2 * begins_.size() > slots_.size()) {
      growSlots();
      at = slotFor(words, id);
    }
    slots_[at] = {words, static_cast<id_number>(first_records_.size())};
    texts_ += id;
    begins_.push_back(texts_.size());
    first_records_.push_back(NO_RECORD);
  }
  return slots_[at].number;
}

std::string RecordIndex::textOf(id_number number) const {
  if (number < first_text_) {
    return std::to_string(number);
  }
  return std::string(keptText(number));
}

std::string_view RecordIndex::keptText(id_number number) const {
  const std::size_t* const begin = &begins_[number - first_text_];
  return std::string_view(texts_).substr(begin[0], begin[1] - begin[0]);
}

position RecordIndex::find(const std::string& id) const {
  const id_words words(id);
  const std::uint64_t number = words.number();
  if (number < first_text_) {
    return recordOf(static_cast<id_number>(number));
  }
  const slot& place = slots_[slotFor(words, id)];
  return place.number == EMPTY ? records_.size() : recordOf(place.number);
}

// The slot that holds the ID, or the empty slot where it would be.
std::size_t RecordIndex::slotFor(const id_words& words, const std::string& id) const {
  const std::size_t mask = slots_.size() - 1;
  const auto holdsOther = [&](const slot& place) {
    return place.words != words || (!words.isExact() && keptText(place.number) != id);
  };
  std::size_t at = hashOf(words) & mask;
  while (slots_[at].number != EMPTY && holdsOther(slots_[at])) {
    at = (at + 1) & mask;
  }
  return at;
}

void RecordIndex::growSlots() {
  std::vector<slot> old_slots(slots_.size() * 2, {id_words(""), EMPTY});
  old_slots.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (const slot& place : old_slots) {
    if (place.number == EMPTY) {
      continue;
    }
    std::size_t at = hashOf(place.words) & mask;
    while (slots_[at].number != EMPTY) {
      at = (at + 1) & mask;
    }
    slots_[at] = place;
  }
}

}  // namespace spx
