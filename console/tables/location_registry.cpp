#include "console/tables/location_registry.h"

#include <algorithm>

#include "console/base/quoted_text.h"
#include "console/tables/value_text.h"

namespace spx::console {
namespace {

constexpr std::uint32_t LAST_NUMBER = 255;
// Names met in the tables get the free top-level numbers below this one; when those are used up,
// they get numbers within this deme.
constexpr std::uint32_t OVERFLOW_DEME = 254;

DemeID topDeme(std::uint32_t number) {
  DemeID deme;
  deme.blocks[0] = static_cast<std::uint8_t>(number);
  return deme;
}

}  // namespace

void LocationRegistry::addLevel(const std::string& name) {
  MetaPop.addLevel(name);
}

bool LocationRegistry::add(const DemeID& deme, const std::string& name, gis_point point) {
  if (isKnown(deme)) {
    return false;
  }
  enter(deme, name, point);
  return true;
}

place LocationRegistry::enter(const DemeID& deme, const std::string& name, gis_point point) {
  const place added{MetaPop.addMember(deme.text(), name, point), numbers_.size() + 1};
  numbers_.emplace(added.deme, added.number);
  const auto [entry, first] = names_.try_emplace(name, named_place{added, false});
  if (!first) {
    entry->second.ambiguous = true;
  }
  found_.erase(name);
  return added;
}

place LocationRegistry::find(std::string_view text, std::string& reason) {
  if (const auto known = found_.find(text); known != found_.end()) {
    return known->second;
  }
  const place where = findAnew(text, reason);
  if (where.number != 0) {
    found_.insert_or_assign(std::string(text), where);
  }
  return where;
}

place LocationRegistry::findAnew(std::string_view text, std::string& reason) {
  if (const auto known = names_.find(text); known != names_.end()) {
    if (!known->second.ambiguous) {
      return known->second.where;
    }
    reason = quotedText(text) + " is the name of several locations: give the identifier";
    return {};
  }
  return isDemeText(text) ? findIdentifier(text, reason) : findName(text, reason);
}

place LocationRegistry::findIdentifier(std::string_view text, std::string& reason) {
  const auto deme = parseDeme(text);
  if (!deme) {
    reason = quotedText(text) + " is not a location identifier (numbers from 1 to 255, joined by dots)";
    return {};
  }
  if (!isKnown(*deme) && complete_) {
    reason = "the location " + quotedText(text) + " is not in the locations table";
    return {};
  }
  if (!complete_ && by_name_) {
    reason = quotedText(text) + " is an identifier, but other locations are given by name: give a locations table";
    return {};
  }
  if (!isKnown(*deme)) {
    by_identifier_ = true;
    addAbove(*deme);
    met_names_.push_back(shortDemeText(*deme));
    enter(*deme, met_names_.back(), {});
  }
  return {deme->binary(), numbers_.at(deme->binary())};
}

/// The demes that contain a new one, so that a view can take a region as a whole.
void LocationRegistry::addAbove(const DemeID& deme) {
  needLevels(deme.getLevel());
  DemeID above;
  for (std::size_t level = 0; static_cast<int>(level) < deme.getLevel(); ++level) {
    above.blocks[level] = deme.blocks[level];
    if (!isKnown(above)) {
      enter(above, shortDemeText(above), {});
    }
  }
}

void LocationRegistry::needLevels(int level) {
  while (static_cast<int>(MetaPop.levels().size()) <= level) {
    const std::string number = std::to_string(MetaPop.levels().size() + 1);
    MetaPop.addLevel(number == "1" ? "Location" : "Level " + number);
  }
}

place LocationRegistry::findName(std::string_view text, std::string& reason) {
  if (by_identifier_) {
    reason = quotedText(text) + " is a name, but other locations are given by identifier: give a locations table";
    return {};
  }
  const DemeID deme = freeDeme();
  if (deme.getLevel() < 0) {
    reason = "there are too many locations: give a locations table with identifiers";
    return {};
  }
  by_name_ = true;
  needLevels(deme.getLevel());
  met_names_.emplace_back(text);
  return enter(deme, met_names_.back(), {});
}

DemeID LocationRegistry::freeDeme() {
  constexpr std::uint32_t INNER = LAST_NUMBER * LAST_NUMBER;
  while (++next_free_ < OVERFLOW_DEME + INNER) {
    DemeID deme = topDeme(std::min(next_free_, OVERFLOW_DEME));
    if (next_free_ >= OVERFLOW_DEME) {
      const std::uint32_t inner = next_free_ - OVERFLOW_DEME;
      deme.blocks[1] = static_cast<std::uint8_t>(inner / LAST_NUMBER + 1);
      deme.blocks[2] = static_cast<std::uint8_t>(inner % LAST_NUMBER + 1);
    }
    if (!isKnown(deme)) {
      return deme;
    }
  }
  return {};
}

place LocationRegistry::unknown() {
  if (unknown_.number != 0) {
    return unknown_;
  }
  needLevels(0);
  // From the highest number down, since a keeper would give the lowest free numbers next.
  for (std::uint32_t number = LAST_NUMBER; number > 0; --number) {
    const DemeID deme = topDeme(number);
    if (isKnown(deme)) {
      continue;
    }
    unknown_ = enter(deme, "unknown", {});
    return unknown_;
  }
  const DemeID last = topDeme(LAST_NUMBER);
  return {last.binary(), numbers_.at(last.binary())};
}

}  // namespace spx::console
