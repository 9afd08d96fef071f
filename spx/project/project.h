#pragma once

#include <string>

#include "spx/support/configuration.h"
#include "spx/support/export.h"

namespace spx {

/// The user's working area for one studbook: a directory with a key file and the sub-directories
/// views, reports, export and graphics. The entries of the key file are the project's settings.
class SPX_EXPORT Project : public qs_lib::Configuration {
 public:
  /// A nameless project in "/spx/projects" of the user's home (with HOME unset, of the root
  /// directory).
  Project();

  /// Saves the key file of a named project whose save-on-close flag is set.
  ~Project() override;

  /// Sets the name of the project, its entry NAME and the name of its key file. The empty name
  /// changes nothing.
  void setName(const std::string& name);

  /// Makes a new project: its directory tree and its key file with default settings.
  ///
  /// Changes the working directory of the process: afterwards it is the directory that the
  /// configuration had before the call, or unchanged when that does not exist. The name is trimmed;
  /// blanks inside it stay. When the project already exists, "Project already exists" is reported,
  /// and the directory of the configuration is that of the existing project, so that a host can open
  /// it.
  /// @param directory  an existing directory; a leading "~" is the user's home, a relative path is
  ///                   taken from the working directory. The settings hold it as an absolute path.
  /// @return false, with nothing printed or created, for an empty or blank name, a name that would
  ///         leave the directory, and a directory that cannot be entered. A project whose files could
  ///         not be written also returns true: the host checks the key file.
  bool create(const std::string& name, const std::string& directory);

  /// Announces the removal but deletes nothing, on purpose: the host decides what happens to the
  /// user's files. Always true.
  bool remove();

  /// The name of the project; empty while it has none.
  const std::string& projectName() const { return project_name_; }

 private:
  void makeTree(const std::string& name, const std::string& parent);
  void setDefaults(const std::string& name, const std::string& parent);

  std::string project_name_;
};

/// The project in use.
extern SPX_EXPORT Project ActiveProject;

}  // namespace spx
