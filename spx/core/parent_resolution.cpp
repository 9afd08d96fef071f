// Parents: pseudo parents and founders, the search for a parent, and the checks of a loaded
// studbook.
#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>

#include "spx/core/animal_data.h"
#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/core/identifiers.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/record_index.h"
#include "spx/support/console.h"
#include "spx/support/fetch_ahead.h"
#include "spx/support/progress_bar.h"
#include "spx/support/text.h"
#include "spx/support/text_hash.h"
#include "spx/support/write_file.h"

namespace spx {
namespace {

constexpr char ERROR_FILE[] = "~/spx/projects/studbook-errors.txt";

// Pseudo individuals are born before the animals of usual studbooks, each before those that may
// name it as a parent.
constexpr char WILD_BIRTH[] = "1800";
constexpr char UNKNOWN_BIRTH[] = "1801";
constexpr char FOUNDER_BIRTH[] = "1802";

qs_lib::day_number dayOf(const char* date) {
  return qs_lib::msToDay(qs_lib::dateToJulian(std::string(date)));
}

void setPseudoParents(master_data& animal) {
  const std::string& id = animal.stud_id;
  if (id.starts_with(WILD_PARENT)) {
    animal.sire_id = WILD_PARENT;
    animal.dam_id = WILD_PARENT;
    setAnimalGeneration(animal, -1.0);
  } else if (id.starts_with(UNKNOWN_PARENT)) {
    animal.sire_id = WILD_PARENT;
    animal.dam_id = WILD_PARENT;
  } else {
    animal.sire_id = UNKNOWN_SIRE;
    animal.dam_id = UNKNOWN_DAM;
  }
}

std::string substituteOf(const std::string& id, SEX sex) {
  if (!id.starts_with(UNKNOWN_PARENT)) {
    return PSEUDO_FOUNDER_PREFIX + id;
  }
  if (sex == SEX::MALE) {
    return UNKNOWN_SIRE;
  }
  return sex == SEX::FEMALE ? UNKNOWN_DAM : UNKNOWN_PARENT;
}

std::string wildMateOf(const std::string& known_id) {
  return PSEUDO_FOUNDER_PREFIX + qs_lib::allTrim(known_id);
}

void warnOfMissing(const std::string& id, const std::string& substitute) {
  constexpr std::size_t WIDTH = 8;
  std::string warning = "Warning: record of parent id #";
  warning.append(WIDTH - std::min(id.size(), WIDTH), ' ');
  warning += id;
  warning += " does not exist, assume ";
  warning += substitute;
  warning += '\n';
  qs_lib::display(warning);
}

// The facts about a parent that the check of its offspring needs, in less memory than a record;
// `taxon` changes with the record's.
struct parent_facts {
  taxon_handle taxon;
  qs_lib::day_number birth_day;
  bool is_male;
  bool is_female;
  bool is_pseudo;
  bool is_unknown;

