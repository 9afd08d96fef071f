#pragma once

#include <string_view>

namespace spx::console {

/// Whether otherWord knows anything about a field.
bool hasOtherWords(std::string_view field);

/// What a word of English, German, French or Spanish keepers means in a field: "Wildfang" as a sire is "WILD",
/// "Ankunft" as an event "arrival". Compared without case and accents.
/// @return the word that the field takes, "" for unknown; null where the text is not such a word
const char* otherWord(std::string_view field, std::string_view text);

}  // namespace spx::console
