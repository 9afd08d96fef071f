#include "console/output/package_pedigree.h"

#include <string_view>
#include <unordered_map>
#include <utility>

#include "spx/core/animal_data.h"
#include "spx/core/pseudo_ids.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/tables/loading_notes.h"

namespace spx::console {
namespace {

constexpr std::size_t NONE = pedigree_member::NONE;

/// Orders the flagged records and their ancestors.
class PedigreeOrder {
 public:
  PedigreeOrder() : places_(Animals.records.size(), NONE), states_(Animals.records.size(), STATE::NEW) {
    records_.reserve(Animals.records.size());
    for (position each = 0; each < Animals.records.size(); ++each) {
      records_.try_emplace(Animals.records[each].stud_id, each);
    }
  }

  std::vector<pedigree_member> order() {
    for (position each = 0; each < Animals.records.size(); ++each) {
      if (Animals.records[each].print) {
        add(each);
      }
    }
    return std::move(pedigree_);
  }

 private:
  enum class STATE : std::uint8_t { NEW, OPEN, DONE };

  /// Without recursion: a line may be a hundred thousand generations long.
  void add(position animal) {
    std::vector<position> open = {animal};
    while (!open.empty()) {
      const position top = open.back();
      if (states_[top] == STATE::DONE) {
        open.pop_back();
        continue;
      }
      const bool is_second_look = std::exchange(states_[top], STATE::OPEN) == STATE::OPEN;
      const position parents[] = {find(Animals.records[top].sire_id), find(Animals.records[top].dam_id)};
      if (is_second_look) {
        enter(top, parents[0], parents[1]);
        open.pop_back();
        continue;
      }
      for (const position parent : parents) {
        if (parent != NONE && states_[parent] == STATE::OPEN) {
          throw Failure("animal " + quotedText(Animals.records[parent].stud_id) +
                        " is its own ancestor; correct that first");
        }
        if (parent != NONE && states_[parent] == STATE::NEW) {
          open.push_back(parent);
        }
      }
    }
  }

  void enter(position which, position sire, position dam) {
    const master_data& animal = Animals.records[which];
    const auto place = [&](position parent) { return parent == NONE ? NONE : places_[parent]; };
    pedigree_.push_back({uniqueId(which), place(sire), place(dam), animal.sex, &animal});
    places_[which] = pedigree_.size() - 1;
    states_[which] = STATE::DONE;
  }

  /// The ID; with "#2" and so on for animals after the first one that has it.
  std::string uniqueId(position which) {
    const std::string& id = Animals.records[which].stud_id;
    if (records_.at(id) == which) {
      return id;
    }
    std::size_t& copy = copies_.try_emplace(id, 1).first->second;
    std::string unique;
    do {
      unique = id + "#" + std::to_string(++copy);
    } while (records_.contains(unique));
    return unique;
  }

  /// The record of a parent: an animal of the tables, or the founder that stands for a parent without a record; else
  /// NONE. The shared records of unknown and wild parents are not individuals and also give NONE.
  position find(const std::string& parent) const {
    const auto own = records_.find(parent);
    if (own != records_.end() && hasRow(Animals.records[own->second])) {
      return own->second;
    }
    if (isPseudoIndividual(parent) && !parent.starts_with(PSEUDO_FOUNDER_PREFIX)) {
      return NONE;
    }
    const auto founder =
        records_.find(parent.starts_with(PSEUDO_FOUNDER_PREFIX) ? parent : PSEUDO_FOUNDER_PREFIX + parent);
    return founder == records_.end() ? NONE : founder->second;
  }

  std::unordered_map<std::string_view, position> records_;    ///< the first one with each ID
  std::unordered_map<std::string_view, std::size_t> copies_;  ///< by ID: how many later records have it
  std::vector<std::size_t> places_;                           ///< of the records in the pedigree
  std::vector<STATE> states_;
  std::vector<pedigree_member> pedigree_;
};

}  // namespace

std::vector<pedigree_member> printedPedigree() {
  return PedigreeOrder().order();
}

std::vector<pedigree_member> withBothParents(const std::vector<pedigree_member>& pedigree) {
  std::vector<pedigree_member> complete;
  std::vector<std::size_t> places;
  const auto makeUp = [&](const char* which, const std::string& child, SEX sex) {
    complete.push_back({which + child, NONE, NONE, sex, nullptr});
    return complete.size() - 1;
  };
  for (pedigree_member member : pedigree) {
    member.sire = member.sire == NONE ? NONE : places[member.sire];
    member.dam = member.dam == NONE ? NONE : places[member.dam];
    if (member.sire == NONE && member.dam != NONE) {
      member.sire = makeUp("sire_of_", member.id, SEX::MALE);
    } else if (member.dam == NONE && member.sire != NONE) {
      member.dam = makeUp("dam_of_", member.id, SEX::FEMALE);
    }
    complete.push_back(std::move(member));
    places.push_back(complete.size() - 1);
  }
  return complete;
}

void settleParentSexes(std::vector<pedigree_member>& pedigree) {
  const auto settle = [&](std::size_t parent, SEX sex, const char* role) {
    if (parent == NONE) {
      return;
    }
    SEX& own = pedigree[parent].sex;
    if (own != SEX::MALE && own != SEX::FEMALE) {
      own = sex;
    }
    if (own != sex) {
      throw Failure("animal " + quotedText(pedigree[parent].id) + " is a " + role + " but " + getEnumName(own) +
                    ", which this package refuses; correct that first");
    }
  };
  for (const pedigree_member& member : pedigree) {
    settle(member.sire, SEX::MALE, "sire");
    settle(member.dam, SEX::FEMALE, "dam");
  }
}

}  // namespace spx::console