  explicit parent_facts(const master_data& animal)
      : taxon(animal.taxon),
        birth_day(animal.birth.date),
        is_male(animal.sex == SEX::MALE),
        is_female(animal.sex == SEX::FEMALE),
        is_pseudo(isPseudoIndividual(animal.stud_id)),
        is_unknown(animal.stud_id == UNKNOWN_PARENT) {}
};

}  // namespace

bool AnimalData::addPseudoParents() {
  addPseudoAnimal(WILD_PARENT, SEX::UNKNOWN, dayOf(WILD_BIRTH));
  addPseudoAnimal(UNKNOWN_PARENT, SEX::UNKNOWN, dayOf(UNKNOWN_BIRTH));
  addPseudoAnimal(UNKNOWN_SIRE, SEX::MALE, dayOf(UNKNOWN_BIRTH));
  addPseudoAnimal(UNKNOWN_DAM, SEX::FEMALE, dayOf(UNKNOWN_BIRTH));
  addPseudoAnimal(GROUP_PARENT, SEX::UNKNOWN, dayOf(UNKNOWN_BIRTH));
  return true;
}

bool AnimalData::addPseudoAnimal(const std::string& id, SEX sex, qs_lib::day_number birth_day) {
  if (animalExists(id)) {
    return false;
  }
  appendPseudo(id, sex, birth_day);
  return true;
}

bool AnimalData::addPseudoFounder(const std::string& id, SEX sex) {
  return addPseudoAnimal(id, sex, dayOf(FOUNDER_BIRTH));
}

void AnimalData::appendPseudo(const std::string& id, SEX sex, qs_lib::day_number birth_day) {
  master_data animal;
  animal.id_key = std::numeric_limits<std::uint64_t>::max();
  animal.stud_id = id;
  animal.taxon = Subspecies.getGeneric();
  animal.sex = sex;
  animal.birth_type = BIRTH_TYPE::UNKNOWN;
  animal.rearing = REARING::UNKNOWN;
  animal.birth.date = birth_day;
  setAnimalGeneration(animal, std::numeric_limits<double>::quiet_NaN());
  setPseudoParents(animal);
  addMaster(std::move(animal));
}

bool AnimalData::checkPseudoFounder(master_data& animal) {
  const bool wild_sire = animal.sire_id == WILD_PARENT;
  const bool wild_dam = animal.dam_id == WILD_PARENT;
  if (wild_sire == wild_dam) {
    return false;
  }
  std::string& wild_id = wild_sire ? animal.sire_id : animal.dam_id;
  const std::string& known_id = wild_sire ? animal.dam_id : animal.sire_id;
  wild_id = wildMateOf(known_id);
  addPseudoFounder(wild_id, wild_sire ? SEX::MALE : SEX::FEMALE);
  return true;
}

std::size_t AnimalData::nameWildMates() {
  const std::size_t loaded = records.size();
  std::unordered_set<std::string, qs_lib::text_hash> taken;  // existing IDs that begin like a founder's
  for (const master_data& animal : records) {
    if (animal.stud_id.starts_with(PSEUDO_FOUNDER_PREFIX)) {
      taken.insert(animal.stud_id);
    }
  }
  for (position record = 0; record < loaded; ++record) {
    const bool wild_sire = records[record].sire_id == WILD_PARENT;
    if (wild_sire == (records[record].dam_id == WILD_PARENT)) {
      continue;
    }
    std::string& wild_id = wild_sire ? records[record].sire_id : records[record].dam_id;
    const std::string& known_id = wild_sire ? records[record].dam_id : records[record].sire_id;
    if (isPseudoIndividual(known_id)) {
      continue;
    }
    wild_id = wildMateOf(known_id);
    if (taken.insert(wild_id).second) {
      appendPseudo(std::string(wild_id), wild_sire ? SEX::MALE : SEX::FEMALE, dayOf(FOUNDER_BIRTH));
    }
  }
  return records.size() - loaded;
}

position AnimalData::findParent(const std::string& id, SEX sex) {
  const position found = findMaster(id);
  return found != records.size() ? found : assumeParent(std::string(id), sex, nullptr);
}

// Like findParent(), but looks IDs up in the index of a pass over the whole studbook instead of scanning the records.
position AnimalData::parentOf(position record, SEX sex, RecordIndex& known) {
  const bool is_sire = sex == SEX::MALE;
  const position found = is_sire ? known.findSire(record) : known.findDam(record);
  if (found != records.size()) {
    return found;
  }
  return assumeParent(is_sire ? known.sireId(record) : known.damId(record), sex, &known);
}

// Requires: the ID is not a reference into a record, since records move when parents are added.
position AnimalData::assumeParent(const std::string& missing, SEX sex, RecordIndex* known) {
  const std::string substitute = substituteOf(missing, sex);
  const position parent = known == nullptr ? findMaster(substitute) : known->find(substitute);
  if (parent == records.size()) {
    appendPseudo(substitute, sex, dayOf(FOUNDER_BIRTH));
    if (known != nullptr) {
      known->addNext();
    }
  }
  warnOfMissing(missing, substitute);
  return parent;
}

struct AnimalData::Validation {
  std::vector<parent_facts> facts;  ///< by record
  RecordIndex known;
  taxon_handle generic = Subspecies.getGeneric();
  std::unordered_map<std::string, std::size_t, qs_lib::text_hash> missing;  ///< places in missing_parents, by ID
  bool is_taxon_inherited = Subspecies.names().size() > 1 && generic != Subspecies.end();

  explicit Validation(const std::vector<master_data>& records)
      : facts(roomFor(records)), known(records, [this](const master_data& animal) { facts.emplace_back(animal); }) {}

  static std::vector<parent_facts> roomFor(const std::vector<master_data>& records) {
    std::vector<parent_facts> room;
    room.reserve(records.size());
    return room;
  }

