#include "spx/support/console.h"

#include <csignal>
#include <iostream>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace qs_lib {
namespace {
bool verbose_output = false;
std::function<void()> pause_handler;
std::function<void(const std::string&)> display_handler;

/// Hands over single keys, unshown, and gives the terminal back as it was.
class RawTerminal {
 public:
  RawTerminal() : changed_(tcgetattr(STDIN_FILENO, &former_) == 0) {
    if (changed_) {
      termios raw = former_;
      // Signals are taken as keys, so that an interrupted program leaves no silent terminal.
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
      tcsetattr(STDIN_FILENO, TCSAFLUSH, &former_);
    }
  }

  /// Waits for a key; tells whether it was the one that interrupts a program.
  bool waitForKey() const {
    unsigned char key = 0;
    return read(STDIN_FILENO, &key, 1) == 1 && changed_ && key == former_.c_cc[VINTR];
  }

 private:
  termios former_{};
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
  if (display_handler) {
    display_handler(text);
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
  if (pause_handler) {
    pause_handler();
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
  pause_handler = std::move(handler);
}

void setDisplayHandler(std::function<void(const std::string&)> handler) {
  display_handler = std::move(handler);
}
}  // namespace qs_lib
