#pragma once

#include <string>

/// Views as files that bring a view back whole. The library's view file leaves out what its readers
/// never knew; the same file carries the rest in entries of its own, which the library ignores.
namespace spx::console {

/// Writes View to `name`.view in a directory. A former file is replaced as a whole or stays.
/// Throws UsageError for a name with "/" and Failure when the file cannot be written.
void saveView(const std::string& directory, const std::string& name);

/// Sets View from `name`.view in a directory; files that the library wrote alone will do.
/// Throws Failure, naming the file, when there is none, when it is damaged, and when it names
/// demes, taxa or user-defined fields that the loaded studbook does not have: without them the view
/// would take other animals. View is the start view then.
void loadView(const std::string& directory, const std::string& name);

/// Whether there is a file of that view.
bool viewExists(const std::string& directory, const std::string& name);

}  // namespace spx::console
