#include "console/studbook/keeper_tables.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/tables/animals_table.h"
#include "console/tables/cell_readings.h"
#include "console/tables/csv_table.h"
#include "console/tables/events_table.h"
#include "console/tables/folded_text.h"
#include "console/tables/locations_table.h"
#include "console/tables/table_layout.h"
#include "console/tables/text_encoding.h"
#include "console/tables/workbook.h"

namespace spx::console {
namespace {

/// One of the tables of a studbook.
struct table_kind {
  const char* sheet;
  const char* other_sheet;
  std::span<const table_field> fields;
};

const table_kind& animalsKind() {
  static const table_kind kind = {"animals", "animal", animalFields()};
  return kind;
}
const table_kind& eventsKind() {
  static const table_kind kind = {"events", "moves", eventFields()};
  return kind;
}
const table_kind& locationsKind() {
  static const table_kind kind = {"locations", "institutions", locationFields()};
  return kind;
}
const table_kind& programsKind() {
  static const table_kind kind = {"programs", "programmes", programFields()};
  return kind;
}

std::shared_ptr<const Workbook> readWorkbook(const std::string& file) {
  try {
    return Workbook::read(file);
  } catch (const TableError& error) {
    throw Failure(file + ": " + error.what());
  }
}

std::optional<std::size_t> sheetNamed(const Workbook& workbook, std::string_view name) {
  const auto& names = workbook.sheetNames();
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](const std::string& each) { return titleWord(each) == titleWord(name); });
  return found == names.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - names.begin()));
}

std::optional<std::size_t> sheetOf(const Workbook& workbook, const table_kind& kind) {
  const auto sheet = sheetNamed(workbook, kind.sheet);
  return sheet ? sheet : sheetNamed(workbook, kind.other_sheet);
}

std::string sheetList(const Workbook& workbook) {
  std::string list;
  for (const std::string& name : workbook.sheetNames()) {
    list += (list.empty() ? "" : ", ") + quotedText(name);
  }
  return list;
}

/// Adds the layers that convert the cells of a file to what the fields expect.
class TableOpener {
 public:
  TableOpener(const studbook_files& files, std::shared_ptr<ReadingNotes> notes)
      : files_(files), notes_(std::move(notes)) {}

  /// The table in a file; a source without a table when the name is empty.
  table_source open(const std::string& file, const table_kind& kind) const {
    if (file.empty()) {
      return {};
    }
    if (isWorkbook(file)) {
      const auto workbook = readWorkbook(file);
      return openSheet(file, workbook, sheetOf(*workbook, kind).value_or(0), kind);
    }
    const auto tell = [notes = notes_, file](const std::string& remark) { notes->of(file).add(remark); };
    return understood(csvSource(file, {files_.reading.encoding, tell}), kind, true,
                      std::filesystem::is_regular_file(file));
  }

  table_source openSheet(const std::string& file, const std::shared_ptr<const Workbook>& workbook, std::size_t sheet,
                         const table_kind& kind) const {
    const std::string name = file + " (" + workbook->sheetNames()[sheet] + ")";
    const table_source::opener open = [=] { return Workbook::openSheet(workbook, sheet); };
    return understood({name, open, {}}, kind, false, true);
  }

 private:
  /// @param is_csv  or else a sheet
  table_source understood(const table_source& raw, const table_kind& kind, bool is_csv, bool can_reopen) const {
    const auto layers = [raw, fields = kind.fields, options = files_.reading,
                         choices = choicesOf(files_.titles, kind.sheet).list](TableNotes& notes) {
      return settleLayout(raw.open(), fields, choices, options, notes);
    };
    const auto scratch = std::make_shared<TableNotes>(raw.name);
    const table_source::opener reopen = [=] { return layers(*scratch); };
    const auto open = [=, options = files_.reading, all_notes = notes_] {
      TableNotes& notes = all_notes->of(raw.name);
      notes.clear();
      return readCells(layers(notes), can_reopen ? reopen : nullptr, options, is_csv, notes);
    };
    return {raw.name, open, raw.estimate_rows, choicesOf(files_.titles, kind.sheet)};
  }

  const studbook_files& files_;
  std::shared_ptr<ReadingNotes> notes_;
};

/// The number of the sheet with the animals.
std::size_t animalsSheet(const std::string& file, const Workbook& workbook, const std::string& wanted,
                         TableNotes& notes) {
  if (!wanted.empty()) {
    const auto sheet = sheetNamed(workbook, wanted);
    if (!sheet) {
      throw UsageError("--sheet: " + file + " has no sheet " + quotedText(wanted) + "; it has " + sheetList(workbook) +
                       suggestion(wanted, workbook.sheetNames()));
    }
    return *sheet;
  }
  const auto sheet = sheetOf(workbook, animalsKind());
  if (!sheet && workbook.sheetNames().size() > 1) {
    notes.add("read the first of the sheets " + sheetList(workbook) + "; --sheet NAME chooses another");
  }
  return sheet.value_or(0);
}

void openWorkbook(const studbook_files& files, const TableOpener& opener, studbook_tables& tables) {
  const auto workbook = readWorkbook(files.animals);
  const std::size_t animals =
      animalsSheet(files.animals, *workbook, files.reading.sheet, tables.notes->of(files.animals));
  tables.animals = opener.openSheet(files.animals, workbook, animals, animalsKind());
  const auto take = [&](table_source& table, const table_kind& kind) {
    const auto sheet = sheetOf(*workbook, kind);
    if (!table.open && sheet && *sheet != animals) {
      table = opener.openSheet(files.animals, workbook, *sheet, kind);
    }
  };
  take(tables.events, eventsKind());
  take(tables.locations, locationsKind());
  take(tables.programs, programsKind());
}

}  // namespace

studbook_tables keeperTables(const studbook_files& files) {
  checkEncoding(files.reading.encoding);
  studbook_tables tables;
  tables.file = files.animals;
  tables.format = "CSV";
  tables.notes = std::make_shared<ReadingNotes>();
  const TableOpener opener(files, tables.notes);
  tables.events = opener.open(files.events, eventsKind());
  tables.locations = opener.open(files.locations, locationsKind());
  tables.programs = opener.open(files.programs, programsKind());
  if (isWorkbook(files.animals)) {
    tables.format = "workbook";
    openWorkbook(files, opener, tables);
  } else if (!files.reading.sheet.empty()) {
    throw UsageError("--sheet can only be used with a workbook; " + files.animals + " is not one");
  } else {
    tables.animals = opener.open(files.animals, animalsKind());
  }
  return tables;
}

}  // namespace spx::console
