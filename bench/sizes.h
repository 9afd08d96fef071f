#pragma once

#include <benchmark/benchmark.h>

namespace spx::bench {

/// The studbooks of most rows, measured one right after the other: 10,000, 100,000 and 1,000,000
/// animals, each twice: the first run may include the cost of getting memory from the system.
inline void allSizes(benchmark::internal::Benchmark* row) {
  row->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->MinTime(0.02)->Repetitions(2);
}

}  // namespace spx::bench
