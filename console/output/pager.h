#pragma once

#include <array>
#include <iosfwd>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include <sys/types.h>

namespace spx::console {

/// The pager to use: $PAGER, or "less -FRX" where it is not set. Empty when there is none: $PAGER is empty or "cat",
/// the program is not installed, or the terminal is dumb.
std::string pagerCommand();

/// A pager that shows what is written to its stream at the terminal. When the reader leaves it early, the stream fails
/// and the rest of the output is dropped; that is not an error. The interrupt key belongs to the pager while it runs.
class Pager {
 public:
  /// Starts the command in a shell. isOpen() is false when that fails.
  explicit Pager(const std::string& command);
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;
  ~Pager() { finish(); }

  bool isOpen() const { return process_ > 0; }
  std::ostream& stream() { return stream_; }

  /// Ends the output and waits until the reader has left the pager. SIGTERM ends both meanwhile.
  void finish();

 private:
  /// Writes to a pipe.
  class PipeBuffer : public std::streambuf {
   public:
    PipeBuffer() { setp(room_.data(), room_.data() + room_.size()); }
    int pipe = -1;

   protected:
    int_type overflow(int_type letter) override;
    int sync() override;

   private:
    std::array<char, 65536> room_;
  };

  pid_t process_ = -1;
  PipeBuffer buffer_;
  std::ostream stream_;
  void (*former_interrupt_)(int) = nullptr;
  void (*former_pipe_)(int) = nullptr;
  void (*former_end_)(int) = nullptr;
};

}  // namespace spx::console
