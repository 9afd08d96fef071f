#pragma once

#include <cstdint>
#include <string>

#include "spx/support/export.h"

/// @file
/// The front end of the errors that a user sees. It keeps no state: an operation that reports an
/// error gives up and returns false or a neutral value, unless it says otherwise.
namespace spx {

/// Reports "#" followed by the code in decimal, a minus sign for negative codes. Always true.
SPX_EXPORT bool spxError(std::int32_t code);

/// Reports the text unchanged, even when it is empty. Always true.
SPX_EXPORT bool spxError(const std::string& message);

/// Does nothing: the messages of this library exist in one language. Always true. For hosts that
/// call it when they set a language; the library never does. Kept on purpose.
/// @param language  a language or locale tag such as "en"
SPX_EXPORT bool spxErrorFile(const std::string& language);

}  // namespace spx
