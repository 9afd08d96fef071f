#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace spx::console {

/// How many letters have to be put in, left out or replaced, or neighbours exchanged, to make one
/// word of the other.
std::size_t wordDistance(std::string_view a, std::string_view b);

/// `; did you mean "WORD"?` with the word that was probably meant, the first of several as near;
/// empty when none is near enough.
std::string suggestion(const std::string& typed, const std::vector<std::string>& words);

}  // namespace spx::console
