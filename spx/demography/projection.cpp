#include "spx/demography/projection.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace spx {
namespace {

// Survival of one sex from the classes of its table; classes beyond the table are not reached.
std::vector<double> survivalOf(const std::vector<life_table_row>& table) {
  std::vector<double> survival;
  for (std::size_t at = 0; at < table.size(); ++at) {
    const bool is_last = at + 1 == table.size();
    const double next = is_last ? table[at].p : table[at].L > 0 ? table[at + 1].L / table[at].L : 0;
    survival.push_back(std::clamp(next, 0.0, 1.0));
  }
  return survival;
}

// By class of the dam: her offspring of one sex that are alive at the end of the step.
std::vector<double> fecundityOf(const std::vector<double>& m, const std::vector<double>& survival, double newborn) {
  std::vector<double> fecundity;
  for (std::size_t at = 0; at < m.size(); ++at) {
    const double next = at + 1 < m.size() ? m[at + 1] : m[at];
    fecundity.push_back(newborn * (m[at] + survival[at] * next) / 2);
  }
  return fecundity;
}

double newbornSurvival(const std::vector<life_table_row>& table) {
  return table.empty() ? 1 : std::sqrt(std::max(table.front().p, 0.0));
}

}  // namespace

double class_counts::total() const {
  return std::accumulate(females.begin(), females.end(), 0.0) + std::accumulate(males.begin(), males.end(), 0.0);
}

step_rates stepRates(const life_tallies& data, bool same_sex) {
  const auto dams = data.of(0, SEX::FEMALE);
  const auto females = lifeTable(dams, data.classes, SEX::FEMALE, same_sex);
  const auto males = lifeTable(data.of(0, SEX::MALE), data.classes, SEX::MALE, same_sex);
  step_rates rates;
  rates.female_survival = survivalOf(females);
  rates.male_survival = survivalOf(males);
  std::vector<double> daughters;
  std::vector<double> sons;
  for (std::size_t at = 0; at < females.size(); ++at) {
    const life_table_row& row = females[at];
    const double born = same_sex ? dams[at].sons : dams[at].offspring / 2;
    daughters.push_back(row.m);
    sons.push_back(row.exposure > 0 ? born / row.exposure * row.width : 0);
  }
  rates.daughters = fecundityOf(daughters, rates.female_survival, newbornSurvival(females));
  rates.sons = fecundityOf(sons, rates.female_survival, newbornSurvival(males));
  return rates;
}

double leslieLambda(const step_rates& rates) {
  const std::size_t classes = rates.female_survival.size();
  if (classes == 0) return 0;
  // The eigenvalue solves sum lambda^-(x+1) (product of survival) F = 1, whose left side falls as
  // lambda grows; the last class, which its animals do not leave, gives a geometric series.
  const auto sum = [&](double lambda) {
    double total = 0;
    double reach = 1 / lambda;
    for (std::size_t at = 0; at + 1 < classes; ++at) {
      total += reach * rates.daughters[at];
      reach *= rates.female_survival[at] / lambda;
    }
    const double stay = rates.female_survival[classes - 1];
    return lambda > stay ? total + reach * rates.daughters[classes - 1] / (1 - stay / lambda)
                         : std::numeric_limits<double>::infinity();
  };
  if (std::all_of(rates.daughters.begin(), rates.daughters.end(), [](double one) { return one == 0; })) return 0;
  double low = 1e-9;
  double high = 1;
  while (sum(high) > 1) high *= 2;
  while (high - low > 1e-15 * high) {
    const double middle = (low + high) / 2;
    if (middle == low || middle == high) break;
    (sum(middle) > 1 ? low : high) = middle;
  }
  return (low + high) / 2;
}

class_counts startingNumbers(const age_structure& structure, std::size_t classes) {
  class_counts start{std::vector<double>(classes), std::vector<double>(classes)};
  if (classes == 0) return start;
  for (std::size_t at = 0; at < structure.rows.size(); ++at) {
    const std::size_t to = std::min(at, classes - 1);
    start.females[to] += structure.rows[at].females;
    start.males[to] += structure.rows[at].males;
  }
  const auto spread = [](std::vector<double>& counts, double unknown) {
    const double known = std::accumulate(counts.begin(), counts.end(), 0.0);
    for (double& one : counts) {
      one += unknown * (known > 0 ? one / known : 1.0 / static_cast<double>(counts.size()));
    }
  };
  spread(start.females, structure.unknown_age.females);
  spread(start.males, structure.unknown_age.males);
  return start;
}

namespace {

template <class Count>
void growOlder(std::vector<Count>& counts, const std::vector<Count>& survivors, Count newborn) {
  for (std::size_t at = counts.size(); at-- > 0;) {
    counts[at] = (at > 0 ? survivors[at - 1] : newborn) + (at + 1 == counts.size() ? survivors[at] : Count{0});
  }
}

double rateAt(const std::vector<double>& rates, std::size_t at) {
  return at < rates.size() ? rates[at] : 0;
}

std::vector<double> survivorsOf(const std::vector<double>& counts, const std::vector<double>& survival) {
  std::vector<double> survivors;
  for (std::size_t at = 0; at < counts.size(); ++at) survivors.push_back(counts[at] * rateAt(survival, at));
  return survivors;
}

}  // namespace

