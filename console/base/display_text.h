#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Texts as a person sees them: valid UTF-8, harmless to the terminal, measured in its columns.
namespace spx::console {

/// Converts a text to UTF-8: one that is not valid UTF-8 is taken as Latin-1.
std::string utf8Text(std::string_view text);

/// The text as utf8Text, with everything that would move the cursor or change the terminal's state written out:
/// a line break as "\n", the escape character as "\x1b". Invisible marks that turn the direction of writing are
/// written out too ("\u202e"), since they make one ID look like another.
std::string visibleText(std::string_view text);

/// How many columns of a terminal a visible text takes: two for a wide character, none for a combining one.
std::size_t displayWidth(std::string_view text);

/// The visible text padded with blanks to `width` columns, after it or before it.
std::string padded(std::string_view text, std::size_t width, bool right_aligned = false);

/// The visible text in lines of at most `width` columns, broken at blanks; longer words are split. Returns at
/// least one line. A width below 2 counts as 2.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

/// The part of a UTF-8 text that its first `width` columns show; characters are not split.
std::string_view firstColumns(std::string_view text, std::size_t width);

}  // namespace spx::console
