#include "console/results/founder_tables.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "spx/genetics/founders.h"
#include "spx/genetics/generation_interval.h"
#include "spx/support/number_text.h"

#include "console/base/natural_order.h"
#include "console/results/demography_notes.h"

namespace spx::console {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

enum class STATE { LIVING, REPRESENTED, POTENTIAL, LOST };

const char* getText(STATE state) {
  constexpr const char* TEXTS[] = {"living", "represented", "potential", "lost"};
  return TEXTS[static_cast<std::size_t>(state)];
}

struct Founder {
  animal_number animal;
  STATE state;
};

std::vector<bool> marked(const GeneticPedigree& pedigree, const std::vector<animal_number>& animals) {
  std::vector<bool> marks(pedigree.size());
  for (const animal_number animal : animals) marks[animal] = true;
  return marks;
}

/// By node: whether an animal of a set descends from it.
std::vector<bool> hasDescendantsIn(const GeneticPedigree& pedigree, const std::vector<animal_number>& set) {
  const std::vector<bool> is_member = marked(pedigree, set);
  std::vector<bool> has_descendants(pedigree.size());
  for (auto node = static_cast<animal_number>(pedigree.size()); node-- > 0;) {
    if (!is_member[node] && !has_descendants[node]) continue;
    pedigree.forEachParent(node, [&](animal_number parent, double) { has_descendants[parent] = true; });
  }
  return has_descendants;
}

/// The founders among some animals and their ancestors. Their states follow from the whole living population: a founder
/// whose only descendants live in another zoo is not lost.
std::vector<Founder> foundersOf(const GeneticBasis& basis, const std::vector<animal_number>& animals,
                                UNKNOWN_PARENTS unknown) {
  const GeneticPedigree& pedigree = basis.pedigree();
  const std::vector<bool> is_member = marked(pedigree, animals);
  const std::vector<bool> is_ancestor = hasDescendantsIn(pedigree, animals);
  const std::vector<bool> is_living = marked(pedigree, basis.wholePopulation());
  const std::vector<bool> lives_on = hasDescendantsIn(pedigree, basis.wholePopulation());
  std::vector<Founder> founders;
  for (animal_number animal = 0; animal < pedigree.size(); ++animal) {
    if (!pedigree.isFounder(animal) || (!is_member[animal] && !is_ancestor[animal])) continue;
    if (unknown == UNKNOWN_PARENTS::EXCLUDE && !pedigree.isOfKnownOrigin(animal)) continue;
    founders.push_back({animal, is_living[animal] ? (lives_on[animal] ? STATE::LIVING : STATE::POTENTIAL)
                                                  : (lives_on[animal] ? STATE::REPRESENTED : STATE::LOST)});
  }
  return founders;
}

double sumOf(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

void noteWildMates(Table& table, const GeneticBasis& basis, const std::vector<animal_number>& founders) {
  std::size_t mates = 0;
  std::string note;
  for (const animal_number founder : founders) {
    const std::string mate_of = basis.wildMateOf(founder);
    if (!mate_of.empty() && mates++ == 0) note = basis.id(founder) + " is the wild mate of " + mate_of;
  }
  if (mates > 1) note += ", and so on";
  if (mates > 0) table.notes.push_back(note + ".");
}

void notePhantoms(Table& table, const founder_contributions& sources, UNKNOWN_PARENTS unknown) {
  if (sources.phantoms.empty()) return;
  double share = 0;
  for (const phantom_founder& phantom : sources.phantoms) share += phantom.share;
  table.notes.push_back(counted(sources.phantoms.size(), "missing parent") +
                        " of animals whose other parent is known: " + qs_lib::realToString(100 * share, 1) +
                        " % of the genes, " +
                        (unknown == UNKNOWN_PARENTS::FOUNDER ? "each counted as a separate founder, not in the table."
                                                             : "left out where they are not wild."));
}

/// Sums of a gene drop over the founders that count under the chosen treatment of unknown parents.
struct counted_genes {
  double contribution = 0;  ///< share of all genes: 1 unless founders are left out
  double genomes = 0;       ///< founder genomes surviving
};

counted_genes countedGenes(const GeneticPedigree& pedigree, const gene_drop_result& drop, UNKNOWN_PARENTS unknown) {
  counted_genes found;
  const bool all = unknown == UNKNOWN_PARENTS::FOUNDER;
  for (std::size_t place = 0; place < drop.sources.founders.size(); ++place) {
    if (!all && !pedigree.isOfKnownOrigin(drop.sources.founders[place])) continue;
    found.contribution += drop.sources.shares[place];
    found.genomes += drop.retention[place];
  }
  for (std::size_t place = 0; place < drop.sources.phantoms.size(); ++place) {
    if (!all && !drop.sources.phantoms[place].is_known) continue;
    found.contribution += drop.sources.phantoms[place].share;
    found.genomes += drop.phantom_retention[place];
  }
  return found;
}

std::string numberText(double value, int decimals) {
  return std::isfinite(value) ? qs_lib::realToString(value, decimals) : "not known";
}

std::vector<table_column> founderColumns(bool is_whole_population) {
  const auto share = [](const char* name, const char* title, int decimals, const char* help) {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::PERCENT, .decimals = decimals, .help = help};
  };
  return {
      {.name = "id", .title = "ID"},
      share("contribution", "Contribution", 2,
            "share of the genes of the living animals of the view that is expected to come from the founder"),
      share("target", "Target", 2,
            "the share at which their gene diversity would be highest: in proportion to the genes retained"),
      share("retention", "Retention", 1, "share of the founder's two genes that at least one of them still carries"),
      share("lost", "Lost", 1, "chance that none of them carries either gene"),
      {.name = "living_descendants",
       .title = is_whole_population ? "Living desc." : "Desc. in view",
       .kind = COLUMN_KIND::INTEGER,
       .help = is_whole_population ? "living animals that descend from it"
                                   : "living animals of the view that descend from it"},
      {.name = "population_descendants",
       .title = "Desc. in all",
       .kind = COLUMN_KIND::INTEGER,
       .help = is_whole_population ? "" : "living animals of the whole population that descend from it",
       .in_text = !is_whole_population},
      {.name = "state",
       .title = "State",
       .help = std::string("living: alive, with living descendants; represented: by descendants only; potential: "
                           "alive without living descendants; lost: neither") +
               (is_whole_population ? "" : "; all of these in the whole population")}};
}

}  // namespace

