#include "console/help/completion.h"

#include <map>
#include <vector>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/help/command_pages.h"
#include "console/help/option_facts.h"

// Each script goes through the typed words, finds the command that they form, such as " project
// create", and offers what may follow it: commands, and options once a dash is typed. The word
// after an option that takes a value is not a command.
namespace spx::console {
namespace {

std::string joined(const std::vector<std::string>& words, const std::string& between) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : between) + word;
  }
  return text;
}

/// The text in single quotes, in a form that all three shells accept.
std::string quoted(const std::string& text) {
  std::string safe;
  for (const char letter : text) {
    if (letter != '\'' && letter != '\\') {
      safe += letter;
    }
  }
  return "'" + safe + "'";
}

/// The path of a command in the form that the scripts use: a blank before each word.
std::string pathTo(const CLI::App& app) {
  const std::string words = commandWords(app);
  return words.empty() ? words : " " + words;
}

/// The paths of all commands except `help`, so that the words after `help` are completed as if it were not there.
std::vector<std::string> pathsBelow(const CLI::App& app) {
  std::vector<std::string> paths;
  for (const CLI::App* command : commandsBelow(app)) {
    if (command != &app && command->get_name() != "help") {
      paths.push_back(quoted(pathTo(*command)));
    }
  }
  return paths;
}

/// The options that take a value, by name. When commands give an option different values, file
/// names are offered; other values can still be typed.
std::map<std::string, option_facts> optionsWithValues(const CLI::App& app) {
  std::map<std::string, option_facts> options;
  for (const CLI::App* command : commandsBelow(app)) {
    for (const option_facts& option : optionsOf(*command)) {
      if (option.value.empty()) {
        continue;
      }
      for (const std::string& name : option.names) {
        const bool is_new = options.emplace(name, option).second;
        if (!is_new && (option.value == "FILE" || option.value == "DIR")) {
          options[name] = option;
        }
      }
    }
  }
  return options;
}

std::string between(const std::string& before, const std::string& words, const std::string& after) {
  return before + " " + words + after;
}

/// The branches of a shell's `case` over all options that take a value.
std::string valueCases(const CLI::App& app, const std::string& files, const std::string& directories,
                       const std::string& words, const std::string& end) {
  std::map<std::string, std::vector<std::string>> names_by_action;
  for (const auto& [name, option] : optionsWithValues(app)) {
    const std::vector<std::string> choices = choicesOf(option);
    std::string action = ":";
    if (option.value == "FILE") {
      action = files;
    }
    if (option.value == "DIR") {
      action = directories;
    }
    if (!choices.empty()) {
      action = between(words, joined(choices, " "), end);
    }
    names_by_action[action].push_back(name);
  }
  std::string cases;
  for (const auto& [action, names] : names_by_action) {
    cases += "    " + joined(names, "|") + ") " + action + "; return;;\n";
  }
  return cases;
}

/// The options that may follow a command: its own, and those of the program, which may stand anywhere.
std::vector<option_facts> optionsAfter(const CLI::App& command, const CLI::App& app) {
  std::vector<option_facts> options = optionsOf(command);
  if (&command == &app) {
    return options;
  }
  for (const option_facts& option : optionsOf(app)) {
    if (option.names.back() != "--help") {
      options.push_back(option);
    }
  }
  return options;
}

std::string commandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* word : app.get_subcommands({})) {
    names.push_back(word->get_name());
  }
  return joined(names, " ");
}

std::string optionNames(const CLI::App& command, const CLI::App& app) {
  std::vector<std::string> names;
  for (const option_facts& option : optionsAfter(command, app)) {
    names.insert(names.end(), option.names.begin(), option.names.end());
  }
  return joined(names, " ");
}

std::string valueNames(const CLI::App& app, const std::string& between) {
  std::vector<std::string> names;
  for (const auto& entry : optionsWithValues(app)) {
    names.push_back(entry.first);
  }
  return joined(names, between);
}

/// The body of the loop over the typed words, for bash and zsh: skips the values of options,
/// follows the words to the command, and begins the `case` with what it takes.
std::string followedWay(const CLI::App& app) {
  return "    case $word in " + valueNames(app, "|") + ") skip=1; continue;; esac\n    case \"$way $word\" in " +
         joined(pathsBelow(app), "|") + ") way=\"$way $word\";; esac\n  done\n  case $way in\n";
}

