// The computations of the demographic commands, on studbooks of 10,000 to 1,000,000 animals with three transfers each.
// Each row has to take less than LoadStudbook, and to grow with the number of animals.
#include <benchmark/benchmark.h>

#include "spx/core/animal_data.h"
#include "spx/demography/census.h"
#include "spx/demography/growth.h"
#include "spx/demography/projection.h"
#include "spx/demography/reproduction.h"
#include "spx/demography/survival.h"

#include "bench/loaded_studbook.h"
#include "bench/sizes.h"

namespace spx::bench {
namespace {

/// Gives every animal that lives long enough three transfers in its second year, between eight locations.
void addTransfers() {
  for (master_data& animal : Animals.records) {
    if (animal.birth.date == 0 || !animal.moves.empty()) continue;
    for (qs_lib::day_number number = 1; number <= 3; ++number) {
      move_data move = animal.birth;
      move.accuracy = DATE_ACCURACY::ACCURATE;
      move.date += 365 + 90 * number;
      if (animal.death.date != 0 && move.date >= animal.death.date) break;
      move.event = MOVE_TYPE::ARRIVAL;
      DemeID place;
      place.blocks[0] = static_cast<std::uint8_t>(1 + (animal.id_key + number) % 8);
      move.location = place.binary();
      animal.moves.push_back(move);
    }
  }
}

DataFilter wholeView() {
  DataFilter view;
  view.origin = BIRTH_TYPE::ALL;
  view.prorating = true;
  return view;
}

template <class Operation>
void measureLives(benchmark::State& state, Operation operation) {
  holdStudbook(state.range(0));
  addTransfers();
  const DataFilter view = wholeView();
  const presence_settings settings = presenceSettings(view);
  for ([[maybe_unused]] auto step : state) {
    state.PauseTiming();
    coolCaches();
    state.ResumeTiming();
    operation(view, settings);
  }
}

void Census(benchmark::State& state) {
  measureLives(state, [](const DataFilter& view, const presence_settings& settings) {
    const Presence presence(Animals.records, view, settings);
    benchmark::DoNotOptimize(census(presence, censusDays(view, firstDay(presence))));
  });
}
BENCHMARK(Census)->Apply(allSizes);

void Survival(benchmark::State& state) {
  measureLives(state, [](const DataFilter& view, const presence_settings& settings) {
    survival_settings by_sex;
    by_sex.by = SURVIVAL_GROUPS::SEX;
    const survival_data data = survivalData(Animals.records, view, settings, by_sex);
    for (std::uint32_t group = 0; group < data.groups.size(); ++group) {
      benchmark::DoNotOptimize(survivalOf(data, group));
    }
    benchmark::DoNotOptimize(logRankTest(data.times, data.groups.size()));
  });
}
BENCHMARK(Survival)->Apply(allSizes);

void LifeTable(benchmark::State& state) {
  measureLives(state, [](const DataFilter& view, const presence_settings& settings) {
    benchmark::DoNotOptimize(lifeTallies(Animals, view, settings, ageClasses(view), 0));
  });
}
BENCHMARK(LifeTable)->Apply(allSizes);

void Growth(benchmark::State& state) {
  measureLives(state, [](const DataFilter& view, const presence_settings& settings) {
    const life_tallies data = lifeTallies(Animals, view, settings, ageClasses(view), 0, 2000);
    benchmark::DoNotOptimize(bootstrapGrowth(data, SEX::FEMALE, true, PARENT_AGE::MIDDLE, 200, 1));
  });
}
BENCHMARK(Growth)->Apply(allSizes);

void Reproduction(benchmark::State& state) {
  measureLives(state, [](const DataFilter& view, const presence_settings& settings) {
    benchmark::DoNotOptimize(reproductionOf(Animals, view, settings, reproductionSettings()));
  });
}
BENCHMARK(Reproduction)->Apply(allSizes);

void Projection(benchmark::State& state) {
  measureLives(state, [](const DataFilter& view, const presence_settings& settings) {
    const step_rates rates = stepRates(lifeTallies(Animals, view, settings, ageClasses(view), 0), true);
    const Presence presence(Animals.records, view, settings);
    const class_counts start = startingNumbers(ageStructure(presence, view, view.end_date), 25);
    benchmark::DoNotOptimize(projectChance(start, rates, 20, {100, 1, 0}));
  });
}
BENCHMARK(Projection)->Apply(allSizes);

}  // namespace
}  // namespace spx::bench
