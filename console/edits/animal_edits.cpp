#include "console/edits/animal_edits.h"

#include <algorithm>

#include <SQLiteCpp/SQLiteCpp.h>

#include "spx/core/identifiers.h"
#include "spx/support/text.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/edits/cell_meaning.h"
#include "console/edits/event_edits.h"
#include "console/studbook/schema.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

std::string newId(StudbookEdit& edit, const std::string& typed) {
  std::string id = qs_lib::allTrim(typed);
  if (isUnknownId(id)) {
    throw UsageError(quotedText(id) + " means an unknown animal and cannot be an ID");
  }
  if (!edit.find("animals", "id", id).empty()) {
    throw Failure("there is already an animal " + quotedText(id));
  }
  return id;
}

void setValues(StudbookEdit& edit, row_number animal, const std::vector<field_value>& values) {
  for (const field_value& each : values) {
    edit.set("animals", animal, each.field, each.value);
  }
}

/// A parent that has no record may be meant so; mostly it is a slip.
void refuseUnknownParents(StudbookEdit& edit, const std::vector<field_value>& values, edit_freedom freedom) {
  for (const field_value& each : values) {
    const bool is_known = !isParentField(each.field) || isUnknownId(each.value) || isPseudoIndividual(each.value) ||
                          !edit.find("animals", "id", each.value).empty();
    if (!is_known && !freedom.anyway && !freedom.allow_new) {
      throw Failure("there is no animal " + quotedText(each.value) + " to be the " + each.field +
                    suggestion(each.value, knownIds(edit)) + "\n  --new takes it as a parent without a record");
    }
  }
}

/// The rows that name an animal as a parent, in either of the two columns.
std::vector<row_number> offspringOf(StudbookEdit& edit, const std::string& id) {
  std::vector<row_number> rows = edit.find("animals", "sire", id);
  const std::vector<row_number> of_dam = edit.find("animals", "dam", id);
  rows.insert(rows.end(), of_dam.begin(), of_dam.end());
  return rows;
}

void renameParent(StudbookEdit& edit, const std::string& id, const std::string& new_id) {
  for (const char* field : {"sire", "dam"}) {
    for (const row_number row : edit.find("animals", field, id)) {
      edit.set("animals", row, field, new_id);
    }
  }
}

void refuseParent(StudbookEdit& edit, const std::string& id) {
  const std::vector<row_number> offspring = offspringOf(edit, id);
  if (offspring.empty()) {
    return;
  }
  std::string names;
  constexpr std::size_t SHOWN = 5;
  for (std::size_t next = 0; next < std::min(SHOWN, offspring.size()); ++next) {
    names += (next == 0 ? "" : ", ") + edit.cell("animals", offspring[next], "id");
  }
  throw Failure(id + " is a parent of " + std::to_string(offspring.size()) +
                (offspring.size() == 1 ? " animal (" : " animals (") + names +
                (offspring.size() > SHOWN ? ", ..." : "") +
                ")\n  --anyway removes it; it is then a parent without a record");
}

struct difference {
  std::string field;
  std::string kept;
  std::string other;
};

bool isGiven(const std::vector<field_value>& values, const std::string& field) {
  return std::any_of(values.begin(), values.end(), [&](const field_value& each) { return each.field == field; });
}

/// Fills the empty cells of one animal from another. @return the cells that contradict each other
std::vector<difference> fillFrom(StudbookEdit& edit, row_number kept, row_number other,
                                 const std::vector<field_value>& given) {
  std::vector<difference> differences;
  for (const stored_column& column : storedColumns(edit.database(), "animals")) {
    const std::string mine = edit.cell("animals", kept, column.field);
    const std::string theirs = edit.cell("animals", other, column.field);
    if (column.field == "id" || isGiven(given, column.field) || sameMeaning(column.field, mine, theirs) ||
        sameMeaning(column.field, theirs, "")) {
      continue;
    }
    if (sameMeaning(column.field, mine, "")) {
      edit.set("animals", kept, column.field, theirs);
    } else {
      differences.push_back({column.title, mine, theirs});
    }
  }
  return differences;
}

