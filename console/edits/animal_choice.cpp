#include "console/edits/animal_choice.h"

#include <algorithm>
#include <charconv>

#include "spx/support/text.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/edits/cell_meaning.h"

namespace spx::console {
namespace {

/// Details that distinguish an animal from others with the same ID.
std::string description(StudbookEdit& edit, row_number animal) {
  std::string text;
  for (const char* field : {"sex", "birth_date", "sire", "dam"}) {
    const std::string value = edit.cell("animals", animal, field);
    if (!value.empty()) {
      text +=
          (text.empty() ? "" : ", ") + std::string(field == std::string("birth_date") ? "born" : field) + " " + value;
    }
  }
  return text.empty() ? "nothing else is known" : text;
}

[[noreturn]] void failForSeveral(StudbookEdit& edit, const std::string& id, const std::vector<row_number>& rows) {
  std::string text = std::to_string(rows.size()) + " animals have the ID " + quotedText(id) + "; say which one:";
  for (std::size_t animal = 0; animal < rows.size(); ++animal) {
    text += "\n  " + id + "#" + std::to_string(animal + 1) + "  " + description(edit, rows[animal]);
  }
  throw Failure(text);
}

/// The row that "ID#N" means; 0 when the text is not of that form or there is no such animal.
row_number numberedAnimal(StudbookEdit& edit, const std::string& typed) {
  const std::size_t mark = typed.rfind('#');
  if (mark == std::string::npos) {
    return 0;
  }
  std::size_t number = 0;
  const char* end = typed.data() + typed.size();
  const auto result = std::from_chars(typed.data() + mark + 1, end, number);
  const std::vector<row_number> rows = edit.find("animals", "id", typed.substr(0, mark));
  const bool is_one = result.ec == std::errc() && result.ptr == end && number >= 1 && number <= rows.size();
  return is_one ? rows[number - 1] : 0;
}

}  // namespace

row_number findAnimal(StudbookEdit& edit, const std::string& typed) {
  const std::string id = qs_lib::allTrim(typed);
  const std::vector<row_number> rows = edit.find("animals", "id", id);
  if (rows.size() > 1) {
    failForSeveral(edit, id, rows);
  }
  const row_number row = rows.empty() ? numberedAnimal(edit, id) : rows.front();
  if (row == 0) {
    throw Failure("there is no animal " + quotedText(id) + suggestion(id, knownIds(edit)));
  }
  return row;
}

std::vector<row_number> findAnimals(StudbookEdit& edit, const animal_choice& choice) {
  if (choice.ids.empty() && choice.where.empty()) {
    throw UsageError("no animal is named; give IDs, or choose animals with --where FIELD=VALUE");
  }
  std::vector<row_number> rows;
  for (const std::string& id : choice.ids) {
    const row_number row = findAnimal(edit, id);
    if (std::find(rows.begin(), rows.end(), row) == rows.end()) {
      rows.push_back(row);
    }
  }
  if (choice.ids.empty()) {
    rows = edit.rows("animals");
  }
  rows = rowsWhere(edit, "animals", std::move(rows), choice.where);
  if (rows.empty()) {
    std::string conditions;
    for (const std::string& condition : choice.where) {
      conditions += " --where " + condition;
    }
    throw Failure("no animals match" + conditions);
  }
  return rows;
}

std::string animalName(StudbookEdit& edit, row_number animal) {
  const std::string id = edit.cell("animals", animal, "id");
  const std::vector<row_number> rows = edit.find("animals", "id", id);
  if (rows.size() < 2) {
    return id;
  }
  return id + "#" + std::to_string(std::find(rows.begin(), rows.end(), animal) - rows.begin() + 1);
}

std::vector<row_number> rowsWhere(StudbookEdit& edit, const std::string& table, std::vector<row_number> rows,
                                  const std::vector<std::string>& conditions) {
  for (const std::string& text : conditions) {
    field_value condition = parseFieldValue(text);
    condition.field = KnownNames(edit, table, false).field(condition.field);
    std::erase_if(rows, [&](row_number row) {
      return !sameMeaning(condition.field, edit.cell(table, row, condition.field), condition.value);
    });
  }
  return rows;
}

}  // namespace spx::console
