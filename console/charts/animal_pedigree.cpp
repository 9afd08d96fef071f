#include "console/charts/animal_pedigree.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/identifiers.h"
#include "spx/support/number_text.h"

#include "console/base/failure.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"

namespace spx::console {
namespace {

constexpr std::size_t NONE = drawn_animal::NONE;
constexpr std::size_t MOST_SYMBOLS = 2000;

/// The parents and offspring of every record, by position.
class Relatives {
 public:
  Relatives() {
    const std::size_t count = Animals.records.size();
    first_.reserve(count);
    for (position at = 0; at < count; ++at) {
      first_.emplace(Animals.records[at].stud_id, at);
    }
    offspring_.resize(count);
    for (position at = 0; at < count; ++at) {
      for (const position parent : {sire(at), dam(at)}) {
        if (parent != NONE) {
          offspring_[parent].push_back(at);
        }
      }
    }
  }

  position find(const std::string& id) const {
    const auto found = first_.find(id);
    return found == first_.end() ? NONE : found->second;
  }
  std::vector<std::string> ids() const {
    std::vector<std::string> all;
    for (const master_data& animal : Animals.records) {
      all.push_back(animal.stud_id);
    }
    return all;
  }
  position sire(position at) const { return parent(Animals.records[at].sire_id); }
  position dam(position at) const { return parent(Animals.records[at].dam_id); }
  const std::vector<position>& offspring(position at) const { return offspring_[at]; }

 private:
  /// The record of a parent; NONE for placeholders that stand for many animals, which must not become one symbol.
  position parent(const std::string& id) const {
    return isPseudoIndividual(id) && !isPseudoFounder(id) ? NONE : find(id);
  }

  std::unordered_map<std::string_view, position> first_;
  std::vector<std::vector<position>> offspring_;
};

/// The animals to draw, in the order in which they were found.
class Selection {
 public:
  explicit Selection(const Relatives& relatives) : relatives_(relatives) {}

  void addAncestors(position animal, std::size_t generations) {
    std::vector<position> row = {animal};
    add(animal);
    for (std::size_t generation = 0; generation < generations && !row.empty(); ++generation) {
      std::vector<position> above;
      for (const position each : row) {
        for (const position parent : {relatives_.sire(each), relatives_.dam(each)}) {
          if (parent != NONE && add(parent)) {
            above.push_back(parent);
          }
        }
      }
      row = std::move(above);
    }
  }

  /// Adds the descendants with their other parents, so that every drawn offspring has both parents.
  void addDescendants(position animal, std::size_t generations) {
    std::vector<position> row = {animal};
    for (std::size_t generation = 0; generation < generations && !row.empty(); ++generation) {
      std::vector<position> below;
      for (const position each : row) {
        for (const position child : relatives_.offspring(each)) {
          if (add(child)) {
            below.push_back(child);
          }
          for (const position parent : {relatives_.sire(child), relatives_.dam(child)}) {
            if (parent != NONE) {
              add(parent);
            }
          }
        }
      }
      row = std::move(below);
    }
  }

  const std::vector<position>& positions() const { return positions_; }
  std::size_t placeOf(position at) const {
    const auto found = place_.find(at);
    return found == place_.end() ? NONE : found->second;
  }

 private:
  bool add(position at) {
    if (!place_.emplace(at, positions_.size()).second) {
      return false;
    }
    positions_.push_back(at);
    if (positions_.size() > MOST_SYMBOLS) {
      throw Failure("this pedigree has more than " + std::to_string(MOST_SYMBOLS) +
                    " animals, too many to read; ask for fewer generations with --depth or --descendants");
    }
    return true;
  }

  const Relatives& relatives_;
  std::vector<position> positions_;
  std::unordered_map<position, std::size_t> place_;
};

std::string year(qs_lib::day_number day) {
  return day == 0 ? "?" : qs_lib::julianToISO(qs_lib::dayToMs(day)).substr(0, 4);
}

drawn_animal symbol(const master_data& animal, const pedigree_extent& extent) {
  drawn_animal drawn;
  drawn.lines.push_back(animal.stud_id);
  drawn.sex = animal.sex;
  drawn.dead = animal.death.date != 0 && animal.death.event != MOVE_TYPE::LOST_TO_FOLLOW_UP;
  constexpr const char* FIRST_YEAR = "1803";  // placeholders are born before it, so that they are older than all others
  if (isPseudoIndividual(animal.stud_id) && (animal.birth.date == 0 || year(animal.birth.date) < FIRST_YEAR)) {
    drawn.lines.emplace_back("wild");
    return drawn;
  }
  if (animal.birth.date != 0 || animal.death.date != 0) {
    drawn.lines.push_back(year(animal.birth.date) + (animal.death.date != 0 ? "–" + year(animal.death.date) : ""));
  }
  drawn.inbred = animal.fcoef > 0;
  if (extent.fill == PEDIGREE_FILL::INBREEDING && animal.fcoef > 0) {
    drawn.lines.push_back("F " + qs_lib::realToString(animal.fcoef, 3));
    drawn.shade = std::min(1.0, animal.fcoef / 0.5);
  }
  return drawn;
}

}  // namespace

pedigree_drawing animalPedigree(const std::string& id, const pedigree_extent& extent) {
  const Relatives relatives;
  const position animal = relatives.find(id);
  if (animal == NONE) {
    throw Failure("there is no animal " + quotedText(id) + suggestion(id, relatives.ids()));
  }
  Selection selection(relatives);
  selection.addAncestors(animal, extent.ancestors);
  selection.addDescendants(animal, extent.descendants);
  pedigree_drawing drawing;
  drawing.title = "Pedigree of " + id;
  for (const position at : selection.positions()) {
    drawn_animal drawn = symbol(Animals.records[at], extent);
    drawn.marked = at == animal;
    drawn.sire = relatives.sire(at) == NONE ? NONE : selection.placeOf(relatives.sire(at));
    drawn.dam = relatives.dam(at) == NONE ? NONE : selection.placeOf(relatives.dam(at));
    drawing.animals.push_back(std::move(drawn));
  }
  drawing.subtitle = "up to " + std::to_string(extent.ancestors) + " generations of ancestors" +
                     (extent.descendants > 0 ? ", " + std::to_string(extent.descendants) + " of descendants" : "");
  drawing.description = std::to_string(drawing.animals.size()) +
                        " animals. Squares are males, circles females, diamonds animals of unknown sex. A slash marks "
                        "the dead, a double line related parents, darker blue higher inbreeding.";
  return drawing;
}

}  // namespace spx::console
