#pragma once

#include <map>
#include <string>

#include "spx/support/text.h"

namespace qs_lib {
/// One entry of a key file. The type word ("TEXT", "INTEGER", ...) is stored only; the value need not
/// match it.
struct ConfigElement {
  String value;             ///< the value as text
  std::string type;         ///< the type word
  std::string description;  ///< for people
};

/// Entries by key, in byte order of the keys.
using key_file_entries = std::map<std::string, ConfigElement, map_key<std::string>>;
}  // namespace qs_lib
