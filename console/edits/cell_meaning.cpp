#include "console/edits/cell_meaning.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "console/tables/value_text.h"

namespace spx::console {
namespace {

template <typename Parser>
bool sameValue(Parser parse, std::string_view a, std::string_view b) {
  const auto first = parse(a);
  const auto second = parse(b);
  return first && second && *first == *second;
}

bool sameDate(std::string_view a, std::string_view b) {
  const auto first = parseDate(a);
  const auto second = parseDate(b);
  return first && second && first->day == second->day && first->accuracy == second->accuracy;
}

bool sameNumber(std::string_view a, std::string_view b) {
  const auto first = parseReal<double>(a);
  const auto second = parseReal<double>(b);
  return first && second && (*first == *second || (std::isnan(*first) && std::isnan(*second)));
}

bool sameAccuracy(std::string_view a, std::string_view b) {
  return sameValue(parseAccuracy, a, b) || (isMissing(a) && isMissing(b));
}

bool sameEvent(std::string_view a, std::string_view b) {
  return sameValue(parseMoveType, a, b) || (isMissing(a) && isMissing(b));
}

bool sameId(std::string_view a, std::string_view b) {
  return isUnknownId(a) && isUnknownId(b);
}

struct field_meaning {
  std::string_view field;
  bool (*same)(std::string_view, std::string_view);
};

constexpr field_meaning MEANINGS[] = {
    {"sire", sameId},
    {"dam", sameId},
    {"birth_location", sameId},
    {"death_location", sameId},
    {"location", sameId},
    {"birth_date", sameDate},
    {"death_date", sameDate},
    {"date", sameDate},
    {"sex", [](auto a, auto b) { return sameValue(parseSex, a, b); }},
    {"origin", [](auto a, auto b) { return sameValue(parseOrigin, a, b); }},
    {"rearing", [](auto a, auto b) { return sameValue(parseRearing, a, b); }},
    {"taxon", [](auto a, auto b) { return isUnknown(a) && isUnknown(b); }},
    {"birth_accuracy", sameAccuracy},
    {"death_accuracy", sameAccuracy},
    {"accuracy", sameAccuracy},
    {"death_event", sameEvent},
    {"event", sameEvent},
    {"birth_range", [](auto a, auto b) { return sameValue(parseDays, a, b); }},
    {"death_range", [](auto a, auto b) { return sameValue(parseDays, a, b); }},
    {"range", [](auto a, auto b) { return sameValue(parseDays, a, b); }},
    {"fcoef", sameNumber},
    {"g_cites", sameNumber},
    {"g_genetic", sameNumber},
    {"g_maternal", sameNumber},
    {"g_average", sameNumber},
    {"latitude", sameNumber},
    {"longitude", sameNumber},
};

}  // namespace

bool sameMeaning(std::string_view field, std::string_view a, std::string_view b) {
  if (a == b) {
    return true;
  }
  for (const field_meaning& meaning : MEANINGS) {
    if (meaning.field == field) {
      return meaning.same(a, b);
    }
  }
  return isMissing(a) && isMissing(b);
}

bool isParentField(std::string_view field) {
  return field == "sire" || field == "dam";
}

bool isPlaceField(std::string_view field) {
  return field == "birth_location" || field == "death_location" || field == "location";
}

}  // namespace spx::console
