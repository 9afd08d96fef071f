#include "spx/core/record_order.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <numeric>
#include <span>
#include <utility>

namespace spx {
namespace {

// The bytes of a text that one number holds, above the byte that counts them.
constexpr std::size_t CHUNK = 7;
constexpr std::uint64_t GOES_ON = CHUNK + 1;
// Runs of at most so many elements are sorted in place; texts that share so many chunks are compared.
constexpr std::size_t FEW = 32;
constexpr std::size_t MOST_CHUNKS = 8;
// Wider digits need fewer passes, but their tables do not fit into the first-level cache.
constexpr unsigned MOST_BITS = 10;
constexpr unsigned BYTE = 8;

struct entry {
  std::uint64_t number;
  std::size_t element;
};

/// Sorts entries by numbers and keeps its memory for the next sort.
template <class Entry, class NumberOf>
class DigitSort {
 public:
  // One stable pass for every digit of `bits` bits above the shift, from the lowest. A digit that is
  // the same in all entries is skipped.
  void sort(std::span<Entry> entries, unsigned shift, unsigned bits) {
    const std::uint64_t differing = differingBits(entries) >> shift << shift;
    const auto end = static_cast<unsigned>(std::bit_width(differing));
    if (entries.size() > FITS_CACHE && end > shift + TOP_BITS) {
      sortParts(entries, end - TOP_BITS, shift, bits);
      return;
    }
    room_.resize(std::max(room_.size(), entries.size()));
    std::span<Entry> from = entries;
    std::span<Entry> into(room_.data(), entries.size());
    for (; shift < 64 && differing >> shift != 0; shift += bits) {
      if ((differing >> shift & (bit(bits) - 1)) != 0) {
        distribute(from, into, shift, bits);
        std::swap(from, into);
      }
    }
    if (from.data() != entries.data()) {
      std::copy(from.begin(), from.end(), entries.begin());
    }
  }

 private:
  // More entries do not fit into the cache; the highest digit splits them first.
  static constexpr std::size_t FITS_CACHE = std::size_t{1} << 15;
  static constexpr unsigned TOP_BITS = 12;

  static constexpr std::uint64_t bit(unsigned number) { return std::uint64_t{1} << number; }

  std::uint64_t differingBits(std::span<const Entry> entries) const {
    std::uint64_t differing = 0;
    for (const Entry& each : entries) {
      differing |= numberOf_(each) ^ numberOf_(entries.front());
    }
    return differing;
  }

  // Afterwards next_ holds the end of the entries of each digit.
  void distribute(std::span<const Entry> from, std::span<Entry> into, unsigned shift, unsigned bits) {
    const std::uint64_t mask = bit(bits) - 1;
    next_.assign(mask + 1, 0);
    for (const Entry& each : from) {
      ++next_[numberOf_(each) >> shift & mask];
    }
    std::size_t place = 0;
    for (std::size_t& first : next_) {
      place += std::exchange(first, place);
    }
    for (const Entry& each : from) {
      into[next_[numberOf_(each) >> shift & mask]++] = each;
    }
  }

  void sortParts(std::span<Entry> entries, unsigned top, unsigned shift, unsigned bits) {
    room_.resize(std::max(room_.size(), entries.size()));
    distribute(entries, std::span(room_.data(), entries.size()), top, TOP_BITS);
    std::copy_n(room_.begin(), entries.size(), entries.begin());
    std::size_t begin = 0;
    for (const std::size_t end : std::vector<std::size_t>(next_)) {
      if (end - begin > 1) {
        sort(entries.subspan(begin, end - begin), shift, bits);
      }
      begin = end;
    }
  }

  NumberOf numberOf_{};
  std::vector<Entry> room_;
  std::vector<std::size_t> next_;  ///< by digit: the place of its next entry
};

struct number_of_entry {
  std::uint64_t operator()(const entry& each) const { return each.number; }
};

using NumberSort = DigitSort<entry, number_of_entry>;

// Bytes of a text as a number with their count in the lowest byte, so that a prefix comes first.
std::uint64_t chunkOf(std::string_view text, std::size_t chunk) {
  const std::string_view rest = text.substr(std::min(text.size(), chunk * CHUNK));
  std::uint64_t number = 0;
  for (std::size_t at = 0; at < CHUNK; ++at) {
    number = number << 8 | (at < rest.size() ? static_cast<unsigned char>(rest[at]) : 0);
  }
  return number << 8 | std::min<std::uint64_t>(rest.size(), GOES_ON);
}

// Sorts texts one chunk at a time. The next chunks of all texts that are still equal are read in one
// step, so that their memory accesses overlap.
class TextOrder {
 public:
  explicit TextOrder(const std::function<std::string_view(std::size_t)>& textOf) : textOf_(textOf) {}

