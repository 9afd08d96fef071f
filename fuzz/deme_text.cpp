// Deme identifiers as text and as numbers, and the registry that they are entered in.
#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "spx/core/deme_id.h"
#include "spx/core/meta_population.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

constexpr int EXACT_LEVELS = 5;  ///< levels that a double holds exactly, whatever their values

/// @return false for a text that raises one of the two conversion errors
bool isRead(DemeID& deme, const std::string& text) {
  try {
    return deme.set(text);
  } catch (const std::invalid_argument&) {
    return false;
  } catch (const std::out_of_range&) {
    return false;
  }
}

void tryText(const std::string& text) {
  DemeID deme;
  if (!isRead(deme, text)) {
    return;
  }
  DemeID again;
  require(again.set(deme.text()) && again.blocks == deme.blocks, "a deme changes by its text");
  require(deme.getLevel() < DemeID::LEVELS, "a level beyond the last");
  require((deme.binary() == 0) == (deme.getLevel() == -1), "a root with a level");
  require(isSubMember(deme.text(), text), "a deme outside itself");
  again.set(deme.binary());
  require(again.blocks == deme.blocks || deme.getLevel() >= EXACT_LEVELS, "a deme changes packed");
}

/// Eight bytes are a packed identifier: those of up to five levels come back exactly.
void tryNumber(packed_deme number) {
  DemeID deme;
  deme.set(number);
  const packed_deme again = deme.binary();
  require(deme.getLevel() >= EXACT_LEVELS || again == number || (number & 0xFFFFFF) != 0, "a packed deme changes");
  DemeID parent = deme;
  if (deme.getLevel() >= 0 && deme.getLevel() < EXACT_LEVELS) {
    parent.blocks[static_cast<std::size_t>(deme.getLevel())] = 0;
  }
  require(isSubMember(0, number) && isSubMember(number, number), "a deme outside the root or itself");
  require(deme.getLevel() >= EXACT_LEVELS || isSubMember(parent.binary(), again), "a deme outside its parent");
}

/// Checks that isSubMember() of the text forms agrees with a separately written comparison of blocks.
void tryWithin(const std::string& parent_text, const std::string& member_text) {
  DemeID parent;
  DemeID member;
  if (!isRead(parent, parent_text) || !isRead(member, member_text)) {
    return;
  }
  const auto depth = static_cast<std::size_t>(parent.getLevel() + 1);
  const bool is_prefix = std::equal(parent.blocks.begin(), parent.blocks.begin() + depth, member.blocks.begin());
  require(isSubMember(parent_text, member_text) == is_prefix, "not a prefix");
}

void enter(MetaPopulation& demes, const std::string& text) {
  DemeID deme;
  if (!isRead(deme, text)) {
    return;
  }
  const packed_deme id = demes.addMember(text, "Deme " + text);
  if (deme.getLevel() == -1) {
    require(id == -1, "the root is a member");
    return;
  }
  require(id == deme.binary() && demes.memberExists(text), "an entered deme is not found");
  if (deme.getLevel() < EXACT_LEVELS) {
    require(demes.isMemberSelected(id) && !demes.getMemberName(id).empty(), "a deme without a name");
  }
}

void tryRegistry(const std::vector<std::string>& lines) {
  MetaPopulation demes;
  demes.addLevel("Region");
  demes.addLevel("Institution");
  demes.addLevel("Region");
  for (const std::string& line : lines) {
    enter(demes, line);
  }
  for (const deme_level& level : demes.levels()) {
    for (const deme_member& member : level.members) {
      demes.selectMember(member.id, false);
      demes.getMemberGIS(member.id);
    }
  }
  demes.listMetapopulation();
  demes.selectMembers(true);
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  ramDirectory();
  const std::vector<std::string> lines = linesOf(asText(data, size));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    tryText(lines[i]);
    tryWithin(lines[0], lines[i]);
  }
  for (std::size_t at = 0; at + sizeof(spx::packed_deme) <= size; at += sizeof(spx::packed_deme)) {
    spx::packed_deme number = 0;
    std::memcpy(&number, data + at, sizeof number);
    tryNumber(number);
  }
  tryRegistry(lines);
  return 0;
}
