#include "console/results/pair_tables.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "spx/core/user_fields.h"
#include "spx/genetics/diversity.h"
#include "spx/genetics/kinship.h"
#include "spx/genetics/pairings.h"
#include "spx/project/biology.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

#include "console/base/assignment.h"
#include "console/base/failure.h"
#include "console/base/natural_order.h"
#include "console/base/nearest_word.h"
#include "console/base/quoted_text.h"
#include "console/base/words.h"
#include "console/project/life_history.h"
#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

constexpr double MOST_PAIRS = 5'000'000;

/// A value of a user-defined field that marks animals as unable to breed, such as "neutered=yes".
struct unable_value {
  std::string text;
  std::size_t field;
  std::string value;

  bool isOf(const master_data& animal) const {
    return field < animal.user_data.size() && isSameWord(animal.user_data[field], value);
  }
};

std::vector<unable_value> unableValues(const std::vector<std::string>& texts) {
  std::vector<unable_value> found;
  std::vector<std::string> names;
  for (const user_field& field : user_field_list) names.push_back(field.name);
  for (const std::string& text : texts) {
    const auto [name, value] = splitAssignment(text, "FIELD=VALUE", "--unable");
    const auto field = std::find_if(names.begin(), names.end(),
                                    [&wanted = name](const std::string& known) { return isSameWord(known, wanted); });
    if (field == names.end()) {
      throw UsageError("--unable: " + quotedText(name) + " is not a user field (spx user-fields lists them)" +
                       suggestion(name, names));
    }
    found.push_back({text, static_cast<std::size_t>(field - names.begin()), value});
  }
  return found;
}

/// The IDs of the animals that were left out, by reason.
using left_out_animals = std::map<std::string, std::set<std::string, natural_less>>;

void note(Table& table, const left_out_animals& left_out) {
  constexpr std::size_t MOST_NAMED = 12;
  for (const auto& [reason, ids] : left_out) {
    std::string text = "Left out, " + reason + " (" + counted(ids.size(), "animal") + "):";
    std::size_t named = 0;
    for (const std::string& id : ids) {
      if (named++ == MOST_NAMED) break;
      text += (named == 1 ? " " : ", ") + id;
    }
    if (ids.size() > MOST_NAMED) text += " and " + std::to_string(ids.size() - MOST_NAMED) + " more";
    table.notes.push_back(text + ".");
  }
}

/// The animals that can breed as a parent of one sex; the others are added to `left_out` with the reason.
class Candidates {
 public:
  Candidates(const GeneticBasis& basis, const pair_choice& choice, SEX sex, left_out_animals& left_out)
      : basis_(basis), sex_(sex), unable_(unableValues(choice.unable)) {
    const std::vector<std::string>& ids = sex == SEX::MALE ? choice.males : choice.females;
    for (const animal_number animal : ids.empty() ? basis.living() : basis.numbers(ids)) {
      const std::string reason = reasonAgainst(animal, !ids.empty());
      if (reason.empty()) {
        animals_.push_back(animal);
      } else if (reason != OTHER_SEX) {
        left_out[reason].insert(basis.id(animal));
      }
    }
  }

  const std::vector<animal_number>& animals() const { return animals_; }

 private:
  static constexpr char OTHER_SEX[] = "of the other sex";

  std::string reasonAgainst(animal_number animal, bool is_named) const {
    const master_data& record = basis_.record(animal);
    if (record.sex == SEX::UNKNOWN) return "sex unknown";
    if (record.sex == SEX::ABNORMAL) return "of abnormal sex";
    if (record.sex != sex_ && record.sex != SEX::HERMAPHRODITE) {
      return is_named ? std::string("not ") + (sex_ == SEX::MALE ? "male" : "female") : OTHER_SEX;
    }
    if (!std::binary_search(basis_.living().begin(), basis_.living().end(), animal)) {
      return isLiving(record, View.monitor_date) ? "not in the view" : "not alive";
    }
    for (const unable_value& each : unable_) {
      if (each.isOf(record)) return "unable to breed by " + each.text;
    }
    const qs_lib::DataRange<double> ages = LifeHistory.getReproductiveAge(sex_);
    const double age = View.monitor_date - birthDay(record);
    if (std::isnan(age) || ages.lower > ages.upper) return "";
    if (age < ages.lower) return std::string("too young (") + (sex_ == SEX::MALE ? "males)" : "females)");
    if (age > ages.upper) return std::string("too old (") + (sex_ == SEX::MALE ? "males)" : "females)");
    return "";
  }

  const GeneticBasis& basis_;
  SEX sex_;
  std::vector<unable_value> unable_;
  std::vector<animal_number> animals_;
};

table_column real(const char* name, const char* title, int decimals, const char* help) {
  return {.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = decimals, .help = help};
}

std::vector<table_column> pairColumns(bool is_picked) {
  std::vector<table_column> columns{
      {.name = "sire", .title = "Sire"},
      {.name = "dam", .title = "Dam"},
      real("offspring_f", "Offspring F", 4, "inbreeding of their offspring: the kinship of the pair"),
      real("mean_mk", "Mean MK", 4, "mean of the two mean kinships: low pairs carry rare genes"),
      real("mk_difference", "MK diff.", 4,
           "difference between the two mean kinships; small: rare genes are not joined to common ones"),
      {.name = "unknown",
       .title = "Unknown",
       .kind = COLUMN_KIND::PERCENT,
       .decimals = 0,
       .help = "share of the offspring's genes from unknown parents"},
      real("diversity_change", "GD change", 7, "change of the population's gene diversity by one offspring")};
  if (is_picked) {
    columns.insert(columns.begin(), {.name = "rank", .title = "No.", .kind = COLUMN_KIND::INTEGER});
    columns.push_back(
        real("gene_diversity", "GD then", 5, "gene diversity with one offspring of every pair up to this one"));
  }
  return columns;
}

