#pragma once

#include <string>

#include "spx/support/export.h"

/// @file
/// Questions about one identifier, matched as a whole and in any letter case. As in regular
/// expressions a line break is white space but not "any character": "WILD\n12" is a same-litter
/// parent and not a pseudo individual.
namespace spx {

/// Begins with COLONY, GROUP, HERD, MULT, MULTI, UNK, UNKN, UNKM, UNKF, WILD or P. So every
/// identifier that begins with P, also "Pedro", is a pseudo individual; kept on purpose.
SPX_EXPORT bool isPseudoIndividual(const std::string& id);

/// COLONY, GROUP, HERD, MULT or MULTI and at least one more character: "MULT" alone is not a group
/// of parents.
SPX_EXPORT bool isMultiParent(const std::string& id);

/// One of the prefixes of a pseudo individual, optional white space, and digits: "WILD 12", "unk3".
SPX_EXPORT bool isSameLitterParent(const std::string& id);

/// P or WILD, optional white space, and digits.
SPX_EXPORT bool isPseudoFounder(const std::string& id);

}  // namespace spx
