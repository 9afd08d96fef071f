// The pedigree list: building it, ordering it, and the functions that read it.
#include <cstddef>
#include <string>
#include <string_view>

#include "spx/core/animal_data.h"
#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/core/record_index.h"
#include "spx/core/record_order.h"
#include "spx/support/fetch_ahead.h"

namespace spx {
namespace {

using parent_position = position pedigree_record::*;

// One text per entry: the ID of a parent followed by the offspring's birth date. The texts are
// stored one after the other.
class ParentsAndBirths {
 public:
  ParentsAndBirths(const std::vector<master_data>& records, const std::vector<pedigree_record>& pedigree,
                   parent_position parent) {
    constexpr std::size_t FETCH_AHEAD = 16;
    constexpr std::size_t USUAL = 20;
    qs_lib::day_number day = 0;
    std::string date;  // reused, since neighbouring entries often share a day
    all_.reserve(pedigree.size() * USUAL);
    ends_.reserve(pedigree.size());
    for (std::size_t i = 0; i < pedigree.size(); ++i) {
      if (i + FETCH_AHEAD < pedigree.size()) {
        const pedigree_record& later = pedigree[i + FETCH_AHEAD];
        qs_lib::fetchAhead(&records[later.animal].birth, &records[later.*parent].stud_id);
      }
      const qs_lib::day_number birth = records[pedigree[i].animal].birth.date;
      if (birth != day) {
        day = birth;
        date = qs_lib::julianToISO(qs_lib::dayToMs(day));
      }
      all_ += records[pedigree[i].*parent].stud_id;
      all_ += date;
      ends_.push_back(all_.size());
    }
  }

  std::size_t size() const { return ends_.size(); }
  std::string_view operator[](std::size_t entry) const {
    const std::size_t begin = entry == 0 ? 0 : ends_[entry - 1];
    return std::string_view(all_).substr(begin, ends_[entry] - begin);
  }

 private:
  std::string all_;
  std::vector<std::size_t> ends_;
};

// Puts parents before their offspring among the entries [first, last), which share a birth date.
// The entries keep their order, but each moves its parents before it. In a cycle, a parent that is
// already waiting is not moved. Linear, without recursion.
class EqualBirths {
 public:
  explicit EqualBirths(std::size_t records) : entry_of_(records, NONE) {}

  void order(std::vector<pedigree_record>& pedigree, std::size_t first, std::size_t last) {
    const auto begin = pedigree.begin() + static_cast<std::ptrdiff_t>(first);
    entries_.assign(begin, pedigree.begin() + static_cast<std::ptrdiff_t>(last));
    is_seen_.assign(entries_.size(), false);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      entry_of_[entries_[i].animal] = i;
    }
    place_ = begin;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      placeAfterParents(i);
    }
    for (const pedigree_record& entry : entries_) {
      entry_of_[entry.animal] = NONE;
    }
  }

 private:
  static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

  void placeAfterParents(std::size_t start) {
    await(start);
    while (!waiting_.empty()) {
      const std::size_t entry = waiting_.back();
      const bool is_ready = !await(entry_of_[entries_[entry].sire]) && !await(entry_of_[entries_[entry].dam]);
      if (is_ready) {
        *place_++ = entries_[entry];
        waiting_.pop_back();
      }
    }
  }

  // Makes an entry wait for its place. False when it is outside the range or was seen before.
  bool await(std::size_t entry) {
    if (entry == NONE || is_seen_[entry]) {
      return false;
    }
    is_seen_[entry] = true;
    waiting_.push_back(entry);
    return true;
  }

  std::vector<std::size_t> entry_of_;  ///< by record: its entry in the range, or NONE
  std::vector<pedigree_record> entries_;
  std::vector<bool> is_seen_;
  std::vector<std::size_t> waiting_;  ///< the entries whose parents are being placed
  std::vector<pedigree_record>::iterator place_;
};

}  // namespace

