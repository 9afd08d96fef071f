#include "console/help/man_page.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "spx/version.h"

#include "console/help/command_pages.h"
#include "console/help/option_facts.h"

namespace spx::console {
namespace {

/// Escapes a text for roff; a line must not look like a request.
std::string escaped(const std::string& text) {
  std::string roff;
  for (const char letter : text) {
    const bool begins_line = roff.empty() || roff.back() == '\n';
    if (begins_line && (letter == '.' || letter == '\'')) {
      roff += "\\&";
    }
    if (letter == '\\') {
      roff += "\\e";
    } else if (letter == '-') {
      roff += "\\-";
    } else {
      roff += letter;
    }
  }
  return roff;
}

std::string paragraph(const std::string& text) {
  return ".PP\n" + escaped(text) + "\n";
}

/// Lines whose breaks and blanks roff keeps.
std::string verbatim(const std::string& lines) {
  return ".PP\n.RS 4\n.nf\n" + escaped(lines) + (lines.ends_with("\n") ? "" : "\n") + ".fi\n.RE\n";
}

std::string optionText(const option_facts& option) {
  std::string names;
  for (const std::string& name : option.names) {
    names += (names.empty() ? "\\fB" : ", \\fB") + escaped(name) + "\\fR";
  }
  if (!option.value.empty()) {
    names += " \\fI" + escaped(option.value) + "\\fR";
  }
  return ".TP\n" + names + "\n" + escaped(option.help) + "\n";
}

bool takesView(const CLI::App& app) {
  const std::vector<option_facts> options = optionsOf(app);
  return std::any_of(options.begin(), options.end(), [](const option_facts& option) { return option.of_view; });
}

/// The options of a command, without --help, which every command takes, and without the view
/// options, which are explained once.
std::string optionsText(const CLI::App& app) {
  std::string text;
  for (const option_facts& option : optionsOf(app)) {
    const bool is_help = option.names.back() == "--help" && app.get_parent() != nullptr;
    if (!option.of_view && !is_help) {
      text += optionText(option);
    }
  }
  if (takesView(app)) {
    text += paragraph("It takes the view options, which are explained below.");
  }
  return text;
}

std::string commandText(const CLI::App& app) {
  const std::string words = commandWords(app);
  std::string usage = ".SS \"" + escaped(words);
  for (const std::string& word : positionalsOf(app)) {
    usage += " " + escaped(word);
  }
  std::string text = usage + "\"\n" + escaped(app.get_description()) + ".\n";
  const command_page* page = findPage(words);
  if (page == nullptr) {
    return text + optionsText(app);
  }
  text += escaped(page->about) + "\n" + optionsText(app);
  return text + verbatim(page->example);
}

std::string commandTexts(const CLI::App& app) {
  std::string text;
  for (const CLI::App* command : commandsBelow(app)) {
    if (command->get_subcommands({}).empty()) {
      text += commandText(*command);
    }
  }
  return text;
}

/// The options of the view. They are the same for all commands that take them, so those of the
/// first such command are shown.
std::string viewOptionsText(const CLI::App& app) {
  for (const CLI::App* command : commandsBelow(app)) {
    if (!takesView(*command)) {
      continue;
    }
    std::string text;
    for (const option_facts& option : optionsOf(*command)) {
      if (option.of_view) {
        text += optionText(option);
      }
    }
    return text;
  }
  return std::string();
}

std::string filesText() {
  return ".TP\n~/spx/projects\nThe projects: their settings, views, reports and exports.\n"
         ".TP\n~/spx/projects/studbook\\-errors.txt\n"
         "The inconsistencies of the studbook that was loaded last.\n"
         ".TP\n~/spx/removed\nThe files of projects that were removed.\n";
}

}  // namespace

std::string manPage(const CLI::App& app) {
  return ".TH SPX 1 \"\" \"spx " + escaped(libraryVersion()) + "\" \"User commands\"\n" +
         ".SH NAME\nspx \\- genetic and demographic management of captive populations\n"
         ".SH SYNOPSIS\n\\fBspx\\fR [\\fB\\-\\-project\\fR \\fINAME\\fR] "
         "[\\fB\\-\\-studbook\\fR \\fIFILE\\fR] \\fICOMMAND\\fR [\\fIoptions\\fR]\n"
         ".SH DESCRIPTION\n" +
         escaped(app.get_description()) +
         ".\nResults go to standard output, everything else to standard error.\n"
         "The options of the program may come before or after the command.\n"
         ".SH OPTIONS\n" +
         optionsText(app) + ".SH COMMANDS\n" + commandTexts(app) + ".SH VIEW OPTIONS\n" +
         "Which animals a command takes, and the settings of analyses.\n" + viewOptionsText(app) + ".SH EXIT STATUS\n" +
         escaped(exitCodesText("")) + "\n.SH FILES\n" + filesText();
}

}  // namespace spx::console
