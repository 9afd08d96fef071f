#include "spx/demography/age_structure.h"

#include <algorithm>
#include <cmath>

#include "spx/demography/statistics.h"
#include "spx/demography/survival.h"

namespace spx {
namespace {

void share(age_row& row, double male_share) {
  row.males += row.unknown * male_share;
  row.females += row.unknown * (1 - male_share);
  row.unknown = 0;
}

}  // namespace

double maleShareOfUnknown(HANDLE_UNKNOWN handle, double males, double females) {
  if (handle == HANDLE_UNKNOWN::IGNORE) return NOT_KNOWN;
  const double known = males + females;
  return handle == HANDLE_UNKNOWN::EQUAL || !(known > 0) ? 0.5 : males / known;
}

std::size_t ageClass(double age, double class_width, std::size_t classes) {
  const double at = std::floor(std::max(age, 0.0) / class_width);
  return at < static_cast<double>(classes) ? static_cast<std::size_t>(at) : classes - 1;
}

age_structure ageStructure(const Presence& presence, const DataFilter& view, qs_lib::day_number date) {
  age_structure result;
  result.date = date;
  result.class_width = view.class_width;
  const std::size_t classes = std::max<std::size_t>(view.number_of_classes, 1);
  result.rows.resize(classes);
  for (std::size_t at = 0; at < classes; ++at) {
    result.rows[at].age = static_cast<double>(at) * view.class_width;
  }
  age_row all;
  for (const Presence::life& life : presence.lives()) {
    if (!presence.isPresent(life, date)) continue;
    const bool has_age = isAgeKnown(life, view.class_width);
    const double age = double{1} * date - life.birth;
    age_row& row = has_age ? result.rows[ageClass(age, view.class_width, classes)] : result.unknown_age;
    for (age_row* one : {&row, &all}) {
      ++(life.sex == SEX::MALE ? one->males : life.sex == SEX::FEMALE ? one->females : one->unknown);
    }
  }
  const double male_share = maleShareOfUnknown(view.handle_unknown, all.males, all.females);
  if (std::isnan(male_share)) return result;
  result.shared_unknown = all.unknown;
  for (age_row& row : result.rows) share(row, male_share);
  share(result.unknown_age, male_share);
  return result;
}

}  // namespace spx
