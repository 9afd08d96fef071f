#pragma once

#include <set>
#include <string>
#include <vector>

#include "spx/core/deme_id.h"
#include "spx/core/enumerations.h"
#include "spx/core/sub_taxa.h"
#include "spx/support/export.h"
#include "spx/support/julian_date.h"

namespace spx {

/// A test of one user-defined field.
struct user_filter {
  int field = 0;      ///< position in user_field_list, never negative
  std::string value;  ///< what the record's field must equal, byte for byte
};

/// The current view: which records an analysis, listing or export takes, and the settings of the
/// analyses. Dates are day numbers; a NaN bound is not set.
///
/// Demes are selected in the metapopulation MetaPop, which all views share; `demes` only lists them.
/// So assigning a view, emptying `demes` or a load() that fails halfway leaves the selection of
/// MetaPop unchanged. clearView() selects all demes again, addDeme() the given ones.
class SPX_EXPORT DataFilter {
 public:
  /// Empty lists, then the defaults of clearView(): constructing a view selects all demes of the
  /// metapopulation. Requires: the metapopulation is constructed.
  DataFilter();

  // Settings

  qs_lib::day_number start_date = 0;                              ///< start of the period
  qs_lib::day_number end_date = 0;                                ///< end of the period
  qs_lib::day_number monitor_date = 0;                            ///< reference date for living animals
  double low_generation = 0;                                      ///< generation number; NaN is not set
  double high_generation = 0;                                     ///< likewise
  double low_inbreeding = 0;                                      ///< inbreeding coefficient; NaN is not set
  double high_inbreeding = 0;                                     ///< likewise
  double low_age = 0;                                             ///< lower bound of age in days; NaN is not set
  double high_age = 0;                                            ///< likewise
  DATE_ACCURACY birth_accuracy = DATE_ACCURACY::ALL_DATES;        ///< the worst that is accepted
  DATE_ACCURACY death_accuracy = DATE_ACCURACY::ALL_DATES;        ///< likewise
  DATE_ACCURACY event_accuracy = DATE_ACCURACY::ALL_DATES;        ///< likewise
  SEX sex = SEX::ALL;                                             ///< the sex group
  HANDLE_UNKNOWN handle_unknown = HANDLE_UNKNOWN::EQUAL;          ///< animals of unknown sex
  HANDLE_UNKNOWN handle_parent = HANDLE_UNKNOWN::OBSERVED_RATIO;  ///< unknown parents
  BIRTH_TYPE origin = BIRTH_TYPE::CAPTIVE_BORN;                   ///< of the animals, or ALL
  REARING rearing = REARING::ALL;                                 ///< shown in reports only; not in view files
  BIRTH_CONTROL contraception = BIRTH_CONTROL::NO_SELECTION;      ///< the method of birth control
  qs_lib::TIME_INTERVAL census_interval = qs_lib::TIME_INTERVAL::ANNUAL;  ///< between two censuses
  std::vector<taxon_handle> taxa;                                         ///< empty: all taxa; see SubTaxa::clear()
  std::set<packed_deme> demes;                                            ///< empty: all demes
  std::vector<MOVE_TYPE> events;          ///< not used by reports, which show "all"; kept by clearView
  std::vector<user_filter> user_filters;  ///< all of them must match
  int filter_id = 0;                      ///< the number of the view; 0 if it has none
  bool generic_parents = false;           ///< assume generic unknown parents; kept by clearView
  double class_width = 0;                 ///< of age classes, in days
  unsigned long number_of_classes = 0;    ///< of age
  int census_day = 1;                     ///< 1 to 31
  int census_month = 1;                   ///< 1 to 12
  bool use_neonate = true;                ///< include neonates
  bool use_stillbirth = true;             ///< include stillbirths
  bool use_emerge = false;                ///< count from the day when animals emerge from the den
  bool left_truncated = true;             ///< left truncation of life tables
  bool right_censored = true;             ///< right censoring of life tables
  bool prorating = false;                 ///< life tables count part of an age class as a part
  bool same_sex = true;                   ///< count same-sex offspring
  std::string path;                       ///< directory of view files and deme files; the host sets it

