#pragma once

#include <ostream>
#include <streambuf>
#include <string>

namespace spx::console {

/// While it lives, a stream to a terminal shows control characters as visible text (visibleText), so that no text of a
/// table can move the cursor or change the terminal's state. Line ends and TABs are passed on. Other streams are
/// unchanged.
class TerminalFilter {
 public:
  /// @param descriptor  the file descriptor behind the stream
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
