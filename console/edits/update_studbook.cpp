#include "console/edits/update_studbook.h"

#include <algorithm>
#include <set>
#include <utility>

#include "console/base/failure.h"
#include "console/edits/change_text.h"
#include "console/edits/hand_edits.h"
#include "console/studbook/schema.h"

namespace spx::console {
namespace {

constexpr std::size_t NONE = EditionTable::NONE;

class StudbookUpdate {
 public:
  StudbookUpdate(StudbookEdit& edit, const edition& table, HAND_EDITS hand_edits)
      : edit_(edit), table_(table), policy_(hand_edits), hand_(edit), former_(readEdition(edit.tables())) {}

  void run() {
    const edition_differences differences = compareEditions(former_, table_, hand_.formerIds());
    for (const row_difference& row : differences.rows) {
      apply(row);
    }
    if (policy_ == HAND_EDITS::ASK && !taken_back_.empty()) {
      refuse();
    }
    noteCounts(differences);
    noteWhatStays(differences);
  }

 private:
  void apply(const row_difference& row) {
    switch (row.change) {
      case ROW_CHANGE::ADDED:
        return add(row);
      case ROW_CHANGE::REMOVED:
        return remove(row);
      case ROW_CHANGE::CHANGED:
      case ROW_CHANGE::RENAMED:
        return change(row);
    }
  }

  void add(const row_difference& row) {
    const bool is_event = row.table == "events";
    const row_number animal = is_event ? animalOf(row) : 0;
    if (is_event && animal == 0) {
      return;  // its animal stays removed
    }
    const std::string text = is_event ? row.animal + " " + row.name : row.table == "animals" ? row.animal : row.name;
    if (hand_.hasRemoved(row.table, text) && !takesBack(describe(row) + " was removed by hand")) {
      return;
    }
    std::vector<field_value> values;
    const EditionTable& rows = tableOf(table_, row.table);
    for (std::size_t column = 0; column < rows.columns().size(); ++column) {
      const std::string field = columnOf(row.table, rows.columns()[column]);
      if (!field.empty() && (!is_event || field != "id")) {
        values.push_back({field, std::string(rows.cell(row.after, column))});
      }
    }
    if (is_event) {
      values.insert(values.begin(), {"animal", std::to_string(animal)});
    }
    const row_number added = edit_.insert(row.table, values);
    if (row.table == "animals") {
      added_animals_[row.after] = added;
    }
  }

  void remove(const row_difference& row) {
    const row_number number = rowBefore(row);
    if (hand_.hasRow(row.table, number) && !takesBack(describe(row) + " was added by hand")) {
      return;
    }
    if (hand_.hasCellOf(row.table, number) &&
        !takesBack(describe(row) + " was changed by hand, and the table lacks it")) {
      return;
    }
    if (row.table == "animals" && hasEventByHand(number) &&
        !takesBack(describe(row) + " has events entered by hand, and the table lacks it")) {
      return;
    }
    if (row.table == "animals") {
      for (const row_number event : edit_.find("events", "animal", std::to_string(number))) {
        edit_.remove("events", event);
      }
    }
    edit_.remove(row.table, number);
  }

  bool hasEventByHand(row_number animal) {
    const std::vector<row_number> events = edit_.find("events", "animal", std::to_string(animal));
    return std::any_of(events.begin(), events.end(), [this](row_number event) {
      return hand_.hasRow("events", event) || hand_.hasCellOf("events", event);
    });
  }

  void change(const row_difference& row) {
    const row_number number = rowBefore(row);
    for (const cell_difference& cell : row.cells) {
      const std::string field = columnOf(row.table, cell.column);
      if (field.empty()) {
        continue;
      }
      if (hand_.hasCell(row.table, number, field) &&
          !takesBack(describe(row) + ": " + cell.column.title + " " + shownCell(cell.before) + ", in the table " +
                     shownCell(cell.after))) {
        continue;
      }
      edit_.set(row.table, number, field, cell.after);
    }
  }

  /// Notes a hand edit that the table would undo. @return whether the table may undo it
  bool takesBack(const std::string& what) {
    taken_back_.push_back(what);
    return policy_ == HAND_EDITS::THEIRS;
  }

