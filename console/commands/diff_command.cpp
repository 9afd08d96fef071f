#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>

#include "console/base/failure.h"
#include "console/commands/command.h"
#include "console/edits/change_text.h"
#include "console/edits/compare_editions.h"
#include "console/output/table_options.h"
#include "console/results/edition_figures.h"
#include "console/studbook/open_tables.h"
#include "console/studbook/studbook_file.h"

namespace spx::console {
namespace {

struct diff_options {
  table_options table;
  std::string before;
  std::string after;
};

const char* nameOf(ROW_CHANGE change) {
  switch (change) {
    case ROW_CHANGE::ADDED:
      return "added";
    case ROW_CHANGE::REMOVED:
      return "removed";
    case ROW_CHANGE::RENAMED:
      return "renamed?";
    case ROW_CHANGE::CHANGED:
      break;
  }
  return "changed";
}

/// The kind of a row, for people and scripts.
const char* kindOf(const row_difference& row) {
  static constexpr std::pair<const char*, const char*> KINDS[] = {
      {"animals", "animal"}, {"events", "event"}, {"locations", "location"}};
  const auto kind =
      std::find_if(std::begin(KINDS), std::end(KINDS), [&](const auto& each) { return row.table == each.first; });
  return kind == std::end(KINDS) ? "programme" : kind->second;
}

const EditionTable& rowsOf(const edition& book, const std::string& table) {
  return table == "animals" ? book.animals : table == "events" ? book.events : book.locations;
}

/// The most informative cells of a row that only one edition has.
std::string summaryOf(const edition& book, const row_difference& row, std::size_t number) {
  static constexpr const char* FIELDS[] = {"sex", "birth_date", "sire", "dam", "location", "level", "id"};
  if (row.table == "programs") {
    return std::string();
  }
  std::string text;
  for (const char* field : FIELDS) {
    const std::string_view cell = rowsOf(book, row.table).value(number, field);
    const bool is_known = row.table != "locations" && field == std::string("id");
    if (!cell.empty() && !is_known) {
      text += (text.empty() ? "" : ", ") + std::string(field) + " " + std::string(cell);
    }
  }
  return text;
}

class DifferenceTable {
 public:
  DifferenceTable(const edition& before, const edition& after)
      : before_(before),
        after_(after),
        table_({{.name = "kind", .title = "Kind"},
                {.name = "name", .title = "Name"},
                {.name = "change", .title = "Change"},
                {.name = "event", .title = "Event"},
                {.name = "field", .title = "Field"},
                {.name = "before", .title = "Before"},
                {.name = "after", .title = "After"}}) {}

  Table write(const edition_differences& differences) {
    for (const row_difference& row : differences.rows) {
      addRow(row);
    }
    for (const std::string& field : differences.new_fields) {
      table_.addRow({"field", field, "added"});
    }
    for (const std::string& field : differences.lost_fields) {
      table_.addRow({"field", field, "removed"});
    }
    for (const std::string& name : differences.lost_tables) {
      table_.addRow({"table", name, "removed"});
    }
    if (!differences.rows.empty()) {
      addNotes(differences);
    }
    table_.if_empty = "no differences";
    return std::move(table_);
  }

 private:
  void addRow(const row_difference& row) {
    const bool is_event = row.table == "events";
    const std::string name = row.animal.empty() ? row.name : row.animal;
    const Cell event = is_event ? Cell(row.name) : Cell();
    if (row.change == ROW_CHANGE::ADDED) {
      table_.addRow({kindOf(row), name, nameOf(row.change), event, Cell(), Cell(), summaryOf(after_, row, row.after)});
    } else if (row.change == ROW_CHANGE::REMOVED) {
      table_.addRow({kindOf(row), name, nameOf(row.change), event, Cell(), summaryOf(before_, row, row.before)});
    }
    for (const cell_difference& cell : row.cells) {
      table_.addRow({kindOf(row), name, nameOf(row.change), event, cell.column.title, cell.before, cell.after});
    }
  }

  void addNotes(const edition_differences& differences) {
    const auto count = [&](const char* table, ROW_CHANGE change) {
      return std::count_if(differences.rows.begin(), differences.rows.end(),
                           [&](const row_difference& row) { return row.table == table && row.change == change; });
    };
    const auto renamed = count("animals", ROW_CHANGE::RENAMED);
    table_.notes.push_back("Animals: " + std::to_string(count("animals", ROW_CHANGE::ADDED)) + " added, " +
                           std::to_string(count("animals", ROW_CHANGE::REMOVED)) + " removed, " +
                           std::to_string(count("animals", ROW_CHANGE::CHANGED)) + " changed");
    if (renamed != 0) {
      table_.notes.push_back("renamed? is a guess: " + std::to_string(renamed) +
                             (renamed == 1 ? " animal has" : " animals have") +
                             " another ID, but the same birth date, parents and sex");
    }
  }

  const edition& before_;
  const edition& after_;
  Table table_;
};

/// One edition. Tables are read as the options of the program say (--dates, --footer, --map).
studbook_files filesOf(const Session& session, const std::string& file) {
  studbook_files files;
  if (!isStudbookFile(file)) {
    files = session.filesBeside(file);
    files.events = files.locations = files.programs = std::string();
  }
  files.animals = file;
  return files;
}

/// Adds the counts of both editions; a note when they cannot be computed.
void addFigures(Table& table, const Session& session, const diff_options& options) {
  try {
    const std::vector<studbook_figure> before = figuresOf(filesOf(session, options.before));
    const std::vector<studbook_figure> after = figuresOf(filesOf(session, options.after));
    for (std::size_t figure = 0; figure < before.size(); ++figure) {
      const bool is_same = before[figure].text == after[figure].text;
      table.addRow({"figure", before[figure].name, is_same ? "same" : "changed", Cell(), Cell(), before[figure].text,
                    after[figure].text});
    }
  } catch (const Failure& failure) {
    table.notes.push_back(std::string("The effect on the counts is not known: ") + failure.what());
  }
}

ExitCode compare(const Session& session, const diff_options& options) {
  const edition before = readEdition(openTables(filesOf(session, options.before)));
  const edition after = readEdition(openTables(filesOf(session, options.after)));
  const edition_differences differences = compareEditions(before, after);
  const bool is_same = differences.rows.empty() && differences.new_fields.empty() && differences.lost_fields.empty() &&
                       differences.lost_tables.empty();
  Table table = DifferenceTable(before, after).write(differences);
  if (!is_same) {
    addFigures(table, session, options);
  }
  showTable(table, options.table);
  return is_same ? ExitCode::DONE : ExitCode::FAILED;
}

/// The exit code distinguishes "different" from "cannot be compared" for scripts.
ExitCode diff(const Session& session, const diff_options& options) {
  try {
    return compare(session, options);
  } catch (const Failure& failure) {
    throw UsageError(failure.what());
  }
}

}  // namespace

void addDiffCommand(std::vector<command>& commands) {
  const auto options = std::make_shared<diff_options>();
  commands.push_back({"diff", "Compare two editions of a studbook",
                      [options](Session& session) { return diff(session, *options); },
                      [options](CLI::App& app) {
                        app.add_option("BEFORE", options->before, "Tables or a studbook file")->required();
                        app.add_option("AFTER", options->after, "Tables or a studbook file")->required();
                        addTableOptions(app, options->table);
                      }});
}

}  // namespace spx::console
