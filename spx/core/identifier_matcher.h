#pragma once

#include <cstdint>
#include <string_view>

namespace spx {

/// The kinds of pseudo identifiers; identifiers.cpp has the same ones as regular expressions.
enum class IDENTIFIER_KIND : std::uint32_t {
  PSEUDO_ANIMAL,   ///< any of the prefixes, then anything
  MULTI_PARENT,    ///< a group's prefix, then at least one character
  SAME_LITTER,     ///< any of the prefixes, optional white space, digits
  PSEUDO_FOUNDER,  ///< P or WILD, optional white space, digits
};

/// Whether the first letter can begin an identifier of the kind: a fast test for numbered animals.
bool canBeginIdentifier(std::string_view id, IDENTIFIER_KIND kind);

/// Whether the whole identifier is of the kind, in any letter case. Linear, in constant memory: the
/// regular expressions recurse per character, so that long identifiers would exhaust the stack.
bool matchesIdentifier(std::string_view id, IDENTIFIER_KIND kind);

}  // namespace spx
