#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "spx/support/export.h"

namespace spx {

/// A deme identifier packed into one number: block i of the identifier occupies the byte (7 - i),
/// so the top level is the most significant byte. 0 is the root, which is not a deme. Top levels of
/// 128 and more give negative numbers.
using packed_deme = long long;

/// The identifier of a deme (location, institution or sub-population): up to eight levels, written
/// as numbers separated by dots. 3.1.12 is deme 12 inside deme 1 inside deme 3.
class SPX_EXPORT DemeID {
 public:
  static constexpr int LEVELS = 8;  ///< blocks of an identifier

  /// The root: all blocks 0.
  DemeID();

  /// All blocks 0.
  void resetBlocks();

  /// Reads the text form. @return always true. Fails as textToBlocks does.
  bool set(const std::string& text);

  /// Unpacks a number. @return always true.
  bool set(packed_deme number);

  /// Reads numbers separated by dots; leading zeros are allowed and trailing levels may be left
  /// out. Each number keeps its low 8 bits only (300 is stored as 44), and text after the eighth
  /// number is ignored; both are kept on purpose. Raises std::invalid_argument for a token that is
  /// not a number and std::out_of_range for one beyond int; the blocks read until then stay.
  void textToBlocks(const std::string& text);

  /// Unpacks a number by division in double precision, with its rounding: identifiers that need
  /// more than 53 significant bits lose their lowest blocks. Kept on purpose.
  void binaryToBlocks(packed_deme number);

  /// All eight blocks with three digits each: "003.001.012.000.000.000.000.000".
  std::string text() const;

  /// The packed form, exact.
  packed_deme binary() const;

  /// The index, counted from 0, of the deepest block that is not 0; -1 for the root.
  int getLevel() const;

  /// Block 0 is the top level. A 0 means that there is no deme at this level.
  std::array<std::uint8_t, LEVELS> blocks;
};

/// Whether the member lies within the parent: the parent's identifier is a prefix of the member's,
/// level by level. The root contains every deme, and each deme contains itself.
SPX_EXPORT bool isSubMember(packed_deme parent, packed_deme member);

/// The same for the text forms; "3.01" and "3.1" are the same deme. Raises what
/// DemeID::textToBlocks raises, except that equal texts are compared before anything is converted.
SPX_EXPORT bool isSubMember(const std::string& parent, const std::string& member);

}  // namespace spx