std::vector<Cell> cellsOf(const GeneticBasis& basis, const breeding_pair& pair) {
  return {basis.id(pair.sire),     basis.id(pair.dam), pair.offspring_inbreeding, pair.mean_kinship,
          pair.kinship_difference, pair.unknown,       pair.diversity_change};
}

void addDiversityNote(Table& table, const GeneticBasis& basis, UNKNOWN_PARENTS unknown) {
  const double kinship = unknown == UNKNOWN_PARENTS::EXCLUDE
                             ? knownKinships(basis.pedigree(), basis.living(), GeneticBasis::threads()).mean
                             : meanKinshipBetween(basis.pedigree(), basis.terms(), basis.living(), basis.living());
  table.notes.push_back("Gene diversity of the " + counted(basis.living().size(), "living animal") + " " +
                        qs_lib::realToString(1 - kinship, 5) + ", mean kinship " + qs_lib::realToString(kinship, 5) +
                        ".");
}

void noteHermaphrodites(Table& table, const GeneticBasis& basis, const Candidates& males) {
  const auto& sires = males.animals();
  const auto count = std::count_if(
      sires.begin(), sires.end(), [&](animal_number animal) { return basis.record(animal).sex == SEX::HERMAPHRODITE; });
  if (count == 0) return;
  table.notes.push_back(counted(static_cast<std::size_t>(count), "hermaphrodite") +
                        (count == 1 ? " stands" : " stand") + " among the sires and the dams.");
}

std::string reasonsText(const left_out_animals& left_out) {
  std::string text;
  for (const auto& [reason, ids] : left_out)
    text += (text.empty() ? "" : ", ") + std::to_string(ids.size()) + " " + reason;
  return text.empty() ? "" : " (left out: " + text + ")";
}

void needPairs(const Candidates& males, const Candidates& females, const left_out_animals& left_out) {
  const auto pairs = static_cast<double>(males.animals().size()) * static_cast<double>(females.animals().size());
  if (pairs == 0) {
    throw Failure(
        std::string("no ") + (males.animals().empty() ? "male" : "female") +
        " of the view can breed: it needs a known sex, to be alive on the day of the view, and an age that the "
        "life history allows; spx life-history show prints the ages" +
        reasonsText(left_out));
  }
  if (pairs > MOST_PAIRS) {
    throw Failure(std::to_string(males.animals().size()) + " males and " + std::to_string(females.animals().size()) +
                  " females make too many pairs; choose some with --males, --females or --location");
  }
}

}  // namespace

Table pairsTable(const GeneticBasis& basis, const pair_choice& choice, UNKNOWN_PARENTS unknown) {
  Table table(pairColumns(choice.picks != 0));
  const std::vector<animal_number>& living = basis.needLiving();
  left_out_animals left_out;
  const Candidates males(basis, choice, SEX::MALE, left_out);
  const Candidates females(basis, choice, SEX::FEMALE, left_out);
  needPairs(males, females, left_out);
  const unsigned threads = GeneticBasis::threads();
  const GENES genes = unknown == UNKNOWN_PARENTS::EXCLUDE ? GENES::KNOWN : GENES::ALL;
  const auto mayPair = [&](animal_number sire, animal_number dam) {
    return !choice.same_location ||
           currentDeme(basis.record(sire), View.monitor_date) == currentDeme(basis.record(dam), View.monitor_date);
  };
  if (choice.picks == 0) {
    for (const breeding_pair& pair :
         rankPairs(basis.pedigree(), basis.terms(), living, males.animals(), females.animals(), threads, genes)) {
      if (!mayPair(pair.sire, pair.dam) || pair.offspring_inbreeding > choice.most_kinship) continue;
      table.addRow(cellsOf(basis, pair));
    }
  } else {
    const std::vector<picked_pair> picks =
        pickPairs(basis.pedigree(), basis.terms(), living, males.animals(), females.animals(),
                  {.pairs = choice.picks,
                   .most_per_male = choice.most_per_male,
                   .most_per_female = choice.most_per_female,
                   .most_kinship = choice.most_kinship,
                   .is_dynamic = !choice.is_static,
                   .may_pair = mayPair,
                   .threads = threads,
                   .genes = genes});
    for (std::size_t place = 0; place < picks.size(); ++place) {
      std::vector<Cell> cells = cellsOf(basis, picks[place].pair);
      cells.insert(cells.begin(), place + 1);
      cells.emplace_back(picks[place].diversity);
      table.addRow(std::move(cells));
    }
    table.notes.push_back(choice.is_static
                              ? "Picked by today's ranking."
                              : "Picked one after the other, each counting one offspring of every pair before it.");
  }
  table.if_empty = "No pair meets the limits of " +
                   std::string(choice.same_location ? "--same-location" : "--max-kinship") +
                   (choice.same_location && std::isfinite(choice.most_kinship) ? " and --max-kinship." : ".");
  addDiversityNote(table, basis, unknown);
  if (lacksReproductiveAges()) {
    table.notes.emplace_back("Animals of any age are paired: no reproductive ages are set (spx life-history set).");
  }
  noteHermaphrodites(table, basis, males);
  note(table, left_out);
  addNotes(table, basis.notes(unknown));
  return table;
}

}  // namespace spx::console
