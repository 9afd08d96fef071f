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

/// The name under which a project keeps the view that `view load` and `view set` changed, in its
/// own directory.
inline constexpr char CURRENT_VIEW[] = "current";

/// What the command line says of the view: `--view NAME` and single settings.
struct view_choice {
  std::string name;
  std::vector<std::pair<std::string, std::string>> settings;  ///< in the order of the command line
};

/// Offers `--view NAME` and an option for each setting that the command obeys. The choice must live
/// until the command line is parsed.
/// @param parts  what the command obeys of a view: VIEW_PART bits
void addViewOptions(CLI::App& app, view_choice& choice, unsigned parts);

/// Sets View for a command: the named view, or the project's current one, or the start view; then
/// the settings one by one. The studbook has to be loaded, if there is one. Throws Failure and
/// UsageError.
void useView(const Session& session, const view_choice& choice);

}  // namespace spx::console