  // The entries hold the first chunks.
  void sort(std::vector<entry>& entries) {
    equal_.assign(1, entries);
    for (std::size_t chunk = 0; !equal_.empty(); ++chunk) {
      if (chunk == MOST_CHUNKS) {
        compareTexts();
        return;
      }
      if (chunk > 0) {
        takeChunk(chunk);
      }
      sortRuns();
    }
  }

 private:
  using run = std::span<entry>;

  void takeChunk(std::size_t chunk) {
    for (const run& entries : equal_) {
      for (entry& each : entries) {
        each.number = chunkOf(textOf_(each.element), chunk);
      }
    }
  }

  // Sorts every run by its numbers; runs of texts that continue after an equal chunk remain.
  void sortRuns() {
    std::vector<run> still_equal;
    for (const run& entries : equal_) {
      entries.size() <= FEW ? sortFew(entries) : numbers_.sort(entries, 0, BYTE);
      for (auto first = entries.begin(); first != entries.end();) {
        const std::uint64_t number = first->number;
        const auto last =
            std::find_if(first, entries.end(), [number](const entry& each) { return each.number != number; });
        if (last - first > 1 && (number & 0xFF) == GOES_ON) {
          still_equal.emplace_back(first, last);
        }
        first = last;
      }
    }
    equal_ = std::move(still_equal);
  }

  static void sortFew(const run& entries) {
    const auto isLess = [](const entry& a, const entry& b) { return a.number < b.number; };
    for (auto each = entries.begin(); each != entries.end(); ++each) {
      std::rotate(std::upper_bound(entries.begin(), each, *each, isLess), each, each + 1);
    }
  }

  void compareTexts() const {
    for (const run& entries : equal_) {
      std::stable_sort(entries.begin(), entries.end(),
                       [this](const entry& a, const entry& b) { return textOf_(a.element) < textOf_(b.element); });
    }
  }

  const std::function<std::string_view(std::size_t)>& textOf_;
  std::vector<run> equal_;  ///< of texts that are equal up to the chunk
  NumberSort numbers_;
};

std::vector<entry> entriesOf(const std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers) {
  std::vector<entry> entries;
  entries.reserve(elements.size());
  for (const std::size_t element : elements) {
    entries.push_back({numbers[element], element});
  }
  return entries;
}

void putBack(const std::vector<entry>& entries, std::vector<std::size_t>& elements) {
  std::transform(entries.begin(), entries.end(), elements.begin(), [](const entry& sorted) { return sorted.element; });
}

// Numbers of a small range, such as dates, share a word with their elements.
void sortNear(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers, std::uint64_t smallest,
              std::uint64_t largest) {
  constexpr unsigned ELEMENT_BITS = 32;
  std::vector<std::uint64_t> words;
  words.reserve(elements.size());
  for (const std::size_t element : elements) {
    words.push_back((numbers[element] - smallest) << ELEMENT_BITS | element);
  }
  const auto width = static_cast<unsigned>(std::bit_width(largest - smallest));
  const unsigned passes = (width + MOST_BITS - 1) / MOST_BITS;
  if (passes != 0) {
    DigitSort<std::uint64_t, std::identity>().sort(words, ELEMENT_BITS, (width + passes - 1) / passes);
  }
  std::transform(words.begin(), words.end(), elements.begin(),
                 [](std::uint64_t word) { return word & ((std::uint64_t{1} << ELEMENT_BITS) - 1); });
}

}  // namespace

std::uint64_t beginningOf(std::string_view text) {
  return chunkOf(text, 0);
}

std::vector<std::size_t> placesOf(std::size_t elements) {
  std::vector<std::size_t> places(elements);
  std::iota(places.begin(), places.end(), std::size_t{0});
  return places;
}

void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers) {
  if (elements.empty()) {
    return;
  }
  constexpr std::uint64_t NEAR = std::uint64_t{1} << 32;
  const auto [smallest, largest] = std::minmax_element(numbers.begin(), numbers.end());
  if (*largest - *smallest < NEAR && numbers.size() < NEAR) {
    sortNear(elements, numbers, *smallest, *largest);
    return;
  }
  std::vector<entry> entries = entriesOf(elements, numbers);
  NumberSort().sort(entries, 0, BYTE);
  putBack(entries, elements);
}

void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& beginnings,
                   const std::function<std::string_view(std::size_t)>& textOf) {
  std::vector<entry> entries = entriesOf(elements, beginnings);
  TextOrder(textOf).sort(entries);
  putBack(entries, elements);
}

}  // namespace spx
