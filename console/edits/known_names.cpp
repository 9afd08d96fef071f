#include "console/edits/known_names.h"

#include <algorithm>
#include <utility>

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/support/text.h"

#include "console/base/assignment.h"
#include "console/base/display_text.h"
#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/edits/cell_meaning.h"
#include "console/studbook/schema.h"
#include "console/tables/animals_table.h"
#include "console/tables/date_reading.h"
#include "console/tables/event_cells.h"
#include "console/tables/folded_text.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr std::size_t LIST_WIDTH = 76;  ///< of a terminal's line, without the indentation

std::vector<std::string> texts(StudbookEdit& edit, const std::string& select) {
  try {
    SQLite::Statement query(edit.database(), select);
    std::vector<std::string> found;
    while (query.executeStep()) {
      found.push_back(query.getColumn(0).getString());
    }
    return found;
  } catch (const SQLite::Exception& error) {
    failFor(edit.path(), error);
  }
}

bool contains(const std::vector<std::string>& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// Differences in capital letters, blanks and accents do not count.
std::string nearest(const std::string& typed, const std::vector<std::string>& words) {
  const std::string folded = foldedText(typed);
  const auto same = std::find_if(words.begin(), words.end(), [&](const std::string& word) {
    return isSameWord(word, typed) || foldedText(word) == folded;
  });
  return same != words.end() ? "; did you mean \"" + *same + "\"?" : suggestion(typed, words);
}

/// A text that could not be read when the studbook is loaded.
void checkText(const std::string& field, const std::string& value) {
  const auto refuse = [&](const std::string& reason) { throw UsageError(field + ": " + reason); };
  if (field.ends_with("date") && !parseDate(value)) {
    refuse(dateFault(value));
  }
  if (field == "sex" && !parseSex(value)) {
    refuse(quotedText(value) + " is not a " + SEX_WORDS);
  }
  if (field.ends_with("event") && !isMissing(value) && !parseMoveType(value)) {
    refuse(quotedText(value) + " is not a " + KIND_OF_EVENT);
  }
}

}  // namespace

KnownNames::KnownNames(StudbookEdit& edit, std::string table, bool allow_new)
    : edit_(edit), table_(std::move(table)), allow_new_(allow_new) {}

std::string KnownNames::field(const std::string& typed) {
  const auto fields = findStoredTable(table_).fields;
  const auto columns = storedColumns(edit_.database(), table_);
  for (const table_field& field : fields) {
    if (isSameWord(field.name, typed)) {
      edit_.needField(table_, std::string(field.name));
      return std::string(field.name);
    }
  }
  for (const stored_column& column : columns) {
    if (isSameWord(column.title, typed)) {
      return column.field;
    }
  }
  for (const table_field& field : fields) {
    if (std::any_of(field.other_titles.begin(), field.other_titles.end(),
                    [&](auto title) { return !title.empty() && isSameWord(title, typed); })) {
      edit_.needField(table_, std::string(field.name));
      return std::string(field.name);
    }
  }
  if (allow_new_) {
    return edit_.addUserField(table_, typed);
  }
  const std::vector<std::string> names = fieldNames();
  std::string list;
  for (const std::string& name : names) {
    list += (list.empty() ? "" : ", ") + name;
  }
  std::string message = "there is no field " + quotedText(typed) + nearest(typed, names);
  for (const std::string& line : wrapped("fields: " + list, LIST_WIDTH)) {
    message += "\n  " + line;
  }
  throw UsageError(message + "\n  --new adds a field");
}

std::vector<std::string> KnownNames::fieldNames() {
  std::vector<std::string> names;
  const auto fields = findStoredTable(table_).fields;
  for (const table_field& field : fields) {
    if (field.name != "id" || table_ == "locations") {
      names.emplace_back(field.name);
    }
  }
  for (const stored_column& column : storedColumns(edit_.database(), table_)) {
    if (std::none_of(fields.begin(), fields.end(),
                     [&](const table_field& field) { return field.name == column.field; })) {
      names.push_back(column.title);
    }
  }
  return names;
}

std::vector<field_value> KnownNames::values(const std::vector<field_value>& typed) {
  std::vector<field_value> values;
  for (const field_value& each : typed) {
    field_value known{field(each.field), qs_lib::allTrim(each.value)};
    if (known.field == "id" && table_ != "locations") {
      throw UsageError("the ID cannot be set like a field; spx animal rename OLD NEW changes it everywhere");
    }
    if (std::any_of(values.begin(), values.end(), [&](const field_value& one) { return one.field == known.field; })) {
      throw UsageError("the field " + quotedText(each.field) + " is given twice");
    }
    check(known.field, known.value);
    values.push_back(std::move(known));
  }
  return values;
}

void KnownNames::check(const std::string& field, const std::string& value) {
  checkText(field, value);
  if (allow_new_ || isUnknownId(value)) {
    return;
  }
  if (isPlaceField(field)) {
    const std::vector<std::string> places = knownPlaces(edit_);
    if (!contains(places, value)) {
      throw UsageError("there is no location " + quotedText(value) + nearest(value, places) +
                       "\n  --new adds it as a new location; spx location add gives it a place in the list");
    }
  }
  if (field == "taxon" && !isUnknown(value)) {
    const std::vector<std::string> taxa = texts(edit_, "SELECT DISTINCT trim(taxon) FROM animals WHERE taxon <> ''");
    if (!contains(taxa, value)) {
      throw UsageError("there is no taxon " + quotedText(value) + nearest(value, taxa) +
                       "\n  --new adds it as a new taxon");
    }
  }
}

std::vector<std::string> knownPlaces(StudbookEdit& edit) {
  return texts(edit,
               "SELECT name FROM locations WHERE name <> '' UNION SELECT id FROM locations UNION "
               "SELECT birth_location FROM animals UNION SELECT death_location FROM animals UNION "
               "SELECT location FROM events");
}

std::vector<std::string> knownIds(StudbookEdit& edit) {
  return texts(edit, "SELECT id FROM animals ORDER BY \"row\"");
}

field_value parseFieldValue(const std::string& text) {
  const assignment split = splitAssignment(text, "FIELD=VALUE");
  return {split.name, split.value};
}

}  // namespace spx::console
