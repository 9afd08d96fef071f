#include "console/tables/faults.h"

#include <utility>

namespace spx::console {
namespace {

constexpr std::size_t LONGEST_TEXT = 60;

/// The text cut where no UTF-8 character is torn apart.
std::string_view shortened(std::string_view text) {
  std::size_t size = LONGEST_TEXT;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
  return text.substr(0, size);
}

std::string faultText(const fault& found) {
  std::string text = found.file;
  if (found.line != 0) text += ":" + std::to_string(found.line);
  text += ": ";
  if (!found.title.empty()) text += "column " + quotedText(found.title) + ", ";
  if (!found.animal.empty())
    text += std::string(found.row_kind) + " " + quotedText(found.animal) + ", ";
  if (text.compare(text.size() - 2, 2, ", ") == 0) text.replace(text.size() - 2, 2, ": ");
  return text + found.reason + "\n";
}

}  // namespace

void Faults::add(fault found) {
  if (++count_ <= SHOWN) shown_.push_back(std::move(found));
}

std::string Faults::text() const {
  std::string lines;
  for (const fault& found : shown_) lines += faultText(found);
  if (count_ > SHOWN) lines += "... and " + std::to_string(count_ - SHOWN) + " more\n";
  return lines;
}

std::string quotedText(std::string_view text) {
  const bool cut = text.size() > LONGEST_TEXT;
  std::string shown(cut ? shortened(text) : text);
  for (char& letter : shown) {
    if (static_cast<unsigned char>(letter) < ' ' || letter == '\x7F') letter = '?';
  }
  return "\"" + shown + (cut ? "...\"" : "\"");
}

}  // namespace spx::console
