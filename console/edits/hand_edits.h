#pragma once

#include <map>
#include <set>
#include <string>
#include <tuple>

#include "console/edits/studbook_edit.h"

namespace spx::console {

/// What was changed by hand since the tables were imported and is still in effect: every change
/// that is not an import and was not undone.
class HandEdits {
 public:
  explicit HandEdits(StudbookEdit& edit);

  /// Whether the cell has a value that was entered by hand.
  bool hasCell(const std::string& table, row_number row, const std::string& field) const {
    return cells_.contains({table, row, field});
  }

  /// Whether any cell of the row was changed by hand.
  bool hasCellOf(const std::string& table, row_number row) const;

  /// The animals whose IDs were changed by hand, by their rows, with the IDs that the table had.
  std::map<row_number, std::string> formerIds() const;

  /// Whether the row was added by hand.
  bool hasRow(const std::string& table, row_number row) const { return added_.contains({table, row}); }

  /// Whether a row with that text was removed by hand. The text is the ID of an animal; animal, date and kind of
  /// an event; the table and the title of a column; the name of any other row.
  bool hasRemoved(const std::string& table, const std::string& text) const { return removed_.contains({table, text}); }

  /// The column whose title, which the imported table had, was changed by hand; empty when there is none.
  std::string renamedField(const std::string& table, const std::string& former_title) const {
    const auto found = renamed_fields_.find({table, former_title});
    return found == renamed_fields_.end() ? std::string() : found->second;
  }

 private:
  void note(const journal_cell& cell);
  void forget(const journal_cell& cell);
  void settle(StudbookEdit& edit);

  std::map<std::tuple<std::string, row_number, std::string>, std::string> cells_;  ///< values: the text that
                                                                                   ///< the table had
  std::set<std::pair<std::string, row_number>> added_;
  std::map<std::pair<std::string, row_number>, std::map<std::string, std::string>> gone_;  ///< rows with their cells
  std::set<std::pair<std::string, std::string>> removed_;
  std::map<std::pair<std::string, std::string>, std::string> renamed_fields_;  ///< by table and former title
};

}  // namespace spx::console
