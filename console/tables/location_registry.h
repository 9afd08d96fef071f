#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "spx/core/deme_id.h"
#include "spx/core/meta_population.h"
#include "spx/support/text_hash.h"

namespace spx::console {

/// A deme as events hold it: its packed identifier and its running number, counted from 1 in the
/// order of registration.
struct place {
  packed_deme deme = 0;
  std::uint64_t number = 0;
};

/// Registers the demes of a studbook in the metapopulation while its tables are read, and finds
/// them by the names or identifiers in the tables.
class LocationRegistry {
 public:
  /// Declares that a locations table has listed all demes: from now on other identifiers are faults. Without this call
  /// they are registered when they first occur, with the demes above them.
  void setComplete() { complete_ = true; }

  void addLevel(const std::string& name);

  /// Registers a deme whose level exists. @return false, with nothing changed, for a known one
  bool add(const DemeID& deme, const std::string& name, gis_point point);

  /// The place that a cell means, by name or by identifier. A new name is registered as a deme of
  /// the top level. Expected constant time.
  /// @param reason  set to what is wrong with the text when there is no such place; otherwise unchanged
  /// @return the place; deme 0 when there is none
  place find(std::string_view text, std::string& reason);

  /// The names of the demes that find() has registered, in that order.
  const std::vector<std::string>& metNames() const { return met_names_; }

  /// The deme "unknown", for animals whose location is not known; registered at the first call.
  place unknown();

 private:
  struct named_place {
    place where;
    bool ambiguous = false;
  };
  template <typename Value>
  using text_map = std::unordered_map<std::string, Value, qs_lib::text_hash, std::equal_to<>>;

  place findAnew(std::string_view text, std::string& reason);
  place findIdentifier(std::string_view text, std::string& reason);
  place findName(std::string_view text, std::string& reason);
  place enter(const DemeID& deme, const std::string& name, gis_point point);
  void addAbove(const DemeID& deme);
  void needLevels(int level);
  bool isKnown(const DemeID& deme) const { return numbers_.count(deme.binary()) != 0; }
  DemeID freeDeme();

  bool complete_ = false;
  bool by_identifier_ = false;  ///< demes were registered by identifiers met in a table
  bool by_name_ = false;        ///< demes were registered by names met in a table
  std::vector<std::string> met_names_;
  std::uint32_t next_free_ = 0;
  place unknown_;
  std::unordered_map<packed_deme, std::uint64_t> numbers_;
  text_map<named_place> names_;
  text_map<place> found_;  ///< results of earlier look-ups, by text
};

}  // namespace spx::console
