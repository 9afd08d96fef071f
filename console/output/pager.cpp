#include "console/output/pager.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sstream>
#include <string>
#include <unistd.h>

#include <sys/wait.h>

namespace spx::console {
namespace {

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool isProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) {
    return ::access(name.c_str(), X_OK) == 0;
  }
  std::istringstream path(variable("PATH"));
  for (std::string directory; std::getline(path, directory, ':');) {
    if (::access((directory + "/" + name).c_str(), X_OK) == 0) {
      return true;
    }
  }
  return false;
}

/// Starts a shell that reads a pipe, with the signals as a fresh program has them.
pid_t startShell(const std::string& command, int pipe) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipe, STDIN_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  const std::string text = command;
  const char* words[] = {"sh", "-c", text.c_str(), nullptr};
  pid_t process = -1;
  const int failed = ::posix_spawn(&process, "/bin/sh", &actions, &attributes, const_cast<char**>(words), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return failed == 0 ? process : -1;
}

volatile pid_t running_pager = -1;

/// Ends the pager, too, which would keep the terminal, and then as the signal would have done.
void endWithPager(int signal) {
  ::kill(running_pager, signal);
  ::waitpid(running_pager, nullptr, 0);
  std::signal(signal, SIG_DFL);
  ::raise(signal);
}

}  // namespace

std::string pagerCommand() {
  if (std::getenv("PAGER") != nullptr) {
    const std::string command = variable("PAGER");
    const std::string program = command.substr(0, command.find(' '));
    return program == "cat" || !isProgram(program) ? "" : command;
  }
  const std::string terminal = variable("TERM");
  return terminal.empty() || terminal == "dumb" || !isProgram("less") ? "" : "less -FRX";
}

Pager::Pager(const std::string& command) : stream_(&buffer_) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    return;
  }
  ::setenv("LESS", "FRX", 0);  // for a $PAGER of "less": ends by itself where everything fits the screen
  process_ = startShell(command, ends[0]);
  ::close(ends[0]);
  if (process_ < 0) {
    ::close(ends[1]);
    return;
  }
  buffer_.pipe = ends[1];
  former_interrupt_ = std::signal(SIGINT, SIG_IGN);
  former_pipe_ = std::signal(SIGPIPE, SIG_IGN);
  running_pager = process_;
  former_end_ = std::signal(SIGTERM, &endWithPager);
}

void Pager::finish() {
  if (process_ < 0) {
    return;
  }
  stream_.flush();
  ::close(buffer_.pipe);
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
  std::signal(SIGINT, former_interrupt_);
  std::signal(SIGPIPE, former_pipe_);
  std::signal(SIGTERM, former_end_);
}

Pager::PipeBuffer::int_type Pager::PipeBuffer::overflow(int_type letter) {
  if (sync() != 0) {
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(letter, traits_type::eof())) {
    sputc(traits_type::to_char_type(letter));
  }
  return traits_type::not_eof(letter);
}

int Pager::PipeBuffer::sync() {
  const char* from = pbase();
  while (from < pptr()) {
    const ssize_t written = ::write(pipe, from, static_cast<std::size_t>(pptr() - from));
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written < 0) {
      return -1;
    }
    from += written;
  }
  setp(room_.data(), room_.data() + room_.size());
  return 0;
}

}  // namespace spx::console
