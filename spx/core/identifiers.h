#pragma once

#include <string>

#include "spx/support/export.h"

/// Questions about one identifier.
namespace spx {

// Identifiers, whole and in any letter case. Line breaks are white space, but not a character that
// may follow where anything may: "WILD\n12" is a same-litter parent and no pseudo individual.

/// Begins with COLONY, GROUP, HERD, MULT, MULTI, UNK, UNKN, UNKM, UNKF, WILD or P. So every
/// identifier that begins with P, "Pedro" too, is a pseudo individual: studbooks rely on that
/// breadth.
SPX_EXPORT bool isPseudoIndividual(const std::string& id);

/// COLONY, GROUP, HERD, MULT or MULTI and at least one character more: "MULT" alone is no group of
/// parents.
SPX_EXPORT bool isMultiParent(const std::string& id);

/// One of the beginnings of a pseudo individual, white space or none, and digits: "WILD 12",
/// "unk3".
SPX_EXPORT bool isSameLitterParent(const std::string& id);

/// P or WILD, white space or none, and digits.
SPX_EXPORT bool isPseudoFounder(const std::string& id);

}  // namespace spx
