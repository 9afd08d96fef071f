#include "console/edits/location_edits.h"

#include <algorithm>
#include <optional>
#include <set>

#include "spx/support/text.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr int LAST_NUMBER = 255;

std::string identifierOf(StudbookEdit& edit, row_number location) {
  return edit.cell("locations", location, "id");
}

/// How many numbers an identifier has.
std::size_t depthOf(const std::string& identifier) {
  return static_cast<std::size_t>(std::count(identifier.begin(), identifier.end(), '.')) + 1;
}

/// The row of the location; nothing when the table does not have it.
std::optional<row_number> findLocation(StudbookEdit& edit, const std::string& typed) {
  const std::string text = qs_lib::allTrim(typed);
  std::vector<row_number> rows = edit.find("locations", "name", text);
  if (rows.size() > 1) {
    throw Failure(quotedText(text) + " is the name of several locations; give the identifier");
  }
  if (rows.empty()) {
    rows = edit.find("locations", "id", text);
  }
  return rows.empty() ? std::nullopt : std::optional(rows.front());
}

row_number needLocation(StudbookEdit& edit, const std::string& typed) {
  const auto location = findLocation(edit, typed);
  if (!location) {
    throw Failure("the table of locations has no " + quotedText(typed) + suggestion(typed, knownPlaces(edit)));
  }
  return *location;
}

/// The rows of the locations that lie within one.
std::vector<row_number> locationsWithin(StudbookEdit& edit, const std::string& identifier) {
  std::vector<row_number> within = edit.rows("locations");
  std::erase_if(within, [&](row_number row) { return !identifierOf(edit, row).starts_with(identifier + "."); });
  return within;
}

void refuseToEmpty(StudbookEdit& edit, row_number location) {
  const std::string identifier = identifierOf(edit, location);
  const std::size_t within = locationsWithin(edit, identifier).size();
  if (within != 0) {
    throw Failure(identifier + " contains " + std::to_string(within) + (within == 1 ? " location" : " locations") +
                  "; move those first");
  }
}

/// The names of the locations that no other location contains.
std::string topLocations(StudbookEdit& edit) {
  std::string names;
  for (const row_number row : edit.rows("locations")) {
    if (depthOf(identifierOf(edit, row)) == 1) {
      names += (names.empty() ? "" : ", ") + edit.cell("locations", row, "name");
    }
  }
  return names;
}

std::size_t deepestLevel(StudbookEdit& edit) {
  std::size_t depth = 1;
  for (const row_number row : edit.rows("locations")) {
    depth = std::max(depth, depthOf(identifierOf(edit, row)));
  }
  return depth;
}

/// The first free identifier directly within the given one.
std::string freeIdentifier(StudbookEdit& edit, const std::string& within) {
  std::set<std::string> taken;
  for (const row_number row : edit.rows("locations")) {
    taken.insert(identifierOf(edit, row));
  }
  for (int number = 1; number <= LAST_NUMBER; ++number) {
    const std::string identifier = (within.empty() ? "" : within + ".") + std::to_string(number);
    if (!taken.contains(identifier)) {
      return identifier;
    }
  }
  throw Failure("all identifiers " + within + ".1 to " + within + "." + std::to_string(LAST_NUMBER) + " are taken");
}

std::string newIdentifier(StudbookEdit& edit, const std::string& within) {
  if (within.empty() && deepestLevel(edit) > 1) {
    throw UsageError("say which location contains it with --in LOCATION (" + topLocations(edit) +
                     ", or a location in one of them), or give its identifier as id=NUMBERS");
  }
  return freeIdentifier(edit, within.empty() ? "" : identifierOf(edit, needLocation(edit, within)));
}

/// The name of the level at that depth.
std::string levelName(StudbookEdit& edit, std::size_t depth) {
  for (const row_number row : edit.rows("locations")) {
    if (depthOf(identifierOf(edit, row)) == depth) {
      return edit.cell("locations", row, "level");
    }
  }
  return std::string();
}

/// Replaces a location's name or identifier wherever animals and events use it.
void replacePlace(StudbookEdit& edit, const std::string& from, const std::string& to) {
  if (from.empty() || from == to) {
    return;
  }
  static constexpr std::pair<const char*, const char*> CELLS[] = {
      {"animals", "birth_location"}, {"animals", "death_location"}, {"events", "location"}};
  for (const auto& [table, field] : CELLS) {
    for (const row_number row : edit.find(table, field, from)) {
      edit.set(table, row, field, to);
    }
  }
}

void refuseTaken(StudbookEdit& edit, const std::string& text) {
  const auto taken = findLocation(edit, text);
  if (taken) {
    throw Failure("there is already a location " + identifierOf(edit, *taken) + ", " +
                  quotedText(edit.cell("locations", *taken, "name")));
  }
}

}  // namespace

void addLocation(StudbookEdit& edit, const std::string& name, const std::string& within,
                 const std::vector<field_value>& values) {
  for (const char* field : {"level", "id", "name"}) {
    edit.needField("locations", field);
  }
  std::vector<field_value> cells = KnownNames(edit, "locations", false).values(values);
  const auto given = [&](const char* field) {
    return std::find_if(cells.begin(), cells.end(), [&](const field_value& each) { return each.field == field; });
  };
  const std::string title = qs_lib::allTrim(name);
  refuseTaken(edit, title);
  if (given("id") == cells.end()) {
    cells.push_back({"id", newIdentifier(edit, within)});
  } else if (!within.empty()) {
    throw UsageError("--in and id= both say where the location belongs; give only one of them");
  }
  const std::string identifier = given("id")->value;
  refuseTaken(edit, identifier);
  if (given("level") == cells.end()) {
    cells.push_back({"level", levelName(edit, depthOf(identifier))});
  }
  cells.push_back({"name", title});
  edit.insert("locations", cells);
}

void setLocation(StudbookEdit& edit, const std::string& location, const std::vector<field_value>& values) {
  const row_number row = needLocation(edit, location);
  for (const field_value& each : KnownNames(edit, "locations", false).values(values)) {
    const std::string former = edit.cell("locations", row, each.field);
    if (each.value == former) {
      continue;
    }
    if (each.field == "id") {
      refuseToEmpty(edit, row);
    }
    if (each.field == "id" || each.field == "name") {
      refuseTaken(edit, each.value);
      replacePlace(edit, former, each.value);
    }
    edit.set("locations", row, each.field, each.value);
  }
}

void mergeLocations(StudbookEdit& edit, const std::string& kept, const std::string& other) {
  const auto stays = findLocation(edit, kept);
  const auto goes = findLocation(edit, other);
  const std::vector<std::string> known = knownPlaces(edit);
  for (const std::string& typed : {kept, other}) {
    if (std::find(known.begin(), known.end(), typed) == known.end()) {
      throw Failure("there is no location " + quotedText(typed) + suggestion(typed, known));
    }
  }
  if (kept == other || (stays && stays == goes)) {
    throw UsageError(kept + " and " + other + " are the same location");
  }
  const std::string name = stays ? edit.cell("locations", *stays, "name") : kept;
  const std::string identifier = stays ? identifierOf(edit, *stays) : kept;
  if (!goes) {
    return replacePlace(edit, other, kept);
  }
  refuseToEmpty(edit, *goes);
  replacePlace(edit, edit.cell("locations", *goes, "name"), name);
  replacePlace(edit, identifierOf(edit, *goes), identifier);
  edit.remove("locations", *goes);
}

}  // namespace spx::console
