#include "console/studbook/id_prefix.h"

#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

#include "spx/core/identifiers.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/tables/animals_table.h"
#include "console/tables/field_table.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

using id_set = std::unordered_set<std::string>;

/// The IDs in the table of animals that count as placeholders.
id_set placeholdersIn(const studbook_tables& tables) {
  id_set ids;
  try {
    constexpr std::size_t ID_CELL = 0;
    Faults faults;  // ignored here: reported when the table is loaded
    FieldTable table(tables.animals, animalFields(), ID_CELL, faults);
    while (table.next()) {
      std::string id(table[ID_CELL]);
      if (isPseudoIndividual(id)) {
        ids.insert(std::move(id));
      }
    }
  } catch (const TableError&) {
    return ids;  // likewise
  }
  return ids;
}

class PrefixedRows : public RowSource {
 public:
  PrefixedRows(std::unique_ptr<RowSource> rows, std::string prefix, std::shared_ptr<const id_set> placeholders)
      : rows_(std::move(rows)), prefix_(std::move(prefix)), placeholders_(std::move(placeholders)) {
    titles_ = rows_->titles();
    fields_ = rows_->fields();
  }

  void settleColumns(std::span<const table_field> fields, const ColumnTitles& columns) override {
    rows_->settleColumns(fields, columns);
    for (std::size_t field = 0; field < fields.size(); ++field) {
      const bool is_parent = fields[field].name == "sire" || fields[field].name == "dam";
      if (columns.column(field) != ColumnTitles::NONE && (is_parent || fields[field].name == "id")) {
        id_columns_.push_back({columns.column(field), is_parent});
      }
    }
    texts_.resize(id_columns_.size());
  }

  bool next() override {
    if (!rows_->next()) {
      return false;
    }
    row_.assign(rows_->row().begin(), rows_->row().end());
    for (std::size_t i = 0; i < id_columns_.size(); ++i) {
      const auto [column, is_parent] = id_columns_[i];
      if (column < row_.size() && isPrefixed(row_[column], is_parent)) {
        texts_[i] = prefix_;
        texts_[i] += row_[column];
        row_[column] = texts_[i];
      }
    }
    cells_ = row_;
    return true;
  }

  std::size_t line() const override { return rows_->line(); }
  std::size_t animalRow() const override { return rows_->animalRow(); }

 private:
  struct id_column {
    std::size_t column;
    bool is_parent;
  };

  bool isPrefixed(std::string_view id, bool is_parent) const {
    if (isUnknownId(id)) {
      return false;
    }
    const std::string text(id);
    return !is_parent || !isPseudoIndividual(text) || placeholders_->contains(text);
  }

  std::unique_ptr<RowSource> rows_;
  std::string prefix_;
  std::shared_ptr<const id_set> placeholders_;
  std::vector<id_column> id_columns_;
  std::vector<std::string> texts_;  ///< the IDs of the row with their prefix
  std::vector<std::string_view> row_;
};

}  // namespace

studbook_tables withIdPrefix(const studbook_tables& tables, const std::string& prefix) {
  if (isPseudoIndividual(prefix + "1")) {
    throw UsageError("--id-prefix: IDs that begin with " + quotedText(prefix) +
                     " are placeholders; choose another text");
  }
  const auto placeholders = std::make_shared<const id_set>(placeholdersIn(tables));
  studbook_tables prefixed = tables;
  for (table_source* table : {&prefixed.animals, &prefixed.events}) {
    if (!table->open) {
      continue;
    }
    table->open = [open = table->open, prefix, placeholders]() -> std::unique_ptr<RowSource> {
      return std::make_unique<PrefixedRows>(open(), prefix, placeholders);
    };
  }
  return prefixed;
}

}  // namespace spx::console
