#include "console/help/option_facts.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>

namespace spx::console {

std::vector<option_facts> optionsOf(const CLI::App& app) {
  std::vector<option_facts> options;
  for (const CLI::Option* option : app.get_options()) {
    if (!option->nonpositional()) {
      continue;
    }
    option_facts facts;
    for (const std::string& name : option->get_snames()) {
      facts.names.push_back("-" + name);
    }
    for (const std::string& name : option->get_lnames()) {
      facts.names.push_back("--" + name);
    }
    if (option->get_type_size() != 0) {
      facts.value = option->get_type_name();
    }
    facts.help = option->get_description();
    facts.of_view = option->get_group() == "View";
    options.push_back(std::move(facts));
  }
  return options;
}

std::vector<std::string> positionalsOf(const CLI::App& app) {
  std::vector<std::string> words;
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) {
      continue;
    }
    const bool is_list = option->get_expected_max() >= CLI::detail::expected_max_vector_size;
    const std::string word = option->get_name(true) + (is_list ? "..." : "");
    words.push_back(option->get_required() ? word : "[" + word + "]");
  }
  return words;
}

std::vector<std::string> choicesOf(const option_facts& option) {
  std::vector<std::string> choices;
  if (option.value.find('|') == std::string::npos) {
    return choices;
  }
  std::istringstream text(option.value);
  for (std::string choice; std::getline(text, choice, '|');) {
    // A word in capitals, such as NUMBER, is a placeholder for a typed value.
    const auto is_small = [](char letter) { return letter >= 'a' && letter <= 'z'; };
    if (std::any_of(choice.begin(), choice.end(), is_small)) {
      choices.push_back(choice);
    }
  }
  return choices;
}

std::vector<const CLI::App*> commandsBelow(const CLI::App& app) {
  std::vector<const CLI::App*> commands = {&app};
  for (const CLI::App* word : app.get_subcommands({})) {
    const std::vector<const CLI::App*> below = commandsBelow(*word);
    commands.insert(commands.end(), below.begin(), below.end());
  }
  return commands;
}

}  // namespace spx::console
