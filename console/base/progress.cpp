#include "console/base/progress.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <iostream>
#include <mutex>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace spx::console {
namespace {

/// Writes past the streams of the program, whose buffers belong to its main thread.
void put(const std::string& text) {
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

void showUntilStopped(const std::stop_token& stop, const std::string& what) {
  using namespace std::chrono_literals;
  std::mutex mutex;
  std::condition_variable_any stopped;
  std::unique_lock<std::mutex> lock(mutex);
  std::size_t width = 0;
  for (int seconds = 1;; ++seconds) {
    stopped.wait_for(lock, stop, 1s, [] { return false; });
    if (stop.stop_requested()) {
      break;
    }
    const std::string line = what + ": " + std::to_string(seconds) + " s";
    put("\r" + line);
    width = line.size();
  }
  if (width != 0) {
    put("\r" + std::string(width, ' ') + "\r");
  }
}

}  // namespace

Progress::Progress(std::string what) {
  if (::isatty(STDERR_FILENO) != 1) {
    return;
  }
  // Blocks all signals, so that other threads receive them.
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &former);
  try {
    thread_ = std::jthread([what = std::move(what)](const std::stop_token& stop) { showUntilStopped(stop, what); });
  } catch (const std::system_error&) {
    thread_ = {};  // no thread can be started: no progress is shown
  }
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

}  // namespace spx::console