bool AnimalData::populationPedigree() {
  if (index.empty()) {
    resetOrder();
    createIndex(SORT_FIELD::STUDBOOK_ID);
  }
  pedigree.clear();
  pedigree.reserve(records.size());
  sortList(SORT_FIELD::STUDBOOK_ID);
  RecordIndex known(records);
  for (std::size_t i = 0; i < index.size(); ++i) {
    fetchParents(known, i);
    const position animal = index[i];
    pedigree_record entry;
    entry.animal = animal;
    entry.sire = parentOf(animal, SEX::MALE, known);
    entry.dam = parentOf(animal, SEX::FEMALE, known);
    pedigree.push_back(entry);
  }
  pedigree_sort_field_ = SORT_FIELD::NO_ORDER;
  return true;
}

// Prefetches the memory of later lookups, in the order in which each leads to the next.
void AnimalData::fetchParents(const RecordIndex& known, std::size_t entry) const {
  if (entry + RecordIndex::FETCH_FIRST < index.size()) {
    known.fetchParents(index[entry + RecordIndex::FETCH_FIRST]);
    known.fetchParentPlaces(index[entry + RecordIndex::FETCH_NEXT]);
  }
}

void AnimalData::sortPedigreeBy(const std::vector<std::uint64_t>& numbers_of_records) {
  std::vector<std::uint64_t> numbers;
  numbers.reserve(pedigree.size());
  for (const pedigree_record& entry : pedigree) {
    numbers.push_back(numbers_of_records[entry.animal]);
  }
  std::vector<std::size_t> order = placesOf(pedigree.size());
  sortAscending(order, numbers);
  pedigree = reordered(pedigree, order);
}

void AnimalData::sortPedigreeByParent(position pedigree_record::*parent) {
  const ParentsAndBirths texts(records, pedigree, parent);
  std::vector<std::uint64_t> beginnings;
  beginnings.reserve(texts.size());
  for (std::size_t entry = 0; entry < texts.size(); ++entry) {
    beginnings.push_back(beginningOf(texts[entry]));
  }
  std::vector<std::size_t> order = placesOf(pedigree.size());
  sortAscending(order, beginnings, [&texts](std::size_t entry) { return texts[entry]; });
  pedigree = reordered(pedigree, order);
}

void AnimalData::sortPedigreeByBirth() {
  const std::vector<std::uint64_t> days = factsOf(records, [](const master_data& animal) { return animal.birth.date; });
  sortPedigreeBy(days);
  orderEqualBirths(days);
}

bool AnimalData::sortPedigree(SORT_FIELD field) {
  if (pedigree.empty()) {
    populationPedigree();
  }
  if (field == pedigree_sort_field_) {
    return true;
  }
  // As in sortList, one step off the names: 4 is the key, 5 the sire, 6 the dam.
  switch (field) {
    case SORT_FIELD::BIRTH:
      sortPedigreeByBirth();
      break;
    case SORT_FIELD::SIRE_ID:
      sortPedigreeBy(factsOf(records, [](const master_data& animal) { return signedOrder(animal.id_key); }));
      break;
    case SORT_FIELD::DAM_ID:
      sortPedigreeByParent(&pedigree_record::sire);
      break;
    case SORT_FIELD::EVENT:
      sortPedigreeByParent(&pedigree_record::dam);
      break;
    default:
      return false;
  }
  pedigree_sort_field_ = field;
  return true;
}

// In studbooks without exact dates parents and offspring may have the same date. individualPedigree
// needs every parent before its offspring.
void AnimalData::orderEqualBirths(const std::vector<std::uint64_t>& days) {
  EqualBirths equal_births(records.size());
  const auto dayOf = [&](std::size_t entry) { return days[pedigree[entry].animal]; };
  std::size_t first = 0;
  while (first < pedigree.size()) {
    std::size_t last = first + 1;
    while (last < pedigree.size() && dayOf(last) == dayOf(first)) {
      ++last;
    }
    if (last - first > 1) {
      equal_births.order(pedigree, first, last);
    }
    first = last;
  }
}

