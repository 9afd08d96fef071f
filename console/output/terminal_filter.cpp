#include "console/output/terminal_filter.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>

#include "console/base/display_text.h"

namespace spx::console {

TerminalFilter::TerminalFilter(std::ostream& stream, int descriptor) : stream_(stream) {
  if (::isatty(descriptor) == 1) {
    buffer_.target = stream.rdbuf(&buffer_);
  }
}

TerminalFilter::~TerminalFilter() {
  if (buffer_.target != nullptr) {
    stream_.flush();
    stream_.rdbuf(buffer_.target);
  }
}

TerminalFilter::Buffer::int_type TerminalFilter::Buffer::overflow(int_type letter) {
  if (traits_type::eq_int_type(letter, traits_type::eof())) {
    return traits_type::not_eof(letter);
  }
  const char text = traits_type::to_char_type(letter);
  return xsputn(&text, 1) == 1 ? letter : traits_type::eof();
}

std::streamsize TerminalFilter::Buffer::xsputn(const char* text, std::streamsize size) {
  constexpr std::size_t MUCH = 65536;
  held_.append(text, static_cast<std::size_t>(size));
  const bool ends_line = size > 0 && text[size - 1] == '\n';
  return held_.size() < MUCH || !ends_line || pass() ? size : 0;
}

int TerminalFilter::Buffer::sync() {
  return pass() && target->pubsync() == 0 ? 0 : -1;
}

bool TerminalFilter::Buffer::pass() {
  std::string visible;
  for (std::string_view rest = held_; !rest.empty();) {
    const std::size_t end = std::min(rest.find_first_of("\n\t"), rest.size());
    visible += visibleText(rest.substr(0, end));
    visible += rest.substr(end, 1);
    rest.remove_prefix(std::min(rest.size(), end + 1));
  }
  held_.clear();
  const auto size = static_cast<std::streamsize>(visible.size());
  return target->sputn(visible.data(), size) == size;
}

}  // namespace spx::console
