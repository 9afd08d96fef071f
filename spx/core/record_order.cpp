#include "spx/core/record_order.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>
#include <utility>

namespace spx {
namespace {

// Bytes of a text in one number, above the byte that counts them.
constexpr std::size_t CHUNK = 7;
constexpr std::uint64_t GOES_ON = CHUNK + 1;
// Runs of so few texts are compared; so do all whose texts share that many chunks.
constexpr std::size_t FEW = 32;
constexpr std::size_t MOST_CHUNKS = 8;
// More digits need fewer passes, but their lists no longer fit the nearest caches.
constexpr unsigned MOST_BITS = 10;

struct entry {
  std::uint64_t number;
  std::size_t place;
};

std::vector<std::size_t> placesOf(const std::vector<entry>& entries) {
  std::vector<std::size_t> places(entries.size());
  std::transform(entries.begin(), entries.end(), places.begin(),
                 [](const entry& sorted) { return sorted.place; });
  return places;
}

// Sorts entries by the digits of `bits` bits each that the numbers have above the shift, a pass for
// every digit, from the lowest; each pass keeps the order of the one before where its digits are
// equal. Entries without a difference in a digit are left alone.
template <class Entry, class NumberOf>
void sortByDigits(std::span<Entry> entries, std::vector<Entry>& room, unsigned shift, unsigned bits,
                  NumberOf numberOf) {
  std::uint64_t differing = 0;
  for (const Entry& each : entries) {
    differing |= numberOf(each) ^ numberOf(entries.front());
  }
  room.resize(std::max(room.size(), entries.size()));
  std::span<Entry> from = entries;
  std::span<Entry> into(room.data(), entries.size());
  const std::uint64_t mask = (std::uint64_t{1} << bits) - 1;
  for (; shift < 64 && differing >> shift != 0; shift += bits) {
    if ((differing >> shift & mask) == 0) {
      continue;
    }
    std::array<std::size_t, std::size_t{1} << MOST_BITS> next;
    std::fill_n(next.begin(), mask + 1, 0);
    for (const Entry& each : from) {
      ++next[numberOf(each) >> shift & mask];
    }
    std::size_t place = 0;
    for (std::size_t digit = 0; digit <= mask; ++digit) {
      place += std::exchange(next[digit], place);
    }
    for (const Entry& each : from) {
      into[next[numberOf(each) >> shift & mask]++] = each;
    }
    std::swap(from, into);
  }
  if (from.data() != entries.data()) {
    std::copy(from.begin(), from.end(), entries.begin());
  }
}

void sortNumbers(std::span<entry> entries, std::vector<entry>& room) {
  sortByDigits(entries, room, 0, 8, [](const entry& each) { return each.number; });
}

// Bytes of a text as a number, and how many there are: a text comes after its beginnings.
std::uint64_t chunkOf(std::string_view text, std::size_t chunk) {
  const std::string_view rest = text.substr(std::min(text.size(), chunk * CHUNK));
  std::uint64_t number = 0;
  for (std::size_t at = 0; at < CHUNK; ++at) {
    number = number << 8 | (at < rest.size() ? static_cast<unsigned char>(rest[at]) : 0);
  }
  return number << 8 | std::min<std::uint64_t>(rest.size(), GOES_ON);
}

class TextOrder {
 public:
  explicit TextOrder(const std::function<std::string_view(std::size_t)>& textAt)
      : textAt_(textAt) {}

  // Sorts texts that are equal before the chunk, which is in the entries.
  void sort(std::span<entry> entries, std::size_t chunk) {
    sortNumbers(entries, room_);
    for (auto first = entries.begin(); first != entries.end();) {
      const std::uint64_t number = first->number;
      const auto last = std::find_if(first, entries.end(),
                                     [number](const entry& each) { return each.number != number; });
      if (last - first > 1 && (number & 0xFF) == GOES_ON) {
        sortOn({first, last}, chunk + 1);
      }
      first = last;
    }
  }

 private:
  void sortOn(std::span<entry> entries, std::size_t chunk) {
    if (entries.size() <= FEW || chunk == MOST_CHUNKS) {
      std::stable_sort(entries.begin(), entries.end(), [this](const entry& a, const entry& b) {
        return textAt_(a.place) < textAt_(b.place);
      });
      return;
    }
    for (entry& each : entries) {
      each.number = chunkOf(textAt_(each.place), chunk);
    }
    sort(entries, chunk);
  }

  const std::function<std::string_view(std::size_t)>& textAt_;
  std::vector<entry> room_;
};

std::vector<entry> entriesOf(const std::vector<std::uint64_t>& numbers) {
  std::vector<entry> entries;
  entries.reserve(numbers.size());
  for (const std::uint64_t number : numbers) {
    entries.push_back({number, entries.size()});
  }
  return entries;
}

// Numbers that lie as near to each other as dates do share a word with their places.
std::vector<std::size_t> orderOfNear(const std::vector<std::uint64_t>& numbers,
                                     std::uint64_t smallest, std::uint64_t largest) {
  constexpr unsigned PLACE_BITS = 32;
  std::vector<std::uint64_t> words;
  words.reserve(numbers.size());
  for (const std::uint64_t number : numbers) {
    words.push_back((number - smallest) << PLACE_BITS | words.size());
  }
  const auto width = static_cast<unsigned>(std::bit_width(largest - smallest));
  const unsigned passes = (width + MOST_BITS - 1) / MOST_BITS;
  if (passes != 0) {
    std::vector<std::uint64_t> room;
    sortByDigits(std::span(words), room, PLACE_BITS, (width + passes - 1) / passes,
                 [](std::uint64_t word) { return word; });
  }
  std::vector<std::size_t> places;
  places.reserve(words.size());
  for (const std::uint64_t word : words) {
    places.push_back(word & ((std::uint64_t{1} << PLACE_BITS) - 1));
  }
  return places;
}

}  // namespace

std::uint64_t beginningOf(std::string_view text) {
  return chunkOf(text, 0);
}

std::vector<std::size_t> ascendingOrder(const std::vector<std::uint64_t>& numbers) {
  constexpr std::uint64_t NEAR = std::uint64_t{1} << 32;
  const auto [smallest, largest] = std::minmax_element(numbers.begin(), numbers.end());
  if (numbers.empty() || (*largest - *smallest < NEAR && numbers.size() < NEAR)) {
    return numbers.empty() ? std::vector<std::size_t>() : orderOfNear(numbers, *smallest, *largest);
  }
  std::vector<entry> entries = entriesOf(numbers);
  std::vector<entry> room;
  sortNumbers(entries, room);
  return placesOf(entries);
}

std::vector<std::size_t> ascendingOrder(
    const std::vector<std::uint64_t>& beginnings,
    const std::function<std::string_view(std::size_t)>& textAt) {
  std::vector<entry> entries = entriesOf(beginnings);
  TextOrder(textAt).sort(entries, 0);
  return placesOf(entries);
}

}  // namespace spx
