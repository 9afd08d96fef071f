#pragma once

#include <string>
#include <utility>
#include <vector>

/// View files that restore a whole view. The library stores only part of a view; the same file holds the rest in
/// additional entries, which the library ignores: locations by name, exact bounds, and dates that mean "today".
/// docs/key-files.md describes all entries.
namespace spx::console {

/// Writes View to `name`.view in a directory. An existing file is replaced as a whole or stays.
/// Throws UsageError for a name with "/" and Failure when the file cannot be written.
void saveView(const std::string& directory, const std::string& name);

/// The settings of View as they would be typed, in the order of the file: name and value.
std::vector<std::pair<std::string, std::string>> viewSettingTexts();

/// Sets View from `name`.view in a directory; files written by the library alone are accepted.
/// Missing entries, and empty dates, keep the values of the start view. Throws Failure, naming the
/// file, when there is none, when it is damaged, and when it names demes, taxa or user-defined
/// fields that the loaded studbook does not have: without them the view would include other
/// animals. View is then the start view.
void loadView(const std::string& directory, const std::string& name);

/// Whether a file of that view exists.
bool viewExists(const std::string& directory, const std::string& name);

/// Removes the file of a view. Throws Failure when it does not exist.
void deleteView(const std::string& directory, const std::string& name);

/// The views of a directory, in natural order (2 before 10). Throws Failure when it cannot be read.
std::vector<std::string> viewNames(const std::string& directory);

}  // namespace spx::console
