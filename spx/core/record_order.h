#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "spx/core/master_data.h"

/// Stable sorts over keys that are computed once per element. An order is a type with `static
/// key(...)`, which gives an unsigned number or a text.
namespace spx {

/// A number as which signed 64-bit order becomes unsigned order.
inline std::uint64_t signedOrder(std::uint64_t key) {
  return key ^ (std::uint64_t{1} << 63);
}

/// The first eight bytes of a text as a number: where these differ the texts compare alike.
inline std::uint64_t textPrefix(const std::string& text) {
  std::uint64_t prefix = 0;
  for (std::size_t i = 0; i < sizeof prefix; ++i) {
    prefix = prefix << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
  }
  return prefix;
}

/// Reorders elements so that the keys ascend; elements of equal keys keep their order.
/// @param keyOf   gives an element's key: a number, or a text by value or by reference
/// @param fetch  has the memory fetched that an element's key is read from; called some elements
/// ahead, since a
///               large studbook fits no cache and the elements point all over it
template <class Element, class KeyOf, class Fetch>
void sortByKey(std::vector<Element>& elements, KeyOf keyOf, Fetch fetch) {
  constexpr std::size_t FETCH_AHEAD = 16;
  using key_result = decltype(keyOf(elements.front()));
  constexpr bool IS_NUMBER = std::is_integral_v<std::remove_reference_t<key_result>>;
  // A text that lives elsewhere is pointed to, one that was made for the sort is kept.
  using text_key = std::conditional_t<std::is_reference_v<key_result>, const std::string*,
                                      std::conditional_t<IS_NUMBER, char, std::string>>;
  struct entry {
    std::uint64_t number;
    text_key text;
    Element element;
  };
  std::vector<entry> entries;
  entries.reserve(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const Element& element = elements[i];
    if (i + FETCH_AHEAD < elements.size()) {
      fetch(elements[i + FETCH_AHEAD]);
    }
    if constexpr (IS_NUMBER) {
      entries.push_back({keyOf(element), 0, element});
    } else if constexpr (std::is_reference_v<key_result>) {
      const std::string& text = keyOf(element);
      entries.push_back({textPrefix(text), &text, element});
    } else {
      std::string text = keyOf(element);
      const std::uint64_t prefix = textPrefix(text);
      entries.push_back({prefix, std::move(text), element});
    }
  }
  std::stable_sort(entries.begin(), entries.end(), [](const entry& a, const entry& b) {
    if constexpr (IS_NUMBER) {
      return a.number < b.number;
    } else if constexpr (std::is_reference_v<key_result>) {
      return a.number != b.number ? a.number < b.number : *a.text < *b.text;
    } else {
      return a.number != b.number ? a.number < b.number : a.text < b.text;
    }
  });
  std::transform(entries.begin(), entries.end(), elements.begin(),
                 [](const entry& sorted) { return sorted.element; });
}

}  // namespace spx
