#include "spx/core/master_data.h"

#include <algorithm>
#include <limits>

#include "spx/core/pseudo_ids.h"

namespace spx {

void initializeMaster(master_data& animal) {
  animal.id_key = std::numeric_limits<std::uint64_t>::max();
  animal.sire_id = UNKNOWN_SIRE;
  animal.dam_id = UNKNOWN_DAM;
  animal.taxon = Subspecies.getGeneric();
  animal.sex = SEX::UNKNOWN;
  initializeMove(animal.birth);
  initializeMove(animal.death);
  animal.moves.clear();
  animal.birth_control.clear();
  setAnimalGeneration(animal, std::numeric_limits<double>::quiet_NaN());
  animal.fcoef = std::numeric_limits<double>::quiet_NaN();
  animal.breeder = false;
  animal.selected = true;
  animal.print = true;
  animal.user_data.clear();
  animal.lineages.reset();
}

bool initializeMove(move_data& move) {
  move.date = 0;
  move.accuracy = DATE_ACCURACY::ACCURATE;
  move.range = 0;
  move.location = 0;
  move.number = 0;
  return true;
}

bool initializeManaged(managed_data& managed) {
  std::fill_n(managed.words, 3, 0);
  return true;
}

void setAnimalGeneration(master_data& animal, double generation) {
  std::fill(std::begin(animal.generation), std::end(animal.generation), static_cast<float>(generation));
}

bool setFounderLineage(master_data& animal, std::uint64_t lineage) {
  if (lineage >= master_data::LINEAGES) {
    return false;
  }
  animal.lineages.set(lineage);
  return true;
}

packed_deme currentDeme(const master_data& animal, qs_lib::day_number day) {
  packed_deme location = animal.birth.location;
  for (const move_data& move : animal.moves) {
    if (move.date <= day) {
      location = move.location;
    }
  }
  return location;
}

}  // namespace spx
