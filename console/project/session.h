#pragma once

#include <string>
#include <vector>

#include "console/studbook/source_files.h"
#include "console/tables/loading_notes.h"

namespace spx::console {

/// The global options of the command line.
struct session_options {
  studbook_files files;
  std::vector<std::string> titles;  ///< FIELD=TITLE, as typed
  std::string project;
  std::string dates;    ///< day-first, month-first or empty
  std::string footer;   ///< skip, keep or empty
  std::string mapping;  ///< the path of a mapping file, see column_mapping.h
};

/// One run of the program: opens what a command needs when the command asks for it.
class Session {
 public:
  explicit Session(session_options options) : options_(std::move(options)) {}

  bool hasProject() const { return !options_.project.empty(); }

  /// Puts a text before every ID of the tables that are loaded from now on; see withIdPrefix.
  void useIdPrefix(const std::string& prefix) { options_.files.id_prefix = prefix; }

  /// Opens the project of the command line: its settings, the directory of its views, its life
  /// history and the use of times in dates. Does nothing when it is already open. Throws UsageError
  /// when no project was named, and Failure when it does not exist or one of its files is damaged.
  void openProject();

  /// The same when a project was named; nothing otherwise.
  void openProjectIfNamed();

  /// The tables of the command line, with the given file or directory in place of the studbook.
  studbook_files filesBeside(const std::string& animals) const;

  /// The mapping file of the command line if it does not exist yet; empty otherwise.
  std::string newMapping() const;

  /// Whether the command line or the project names a studbook, which may not exist yet. Opens the
  /// project.
  bool hasStudbook();

  /// The studbook file that an import writes: that of the command line, or the project's. Opens the
  /// project. Throws UsageError when neither is given.
  std::string importTarget();

  /// The studbook that loadStudbook loads, as the command line or the project names it.
  /// Opens the project. Throws UsageError when neither names one.
  std::string studbook();

  /// What the studbook is called in titles: the project's name, or that of the file or directory of the command line.
  std::string studbookName();

  /// The studbook file for commands that need one: to change it, or for what tables do not have. Throws UsageError when
  /// there is none, and Failure when it is something else, such as a table.
  std::string writableStudbook();

  /// Loads the studbook of the command line, or that of the project; opens the project first.
  /// Throws UsageError when neither names one, and what spx::console::loadStudbook() throws.
  void loadStudbook();

  /// The same when there is a studbook; nothing otherwise.
  void loadStudbookIfNamed();

  /// The lines of the rows of the loaded studbook, and other findings of the load.
  const loading_notes& notes() const { return notes_; }

  // Of the open project.

  std::string projectDirectory() const;  ///< the key file, the current view and the life history
  std::string viewDirectory() const;
  std::string reportDirectory() const;
  std::string exportDirectory() const;

 private:
  [[noreturn]] void failWithoutStudbook() const;
  studbook_files chosenFiles() const;
  std::string projectStudbook() const;

  session_options options_;
  bool project_open_ = false;
  bool studbook_loaded_ = false;
  loading_notes notes_;
};

/// The directory of all projects.
std::string projectsDirectory();

/// Sets the name and directory of ActiveProject without reading its files. Throws Failure when it
/// does not exist.
void nameProject(const std::string& name);

/// Loads the project of that name into ActiveProject. Throws Failure when it does not exist or its
/// key file is damaged.
void openProjectFile(const std::string& name);

}  // namespace spx::console
