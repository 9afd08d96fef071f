#include "console/output/staged_files.h"

#include <csignal>
#include <filesystem>
#include <mutex>
#include <pthread.h>
#include <set>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace spx::console {
namespace {

namespace fs = std::filesystem;

/// The directories in which files are staged. It is never destroyed, since the thread may still use
/// it while the program ends.
struct staging_places {
  std::mutex mutex;
  std::set<fs::path> directories;
};

staging_places& places() {
  static staging_places& only = *new staging_places;
  return only;
}

void removeStagedIn(const fs::path& directory) {
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
    if (entry.path().filename().string().starts_with(stagedPrefix())) {
      fs::remove_all(entry.path(), ignored);
    }
  }
}

bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t endingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (!isIgnored(signal)) {
      sigaddset(&signals, signal);
    }
  }
  return signals;
}

/// The lock is never released, so that no other directory can be registered while the program ends.
void waitForEnd(sigset_t signals) {
  int signal = 0;
  if (sigwait(&signals, &signal) != 0) {
    return;
  }
  const std::lock_guard<std::mutex> lock(places().mutex);
  for (const fs::path& directory : places().directories) {
    removeStagedIn(directory);
  }
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  std::raise(signal);
}

void startWaiting() {
  const sigset_t signals = endingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  try {
    std::thread(waitForEnd, signals).detach();
  } catch (const std::system_error&) {
    // Without the thread, a signal that ends the program leaves the staged files behind.
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  }
}

}  // namespace

std::string stagedPrefix() {
  return ".spx-" + std::to_string(getpid()) + "-";
}

void removeStagedWhenEnded(const std::string& directory) {
  static std::once_flag started;
  std::call_once(started, startWaiting);
  const std::lock_guard<std::mutex> lock(places().mutex);
  places().directories.insert(fs::absolute(directory.empty() ? "." : directory));
}

}  // namespace spx::console
