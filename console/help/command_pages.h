#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace spx::console {

/// The description of a command beyond its one-line help. Its help text and its section of the man
/// page are made from this.
struct command_page {
  const char* words;    ///< the command as typed, such as "project create"
  const char* about;    ///< its input, its output and its defaults
  const char* example;  ///< command lines, one per line, that work on the example studbook
};

/// All pages in an order in which their examples can be run one after the other.
const std::vector<command_page>& commandPages();

/// The page of a command; nullptr when it has none.
const command_page* findPage(const std::string& words);

/// The words of a command as typed, without the program's name.
std::string commandWords(const CLI::App& app);

/// The same after the program's name.
std::string typedWords(const CLI::App& app);

/// The line that lists the exit codes of a command; for the empty text, those of the whole program.
std::string exitCodesText(const std::string& words);

/// A help text with the descriptions of its options broken into lines of 80 columns.
std::string fittedHelp(const std::string& help);

/// Makes the help texts of the program and of all its commands from their pages.
void addPages(CLI::App& app);

}  // namespace spx::console
