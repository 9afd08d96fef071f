#include "spx/genetics/gene_drop.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <random>

#include "spx/genetics/parallel.h"

namespace spx {
namespace {

using gene = std::uint32_t;

/// The random numbers of one run. The C++ standard defines the engine and its seeding, so they are
/// the same on every platform.
class Lots {
 public:
  Lots(std::uint64_t seed, std::size_t run) {
    std::seed_seq words{static_cast<std::uint32_t>(seed), static_cast<std::uint32_t>(seed >> 32U),
                        static_cast<std::uint32_t>(run),
                        static_cast<std::uint32_t>(static_cast<std::uint64_t>(run) >> 32U)};
    engine_.seed(words);
  }

  std::size_t bit() {
    if (left_ == 0) {
      bits_ = engine_();
      left_ = 64;
    }
    --left_;
    const std::size_t bit = bits_ & 1U;
    bits_ >>= 1U;
    return bit;
  }

  /// At least 0 and below 1.
  double uniform() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }

 private:
  std::mt19937_64 engine_;
  std::uint64_t bits_ = 0;
  int left_ = 0;
};

/// The genes of the founders come first, two by two; then one for each phantom.
class GeneDropper {
 public:
  GeneDropper(const GeneticPedigree& part, std::span<const animal_number> members, const founder_contributions& sources)
      : part_(part),
        members_(members),
        founders_(sources.founders.size()),
        genes_(2 * part.size()),
        phantom_gene_(2 * part.size()),
        copies_(2 * founders_ + sources.phantoms.size()),
        kept_(copies_.size()),
        lost_(founders_),
        unique_(members.size()) {
    gene next = 0;
    for (const animal_number founder : sources.founders) {
      genes_[2 * founder] = next++;
      genes_[2 * founder + 1] = next++;
    }
    for (const phantom_founder& phantom : sources.phantoms) {
      phantom_gene_[2 * phantom.offspring + (phantom.is_sire ? 0 : 1)] = next++;
    }
  }

  void drop(Lots lots) {
    for (animal_number node = 0; node < part_.size(); ++node) {
      if (part_.isFounder(node) || part_.isGroup(node)) continue;
      genes_[2 * node] = inherited(node, part_.sire(node), 0, lots);
      genes_[2 * node + 1] = inherited(node, part_.dam(node), 1, lots);
    }
  }

  /// Counts one run. @return sum f^2, and the number of different genes
  std::pair<double, std::uint32_t> count() {
    for (const animal_number member : members_) {
      ++copies_[genes_[2 * member]];
      ++copies_[genes_[2 * member + 1]];
    }
    for (std::size_t member = 0; member < members_.size(); ++member) {
      const gene first = genes_[2 * members_[member]];
      const gene second = genes_[2 * members_[member] + 1];
      const std::uint32_t own = first == second ? 2 : 1;
      unique_[member] += (copies_[first] == own ? 1U : 0U) + (copies_[second] == own ? 1U : 0U);
    }
    for (std::size_t founder = 0; founder < founders_; ++founder) {
      if (copies_[2 * founder] == 0 && copies_[2 * founder + 1] == 0) ++lost_[founder];
    }
    std::uint64_t squares = 0;
    std::uint32_t different = 0;
    for (std::size_t kind = 0; kind < copies_.size(); ++kind) {
      const std::uint64_t copies = copies_[kind];
      squares += copies * copies;
      different += copies == 0 ? 0U : 1U;
      kept_[kind] += copies == 0 ? 0U : 1U;
      copies_[kind] = 0;
    }
    const double genes = 2.0 * static_cast<double>(members_.size());
    return {static_cast<double>(squares) / (genes * genes), different};
  }

  const std::vector<std::uint64_t>& kept() const { return kept_; }
  const std::vector<std::uint64_t>& lost() const { return lost_; }
  const std::vector<std::uint64_t>& unique() const { return unique_; }

 private:
  gene inherited(animal_number child, animal_number parent, std::size_t side, Lots& lots) {
    if (part_.isNode(parent) && part_.isGroup(parent)) parent = drawn(parent, lots);
    if (!part_.isNode(parent)) return phantom_gene_[2 * child + side];
    return genes_[2 * parent + lots.bit()];
  }

  animal_number drawn(animal_number group, Lots& lots) const {
    double lot = lots.uniform();
    for (const auto& [candidate, share] : part_.candidates(group)) {
      if (lot < share) return candidate;
      lot -= share;
    }
    // Rounding can leave a sum of shares slightly below 1.
    constexpr double ROUNDING = 1e-12;
    return lot < ROUNDING ? part_.candidates(group).back().animal : UNKNOWN_SOURCE;
  }

