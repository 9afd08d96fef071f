#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "spx/core/master_data.h"

/// @file
/// Stable sorts by numbers and by texts.
namespace spx {

/// The number whose unsigned order is the signed 64-bit order of the key.
inline std::uint64_t signedOrder(std::uint64_t key) {
  return key ^ (std::uint64_t{1} << 63);
}

/// The first seven bytes of a text as a number, in the same order: texts that differ there are in
/// the order of their numbers.
std::uint64_t beginningOf(std::string_view text);

/// The numbers from 0 to one less than the number of elements.
std::vector<std::size_t> placesOf(std::size_t elements);

/// Sorts elements by their numbers; elements with equal numbers keep their order.
/// @param numbers  by element
void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& numbers);

/// The same, by the bytes of texts.
/// @param beginnings  the beginning of each text, by element
/// @param textOf      returns the text of an element; called only where the beginnings are equal
void sortAscending(std::vector<std::size_t>& elements, const std::vector<std::uint64_t>& beginnings,
                   const std::function<std::string_view(std::size_t)>& textOf);

/// The elements at these places, in the order of the places.
template <class Element>
std::vector<Element> reordered(const std::vector<Element>& elements, const std::vector<std::size_t>& order) {
  std::vector<Element> sorted;
  sorted.reserve(elements.size());
  for (const std::size_t place : order) {
    sorted.push_back(elements[place]);
  }
  return sorted;
}

/// One number of every record. Reading the records once in their order is faster than reading each
/// of them several times in the order of a sort.
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
