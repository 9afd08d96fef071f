#include "console/tables/reading_notes.h"

#include <algorithm>

#include "console/base/quoted_text.h"

namespace spx::console {

void TableNotes::add(const std::string& remark) {
  const std::scoped_lock lock(mutex_);
  if (std::find(remarks_.begin(), remarks_.end(), remark) == remarks_.end()) {
    remarks_.push_back(remark);
  }
}

void TableNotes::clear() {
  columns.clear();
  remarks_.clear();
  counts_.clear();
}

void TableNotes::count(const reading_kind& kind, std::string_view from, std::string_view to) {
  const auto known =
      std::find_if(counts_.begin(), counts_.end(), [&](const counted& each) { return each.kind == &kind; });
  if (known != counts_.end()) {
    ++known->count;
    return;
  }
  const std::string meaning = to.empty() ? "not known" : std::string(to);
  counts_.push_back({&kind, 1, quotedText(from) + " is " + meaning});
}

std::string TableNotes::text() const {
  const std::scoped_lock lock(mutex_);
  std::string lines;
  for (const std::string& remark : remarks_) {
    lines += name_ + ": " + remark + "\n";
  }
  for (const counted& each : counts_) {
    lines += name_ + ": " + std::to_string(each.count) + " " + (each.count == 1 ? each.kind->one : each.kind->many) +
             ": " + each.example + "\n";
  }
  return lines;
}

TableNotes& ReadingNotes::of(const std::string& name) {
  const auto known =
      std::find_if(tables_.begin(), tables_.end(), [&](const TableNotes& each) { return each.name() == name; });
  return known == tables_.end() ? tables_.emplace_back(name) : *known;
}

std::string ReadingNotes::text() const {
  std::string lines;
  for (const TableNotes& table : tables_) {
    lines += table.text();
  }
  return lines;
}

}  // namespace spx::console
