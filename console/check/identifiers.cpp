// IDs: duplicates, IDs that differ only in blanks, placeholders.
#include "spx/core/identifiers.h"

#include <map>
#include <string>
#include <vector>

#include "spx/support/text.h"

#include "console/check/rules.h"
#include "console/tables/loading_notes.h"

namespace spx::console {
namespace {

bool isOneLitter(const master_data& a, const master_data& b) {
  return isExact(knownDays(a.birth)) && a.birth.date == b.birth.date && a.dam_id == b.dam_id &&
         !isPseudoIndividual(a.dam_id);
}

void addDuplicates(const CheckedRecords& records, std::vector<finding>& findings) {
  std::map<position, std::vector<position>> rows;  // by the first record with the ID
  for (const auto& [record, first] : records.duplicates()) {
    rows[first].push_back(record);
  }
  for (const auto& [first, others] : rows) {
    std::vector<std::string> lines{records.placeText(first)};
    const position* litter_mate = nullptr;
    for (const position& other : others) {
      lines.push_back(records.placeText(other));
      litter_mate = litter_mate == nullptr && isOneLitter(records[first], records[other]) ? &other : litter_mate;
    }
    finding found = records.about(CHECK::DUPLICATE_ID, others.front());
    found.values = {{"lines", listText(lines)}};
    found.message =
        std::to_string(lines.size()) + " rows have the ID " + records.name(first) + ": lines " + listText(lines);
    found.suggestion = "Give one of the animals another ID, or remove the duplicate row";
    findings.push_back(found);
    if (litter_mate == nullptr) {
      continue;
    }
    finding twice = records.about(CHECK::LITTER_TWICE, *litter_mate);
    const std::string birth = dateText(records[first].birth);
    twice.animals.push_back(records[first].dam_id);
    twice.values = {{"birth", birth}};
    twice.message = records.name(first) + " is listed twice in the litter of " +
                    CheckedRecords::nameText(records[first].dam_id) + ", born " + birth + ": lines " +
                    records.placeText(first) + " and " + records.placeText(*litter_mate);
    twice.suggestion = "Remove one of the rows";
    findings.push_back(twice);
  }
}

void addPadded(const CheckedRecords& records, std::vector<finding>& findings) {
  std::map<std::string, position> padded;  // by the ID without its blanks
  for (position record = 0; record < records.size(); ++record) {
    const std::string& id = records[record].stud_id;
    std::string bare = records.isChecked(record) ? qs_lib::allTrim(id) : id;
    if (bare == id || records.find(id) != record) {
      continue;
    }
    const std::uint32_t plain = records.find(bare);
    const auto [first, is_first] = padded.try_emplace(std::move(bare), record);
    if (plain == CheckedRecords::NONE && is_first) {
      continue;
    }
    const position other = plain == CheckedRecords::NONE ? first->second : plain;
    finding found = records.about(CHECK::PADDED_ID, record);
    found.animals.push_back(records[other].stud_id);
    found.message = records.name(record) + " and " + records.name(other) + " differ only in blanks: lines " +
                    records.placeText(record) + " and " + records.placeText(other);
    found.suggestion = "Remove the blanks, or the duplicate row";
    findings.push_back(found);
  }
}

void addPlaceholders(const CheckedRecords& records, std::vector<finding>& findings) {
  for (position record = 0; record < records.size(); ++record) {
    if (!hasRow(records[record]) || records.isChecked(record)) {
      continue;
    }
    finding found = records.about(CHECK::PLACEHOLDER_ID, record);
    found.message = records.name(record) + " is treated as a placeholder because of its ID";
    found.suggestion = "Give it another ID, or import with --id-prefix; --placeholders accepts it as it is";
    findings.push_back(found);
  }
}

}  // namespace

void checkIdentifiers(const CheckedRecords& records, std::vector<finding>& findings) {
  addDuplicates(records, findings);
  addPadded(records, findings);
  addPlaceholders(records, findings);
}

}  // namespace spx::console
