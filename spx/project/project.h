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

  /// Names the project, its entry NAME and its key file; the empty name changes nothing.
  void setName(const std::string& name);

  /// Makes a new project: its directory tree and its key file with default settings.
  ///
  /// Changes the process's working directory; afterwards it is the directory that the configuration
  /// had before the call, or unchanged when there is no such directory. The name is trimmed, blanks
  /// inside it stay. A project that exists already is reported as "Project already exists"; the
  /// configuration's directory is then the would-be project's all the same, which hosts use to open
  /// it.
  /// @param directory  an existing directory; a leading "~" is the user's home, a relative path is
  ///                   taken from the working directory. The settings hold it as an absolute path.
  /// @return false, with nothing printed or made, for an empty or blank name, a name that would
  ///         leave the directory, and a directory that cannot be entered
  bool create(const std::string& name, const std::string& directory);

  /// Announces the removal. Nothing is deleted, on purpose: the files are the user's, and the
  /// host's affair. Always true.
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
