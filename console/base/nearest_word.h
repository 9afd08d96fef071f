#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace spx::console {

/// The number of letters to insert, delete or replace, or of neighbours to exchange, that turns one
/// word into the other. Costs the product of the lengths.
std::size_t wordDistance(std::string_view a, std::string_view b);

/// `; did you mean "WORD"?` with the word that was probably meant, the first of those that are
/// equally near; empty when none is near enough.
std::string suggestion(const std::string& typed, const std::vector<std::string>& words);

}  // namespace spx::console
