#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace spx {

/// Calls work(worker, task) for every task from 0 to `tasks` - 1 with that many workers, each in a thread of its own.
/// The tasks are handed out as workers become free, so a task may not depend on another and has to write where no other
/// does; then the result is the same for any number of workers.
template <class Work>
void forEachTask(std::size_t tasks, std::size_t workers, const Work& work) {
  std::atomic<std::size_t> next = 0;
  const auto run = [&](std::size_t worker) {
    for (std::size_t task = next++; task < tasks; task = next++) work(worker, task);
  };
  std::vector<std::jthread> threads;
  for (std::size_t worker = 1; worker < std::min(workers, tasks); ++worker) {
    threads.emplace_back(run, worker);
  }
  run(0);
}

}  // namespace spx
