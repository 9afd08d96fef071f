#include "console/tables/animals_table.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/sub_taxa.h"
#include "spx/core/user_fields.h"
#include "spx/support/text_hash.h"

#include "console/base/quoted_text.h"
#include "console/tables/event_cells.h"
#include "console/tables/field_table.h"
#include "console/tables/remembered_words.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

enum animal_field : std::size_t {
  ID_CELL,
  SIRE_CELL,
  DAM_CELL,
  SEX_CELL,
  BIRTH_DATE,
  BIRTH_ACCURACY,
  BIRTH_RANGE,
  BIRTH_LOCATION,
  DEATH_DATE,
  DEATH_ACCURACY,
  DEATH_RANGE,
  DEATH_LOCATION,
  DEATH_EVENT,
  ORIGIN_CELL,
  REARING_CELL,
  TAXON_CELL,
  FCOEF_CELL,
  FIRST_GENERATION_CELL  // the four generation numbers, in the order of the record
};

constexpr table_field ANIMAL_FIELDS[] = {
    ID_FIELD,
    {"sire",
     {"father", "sire_id", "father_id", "sire_number", "sire_no", "sire#", "father#", "sire_studbook_number",
      "sire_studbook_no", "vater", "vater_id", "vatertier", "pere", "id_pere", "padre", "id_padre", "paternal_id", "pa",
      "dad"}},
    {"dam",
     {"mother",          "dam_id", "mother_id", "dam_number", "dam_no", "dam#",    "mother#", "dam_studbook_number",
      "dam_studbook_no", "mutter", "mutter_id", "muttertier", "mere",   "id_mere", "madre",   "id_madre",
      "maternal_id",     "ma",     "mom",       "mum"}},
    {"sex", {"gender", "geschlecht", "sexe", "sexo", "sex_code"}},
    {"birth_date",
     {"dob",
      "yob",
      "born",
      "birth",
      "date_of_birth",
      "birthday",
      "birth_year",
      "year_of_birth",
      "born_on",
      "hatch_date",
      "date_of_hatch",
      "hatched",
      "geboren",
      "geboren_am",
      "geburt",
      "geburtsdatum",
      "geburtstag",
      "geb",
      "schlupfdatum",
      "date_de_naissance",
      "naissance",
      "ne_le",
      "fecha_de_nacimiento",
      "nacimiento",
      "fecha_nacimiento",
      "nacido"}},
    {"birth_accuracy", {"birth_date_accuracy", "birth_date_estimate", "accuracy_of_birth_date"}},
    {"birth_range"},
    {"birth_location",
     {"birth_site", "location", "birth_place", "place_of_birth", "born_at", "birth_institution", "birth_zoo",
      "geburtsort", "ort", "lieu_de_naissance", "lieu", "lugar_de_nacimiento", "lugar"}},
    {"death_date",
     {"dod",          "died",         "death",   "date_of_death",   "death_year", "year_of_death", "died_on",
      "gestorben",    "gestorben_am", "tod",     "todesdatum",      "gest",       "date_de_deces", "deces",
      "date_de_mort", "mort",         "mort_le", "fecha_de_muerte", "muerte",     "fecha_muerte",  "muerto"}},
    {"death_accuracy", {"death_date_accuracy", "death_date_estimate", "accuracy_of_death_date"}},
    {"death_range"},
    {"death_location",
     {"death_site", "death_place", "place_of_death", "died_at", "death_institution", "todesort", "sterbeort",
      "lieu_de_deces", "lugar_de_muerte"}},
    {"death_event", {"end_event"}},
    {"origin", {"birth_type", "birth_origin", "herkunft", "origine", "origen"}},
    {"rearing", {"rearing_type", "reared", "aufzucht", "elevage", "crianza"}},
    {"taxon", {"subspecies", "unterart", "sous_espece", "subespecie"}},
    {"fcoef",
     {"f", "inbreeding", "inbreeding_coefficient", "inzuchtkoeffizient", "inzucht", "consanguinite", "consanguinidad",
      "coefficient_de_consanguinite"}},
    {"g_cites"},
    {"g_genetic"},
    {"g_maternal"},
    {"g_average"},
};

