#include "console/edits/field_edits.h"

#include <algorithm>

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/support/text.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/studbook/schema.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

bool isOwnField(const std::string& table, const std::string& word) {
  const auto fields = findStoredTable(table).fields;
  return std::any_of(fields.begin(), fields.end(), [&](const table_field& field) {
    return isSameWord(field.name, word) ||
           std::any_of(field.other_titles.begin(), field.other_titles.end(),
                       [&](auto title) { return !title.empty() && isSameWord(title, word); });
  });
}

/// The user-defined columns of a table.
std::vector<stored_column> userColumns(StudbookEdit& edit, const std::string& table) {
  std::vector<stored_column> columns = storedColumns(edit.database(), table);
  std::erase_if(columns, [](const stored_column& column) { return !column.field.starts_with("user_"); });
  return columns;
}

stored_column needUserColumn(StudbookEdit& edit, const std::string& table, const std::string& title) {
  const std::vector<stored_column> columns = userColumns(edit, table);
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const stored_column& column) { return isSameWord(column.title, title); });
  if (found != columns.end()) {
    return *found;
  }
  if (isOwnField(table, title)) {
    throw UsageError(quotedText(title) + " is a built-in field; only your own fields can be renamed or removed");
  }
  std::vector<std::string> titles;
  for (const stored_column& column : columns) {
    titles.push_back(column.title);
  }
  throw UsageError("the table of " + table + " has no field " + quotedText(title) + " of your own" +
                   suggestion(title, titles));
}

std::string newTitle(StudbookEdit& edit, const std::string& table, const std::string& typed) {
  std::string title = qs_lib::allTrim(typed);
  if (title.empty()) {
    throw UsageError("a field needs a name");
  }
  if (isOwnField(table, title)) {
    throw UsageError(quotedText(title) + " is a built-in field; choose another name");
  }
  const std::vector<stored_column> columns = userColumns(edit, table);
  if (std::any_of(columns.begin(), columns.end(),
                  [&](const stored_column& column) { return isSameWord(column.title, title); })) {
    throw UsageError("there is already a field " + quotedText(title));
  }
  return title;
}

/// The row of a column in the list of columns.
row_number rowOfColumn(StudbookEdit& edit, const std::string& table, const stored_column& column) {
  for (const row_number row : edit.find("columns", "field", column.field)) {
    if (edit.cell("columns", row, "of_table") == table) {
      return row;
    }
  }
  throw Failure(edit.path() + ": the list of columns has no " + quotedText(column.title));
}

}  // namespace

void addField(StudbookEdit& edit, const std::string& table, const std::string& title) {
  edit.needField(table, "id");
  edit.addUserField(table, newTitle(edit, table, title));
}

void renameField(StudbookEdit& edit, const std::string& table, const std::string& title, const std::string& new_title) {
  const stored_column column = needUserColumn(edit, table, title);
  edit.set("columns", rowOfColumn(edit, table, column), "title", newTitle(edit, table, new_title));
}

void removeField(StudbookEdit& edit, const std::string& table, const std::string& title) {
  const stored_column column = needUserColumn(edit, table, title);
  for (const row_number row : edit.rows(table)) {
    edit.set(table, row, column.field, "");
  }
  edit.remove("columns", rowOfColumn(edit, table, column));
}

}  // namespace spx::console
