#pragma once

#include <cstdint>
#include <string_view>

namespace spx {

/// The languages of pseudo identifiers; the predicates hold the same ones as expressions.
enum class IDENTIFIER_KIND : std::uint32_t {
  PSEUDO_ANIMAL,   ///< any beginning, then anything
  MULTI_PARENT,    ///< a group's beginning, then at least one character
  SAME_LITTER,     ///< any beginning, white space or none, digits
  PSEUDO_FOUNDER,  ///< P or WILD, white space or none, digits
};

/// Whether the first letter can begin an identifier of the kind; a quick no for numbered animals.
bool canBeginIdentifier(std::string_view id, IDENTIFIER_KIND kind);

/// Whether the whole identifier belongs to the language, in any letter case, in constant memory:
/// for identifiers that are too long for expressions that recurse per character. Linear in the
/// length.
bool matchesIdentifier(std::string_view id, IDENTIFIER_KIND kind);

}  // namespace spx
