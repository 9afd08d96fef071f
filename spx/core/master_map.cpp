#include "spx/core/master_map.h"

#include "spx/core/meta_population.h"
#include "spx/support/number_text.h"

namespace spx {

master_map masterToMap(const master_data& animal) {
  master_map map;
  map["DAM"] = animal.dam_id;
  map["SIRE"] = animal.sire_id;
  map["SEX"] = getEnumName(animal.sex);
  map["BIRTHDATE"] = qs_lib::julianToISO(qs_lib::dayToMs(animal.birth.date));
  map["BIRTHSITE"] = MetaPop.getMemberName(animal.birth.location);
  map["FCOEF"] = qs_lib::realToString(animal.fcoef, 4);
  map["GENERATION_C"] = qs_lib::realToString(animal.generation[G_CITES], 2);
  map["GENERATION_G"] = qs_lib::realToString(animal.generation[G_GENETIC], 2);
  map["GENERATION_M"] = qs_lib::realToString(animal.generation[G_MATERNAL], 2);
  map["GENERATION_A"] = qs_lib::realToString(animal.generation[G_AVERAGE], 2);
  map["DEATHDATE"] = "NA";
  map["DEATHAGE"] = "NA";
  if (animal.death.date != 0 && animal.death.event != MOVE_TYPE::LOST_TO_FOLLOW_UP) {
    const qs_lib::day_number age_days = animal.death.date - animal.birth.date;
    map["DEATHDATE"] = qs_lib::julianToISO(qs_lib::dayToMs(animal.death.date));
    map["DEATHAGE"] = qs_lib::realToString(static_cast<double>(age_days), 1);
  }
  return map;
}

}  // namespace spx
