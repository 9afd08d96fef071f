#include "console/tables/column_titles.h"

#include <algorithm>
#include <unordered_map>

#include "console/base/assignment.h"
#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/tables/folded_text.h"
#include "console/tables/row_source.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

/// The index of each field by the folded words of all its titles.
std::unordered_map<std::string, std::size_t> titleWords(std::span<const table_field> fields) {
  std::unordered_map<std::string, std::size_t> words;
  for (std::size_t field = 0; field < fields.size(); ++field) {
    words.try_emplace(titleWord(fields[field].name), field);
    for (const std::string_view title : fields[field].other_titles) {
      if (!title.empty()) {
        words.try_emplace(titleWord(title), field);
      }
    }
  }
  return words;
}

bool isSameTitle(std::string_view a, std::string_view b) {
  return titleWord(a) == titleWord(b);
}

/// The title nearest to one of the field's own titles; empty when none is within two letters.
std::string nearestTitle(const table_field& field, const std::vector<std::string>& titles) {
  constexpr std::size_t LONGEST = 40;
  constexpr std::size_t SHORTEST = 3;
  std::string nearest;
  std::size_t fewest = 3;
  for (const std::string& title : titles) {
    const std::string word = titleWord(title);
    if (word.size() > LONGEST || word.size() < SHORTEST) {
      continue;
    }
    for (const std::string_view known : field.other_titles) {
      const std::size_t slips = known.size() < SHORTEST ? fewest : wordDistance(word, titleWord(known));
      if (slips < fewest) {
        fewest = slips;
        nearest = title;
      }
    }
  }
  return nearest;
}

/// The first few titles, for messages.
std::string listed(const std::vector<std::string>& titles) {
  constexpr std::size_t SHOWN = 12;
  std::string list;
  for (std::size_t title = 0; title < std::min(titles.size(), SHOWN); ++title) {
    list += (title == 0 ? "" : ", ") + quotedText(titles[title]);
  }
  return list + (titles.size() > SHOWN ? ", ..." : "");
}

std::string fieldNames(std::span<const table_field> fields) {
  std::string names;
  for (const table_field& field : fields) {
    names += (names.empty() ? "" : ", ") + std::string(field.name);
  }
  return names;
}

std::size_t findField(std::span<const table_field> fields, const std::string& name) {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&](const table_field& field) { return isSameWord(name, field.name); });
  if (found == fields.end()) {
    throw UsageError("--map: no field " + quotedText(name) + "; there are " + fieldNames(fields));
  }
  return static_cast<std::size_t>(found - fields.begin());
}

/// The column with exactly that title, or else with the same title word.
std::size_t findTitle(const std::string& file, const std::vector<std::string>& titles, const std::string& title) {
  auto found = std::find(titles.begin(), titles.end(), title);
  if (found == titles.end()) {
    found =
        std::find_if(titles.begin(), titles.end(), [&](const std::string& each) { return isSameTitle(each, title); });
  }
  if (found == titles.end()) {
    throw UsageError("--map: " + file + " has no column " + quotedText(title) + "; its columns are " + listed(titles));
  }
  return static_cast<std::size_t>(found - titles.begin());
}

[[noreturn]] void failClaimedTwice(const std::string& file, const std::string& field, const std::string& first,
                                   const std::string& second) {
  throw UsageError(file + ": the columns " + quotedText(first) + " and " + quotedText(second) +
                   " both match the field " + field + "; choose one with --map " + field + "=TITLE");
}

constexpr const char* TABLES[] = {"animals", "events", "locations", "programs"};

void checkTable(const std::string& field) {
  const std::string table = field.substr(0, field.find('.'));
  if (table.size() != field.size() && std::find(std::begin(TABLES), std::end(TABLES), table) == std::end(TABLES)) {
    throw UsageError("--map: there is no table " + quotedText(table) +
                     "; it is animals, events, locations or programs");
  }
}

}  // namespace

title_choice parseTitleChoice(const std::string& text) {
  const assignment split = splitAssignment(text, "FIELD=TITLE", "--map");
  if (split.value.empty()) {
    throw UsageError("--map: " + quotedText(text) + " is not FIELD=TITLE");
  }
  checkTable(split.name);
  return {split.name, split.value};
}

