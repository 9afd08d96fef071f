#include "console/output/animal_records.h"

#include <charconv>
#include <cmath>

#include <nlohmann/json.hpp>

#include "spx/core/animal_data.h"
#include "spx/core/deme_id.h"
#include "spx/core/meta_population.h"
#include "spx/core/user_fields.h"

#include "console/output/record_stream.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

fact_record dateFact(qs_lib::day_number day) {
  if (day == 0) {
    return nullptr;
  }
  return qs_lib::julianToISO(qs_lib::dayToMs(day));
}

fact_record accuracyFact(const move_data& event) {
  if (event.date == 0) {
    return nullptr;
  }
  return getEnumName(event.accuracy);
}

fact_record rangeFact(const move_data& event) {
  if (event.date == 0) {
    return nullptr;
  }
  return event.range;
}

std::string placeText(packed_deme location) {
  DemeID deme;
  deme.set(location);
  return shortDemeText(deme);
}

fact_record placeFact(const move_data& event) {
  if (event.location == 0) {
    return nullptr;
  }
  return placeText(event.location);
}

fact_record placeNameFact(const move_data& event) {
  if (event.location == 0) {
    return nullptr;
  }
  return MetaPop.getMemberName(event.location);
}

/// Null for what is not computed. A single-precision number keeps its own short text: 1.3 would
/// come out as 1.2999999523162842.
template <typename Real>
fact_record numberFact(Real value) {
  if (!std::isfinite(value)) {
    return nullptr;
  }
  char text[32];
  const auto end = std::to_chars(text, std::end(text), value).ptr;
  double number = 0;
  std::from_chars(text, end, number);
  return number;
}

template <GENERATION KIND>
fact_record generationFact(const master_data& animal) {
  return numberFact(animal.generation[KIND]);
}

fact_record userFacts(const master_data& animal) {
  fact_record facts = fact_record::object();
  for (std::size_t field = 0; field < user_field_list.size(); ++field) {
    const bool is_given = field < animal.user_data.size();
    facts[user_field_list[field].name] = is_given ? animal.user_data[field] : "";
  }
  return facts;
}

struct animal_fact {
  const char* name;
  fact_record (*read)(const master_data& animal);
};

constexpr animal_fact FACTS[] = {
    {"id_key", [](const master_data& animal) { return fact_record(animal.id_key); }},
    {"id", [](const master_data& animal) { return fact_record(animal.stud_id); }},
    {"sire", [](const master_data& animal) { return fact_record(animal.sire_id); }},
    {"dam", [](const master_data& animal) { return fact_record(animal.dam_id); }},
    {"sex", [](const master_data& animal) { return fact_record(getEnumName(animal.sex)); }},
    {"birth_date", [](const master_data& animal) { return dateFact(animal.birth.date); }},
    {"birth_accuracy", [](const master_data& animal) { return accuracyFact(animal.birth); }},
    {"birth_range", [](const master_data& animal) { return rangeFact(animal.birth); }},
    {"birth_location", [](const master_data& animal) { return placeFact(animal.birth); }},
    {"death_date", [](const master_data& animal) { return dateFact(animal.death.date); }},
    {"death_accuracy", [](const master_data& animal) { return accuracyFact(animal.death); }},
    {"death_range", [](const master_data& animal) { return rangeFact(animal.death); }},
    {"death_location", [](const master_data& animal) { return placeFact(animal.death); }},
    {"death_event",
     [](const master_data& animal) {
       return animal.death.date == 0 ? fact_record(nullptr) : fact_record(getEnumName(animal.death.event));
     }},
    {"origin", [](const master_data& animal) { return fact_record(getEnumName(animal.birth_type)); }},
    {"rearing", [](const master_data& animal) { return fact_record(getEnumName(animal.rearing)); }},
    {"taxon", [](const master_data& animal) { return fact_record(Subspecies.getName(animal.taxon)); }},
    {"fcoef", [](const master_data& animal) { return numberFact(animal.fcoef); }},
    {"g_cites", generationFact<G_CITES>},
    {"g_genetic", generationFact<G_GENETIC>},
    {"g_maternal", generationFact<G_MATERNAL>},
    {"g_average", generationFact<G_AVERAGE>},
    {"breeder", [](const master_data& animal) { return fact_record(animal.breeder); }},
    {"selected", [](const master_data& animal) { return fact_record(animal.selected); }},
};

void fill(fact_record& record, const master_data& animal) {
  for (const animal_fact& fact : FACTS) {
    record[fact.name] = fact.read(animal);
  }
}

/// The same for a record that has been filled before: the names need not be searched for a million
/// times.
void refill(fact_record& record, const master_data& animal) {
  auto value = record.begin();
  for (const animal_fact& fact : FACTS) {
    *value++ = fact.read(animal);
  }
  *value = userFacts(animal);
}

fact_record emptyRecord() {
  master_data nobody;
  initializeMaster(nobody);
  fact_record record;
  fill(record, nobody);
  record["user_fields"] = userFacts(nobody);
  return record;
}

fact_record eventFacts(const move_data& event) {
  fact_record facts;
  facts["date"] = dateFact(event.date);
  facts["accuracy"] = accuracyFact(event);
  facts["range"] = rangeFact(event);
  facts["event"] = getEnumName(event.event);
  facts["location"] = placeFact(event);
  facts["location_name"] = placeNameFact(event);
  return facts;
}

}  // namespace

void writeAnimals(std::ostream& out, OUTPUT_FORMAT format) {
  fact_record record = emptyRecord();
  RecordStream records(out, format, record);
  for (const position which : Animals.index) {
    const master_data& animal = Animals.records[which];
    if (!animal.print) {
      continue;
    }
    refill(record, animal);
    records.write(record);
  }
  records.end();
}

void writeCard(std::ostream& out, OUTPUT_FORMAT format, const master_data& animal) {
  fact_record record;
  fill(record, animal);
  record["birth_location_name"] = placeNameFact(animal.birth);
  record["death_location_name"] = placeNameFact(animal.death);
  record["events"] = fact_record::array();
  for (const move_data& move : animal.moves) {
    record["events"].push_back(eventFacts(move));
  }
  record["user_fields"] = userFacts(animal);
  writeRecord(out, format, record);
}

}  // namespace spx::console
