#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/sub_taxa.h"
#include "spx/core/user_fields.h"

#include "console/commands/command.h"

namespace spx::console {
namespace {

ExitCode locations(Session& session) {
  session.loadStudbook();
  MetaPop.listMetapopulation();
  return ExitCode::DONE;
}

ExitCode taxa(Session& session) {
  session.loadStudbook();
  return Subspecies.listTaxa() ? ExitCode::DONE : ExitCode::FAILED;
}

ExitCode programs(Session& session) {
  session.loadStudbook();
  Management.listPrograms();
  return ExitCode::DONE;
}

/// A studbook without such fields is in order; the library says that there are none.
ExitCode userFields(Session& session) {
  session.loadStudbook();
  showUserFields();
  return ExitCode::DONE;
}

}  // namespace

void addRegistryCommands(std::vector<command>& commands) {
  commands.push_back({"locations", "List the locations by level", locations});
  commands.push_back({"taxa", "List the taxa", taxa});
  commands.push_back({"programs", "List the breeding programmes", programs});
  commands.push_back({"user-fields", "List the fields of the studbook's own", userFields});
}

}  // namespace spx::console
