#include "console/tables/faults.h"

#include <utility>

#include "console/base/quoted_text.h"

namespace spx::console {
namespace {

std::string faultText(const fault& found) {
  std::string text = found.file;
  if (found.line != 0) {
    text += ":" + std::to_string(found.line);
  }
  text += ": ";
  if (!found.title.empty()) {
    text += "column " + quotedText(found.title) + ", ";
  }
  if (!found.animal.empty()) {
    text += std::string(found.row_kind) + " " + quotedText(found.animal) + ", ";
  }
  if (text.compare(text.size() - 2, 2, ", ") == 0) {
    text.replace(text.size() - 2, 2, ": ");
  }
  return text + found.reason + "\n";
}

}  // namespace

void Faults::add(fault found) {
  if (++count_ <= SHOWN) {
    shown_.push_back(std::move(found));
  }
}

std::string Faults::text() const {
  std::string lines;
  for (const fault& found : shown_) {
    lines += faultText(found);
  }
  if (count_ > SHOWN) {
    lines += "... and " + std::to_string(count_ - SHOWN) + " more\n";
  }
  return lines;
}

}  // namespace spx::console
