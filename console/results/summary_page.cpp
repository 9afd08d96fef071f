// The summary as tables.
#include <algorithm>
#include <charconv>

#include "spx/core/estimated_dates.h"
#include "spx/views/data_filter.h"

#include "console/project/view_animals.h"
#include "console/results/population_summary.h"

namespace spx::console {
namespace {

Cell shareOf(std::size_t part, std::size_t all) {
  return all == 0 ? Cell() : Cell(static_cast<double>(part) / static_cast<double>(all));
}

/// Rows of the page, with shares of all animals.
class Page {
 public:
  explicit Page(const population_summary& summary) : summary_(summary) {}

  void section(const char* title) { table_.addRow({title, "", "", ""}); }
  void row(const std::string& what, const kind_count& kind) { addRow("  " + what, kind); }
  void addRow(const std::string& what, const kind_count& kind) {
    table_.addRow({what, kind.all, shareOf(kind.all, summary_.animals.all), kind.living});
  }
  /// Adds a row only when there are such animals, for kinds that most studbooks do not have.
  void rareRow(const std::string& what, const kind_count& kind) {
    if (kind.all != 0) {
      row(what, kind);
    }
  }
  void plainRow(const std::string& what, std::size_t count) {
    table_.addRow({"  " + what, count, shareOf(count, summary_.animals.all), ""});
  }
  Table table() && { return std::move(table_); }

 private:
  const population_summary& summary_;
  Table table_{{{"what", "Animals"},
                {.name = "all", .title = "All", .kind = COLUMN_KIND::INTEGER},
                {.name = "share", .title = "Share", .kind = COLUMN_KIND::PERCENT, .decimals = 1},
                {.name = "living", .title = "Living", .kind = COLUMN_KIND::INTEGER}}};
};

void addStatuses(Page& page, const population_summary& summary) {
  page.section("Status");
  constexpr const char* TEXTS[] = {"living",        "dead",    "lost to follow-up", "left the population",
                                   "not there yet", "undated", "no record"};
  for (std::size_t status = 0; status < summary.statuses.size(); ++status) {
    const std::size_t count = summary.statuses[status];
    if (count != 0 || status <= static_cast<std::size_t>(LIFE_STATUS::DEAD)) {
      page.plainRow(TEXTS[status], count);
    }
  }
  if (summary.elsewhere != 0) {
    page.plainRow("living elsewhere", summary.elsewhere);
  }
}

template <typename Kinds>
void addKinds(Page& page, const char* title, const Kinds& kinds) {
  page.section(title);
  for (const auto& [kind, count] : kinds) {
    page.row(getEnumName(kind), count);
  }
}

void addParents(Page& page, const population_summary& summary) {
  page.section("Parents");
  page.row("both unknown", summary.unknown_both);
  page.row("only the sire unknown", summary.unknown_sire);
  page.row("only the dam unknown", summary.unknown_dam);
  page.rareRow("sire one of a group", summary.group_sire);
  page.rareRow("dam one of a group", summary.group_dam);
}

void addBreeding(Page& page, const population_summary& summary) {
  page.section("Breeding");
  page.row("have offspring", summary.breeders);
  page.row("founders (no known parents)", summary.founders);
  page.row("  of them with offspring", summary.breeding_founders);
  page.row("  of them with wild parents", summary.wild_parents);
}

void addAccuracies(Page& page, const char* title, const std::map<DATE_ACCURACY, std::size_t>& counts) {
  if (counts.empty()) {
    return;
  }
  page.section(title);
  for (const auto& [accuracy, count] : counts) {
    page.plainRow(getEnumName(accuracy), count);
  }
}

std::string ageNote(const char* label, const oldest_animal& oldest) {
  return label + oldest.id + ", " + convertDays(oldest.days);
}

std::vector<std::string> notesOf(const population_summary& summary) {
  std::vector<std::string> notes;
  if (!summary.oldest.id.empty()) {
    notes.push_back(ageNote("Oldest ever: ", summary.oldest));
  }
  if (!summary.oldest_living.id.empty()) {
    notes.push_back(ageNote("Oldest living: ", summary.oldest_living));
  }
  if (const std::size_t count = summary.without_birth; count != 0) {
    notes.push_back(std::to_string(count) + (count == 1 ? " animal has" : " animals have") +
                    " no birth date and no known age.");
  }
  if (const std::size_t count = summary.placeholder_founders; count != 0) {
    notes.push_back(std::to_string(count) +
                    (count == 1 ? " more founder is a placeholder" : " more founders are placeholders") +
                    ": they stand for a parent without a record or the wild mate of an animal, or their IDs are "
                    "those of placeholders (spx check).");
  }
  return notes;
}

/// "by month" as `by_month`.
std::string factName(std::string text) {
  std::replace(text.begin(), text.end(), ' ', '_');
  return text;
}

/// Columns and their values, collected side by side.
class Facts {
 public:
  void add(const std::string& name, Cell value) { add(name, std::move(value), "", ""); }
  void addIn(const std::string& group, const std::string& key, Cell value) {
    add(group + "_" + key, std::move(value), group, key);
  }
  template <typename Enum>
  void addCounts(const std::string& group, const std::map<Enum, std::size_t>& counts, Enum last) {
    for (std::uint32_t value = 0; value <= static_cast<std::uint32_t>(last); ++value) {
      const auto found = counts.find(static_cast<Enum>(value));
      addIn(group, factName(getEnumName(static_cast<Enum>(value))), found == counts.end() ? 0 : found->second);
    }
  }
  Table record() && {
    Table table(std::move(columns_));
    table.is_record = true;
    table.addRow(std::move(values_));
    return table;
  }

