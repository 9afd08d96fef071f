#include "spx/demography/births.h"

#include "spx/core/identifiers.h"
#include "spx/demography/dated_life.h"

namespace spx {

std::vector<birth_record> birthsOf(const AnimalData& store, const presence_settings& settings) {
  const auto parent = [&store](position one) {
    const bool is_known = one < store.records.size() && !isPseudoIndividual(store.records[one].stud_id);
    return is_known ? one : birth_record::NO_PARENT;
  };
  std::vector<birth_record> births;
  std::vector<life_event> life;
  life_findings findings;
  for (const pedigree_record& entry : store.pedigree) {
    const master_data& child = store.records[entry.animal];
    if (child.birth.date == 0 || child.birth_type == BIRTH_TYPE::WILD_BORN || isPseudoIndividual(child.stud_id)) {
      continue;
    }
    if (!datedLife(child, life, findings) || earlyDeath(child, life, settings) != LEFT_OUT::COUNT) continue;
    births.push_back({entry.animal, parent(entry.sire), parent(entry.dam), life.front().day, child.sex});
  }
  return births;
}

double maleShareAtBirth(const std::vector<birth_record>& births) {
  double males = 0;
  double females = 0;
  for (const birth_record& birth : births) {
    males += birth.sex == SEX::MALE;
    females += birth.sex == SEX::FEMALE;
  }
  return males + females > 0 ? males / (males + females) : 0.5;
}

}  // namespace spx