title_choices choicesOf(const std::vector<title_choice>& choices, const std::string& table) {
  title_choices own;
  own.prefix = table == TABLES[0] ? "" : table + ".";
  for (const title_choice& choice : choices) {
    const std::size_t dot = choice.field.find('.');
    const std::string of_table = dot == std::string::npos ? TABLES[0] : choice.field.substr(0, dot);
    if (of_table == table) {
      own.list.push_back({choice.field.substr(dot == std::string::npos ? 0 : dot + 1), choice.title});
    }
  }
  return own;
}

std::size_t knownTitles(const std::vector<std::string>& titles, std::span<const table_field> fields,
                        std::span<const title_choice> choices) {
  const auto words = titleWords(fields);
  std::size_t known = 0;
  std::vector<bool> found(fields.size());
  for (const std::string& title : titles) {
    const auto chosen = std::find_if(choices.begin(), choices.end(),
                                     [&](const title_choice& choice) { return isSameTitle(choice.title, title); });
    const auto word = words.find(titleWord(chosen == choices.end() ? title : chosen->field));
    if (word != words.end()) {
      found[word->second] = true;
      ++known;
    }
  }
  const auto needed = std::find_if(fields.begin(), fields.end(), [](const table_field& each) { return each.required; });
  return needed == fields.end() || found[static_cast<std::size_t>(needed - fields.begin())] ? known : 0;
}

ColumnTitles::ColumnTitles(const std::string& file, const std::vector<std::string>& titles,
                           std::span<const table_field> fields, const title_choices& choices)
    : columns_(fields.size(), NONE) {
  std::vector<bool> chosen(titles.size());
  std::vector<bool> settled(fields.size());
  for (const title_choice& choice : choices.list) {
    const std::size_t field = findField(fields, choice.field);
    const std::size_t column = findTitle(file, titles, choice.title);
    if (settled[field]) {
      failClaimedTwice(file, choices.prefix + std::string(fields[field].name), titles[columns_[field]], choice.title);
    }
    if (chosen[column]) {
      throw UsageError("--map: the column " + quotedText(choice.title) + " is given to two fields");
    }
    columns_[field] = column;
    settled[field] = chosen[column] = true;
  }
  const auto words = titleWords(fields);
  for (std::size_t column = 0; column < titles.size(); ++column) {
    if (chosen[column]) {
      continue;
    }
    const auto known = words.find(titleWord(titles[column]));
    if (known == words.end() || settled[known->second]) {
      others_.push_back(column);
      continue;
    }
    const std::size_t field = known->second;
    if (columns_[field] != NONE) {
      failClaimedTwice(file, choices.prefix + std::string(fields[field].name), titles[columns_[field]], titles[column]);
    }
    columns_[field] = column;
  }
  checkRequired(fields, titles, choices.prefix);
}

ColumnTitles::ColumnTitles(const std::vector<std::string>& column_fields, std::span<const table_field> fields)
    : columns_(fields.size(), NONE) {
  for (std::size_t column = 0; column < column_fields.size(); ++column) {
    const auto known = std::find_if(fields.begin(), fields.end(),
                                    [&](const table_field& field) { return field.name == column_fields[column]; });
    if (known == fields.end()) {
      others_.push_back(column);
    } else {
      columns_[static_cast<std::size_t>(known - fields.begin())] = column;
    }
  }
  checkRequired(fields, column_fields, "");
}

void ColumnTitles::checkRequired(std::span<const table_field> fields, const std::vector<std::string>& titles,
                                 const std::string& prefix) const {
  for (std::size_t field = 0; field < fields.size(); ++field) {
    if (!fields[field].required || columns_[field] != NONE) {
      continue;
    }
    const std::string name(fields[field].name);
    const std::string nearest = nearestTitle(fields[field], titles);
    throw TableError(1, "there is no column " + quotedText(name) + "; the columns are " + listed(titles) +
                            ". Choose one of them, for example --map " + prefix + name + "=" +
                            quotedText(nearest.empty() ? "TITLE" : nearest));
  }
}

}  // namespace spx::console
