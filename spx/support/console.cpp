#include "spx/support/console.h"

#include <csignal>
#include <functional>
#include <iostream>
#include <memory>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace qs_lib {
namespace {
bool verbose_output = false;
std::shared_ptr<const std::function<void()>> pause_handler;
std::shared_ptr<const std::function<void(const std::string&)>> display_handler;

// Null for an empty handler.
template <class Handler>
std::shared_ptr<const Handler> shared(Handler handler) {
  return handler ? std::make_shared<const Handler>(std::move(handler)) : nullptr;
}

/// Reads single keys without showing them; restores the terminal in the end.
class RawTerminal {
 public:
  RawTerminal() : changed_(tcgetattr(STDIN_FILENO, &old_state_) == 0) {
    if (changed_) {
      termios raw = old_state_;
      // Keys that raise signals are read like others, so that an interrupt cannot leave the echo off.
      raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
      raw.c_cc[VMIN] = 1;
      raw.c_cc[VTIME] = 0;
      tcsetattr(STDIN_FILENO, TCSANOW, &raw);
    }
  }
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;
  ~RawTerminal() {
    if (changed_) {
      tcsetattr(STDIN_FILENO, TCSAFLUSH, &old_state_);
    }
  }

  /// Waits for a key. @return whether it was the key that interrupts a program
  bool waitForKey() const {
    unsigned char key = 0;
    return read(STDIN_FILENO, &key, 1) == 1 && changed_ && key == old_state_.c_cc[VINTR];
  }

 private:
  termios old_state_{};
  bool changed_;
};

bool interruptedAtKey() {
  const RawTerminal terminal;
  return terminal.waitForKey();
}
}  // namespace

void message(const std::string& text) {
  display(text + "\n");
}

void display(const std::string& text) {
  // A handler that replaces or removes itself lives until it returns.
  if (const auto handler = display_handler) {
    (*handler)(text);
  } else {
    std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
  }
}

void errorMessage(const std::string& text) {
  std::cout.flush();
  const std::string line = text + "\n";
  std::cerr.write(line.data(), static_cast<std::streamsize>(line.size()));
}

void pauseKey() {
  if (const auto handler = pause_handler) {
    (*handler)();
    return;
  }
  std::cout.flush();
  if (isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 && interruptedAtKey()) {
    std::raise(SIGINT);
  }
}

bool isVerbose() {
  return verbose_output;
}

void setVerbose(bool verbose) {
  verbose_output = verbose;
}

void setPauseHandler(std::function<void()> handler) {
  pause_handler = shared(std::move(handler));
}

void setDisplayHandler(std::function<void(const std::string&)> handler) {
  display_handler = shared(std::move(handler));
}
}  // namespace qs_lib
