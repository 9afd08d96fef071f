#include "console/edits/change_text.h"

#include <algorithm>
#include <map>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

#include "console/edits/event_edits.h"

namespace spx::console {
namespace {

/// What a row is called when it is added or removed.
const char* kindOf(const std::string& table) {
  static constexpr std::pair<const char*, const char*> KINDS[] = {
      {"animals", "animal"}, {"events", "event"}, {"locations", "location"}, {"programs", "programme"}};
  const auto kind =
      std::find_if(std::begin(KINDS), std::end(KINDS), [&](const auto& each) { return table == each.first; });
  return kind == std::end(KINDS) ? "field" : kind->second;
}

class ChangeWriter {
 public:
  explicit ChangeWriter(StudbookEdit& edit) : edit_(edit) {}

  std::vector<std::string> write() {
    const std::vector<journal_cell> cells = edit_.cells();
    for (const journal_cell& cell : cells) {
      if (cell.field == WHOLE_ROW) {
        whole_[{cell.table, cell.row}];
      }
    }
    for (const journal_cell& cell : cells) {
      const bool is_column = cell.table == "columns" && cell.field == "field" && cell.after.value_or("").empty();
      if (is_column && cell.before && cell.before->starts_with("user_")) {
        lost_[*cell.before] = 0;
      }
      if (const auto row = whole_.find({cell.table, cell.row}); row != whole_.end()) {
        row->second.push_back(&cell);
      }
    }
    for (const journal_cell& cell : cells) {
      if (cell.table == "columns") {
        addColumn(cell);
      } else if (isRemovedField(cell)) {
        ++lost_[cell.field];
      } else if (cell.field == WHOLE_ROW) {
        lines_.push_back(nameOf(cell) + (cell.before ? "removed " : "new ") + kindOf(cell.table) + valuesOf(cell));
      } else if (!whole_.contains({cell.table, cell.row})) {
        addCell(cell);
      }
    }
    return std::move(lines_);
  }

 private:
  void addCell(const journal_cell& cell) {
    if (cell.table == "events" && cell.field == "animal") {
      // The animal that had the event is gone when it was merged into this one.
      const std::string former = edit_.cell("animals", std::stoll(cell.before.value_or("0")), "id");
      lines_.push_back(nameOf(cell) + "takes the event " + eventText(edit_, cell.row) +
                       (former.empty() ? "" : " of " + former));
      return;
    }
    const std::string what = cell.table == "events" ? "event " + eventText(edit_, cell.row) + ": " : "";
    lines_.push_back(nameOf(cell) + what + fieldTitle(edit_.database(), cell.table, cell.field) + " " +
                     shownCell(cell.before.value_or("")) + " -> " + shownCell(cell.after.value_or("")));
  }

  /// A change in the list of columns. Built-in fields are not reported, since their cells are.
  void addColumn(const journal_cell& cell) {
    if (cell.field != "title") {
      return;
    }
    const bool is_new = cell.before.value_or("").empty();
    const bool is_gone = cell.after.value_or("").empty();
    if ((is_new || is_gone) && !isOwnField(cell.row)) {
      return;
    }
    lines_.push_back(is_new    ? "new field " + *cell.after
                     : is_gone ? "removed field " + *cell.before + lostValues(cell.row)
                               : "field " + *cell.before + " -> " + *cell.after);
  }

  /// Whether a column that came or went is one of the keeper's own.
  bool isOwnField(row_number column) {
    const std::vector<const journal_cell*>& entries = whole_[{"columns", column}];
    return std::any_of(entries.begin(), entries.end(), [](const journal_cell* entry) {
      return entry->field == "field" &&
             entry->before.value_or("").append(entry->after.value_or("")).starts_with("user_");
    });
  }

  /// Whether a cell was emptied because its column was removed; such cells are only counted.
  bool isRemovedField(const journal_cell& cell) const { return lost_.contains(cell.field); }

  std::string lostValues(row_number column) {
    for (const journal_cell* entry : whole_[{"columns", column}]) {
      const std::size_t lost = entry->field == "field" ? lost_[entry->before.value_or("")] : 0;
      if (lost != 0) {
        return " with " + std::to_string(lost) + (lost == 1 ? " value" : " values");
      }
    }
    return std::string();
  }

  std::string nameOf(const journal_cell& cell) {
    if (!cell.animal.empty()) {
      return cell.animal + ": ";
    }
    const std::string name = cell.table == "locations" || cell.table == "programs"
                                 ? edit_.cell(cell.table, cell.row, "name")
                                 : std::string();
    return name.empty() ? "" : name + ": ";
  }

  /// The values of a row that was added or removed.
  std::string valuesOf(const journal_cell& row) {
    std::string text;
    for (const journal_cell* cell : whole_[{row.table, row.row}]) {
      const bool is_shown =
          cell->field != WHOLE_ROW && cell->field != "animal" && !(cell->table == "animals" && cell->field == "id");
      const std::string value = (row.before ? cell->before : cell->after).value_or("");
      if (is_shown && !value.empty()) {
        text += (text.empty() ? ": " : ", ") + fieldTitle(edit_.database(), cell->table, cell->field) + " " + value;
      }
    }
    return text;
  }

  StudbookEdit& edit_;
  /// The journal entries of the rows that were added or removed.
  std::map<std::pair<std::string, row_number>, std::vector<const journal_cell*>> whole_;
  std::map<std::string, std::size_t> lost_;  ///< how many values were lost, by the name of the removed column
  std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> changeLines(StudbookEdit& edit) {
  return ChangeWriter(edit).write();
}

std::string shownCell(const std::string& cell) {
  return cell.empty() ? "(empty)" : cell;
}

std::string fieldTitle(SQLite::Database& database, const std::string& table, const std::string& field) {
  if (!field.starts_with("user_")) {
    return field;
  }
  SQLite::Statement query(database,
                          "SELECT title FROM columns WHERE of_table = ?1 AND field = ?2 UNION ALL "
                          "SELECT title.before FROM change_cells AS title JOIN change_cells AS field "
                          "ON title.\"row\" = field.\"row\" AND title.change = field.change "
                          "WHERE title.of_table = 'columns' AND title.field = 'title' "
                          "AND field.of_table = 'columns' AND field.field = 'field' AND field.before = ?2 LIMIT 1");
  query.bind(1, table);
  query.bind(2, field);
  return query.executeStep() ? query.getColumn(0).getString() : field;
}

}  // namespace spx::console
