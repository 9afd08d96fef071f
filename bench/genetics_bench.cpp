// Genetics of a closed mixing herd and of a registry with few sires, compared with the algorithm of Meuwissen & Luo.
// Linear operations also have a row of 10,000,000 animals, which runs if SPX_BENCH_LONG is set.
#include <cstdlib>
#include <memory>
#include <numeric>

#include <benchmark/benchmark.h>

#include "spx/core/animal_data.h"
#include "spx/genetics/effective_ancestors.h"
#include "spx/genetics/founders.h"
#include "spx/genetics/gene_drop.h"
#include "spx/genetics/generations.h"
#include "spx/genetics/inbreeding.h"
#include "spx/genetics/kinship.h"
#include "spx/genetics/studbook_pedigree.h"

#include "bench/loaded_studbook.h"
#include "bench/meuwissen_luo.h"
#include "bench/sizes.h"

namespace spx::bench {
namespace {

/// The pedigree of a generated studbook, and the animals that the rows use.
struct Population {
  std::string table;
  StudbookPedigree studbook;
  std::vector<animal_number> living;
  relationship_terms terms;

  const GeneticPedigree& pedigree() const { return studbook.pedigree(); }
};

const Population& populationOf(long animals, const char* kind) {
  static Population held;
  const std::string table = tableOf(animals, kind);
  if (held.table == table) return held;
  holdStudbook(animals, kind);
  held = Population{table, {}, {}, {}};
  held.studbook.build(Animals);
  for (position record = 0; record < Animals.records.size(); ++record) {
    const animal_number number = held.studbook.number(record);
    if (number != UNKNOWN_SOURCE && Animals.records[record].death.date == 0) held.living.push_back(number);
  }
  held.terms = inbreedingOf(held.pedigree());
  return held;
}

template <class Operation>
void measure(benchmark::State& state, const char* kind, Operation operation) {
  const Population& population = populationOf(state.range(0), kind);
  for ([[maybe_unused]] auto step : state) benchmark::DoNotOptimize(operation(population));
}

void InbreedingOfHerd(benchmark::State& state) {
  measure(state, "herd", [](const Population& population) { return inbreedingOf(population.pedigree()); });
}
BENCHMARK(InbreedingOfHerd)->Apply(allSizes);

void InbreedingOfHerdByMeuwissenLuo(benchmark::State& state) {
  measure(state, "herd", [](const Population& population) { return meuwissenLuoByHeap(population.pedigree()); });
}
BENCHMARK(InbreedingOfHerdByMeuwissenLuo)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void InbreedingOfRegistry(benchmark::State& state) {
  measure(state, "registry", [](const Population& population) { return inbreedingOf(population.pedigree()); });
}
BENCHMARK(InbreedingOfRegistry)->Apply(allSizes);

void InbreedingOfRegistryByMeuwissenLuo(benchmark::State& state) {
  measure(state, "registry", [](const Population& population) { return meuwissenLuoByHeap(population.pedigree()); });
}
BENCHMARK(InbreedingOfRegistryByMeuwissenLuo)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void NumberStudbook(benchmark::State& state) {
  measure(state, "herd", [](const Population&) {
    StudbookPedigree pedigree;
    return pedigree.build(Animals);
  });
}
BENCHMARK(NumberStudbook)->Apply(allSizes);

void MeanKinships(benchmark::State& state) {
  measure(state, "herd", [](const Population& population) {
    return meanKinships(population.pedigree(), population.terms, population.living);
  });
}
BENCHMARK(MeanKinships)->Apply(allSizes);

void Contributions(benchmark::State& state) {
  measure(state, "herd",
          [](const Population& population) { return contributionsTo(population.pedigree(), population.living); });
}
BENCHMARK(Contributions)->Apply(allSizes);

void Generations(benchmark::State& state) {
  measure(state, "herd", [](const Population& population) { return generationsOf(population.pedigree()); });
}
BENCHMARK(Generations)->Apply(allSizes);

void TenGeneDrops(benchmark::State& state) {
  measure(state, "herd", [](const Population& population) {
    return geneDrop(population.pedigree(), population.living, {.runs = 10});
  });
}
BENCHMARK(TenGeneDrops)->Apply(allSizes);

void EffectiveAncestors(benchmark::State& state) {
  measure(state, "herd",
          [](const Population& population) { return effectiveAncestors(population.pedigree(), population.living); });
}
BENCHMARK(EffectiveAncestors)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void KinshipMatrixOfAThousand(benchmark::State& state) {
  measure(state, "herd", [](const Population& population) {
    KinshipMatrix matrix;
    matrix.compute(population.pedigree(), population.terms, std::span(population.living).first(1000));
    return matrix.at(999, 0);
  });
}
BENCHMARK(KinshipMatrixOfAThousand)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

/// A registry of 10,000,000 animals without a studbook, since the store would take gigabytes.
const GeneticPedigree& largeRegistry() {
  static const auto pedigree = [] {
    constexpr animal_number ANIMALS = 10'000'000;
    pedigree_rows rows;
    std::uint64_t state = 1;
    const auto draw = [&state](animal_number below) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      return static_cast<animal_number>((state >> 33U) % below);
    };
    for (animal_number row = 0; row < ANIMALS; ++row) {
      const bool is_founder = row < 100'000;
      const animal_number window = std::min<animal_number>(row, 1'000'000);
      rows.sires.push_back(is_founder ? UNKNOWN_SOURCE : row - 1 - draw(window) / 50 * 50);
      rows.dams.push_back(is_founder ? UNKNOWN_SOURCE : row - 1 - draw(window));
    }
    auto numbered = std::make_unique<GeneticPedigree>();
    numbered->assign(rows);
    return numbered;
  }();
  return *pedigree;
}

void LongLinearPasses(benchmark::State& state) {
  const GeneticPedigree& pedigree = largeRegistry();
  // The time of a product does not depend on the variances: 1/2 stands in for them.
  const relationship_terms terms{{}, std::vector<double>(pedigree.size(), 0.5)};
  std::vector<animal_number> living(1'000'000);
  std::iota(living.begin(), living.end(), static_cast<animal_number>(pedigree.size() - living.size()));
  for ([[maybe_unused]] auto step : state) {
    benchmark::DoNotOptimize(meanKinships(pedigree, terms, living));
    benchmark::DoNotOptimize(contributionsTo(pedigree, living));
    benchmark::DoNotOptimize(generationsOf(pedigree));
  }
}
const bool is_long_registered = [] {
  if (std::getenv("SPX_BENCH_LONG") == nullptr) return false;
  benchmark::RegisterBenchmark("LongLinearPasses", LongLinearPasses)->Unit(benchmark::kMillisecond)->Iterations(1);
  return true;
}();

}  // namespace
}  // namespace spx::bench
