#include "console/tables/other_words.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "console/tables/folded_text.h"

namespace spx::console {
namespace {

enum class WORDS_OF { PARENT, PLACE, ORIGIN, REARING, EVENT };

struct field_words {
  std::string_view field;
  WORDS_OF kind;
};

constexpr field_words FIELDS[] = {
    {"sire", WORDS_OF::PARENT},          {"dam", WORDS_OF::PARENT},        {"birth_location", WORDS_OF::PLACE},
    {"death_location", WORDS_OF::PLACE}, {"location", WORDS_OF::PLACE},    {"origin", WORDS_OF::ORIGIN},
    {"rearing", WORDS_OF::REARING},      {"death_event", WORDS_OF::EVENT}, {"event", WORDS_OF::EVENT},
};

struct other_word {
  WORDS_OF kind;
  std::string_view word;
  const char* meaning;
};

constexpr other_word WORDS[] = {
    {WORDS_OF::PARENT, "wildfang", "WILD"},
    {WORDS_OF::PARENT, "wild caught", "WILD"},
    {WORDS_OF::PARENT, "wild-caught", "WILD"},
    {WORDS_OF::PARENT, "sauvage", "WILD"},
    {WORDS_OF::PARENT, "salvaje", "WILD"},
    {WORDS_OF::ORIGIN, "wildfang", "wild-born"},
    {WORDS_OF::ORIGIN, "wild caught", "wild-born"},
    {WORDS_OF::ORIGIN, "wild-caught", "wild-born"},
    {WORDS_OF::ORIGIN, "sauvage", "wild-born"},
    {WORDS_OF::ORIGIN, "salvaje", "wild-born"},
    {WORDS_OF::ORIGIN, "captive-bred", "captive-born"},
    {WORDS_OF::ORIGIN, "captive bred", "captive-born"},
    {WORDS_OF::ORIGIN, "nachzucht", "captive-born"},
    {WORDS_OF::ORIGIN, "zoogeburt", "captive-born"},
    {WORDS_OF::ORIGIN, "captivite", "captive-born"},
    {WORDS_OF::ORIGIN, "cautividad", "captive-born"},
    {WORDS_OF::REARING, "handaufzucht", "hand"},
    {WORDS_OF::REARING, "naturaufzucht", "parent"},
    {WORDS_OF::REARING, "elternaufzucht", "parent"},
    {WORDS_OF::REARING, "a la main", "hand"},
    {WORDS_OF::REARING, "a mano", "hand"},
    {WORDS_OF::EVENT, "transfer", "arrival"},
    {WORDS_OF::EVENT, "ankunft", "arrival"},
    {WORDS_OF::EVENT, "zugang", "arrival"},
    {WORDS_OF::EVENT, "arrivee", "arrival"},
    {WORDS_OF::EVENT, "llegada", "arrival"},
    {WORDS_OF::EVENT, "freilassung", "released"},
    {WORDS_OF::EVENT, "verschollen", "lost-to-follow-up"},
    {WORDS_OF::EVENT, "tod", "death"},
    {WORDS_OF::EVENT, "gestorben", "death"},
    {WORDS_OF::EVENT, "died", "death"},
    {WORDS_OF::EVENT, "mort", "death"},
    {WORDS_OF::EVENT, "muerte", "death"},
};

constexpr std::string_view UNKNOWN_WORDS[] = {"unbekannt", "inconnu", "inconnue", "desconocido", "desconocida"};

const field_words* wordsOf(std::string_view field) {
  const auto found =
      std::find_if(std::begin(FIELDS), std::end(FIELDS), [&](const field_words& each) { return each.field == field; });
  return found == std::end(FIELDS) ? nullptr : found;
}

}  // namespace

bool hasOtherWords(std::string_view field) {
  return wordsOf(field) != nullptr;
}

const char* otherWord(std::string_view field, std::string_view text) {
  constexpr std::size_t LONGEST = 16;
  const field_words* words = wordsOf(field);
  // Nearly all IDs and many places have digits.
  if (words == nullptr || text.empty() || text.size() > LONGEST ||
      text.find_first_of("0123456789") != std::string_view::npos) {
    return nullptr;
  }
  const std::string folded = foldedText(text);
  if (std::find(std::begin(UNKNOWN_WORDS), std::end(UNKNOWN_WORDS), folded) != std::end(UNKNOWN_WORDS)) {
    return "";
  }
  const auto found = std::find_if(std::begin(WORDS), std::end(WORDS), [&](const other_word& each) {
    return each.kind == words->kind && each.word == folded;
  });
  return found == std::end(WORDS) ? nullptr : found->meaning;
}

}  // namespace spx::console
