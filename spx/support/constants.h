#pragma once

namespace qs_lib {
/// Bracket texts of ranges and the text of a missing date. Constants of every including file, fit
/// for constructors that run while the library is loaded.
inline constexpr char BRACKET[] = "()";
inline constexpr char CURLY_BRACKET[] = "{}";
inline constexpr char SQUARE_BRACKET[] = "[]";
inline constexpr char BLANK_DATE_STR[] = "";
}  // namespace qs_lib