// bash splits words at "=": `--format=json` becomes three words.
std::string bashScript(const CLI::App& app) {
  std::string script =
      "# bash completion of spx\n"
      "_spx() {\n"
      "  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
      "  local word way= skip= commands= options=\n"
      "  if [[ $current == '=' ]]; then current=\n"
      "  elif [[ $previous == '=' ]]; then previous=${COMP_WORDS[COMP_CWORD-2]}; fi\n"
      "  COMPREPLY=()\n"
      "  case $previous in\n" +
      valueCases(app, "COMPREPLY=($(compgen -f -- \"$current\"))", "COMPREPLY=($(compgen -d -- \"$current\"))",
                 "COMPREPLY=($(compgen -W '", "' -- \"$current\"))") +
      "  esac\n"
      "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
      "    if [[ -n $skip ]]; then [[ $word == '=' ]] || skip=; continue; fi\n" +
      followedWay(app);
  for (const CLI::App* command : commandsBelow(app)) {
    script += "    " + quoted(pathTo(*command)) + ") commands=" + quoted(commandNames(*command)) +
              " options=" + quoted(optionNames(*command, app)) + ";;\n";
  }
  return script +
         "  esac\n"
         "  [[ $current == -* ]] || options=\n"
         "  COMPREPLY=($(compgen -W \"$commands $options\" -- \"$current\"))\n"
         "}\n"
         "complete -o filenames -o bashdefault -F _spx spx\n";
}

std::string zshCommands(const CLI::App& app) {
  std::string words;
  for (const CLI::App* word : app.get_subcommands({})) {
    words += "\n      " + quoted(word->get_name() + ":" + word->get_description());
  }
  return words;
}

std::string zshOptions(const CLI::App& command, const CLI::App& app) {
  std::string words;
  for (const option_facts& option : optionsAfter(command, app)) {
    words += "\n      " + quoted(option.names.back() + ":" + option.help);
  }
  return words;
}

std::string zshScript(const CLI::App& app) {
  std::string script =
      "#compdef spx\n"
      "_spx() {\n"
      "  local word way= skip=\n"
      "  local -a commands options\n"
      "  case ${words[CURRENT-1]} in\n" +
      valueCases(app, "_files", "_files -/", "compadd", "") +
      "  esac\n"
      "  for word in \"${(@)words[2,CURRENT-1]}\"; do\n"
      "    if [[ -n $skip ]]; then skip=; continue; fi\n" +
      followedWay(app);
  for (const CLI::App* command : commandsBelow(app)) {
    script += "    " + quoted(pathTo(*command)) + ")\n    commands=(" + zshCommands(*command) + ")\n    options=(" +
              zshOptions(*command, app) + ");;\n";
  }
  return script +
         "  esac\n"
         "  _describe command commands\n"
         "  _describe -o option options\n"
         "  (( $#commands )) || _files\n"
         "}\n"
         "if [[ $zsh_eval_context[-1] == loadautofunc ]]; then _spx \"$@\"\n"
         "else compdef _spx spx; fi\n";
}

std::string fishOption(const std::string& condition, const option_facts& option) {
  std::string line = condition;
  for (const std::string& name : option.names) {
    line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  const std::vector<std::string> choices = choicesOf(option);
  if (option.value == "FILE") {
    line += " -r -F";
  } else if (option.value == "DIR") {
    line += " -x -a '(__fish_complete_directories)'";
  } else if (!choices.empty()) {
    line += " -x -a " + quoted(joined(choices, " "));
  } else if (!option.value.empty()) {
    line += " -x";
  }
  return line + " -d " + quoted(option.help) + "\n";
}

std::string fishScript(const CLI::App& app) {
  std::string script =
      "# fish completion of spx\n"
      "function __spx_way\n"
      "  set -l way ''\n"
      "  set -l skip\n"
      "  for word in (commandline -opc)[2..-1]\n"
      "    if test -n \"$skip\"\n"
      "      set skip\n"
      "      continue\n"
      "    end\n"
      "    switch $word\n"
      "      case " +
      valueNames(app, " ") +
      "\n        set skip 1\n"
      "        continue\n"
      "    end\n"
      "    switch \"$way $word\"\n"
      "      case " +
      joined(pathsBelow(app), " ") +
      "\n        set way \"$way $word\"\n"
      "    end\n"
      "  end\n"
      "  test \"$way\" = \"$argv[1]\"\n"
      "end\n"
      "complete -c spx -f\n";
  for (const CLI::App* command : commandsBelow(app)) {
    const std::string condition = "complete -c spx -n \"__spx_way " + quoted(pathTo(*command)) + "\"";
    for (const CLI::App* word : command->get_subcommands({})) {
      script += condition + " -a " + word->get_name() + " -d " + quoted(word->get_description()) + "\n";
    }
    for (const option_facts& option : optionsAfter(*command, app)) {
      script += fishOption(condition, option);
    }
  }
  return script;
}

}  // namespace

std::string completionScript(const CLI::App& app, const std::string& shell) {
  if (shell == "bash") {
    return bashScript(app);
  }
  if (shell == "zsh") {
    return zshScript(app);
  }
  if (shell == "fish") {
    return fishScript(app);
  }
  throw UsageError("--completion: " + quotedText(shell) + " must be one of: bash, zsh, fish" +
                   suggestion(shell, {"bash", "zsh", "fish"}));
}

}  // namespace spx::console
