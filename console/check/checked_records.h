#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "spx/core/master_data.h"
#include "spx/core/meta_population.h"
#include "spx/core/record_index.h"
#include "spx/demography/dated_life.h"
#include "spx/project/biology.h"
#include "spx/support/julian_date.h"

#include "console/check/finding.h"

namespace spx::console {

/// What is checked, and what else the rules need. Holds references; nothing is copied.
struct checked_studbook {
  const std::vector<master_data>& records;  ///< pseudo individuals may be among them
  const Biology& life_history;
  const MetaPopulation& locations;
  qs_lib::day_number today;
  /// Returns where a record was read; null when that is not known.
  std::function<source_place(position)> place_of;
  /// Likewise for an event of the record, one of its moves.
  std::function<source_place(position, std::size_t event)> place_of_event = {};
};

/// The records with their parents found. Linear; refers to the studbook.
class CheckedRecords {
 public:
  static constexpr std::uint32_t NONE = std::numeric_limits<std::uint32_t>::max();

  explicit CheckedRecords(const checked_studbook& book);

  const checked_studbook& book() const { return book_; }
  std::size_t size() const { return book_.records.size(); }
  const master_data& operator[](position record) const { return book_.records[record]; }

  /// Whether the rules check the record: it has a row in a table, and its ID is not that of a placeholder.
  bool isChecked(position record) const { return is_checked_[record]; }

  /// The first checked record with the ID; NONE when there is none.
  std::uint32_t find(const std::string& id) const { return checkedOrNone(index_.find(id)); }

  /// @{
  /// The record of the parent; NONE when it is unknown, has no record, or is a placeholder.
  std::uint32_t sire(position record) const { return parents_[record].first; }
  std::uint32_t dam(position record) const { return parents_[record].second; }
  /// @}

  /// Records whose ID an earlier record has: pairs of the record and the earlier one, in the order of the records.
  const std::vector<std::pair<position, position>>& duplicates() const { return duplicates_; }

  /// Whether the record names itself as its sire (role 0) or its dam (role 1).
  bool isOwnParent(position record, std::size_t role) const {
    const master_data& animal = book_.records[record];
    return animal.stud_id == (role == 0 ? animal.sire_id : animal.dam_id);
  }

  source_place placeOf(position record) const;

  /// The line of the record; its number in the studbook where the line is not known.
  std::string placeText(position record) const;

  /// The ID as sentences show it.
  std::string name(position record) const { return nameText(book_.records[record].stud_id); }

  /// A finding about an animal, at its place.
  finding about(CHECK check, position record) const;

  /// A finding about one of its moves, at the place of this.
  finding aboutEvent(CHECK check, position record, const move_data& move) const;

  /// An ID or a name as sentences show it: in quotes only where it could be misread.
  static std::string nameText(std::string_view text);

 private:
  std::uint32_t checkedOrNone(position record) const;
  void findParents();

  const checked_studbook& book_;
  RecordIndex index_;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> parents_;
  std::vector<std::pair<position, position>> duplicates_;
  std::vector<bool> is_checked_;
};

/// Whether the life history says that the species lays eggs, which may hatch after the dam's death and elsewhere.
bool laysEggs(const Biology& life_history);

/// The days on which an event can have happened; nothing when it has no date, or one that is only a guess.
std::optional<date_range> knownDays(const move_data& event);

/// Whether the day itself is known.
bool isExact(const std::optional<date_range>& days);

/// A date as precisely as it is known; "unknown" when there is none.
std::string dateText(const move_data& event);

/// "on 2002-04-12", "in Apr 2002", "in 1964".
std::string onDateText(const move_data& event);

/// Up to five names, and the number of the remaining ones: "3, 4 and 5", "1, 2, 3, 4, 5 and 7 more".
std::string listText(const std::vector<std::string>& names);

}  // namespace spx::console
