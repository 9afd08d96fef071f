#pragma once

#include <string>
#include <vector>

/// The settings of a view by the names under which a person types them: `--sex male` on a command,
/// `sex=male` for `view set`.
namespace spx::console {

/// One setting of a view.
struct view_setting {
  const char* name;    ///< as it is typed, such as "birth-accuracy"
  const char* values;  ///< what it takes, for the help text
  const char* help;    ///< one line
  bool is_list;        ///< may be given several times; each adds to the list, "all" empties it
  /// Changes View. Throws UsageError with the setting, the value and what would do.
  void (*apply)(const view_setting& setting, const std::string& value);
};

/// All settings in the order of the help text.
const std::vector<view_setting>& viewSettings();

/// Sets one setting of View; "to" is another word for "until". Demes, taxa and user-defined fields
/// have to be those of the loaded studbook. Throws UsageError, also for an unknown name, and then
/// leaves View as it was.
void setViewSetting(const std::string& name, const std::string& value);

/// Sets View to what the program starts from: the library's defaults with animals of every origin,
/// since few tables tell the origin.
void setStartView();

}  // namespace spx::console
