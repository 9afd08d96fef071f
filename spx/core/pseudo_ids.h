#pragma once

/// @file
/// The identifiers of the pseudo parents. Literals, so that constructors that run while the library
/// is loaded may use them.
namespace spx {

inline constexpr char WILD_PARENT[] = "WILD";         ///< caught in the wild
inline constexpr char UNKNOWN_PARENT[] = "UNK";       ///< unknown, of either sex
inline constexpr char UNKNOWN_SIRE[] = "UNKM";        ///< unknown father
inline constexpr char UNKNOWN_DAM[] = "UNKF";         ///< unknown mother
inline constexpr char GROUP_PARENT[] = "MULT";        ///< one of several animals
inline constexpr char PSEUDO_FOUNDER_PREFIX[] = "P";  ///< precedes the ID of a missing parent, or
                                                      ///< of the known mate of a wild one

}  // namespace spx
