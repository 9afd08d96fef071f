#include "spx/views/predicates.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "spx/core/identifiers.h"
#include "spx/core/meta_population.h"
#include "spx/core/pseudo_ids.h"
#include "spx/core/user_fields.h"
#include "spx/support/data_range.h"
#include "spx/views/data_filter.h"

namespace spx {
namespace {

std::uint32_t daysBetween(qs_lib::day_number from, qs_lib::day_number to) {
  return to - from;
}

bool hasWildParents(const master_data& animal) {
  return animal.sire_id == WILD_PARENT && animal.dam_id == WILD_PARENT;
}

bool isWildLitterParent(const std::string& id) {
  return id.starts_with(WILD_PARENT) && isSameLitterParent(id);
}

bool hasDied(const master_data& animal) {
  return animal.death.date != 0 && animal.death.event != MOVE_TYPE::LOST_TO_FOLLOW_UP;
}

// The value of a field; empty beyond the values of the record.
std::string_view userValue(const master_data& animal, int field) {
  const auto at = static_cast<std::size_t>(field);
  return at < animal.user_data.size() ? animal.user_data[at] : std::string_view();
}

}  // namespace

bool isSameLitter(const master_data& animal, const std::string& dam, qs_lib::day_number date, double days) {
  return animal.dam_id == dam && days >= static_cast<double>(daysBetween(date, animal.birth.date));
}

bool isLiving(const master_data& animal, qs_lib::day_number date) {
  return animal.birth.date <= date && daysBetween(1, animal.death.date) >= date;
}

bool isLivingBreeder(const master_data& animal, qs_lib::day_number date) {
  return animal.breeder && isLiving(animal, date);
}

bool isPotentialBreeder(const master_data& animal, qs_lib::day_number date) {
  return !animal.breeder && isLiving(animal, date);
}

bool isFounder(const master_data& animal) {
  return hasWildParents(animal) && animal.breeder && !isPseudoIndividual(animal.stud_id);
}

bool isLivingFounder(const master_data& animal, qs_lib::day_number date) {
  return isFounder(animal) && isLiving(animal, date);
}

bool isPotentialFounder(const master_data& animal, qs_lib::day_number date) {
  return hasWildParents(animal) && isPotentialBreeder(animal, date) && !isPseudoIndividual(animal.stud_id);
}

bool isLostFounder(const master_data& animal, qs_lib::day_number date) {
  return hasWildParents(animal) && !animal.breeder && !isLiving(animal, date);
}

bool isWildLitter(const master_data& animal) {
  return isWildLitterParent(animal.sire_id) || isWildLitterParent(animal.dam_id);
}

bool isNeonatalDeath(const master_data& animal, double days) {
  return hasDied(animal) && days >= static_cast<double>(daysBetween(animal.birth.date, animal.death.date));
}

bool isStillBirth(const master_data& animal) {
  return hasDied(animal) && animal.death.date == animal.birth.date;
}

bool isInFcoef(double value, double low, double high) {
  if (std::isnan(value) || (std::isnan(low) && std::isnan(high))) {
    return true;
  }
  // With an upper bound alone, `low` is NaN and this comparison is false: no known value passes.
  if (!(value >= low)) {
    return false;
  }
  return std::isnan(high) || high >= value;
}

bool isInGeneration(double value, double low, double high) {
  return isInFcoef(value, low, high);
}

bool isNotWorse(DATE_ACCURACY accuracy, DATE_ACCURACY worst) {
  return static_cast<std::int32_t>(accuracy) <= static_cast<std::int32_t>(worst);
}

bool isInSex(SEX sex, const std::vector<SEX>& list) {
  return std::any_of(list.begin(), list.end(), [sex](SEX listed) { return listed == sex || listed == SEX::ALL; });
}

bool isOppositeSex(SEX a, SEX b) {
  return b == SEX::ALL || (a == SEX::MALE && b == SEX::FEMALE) || (a == SEX::FEMALE && b == SEX::MALE);
}

bool isInDates(qs_lib::day_number date, qs_lib::DateSpan span, const std::string& brackets) {
  return qs_lib::DataRange<qs_lib::day_number>{span.start, span.end}.isInRange(date, brackets);
}

bool isInTaxonView(const master_data& animal) {
  return View.taxa.empty() || std::find(View.taxa.begin(), View.taxa.end(), animal.taxon) != View.taxa.end();
}

bool isInUserView(const master_data& animal) {
  return user_field_list.empty() ||
         std::all_of(View.user_filters.begin(), View.user_filters.end(),
                     [&animal](const user_filter& filter) { return userValue(animal, filter.field) == filter.value; });
}

bool movedToDemeView(const master_data& animal, qs_lib::DateSpan span) {
  return std::any_of(animal.moves.begin(), animal.moves.end(), [span](const move_data& move) {
    return MetaPop.isMemberSelected(move.location) && isInDates(move.date, span, "[)");
  });
}

qs_lib::day_number arrivalDemeView(const master_data& animal) {
  for (const move_data& move : animal.moves) {
    if (MetaPop.isMemberSelected(move.location)) {
      return move.date;
    }
  }
  return 0;
}

qs_lib::day_number removalDemeView(const master_data& animal) {
  bool inside = MetaPop.isMemberSelected(animal.birth.location);
  for (const move_data& move : animal.moves) {
    const bool to_selected = MetaPop.isMemberSelected(move.location);
    if (inside && !to_selected) {
      return move.date;
    }
    inside = to_selected;
  }
  return 0;
}

}  // namespace spx