 private:
  void add(const std::string& name, Cell value, const std::string& group, const std::string& key) {
    table_column column{name, name};
    column.group = group;
    column.key = key;
    columns_.push_back(std::move(column));
    values_.push_back(std::move(value));
  }

  std::vector<table_column> columns_;
  std::vector<Cell> values_;
};

template <typename Enum>
std::map<Enum, std::size_t> allOf(const std::map<Enum, kind_count>& kinds) {
  std::map<Enum, std::size_t> counts;
  for (const auto& [kind, count] : kinds) {
    counts[kind] = count.all;
  }
  return counts;
}

void addLives(Facts& facts, const population_summary& summary) {
  const auto count = [&](LIFE_STATUS status) { return summary.statuses[static_cast<std::size_t>(status)]; };
  facts.add("reference_date", known_date{summary.day});
  facts.add("records", summary.animals.all);
  facts.add("living", summary.animals.living);
  facts.add("died", count(LIFE_STATUS::DEAD));
  facts.add("disappeared", count(LIFE_STATUS::LOST));
  facts.add("left", count(LIFE_STATUS::LEFT));
  facts.add("not_there_yet", count(LIFE_STATUS::NOT_THERE));
  facts.add("undated", count(LIFE_STATUS::UNDATED));
  facts.add("elsewhere", summary.elsewhere);
  facts.addCounts("sexes", allOf(summary.sexes), SEX::UNKNOWN);
  facts.addCounts("origins", allOf(summary.origins), BIRTH_TYPE::UNKNOWN);
}

void addPedigree(Facts& facts, const population_summary& summary) {
  facts.add("unknown_both", summary.unknown_both.all);
  facts.add("unknown_sire", summary.unknown_sire.all);
  facts.add("unknown_dam", summary.unknown_dam.all);
  facts.add("group_sire", summary.group_sire.all);
  facts.add("group_dam", summary.group_dam.all);
  facts.addCounts("birth_accuracy", summary.birth_accuracy, DATE_ACCURACY::UNKNOWN);
  facts.addCounts("death_accuracy", summary.death_accuracy, DATE_ACCURACY::UNKNOWN);
  facts.add("without_birth_date", summary.without_birth);
  facts.add("oldest_age_days", summary.oldest.days);
  facts.add("oldest_id", summary.oldest.id);
  facts.add("oldest_living_age_days", summary.oldest_living.days);
  facts.add("oldest_living_id", summary.oldest_living.id);
  facts.add("breeders", summary.breeders.all);
  facts.add("living_breeders", summary.breeders.living);
}

void addFounders(Facts& facts, const population_summary& summary) {
  facts.add("founders", summary.founders.all);
  facts.add("living_founders", summary.founders.living);
  facts.add("founders_with_offspring", summary.breeding_founders.all);
  facts.add("placeholder_founders", summary.placeholder_founders);
  facts.add("wild_origin", summary.wild_parents.all);
  facts.add("living_wild_origin", summary.wild_parents.living);
  facts.add("bred_founders", summary.breeding_wild_parents.all);
  facts.add("potential_founders", summary.wild_parents.living - summary.breeding_wild_parents.living);
}

}  // namespace

Table summaryPage(const population_summary& summary) {
  Page page(summary);
  page.addRow("All", summary.animals);
  addStatuses(page, summary);
  addKinds(page, "Sex", summary.sexes);
  addKinds(page, "Origin", summary.origins);
  addParents(page, summary);
  addBreeding(page, summary);
  addAccuracies(page, "Birth dates", summary.birth_accuracy);
  addAccuracies(page, "Dates of death or loss", summary.death_accuracy);
  Table table = std::move(page).table();
  const std::string asked = viewText(false);
  table.heading = "Summary for " + qs_lib::julianToISO(qs_lib::dayToMs(summary.day)) +
                  (asked.empty() ? "" : ", animals that match " + asked);
  table.notes = notesOf(summary);
  return table;
}

Table summaryRecord(const population_summary& summary) {
  Facts facts;
  addLives(facts, summary);
  addPedigree(facts, summary);
  addFounders(facts, summary);
  return std::move(facts).record();
}

}  // namespace spx::console