// What was expected in place of a refused text, for messages.
constexpr char REARING_WORDS[] = "kind of rearing (parent, hand, foster, colony, supplemental, peer, none, unknown)";

constexpr event_fields BIRTH_FIELDS = {BIRTH_DATE, BIRTH_ACCURACY, BIRTH_RANGE, BIRTH_LOCATION};
constexpr event_fields DEATH_FIELDS = {DEATH_DATE, DEATH_ACCURACY, DEATH_RANGE, DEATH_LOCATION};

/// The ID as the record has it: the identifiers of the pseudo parents are recognised in any case.
std::string parentId(std::string_view text, const char* unknown) {
  static constexpr std::string_view PSEUDO_PARENTS[] = {WILD_PARENT, UNKNOWN_PARENT, UNKNOWN_SIRE, UNKNOWN_DAM,
                                                        GROUP_PARENT};
  if (isUnknownId(text)) {
    return unknown;
  }
  for (const std::string_view pseudo : PSEUDO_PARENTS) {
    if (isSameWord(text, pseudo)) {
      return std::string(pseudo);
    }
  }
  return std::string(text);
}

std::optional<taxon_handle> registerTaxon(std::string_view text) {
  return isUnknown(text) ? Subspecies.getGeneric() : Subspecies.add(std::string(text));
}

class AnimalsReader {
 public:
  AnimalsReader(const table_source& source, LocationRegistry& locations, Faults& faults, loading_notes& notes)
      : table_(source, ANIMAL_FIELDS, ID_CELL, faults),
        locations_(locations),
        notes_(notes),
        guesses_(table_.otherColumns().size()) {}

  void read() {
    for (const std::size_t column : table_.otherColumns()) {
      addUserField(column);
    }
    while (table_.next()) {
      readRow();
    }
    if (has_wild_mates_) {
      Animals.nameWildMates();
    }
    for (std::size_t field = 0; field < guesses_.size(); ++field) {
      user_field_list[field].type = guesses_[field].type();
    }
    dropBlankFields();
  }

 private:
  /// Columns without a title, which some programs write for row numbers, and titles that occur
  /// twice get generated names, so that no column is lost.
  void addUserField(std::size_t column) {
    const std::string& title = table_.title(column);
    const std::string name = title.empty() ? "column " + std::to_string(column + 1) : title;
    std::string free_name = name;
    while (!field_names_.insert(free_name).second) {
      free_name = name + " " + std::to_string(++copies_.try_emplace(name, 1).first->second);
    }
    user_field_list.push_back({free_name, qs_lib::FIELD_TYPE::TEXT});
  }

  /// Columns with neither a title nor a value, which spreadsheets append, are not fields.
  void dropBlankFields() {
    std::vector<std::size_t> kept;
    for (std::size_t field = 0; field < guesses_.size(); ++field) {
      if (guesses_[field].hasValues() || !table_.title(table_.otherColumns()[field]).empty()) {
        kept.push_back(field);
      }
    }
    if (kept.size() == guesses_.size()) {
      return;
    }
    const auto keep = [&kept](auto& values) {
      for (std::size_t place = 0; place < kept.size() && kept[place] < values.size(); ++place) {
        values[place] = std::move(values[kept[place]]);
      }
      values.resize(std::min(kept.size(), values.size()));
      values.shrink_to_fit();
    };
    keep(user_field_list);
    for (master_data& animal : Animals.records) {
      keep(animal.user_data);
    }
  }

  void readRow() {
    master_data animal;
    initializeMaster(animal);
    readIdentity(animal);
    readBirth(animal);
    readEnd(animal);
    readNumbers(animal);
    readUserData(animal);
    has_wild_mates_ |= (animal.sire_id == WILD_PARENT) != (animal.dam_id == WILD_PARENT);
    notes_.lines.resize(Animals.records.size());
    notes_.lines.push_back(static_cast<std::uint32_t>(table_.line()));
    Animals.addMaster(std::move(animal));
  }

