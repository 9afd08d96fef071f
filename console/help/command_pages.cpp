#include "console/help/command_pages.h"

#include <algorithm>
#include <sstream>

#include <CLI/CLI.hpp>

#include "console/base/display_text.h"
#include "console/base/words.h"

namespace spx::console {
namespace {

std::string indented(std::string text) {
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', end + 3)) {
    text.insert(end + 1, "  ");
  }
  return "  " + text;
}

/// The text rewrapped into lines that fit a terminal.
std::string refilled(std::string text) {
  constexpr std::size_t WIDTH = 78;
  std::replace(text.begin(), text.end(), '\n', ' ');
  return joinedWords(wrapped(text, WIDTH), "\n");
}

std::string pageText(const CLI::App& app, const std::string& words) {
  std::string text = app.get_footer();
  if (!text.empty() && text.back() != '\n') {
    text += '\n';
  }
  if (const command_page* page = findPage(words); page != nullptr) {
    text += (text.empty() ? "" : "\n") + refilled(page->about) + "\n\nExample:\n" + indented(page->example) + "\n\n";
  } else if (!app.get_subcommands({}).empty()) {
    text += "spx " + words + (words.empty() ? "" : " ") + "COMMAND --help explains a command.\n\n";
  }
  return text + exitCodesText(words) +
         (words.empty() ? "" : "\nspx --help explains how to name a studbook and a project.");
}

}  // namespace

const command_page* findPage(const std::string& words) {
  const std::vector<command_page>& pages = commandPages();
  const auto found =
      std::find_if(pages.begin(), pages.end(), [&](const command_page& page) { return page.words == words; });
  return found == pages.end() ? nullptr : &*found;
}

std::string commandWords(const CLI::App& app) {
  if (app.get_parent() == nullptr) {
    return std::string();
  }
  const std::string before = commandWords(*app.get_parent());
  return before + (before.empty() ? "" : " ") + app.get_name();
}

std::string typedWords(const CLI::App& app) {
  const std::string words = commandWords(app);
  return words.empty() ? "spx" : "spx " + words;
}

std::string exitCodesText(const std::string& words) {
  const std::string codes = "Exit codes: 0 done, 1 the operation failed, 2 wrong usage";
  if (words.empty()) {
    return codes + ", 3 the studbook has errors (check).";
  }
  if (words == "diff") {
    return "Exit codes: 0 the same, 1 different, 2 they cannot be compared.";
  }
  return codes + (words == "check" ? ", 3 the studbook has errors." : ".");
}

std::string fittedHelp(const std::string& help) {
  constexpr std::size_t WIDTH = 80;
  constexpr std::size_t DESCRIPTION = 30;  // the column in which descriptions of options begin
  std::istringstream lines(help);
  std::string fitted;
  for (std::string line; std::getline(lines, line);) {
    const bool is_option = line.size() > WIDTH && line[DESCRIPTION - 1] == ' ' && line[DESCRIPTION] != ' ';
    if (!is_option) {
      fitted += line + "\n";
      continue;
    }
    fitted += line.substr(0, DESCRIPTION);
    fitted +=
        joinedWords(wrapped(line.substr(DESCRIPTION), WIDTH - DESCRIPTION), "\n" + std::string(DESCRIPTION, ' ')) +
        "\n";
  }
  return fitted;
}

void addPages(CLI::App& app) {
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.footer(pageText(app, commandWords(app)));
  for (CLI::App* word : app.get_subcommands({})) {
    word->group("Commands");
    addPages(*word);
  }
}

}  // namespace spx::console
