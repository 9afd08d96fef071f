#include "console/command_line.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "spx/version.h"

#include "console/command.h"
#include "console/failure.h"
#include "console/session.h"

namespace spx::console {
namespace {

constexpr char EXIT_CODES[] =
    "Exit codes: 0 done, 1 the operation failed, 2 wrong usage, 3 the studbook has "
    "inconsistencies (check).";

void addGlobalOptions(CLI::App& app, session_options& options) {
  const auto add_file = [&](const char* name, std::string& file, const char* help) {
    app.add_option(name, file, help)->type_name("FILE");
  };
  app.add_option("--project", options.project, "The project to work in")->type_name("NAME");
  add_file("--studbook", options.files.animals,
           "Table of animals (CSV), or a directory with animals.csv and the other tables");
  add_file("--events", options.files.events, "Table of events");
  add_file("--locations", options.files.locations, "Table of locations");
  add_file("--programs", options.files.programs, "Table of breeding programmes");
  app.add_option("--map", options.titles, "The column of the animals table that holds a field")
      ->type_name("FIELD=TITLE")
      ->allow_extra_args(false);
  app.set_version_flag("--version",
                       std::string("spx ") + libraryVersion() + "\n" + versionRecord());
}

/// Obeys the word that was typed, or one of the words of its group.
ExitCode runCommand(const CLI::App& app, const std::vector<command>& commands, Session& session) {
  for (const command& each : commands) {
    const CLI::App* word = app.get_subcommand(each.name);
    if (!word->parsed()) continue;
    return each.words.empty() ? each.run(session) : runCommand(*word, each.words, session);
  }
  throw UsageError("no command is given; spx " +
                   (app.get_parent() == nullptr ? "" : app.get_name() + " ") + "--help lists them");
}

void addCommands(CLI::App& app, const std::vector<command>& commands) {
  // A word that is no command gets a message of its own.
  app.require_subcommand(0, 1);
  for (const command& each : commands) {
    CLI::App& word = *app.add_subcommand(each.name, each.help);
    word.fallthrough();
    each.add_options(word);
    if (!each.words.empty()) addCommands(word, each.words);
  }
}

/// Help that was asked for is a result and goes to standard output.
ExitCode explain(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
    app.exit(error, std::cout, std::cerr);
    return ExitCode::DONE;
  }
  std::cerr << "spx: " << error.what() << "\nRun spx --help for the commands and options.\n";
  return ExitCode::WRONG_USAGE;
}

ExitCode parseAndRun(int argument_count, const char* const* arguments) {
  CLI::App app("Genetic and demographic management of captive populations kept in studbooks",
               "spx");
  session_options options;
  addGlobalOptions(app, options);
  app.footer(EXIT_CODES);
  const std::vector<command> commands = allCommands();
  addCommands(app, commands);
  try {
    app.parse(argument_count, arguments);
  } catch (const CLI::ParseError& error) {
    return explain(app, error);
  }
  Session session(options);
  return runCommand(app, commands, session);
}

ExitCode fail(ExitCode code, const std::string& message) {
  std::cout.flush();
  std::cerr << "spx: " << message << "\n";
  return code;
}

/// What was written may still be in buffers, and a full disk shows only when they are emptied.
ExitCode checkOutput(ExitCode code) {
  errno = 0;
  if (std::cout.flush()) return code;
  const std::string reason = errno == 0 ? "" : std::string(": ") + std::strerror(errno);
  return fail(ExitCode::FAILED, "standard output cannot be written" + reason);
}

}  // namespace

int runCommandLine(int argument_count, const char* const* arguments) {
  ExitCode code = ExitCode::FAILED;
  try {
    code = parseAndRun(argument_count, arguments);
  } catch (const UsageError& error) {
    code = fail(ExitCode::WRONG_USAGE, error.what());
  } catch (const std::bad_alloc&) {
    code = fail(ExitCode::FAILED, "there is not enough memory");
  } catch (const std::exception& error) {
    code = fail(ExitCode::FAILED, error.what());
  }
  return static_cast<int>(checkOutput(code));
}

}  // namespace spx::console
