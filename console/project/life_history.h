#pragma once

#include <string>
#include <vector>

#include "spx/project/biology.h"

/// The parameters of the life history under the names that a person types.
namespace spx::console {

/// One parameter: its name as typed is its key in lower case with "-" for "_".
struct life_history_setting {
  const char* key;
  std::string values;  ///< what it takes, for the help text
};

const std::vector<life_history_setting>& lifeHistorySettings();

/// The name of a key as it is typed.
std::string typedName(const std::string& key);

/// Sets a parameter of LifeHistory. Throws UsageError for an unknown name, and for a text that is not
/// a number of days of at least 0, or not a name of the enumeration.
void setLifeHistory(const std::string& name, const std::string& value);

/// Throws UsageError where both ends of the reproductive ages of a sex are set and the first lies above the last.
void checkReproductiveAges();

/// Whether no animal can be of reproductive age; true for the default life history.
bool lacksReproductiveAges();

/// Throws Failure with the file, the key and the value when a parameter is not a number, which the
/// library would notice only in the middle of a report.
void checkLifeHistory(const Biology& parameters);

}  // namespace spx::console
