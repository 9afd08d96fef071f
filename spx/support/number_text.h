#pragma once

#include <string>

#include "spx/support/export.h"

namespace qs_lib {
/// Writes a number in fixed notation with exactly that many digits after the point, whatever the
/// host's locale. Every NaN gives "nan", infinities "inf" and "-inf". A negative number of digits
/// counts as 6. Offered for float and double.
template <typename T>
SPX_EXPORT std::string realToString(T value, int decimals);

extern template std::string realToString<float>(float value, int decimals);
extern template std::string realToString<double>(double value, int decimals);

/// Appends the text of realToString() without a temporary string, for large tables.
SPX_EXPORT void appendReal(std::string& text, double value, int decimals);

/// Appends the digits of a whole number.
SPX_EXPORT void appendWhole(std::string& text, int value);

/// Writes a number as a text stream does by default: up to six significant digits, the exponent
/// only where it is shorter. Every NaN gives "nan".
SPX_EXPORT std::string defaultReal(double value);

/// Writes part as a percentage of whole, followed by "%"; "n/a" when whole is 0.
SPX_EXPORT std::string percentString(double part, double whole, int decimals);

/// percentString for counts.
template <typename T>
std::string percent(T part, T whole, int decimals) {
  return percentString(static_cast<double>(part), static_cast<double>(whole), decimals);
}
}  // namespace qs_lib
