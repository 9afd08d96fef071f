#include "spx/core/identifier_matcher.h"

#include <algorithm>

namespace spx {
namespace {

// In upper case. Several may begin an identifier, so each is tried.
constexpr std::string_view GROUPS[] = {"COLONY", "GROUP", "HERD", "MULT", "MULTI"};
constexpr std::string_view UNKNOWNS[] = {"UNK", "UNKN", "UNKM", "UNKF"};
constexpr std::string_view FOUNDERS[] = {"P", "WILD"};

char upper(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool beginsWith(std::string_view id, std::string_view beginning) {
  return id.size() >= beginning.size() &&
         std::equal(beginning.begin(), beginning.end(), id.begin(),
                    [](char expected, char found) { return expected == upper(found); });
}

bool isLineBreak(char character) {
  return character == '\n' || character == '\r';
}

bool isWhite(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isAnything(std::string_view rest) {
  return std::none_of(rest.begin(), rest.end(), isLineBreak);
}

bool isNumber(std::string_view rest) {
  const auto digits = std::find_if_not(rest.begin(), rest.end(), isWhite);
  return digits != rest.end() && std::all_of(digits, rest.end(), isDigit);
}

bool isRest(std::string_view rest, IDENTIFIER_KIND kind) {
  switch (kind) {
    case IDENTIFIER_KIND::PSEUDO_ANIMAL:
      return isAnything(rest);
    case IDENTIFIER_KIND::MULTI_PARENT:
      return !rest.empty() && isAnything(rest);
    default:
      return isNumber(rest);
  }
}

template <std::size_t COUNT>
bool matchesAny(std::string_view id, const std::string_view (&beginnings)[COUNT], IDENTIFIER_KIND kind) {
  return std::any_of(std::begin(beginnings), std::end(beginnings), [&](std::string_view beginning) {
    return beginsWith(id, beginning) && isRest(id.substr(beginning.size()), kind);
  });
}

}  // namespace

bool canBeginIdentifier(std::string_view id, IDENTIFIER_KIND kind) {
  if (id.empty()) {
    return false;
  }
  std::string_view letters = "CGHMUWP";
  if (kind == IDENTIFIER_KIND::MULTI_PARENT) {
    letters = "CGHM";
  } else if (kind == IDENTIFIER_KIND::PSEUDO_FOUNDER) {
    letters = "PW";
  }
  return letters.find(upper(id.front())) != std::string_view::npos;
}

bool matchesIdentifier(std::string_view id, IDENTIFIER_KIND kind) {
  switch (kind) {
    case IDENTIFIER_KIND::MULTI_PARENT:
      return matchesAny(id, GROUPS, kind);
    case IDENTIFIER_KIND::PSEUDO_FOUNDER:
      return matchesAny(id, FOUNDERS, kind);
    default:
      return matchesAny(id, GROUPS, kind) || matchesAny(id, UNKNOWNS, kind) || matchesAny(id, FOUNDERS, kind);
  }
}

}  // namespace spx
