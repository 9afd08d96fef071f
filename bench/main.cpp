// Runs the benchmarks.
#include <benchmark/benchmark.h>

BENCHMARK_MAIN();
