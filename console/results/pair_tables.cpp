#include "console/results/pair_tables.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "spx/genetics/diversity.h"
#include "spx/genetics/founders.h"
#include "spx/genetics/pairings.h"
#include "spx/project/biology.h"
#include "spx/support/number_text.h"
#include "spx/views/data_filter.h"
#include "spx/views/predicates.h"

#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr double MOST_PAIRS = 5'000'000;

/// The animals of one sex that can breed, and why the others cannot.
class Candidates {
 public:
  Candidates(const GeneticBasis& basis, const std::vector<std::string>& ids, SEX sex) : basis_(basis), sex_(sex) {
    for (const animal_number animal : basis.living()) is_living_.push_back(animal);
    const std::vector<animal_number> asked = ids.empty() ? basis.living() : basis.numbers(ids);
    for (const animal_number animal : asked) {
      const std::string reason = reasonAgainst(animal, !ids.empty());
      if (reason.empty()) {
        animals_.push_back(animal);
      } else if (reason != OTHER_SEX) {
        left_out_[reason].push_back(basis.id(animal));
      }
    }
  }

  const std::vector<animal_number>& animals() const { return animals_; }

  void note(Table& table) const {
    constexpr std::size_t MOST_NAMED = 12;
    for (const auto& [reason, ids] : left_out_) {
      std::string text = "Left out, " + reason + ":";
      for (std::size_t place = 0; place < std::min(ids.size(), MOST_NAMED); ++place) {
        text += (place == 0 ? " " : ", ") + ids[place];
      }
      if (ids.size() > MOST_NAMED) text += " and " + std::to_string(ids.size() - MOST_NAMED) + " more";
      table.notes.push_back(text + ".");
    }
  }

 private:
  static constexpr char OTHER_SEX[] = "of the other sex";

  std::string reasonAgainst(animal_number animal, bool is_named) const {
    const master_data& record = basis_.record(animal);
    if (record.sex != sex_) {
      if (record.sex == SEX::UNKNOWN) return "sex unknown";
      return is_named ? std::string("not ") + (sex_ == SEX::MALE ? "male" : "female") : OTHER_SEX;
    }
    if (!std::binary_search(is_living_.begin(), is_living_.end(), animal)) {
      return isLiving(record, View.monitor_date) ? "not in the view" : "not alive";
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
  std::vector<animal_number> is_living_;
  std::vector<animal_number> animals_;
  std::map<std::string, std::vector<std::string>> left_out_;
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
           "difference of the two mean kinships; small: no rare genes tied to common ones"),
      {.name = "unknown",
       .title = "Unknown",
       .kind = COLUMN_KIND::PERCENT,
       .decimals = 0,
       .help = "share of the offspring's genes from unknown parents"},
      real("diversity_change", "GD change", 7, "change of the population's gene diversity by one offspring")};
  if (is_picked) {
    columns.insert(columns.begin(), {.name = "rank", .title = "No.", .kind = COLUMN_KIND::INTEGER});
    columns.push_back(
        real("gene_diversity", "GD then", 5, "gene diversity with an offspring of every pair up to this one"));
  }
  return columns;
}

/// The values over the known genes alone, where the keeper wants that.
class KnownPart {
 public:
  KnownPart(const GeneticBasis& basis, UNKNOWN_PARENTS unknown) : is_used_(unknown == UNKNOWN_PARENTS::EXCLUDE) {
    if (!is_used_) return;
    known_ = knownShares(basis.pedigree());
    means_ = knownKinships(basis.pedigree(), basis.living(), GeneticBasis::threads()).of_animals;
    terms_ = inbreedingBySources(basis.pedigree(), known_, GeneticBasis::threads());
  }

  const relationship_terms& terms(const GeneticBasis& basis) const { return is_used_ ? terms_ : basis.terms(); }

  void correct(breeding_pair& pair) const {
    if (!is_used_) return;
    const double both = known_[pair.sire] * known_[pair.dam];
    pair.offspring_inbreeding = both > 0 ? pair.offspring_inbreeding / both : std::nan("");
    pair.mean_kinship = (means_[pair.sire] + means_[pair.dam]) / 2;
    pair.kinship_difference = std::abs(means_[pair.sire] - means_[pair.dam]);
  }

 private:
  bool is_used_;
  std::vector<double> known_;
  std::vector<double> means_;
  relationship_terms terms_;
};

std::vector<Cell> cellsOf(const GeneticBasis& basis, const breeding_pair& pair) {
  return {basis.id(pair.sire),     basis.id(pair.dam), pair.offspring_inbreeding, pair.mean_kinship,
          pair.kinship_difference, pair.unknown,       pair.diversity_change};
}

void needPairs(const Candidates& males, const Candidates& females) {
  const auto pairs = static_cast<double>(males.animals().size()) * static_cast<double>(females.animals().size());
  if (pairs == 0) {
    throw Failure(
        std::string("no ") + (males.animals().empty() ? "male" : "female") +
        " of the view can breed: it needs a known sex, to be alive on the day of the view, and an age that the "
        "life history allows; spx life-history show prints the ages");
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
  const Candidates males(basis, choice.males, SEX::MALE);
  const Candidates females(basis, choice.females, SEX::FEMALE);
  needPairs(males, females);
  const KnownPart known(basis, unknown);
  const auto mayPair = [&](animal_number sire, animal_number dam) {
    return !choice.same_location ||
           currentDeme(basis.record(sire), View.monitor_date) == currentDeme(basis.record(dam), View.monitor_date);
  };
  if (choice.picks == 0) {
    for (breeding_pair pair : rankPairs(basis.pedigree(), basis.terms(), living, males.animals(), females.animals(),
                                        GeneticBasis::threads())) {
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
                   .threads = GeneticBasis::threads()});
    for (std::size_t place = 0; place < picks.size(); ++place) {
      std::vector<Cell> cells = cellsOf(basis, picks[place].pair);
      cells.insert(cells.begin(), place + 1);
      cells.emplace_back(picks[place].diversity);
      table.addRow(std::move(cells));
    }
    table.notes.push_back(choice.is_static
                              ? "Picked by the ranking of today."
                              : "Picked one after the other; each counts an offspring of the pairs before it.");
  }
  table.if_empty = "No pair meets --max-kinship and --same-location.";
  const genetic_diversity now = diversityOf(basis.pedigree(), basis.terms(), living);
  table.notes.push_back("Gene diversity of the " + std::to_string(living.size()) + " living animals " +
                        qs_lib::realToString(now.gene_diversity, 5) + ", mean kinship " +
                        qs_lib::realToString(now.mean_kinship, 5) + ".");
  males.note(table);
  females.note(table);
  addNotes(table, basis.notes(unknown));
  return table;
}

}  // namespace spx::console
