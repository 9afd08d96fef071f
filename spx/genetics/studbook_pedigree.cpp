#include "spx/genetics/studbook_pedigree.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "spx/core/identifiers.h"
#include "spx/core/pseudo_ids.h"

namespace spx {

/// Reads the parents of one studbook.
class StudbookPedigree::Reader {
 public:
  Reader(const AnimalData& store, const parent_choices& choices, StudbookPedigree& result)
      : store_(store), choices_(choices), result_(result) {
    kinds_.reserve(store.records.size());
    for (const master_data& animal : store.records) kinds_.push_back(kindOf(animal.stud_id));
  }

  pedigree_rows read() {
    const std::vector<pedigree_record> entries = entriesInOrder();
    numberRows(entries);
    for (const multi_parent& group : choices_.groups) listed_groups_.emplace(group.id, &group);
    rows_.sires.assign(result_.records_.size(), UNKNOWN_SOURCE);
    rows_.dams = rows_.sires;
    rows_.of_unknown_origin.resize(result_.records_.size());
    for (const pedigree_record& entry : entries) readParents(entry);
    for (const parent_candidates& choice : choices_.candidates) takeCandidates(choice);
    return std::move(rows_);
  }

 private:
  enum class KIND : unsigned char { ANIMAL, WILD, UNKNOWN, GROUP };

  static KIND kindOf(const std::string& id) {
    if (!isPseudoIndividual(id)) return KIND::ANIMAL;
    if (id == WILD_PARENT) return KIND::WILD;
    if (id == UNKNOWN_PARENT || id == UNKNOWN_SIRE || id == UNKNOWN_DAM || id == GROUP_PARENT) return KIND::UNKNOWN;
    return isMultiParent(id) || isSubstituteOfGroup(id) ? KIND::GROUP : KIND::ANIMAL;
  }

  // A group without a record gets one ("PMULT3") when parents are looked up, but it is not an animal.
  static bool isSubstituteOfGroup(const std::string& id) {
    return id.starts_with(PSEUDO_FOUNDER_PREFIX) && isMultiParent(id.substr(std::size(PSEUDO_FOUNDER_PREFIX) - 1));
  }

  // By studbook ID, which is the order in which the list is made.
  std::vector<pedigree_record> entriesInOrder() const {
    std::vector<pedigree_record> entries = store_.pedigree;
    if (store_.pedigreeSortField() == SORT_FIELD::NO_ORDER) return entries;
    std::stable_sort(entries.begin(), entries.end(), [this](const pedigree_record& a, const pedigree_record& b) {
      return store_.records[a.animal].stud_id < store_.records[b.animal].stud_id;
    });
    return entries;
  }

  void numberRows(const std::vector<pedigree_record>& entries) {
    result_.row_of_.assign(store_.records.size(), UNKNOWN_SOURCE);
    for (const pedigree_record& entry : entries) numberRow(entry.animal);
    // Founders that were added while the list was built have no entry of their own.
    for (const pedigree_record& entry : entries) {
      numberRow(entry.sire);
      numberRow(entry.dam);
    }
  }

  void numberRow(position record) {
    if (record >= kinds_.size() || result_.row_of_[record] != UNKNOWN_SOURCE) return;
    if (kinds_[record] == KIND::WILD || kinds_[record] == KIND::UNKNOWN || kinds_[record] == KIND::GROUP) return;
    result_.row_of_[record] = static_cast<animal_number>(result_.records_.size());
    result_.records_.push_back(record);
  }

  void readParents(const pedigree_record& entry) {
    const animal_number row = result_.row_of_[entry.animal];
    if (row == UNKNOWN_SOURCE) return;
    const master_data& animal = store_.records[entry.animal];
    rows_.sires[row] = parentOf(entry.sire, animal.sire_id);
    rows_.dams[row] = parentOf(entry.dam, animal.dam_id);
    rows_.of_unknown_origin[row] = animal.birth_type == BIRTH_TYPE::CAPTIVE_BORN &&
                                   rows_.sires[row] == UNKNOWN_SOURCE && rows_.dams[row] == UNKNOWN_SOURCE;
  }

  animal_number parentOf(position record, const std::string& id) {
    if (record >= kinds_.size()) return UNKNOWN_SOURCE;
    if (kinds_[record] == KIND::WILD) return WILD_SOURCE;
    return kinds_[record] == KIND::GROUP ? groupOf(id) : result_.row_of_[record];
  }

  animal_number groupOf(const std::string& id) {
    const auto listed = listed_groups_.find(id);
    if (listed == listed_groups_.end()) return UNKNOWN_SOURCE;
    const auto [known, is_new] = group_numbers_.try_emplace(id, UNKNOWN_SOURCE);
    if (is_new) known->second = addGroup(recordsOf(listed->second->candidates));
    return known->second;
  }

  // Each candidate has an equal share; that of one without a record is unknown.
  animal_number addGroup(const std::vector<position>& candidates) {
    const double share = 1.0 / static_cast<double>(candidates.size());
    std::vector<possible_parent> group;
    for (const position candidate : candidates) {
      if (candidate < result_.row_of_.size()) group.push_back({result_.row_of_[candidate], share});
    }
    rows_.groups.push_back(std::move(group));
    return FIRST_GROUP + static_cast<animal_number>(rows_.groups.size() - 1);
  }

  std::vector<position> recordsOf(const std::vector<std::string>& ids) {
    if (records_by_id_.empty()) {
      for (const position record : result_.records_) records_by_id_.emplace(store_.records[record].stud_id, record);
    }
    std::vector<position> records;
    for (const std::string& id : ids) {
      const auto found = records_by_id_.find(id);
      records.push_back(found == records_by_id_.end() ? store_.records.size() : found->second);
    }
    return records;
  }

  void takeCandidates(const parent_candidates& choice) {
    if (choice.offspring >= result_.row_of_.size() || choice.candidates.empty()) return;
    const animal_number row = result_.row_of_[choice.offspring];
    if (row == UNKNOWN_SOURCE) return;
    (choice.is_sire ? rows_.sires : rows_.dams)[row] = addGroup(choice.candidates);
    rows_.of_unknown_origin[row] = false;
  }

  const AnimalData& store_;
  const parent_choices& choices_;
  StudbookPedigree& result_;
  pedigree_rows rows_;
  std::vector<KIND> kinds_;  ///< by record
  std::unordered_map<std::string, const multi_parent*> listed_groups_;
  std::unordered_map<std::string, animal_number> group_numbers_;
  std::unordered_map<std::string, position> records_by_id_;
};

bool StudbookPedigree::build(const AnimalData& store, const parent_choices& choices) {
  *this = StudbookPedigree();
  const pedigree_rows rows = Reader(store, choices, *this).read();
  for (const std::size_t row : pedigree_.assign(rows)) cycle_.push_back(store.records[records_[row]].stud_id);
  if (cycle_.empty()) return true;
  records_.clear();
  row_of_.clear();
  return false;
}

}  // namespace spx
