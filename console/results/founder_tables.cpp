#include "console/results/founder_tables.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "spx/core/identifiers.h"
#include "spx/genetics/founders.h"
#include "spx/genetics/generation_interval.h"
#include "spx/support/number_text.h"

namespace spx::console {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

enum class STATE { LIVING, REPRESENTED, POTENTIAL, LOST };

const char* getText(STATE state) {
  constexpr const char* TEXTS[] = {"living", "represented", "potential", "lost"};
  return TEXTS[static_cast<std::size_t>(state)];
}

/// The founders of the studbook. Animals of unknown origin that never had offspring or a place in the view are none.
struct Founder {
  animal_number animal;
  std::size_t descendants;
  STATE state;
};

std::vector<Founder> foundersOf(const GeneticBasis& basis, const std::vector<animal_number>& living) {
  const GeneticPedigree& pedigree = basis.pedigree();
  std::vector<animal_number> animals;
  for (animal_number animal = 0; animal < pedigree.size(); ++animal) {
    if (pedigree.isFounder(animal) && !isMultiParent(basis.id(animal))) animals.push_back(animal);
  }
  const std::vector<std::size_t> descendants = descendantsInSet(pedigree, animals, living);
  std::vector<bool> is_living(pedigree.size());
  for (const animal_number animal : living) is_living[animal] = true;
  std::vector<Founder> founders;
  for (std::size_t place = 0; place < animals.size(); ++place) {
    const bool alive = is_living[animals[place]];
    const bool has_descendants = descendants[place] > 0;
    founders.push_back({animals[place], descendants[place],
                        alive ? (has_descendants ? STATE::LIVING : STATE::POTENTIAL)
                              : (has_descendants ? STATE::REPRESENTED : STATE::LOST)});
  }
  return founders;
}

double sumOf(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

void notePhantoms(Table& table, const founder_contributions& sources, UNKNOWN_PARENTS unknown) {
  double share = 0;
  for (const phantom_founder& phantom : sources.phantoms) share += phantom.share;
  if (sources.phantoms.empty()) return;
  table.notes.push_back(
      std::to_string(sources.phantoms.size()) + " missing " + (sources.phantoms.size() == 1 ? "parent" : "parents") +
      " of animals whose other parent is known: " + qs_lib::realToString(100 * share, 1) + " % of the genes, " +
      (unknown == UNKNOWN_PARENTS::FOUNDER ? "each a founder of its own, not in the table." : "left out."));
}

std::string numberText(double value, int decimals) {
  return qs_lib::realToString(value, decimals);
}

}  // namespace

founder_states founderStates(const GeneticBasis& basis, const std::vector<animal_number>& living) {
  founder_states states;
  for (const Founder& founder : foundersOf(basis, living)) {
    switch (founder.state) {
      case STATE::LIVING:
        ++states.living;
        break;
      case STATE::REPRESENTED:
        ++states.represented;
        break;
      case STATE::POTENTIAL:
        ++states.potential;
        break;
      case STATE::LOST:
        ++states.lost;
        break;
    }
  }
  return states;
}

Table foundersTable(const GeneticBasis& basis, UNKNOWN_PARENTS unknown, const gene_drop_options& options) {
  Table table({{.name = "id", .title = "ID"},
               {.name = "contribution",
                .title = "Contribution",
                .kind = COLUMN_KIND::PERCENT,
                .decimals = 2,
                .help = "share of the genes of the living that is expected to come from the founder"},
               {.name = "target",
                .title = "Target",
                .kind = COLUMN_KIND::PERCENT,
                .decimals = 2,
                .help = "the share at which gene diversity would be highest: in proportion to the genes retained"},
               {.name = "retention",
                .title = "Retention",
                .kind = COLUMN_KIND::PERCENT,
                .decimals = 1,
                .help = "share of the founder's two genes that some living animal still carries"},
               {.name = "lost",
                .title = "Lost",
                .kind = COLUMN_KIND::PERCENT,
                .decimals = 1,
                .help = "chance that neither of its genes is left"},
               {.name = "living_descendants",
                .title = "Living desc.",
                .kind = COLUMN_KIND::INTEGER,
                .help = "living animals of the view that descend from it"},
               {.name = "state",
                .title = "State",
                .help = "living: alive, with living descendants; represented: by descendants only; potential: alive "
                        "without living descendants; lost: neither"}});
  const std::vector<animal_number>& living = basis.needLiving();
  const gene_drop_result drop = geneDrop(basis.pedigree(), living, options);
  const std::vector<double> targets = targetShares(drop);
  double known = 1;
  if (unknown == UNKNOWN_PARENTS::EXCLUDE) {
    known = sumOf(drop.sources.shares);
    for (const phantom_founder& phantom : drop.sources.phantoms) known += phantom.is_known ? phantom.share : 0;
  }
  std::vector<std::size_t> place_of(basis.pedigree().size(), drop.sources.founders.size());
  for (std::size_t place = 0; place < drop.sources.founders.size(); ++place) {
    place_of[drop.sources.founders[place]] = place;
  }
  std::vector<Founder> founders = foundersOf(basis, living);
  const auto contribution = [&](const Founder& founder) {
    const std::size_t place = place_of[founder.animal];
    return place < drop.sources.shares.size() ? drop.sources.shares[place] / known : 0.0;
  };
  std::stable_sort(founders.begin(), founders.end(),
                   [&](const Founder& a, const Founder& b) { return contribution(a) > contribution(b); });
  for (const Founder& founder : founders) {
    const std::size_t place = place_of[founder.animal];
    const bool contributes = place < drop.sources.founders.size();
    table.addRow({basis.id(founder.animal), contribution(founder), contributes ? targets[place] : 0.0,
                  contributes ? drop.retention[place] : 0.0, contributes ? drop.lost[place] : 1.0, founder.descendants,
                  getText(founder.state)});
  }
  table.notes.push_back(std::to_string(founders.size()) + " founders, " + std::to_string(drop.sources.founders.size()) +
                        " with genes in the " + std::to_string(living.size()) + " living animals. Effective founders " +
                        numberText(unknown == UNKNOWN_PARENTS::FOUNDER
                                       ? effectiveFounders(drop.sources)
                                       : effectiveKnownFounders(basis.pedigree(), drop.sources),
                                   2) +
                        "; founder genomes surviving " + numberText(genomesSurviving(drop), 2) +
                        ", gene diversity at best " + numberText(potentialDiversity(drop), 4) + ".");
  notePhantoms(table, drop.sources, unknown);
  table.notes.push_back("Retention by gene drop: " + std::to_string(options.runs) + " runs, seed " +
                        std::to_string(options.seed) + ".");
  return table;
}

Table geneDropTable(const GeneticBasis& basis, const gene_drop_options& options) {
  const auto number = [](const char* name, const char* title, const char* help = "") {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = 4, .help = help};
  };
  Table table({{.name = "statistic", .title = "Statistic", .in_text = false},
               {.name = "what", .title = "Of each run"},
               number("mean", "Mean"),
               number("sd", "SD", "standard deviation between the runs: what chance makes of the same pedigree"),
               number("minimum", "Min"),
               number("low", "2.5 %", "19 of 20 runs lie between 2.5 % and 97.5 %"),
               number("median", "Median"),
               number("high", "97.5 %"),
               number("maximum", "Max"),
               {.name = "runs", .title = "Runs", .kind = COLUMN_KIND::INTEGER, .in_text = false},
               {.name = "seed", .title = "Seed", .kind = COLUMN_KIND::INTEGER, .in_text = false}});
  const std::vector<animal_number>& living = basis.needLiving();
  const gene_drop_result drop = geneDrop(basis.pedigree(), living, options);
  const auto addRow = [&](const char* name, const char* what, std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const auto count = static_cast<double>(values.size());
    const double mean = sumOf(values) / count;
    double squares = 0;
    for (const double value : values) squares += (value - mean) * (value - mean);
    // The value below which that share of the runs lies, between two runs where it falls there.
    const auto quantile = [&](double share) {
      const double place = share * (count - 1);
      const auto below = static_cast<std::size_t>(place);
      const std::size_t above = std::min(below + 1, values.size() - 1);
      return values[below] + (place - std::floor(place)) * (values[above] - values[below]);
    };
    const double deviation = values.size() > 1 ? std::sqrt(squares / (count - 1)) : NOT_A_NUMBER;
    table.addRow({name, what, mean, deviation, values.front(), quantile(0.025), quantile(0.5), quantile(0.975),
                  values.back(), options.runs, static_cast<std::int64_t>(options.seed)});
  };
  std::vector<double> equivalents;
  for (const double diversity : drop.diversity) equivalents.push_back(1 / (2 * (1 - diversity)));
  addRow("gene_diversity", "Gene diversity", drop.diversity);
  addRow("founder_genomes", "Founder genomes by frequency", equivalents);
  addRow("genes", "Different genes left", std::vector<double>(drop.genes.begin(), drop.genes.end()));
  table.heading = std::to_string(options.runs) + " gene drops through the pedigree of " +
                  std::to_string(living.size()) + " living animals, seed " + std::to_string(options.seed) + ".";
  const std::size_t genes = 2 * drop.sources.founders.size() + 2 * drop.sources.phantoms.size();
  table.notes.push_back("Of the " + std::to_string(genes) + " genes of the founders " +
                        numberText(2 * genomesSurviving(drop), 1) +
                        " are left on average: " + numberText(genomesSurviving(drop), 2) +
                        " founder genomes. Founder genome equivalents by "
                        "retention (Lacy 1989): " +
                        numberText(founderGenomesByRetention(drop), 2) + ".");
  table.notes.push_back(
      "Each founder has two genes that nobody else has; every animal gets one gene of each parent by "
      "chance. The same seed gives the same result on any machine.");
  return table;
}

}  // namespace spx::console
