#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console/tables/title_choice.h"

namespace spx::console {

/// A field that a table can have, and the titles under which it is known.
struct table_field {
  std::string_view name;
  std::array<std::string_view, 36> other_titles = {};  ///< as titleWord() writes them, or with "_"
  bool required = false;
};

/// Reads "FIELD=TITLE", or "TABLE.FIELD=TITLE" for another table than that of the animals; the field keeps the name of
/// its table. Throws UsageError.
title_choice parseTitleChoice(const std::string& text);

/// Those of a table, without its name before their fields.
/// @param table  "animals", "events", "locations" or "programs"
title_choices choicesOf(const std::vector<title_choice>& choices, const std::string& table);

/// How many of the titles belong to fields; 0 when the first required field is missing.
std::size_t knownTitles(const std::vector<std::string>& titles, std::span<const table_field> fields,
                        std::span<const title_choice> choices);

/// Which column holds which field.
class ColumnTitles {
 public:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  /// Finds the columns of the fields. Titles are compared by titleWord(): in any case, without
  /// accents, blanks and punctuation. A chosen title overrides all other titles of its field. Throws UsageError,
  /// naming both titles, when two columns claim one field, and when a choice names no field or no column; TableError
  /// when a required field has no column.
  ColumnTitles(const std::string& file, const std::vector<std::string>& titles, std::span<const table_field> fields,
               const title_choices& choices);

  /// Takes the field of each column by name, without looking at titles. Throws TableError when a
  /// required field has no column.
  ColumnTitles(const std::vector<std::string>& column_fields, std::span<const table_field> fields);

  /// The column of a field; NONE when the table does not have it.
  std::size_t column(std::size_t field) const { return columns_[field]; }

  /// The columns that are not a known field, in their order.
  const std::vector<std::size_t>& others() const { return others_; }

 private:
  void checkRequired(std::span<const table_field> fields, const std::vector<std::string>& titles,
                     const std::string& prefix) const;

  std::vector<std::size_t> columns_;
  std::vector<std::size_t> others_;
};

}  // namespace spx::console
