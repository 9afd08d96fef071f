#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace spx::console {

/// What a command has to say of itself beyond its one line. Its help text and its part of the man
/// page are made from this.
struct command_page {
  const char* words;    ///< the command as it is typed, such as "project create"
  const char* about;    ///< what it takes and gives, and what holds where nothing is said
  const char* example;  ///< command lines, one a line, that work on the example studbook
};

/// All pages in an order in which their examples can be run one after the other.
const std::vector<command_page>& commandPages();

/// The page of a command; nullptr when it has none.
const command_page* findPage(const std::string& words);

/// The words by which a command is typed, without the program's name.
std::string commandWords(const CLI::App& app);

/// The same after the program's name.
std::string typedWords(const CLI::App& app);

/// The line of the exit codes that a command can give; of the whole program for the empty text.
std::string exitCodesText(const std::string& words);

/// A help text with the descriptions of its options broken into lines of 80 columns.
std::string fittedHelp(const std::string& help);

/// Makes the help texts of the program and of all its commands from their pages.
void addPages(CLI::App& app);

}  // namespace spx::console
