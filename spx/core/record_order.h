#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "spx/core/master_data.h"

/// Stable sorts over numbers and texts: n log n, with the numbers computed once.
namespace spx {

/// Maps the bits of a signed 64-bit key to a number whose unsigned order is the signed order of the keys.
inline std::uint64_t signedOrder(std::uint64_t key) {
  return key ^ (std::uint64_t{1} << 63);
}

/// The first eight bytes of a text as a number, zeros after a shorter one: numbers that differ are in
/// the order of their texts.
std::uint64_t beginningOf(std::string_view text);

/// The numbers from 0 to the number of elements less one.
std::vector<std::size_t> placesOf(std::size_t elements);

/// Sorts elements by their numbers, stably. When memory runs out, std::bad_alloc leaves the
/// elements unchanged.
/// @param numbers  by element
void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers);

/// Sorts elements by the bytes of their texts, likewise.
/// @param beginnings  the beginning of each text, by element
/// @param textOf      gives the text of an element; called only for equal beginnings
void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& beginnings,
                   const std::function<std::string_view(std::size_t)>& textOf);

/// The elements rearranged: `order` lists the places from which they are taken.
template <class Element>
std::vector<Element> reordered(const std::vector<Element>& elements, const std::vector<std::size_t>& order) {
  std::vector<Element> sorted;
  sorted.reserve(elements.size());
  for (const std::size_t place : order) {
    sorted.push_back(elements[place]);
  }
  return sorted;
}

/// The sort key of every record, read in record order: the records of a large studbook do not fit
/// into a cache, and the elements to be sorted refer to them in no particular order.
template <class Fact>
std::vector<std::uint64_t> factsOf(const std::vector<master_data>& records, Fact fact) {
  std::vector<std::uint64_t> facts;
  facts.reserve(records.size());
  for (const master_data& animal : records) {
    facts.push_back(fact(animal));
  }
  return facts;
}

}  // namespace spx
