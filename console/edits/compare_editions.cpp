#include "console/edits/compare_editions.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "console/edits/cell_meaning.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr std::size_t NONE = EditionTable::NONE;

/// The rows of two tables that belong together, and those that have no partner.
struct matched_rows {
  std::vector<std::pair<std::size_t, std::size_t>> pairs;
  std::vector<std::size_t> only_before;
  std::vector<std::size_t> only_after;
};

/// Matches rows by a key; when several share a key, the n-th with the n-th.
matched_rows matchByKey(const EditionTable& before, const EditionTable& after, std::string_view key) {
  std::unordered_map<std::string_view, std::vector<std::size_t>> waiting;
  for (std::size_t row = before.rows(); row-- > 0;) {
    waiting[before.value(row, key)].push_back(row);
  }
  matched_rows matched;
  std::vector<bool> has_partner(before.rows());
  for (std::size_t row = 0; row < after.rows(); ++row) {
    const auto found = waiting.find(after.value(row, key));
    if (found == waiting.end() || found->second.empty()) {
      matched.only_after.push_back(row);
      continue;
    }
    has_partner[found->second.back()] = true;
    matched.pairs.emplace_back(found->second.back(), row);
    found->second.pop_back();
  }
  for (std::size_t row = 0; row < before.rows(); ++row) {
    if (!has_partner[row]) {
      matched.only_before.push_back(row);
    }
  }
  return matched;
}

/// Pairs each column of the second table with the column of the first that means the same.
class ColumnPairs {
 public:
  ColumnPairs(const EditionTable& before, const EditionTable& after) : before_(before), after_(after) {
    for (const edition_column& column : after.columns()) {
      partners_.push_back(before.columnLike(column));
    }
  }

  std::vector<cell_difference> compare(std::size_t row_before, std::size_t row_after) const {
    std::vector<cell_difference> differences;
    for (std::size_t column = 0; column < partners_.size(); ++column) {
      const std::string_view was = partners_[column] == NONE ? "" : before_.cell(row_before, partners_[column]);
      const std::string_view is = after_.cell(row_after, column);
      if (!sameMeaning(after_.columns()[column].field, was, is)) {
        differences.push_back({after_.columns()[column], std::string(was), std::string(is)});
      }
    }
    return differences;
  }

 private:
  const EditionTable& before_;
  const EditionTable& after_;
  std::vector<std::size_t> partners_;
};

std::string text(std::string_view view) {
  return std::string(view);
}

/// Finds animals that are probably in both editions, under different IDs.
class RenameGuess {
 public:
  RenameGuess(const EditionTable& before, const EditionTable& after) : before_(before), after_(after) {}

  void settle(matched_rows& matched) const {
    const auto removed = rowsByBirth(before_, matched.only_before);
    const auto added = rowsByBirth(after_, matched.only_after);
    const std::set<std::string_view> parents = parentsOf(after_);
    for (const auto& [birth, rows] : removed) {
      const auto partner = added.find(birth);
      // Animals with the same birth, such as twins, cannot be told apart.
      if (rows.size() != 1 || partner == added.end() || partner->second.size() != 1) {
        continue;
      }
      if (parents.contains(before_.value(rows.front(), "id"))) {
        continue;  // the second edition still names the animal
      }
      matched.pairs.emplace_back(rows.front(), partner->second.front());
      std::erase(matched.only_before, rows.front());
      std::erase(matched.only_after, partner->second.front());
    }
  }

 private:
  static std::set<std::string_view> parentsOf(const EditionTable& table) {
    std::set<std::string_view> parents;
    for (std::size_t row = 0; row < table.rows(); ++row) {
      parents.insert(table.value(row, "sire"));
      parents.insert(table.value(row, "dam"));
    }
    return parents;
  }

  /// Birth date, parents and sex, which identify an animal without its ID. Empty for an animal without
  /// a birth date.
  static std::string birthOf(const EditionTable& table, std::size_t row) {
    const auto date = parseDate(table.value(row, "birth_date"));
    if (!date || date->day == 0) {
      return std::string();
    }
    std::string birth;
    for (const char* field : {"birth_date", "sire", "dam"}) {
      const std::string_view cell = table.value(row, field);
      birth += isUnknownId(cell) ? "" : text(cell);
      birth += '\n';
    }
    const auto sex = parseSex(table.value(row, "sex"));
    return birth + std::to_string(static_cast<unsigned>(sex.value_or(SEX::UNKNOWN)));
  }

