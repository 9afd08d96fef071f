#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "spx/support/export.h"

namespace qs_lib {
/// A text that can be read as a number.
class SPX_EXPORT String : public std::string {
 public:
  using std::string::string;
  String() = default;
  /// Any text is a String.
  String(std::string text) : std::string(std::move(text)) {}  // NOLINT: a text is a String

  /// Reads the number at the start of the text, leading blanks skipped, with "." as the point; also
  /// "inf", "nan" and hexadecimal numbers.
  /// @return NaN when the text does not begin with a number
  /// @throws std::out_of_range when the number is too large for a double or, but for 0, below the
  ///         smallest normal one
  double real() const;
};

/// The ordering of the maps: texts are compared byte by byte, a prefix comes first.
template <typename T>
struct map_key {
  /// Whether a comes before b.
  bool operator()(const T& a, const T& b) const { return a < b; }
};

/// A text of count copies of the character. @throws std::length_error beyond what a text can hold
SPX_EXPORT std::string replicateChar(char character, std::size_t count);

/// The text with every old character replaced by the new one.
SPX_EXPORT std::string replaceChar(std::string text, char old_character, char new_character);

/// The text without blank, TAB, CR, LF, VT and FF at both ends.
SPX_EXPORT std::string allTrim(const std::string& text);

/// True for "true", "t", "yes", "y", "1" and "on" in any case, trimmed; false for all else.
SPX_EXPORT bool stringToBool(const std::string& text);
}  // namespace qs_lib
