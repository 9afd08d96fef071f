#include "console/check/check_codes.h"

#include <algorithm>
#include <iterator>

namespace spx::console {
namespace {

constexpr check_code CODES[] = {
    {CHECK::DUPLICATE_ID, "duplicate-id", SEVERITY::ERROR, "Duplicate IDs", "Several rows have the same ID.",
     "2 rows have the ID 3: lines 4 and 5"},
    {CHECK::PADDED_ID, "padded-id", SEVERITY::ERROR, "IDs that differ only in blanks",
     "Two IDs differ only in leading or trailing blanks: the same animal twice.",
     "\"3 \" and 3 differ only in blanks: lines 5 and 4"},
    {CHECK::LITTER_TWICE, "litter-twice", SEVERITY::ERROR, "Animals listed twice in a litter",
     "Rows with the same ID also have the same dam and the same birth date.",
     "3 is listed twice in the litter of 2, born 2000-05-01: lines 4 and 5"},
    {CHECK::PARENT_SEX, "parent-sex", SEVERITY::ERROR, "Parents of the wrong sex",
     "A sire is not male or a dam is not female. Hermaphrodites may be both.", "2 is female but is the sire of 3"},
    {CHECK::PARENT_BOTH_SEXES, "parent-both-sexes", SEVERITY::ERROR, "Parents used as sire and as dam",
     "An animal whose sex is not known is the sire of some animals and the dam of others.",
     "1 is the sire of 3 and the dam of 4"},
    {CHECK::OWN_PARENT, "own-parent", SEVERITY::ERROR, "Animals that are their own parent",
     "The sire or the dam of an animal is the animal itself.", "3 is its own sire"},
    {CHECK::PARENT_CYCLE, "parent-cycle", SEVERITY::ERROR, "Animals that are their own ancestor",
     "An animal is its own ancestor. Where several cycles share animals, one of them is named.",
     "1 is its own ancestor: 1, its parent 3, its parent 4, its parent 1"},
    {CHECK::FUTURE_DATE, "future-date", SEVERITY::ERROR, "Dates in the future",
     "A birth, an end or an event is dated after today.", "3 was born 2090-01-01, which is in the future"},
    {CHECK::DEATH_BEFORE_BIRTH, "death-before-birth", SEVERITY::ERROR, "Deaths before the birth",
     "The death or loss of an animal is before its birth.", "3 was born 1991 and died 1980"},
    {CHECK::BORN_BEFORE_PARENT, "born-before-parent", SEVERITY::ERROR, "Animals born before a parent",
     "An animal was certainly born before its parent, or on the same day.",
     "3 was born 1990-05-01, its sire 1 was born 1995-01-01"},
    {CHECK::BORN_AFTER_DAM_DIED, "born-after-dam-died", SEVERITY::ERROR, "Births after the dam's death",
     "An animal was certainly born after its dam had died; in species that lay eggs, more than one incubation period "
     "after.",
     "3 was born 2000-05-01, its dam 2 died 1999"},
    {CHECK::CONCEIVED_AFTER_SIRE_DIED, "conceived-after-sire-died", SEVERITY::ERROR,
     "Births too long after the sire's death",
     "An animal was certainly born more than one gestation period after its sire had died: that of the life history, "
     "or two years where it is not set.",
     "3 was born 2000-05-01, its sire 1 died 1990, more than a gestation period earlier"},
    {CHECK::EVENT_BEFORE_BIRTH, "event-before-birth", SEVERITY::ERROR, "Events before the birth",
     "An event of an animal is before its birth.", "3 was born 2000-05-01, but has the event arrival on 1999-02-03"},
    {CHECK::EVENT_AFTER_DEATH, "event-after-death", SEVERITY::ERROR, "Events after the death",
     "An event of an animal is after its death.", "3 died 2005, but has the event arrival on 2006-02-03"},
    {CHECK::DAM_IN_TWO_PLACES, "dam-in-two-places", SEVERITY::ERROR, "Dams in two places",
     "Two animals of one dam were born on the same day at different institutions, or an animal was born where its dam "
     "cannot have been. Not for species that lay eggs.",
     "2 gave birth to 3 and 4 on 2000-05-01 at two places, North and South"},
    {CHECK::PLACEHOLDER_ID, "placeholder-id", SEVERITY::WARNING, "IDs that are treated as placeholders",
     "An ID that begins with P, WILD, UNK, MULT, GROUP, HERD or COLONY stands for an unknown animal. No listing shows "
     "it, and no other rule checks it.",
     "Pablo is treated as a placeholder because of its ID"},
    {CHECK::MISSING_PARENT, "missing-parent", SEVERITY::WARNING, "Parents without a record",
     "No row has the ID of the sire or dam.", "1l has no record, but is the sire of 3"},
    {CHECK::PARENT_TOO_YOUNG, "parent-too-young", SEVERITY::WARNING, "Parents that were too young",
     "A parent was younger at the birth than the life history allows. Needs its reproductive ages.",
     "1 was at most 0.5 years old at the birth of its offspring 3"},
    {CHECK::PARENT_TOO_OLD, "parent-too-old", SEVERITY::WARNING, "Parents that were too old",
     "A parent was older at the birth than the life history allows. Needs its reproductive ages.",
     "1 was at least 20.3 years old at the birth of its offspring 3"},
    {CHECK::PARENTS_APART, "parents-apart", SEVERITY::WARNING, "Parents at different places at conception",
     "The events place the parents at different institutions at every time when the animal can have been conceived: "
     "around one gestation period before the birth, or in the two years before it where the life history has none.",
     "3 was born 2000-05-01, but its parents were apart: 1 at South, 2 at North"},
    {CHECK::LITTER_INTERVAL, "litter-interval", SEVERITY::WARNING, "Impossible intervals between litters",
     "Two births of a dam are too far apart for one litter and too close for two. Needs the birth interval or the "
     "gestation of the life history.",
     "2 gave birth to 3 on 2000-05-01 and to 4 on 2000-06-20, 50 days later"},
    {CHECK::NEAR_DUPLICATE, "near-duplicate", SEVERITY::WARNING, "Animals that may be the same",
     "Two animals have the same parents, birth date and sex, in a species that rarely has litters (the life history's "
     "litter size, or at most one birth in twenty).",
     "3 and 4 have the same parents, sex and birth date 2000-05-01"},
    {CHECK::EVENT_AFTER_LOSS, "event-after-loss", SEVERITY::WARNING, "Events after the loss to follow-up",
     "An event of an animal is after its loss to follow-up.",
     "3 was lost to follow-up 2005, but has the event arrival on 2006-02-03"},
    {CHECK::OVERLAPPING_STAYS, "overlapping-stays", SEVERITY::WARNING, "Overlapping stays",
     "An animal arrived at two institutions on one day, or enters the population again without having left it.",
     "3 arrived at North and at South on the same day, 2001-02-03"},
    {CHECK::SIMILAR_LOCATIONS, "similar-locations", SEVERITY::WARNING, "Locations named almost alike",
     "The names of two locations differ only in case, blanks, punctuation, word order or one letter.",
     "The locations Dresden Zoo and Drezden Zoo may be the same"},
    {CHECK::PARENT_SEX_UNKNOWN, "parent-sex-unknown", SEVERITY::NOTE, "Parents whose sex is not known",
     "A sire or dam has no known sex.", "1 is the sire of 3, but its sex is unknown"},
    {CHECK::UNDECIDED, "undecided", SEVERITY::NOTE, "Births that cannot be compared",
     "Counts the births that cannot be compared with those of the parents because a date is missing or too rough.",
     "1 birth cannot be compared with that of a parent: dates are missing or too rough"},
};

static_assert(std::size(CODES) == static_cast<std::size_t>(CHECK::COUNT));

}  // namespace

std::span<const check_code> checkCodes() {
  return CODES;
}

const check_code& codeOf(CHECK check) {
  return CODES[static_cast<std::size_t>(check)];
}

std::optional<CHECK> checkOfCode(std::string_view code) {
  const auto* found =
      std::find_if(std::begin(CODES), std::end(CODES), [&](const check_code& one) { return one.code == code; });
  return found == std::end(CODES) ? std::nullopt : std::optional<CHECK>(found->check);
}

const char* severityName(SEVERITY severity) {
  static constexpr const char* NAMES[] = {"error", "warning", "note"};
  return NAMES[static_cast<std::size_t>(severity)];
}

}  // namespace spx::console
