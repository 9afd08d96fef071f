// Loading, checking, ordering and describing studbooks of 10,000 to 1,000,000 animals. Each row is
// named after what a person waits for; ten times the animals may take at most twelve times the
// time, sorts fourteen.
#include <benchmark/benchmark.h>

#include "spx/analyses/data_summary.h"
#include "spx/analyses/listings.h"
#include "spx/core/animal_data.h"
#include "spx/core/meta_population.h"
#include "spx/project/biology.h"
#include "spx/views/data_filter.h"

#include "bench/loaded_studbook.h"
#include "bench/sizes.h"
#include "console/check/check_studbook.h"
#include "console/studbook/load_studbook.h"
#include "console/tables/animals_table.h"
#include "console/tables/csv_table.h"

namespace spx::bench {
namespace {

/// Measures one operation on a held studbook, from cold caches.
template <class Operation>
void measure(benchmark::State& state, Operation operation) {
  holdStudbook(state.range(0));
  const Quiet quiet;
  for ([[maybe_unused]] auto step : state) {
    state.PauseTiming();
    coolCaches();
    state.ResumeTiming();
    operation();
  }
}

/// Measures a sort of the index from a random order.
void measureSort(benchmark::State& state, SORT_FIELD field) {
  holdStudbook(state.range(0));
  for ([[maybe_unused]] auto step : state) {
    state.PauseTiming();
    shuffleIndex();
    coolCaches();
    state.ResumeTiming();
    Animals.sortList(field);
  }
}

void ReadTable(benchmark::State& state) {
  const console::table_source table = console::csvSource(tableOf(state.range(0)));
  forgetStudbook();
  for ([[maybe_unused]] auto step : state) {
    state.PauseTiming();
    console::dropStudbook();
    state.ResumeTiming();
    console::LocationRegistry locations;
    console::Faults faults;
    console::loading_notes notes;
    Animals.initialize(table.estimate_rows());
    console::readAnimals(table, locations, faults, notes);
    if (!faults.empty()) state.SkipWithError(faults.text().c_str());
  }
}
BENCHMARK(ReadTable)->Apply(allSizes);

void measureLoading(benchmark::State& state, const std::string& table) {
  console::studbook_files files;
  files.animals = table;
  console::dropStudbook();
  for ([[maybe_unused]] auto step : state) {
    console::loadStudbook(files);
  }
  forgetStudbook();
}

void LoadStudbook(benchmark::State& state) {
  measureLoading(state, tableOf(state.range(0)));
}
BENCHMARK(LoadStudbook)->Apply(allSizes);

void LoadWildSires(benchmark::State& state) {
  measureLoading(state, tableOf(state.range(0), "wild"));
}
BENCHMARK(LoadWildSires)->Apply(allSizes);

void Validate(benchmark::State& state) {
  measure(state, [] { Animals.validate(); });
}
BENCHMARK(Validate)->Apply(allSizes);

/// All rules of `spx check`.
void CheckStudbook(benchmark::State& state) {
  measure(state, [] {
    const qs_lib::day_number today = qs_lib::msToDay(qs_lib::dateToJulian(std::string("2026-01-01")));
    benchmark::DoNotOptimize(console::checkStudbook({Animals.records, LifeHistory, MetaPop, today, {}}));
  });
}
BENCHMARK(CheckStudbook)->Apply(allSizes);

void SelectAncestors(benchmark::State& state) {
  measure(state, [] { Animals.selectAncestors(Animals.records.back().stud_id); });
}
BENCHMARK(SelectAncestors)->Apply(allSizes);

void PopulationPedigree(benchmark::State& state) {
  measure(state, [] { Animals.populationPedigree(); });
}
BENCHMARK(PopulationPedigree)->Apply(allSizes);

void FlagBreeders(benchmark::State& state) {
  measure(state, [] { Animals.flagBreeders(); });
}
BENCHMARK(FlagBreeders)->Apply(allSizes);

void SortBirth(benchmark::State& state) {
  measureSort(state, SORT_FIELD::BIRTH);
}
BENCHMARK(SortBirth)->Apply(allSizes);

void SortStudbookId(benchmark::State& state) {
  measureSort(state, SORT_FIELD::STUDBOOK_ID);
}
BENCHMARK(SortStudbookId)->Apply(allSizes);

/// The pedigree is built in studbook-ID order, so each round sorts it again: by birth, then by sire.
void SortPedigree(benchmark::State& state) {
  measure(state, [] {
    Animals.sortPedigree(SORT_FIELD::BIRTH);
    Animals.sortPedigree(SORT_FIELD::DAM_ID);
  });
}
BENCHMARK(SortPedigree)->Apply(allSizes);

void SortLookup(benchmark::State& state) {
  measure(state, [] { Animals.createLookup(); });
}
BENCHMARK(SortLookup)->Apply(allSizes);

void Summary(benchmark::State& state) {
  measure(state, [] {
    DataSummary summary;
    summary.initialize();
    summary.analyse();
    summary.reportConsole();
  });
}
BENCHMARK(Summary)->Apply(allSizes);

void ListStudbook(benchmark::State& state) {
  measure(state, [] { listStudbookData(true); });
}
BENCHMARK(ListStudbook)->Apply(allSizes);

}  // namespace
}  // namespace spx::bench