bool AnimalData::flagBreeders() {
  if (records.empty()) {
    spxError(error_text::NO_ANIMALS);
    return false;
  }
  if (pedigree.empty()) {
    populationPedigree();
  }
  // Parents are spread over all records; the marks of all of them fit into a cache.
  std::vector<bool> is_parent(records.size(), false);
  for (const pedigree_record& entry : pedigree) {
    is_parent[entry.sire] = true;
    is_parent[entry.dam] = true;
  }
  // Most flags are already right; a record that is not written need not go back to memory.
  for (position record = 0; record < records.size(); ++record) {
    if (records[record].breeder != is_parent[record]) {
      records[record].breeder = is_parent[record];
    }
  }
  breeders_stale_ = false;
  return true;
}

void flagParents(const pedigree_record& entry) {
  for (const position parent : {entry.sire, entry.dam}) {
    if (parent < Animals.records.size()) {
      Animals.records[parent].breeder = true;
    }
  }
}

// Whether the animal exists; then the pedigree is built and nothing is selected.
bool AnimalData::preparePedigreeOf(const std::string& id) {
  if (records.empty()) {
    spxError(error_text::NO_ANIMALS);
    return false;
  }
  if (!animalExists(id)) {
    spxError(error_text::UNKNOWN_ANIMAL);
    return false;
  }
  if (pedigree.empty()) {
    populationPedigree();
  }
  return selection(false);
}

bool AnimalData::individualPedigree(const std::string& id) {
  // The ID may be a reference into a record, and records move when parents are added.
  const std::string wanted = id;  // NOLINT(performance-unnecessary-copy-initialization)
  if (!preparePedigreeOf(wanted)) {
    return false;
  }
  sortPedigree(SORT_FIELD::BIRTH);
  for (auto entry = pedigree.rbegin(); entry != pedigree.rend(); ++entry) {
    master_data& animal = records[entry->animal];
    if (animal.stud_id == wanted) {
      animal.selected = true;
    }
    if (animal.selected) {
      records[entry->sire].selected = true;
      records[entry->dam].selected = true;
    }
  }
  return true;
}

bool AnimalData::selectAncestors(const std::string& id) {
  const std::string wanted = id;  // NOLINT(performance-unnecessary-copy-initialization)
  if (!preparePedigreeOf(wanted)) {
    return false;
  }
  std::vector<position> waiting;  // selected animals whose parents are still to be selected
  const auto select = [&](position record) {
    if (!records[record].selected) {
      records[record].selected = true;
      waiting.push_back(record);
    }
  };
  std::vector<std::size_t> entry_of(records.size(), pedigree.size());
  for (std::size_t entry = 0; entry < pedigree.size(); ++entry) {
    entry_of[pedigree[entry].animal] = entry;
  }
  for (position record = 0; record < records.size(); ++record) {
    if (records[record].stud_id == wanted) {
      select(record);
    }
  }
  while (!waiting.empty()) {
    const std::size_t entry = entry_of[waiting.back()];
    waiting.pop_back();
    if (entry < pedigree.size()) {
      select(pedigree[entry].sire);
      select(pedigree[entry].dam);
    }
  }
  return true;
}

std::size_t AnimalData::selectOffspring(const std::string& id) {
  std::size_t count = 0;
  for (master_data& animal : records) {
    animal.selected = animal.sire_id == id || animal.dam_id == id;
    count += animal.selected ? 1 : 0;
  }
  return count;
}

bool AnimalData::initializeLineages(std::uint64_t lineages) {
  if (lineages == 0 || lineages >= master_data::LINEAGES) {
    return false;
  }
  if (records.empty()) {
    spxError(error_text::NO_ANIMALS);
    return false;
  }
  return true;
}

}  // namespace spx
