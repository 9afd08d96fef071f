#include "spx/core/identifiers.h"

#include <locale>
#include <regex>
#include <string_view>

#include "spx/core/identifier_matcher.h"
#include "spx/core/pseudo_ids.h"

namespace spx {
namespace {

constexpr char pseudo_animal[] = R"(^(COLONY|GROUP|HERD|MULT(I)?|UNK(N|M|F)?|WILD|P)(.+)?)";
constexpr char multi_parent_id[] = R"(^(COLONY|GROUP|HERD|MULT(I)?)(.+?))";
constexpr char same_litter[] = R"(^(COLONY|GROUP|HERD|MULT(I)?|UNK(N|M|F)?|WILD|P)(\s+)?(\d+))";
constexpr char pseudo_founder[] = R"(^(P|WILD)(\s+)?(\d+))";

std::regex compiled(const char* pattern) {
  std::regex expression;
  expression.imbue(std::locale::classic());
  expression.assign(pattern, std::regex::ECMAScript | std::regex::icase);
  return expression;
}

const std::regex pseudoAnimal = compiled(pseudo_animal);
const std::regex multiParent = compiled(multi_parent_id);
const std::regex sameLitter = compiled(same_litter);
const std::regex pseudoFounder = compiled(pseudo_founder);

// The standard library's expressions recurse once per character.
constexpr std::size_t LONGEST_FOR_EXPRESSION = 256;

// The usual pseudo individuals: a shared parent, or "P" and a number. They need no expression.
bool isUsualPseudo(std::string_view id) {
  return id == UNKNOWN_SIRE || id == UNKNOWN_DAM || id == WILD_PARENT || id == UNKNOWN_PARENT || id == GROUP_PARENT ||
         (id.starts_with(PSEUDO_FOUNDER_PREFIX) && id.find_first_not_of("0123456789", 1) == std::string_view::npos);
}

bool matches(const std::string& id, const std::regex& expression, IDENTIFIER_KIND kind) {
  // Most studbooks number their animals: the first letter decides nearly always.
  if (!canBeginIdentifier(id, kind)) {
    return false;
  }
  if (kind == IDENTIFIER_KIND::PSEUDO_ANIMAL && isUsualPseudo(id)) {
    return true;
  }
  return id.size() <= LONGEST_FOR_EXPRESSION ? std::regex_match(id, expression) : matchesIdentifier(id, kind);
}

}  // namespace

bool isPseudoIndividual(const std::string& id) {
  return matches(id, pseudoAnimal, IDENTIFIER_KIND::PSEUDO_ANIMAL);
}

bool isMultiParent(const std::string& id) {
  return matches(id, multiParent, IDENTIFIER_KIND::MULTI_PARENT);
}

bool isSameLitterParent(const std::string& id) {
  return matches(id, sameLitter, IDENTIFIER_KIND::SAME_LITTER);
}

bool isPseudoFounder(const std::string& id) {
  return matches(id, pseudoFounder, IDENTIFIER_KIND::PSEUDO_FOUNDER);
}

}  // namespace spx
