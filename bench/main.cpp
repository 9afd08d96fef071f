// The benchmarks under the conditions of the program.
#include <benchmark/benchmark.h>

#include "console/base/process_memory.h"

int main(int argument_count, char** arguments) {
  spx::console::keepFreedMemory();
  benchmark::Initialize(&argument_count, arguments);
  if (benchmark::ReportUnrecognizedArguments(argument_count, arguments)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
