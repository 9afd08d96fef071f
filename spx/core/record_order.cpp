#include "spx/core/record_order.h"

#include <algorithm>
#include <array>
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

// One pass for every byte in which the numbers differ, from the lowest; each pass keeps the order
// of the one before where its bytes are equal.
void sortNumbers(std::span<entry> entries, std::vector<entry>& room) {
  constexpr std::size_t BYTES = 256;
  std::uint64_t differing = 0;
  for (const entry& each : entries) {
    differing |= each.number ^ entries.front().number;
  }
  room.resize(std::max(room.size(), entries.size()));
  std::span<entry> from = entries;
  std::span<entry> into(room.data(), entries.size());
  for (unsigned shift = 0; shift < 64; shift += 8) {
    if ((differing >> shift & 0xFF) == 0) {
      continue;
    }
    std::array<std::size_t, BYTES> next{};
    for (const entry& each : from) {
      ++next[each.number >> shift & 0xFF];
    }
    std::size_t place = 0;
    for (std::size_t& count : next) {
      place += std::exchange(count, place);
    }
    for (const entry& each : from) {
      into[next[each.number >> shift & 0xFF]++] = each;
    }
    std::swap(from, into);
  }
  if (from.data() != entries.data()) {
    std::copy(from.begin(), from.end(), entries.begin());
  }
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
  explicit TextOrder(const std::function<const std::string&(std::size_t)>& textAt)
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

  const std::function<const std::string&(std::size_t)>& textAt_;
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

}  // namespace

std::uint64_t beginningOf(std::string_view text) {
  return chunkOf(text, 0);
}

std::vector<std::size_t> ascendingOrder(const std::vector<std::uint64_t>& numbers) {
  std::vector<entry> entries = entriesOf(numbers);
  std::vector<entry> room;
  sortNumbers(entries, room);
  return placesOf(entries);
}

std::vector<std::size_t> ascendingOrder(
    const std::vector<std::uint64_t>& beginnings,
    const std::function<const std::string&(std::size_t)>& textAt) {
  std::vector<entry> entries = entriesOf(beginnings);
  TextOrder(textAt).sort(entries, 0);
  return placesOf(entries);
}

}  // namespace spx