void refuseDifferences(const std::string& kept, const std::string& other, const std::vector<difference>& differences) {
  if (differences.empty()) {
    return;
  }
  std::string text = kept + " and " + other + " contradict each other:";
  for (const difference& each : differences) {
    text += "\n  " + each.field + ": " + each.kept + " and " + each.other;
  }
  throw Failure(text + "\n  give the right values as FIELD=VALUE; --anyway keeps those of " + kept);
}

}  // namespace

row_number addAnimal(StudbookEdit& edit, const std::string& id, const std::vector<field_value>& values,
                     edit_freedom freedom) {
  const std::string stud_id = newId(edit, id);
  std::vector<field_value> known = KnownNames(edit, "animals", freedom.allow_new).values(values);
  refuseUnknownParents(edit, known, freedom);
  known.insert(known.begin(), {"id", stud_id});
  return edit.insert("animals", known);
}

void setAnimals(StudbookEdit& edit, const animal_choice& choice, const std::vector<field_value>& values,
                edit_freedom freedom) {
  const std::vector<row_number> animals = findAnimals(edit, choice);
  const std::vector<field_value> known = KnownNames(edit, "animals", freedom.allow_new).values(values);
  refuseUnknownParents(edit, known, freedom);
  for (const row_number animal : animals) {
    setValues(edit, animal, known);
  }
}

void removeAnimals(StudbookEdit& edit, const animal_choice& choice, edit_freedom freedom) {
  for (const row_number animal : findAnimals(edit, choice)) {
    const std::string id = edit.cell("animals", animal, "id");
    for (const row_number event : edit.find("events", "animal", std::to_string(animal))) {
      edit.remove("events", event);
    }
    edit.remove("animals", animal);
    if (!freedom.anyway && edit.find("animals", "id", id).empty()) {
      refuseParent(edit, id);
    }
  }
}

void renameAnimal(StudbookEdit& edit, const std::string& id, const std::string& new_id) {
  const row_number animal = findAnimal(edit, id);
  const std::string former = edit.cell("animals", animal, "id");
  const std::string fresh = newId(edit, new_id);
  const std::vector<row_number> namesakes = edit.find("animals", "id", former);
  edit.set("animals", animal, "id", fresh);
  if (namesakes.front() == animal) {
    renameParent(edit, former, fresh);
  } else if (!offspringOf(edit, former).empty()) {
    edit.note("the offspring of " + former + " stay with the first animal of that ID");
  }
}

void mergeAnimals(StudbookEdit& edit, const std::string& kept, const std::string& other,
                  const std::vector<field_value>& values, edit_freedom freedom) {
  const row_number stays = findAnimal(edit, kept);
  const row_number goes = findAnimal(edit, other);
  if (stays == goes) {
    throw UsageError(kept + " and " + other + " are the same animal");
  }
  const std::vector<field_value> known = KnownNames(edit, "animals", freedom.allow_new).values(values);
  refuseUnknownParents(edit, known, freedom);
  const std::vector<difference> differences = fillFrom(edit, stays, goes, known);
  if (!freedom.anyway) {
    refuseDifferences(kept, other, differences);
  }
  setValues(edit, stays, known);
  moveEvents(edit, goes, stays);
  const std::string former = edit.cell("animals", goes, "id");
  const std::string id = edit.cell("animals", stays, "id");
  edit.remove("animals", goes);
  if (former != id && edit.find("animals", "id", former).empty()) {
    renameParent(edit, former, id);
  }
}

void endAnimals(StudbookEdit& edit, const animal_choice& choice, const std::string& event, const std::string& date,
                const std::string& place, edit_freedom freedom) {
  std::vector<field_value> values = {{"death_date", date}, {"death_event", event}};
  if (!place.empty()) {
    values.push_back({"death_location", place});
  }
  for (const row_number animal : findAnimals(edit, choice)) {
    const std::string former = edit.cell("animals", animal, "death_date");
    if (!freedom.anyway && !isUnknown(former)) {
      const std::string how = edit.cell("animals", animal, "death_event");
      throw Failure(animalName(edit, animal) + " already has an end: " + (how.empty() ? "death" : how) + " on " +
                    former + "\n  --anyway replaces it");
    }
  }
  setAnimals(edit, choice, values, freedom);
}

}  // namespace spx::console