  void fetchParentsOf(position record) const {
    qs_lib::fetchAhead(facts.data() + known.findSire(record), facts.data() + known.findDam(record));
  }
};

bool AnimalData::validate() {
  if (records.empty()) {
    spxError(error_text::NO_ANIMALS);
    return false;
  }
  inconsistencies.clear();
  missing_parents.clear();
  Validation pass(records);
  qs_lib::ProgressBar bar(records.size(), "");
  for (position record = 0; record < records.size(); ++record) {
    bar.progress();
    if (record + RecordIndex::FETCH_FIRST < records.size()) {
      pass.known.fetchParentPlaces(record + RecordIndex::FETCH_FIRST);
      pass.fetchParentsOf(record + RecordIndex::FETCH_NEXT);
    }
    validateRecord(record, pass);
  }
  writeInconsistencies();
  bar.end();
  return true;
}

void AnimalData::validateRecord(position record, Validation& pass) {
  if (pass.facts[record].is_pseudo) {
    setTaxon(record, pass.generic, pass);
    return;
  }
  if (pass.known.isDuplicate(record)) {
    inconsistencies.push_back({INCONSISTENCY::DUPLICATE_ID, records[record].stud_id, ""});
  }
  const taxon_handle sire_taxon = validateParent(record, SEX::MALE, pass);
  const taxon_handle dam_taxon = validateParent(record, SEX::FEMALE, pass);
  if (pass.is_taxon_inherited && pass.facts[record].taxon == pass.generic) {
    setTaxon(record, sire_taxon == dam_taxon ? sire_taxon : pass.generic, pass);
  }
}

// Resolves and checks the parent of one sex. Returns the taxon that it passes on.
taxon_handle AnimalData::validateParent(position record, SEX sex, Validation& pass) {
  const bool is_sire = sex == SEX::MALE;
  std::string master_data::*parent_id = is_sire ? &master_data::sire_id : &master_data::dam_id;
  const bool missing = (is_sire ? pass.known.findSire(record) : pass.known.findDam(record)) == records.size();
  const position found = parentOf(record, sex, pass.known);
  if (missing) {
    noteMissing(record, sex, found, pass);
  }
  if (pass.facts.size() < records.size()) {
    pass.facts.emplace_back(records.back());
  }
  const parent_facts& parent = pass.facts[found];
  if (parent.is_unknown) {
    records[record].*parent_id = is_sire ? UNKNOWN_SIRE : UNKNOWN_DAM;
  }
  if (parent.is_pseudo) {
    return pass.generic;
  }
  const auto report = [&](INCONSISTENCY kind) {
    inconsistencies.push_back({kind, records[record].stud_id, records[found].stud_id});
  };
  if (is_sire ? !parent.is_male : !parent.is_female) {
    report(is_sire ? INCONSISTENCY::SIRE_NOT_MALE : INCONSISTENCY::DAM_NOT_FEMALE);
  }
  if (pass.facts[record].birth_day <= parent.birth_day) {
    report(is_sire ? INCONSISTENCY::SIRE_NOT_OLDER : INCONSISTENCY::DAM_NOT_OLDER);
  }
  return parent.taxon;
}

void AnimalData::noteMissing(position record, SEX sex, position stand_in, Validation& pass) {
  const bool is_sire = sex == SEX::MALE;
  std::string id = is_sire ? pass.known.sireId(record) : pass.known.damId(record);
  const auto [place, is_new] = pass.missing.try_emplace(std::move(id), missing_parents.size());
  if (is_new) {
    missing_parents.push_back({place->first, sex, stand_in, {}});
  }
  std::vector<position>& offspring = missing_parents[place->second].offspring;
  if (offspring.empty() || offspring.back() != record) {
    offspring.push_back(record);
  }
}

void AnimalData::setTaxon(position record, taxon_handle taxon, Validation& pass) {
  if (pass.facts[record].taxon != taxon) {
    records[record].taxon = taxon;
    pass.facts[record].taxon = taxon;
  }
}

void AnimalData::writeInconsistencies() const {
  qs_lib::WriteFile file;
  file.setFileName(ERROR_FILE);
  file.setStaged(true);
  bool written = file.fileOpen();
  if (written) {
    for (const inconsistency& finding : inconsistencies) {
      file.writeLine(inconsistencyText(finding));
    }
    written = file.fileClose();
  }
  if (!written) {
    spxError(error_text::ERROR_FILE_NOT_WRITTEN);
  }
}

}  // namespace spx
