#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

#include "spx/core/deme_id.h"
#include "spx/support/export.h"
#include "spx/support/text_hash.h"

namespace spx {

/// A point on earth in degrees. NaN in both means that the place is unknown.
struct gis_point {
  double latitude = std::numeric_limits<double>::quiet_NaN();   ///< north is positive
  double longitude = std::numeric_limits<double>::quiet_NaN();  ///< east is positive
};

/// One deme of the metapopulation.
struct deme_member {
  packed_deme id = 0;    ///< unique in the registry
  std::string name;      ///< for listings; several demes may share it
  gis_point point;       ///< where it is
  bool selected = true;  ///< whether the current view includes the deme
};

/// One level of the hierarchy, such as region, institution or enclosure.
struct deme_level {
  std::string name;                  ///< when several levels share a name, lookups find the first
  std::vector<deme_member> members;  ///< in the order of insertion until sorted
};

/// The registry of demes, arranged in named levels: level i holds the demes whose identifier has
/// depth i. A deme deeper than the defined levels is kept in the last one. Levels are added first,
/// then members. With no levels every lookup is neutral and no member can be added.
///
/// Identifiers given as text raise what DemeID::textToBlocks raises.
class SPX_EXPORT MetaPopulation {
 public:
  /// Appends an empty level.
  void addLevel(const std::string& name);

  /// Adds a deme whose place is unknown; see the form with a point.
  packed_deme addMember(const std::string& id, const std::string& name);

  /// Adds a selected deme.
  /// @return the packed identifier, also of a deme that exists already, which keeps its name and
  ///         point; -1, with nothing added, for the root and while there are no levels
  packed_deme addMember(const std::string& id, const std::string& name, gis_point point);

  /// @{
  /// Whether the deme is registered.
  bool memberExists(const std::string& id) const;
  bool memberExists(packed_deme id) const;
  /// @}

  /// @{
  /// The depth of the identifier counted from 0, whether or not the deme exists; -1 for the root.
  int getDemeLevel(const std::string& id) const;
  int getDemeLevel(packed_deme id) const;
  /// @}

  /// The index of the first level of that name; 4294967295 (all bits set) when there is none.
  std::uint32_t getLevel(const std::string& name) const;

  /// Whether the deme exists and is selected.
  bool isMemberSelected(packed_deme id) const;

  /// @{
  /// The identifier of the first member of the level with that name; -1 when there is none.
  packed_deme getMemberID(unsigned long level, const std::string& name) const;
  packed_deme getMemberID(const std::string& level, const std::string& name) const;
  /// @}

  /// The name of the deme; empty when it does not exist. Valid until members are added or sorted.
  const std::string& getMemberName(packed_deme id) const;

  /// The place of the deme; NaN, NaN when it does not exist.
  gis_point getMemberGIS(packed_deme id) const;

  /// @{
  /// The number of members of a level. Reports "Level does not exist" and returns 0 beyond the
  /// last.
  std::size_t getNumberOfMembers(unsigned long level) const;
  std::size_t getNumberOfMembers(const std::string& level) const;
  /// @}

  /// Sorts the members of a level by identifier; does nothing beyond the last level. n log n.
  void sortMembers(unsigned long level);

  /// @{
  /// Sets the flag of a deme and of all demes within it, in its own level and the deeper ones;
  /// higher levels are never touched. The root stands for the last level. Scans those levels.
  void selectMember(packed_deme id, bool selected);
  void selectMember(const std::string& id, bool selected);
  /// @}

  /// Sets the flag of every deme.
  void selectMembers(bool selected);

  /// Lists one level on standard output, longitude before latitude; nothing beyond the last level.
  /// Leaves standard output left-adjusted, as all listings of this class do.
  void listMembers(unsigned long level) const;

  /// Lists all levels on standard output, and sorts the members of each by identifier in passing.
  void listMetapopulation();

  /// The levels in the order of insertion. The reference holds as long as the registry.
  const std::vector<deme_level>& levels() const { return levels_; }

 private:
  /// The positions of the members of one level, by identifier and by name (the first member with that name).
  struct level_index {
    std::unordered_map<packed_deme, std::size_t> by_id;
    std::unordered_map<std::string, std::size_t, qs_lib::text_hash> by_name;
    void add(const deme_member& member, std::size_t place);
  };

  std::size_t slotOf(int level) const;
  const deme_member* find(int level, packed_deme id) const;
  const deme_member* find(packed_deme id) const;

  std::vector<deme_level> levels_;
  std::vector<level_index> indexes_;  ///< one per level, updated whenever members are added or sorted
};

/// The demes of the studbook in use.
extern SPX_EXPORT MetaPopulation MetaPop;

}  // namespace spx
