#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "console/project/session.h"

namespace CLI {
class App;
}

namespace spx::console {

/// The name of the view file in which a project keeps its current view, set by `view load` and
/// `view set`. It lies in the project's directory.
inline constexpr char CURRENT_VIEW[] = "current";

/// The view options of the command line: `--view NAME` and single settings.
struct view_choice {
  std::string name;
  std::vector<std::pair<std::string, std::string>> settings;  ///< in the order of the command line
};

/// Adds `--view NAME` and an option for each setting that the command uses. The choice must live
/// until the command line is parsed.
/// @param parts  the settings of a view that the command uses: VIEW_PART bits
void addViewOptions(CLI::App& app, view_choice& choice, unsigned parts);

/// Sets View for a command: from the named view, or the project's current view, or the start view;
/// then applies the single settings in order. Requires: the studbook, if there is one, is loaded.
/// Throws Failure and UsageError.
void useView(const Session& session, const view_choice& choice);

}  // namespace spx::console
