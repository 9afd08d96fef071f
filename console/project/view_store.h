#pragma once

#include <string>
#include <utility>
#include <vector>

/// Views as files that bring a view back whole. The library's view file holds a part of a view; the same file carries
/// the rest in entries of its own, which the library ignores: locations by name, exact bounds, dates that are today as
/// such. docs/key-files.md describes all entries.
namespace spx::console {

/// Writes View to `name`.view in a directory. An existing file is replaced as a whole or stays.
/// Throws UsageError for a name with "/" and Failure when the file cannot be written.
void saveView(const std::string& directory, const std::string& name);

/// The settings of View as they would be typed, in the order of the file: name and value.
std::vector<std::pair<std::string, std::string>> viewSettingTexts();

/// Sets View from `name`.view in a directory; files that the library wrote alone will do.
/// Entries that are missing, and empty dates, leave what the start view has.
/// Throws Failure, naming the file, when there is none, when it is damaged, and when it names
/// demes, taxa or user-defined fields that the loaded studbook does not have: without them the view
/// would take other animals. View is the start view then.
void loadView(const std::string& directory, const std::string& name);

/// Whether there is a file of that view.
bool viewExists(const std::string& directory, const std::string& name);

/// Removes the file of a view. Throws Failure when there is none.
void deleteView(const std::string& directory, const std::string& name);

/// The views of a directory, sorted as people do. Throws Failure when it cannot be read.
std::vector<std::string> viewNames(const std::string& directory);

}  // namespace spx::console
