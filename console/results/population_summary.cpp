#include "console/results/population_summary.h"

#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/core/pseudo_ids.h"
#include "spx/views/data_filter.h"

#include "console/project/view_animals.h"

namespace spx::console {
namespace {

bool isUnknownParent(const std::string& id) {
  return id.starts_with(UNKNOWN_PARENT);
}

/// Counts one animal after the other.
class Counter {
 public:
  explicit Counter(population_summary& summary) : summary_(summary) {}

  void add(const master_data& animal, bool is_there) {
    is_living_ = is_there;
    count(summary_.animals, true);
    count(summary_.sexes[animal.sex], true);
    count(summary_.origins[animal.birth_type], true);
    count(summary_.breeders, animal.breeder);
    addLife(animal);
    addParents(animal);
  }

 private:
  void count(kind_count& kind, bool belongs) const {
    kind.all += belongs ? 1 : 0;
    kind.living += belongs && is_living_ ? 1 : 0;
  }

  void addLife(const master_data& animal) {
    const LIFE_STATUS status = LifeOnDay(animal, summary_.day).status();
    const bool is_elsewhere = status == LIFE_STATUS::LIVING && !is_living_;
    summary_.elsewhere += is_elsewhere ? 1 : 0;
    summary_.statuses[static_cast<std::size_t>(status)] += is_elsewhere ? 0 : 1;
    ++summary_.birth_accuracy[animal.birth.accuracy];
    const bool has_ended = animal.death.date != 0 && animal.death.date <= summary_.day;
    if (has_ended) {
      ++summary_.death_accuracy[animal.death.accuracy];
    }
    summary_.without_birth += animal.birth.date == 0 ? 1 : 0;
    const qs_lib::day_number end = has_ended ? animal.death.date : summary_.day;
    const bool is_known_to_the_end = has_ended || is_living_;
    if (animal.birth.date != 0 && animal.birth.date < end && is_known_to_the_end) {
      compareAge(summary_.oldest, animal, end - animal.birth.date);
      if (is_living_) {
        compareAge(summary_.oldest_living, animal, end - animal.birth.date);
      }
    }
  }

  static void compareAge(oldest_animal& oldest, const master_data& animal, double days) {
    if (days > oldest.days) {
      oldest = {animal.stud_id, days};
    }
  }

  void addParents(const master_data& animal) {
    const bool no_sire = isUnknownParent(animal.sire_id);
    const bool no_dam = isUnknownParent(animal.dam_id);
    count(summary_.unknown_both, no_sire && no_dam);
    count(summary_.unknown_sire, no_sire && !no_dam);
    count(summary_.unknown_dam, no_dam && !no_sire);
    count(summary_.group_sire, isMultiParent(animal.sire_id));
    count(summary_.group_dam, isMultiParent(animal.dam_id));
    const bool wild_sire = animal.sire_id == WILD_PARENT;
    const bool wild_dam = animal.dam_id == WILD_PARENT;
    const bool is_founder = (no_sire || wild_sire) && (no_dam || wild_dam);
    count(summary_.founders, is_founder);
    count(summary_.breeding_founders, is_founder && animal.breeder);
    count(summary_.wild_parents, wild_sire && wild_dam);
    count(summary_.breeding_wild_parents, wild_sire && wild_dam && animal.breeder);
  }

  population_summary& summary_;
  bool is_living_ = false;
};

/// A founder of its own: a parent without a record, or the wild mate of an animal.
bool isStandIn(const master_data& animal) {
  return animal.breeder && isPseudoIndividual(animal.stud_id) && !isMultiParent(animal.stud_id) &&
         !isFixedPlaceholder(animal.stud_id);
}

}  // namespace

population_summary summarise() {
  population_summary summary;
  summary.day = View.monitor_date;
  std::vector<bool> is_there(Animals.records.size());
  for (const position animal : livingOfView()) {
    is_there[animal] = true;
  }
  Counter counter(summary);
  for (const position animal : animalsOfView()) {
    counter.add(Animals.records[animal], is_there[animal]);
  }
  for (const master_data& animal : Animals.records) {
    summary.placeholder_founders += isStandIn(animal) ? 1 : 0;
  }
  return summary;
}

}  // namespace spx::console
