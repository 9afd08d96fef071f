#include "spx/core/animal_data.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/core/record_order.h"
#include "spx/support/console.h"
#include "spx/support/number_text.h"

namespace spx {
namespace {

constexpr std::size_t PSEUDO_PARENTS = 5;

// The sort keys of the index: a number per record. For text fields it holds the first bytes, and
// text() gives the whole text for numbers that are equal.
struct compare_birth {
  static std::uint64_t number(const master_data& animal) { return animal.birth.date; }
};
struct compare_death {
  static std::uint64_t number(const master_data& animal) { return animal.death.date; }
};
struct compare_stud_id {
  static std::uint64_t number(const master_data& animal) { return beginningOf(animal.stud_id); }
  static const std::string& text(const master_data& animal) { return animal.stud_id; }
};
struct compare_id_key {
  static std::uint64_t number(const master_data& animal) { return signedOrder(animal.id_key); }
};
struct compare_sire {
  static std::uint64_t number(const master_data& animal) { return beginningOf(animal.sire_id); }
  static const std::string& text(const master_data& animal) { return animal.sire_id; }
};
struct compare_dam {
  static std::uint64_t number(const master_data& animal) { return beginningOf(animal.dam_id); }
  static const std::string& text(const master_data& animal) { return animal.dam_id; }
};

bool reportEmpty() {
  spxError(error_text::NO_ANIMALS);
  return false;
}

}  // namespace

bool AnimalData::initialize(std::size_t expected) {
  try {
    if (expected > records.max_size() - PSEUDO_PARENTS) {
      throw std::length_error("more animals than the address space holds");
    }
    records.reserve(expected + PSEUDO_PARENTS);
    index.reserve(expected + PSEUDO_PARENTS);
  } catch (const std::bad_alloc&) {
    spxError(error_text::NO_ROOM);
    return false;
  } catch (const std::length_error&) {
    spxError(error_text::NO_ROOM);
    return false;
  }
  return addPseudoParents();
}

bool AnimalData::addMaster(master_data animal) {
  records.push_back(std::move(animal));
  sort_field_ = SORT_FIELD::NO_ORDER;
  records_changed = true;
  derived_changed = true;
  return true;
}

bool AnimalData::clearList() {
  pedigree.clear();
  index.clear();
  lookup.clear();
  records.clear();
  return true;
}

bool AnimalData::clearStudbook() {
  clearList();
  inconsistencies.clear();
  missing_parents.clear();
  text.clear();
  sort_field_ = SORT_FIELD::STUDBOOK_ID;
  records_changed = true;
  derived_changed = true;
  breeders_stale_ = true;
  return true;
}

bool AnimalData::info() const {
  const std::string rule = qs_lib::replicateChar('=', 70) + "\n";
  const std::string used = qs_lib::percent<std::uint64_t>(records.size(), records.capacity(), 1);
  qs_lib::display(rule + "Memory usage of studbook data\n" + rule + "\nAllocated records       : " +
                  std::to_string(records.capacity()) + "\nUsed records            : " + std::to_string(records.size()) +
                  " (" + used + ")\nMaximum records         : " + std::to_string(records.max_size()) + "\n" +
                  qs_lib::replicateChar('-', 70) + "\n");
  return true;
}

bool AnimalData::createIndex(SORT_FIELD field) {
  if (records.empty()) {
    return reportEmpty();
  }
  index.clear();
  index.reserve(records.size());
  for (position record = 0; record < records.size(); ++record) {
    index.push_back(record);
  }
  sortList(field);
  return true;
}

template <class Order>
void AnimalData::sortIndex() {
  const std::vector<std::uint64_t> numbers = factsOf(records, Order::number);
  if constexpr (requires { &Order::text; }) {
    sortAscending(index, numbers, [this](position record) -> std::string_view { return Order::text(records[record]); });
  } else {
    sortAscending(index, numbers);
  }
}

bool AnimalData::sortList(SORT_FIELD field) {
  if (index.empty()) {
    spxError(error_text::NO_INDEX);
    return false;
  }
  if (field == sort_field_) {
    return true;
  }
  // 4, 5 and 6 sort by key, sire and dam, one step off their names. Kept on purpose.
  switch (field) {
    case SORT_FIELD::BIRTH:
      sortIndex<compare_birth>();
      break;
    case SORT_FIELD::DEATH:
      sortIndex<compare_death>();
      break;
    case SORT_FIELD::STUDBOOK_ID:
      sortIndex<compare_stud_id>();
      break;
    case SORT_FIELD::SIRE_ID:
      sortIndex<compare_id_key>();
      break;
    case SORT_FIELD::DAM_ID:
      sortIndex<compare_sire>();
      break;
    case SORT_FIELD::EVENT:
      sortIndex<compare_dam>();
      break;
    case SORT_FIELD::LOCATION:
      return true;
    case SORT_FIELD::UNKNOWN_ORDER:
      break;
    default:
      return false;
  }
  sort_field_ = field;
  return true;
}

void AnimalData::resetOrder() {
  sort_field_ = SORT_FIELD::NO_ORDER;
}

bool AnimalData::createLookup() {
  if (records.empty()) {
    return reportEmpty();
  }
  lookup.clear();
  // In ID order every insertion is at the end. Of equal IDs the last record is kept.
  std::vector<position> by_id = placesOf(records.size());
  sortAscending(by_id, factsOf(records, compare_stud_id::number),
                [this](position record) -> std::string_view { return records[record].stud_id; });
  for (const position record : by_id) {
    lookup.insert_or_assign(lookup.end(), records[record].stud_id, record);
  }
  return true;
}

position AnimalData::findMaster(const std::string& stud_id) const {
  const auto found = std::find_if(records.begin(), records.end(), find_id{stud_id});
  return static_cast<position>(found - records.begin());
}

bool AnimalData::animalExists(const std::string& stud_id) const {
  return findMaster(stud_id) != records.size();
}

bool AnimalData::assignIdKeys() {
  if (records.empty()) {
    return reportEmpty();
  }
  if (index.empty()) {
    resetOrder();
    createIndex(SORT_FIELD::BIRTH);
  }
  sortList(SORT_FIELD::BIRTH);
  std::uint64_t key = 0;
  for (const position record : index) {
    records[record].id_key = key++;
  }
  return true;
}

bool AnimalData::selection(bool selected) {
  for (master_data& animal : records) {
    animal.selected = selected;
  }
  return true;
}

bool AnimalData::print(bool print) {
  for (master_data& animal : records) {
    animal.print = print;
  }
  return true;
}

}  // namespace spx
