#include "spx/core/deme_id.h"

#include <cmath>

#include "spx/support/tokenizer.h"

namespace spx {
namespace {

// From the deepest level upward: below the parent's own level nothing is compared.
bool isPrefix(const DemeID& parent, const DemeID& member) {
  bool inside_parent = false;
  for (int level = DemeID::LEVELS - 1; level >= 0; --level) {
    inside_parent = inside_parent || parent.blocks[level] != 0;
    if (inside_parent && parent.blocks[level] != member.blocks[level]) {
      return false;
    }
  }
  return true;
}

// Whether division in double precision unpacks the number without rounding.
bool isExactAsReal(packed_deme number) {
  constexpr packed_deme LARGE = packed_deme{1} << 62;
  return number > -LARGE && number < LARGE && static_cast<packed_deme>(static_cast<double>(number)) == number;
}

// Equal texts are not converted: they are the same deme even when they are malformed.
template <class Form>
bool isWithin(const Form& parent, const Form& member) {
  if (parent == member) {
    return true;
  }
  DemeID parent_id;
  DemeID member_id;
  parent_id.set(parent);
  member_id.set(member);
  return isPrefix(parent_id, member_id);
}

}  // namespace

DemeID::DemeID() {
  resetBlocks();
}

void DemeID::resetBlocks() {
  blocks.fill(0);
}

bool DemeID::set(const std::string& text) {
  textToBlocks(text);
  return true;
}

bool DemeID::set(packed_deme number) {
  binaryToBlocks(number);
  return true;
}

void DemeID::textToBlocks(const std::string& text) {
  const qs_lib::Tokenizer tokens(text, ".");
  resetBlocks();
  for (std::size_t i = 0; i < tokens.size() && i < blocks.size(); ++i) {
    blocks[i] = static_cast<std::uint8_t>(std::stoi(tokens.getToken(i)));
  }
}

void DemeID::binaryToBlocks(packed_deme number) {
  if (isExactAsReal(number)) {
    for (int level = LEVELS - 1; level >= 0; --level) {
      blocks[level] = static_cast<std::uint8_t>(number);
      number >>= 8;
    }
    return;
  }
  // Deeper levels are rounded. Kept on purpose.
  resetBlocks();
  for (int level = LEVELS - 1; level >= 0; --level) {
    const double shifted = static_cast<double>(number) * 0.00390625;
    const double whole = std::floor(shifted);
    blocks[level] = static_cast<std::uint8_t>((shifted - whole) * 256.0);
    number = static_cast<packed_deme>(whole);
  }
}

std::string DemeID::text() const {
  std::string text;
  for (const std::uint8_t block : blocks) {
    const std::string digits = std::to_string(block);
    text += (text.empty() ? "" : ".") + std::string(3 - digits.size(), '0') + digits;
  }
  return text;
}

packed_deme DemeID::binary() const {
  // Unsigned, since a top level of 128 or more does not fit a signed product.
  std::uint64_t number = 0;
  for (const std::uint8_t block : blocks) {
    number = number << 8 | block;
  }
  return static_cast<packed_deme>(number);
}

int DemeID::getLevel() const {
  int level = LEVELS - 1;
  while (level >= 0 && blocks[level] == 0) {
    --level;
  }
  return level;
}

bool isSubMember(packed_deme parent, packed_deme member) {
  return isWithin(parent, member);
}

bool isSubMember(const std::string& parent, const std::string& member) {
  return isWithin(parent, member);
}

}  // namespace spx
