#include "console/base/isolated_run.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>
#include <utility>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "console/base/failure.h"

namespace spx::console {
namespace {

constexpr char DAMAGED[] = "is damaged, or too large to be read";

// The last byte of the output says how the run ended.
constexpr char DONE = '\0';
constexpr char FAILED = '\1';

class OpenFile {
 public:
  explicit OpenFile(int number) : number_(number) {}
  OpenFile(OpenFile&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  ~OpenFile() { close(); }
  int number() const { return number_; }
  void close() {
    if (number_ >= 0) {
      ::close(std::exchange(number_, -1));
    }
  }

 private:
  int number_;
};

void writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) {
      ::_exit(1);
    }
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
}

void limit(int resource, std::size_t most) {
  const rlimit limits = {most, most};
  ::setrlimit(static_cast<__rlimit_resource>(resource), &limits);
}

/// The sanitizers reserve more address space than any limit allows.
constexpr bool isSanitized() {
#ifdef __SANITIZE_ADDRESS__
  return true;
#else
  return false;
#endif
}

std::size_t addressSpace() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void setLimits(const run_limits& limits, std::size_t memory_now) {
  if (!isSanitized() && memory_now != 0) {
    limit(RLIMIT_AS, memory_now + limits.memory);
  }
  limit(RLIMIT_CPU, limits.seconds);
  limit(RLIMIT_CORE, 0);
}

/// Discards the messages of the libraries that read the input; they are not meant for the user.
void silence() {
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  ::dup2(nowhere, STDOUT_FILENO);
  ::dup2(nowhere, STDERR_FILENO);
}

[[noreturn]] void runChild(int output, const run_limits& limits, std::size_t memory_now,
                           const std::function<void(const std::function<void(std::string_view)>&)>& work) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGXCPU}) {
    std::signal(signal, SIG_DFL);
  }
  silence();
  setLimits(limits, memory_now);
  try {
    work([output](std::string_view bytes) { writeAll(output, bytes); });
    writeAll(output, {&DONE, 1});
  } catch (const std::bad_alloc&) {
    ::_exit(1);
  } catch (const std::exception& error) {
    // The output so far is useless; only the reason counts, which follows the mark.
    writeAll(output, {&FAILED, 1});
    writeAll(output, error.what());
    writeAll(output, {&FAILED, 1});
  } catch (...) {
    ::_exit(1);
  }
  ::_exit(0);
}

/// Reads to the end; empty when that is more than `most` bytes, or on an error.
std::string readAll(int file, std::size_t most) {
  std::string all;
  std::string part(std::size_t{1} << 16, '\0');
  for (;;) {
    const ssize_t count = ::read(file, part.data(), part.size());
    if (count == 0) {
      return all;
    }
    if (count < 0 && errno != EINTR) {
      return {};
    }
    all.append(part, 0, count < 0 ? 0 : static_cast<std::size_t>(count));
    if (all.size() > most) {
      return {};
    }
  }
}

/// Waits for the child. @return whether it ended normally, with exit code 0
bool waitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return false;
    }
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

std::string runIsolated(const run_limits& limits,
                        const std::function<void(const std::function<void(std::string_view)>&)>& work) {
  const std::size_t memory_now = addressSpace();
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    throw Failure(std::strerror(errno));
  }
  OpenFile reader(ends[0]);
  OpenFile writer(ends[1]);
  const pid_t child = ::fork();
  if (child < 0) {
    throw Failure(std::strerror(errno));
  }
  if (child == 0) {
    runChild(writer.number(), limits, memory_now, work);
  }
  writer.close();
  std::string output = readAll(reader.number(), limits.output);
  reader.close();  // a child that is still writing gets SIGPIPE
  const bool ended = waitFor(child);
  if (!ended || output.empty()) {
    throw Failure(DAMAGED);
  }
  const char mark = output.back();
  output.pop_back();
  if (mark == FAILED) {
    throw Failure(output.substr(output.rfind(FAILED) + 1));
  }
  return output;
}

}  // namespace spx::console
