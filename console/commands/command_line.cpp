#include "console/commands/command_line.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include <CLI/CLI.hpp>

#include "spx/support/console.h"
#include "spx/version.h"

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/commands/file_option.h"
#include "console/help/command_pages.h"
#include "console/help/completion.h"
#include "console/help/man_page.h"
#include "console/help/wrong_words.h"
#include "console/output/terminal_filter.h"
#include "console/project/session.h"

namespace spx::console {
namespace {

/// Options that print something about the program instead of running a command.
struct self_description {
  bool man = false;
  std::string shell;
};

void addGlobalOptions(CLI::App& app, session_options& options) {
  const auto add_file = [&](const char* name, std::string& file, const char* help) {
    requireName(*app.add_option(name, file, help)->type_name("FILE"));
  };
  app.add_option("--project", options.project, "The project to work in")->type_name("NAME");
  add_file("--studbook", options.files.animals,
           "Table of animals (CSV, .xlsx, .ods), or a directory with animals.csv and the other tables");
  add_file("--events", options.files.events, "Table of events");
  add_file("--locations", options.files.locations, "Table of locations");
  add_file("--programs", options.files.programs, "Table of breeding programmes");
  app.add_option("--map", options.titles,
                 "The column that holds a field; TABLE.FIELD=TITLE for other tables than the animals")
      ->type_name("FIELD=TITLE")
      ->allow_extra_args(false);
  add_file("--mapping", options.mapping, "Saves how import read the columns, or reads them that way again");
  app.add_option("--sheet", options.files.reading.sheet, "The sheet of animals in a workbook")->type_name("NAME");
  app.add_option("--dates", options.dates, "How tables write dates such as 04/05/1998")
      ->check(CLI::IsMember({"day-first", "month-first"}))
      ->type_name("day-first|month-first");
  app.add_option("--footer", options.footer, "What to do with lines such as \"Total\" below a table")
      ->check(CLI::IsMember({"skip", "keep"}))
      ->type_name("skip|keep");
  app.add_option("--encoding", options.files.reading.encoding, "The encoding of CSV tables, such as latin1")
      ->type_name("NAME");
  app.set_version_flag("--version", std::string("spx ") + libraryVersion() + "\n" + versionRecord());
}

void addSelfDescription(CLI::App& app, self_description& wanted) {
  app.add_flag("--man", wanted.man, "Write the man page");
  app.add_option("--completion", wanted.shell, "Write the completion script of a shell")->type_name("bash|zsh|fish");
}

bool describeSelf(const CLI::App& app, const self_description& wanted) {
  if (wanted.man) {
    std::cout << manPage(app);
  }
  if (!wanted.shell.empty()) {
    std::cout << completionScript(app, wanted.shell);
  }
  return wanted.man || !wanted.shell.empty();
}

/// `help COMMAND` is `COMMAND --help` for those who try the word first.
command helpCommand(const CLI::App& app) {
  const auto words = std::make_shared<std::vector<std::string>>();
  return {
      "help", "Explain a command",
      [&app, words](Session&) {
        const CLI::App& found = findCommand(app, *words);
        std::cout << fittedHelp(app.get_formatter()->make_help(&found, typedWords(found), CLI::AppFormatMode::Normal));
        return ExitCode::DONE;
      },
      [words](CLI::App& word) { word.add_option("COMMAND", *words, "The words of a command"); }};
}

/// Runs the command that was typed, within its group if it is in one.
ExitCode runCommand(const CLI::App& app, const std::vector<command>& commands, Session& session) {
  for (const command& each : commands) {
    const CLI::App* word = app.get_subcommand(each.name);
    if (!word->parsed()) {
      continue;
    }
    return each.words.empty() ? each.run(session) : runCommand(*word, each.words, session);
  }
  throw UsageError("no command is given; spx " + (app.get_parent() == nullptr ? "" : app.get_name() + " ") +
                   "--help lists the commands");
}

void addCommands(CLI::App& app, const std::vector<command>& commands) {
  // Accepts unknown words here: wrongWordText() gives a better message.
  app.require_subcommand(0, 1);
  for (const command& each : commands) {
    CLI::App& word = *app.add_subcommand(each.name, each.help);
    word.fallthrough();
    each.add_options(word);
    if (!each.words.empty()) {
      addCommands(word, each.words);
    }
  }
}

/// What is wrong with the command line: "--columns: 1 required NAME,... missing" says that a value is missing.
std::string plainText(const CLI::ParseError& error) {
  std::string text = error.what();
  const std::size_t begin = text.find(": 1 required ");
  const std::size_t end = text.rfind(" missing");
  if (begin == std::string::npos || end == std::string::npos) {
    return text;
  }
  const std::size_t value = begin + std::string_view(": 1 required ").size();
  return text.substr(0, begin) + " needs a value: " + text.substr(value, end - value);
}

/// Help that was asked for is a result and goes to standard output.
ExitCode explain(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    std::ostringstream help;
    app.exit(error, help, std::cerr);
    std::cout << fittedHelp(help.str());
    return ExitCode::DONE;
  }
  const std::string wrong_word = wrongWordText(app);
  std::cerr << "spx: " << (wrong_word.empty() ? plainText(error) : wrong_word)
            << "\nRun spx --help for the commands and options.\n";
  return ExitCode::WRONG_USAGE;
}

ExitCode parseAndRun(int argument_count, const char* const* arguments) {
  CLI::App app("Genetic and demographic management of captive populations kept in studbooks", "spx");
  session_options options;
  self_description wanted;
  addGlobalOptions(app, options);
  addSelfDescription(app, wanted);
  std::vector<command> commands = allCommands();
  commands.push_back(helpCommand(app));
  addCommands(app, commands);
  addPages(app);
  try {
    app.parse(argument_count, arguments);
  } catch (const CLI::ParseError& error) {
    return explain(app, error);
  }
  if (describeSelf(app, wanted)) {
    return ExitCode::DONE;
  }
  Session session(options);
  return runCommand(app, commands, session);
}

ExitCode fail(ExitCode code, const std::string& message) {
  std::cout.flush();
  std::cerr << "spx: " << message << "\n";
  return code;
}

/// Flushes standard output: output may still be buffered, and a full disk is noticed only when it is flushed.
ExitCode checkOutput(ExitCode code) {
  const bool had_failed = !std::cout;
  errno = 0;
  if (had_failed) {
    // The reason for that failure is lost; writing one more line end fails for the same reason.
    std::cout.clear();
    std::cout.put('\n');
  }
  if (std::cout.flush() && !had_failed) {
    return code;
  }
  const std::string reason = errno == 0 ? "" : std::string(": ") + std::strerror(errno);
  return fail(ExitCode::FAILED, "standard output cannot be written" + reason);
}

}  // namespace

int runCommandLine(int argument_count, const char* const* arguments) {
  const TerminalFilter output(std::cout, STDOUT_FILENO);
  const TerminalFilter errors(std::cerr, STDERR_FILENO);
  qs_lib::setPauseHandler([] {});  // nothing waits for a key
  ExitCode code = ExitCode::FAILED;
  try {
    code = parseAndRun(argument_count, arguments);
  } catch (const UsageError& error) {
    code = fail(ExitCode::WRONG_USAGE, error.what());
  } catch (const std::filesystem::filesystem_error& error) {
    code = fail(ExitCode::FAILED, error.path1().string() + ": " + error.code().message());
  } catch (const std::bad_alloc&) {
    code = fail(ExitCode::FAILED, "there is not enough memory");
  } catch (const std::exception& error) {
    code = fail(ExitCode::FAILED, error.what());
  }
  return static_cast<int>(checkOutput(code));
}

}  // namespace spx::console
