#include "console/help/wrong_words.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/help/command_pages.h"

namespace spx::console {
namespace {

const CLI::App& typedCommand(const CLI::App& app) {
  const std::vector<CLI::App*> typed = app.get_subcommands();
  return typed.empty() ? app : typedCommand(*typed.front());
}

std::vector<std::string> namesOfCommands(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* word : app.get_subcommands({})) {
    names.push_back(word->get_name());
  }
  return names;
}

/// The names of all options that a command accepts: its own, those of the groups that contain it,
/// and those of the program.
std::vector<std::string> namesOfOptions(const CLI::App* app) {
  std::vector<std::string> names;
  for (; app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* option : app->get_options()) {
      for (const std::string& name : option->get_lnames()) {
        names.push_back("--" + name);
      }
    }
  }
  return names;
}

std::string wrongOption(const CLI::App& command, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  const std::vector<std::string> names = namesOfOptions(&command);
  if (std::find(names.begin(), names.end(), name) != names.end()) {
    return quotedText(word) + " is an unexpected argument; options must come before --";
  }
  return typedWords(command) + " has no option " + quotedText(name) + suggestion(name, names);
}

std::string wrongCommand(const CLI::App& group, const std::string& word) {
  const std::string owner = group.get_parent() == nullptr ? "" : " in spx " + commandWords(group);
  return "there is no command " + quotedText(word) + owner + suggestion(word, namesOfCommands(group));
}

}  // namespace

std::string wrongWordText(const CLI::App& app) {
  const std::vector<std::string> words = app.remaining(true);
  if (words.empty()) {
    return std::string();
  }
  const CLI::App& command = typedCommand(app);
  const std::string& word = words.front();
  if (word.starts_with('-')) {
    return wrongOption(command, word);
  }
  if (!command.get_subcommands({}).empty()) {
    return wrongCommand(command, word);
  }
  return "unexpected argument " + quotedText(word) + "; see " + typedWords(command) + " --help";
}

const CLI::App& findCommand(const CLI::App& app, const std::vector<std::string>& words) {
  const CLI::App* found = &app;
  for (const std::string& word : words) {
    const std::vector<std::string> names = namesOfCommands(*found);
    if (std::find(names.begin(), names.end(), word) == names.end()) {
      throw UsageError(wrongCommand(*found, word));
    }
    found = found->get_subcommand(word);
  }
  return *found;
}

}  // namespace spx::console