  const GeneticPedigree& part_;
  std::span<const animal_number> members_;
  std::size_t founders_;
  std::vector<gene> genes_;         ///< two of every node
  std::vector<gene> phantom_gene_;  ///< of every node, from its missing sire and dam
  std::vector<std::uint32_t> copies_;
  std::vector<std::uint64_t> kept_;
  std::vector<std::uint64_t> lost_;
  std::vector<std::uint64_t> unique_;
};

void addUp(std::vector<double>& sums, const std::vector<std::uint64_t>& counts) {
  sums.resize(counts.size());
  for (std::size_t i = 0; i < counts.size(); ++i) sums[i] += static_cast<double>(counts[i]);
}

gene_drop_result resultOf(const std::vector<GeneDropper>& droppers, gene_drop_result result) {
  std::vector<double> kept;
  for (const GeneDropper& dropper : droppers) {
    addUp(kept, dropper.kept());
    addUp(result.lost, dropper.lost());
    addUp(result.uniqueness, dropper.unique());
  }
  const double genes = 2.0 * static_cast<double>(result.runs);
  const std::size_t founders = result.sources.founders.size();
  for (std::size_t founder = 0; founder < founders; ++founder) {
    result.retention.push_back((kept[2 * founder] + kept[2 * founder + 1]) / genes);
    result.lost[founder] /= static_cast<double>(result.runs);
  }
  for (std::size_t phantom = 0; phantom < result.sources.phantoms.size(); ++phantom) {
    result.phantom_retention.push_back(kept[2 * founders + phantom] / genes);
  }
  for (double& uniqueness : result.uniqueness) uniqueness /= genes;
  return result;
}

double sumOf(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

}  // namespace

gene_drop_result geneDrop(const GeneticPedigree& pedigree, std::span<const animal_number> set,
                          const gene_drop_options& options) {
  gene_drop_result result;
  if (set.empty() || options.runs == 0) return result;
  const GeneticPedigree part = pedigree.ancestorsOf(set);
  std::vector<animal_number> members;
  for (const animal_number animal : set) members.push_back(part.number(animal));
  const founder_contributions sources = contributionsTo(part, members);
  result.runs = options.runs;
  result.sources = sources;
  for (animal_number& founder : result.sources.founders) {
    founder = static_cast<animal_number>(part.row(founder));
  }
  for (phantom_founder& phantom : result.sources.phantoms) {
    phantom.offspring = static_cast<animal_number>(part.row(phantom.offspring));
  }
  result.diversity.resize(options.runs);
  result.genes.resize(options.runs);
  std::vector<GeneDropper> droppers(std::max(1U, options.threads), {part, members, sources});
  forEachTask(options.runs, droppers.size(), [&](std::size_t worker, std::size_t run) {
    droppers[worker].drop(Lots(options.seed, run));
    const auto [squares, different] = droppers[worker].count();
    result.diversity[run] = 1 - squares;
    result.genes[run] = different;
  });
  return resultOf(droppers, std::move(result));
}

double genomesSurviving(const gene_drop_result& drop) {
  return sumOf(drop.retention) + sumOf(drop.phantom_retention);
}

double founderGenomesByRetention(const gene_drop_result& drop) {
  double sum = 0;
  const auto add = [&sum](double share, double retention) {
    if (retention > 0) sum += share * share / retention;
  };
  for (std::size_t founder = 0; founder < drop.retention.size(); ++founder) {
    add(drop.sources.shares[founder], drop.retention[founder]);
  }
  for (std::size_t phantom = 0; phantom < drop.phantom_retention.size(); ++phantom) {
    add(drop.sources.phantoms[phantom].share, drop.phantom_retention[phantom]);
  }
  return sum == 0 ? std::numeric_limits<double>::quiet_NaN() : 1 / sum;
}

double founderGenomesByFrequency(const gene_drop_result& drop) {
  double sum = 0;
  for (const double diversity : drop.diversity) sum += 1 / (2 * (1 - diversity));
  return sum / static_cast<double>(drop.runs);
}

double potentialDiversity(const gene_drop_result& drop) {
  return 1 - 1 / (2 * genomesSurviving(drop));
}

std::vector<double> targetShares(const gene_drop_result& drop) {
  const double genomes = genomesSurviving(drop);
  std::vector<double> shares = drop.retention;
  for (double& share : shares) share /= genomes;
  return shares;
}

}  // namespace spx
