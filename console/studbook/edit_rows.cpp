#include "console/studbook/edit_rows.h"

#include <algorithm>
#include <optional>

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/support/text.h"
#include "spx/views/predicates.h"

#include "console/base/assignment.h"
#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/studbook/file_rows.h"
#include "console/studbook/load_studbook.h"
#include "console/studbook/schema.h"
#include "console/studbook/studbook_file.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

class StudbookEdit {
 public:
  StudbookEdit(const std::string& file, std::string table)
      : file_(std::make_shared<StudbookFile>(file, FILE_ACCESS::WRITE)),
        table_(std::move(table)),
        columns_(storedColumns(database(), table_)) {}

  /// The row of the animal; none when there is no such animal.
  std::optional<std::int64_t> findAnimal(const std::string& id) {
    SQLite::Statement query(database(), "SELECT min(\"row\"), count(*) FROM animals WHERE id = ?");
    query.bind(1, id);
    query.executeStep();
    const int count = query.getColumn(1);
    if (count > 1) {
      throw Failure(file_->path() + ": " + std::to_string(count) + " animals have the ID " + quotedText(id) +
                    "; nothing was changed");
    }
    if (count == 0) {
      return std::nullopt;
    }
    return query.getColumn(0).getInt64();
  }

  std::int64_t needAnimal(const std::string& id) {
    const auto row = findAnimal(id);
    if (!row) {
      throw Failure(file_->path() + ": there is no animal " + quotedText(id));
    }
    return *row;
  }

  /// The names of the columns in the studbook file; fields that the table did not have yet become
  /// its last columns.
  std::vector<std::string> columnNames(const std::vector<field_value>& values) {
    std::vector<std::string> names;
    for (const field_value& each : values) {
      names.push_back(columnName(each.field));
      if (names.back() == "id") {
        throw UsageError("the ID of an animal cannot be set");
      }
      if (std::count(names.begin(), names.end(), names.back()) > 1) {
        throw UsageError("the field " + quotedText(each.field) + " is given twice");
      }
    }
    return names;
  }

  /// Makes sure that the table has the column of a field.
  std::string needField(const std::string& field) {
    const auto stored =
        std::find_if(columns_.begin(), columns_.end(), [&](const auto& column) { return column.field == field; });
    if (stored == columns_.end()) {
      columns_.push_back({field, addColumn(database(), table_, field, field)});
    }
    return field;
  }

  void update(std::int64_t row, const std::vector<field_value>& values) {
    std::string text;
    for (const std::string& name : columnNames(values)) {
      text += (text.empty() ? "" : ", ") + quotedName(name) + " = ?";
    }
    SQLite::Statement change(database(), "UPDATE " + table_ + " SET " + text + " WHERE \"row\" = ?");
    bind(change, values);
    change.bind(static_cast<int>(values.size()) + 1, row);
    change.exec();
  }

  /// Adds an empty row with its first value. @return the row
  template <typename Value>
  std::int64_t insert(const char* column, const Value& value) {
    SQLite::Statement change(database(), "INSERT INTO " + table_ + " (" + column + ") VALUES (?)");
    change.bind(1, value);
    change.exec();
    return database().getLastInsertRowid();
  }

  void finish() {
    checkTables(storedTables(file_), "nothing was changed");
    file_->commit();
  }

  std::vector<std::string> parentsWithoutRecord(const std::vector<field_value>& values) {
    std::vector<std::string> parents;
    for (const field_value& each : values) {
      const std::string field = columnName(each.field);
      const std::string id = qs_lib::allTrim(each.value);
      if ((field == "sire" || field == "dam") && becomesFounder(id) && !findAnimal(id)) {
        parents.push_back(id);
      }
    }
    return parents;
  }

 private:
  SQLite::Database& database() { return file_->database(); }

  std::string columnName(const std::string& typed) {
    const auto fields = findStoredTable(table_).fields;
    const auto with_title = [&](const stored_column& column) { return isSameWord(column.title, typed); };
    for (const table_field& field : fields) {
      if (isSameWord(field.name, typed)) {
        return needField(std::string(field.name));
      }
    }
    const auto column = std::find_if(columns_.begin(), columns_.end(), with_title);
    if (column != columns_.end()) {
      return column->field;
    }
    for (const table_field& field : fields) {
      const auto& others = field.other_titles;
      if (std::any_of(others.begin(), others.end(),
                      [&](auto title) { return !title.empty() && isSameWord(title, typed); })) {
        return needField(std::string(field.name));
      }
    }
    throw UsageError("there is no field " + quotedText(typed) + "; there are " + fieldNames());
  }

  /// The fields of the table and, by their titles, its other columns.
  std::string fieldNames() {
    std::string names;
    const auto fields = findStoredTable(table_).fields;
    for (const table_field& field : fields.subspan(1)) {  // all but the ID
      names += (names.empty() ? "" : ", ") + std::string(field.name);
    }
    for (const stored_column& column : columns_) {
      if (std::none_of(fields.begin(), fields.end(),
                       [&](const table_field& field) { return field.name == column.field; })) {
        names += ", " + column.title;
      }
    }
    return names;
  }

  static void bind(SQLite::Statement& change, const std::vector<field_value>& values) {
    for (std::size_t value = 0; value < values.size(); ++value) {
      change.bind(static_cast<int>(value) + 1, qs_lib::allTrim(values[value].value));
    }
  }

  /// Wild and unknown parents have no record on purpose. Whatever else begins like them is looked
  /// for when the studbook is loaded.
  static bool becomesFounder(const std::string& id) {
    if (isUnknownId(id)) {
      return false;
    }
    return !isPseudoIndividual(id) || isMultiParent(id) || id.front() == 'P';
  }

  std::shared_ptr<StudbookFile> file_;
  std::string table_;
  std::vector<stored_column> columns_;
};

/// Runs a change; what SQLite has against it becomes a failure of that file.
template <typename Change>
auto change(const std::string& file, const char* table, Change make) {
  try {
    StudbookEdit edit(file, table);
    return make(edit);
  } catch (const SQLite::Exception& error) {
    failFor(file, error);
  }
}

}  // namespace

field_value parseFieldValue(const std::string& text) {
  const assignment split = splitAssignment(text, "FIELD=VALUE");
  return {split.name, split.value};
}

std::vector<std::string> setAnimal(const std::string& file, const std::string& id,
                                   const std::vector<field_value>& values) {
  return change(file, "animals", [&](StudbookEdit& edit) {
    edit.update(edit.needAnimal(id), values);
    auto parents = edit.parentsWithoutRecord(values);
    edit.finish();
    return parents;
  });
}

std::vector<std::string> addAnimal(const std::string& file, const std::string& id,
                                   const std::vector<field_value>& values) {
  return change(file, "animals", [&](StudbookEdit& edit) {
    if (edit.findAnimal(id)) {
      throw Failure(file + ": there is an animal " + quotedText(id) + " already");
    }
    const std::int64_t row = edit.insert("id", id);
    if (!values.empty()) {
      edit.update(row, values);
    }
    auto parents = edit.parentsWithoutRecord(values);
    edit.finish();
    return parents;
  });
}

void addEvent(const std::string& file, const std::string& id, const std::vector<field_value>& values) {
  change(file, "events", [&](StudbookEdit& edit) {
    for (const char* field : {"id", "date", "event"}) {
      edit.needField(field);
    }
    edit.update(edit.insert("animal", edit.needAnimal(id)), values);
    edit.finish();
  });
}

}  // namespace spx::console