std::vector<class_counts> projectExpected(const class_counts& start, const step_rates& rates, std::size_t steps) {
  std::vector<class_counts> result{start};
  for (std::size_t step = 0; step < steps; ++step) {
    class_counts next = result.back();
    double daughters = 0;
    double sons = 0;
    for (std::size_t at = 0; at < next.females.size(); ++at) {
      daughters += next.females[at] * rateAt(rates.daughters, at);
      sons += next.females[at] * rateAt(rates.sons, at);
    }
    growOlder(next.females, survivorsOf(next.females, rates.female_survival), daughters);
    growOlder(next.males, survivorsOf(next.males, rates.male_survival), sons);
    result.push_back(std::move(next));
  }
  return result;
}

namespace {

/// One run: a population of whole animals.
class ChanceRun {
 public:
  ChanceRun(const class_counts& start, const step_rates& rates, std::mt19937_64& random)
      : rates_(rates), random_(random) {
    // One chance for all classes: shared animals of unknown sex become whole ones, and their number stays.
    Rounding rounding(std::uniform_real_distribution<double>(0, 1)(random));
    for (const double count : start.females) females_.push_back(rounding.next(count));
    for (const double count : start.males) males_.push_back(rounding.next(count));
  }

  long females() const { return std::accumulate(females_.begin(), females_.end(), 0L); }
  long males() const { return std::accumulate(males_.begin(), males_.end(), 0L); }

  void step() {
    long daughters = 0;
    long sons = 0;
    if (males() > 0) {
      for (std::size_t at = 0; at < females_.size(); ++at) {
        const auto dams = static_cast<double>(females_[at]);
        daughters += poisson(dams * rateAt(rates_.daughters, at));
        sons += poisson(dams * rateAt(rates_.sons, at));
      }
    }
    growOlder(females_, survivors(females_, rates_.female_survival), daughters);
    growOlder(males_, survivors(males_, rates_.male_survival), sons);
  }

 private:
  /// Rounds counts one after the other up or down, so that their sum is rounded likewise.
  class Rounding {
   public:
    explicit Rounding(double chance) : sum_(chance) {}

    long next(double count) {
      constexpr double ERROR = 1e-9;  // of adding halves and shares
      sum_ += count;
      const long given = static_cast<long>(std::floor(sum_ + ERROR)) - given_;
      given_ += given;
      return given;
    }

   private:
    double sum_;
    long given_ = 0;
  };

  long poisson(double mean) { return mean > 0 ? std::poisson_distribution<long>(mean)(random_) : 0; }

  std::vector<long> survivors(const std::vector<long>& counts, const std::vector<double>& survival) {
    std::vector<long> result;
    for (std::size_t at = 0; at < counts.size(); ++at) {
      const double chance = rateAt(survival, at);
      result.push_back(counts[at] > 0 ? std::binomial_distribution<long>(counts[at], chance)(random_) : 0);
    }
    return result;
  }

  const step_rates& rates_;
  std::mt19937_64& random_;
  std::vector<long> females_;
  std::vector<long> males_;
};

projection_step spreadOf(std::vector<double>& totals, double extinct, double fewer_than) {
  std::sort(totals.begin(), totals.end());
  const auto runs = static_cast<double>(totals.size());
  projection_step step;
  step.mean = std::accumulate(totals.begin(), totals.end(), 0.0) / runs;
  step.lower = quantileOf(totals, 0.025);
  step.quarter = quantileOf(totals, 0.25);
  step.median = quantileOf(totals, 0.5);
  step.three_quarters = quantileOf(totals, 0.75);
  step.upper = quantileOf(totals, 0.975);
  step.extinct = extinct / runs;
  step.below = static_cast<double>(std::lower_bound(totals.begin(), totals.end(), fewer_than) - totals.begin()) / runs;
  return step;
}

}  // namespace

std::vector<projection_step> projectChance(const class_counts& start, const step_rates& rates, std::size_t steps,
                                           const chance_settings& settings) {
  if (settings.runs == 0) return {};
  std::mt19937_64 random(settings.seed);
  std::vector<std::vector<double>> totals(steps + 1);
  std::vector<double> extinct(steps + 1);
  for (std::size_t run = 0; run < settings.runs; ++run) {
    ChanceRun population(start, rates, random);
    for (std::size_t step = 0; step <= steps; ++step) {
      const long females = population.females();
      const long males = population.males();
      totals[step].push_back(static_cast<double>(females + males));
      extinct[step] += females == 0 || males == 0;
      if (step < steps) population.step();
    }
  }
  std::vector<projection_step> result;
  for (std::size_t step = 0; step <= steps; ++step) {
    result.push_back(spreadOf(totals[step], extinct[step], settings.fewer_than));
  }
  return result;
}

double birthsToKeep(double size, const life_tallies& data) {
  const auto lifetime = [&data](SEX sex) {
    const auto table = lifeTable(data.of(0, sex), data.classes, sex, true);
    return table.empty() ? 0 : table.front().T / data.classes.open_width;
  };
  const double steps = (1 - data.male_share) * lifetime(SEX::FEMALE) + data.male_share * lifetime(SEX::MALE);
  return steps > 0 ? size / steps : NOT_KNOWN;
}

}  // namespace spx
