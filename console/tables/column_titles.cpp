#include "console/tables/column_titles.h"

#include <algorithm>

#include "console/base/assignment.h"
#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/tables/row_source.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

bool isTitleOf(const table_field& field, std::string_view title) {
  if (isSameWord(title, field.name)) {
    return true;
  }
  return std::any_of(field.other_titles.begin(), field.other_titles.end(),
                     [&](auto other) { return !other.empty() && isSameWord(title, other); });
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

/// The column of exactly that title, else of the same word.
std::size_t findTitle(const std::string& file, const std::vector<std::string>& titles, const std::string& title) {
  auto found = std::find(titles.begin(), titles.end(), title);
  if (found == titles.end()) {
    found =
        std::find_if(titles.begin(), titles.end(), [&](const std::string& each) { return isSameWord(each, title); });
  }
  if (found == titles.end()) {
    throw UsageError("--map: " + file + " has no column " + quotedText(title));
  }
  return static_cast<std::size_t>(found - titles.begin());
}

[[noreturn]] void failClaimedTwice(const std::string& file, std::string_view field, const std::string& first,
                                   const std::string& second) {
  throw UsageError(file + ": the columns " + quotedText(first) + " and " + quotedText(second) +
                   " both claim the field " + std::string(field) + "; choose one with --map " + std::string(field) +
                   "=TITLE");
}

}  // namespace

title_choice parseTitleChoice(const std::string& text) {
  const assignment split = splitAssignment(text, "FIELD=TITLE", "--map");
  if (split.value.empty()) {
    throw UsageError("--map: " + quotedText(text) + " is not FIELD=TITLE");
  }
  return {split.name, split.value};
}

ColumnTitles::ColumnTitles(const std::string& file, const std::vector<std::string>& titles,
                           std::span<const table_field> fields, std::span<const title_choice> choices)
    : columns_(fields.size(), NONE) {
  std::vector<bool> chosen(titles.size());
  std::vector<bool> settled(fields.size());
  for (const title_choice& choice : choices) {
    const std::size_t field = findField(fields, choice.field);
    const std::size_t column = findTitle(file, titles, choice.title);
    if (settled[field]) {
      failClaimedTwice(file, fields[field].name, titles[columns_[field]], choice.title);
    }
    if (chosen[column]) {
      throw UsageError("--map: the column " + quotedText(choice.title) + " is given to two fields");
    }
    columns_[field] = column;
    settled[field] = chosen[column] = true;
  }
  for (std::size_t column = 0; column < titles.size(); ++column) {
    if (chosen[column]) {
      continue;
    }
    const auto known = std::find_if(fields.begin(), fields.end(),
                                    [&](const table_field& field) { return isTitleOf(field, titles[column]); });
    const auto field = static_cast<std::size_t>(known - fields.begin());
    if (known == fields.end() || settled[field]) {
      others_.push_back(column);
    } else if (columns_[field] != NONE) {
      failClaimedTwice(file, known->name, titles[columns_[field]], titles[column]);
    } else {
      columns_[field] = column;
    }
  }
  checkRequired(fields);
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
  checkRequired(fields);
}

void ColumnTitles::checkRequired(std::span<const table_field> fields) const {
  for (std::size_t field = 0; field < fields.size(); ++field) {
    if (fields[field].required && columns_[field] == NONE) {
      throw TableError(1, "there is no column " + quotedText(fields[field].name));
    }
  }
}

}  // namespace spx::console
