#include "console/results/genetic_basis.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

#include "spx/analyses/trace_parents.h"
#include "spx/core/identifiers.h"
#include "spx/core/multi_parent.h"
#include "spx/core/pseudo_ids.h"
#include "spx/demography/presence.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"
#include "console/base/natural_order.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/project/life_history.h"
#include "console/results/demography_notes.h"
#include "console/studbook/record_genetics.h"

namespace spx::console {
namespace {

/// Presence requires dates. An animal without any date counts as there unless an event has ended its stay.
bool isUndatedButThere(const master_data& animal, qs_lib::day_number day, const LocationSet& locations) {
  const auto has_date = [](const move_data& event) { return event.date != 0; };
  if (has_date(animal.birth) || std::any_of(animal.moves.begin(), animal.moves.end(), has_date)) return false;
  const auto ends = [](const move_data& event) {
    return event.event == MOVE_TYPE::RELEASED || event.event == MOVE_TYPE::POPULATION_OUT ||
           event.event == MOVE_TYPE::SURPLUS || event.event == MOVE_TYPE::LOST_TO_FOLLOW_UP ||
           event.event == MOVE_TYPE::DEATH;
  };
  if (std::any_of(animal.moves.begin(), animal.moves.end(), ends)) return false;
  return isLiving(animal, day) && locations.contains(currentDeme(animal, day));
}

/// The animals of a view that count.
struct counted_animals {
  std::vector<position> ever;
  std::vector<position> living;
  std::size_t undated = 0;
};

counted_animals countAnimals(const DataFilter& view, UNDATED treatment) {
  const presence_settings settings = presenceSettings(view);
  const LocationSet locations(view.demes);
  const Presence presence(Animals.records, view, settings);
  counted_animals found;
  for (const Presence::life& life : presence.lives()) {
    if (presence.stays(life).front().from > view.monitor_date) continue;
    found.ever.push_back(life.animal);
    if (presence.isPresent(life, view.monitor_date)) found.living.push_back(life.animal);
  }
  // Animals without dates and stillbirths have no stays, but still belong to the view.
  std::vector<bool> is_found(Animals.records.size());
  for (const position record : found.ever) is_found[record] = true;
  for (position record = 0; record < Animals.records.size(); ++record) {
    const master_data& animal = Animals.records[record];
    if (is_found[record] || !isInViewRecord(animal, view)) continue;
    if (isUndatedButThere(animal, view.monitor_date, locations)) {
      ++found.undated;
      if (treatment == UNDATED::EXCLUDE) continue;
      found.living.push_back(record);
      found.ever.push_back(record);
    } else if (locations.all() && animal.birth.date <= view.monitor_date) {
      found.ever.push_back(record);
    }
  }
  return found;
}

DataFilter viewOfAll() {
  DataFilter all = View;
  all.sex = SEX::ALL;
  all.origin = BIRTH_TYPE::ALL;
  all.rearing = REARING::ALL;
  all.birth_accuracy = all.death_accuracy = all.event_accuracy = DATE_ACCURACY::ALL_DATES;
  for (double* bound : {&all.low_generation, &all.high_generation, &all.low_inbreeding, &all.high_inbreeding}) {
    *bound = std::numeric_limits<double>::quiet_NaN();
  }
  all.demes.clear();
  all.taxa.clear();
  all.user_filters.clear();
  return all;
}

/// The candidates of every unknown and group parent.
std::vector<parent_candidates> tracedParents() {
  if (lacksReproductiveAges()) {
    throw UsageError("--trace-parents needs the reproductive ages of both sexes; set them with spx life-history set");
  }
  TraceParents tracing;
  std::vector<parent_candidates> found;
  if (!tracing.initialize()) return found;
  for (position record = 0; record < Animals.records.size(); ++record) {
    for (const SEX sex : {SEX::MALE, SEX::FEMALE}) {
      std::vector<position> candidates = tracing.possibleParents(Animals.records[record], sex);
      if (!candidates.empty()) found.push_back({record, sex == SEX::MALE, std::move(candidates)});
    }
  }
  return found;
}

std::string countedAs(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

const char* getText(UNKNOWN_PARENTS treatment) {
  return treatment == UNKNOWN_PARENTS::FOUNDER ? "founder" : "exclude";
}

const char* getText(UNDATED treatment) {
  return treatment == UNDATED::LIVING ? "living" : "exclude";
}

GeneticBasis::GeneticBasis(const basis_options& options) : options_(options) {
  std::vector<parent_candidates> candidates;
  if (options.trace_parents) candidates = tracedParents();
  traced_ = candidates.size();
  if (!studbook_.build(Animals, {parent_list, candidates})) {
    throw Failure(cycleText(studbook_.cycle()) +
                  "; correct one of these parents first: until then nothing genetic can be computed");
  }
  terms_ = inbreedingOf(pedigree(), threads());
  const auto numbersOf = [this](const std::vector<position>& records) {
    std::vector<animal_number> numbers;
    for (const position record : records) {
      const animal_number number = studbook_.number(record);
      if (number != UNKNOWN_SOURCE) numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
  };
  const counted_animals of_view = countAnimals(View, options.undated);
  animals_ = numbersOf(of_view.ever);
  living_ = numbersOf(of_view.living);
  undated_ = of_view.undated;
  const counted_animals all = countAnimals(viewOfAll(), options.undated);
  whole_studbook_ = numbersOf(all.ever);
  whole_population_ = numbersOf(all.living);
  for (const missing_parent& parent : Animals.missing_parents) {
    const animal_number number = studbook_.number(parent.stand_in);
    if (number != UNKNOWN_SOURCE) stand_ins_.emplace(number, parent.id);
  }
}

const std::vector<animal_number>& GeneticBasis::needAnimals() const {
  if (!animals_.empty()) return animals_;
  if (undated_ > 0) {
    throw Failure("no animal of the view has a date; --undated living counts the " + counted(undated_, "animal") +
                  " without dates");
  }
  throw Failure("no animals match the view; spx view show prints its settings");
}

const std::vector<animal_number>& GeneticBasis::needLiving() const {
  needAnimals();
  if (living_.empty()) throw Failure("no animal of the view is alive on its day; choose an earlier day with --on DATE");
  return living_;
}

const master_data& GeneticBasis::record(animal_number animal) const {
  return Animals.records[studbook_.record(animal)];
}

const std::string& GeneticBasis::id(animal_number animal) const {
  const std::string& stored = record(animal).stud_id;
  if (stand_ins_.empty() || !stored.starts_with(PSEUDO_FOUNDER_PREFIX)) return stored;
  const auto stand_in = stand_ins_.find(animal);
  return stand_in == stand_ins_.end() ? stored : stand_in->second;
}

std::string GeneticBasis::wildMateOf(animal_number animal) const {
  const master_data& founder = record(animal);
  const bool is_made_up = founder.stud_id.starts_with(PSEUDO_FOUNDER_PREFIX) && std::isnan(birthDay(founder)) &&
                          founder.birth.date != 0 && !stand_ins_.contains(animal);
  std::string mate = is_made_up ? founder.stud_id.substr(std::size(PSEUDO_FOUNDER_PREFIX) - 1) : "";
  return Animals.findMaster(mate) == Animals.records.size() ? "" : mate;
}

animal_number GeneticBasis::number(const std::string& id) const {
  const position found = Animals.findMaster(id);
  const animal_number number = studbook_.number(found);
  if (number != UNKNOWN_SOURCE) return number;
  for (const auto& [stand_in, name] : stand_ins_) {
    if (name == id) return stand_in;
  }
  if (found != Animals.records.size())
    throw Failure(quotedText(id) + " stands for an unknown parent; it is not an animal");
  std::vector<std::string> ids;
  for (const master_data& animal : Animals.records) ids.push_back(animal.stud_id);
  throw Failure("there is no animal " + quotedText(id) + suggestion(id, ids));
}

std::vector<animal_number> GeneticBasis::numbers(const std::vector<std::string>& ids) const {
  std::vector<animal_number> numbers;
  for (const std::string& id : ids) numbers.push_back(number(id));
  return numbers;
}

unsigned GeneticBasis::threads() {
  return std::max(1U, std::thread::hardware_concurrency());
}

std::vector<animal_number> GeneticBasis::sortedById(std::vector<animal_number> animals) const {
  std::sort(animals.begin(), animals.end(),
            [this](animal_number a, animal_number b) { return compareNaturally(id(a), id(b)) < 0; });
  return animals;
}

std::size_t GeneticBasis::withoutBirthDate() const {
  return static_cast<std::size_t>(std::count_if(
      living_.begin(), living_.end(), [this](animal_number animal) { return record(animal).birth.date == 0; }));
}

void GeneticBasis::noteLiving(std::vector<std::string>& notes) const {
  const std::size_t without_birth = withoutBirthDate();
  if (without_birth > 0) {
    notes.push_back(std::to_string(without_birth) + " of the " + counted(living_.size(), "living animal") +
                    (without_birth == 1 ? " has no birth date." : " have no birth date."));
  }
  if (undated_ > 0 && options_.undated == UNDATED::LIVING) {
    const bool all = undated_ == without_birth;
    notes.push_back(countedAs(undated_, "has", "have") + (all ? " no other date either" : " no date at all") +
                    (undated_ == 1 ? " and counts" : " and count") +
                    " as living, because no end is recorded; --undated exclude leaves " +
                    (undated_ == 1 ? "it" : "them") + " out.");
  } else if (undated_ > 0) {
    notes.push_back(countedAs(undated_, "animal without any date is", "animals without any date are") +
                    " left out (--undated exclude).");
  }
  const auto is_dead = [](const master_data& animal) { return animal.death.date != 0; };
  if (living_.size() > without_birth && std::none_of(Animals.records.begin(), Animals.records.end(), is_dead)) {
    notes.emplace_back("The studbook records no deaths: every animal counts as alive, however old.");
  }
}

std::vector<std::string> GeneticBasis::notes() const {
  std::vector<std::string> notes;
  if (options_.asks_living) noteLiving(notes);
  if (traced_ > 0) {
    notes.push_back(countedAs(traced_, "unknown or group parent is", "unknown or group parents are") +
                    " replaced by the average of the possible animals (--trace-parents).");
  }
  return notes;
}

std::vector<std::string> GeneticBasis::notes(UNKNOWN_PARENTS treatment) const {
  std::vector<std::string> lines = notes();
  lines.emplace_back(treatment == UNKNOWN_PARENTS::FOUNDER
                         ? "Unknown parents count as unrelated founders (--unknown founder)."
                         : "Results are over the genes of known founders (--unknown exclude).");
  return lines;
}

void addNotes(Table& table, const std::vector<std::string>& notes) {
  table.notes.insert(table.notes.end(), notes.begin(), notes.end());
}

double birthDay(const master_data& animal) {
  // Placeholders are born in the first years of the calendar, so that they are older than all others.
  static const qs_lib::day_number FIRST_BIRTH = qs_lib::msToDay(qs_lib::dateToJulian(std::string("1803")));
  if (animal.birth.date < FIRST_BIRTH) return std::numeric_limits<double>::quiet_NaN();
  const date_range range = rangeOf(animal.birth);
  return static_cast<double>(range.first + range.last) / 2;
}

double ageInYears(const master_data& animal) {
  constexpr double DAYS_OF_YEAR = 365.25;
  const double days = static_cast<double>(View.monitor_date) - birthDay(animal);
  return days < 0 ? 0 : days / DAYS_OF_YEAR;
}

births_and_sexes birthsAndSexes(const GeneticBasis& basis) {
  births_and_sexes found;
  for (animal_number number = 0; number < basis.pedigree().size(); ++number) {
    const bool is_animal = !basis.pedigree().isGroup(number);
    found.births.push_back(is_animal ? birthDay(basis.record(number)) : std::numeric_limits<double>::quiet_NaN());
    found.sexes.push_back(is_animal ? basis.record(number).sex : SEX::UNKNOWN);
  }
  return found;
}

}  // namespace spx::console
