#include "spx/core/meta_population.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "spx/core/error_texts.h"
#include "spx/core/errors.h"
#include "spx/support/number_text.h"
#include "spx/support/text.h"

namespace spx {
namespace {

constexpr std::uint32_t NO_LEVEL = 0xFFFFFFFF;

/// Orders members by their packed identifier.
struct compare_id {
  bool operator()(const deme_member& a, const deme_member& b) const { return a.id < b.id; }
};

/// Finds an element by its name.
struct find_name {
  const std::string& name;
  bool operator()(const deme_level& level) const { return level.name == name; }
};

DemeID unpacked(packed_deme id) {
  DemeID deme;
  deme.set(id);
  return deme;
}

DemeID parsed(const std::string& id) {
  DemeID deme;
  deme.set(id);
  return deme;
}

}  // namespace

void MetaPopulation::level_index::add(const deme_member& member, std::size_t place) {
  by_id.emplace(member.id, place);
  by_name.emplace(member.name, place);
}

void MetaPopulation::addLevel(const std::string& name) {
  levels_.push_back({name, {}});
  indexes_.emplace_back();
}

packed_deme MetaPopulation::addMember(const std::string& id, const std::string& name) {
  return addMember(id, name, gis_point{});
}

packed_deme MetaPopulation::addMember(const std::string& id, const std::string& name, gis_point point) {
  const DemeID deme = parsed(id);
  if (deme.getLevel() < 0 || levels_.empty()) {
    return -1;
  }
  if (find(deme.getLevel(), deme.binary()) == nullptr) {
    const std::size_t slot = slotOf(deme.getLevel());
    std::vector<deme_member>& members = levels_[slot].members;
    members.push_back({deme.binary(), name, point, true});
    indexes_[slot].add(members.back(), members.size() - 1);
  }
  return deme.binary();
}

bool MetaPopulation::memberExists(const std::string& id) const {
  const DemeID deme = parsed(id);
  return find(deme.getLevel(), deme.binary()) != nullptr;
}

bool MetaPopulation::memberExists(packed_deme id) const {
  return find(id) != nullptr;
}

int MetaPopulation::getDemeLevel(const std::string& id) const {
  return parsed(id).getLevel();
}

int MetaPopulation::getDemeLevel(packed_deme id) const {
  return unpacked(id).getLevel();
}

std::uint32_t MetaPopulation::getLevel(const std::string& name) const {
  const auto found = std::find_if(levels_.begin(), levels_.end(), find_name{name});
  return found == levels_.end() ? NO_LEVEL : static_cast<std::uint32_t>(found - levels_.begin());
}

bool MetaPopulation::isMemberSelected(packed_deme id) const {
  const deme_member* member = find(id);
  return member != nullptr && member->selected;
}

packed_deme MetaPopulation::getMemberID(unsigned long level, const std::string& name) const {
  if (level >= levels_.size()) {
    return -1;
  }
  const auto found = indexes_[level].by_name.find(name);
  return found == indexes_[level].by_name.end() ? -1 : levels_[level].members[found->second].id;
}

packed_deme MetaPopulation::getMemberID(const std::string& level, const std::string& name) const {
  return getMemberID(getLevel(level), name);
}

const std::string& MetaPopulation::getMemberName(packed_deme id) const {
  const deme_member* member = find(id);
  static const std::string NO_NAME;
  return member == nullptr ? NO_NAME : member->name;
}

gis_point MetaPopulation::getMemberGIS(packed_deme id) const {
  const deme_member* member = find(id);
  return member == nullptr ? gis_point{} : member->point;
}

std::size_t MetaPopulation::getNumberOfMembers(unsigned long level) const {
  if (level >= levels_.size()) {
    spxError(error_text::UNKNOWN_LEVEL);
    return 0;
  }
  return levels_[level].members.size();
}

std::size_t MetaPopulation::getNumberOfMembers(const std::string& level) const {
  return getNumberOfMembers(getLevel(level));
}

void MetaPopulation::sortMembers(unsigned long level) {
  if (level >= levels_.size()) {
    return;
  }
  std::vector<deme_member>& members = levels_[level].members;
  std::stable_sort(members.begin(), members.end(), compare_id());
  indexes_[level] = level_index();
  for (std::size_t i = 0; i < members.size(); ++i) {
    indexes_[level].add(members[i], i);
  }
}

void MetaPopulation::selectMember(packed_deme id, bool selected) {
  if (levels_.empty()) {
    return;
  }
  const int level = getDemeLevel(id);
  for (std::size_t i = level < 0 ? levels_.size() - 1 : slotOf(level); i < levels_.size(); ++i) {
    for (deme_member& member : levels_[i].members) {
      if (isSubMember(id, member.id)) {
        member.selected = selected;
      }
    }
  }
}

void MetaPopulation::selectMember(const std::string& id, bool selected) {
  selectMember(parsed(id).binary(), selected);
}

void MetaPopulation::selectMembers(bool selected) {
  for (deme_level& level : levels_) {
    for (deme_member& member : level.members) {
      member.selected = selected;
    }
  }
}

void MetaPopulation::listMembers(unsigned long level) const {
  if (level >= levels_.size()) {
    return;
  }
  std::cout << std::left << "Level #" << std::to_string(level) << " " << levels_[level].name << "\n"
            << qs_lib::replicateChar('-', 80) << "\n";
  for (const deme_member& member : levels_[level].members) {
    std::cout << std::setw(20) << member.name << std::setw(35) << unpacked(member.id).text() << std::setw(11)
              << qs_lib::realToString(member.point.longitude, 5) << std::setw(11)
              << qs_lib::realToString(member.point.latitude, 5) << "[" << (member.selected ? "+" : "-") << "]\n";
  }
}

void MetaPopulation::listMetapopulation() {
  const std::string rule = qs_lib::replicateChar('=', 80);
  std::cout << std::left << "Metapopulation structure\n"
            << rule << "\n"
            << std::setw(20) << "Name" << std::setw(35) << "Site IP" << std::setw(11) << "longitude" << std::setw(11)
            << "latitude"
            << "\n"
            << rule << "\n\n";
  for (std::size_t level = 0; level < levels_.size(); ++level) {
    sortMembers(level);
    listMembers(level);
    std::cout << "\n";
  }
  std::cout << qs_lib::replicateChar('-', 80) << "\n[+] Means that deme is selected in view." << std::endl;
}

// The level where a deme of this depth is kept. Requires at least one level.
std::size_t MetaPopulation::slotOf(int level) const {
  return std::min(static_cast<std::size_t>(level), levels_.size() - 1);
}

const deme_member* MetaPopulation::find(int level, packed_deme id) const {
  if (level < 0 || levels_.empty()) {
    return nullptr;
  }
  const std::size_t slot = slotOf(level);
  const auto found = indexes_[slot].by_id.find(id);
  return found == indexes_[slot].by_id.end() ? nullptr : &levels_[slot].members[found->second];
}

const deme_member* MetaPopulation::find(packed_deme id) const {
  return find(getDemeLevel(id), id);
}

}  // namespace spx
