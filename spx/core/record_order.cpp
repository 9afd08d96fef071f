#include "spx/core/record_order.h"

#include <algorithm>
#include <numeric>

namespace spx {
namespace {

// An element next to its number, so that comparisons read memory in sequence.
struct entry {
  std::uint64_t number;
  std::size_t element;
};

std::vector<entry> entriesOf(const std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers) {
  std::vector<entry> entries;
  entries.reserve(elements.size());
  for (const std::size_t element : elements) {
    entries.push_back({numbers[element], element});
  }
  return entries;
}

template <class IsLess>
void sortBy(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers, IsLess isLess) {
  std::vector<entry> entries = entriesOf(elements, numbers);
  std::stable_sort(entries.begin(), entries.end(), isLess);
  std::transform(entries.begin(), entries.end(), elements.begin(), [](const entry& sorted) { return sorted.element; });
}

}  // namespace

std::uint64_t beginningOf(std::string_view text) {
  std::uint64_t number = 0;
  for (std::size_t at = 0; at < sizeof number; ++at) {
    number = number << 8 | (at < text.size() ? static_cast<unsigned char>(text[at]) : 0);
  }
  return number;
}

std::vector<std::size_t> placesOf(std::size_t elements) {
  std::vector<std::size_t> places(elements);
  std::iota(places.begin(), places.end(), std::size_t{0});
  return places;
}

void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers) {
  sortBy(elements, numbers, [](const entry& a, const entry& b) { return a.number < b.number; });
}

void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& beginnings,
                   const std::function<std::string_view(std::size_t)>& textOf) {
  sortBy(elements, beginnings, [&textOf](const entry& a, const entry& b) {
    return a.number != b.number ? a.number < b.number : textOf(a.element) < textOf(b.element);
  });
}

}  // namespace spx
