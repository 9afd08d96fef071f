#pragma once

#include <ostream>
#include <streambuf>
#include <string>

namespace spx::console {

/// While it lives, a stream that leads to a terminal writes control characters out (visibleText), so that no text of a
/// table can move the cursor or change the terminal's state. Line ends and TABs pass. Streams that lead elsewhere keep
/// their bytes.
class TerminalFilter {
 public:
  /// @param descriptor  where the stream leads
  TerminalFilter(std::ostream& stream, int descriptor);
  ~TerminalFilter();
  TerminalFilter(const TerminalFilter&) = delete;
  TerminalFilter& operator=(const TerminalFilter&) = delete;

 private:
  /// Holds what has been written since the last flush or line end.
  class Buffer : public std::streambuf {
   public:
    std::streambuf* target = nullptr;

   protected:
    int_type overflow(int_type letter) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

   private:
    bool pass();
    std::string held_;
  };

  std::ostream& stream_;
  Buffer buffer_;
};

}  // namespace spx::console