  [[noreturn]] void refuse() const {
    const std::size_t count = taken_back_.size();
    std::string text = "the table would take back " + std::to_string(count) + (count == 1 ? " edit" : " edits") +
                       " made by hand; nothing was changed:";
    for (const std::string& each : taken_back_) {
      text += "\n  " + each;
    }
    throw Failure(text + "\n  --ours keeps the edits, --theirs takes the table's values");
  }

  void noteCounts(const edition_differences& differences) {
    const auto count = [&](ROW_CHANGE change) {
      return std::to_string(std::count_if(differences.rows.begin(), differences.rows.end(), [&](const auto& row) {
        return row.table == "animals" && row.change == change;
      }));
    };
    if (policy_ == HAND_EDITS::OURS && !taken_back_.empty()) {
      return edit_.note(std::to_string(taken_back_.size()) + (taken_back_.size() == 1
                                                                  ? " edit made by hand stays as it is"
                                                                  : " edits made by hand stay as they are"));
    }
    const std::string renamed = count(ROW_CHANGE::RENAMED);
    edit_.note("animals: " + count(ROW_CHANGE::ADDED) + " added, " + count(ROW_CHANGE::CHANGED) + " changed, " +
               count(ROW_CHANGE::REMOVED) + " removed" +
               (renamed == "0" ? "" : ", " + renamed + " renamed (a guess: same birth date, parents and sex)"));
  }

  void noteWhatStays(const edition_differences& differences) {
    const auto note = [&](const std::vector<std::string>& names, const char* one, const char* several) {
      std::string list;
      for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
      }
      if (!names.empty()) {
        edit_.note(std::string(names.size() == 1 ? one : several) + " only in the studbook, kept: " + list);
      }
    };
    note(differences.lost_fields, "a field", "fields");
    note(differences.lost_tables, "a table", "tables");
  }

  static const EditionTable& tableOf(const edition& book, const std::string& table) {
    return table == "animals"     ? book.animals
           : table == "events"    ? book.events
           : table == "locations" ? book.locations
                                  : book.programs;
  }

  row_number rowBefore(const row_difference& row) const {
    return static_cast<row_number>(tableOf(former_, row.table).line(row.before));
  }

  /// The row of an event's animal; 0 when the animal is not in the updated studbook.
  row_number animalOf(const row_difference& event) const {
    if (event.animal_before != NONE) {
      return static_cast<row_number>(former_.animals.line(event.animal_before));
    }
    const auto added = added_animals_.find(event.animal_after);
    return added == added_animals_.end() ? 0 : added->second;
  }

  std::string describe(const row_difference& row) const {
    return row.table == "animals" ? row.animal : row.table == "events" ? row.animal + ": event " + row.name : row.name;
  }

  /// The column in the studbook file, which is added if it is missing; empty where it was removed by hand and
  /// stays so.
  std::string columnOf(const std::string& table, const edition_column& column) {
    const std::tuple key(table, column.field, column.title);
    if (const auto known = columns_.find(key); known != columns_.end()) {
      return known->second;
    }
    std::string& name = columns_[key];
    if (!column.field.empty()) {
      edit_.needField(table, column.field);
      return name = column.field;
    }
    const EditionTable& former = tableOf(former_, table);
    const std::size_t known = former.columnLike(column);
    if (known == NONE) {
      name = hand_.renamedField(table, column.title);
      if (!name.empty()) {
        return name;
      }
      const bool stays_gone = hand_.hasRemoved("columns", table + " " + column.title) &&
                              !takesBack("field " + column.title + " was removed by hand");
      return name = stays_gone ? std::string() : edit_.addUserField(table, column.title);
    }
    return name = storedColumns(edit_.database(), table)[known].field;
  }

  StudbookEdit& edit_;
  const edition& table_;
  HAND_EDITS policy_;
  HandEdits hand_;
  edition former_;
  std::map<std::size_t, row_number> added_animals_;  ///< by their rows in the table
  std::map<std::tuple<std::string, std::string, std::string>, std::string> columns_;
  std::vector<std::string> taken_back_;
};

}  // namespace

void updateStudbook(StudbookEdit& edit, const edition& table, HAND_EDITS hand_edits) {
  StudbookUpdate(edit, table, hand_edits).run();
}

}  // namespace spx::console