founder_states founderStates(const GeneticBasis& basis, const std::vector<animal_number>& animals,
                             UNKNOWN_PARENTS unknown) {
  founder_states states;
  for (const Founder& founder : foundersOf(basis, animals, unknown)) {
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
  const std::vector<animal_number>& living = basis.needLiving();
  Table table(founderColumns(basis.isWholePopulation()));
  const gene_drop_result drop = geneDrop(basis.pedigree(), living, options);
  const counted_genes genes = countedGenes(basis.pedigree(), drop, unknown);
  std::vector<std::size_t> place_of(basis.pedigree().size(), drop.sources.founders.size());
  for (std::size_t place = 0; place < drop.sources.founders.size(); ++place) {
    place_of[drop.sources.founders[place]] = place;
  }
  std::vector<Founder> founders = foundersOf(basis, basis.animals(), unknown);
  const auto contribution = [&](const Founder& founder) {
    const std::size_t place = place_of[founder.animal];
    return place < drop.sources.shares.size() ? drop.sources.shares[place] / genes.contribution : 0.0;
  };
  std::sort(founders.begin(), founders.end(), [&](const Founder& a, const Founder& b) {
    if (contribution(a) != contribution(b)) return contribution(a) > contribution(b);
    return compareNaturally(basis.id(a.animal), basis.id(b.animal)) < 0;
  });
  std::vector<animal_number> animals;
  for (const Founder& founder : founders) animals.push_back(founder.animal);
  const std::vector<std::size_t> in_view = descendantsInSet(basis.pedigree(), animals, living);
  const std::vector<std::size_t> in_all =
      basis.isWholePopulation() ? in_view : descendantsInSet(basis.pedigree(), animals, basis.wholePopulation());
  std::size_t contributing = 0;
  for (std::size_t row = 0; row < founders.size(); ++row) {
    const std::size_t place = place_of[animals[row]];
    const bool contributes = place < drop.sources.founders.size();
    contributing += contributes ? 1U : 0U;
    table.addRow({basis.id(animals[row]), contribution(founders[row]),
                  contributes ? drop.retention[place] / genes.genomes : 0.0, contributes ? drop.retention[place] : 0.0,
                  contributes ? drop.lost[place] : 1.0, in_view[row], in_all[row], getText(founders[row].state)});
  }
  table.if_empty = "No founder of the view is of known origin.";
  table.notes.push_back(counted(founders.size(), "founder") + ", " + std::to_string(contributing) +
                        " with genes in the " + counted(living.size(), "living animal") + ". Effective founders " +
                        numberText(unknown == UNKNOWN_PARENTS::FOUNDER
                                       ? effectiveFounders(drop.sources)
                                       : effectiveKnownFounders(basis.pedigree(), drop.sources),
                                   2) +
                        "; founder genomes surviving " + numberText(genes.genomes, 2) + ", gene diversity at best " +
                        numberText(1 - 1 / (2 * genes.genomes), 4) + ".");
  noteWildMates(table, basis, animals);
  notePhantoms(table, drop.sources, unknown);
  table.notes.push_back("Retention by gene drop: " + counted(options.runs, "run") + ", seed " +
                        std::to_string(options.seed) + ".");
  addNotes(table, basis.notes(unknown));
  return table;
}

Table geneDropTable(const GeneticBasis& basis, const gene_drop_options& options) {
  const auto number = [](const char* name, const char* title, const char* help = "") {
    return table_column{.name = name, .title = title, .kind = COLUMN_KIND::REAL, .decimals = 4, .help = help};
  };
  Table table({{.name = "statistic", .title = "Statistic", .in_text = false},
               {.name = "what", .title = "Of each run"},
               number("mean", "Mean"),
               number("sd", "SD", "standard deviation between the runs: the effect of chance on the same pedigree"),
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
    // The quantile of the runs, interpolated linearly between two of them.
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
  addRow("founder_genomes", "Founder genomes", equivalents);
  addRow("genes", "Genes left", std::vector<double>(drop.genes.begin(), drop.genes.end()));
  table.heading = counted(options.runs, "gene drop") + " through the pedigree of " +
                  counted(living.size(), "living animal") + ", seed " + std::to_string(options.seed) + ".";
  const std::size_t genes = 2 * drop.sources.founders.size() + 2 * drop.sources.phantoms.size();
  table.notes.push_back("Of the " + std::to_string(genes) + " genes of the founders " +
                        numberText(2 * genomesSurviving(drop), 1) +
                        " are left on average: " + numberText(genomesSurviving(drop), 2) +
                        " founder genomes. Founder genome equivalents by "
                        "retention (Lacy 1989): " +
                        numberText(founderGenomesByRetention(drop), 2) + ".");
  table.notes.emplace_back(
      "Founder genomes: 1 / (2 sum f^2) over the frequencies f of the genes; their mean is Boichard's number (1997).");
  table.notes.push_back(
      "Each founder has two unique genes; every animal gets one gene from each parent at random. The same seed "
      "gives the same result on any machine.");
  addNotes(table, basis.notes());
  table.notes.emplace_back("Unknown parents count as unrelated founders.");
  return table;
}

}  // namespace spx::console