  void readIdentity(master_data& animal) {
    const std::string_view id = table_[ID_CELL];
    if (id.empty()) {
      table_.addFault(ID_CELL, "the ID is missing");
    } else if (isUnknownId(id)) {
      table_.addFault(ID_CELL, quotedText(id) + " means an unknown parent and cannot be an ID");
    }
    animal.stud_id = id;
    animal.sire_id = parentId(table_[SIRE_CELL], UNKNOWN_SIRE);
    animal.dam_id = parentId(table_[DAM_CELL], UNKNOWN_DAM);
    animal.sex = table_.read(SEX_CELL, std::ref(sexes_), SEX_WORDS);
    animal.birth_type = table_.read(ORIGIN_CELL, std::ref(origins_), "origin (wild-born, captive-born, unknown)");
    animal.rearing = table_.read(REARING_CELL, std::ref(rearings_), REARING_WORDS);
    animal.taxon = *taxa_(table_[TAXON_CELL]);
  }

  void readBirth(master_data& animal) {
    animal.birth.event = MOVE_TYPE::BIRTH;
    readEventCells(table_, BIRTH_FIELDS, locations_, animal.birth);
    if (animal.birth.number != 0) {
      return;
    }
    const place unknown = locations_.unknown();
    animal.birth.location = unknown.deme;
    animal.birth.number = unknown.number;
  }

  /// A death date of 0 means alive, so an end event without a date would make a dead animal alive.
  void readEnd(master_data& animal) {
    readEventCells(table_, DEATH_FIELDS, locations_, animal.death);
    const bool ended = animal.death.date != 0;
    if (!ended) {
      initializeMove(animal.death);
    }
    animal.death.event = ended ? MOVE_TYPE::DEATH : MOVE_TYPE::NO_EVENT;
    if (isMissing(table_[DEATH_EVENT])) {
      return;
    }
    const MOVE_TYPE event = table_.read(DEATH_EVENT, std::ref(ends_), KIND_OF_EVENT);
    if (event != MOVE_TYPE::NO_EVENT && !ended) {
      table_.addFault(DEATH_EVENT, quotedText(table_[DEATH_EVENT]) + " needs a date");
    }
    if (ended) {
      animal.death.event = event;
    }
  }

  void readNumbers(master_data& animal) {
    if (table_.has(FCOEF_CELL)) {
      animal.fcoef = table_.read(FCOEF_CELL, parseReal<double>, "number");
    }
    for (std::size_t kind = 0; kind < std::size(animal.generation); ++kind) {
      const std::size_t field = FIRST_GENERATION_CELL + kind;
      if (table_.has(field)) {
        animal.generation[kind] = table_.read(field, parseReal<float>, "number");
      }
    }
  }

  void readUserData(master_data& animal) {
    const std::vector<std::size_t>& columns = table_.otherColumns();
    animal.user_data.reserve(columns.size());
    for (std::size_t field = 0; field < columns.size(); ++field) {
      const std::string_view value = table_.cell(columns[field]);
      guesses_[field].add(value);
      animal.user_data.emplace_back(value);
    }
  }

  FieldTable table_;
  LocationRegistry& locations_;
  loading_notes& notes_;
  bool has_wild_mates_ = false;
  std::vector<TypeGuess> guesses_;
  std::unordered_set<std::string, qs_lib::text_hash> field_names_;
  std::unordered_map<std::string, int, qs_lib::text_hash> copies_;  ///< by title: how many columns have it
  RememberedWords<SEX> sexes_{parseSex};
  RememberedWords<BIRTH_TYPE> origins_{parseOrigin};
  RememberedWords<REARING> rearings_{parseRearing};
  RememberedWords<MOVE_TYPE> ends_{parseMoveType};
  RememberedWords<taxon_handle> taxa_{registerTaxon};
};

}  // namespace

std::span<const table_field> animalFields() {
  return ANIMAL_FIELDS;
}

void readAnimals(const table_source& source, LocationRegistry& locations, Faults& faults, loading_notes& notes) {
  notes.animals_table = source.name;
  AnimalsReader(source, locations, faults, notes).read();
}

}  // namespace spx::console