  // Editing

  /// Sets every default and selects every deme of the metapopulation: from 1800 to today,
  /// captive-born animals of every sex. The event list, `generic_parents` and `path` do not change;
  /// kept on purpose.
  void clearView();

  /// Shrinks the period to whole census years: the end (and the monitor date) goes back to the last
  /// census day, the start forward to the first one, which is past the end when the period contains
  /// no census day. A census day beyond its month means the last day of the month, one below 1 the
  /// first.
  /// @return false with nothing changed when the end date is 0, the census month is not from 1 to 12,
  ///         or a census day has no day number
  bool autoMonitorDate();

  /// Adds a test of a user-defined field. @return false with nothing added for a negative field
  bool addUserView(int field, const std::string& value);

  /// Adds a deme and selects it with all demes within it. The first one deselects all others. Scans
  /// the metapopulation. @return false with nothing changed for an unknown deme
  bool addDeme(packed_deme id);
  /// The same from the dotted text; raises what DemeID::textToBlocks raises.
  bool addDeme(const std::string& id);
  /// The same by the names of level and deme.
  bool addDeme(const std::string& level, const std::string& name);

  /// Adds a taxon, also a second time. @return false for an unknown name and always for "generic"
  bool addTaxon(const std::string& name);

  /// The demes in ascending order of their packed identifiers, each followed by the separator, also
  /// the last one; kept on purpose. Empty for all demes.
  /// @param numeric    packed identifiers instead of names
  /// @param separator  a character code
  std::string createDemeString(bool numeric, int separator) const;

  /// The names of the taxa in their order, each followed by the separator, also the last one; "all"
  /// when no taxon is selected.
  std::string createTaxonString(int separator) const;

  /// Replaces the demes by those of a text of packed identifiers separated by ";", as in view files.
  /// The first known one deselects all others; when none is known, the selection of the
  /// metapopulation does not change. Numbers are read as 32-bit integers, and text after a number is
  /// ignored; both are kept on purpose. A larger identifier raises std::out_of_range, and a text that
  /// is not a number std::invalid_argument; the demes read before it are in place.
  /// @return false with nothing changed for the empty text
  bool extractDemeString(const std::string& text);

  /// Adds the demes named in `file`.fed in `path`, one name per line. Empty lines, lines that contain
  /// "#" and unknown names are skipped; only the first 1023 characters of a line are read. Each name
  /// scans the metapopulation.
  /// @return false, after "Could not open " and the file name on standard error, when the file cannot
  ///         be opened or lies outside `path`
  bool loadDemeFile(const std::string& file, const std::string& level);

  // View files and listings

  /// Writes the view to `name`.view in `path`. When that fails, also for a name outside the directory,
  /// "Could not save view settings" is reported and an existing file is unchanged. Rearing, class
  /// width, number of classes, events, user filters and the path are not stored.
  void save(const std::string& name) const;

  /// Reads a view from `name`.view in `path`. The sex group and the taxa are not restored: the sex is
  /// written under "SEX" but read under "Sex", and TAXON is never read; kept on purpose. A malformed
  /// integer raises std::invalid_argument or std::out_of_range, as do the demes, which are read last;
  /// the settings read before it are in place. An empty METAPOPULATION changes neither `demes` nor the
  /// selection.
  /// @return false, silently and with nothing changed, when the file cannot be read or is not a view
  ///         file
  bool load(const std::string& name);

  /// Lists the base names of the views in `path` on standard output.
  /// @param filter  the extension to list, "view" usually
  /// @return false with nothing written when the directory cannot be read
  bool listViews(const std::string& filter) const;

  /// Shows all settings in one call of the console.
  void listView() const;
};

/// The view in use.
extern SPX_EXPORT DataFilter View;

}  // namespace spx
