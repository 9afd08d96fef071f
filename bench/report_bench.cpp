// Parent tracing and the exports. What is written goes to a temporary directory.
#include <filesystem>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include "spx/analyses/trace_parents.h"
#include "spx/core/animal_data.h"
#include "spx/exports/export_dattrf.h"
#include "spx/exports/export_field.h"
#include "spx/exports/export_pedigree.h"
#include "spx/project/biology.h"
#include "spx/views/data_filter.h"

#include "bench/loaded_studbook.h"
#include "bench/sizes.h"

namespace spx::bench {
namespace {

namespace fs = std::filesystem;

class OutputDirectory {
 public:
  OutputDirectory() : path_(fs::temp_directory_path() / ("spx-bench-out-" + std::to_string(::getpid()))) {
    fs::create_directories(path_);
  }
  ~OutputDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  std::string path() const { return path_.string(); }

 private:
  fs::path path_;
};

long lines(const std::string& file, const std::string& text) {
  long count = 0;
  std::FILE* in = std::fopen(file.c_str(), "r");
  char line[512];
  while (in != nullptr && std::fgets(line, sizeof line, in) != nullptr) {
    count += std::string(line).find(text) != std::string::npos;
  }
  if (in != nullptr) std::fclose(in);
  return count;
}

/// The cost of tracing depends on what it writes: the counters give the number of candidates and
/// the time for each. Candidates grow faster than the studbook, since all animals of a location can
/// be parents.
void TraceParentsPerCandidate(benchmark::State& state) {
  holdStudbook(state.range(0));
  const OutputDirectory output;
  LifeHistory.setReproductiveAge(SEX::MALE, {700, 6000});
  LifeHistory.setReproductiveAge(SEX::FEMALE, {700, 6000});
  const Quiet quiet;
  double seconds = 0;
  for ([[maybe_unused]] auto step : state) {
    TraceParents analysis;
    analysis.setReportDirectory(output.path());
    analysis.initialize();
    analysis.trace();
    seconds += analysis.secondsUsed();
    if (!analysis.isReportWritten()) state.SkipWithError("the report was not written");
  }
  const auto candidates = static_cast<double>(lines(output.path() + "/parents-all.xml", "<AGE>"));
  state.counters["candidates"] = candidates;
  state.counters["ns_per_candidate"] = seconds * 1e9 / static_cast<double>(state.iterations()) / candidates;
}
BENCHMARK(TraceParentsPerCandidate)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

template <class Export>
void measureExport(benchmark::State& state, bool (Export::*run)()) {
  holdStudbook(state.range(0));
  const OutputDirectory output;
  View.clearView();
  View.origin = BIRTH_TYPE::ALL;
  for ([[maybe_unused]] auto step : state) {
    state.PauseTiming();
    coolCaches();
    state.ResumeTiming();
    Export table;
    table.setReportDirectory(output.path());
    if (!(table.*run)()) state.SkipWithError("the table was not written");
  }
}

void ExportPedigreeTable(benchmark::State& state) {
  measureExport(state, &ExportPedigree::exportToR);
}
BENCHMARK(ExportPedigreeTable)->Apply(allSizes);

void ExportFieldTable(benchmark::State& state) {
  measureExport(state, &ExportField::exportToR);
}
BENCHMARK(ExportFieldTable)->Apply(allSizes);

void ExportDatTrf(benchmark::State& state) {
  measureExport(state, &ExportDattrf::exportData);
}
BENCHMARK(ExportDatTrf)->Apply(allSizes);

}  // namespace
}  // namespace spx::bench
