#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "spx/core/enumerations.h"

#include "console/base/words.h"

/// The names of enumerations as people type them.
namespace spx::console {

/// The display names of all values in their order, with "-" for blanks: "from-wild".
template <typename Enum>
const std::vector<std::string>& typedNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (std::uint32_t number = 0; !getEnumName(static_cast<Enum>(number)).empty(); ++number) {
      all.push_back(typedWord(getEnumName(static_cast<Enum>(number))));
    }
    return all;
  }();
  return names;
}

/// The value of that name, in any case and with blank, "-" and "_" alike.
template <typename Enum>
std::optional<Enum> parseName(std::string_view text) {
  const std::vector<std::string>& names = typedNames<Enum>();
  for (std::size_t number = 0; number < names.size(); ++number) {
    if (isSameWord(text, names[number])) {
      return static_cast<Enum>(number);
    }
  }
  return std::nullopt;
}

}  // namespace spx::console
