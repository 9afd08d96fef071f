#pragma once

#include <string>
#include <vector>

/// The settings of a view by the names under which a person types them: `--sex male` on a command,
/// `sex=male` for `view set`.
namespace spx::console {

/// Groups of settings of a view, one bit each. A command offers only the settings of the groups that it uses.
enum VIEW_PART : unsigned {
  VIEW_SEX = 1U << 0U,           ///< sex
  VIEW_PLACES = 1U << 1U,        ///< location
  VIEW_DAY = 1U << 2U,           ///< on: View.monitor_date
  VIEW_PERIOD = 1U << 3U,        ///< from, until
  VIEW_LIVES = 1U << 4U,         ///< neonates, stillbirths, den-emerge: which young animals count
  VIEW_UNKNOWN_SEX = 1U << 5U,   ///< handle-unknown
  VIEW_CENSUS = 1U << 6U,        ///< census-interval, census-day, census-month
  VIEW_CLASS_WIDTH = 1U << 7U,   ///< class-width
  VIEW_SURVIVAL = 1U << 8U,      ///< left-truncated, right-censored
  VIEW_OFFSPRING = 1U << 9U,     ///< same-sex
  VIEW_PARENTS = 1U << 10U,      ///< handle-parent, generic-parents
  VIEW_WORDS = 1U << 11U,        ///< settings that only reports and view files show
  VIEW_FACTS = 1U << 12U,        ///< origin, rearing, accuracies, bounds
  VIEW_CLASS_COUNT = 1U << 13U,  ///< classes
  VIEW_PRORATING = 1U << 14U,    ///< prorating
  VIEW_TAXA = 1U << 15U,         ///< taxon, user field
  VIEW_RECORDS = VIEW_SEX | VIEW_FACTS | VIEW_TAXA,
  VIEW_CLASSES = VIEW_CLASS_WIDTH | VIEW_CLASS_COUNT,
  VIEW_OF_PREDICATES = VIEW_PLACES | VIEW_DAY | VIEW_TAXA,  ///< what the table of all predicates depends on
  WHOLE_VIEW = (1U << 16U) - 1                              ///< every setting
};

/// One setting of a view.
struct view_setting {
  const char* name;    ///< as typed, such as "birth-accuracy"
  const char* alias;   ///< another name for it; null for none
  std::string values;  ///< the accepted values, for the help text
  const char* help;    ///< one line
  unsigned parts;      ///< the VIEW_PART that it belongs to
  bool is_list;        ///< may be given several times; each adds to the list, "all" empties it
  /// Applies a value to View. Throws UsageError with the setting, the value and the accepted values.
  void (*apply)(const view_setting& setting, const std::string& value);
};

/// All settings in the order of the help text.
const std::vector<view_setting>& viewSettings();

/// Sets one setting of View by its name or alias. Locations, taxa and user-defined fields have to be
/// those of the loaded studbook. An upper bound alone starts at 0. Throws UsageError, also for an
/// unknown name, and then leaves View unchanged.
void setViewSetting(const std::string& name, const std::string& value);

/// Throws UsageError where a first bound of View lies above its last one, as nothing could match.
void checkViewBounds();

/// Sets View to the start view: the library's defaults, but with animals of every origin, since few tables give the
/// origin, and with prorating, since animals come and go at any age. Its last day and its day (`--on`) are today.
void setStartView();

/// Which dates of View were not set by the user. Open dates mean "today" on whatever day the view is used, so a
/// saved view keeps them open.
struct open_dates {
  bool from = true;   ///< View.start_date is that of the start view
  bool until = true;  ///< View.end_date
  bool on = true;     ///< View.monitor_date
};

/// The open dates of the current view.
open_dates openDates();

}  // namespace spx::console