  static std::map<std::string, std::vector<std::size_t>> rowsByBirth(const EditionTable& table,
                                                                     const std::vector<std::size_t>& rows) {
    std::map<std::string, std::vector<std::size_t>> by_birth;
    for (const std::size_t row : rows) {
      const std::string birth = birthOf(table, row);
      if (!birth.empty()) {
        by_birth[birth].push_back(row);
      }
    }
    return by_birth;
  }

  const EditionTable& before_;
  const EditionTable& after_;
};

/// The events of each animal, by the row of the animal.
std::vector<std::vector<std::size_t>> eventsByAnimal(const edition& book) {
  std::vector<std::vector<std::size_t>> events(book.animals.rows());
  std::unordered_map<std::string_view, std::size_t> first_rows;
  for (std::size_t row = 0; row < book.animals.rows(); ++row) {
    first_rows.try_emplace(book.animals.value(row, "id"), row);
  }
  for (std::size_t event = 0; event < book.events.rows(); ++event) {
    const std::string_view id = book.events.value(event, "id");
    std::size_t animal = book.events.animalRow(event);
    if (animal == 0 || animal > events.size() || book.animals.value(animal - 1, "id") != id) {
      const auto first = first_rows.find(id);
      animal = first == first_rows.end() ? 0 : first->second + 1;
    }
    if (animal != 0) {
      events[animal - 1].push_back(event);
    }
  }
  return events;
}

class EditionComparison {
 public:
  EditionComparison(const edition& before, const edition& after, const std::map<std::int64_t, std::string>& former_ids)
      : before_(before), after_(after), former_ids_(former_ids) {}

  edition_differences run() {
    noteColumns(before_.animals, after_.animals);
    compareAnimals();
    if (both(before_.events, after_.events, "events")) {
      noteColumns(before_.events, after_.events);
      compareEvents();
    }
    if (both(before_.locations, after_.locations, "locations")) {
      compareRows("locations", before_.locations, after_.locations, "id");
    }
    if (both(before_.programs, after_.programs, "programs")) {
      compareRows("programs", before_.programs, after_.programs, "name");
    }
    return std::move(found_);
  }

 private:
  /// Whether the rows of a table are compared; not when the second edition lacks the table.
  bool both(const EditionTable& before, const EditionTable& after, const char* name) {
    if (before.isGiven() && !after.isGiven()) {
      found_.lost_tables.emplace_back(name);
    }
    return after.isGiven();
  }

  void noteColumns(const EditionTable& before, const EditionTable& after) {
    for (const edition_column& column : after.columns()) {
      if (before.columnLike(column) == NONE) {
        found_.new_fields.push_back(column.title);
      }
    }
    for (const edition_column& column : before.columns()) {
      if (after.columnLike(column) == NONE) {
        found_.lost_fields.push_back(column.title);
      }
    }
  }

  void settleKnownRenames(matched_rows& matched) const {
    for (std::size_t each = former_ids_.empty() ? 0 : matched.only_before.size(); each-- > 0;) {
      const std::size_t was = matched.only_before[each];
      const auto former = former_ids_.find(static_cast<std::int64_t>(before_.animals.line(was)));
      const auto is = std::find_if(matched.only_after.begin(), matched.only_after.end(), [&](std::size_t row) {
        return former != former_ids_.end() && after_.animals.value(row, "id") == former->second;
      });
      if (is != matched.only_after.end()) {
        matched.pairs.emplace_back(was, *is);
        matched.only_after.erase(is);
        matched.only_before.erase(matched.only_before.begin() + static_cast<std::ptrdiff_t>(each));
      }
    }
  }

  void compareAnimals() {
    matched_rows matched = matchByKey(before_.animals, after_.animals, "id");
    settleKnownRenames(matched);
    RenameGuess(before_.animals, after_.animals).settle(matched);
    const ColumnPairs columns(before_.animals, after_.animals);
    std::sort(matched.pairs.begin(), matched.pairs.end());
    for (const auto& [was, is] : matched.pairs) {
      const bool is_renamed = before_.animals.value(was, "id") != after_.animals.value(is, "id");
      add({"animals", is_renamed ? ROW_CHANGE::RENAMED : ROW_CHANGE::CHANGED, text(after_.animals.value(is, "id")), "",
           was, is, NONE, NONE, columns.compare(was, is)});
    }
    for (const std::size_t row : matched.only_before) {
      found_.rows.push_back(
          {"animals", ROW_CHANGE::REMOVED, text(before_.animals.value(row, "id")), "", row, NONE, NONE, NONE, {}});
    }
    for (const std::size_t row : matched.only_after) {
      found_.rows.push_back(
          {"animals", ROW_CHANGE::ADDED, text(after_.animals.value(row, "id")), "", NONE, row, NONE, NONE, {}});
    }
    animals_ = std::move(matched);
  }

