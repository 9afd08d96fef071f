#include "spx/analyses/trace_parents.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "spx/core/animal_data.h"
#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/core/meta_population.h"
#include "spx/core/pseudo_ids.h"
#include "spx/project/biology.h"
#include "spx/reports/view_labels.h"
#include "spx/support/number_text.h"
#include "spx/support/progress_bar.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

namespace spx {
namespace {

// The longest time from conception to birth, as a multiple of the gestation.
constexpr double LONGEST_GESTATION = 1.0625;

bool isUnknown(const std::string& parent) {
  return parent.starts_with(UNKNOWN_PARENT);
}

bool isDay(double day) {
  return day >= 0 && day <= std::numeric_limits<qs_lib::day_number>::max();
}

double ageAt(qs_lib::day_number day, const master_data& candidate) {
  return static_cast<double>(day) - static_cast<double>(candidate.birth.date);
}

}  // namespace

TraceParents::TraceParents() {
  setTitle("Possible parents");
  setFileStem("parents");
  report_writer_.setStaged(true);
}

TraceParents::~TraceParents() = default;

bool TraceParents::initialize() {
  if (Animals.records.empty()) {
    spxError(error_text::NO_ANIMALS);
    return false;
  }
  if (Animals.index.empty()) {
    Animals.resetOrder();
    Animals.createIndex(SORT_FIELD::BIRTH);
  }
  Animals.sortList(SORT_FIELD::BIRTH);
  Animals.sortList(SORT_FIELD::LOCATION);
  gatherCandidates();
  sire_only = dam_only = both_parents = multi_sire = multi_dam = 0;
  return true;
}

void TraceParents::candidate_list::clear() {
  all.clear();
  at_location.clear();
}

// Each record is added once with all its locations, so a second stay at a location finds the record
// as the last one there.
void TraceParents::candidate_list::add(position record) {
  all.push_back(record);
  const auto enter = [this, record](packed_deme location) {
    std::vector<position>& there = at_location[location];
    if (there.empty() || there.back() != record) {
      there.push_back(record);
    }
  };
  enter(Animals.records[record].birth.location);
  for (const move_data& move : Animals.records[record].moves) {
    enter(move.location);
  }
}

const std::vector<position>& TraceParents::candidate_list::listFor(packed_deme location, bool same_location) const {
  static const std::vector<position> nobody;
  if (!same_location) {
    return all;
  }
  const auto found = at_location.find(location);
  return found == at_location.end() ? nobody : found->second;
}

void TraceParents::gatherCandidates() {
  sires_.clear();
  dams_.clear();
  for (const position record : Animals.index) {
    const master_data& animal = Animals.records[record];
    if (isPseudoIndividual(animal.stud_id)) {
      continue;
    }
    if (animal.sex == SEX::MALE) {
      sires_.add(record);
    } else if (animal.sex == SEX::FEMALE) {
      dams_.add(record);
    }
  }
}

bool TraceParents::trace() {
  report_writer_.setTitle(title());
  report_writer_.setDirectory(reportDirectory());
  report_writer_.setName(fileStem() + "-" + getEnumName(View.sex));
  // If the report cannot be created, everything is still counted; isReportWritten() is then false.
  static_cast<void>(report_writer_.beginReport());
  timer_.restart();
  qs_lib::ProgressBar bar(Animals.records.size(), "");
  for (const position record : Animals.index) {
    bar.progress();
    if (isChosen(record)) {
      traceAnimal(Animals.records[record]);
    }
  }
  writeUnknownCount();
  bar.end();
  timer_.stop();
  report_written_ = report_writer_.endReport(timer_.seconds());
  Animals.sortList(SORT_FIELD::STUDBOOK_ID);
  if (!Animals.pedigree.empty()) {
    Animals.populationPedigree();
  }
  return true;
}

std::uint64_t TraceParents::countCandidates() {
  only_counts_ = true;
  candidates_ = 0;
  for (const position record : Animals.index) {
    if (isChosen(record)) {
      traceAnimal(Animals.records[record]);
    }
  }
  only_counts_ = false;
  return candidates_;
}

void TraceParents::openAnimal(const master_data& animal) {
  report_writer_.openTag("ANIMAL");
  report_writer_.createTag("ID", animal.stud_id);
  report_writer_.createTag("BIRTHDATE", qs_lib::julianToISO(qs_lib::dayToMs(animal.birth.date)));
  report_writer_.createTag("BIRTHSITE", MetaPop.getMemberName(animal.birth.location));
}

void TraceParents::traceAnimal(const master_data& animal) {
  const bool group_sire = isMultiParent(animal.sire_id);
  const bool group_dam = isMultiParent(animal.dam_id);
  const bool unknown_sire = isUnknown(animal.sire_id);
  const bool unknown_dam = isUnknown(animal.dam_id);
  if (!(group_sire || group_dam || unknown_sire || unknown_dam) || isPseudoIndividual(animal.stud_id)) {
    return;
  }
  if (!only_counts_) {
    openAnimal(animal);
  }
  // A group lived where the animal was born; an unknown parent may have come from anywhere.
  if (group_sire) {
    trackSire(animal, true);
  }
  if (group_dam) {
    trackDam(animal, true);
  }
  if (unknown_sire && trackSire(animal, true) == 0) {
    trackSire(animal, false);
  }
  if (unknown_dam && trackDam(animal, true) == 0) {
    trackDam(animal, false);
  }
  if (only_counts_) {
    return;
  }
  report_writer_.closeTag("ANIMAL");
  multi_sire += group_sire;
  multi_dam += group_dam;
  both_parents += unknown_sire && unknown_dam;
  dam_only += unknown_dam && !unknown_sire;
  sire_only += unknown_sire && !unknown_dam;
}

TraceParents::parent_question TraceParents::sireQuestion(const master_data& animal) const {
  const double conception =
      std::trunc(static_cast<double>(animal.birth.date) - LONGEST_GESTATION * LifeHistory.getGestation());
  return {"SIRE", "SIRES_OMITTED", sires_, conception, LifeHistory.getReproductiveAge(SEX::MALE)};
}

TraceParents::parent_question TraceParents::damQuestion(const master_data& animal) const {
  return {"DAM", "DAMS_OMITTED", dams_, static_cast<double>(animal.birth.date),
          LifeHistory.getReproductiveAge(SEX::FEMALE)};
}

std::uint64_t TraceParents::trackSire(const master_data& animal, bool same_location) {
  return writeCandidates(animal, sireQuestion(animal), same_location);
}

std::uint64_t TraceParents::trackDam(const master_data& animal, bool same_location) {
  return writeCandidates(animal, damQuestion(animal), same_location);
}

std::vector<TraceParents::candidate> TraceParents::findCandidates(const master_data& animal,
                                                                  const parent_question& question, bool same_location) {
  std::vector<candidate> found;
  if (!isDay(question.day)) {
    return found;
  }
  const auto day = static_cast<qs_lib::day_number>(question.day);
  const std::vector<position>& list = question.candidates.listFor(animal.birth.location, same_location);
  const auto is_too_old = [&](position record) {
    return ageAt(animal.birth.date, Animals.records[record]) > question.age_days.upper;
  };
  for (auto at = std::partition_point(list.begin(), list.end(), is_too_old); at != list.end(); ++at) {
    const master_data& record = Animals.records[*at];
    const double age_days = ageAt(animal.birth.date, record);
    // Negated, so that a NaN bound admits no candidate.
    if (record.birth.date > day || !(age_days >= question.age_days.lower) || !(age_days <= question.age_days.upper)) {
      break;
    }
    const packed_deme location = currentDeme(record, day);
    if (isLiving(record, day) && (!same_location || location == animal.birth.location)) {
      found.push_back({*at, age_days, location});
    }
  }
  return found;
}

std::uint64_t TraceParents::writeCandidates(const master_data& animal, const parent_question& question,
                                            bool same_location) {
  const std::vector<candidate> candidates = findCandidates(animal, question, same_location);
  const std::uint64_t count = candidates.size();
  const std::uint64_t shown = most_candidates_ == 0 ? count : std::min(count, most_candidates_);
  candidates_ += shown;
  if (only_counts_) {
    return count;
  }
  for (std::uint64_t at = 0; at < shown; ++at) {
    writeCandidate(question.element, candidates[at]);
  }
  if (shown < count) {
    report_writer_.createTag(question.omitted, std::to_string(count - shown));
  }
  return count;
}

void TraceParents::writeCandidate(const char* element, const candidate& found) {
  const master_data& record = Animals.records[found.record];
  report_writer_.openTag(element);
  report_writer_.createTag("ID", record.stud_id);
  report_writer_.createTag("AGE", qs_lib::realToString(found.age_days, 0));
  report_writer_.createTag("LOCATION", MetaPop.getMemberName(found.location));
  report_writer_.createTag("BREEDER", truthText(record.breeder));
  report_writer_.closeTag(element);
}

std::vector<position> TraceParents::possibleParents(const master_data& animal, SEX sex) const {
  const std::string& parent = sex == SEX::MALE ? animal.sire_id : animal.dam_id;
  const bool is_group = isMultiParent(parent);
  if (!(is_group || isUnknown(parent)) || isPseudoIndividual(animal.stud_id)) {
    return {};
  }
  const parent_question question = sex == SEX::MALE ? sireQuestion(animal) : damQuestion(animal);
  std::vector<candidate> candidates = findCandidates(animal, question, true);
  if (candidates.empty() && !is_group) {
    candidates = findCandidates(animal, question, false);
  }
  std::vector<position> records;
  for (const candidate& each : candidates) {
    records.push_back(each.record);
  }
  return records;
}

void TraceParents::writeUnknownCount() {
  const auto count = [this](const char* tag, const char* description, std::uint64_t value) {
    report_writer_.writeStatResult(tag, description, std::to_string(value));
  };
  report_writer_.openTag("SUMMARY");
  report_writer_.writeStatResult("POPULATION_SIZE", std::to_string(Animals.records.size()));
  count("SIRE_ONLY", "Number of animals with only sire unknown", sire_only);
  count("DAM_ONLY", "Number of animals with only dam unknown", dam_only);
  count("BOTH_PARENTS", "Number of animals with both parents unknown", both_parents);
  count("MULTI_SIRE", "Number of animals with sire in group", multi_sire);
  count("MULTI_DAM", "Number of animals with dam in group", multi_dam);
  report_writer_.closeTag("SUMMARY");
}

}  // namespace spx
