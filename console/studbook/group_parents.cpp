#include "console/studbook/group_parents.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/support/text.h"

namespace spx::console {
namespace {

bool isLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

/// The IDs after the word that makes it a group.
std::vector<std::string> namesIn(const std::string& group) {
  std::vector<std::string> names;
  auto begin = std::find_if_not(group.begin(), group.end(), isLetter);
  while (true) {
    const auto end = std::find(begin, group.end(), '/');
    names.push_back(qs_lib::allTrim(std::string(begin, end)));
    if (end == group.end()) return names;
    begin = end + 1;
  }
}

}  // namespace

group_parents groupParents() {
  std::set<std::string> groups;
  for (const master_data& animal : Animals.records) {
    for (const std::string* parent : {&animal.sire_id, &animal.dam_id}) {
      if (parent->find('/') != std::string::npos && isMultiParent(*parent)) groups.insert(*parent);
    }
  }
  group_parents found;
  if (groups.empty()) return found;
  std::unordered_set<std::string> animals;
  for (const master_data& animal : Animals.records) {
    if (!isPseudoIndividual(animal.stud_id)) animals.insert(animal.stud_id);
  }
  for (const std::string& group : groups) {
    std::vector<std::string> names = namesIn(group);
    const bool is_listed = names.size() > 1 && std::all_of(names.begin(), names.end(), [&](const std::string& name) {
                             return animals.contains(name);
                           });
    if (is_listed) {
      found.listed.push_back({group, std::move(names)});
    } else if (names.size() > 1) {
      found.unlisted.push_back(group);
    }
  }
  return found;
}

}  // namespace spx::console