  void compareEvents() {
    const auto events_before = eventsByAnimal(before_);
    const auto events_after = eventsByAnimal(after_);
    for (const auto& [was, is] : animals_.pairs) {
      compareEventsOf(was, is, events_before[was], events_after[is]);
    }
    for (const std::size_t animal : animals_.only_after) {
      for (const std::size_t event : events_after[animal]) {
        addEvent(ROW_CHANGE::ADDED, NONE, event, NONE, animal);
      }
    }
  }

  /// Pairs the events that are equal, then those with the same date and kind, then those with the
  /// same kind and location, then those with the same date.
  void compareEventsOf(std::size_t animal_before, std::size_t animal_after, std::vector<std::size_t> was,
                       std::vector<std::size_t> is) {
    const ColumnPairs columns(before_.events, after_.events);
    const auto same = [&](const char* field, std::size_t a, std::size_t b) {
      return sameMeaning(field, before_.events.value(a, field), after_.events.value(b, field));
    };
    const auto differences = [&](std::size_t a, std::size_t b) {
      std::vector<cell_difference> cells = columns.compare(a, b);
      std::erase_if(cells, [](const cell_difference& cell) { return cell.column.field == "id"; });
      return cells;
    };
    pairOff(
        was, is, [&](auto a, auto b) { return differences(a, b).empty(); }, [](auto, auto) {});
    const auto change = [&](std::size_t a, std::size_t b) {
      addEvent(ROW_CHANGE::CHANGED, a, b, animal_before, animal_after);
      found_.rows.back().cells = differences(a, b);
    };
    pairOff(
        was, is, [&](auto a, auto b) { return same("date", a, b) && same("event", a, b); }, change);
    pairOff(
        was, is, [&](auto a, auto b) { return same("event", a, b) && same("location", a, b); }, change);
    pairOff(
        was, is, [&](auto a, auto b) { return same("date", a, b); }, change);
    for (const std::size_t event : was) {
      addEvent(ROW_CHANGE::REMOVED, event, NONE, animal_before, animal_after);
    }
    for (const std::size_t event : is) {
      addEvent(ROW_CHANGE::ADDED, NONE, event, animal_before, animal_after);
    }
  }

  /// Removes from both lists the pairs that belong together, calling `take` for each.
  template <typename Belong, typename Take>
  static void pairOff(std::vector<std::size_t>& was, std::vector<std::size_t>& is, Belong belong, Take take) {
    std::erase_if(was, [&](std::size_t a) {
      const auto partner = std::find_if(is.begin(), is.end(), [&](std::size_t b) { return belong(a, b); });
      if (partner == is.end()) {
        return false;
      }
      take(a, *partner);
      is.erase(partner);
      return true;
    });
  }

  void addEvent(ROW_CHANGE change, std::size_t was, std::size_t is, std::size_t animal_before,
                std::size_t animal_after) {
    const EditionTable& events = is == NONE ? before_.events : after_.events;
    const std::size_t row = is == NONE ? was : is;
    found_.rows.push_back({"events",
                           change,
                           text(events.value(row, "id")),
                           text(events.value(row, "date")) + " " + text(events.value(row, "event")),
                           was,
                           is,
                           animal_before,
                           animal_after,
                           {}});
  }

  void compareRows(const char* table, const EditionTable& before, const EditionTable& after, const char* key) {
    const matched_rows matched = matchByKey(before, after, key);
    const ColumnPairs columns(before, after);
    for (const auto& [was, is] : matched.pairs) {
      add({table, ROW_CHANGE::CHANGED, "", text(after.value(is, "name")), was, is, NONE, NONE,
           columns.compare(was, is)});
    }
    for (const std::size_t row : matched.only_before) {
      found_.rows.push_back(
          {table, ROW_CHANGE::REMOVED, "", text(before.value(row, "name")), row, NONE, NONE, NONE, {}});
    }
    for (const std::size_t row : matched.only_after) {
      found_.rows.push_back({table, ROW_CHANGE::ADDED, "", text(after.value(row, "name")), NONE, row, NONE, NONE, {}});
    }
  }

  /// Adds a row that is in both editions when it is different.
  void add(row_difference row) {
    if (!row.cells.empty()) {
      found_.rows.push_back(std::move(row));
    }
  }

  const edition& before_;
  const edition& after_;
  const std::map<std::int64_t, std::string>& former_ids_;
  matched_rows animals_;
  edition_differences found_;
};

}  // namespace

edition_differences compareEditions(const edition& before, const edition& after,
                                    const std::map<std::int64_t, std::string>& former_ids) {
  return EditionComparison(before, after, former_ids).run();
}

}  // namespace spx::console
