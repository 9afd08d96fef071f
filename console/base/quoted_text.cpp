#include "console/base/quoted_text.h"

#include <algorithm>
#include <cstddef>

#include "console/base/display_text.h"

namespace spx::console {
namespace {

constexpr std::size_t LONGEST_TEXT = 60;  // terminal columns
constexpr std::size_t NAMES_SHOWN = 10;

/// The part of a text that can be shown at most, since a cell may hold megabytes. UTF-8 characters are not split.
std::string_view beginning(std::string_view text) {
  std::size_t size = std::min(text.size(), 8 * LONGEST_TEXT);
  while (size > 0 && size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) {
    --size;
  }
  return text.substr(0, size);
}

}  // namespace

std::string shownText(std::string_view text) {
  const std::string visible = visibleText(beginning(text));
  const std::string_view shown = firstColumns(visible, LONGEST_TEXT);
  const bool is_cut = shown.size() < visible.size() || beginning(text).size() < text.size();
  return std::string(shown) + (is_cut ? "..." : "");
}

std::string quotedText(std::string_view text) {
  return "\"" + shownText(text) + "\"";
}

std::string nameList(const std::vector<std::string>& names) {
  const std::size_t shown = std::min(names.size(), NAMES_SHOWN);
  std::string list;
  for (std::size_t name = 0; name < shown; ++name) {
    list += (name == 0 ? "" : ", ") + shownText(names[name]);
  }
  return shown == names.size() ? list : list + " and " + std::to_string(names.size() - shown) + " more";
}

}  // namespace spx::console
